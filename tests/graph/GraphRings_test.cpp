#include "molcryst/graph/Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <deque>
#include <cmath>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace molcryst;

namespace {

struct Node {};
struct Edge {};
typedef THandle<Node> HNode;
typedef THandle<Edge> HEdge;
typedef Graph<HNode, HEdge> G;
typedef std::vector<std::pair<int, int> > EdgeList;

/// A graph built from numbered nodes and an edge list. Node handles are
/// allocated first and then shuffled when a seed is given, so that the
/// neighbour order (descending address) bears no relation to the numbering.
struct Molecule {
    std::vector<HNode> n;
    std::vector<HEdge> e;
    G g;
    Molecule(int count, const EdgeList& edges, unsigned int shuffle_seed = 0) {
        for (int i = 0; i < count; ++i) n.push_back(HNode(new Node()));
        if (shuffle_seed != 0) {
            std::mt19937 rng(shuffle_seed);
            std::shuffle(n.begin(), n.end(), rng);
        }
        for (int i = 0; i < count; ++i) g.add_node(n[i]);
        for (const auto& pair : edges) {
            e.push_back(HEdge(new Edge()));
            g.add_edge(e.back(), n[pair.first], n[pair.second]);
        }
    }
    std::set<HNode> nodes(std::initializer_list<int> indices) const {
        std::set<HNode> out;
        for (int i : indices) out.insert(n[i]);
        return out;
    }
};

EdgeList cycle(int first, int size) {
    EdgeList out;
    for (int i = 0; i < size; ++i) out.push_back({first + i, first + (i + 1) % size});
    return out;
}

EdgeList join(EdgeList a, const EdgeList& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::vector<int> sizes(const std::deque<std::set<HNode> >& rings) {
    std::vector<int> out;
    for (const auto& ring : rings) out.push_back(static_cast<int>(ring.size()));
    std::sort(out.begin(), out.end());
    return out;
}

template <class F>
std::string invalid_argument_text(F f) {
    try {
        f();
    } catch (const std::invalid_argument& e) {
        return e.what();
    }
    return "no exception";
}

// The 60 corners of a truncated icosahedron, joined at the shortest distance:
// the cage of C60, 12 pentagons and 20 hexagons, every edge in two faces.
EdgeList c60() {
    const double phi = (1 + std::sqrt(5.0)) / 2;
    const double base[3][3] = {{0, 1, 3 * phi}, {1, 2 + phi, 2 * phi}, {phi, 2, 2 * phi + 1}};
    std::vector<std::array<double, 3> > points;
    for (const auto& b : base)
        for (int signs = 0; signs < 8; ++signs) {
            std::array<double, 3> p = {b[0] * (signs & 1 ? -1 : 1), b[1] * (signs & 2 ? -1 : 1), b[2] * (signs & 4 ? -1 : 1)};
            for (int shift = 0; shift < 3; ++shift) {  // the even permutations
                std::array<double, 3> q = {p[shift], p[(shift + 1) % 3], p[(shift + 2) % 3]};
                bool seen = false;
                for (const auto& r : points)
                    seen = seen || (std::fabs(r[0] - q[0]) + std::fabs(r[1] - q[1]) + std::fabs(r[2] - q[2]) < 1e-9);
                if (!seen) points.push_back(q);
            }
        }
    EdgeList out;
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t j = i + 1; j < points.size(); ++j) {
            double d = 0;
            for (int k = 0; k < 3; ++k) d += (points[i][k] - points[j][k]) * (points[i][k] - points[j][k]);
            if (std::fabs(d - 4) < 1e-6) out.push_back({static_cast<int>(i), static_cast<int>(j)});
        }
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

template <class Tn, class Te>
int node2(const Graph<Tn, Te>& g, const Tn& root, std::set<Tn>& ring) {
    std::map<Tn, std::list<Tn> > path;
    ring.clear();
    std::deque<Tn> queue;
    for (const Tn& n : neighbours(g, root)) {
        path[n].push_back(root);
        path[n].push_back(n);
        queue.push_back(n);
    }
    while (!queue.empty()) {
        Tn u = queue.front();
        queue.pop_front();
        for (const Tn& v : neighbours(g, u)) {
            const std::list<Tn>& pu = path[u];
            if (std::find(pu.begin(), pu.end(), v) != pu.end()) continue;
            std::list<Tn>& pv = path[v];
            if (pv.empty()) {
                pv = pu;
                pv.push_back(v);
                queue.push_back(v);
                continue;
            }
            int count = 0;
            for (const Tn& a : pu)
                for (const Tn& b : pv) count += (a == b);
            if (count == 1) {
                ring.insert(pu.begin(), pu.end());
                ring.insert(pv.begin(), pv.end());
                return static_cast<int>(ring.size());
            }
        }
    }
    return 0;
}

template <class Tn, class Te>
int node(const Graph<Tn, Te>& g, const Tn& n, std::set<Tn>& ring) {
    std::vector<Tn> nb = neighbours(g, n);
    for (const Tn& x : nb) g.suppress_edge(x, n);
    ring.clear();
    int best = INT_MAX;
    std::set<Tn> temp;
    for (std::size_t i = 0; i < nb.size(); ++i) {
        if (g.degree_node(nb[i]) <= 0) continue;
        g.unsuppress_edge(nb[i], n);
        for (std::size_t j = i + 1; j < nb.size(); ++j) {
            if (g.degree_node(nb[j]) <= 0) continue;
            g.unsuppress_edge(nb[j], n);
            int size = node2(g, n, temp);
            g.suppress_edge(nb[j], n);
            if (size != 0 && size < best) {
                ring = temp;
                best = size;
            }
        }
        g.suppress_edge(nb[i], n);
    }
    for (const Tn& x : nb) g.unsuppress_edge(x, n);
    return static_cast<int>(ring.size());
}

template <class Tn, class Te>
int edge(const Graph<Tn, Te>& g, const Tn& n1, const Tn& n2, std::set<Tn>& ring) {
    Tn a = n1, b = n2;
    if (g.degree_node(b) < g.degree_node(a)) std::swap(a, b);
    std::vector<Tn> others;
    for (const Tn& x : neighbours(g, a))
        if (x != b) others.push_back(x);
    for (const Tn& c : others) g.suppress_edge(c, a);
    ring.clear();
    int best = INT_MAX;
    std::set<Tn> temp;
    for (const Tn& c : others) {
        g.unsuppress_edge(c, a);
        int size = node2(g, a, temp);
        g.suppress_edge(c, a);
        if (size != 0 && size < best) {
            ring = temp;
            best = size;
        }
    }
    for (const Tn& c : others) g.unsuppress_edge(c, a);
    return static_cast<int>(ring.size());
}

template <class Tn, class Te>
int angle(const Graph<Tn, Te>& g, const Tn& left, const Tn& middle, const Tn& right, std::set<Tn>& ring) {
    ring.clear();
    if (g.degree_node(left) < 2 || g.degree_node(right) < 2) return 0;
    std::vector<Tn> others;
    for (const Tn& x : neighbours(g, middle))
        if (x != left && x != right) others.push_back(x);
    for (const Tn& o : others) g.suppress_edge(middle, o);
    node2(g, middle, ring);
    for (const Tn& o : others) g.unsuppress_edge(middle, o);
    return static_cast<int>(ring.size());
}

template <class Tn, class Te>
bool edge_cyclic(const Graph<Tn, Te>& g, const Tn& n1, const Tn& n2) {
    if (g.degree_node(n1) < 2 || g.degree_node(n2) < 2) return false;
    std::vector<Tn> scratch;
    return !g.nodes_one_side(n1, n2, scratch);
}

int residual_rings_found = 0;  // how often the residual search added a ring

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
    for (const auto& ring : assembly) {
        bool selected = false;
        for (const Te& e : ring) selected = selected || edge_use[e] < 1 || (edge_use[e] < 2 && ring.size() < 9);
        if (!selected) continue;
        rings.push_back(g.edges_to_nodes(ring));
        for (const Te& e : ring) ++edge_use[e];
    }
    Graph<Tn, int> residual;
    std::set<Tn> ends;
    int id = 0;
    for (const auto& use : edge_use) {
        Tn n1 = g.edge_node1(use.first), n2 = g.edge_node2(use.first);
        if (use.second < 2 && node_count[n1] >= 3 && node_count[n2] >= 3) {
            residual.add_edge(id++, n1, n2);
            ends.insert(n1);
            ends.insert(n2);
        }
    }
    if (id < 3) return;
    std::set<std::set<Tn> > found;
    for (const Tn& n : ends) {
        std::set<Tn> ring;
        int size = node(residual, n, ring);
        if (size == 0) continue;
        if (size < 9 && found.insert(ring).second) {
            rings.push_back(ring);
            ++residual_rings_found;
        }
    }
}

template <class Tn, class Te>
int assemblies(const Graph<Tn, Te>& g, std::deque<std::set<Tn> >& rings, std::deque<int>& bounds) {
    rings.clear();
    bounds.clear();
    std::deque<std::set<Te> > candidates;
    std::deque<bool> flagged;
    for (const auto& entry : g.nodes()) {
        const Tn& middle = entry.first;
        if (g.degree_node(middle) <= 1) continue;
        std::vector<Tn> nb = neighbours(g, middle);
        for (std::size_t p = 0; p < nb.size(); ++p)
            for (std::size_t q = p + 1; q < nb.size(); ++q) {
                std::set<Tn> ring;
                if (angle(g, nb[p], middle, nb[q], ring) == 0) continue;
                std::set<Te> edges = g.nodes_to_edges(ring);
                if (edges.size() > ring.size()) continue;
                if (std::find(candidates.begin(), candidates.end(), edges) != candidates.end()) continue;
                candidates.push_back(edges);
                flagged.push_back(false);
            }
    }
    if (candidates.empty()) return 0;
    bounds.push_back(0);
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (flagged[i]) continue;
        flagged[i] = true;
        std::deque<std::set<Te> > assembly;
        std::deque<int> queue(1, static_cast<int>(i));
        while (!queue.empty()) {
            int j = queue.front();
            queue.pop_front();
            assembly.push_back(candidates[j]);
            for (std::size_t k = 0; k < candidates.size(); ++k) {
                if (flagged[k]) continue;
                std::vector<Te> shared;
                std::set_intersection(candidates[j].begin(), candidates[j].end(), candidates[k].begin(),
                                      candidates[k].end(), std::back_inserter(shared));
                if (!shared.empty()) {
                    flagged[k] = true;
                    queue.push_back(static_cast<int>(k));
                }
            }
        }
        select(g, assembly, rings);
        bounds.push_back(static_cast<int>(rings.size()));
    }
    return static_cast<int>(bounds.size()) - 1;
}

}  // namespace reference

namespace {

/// Every search of `g` against the reference, for every node, edge and angle.
template <class Tn, class Te>
void expect_as_reference(const Graph<Tn, Te>& g) {
    std::set<Tn> ring, expected;
    for (const auto& entry : g.nodes()) {
        const Tn& n = entry.first;
        ASSERT_EQ(g.node_smallest_ring(n, ring), reference::node(g, n, expected));
        ASSERT_EQ(ring, expected);
        int size = -1;
        EXPECT_EQ(g.is_node_cyclic(n, &size), !expected.empty());
        EXPECT_EQ(size, static_cast<int>(expected.size()));
        std::vector<Tn> nb = reference::neighbours(g, n);
        if (nb.size() == 2) {
            ASSERT_EQ(g.node2_smallest_ring(n, ring), reference::node2(g, n, expected));
            ASSERT_EQ(ring, expected);
        }
        for (std::size_t p = 0; p < nb.size(); ++p)
            for (std::size_t q = p + 1; q < nb.size(); ++q) {
                ASSERT_EQ(g.angle_smallest_ring(nb[q], n, nb[p], ring), reference::angle(g, nb[q], n, nb[p], expected));
                ASSERT_EQ(ring, expected);
            }
    }
    for (const auto& entry : g.edges()) {
        const Tn a = entry.second.id1(), b = entry.second.id2();
        ASSERT_EQ(g.edge_smallest_ring(a, b, ring), reference::edge(g, a, b, expected));
        ASSERT_EQ(ring, expected);
        ASSERT_EQ(g.edge_smallest_ring(b, a, ring), reference::edge(g, b, a, expected));
        ASSERT_EQ(ring, expected);
        int size = -1;
        EXPECT_EQ(g.is_edge_cyclic(entry.first, &size), !expected.empty());
        EXPECT_EQ(size, static_cast<int>(expected.size()));
        EXPECT_EQ(g.is_edge_cyclic(entry.first, nullptr), reference::edge_cyclic(g, a, b));
        EXPECT_EQ(g.is_edge_cyclic(b, a, nullptr), !expected.empty());
    }
    std::deque<std::set<Tn> > rings, expected_rings;
    std::deque<int> bounds, expected_bounds;
    ASSERT_EQ(g.ring_assemblies(rings, bounds), reference::assemblies(g, expected_rings, expected_bounds));
    EXPECT_EQ(rings, expected_rings);
    EXPECT_EQ(bounds, expected_bounds);
    std::deque<std::set<Tn> > basic;
    EXPECT_EQ(g.basic_ring_set(basic), static_cast<int>(expected_rings.size()));
    EXPECT_EQ(basic, expected_rings);

    // The public selection on an assembly of every ring found, largest first.
    std::deque<std::set<Te> > assembly, expected_assembly;
    for (auto r = expected_rings.rbegin(); r != expected_rings.rend(); ++r) assembly.push_back(g.nodes_to_edges(*r));
    expected_assembly = assembly;
    rings.assign(1, std::set<Tn>());
    expected_rings = rings;
    g.select_rings_from_assembly(assembly, rings);
    reference::select(g, expected_assembly, expected_rings);
    EXPECT_EQ(assembly, expected_assembly);
    EXPECT_EQ(rings, expected_rings);
}

/// Ring systems grown at random: rings fused on an edge, spiro rings, bridges
/// between any two nodes, rings hung on chains, and pendant chains.
EdgeList random_polycycle(std::mt19937& rng, int steps, int& count) {
    EdgeList edges;
    std::set<std::pair<int, int> > present;
    auto pick = [&rng](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    auto link = [&](int a, int b) {
        if (a == b || present.count({std::min(a, b), std::max(a, b)}) != 0) return false;
        present.insert({std::min(a, b), std::max(a, b)});
        edges.push_back({a, b});
        return true;
    };
    // A path of `inner` new nodes from a to b.
    auto path = [&](int a, int b, int inner) {
        int last = a;
        for (int i = 0; i < inner; ++i) {
            link(last, count);
            last = count++;
        }
        link(last, b);
    };
    count = 3 + pick(6);
    for (int i = 0; i < count; ++i) link(i, (i + 1) % count);
    for (int step = 0; step < steps; ++step) {
        switch (pick(6)) {
        case 0:  // fuse a ring of 3 to 8 on an edge
        case 1: {
            auto e = edges[pick(static_cast<int>(edges.size()))];
            path(e.first, e.second, 1 + pick(6));
            break;
        }
        case 2: {  // a spiro ring of 3 to 7
            int a = pick(count);
            path(a, a, 2 + pick(5));
            break;
        }
        case 3: {  // a bridge of 0 to 3 nodes between two nodes
            int a = pick(count), b = pick(count);
            if (a != b && present.count({std::min(a, b), std::max(a, b)}) == 0) path(a, b, pick(4));
            break;
        }
        case 4: {  // a ring of 3 to 8 at the end of a chain
            int last = pick(count);
            for (int i = 0, n = 1 + pick(3); i < n; ++i) {
                link(last, count);
                last = count++;
            }
            path(last, last, 2 + pick(6));
            break;
        }
        default: {  // a pendant chain
            int last = pick(count);
            for (int i = 0, n = 1 + pick(3); i < n; ++i) {
                link(last, count);
                last = count++;
            }
        }
        }
    }
    return edges;
}

/// A random tree with `extra` random edges added.
EdgeList random_sparse(std::mt19937& rng, int count, int extra) {
    EdgeList edges;
    std::set<std::pair<int, int> > present;
    for (int i = 1; i < count; ++i) {
        int parent = std::uniform_int_distribution<int>(0, i - 1)(rng);
        edges.push_back({parent, i});
        present.insert({parent, i});
    }
    for (int tries = 0; extra > 0 && tries < 1000; ++tries) {
        int a = std::uniform_int_distribution<int>(0, count - 1)(rng);
        int b = std::uniform_int_distribution<int>(0, count - 1)(rng);
        if (a == b || !present.insert({std::min(a, b), std::max(a, b)}).second) continue;
        edges.push_back({a, b});
        --extra;
    }
    return edges;
}

/// A rim of 4 to 8 nodes with a hub on every rim node, perhaps a second hub
/// on some, and up to two random edges: rims are rings that no angle finds.
EdgeList random_wheel(std::mt19937& rng, int& count) {
    auto pick = [&rng](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    const int rim = 4 + pick(5);
    EdgeList edges = cycle(0, rim);
    std::set<std::pair<int, int> > present;
    for (const auto& e : edges) present.insert({std::min(e.first, e.second), std::max(e.first, e.second)});
    count = rim;
    for (int hubs = 1 + pick(2); hubs > 0; --hubs, ++count)
        for (int i = 0; i < rim; ++i)
            if (hubs == 1 || pick(2) == 0) {
                edges.push_back({i, count});
                present.insert({i, count});
            }
    for (int extra = pick(3), tries = 0; extra > 0 && tries < 50; ++tries) {
        int a = pick(count), b = pick(count);
        if (a == b || !present.insert({std::min(a, b), std::max(a, b)}).second) continue;
        edges.push_back({a, b});
        --extra;
    }
    return edges;
}

}  // namespace

TEST(GraphRings, ChainHasNoRings) {
    Molecule m(5, {{0, 1}, {1, 2}, {2, 3}, {3, 4}});
    std::set<HNode> ring = m.nodes({0});
    for (const HNode& n : m.n) {
        int size = -1;
        EXPECT_FALSE(m.g.is_node_cyclic(n, &size));
        EXPECT_EQ(size, 0);
        EXPECT_EQ(m.g.node_smallest_ring(n, ring), 0);
        EXPECT_TRUE(ring.empty());
    }
    EXPECT_EQ(m.g.node2_smallest_ring(m.n[2], ring), 0);
    for (const HEdge& e : m.e) {
        int size = -1;
        EXPECT_FALSE(m.g.is_edge_cyclic(e, nullptr));
        EXPECT_FALSE(m.g.is_edge_cyclic(e, &size));
        EXPECT_EQ(size, 0);
    }
    std::deque<std::set<HNode> > rings(1);
    std::deque<int> bounds(1, 7);
    EXPECT_EQ(m.g.ring_assemblies(rings, bounds), 0);
    EXPECT_TRUE(rings.empty());
    EXPECT_TRUE(bounds.empty());
    EXPECT_EQ(m.g.basic_ring_set(rings), 0);
}

TEST(GraphRings, BenzeneAndNaphthalene) {
    Molecule benzene(6, cycle(0, 6), 11);
    std::set<HNode> ring;
    for (const HNode& n : benzene.n) {
        EXPECT_EQ(benzene.g.node_smallest_ring(n, ring), 6);
        EXPECT_EQ(ring.size(), 6u);
    }
    std::deque<std::set<HNode> > rings;
    std::deque<int> bounds;
    EXPECT_EQ(benzene.g.ring_assemblies(rings, bounds), 1);
    EXPECT_EQ(bounds, (std::deque<int>{0, 1}));
    ASSERT_EQ(rings.size(), 1u);
    EXPECT_EQ(rings[0], std::set<HNode>(benzene.n.begin(), benzene.n.end()));

    // Rings 0-5 and 4-9, fused on the edge 4-5.
    Molecule naph(10, join(cycle(0, 6), {{5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 4}}), 12);
    const std::set<HNode> left = naph.nodes({0, 1, 2, 3, 4, 5}), right = naph.nodes({4, 5, 6, 7, 8, 9});
    EXPECT_EQ(naph.g.edge_smallest_ring(naph.n[4], naph.n[5], ring), 6);
    EXPECT_TRUE(ring == left || ring == right);
    EXPECT_EQ(naph.g.node_smallest_ring(naph.n[4], ring), 6);
    // Through the fusion node across both rings: the perimeter, which has the
    // fused edge as a chord.
    EXPECT_EQ(naph.g.angle_smallest_ring(naph.n[3], naph.n[4], naph.n[9], ring), 10);
    EXPECT_EQ(naph.g.ring_assemblies(rings, bounds), 1);
    EXPECT_EQ(bounds, (std::deque<int>{0, 2}));
    EXPECT_TRUE((rings == std::deque<std::set<HNode> >{left, right}) ||
                (rings == std::deque<std::set<HNode> >{right, left}));
    int size = -1;
    EXPECT_TRUE(naph.g.is_edge_cyclic(naph.n[5], naph.n[4], &size));
    EXPECT_EQ(size, 6);
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
        std::deque<std::set<HNode> > rings;
        std::deque<int> bounds;
        EXPECT_EQ(m.g.ring_assemblies(rings, bounds), 1);
        EXPECT_EQ(sizes(rings), std::vector<int>(static_cast<std::size_t>(shape.first * shape.second), 6));
        for (const HNode& n : m.n) {
            int size = 0;
            EXPECT_TRUE(m.g.is_node_cyclic(n, &size));
            EXPECT_EQ(size, 6);
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
    std::deque<std::set<HNode> > rings;
    std::deque<int> bounds;
    EXPECT_EQ(spiro.g.ring_assemblies(rings, bounds), 2);
    EXPECT_EQ(bounds, (std::deque<int>{0, 1, 2}));
    EXPECT_EQ(sizes(rings), (std::vector<int>{5, 6}));

    // Two benzene rings joined by a chain of two nodes.
    Molecule linked(14, join(join(cycle(0, 6), cycle(6, 6)), {{0, 12}, {12, 13}, {13, 6}}), 22);
    EXPECT_EQ(linked.g.ring_assemblies(rings, bounds), 2);
    EXPECT_EQ(bounds, (std::deque<int>{0, 1, 2}));
    EXPECT_EQ(sizes(rings), (std::vector<int>{6, 6}));
    EXPECT_FALSE(linked.g.is_node_cyclic(linked.n[12], nullptr));
    EXPECT_FALSE(linked.g.is_edge_cyclic(linked.n[0], linked.n[12], nullptr));
    EXPECT_TRUE(linked.g.is_node_cyclic(linked.n[0], nullptr));
}

TEST(GraphRings, CagesTakeEveryFace) {
    // Cubane: corners 0-7, edges along the three bits.
    EdgeList cube;
    for (int i = 0; i < 8; ++i)
        for (int bit = 1; bit < 8; bit <<= 1)
            if ((i & bit) == 0) cube.push_back({i, i | bit});
    Molecule cubane(8, cube, 31);
    std::deque<std::set<HNode> > rings;
    std::deque<int> bounds;
    // Each edge has two faces after five faces at the most; the sixth still
    // has edges in only one, so it is taken too.
    EXPECT_EQ(cubane.g.ring_assemblies(rings, bounds), 1);
    EXPECT_EQ(sizes(rings), std::vector<int>(6, 4));
    for (const HNode& n : cubane.n) {
        int size = -1;
        EXPECT_TRUE(cubane.g.is_node_cyclic(n, &size));
        EXPECT_EQ(size, 4);
    }

    // Adamantane: the four bridgeheads 0-3 joined pairwise through 4-9.
    EdgeList adam;
    int next = 4;
    for (int a = 0; a < 4; ++a)
        for (int b = a + 1; b < 4; ++b) {
            adam.push_back({a, next});
            adam.push_back({next++, b});
        }
    Molecule adamantane(10, adam, 32);
    EXPECT_EQ(adamantane.g.ring_assemblies(rings, bounds), 1);
    EXPECT_EQ(sizes(rings), std::vector<int>(4, 6));

    // C60: 12 pentagons and 20 hexagons, all taken.
    EdgeList cage = c60();
    ASSERT_EQ(cage.size(), 90u);
    Molecule fullerene(60, cage, 33);
    EXPECT_EQ(fullerene.g.basic_ring_set(rings), 32);
    std::vector<int> expected(12, 5);
    expected.insert(expected.end(), 20, 6);
    EXPECT_EQ(sizes(rings), expected);
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
    std::deque<std::set<HNode> > rings;
    std::deque<int> bounds;
    EXPECT_EQ(butane.g.ring_assemblies(rings, bounds), 1);
    EXPECT_EQ(sizes(rings), (std::vector<int>{3, 3}));

    // Norbornane: bridgeheads 0 and 1, bridges 2-3, 4-5 and 6.
    Molecule norbornane(7, {{0, 2}, {2, 3}, {3, 1}, {0, 4}, {4, 5}, {5, 1}, {0, 6}, {6, 1}}, 42);
    EXPECT_EQ(norbornane.g.node_smallest_ring(norbornane.n[2], ring), 5);
    EXPECT_EQ(norbornane.g.angle_smallest_ring(norbornane.n[2], norbornane.n[0], norbornane.n[4], ring), 6);
    EXPECT_EQ(ring, norbornane.nodes({0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(norbornane.g.ring_assemblies(rings, bounds), 1);
    // The 6-ring is a candidate (from that angle) and is taken: its edges are
    // each on one 5-ring only.
    EXPECT_EQ(sizes(rings), (std::vector<int>{5, 5, 6}));

    // Bicyclo[2.2.2]octane: three 6-rings.
    Molecule octane(8, {{0, 2}, {2, 3}, {3, 1}, {0, 4}, {4, 5}, {5, 1}, {0, 6}, {6, 7}, {7, 1}}, 43);
    EXPECT_EQ(octane.g.ring_assemblies(rings, bounds), 1);
    EXPECT_EQ(sizes(rings), (std::vector<int>{6, 6, 6}));
    // Node 2 lies on two 6-rings; the first found in neighbour order wins.
    EXPECT_EQ(octane.g.node_smallest_ring(octane.n[2], ring), 6);
    EXPECT_TRUE(ring == octane.nodes({0, 1, 2, 3, 4, 5}) || ring == octane.nodes({0, 1, 2, 3, 6, 7}));
}

TEST(GraphRings, SeveralComponents) {
    // Benzene 0-5, a chain 6-8, a cyclopropane 9-11, a lone node 12, and a
    // naphthalene 13-22.
    EdgeList edges = join(cycle(0, 6), {{6, 7}, {7, 8}});
    edges = join(edges, cycle(9, 3));
    edges = join(edges, join(cycle(13, 6), {{18, 19}, {19, 20}, {20, 21}, {21, 22}, {22, 17}}));
    Molecule m(23, edges, 51);
    std::deque<std::set<HNode> > rings;
    std::deque<int> bounds;
    EXPECT_EQ(m.g.ring_assemblies(rings, bounds), 3);
    EXPECT_EQ(sizes(rings), (std::vector<int>{3, 6, 6, 6}));
    ASSERT_EQ(bounds.size(), 4u);
    for (int k = 0; k < 3; ++k) {
        // Each assembly's rings lie in one component.
        std::set<HNode> all;
        for (int r = bounds[k]; r < bounds[k + 1]; ++r) all.insert(rings[r].begin(), rings[r].end());
        EXPECT_TRUE(all.size() == 3 || all.size() == 6 || all.size() == 10) << all.size();
    }
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
    std::deque<std::set<HNode> > rings;
    std::deque<int> bounds;
    EXPECT_EQ(m.g.ring_assemblies(rings, bounds), 1);
    EXPECT_EQ(bounds, (std::deque<int>{0, 6}));
    ASSERT_EQ(rings.size(), 6u);
    EXPECT_EQ(rings.back(), m.nodes({1, 2, 3, 4, 5}));
    EXPECT_EQ(sizes(rings), (std::vector<int>{3, 3, 3, 3, 3, 5}));
    expect_as_reference(m.g);
}

TEST(GraphRings, AgreeWithThePlainMethodOnRandomGraphs) {
    std::mt19937 rng(2024);
    const int residual_before = reference::residual_rings_found;
    for (unsigned int seed = 1; seed <= 160; ++seed) {
        SCOPED_TRACE("graph " + std::to_string(seed));
        int count = 0;
        EdgeList edges;
        switch (seed % 5) {
        case 0:  // nearly a tree
            count = 8 + static_cast<int>(seed % 25);
            edges = random_sparse(rng, count, 1 + static_cast<int>(seed % 5));
            break;
        case 1:  // dense: small rings sharing nodes
            count = 6 + static_cast<int>(seed % 14);
            edges = random_sparse(rng, count, count / 2 + static_cast<int>(seed) % (count / 2 + 1));
            break;
        case 2:  // where the residual search has work
            edges = random_wheel(rng, count);
            break;
        default:
            edges = random_polycycle(rng, 2 + static_cast<int>(seed % 8), count);
        }
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

TEST(GraphRings, SearchesSeeEdgesSuppressedByTheCaller) {
    // Naphthalene with node 4 cut down to degree 2 by the caller: the searches
    // run on the adjacency as it stands, and again on the whole one after.
    Molecule naph(10, join(cycle(0, 6), {{5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 4}}), 61);
    std::set<HNode> ring, expected;
    EXPECT_EQ(naph.g.node_smallest_ring(naph.n[4], ring), 6);
    naph.g.suppress_edge(naph.n[4], naph.n[5]);
    EXPECT_EQ(naph.g.node2_smallest_ring(naph.n[4], ring), 10);
    EXPECT_EQ(reference::node2(naph.g, naph.n[4], expected), 10);
    EXPECT_EQ(ring, expected);
    EXPECT_EQ(naph.g.node_smallest_ring(naph.n[5], ring), 10);
    naph.g.unsuppress_edge(naph.n[4], naph.n[5]);
    EXPECT_EQ(naph.g.node_smallest_ring(naph.n[5], ring), 6);
    EXPECT_TRUE(naph.g.consistent());
}

TEST(GraphRings, CachesDropOnEdgeChangesOnly) {
    Molecule m(5, cycle(0, 3), 71);
    int size = -1;
    EXPECT_TRUE(m.g.is_node_cyclic(m.n[0], &size));
    std::deque<std::set<HNode> > rings;
    EXPECT_EQ(m.g.basic_ring_set(rings), 1);

    // Suppression touches no cache: the cached answers stand, while a fresh
    // search sees the cut.
    m.g.suppress_edge(m.n[0], m.n[1]);
    std::set<HNode> ring;
    EXPECT_EQ(m.g.node_smallest_ring(m.n[0], ring), 0);
    EXPECT_TRUE(m.g.is_node_cyclic(m.n[0], &size));
    EXPECT_EQ(size, 3);
    EXPECT_EQ(m.g.basic_ring_set(rings), 1);
    // Nor does adding a node.
    m.g.add_node(m.n[3]);
    EXPECT_TRUE(m.g.is_node_cyclic(m.n[0], nullptr));
    EXPECT_EQ(m.g.basic_ring_set(rings), 1);
    // Removing an isolated node keeps the node cache but drops the ring set.
    m.g.remove_node(m.n[3]);
    EXPECT_TRUE(m.g.is_node_cyclic(m.n[0], nullptr));
    EXPECT_EQ(m.g.basic_ring_set(rings), 0);
    // An edge insertion drops both: now computed on the cut adjacency.
    m.g.add_edge(HEdge(new Edge()), m.n[2], m.n[4]);
    EXPECT_FALSE(m.g.is_node_cyclic(m.n[0], &size));
    EXPECT_EQ(size, 0);
    EXPECT_EQ(m.g.basic_ring_set(rings), 0);
    m.g.unsuppress_edge(m.n[0], m.n[1]);
    EXPECT_FALSE(m.g.is_node_cyclic(m.n[0], nullptr));  // still the cached answer
    EXPECT_EQ(m.g.basic_ring_set(rings), 0);
    // An edge removal drops them again.
    HEdge tail = m.g.edge(m.n[2], m.n[4]);
    m.g.remove_edge(tail);
    EXPECT_TRUE(m.g.is_node_cyclic(m.n[0], &size));
    EXPECT_EQ(size, 3);
    EXPECT_EQ(m.g.basic_ring_set(rings), 1);
    m.g.clear();
    EXPECT_EQ(m.g.basic_ring_set(rings), 0);
}

TEST(GraphRings, MessagesComeBeforeAnyChange) {
    Molecule m(6, join(cycle(0, 4), {{0, 4}}), 81);  // node 5 isolated
    HNode stranger(new Node());
    std::set<HNode> ring = m.nodes({1});
    const std::set<HNode> untouched = ring;
    EXPECT_EQ(invalid_argument_text([&] { m.g.node2_smallest_ring(stranger, ring); }),
              "Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not exist");
    EXPECT_EQ(invalid_argument_text([&] { m.g.node2_smallest_ring(m.n[0], ring); }),
              "Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not have degree = 2");
    EXPECT_EQ(invalid_argument_text([&] { m.g.node_smallest_ring(stranger, ring); }),
              "Graph::node_smallest_ring(T& node, std::set<Tn>& ring):node does not exist");
    EXPECT_EQ(invalid_argument_text([&] { m.g.is_node_cyclic(stranger, nullptr); }),
              "Graph::node_smallest_ring(T& node, std::set<Tn>& ring):node does not exist");
    EXPECT_EQ(invalid_argument_text([&] { m.g.edge_smallest_ring(m.n[1], m.n[1], ring); }),
              "Graph::edge_smallest_ring(Tn& node1, Tn& node2, std::set<Tn>& ring):node1 and node2 are identical");
    EXPECT_EQ(invalid_argument_text([&] { m.g.edge_smallest_ring(m.n[1], m.n[3], ring); }),
              "Graph::edge_smallest_ring(Tn& node1, Tn& node2, std::set<Tn>& ring):node1 and node2 are not connected");
    EXPECT_EQ(
        invalid_argument_text([&] { m.g.angle_smallest_ring(m.n[1], m.n[0], m.n[1], ring); }),
        "Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& ring):left and right nodes are identical");
    EXPECT_EQ(invalid_argument_text([&] { m.g.angle_smallest_ring(m.n[1], m.n[0], m.n[2], ring); }),
              "Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& ring):nodes not connected in "
              "sequence left-middle-right");
    int size = -7;
    EXPECT_EQ(invalid_argument_text([&] { m.g.is_edge_cyclic(m.n[1], m.n[3], &size); }),
              "Graph::edge_smallest_ring(Tn& node1, Tn& node2, std::set<Tn>& ring):node1 and node2 are not connected");
    // Without a size, the degree test comes first: an unknown node or a
    // terminal is simply not cyclic; two ring nodes without an edge raise.
    EXPECT_FALSE(m.g.is_edge_cyclic(m.n[1], stranger, nullptr));
    EXPECT_FALSE(m.g.is_edge_cyclic(m.n[1], m.n[5], nullptr));
    EXPECT_EQ(invalid_argument_text([&] { m.g.is_edge_cyclic(m.n[1], m.n[3], nullptr); }),
              "Graph::nodes_one_side(): no edge containing node1 and node2");
    EXPECT_EQ(invalid_argument_text([&] { m.g.is_edge_cyclic(HEdge(new Edge()), &size); }),
              "Graph::is_edge_cyclic(Te& edge, int* ringsize): specified edge does not exist");
    EXPECT_EQ(size, -7);
    EXPECT_EQ(invalid_argument_text([&] { m.g.nodes_to_edges(std::set<HNode>{m.n[0], stranger}); }),
              "Graph::nodes_to_edges:   at least one of the nodes does not exist in graph");
    EXPECT_EQ(invalid_argument_text([&] { m.g.edges_to_nodes(std::set<HEdge>{HEdge(new Edge())}); }),
              "Graph::edge_node1:  no edge with specified id");
    EXPECT_EQ(invalid_argument_text([&] { m.g.extended_conn(0); }), "Graph::extended_conn:  requested order was < 1");
    EXPECT_EQ(ring, untouched);
    EXPECT_TRUE(m.g.consistent());
    EXPECT_EQ(m.g.degree_node(m.n[0]), 3);
}

TEST(GraphRings, NodesEdgesConversionsAndExtendedConnectivity) {
    // A square 0-1-2-3 with a tail 3-4.
    Molecule m(5, join(cycle(0, 4), {{3, 4}}), 91);
    std::set<HEdge> edges = m.g.nodes_to_edges(m.nodes({0, 1, 2}));
    EXPECT_EQ(edges, (std::set<HEdge>{m.e[0], m.e[1]}));
    EXPECT_EQ(m.g.edges_to_nodes(edges), m.nodes({0, 1, 2}));
    EXPECT_TRUE(m.g.nodes_to_edges(std::set<HNode>()).empty());

    std::map<HNode, int> ec = m.g.extended_conn(1);
    ASSERT_EQ(ec.size(), 5u);
    EXPECT_EQ(ec[m.n[0]], 2);
    EXPECT_EQ(ec[m.n[3]], 3);
    EXPECT_EQ(ec[m.n[4]], 1);
    ec = m.g.extended_conn(3);
    // Order 2: 0:5 1:4 2:5 3:5 4:3; order 3 sums those over the neighbours.
    EXPECT_EQ(ec[m.n[0]], 4 + 5);
    EXPECT_EQ(ec[m.n[1]], 5 + 5);
    EXPECT_EQ(ec[m.n[3]], 5 + 5 + 3);
    EXPECT_EQ(ec[m.n[4]], 5);

    Molecule path(3, {{0, 1}, {1, 2}});
    ec = path.g.extended_conn(2);
    EXPECT_EQ(ec[path.n[0]], 2);
    EXPECT_EQ(ec[path.n[1]], 2);
    EXPECT_EQ(ec[path.n[2]], 2);

    // Values wrap around as 32-bit integers rather than trap.
    Molecule star(7, {{0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}});
    ec = star.g.extended_conn(40);
    EXPECT_EQ(ec.size(), 7u);
}

TEST(GraphRings, LongChainsOfRingsStayLinear) {
    // 200000 nodes in units of ten, each unit a 6-ring on the chain: deep
    // enough that any recursion along the chain would exhaust the stack.
    const int units = 20000;
    EdgeList edges;
    for (int u = 0; u < units; ++u) {
        int b = 10 * u;
        for (int i = 0; i < 9; ++i) edges.push_back({b + i, b + i + 1});
        edges.push_back({b + 2, b + 7});
        if (u > 0) edges.push_back({b - 1, b});
    }
    Molecule m(10 * units, edges);
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
