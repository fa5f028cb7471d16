// Ring perception on graphs of the shapes that crystal structures bring:
// fused hexagonal sheets, a fullerene cage, long chains with a ring every ten
// nodes, macrocycles, prismanes and a set of drug-like molecules (heavy atoms
// only, written as line notation). Each iteration drops the ring caches first
// (by removing and re-adding one edge), so that the figures are those of a
// cold search.
#include <benchmark/benchmark.h>

#include <array>
#include <cctype>
#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
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

// The heavy-atom graph of a molecule in line notation: atoms (bracketed or
// not), branches, ring closures (digits and %nn) and bond symbols, which are
// skipped since only the graph matters here.
EdgeList from_line_notation(const std::string& text, int& count) {
    EdgeList edges;
    std::vector<int> branches;
    std::map<int, int> open_rings;
    int previous = -1;
    count = 0;
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (c == '(') {
            branches.push_back(previous);
            ++i;
        } else if (c == ')') {
            previous = branches.back();
            branches.pop_back();
            ++i;
        } else if (c == '=' || c == '#' || c == '-' || c == ':' || c == '/' || c == '\\') {
            ++i;
        } else if (c == '.') {
            previous = -1;
            ++i;
        } else if (std::isdigit(static_cast<unsigned char>(c)) || c == '%') {
            int number = c == '%' ? std::stoi(text.substr(i + 1, 2)) : c - '0';
            i += c == '%' ? 3 : 1;
            auto open = open_rings.find(number);
            if (open == open_rings.end()) {
                open_rings[number] = previous;
            } else {
                edges.push_back({open->second, previous});
                open_rings.erase(open);
            }
        } else {
            if (c == '[') {
                i = text.find(']', i) + 1;
            } else {
                const bool two_letters = i + 1 < text.size() && ((c == 'C' && text[i + 1] == 'l') || (c == 'B' && text[i + 1] == 'r'));
                i += two_letters ? 2 : 1;
            }
            const int atom = count++;
            if (previous >= 0) edges.push_back({previous, atom});
            previous = atom;
        }
    }
    if (!open_rings.empty() || !branches.empty()) throw std::logic_error("unbalanced line notation: " + text);
    return edges;
}

// Two n-gons joined rung by rung: the [n]prismane cage.
EdgeList prismane(int n, int& count) {
    EdgeList edges;
    for (int i = 0; i < n; ++i) {
        edges.push_back({i, (i + 1) % n});
        edges.push_back({n + i, n + (i + 1) % n});
        edges.push_back({i, n + i});
    }
    count = 2 * n;
    return edges;
}

// A cyclodextrin of `units` glucose rings joined 1-4 through oxygen: each
// unit is C1..C5 and O5 in the ring, C6 with O6 on C5, O2 and O3 on C2 and C3,
// and the bridging O4 from its C4 to the next unit's C1.
EdgeList cyclodextrin(int units, int& count) {
    EdgeList edges;
    const int per_unit = 11;
    for (int u = 0; u < units; ++u) {
        const int b = u * per_unit;
        const int c1 = b, c2 = b + 1, c3 = b + 2, c4 = b + 3, c5 = b + 4, o5 = b + 5;
        edges.insert(edges.end(), {{c1, c2}, {c2, c3}, {c3, c4}, {c4, c5}, {c5, o5}, {o5, c1}});
        edges.insert(edges.end(), {{c5, b + 6}, {b + 6, b + 7}, {c2, b + 8}, {c3, b + 9}, {c4, b + 10}});
        edges.push_back({b + 10, ((u + 1) % units) * per_unit});
    }
    count = units * per_unit;
    return edges;
}

// [n]cycloparaphenylene: n benzene rings joined para to para in a hoop.
EdgeList cycloparaphenylene(int n, int& count) {
    EdgeList edges;
    for (int r = 0; r < n; ++r) {
        for (int i = 0; i < 6; ++i) edges.push_back({6 * r + i, 6 * r + (i + 1) % 6});
        edges.push_back({6 * r + 3, 6 * ((r + 1) % n)});
    }
    count = 6 * n;
    return edges;
}

std::string ring_of(const std::string& unit, int repeats) {
    std::string text = unit.substr(0, 1) + "1" + unit.substr(1);
    for (int i = 1; i < repeats; ++i) text += unit;
    return text + "1";
}

struct Shape {
    const char* name;
    std::string line;  // line notation, or empty for a built shape
};

const std::vector<Shape>& macrocycles() {
    static const std::vector<Shape> shapes = {
        {"amphotericin B",
         "CC1C=CC=CC=CC=CC=CC=CC=CC(CC2C(C(CC(O2)(CC(CC(C(CCC(CC(CC(=O)OC(C(C1O)C)C)O)O)O)O)O)O)O)C(=O)O)"
         "OC3C(C(C(C(O3)C)O)N)O"},
        {"cryptand[2.2.2]", "C1COCCOCCN2CCOCCOCCN1CCOCCOCC2"},
        {"18-crown-6", ring_of("CCO", 6)},
        {"24-crown-8", ring_of("CCO", 8)},
        {"30-crown-10", ring_of("CCO", 10)},
        {"cyclotetracosane", ring_of("C", 24)},
        {"cyclotriacontane", ring_of("C", 30)},
        {"erythromycin",
         "CCC1C(C(C(C(=O)C(CC(C(C(C(C(C(=O)O1)C)OC2CC(C(C(O2)C)O)(C)OC)C)OC3C(C(CC(O3)C)N(C)C)O)(C)O)C)C)O)(C)O"},
        {"alpha-cyclodextrin", ""},
        {"[10]cycloparaphenylene", ""},
        {"prismane", ""},
        {"pentaprismane", ""},
        {"hexaprismane", ""},
    };
    return shapes;
}

// Drug-like molecules of the kinds a structure collection holds: fused and
// bridged ring systems, heteroaromatics, steroids, a beta-lactam.
const std::vector<std::string>& drug_like() {
    static const std::vector<std::string> lines = {
        "Cn1cnc2c1c(=O)n(C)c(=O)n2C",
        "CC(=O)Oc1ccccc1C(=O)O",
        "CC(C)Cc1ccc(cc1)C(C)C(=O)O",
        "CC(=O)Nc1ccc(O)cc1",
        "CN1C(=O)CN=C(c2ccccc2)c2cc(Cl)ccc21",
        "CN1CCC23C4C1CC5=C2C(=C(C=C5)O)OC3C(C=C4)O",
        "CC(C)CCCC(C)C1CCC2C1(CCC3C2CC=C4C3(CCC(C4)O)C)C",
        "CC12CCC3C(C1CCC2O)CCC4=CC(=O)CCC34C",
        "CC1(C)SC2C(NC(=O)Cc3ccccc3)C(=O)N2C1C(=O)O",
        "COc1ccc2nccc(C(O)C3CC4CCN3CC4C=C)c2c1",
        "O=C1CC2OCC=C3CN4CCC56C4CC3C2C6N1c1ccccc15",
        "CC(C)c1c(C(=O)Nc2ccccc2)c(-c2ccccc2)c(-c2ccc(F)cc2)n1CCC(O)CC(O)CC(=O)O",
        "CCCc1nn(C)c2c(=O)[nH]c(-c3cc(S(=O)(=O)N4CCN(C)CC4)ccc3OCC)nc12",
        "CC1CCC2C(C)C(=O)OC3OC4(C)CCC1C32OO4",
        "C1C2CC3CC1CC(C2)C3",
        "C12C3C4C1C5C2C3C45",
        "COC1C(CC2CN3CCc4c([nH]c5cc(OC)ccc45)C3CC2C1C(=O)OC)OC(=O)c1cc(OC)c(OC)c(OC)c1",
        "CC(=O)CC(c1ccccc1)c1c(O)c2ccccc2oc1=O",
        "CN(C)C1C2CC3C(=C(O)c4c(O)cccc4C3(C)O)C(=O)C2(O)C(O)=C(C(N)=O)C1=O",
        "CC1(C)C2CCC1(C)C(=O)C2",
        "CN1CCCC1c1cccnc1",
        "CCN(CC)CC(=O)Nc1c(C)cccc1C",
        "OCC1OC(O)C(O)C(O)C1O",
        "c1ccc2cc3ccccc3cc2c1",
        "CC(C)NCC(O)COc1cccc2ccccc12",
        "Clc1ccc(cc1)C(c1ccccc1)N1CCN(CC1)CCOCC(=O)O",
    };
    return lines;
}

EdgeList macrocycle(int which, int& count) {
    const Shape& shape = macrocycles()[static_cast<std::size_t>(which)];
    if (!shape.line.empty()) return from_line_notation(shape.line, count);
    const std::string name = shape.name;
    if (name == "alpha-cyclodextrin") return cyclodextrin(6, count);
    if (name == "[10]cycloparaphenylene") return cycloparaphenylene(10, count);
    return prismane(name == "prismane" ? 3 : name == "pentaprismane" ? 5 : 6, count);
}

Built* make(int shape, int size) {
    int count = size;
    EdgeList edges;
    if (shape == 0) {
        int rows = size == 10 ? 2 : size == 100 ? 10 : 25;
        edges = hex_sheet(rows, size / rows, count);
    } else if (shape == 1) {
        edges = c60(count);
    } else if (shape == 3) {
        edges = macrocycle(size, count);
    } else {
        edges = ring_chain(count);
    }
    return new Built(count, edges);
}

// Cold basic_ring_set of one graph, which the benchmark then frees.
void ColdRingSet(benchmark::State& state, Built* built) {
    std::deque<std::set<HNode> > rings;
    for (auto _ : state) {
        built->drop_caches();
        benchmark::DoNotOptimize(built->graph.basic_ring_set(rings));
    }
    state.counters["nodes"] = static_cast<double>(built->nodes.size());
    state.counters["rings"] = static_cast<double>(rings.size());
    delete built;
}

void BasicRingSet(benchmark::State& state, int shape) { ColdRingSet(state, make(shape, static_cast<int>(state.range(0)))); }

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

void Macrocycle(benchmark::State& state) {
    const int which = static_cast<int>(state.range(0));
    state.SetLabel(macrocycles()[static_cast<std::size_t>(which)].name);
    ColdRingSet(state, make(3, which));
}

// The whole drug-like set, each molecule's rings perceived cold once per iteration.
void DrugLikeSet(benchmark::State& state) {
    std::vector<Built*> set;
    int nodes = 0, nrings = 0;
    for (const std::string& line : drug_like()) {
        int count = 0;
        EdgeList edges = from_line_notation(line, count);
        set.push_back(new Built(count, edges));
        nodes += count;
    }
    std::deque<std::set<HNode> > rings;
    for (auto _ : state) {
        nrings = 0;
        for (Built* built : set) {
            built->drop_caches();
            nrings += built->graph.basic_ring_set(rings);
        }
        benchmark::DoNotOptimize(nrings);
    }
    state.counters["molecules"] = static_cast<double>(set.size());
    state.counters["nodes"] = nodes;
    state.counters["rings"] = nrings;
    for (Built* built : set) delete built;
}

}  // namespace

BENCHMARK(Macrocycle)->DenseRange(0, 12)->Unit(benchmark::kMicrosecond);
BENCHMARK(DrugLikeSet)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BasicRingSet, HexSheet, 0)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(IsNodeCyclicAll, HexSheet, 0)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BasicRingSet, C60, 1)->Arg(60)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(IsNodeCyclicAll, C60, 1)->Arg(60)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BasicRingSet, RingChain, 2)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(IsNodeCyclicAll, RingChain, 2)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
