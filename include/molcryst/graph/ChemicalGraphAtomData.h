// ChemicalGraphAtomData: what an atom knows of the chemical graph it is in.
//
// An atom in a graph holds a strong handle to the graph and one to itself, so
// that an atom reached by reference can hand out a handle sharing its count.
// The graph breaks these cycles when it lets the atom go (ChemicalGraph::clear).
#ifndef MOLCRYST_GRAPH_CHEMICALGRAPHATOMDATA_H
#define MOLCRYST_GRAPH_CHEMICALGRAPHATOMDATA_H

#include <deque>
#include <set>
#include <stdexcept>
#include <string>

#include "molcryst/graph/ChemicalGraphMembership.h"
#include "molcryst/graph/OrderedGraph.h"
#include "molcryst/support/THandle.h"
#include "molcryst/support/TransformingIterator.h"

namespace molcryst {

/// The graph and self handles of an atom `A` whose bonds are `B`; both null
/// while the atom is free. The graph operations of a free atom throw.
template <class A, class B>
class ChemicalGraphAtomData : public ChemicalGraphMembership<ChemicalGraphAtomData<A, B>, A, OrderedGraph<THandle<A>, THandle<B> > > {
    typedef ChemicalGraphMembership<ChemicalGraphAtomData<A, B>, A, OrderedGraph<THandle<A>, THandle<B> > > Membership;
    using Membership::checked;
    using Membership::self_;
    using Membership::graph_;

public:
    static const char* class_name() { return "ChemicalGraphAtomData<AtomType, BondType>"; }

    typedef THandle<A> HAtomType;
    typedef THandle<B> HBondType;
    typedef OrderedGraph<HAtomType, HBondType> GraphType;
    typedef typename std::set<HAtomType>::const_iterator NeighbourIterator;

    /// Maps a neighbour of `self` to the bond between them.
    class OtherAtomToBond {
    public:
        OtherAtomToBond() = default;
        OtherAtomToBond(const HAtomType& self, const THandle<GraphType>& graph) : self_(self), graph_(graph) {}
        HBondType operator()(const HAtomType& neighbour) const { return graph_->edge(self_, neighbour); }

    private:
        HAtomType self_;
        THandle<GraphType> graph_;
    };
    typedef TransformingIterator<NeighbourIterator, OtherAtomToBond, HBondType> BondIterator;


    int index() const { return checked("index").node_index(self_); }
    int nbonds() const { return checked("nbonds").degree_node(self_); }
    bool cyclic() const { return checked("cyclic").is_node_cyclic(self_, 0); }
    int smallest_ring_size() const {
        int size = 0;
        checked("smallest_ring_size").is_node_cyclic(self_, &size);
        return size;
    }

    NeighbourIterator begin_neighbours() const { return checked("begin_neighbours").node_begin_neighbours(self_); }
    NeighbourIterator end_neighbours() const { return checked("end_neighbours").node_end_neighbours(self_); }
    std::deque<HAtomType> neighbours() const {
        const GraphType& g = checked("neighbours");
        return std::deque<HAtomType>(g.node_begin_neighbours(self_), g.node_end_neighbours(self_));
    }

    BondIterator begin_bonds() const {
        const GraphType& g = checked("begin_bonds");
        return BondIterator(g.node_begin_neighbours(self_), OtherAtomToBond(self_, graph_));
    }
    BondIterator end_bonds() const {
        const GraphType& g = checked("end_bonds");
        return BondIterator(g.node_end_neighbours(self_), OtherAtomToBond(self_, graph_));
    }
    std::deque<HBondType> bonds() const {
        const GraphType& g = checked("bonds");
        std::deque<HBondType> out;
        for (NeighbourIterator n = g.node_begin_neighbours(self_); n != g.node_end_neighbours(self_); ++n)
            out.push_back(g.edge(self_, *n));
        return out;
    }

    /// The bond to the `i`-th neighbour in neighbour order.
    HBondType bond(int i) const {
        const GraphType& g = checked("bond");
        if (i < 0 || i >= g.degree_node(self_))
            throw std::invalid_argument("ChemicalGraphAtomData<AtomType, BondType>::bond Illegal bond_index");
        NeighbourIterator n = g.node_begin_neighbours(self_);
        std::advance(n, i);
        return g.edge(self_, *n);
    }
};

}  // namespace molcryst

#endif
