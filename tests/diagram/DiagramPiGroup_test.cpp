// Aromatic ring circles and pi groups: which rings get circles, which
// centres fold into one bond to them, and bonds two groups share.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "DiagramTestSupport.h"

namespace molcryst {
namespace {

using testing::atom;
using testing::bond;
using testing::snapshot;

std::vector<HDiagramNode> ring(ChemicalDiagram& d, int n, double cx, double cy, BondType t = AROMATIC_BOND) {
    std::vector<HDiagramNode> atoms;
    for (int i = 0; i < n; ++i)
        atoms.push_back(atom(d, Element::C, cx + std::cos(6.283185307179586 * i / n),
                             cy + std::sin(6.283185307179586 * i / n)));
    for (int i = 0; i < n; ++i) bond(d, atoms[static_cast<std::size_t>(i)], atoms[static_cast<std::size_t>((i + 1) % n)], t);
    return atoms;
}

int circles(const ChemicalDiagram& d) {
    int n = 0;
    for (ChemicalDiagram::const_node_iterator i = d.begin_nodes(); i != d.end_nodes(); ++i)
        if (dynamic_cast<const DiagramCircle*>(i->unhand()) != nullptr) ++n;
    return n;
}

TEST(AromaticRings, CirclesForChordlessAromaticRingsOnly) {
    ChemicalDiagram empty;
    empty.derive_aromatic_rings();
    EXPECT_EQ(0, empty.nnodes());
    EXPECT_EQ(0, empty.formal_charge());

    ChemicalDiagram d;
    std::vector<HDiagramNode> benzene = ring(d, 6, 0, 0);
    ring(d, 6, 5, 0, SINGLE_BOND);  // cyclohexane: no circle
    // Naphthalene: two fused rings, one circle each, none for the ten-ring.
    std::vector<HDiagramNode> a = ring(d, 6, 10, 0);
    std::vector<HDiagramNode> b;
    b.push_back(a[0]);
    b.push_back(a[1]);
    for (int i = 0; i < 4; ++i) b.push_back(atom(d, Element::C, 12 + i, 1));
    bond(d, a[1], b[2], AROMATIC_BOND);
    bond(d, b[2], b[3], AROMATIC_BOND);
    bond(d, b[3], b[4], AROMATIC_BOND);
    bond(d, b[4], b[5], AROMATIC_BOND);
    bond(d, b[5], a[0], AROMATIC_BOND);
    const int edges = d.nedges();
    d.derive_aromatic_rings();
    EXPECT_EQ(3, circles(d));
    EXPECT_EQ(edges, d.nedges());  // circles come without edges
    EXPECT_TRUE(d.pi_groups().empty());
    const DiagramCircle* first = nullptr;
    for (ChemicalDiagram::const_node_iterator i = d.begin_nodes(); i != d.end_nodes(); ++i)
        if ((first = dynamic_cast<const DiagramCircle*>(i->unhand())) != nullptr && first->has_node(benzene[0])) break;
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(6u, first->atoms().size());
    EXPECT_NEAR(0.0, first->position().x(), 1e-12);
}

TEST(AromaticRings, CentrePiBondedToTheWholeRingGetsAPiGroup) {
    for (int bonded = 4; bonded <= 5; ++bonded) {
        ChemicalDiagram d;
        const HDiagramNode fe = atom(d, Element::Fe, 0, 0);
        std::vector<HDiagramNode> cp = ring(d, 5, 0, 2);
        for (int i = 0; i < bonded; ++i) bond(d, fe, cp[static_cast<std::size_t>(i)], PI_BOND);
        d.derive_aromatic_rings();
        EXPECT_EQ(1, circles(d));
        EXPECT_EQ(bonded == 5 ? 1u : 0u, d.pi_groups().size());
    }
}

TEST(AromaticRings, SandwichHasTwoPiGroupsThatFoldApart) {
    ChemicalDiagram d;
    const HDiagramNode fe = atom(d, Element::Fe, 0, 0);
    const std::vector<HDiagramNode> top = ring(d, 5, 0, 2), bottom = ring(d, 5, 0, -2);
    for (int i = 0; i < 5; ++i) {
        bond(d, fe, top[static_cast<std::size_t>(i)], PI_BOND);
        bond(d, fe, bottom[static_cast<std::size_t>(i)], PI_BOND);
    }
    d.derive_aromatic_rings();
    ASSERT_EQ(2u, d.pi_groups().size());
    const testing::Snapshot before = snapshot(d);
    const HDiagramPiGroup one = *d.pi_groups().begin(), two = *d.pi_groups().rbegin();
    EXPECT_TRUE(one->has_node(HDiagramNode(one->circle_node())));
    EXPECT_NE(one->has_node(top[0]), two->has_node(top[0]));

    one->contract(d);
    EXPECT_EQ(10 + 5 + 1, d.nedges());  // the other ring's pi bonds stay
    EXPECT_EQ(PI_BOND, d.edge(fe, HDiagramNode(one->circle_node()))->type());
    EXPECT_EQ(std::set<HDiagramNode>({fe}), *one->current_attachment_nodes());
    d.contract_pi_groups();
    EXPECT_EQ(10 + 2, d.nedges());
    EXPECT_EQ(2u, fe->neighbours().size());  // the two circles
    d.expand_pi_groups();
    EXPECT_TRUE(before == snapshot(d));
}

TEST(AromaticRings, ABondAnotherExpandedPiGroupNeedsStays) {
    // Two groups over the same centre and ring: contracting one leaves the
    // bonds the other, still expanded, stands on.
    ChemicalDiagram d;
    const HDiagramNode m = atom(d, Element::Cr, 0, 0);
    const std::vector<HDiagramNode> c6 = ring(d, 6, 0, 2);
    for (const HDiagramNode& c : c6) bond(d, m, c, PI_BOND);
    d.derive_aromatic_rings();
    ASSERT_EQ(1u, d.pi_groups().size());
    const HDiagramPiGroup first = *d.pi_groups().begin();
    const HDiagramPiGroup second(new DiagramPiGroup(m, first->circle_node(), d));
    d.add_pi_group(second);
    EXPECT_TRUE(first->other_has_edge(d.edge(m, c6[0]), d));
    first->contract(d);
    // Every pi bond is skipped with its match, so not even the bond to the circle comes.
    EXPECT_EQ(6 + 6, d.nedges());
    EXPECT_FALSE(d.has_edge(m, HDiagramNode(first->circle_node())));
    EXPECT_FALSE(first->expanded());
    EXPECT_FALSE(second->other_has_edge(d.edge(m, c6[0]), d));
}

}  // namespace
}  // namespace molcryst
