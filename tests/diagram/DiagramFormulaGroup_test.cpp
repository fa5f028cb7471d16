// Formula groups: atoms shown as a text at a point, with the circles and
// groups over them.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <vector>

#include "common/ErrorText.h"
#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "DiagramTestSupport.h"

namespace molcryst {
namespace {

using testing::atom;
using testing::bond;
using testing::error_text;
using testing::snapshot;

TEST(DiagramFormulaGroup, AtomsBecomeATextAtThePoint) {
    ChemicalDiagram d;
    const HDiagramNode c = atom(d, Element::C, 0, 0, 2), s = atom(d, Element::S, 1, 0);
    const HDiagramNode o1 = atom(d, Element::O, 2, 0.5), o2 = atom(d, Element::O, 2, -0.5),
                       o3 = atom(d, Element::O, 1, 1);
    dynamic_cast<DiagramAtom&>(*o3).set_formal_charge(-1);
    bond(d, c, s);
    for (const HDiagramNode& o : {o1, o2, o3}) bond(d, s, o);
    const testing::Snapshot before = snapshot(d);
    d.add_formula_group({s, o1, o2, o3}, Point2d(1.5, 0.2), "SO<sub>3</sub><sup>-</sup>");
    ASSERT_EQ(1u, d.formula_groups().size());
    const HDiagramFormulaGroup g = *d.formula_groups().begin();
    EXPECT_TRUE(before == snapshot(d));  // no bulk operation follows
    g->contract(d);
    ASSERT_EQ(2, d.nnodes());
    const THandle<DiagramSymbol> text = g->formula_node();
    EXPECT_EQ("SO<sub>3</sub><sup>-</sup>", text->left_label());
    EXPECT_EQ(text->left_label(), text->centre_label());
    EXPECT_EQ(text->left_label(), text->right_label());
    EXPECT_EQ(Point2d(1.5, 0.2), text->position());
    EXPECT_EQ(-1, text->formal_charge());
    EXPECT_TRUE(d.has_edge(c, HDiagramNode(text)));
    g->expand(d);
    EXPECT_TRUE(before == snapshot(d));
}

TEST(DiagramFormulaGroup, TakesCirclesAndGroupsOverItsAtomsAlong) {
    // A metal pi-bonded to a benzene ring: the ring, its circle and pi group
    // go into the formula and come back as they were.
    ChemicalDiagram d;
    const HDiagramNode cr = atom(d, Element::Cr, 0, 0);
    std::vector<HDiagramNode> r;
    for (int i = 0; i < 6; ++i) r.push_back(atom(d, Element::C, std::cos(1.0472 * i), 2 + std::sin(1.0472 * i), 1));
    for (int i = 0; i < 6; ++i) {
        bond(d, r[static_cast<std::size_t>(i)], r[static_cast<std::size_t>((i + 1) % 6)], AROMATIC_BOND);
        bond(d, cr, r[static_cast<std::size_t>(i)], PI_BOND);
    }
    d.derive_aromatic_rings();
    ASSERT_EQ(1u, d.pi_groups().size());
    const testing::Snapshot before = snapshot(d);
    d.contract_pi_groups();

    d.add_formula_group(r, Point2d(0, 2), "C<sub>6</sub>H<sub>6</sub>");
    const HDiagramFormulaGroup g = *d.formula_groups().begin();
    EXPECT_EQ(1u, g->pi_groups().size());
    EXPECT_TRUE(before == snapshot(d));  // the pi group stands expanded again
    g->contract(d);
    EXPECT_TRUE(d.pi_groups().empty());
    EXPECT_EQ(2, d.nnodes());  // the metal and the formula; the circle went too
    EXPECT_EQ(1, d.nedges());
    g->expand(d);
    EXPECT_EQ(1u, d.pi_groups().size());
    EXPECT_TRUE(before == snapshot(d));

    // An empty list makes an empty group.
    d.add_formula_group({}, Point2d(), "x");
    EXPECT_EQ(2u, d.formula_groups().size());
    ChemicalDiagram other;
    const HDiagramNode stranger = atom(other, Element::C, 0, 0);
    EXPECT_EQ("DiagramFormulaGroup::set_atoms node 1 is not in the diagram",
              error_text<std::invalid_argument>([&] { d.add_formula_group({r[0], stranger}, Point2d(), "x"); }));
    EXPECT_EQ(2u, d.formula_groups().size());
}

}  // namespace
}  // namespace molcryst
