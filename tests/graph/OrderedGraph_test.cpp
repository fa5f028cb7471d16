#include "molcryst/graph/OrderedGraph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <set>
#include <string>
#include <vector>

#include "common/ErrorText.h"
#include "graph/TestGraphs.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef OrderedGraph<HNode, HEdge> OG;

/// The labels of the nodes in index order, then " |", then those of the
/// edges; "!" marks one that the lookups by index or of the index disagree on.
std::string layout(const OG& g) {
    std::string text;
    int i = 0;
    for (OG::const_node_iterator n = g.begin_nodes(); n != g.end_nodes(); ++n, ++i)
        text += (*n)->label + (g.node_index(*n) == i && g.node(i) == *n ? " " : "! ");
    text += "|";
    i = 0;
    for (OG::const_edge_iterator e = g.begin_edges(); e != g.end_edges(); ++e, ++i)
        text += " " + (*e)->label + (g.edge_index(*e) == i && g.edge(static_cast<unsigned int>(i)) == *e ? "" : "!");
    return text;
}

}  // namespace

TEST(OrderedGraph, IndicesFollowTheOrderOfAddition) {
    OG g;
    HNode a = node("a"), b = node("b"), c = node("c"), d = node("d");
    HEdge ab = edge("ab"), bc = edge("bc"), cd = edge("cd");
    g.add_node(b);
    g.add_edge(ab, a, b);  // only a is new: it gets the next index
    g.add_edge(bc, c, d);  // both new: node 1 first
    EXPECT_EQ(layout(g), "b a c d | ab bc");
    EXPECT_EQ(g.edge(b, a), ab);  // the lookup by ends stays available

    // Repeats and failures change no index.
    g.add_node(a);
    g.add_edge(ab, b, a);
    EXPECT_THROW(g.add_edge(cd, a, b), std::invalid_argument);
    EXPECT_THROW(g.add_edge(ab, a, c), std::invalid_argument);
    EXPECT_THROW(g.add_edge(cd, a, a), std::invalid_argument);
    EXPECT_EQ(layout(g), "b a c d | ab bc");
    EXPECT_EQ(g.nnodes(), 4u);
    EXPECT_EQ(g.nedges(), 2u);

    HNode e = node("e");
    g.unchecked_add_node(e);
    g.unchecked_add_edge(cd, d, e);
    EXPECT_EQ(layout(g), "b a c d e | ab bc cd");
}

TEST(OrderedGraph, RemovalClosesTheGaps) {
    Numbered<OG> m(5, {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {2, 0}});
    OG& g = m.g;
    const std::vector<HNode>& n = m.n;
    const HEdge de = m.e[3];
    EXPECT_EQ(layout(g), "a b c d e | ab bc cd de ca");

    // Removing b takes its two edges with it; everything above moves down.
    g.remove_node(n[1]);
    EXPECT_EQ(layout(g), "a c d e | cd de ca");
    EXPECT_EQ(error_text<std::out_of_range>([&] { g.node(g.nnodes()); }), "IndexedTable::at Illegal index: 4");
    EXPECT_EQ(error_text<std::out_of_range>([&] { g.edge(3u); }), "IndexedTable::at Illegal index: 3");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.node_index(n[1]); }),
              "OrderedGraph::node_index:  no node with the specified id");
    EXPECT_EQ(g.nnodes(), 4u);
    EXPECT_EQ(g.OG::Base::nnodes(), 4);

    g.remove_edge(de);
    g.remove_edge(de);         // unknown now: ignored
    g.remove_node(node("x"));  // likewise
    EXPECT_EQ(layout(g), "a c d e | cd ca");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.edge_index(de); }),
              "OrderedGraph::edge_index:  no edge with the specified id");
    g.remove_edge(n[0], n[2]);  // by its ends
    EXPECT_EQ(layout(g), "a c d e | cd");
    g.add_edge(edge("ec"), n[4], n[2]);
    g.isolate_node(n[2]);
    EXPECT_EQ(layout(g), "a c d e |");
    EXPECT_EQ(g.nedges(), 0u);
    EXPECT_TRUE(g.consistent());
    g.clear();
    EXPECT_EQ(layout(g), "|");
    EXPECT_EQ(g.OG::Base::nnodes(), 0);
}

TEST(OrderedGraph, SplitKeepsIndexOrderAndOrdersPartsByTheirFirstNode) {
    OG empty;
    THandle<std::vector<THandle<OG> > > parts = empty.split();
    ASSERT_EQ(parts->size(), 1u);
    EXPECT_EQ(layout(*(*parts)[0]), "|");

    // Nodes interleaved over three components; the first node, p, lies in
    // the smallest one, the lone node z in a component of its own.
    OG g;
    HNode p = node("p"), x1 = node("x1"), q = node("q"), x2 = node("x2"), x3 = node("x3"), z = node("z");
    g.add_node(p);
    g.add_node(x1);
    g.add_edge(edge("x1x2"), x1, x2);
    g.add_edge(edge("pq"), q, p);
    g.add_node(z);
    g.add_edge(edge("x2x3"), x2, x3);
    g.add_edge(edge("x3x1"), x3, x1);
    EXPECT_EQ(layout(g), "p x1 x2 q z x3 | x1x2 pq x2x3 x3x1");
    parts = g.split();
    ASSERT_EQ(parts->size(), 3u);
    EXPECT_EQ(layout(*(*parts)[0]), "p q | pq");
    EXPECT_EQ(layout(*(*parts)[1]), "x1 x2 x3 | x1x2 x2x3 x3x1");
    EXPECT_EQ(layout(*(*parts)[2]), "z |");
    // The parts share the identifiers, keep the ends as stored, and work as
    // graphs of their own.
    EXPECT_EQ((*parts)[0]->edge_node1((*parts)[0]->edge(0u)), q);
    EXPECT_TRUE((*parts)[1]->is_node_cyclic(x2, nullptr));
    EXPECT_EQ(layout(g), "p x1 x2 q z x3 | x1x2 pq x2x3 x3x1");
}

TEST(OrderedGraph, SplitOfOneComponentIsAnIndependentCopy) {
    THandle<std::vector<THandle<OG> > > parts;
    std::vector<HNode> n;
    {
        Numbered<OG> m(3, cycle(0, 3));
        n = m.n;
        std::deque<std::set<HNode> > rings;
        EXPECT_EQ(m.g.basic_ring_set(rings), 1);  // caches and search state filled before the copy
        parts = m.g.split();
        ASSERT_EQ(parts->size(), 1u);
        m.g.remove_node(n[0]);
        EXPECT_EQ(layout(m.g), "b c | bc");
    }
    // The copy outlives its source and searches on its own adjacency.
    OG& copy = *(*parts)[0];
    EXPECT_EQ(layout(copy), "a b c | ab bc ca");
    std::set<HNode> ring;
    EXPECT_EQ(copy.node_smallest_ring(n[1], ring), 3);
    std::deque<std::set<HNode> > rings;
    EXPECT_EQ(copy.basic_ring_set(rings), 1);
    copy.remove_edge(copy.edge(n[1], n[2]));
    EXPECT_FALSE(copy.is_node_cyclic(n[0], nullptr));
    EXPECT_EQ(copy.basic_ring_set(rings), 0);
}

TEST(OrderedGraph, AdjacencyMatrixFollowsTheIndices) {
    OG g;
    HNode a = node("a"), b = node("b"), c = node("c"), d = node("d");
    g.add_node(d);
    g.add_edge(edge("ab"), a, b);
    g.add_edge(edge("cb"), c, b);
    THandle<ResizableArray2D<bool> > m = g.adjacency_matrix();
    ASSERT_EQ(m->rows(), 4u);
    ASSERT_EQ(m->columns(), 4u);
    std::string text;
    for (unsigned int r = 0; r < 4; ++r) {
        for (unsigned int col = 0; col < 4; ++col) text += (*m)[r][col] ? '1' : '0';
        text += ' ';
    }
    // Indices: d 0, a 1, b 2, c 3.
    EXPECT_EQ(text, "0000 0010 0101 0010 ");
}

namespace {

// Two hexagons, a-b-c-d-e-f and e-f-g-h-i-j, fused on the edge e-f; a tail
// c-k-l, a triangle m-n-o and a lone node p.
struct RingGraph : Numbered<OG> {
    RingGraph()
        : Numbered<OG>(
              16, join(join(cycle(0, 6), {{5, 6}, {6, 7}, {7, 8}, {8, 9}, {9, 4}, {2, 10}, {10, 11}}), cycle(12, 3))) {}
};

// The rings of the basic ring set as label strings, then each node's smallest ring size.
std::string ring_answers(const OG& g) {
    std::deque<std::set<HNode> > rings;
    g.basic_ring_set(rings);
    std::vector<std::string> texts;
    for (const std::set<HNode>& ring : rings) {
        std::string text;
        for (const HNode& x : ring) text += x->label;
        std::sort(text.begin(), text.end());  // one letter a node
        texts.push_back(text);
    }
    std::sort(texts.begin(), texts.end());
    std::string out;
    for (const std::string& t : texts) out += t + " ";
    out += "|";
    for (OG::const_node_iterator i = g.begin_nodes(); i != g.end_nodes(); ++i) {
        int size = 0;
        g.is_node_cyclic(*i, &size);
        out += " " + (*i)->label + std::to_string(size);
    }
    return out;
}

}  // namespace

TEST(OrderedGraph, RemovingNodesTogetherEqualsRemovingThemInTurn) {
    // Sets of nodes to remove, by index into RingGraph::n; 16 stands for a
    // node not in the graph. Rings are asked for before removing, so that
    // stale caches would show.
    const std::vector<std::vector<int> > cases = {
        {3},                // breaks the first ring only
        {9, 1, 15, 16, 9},  // both rings, the lone node, a stranger, a repeat
        {12, 13, 14},       // a whole component
        {4, 5, 11},         // the shared edge and a tail end
        {},
        {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
    };
    for (const std::vector<int>& doomed : cases) {
        RingGraph together, in_turn;
        const HNode stranger = node("x");
        std::vector<HNode> nodes;
        for (int i : doomed) nodes.push_back(i == 16 ? stranger : together.n[static_cast<std::size_t>(i)]);
        EXPECT_EQ(ring_answers(in_turn.g), ring_answers(together.g));
        together.g.remove_nodes(nodes);

        // The same nodes of the twin graph, in the same order.
        for (int i : doomed) in_turn.g.remove_node(i == 16 ? stranger : in_turn.n[static_cast<std::size_t>(i)]);
        EXPECT_EQ(layout(together.g), layout(in_turn.g));
        EXPECT_EQ(ring_answers(together.g), ring_answers(in_turn.g));
        EXPECT_TRUE(together.g.consistent());
        EXPECT_EQ(together.g.OG::Base::nnodes(), static_cast<int>(together.g.nnodes()));
        EXPECT_EQ(together.g.OG::Base::nedges(), static_cast<int>(together.g.nedges()));
    }

    // Spelled out: the edges come back node by node, in the order given,
    // each once; one node's edges are sorted here, their order being the graph's.
    auto removing = [](RingGraph& r, const std::vector<int>& doomed, std::ptrdiff_t first_node_edges) {
        std::vector<HNode> nodes;
        for (int i : doomed) nodes.push_back(r.n[static_cast<std::size_t>(i)]);
        std::vector<HEdge> removed;
        r.g.remove_nodes(nodes, &removed);
        std::vector<std::string> labels;
        for (const HEdge& e : removed) labels.push_back(e->label);
        if (labels.size() < static_cast<std::size_t>(first_node_edges)) return labels;
        std::sort(labels.begin(), labels.begin() + first_node_edges);
        std::sort(labels.begin() + first_node_edges, labels.end());
        return labels;
    };
    RingGraph r, shared;
    // d and j go, so both hexagons open; the triangle stays.
    EXPECT_EQ(removing(r, {3, 9, 3}, 2), (std::vector<std::string>{"cd", "de", "ij", "je"}));
    EXPECT_EQ(layout(r.g), "a b c e f g h i k l m n o p | ab bc ef fa fg gh hi ck kl mn no om");
    EXPECT_EQ(ring_answers(r.g), "mno | a0 b0 c0 e0 f0 g0 h0 i0 k0 l0 m3 n3 o3 p0");
    // e, then f without the edge e-f.
    EXPECT_EQ(removing(shared, {4, 5}, 3), (std::vector<std::string>{"de", "ef", "je", "fa", "fg"}));
}
