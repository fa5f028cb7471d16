// ChemicalGraphBondData: what a bond knows of the chemical graph it is in.
// The twin of ChemicalGraphAtomData, with the same ownership rule.
#ifndef MOLCRYST_GRAPH_CHEMICALGRAPHBONDDATA_H
#define MOLCRYST_GRAPH_CHEMICALGRAPHBONDDATA_H

#include <stdexcept>
#include <string>

#include "molcryst/graph/ChemicalGraphMembership.h"
#include "molcryst/graph/OrderedGraph.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// The graph and self handles of a bond `B` between atoms `A`; both null
/// while the bond is free. The graph operations of a free bond throw.
template <class A, class B>
class ChemicalGraphBondData : public ChemicalGraphMembership<ChemicalGraphBondData<A, B>, B, OrderedGraph<THandle<A>, THandle<B> > > {
    typedef ChemicalGraphMembership<ChemicalGraphBondData<A, B>, B, OrderedGraph<THandle<A>, THandle<B> > > Membership;
    using Membership::checked;
    using Membership::self_;
    using Membership::graph_;

public:
    static const char* class_name() { return "ChemicalGraphBondData<AtomType, BondType>"; }

    typedef THandle<A> HAtomType;
    typedef THandle<B> HBondType;
    typedef OrderedGraph<HAtomType, HBondType> GraphType;

    /// The ends in the order given when the bond was added.
    HAtomType atom1() const { return checked("atom1").edge_node1(self_); }
    HAtomType atom2() const { return checked("atom2").edge_node2(self_); }
    int index() const { return checked("index").edge_index(self_); }
    bool cyclic() const { return checked("cyclic").is_edge_cyclic(self_, 0); }
    int smallest_ring_size() const {
        int size = 0;
        checked("smallest_ring_size").is_edge_cyclic(self_, &size);
        return size;
    }

    /// The end that is not `atom`.
    HAtomType other_atom(const HAtomType& atom) const {
        const GraphType& g = checked("other_atom");
        if (atom.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraphBondData<AtomType, BondType>::other_atom(HAtomType) atom is a null pointer");
        HAtomType a1 = g.edge_node1(self_), a2 = g.edge_node2(self_);
        if (atom == a1) return a2;
        if (atom == a2) return a1;
        throw std::invalid_argument(
            "ChemicalGraphBondData<AtomType, BondType>::other_atom(HAtomType) atom is not in this bond");
    }
};

}  // namespace molcryst

#endif
