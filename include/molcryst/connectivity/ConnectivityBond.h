// ConnectivityBond: a bond of a connectivity record, which knows only its type.
#ifndef MOLCRYST_CONNECTIVITY_CONNECTIVITYBOND_H
#define MOLCRYST_CONNECTIVITY_CONNECTIVITYBOND_H

#include <ostream>

#include "molcryst/graph/ChemicalGraphBondData.h"
#include "molcryst/molecule/BondType.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

class ConnectivityAtom;
class ConnectivityBond;
typedef THandle<ConnectivityAtom> HConnectivityAtom;
typedef THandle<ConnectivityBond> HConnectivityBond;

/// A bond type with the graph data of the Connectivity the bond is in. Its
/// ends are answered by the graph and throw while the bond is free.
class ConnectivityBond {
public:
    typedef ChemicalGraphBondData<ConnectivityAtom, ConnectivityBond> GraphData;

    // Constructors and destructor are out of line: they reach the graph
    // types, which need the atom class complete.
    /// An unknown bond (type 0).
    ConnectivityBond();
    /// std::invalid_argument for a type outside 0 to 9, as set_type.
    explicit ConnectivityBond(int type);
    /// The type; the copy is free.
    ConnectivityBond(const ConnectivityBond& other);
    /// The type; membership stays as it is.
    ConnectivityBond& operator=(const ConnectivityBond& other);
    ~ConnectivityBond();

    BondType type() const { return static_cast<BondType>(type_); }
    /// A type above 9 throws std::invalid_argument; so does a negative one,
    /// which no bond kind has either.
    void set_type(int type);

    HConnectivityAtom atom1() const;
    HConnectivityAtom atom2() const;
    /// The end that is not `atom`.
    HConnectivityAtom other_atom(const HConnectivityAtom& atom) const;
    int index() const;
    bool cyclic() const;
    /// Size of the smallest ring through the bond; 0 when acyclic.
    int smallest_ring_size() const;

    GraphData& graph_data() { return graph_data_; }
    const GraphData& graph_data() const { return graph_data_; }
    bool is_in_connectivity() const;

    /// A free bond of the same type.
    HConnectivityBond clone() const;

    /// The types alone: bonds between different atoms are equal if their types are.
    bool operator==(const ConnectivityBond& other) const { return type_ == other.type_; }
    bool operator!=(const ConnectivityBond& other) const { return !(*this == other); }

    /// "type: 1, atom1:  (0), atom2:  (1)"; a free bond prints its type alone.
    void print(std::ostream& out) const;
    /// The type as int.
    void write(Archive& ar) const;
    /// A type outside 0 to 9 is a malformed archive; on failure the bond is unchanged.
    void read(Archive& ar);

private:
    int type_ = UNKNOWN_BOND;  // [0, 9], a BondType
    GraphData graph_data_;
};

Archive& operator<<(Archive& ar, const ConnectivityBond& bond);
Archive& operator>>(Archive& ar, ConnectivityBond& bond);

}  // namespace molcryst

#endif
