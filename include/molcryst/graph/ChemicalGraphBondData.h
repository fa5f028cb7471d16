// ChemicalGraphBondData: what a bond knows of the chemical graph it is in.
// The twin of ChemicalGraphAtomData, with the same ownership rule.
#ifndef MOLCRYST_GRAPH_CHEMICALGRAPHBONDDATA_H
#define MOLCRYST_GRAPH_CHEMICALGRAPHBONDDATA_H

#include <stdexcept>
#include <string>

#include "molcryst/graph/OrderedGraph.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// The graph and self handles of a bond `B` between atoms `A`; both null
/// while the bond is free. The graph operations of a free bond throw.
template <class A, class B>
class ChemicalGraphBondData {
public:
    typedef THandle<A> HAtomType;
    typedef THandle<B> HBondType;
    typedef OrderedGraph<HAtomType, HBondType> GraphType;

    ChemicalGraphBondData() = default;
    /// Membership is never copied: a copy is free.
    ChemicalGraphBondData(const ChemicalGraphBondData&) {}
    ChemicalGraphBondData& operator=(const ChemicalGraphBondData&) { return *this; }

    /// The only writer of the two handles, which must be both null or both set.
    void set_graph(const THandle<GraphType>& graph, const HBondType& self) {
        if (graph.unhand() != nullptr && self.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraphBondData<AtomType, BondType>::set_graphgraph is non-zero: self cannot be zero");
        if (graph.unhand() == nullptr && self.unhand() != nullptr)
            throw std::invalid_argument(
                "ChemicalGraphBondData<AtomType, BondType>::set_graphgraph is zero: self cannot be non-zero");
        THandle<GraphType> new_graph(graph);
        HBondType new_self(self);
        graph_ = new_graph;
        self_ = new_self;
    }

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

    HBondType self() const {
        if (self_.unhand() == nullptr)
            throw std::runtime_error(
                "ChemicalGraphBondData<AtomType, BondType>::self No pointer available - this atom is not in a graph");
        return self_;
    }
    const THandle<GraphType>& graph() const { return graph_; }
    bool is_in_connectivity() const { return graph_.unhand() != nullptr; }

private:
    const GraphType& checked(const char* name) const {
        if (graph_.unhand() == nullptr)
            throw std::runtime_error(std::string("ChemicalGraphBondData<AtomType, BondType>::") + name +
                                     " cannot work when graph_ == 0");
        return *graph_;
    }

    THandle<GraphType> graph_;
    HBondType self_;
};

}  // namespace molcryst

#endif
