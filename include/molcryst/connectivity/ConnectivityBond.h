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

    /// An unknown bond (type 0).
    ConnectivityBond() = default;
    /// std::invalid_argument for a type outside 0 to 9, as set_type.
    explicit ConnectivityBond(int type) { set_type(type); }
    ConnectivityBond(const ConnectivityBond& other) : type_(other.type_) {}
    ConnectivityBond& operator=(const ConnectivityBond& other) {
        type_ = other.type_;
        return *this;
    }

    BondType type() const { return static_cast<BondType>(type_); }
    /// A type above 9 throws std::invalid_argument; so does a negative one,
    /// which no bond kind has either.
    void set_type(int type);

    HConnectivityAtom atom1() const;
    HConnectivityAtom atom2() const;
    /// The end that is not `atom`.
    HConnectivityAtom other_atom(const HConnectivityAtom& atom) const;
    int index() const { return graph_data_.index(); }
    bool cyclic() const { return graph_data_.cyclic(); }
    /// Size of the smallest ring through the bond; 0 when acyclic.
    int smallest_ring_size() const { return graph_data_.smallest_ring_size(); }

    GraphData& graph_data() { return graph_data_; }
    const GraphData& graph_data() const { return graph_data_; }
    bool is_in_connectivity() const { return graph_data_.is_in_connectivity(); }

    /// A free bond of the same type.
    HConnectivityBond clone() const { return HConnectivityBond(new ConnectivityBond(*this)); }

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
