// OrderedGraph: a Graph whose nodes and edges also carry stable integer
// indices, in order of addition. Atom and bond indices are these.
//
// The indices live in two IndexedTables beside the graph. Removing a node or
// an edge closes the gap: later entries move down by one. `split` cuts the
// graph into its connected parts, each keeping the relative index order.
#ifndef MOLCRYST_GRAPH_ORDEREDGRAPH_H
#define MOLCRYST_GRAPH_ORDEREDGRAPH_H

#include <deque>
#include <map>
#include <set>
#include <stdexcept>
#include <vector>

#include "molcryst/graph/Graph.h"
#include "molcryst/support/IndexedTable.h"
#include "molcryst/support/ResizableArray2D.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// A Graph with indices: node `i` and edge `i` in order of addition.
/// The tables hold exactly the nodes and edges of the graph.
template <class Tn, class Te>
class OrderedGraph : public Graph<Tn, Te> {
public:
    typedef Graph<Tn, Te> Base;
    typedef typename IndexedTable<Tn>::iterator node_iterator;
    typedef typename IndexedTable<Tn>::const_iterator const_node_iterator;
    typedef typename IndexedTable<Te>::iterator edge_iterator;
    typedef typename IndexedTable<Te>::const_iterator const_edge_iterator;

    /// Adds `n` with the next index, unless it is already there.
    void add_node(const Tn& n) {
        if (Base::has_node(n)) return;
        Base::add_node(n);
        nodes_table_.add(n);
        validate();
    }

    /// Adds a node the caller vouches is new.
    void unchecked_add_node(const Tn& n) {
        Base::unchecked_add_node(n);
        nodes_table_.add(n);
    }

    /// Adds edge `e` as Graph::add_edge does; what is new gets the next
    /// indices, the edge first, then node 1, then node 2.
    void add_edge(const Te& e, const Tn& n1, const Tn& n2) {
        const bool new_edge = !Base::has_edge(e);
        const bool new_node1 = !Base::has_node(n1);
        const bool new_node2 = !Base::has_node(n2);
        Base::add_edge(e, n1, n2);
        if (new_edge) edges_table_.add(e);
        if (new_node1) nodes_table_.add(n1);
        if (new_node2) nodes_table_.add(n2);
        validate();
    }

    /// Adds edge `e` without checks; both ends must be nodes already.
    void unchecked_add_edge(const Te& e, const Tn& n1, const Tn& n2) {
        Base::unchecked_add_edge(e, n1, n2);
        edges_table_.add(e);
    }

    /// Removes `n` and its edges, and their indices; an unknown node is ignored.
    void remove_node(const Tn& n) {
        if (!Base::has_node(n)) return;
        forget_edges_of(n);
        nodes_table_.remove_value(n);
        Base::remove_node(n);
        validate();
    }

    /// Removes the nodes `nodes` and their edges, with their indices, leaving
    /// the graph, its ring caches and both tables as remove_node of each in
    /// turn would; unknown nodes and repeats are ignored. Each table is
    /// filtered and renumbered once, so that removing many nodes costs
    /// n log n rather than a renumbering per node. The edges removed are
    /// appended to `removed_edges` unless it is null, in the order that
    /// remove_node in turn would drop them: node by node, in neighbour order.
    void remove_nodes(const std::vector<Tn>& nodes, std::vector<Te>* removed_edges = nullptr) {
        std::set<Tn> doomed_nodes;
        std::set<Te> doomed_edges;
        for (const Tn& n : nodes) {
            typename std::map<Tn, typename Base::Node>::const_iterator found = Base::nodes().find(n);
            if (found == Base::nodes().end() || !doomed_nodes.insert(n).second) continue;
            const typename Base::Node& data = found->second;
            for (typename Base::NeighbourIterator m = data.begin_neighbours(); m != data.end_neighbours(); ++m) {
                const Te e = Base::edge(n, *m);
                if (doomed_edges.insert(e).second && removed_edges != nullptr) removed_edges->push_back(e);
            }
        }
        if (doomed_nodes.empty()) return;
        // Node by node through the base, which drops the ring caches as each removal must.
        for (const Tn& n : doomed_nodes) Base::remove_node(n);
        nodes_table_.remove_values(doomed_nodes);
        edges_table_.remove_values(doomed_edges);
        validate();
    }

    /// Removes edge `e` and its index; an unknown edge is ignored.
    void remove_edge(const Te& e) {
        if (!Base::has_edge(e)) return;
        Base::remove_edge(e);
        edges_table_.remove_value(e);
        validate();
    }

    // The two below stand in for Graph's own, which would leave the edge
    // table holding edges that the graph no longer has.

    /// Removes the edge between `n1` and `n2`, if there is one.
    void remove_edge(const Tn& n1, const Tn& n2) {
        if (Base::has_edge(n1, n2)) remove_edge(Base::edge(n1, n2));
    }

    /// Removes every edge of `n`; an unknown node is ignored.
    void isolate_node(const Tn& n) {
        if (!Base::has_node(n)) return;
        forget_edges_of(n);
        Base::isolate_node(n);
        validate();
    }

    void clear() {
        Base::clear();
        nodes_table_.clear();
        edges_table_.clear();
    }

    /// Gives the nodes new indices: `nodes` must list every node of the graph
    /// exactly once, in the new order. Edges and their indices stay.
    void reorder_nodes(const std::vector<Tn>& nodes) { nodes_table_.reorder(nodes); }

    /// Gives the edges new indices: `edges` must list every edge of the graph
    /// exactly once, in the new order. Nodes and their indices stay.
    void reorder_edges(const std::vector<Te>& edges) { edges_table_.reorder(edges); }

    unsigned int nnodes() const { return nodes_table_.size(); }
    unsigned int nedges() const { return edges_table_.size(); }

    /// The node with index `i`; std::out_of_range past the end.
    Tn node(unsigned int i) const { return nodes_table_.at(i); }
    /// The edge with index `i`; std::out_of_range past the end.
    Te edge(unsigned int i) const { return edges_table_.at(i); }
    using Base::edge;

    /// The index of `n`; std::invalid_argument if it is not a node.
    int node_index(const Tn& n) const {
        try {
            return static_cast<int>(nodes_table_.index(n));
        } catch (const std::invalid_argument&) {
            throw std::invalid_argument("OrderedGraph::node_index:  no node with the specified id");
        }
    }

    /// The index of `e`; std::invalid_argument if it is not an edge.
    int edge_index(const Te& e) const {
        try {
            return static_cast<int>(edges_table_.index(e));
        } catch (const std::invalid_argument&) {
            throw std::invalid_argument("OrderedGraph::edge_index:  no edge with the specified id");
        }
    }

    node_iterator begin_nodes() { return nodes_table_.begin(); }
    node_iterator end_nodes() { return nodes_table_.end(); }
    const_node_iterator begin_nodes() const { return nodes_table_.begin(); }
    const_node_iterator end_nodes() const { return nodes_table_.end(); }
    edge_iterator begin_edges() { return edges_table_.begin(); }
    edge_iterator end_edges() { return edges_table_.end(); }
    const_edge_iterator begin_edges() const { return edges_table_.begin(); }
    const_edge_iterator end_edges() const { return edges_table_.end(); }

    /// The connected parts, as new graphs over the same node and edge
    /// identifiers. Parts come in the order of their lowest-index node, and
    /// nodes and edges keep their relative order inside each. A graph of at
    /// most one component gives one part, a copy of the whole.
    THandle<std::vector<THandle<OrderedGraph> > > split() const {
        THandle<std::vector<THandle<OrderedGraph> > > parts(new std::vector<THandle<OrderedGraph> >());
        if (Base::ncomponents(0) <= 1) {
            parts->push_back(THandle<OrderedGraph>(new OrderedGraph(*this)));
            return parts;
        }
        std::deque<std::set<Tn> > components;
        Base::components(components);
        std::map<Tn, int> component_of;
        for (std::size_t c = 0; c < components.size(); ++c)
            for (const Tn& n : components[c]) component_of.insert(std::make_pair(n, static_cast<int>(c)));
        for (std::size_t c = 0; c < components.size(); ++c) parts->push_back(THandle<OrderedGraph>(new OrderedGraph()));

        std::map<int, int> part_of;
        int next_part = 0;
        for (const Tn& n : nodes_table_) {
            const int component = component_of.find(n)->second;
            std::map<int, int>::const_iterator known = part_of.find(component);
            if (known == part_of.end()) {
                if (next_part >= static_cast<int>(parts->size()))
                    throw std::runtime_error("Assumption error in OrderedGraph::split()");
                known = part_of.insert(std::make_pair(component, next_part++)).first;
            }
            (*parts)[known->second]->add_node(n);
        }
        for (const Te& e : edges_table_) {
            const Tn n1 = Base::edge_node1(e), n2 = Base::edge_node2(e);
            (*parts)[part_of.find(component_of.find(n1)->second)->second]->add_edge(e, n1, n2);
        }
        return parts;
    }

    /// `nnodes()` by `nnodes()`, true at [a][b] and [b][a] for each edge
    /// between the nodes of indices a and b; false elsewhere.
    THandle<ResizableArray2D<bool> > adjacency_matrix() const {
        THandle<ResizableArray2D<bool> > matrix(new ResizableArray2D<bool>(nnodes(), nnodes(), false));
        for (const Te& e : edges_table_) {
            const unsigned int a = static_cast<unsigned int>(node_index(Base::edge_node1(e)));
            const unsigned int b = static_cast<unsigned int>(node_index(Base::edge_node2(e)));
            matrix->element(a, b) = true;
            matrix->element(b, a) = true;
        }
        return matrix;
    }

    /// Consistency hook run after mutating operations; like Graph's, it
    /// checks nothing, so that it costs nothing.
    void validate() const {}

private:
    // Takes the edges of `n` out of the edge table, before the graph drops them.
    void forget_edges_of(const Tn& n) {
        std::vector<Tn> neighbours(Base::node_begin_neighbours(n), Base::node_end_neighbours(n));
        for (const Tn& neighbour : neighbours) edges_table_.remove_value(Base::edge(n, neighbour));
    }

    IndexedTable<Tn> nodes_table_;
    IndexedTable<Te> edges_table_;
};

}  // namespace molcryst

#endif
