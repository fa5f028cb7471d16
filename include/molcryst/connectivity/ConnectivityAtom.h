// ConnectivityAtom: an atom of a connectivity record, which knows its element
// and formal charge and nothing of geometry.
#ifndef MOLCRYST_CONNECTIVITY_CONNECTIVITYATOM_H
#define MOLCRYST_CONNECTIVITY_CONNECTIVITYATOM_H

#include <deque>
#include <ostream>

#include "molcryst/elements/Element.h"
#include "molcryst/graph/ChemicalGraphAtomData.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

class ConnectivityAtom;
class ConnectivityBond;
typedef THandle<ConnectivityAtom> HConnectivityAtom;
typedef THandle<ConnectivityBond> HConnectivityBond;

/// An element and a formal charge, with the graph data of the Connectivity it
/// is in. Position questions (index, neighbours, rings) go to the graph and
/// throw while the atom is free. A copy is free: membership is never copied.
class ConnectivityAtom {
public:
    typedef ChemicalGraphAtomData<ConnectivityAtom, ConnectivityBond> GraphData;
    typedef GraphData::NeighbourIterator NeighbourIterator;
    typedef GraphData::BondIterator BondIterator;

    /// "Unknown" with charge 0.
    ConnectivityAtom() = default;
    explicit ConnectivityAtom(const Element& element, int formal_charge = 0)
        : element_(element), formal_charge_(formal_charge) {}
    ConnectivityAtom(const ConnectivityAtom& other) : element_(other.element_), formal_charge_(other.formal_charge_) {}
    ConnectivityAtom& operator=(const ConnectivityAtom& other) {
        element_ = other.element_;
        formal_charge_ = other.formal_charge_;
        return *this;
    }

    Element element() const { return element_; }
    void set_element(const Element& element) { element_ = element; }
    int formal_charge() const { return formal_charge_; }
    void set_formal_charge(int charge) { formal_charge_ = charge; }

    int index() const { return graph_data_.index(); }
    int nbonds() const { return graph_data_.nbonds(); }
    bool cyclic() const { return graph_data_.cyclic(); }
    /// Size of the smallest ring through the atom; 0 when acyclic.
    int smallest_ring_size() const { return graph_data_.smallest_ring_size(); }
    /// Neighbours in handle order.
    NeighbourIterator begin_neighbours() const { return graph_data_.begin_neighbours(); }
    NeighbourIterator end_neighbours() const { return graph_data_.end_neighbours(); }
    std::deque<HConnectivityAtom> neighbours() const { return graph_data_.neighbours(); }
    /// Bonds in the order of the neighbours they lead to.
    BondIterator begin_bonds() const { return graph_data_.begin_bonds(); }
    BondIterator end_bonds() const { return graph_data_.end_bonds(); }
    std::deque<HConnectivityBond> bonds() const { return graph_data_.bonds(); }
    HConnectivityBond bond(int i) const { return graph_data_.bond(i); }
    /// Neighbours that are hydrogens: of atomic number 1 if `all_isotopes`,
    /// else plain hydrogen only (element code 2, not deuterium).
    int nhydrogens(bool all_isotopes) const;

    GraphData& graph_data() { return graph_data_; }
    const GraphData& graph_data() const { return graph_data_; }
    bool is_in_connectivity() const { return graph_data_.is_in_connectivity(); }

    /// A free atom with the same element and charge.
    HConnectivityAtom clone() const { return HConnectivityAtom(new ConnectivityAtom(*this)); }

    /// Element and formal charge; the graph does not enter.
    bool operator==(const ConnectivityAtom& other) const {
        return element_ == other.element_ && formal_charge_ == other.formal_charge_;
    }
    bool operator!=(const ConnectivityAtom& other) const { return !(*this == other); }

    /// "element: C, formal_charge: 0"
    void print(std::ostream& out) const;
    /// The element as one byte, then the charge as int.
    void write(Archive& ar) const;
    /// On failure the atom is unchanged.
    void read(Archive& ar);

private:
    Element element_;
    int formal_charge_ = 0;
    GraphData graph_data_;
};

Archive& operator<<(Archive& ar, const ConnectivityAtom& atom);
Archive& operator>>(Archive& ar, ConnectivityAtom& atom);

}  // namespace molcryst

#endif
