// Graph_rings: the ring searches of Graph, defined out of line so that the
// class in Graph.h stays readable. Graph.h includes this header at its end.
//
// A ring through a root node and two of its edges is found by a breadth-first
// search in two waves, one from each of the two neighbours, with the root's
// other edges left out; the first node of one wave to meet a node of the other
// closes the ring, and the ring is the two paths back to the root. Each search
// keeps a predecessor and a wave per node in a RingSearchIndex rather than a
// whole path per node, skips pairs of edges that share no block (they close no
// ring), and stops a level-by-level search once it can no longer beat the best
// ring already found. None of this changes which ring is found first, so the
// rings and the ties between equally small rings are those of the plain
// two-wave search on the graph's own neighbour order.
#ifndef MOLCRYST_GRAPH_GRAPH_RINGS_H
#define MOLCRYST_GRAPH_GRAPH_RINGS_H

#include <algorithm>
#include <climits>
#include <deque>
#include <map>
#include <set>
#include <stdexcept>
#include <vector>

#include "molcryst/graph/Graph.h"

namespace molcryst {

template <class Tn, class Te>
detail::RingSearchIndex<Tn>& Graph<Tn, Te>::ring_index() const {
    if (!ring_index_.valid()) ring_index_.build(nodes_);
    return ring_index_;
}

template <class Tn, class Te>
int Graph<Tn, Te>::ring_at_angle(int root, int s1, int s2, std::set<Tn>& ring) const {
    detail::RingSearchIndex<Tn>& index = ring_index_;
    if (index.block(s1) < 0 || index.block(s1) != index.block(s2)) return 0;
    // The wave of the neighbour first in neighbour order starts first.
    if (index.target(s2) < index.target(s1)) std::swap(s1, s2);
    std::vector<int> members;
    const int size = index.ring_through(root, s1, s2, INT_MAX, &members);
    for (int m : members) ring.insert(index.id(m));
    return size;
}

template <class Tn, class Te>
int Graph<Tn, Te>::smallest_ring_at_node(int u, std::set<Tn>* ring, int limit) const {
    detail::RingSearchIndex<Tn>& index = ring_index_;
    // A ring of `limit` nodes or more would be refused in the end, so none is
    // searched for: the first ring below it is the one the open search keeps.
    int best = limit;
    std::vector<int> members, best_members;
    const int end = index.end_slots(u);
    // Each pair of neighbours once, in neighbour order; a later ring replaces
    // the best only if strictly smaller, and none is smaller than 3.
    for (int si = index.begin_slots(u); si < end && best > 3; ++si) {
        if (index.degree(index.target(si)) < 2) continue;  // a dead end once u is left out
        for (int sj = si + 1; sj < end && best > 3; ++sj) {
            if (index.degree(index.target(sj)) < 2) continue;
            const int block = index.block(si);
            if (block < 0 || block != index.block(sj)) continue;
            int size;
            if (ring == nullptr && index.block_is_cycle(block)) {
                size = index.block_nodes(block);  // the block is the only ring there
                if (size >= limit) size = 0;
            } else
                size = index.ring_through(u, si, sj, best, ring == nullptr ? nullptr : &members);
            if (size != 0 && size < best) {
                best = size;
                best_members.swap(members);
            }
        }
    }
    if (best == limit) return 0;
    if (ring != nullptr)
        for (int m : best_members) ring->insert(index.id(m));
    return best;
}

template <class Tn, class Te>
int Graph<Tn, Te>::smallest_ring_at_edge(int a, int b, std::set<Tn>* ring) const {
    detail::RingSearchIndex<Tn>& index = ring_index_;
    const int sb = index.slot(a, b);
    if (sb < 0 || index.is_bridge(sb)) return 0;
    const int block = index.block(sb);
    if (ring == nullptr && index.block_is_cycle(block)) return index.block_nodes(block);
    int best = INT_MAX;
    std::vector<int> members, best_members;
    // The edge with each other edge of `a` in turn, in neighbour order.
    for (int sc = index.begin_slots(a); sc < index.end_slots(a) && best > 3; ++sc) {
        if (sc == sb || index.block(sc) != block) continue;
        const int size = sc < sb ? index.ring_through(a, sc, sb, best, ring == nullptr ? nullptr : &members)
                                 : index.ring_through(a, sb, sc, best, ring == nullptr ? nullptr : &members);
        if (size != 0 && size < best) {
            best = size;
            best_members.swap(members);
        }
    }
    if (best == INT_MAX) return 0;
    if (ring != nullptr)
        for (int m : best_members) ring->insert(index.id(m));
    return best;
}

template <class Tn, class Te>
int Graph<Tn, Te>::node2_smallest_ring(const Tn& root, std::set<Tn>& ring) const {
    typename std::map<Tn, Node>::const_iterator found = nodes_.find(root);
    if (found == nodes_.end())
        throw std::invalid_argument("Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not exist");
    if (found->second.degree() != 2)
        throw std::invalid_argument(
            "Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not have degree = 2");
    ring.clear();
    detail::RingSearchIndex<Tn>& index = ring_index();
    const int u = index.find(root);
    if (index.degree(u) != 2) return 0;  // a neighbour that is not a node leads nowhere
    return ring_at_angle(u, index.begin_slots(u), index.begin_slots(u) + 1, ring);
}

template <class Tn, class Te>
int Graph<Tn, Te>::node_smallest_ring(const Tn& node, std::set<Tn>& ring) const {
    if (!has_node(node))
        throw std::invalid_argument("Graph::node_smallest_ring(T& node, std::set<Tn>& ring):node does not exist");
    ring.clear();
    detail::RingSearchIndex<Tn>& index = ring_index();
    return smallest_ring_at_node(index.find(node), &ring);
}

template <class Tn, class Te>
int Graph<Tn, Te>::node_smallest_ring_below(const Tn& node, int limit, std::set<Tn>& ring) const {
    if (!has_node(node))
        throw std::invalid_argument("Graph::node_smallest_ring(T& node, std::set<Tn>& ring):node does not exist");
    ring.clear();
    detail::RingSearchIndex<Tn>& index = ring_index();
    return smallest_ring_at_node(index.find(node), &ring, limit);
}

template <class Tn, class Te>
int Graph<Tn, Te>::edge_smallest_ring(const Tn& node1, const Tn& node2, std::set<Tn>& ring) const {
    return edge_ring(node1, node2, &ring);
}

template <class Tn, class Te>
int Graph<Tn, Te>::edge_ring(const Tn& node1, const Tn& node2, std::set<Tn>* ring) const {
    if (raw_identifier(node1) == raw_identifier(node2))
        throw std::invalid_argument(
            "Graph::edge_smallest_ring(Tn& node1, Tn& node2, std::set<Tn>& ring):node1 and node2 are identical");
    if (!has_edge(node1, node2))
        throw std::invalid_argument(
            "Graph::edge_smallest_ring(Tn& node1, Tn& node2, std::set<Tn>& ring):node1 and node2 are not connected");
    // Rooted at the end of lower degree, node1 on a tie: fewer pairs to try.
    const bool swap = degree_node(node2) < degree_node(node1);
    const Tn& a = swap ? node2 : node1;
    const Tn& b = swap ? node1 : node2;
    if (ring != nullptr) ring->clear();
    detail::RingSearchIndex<Tn>& index = ring_index();
    return smallest_ring_at_edge(index.find(a), index.find(b), ring);
}

template <class Tn, class Te>
int Graph<Tn, Te>::angle_smallest_ring(const Tn& left, const Tn& middle, const Tn& right, std::set<Tn>& ring) const {
    if (raw_identifier(left) == raw_identifier(right))
        throw std::invalid_argument(
            "Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& ring):left and right nodes are "
            "identical");
    if (!has_edge(middle, left) || !has_edge(middle, right))
        throw std::invalid_argument(
            "Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& ring):nodes not connected in "
            "sequence left-middle-right");
    ring.clear();
    if (degree_node(left) < 2 || degree_node(right) < 2) return 0;
    detail::RingSearchIndex<Tn>& index = ring_index();
    const int m = index.find(middle);
    const int sl = index.slot(m, index.find(left));
    const int sr = index.slot(m, index.find(right));
    if (sl < 0 || sr < 0) return 0;
    return ring_at_angle(m, sl, sr, ring);
}

template <class Tn, class Te>
bool Graph<Tn, Te>::is_node_cyclic(const Tn& node, int* ringsize) const {
    typename std::map<Tn, int>::iterator cached = node_ring_sizes_.lower_bound(node);
    if (cached != node_ring_sizes_.end() && !node_ring_sizes_.key_comp()(node, cached->first)) {
        if (ringsize != nullptr) *ringsize = cached->second;
        return cached->second != 0;
    }
    detail::RingSearchIndex<Tn>& index = ring_index();
    const int u = index.find(node);  // the index knows exactly the nodes of the graph
    if (u < 0) throw std::invalid_argument("Graph::node_smallest_ring(T& node, std::set<Tn>& ring):node does not exist");
    const int size = smallest_ring_at_node(u, nullptr);
    node_ring_sizes_.emplace_hint(cached, node, size);
    if (ringsize != nullptr) *ringsize = size;
    validate();
    return size != 0;
}

template <class Tn, class Te>
bool Graph<Tn, Te>::is_edge_cyclic(const Tn& node1, const Tn& node2, int* ringsize) const {
    if (ringsize == nullptr) {
        // No ring search: an edge is cyclic exactly when it is no bridge.
        if (degree_node(node1) < 2 || degree_node(node2) < 2) return false;
        if (!has_edge(node1, node2))
            throw std::invalid_argument("Graph::nodes_one_side(): no edge containing node1 and node2");
        detail::RingSearchIndex<Tn>& index = ring_index();
        const int s = index.slot(index.find(node1), index.find(node2));
        return s >= 0 && !index.is_bridge(s);
    }
    const int size = edge_ring(node1, node2, nullptr);
    *ringsize = size;
    validate();
    return size != 0;
}

template <class Tn, class Te>
bool Graph<Tn, Te>::is_edge_cyclic(const Te& edge, int* ringsize) const {
    typename std::map<Te, Edge>::const_iterator found = edges_.find(edge);
    if (found == edges_.end())
        throw std::invalid_argument("Graph::is_edge_cyclic(Te& edge, int* ringsize): specified edge does not exist");
    return is_edge_cyclic(found->second.id1(), found->second.id2(), ringsize);
}

template <class Tn, class Te>
std::set<Te> Graph<Tn, Te>::nodes_to_edges(const std::set<Tn>& nodes) const {
    std::set<Te> result;
    for (const Tn& n : nodes) {
        typename std::map<Tn, Node>::const_iterator found = nodes_.find(n);
        if (found == nodes_.end())
            throw std::invalid_argument("Graph::nodes_to_edges:   at least one of the nodes does not exist in graph");
        for (NeighbourIterator i = found->second.begin_neighbours(); i != found->second.end_neighbours(); ++i)
            if (nodes.count(*i) != 0) result.insert(edge(n, *i));
    }
    return result;
}

template <class Tn, class Te>
std::set<Tn> Graph<Tn, Te>::edges_to_nodes(const std::set<Te>& edges) const {
    std::set<Tn> result;
    for (const Te& e : edges) {
        result.insert(edge_node1(e));
        result.insert(edge_node2(e));
    }
    return result;
}

namespace detail {

/// select_rings_from_assembly on the numbers of a search index, for
/// ring_assemblies: the same steps, on arrays rather than maps.
template <class Tn>
class RingSelection {
public:
    explicit RingSelection(const detail::RingSearchIndex<Tn>& index)
        : index_(index),
          edge_use_(static_cast<std::size_t>(index.nslots()), 0),
          node_count_(static_cast<std::size_t>(index.nnodes()), 0) {}

    /// Appends the chosen rings of the candidates `assembly` (indices into
    /// `nodes` and `edges`, in assembly order).
    void select(std::vector<int>& assembly, const std::vector<std::vector<int> >& nodes,
                const std::vector<std::vector<int> >& edges, std::deque<std::set<Tn> >& rings) {
        std::stable_sort(assembly.begin(), assembly.end(),
                         [&edges](int a, int b) { return edges[a].size() < edges[b].size(); });
        touched_edges_.clear();
        touched_nodes_.clear();
        for (int c : assembly)
            for (int s : edges[c]) {
                if (edge_use_[s] == 0) touched_edges_.push_back(s);
                edge_use_[s] = 1;  // 1 + the number of selected rings, while in use here
                for (int end : {owner(s), index_.target(s)}) {
                    if (node_count_[end] == 0) touched_nodes_.push_back(end);
                    ++node_count_[end];
                }
            }
        // Every edge gets a ring, and two if the rings are smaller than 9.
        for (int c : assembly) {
            const std::vector<int>& ring = edges[c];
            bool selected = false;
            for (int s : ring) {
                const int use = edge_use_[s] - 1;
                if (use < 1 || (use < 2 && ring.size() < 9)) {
                    selected = true;
                    break;
                }
            }
            if (!selected) continue;
            for (int s : ring) ++edge_use_[s];
            rings.push_back(std::set<Tn>());
            for (int u : nodes[c]) rings.back().insert(rings.back().end(), index_.id(u));
        }
        // Rings the angles miss, among the edges short of two rings whose
        // ends both lie on more than one ring edge.
        std::vector<std::pair<int, int> > residual_edges;
        for (int s : touched_edges_)
            if (edge_use_[s] - 1 < 2 && node_count_[owner(s)] >= 3 && node_count_[index_.target(s)] >= 3)
                residual_edges.push_back(std::make_pair(owner(s), index_.target(s)));
        if (residual_edges.size() >= 3) {
            Graph<Tn, int> residual;
            std::vector<int> ends;
            for (std::size_t i = 0; i < residual_edges.size(); ++i) {
                residual.add_edge(static_cast<int>(i), index_.id(residual_edges[i].first),
                                  index_.id(residual_edges[i].second));
                ends.push_back(residual_edges[i].first);
                ends.push_back(residual_edges[i].second);
            }
            std::sort(ends.begin(), ends.end());  // identifier order
            ends.erase(std::unique(ends.begin(), ends.end()), ends.end());
            std::set<std::set<Tn> > found;
            std::set<Tn> ring;
            for (int u : ends) {
                const int size = residual.node_smallest_ring_below(index_.id(u), 9, ring);
                if (size != 0 && found.insert(ring).second) rings.push_back(ring);
            }
        }
        for (int s : touched_edges_) edge_use_[s] = 0;
        for (int u : touched_nodes_) node_count_[u] = 0;
    }

private:
    int owner(int slot) const { return index_.owner(slot); }

    const detail::RingSearchIndex<Tn>& index_;
    std::vector<int> edge_use_;    // by slot of the lower end: 0 unused here, else 1 + rings selected
    std::vector<int> node_count_;  // by node: ends of the assembly's ring edges
    std::vector<int> touched_edges_, touched_nodes_;
};

}  // namespace detail

template <class Tn, class Te>
int Graph<Tn, Te>::ring_assemblies(std::deque<std::set<Tn> >& rings, std::deque<int>& bounds) const {
    rings.clear();
    bounds.clear();
    // The work is done on node and slot numbers of the search index: a ring
    // is its node numbers, an edge the slot leaving its lower-numbered end.
    // Numbers follow the order of identifiers, and nothing below depends on
    // the order of edge identifiers, so the rings and their order are those
    // of the same steps on identifier sets.
    detail::RingSearchIndex<Tn>& index = ring_index();
    const int n = index.nnodes();

    // Candidates: the smallest ring through each angle, unless it has a chord
    // or is already there. A node set seen once is not judged again: it has
    // the same edges and the same verdict.
    std::vector<std::vector<int> > ring_nodes, ring_edges;
    {
        std::set<std::vector<int> > judged;
        std::vector<int> members, edges;
        std::vector<char> member(static_cast<std::size_t>(n), 0);
        // A block that is one simple cycle is the same ring through each of
        // its angles: it is searched for at the first and judged only there.
        std::vector<char> cycle_seen;
        for (int b = 0; b < index.nblocks() && cycle_seen.empty(); ++b)
            if (index.block_is_cycle(b)) cycle_seen.assign(static_cast<std::size_t>(index.nblocks()), 0);
        for (int m = 0; m < n; ++m) {
            if (index.degree(m) <= 1) continue;
            const int end = index.end_slots(m);
            for (int sp = index.begin_slots(m); sp < end; ++sp) {
                if (index.degree(index.target(sp)) < 2) continue;
                for (int sq = sp + 1; sq < end; ++sq) {
                    if (index.degree(index.target(sq)) < 2) continue;
                    const int block = index.block(sp);
                    if (block < 0 || block != index.block(sq)) continue;
                    if (!cycle_seen.empty() && index.block_is_cycle(block)) {
                        if (cycle_seen[block]) continue;
                        cycle_seen[block] = 1;
                    }
                    if (index.ring_through(m, sp, sq, INT_MAX, &members) == 0) continue;
                    std::sort(members.begin(), members.end());
                    if (!judged.insert(members).second) continue;
                    // The induced edges; more edges than nodes means a chord.
                    for (int u : members) member[u] = 1;
                    edges.clear();
                    for (int u : members)
                        for (int s = index.begin_slots(u); s < index.end_slots(u); ++s)
                            if (u < index.target(s) && member[index.target(s)]) edges.push_back(s);
                    for (int u : members) member[u] = 0;
                    if (edges.size() > members.size()) continue;
                    ring_nodes.push_back(members);
                    ring_edges.push_back(edges);
                }
            }
        }
    }
    const int ncandidates = static_cast<int>(ring_nodes.size());
    if (ncandidates == 0) return 0;

    // Assemblies: candidates joined through shared edges, gathered breadth
    // first; each step queues the unflagged candidates that share an edge with
    // the one taken, in candidate order. Sharing only a node does not fuse.
    std::vector<int> first_holder(static_cast<std::size_t>(index.nslots()) + 1, 0), holders;
    for (const std::vector<int>& edges : ring_edges)
        for (int s : edges) ++first_holder[s + 1];
    for (int s = 0; s < index.nslots(); ++s) first_holder[s + 1] += first_holder[s];
    holders.resize(static_cast<std::size_t>(first_holder.back()));
    {
        std::vector<int> fill(first_holder.begin(), first_holder.end() - 1);
        for (int c = 0; c < ncandidates; ++c)
            for (int s : ring_edges[c]) holders[fill[s]++] = c;
    }
    std::vector<char> flagged(static_cast<std::size_t>(ncandidates), 0);
    std::vector<int> assembly, touching;
    std::deque<int> queue;
    detail::RingSelection<Tn> selection(index);
    bounds.push_back(0);
    for (int i = 0; i < ncandidates; ++i) {
        if (flagged[i]) continue;
        flagged[i] = 1;
        assembly.clear();
        queue.push_back(i);
        while (!queue.empty()) {
            const int j = queue.front();
            queue.pop_front();
            assembly.push_back(j);
            touching.clear();
            for (int s : ring_edges[j])
                for (int h = first_holder[s]; h < first_holder[s + 1]; ++h)
                    if (!flagged[holders[h]]) touching.push_back(holders[h]);
            std::sort(touching.begin(), touching.end());
            touching.erase(std::unique(touching.begin(), touching.end()), touching.end());
            for (int k : touching) {
                flagged[k] = 1;
                queue.push_back(k);
            }
        }
        selection.select(assembly, ring_nodes, ring_edges, rings);
        bounds.push_back(static_cast<int>(rings.size()));
    }
    return static_cast<int>(bounds.size()) - 1;
}

template <class Tn, class Te>
void Graph<Tn, Te>::select_rings_from_assembly(std::deque<std::set<Te> >& assembly,
                                               std::deque<std::set<Tn> >& rings) const {
    std::stable_sort(assembly.begin(), assembly.end(), CompareSize<Te>());

    // For each edge its number of selected rings, and its ends, looked up once.
    struct Use {
        int rings;
        const Edge* ends;
    };
    std::map<Te, Use> edge_use;
    std::map<Tn, int> node_count;  // ends of ring edges, each occurrence counting
    for (const std::set<Te>& ring : assembly)
        for (const Te& e : ring) {
            typename std::map<Te, Use>::iterator use = edge_use.lower_bound(e);
            if (use == edge_use.end() || edge_use.key_comp()(e, use->first)) {
                typename std::map<Te, Edge>::const_iterator found = edges_.find(e);
                if (found == edges_.end()) throw std::invalid_argument("Graph::edge_node1:  no edge with specified id");
                use = edge_use.emplace_hint(use, e, Use{0, &found->second});
            }
            ++node_count[use->second.ends->id1()];
            ++node_count[use->second.ends->id2()];
        }

    // Every edge gets a ring, and two if the rings are smaller than 9.
    for (const std::set<Te>& ring : assembly) {
        bool selected = false;
        for (const Te& e : ring) {
            const int use = edge_use.find(e)->second.rings;
            if (use < 1 || (use < 2 && ring.size() < 9)) {
                selected = true;
                break;
            }
        }
        if (!selected) continue;
        std::set<Tn> nodes;  // edges_to_nodes of the ring
        for (const Te& e : ring) {
            Use& use = edge_use.find(e)->second;
            ++use.rings;
            nodes.insert(use.ends->id1());
            nodes.insert(use.ends->id2());
        }
        rings.push_back(std::set<Tn>());
        rings.back().swap(nodes);
    }

    // The candidates are only smallest rings through angles; rings they miss
    // are looked for among the edges still short of two rings whose ends both
    // lie on more than one ring edge.
    Graph<Tn, int> residual;
    std::set<Tn> ends;
    int nresidual = 0;
    for (typename std::map<Te, Use>::const_iterator i = edge_use.begin(); i != edge_use.end(); ++i) {
        if (i->second.rings >= 2) continue;
        const Tn& n1 = i->second.ends->id1();
        const Tn& n2 = i->second.ends->id2();
        if (node_count[n1] < 3 || node_count[n2] < 3) continue;
        residual.add_edge(nresidual++, n1, n2);
        ends.insert(n1);
        ends.insert(n2);
    }
    if (nresidual < 3) return;
    std::set<std::set<Tn> > found;
    std::set<Tn> ring;
    // Rings of 9 or more are not kept, so none is searched for.
    for (const Tn& n : ends) {
        const int size = residual.node_smallest_ring_below(n, 9, ring);
        if (size != 0 && found.insert(ring).second) rings.push_back(ring);
    }
}

template <class Tn, class Te>
int Graph<Tn, Te>::basic_ring_set(std::deque<std::set<Tn> >& rings) const {
    if (!ring_set_valid_) {
        std::deque<int> bounds;
        ring_assemblies(rings, bounds);
        ring_set_ = rings;
        ring_set_valid_ = true;
    } else {
        rings = ring_set_;
    }
    return static_cast<int>(rings.size());
}

template <class Tn, class Te>
std::map<Tn, int> Graph<Tn, Te>::extended_conn(int order) const {
    if (order < 1) throw std::invalid_argument("Graph::extended_conn:  requested order was < 1");
    detail::RingSearchIndex<Tn>& index = ring_index();
    const int n = index.nnodes();
    // Sums wrap around as 32-bit integers do; they are not guarded against overflow.
    std::vector<unsigned int> value(static_cast<std::size_t>(n)), next(static_cast<std::size_t>(n));
    int u = 0;
    for (typename std::map<Tn, Node>::const_iterator i = nodes_.begin(); i != nodes_.end(); ++i, ++u)
        value[u] = static_cast<unsigned int>(i->second.degree());
    for (int round = 1; round < order; ++round) {
        for (u = 0; u < n; ++u) {
            unsigned int sum = 0;
            for (int s = index.begin_slots(u); s < index.end_slots(u); ++s) sum += value[index.target(s)];
            next[u] = sum;
        }
        value.swap(next);
    }
    std::map<Tn, int> result;
    for (u = 0; u < n; ++u) result.emplace_hint(result.end(), index.id(u), static_cast<int>(value[u]));
    return result;
}

}  // namespace molcryst

#endif
