#include "molcryst/graph/Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "common/ErrorText.h"
#include "graph/TestGraphs.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {
typedef Graph<HNode, HEdge> G;
typedef Numbered<G> NumberedGraph;

std::string text(const std::function<void()>& f) { return error_text<std::invalid_argument>(f); }
const char* const same_ends = "EdgeData::EdgeData - invalid edge: id1 equals id2";
}  // namespace

TEST(EdgeData, EqualityIgnoresOrderAndPairsSortByHighThenLowEndDescending) {
    typedef EdgeData<HNode, HEdge> E;
    std::vector<HNode> nodes = {node("a"), node("b"), node("c")};
    std::sort(nodes.begin(), nodes.end());  // descending address
    const HNode hi = nodes[0], mid = nodes[1], lo = nodes[2];
    EXPECT_EQ(E(hi, mid), E(mid, hi));
    EXPECT_NE(E(hi, mid), E(hi, lo));
    EXPECT_EQ(text([&] { E(lo, lo); }), same_ends);
    // Pairs with the higher high end come first; on equal high ends, the higher low end.
    EXPECT_TRUE(E(hi, lo) < E(mid, lo));
    EXPECT_TRUE(E(lo, hi) < E(lo, mid));
    EXPECT_TRUE(E(hi, mid) < E(lo, hi));
    EXPECT_FALSE(E(mid, hi) < E(hi, mid));
    EXPECT_FALSE(E(hi, mid) < E(mid, hi));
}

TEST(Graph, AddEdgeChecksBeforeChangingAnything) {
    NumberedGraph m(2, {{0, 1}});
    const HNode c = node("c");
    const HEdge other = edge("x");
    // The same edge again, in either order, is a no-op.
    m.g.add_edge(m.e[0], m.n[0], m.n[1]);
    m.g.add_edge(m.e[0], m.n[1], m.n[0]);
    EXPECT_EQ(text([&] { m.g.add_edge(other, m.n[1], m.n[0]); }),
              "Graph::add_edge - attempt to add edge twice with different identifiers");
    EXPECT_EQ(text([&] { m.g.add_edge(m.e[0], m.n[0], c); }), "Graph::add_edge - duplicate edge identifier");
    EXPECT_EQ(text([&] { m.g.add_edge(other, c, c); }), same_ends);
    EXPECT_EQ(text([&] { m.g.unchecked_add_edge(other, m.n[0], m.n[0]); }), same_ends);
    // None of the failures left a trace.
    EXPECT_EQ(m.g.nnodes(), 2);
    EXPECT_EQ(m.g.nedges(), 1);
    EXPECT_FALSE(m.g.has_node(c));
    EXPECT_TRUE(m.g.consistent());
}

TEST(Graph, QueriesAndTheirMessages) {
    NumberedGraph m(3, {{0, 1}});  // c has no edge
    const HNode x = node("x");
    m.g.add_node(m.n[2]);
    EXPECT_EQ(m.g.nnodes(), 3);
    EXPECT_TRUE(m.g.has_edge(m.n[1], m.n[0]));
    EXPECT_FALSE(m.g.has_edge(x, m.n[0]));  // unknown first node
    EXPECT_EQ(m.g.edge(m.n[1], m.n[0]), m.e[0]);
    EXPECT_EQ(labels(std::vector<HNode>{m.g.edge_node1(m.e[0]), m.g.edge_node2(m.e[0])}), "a b");
    EXPECT_EQ(m.g.degree_node(m.n[0]), 1);
    EXPECT_EQ(m.g.degree_node(m.n[2]), 0);
    EXPECT_EQ(m.g.degree_node(x), -1);

    std::vector<HNode> out;
    EXPECT_EQ(text([&] { m.g.edge(m.n[0], m.n[2]); }), "Graph::edge:  no edge between the two specified nodes");
    EXPECT_EQ(text([&] { m.g.edge(m.n[0], m.n[0]); }), same_ends);
    EXPECT_EQ(text([&] { m.g.edge_node1(edge("x")); }), "Graph::edge_node1:  no edge with specified id");
    EXPECT_EQ(text([&] { m.g.edge_node2(edge("x")); }), "Graph::edge_node2:  no edge with specified id");
    EXPECT_EQ(text([&] { m.g.node_begin_neighbours(x); }), "Graph::node_begin_neighbours:  no node with specified id");
    EXPECT_EQ(text([&] { m.g.node_end_neighbours(x); }), "Graph::node_end_neighbours:  no node with specified id");
    EXPECT_EQ(text([&] { m.g.nodes_one_side(m.n[0], m.n[2], out); }),
              "Graph::nodes_one_side(): no edge containing node1 and node2");
}

TEST(Graph, NeighboursWalkInDescendingAddressOrder) {
    NumberedGraph m(6, {{0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}});
    std::vector<HNode> walked(m.g.node_begin_neighbours(m.n[0]), m.g.node_end_neighbours(m.n[0]));
    ASSERT_EQ(walked.size(), 5u);
    for (std::size_t i = 1; i < walked.size(); ++i) EXPECT_GT(walked[i - 1].unhand(), walked[i].unhand());
}

TEST(Graph, RemovalIsSilentForUnknownThingsAndKeepsInvariants) {
    NumberedGraph m(3, cycle(0, 3));
    const HNode x = node("x");
    m.g.remove_edge(edge("x"));
    m.g.remove_edge(m.n[0], x);
    m.g.isolate_node(x);
    m.g.remove_node(x);
    EXPECT_EQ(m.g.nedges(), 3);

    m.g.remove_edge(m.e[0]);
    EXPECT_FALSE(m.g.has_edge(m.n[0], m.n[1]));
    EXPECT_FALSE(m.g.has_edge(m.e[0]));
    m.g.remove_edge(m.n[2], m.n[1]);
    EXPECT_EQ(m.g.nedges(), 1);
    m.g.isolate_node(m.n[0]);
    EXPECT_EQ(m.g.nedges(), 0);
    EXPECT_EQ(m.g.nnodes(), 3);
    m.g.remove_node(m.n[1]);
    EXPECT_EQ(m.g.nnodes(), 2);
    EXPECT_TRUE(m.g.consistent());
    m.g.clear();
    EXPECT_EQ(m.g.nnodes(), 0);
}

TEST(Graph, ComponentsInOrderOfTheirFirstNode) {
    std::deque<std::set<HNode> > parts(1);
    G empty;
    EXPECT_EQ(empty.ncomponents(), 0);
    EXPECT_TRUE(empty.contiguous());
    EXPECT_EQ(empty.components(parts), 0);

    NumberedGraph m(6, {{0, 1}, {1, 2}, {3, 4}});
    EXPECT_FALSE(m.g.contiguous());
    EXPECT_EQ(m.g.ncomponents(), 3);
    EXPECT_EQ(m.g.ncomponents(2), 2);  // stops at the limit
    EXPECT_EQ(m.g.ncomponents(7), 3);
    ASSERT_EQ(m.g.components(parts), 3);
    EXPECT_EQ(std::set<std::set<HNode> >(parts.begin(), parts.end()),
              (std::set<std::set<HNode> >{m.nodes({0, 1, 2}), m.nodes({3, 4}), m.nodes({5})}));
    // Walking the nodes in map order meets the parts in their order.
    std::vector<int> met;
    for (const auto& entry : m.g.nodes())
        for (int i = 0; i < 3; ++i)
            if (parts[i].count(entry.first) != 0 && std::find(met.begin(), met.end(), i) == met.end()) met.push_back(i);
    EXPECT_EQ(met, (std::vector<int>{0, 1, 2}));
}

TEST(Graph, NodesOneSideOnChainsTerminalsAndRings) {
    // a-b-c-d with a ring d-e-f-d and a branch b-g.
    NumberedGraph m(7, {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 3}, {1, 6}});
    std::vector<HNode> out;
    EXPECT_TRUE(m.g.nodes_one_side(m.n[0], m.n[1], out));
    EXPECT_EQ(labels(out), "a");  // a terminal seen from itself

    // Breadth first, each node's neighbours in set order: the ring nodes come
    // in the order d lists them.
    EXPECT_TRUE(m.g.nodes_one_side(m.n[2], m.n[1], out));
    std::vector<HNode> expected = {m.n[2], m.n[3]};
    for (auto n = m.g.node_begin_neighbours(m.n[3]); n != m.g.node_end_neighbours(m.n[3]); ++n)
        if (*n != m.n[2]) expected.push_back(*n);
    EXPECT_EQ(out, expected);

    EXPECT_TRUE(m.g.nodes_one_side(m.n[1], m.n[2], out));
    EXPECT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0], m.n[1]);
    EXPECT_EQ(std::count(out.begin(), out.end(), m.n[2]), 0);

    // A ring bond: false, with nothing reported.
    EXPECT_FALSE(m.g.nodes_one_side(m.n[3], m.n[4], out));
    EXPECT_TRUE(out.empty());
    std::vector<HNode> left, right;
    EXPECT_FALSE(m.g.nodes_either_side(m.n[4], m.n[5], left, right));
    EXPECT_TRUE(left.empty() && right.empty());
    EXPECT_TRUE(m.g.nodes_either_side(m.n[1], m.n[2], left, right));
    EXPECT_EQ(left.size() + right.size(), 7u);
}

TEST(Graph, ShortestPathBreaksTiesByNeighbourOrder) {
    // A square a-b-d and a-c-d: two equally short paths; e stands alone.
    NumberedGraph m(5, {{0, 1}, {1, 3}, {0, 2}, {2, 3}});
    std::vector<HNode> path;
    ASSERT_TRUE(m.g.shortest_path(m.n[0], m.n[3], path));
    // The winner goes through the neighbour of a that comes first in the set.
    EXPECT_EQ(path, (std::vector<HNode>{m.n[0], *m.g.node_begin_neighbours(m.n[0]), m.n[3]}));
    ASSERT_TRUE(m.g.shortest_path(m.n[0], m.n[1], path));
    EXPECT_EQ(labels(path), "a b");

    EXPECT_FALSE(m.g.shortest_path(m.n[0], m.n[0], path));
    EXPECT_TRUE(path.empty());
    EXPECT_FALSE(m.g.shortest_path(m.n[0], m.n[4], path));  // other component
    EXPECT_FALSE(m.g.shortest_path(m.n[0], node("x"), path));
}

TEST(Graph, SuppressedEdgeHidesAdjacencyButNotIdentity) {
    NumberedGraph m(3, {{0, 1}, {1, 2}});
    m.g.suppress_edge(m.n[0], m.n[1]);
    EXPECT_FALSE(m.g.has_edge(m.n[0], m.n[1]));
    EXPECT_TRUE(m.g.has_edge(m.e[0]));
    EXPECT_EQ(m.g.edge_node1(m.e[0]), m.n[0]);
    EXPECT_EQ(m.g.ncomponents(), 2);
    m.g.unsuppress_edge(m.n[0], m.n[1]);
    EXPECT_TRUE(m.g.has_edge(m.n[1], m.n[0]));
    EXPECT_TRUE(m.g.consistent());
    // Unknown ends make it a no-op, or half of one, and so does a node paired
    // with itself.
    const HNode x = node("x");
    m.g.suppress_edge(x, m.n[1]);
    m.g.suppress_edge(m.n[1], x);
    m.g.unsuppress_edge(m.n[1], x);
    m.g.unsuppress_edge(m.n[1], m.n[1]);
    EXPECT_EQ(m.g.degree_node(m.n[1]), 2);
    EXPECT_TRUE(m.g.consistent());
    EXPECT_EQ(m.g.ncomponents(), 1);
}

TEST(Graph, UnsuppressingAPairThatIsNoEdgeStillJoinsItsEnds) {
    // Each end goes back to the other's neighbours whether or not an edge
    // stands behind the pair: on a hexagon, a chord for every traversal.
    NumberedGraph m(6, {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 0}});
    m.g.unsuppress_edge(m.n[0], m.n[3]);
    EXPECT_TRUE(m.g.has_edge(m.n[0], m.n[3]));
    EXPECT_TRUE(m.g.has_edge(m.n[3], m.n[0]));
    EXPECT_EQ(m.g.degree_node(m.n[0]), 3);
    EXPECT_EQ(m.g.nedges(), 6);  // no edge record is made
    std::set<HNode> ring;
    EXPECT_EQ(m.g.node_smallest_ring(m.n[1], ring), 4);  // the searches see the chord
    m.g.suppress_edge(m.n[0], m.n[3]);
    EXPECT_TRUE(m.g.consistent());
    EXPECT_EQ(m.g.node_smallest_ring(m.n[1], ring), 6);
}

TEST(Graph, RemovingANodeNamedByAReferenceIntoTheGraph) {
    // The argument refers into a neighbour set that the removal edits.
    NumberedGraph m(4, {{0, 1}, {1, 2}, {1, 3}});
    m.g.remove_node(*m.g.node_begin_neighbours(m.n[0]));
    EXPECT_FALSE(m.g.has_node(m.n[1]));
    EXPECT_EQ(m.g.nedges(), 0);
    EXPECT_TRUE(m.g.consistent());
}
