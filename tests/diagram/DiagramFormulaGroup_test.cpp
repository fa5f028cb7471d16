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

    // The same ring folded as "Ph" first: the formula unfolds the symbol and
    // its pi group to take every atom, and gives them back folded.
    const HDiagramNode methyl = atom(d, Element::C, 2.5, 2.0, 3);
    bond(d, r[0], methyl);
    const testing::Snapshot unfolded = snapshot(d);
    d.contract_pi_groups();
    d.add_group_symbol({r[0], r[1], r[5], r[2], r[4], r[3]}, "Phenyl");
    d.contract_symbol_groups();
    ASSERT_EQ(3, d.nnodes());
    std::vector<HDiagramNode> toluene = r;
    toluene.push_back(methyl);
    d.add_formula_group(toluene, Point2d(0, 2), "C<sub>7</sub>H<sub>8</sub>");
    std::set<HDiagramFormulaGroup> added = d.formula_groups();
    added.erase(g);
    const HDiagramFormulaGroup t = *added.begin();
    EXPECT_EQ(1u, t->symbol_groups().size());
    EXPECT_EQ(1u, t->pi_groups().size());
    EXPECT_TRUE(unfolded == snapshot(d));
    t->contract(d);
    EXPECT_EQ(2, d.nnodes());  // the metal and the formula: no circle, no symbol
    EXPECT_EQ(1, d.nedges());  // the six pi bonds as one
    EXPECT_TRUE(d.pi_groups().empty());
    EXPECT_EQ(0, d.n_symbol_groups());
    t->expand(d);
    EXPECT_TRUE(unfolded == snapshot(d));
    EXPECT_EQ(1, d.n_symbol_groups());

    // An empty list makes an empty group.
    d.add_formula_group({}, Point2d(), "x");
    EXPECT_EQ(3u, d.formula_groups().size());
    ChemicalDiagram other;
    const HDiagramNode stranger = atom(other, Element::C, 0, 0);
    EXPECT_EQ("DiagramFormulaGroup::set_atoms node 1 is not in the diagram",
              error_text<std::invalid_argument>([&] { d.add_formula_group({r[0], stranger}, Point2d(), "x"); }));
    EXPECT_EQ("DiagramFormulaGroup::set_atoms node 1 is given twice",
              error_text<std::invalid_argument>([&] { d.add_formula_group({r[0], r[0]}, Point2d(), "x"); }));
    EXPECT_EQ(3u, d.formula_groups().size());
}

}  // namespace
}  // namespace molcryst
