// Groups: contraction and expansion that lose nothing, attachment bonds found
// at run time, notifications of the bulk operations.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <tuple>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramBond.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"
#include "molcryst/diagram/DiagramSymbol.h"
#include "molcryst/support/Observer.h"
#include "molcryst/support/TARNLog.h"
#include "DiagramTestSupport.h"

namespace molcryst {
namespace {

using testing::Snapshot;
using testing::atom;
using testing::bond;
using testing::snapshot;

// Folds a list of atoms into one symbol, as a substituent group does: every
// atom matches the symbol, each bond to the outside keeps its identity and
// moves to the symbol, inner bonds have no contracted counterpart.
class FoldGroup : public DiagramSymbolGroup {
public:
    FoldGroup(const std::vector<HDiagramNode>& nodes, const std::string& label, ChemicalDiagram& diagram)
        : DiagramSymbolGroup(label, label, label, label, std::vector<Point2d>(nodes.size()), 0,
                             DiagramSymbol::HydrogenDefault),
          symbol_(new DiagramSymbol(nodes)) {
        DiagramSymbol& s = dynamic_cast<DiagramSymbol&>(*symbol_);
        s.set_left_label(label);
        s.set_position(nodes[0]->position());
        const std::set<HDiagramNode> members(nodes.begin(), nodes.end());
        for (const HDiagramNode& m : members) {
            add_node_match(m, symbol_);
            for (const HDiagramNode& b : m->neighbours()) {
                if (members.count(b) != 0) continue;
                HDiagramEdge e = diagram.edge(m, b);
                add_edge_match(e, HDiagramNode(), m, e, HDiagramNode(), symbol_);
            }
        }
        for (const HDiagramEdge& e : diagram.graph()->nodes_to_edges(members))
            add_edge_match(e, e->node1(), e->node2(), HDiagramEdge(), HDiagramNode(), HDiagramNode());
    }
    HDiagramNode symbol() const { return symbol_; }

private:
    HDiagramNode symbol_;
};

struct CountingObserver : Observer {
    int updates = 0;
    void update(Subject&, const UpdateFlags&) override { ++updates; }
};

TEST(DiagramGroup, ContractThenExpandRestoresTheSameObjects) {
    // A chain A-B-C-D-E with F on C; {D, E} folds to "Et".
    ChemicalDiagram d;
    HDiagramNode a = atom(d, Element::C, 0, 0), b = atom(d, Element::C, 1, 0), c = atom(d, Element::C, 2, 0);
    HDiagramNode dd = atom(d, Element::C, 3, 0), e = atom(d, Element::C, 4, 0), f = atom(d, Element::O, 2, 1);
    bond(d, a, b);
    bond(d, b, c, DOUBLE_BOND);
    bond(d, c, dd);
    bond(d, dd, e);
    bond(d, c, f);
    const Snapshot before = snapshot(d);

    THandle<FoldGroup> ethyl(new FoldGroup({dd, e}, "Et", d));
    EXPECT_EQ(2u, ethyl->matches().nnode_matches());
    EXPECT_EQ(2u, ethyl->matches().nedge_matches());
    EXPECT_EQ(std::set<HDiagramNode>({c}), *ethyl->current_attachment_nodes());
    ethyl->expand(d);  // a new group stands expanded: nothing happens
    EXPECT_TRUE(before == snapshot(d));

    const HDiagramEdge attachment = d.edge(c, dd);
    ethyl->contract(d);
    EXPECT_FALSE(ethyl->expanded());
    EXPECT_EQ(5, d.nnodes());
    EXPECT_EQ(4, d.nedges());
    EXPECT_FALSE(d.has_node(dd));
    EXPECT_TRUE(d.has_node(ethyl->symbol()));
    EXPECT_EQ(attachment, d.edge(c, ethyl->symbol()));  // the same bond, moved
    EXPECT_EQ(std::set<HDiagramNode>({c}), *ethyl->current_attachment_nodes());
    const Snapshot contracted = snapshot(d);
    ethyl->contract(d);
    EXPECT_TRUE(contracted == snapshot(d));

    ethyl->expand(d);
    EXPECT_TRUE(before == snapshot(d));
    EXPECT_FALSE(ethyl->symbol()->is_in_diagram());
    EXPECT_EQ(3, f->index());  // the group's atoms re-entered the tables at the end
    EXPECT_EQ(4, dd->index());
    for (int round = 0; round < 3; ++round) {
        ethyl->contract(d);
        ethyl->expand(d);
    }
    EXPECT_TRUE(before == snapshot(d));
}

TEST(DiagramGroup, NeighbouringGroupsMeetWhateverStandsAtSwapTime) {
    // A-B-C-D: {A, B} and {C} share the bond B-C, each as its outside.
    ChemicalDiagram d;
    HDiagramNode a = atom(d, Element::C, 0, 0), b = atom(d, Element::C, 1, 0), c = atom(d, Element::N, 2, 0);
    HDiagramNode x = atom(d, Element::O, 3, 0);
    bond(d, a, b);
    bond(d, b, c);
    bond(d, c, x);
    const Snapshot before = snapshot(d);
    const HDiagramEdge shared = d.edge(b, c);
    THandle<FoldGroup> left(new FoldGroup({a, b}, "Et", d));
    THandle<FoldGroup> right(new FoldGroup({c}, "N", d));

    for (int order = 0; order < 4; ++order) {
        DiagramGroup& first = order % 2 == 0 ? static_cast<DiagramGroup&>(*left) : *right;
        DiagramGroup& second = order % 2 == 0 ? static_cast<DiagramGroup&>(*right) : *left;
        first.contract(d);
        second.contract(d);
        EXPECT_EQ(shared, d.edge(left->symbol(), right->symbol()));
        EXPECT_EQ(std::set<HDiagramNode>({right->symbol()}), *left->current_attachment_nodes());
        EXPECT_EQ(3, d.nnodes());
        // Expanding in the same or the other order.
        if (order < 2) {
            first.expand(d);
            second.expand(d);
        } else {
            second.expand(d);
            first.expand(d);
        }
        EXPECT_TRUE(before == snapshot(d)) << "order " << order;
    }
}

TEST(DiagramGroup, RingBondsFoldIntoOneBondToTheCircleAndNotify) {
    ChemicalDiagram d;
    HDiagramNode fe = atom(d, Element::Fe, 0, 0);
    std::vector<HDiagramNode> ring;
    for (int i = 0; i < 5; ++i) ring.push_back(atom(d, Element::C, std::cos(i * 1.2566), 1 + std::sin(i * 1.2566)));
    for (int i = 0; i < 5; ++i) {
        bond(d, ring[i], ring[(i + 1) % 5], AROMATIC_BOND);
        bond(d, fe, ring[i], PI_BOND);
    }
    HDiagramNode circle(new DiagramCircle(std::set<HDiagramNode>(ring.begin(), ring.end())));
    d.add(circle);
    const Snapshot before = snapshot(d);
    HDiagramPiGroup group(new DiagramPiGroup(fe, handle_dynamic_cast<DiagramCircle>(circle), d));
    const HDiagramEdge composite = group->matches().begin_edge_matches()->second;
    d.add_pi_group(group);
    CountingObserver viewer;
    d.connect(viewer);

    std::ostringstream log;
    TARNLog::set_stream(&log);
    const int saved_level = TARNLog::level_;
    TARNLog::level_ = 2;
    d.contract_pi_groups();
    TARNLog::level_ = saved_level;
    TARNLog::set_stream(nullptr);
    EXPECT_NE(std::string::npos, log.str().find("DiagramGroup::contract group:  nnode_matches: 0 nedge_matches: 5"));
    EXPECT_EQ(1, viewer.updates);
    EXPECT_EQ(7, d.nnodes());
    EXPECT_EQ(6, d.nedges());
    EXPECT_EQ(composite, d.edge(fe, circle));
    EXPECT_EQ(PI_BOND, d.edge(circle, fe)->type());
    EXPECT_EQ(std::set<HDiagramNode>({fe}), *group->current_attachment_nodes());

    d.expand_pi_groups();
    EXPECT_EQ(2, viewer.updates);
    EXPECT_TRUE(before == snapshot(d));
    EXPECT_FALSE(composite->is_in_diagram());

    d.expand_symbol_groups();  // no symbol groups: nothing to announce
    EXPECT_EQ(2, viewer.updates);
    d.remove_pi_group(group);
    d.contract_pi_groups();
    EXPECT_EQ(2, viewer.updates);
    EXPECT_TRUE(group->expanded());
    d.disconnect(viewer);
}

TEST(DiagramGroup, MatchBookkeeping) {
    ChemicalDiagram d;
    HDiagramNode a = atom(d, Element::C, 0, 0), s(new DiagramSymbol()), t(new DiagramSymbol());
    DiagramGroup g;
    g.add_node_match(a, HDiagramNode());
    g.add_node_match(a, HDiagramNode());  // known pairs are entered once
    EXPECT_EQ(1u, g.matches().nnode_matches());
    EXPECT_EQ(0, g.matches().graph2_nnodes(s));
    g.add_node_match(a, s);
    g.add_node_match(a, t);
    EXPECT_EQ(3u, g.matches().nnode_matches());
    EXPECT_TRUE(g.has_node(t));
    EXPECT_FALSE(g.has_node(HDiagramNode(new DiagramAtom())));
    try {
        g.matches().graph2_node(a);
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ("node1 does not match exactly 1 node in graph2", e.what());
    }
    EXPECT_THROW(g.matches().graph2_node(s), std::runtime_error);
    g.set_expanded(false);
    g.clear();
    EXPECT_EQ(0u, g.matches().nnode_matches());
    EXPECT_FALSE(g.expanded());

    // Swaps of an empty group, or in the state already reached, change nothing and log nothing.
    std::ostringstream log;
    TARNLog::set_stream(&log);
    const int saved_level = TARNLog::level_;
    TARNLog::level_ = 3;
    DiagramGroup fresh;
    fresh.expand(d);
    g.contract(d);
    TARNLog::level_ = saved_level;
    TARNLog::set_stream(nullptr);
    EXPECT_EQ("", log.str());
    EXPECT_EQ(1, d.nnodes());
}

TEST(DiagramGroup, ClearDropsGroupsButKeepsFormulaGroups) {
    ChemicalDiagram d;
    HDiagramNode a = atom(d, Element::C, 0, 0), b = atom(d, Element::O, 1, 0);
    bond(d, a, b);
    THandle<FoldGroup> g(new FoldGroup({b}, "OH", d));
    d.add_symbol_group(g);
    d.contract_symbol_groups();
    EXPECT_TRUE(g->symbol()->is_in_diagram());
    d.clear();
    EXPECT_EQ(0, d.n_symbol_groups());
    EXPECT_EQ(0, d.nnodes());
    EXPECT_FALSE(a->is_in_diagram());
    EXPECT_FALSE(g->symbol()->is_in_diagram());
    // The group still holds its atom, which can enter another diagram; the
    // attachment bond cannot, its outside end being gone with the old diagram.
    ChemicalDiagram fresh;
    g->expand(fresh);
    EXPECT_EQ(1, fresh.nnodes());
    EXPECT_TRUE(fresh.has_node(b));
    EXPECT_EQ(0, fresh.nedges());
}

}  // namespace
}  // namespace molcryst
