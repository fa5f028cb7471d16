// Graph: the simple undirected graph under molecules, connectivity records and
// chemical diagrams.
//
// Nodes and edges are known only by their identifiers (`Tn`, `Te`); the graph
// stores no chemistry. Neighbours are walked in the order of `std::set<Tn>`,
// which for handles is descending address: the traversal orders and
// tie-breaks below follow from it.
//
// The query methods are const, yet they write scratch state and fill the
// ring caches on demand. A graph must not be used from two threads at once,
// even for reading.
//
// The ring searches are declared here and defined in Graph_rings.h, which
// this header includes at its end; they run on a RingSearchIndex, an integer
// picture of the adjacency that the graph builds on demand and drops on every
// change to its nodes or adjacency.
#ifndef MOLCRYST_GRAPH_GRAPH_H
#define MOLCRYST_GRAPH_GRAPH_H

#include <algorithm>
#include <climits>
#include <cstddef>
#include <deque>
#include <map>
#include <set>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "molcryst/graph/EdgeData.h"
#include "molcryst/graph/NodeData.h"
#include "molcryst/graph/RingSearchIndex.h"

namespace molcryst {

/// Orders sets by size, smaller first: how the rings of an assembly are
/// ranked before the ring set is chosen from them.
template <class T>
struct CompareSize {
    bool operator()(const std::set<T>& a, const std::set<T>& b) const { return a.size() < b.size(); }
};

/// Undirected simple graph on node identifiers `Tn` and edge identifiers `Te`.
template <class Tn, class Te>
class Graph {
public:
    typedef NodeData<Tn> Node;
    typedef EdgeData<Tn, Te> Edge;
    typedef typename std::set<Tn>::const_iterator NeighbourIterator;

    // --- construction and removal ------------------------------------------

    /// Adds a node with no neighbours; a node already there is left alone.
    void add_node(const Tn& n) {
        if (nodes_.find(n) == nodes_.end()) {
            nodes_.insert(std::make_pair(n, Node(n)));
            ring_index_.invalidate();
        }
        validate();
    }

    /// Adds a node the caller vouches is new, without looking first.
    void unchecked_add_node(const Tn& n) {
        nodes_.emplace_hint(nodes_.end(), n, Node(n));
        ring_index_.invalidate();
    }

    /// Adds edge `e` between `n1` and `n2`, creating missing nodes. The same
    /// edge again is a no-op; a known identifier on other ends, or a known
    /// pair under another identifier, throws std::invalid_argument.
    void add_edge(const Te& e, const Tn& n1, const Tn& n2) {
        Edge pair(n1, n2);
        typename std::map<Te, Edge>::const_iterator known = edges_.find(e);
        if (known != edges_.end()) {
            if (known->second == pair) return;
            throw std::invalid_argument("Graph::add_edge - duplicate edge identifier");
        }
        typename std::map<Edge, Te>::const_iterator known_pair = edge_ids_.find(pair);
        if (known_pair != edge_ids_.end())
            throw std::invalid_argument("Graph::add_edge - attempt to add edge twice with different identifiers");
        edges_.insert(std::make_pair(e, pair));
        edge_ids_.insert(std::make_pair(pair, e));
        drop_ring_caches();
        node_for(n1).add_neighbour(n2);
        node_for(n2).add_neighbour(n1);
        validate();
    }

    /// Adds edge `e` without checking for a duplicate; both ends must exist.
    void unchecked_add_edge(const Te& e, const Tn& n1, const Tn& n2) {
        Edge pair(n1, n2);
        edges_.insert(std::make_pair(e, pair));
        edge_ids_.insert(std::make_pair(pair, e));
        drop_ring_caches();
        // The caller vouches that the ends exist; a missing one is made rather than trusted.
        node_for(n1).add_neighbour(n2);
        node_for(n2).add_neighbour(n1);
    }

    /// Removes edge `e`; an unknown edge is ignored.
    void remove_edge(const Te& e) {
        typename std::map<Te, Edge>::iterator found = edges_.find(e);
        if (found == edges_.end()) return;
        Edge pair = found->second;
        edge_ids_.erase(pair);
        edges_.erase(found);
        typename std::map<Tn, Node>::iterator a = nodes_.find(pair.id1());
        typename std::map<Tn, Node>::iterator b = nodes_.find(pair.id2());
        if (a != nodes_.end()) a->second.remove_neighbour(pair.id2());
        if (b != nodes_.end()) b->second.remove_neighbour(pair.id1());
        drop_ring_caches();
        validate();
    }

    /// Removes the edge between `n1` and `n2`, if there is one.
    void remove_edge(const Tn& n1, const Tn& n2) {
        if (has_edge(n1, n2)) remove_edge(edge(n1, n2));
    }

    /// Removes every edge of `n`; an unknown node is ignored.
    void isolate_node(const Tn& n_in) {
        const Tn n = n_in;  // `n_in` may refer into a neighbour set this edits
        typename std::map<Tn, Node>::iterator found = nodes_.find(n);
        if (found == nodes_.end()) return;
        // Copied out first: each removal edits the set being walked.
        std::vector<Tn> neighbours(found->second.begin_neighbours(), found->second.end_neighbours());
        for (const Tn& neighbour : neighbours) remove_edge(neighbour, n);
        if (!neighbours.empty() && !node_ring_sizes_.empty()) node_ring_sizes_.clear();
        ring_set_valid_ = false;
        validate();
    }

    /// Removes `n` and its edges.
    void remove_node(const Tn& n_in) {
        const Tn n = n_in;  // `n_in` may refer into a neighbour set this edits
        isolate_node(n);
        if (nodes_.erase(n) != 0) ring_index_.invalidate();
    }

    void clear() {
        nodes_.clear();
        edges_.clear();
        edge_ids_.clear();
        node_ring_sizes_.clear();
        ring_set_valid_ = false;
        ring_index_.invalidate();
    }

    // --- queries -------------------------------------------------------------

    bool has_node(const Tn& n) const { return nodes_.find(n) != nodes_.end(); }
    bool has_edge(const Te& e) const { return edges_.find(e) != edges_.end(); }

    /// False if `n1` is unknown, else whether `n1` lists `n2` as neighbour.
    bool has_edge(const Tn& n1, const Tn& n2) const {
        typename std::map<Tn, Node>::const_iterator found = nodes_.find(n1);
        return found != nodes_.end() && found->second.has_neighbour(n2);
    }

    /// The edge between two nodes; std::invalid_argument if there is none.
    Te edge(const Tn& n1, const Tn& n2) const {
        typename std::map<Edge, Te>::const_iterator found = edge_ids_.find(Edge(n1, n2));
        if (found == edge_ids_.end())
            throw std::invalid_argument("Graph::edge:  no edge between the two specified nodes");
        return found->second;
    }

    Tn edge_node1(const Te& e) const {
        typename std::map<Te, Edge>::const_iterator found = edges_.find(e);
        if (found == edges_.end()) throw std::invalid_argument("Graph::edge_node1:  no edge with specified id");
        return found->second.id1();
    }

    Tn edge_node2(const Te& e) const {
        typename std::map<Te, Edge>::const_iterator found = edges_.find(e);
        if (found == edges_.end()) throw std::invalid_argument("Graph::edge_node2:  no edge with specified id");
        return found->second.id2();
    }

    /// Number of neighbours, or -1 for an unknown node.
    int degree_node(const Tn& n) const {
        typename std::map<Tn, Node>::const_iterator found = nodes_.find(n);
        return found == nodes_.end() ? -1 : found->second.degree();
    }

    NeighbourIterator node_begin_neighbours(const Tn& n) const {
        typename std::map<Tn, Node>::const_iterator found = nodes_.find(n);
        if (found == nodes_.end())
            throw std::invalid_argument("Graph::node_begin_neighbours:  no node with specified id");
        return found->second.begin_neighbours();
    }

    NeighbourIterator node_end_neighbours(const Tn& n) const {
        typename std::map<Tn, Node>::const_iterator found = nodes_.find(n);
        if (found == nodes_.end())
            throw std::invalid_argument("Graph::node_end_neighbours:  no node with specified id");
        return found->second.end_neighbours();
    }

    /// The connected components, in the order of their first node; returns their number.
    int components(std::deque<std::set<Tn> >& out) const {
        out.clear();
        std::unordered_set<Tn> visited;
        std::set<Tn> working;
        std::deque<Tn> queue;
        for (typename std::map<Tn, Node>::const_iterator i = nodes_.begin(); i != nodes_.end(); ++i) {
            if (visited.count(i->first) != 0) continue;
            visited.insert(i->first);
            working.insert(i->first);
            queue.push_back(i->first);
            while (!queue.empty()) {
                const Node& front = nodes_.find(queue.front())->second;
                queue.pop_front();
                for (NeighbourIterator n = front.begin_neighbours(); n != front.end_neighbours(); ++n) {
                    if (visited.insert(*n).second) {
                        working.insert(*n);
                        queue.push_back(*n);
                    }
                }
            }
            out.push_back(std::set<Tn>());
            out.back().swap(working);
        }
        validate();
        return static_cast<int>(out.size());
    }

    int ncomponents() const { return ncomponents(0); }

    /// Counts components, stopping as soon as the count reaches `limit`;
    /// a limit of 0 counts them all.
    int ncomponents(unsigned int limit) const {
        unsigned int count = 0;
        std::unordered_set<Tn> visited;
        std::deque<Tn> queue;
        for (typename std::map<Tn, Node>::const_iterator i = nodes_.begin(); i != nodes_.end(); ++i) {
            if (visited.count(i->first) != 0) continue;
            ++count;
            if (count == limit) return static_cast<int>(count);
            visited.insert(i->first);
            queue.push_back(i->first);
            while (!queue.empty()) {
                const Node& front = nodes_.find(queue.front())->second;
                queue.pop_front();
                for (NeighbourIterator n = front.begin_neighbours(); n != front.end_neighbours(); ++n)
                    if (visited.insert(*n).second) queue.push_back(*n);
            }
        }
        return static_cast<int>(count);
    }

    /// At most one component; an empty graph counts as contiguous.
    bool contiguous() const { return ncomponents(2) < 2; }

    /// The nodes reached from `n1` without crossing the edge `n1`-`n2`, in
    /// breadth-first order starting with `n1`. False, with `out` empty, when
    /// the edge lies on a cycle. No edge between them throws std::invalid_argument.
    bool nodes_one_side(const Tn& n1, const Tn& n2, std::vector<Tn>& out) const {
        if (!has_edge(n1, n2))
            throw std::invalid_argument("Graph::nodes_one_side(): no edge containing node1 and node2");
        out.clear();
        // Membership is kept in a hash set beside `out`; the order is that of `out`.
        std::unordered_set<Tn> seen;
        out.push_back(n1);
        seen.insert(n1);
        const Node& first = nodes_.find(n1)->second;
        for (NeighbourIterator n = first.begin_neighbours(); n != first.end_neighbours(); ++n) {
            if (raw_identifier(*n) == raw_identifier(n2)) continue;
            out.push_back(*n);
            seen.insert(*n);
        }
        for (std::size_t index = 1; index < out.size(); ++index) {
            const Node& node = nodes_.find(out[index])->second;
            for (NeighbourIterator n = node.begin_neighbours(); n != node.end_neighbours(); ++n) {
                if (raw_identifier(*n) == raw_identifier(n2)) {
                    out.clear();
                    return false;
                }
                if (seen.insert(*n).second) out.push_back(*n);
            }
        }
        return true;
    }

    /// Both sides of the edge `n1`-`n2`: `left` from `n1` and, if the edge is
    /// not on a cycle, `right` from `n2`. Returns the last result obtained.
    bool nodes_either_side(const Tn& n1, const Tn& n2, std::vector<Tn>& left, std::vector<Tn>& right) const {
        left.clear();
        right.clear();
        bool result = nodes_one_side(n1, n2, left);
        if (result) result = nodes_one_side(n2, n1, right);
        return result;
    }

    /// A shortest path from `from` to `to`, both included. Among equally short
    /// paths the first found wins, so ties break by neighbour order. False,
    /// with `path` empty, if there is none, a node is unknown or the two are one.
    bool shortest_path(const Tn& from, const Tn& to, std::vector<Tn>& path) const {
        path.clear();
        if (!has_node(from) || !has_node(to) || raw_identifier(from) == raw_identifier(to)) return false;
        // Breadth first with a predecessor per node instead of a whole path per
        // node: the same path wins, in memory linear in the graph.
        std::unordered_map<Tn, Tn> parent;
        parent.emplace(from, from);
        std::deque<Tn> queue;
        queue.push_back(from);
        while (!queue.empty()) {
            Tn front = queue.front();
            queue.pop_front();
            const Node& node = nodes_.find(front)->second;
            for (NeighbourIterator n = node.begin_neighbours(); n != node.end_neighbours(); ++n) {
                if (raw_identifier(*n) == raw_identifier(to)) {
                    path.push_back(to);
                    for (Tn step = front;; step = parent.find(step)->second) {
                        path.push_back(step);
                        if (raw_identifier(step) == raw_identifier(from)) break;
                    }
                    std::reverse(path.begin(), path.end());
                    return true;
                }
                if (parent.emplace(*n, front).second) queue.push_back(*n);
            }
        }
        return false;
    }

    /// Hides the edge between `n1` and `n2` from the adjacency; edge lookups
    /// by identifier still answer. Touches no cache: pair with unsuppress_edge.
    void suppress_edge(Tn n1, Tn n2) const {
        typename std::map<Tn, Node>::iterator a = nodes_.find(n1);
        if (a == nodes_.end()) return;
        ring_index_.invalidate();
        a->second.remove_neighbour(n2);
        typename std::map<Tn, Node>::iterator b = nodes_.find(n2);
        if (b != nodes_.end()) b->second.remove_neighbour(n1);
    }

    /// Puts each end back into the other's neighbours, independently, on
    /// each end that exists, whether or not an edge stands behind the pair.
    void unsuppress_edge(Tn n1, Tn n2) const {
        // A neighbour must be a node of its own and never the node itself:
        // an unknown end, or a pair of one node, adds nothing.
        if (raw_identifier(n1) == raw_identifier(n2)) return;
        typename std::map<Tn, Node>::iterator a = nodes_.find(n1);
        typename std::map<Tn, Node>::iterator b = nodes_.find(n2);
        if (a == nodes_.end() || b == nodes_.end()) return;
        ring_index_.invalidate();
        a->second.add_neighbour(n2);
        b->second.add_neighbour(n1);
    }

    /// Empties the scratch path of every node.
    void clear_node_paths() const {
        for (typename std::map<Tn, Node>::iterator i = nodes_.begin(); i != nodes_.end(); ++i) i->second.path().clear();
    }

    // --- ring perception (defined in Graph_rings.h) ---------------------------
    //
    // A ring is the set of its nodes. Neighbours are walked in set order, and
    // where two rings are equally small the first found wins: that order is
    // the tie-break. The searches leave the adjacency as they found it.

    /// Smallest ring through `root`, which must have exactly two neighbours.
    /// Returns its size, 0 (with `ring` empty) if there is none.
    int node2_smallest_ring(const Tn& root, std::set<Tn>& ring) const;
    /// Smallest ring through `node`, tried over each pair of its neighbours.
    int node_smallest_ring(const Tn& node, std::set<Tn>& ring) const;
    /// node_smallest_ring when that ring has fewer than `limit` nodes; else
    /// 0 with `ring` empty, found without searching past that size.
    int node_smallest_ring_below(const Tn& node, int limit, std::set<Tn>& ring) const;
    /// Smallest ring through the edge `node1`-`node2`.
    int edge_smallest_ring(const Tn& node1, const Tn& node2, std::set<Tn>& ring) const;
    /// Smallest ring through the path `left`-`middle`-`right`.
    int angle_smallest_ring(const Tn& left, const Tn& middle, const Tn& right, std::set<Tn>& ring) const;
    /// Whether `node` lies on a ring; the size of its smallest ring goes to
    /// `ringsize` unless it is null. Cached per node until the edges change.
    bool is_node_cyclic(const Tn& node, int* ringsize) const;
    /// Whether the edge `node1`-`node2` lies on a ring. With a null
    /// `ringsize` no ring is searched for; otherwise its smallest ring's size
    /// is stored there.
    bool is_edge_cyclic(const Tn& node1, const Tn& node2, int* ringsize) const;
    bool is_edge_cyclic(const Te& edge, int* ringsize) const;
    /// All rings of the graph, by fused assembly: assembly k owns
    /// `rings[bounds[k]]` up to `rings[bounds[k + 1]]`. Returns the number of
    /// assemblies.
    int ring_assemblies(std::deque<std::set<Tn> >& rings, std::deque<int>& bounds) const;
    /// The rings of `ring_assemblies`, cached until the edges change. Returns
    /// their number.
    int basic_ring_set(std::deque<std::set<Tn> >& rings) const;
    /// Chooses the rings of one assembly of candidate rings (as edge sets;
    /// sorted here by size) and appends them to `rings`.
    void select_rings_from_assembly(std::deque<std::set<Te> >& assembly, std::deque<std::set<Tn> >& rings) const;
    /// The edges of the subgraph induced by `nodes`.
    std::set<Te> nodes_to_edges(const std::set<Tn>& nodes) const;
    /// Both ends of each edge.
    std::set<Tn> edges_to_nodes(const std::set<Te>& edges) const;
    /// Extended connectivity of order `order` (at least 1): the degree for
    /// order 1, then repeatedly the sum of the neighbours' values.
    std::map<Tn, int> extended_conn(int order) const;

    /// Consistency hook run after mutating operations and components; it
    /// checks nothing, so that it costs nothing and holds between
    /// suppress_edge and unsuppress_edge. Tests call consistent().
    void validate() const {}

    /// True when every edge has its twin by pair, both its ends exist and
    /// list each other, and no node lists a neighbour without an edge.
    bool consistent() const {
        if (edges_.size() != edge_ids_.size()) return false;
        std::size_t adjacency = 0;
        for (typename std::map<Tn, Node>::const_iterator i = nodes_.begin(); i != nodes_.end(); ++i)
            adjacency += i->second.neighbours().size();
        if (adjacency != 2 * edges_.size()) return false;
        for (typename std::map<Te, Edge>::const_iterator i = edges_.begin(); i != edges_.end(); ++i) {
            typename std::map<Edge, Te>::const_iterator twin = edge_ids_.find(i->second);
            if (twin == edge_ids_.end() || !(twin->second == i->first)) return false;
            if (!has_edge(i->second.id1(), i->second.id2()) || !has_edge(i->second.id2(), i->second.id1()))
                return false;
        }
        return true;
    }

    // --- access for the layers above -----------------------------------------

    int nnodes() const { return static_cast<int>(nodes_.size()); }
    int nedges() const { return static_cast<int>(edges_.size()); }
    /// The nodes, in identifier order.
    const std::map<Tn, Node>& nodes() const { return nodes_; }
    /// The edges by identifier.
    const std::map<Te, Edge>& edges() const { return edges_; }
    /// The edges by end pair.
    const std::map<Edge, Te>& edge_ids() const { return edge_ids_; }

protected:
    /// Drops the ring caches, as every edge insertion or removal must.
    void drop_ring_caches() {
        if (!node_ring_sizes_.empty()) node_ring_sizes_.clear();
        ring_set_valid_ = false;
        ring_index_.invalidate();
    }

    /// The search index of the current adjacency, built if stale.
    detail::RingSearchIndex<Tn>& ring_index() const;
    /// Smallest ring at index node `u` over pairs of its neighbours, if it
    /// has fewer than `limit` nodes (else 0); the ring goes to `ring` unless
    /// it is null, when only the size is wanted.
    int smallest_ring_at_node(int u, std::set<Tn>* ring, int limit = INT_MAX) const;
    /// Smallest ring through the edge from index node `a` to `b`, rooted at `a`.
    int smallest_ring_at_edge(int a, int b, std::set<Tn>* ring) const;
    /// edge_smallest_ring, with its checks; only the size when `ring` is null.
    int edge_ring(const Tn& node1, const Tn& node2, std::set<Tn>* ring) const;
    /// The ring through `root` and its slots `s1`, `s2` (in any order), or 0.
    int ring_at_angle(int root, int s1, int s2, std::set<Tn>& ring) const;

    Node& node_for(const Tn& n) {
        typename std::map<Tn, Node>::iterator found = nodes_.lower_bound(n);
        if (found == nodes_.end() || nodes_.key_comp()(n, found->first))
            found = nodes_.insert(found, std::make_pair(n, Node(n)));
        return found->second;
    }

    mutable std::map<Tn, Node> nodes_;  // mutable: searches suppress edges and keep scratch paths
    std::map<Te, Edge> edges_;
    std::map<Edge, Te> edge_ids_;
    mutable std::map<Tn, int> node_ring_sizes_;  // smallest ring size per node asked about; 0 acyclic
    mutable bool ring_set_valid_ = false;
    mutable std::deque<std::set<Tn> > ring_set_;
    mutable detail::RingSearchIndex<Tn> ring_index_;  // dropped on every change to nodes or adjacency
};

}  // namespace molcryst

#include "molcryst/graph/Graph_rings.h"

#endif
