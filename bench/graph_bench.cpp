// Costs of the graph core and of IndexedTable: building by add_edge, the
// component searches, a long shortest path, and index repair after removal.
#include <benchmark/benchmark.h>

#include <deque>
#include <set>
#include <vector>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {

struct Node {};
struct Edge {};
typedef THandle<Node> HNode;
typedef THandle<Edge> HEdge;
typedef Graph<HNode, HEdge> G;

std::vector<HNode> make_nodes(int n) {
    std::vector<HNode> nodes;
    nodes.reserve(n);
    for (int i = 0; i < n; ++i) nodes.push_back(HNode(new Node()));
    return nodes;
}

// A molecule-like graph: chains of 20 nodes with a branch every fourth node,
// so about 50 components per 1000 nodes.
void build(G& g, const std::vector<HNode>& nodes, const std::vector<HEdge>& edges) {
    std::size_t e = 0;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        if (i % 20 == 0) continue;
        std::size_t from = (i % 4 == 0 && i >= 3) ? i - 3 : i - 1;
        g.add_edge(edges[e++], nodes[from], nodes[i]);
    }
}

void BM_GraphBuildAddEdge(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    std::vector<HNode> nodes = make_nodes(n);
    std::vector<HEdge> edges;
    for (int i = 0; i < n; ++i) edges.push_back(HEdge(new Edge()));
    for (auto _ : state) {
        G g;
        build(g, nodes, edges);
        benchmark::DoNotOptimize(g.nedges());
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_GraphBuildAddEdge)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_GraphComponents(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    std::vector<HNode> nodes = make_nodes(n);
    std::vector<HEdge> edges;
    for (int i = 0; i < n; ++i) edges.push_back(HEdge(new Edge()));
    G g;
    build(g, nodes, edges);
    std::deque<std::set<HNode> > parts;
    for (auto _ : state) benchmark::DoNotOptimize(g.components(parts));
    state.SetComplexityN(n);
}
BENCHMARK(BM_GraphComponents)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_GraphNComponents(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    std::vector<HNode> nodes = make_nodes(n);
    std::vector<HEdge> edges;
    for (int i = 0; i < n; ++i) edges.push_back(HEdge(new Edge()));
    G g;
    build(g, nodes, edges);
    for (auto _ : state) benchmark::DoNotOptimize(g.ncomponents());
    state.SetComplexityN(n);
}
BENCHMARK(BM_GraphNComponents)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_GraphShortestPathChain(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    std::vector<HNode> nodes = make_nodes(n);
    G g;
    for (int i = 1; i < n; ++i) g.add_edge(HEdge(new Edge()), nodes[i - 1], nodes[i]);
    std::vector<HNode> path;
    for (auto _ : state) benchmark::DoNotOptimize(g.shortest_path(nodes.front(), nodes.back(), path));
    state.SetComplexityN(n);
}
BENCHMARK(BM_GraphShortestPathChain)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// One removal near the front, the index lookup that repairs the table, and
// the value added back at the end so that the table keeps its size.
void BM_IndexedTableIndexAfterRemoval(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    std::vector<HNode> nodes = make_nodes(n + 1);
    IndexedTable<HNode> table;
    for (const HNode& node : nodes) table.add(node);
    int next = 0;
    for (auto _ : state) {
        table.remove_value(nodes[next]);
        benchmark::DoNotOptimize(table.index(nodes.back()));
        table.add(nodes[next]);
        next = (next + 1) % n;
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_IndexedTableIndexAfterRemoval)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond)->Complexity();

// Lookups with valid hints: the common case between removals.
void BM_IndexedTableIndexSteady(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    std::vector<HNode> nodes = make_nodes(n);
    IndexedTable<HNode> table;
    for (const HNode& node : nodes) table.add(node);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(table.index(nodes[i]));
        i = (i + 7919) % nodes.size();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_IndexedTableIndexSteady)->RangeMultiplier(10)->Range(1000, 100000)->Complexity();

}  // namespace
