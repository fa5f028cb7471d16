#include "molcryst/graph/Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/ErrorText.h"
#include "graph/TestGraphs.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef Graph<HNode, HEdge> G;
typedef Numbered<G> Molecule;

/// The ring sizes of each assembly in ring order, the assemblies sorted as
/// texts and separated by " | ": "3 | 5 6".
std::string assemblies(const G& g) {
    std::deque<std::set<HNode> > rings;
    std::deque<int> bounds;
    const int n = g.ring_assemblies(rings, bounds);
    if (static_cast<int>(bounds.size()) != (n == 0 ? 0 : n + 1)) return "bounds do not match the count";
    std::vector<std::string> parts;
    for (int k = 0; k < n; ++k) {
        std::string part;
        for (int r = bounds[k]; r < bounds[k + 1]; ++r)
            part += (part.empty() ? "" : " ") + std::to_string(rings[r].size());
        parts.push_back(part);
    }
    std::sort(parts.begin(), parts.end());
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : " | ") + part;
    return text;
}

/// `count` rings of `size`, as assemblies() writes them.
std::string times(int count, int size) {
    std::string text;
    for (int i = 0; i < count; ++i) text += (i == 0 ? "" : " ") + std::to_string(size);
    return text;
}

// The 60 corners of a truncated icosahedron, joined at the shortest distance:
// the cage of C60, 12 pentagons and 20 hexagons, every edge in two faces.
EdgeList c60() {
    typedef std::array<double, 3> P;
    auto d2 = [](const P& a, const P& b) {
        return (a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) + (a[2] - b[2]) * (a[2] - b[2]);
    };
    const double phi = (1 + std::sqrt(5.0)) / 2;
    const double base[3][3] = {{0, 1, 3 * phi}, {1, 2 + phi, 2 * phi}, {phi, 2, 2 * phi + 1}};
    std::vector<P> points;
    for (const auto& b : base)
        for (int signs = 0; signs < 8; ++signs)
            for (int shift = 0; shift < 3; ++shift) {  // the even permutations
                P q;
                for (int k = 0; k < 3; ++k) q[k] = b[(shift + k) % 3] * ((signs >> ((shift + k) % 3)) & 1 ? -1 : 1);
                if (std::none_of(points.begin(), points.end(), [&](const P& r) { return d2(r, q) < 1e-9; }))
                    points.push_back(q);
            }
    EdgeList out;
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t j = i + 1; j < points.size(); ++j)
            if (std::fabs(d2(points[i], points[j]) - 4) < 1e-6)
                out.push_back({static_cast<int>(i), static_cast<int>(j)});
    return out;
}

}  // namespace

// ---------------------------------------------------------------------------
// A reference: the documented method taken literally, with edges hidden by
// suppress_edge and a whole path kept per node. The optimised searches must
// agree with it on every ring and every tie.
// ---------------------------------------------------------------------------
namespace reference {

template <class Tn, class Te>
std::vector<Tn> neighbours(const Graph<Tn, Te>& g, const Tn& n) {
    return std::vector<Tn>(g.node_begin_neighbours(n), g.node_end_neighbours(n));
}

template <class T>
std::vector<std::pair<T, T> > pairs_of(const std::vector<T>& items) {
    std::vector<std::pair<T, T> > out;
    for (std::size_t i = 0; i < items.size(); ++i)
        for (std::size_t j = i + 1; j < items.size(); ++j) out.push_back({items[i], items[j]});
    return out;
}

// Breadth first from the neighbours of `root`, a whole path per node: the
// first two paths that meet with only `root` in common close the ring.
template <class Tn, class Te>
int node2(const Graph<Tn, Te>& g, const Tn& root, std::set<Tn>& ring) {
    std::map<Tn, std::vector<Tn> > path;
    std::deque<Tn> queue;
    ring.clear();
    for (const Tn& n : neighbours(g, root)) {
        path[n] = {root, n};
        queue.push_back(n);
    }
    for (; !queue.empty(); queue.pop_front())
        for (const Tn& v : neighbours(g, queue.front())) {
            const std::vector<Tn>& pu = path[queue.front()];
            if (std::find(pu.begin(), pu.end(), v) != pu.end()) continue;
            std::vector<Tn>& pv = path[v];
            if (pv.empty()) {
                (pv = pu).push_back(v);
                queue.push_back(v);
            } else if (std::count_if(pu.begin(), pu.end(),
                                     [&](const Tn& a) { return std::count(pv.begin(), pv.end(), a) != 0; }) == 1) {
                ring.insert(pu.begin(), pu.end());
                ring.insert(pv.begin(), pv.end());
                return static_cast<int>(ring.size());
            }
        }
    return 0;
}

// The smallest ring of node2 at `root` with only the edges to each pair of
// `pairs` left, in turn; the first found wins a tie.
template <class Tn, class Te>
int best_pair(const Graph<Tn, Te>& g, const Tn& root, const std::vector<std::pair<Tn, Tn> >& pairs,
              std::set<Tn>& ring) {
    const std::vector<Tn> nb = neighbours(g, root);
    std::set<Tn> temp;
    ring.clear();
    for (const auto& p : pairs) {
        for (const Tn& x : nb)
            if (x != p.first && x != p.second) g.suppress_edge(x, root);
        const int size = node2(g, root, temp);
        for (const Tn& x : nb) g.unsuppress_edge(x, root);
        if (size != 0 && (ring.empty() || size < static_cast<int>(ring.size()))) ring = temp;
    }
    return static_cast<int>(ring.size());
}

template <class Tn, class Te>
int node(const Graph<Tn, Te>& g, const Tn& n, std::set<Tn>& ring) {
    return best_pair(g, n, pairs_of(neighbours(g, n)), ring);
}

// Rooted at the end of lower degree, `n1` on a tie.
template <class Tn, class Te>
int edge(const Graph<Tn, Te>& g, Tn a, Tn b, std::set<Tn>& ring) {
    if (g.degree_node(b) < g.degree_node(a)) std::swap(a, b);
    std::vector<std::pair<Tn, Tn> > pairs;
    for (const Tn& c : neighbours(g, a))
        if (c != b) pairs.push_back({b, c});
    return best_pair(g, a, pairs, ring);
}

template <class Tn, class Te>
int angle(const Graph<Tn, Te>& g, const Tn& left, const Tn& middle, const Tn& right, std::set<Tn>& ring) {
    ring.clear();
    if (g.degree_node(left) < 2 || g.degree_node(right) < 2) return 0;
    return best_pair(g, middle, {{left, right}}, ring);
}

int residual_rings_found = 0;  // how often the residual search added a ring

// By size, a ring is taken while one of its edges is on no taken ring, or
// below 9 nodes on one. Edges left on fewer than two, between nodes counted
// three times or more, make a residual graph; its smallest rings below 9
// nodes are added.
template <class Tn, class Te>
void select(const Graph<Tn, Te>& g, std::deque<std::set<Te> >& assembly, std::deque<std::set<Tn> >& rings) {
    std::stable_sort(assembly.begin(), assembly.end(), CompareSize<Te>());
    std::map<Te, int> edge_use;
    std::map<Tn, int> node_count;
    for (const auto& ring : assembly)
        for (const Te& e : ring) {
            edge_use[e] = 0;
            ++node_count[g.edge_node1(e)];
            ++node_count[g.edge_node2(e)];
        }
    for (const auto& ring : assembly)
        if (std::any_of(ring.begin(), ring.end(),
                        [&](const Te& e) { return edge_use[e] < 1 || (edge_use[e] < 2 && ring.size() < 9); })) {
            rings.push_back(g.edges_to_nodes(ring));
            for (const Te& e : ring) ++edge_use[e];
        }
    Graph<Tn, int> residual;
    for (const auto& use : edge_use) {
        const Tn n1 = g.edge_node1(use.first), n2 = g.edge_node2(use.first);
        if (use.second < 2 && node_count[n1] >= 3 && node_count[n2] >= 3) residual.add_edge(residual.nedges(), n1, n2);
    }
    if (residual.nedges() < 3) return;
    std::set<std::set<Tn> > found;
    for (const auto& entry : residual.nodes()) {
        std::set<Tn> ring;
        const int size = node(residual, entry.first, ring);
        if (size != 0 && size < 9 && found.insert(ring).second) {
            rings.push_back(ring);
            ++residual_rings_found;
        }
    }
}

// Candidates are the smallest rings through each angle, as edges, once each
// and without a chord; candidates sharing edges make an assembly, gathered
// breadth first from the first candidate left.
template <class Tn, class Te>
int assemblies(const Graph<Tn, Te>& g, std::deque<std::set<Tn> >& rings, std::deque<int>& bounds) {
    rings.clear();
    bounds.clear();
    std::deque<std::set<Te> > candidates;
    for (const auto& entry : g.nodes())
        for (const auto& p : pairs_of(neighbours(g, entry.first))) {
            std::set<Tn> ring;
            if (angle(g, p.first, entry.first, p.second, ring) == 0) continue;
            const std::set<Te> edges = g.nodes_to_edges(ring);
            if (edges.size() <= ring.size() &&
                std::find(candidates.begin(), candidates.end(), edges) == candidates.end())
                candidates.push_back(edges);
        }
    std::vector<bool> taken(candidates.size());
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (taken[i]) continue;
        taken[i] = true;
        std::deque<std::set<Te> > assembly(1, candidates[i]);
        for (std::size_t j = 0; j < assembly.size(); ++j)
            for (std::size_t k = 0; k < candidates.size(); ++k)
                if (!taken[k] && std::find_first_of(assembly[j].begin(), assembly[j].end(), candidates[k].begin(),
                                                    candidates[k].end()) != assembly[j].end()) {
                    taken[k] = true;
                    assembly.push_back(candidates[k]);
                }
        if (bounds.empty()) bounds.push_back(0);
        select(g, assembly, rings);
        bounds.push_back(static_cast<int>(rings.size()));
    }
    return bounds.empty() ? 0 : static_cast<int>(bounds.size()) - 1;
}

}  // namespace reference

namespace {

/// Every search of `g` against the reference, for every node, edge and angle.
/// The outputs start out holding junk, which every search must clear.
template <class Tn, class Te>
void expect_as_reference(const Graph<Tn, Te>& g) {
    const std::set<Tn> junk{g.nodes().begin()->first};
    auto result = [](int size, const std::set<Tn>& ring) { return std::make_pair(size, ring); };
    auto cyclic = [](const std::set<Tn>& ring) { return std::make_pair(!ring.empty(), static_cast<int>(ring.size())); };
    std::set<Tn> expected;
    for (const auto& entry : g.nodes()) {
        const Tn& n = entry.first;
        std::set<Tn> ring = junk;
        ASSERT_EQ(result(g.node_smallest_ring(n, ring), ring), result(reference::node(g, n, expected), expected));
        int size = -1;
        EXPECT_EQ(std::make_pair(g.is_node_cyclic(n, &size), size), cyclic(expected));
        const std::vector<Tn> nb = reference::neighbours(g, n);
        if (nb.size() == 2) {
            ASSERT_EQ(result(g.node2_smallest_ring(n, ring), ring), result(reference::node2(g, n, expected), expected));
        }
        for (const auto& p : reference::pairs_of(nb))
            ASSERT_EQ(result(g.angle_smallest_ring(p.second, n, p.first, ring), ring),
                      result(reference::angle(g, p.second, n, p.first, expected), expected));
    }
    for (const auto& entry : g.edges()) {
        const Tn a = entry.second.id1(), b = entry.second.id2();
        std::set<Tn> ring = junk;
        ASSERT_EQ(result(g.edge_smallest_ring(a, b, ring), ring), result(reference::edge(g, a, b, expected), expected));
        ASSERT_EQ(result(g.edge_smallest_ring(b, a, ring), ring), result(reference::edge(g, b, a, expected), expected));
        int size = -1;
        EXPECT_EQ(std::make_pair(g.is_edge_cyclic(entry.first, &size), size), cyclic(expected));
        // Without a size no ring is searched for: a bridge test must agree.
        EXPECT_EQ(g.is_edge_cyclic(entry.first, nullptr), !expected.empty());
        EXPECT_EQ(g.is_edge_cyclic(b, a, nullptr), !expected.empty());
    }
    std::deque<std::set<Tn> > rings(1, junk), expected_rings, basic(1, junk);
    std::deque<int> bounds(1, 7), expected_bounds;
    ASSERT_EQ(g.ring_assemblies(rings, bounds), reference::assemblies(g, expected_rings, expected_bounds));
    EXPECT_EQ(rings, expected_rings);
    EXPECT_EQ(bounds, expected_bounds);
    EXPECT_EQ(g.basic_ring_set(basic), static_cast<int>(expected_rings.size()));
    EXPECT_EQ(basic, expected_rings);

    // The public selection on an assembly of every ring found, largest first;
    // it appends to what `rings` holds.
    std::deque<std::set<Te> > assembly;
    for (auto r = expected_rings.rbegin(); r != expected_rings.rend(); ++r) assembly.push_back(g.nodes_to_edges(*r));
    std::deque<std::set<Te> > expected_assembly = assembly;
    rings.assign(1, junk);
    expected_rings = rings;
    g.select_rings_from_assembly(assembly, rings);
    reference::select(g, expected_assembly, expected_rings);
    EXPECT_EQ(assembly, expected_assembly);
    EXPECT_EQ(rings, expected_rings);
}

/// Random edges on nodes 0 to count - 1, each pair at most once.
struct RandomEdges {
    explicit RandomEdges(std::mt19937& r) : rng(r) {}
    std::mt19937& rng;
    int count = 0;
    EdgeList edges;
    std::set<std::pair<int, int> > present;

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }
    bool link(int a, int b) {
        if (a == b || !present.insert({std::min(a, b), std::max(a, b)}).second) return false;
        edges.push_back({a, b});
        return true;
    }
    /// A chain of `length` new nodes hung on `from`; returns its last node.
    int chain(int from, int length) {
        for (int i = 0; i < length; ++i, from = count++) link(from, count);
        return from;
    }
    /// A path of `inner` new nodes from `a` to `b`.
    void path(int a, int b, int inner) { link(chain(a, inner), b); }
    /// Up to `extra` edges between random nodes, in at most `tries` attempts.
    void add_random(int extra, int tries) {
        for (; extra > 0 && tries > 0; --tries) {
            const int a = pick(count), b = pick(count);
            extra -= link(a, b);
        }
    }
};

/// Ring systems grown at random: rings fused on an edge, spiro rings, bridges
/// between any two nodes, rings hung on chains, and pendant chains.
EdgeList random_polycycle(std::mt19937& rng, int steps, int& count) {
    RandomEdges r(rng);
    r.count = 3 + r.pick(6);
    for (int i = 0; i < r.count; ++i) r.link(i, (i + 1) % r.count);
    for (int step = 0; step < steps; ++step) {
        const int kind = r.pick(6);
        if (kind <= 1) {  // a ring of 3 to 8 fused on an edge
            const std::pair<int, int> e = r.edges[r.pick(static_cast<int>(r.edges.size()))];
            r.path(e.first, e.second, 1 + r.pick(6));
        } else if (kind == 2) {  // a spiro ring of 3 to 7
            const int a = r.pick(r.count);
            r.path(a, a, 2 + r.pick(5));
        } else if (kind == 3) {  // a bridge of 0 to 3 nodes between two nodes
            const int a = r.pick(r.count), b = r.pick(r.count);
            if (a != b && r.present.count({std::min(a, b), std::max(a, b)}) == 0) r.path(a, b, r.pick(4));
        } else {  // a pendant chain, or (4) a ring of 3 to 8 at the end of one
            const int from = r.pick(r.count);
            const int last = r.chain(from, 1 + r.pick(3));
            if (kind == 4) r.path(last, last, 2 + r.pick(6));
        }
    }
    count = r.count;
    return r.edges;
}

/// A random tree with `extra` random edges added.
EdgeList random_sparse(std::mt19937& rng, int count, int extra) {
    RandomEdges r(rng);
    r.count = count;
    for (int i = 1; i < count; ++i) r.link(r.pick(i), i);
    r.add_random(extra, 1000);
    return r.edges;
}

/// A rim of 4 to 8 nodes with a hub on every rim node, perhaps a second hub
/// on some, and up to two random edges: rims are rings that no angle finds.
EdgeList random_wheel(std::mt19937& rng, int& count) {
    RandomEdges r(rng);
    const int rim = 4 + r.pick(5);
    for (const auto& e : cycle(0, rim)) r.link(e.first, e.second);
    r.count = rim;
    for (int hubs = 1 + r.pick(2); hubs > 0; --hubs, ++r.count)
        for (int i = 0; i < rim; ++i)
            if (hubs == 1 || r.pick(2) == 0) r.link(i, r.count);
    r.add_random(r.pick(3), 50);
    count = r.count;
    return r.edges;
}

}  // namespace

TEST(GraphRings, ChainHasNoRings) {
    Molecule m(5, {{0, 1}, {1, 2}, {2, 3}, {3, 4}});
    EXPECT_EQ(assemblies(m.g), "");
    expect_as_reference(m.g);  // every answer 0 or false, every output cleared
}

TEST(GraphRings, BenzeneAndNaphthalene) {
    Molecule benzene(6, cycle(0, 6), 11);
    std::set<HNode> ring;
    EXPECT_EQ(benzene.g.node_smallest_ring(benzene.n[3], ring), 6);
    EXPECT_EQ(ring, benzene.nodes({0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(assemblies(benzene.g), "6");
    expect_as_reference(benzene.g);

    // Rings 0-5 and 4-9, fused on the edge 4-5.
    Molecule naph(10, join(cycle(0, 6), {{5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 4}}), 12);
    EXPECT_EQ(naph.g.edge_smallest_ring(naph.n[4], naph.n[5], ring), 6);
    EXPECT_TRUE(ring == naph.nodes({0, 1, 2, 3, 4, 5}) || ring == naph.nodes({4, 5, 6, 7, 8, 9}));
    // Through the fusion node across both rings: the perimeter, which has the
    // fused edge as a chord.
    EXPECT_EQ(naph.g.angle_smallest_ring(naph.n[3], naph.n[4], naph.n[9], ring), 10);
    EXPECT_EQ(assemblies(naph.g), "6 6");
    expect_as_reference(naph.g);
}

TEST(GraphRings, FusedSheets) {
    // `rows` strips of `columns` hexagons on a brick-wall lattice: 1 x 3 is
    // anthracene, 2 x 2 pyrene, 3 x 3 a sheet with inner nodes on three rings.
    for (const auto& shape : std::vector<std::pair<int, int> >{{1, 3}, {2, 2}, {3, 3}}) {
        std::map<std::pair<int, int>, int> number;
        auto id = [&number](int i, int j) { return number.emplace(std::make_pair(i, j), number.size()).first->second; };
        std::set<std::pair<int, int> > edges;
        auto link = [&edges](int a, int b) { edges.insert({std::min(a, b), std::max(a, b)}); };
        for (int i = 0; i < shape.first; ++i)
            for (int k = 0; k < shape.second; ++k) {
                const int j = i % 2 + 2 * k;
                for (int row : {i, i + 1}) {
                    link(id(row, j), id(row, j + 1));
                    link(id(row, j + 1), id(row, j + 2));
                }
                link(id(i, j), id(i + 1, j));
                link(id(i, j + 2), id(i + 1, j + 2));
            }
        Molecule m(static_cast<int>(number.size()), EdgeList(edges.begin(), edges.end()), 15);
        EXPECT_EQ(assemblies(m.g), times(shape.first * shape.second, 6));
        for (const HNode& n : m.n) {
            int size = 0;
            EXPECT_TRUE(m.g.is_node_cyclic(n, &size) && size == 6) << size;
        }
        expect_as_reference(m.g);
    }
}

TEST(GraphRings, SpiroAndChainLinkedRingsAreSeparateAssemblies) {
    // A 5-ring and a 6-ring sharing node 0.
    Molecule spiro(10, join(cycle(0, 5), {{0, 5}, {5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 0}}), 21);
    std::set<HNode> ring;
    EXPECT_EQ(spiro.g.node_smallest_ring(spiro.n[0], ring), 5);
    EXPECT_EQ(ring, spiro.nodes({0, 1, 2, 3, 4}));
    EXPECT_EQ(spiro.g.angle_smallest_ring(spiro.n[1], spiro.n[0], spiro.n[5], ring), 0);
    EXPECT_EQ(assemblies(spiro.g), "5 | 6");
    expect_as_reference(spiro.g);

    // Two benzene rings joined by a chain of two nodes.
    Molecule linked(14, join(join(cycle(0, 6), cycle(6, 6)), {{0, 12}, {12, 13}, {13, 6}}), 22);
    EXPECT_EQ(assemblies(linked.g), "6 | 6");
    EXPECT_FALSE(linked.g.is_node_cyclic(linked.n[12], nullptr));
    EXPECT_FALSE(linked.g.is_edge_cyclic(linked.n[0], linked.n[12], nullptr));
    EXPECT_TRUE(linked.g.is_node_cyclic(linked.n[0], nullptr));
    expect_as_reference(linked.g);
}

TEST(GraphRings, CagesTakeEveryFace) {
    // Cubane: corners 0-7, edges along the three bits. Each edge has two faces
    // after five faces at the most; the sixth still has edges in only one, so
    // it is taken too.
    EdgeList cube, adam;
    for (int i = 0; i < 8; ++i)
        for (int bit = 1; bit < 8; bit <<= 1)
            if ((i & bit) == 0) cube.push_back({i, i | bit});
    Molecule cubane(8, cube, 31);
    EXPECT_EQ(assemblies(cubane.g), times(6, 4));
    for (const HNode& n : cubane.n) {
        int size = -1;
        EXPECT_TRUE(cubane.g.is_node_cyclic(n, &size) && size == 4) << size;
    }
    expect_as_reference(cubane.g);

    // Adamantane: the four bridgeheads 0-3 joined pairwise through 4-9.
    for (int a = 0, next = 4; a < 4; ++a)
        for (int b = a + 1; b < 4; ++b, ++next) adam.insert(adam.end(), {{a, next}, {next, b}});
    Molecule adamantane(10, adam, 32);
    EXPECT_EQ(assemblies(adamantane.g), times(4, 6));
    expect_as_reference(adamantane.g);

    // C60: 12 pentagons and 20 hexagons, all taken.
    Molecule fullerene(60, c60(), 33);
    ASSERT_EQ(fullerene.e.size(), 90u);
    std::deque<std::set<HNode> > rings;
    EXPECT_EQ(fullerene.g.basic_ring_set(rings), 32);
    EXPECT_EQ(assemblies(fullerene.g), times(12, 5) + " " + times(20, 6));
    int pentagon_edges = 0;
    for (const HEdge& e : fullerene.e) {
        int size = -1;
        EXPECT_TRUE(fullerene.g.is_edge_cyclic(e, &size));
        pentagon_edges += (size == 5);
    }
    EXPECT_EQ(pentagon_edges, 60);
}

TEST(GraphRings, ChordsAndBridgedBicycles) {
    // Bicyclobutane: a square 0-1-2-3 with the chord 0-2. The square is the
    // smallest ring through the angle 1-0-3, but not a candidate.
    Molecule butane(4, join(cycle(0, 4), {{0, 2}}), 41);
    std::set<HNode> ring;
    EXPECT_EQ(butane.g.angle_smallest_ring(butane.n[1], butane.n[0], butane.n[3], ring), 4);
    EXPECT_EQ(assemblies(butane.g), "3 3");
    expect_as_reference(butane.g);

    // Norbornane: bridgeheads 0 and 1, bridges 2-3, 4-5 and 6. The 6-ring is
    // a candidate (from that angle) and is taken: its edges are each on one
    // 5-ring only.
    Molecule norbornane(7, {{0, 2}, {2, 3}, {3, 1}, {0, 4}, {4, 5}, {5, 1}, {0, 6}, {6, 1}}, 42);
    EXPECT_EQ(norbornane.g.node_smallest_ring(norbornane.n[2], ring), 5);
    EXPECT_EQ(norbornane.g.angle_smallest_ring(norbornane.n[2], norbornane.n[0], norbornane.n[4], ring), 6);
    EXPECT_EQ(ring, norbornane.nodes({0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(assemblies(norbornane.g), "5 5 6");
    expect_as_reference(norbornane.g);

    // Bicyclo[2.2.2]octane: three 6-rings. Node 2 lies on two of them; the
    // first found in neighbour order wins.
    Molecule octane(8, {{0, 2}, {2, 3}, {3, 1}, {0, 4}, {4, 5}, {5, 1}, {0, 6}, {6, 7}, {7, 1}}, 43);
    EXPECT_EQ(assemblies(octane.g), "6 6 6");
    EXPECT_EQ(octane.g.node_smallest_ring(octane.n[2], ring), 6);
    EXPECT_TRUE(ring == octane.nodes({0, 1, 2, 3, 4, 5}) || ring == octane.nodes({0, 1, 2, 3, 6, 7}));
    expect_as_reference(octane.g);
}

TEST(GraphRings, SeveralComponents) {
    // Benzene 0-5, a chain 6-8, a cyclopropane 9-11, a lone node 12, and a
    // naphthalene 13-22.
    EdgeList edges = join(join(cycle(0, 6), {{6, 7}, {7, 8}}), cycle(9, 3));
    edges = join(edges, join(cycle(13, 6), {{18, 19}, {19, 20}, {20, 21}, {21, 22}, {22, 17}}));
    Molecule m(23, edges, 51);
    EXPECT_EQ(assemblies(m.g), "3 | 6 | 6 6");
    EXPECT_FALSE(m.g.is_node_cyclic(m.n[12], nullptr));
    EXPECT_TRUE(m.g.is_node_cyclic(m.n[10], nullptr));
    expect_as_reference(m.g);
}

TEST(GraphRings, ResidualSearchFindsTheRimOfAWheel) {
    // A hub 0 with spokes to the pentagon 1-5. Every angle on the rim has a
    // smaller ring through the hub, so the candidates are the five triangles;
    // the rim edges are then on one ring each and join nodes on two, and the
    // residual search finds the pentagon, appended after the triangles.
    EdgeList wheel = cycle(1, 5);
    for (int i = 1; i <= 5; ++i) wheel.push_back({0, i});
    Molecule m(6, wheel, 52);
    EXPECT_EQ(assemblies(m.g), "3 3 3 3 3 5");
    std::deque<std::set<HNode> > rings;
    m.g.basic_ring_set(rings);
    EXPECT_EQ(rings.back(), m.nodes({1, 2, 3, 4, 5}));
    expect_as_reference(m.g);
}

TEST(GraphRings, ResidualRingsOfNineOrMoreAreNotKept) {
    // Wheels again: the rim of eight is found after its triangles, the rim of
    // nine is not, since the residual search keeps rings of up to 8 only.
    for (int rim : {8, 9}) {
        EdgeList wheel = cycle(1, rim);
        for (int i = 1; i <= rim; ++i) wheel.push_back({0, i});
        Molecule m(rim + 1, wheel, 60 + rim);
        EXPECT_EQ(assemblies(m.g), times(rim, 3) + (rim == 8 ? " 8" : ""));
        expect_as_reference(m.g);
    }
}

TEST(GraphRings, Macrocycles) {
    // A large simple ring, the same ring through every angle.
    Molecule crown(30, cycle(0, 30), 71);
    EXPECT_EQ(assemblies(crown.g), "30");
    expect_as_reference(crown.g);
    // Two bridgeheads joined by three chains of eight: two rings of 18 are
    // taken, and the residual search, over every edge, finds nothing small.
    EdgeList cage;
    for (int chain = 0; chain < 3; ++chain) {
        const int first = 2 + 8 * chain;
        cage.push_back({0, first});
        for (int i = 0; i < 7; ++i) cage.push_back({first + i, first + i + 1});
        cage.push_back({first + 7, 1});
    }
    Molecule cryptand(26, cage, 72);
    EXPECT_EQ(assemblies(cryptand.g), "18 18");
    expect_as_reference(cryptand.g);
    // Six hexagons linked para to para in a hoop, and a hoop of four
    // pyranose-like rings joined through one atom: small rings around a
    // large one with many equally short routes.
    EdgeList hoop, sugars;
    for (int r = 0; r < 6; ++r) {
        hoop = join(hoop, cycle(6 * r, 6));
        hoop.push_back({6 * r + 3, 6 * ((r + 1) % 6)});
    }
    for (int u = 0; u < 4; ++u) {
        sugars = join(sugars, cycle(7 * u, 6));
        sugars.push_back({7 * u + 3, 7 * u + 6});
        sugars.push_back({7 * u + 6, 7 * ((u + 1) % 4)});
    }
    Molecule paraphenylene(36, hoop, 73), dextrin(28, sugars, 74);
    EXPECT_EQ(assemblies(paraphenylene.g), "6 6 6 6 6 6 24");  // the hoop shares edges with each ring
    expect_as_reference(paraphenylene.g);
    EXPECT_EQ(assemblies(dextrin.g), "6 6 6 6 20");
    expect_as_reference(dextrin.g);
}

TEST(GraphRings, AgreeWithThePlainMethodOnRandomGraphs) {
    std::mt19937 rng(2024);
    const int residual_before = reference::residual_rings_found;
    for (unsigned int seed = 1; seed <= 160; ++seed) {
        SCOPED_TRACE("graph " + std::to_string(seed));
        const int s = static_cast<int>(seed);
        int count = s % 5 == 0 ? 8 + s % 25 : 6 + s % 14;
        EdgeList edges;
        if (s % 5 == 0)  // nearly a tree
            edges = random_sparse(rng, count, 1 + s % 5);
        else if (s % 5 == 1)  // dense: small rings sharing nodes
            edges = random_sparse(rng, count, count / 2 + s % (count / 2 + 1));
        else if (s % 5 == 2)  // where the residual search has work
            edges = random_wheel(rng, count);
        else
            edges = random_polycycle(rng, 2 + s % 8, count);
        Molecule m(count, edges, seed);
        expect_as_reference(m.g);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(reference::residual_rings_found, residual_before);
}

namespace {

// Identifiers ordered otherwise than by their raw values, so that the search
// index cannot look them up by raw value and takes its general path.
struct Key {
    int value;
    bool operator<(const Key& other) const {
        return value % 7 != other.value % 7 ? value % 7 < other.value % 7 : value > other.value;
    }
    bool operator==(const Key& other) const { return value == other.value; }
    bool operator!=(const Key& other) const { return value != other.value; }
};
long long raw_identifier(const Key& k) { return k.value; }

}  // namespace

template <>
struct std::hash<Key> {
    std::size_t operator()(const Key& k) const { return std::hash<int>()(k.value); }
};

TEST(GraphRings, IdentifiersOrderedOtherwiseThanByValue) {
    std::mt19937 rng(99);
    for (unsigned int seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("graph " + std::to_string(seed));
        int count = 0;
        EdgeList edges = seed % 2 == 0 ? random_polycycle(rng, 4, count) : random_wheel(rng, count);
        Graph<Key, int> g;
        for (std::size_t i = 0; i < edges.size(); ++i)
            g.add_edge(static_cast<int>(i), Key{edges[i].first * 3}, Key{edges[i].second * 3});
        expect_as_reference(g);
        if (HasFatalFailure()) return;
    }
}

TEST(GraphRings, SuppressedEdgesAreSeenBySearchesButTouchNoCache) {
    // Naphthalene, rings 0-5 and 4-9, and two lone nodes 10 and 11.
    Molecule m(12, join(cycle(0, 6), {{5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 4}}), 61);
    // Whether node 4 is cyclic and its ring size, then the number of rings in the set.
    auto answers = [&m] {
        int size = -1;
        std::deque<std::set<HNode> > rings;
        const bool cyclic = m.g.is_node_cyclic(m.n[4], &size);
        return std::to_string(cyclic) + " " + std::to_string(size) + " " + std::to_string(m.g.basic_ring_set(rings));
    };
    EXPECT_EQ(answers(), "1 6 2");
    // Node 4 cut down to degree 2 by the caller: fresh searches run on the
    // adjacency as it stands, while the cached answers stand.
    m.g.suppress_edge(m.n[4], m.n[5]);
    std::set<HNode> ring, expected;
    EXPECT_EQ(m.g.node2_smallest_ring(m.n[4], ring), 10);
    EXPECT_EQ(reference::node2(m.g, m.n[4], expected), 10);
    EXPECT_EQ(ring, expected);
    EXPECT_EQ(m.g.node_smallest_ring(m.n[5], ring), 10);
    EXPECT_EQ(answers(), "1 6 2");
    // Adding a node drops nothing; removing an isolated one drops the ring set only.
    const HNode x = node("x");
    m.g.add_node(x);
    EXPECT_EQ(answers(), "1 6 2");
    m.g.remove_node(x);
    EXPECT_EQ(answers(), "1 6 1");
    // An edge insertion drops both, now computed on the cut adjacency and
    // still cached once the cut is mended, which a fresh search sees.
    m.g.add_edge(edge("kl"), m.n[10], m.n[11]);
    EXPECT_EQ(answers(), "1 10 1");
    m.g.unsuppress_edge(m.n[4], m.n[5]);
    EXPECT_EQ(answers(), "1 10 1");
    EXPECT_EQ(m.g.node_smallest_ring(m.n[5], ring), 6);
    // An edge removal drops them again.
    m.g.remove_edge(m.g.edge(m.n[10], m.n[11]));
    EXPECT_EQ(answers(), "1 6 2");
    EXPECT_TRUE(m.g.consistent());
    m.g.clear();
    std::deque<std::set<HNode> > rings;
    EXPECT_EQ(m.g.basic_ring_set(rings), 0);
}

TEST(GraphRings, MessagesComeBeforeAnyChange) {
    Molecule m(6, join(cycle(0, 4), {{0, 4}}), 81);  // node 5 isolated
    const HNode stranger = node("x");
    std::set<HNode> ring = m.nodes({1});
    const std::set<HNode> untouched = ring;
    int size = -7;
    auto text = [](const std::function<void()>& f) { return error_text<std::invalid_argument>(f); };
    const std::string edge_ring = "Graph::edge_smallest_ring(Tn& node1, Tn& node2, std::set<Tn>& ring):";
    const std::string not_connected = edge_ring + "node1 and node2 are not connected";
    const std::string angle_ring = "Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& ring):";
    const std::string node_ring = "Graph::node_smallest_ring(T& node, std::set<Tn>& ring):node does not exist";
    EXPECT_EQ(text([&] { m.g.node2_smallest_ring(stranger, ring); }),
              "Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not exist");
    EXPECT_EQ(text([&] { m.g.node2_smallest_ring(m.n[0], ring); }),
              "Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not have degree = 2");
    EXPECT_EQ(text([&] { m.g.node_smallest_ring(stranger, ring); }), node_ring);
    EXPECT_EQ(text([&] { m.g.is_node_cyclic(stranger, nullptr); }), node_ring);
    EXPECT_EQ(text([&] { m.g.edge_smallest_ring(m.n[1], m.n[1], ring); }), edge_ring + "node1 and node2 are identical");
    EXPECT_EQ(text([&] { m.g.edge_smallest_ring(m.n[1], m.n[3], ring); }), not_connected);
    EXPECT_EQ(text([&] { m.g.is_edge_cyclic(m.n[1], m.n[3], &size); }), not_connected);
    EXPECT_EQ(text([&] { m.g.angle_smallest_ring(m.n[1], m.n[0], m.n[1], ring); }),
              angle_ring + "left and right nodes are identical");
    EXPECT_EQ(text([&] { m.g.angle_smallest_ring(m.n[1], m.n[0], m.n[2], ring); }),
              angle_ring + "nodes not connected in sequence left-middle-right");
    // Without a size, the degree test comes first: an unknown node or a
    // terminal is simply not cyclic; two ring nodes without an edge raise.
    EXPECT_FALSE(m.g.is_edge_cyclic(m.n[1], stranger, nullptr));
    EXPECT_FALSE(m.g.is_edge_cyclic(m.n[1], m.n[5], nullptr));
    EXPECT_EQ(text([&] { m.g.is_edge_cyclic(m.n[1], m.n[3], nullptr); }),
              "Graph::nodes_one_side(): no edge containing node1 and node2");
    EXPECT_EQ(text([&] { m.g.is_edge_cyclic(edge("x"), &size); }),
              "Graph::is_edge_cyclic(Te& edge, int* ringsize): specified edge does not exist");
    EXPECT_EQ(size, -7);
    const std::set<HNode> with_stranger = {m.n[0], stranger};
    EXPECT_EQ(text([&] { m.g.nodes_to_edges(with_stranger); }),
              "Graph::nodes_to_edges:   at least one of the nodes does not exist in graph");
    EXPECT_EQ(text([&] { m.g.edges_to_nodes(std::set<HEdge>{edge("x")}); }),
              "Graph::edge_node1:  no edge with specified id");
    EXPECT_EQ(text([&] { m.g.extended_conn(0); }), "Graph::extended_conn:  requested order was < 1");
    EXPECT_EQ(ring, untouched);
    EXPECT_TRUE(m.g.consistent());
    EXPECT_EQ(m.g.degree_node(m.n[0]), 3);
}

TEST(GraphRings, NodesEdgesConversionsAndExtendedConnectivity) {
    // A square 0-1-2-3 with a tail 3-4.
    Molecule m(5, join(cycle(0, 4), {{3, 4}}), 91);
    EXPECT_EQ(m.g.nodes_to_edges(m.nodes({0, 1, 2})), (std::set<HEdge>{m.e[0], m.e[1]}));
    EXPECT_EQ(m.g.edges_to_nodes({m.e[0], m.e[1]}), m.nodes({0, 1, 2}));
    EXPECT_TRUE(m.g.nodes_to_edges(std::set<HNode>()).empty());

    // Order 1 is the degree, each further order the sum over the neighbours.
    auto conn = [](const Molecule& x, int order) {
        std::map<HNode, int> ec = x.g.extended_conn(order);
        std::vector<int> out;
        for (const HNode& n : x.n) out.push_back(ec.at(n));
        return ec.size() == x.n.size() ? out : std::vector<int>();
    };
    EXPECT_EQ(conn(m, 1), (std::vector<int>{2, 2, 2, 3, 1}));
    EXPECT_EQ(conn(m, 2), (std::vector<int>{5, 4, 5, 5, 3}));
    EXPECT_EQ(conn(m, 3), (std::vector<int>{9, 10, 9, 13, 5}));
    EXPECT_EQ(conn(Molecule(3, {{0, 1}, {1, 2}}), 2), (std::vector<int>{2, 2, 2}));
    // Values wrap around as 32-bit integers rather than trap.
    EXPECT_EQ(conn(Molecule(7, {{0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}}), 40).size(), 7u);
}

TEST(GraphRings, LongChainsOfRingsNeedNoDeepRecursion) {
    // 200000 nodes in units of ten, each unit a 6-ring on the chain: deep
    // enough that any recursion along the chain would exhaust the stack.
    const int units = 20000;
    EdgeList edges;
    for (int u = 0; u < units; ++u) {
        const int b = 10 * u;
        for (int i = 0; i < 9; ++i) edges.push_back({b + i, b + i + 1});
        edges.push_back({b + 2, b + 7});
        if (u > 0) edges.push_back({b - 1, b});
    }
    Molecule m(10 * units, edges);
    EXPECT_EQ(m.g.ncomponents(), 1);
    std::vector<HNode> path;
    ASSERT_TRUE(m.g.shortest_path(m.n.front(), m.n.back(), path));
    EXPECT_EQ(path.size(), 6u * units);  // 0 1 2 7 8 9 in each unit
    EXPECT_TRUE(m.g.nodes_one_side(m.n[1], m.n[0], path));
    EXPECT_EQ(path.size(), 10u * units - 1);

    std::deque<std::set<HNode> > rings;
    EXPECT_EQ(m.g.basic_ring_set(rings), units);
    int cyclic = 0;
    for (const HNode& n : m.n) {
        int size = 0;
        cyclic += m.g.is_node_cyclic(n, &size);
        if (size != 0 && size != 6) ADD_FAILURE() << size;
    }
    EXPECT_EQ(cyclic, 6 * units);
    EXPECT_FALSE(m.g.is_edge_cyclic(m.n[9], m.n[10], nullptr));
    EXPECT_TRUE(m.g.is_edge_cyclic(m.n[12], m.n[13], nullptr));
}
