// ChemicalGraphMembership: the graph and self handles that an atom or a bond
// holds while it is in a chemical graph, with the checks on them.
//
// Both handles are null while the object is free, and set together when it
// joins a graph. The graph breaks the cycle they make when it lets the
// object go (ChemicalGraph::clear).
#ifndef MOLCRYST_GRAPH_CHEMICALGRAPHMEMBERSHIP_H
#define MOLCRYST_GRAPH_CHEMICALGRAPHMEMBERSHIP_H

#include <stdexcept>
#include <string>

#include "molcryst/support/THandle.h"

namespace molcryst {

/// Membership shared by ChemicalGraphAtomData and ChemicalGraphBondData;
/// `Derived::class_name()` heads their messages.
template <class Derived, class Self, class GraphType>
class ChemicalGraphMembership {
public:
    /// The only writer of the two handles, which must be both null or both set.
    void set_graph(const THandle<GraphType>& graph, const THandle<Self>& self) {
        if (graph.unhand() != nullptr && self.unhand() == nullptr)
            throw std::invalid_argument(std::string(Derived::class_name()) +
                                        "::set_graphgraph is non-zero: self cannot be zero");
        if (graph.unhand() == nullptr && self.unhand() != nullptr)
            throw std::invalid_argument(std::string(Derived::class_name()) +
                                        "::set_graphgraph is zero: self cannot be non-zero");
        // Copies first: the handles being replaced may be the last ones keeping
        // the arguments alive.
        THandle<GraphType> new_graph(graph);
        THandle<Self> new_self(self);
        graph_ = new_graph;
        self_ = new_self;
    }

    /// The object's own handle; std::runtime_error while it is free.
    THandle<Self> self() const {
        if (self_.unhand() == nullptr)
            throw std::runtime_error(std::string(Derived::class_name()) +
                                     "::self No pointer available - this atom is not in a graph");
        return self_;
    }
    /// The graph, null while free.
    const THandle<GraphType>& graph() const { return graph_; }
    bool is_in_connectivity() const { return graph_.unhand() != nullptr; }

protected:
    ChemicalGraphMembership() = default;
    /// Membership is never copied: a copy is free.
    ChemicalGraphMembership(const ChemicalGraphMembership&) {}
    ChemicalGraphMembership& operator=(const ChemicalGraphMembership&) { return *this; }

    /// The graph, or std::runtime_error naming the operation `name` while free.
    const GraphType& checked(const char* name) const {
        if (graph_.unhand() == nullptr)
            throw std::runtime_error(std::string(Derived::class_name()) + "::" + name + " cannot work when graph_ == 0");
        return *graph_;
    }

    THandle<GraphType> graph_;
    THandle<Self> self_;
};

}  // namespace molcryst

#endif
