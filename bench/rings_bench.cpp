// Ring perception on graphs of the shapes that crystal structures bring:
// fused hexagonal sheets, a fullerene cage, and long chains with a ring every
// ten nodes. Each iteration drops the ring caches first (by removing and
// re-adding one edge), so that the figures are those of a cold search.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "molcryst/graph/Graph.h"

using namespace molcryst;

namespace {

struct Node {};
struct Edge {};
typedef THandle<Node> HNode;
typedef THandle<Edge> HEdge;
typedef Graph<HNode, HEdge> G;
typedef std::vector<std::pair<int, int> > EdgeList;

struct Built {
    std::vector<HNode> nodes;
    HEdge first_edge;
    G graph;
    explicit Built(int count, const EdgeList& edges) {
        for (int i = 0; i < count; ++i) nodes.push_back(HNode(new Node()));
        for (const auto& e : edges) {
            HEdge edge(new Edge());
            if (first_edge.unhand() == nullptr) first_edge = edge;
            graph.add_edge(edge, nodes[e.first], nodes[e.second]);
        }
    }
    // Removing and re-adding an edge drops every ring cache and the search index.
    void drop_caches() {
        HNode a = graph.edge_node1(first_edge), b = graph.edge_node2(first_edge);
        graph.remove_edge(first_edge);
        graph.add_edge(first_edge, a, b);
    }
};

// `rows` strips of `columns` hexagons on a brick-wall lattice.
EdgeList hex_sheet(int rows, int columns, int& count) {
    std::map<std::pair<int, int>, int> number;
    auto id = [&](int i, int j) {
        auto found = number.find({i, j});
        if (found != number.end()) return found->second;
        int n = static_cast<int>(number.size());
        number[{i, j}] = n;
        return n;
    };
    std::map<std::pair<int, int>, bool> seen;
    EdgeList edges;
    auto link = [&](int a, int b) {
        if (seen.insert({{std::min(a, b), std::max(a, b)}, true}).second) edges.push_back({a, b});
    };
    for (int i = 0; i < rows; ++i)
        for (int k = 0; k < columns; ++k) {
            int j = i % 2 + 2 * k;
            link(id(i, j), id(i, j + 1));
            link(id(i, j + 1), id(i, j + 2));
            link(id(i + 1, j), id(i + 1, j + 1));
            link(id(i + 1, j + 1), id(i + 1, j + 2));
            link(id(i, j), id(i + 1, j));
            link(id(i, j + 2), id(i + 1, j + 2));
        }
    count = static_cast<int>(number.size());
    return edges;
}

// The truncated icosahedron: the even permutations of three sign-varied
// points, joined at the edge length 2.
EdgeList c60(int& count) {
    const double phi = (1 + std::sqrt(5.0)) / 2;
    const double base[3][3] = {{0, 1, 3 * phi}, {1, 2 + phi, 2 * phi}, {phi, 2, 2 * phi + 1}};
    std::vector<std::array<double, 3> > points;
    for (const auto& b : base)
        for (int signs = 0; signs < 8; ++signs) {
            std::array<double, 3> p = {b[0] * (signs & 1 ? -1 : 1), b[1] * (signs & 2 ? -1 : 1), b[2] * (signs & 4 ? -1 : 1)};
            for (int shift = 0; shift < 3; ++shift) {
                std::array<double, 3> q = {p[shift], p[(shift + 1) % 3], p[(shift + 2) % 3]};
                bool seen = false;
                for (const auto& r : points)
                    seen = seen || std::fabs(r[0] - q[0]) + std::fabs(r[1] - q[1]) + std::fabs(r[2] - q[2]) < 1e-9;
                if (!seen) points.push_back(q);
            }
        }
    EdgeList edges;
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t j = i + 1; j < points.size(); ++j) {
            double d = 0;
            for (int k = 0; k < 3; ++k) d += (points[i][k] - points[j][k]) * (points[i][k] - points[j][k]);
            if (std::fabs(d - 4) < 1e-6) edges.push_back({static_cast<int>(i), static_cast<int>(j)});
        }
    count = static_cast<int>(points.size());
    return edges;
}

// A chain of `count` nodes in units of ten, each unit closing a 6-ring.
EdgeList ring_chain(int count) {
    EdgeList edges;
    for (int b = 0; b < count; b += 10) {
        for (int i = 0; i < 9; ++i) edges.push_back({b + i, b + i + 1});
        edges.push_back({b + 2, b + 7});
        if (b > 0) edges.push_back({b - 1, b});
    }
    return edges;
}

Built* make(int shape, int size) {
    int count = size;
    EdgeList edges;
    if (shape == 0) {
        int rows = size == 10 ? 2 : size == 100 ? 10 : 25;
        edges = hex_sheet(rows, size / rows, count);
    } else if (shape == 1) {
        edges = c60(count);
    } else {
        edges = ring_chain(count);
    }
    return new Built(count, edges);
}

void BasicRingSet(benchmark::State& state, int shape) {
    Built* built = make(shape, static_cast<int>(state.range(0)));
    std::deque<std::set<HNode> > rings;
    for (auto _ : state) {
        built->drop_caches();
        benchmark::DoNotOptimize(built->graph.basic_ring_set(rings));
    }
    state.counters["nodes"] = static_cast<double>(built->nodes.size());
    state.counters["rings"] = static_cast<double>(rings.size());
    delete built;
}

void IsNodeCyclicAll(benchmark::State& state, int shape) {
    Built* built = make(shape, static_cast<int>(state.range(0)));
    int cyclic = 0;
    for (auto _ : state) {
        built->drop_caches();
        cyclic = 0;
        for (const HNode& n : built->nodes) cyclic += built->graph.is_node_cyclic(n, nullptr);
        benchmark::DoNotOptimize(cyclic);
    }
    state.counters["nodes"] = static_cast<double>(built->nodes.size());
    state.counters["cyclic"] = cyclic;
    delete built;
}

}  // namespace

BENCHMARK_CAPTURE(BasicRingSet, HexSheet, 0)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(IsNodeCyclicAll, HexSheet, 0)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BasicRingSet, C60, 1)->Arg(60)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(IsNodeCyclicAll, C60, 1)->Arg(60)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BasicRingSet, RingChain, 2)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(IsNodeCyclicAll, RingChain, 2)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
