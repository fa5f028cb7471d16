// CifDisorder: the disorder of a deposited structure, as its file tells it:
// the assemblies (_atom_site_disorder_assembly, all sites without a code
// forming one), each with its groups (_atom_site_disorder_group; "." and 0
// are the ordered part), and the states of the whole structure, one group of
// each assembly.
//
// States are numbered as DisorderSelector numbers the states of a molecule:
// assembly 0 (the first in the file) changes fastest, and within an assembly
// the groups come by falling occupancy, equal ones by group number. State 0
// is the most probable structure.
#ifndef MOLCRYST_IO_CIFDISORDER_H
#define MOLCRYST_IO_CIFDISORDER_H

#include <string>
#include <vector>

#include "molcryst/io/CifBlock.h"

namespace molcryst {

class CifDisorder {
public:
    struct Group {
        int group;               // as deposited, non-zero
        double occupancy;        // of the group's first site
        std::vector<int> sites;  // in file order
    };
    struct Assembly {
        std::string code;           // as deposited, "" when the file gives none
        std::vector<Group> groups;  // by group number
        std::vector<int> order;     // indices into groups, by falling occupancy
    };

    explicit CifDisorder(const CifBlock& block);

    /// In the order of their first site in the file.
    const std::vector<Assembly>& assemblies() const { return assemblies_; }
    /// The product of the group counts (1 for an ordered structure);
    /// std::overflow_error when a long long cannot hold it.
    long long nstates() const;
    /// Per assembly, the index into its groups of state `n`;
    /// std::out_of_range outside 0 .. nstates() - 1.
    std::vector<int> state(long long n) const;
    /// A copy of the block in state `n`: the sites of the groups not chosen
    /// are left out. std::out_of_range as state.
    CifBlock in_state(long long n) const;

private:
    const CifBlock* block_;
    std::vector<Assembly> assemblies_;
};

}  // namespace molcryst

#endif
