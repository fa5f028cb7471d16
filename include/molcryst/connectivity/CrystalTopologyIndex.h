// CrystalTopologyIndex: the topology indices of a crystal's connectivity
// records with their multipliers, sorted, so that two structures compare in
// one walk.
#ifndef MOLCRYST_CONNECTIVITY_CRYSTALTOPOLOGYINDEX_H
#define MOLCRYST_CONNECTIVITY_CRYSTALTOPOLOGYINDEX_H

#include <ostream>
#include <vector>

#include "molcryst/connectivity/ConnectivityInfo.h"
#include "molcryst/connectivity/TopologyIndex.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

/// One index with its multiplier per connectivity record, ascending by
/// index, then by multiplier. A multiplier of -1.0 stands for an unknown one.
class CrystalTopologyIndex {
public:
    /// 0: an unknown multiplier matches any value; otherwise multipliers are
    /// compared as numbers, -1.0 included.
    typedef int UnknownMultiplierCondition;

    struct Record {
        int index = 0;
        double multiplier = 0.0;  // -1.0 when unknown
    };

    CrystalTopologyIndex() = default;
    /// calculate_indices of the two.
    CrystalTopologyIndex(const HConnectivityInfo& info, const HTopologyIndex& topology_index);

    /// One record per connectivity of `info`, then sort_indices. Either
    /// handle null throws std::invalid_argument.
    void calculate_indices(const HConnectivityInfo& info, const HTopologyIndex& topology_index);
    /// Ascending by index, then by multiplier.
    void sort_indices();

    /// The sum of the indices, in wrapping 32-bit arithmetic. With
    /// `use_multipliers` each index is weighted by ceil(multiplier - 1e-07),
    /// an unknown multiplier taken as 1.0, so that a part of a molecule counts as one.
    int index_sum(bool use_multipliers) const;

    /// Removes every record with this index.
    void remove_connectivity(int index);
    /// Removes the record at `position`; std::out_of_range past the end.
    void remove_connectivity_by_index(unsigned int position);
    bool at_least_one_connectivity_equals(int index) const;
    /// The positions of the records with this index, ascending.
    std::vector<int> connectivities_that_equal(int index) const;

    const std::vector<Record>& indices() const { return indices_; }
    int nindices() const { return static_cast<int>(indices_.size()); }

    /// "nindices: " and the count; then per record "index " and the index,
    /// with " multiplier x" for an unknown multiplier or " multiplier " and
    /// the value; each on a line of its own.
    void print(std::ostream& out) const;
    /// unsigned int count; each record as int index, double multiplier.
    void write(Archive& ar) const;
    /// Replaces the records by those read; on failure they are as they were.
    void read(Archive& ar);

    /// Same length, same records exactly, in order.
    bool operator==(const CrystalTopologyIndex& other) const;
    bool operator!=(const CrystalTopologyIndex& other) const { return !(*this == other); }

private:
    std::vector<Record> indices_;
};

/// Record by record in the present order: equal indices, and multipliers
/// within `tolerance` (inclusive), except that with `condition` 0 an unknown
/// multiplier on either side matches.
bool equals(const CrystalTopologyIndex& a, const CrystalTopologyIndex& b, double tolerance,
            CrystalTopologyIndex::UnknownMultiplierCondition condition);
/// As equals, on copies of both put in the same order first.
bool is_equivalent(const CrystalTopologyIndex& a, const CrystalTopologyIndex& b, double tolerance,
                   CrystalTopologyIndex::UnknownMultiplierCondition condition);

}  // namespace molcryst

#endif
