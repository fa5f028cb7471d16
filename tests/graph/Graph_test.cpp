#include "molcryst/graph/Graph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace molcryst;

namespace {

struct Node {
    explicit Node(std::string l) : label(std::move(l)) {}
    std::string label;
};
struct Edge {};
typedef THandle<Node> HNode;
typedef THandle<Edge> HEdge;
typedef Graph<HNode, HEdge> G;

/// Nodes named n0, n1, ... and edges made on demand.
struct Fixture {
    std::vector<HNode> n;
    explicit Fixture(int count) {
        for (int i = 0; i < count; ++i) n.push_back(HNode(new Node("n" + std::to_string(i))));
    }
    HEdge join(G& g, int a, int b) {
        HEdge e(new Edge());
        g.add_edge(e, n[a], n[b]);
        return e;
    }
};

std::string labels(const std::vector<HNode>& nodes) {
    std::string text;
    for (const HNode& node : nodes) text += (text.empty() ? "" : " ") + node->label;
    return text;
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

}  // namespace

TEST(EdgeData, EqualityIgnoresOrderAndPairsSortByHighThenLowEndDescending) {
    HNode a(new Node("a")), b(new Node("b")), c(new Node("c"));
    typedef EdgeData<HNode, HEdge> E;
    EXPECT_EQ(E(a, b), E(b, a));
    EXPECT_NE(E(a, b), E(a, c));
    EXPECT_EQ(invalid_argument_text([&] { E(a, a); }), "EdgeData::EdgeData - invalid edge: id1 equals id2");

    std::vector<HNode> nodes = {a, b, c};
    std::sort(nodes.begin(), nodes.end());  // descending address
    HNode hi = nodes[0], mid = nodes[1], lo = nodes[2];
    // Pairs with the higher high end come first; on equal high ends, the higher low end.
    EXPECT_TRUE(E(hi, lo) < E(mid, lo));
    EXPECT_TRUE(E(lo, hi) < E(lo, mid));
    EXPECT_TRUE(E(hi, mid) < E(lo, hi));
    EXPECT_FALSE(E(mid, hi) < E(hi, mid));
    EXPECT_FALSE(E(hi, mid) < E(mid, hi));
}

TEST(Graph, AddEdgeChecksBeforeChangingAnything) {
    G g;
    Fixture f(3);
    HEdge e = f.join(g, 0, 1);
    EXPECT_EQ(g.nnodes(), 2);
    // The same edge again, in either order, is a no-op.
    g.add_edge(e, f.n[0], f.n[1]);
    g.add_edge(e, f.n[1], f.n[0]);
    EXPECT_EQ(g.nedges(), 1);

    HEdge other(new Edge());
    EXPECT_EQ(invalid_argument_text([&] { g.add_edge(other, f.n[1], f.n[0]); }),
              "Graph::add_edge - attempt to add edge twice with different identifiers");
    EXPECT_EQ(invalid_argument_text([&] { g.add_edge(e, f.n[0], f.n[2]); }),
              "Graph::add_edge - duplicate edge identifier");
    EXPECT_EQ(invalid_argument_text([&] { g.add_edge(other, f.n[2], f.n[2]); }),
              "EdgeData::EdgeData - invalid edge: id1 equals id2");
    EXPECT_EQ(invalid_argument_text([&] { g.unchecked_add_edge(other, f.n[0], f.n[0]); }),
              "EdgeData::EdgeData - invalid edge: id1 equals id2");
    // None of the failures left a trace.
    EXPECT_EQ(g.nnodes(), 2);
    EXPECT_EQ(g.nedges(), 1);
    EXPECT_FALSE(g.has_node(f.n[2]));
    EXPECT_TRUE(g.consistent());
}

TEST(Graph, QueriesAndTheirMessages) {
    G g;
    Fixture f(4);
    HEdge e01 = f.join(g, 0, 1);
    g.add_node(f.n[3]);
    g.add_node(f.n[3]);
    EXPECT_EQ(g.nnodes(), 3);

    EXPECT_TRUE(g.has_edge(e01));
    EXPECT_TRUE(g.has_edge(f.n[1], f.n[0]));
    EXPECT_FALSE(g.has_edge(f.n[2], f.n[0]));  // unknown first node
    EXPECT_EQ(g.edge(f.n[1], f.n[0]), e01);
    EXPECT_EQ(g.edge_node1(e01), f.n[0]);
    EXPECT_EQ(g.edge_node2(e01), f.n[1]);
    EXPECT_EQ(g.degree_node(f.n[0]), 1);
    EXPECT_EQ(g.degree_node(f.n[3]), 0);
    EXPECT_EQ(g.degree_node(f.n[2]), -1);

    HEdge stranger(new Edge());
    EXPECT_EQ(invalid_argument_text([&] { g.edge(f.n[0], f.n[3]); }),
              "Graph::edge:  no edge between the two specified nodes");
    EXPECT_EQ(invalid_argument_text([&] { g.edge(f.n[0], f.n[0]); }),
              "EdgeData::EdgeData - invalid edge: id1 equals id2");
    EXPECT_EQ(invalid_argument_text([&] { g.edge_node1(stranger); }), "Graph::edge_node1:  no edge with specified id");
    EXPECT_EQ(invalid_argument_text([&] { g.edge_node2(stranger); }), "Graph::edge_node2:  no edge with specified id");
    EXPECT_EQ(invalid_argument_text([&] { g.node_begin_neighbours(f.n[2]); }),
              "Graph::node_begin_neighbours:  no node with specified id");
    EXPECT_EQ(invalid_argument_text([&] { g.node_end_neighbours(f.n[2]); }),
              "Graph::node_end_neighbours:  no node with specified id");
    EXPECT_EQ(invalid_argument_text([&] {
                  std::vector<HNode> out;
                  g.nodes_one_side(f.n[0], f.n[3], out);
              }),
              "Graph::nodes_one_side(): no edge containing node1 and node2");
}

TEST(Graph, NeighboursWalkInDescendingAddressOrder) {
    G g;
    Fixture f(6);
    for (int i = 1; i < 6; ++i) f.join(g, 0, i);
    std::vector<HNode> walked(g.node_begin_neighbours(f.n[0]), g.node_end_neighbours(f.n[0]));
    ASSERT_EQ(walked.size(), 5u);
    for (std::size_t i = 1; i < walked.size(); ++i) EXPECT_GT(walked[i - 1].unhand(), walked[i].unhand());
}

TEST(Graph, RemovalIsSilentForUnknownThingsAndKeepsInvariants) {
    G g;
    Fixture f(4);
    HEdge e01 = f.join(g, 0, 1);
    f.join(g, 1, 2);
    f.join(g, 2, 0);
    g.remove_edge(HEdge(new Edge()));
    g.remove_edge(f.n[0], f.n[3]);
    g.isolate_node(f.n[3]);
    g.remove_node(f.n[3]);
    EXPECT_EQ(g.nedges(), 3);

    g.remove_edge(e01);
    EXPECT_FALSE(g.has_edge(f.n[0], f.n[1]));
    EXPECT_FALSE(g.has_edge(e01));
    g.remove_edge(f.n[2], f.n[1]);
    EXPECT_EQ(g.nedges(), 1);
    g.isolate_node(f.n[0]);
    EXPECT_EQ(g.nedges(), 0);
    EXPECT_EQ(g.nnodes(), 3);
    g.remove_node(f.n[1]);
    EXPECT_EQ(g.nnodes(), 2);
    EXPECT_TRUE(g.consistent());
    g.clear();
    EXPECT_EQ(g.nnodes(), 0);
}

TEST(Graph, ComponentsInOrderOfTheirFirstNode) {
    G g;
    EXPECT_EQ(g.ncomponents(), 0);
    EXPECT_TRUE(g.contiguous());
    std::deque<std::set<HNode> > parts;
    EXPECT_EQ(g.components(parts), 0);

    Fixture f(7);
    f.join(g, 0, 1);
    f.join(g, 1, 2);
    f.join(g, 3, 4);
    g.add_node(f.n[5]);
    EXPECT_TRUE(g.contiguous() == false);
    EXPECT_EQ(g.ncomponents(), 3);
    EXPECT_EQ(g.ncomponents(2), 2);  // stops at the limit
    EXPECT_EQ(g.ncomponents(7), 3);

    ASSERT_EQ(g.components(parts), 3);
    // The first component holds the first node of the map, and so on.
    for (std::size_t i = 0; i < parts.size(); ++i) {
        HNode first_unseen;
        for (const auto& entry : g.nodes()) {
            bool seen = false;
            for (std::size_t j = 0; j < i; ++j) seen = seen || parts[j].count(entry.first) != 0;
            if (!seen) {
                first_unseen = entry.first;
                break;
            }
        }
        EXPECT_EQ(parts[i].count(first_unseen), 1u) << "component " << i;
    }
    std::size_t total = 0;
    for (const auto& part : parts) total += part.size();
    EXPECT_EQ(total, 6u);
}

TEST(Graph, NodesOneSideOnChainsTerminalsAndRings) {
    // n0-n1-n2-n3 with a ring n3-n4-n5-n3 and a branch n1-n6.
    G g;
    Fixture f(7);
    f.join(g, 0, 1);
    f.join(g, 1, 2);
    f.join(g, 2, 3);
    f.join(g, 3, 4);
    f.join(g, 4, 5);
    f.join(g, 5, 3);
    f.join(g, 1, 6);

    std::vector<HNode> out;
    EXPECT_TRUE(g.nodes_one_side(f.n[0], f.n[1], out));
    EXPECT_EQ(labels(out), "n0");  // a terminal seen from itself

    EXPECT_TRUE(g.nodes_one_side(f.n[2], f.n[1], out));
    ASSERT_EQ(out.size(), 4u);
    EXPECT_EQ(out[0], f.n[2]);
    EXPECT_EQ(out[1], f.n[3]);
    // Breadth first, each node's neighbours in set order: the ring atoms come
    // in the order n3 lists them.
    std::vector<HNode> ring;
    for (auto n = g.node_begin_neighbours(f.n[3]); n != g.node_end_neighbours(f.n[3]); ++n)
        if (*n != f.n[2]) ring.push_back(*n);
    EXPECT_EQ(std::vector<HNode>(out.begin() + 2, out.end()), ring);

    EXPECT_TRUE(g.nodes_one_side(f.n[1], f.n[2], out));
    EXPECT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0], f.n[1]);
    EXPECT_EQ(std::count(out.begin(), out.end(), f.n[2]), 0);

    // A ring bond: false, with nothing reported.
    EXPECT_FALSE(g.nodes_one_side(f.n[3], f.n[4], out));
    EXPECT_TRUE(out.empty());

    std::vector<HNode> left, right;
    EXPECT_FALSE(g.nodes_either_side(f.n[4], f.n[5], left, right));
    EXPECT_TRUE(left.empty());
    EXPECT_TRUE(right.empty());
    EXPECT_TRUE(g.nodes_either_side(f.n[1], f.n[2], left, right));
    EXPECT_EQ(left.size() + right.size(), 7u);
}

TEST(Graph, ShortestPathBreaksTiesByNeighbourOrder) {
    // A square n0-n1-n3 and n0-n2-n3: two equally short paths.
    G g;
    Fixture f(5);
    f.join(g, 0, 1);
    f.join(g, 1, 3);
    f.join(g, 0, 2);
    f.join(g, 2, 3);
    g.add_node(f.n[4]);

    std::vector<HNode> path;
    ASSERT_TRUE(g.shortest_path(f.n[0], f.n[3], path));
    ASSERT_EQ(path.size(), 3u);
    // The winner goes through the neighbour of n0 that comes first in the set.
    HNode first_neighbour = *g.node_begin_neighbours(f.n[0]);
    EXPECT_EQ(path[1], first_neighbour);
    EXPECT_EQ(path.front(), f.n[0]);
    EXPECT_EQ(path.back(), f.n[3]);

    ASSERT_TRUE(g.shortest_path(f.n[0], f.n[1], path));
    EXPECT_EQ(labels(path), "n0 n1");

    EXPECT_FALSE(g.shortest_path(f.n[0], f.n[0], path));
    EXPECT_TRUE(path.empty());
    EXPECT_FALSE(g.shortest_path(f.n[0], f.n[4], path));  // other component
    EXPECT_FALSE(g.shortest_path(f.n[0], HNode(new Node("x")), path));
}

TEST(Graph, SuppressedEdgeHidesAdjacencyButNotIdentity) {
    G g;
    Fixture f(3);
    HEdge e = f.join(g, 0, 1);
    f.join(g, 1, 2);
    g.suppress_edge(f.n[0], f.n[1]);
    EXPECT_FALSE(g.has_edge(f.n[0], f.n[1]));
    EXPECT_TRUE(g.has_edge(e));
    EXPECT_EQ(g.edge_node1(e), f.n[0]);
    EXPECT_EQ(g.ncomponents(), 2);
    g.unsuppress_edge(f.n[0], f.n[1]);
    EXPECT_TRUE(g.has_edge(f.n[1], f.n[0]));
    EXPECT_TRUE(g.consistent());
    // Unknown ends make it a no-op, or half of one, and unsuppressing a pair
    // that is no edge adds nothing.
    HNode stranger(new Node("x"));
    g.suppress_edge(stranger, f.n[1]);
    g.suppress_edge(f.n[1], stranger);
    g.unsuppress_edge(f.n[1], stranger);
    g.unsuppress_edge(f.n[0], f.n[2]);
    EXPECT_EQ(g.degree_node(f.n[1]), 2);
    EXPECT_FALSE(g.has_edge(f.n[0], f.n[2]));
    EXPECT_TRUE(g.consistent());
    EXPECT_EQ(g.ncomponents(), 1);
}

TEST(Graph, RemovingANodeNamedByAReferenceIntoTheGraph) {
    // The argument refers into a neighbour set that the removal edits.
    G g;
    Fixture f(4);
    f.join(g, 0, 1);
    f.join(g, 1, 2);
    f.join(g, 1, 3);
    HNode hub = f.n[1];
    g.remove_node(*g.node_begin_neighbours(f.n[0]));
    EXPECT_FALSE(g.has_node(hub));
    EXPECT_EQ(g.nedges(), 0);
    EXPECT_TRUE(g.consistent());
}

TEST(Graph, LongChainNeedsNoDeepRecursion) {
    // A chain of 200000 nodes: every traversal is iterative.
    G g;
    const int count = 200000;
    std::vector<HNode> nodes;
    nodes.reserve(count);
    for (int i = 0; i < count; ++i) nodes.push_back(HNode(new Node("")));
    for (int i = 1; i < count; ++i) g.add_edge(HEdge(new Edge()), nodes[i - 1], nodes[i]);
    EXPECT_EQ(g.ncomponents(), 1);
    std::vector<HNode> path;
    ASSERT_TRUE(g.shortest_path(nodes.front(), nodes.back(), path));
    EXPECT_EQ(path.size(), static_cast<std::size_t>(count));
    std::vector<HNode> side;
    EXPECT_TRUE(g.nodes_one_side(nodes[1], nodes[0], side));
    EXPECT_EQ(side.size(), static_cast<std::size_t>(count - 1));
}
