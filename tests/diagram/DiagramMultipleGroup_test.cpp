// Ligand and repeat groups: units shown once in a frame with their number,
// and everything of the units given back on expansion.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <vector>

#include "common/ErrorText.h"
#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"
#include "DiagramTestSupport.h"

namespace molcryst {
namespace {

using testing::atom;
using testing::bond;
using testing::error_text;
using testing::snapshot;

typedef DiagramMultipleGroup::Units Units;
typedef DiagramMultipleGroup::Unit Unit;

Unit unit(std::initializer_list<HDiagramNode> nodes) { return Unit(new std::vector<HDiagramNode>(nodes)); }

TEST(DiagramLigandGroup, ThreeCarbonylsInOneFrame) {
    ChemicalDiagram d;
    const HDiagramNode m = atom(d, Element::Ni, 0, 0);
    Units units;
    std::vector<HDiagramEdge> to_metal;
    for (int i = 0; i < 3; ++i) {
        const double a = 2.0944 * i;
        const HDiagramNode c = atom(d, Element::C, 1.5 * std::cos(a), 1.5 * std::sin(a));
        const HDiagramNode o = atom(d, Element::O, 2.6 * std::cos(a), 2.6 * std::sin(a));
        to_metal.push_back(bond(d, m, c));
        bond(d, c, o, TRIPLE_BOND);
        units.push_back(unit({c, o}));
    }
    const HDiagramNode other = atom(d, Element::P, -1.5, 0);
    bond(d, m, other);
    const testing::Snapshot before = snapshot(d);

    d.add_ligand_group(units);
    ASSERT_EQ(1, d.n_ligand_groups());
    const HDiagramLigandGroup g = *d.ligand_groups().begin();
    const THandle<DiagramFrame> frame = g->frame();
    EXPECT_EQ(3, frame->multiplier());
    EXPECT_EQ(Rectangle2d(), frame->rectangle());  // not in the diagram while expanded
    EXPECT_TRUE(before == snapshot(d));

    d.contract_ligand_groups();
    EXPECT_EQ(5, d.nnodes());  // metal, P, two clones, frame
    EXPECT_EQ(3, d.nedges());
    ASSERT_TRUE(d.has_node(HDiagramNode(frame)));
    const HDiagramNode c1 = frame->nodes()[0], o1 = frame->nodes()[1];
    const THandle<DiagramCompositeEdge> to_clone = handle_dynamic_cast<DiagramCompositeEdge>(d.edge(m, c1));
    ASSERT_NE(nullptr, to_clone.unhand());
    EXPECT_EQ(to_metal, to_clone->edges());
    EXPECT_EQ(TRIPLE_BOND, d.edge(c1, o1)->type());
    EXPECT_EQ(3u, handle_dynamic_cast<DiagramCompositeEdge>(d.edge(c1, o1))->edges().size());
    EXPECT_EQ("O", dynamic_cast<const DiagramAtom&>(*o1).element().symbol());
    // The frame holds the first ligand's place: its clones stand where it stood.
    EXPECT_EQ(Rectangle2d(1.5, 0.0, 2.6, 0.0), frame->rectangle());

    d.expand_ligand_groups();
    EXPECT_TRUE(before == snapshot(d));
    d.contract_ligand_groups();
    d.expand_ligand_groups();
    EXPECT_TRUE(before == snapshot(d));
}

TEST(DiagramRepeatGroup, BondBetweenUnitsLeavesAndComesBack) {
    // X-A1-B1-A2-B2-Y: one unit A-B in a frame of two, X and Y on its ends.
    ChemicalDiagram d;
    const HDiagramNode x = atom(d, Element::C, 0, 0, 3), y = atom(d, Element::C, 5, 0, 3);
    const HDiagramNode a1 = atom(d, Element::C, 1, 0.5, 2), b1 = atom(d, Element::O, 2, 0);
    const HDiagramNode a2 = atom(d, Element::C, 3, 0.5, 2), b2 = atom(d, Element::O, 4, 0);
    bond(d, x, a1);
    bond(d, a1, b1);
    const HDiagramEdge between = bond(d, b1, a2);
    bond(d, a2, b2);
    bond(d, b2, y);
    const testing::Snapshot before = snapshot(d);
    d.add_repeat_group({unit({a1, b1}), unit({a2, b2})});
    ASSERT_EQ(1, d.n_repeat_groups());
    const HDiagramRepeatGroup g = *d.repeat_groups().begin();
    g->contract(d);
    EXPECT_FALSE(d.has_edge(between));
    const HDiagramNode ca = g->frame()->nodes()[0], cb = g->frame()->nodes()[1];
    EXPECT_TRUE(d.has_edge(x, ca));
    EXPECT_TRUE(d.has_edge(ca, cb));
    EXPECT_TRUE(d.has_edge(cb, y));
    EXPECT_EQ(5, d.nnodes());
    EXPECT_EQ(2, g->frame()->multiplier());
    EXPECT_EQ(2, ca->nterminal_hydrogens());
    g->expand(d);
    EXPECT_TRUE(before == snapshot(d));
}

TEST(DiagramLigandGroup, RingsPiGroupsAndSymbolsOfTheUnitsComeBack) {
    // A sandwich as two identical ring ligands: the frame gets a cloned ring
    // with its circle and pi group; with the rings folded as "Cp", a folded
    // clone whose symbol takes the pi group over.
    for (bool folded : {false, true}) {
        SCOPED_TRACE(folded ? "rings folded" : "rings as atoms");
        ChemicalDiagram d;
        const HDiagramNode fe = atom(d, Element::Fe, 0, 0);
        Units units;
        for (double y : {2.0, -2.0}) {
            std::vector<HDiagramNode> r;
            for (int i = 0; i < 5; ++i)
                r.push_back(atom(d, Element::C, std::cos(1.2566 * i), y + std::sin(1.2566 * i), 1));
            for (int i = 0; i < 5; ++i) {
                bond(d, r[static_cast<std::size_t>(i)], r[static_cast<std::size_t>((i + 1) % 5)], AROMATIC_BOND);
                bond(d, fe, r[static_cast<std::size_t>(i)], PI_BOND);
            }
            units.push_back(Unit(new std::vector<HDiagramNode>{r[0], r[1], r[4], r[2], r[3]}));
        }
        d.derive_aromatic_rings();
        const std::set<HDiagramPiGroup> pis = d.pi_groups();
        ASSERT_EQ(2u, pis.size());
        const testing::Snapshot before = snapshot(d);
        if (folded) {
            for (const Unit& u : units) d.add_group_symbol(*u, "Cyclopentadienyl");
            d.contract_symbol_groups();
            EXPECT_EQ(3, d.nnodes());
        }

        d.add_ligand_group(units);
        const HDiagramLigandGroup g = *d.ligand_groups().begin();
        d.contract_ligand_groups();
        EXPECT_EQ(pis, g->unit_pi_groups());
        ASSERT_EQ(1u, g->frame_pi_groups().size());
        const HDiagramPiGroup framed = *g->frame_pi_groups().begin();
        EXPECT_FALSE(framed->expanded());
        if (folded) {
            // Iron, the Cp symbol, the frame; the symbol holds the pi group.
            ASSERT_EQ(1u, g->frame_symbol_groups().size());
            const HDiagramSymbolGroup cp = *g->frame_symbol_groups().begin();
            EXPECT_EQ(g->frame_pi_groups(), cp->pi_groups());
            EXPECT_TRUE(d.pi_groups().empty());
            EXPECT_EQ(3, d.nnodes());
            EXPECT_EQ(1, d.nedges());
            EXPECT_EQ(PI_BOND, d.edge(fe, HDiagramNode(cp->symbol_node()))->type());
        } else {
            EXPECT_EQ(g->frame_pi_groups(), d.pi_groups());
            // Iron, five clones, their circle, the frame; one bond to the circle.
            EXPECT_EQ(8, d.nnodes());
            EXPECT_EQ(5 + 1, d.nedges());
            EXPECT_EQ(PI_BOND, d.edge(fe, HDiagramNode(framed->circle_node()))->type());
        }

        for (int round = 0; round < 2; ++round) {
            d.expand_ligand_groups();
            if (folded) {
                EXPECT_EQ(2, d.n_symbol_groups());
                d.expand_symbol_groups();
            }
            EXPECT_TRUE(before == snapshot(d));
            EXPECT_EQ(pis, d.pi_groups());
            d.contract_ligand_groups();
        }
    }
}

TEST(DiagramLigandGroup, SymbolOfTheFirstUnitIsRepeatedInTheFrame) {
    ChemicalDiagram d;
    const HDiagramNode b = atom(d, Element::B, 0, 0);
    Units units;
    for (int i = 0; i < 3; ++i) {
        const HDiagramNode o = atom(d, Element::O, std::cos(2.0944 * i), std::sin(2.0944 * i));
        const HDiagramNode c = atom(d, Element::C, 2 * std::cos(2.0944 * i), 2 * std::sin(2.0944 * i), 3);
        bond(d, b, o);
        bond(d, o, c);
        units.push_back(unit({o, c}));
        d.add_group_symbol({o, c}, "Methoxy");
    }
    const testing::Snapshot before = snapshot(d);
    d.contract_symbol_groups();  // the units' atoms folded: the group unfolds them itself
    d.add_ligand_group(units);
    const HDiagramLigandGroup g = *d.ligand_groups().begin();
    d.contract_ligand_groups();
    EXPECT_EQ(3u, g->unit_symbol_groups().size());
    ASSERT_EQ(1u, g->frame_symbol_groups().size());
    EXPECT_EQ(1, d.n_symbol_groups());
    const HDiagramSymbolGroup framed = *g->frame_symbol_groups().begin();
    EXPECT_FALSE(framed->expanded());
    EXPECT_TRUE(g->frame()->has_node(HDiagramNode(framed->symbol_node())));
    EXPECT_EQ(3, d.nnodes());  // boron, "OMe", the frame
    d.expand_ligand_groups();
    EXPECT_EQ(3, d.n_symbol_groups());
    EXPECT_TRUE(before == snapshot(d));
}

TEST(DiagramMultipleGroup, RefusesIllFormedUnitsAndChangesNothing) {
    ChemicalDiagram d;
    const HDiagramNode m = atom(d, Element::Zn, 0, 0);
    const HDiagramNode a = atom(d, Element::Cl, 1, 0), b = atom(d, Element::Cl, -1, 0), c = atom(d, Element::O, 0, 1);
    const HDiagramNode far = atom(d, Element::Na, 5, 5);
    bond(d, m, a);
    bond(d, m, b);
    bond(d, far, b);
    const testing::Snapshot before = snapshot(d);
    ChemicalDiagram other;
    const HDiagramNode stranger = atom(other, Element::C, 0, 0);
    const char* const where = "DiagramLigandGroup::DiagramLigandGroup";
    EXPECT_EQ(std::string(where) + " no units", error_text<std::invalid_argument>([&] { d.add_ligand_group({}); }));
    EXPECT_EQ(std::string(where) + " unit 1 differs in length from unit 0",
              error_text<std::invalid_argument>([&] { d.add_ligand_group({unit({a}), unit({b, c})}); }));
    EXPECT_EQ(std::string(where) + " unit 1 is empty",
              error_text<std::invalid_argument>([&] { d.add_ligand_group({unit({a}), Unit()}); }));
    EXPECT_EQ(std::string(where) + " a node of unit 1 is not in the diagram",
              error_text<std::invalid_argument>([&] { d.add_ligand_group({unit({a}), unit({stranger})}); }));
    EXPECT_EQ(std::string(where) + " a node of unit 1 is given twice",
              error_text<std::invalid_argument>([&] { d.add_ligand_group({unit({a}), unit({a})}); }));
    EXPECT_EQ(std::string(where) + " the ligands are not bonded to one centre",
              error_text<std::invalid_argument>([&] { d.add_ligand_group({unit({a}), unit({b})}); }));
    EXPECT_EQ("DiagramMultipleGroup::set_atoms a node of unit 0 is not in the diagram",
              error_text<std::invalid_argument>([&] { d.add_repeat_group({unit({stranger})}); }));
    EXPECT_EQ(0, d.n_ligand_groups());
    EXPECT_EQ(0, d.n_repeat_groups());
    EXPECT_TRUE(before == snapshot(d));
}

}  // namespace
}  // namespace molcryst
