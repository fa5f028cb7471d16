// RingSearchIndex: a compact integer picture of a Graph's adjacency, on which
// the ring searches of Graph run.
//
// A Graph keeps its adjacency in maps and sets of identifiers, which suits
// editing; the ring searches, run on every node of large structures, want
// arrays. The index numbers the nodes in the graph's node order, so that a
// node's neighbours sorted by number come in exactly the order of its
// neighbour set: a search walks them as it would walk the set, and breaks its
// ties the same way.
//
// Edges are grouped into blocks (biconnected components). Two edges at a node
// lie on a common cycle exactly when they are in one block, and every cycle
// through them stays inside that block. So a search for a ring through two
// edges of different blocks has nothing to find, and a search through two
// edges of one block need look at no edge of another block: neither changes
// which ring is found first.
//
// The graph builds the index on demand and drops it on any change to its
// nodes or adjacency. Scratch arrays for the breadth-first searches live here
// too, stamped per search, so that a search costs what it visits and not the
// size of the graph. Memory is linear in nodes plus edges.
#ifndef MOLCRYST_GRAPH_RINGSEARCHINDEX_H
#define MOLCRYST_GRAPH_RINGSEARCHINDEX_H

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "molcryst/graph/EdgeData.h"

namespace molcryst {
namespace detail {

/// Integer adjacency, blocks and search scratch for one state of a graph's
/// adjacency. Node numbers follow `std::less<Tn>`; a slot is one direction
/// of an edge, stored with the node it leaves.
template <class Tn>
class RingSearchIndex {
public:
    RingSearchIndex() = default;
    // A copy starts stale: the identifiers it points at belong to the other graph.
    RingSearchIndex(const RingSearchIndex&) {}
    RingSearchIndex& operator=(const RingSearchIndex&) {
        valid_ = false;
        return *this;
    }

    bool valid() const { return valid_; }
    /// O(1): the arrays are kept for reuse and rebuilt on the next build.
    void invalidate() { valid_ = false; }

    /// Numbers the nodes of `nodes` (a map from identifier to data with a
    /// `neighbours()` set) in map order and finds the blocks. Neighbours that
    /// are not nodes of the map are left out.
    template <class NodeMap>
    void build(const NodeMap& nodes) {
        // One walk over the graph's maps, which is what costs at scale: the
        // neighbours are noted by raw value and numbered afterwards.
        ids_.clear();
        raws_.clear();
        ids_.reserve(nodes.size());
        raws_.reserve(nodes.size());
        first_.assign(nodes.size() + 1, 0);
        std::vector<Raw>& neighbour_raws = neighbour_raws_;
        std::vector<const Tn*>& neighbour_ids = neighbour_ids_;
        neighbour_raws.clear();
        neighbour_ids.clear();
        int u = 0;
        for (typename NodeMap::const_iterator i = nodes.begin(); i != nodes.end(); ++i, ++u) {
            ids_.push_back(&i->first);
            raws_.push_back(raw_identifier(i->first));
            first_[u] = static_cast<int>(neighbour_ids.size());
            for (const Tn& neighbour : i->second.neighbours()) {
                neighbour_ids.push_back(&neighbour);
                neighbour_raws.push_back(raw_identifier(neighbour));
            }
        }
        const int n = static_cast<int>(ids_.size());
        first_[n] = static_cast<int>(neighbour_ids.size());
        // Handles come in descending raw order and integers in ascending
        // order; either way lookups can search the raw values, kept together
        // in memory, instead of the identifiers scattered over the heap.
        raw_order_ = 0;
        if (std::is_sorted(raws_.begin(), raws_.end(), std::greater<Raw>()))
            raw_order_ = -1;
        else if (std::is_sorted(raws_.begin(), raws_.end()))
            raw_order_ = 1;
        // Neighbours that are not nodes (possible only after unsuppress_edge
        // with an unknown node) are dropped.
        adjacent_.clear();
        adjacent_.reserve(neighbour_ids.size());
        for (u = 0; u < n; ++u) {
            const int begin = first_[u], end = first_[u + 1];
            first_[u] = static_cast<int>(adjacent_.size());
            for (int s = begin; s < end; ++s) {
                const int v = raw_order_ != 0 ? find_raw_near(neighbour_raws[s], u) : find(*neighbour_ids[s]);
                if (v >= 0) adjacent_.push_back(v);
            }
        }
        first_[n] = static_cast<int>(adjacent_.size());
        find_blocks();
        stamp_.assign(static_cast<std::size_t>(n), 0);
        parent_.assign(static_cast<std::size_t>(n), -1);
        depth_.assign(static_cast<std::size_t>(n), 0);
        side_.assign(static_cast<std::size_t>(n), 0);
        epoch_ = 0;
        valid_ = true;
    }

    int nnodes() const { return static_cast<int>(ids_.size()); }
    /// The number of `n`, or -1 when it is not a node.
    int find(const Tn& n) const {
        if (raw_order_ != 0) return find_raw(raw_identifier(n));
        typename std::vector<const Tn*>::const_iterator found =
            std::lower_bound(ids_.begin(), ids_.end(), &n, [](const Tn* a, const Tn* b) { return std::less<Tn>()(*a, *b); });
        if (found == ids_.end() || std::less<Tn>()(n, **found)) return -1;
        return static_cast<int>(found - ids_.begin());
    }
    const Tn& id(int u) const { return *ids_[u]; }

    int degree(int u) const { return first_[u + 1] - first_[u]; }
    int nslots() const { return static_cast<int>(adjacent_.size()); }
    int begin_slots(int u) const { return first_[u]; }
    int end_slots(int u) const { return first_[u + 1]; }
    /// The node a slot leads to.
    int target(int slot) const { return adjacent_[slot]; }
    /// The node a slot leaves.
    int owner(int slot) const { return owner_[slot]; }
    /// The slot from `u` to `v`, or -1 when they are not adjacent.
    int slot(int u, int v) const {
        std::vector<int>::const_iterator end = adjacent_.begin() + first_[u + 1];
        std::vector<int>::const_iterator found = std::lower_bound(adjacent_.begin() + first_[u], end, v);
        return found == end || *found != v ? -1 : static_cast<int>(found - adjacent_.begin());
    }

    /// The block of the edge of a slot; -1 only for a one-way adjacency.
    int block(int slot) const { return block_[slot]; }
    /// An edge on no cycle.
    bool is_bridge(int slot) const { return block_[slot] < 0 || block_edges_[block_[slot]] == 1; }
    /// A block that is one simple cycle, whose only ring is itself.
    bool block_is_cycle(int b) const { return block_edges_[b] >= 3 && block_edges_[b] == block_nodes_[b]; }
    int block_nodes(int b) const { return block_nodes_[b]; }
    int nblocks() const { return static_cast<int>(block_nodes_.size()); }

    /// Breadth-first search for the first ring through `root` and the edges of
    /// the two slots `first` and `second` of root, `first` leading to the
    /// neighbour earlier in neighbour order. Both edges must be in one block.
    /// The waves start from the two neighbours, level by level, and the first
    /// meeting of a node of one wave with a node of the other closes the ring;
    /// no other edge of root is followed. Returns the ring's size, or 0 when
    /// there is no ring smaller than `limit`; `members` (if not null) then
    /// receives the ring's nodes.
    int ring_through(int root, int first, int second, int limit, std::vector<int>* members) {
        const int blk = block_[first];
        next_epoch();
        stamp_[root] = epoch_;
        queue_.clear();
        const int ends[2] = {adjacent_[first], adjacent_[second]};
        for (int s = 0; s < 2; ++s) {
            stamp_[ends[s]] = epoch_;
            parent_[ends[s]] = root;
            depth_[ends[s]] = 1;
            side_[ends[s]] = static_cast<signed char>(s);
            queue_.push_back(ends[s]);
        }
        for (std::size_t head = 0; head < queue_.size(); ++head) {
            const int u = queue_[head];
            const long long level = depth_[u];
            // A meeting while walking from this level closes a ring of at
            // least 2 * level + 1 nodes; later levels only do worse.
            if (2 * level + 1 >= limit) return 0;
            for (int s = first_[u]; s < first_[u + 1]; ++s) {
                if (block_[s] != blk) continue;
                const int v = adjacent_[s];
                if (v == root) continue;
                if (stamp_[v] != epoch_) {
                    stamp_[v] = epoch_;
                    parent_[v] = u;
                    depth_[v] = depth_[u] + 1;
                    side_[v] = side_[u];
                    queue_.push_back(v);
                } else if (side_[v] != side_[u]) {
                    // The two paths share only root: a ring.
                    const int size = depth_[u] + depth_[v] + 1;
                    if (size >= limit) return 0;
                    if (members != nullptr) {
                        members->clear();
                        members->push_back(root);
                        for (int w = u; w != root; w = parent_[w]) members->push_back(w);
                        for (int w = v; w != root; w = parent_[w]) members->push_back(w);
                    }
                    return size;
                }
                // Otherwise v is on the same wave: the paths share more than root.
            }
        }
        return 0;
    }

private:
    typedef decltype(raw_identifier(std::declval<const Tn&>())) Raw;

    // Binary search of the monotone raw values, written without branches on
    // the comparison: the lookups of a build are unpredictable.
    int find_raw(Raw raw) const {
        if (raws_.empty()) return -1;
        const Raw* base = raws_.data();
        std::size_t size = raws_.size();
        while (size > 1) {
            const std::size_t half = size / 2;
            const bool before = raw_order_ < 0 ? base[half] > raw : base[half] < raw;
            base = before || base[half] == raw ? base + half : base;
            size -= half;
        }
        return *base == raw ? static_cast<int>(base - raws_.data()) : -1;
    }

    // The same, searching outwards from `hint` first: neighbours tend to
    // have been made together, and so to lie close in address and number.
    int find_raw_near(Raw raw, int hint) const {
        const int n = static_cast<int>(raws_.size());
        auto before = [this, raw](int i) { return raw_order_ < 0 ? raws_[i] > raw : raws_[i] < raw; };
        // Gallop from the hint to bracket the first place not before raw in
        // [low, high], high being that place or n, then halve the bracket.
        int low, high;
        int known = hint, step = 1;
        if (before(hint)) {
            while (known + step < n && before(known + step)) {
                known += step;
                step *= 2;
            }
            low = known + 1;
            high = std::min(n, known + step);
        } else {
            while (known - step >= 0 && !before(known - step)) {
                known -= step;
                step *= 2;
            }
            low = std::max(0, known - step + 1);
            high = known;
        }
        while (low < high) {
            const int middle = low + (high - low) / 2;
            if (before(middle))
                low = middle + 1;
            else
                high = middle;
        }
        return low < n && raws_[low] == raw ? low : -1;
    }

    void next_epoch() {
        if (++epoch_ == 0) {
            std::fill(stamp_.begin(), stamp_.end(), 0u);
            epoch_ = 1;
        }
    }

    // Blocks by the edge-stack form of the depth-first low-point method, with
    // an explicit stack so that a long chain cannot exhaust the call stack.
    void find_blocks() {
        const int n = static_cast<int>(ids_.size());
        block_.assign(adjacent_.size(), -1);
        block_edges_.clear();
        block_nodes_.clear();
        std::vector<int> order(static_cast<std::size_t>(n), -1), low(static_cast<std::size_t>(n), 0);
        std::vector<int> last_block(static_cast<std::size_t>(n), -1);
        struct Frame {
            int node, next, parent;
        };
        std::vector<Frame> frames;
        std::vector<int> edges;  // slots
        std::vector<int>& owner = owner_;
        owner.resize(adjacent_.size());
        for (int u = 0; u < n; ++u)
            for (int s = first_[u]; s < first_[u + 1]; ++s) owner[s] = u;
        int clock = 0;
        for (int start = 0; start < n; ++start) {
            if (order[start] >= 0) continue;
            edges.clear();  // only a one-way adjacency could leave edges behind
            order[start] = low[start] = clock++;
            frames.push_back(Frame{start, first_[start], -1});
            while (!frames.empty()) {
                const int u = frames.back().node;
                if (frames.back().next < first_[u + 1]) {
                    const int s = frames.back().next++;
                    const int v = adjacent_[s];
                    if (v == frames.back().parent) continue;
                    if (order[v] < 0) {
                        edges.push_back(s);
                        order[v] = low[v] = clock++;
                        frames.push_back(Frame{v, first_[v], u});
                    } else if (order[v] < order[u]) {
                        edges.push_back(s);
                        low[u] = std::min(low[u], order[v]);
                    }
                    continue;
                }
                const int p = frames.back().parent;
                frames.pop_back();
                if (p < 0) continue;
                low[p] = std::min(low[p], low[u]);
                if (low[u] < order[p]) continue;
                // The tree edge p-u and everything stacked above it form a block.
                const int b = static_cast<int>(block_edges_.size());
                block_edges_.push_back(0);
                block_nodes_.push_back(0);
                for (;;) {
                    const int s = edges.back();
                    edges.pop_back();
                    const int x = owner[s], y = adjacent_[s];
                    block_[s] = b;
                    const int twin = slot(y, x);
                    if (twin >= 0) block_[twin] = b;
                    ++block_edges_[b];
                    for (int end : {x, y})
                        if (last_block[end] != b) {
                            last_block[end] = b;
                            ++block_nodes_[b];
                        }
                    if (x == p && y == u) break;
                }
            }
        }
    }

    bool valid_ = false;
    std::vector<const Tn*> ids_;    // node identifiers in number order, owned by the graph
    std::vector<Raw> raws_;         // their raw values
    std::vector<Raw> neighbour_raws_;         // build scratch, kept for its capacity
    std::vector<const Tn*> neighbour_ids_;    // likewise
    int raw_order_ = 0;             // -1 descending, 1 ascending, 0 neither: search ids_
    std::vector<int> first_;        // slots of node u: [first_[u], first_[u + 1])
    std::vector<int> adjacent_;     // slot -> neighbour, ascending within a node
    std::vector<int> owner_;        // slot -> the node it leaves
    std::vector<int> block_;        // slot -> block
    std::vector<int> block_edges_;  // block -> number of edges
    std::vector<int> block_nodes_;  // block -> number of nodes
    // Search scratch: valid for a node only when its stamp is the current epoch.
    std::vector<unsigned int> stamp_;
    std::vector<int> parent_;
    std::vector<int> depth_;
    std::vector<signed char> side_;
    std::vector<int> queue_;
    unsigned int epoch_ = 0;
};

}  // namespace detail
}  // namespace molcryst

#endif
