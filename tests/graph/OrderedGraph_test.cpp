#include "molcryst/graph/OrderedGraph.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace molcryst;

namespace {

struct Node {
    explicit Node(std::string l) : label(std::move(l)) {}
    std::string label;
};
struct Edge {
    explicit Edge(std::string l) : label(std::move(l)) {}
    std::string label;
};
typedef THandle<Node> HNode;
typedef THandle<Edge> HEdge;
typedef OrderedGraph<HNode, HEdge> OG;

HNode node(const std::string& label) { return HNode(new Node(label)); }
HEdge edge(const std::string& label) { return HEdge(new Edge(label)); }

/// The labels of the nodes in index order, then " |", then those of the edges.
std::string layout(const OG& g) {
    std::string text;
    for (OG::const_node_iterator i = g.begin_nodes(); i != g.end_nodes(); ++i) text += (*i)->label + " ";
    text += "|";
    for (OG::const_edge_iterator i = g.begin_edges(); i != g.end_edges(); ++i) text += " " + (*i)->label;
    return text;
}

template <class Exception, class F>
std::string error_text(F f) {
    try {
        f();
    } catch (const Exception& e) {
        return e.what();
    }
    return "no exception";
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
    EXPECT_EQ(g.node_index(a), 1);
    EXPECT_EQ(g.node_index(d), 3);
    EXPECT_EQ(g.edge_index(bc), 1);
    EXPECT_EQ(g.node(2), c);
    EXPECT_EQ(g.edge(0u), ab);
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
    OG g;
    std::vector<HNode> n;
    for (const char* label : {"a", "b", "c", "d", "e"}) n.push_back(node(label));
    g.add_edge(edge("ab"), n[0], n[1]);
    g.add_edge(edge("bc"), n[1], n[2]);
    g.add_edge(edge("cd"), n[2], n[3]);
    HEdge de = edge("de");
    g.add_edge(de, n[3], n[4]);
    g.add_edge(edge("ca"), n[2], n[0]);
    EXPECT_EQ(layout(g), "a b c d e | ab bc cd de ca");

    // Removing b takes its two edges with it; everything above moves down.
    g.remove_node(n[1]);
    EXPECT_EQ(layout(g), "a c d e | cd de ca");
    EXPECT_EQ(g.node_index(n[4]), 3);
    EXPECT_EQ(g.edge_index(de), 1);
    EXPECT_EQ(error_text<std::out_of_range>([&] { g.node(g.nnodes()); }), "IndexedTable::at Illegal index: 4");
    EXPECT_EQ(error_text<std::out_of_range>([&] { g.edge(3u); }), "IndexedTable::at Illegal index: 3");
    EXPECT_EQ(g.nnodes(), 4u);
    EXPECT_EQ(g.OG::Base::nnodes(), 4);

    g.remove_edge(de);
    g.remove_edge(de);           // unknown now: ignored
    g.remove_node(node("x"));    // likewise
    EXPECT_EQ(layout(g), "a c d e | cd ca");
    g.remove_edge(n[0], n[2]);   // by its ends
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

TEST(OrderedGraph, IndexMessages) {
    OG g;
    g.add_edge(edge("ab"), node("a"), node("b"));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.node_index(node("x")); }),
              "OrderedGraph::node_index:  no node with the specified id");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.edge_index(edge("x")); }),
              "OrderedGraph::edge_index:  no edge with the specified id");
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
    HNode a = node("a"), b = node("b"), c = node("c");
    {
        OG g;
        g.add_edge(edge("ab"), a, b);
        g.add_edge(edge("bc"), b, c);
        g.add_edge(edge("ca"), c, a);
        std::deque<std::set<HNode> > rings;
        EXPECT_EQ(g.basic_ring_set(rings), 1);  // caches and search state filled before the copy
        parts = g.split();
        ASSERT_EQ(parts->size(), 1u);
        g.remove_node(a);
        EXPECT_EQ(layout(g), "b c | bc");
    }
    // The copy outlives its source and searches on its own adjacency.
    OG& copy = *(*parts)[0];
    EXPECT_EQ(layout(copy), "a b c | ab bc ca");
    std::set<HNode> ring;
    EXPECT_EQ(copy.node_smallest_ring(b, ring), 3);
    std::deque<std::set<HNode> > rings;
    EXPECT_EQ(copy.basic_ring_set(rings), 1);
    copy.remove_edge(copy.edge(b, c));
    EXPECT_FALSE(copy.is_node_cyclic(a, nullptr));
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
