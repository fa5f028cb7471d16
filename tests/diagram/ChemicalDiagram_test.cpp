// The diagram graph: building, messages, labels, copies and the drawing queries.
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramBond.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"
#include "molcryst/diagram/DiagramFrame.h"
#include "molcryst/diagram/DiagramSymbol.h"

namespace molcryst {
namespace {

template <class E, class F>
std::string message_of(F f) {
    try {
        f();
    } catch (const E& e) {
        return e.what();
    }
    return "no exception";
}

HDiagramAtom atom_at(const Element& e, double x, double y) {
    HDiagramAtom a(new DiagramAtom(e));
    a->set_position(Point2d(x, y));
    return a;
}

TEST(ChemicalDiagram, LabelsOfEachNodeKind) {
    DiagramAtom n(Element::N, -2);
    EXPECT_EQ("N", n.left_label());
    EXPECT_EQ("N", n.centre_label());
    EXPECT_EQ("N", n.right_label());
    EXPECT_EQ("-2", n.top_right_label());
    EXPECT_EQ("", n.top_left_label());
    n.set_formal_charge(1);
    EXPECT_EQ("+", n.top_right_label());
    n.set_formal_charge(-1);
    EXPECT_EQ("-", n.top_right_label());
    n.set_formal_charge(3);
    EXPECT_EQ("+3", n.top_right_label());
    n.set_formal_charge(0);
    EXPECT_EQ("", n.top_right_label());
    EXPECT_EQ(std::make_pair(std::string(), std::string()), n.side_label());
    n.set_nterminal_hydrogens(1);
    EXPECT_EQ(std::make_pair(std::string("H"), std::string()), n.side_label());
    n.set_nterminal_hydrogens(3);
    EXPECT_EQ(std::make_pair(std::string("H"), std::string("3")), n.side_label());

    DiagramCircle circle;
    DiagramFrame frame;
    EXPECT_EQ("", circle.centre_label());
    EXPECT_EQ("", frame.left_label());
    EXPECT_EQ(std::make_pair(std::string(), std::string()), frame.side_label());

    DiagramSymbol symbol;
    symbol.set_left_label("CF<sub>3</sub>");
    symbol.set_right_label("F<sub>3</sub>C");
    symbol.set_centre_label("CF<sub>3</sub>");
    EXPECT_EQ("CF<sub>3</sub>", symbol.left_label());
    EXPECT_EQ("F<sub>3</sub>C", symbol.right_label());
    EXPECT_EQ("", symbol.top_right_label());

    EXPECT_STREQ("DiagramAtom", n.class_name());
    EXPECT_STREQ("DiagramCircle", circle.class_name());
    EXPECT_STREQ("DiagramFrame", frame.class_name());
    EXPECT_STREQ("DiagramSymbol", symbol.class_name());

    // The factory makes each kind by its name, and nothing for an unknown one.
    HDiagramNode made = ChemicalDiagram::node_factory_.create("DiagramCircle");
    ASSERT_NE(nullptr, made.unhand());
    EXPECT_STREQ("DiagramCircle", made->class_name());
    EXPECT_EQ(nullptr, ChemicalDiagram::node_factory_.create("Benzene").unhand());
}

TEST(ChemicalDiagram, AddRemoveAndTheirMessages) {
    ChemicalDiagram d;
    HDiagramAtom c1 = atom_at(Element::C, 0, 0), c2 = atom_at(Element::C, 1, 0), o = atom_at(Element::O, 2, 0);
    HDiagramEdge b1(new DiagramBond(SINGLE_BOND)), b2(new DiagramBond(DOUBLE_BOND));
    d.add(b1, c1, c2);
    d.add(b1, c1, c2);  // the same edge again changes nothing
    d.add(HDiagramNode(c1));
    d.add(b2, c2, o);
    EXPECT_EQ(3, d.nnodes());
    EXPECT_EQ(2, d.nedges());
    EXPECT_EQ(HDiagramNode(c1), d.atom(0));
    EXPECT_EQ(HDiagramNode(o), d.atom(2));
    EXPECT_EQ(b2, d.bond(c2, o));
    EXPECT_TRUE(d.has_bond(o, c2));
    EXPECT_FALSE(d.has_edge(c1, o));
    EXPECT_EQ(2, c2->nedges());
    EXPECT_EQ(1, b2->index());
    EXPECT_EQ(HDiagramNode(c2), b2->other_node(o));

    const std::string add3 = "ChemicalDiagram::add(HDiagramEdge, HDiagramNode, HDiagramNode) ";
    HDiagramEdge b3(new DiagramBond());
    EXPECT_EQ(add3 + "edge is a null pointer",
              message_of<std::invalid_argument>([&] { d.add(HDiagramEdge(), c1, o); }));
    EXPECT_EQ(add3 + "node2 is a null pointer",
              message_of<std::invalid_argument>([&] { d.add(b3, c1, HDiagramNode()); }));
    EXPECT_EQ(add3 + "an node cannot be bonded to itself",
              message_of<std::invalid_argument>([&] { d.add(b3, c1, c1); }));
    EXPECT_EQ(add3 + "node1 and node2 are already in a different edge in this ChemicalDiagram object",
              message_of<std::domain_error>([&] { d.add(b3, c1, c2); }));
    EXPECT_EQ(add3 + "edge is already present in this ChemicalDiagram object, but involving different nodes",
              message_of<std::domain_error>([&] { d.add(b1, c1, o); }));
    ChemicalDiagram other;
    EXPECT_EQ("ChemicalDiagram::add(HDiagramNode) node is already in another ChemicalDiagram object",
              message_of<std::domain_error>([&] { other.add(HDiagramNode(c1)); }));
    EXPECT_EQ(add3 + "node1 is already in another ChemicalDiagram object",
              message_of<std::domain_error>([&] { other.add(b3, c1, HDiagramNode(new DiagramAtom())); }));
    EXPECT_EQ(add3 + "edge is already in another ChemicalDiagram object",
              message_of<std::domain_error>([&] { other.add(b1, HDiagramNode(new DiagramAtom()), HDiagramNode(new DiagramAtom())); }));
    EXPECT_EQ(0, other.nnodes());
    EXPECT_EQ("ChemicalDiagram::add(HDiagramNode) node is a null pointer",
              message_of<std::invalid_argument>([&] { d.add(HDiagramNode()); }));
    EXPECT_EQ("ChemicalDiagram::edge(HDiagramNode, HDiagramNode) node2 is a null pointer",
              message_of<std::invalid_argument>([&] { d.edge(c1, HDiagramNode()); }));
    EXPECT_EQ("ChemicalDiagram::has_edge(HDiagramNode, HDiagramNode) node1 is a null pointer",
              message_of<std::invalid_argument>([&] { d.has_edge(HDiagramNode(), c1); }));
    EXPECT_EQ("ChemicalDiagram::has_node(HDiagramNode) node is a null pointer",
              message_of<std::invalid_argument>([&] { d.has_node(HDiagramNode()); }));
    EXPECT_EQ("ChemicalDiagram::has_edge(HDiagramEdge) edge is a null pointer",
              message_of<std::invalid_argument>([&] { d.has_edge(HDiagramEdge()); }));
    EXPECT_EQ("ChemicalDiagram::remove(HDiagramNode) node is a null pointer",
              message_of<std::invalid_argument>([&] { d.remove(HDiagramNode()); }));
    EXPECT_EQ("ChemicalDiagram::remove(HDiagramEdge) edge is a null pointer",
              message_of<std::invalid_argument>([&] { d.remove(HDiagramEdge()); }));
    EXPECT_EQ("ChemicalDiagram::isolate(HDiagramNode) node is a null pointer",
              message_of<std::invalid_argument>([&] { d.isolate(HDiagramNode()); }));
    EXPECT_EQ(3, d.nnodes());
    EXPECT_EQ(2, d.nedges());

    // Removing the middle node takes its edges; the indices above close up.
    d.remove(HDiagramNode(c2));
    EXPECT_EQ(2, d.nnodes());
    EXPECT_EQ(0, d.nedges());
    EXPECT_FALSE(c2->is_in_diagram());
    EXPECT_FALSE(b1->is_in_diagram());
    EXPECT_EQ(1, o->index());
    EXPECT_EQ(0, c2->nbonds());
    d.remove(HDiagramNode(c2));  // a free node is left alone
    other.add(HDiagramNode(c2));  // and may join another diagram
    EXPECT_TRUE(other.has_node(c2));
    EXPECT_FALSE(d.has_node(c2));
}

TEST(ChemicalDiagram, FreeNodesAndEdgesRefuseGraphQueries) {
    DiagramAtom a;
    EXPECT_EQ("DiagramNode::neighbours cannot work when graph_ == 0",
              message_of<std::runtime_error>([&] { a.neighbours(); }));
    EXPECT_EQ("DiagramNode::edges cannot work when graph_ == 0", message_of<std::runtime_error>([&] { a.edges(); }));
    EXPECT_EQ("DiagramNode::cyclic cannot work when graph_ == 0", message_of<std::runtime_error>([&] { a.cyclic(); }));
    EXPECT_EQ("DiagramNode::nedges cannot work when graph_ == 0", message_of<std::runtime_error>([&] { a.nedges(); }));
    EXPECT_EQ("DiagramNode::self No pointer available - this atom is not in a graph",
              message_of<std::runtime_error>([&] { a.self(); }));
    EXPECT_EQ(0, a.nbonds());

    HDiagramGraph g(new DiagramGraph());
    HDiagramNode other(new DiagramAtom());
    EXPECT_EQ("DiagramNode::set_graphgraph is non-zero: self cannot be zero",
              message_of<std::invalid_argument>([&] { a.set_graph(g, HDiagramNode()); }));
    EXPECT_EQ("DiagramNode::set_graphgraph is zero: self cannot be non-zero",
              message_of<std::invalid_argument>([&] { a.set_graph(HDiagramGraph(), other); }));
    EXPECT_EQ("DiagramNode::set_graphself does not point to this DiagramNode object",
              message_of<std::invalid_argument>([&] { a.set_graph(g, other); }));

    DiagramBond b;
    HDiagramEdge other_edge(new DiagramBond());
    EXPECT_EQ("DiagramEdge::self No pointer available - this node is not in a graph",
              message_of<std::runtime_error>([&] { b.self(); }));
    EXPECT_EQ("DiagramEdge::node2 cannot work when graph_ == 0", message_of<std::runtime_error>([&] { b.node2(); }));
    EXPECT_EQ("DiagramEdge::other_node cannot work when graph_ == 0",
              message_of<std::runtime_error>([&] { b.other_node(other); }));
    EXPECT_EQ("DiagramEdge::set_graphself does not point to this DiagramEdge object",
              message_of<std::invalid_argument>([&] { b.set_graph(g, other_edge); }));
    EXPECT_EQ("DiagramEdge::set_type: Illegal edge type.",
              message_of<std::invalid_argument>([&] { b.set_type(static_cast<BondType>(10)); }));
    EXPECT_EQ("DiagramEdge::set_type: Illegal edge type.",
              message_of<std::invalid_argument>([] { DiagramBond bad(static_cast<BondType>(-1)); }));
    EXPECT_EQ(SINGLE_BOND, b.type());

    ChemicalDiagram d;
    HDiagramNode x(new DiagramAtom()), y(new DiagramAtom()), z(new DiagramAtom());
    HDiagramEdge e(new DiagramBond());
    d.add(e, x, y);
    d.add(z);
    EXPECT_EQ("DiagramEdge::other_node(HDiagramNode) node is a null pointer",
              message_of<std::invalid_argument>([&] { e->other_node(HDiagramNode()); }));
    EXPECT_EQ("DiagramEdge::other_node(HDiagramNode) node is not in this edge",
              message_of<std::runtime_error>([&] { e->other_node(z); }));
}

TEST(ChemicalDiagram, CopiesCloneTheGraphAndAssignmentKeepsNothingOld) {
    ChemicalDiagram d;
    HDiagramAtom a = atom_at(Element::N, 1, 2), b = atom_at(Element::C, 2, 2);
    a->set_formal_charge(1);
    HDiagramEdge e(new DiagramBond(TRIPLE_BOND));
    e->set_tooltip_text("C#N");
    d.add(e, a, b);
    d.add_symbol_group(ChemicalDiagram::symbol_factory_.create("Phenyl"));

    ChemicalDiagram copy(d);
    ASSERT_EQ(2, copy.nnodes());
    ASSERT_EQ(1, copy.nedges());
    EXPECT_NE(d.atom(0), copy.atom(0));
    EXPECT_EQ(*a, dynamic_cast<const DiagramAtom&>(*copy.atom(0)));
    EXPECT_EQ(*e, *copy.bond(0));
    EXPECT_EQ(copy.atom(0), copy.bond(0)->node1());
    EXPECT_EQ(0, copy.n_symbol_groups());
    EXPECT_EQ(1, copy.formal_charge());
    EXPECT_EQ(*d.adjacency_matrix(), *copy.adjacency_matrix());

    ChemicalDiagram target;
    target.add(HDiagramNode(new DiagramAtom()));
    target.add_symbol_group(ChemicalDiagram::symbol_factory_.create("Phenyl"));
    target = d;
    EXPECT_EQ(2, target.nnodes());
    EXPECT_EQ(0, target.n_symbol_groups());
    ChemicalDiagram& same = target;
    target = same;
    EXPECT_EQ(2, target.nnodes());

    std::ostringstream printed;
    d.print(printed);
    EXPECT_EQ(0u, printed.str().find("nnodes: 2\nelement: N, formal_charge: 1, h_count: 0, xy: (1, 2)"));
    EXPECT_NE(std::string::npos, printed.str().find("nedges: 1\ntype: 3, node1: DiagramAtom index: 0"));
}

TEST(ChemicalDiagram, VisibleCarbonsAndLabelSides) {
    ChemicalDiagram d;
    // Away from the origin, where a neighbour counts as having no position.
    HDiagramAtom c = atom_at(Element::C, 5, 5), left = atom_at(Element::C, 4, 5.5), up = atom_at(Element::C, 5, 6);
    HDiagramAtom right = atom_at(Element::O, 6, 5.2);
    d.add(HDiagramNode(c));
    EXPECT_TRUE(d.is_visible_carbon(c));  // no edges
    d.add(HDiagramEdge(new DiagramBond()), c, left);
    EXPECT_TRUE(d.is_visible_carbon(c));  // terminal
    EXPECT_TRUE(d.is_visible_carbon(HDiagramNode(new DiagramCircle())));
    left->set_position(Point2d(0, 0));
    EXPECT_TRUE(d.is_right_bonded_node(c));  // a neighbour at the origin is ignored: no neighbours
    left->set_position(Point2d(4, 5.5));
    EXPECT_TRUE(d.is_visible_carbon(right));  // not a carbon
    HDiagramEdge second(new DiagramBond());
    d.add(second, c, up);
    EXPECT_FALSE(d.is_visible_carbon(c));  // a bend
    second->set_type(DOUBLE_BOND);
    EXPECT_FALSE(d.is_visible_carbon(c));  // types differ
    second->set_type(TRIPLE_BOND);
    EXPECT_TRUE(d.is_visible_carbon(c));
    second->set_type(SINGLE_BOND);
    up->set_position(Point2d(6, 4.5));  // straight through
    EXPECT_TRUE(d.is_visible_carbon(c));

    // Bonds to the left only: the label reads from the right.
    d.remove(HDiagramNode(up));
    EXPECT_TRUE(d.is_right_bonded_node(c));
    EXPECT_FALSE(d.is_right_bonded_node(left));  // its one neighbour is on its right
    d.add(HDiagramEdge(new DiagramBond()), c, right);
    EXPECT_FALSE(d.is_right_bonded_node(c));  // own y below right_y, and left_y above it
    right->set_position(Point2d(6, 6));
    EXPECT_TRUE(d.is_right_bonded_node(c));   // y below right_y, left_y not above it
}

TEST(ChemicalDiagram, TranslateCentroidCirclesAndFrames) {
    ChemicalDiagram d;
    std::set<HDiagramNode> ring;
    HDiagramAtom first;
    for (int i = 0; i < 6; ++i) {
        const double t = i * 3.141592653589793 / 3.0;
        HDiagramAtom a = atom_at(Element::C, 2 + std::cos(t), 3 + std::sin(t));
        ring.insert(a);
        if (i == 0) first = a;
    }
    HDiagramNode circle(new DiagramCircle(ring));
    HDiagramNode symbol(new DiagramSymbol());
    dynamic_cast<DiagramSymbol&>(*symbol).set_position(Point2d(10, 10));
    for (const HDiagramNode& a : ring) d.add(a);
    d.add(circle);
    d.add(symbol);
    EXPECT_NEAR(2.0, circle->position().x(), 1e-12);
    EXPECT_NEAR(std::sqrt(3.0) / 2.0, dynamic_cast<DiagramCircle&>(*circle).radius(), 1e-12);
    const Point2d centroid = d.diagram_centroid();
    EXPECT_NEAR((7 * 2.0 + 10) / 8.0, centroid.x(), 1e-12);

    d.translate(Point2d(1, -1));
    EXPECT_NEAR(3.0, circle->position().x(), 1e-12);
    EXPECT_NEAR(2.0, circle->position().y(), 1e-12);
    EXPECT_EQ(10.0, symbol->position().x());  // symbols keep their stored place

    // A frame spans its members in the graph only.
    std::vector<HDiagramNode> members(ring.begin(), ring.end());
    HDiagramNode frame(new DiagramFrame(members));
    EXPECT_EQ(Rectangle2d(), dynamic_cast<DiagramFrame&>(*frame).rectangle());
    d.add(frame);
    EXPECT_NEAR(2.0, dynamic_cast<DiagramFrame&>(*frame).rectangle().x_min(), 1e-12);
    d.remove(HDiagramNode(first));
    EXPECT_NEAR(3.0 + 0.5, dynamic_cast<DiagramFrame&>(*frame).rectangle().x_max(), 1e-12);
    EXPECT_EQ(0, d.formal_charge() - 0);
}

TEST(DiagramEdge, ArchiveHoldsTheTypeOnlyAndShortArchivesThrow) {
    Archive ar = Archive::temporary();
    DiagramCompositeEdge composite(AROMATIC_BOND);
    composite.set_tooltip_text("lost");
    composite.write(ar);
    ar << 12;  // an out-of-range type is stored as read
    ar.rewind();
    DiagramBond back(ar);
    EXPECT_EQ(AROMATIC_BOND, back.type());
    EXPECT_EQ("", back.tooltip_text());
    DiagramEdge odd(ar);
    EXPECT_EQ(12, static_cast<int>(odd.type()));
    try {
        DiagramEdge none(ar);
        FAIL() << "read past the end";
    } catch (const std::runtime_error& e) {
        EXPECT_NE(std::string::npos, std::string(e.what()).find("DiagramEdge::read type"));
    }
}

}  // namespace
}  // namespace molcryst
