// Symbol groups: the catalogue, the layout on the template, folding and
// unfolding, the pi groups a symbol takes over, and what is refused.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <stdexcept>
#include <vector>

#include "common/ErrorText.h"
#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramSymbolCatalogue.h"
#include "DiagramTestSupport.h"

namespace molcryst {
namespace {

using testing::atom;
using testing::bond;
using testing::error_text;
using testing::snapshot;

const double h = 0.5 * std::sqrt(3.0);

Point2d at(const HDiagramNode& n) { return n->position(); }

// An outside carbon at (-1.5, 0) bonded to the first of `n` atoms, which
// stand anywhere and are bonded as a chain.
std::vector<HDiagramNode> substituent(ChemicalDiagram& d, int n, HDiagramNode* outside = nullptr) {
    const HDiagramNode x = atom(d, Element::C, -1.5, 0.0);
    if (outside != nullptr) *outside = x;
    std::vector<HDiagramNode> nodes;
    for (int i = 0; i < n; ++i) {
        nodes.push_back(atom(d, Element::C, 0.3 * i, 0.7 * (i % 3)));
        if (i > 0) bond(d, nodes[static_cast<std::size_t>(i - 1)], nodes.back());
    }
    bond(d, x, nodes[0]);
    return nodes;
}

TEST(DiagramSymbolCatalogue, HoldsFortySevenGroupsByCodeAndName) {
    ChemicalDiagram d;  // registers the catalogue
    const std::vector<DiagramSymbolCatalogue::Entry>& entries = DiagramSymbolCatalogue::entries();
    ASSERT_EQ(47u, entries.size());
    std::set<int> codes;
    for (const DiagramSymbolCatalogue::Entry& e : entries) {
        codes.insert(e.code);
        SCOPED_TRACE(e.name);
        EXPECT_EQ(e.name, ChemicalDiagram::tarn_symbols_.at(e.code));
        HDiagramSymbolGroup g = ChemicalDiagram::symbol_factory_.create(e.name.c_str());
        ASSERT_NE(nullptr, g.unhand());
        EXPECT_EQ(e.code, g->tarn_symbol());
        EXPECT_EQ(e.name, g->symbol_name());
        EXPECT_EQ(static_cast<int>(e.points.size()), g->ntemplate_points());
        EXPECT_EQ(e.left_label, g->left_label());
        EXPECT_TRUE(g->expanded());
        EXPECT_EQ(0u, g->matches().nnode_matches());
        // A clone shares the immutable parts with its prototype.
        HDiagramSymbolGroup other = ChemicalDiagram::symbol_factory_.create(e.name.c_str());
        EXPECT_EQ(&g->symbol_name(), &other->symbol_name());
        EXPECT_EQ(&g->template_point(0), &other->template_point(0));
        // The anchor at the origin, but for Cp*, whose ring atom hangs half a bond up.
        EXPECT_EQ(e.code == 21 ? Point2d(0.0, 0.5) : Point2d(0.0, 0.0), g->template_point(0));
    }
    EXPECT_EQ(1, *codes.begin());
    EXPECT_EQ(48, *codes.rbegin());
    EXPECT_EQ(0u, codes.count(20));

    const HDiagramSymbolGroup ph = ChemicalDiagram::symbol_factory_.create("Phenyl");
    EXPECT_EQ("Ph", ph->centre_label());
    const HDiagramSymbolGroup cf3 = ChemicalDiagram::symbol_factory_.create("Trifluoromethyl");
    EXPECT_EQ("CF<sub>3</sub>", cf3->left_label());
    EXPECT_EQ("F<sub>3</sub>C", cf3->right_label());
    EXPECT_EQ(DiagramSymbol::HydrogenAtSecondAtom,
              ChemicalDiagram::symbol_factory_.create("Pyridyl")->hydrogen_position());
    EXPECT_NEAR(h, ph->template_point(2).y(), 1e-15);
    // Rows whose labels or points are easy to get wrong.
    const DiagramSymbolCatalogue::Entry& ncs = *DiagramSymbolCatalogue::find(14);
    EXPECT_EQ("Thiocyanato", ncs.name);
    EXPECT_EQ("SCN", ncs.left_label);
    EXPECT_EQ("NCS", ncs.right_label);
    EXPECT_EQ("NCS", ncs.centre_label);
    EXPECT_EQ("Me<sub>4</sub>N", DiagramSymbolCatalogue::find("Tetramethylammonium")->centre_label);
    EXPECT_EQ("MeO", DiagramSymbolCatalogue::find(35)->centre_label);
    EXPECT_EQ("O[CO]Me", DiagramSymbolCatalogue::find(39)->left_label);
    EXPECT_EQ("[EtO]<sub>3</sub>P", DiagramSymbolCatalogue::find(45)->right_label);
    const std::vector<Point2d>& cpstar = DiagramSymbolCatalogue::find("Pentamethylcyclopentadienyl")->points;
    ASSERT_EQ(10u, cpstar.size());
    EXPECT_EQ(Point2d(1.26, -1.76), cpstar[9]);
    const std::vector<Point2d>& benzoyl = DiagramSymbolCatalogue::find(47)->points;
    EXPECT_EQ(Point2d(1.5, -3 * h), benzoyl[7]);
    EXPECT_EQ(Point2d(2.0, -2 * h), benzoyl[5]);
    EXPECT_EQ(19u, DiagramSymbolCatalogue::find("Tricyclohexylphosphine")->points.size());
    EXPECT_EQ(nullptr, ChemicalDiagram::symbol_factory_.create("Naphthyl").unhand());
    EXPECT_EQ(nullptr, DiagramSymbolCatalogue::find(20));
    EXPECT_EQ("Benzyl", DiagramSymbolCatalogue::find(48)->name);
}

TEST(DiagramSymbolGroup, EveryEntryFoldsAndUnfoldsByCodeAndByName) {
    for (const DiagramSymbolCatalogue::Entry& e : DiagramSymbolCatalogue::entries()) {
        for (int by_name = 0; by_name < 2; ++by_name) {
            SCOPED_TRACE(e.name + (by_name ? " by name" : " by code"));
            ChemicalDiagram d;
            HDiagramNode outside;
            const std::vector<HDiagramNode> nodes = substituent(d, static_cast<int>(e.points.size()), &outside);
            const Point2d anchor = at(nodes[0]);
            if (by_name)
                d.add_group_symbol(nodes, e.name);
            else
                d.add_group_symbol(nodes, e.code);
            ASSERT_EQ(1, d.n_symbol_groups());
            const HDiagramSymbolGroup g = *d.symbol_groups().begin();
            const testing::Snapshot expanded = snapshot(d);
            d.contract_symbol_groups();
            ASSERT_EQ(2, d.nnodes());
            ASSERT_EQ(1, d.nedges());
            const THandle<DiagramSymbol> symbol = g->symbol_node();
            EXPECT_TRUE(d.has_edge(outside, HDiagramNode(symbol)));
            EXPECT_EQ(e.left_label, symbol->left_label());
            EXPECT_EQ(e.right_label, symbol->right_label());
            EXPECT_EQ(e.centre_label, symbol->centre_label());
            EXPECT_EQ(e.hydrogen_position, symbol->hydrogen_position());
            EXPECT_EQ(nodes, symbol->nodes());
            EXPECT_EQ(anchor, symbol->position());
            EXPECT_EQ(std::set<HDiagramNode>({outside}), *g->current_attachment_nodes());
            d.expand_symbol_groups();
            EXPECT_TRUE(expanded == snapshot(d));
        }
    }
}

TEST(DiagramSymbolGroup, AtomsTakeTheTemplateShapeTurnedAwayFromTheBond) {
    // A phenyl on a bond of 1.5 along +x: a hexagon of side 2/3 of it,
    // the anchor where it was, the para atom in line with the bond.
    ChemicalDiagram d;
    HDiagramNode x;
    std::vector<HDiagramNode> ring = substituent(d, 6, &x);
    dynamic_cast<DiagramAtom&>(*ring[0]).set_position(Point2d(0.0, 0.0));
    d.add_group_symbol(ring, "Phenyl");
    const double side = 0.6667 * 1.5;
    EXPECT_EQ(Point2d(0.0, 0.0), at(ring[0]));
    EXPECT_NEAR(2 * side, at(ring[5]).x(), 1e-12);
    EXPECT_NEAR(0.0, at(ring[5]).y(), 1e-12);
    const int around[6] = {0, 1, 3, 5, 4, 2};
    for (int i = 0; i < 6; ++i)
        EXPECT_NEAR(1.00005, distance(at(ring[around[i]]), at(ring[around[(i + 1) % 6]])), 1e-12);

    // The bond arriving from below turns the group upwards, from above downwards.
    for (double below : {-1.0, 1.0}) {
        ChemicalDiagram e;
        const HDiagramNode y = atom(e, Element::C, 2.0, 3.0 + 1.2 * below);
        const HDiagramNode c = atom(e, Element::C, 2.0, 3.0), o = atom(e, Element::O, 9.0, 9.0);
        bond(e, y, c);
        bond(e, c, o);
        e.add_group_symbol({c, o}, "Aldehyde");
        EXPECT_NEAR(2.0, at(o).x(), 1e-12);
        EXPECT_NEAR(3.0 - 0.6667 * 1.2 * below, at(o).y(), 1e-12);
    }

    // No outside neighbour: the template scaled by 50, unturned.
    ChemicalDiagram free;
    std::vector<HDiagramNode> ion;
    for (int i = 0; i < 5; ++i) ion.push_back(atom(free, i == 0 ? Element::Cl : Element::O, 7.0 + i, 1.0));
    for (int i = 1; i < 5; ++i) bond(free, ion[0], ion[static_cast<std::size_t>(i)]);
    free.add_group_symbol(ion, 18);
    EXPECT_EQ(Point2d(7.0, 1.0), at(ion[0]));
    EXPECT_EQ(Point2d(7.0, 51.0), at(ion[1]));
    EXPECT_EQ(Point2d(57.0, 1.0), at(ion[2]));

    // Two neighbours opposite each other: the group stands at right angles to them.
    ChemicalDiagram bridge;
    const HDiagramNode l = atom(bridge, Element::C, -1.0, 0.0), r = atom(bridge, Element::C, 1.0, 0.0);
    const HDiagramNode n = atom(bridge, Element::N, 0.0, 0.0), o1 = atom(bridge, Element::O, 3, 3),
                       o2 = atom(bridge, Element::O, 4, 4);
    bond(bridge, l, n);
    bond(bridge, n, r);
    bond(bridge, n, o1);
    bond(bridge, n, o2);
    bridge.add_group_symbol({n, o1, o2}, "Nitro");
    // Neighbours balanced along the diagonal: the cross product vanishes
    // too, and the group keeps the template's direction.
    ChemicalDiagram diagonal;
    const HDiagramNode dl = atom(diagonal, Element::C, -1.0, -1.0), dr = atom(diagonal, Element::C, 1.0, 1.0);
    const HDiagramNode dn = atom(diagonal, Element::N, 0.0, 0.0), do1 = atom(diagonal, Element::O, 3, 3),
                       do2 = atom(diagonal, Element::O, 4, 4);
    bond(diagonal, dl, dn);
    bond(diagonal, dn, dr);
    bond(diagonal, dn, do1);
    bond(diagonal, dn, do2);
    diagonal.add_group_symbol({dn, do1, do2}, "Nitro");
    const double kd = 0.6667 * std::sqrt(2.0);
    EXPECT_NEAR(0.5 * kd, at(do1).x(), 1e-12);
    EXPECT_NEAR(-h * kd, at(do1).y(), 1e-12);

    // The mean bond out is 1; nitro's oxygens at (0.5, -h) and (0.5, h) end up below the line.
    const double k = 0.6667;
    EXPECT_EQ(Point2d(0.0, 0.0), at(n));
    EXPECT_NEAR(-h * k, at(o1).x(), 1e-12);
    EXPECT_NEAR(-0.5 * k, at(o1).y(), 1e-12);
    EXPECT_NEAR(h * k, at(o2).x(), 1e-12);
    EXPECT_NEAR(-0.5 * k, at(o2).y(), 1e-12);
}

TEST(DiagramSymbolGroup, SymbolHydrogens) {
    ChemicalDiagram d;
    const HDiagramNode c = atom(d, Element::C, 0, 0), x = atom(d, Element::C, -1.5, 0);
    const HDiagramNode o1 = atom(d, Element::O, 1, 1), o2 = atom(d, Element::O, 1, -1, 1);
    bond(d, x, c);
    bond(d, c, o1, DOUBLE_BOND);
    bond(d, c, o2);
    d.add_group_symbol({c, o1, o2}, "Carboxylic");
    const THandle<DiagramSymbol> acid = (*d.symbol_groups().begin())->symbol_node();
    EXPECT_EQ(1, acid->nterminal_hydrogens());
    EXPECT_EQ(DiagramSymbol::HydrogenAtSecondAtom, acid->hydrogen_position());

    // A dimethylamino with an NH shows it; a nitro never does.
    ChemicalDiagram e;
    const HDiagramNode n = atom(e, Element::N, 0, 0, 1), y = atom(e, Element::C, -1.5, 0);
    const HDiagramNode m1 = atom(e, Element::C, 1, 1, 3), m2 = atom(e, Element::C, 1, -1, 3);
    bond(e, y, n);
    bond(e, n, m1);
    bond(e, n, m2);
    e.add_group_symbol({n, m1, m2}, 23);
    EXPECT_EQ(1, (*e.symbol_groups().begin())->symbol_node()->nterminal_hydrogens());
    ChemicalDiagram f;
    const HDiagramNode fn = atom(f, Element::N, 0, 0, 1), fy = atom(f, Element::C, -1.5, 0);
    const HDiagramNode f1 = atom(f, Element::O, 1, 1), f2 = atom(f, Element::O, 1, -1);
    bond(f, fy, fn);
    bond(f, fn, f1);
    bond(f, fn, f2);
    f.add_group_symbol({fn, f1, f2}, "Nitro");
    EXPECT_EQ(0, (*f.symbol_groups().begin())->symbol_node()->nterminal_hydrogens());
}

TEST(DiagramSymbolGroup, TakesOverThePiGroupsOfItsRing) {
    // Cp pi-bonded to a metal: folding the ring takes its circle and pi
    // group along, and expanding all pi groups cannot unfold it.
    ChemicalDiagram d;
    const HDiagramNode fe = atom(d, Element::Fe, 0, 0);
    std::vector<HDiagramNode> ring;
    for (int i = 0; i < 5; ++i) ring.push_back(atom(d, Element::C, std::cos(i * 1.2566), 2 + std::sin(i * 1.2566), 1));
    for (int i = 0; i < 5; ++i) {
        bond(d, ring[static_cast<std::size_t>(i)], ring[static_cast<std::size_t>((i + 1) % 5)], AROMATIC_BOND);
        bond(d, fe, ring[static_cast<std::size_t>(i)], PI_BOND);
    }
    d.derive_aromatic_rings();
    ASSERT_EQ(1u, d.pi_groups().size());
    const HDiagramPiGroup pi = *d.pi_groups().begin();
    const testing::Snapshot original = snapshot(d);
    d.contract_pi_groups();
    const testing::Snapshot pi_folded = snapshot(d);
    // Template order of Cp: anchor, its two neighbours, then the far pair.
    d.add_group_symbol({ring[0], ring[1], ring[4], ring[2], ring[3]}, "Cyclopentadienyl");
    const HDiagramSymbolGroup cp = *d.symbol_groups().begin();
    EXPECT_EQ(std::set<HDiagramPiGroup>({pi}), cp->pi_groups());

    d.contract_symbol_groups();
    EXPECT_TRUE(d.pi_groups().empty());
    EXPECT_EQ(2, d.nnodes());
    EXPECT_EQ(PI_BOND, d.edge(fe, HDiagramNode(cp->symbol_node()))->type());
    d.expand_pi_groups();
    EXPECT_EQ(2, d.nnodes());

    d.expand_symbol_groups();
    EXPECT_EQ(std::set<HDiagramPiGroup>({pi}), d.pi_groups());
    EXPECT_FALSE(pi->expanded());
    EXPECT_TRUE(pi_folded == snapshot(d));
    d.expand_pi_groups();
    EXPECT_TRUE(original == snapshot(d));
}

TEST(DiagramSymbolGroup, RefusalsLeaveTheDiagramAsItWas) {
    ChemicalDiagram d;
    HDiagramNode x;
    const std::vector<HDiagramNode> nodes = substituent(d, 4, &x);
    const testing::Snapshot before = snapshot(d);
    const Point2d where = at(nodes[1]);

    EXPECT_EQ("Phenyl  DiagramSymbolGroup::set_atoms, wrong number of atoms supplied",
              error_text<std::runtime_error>([&] { d.add_group_symbol(nodes, "Phenyl"); }));
    EXPECT_EQ("ChemicalDiagram::add_group_symbol(nodes, type) type is an empty string",
              error_text<std::invalid_argument>([&] { d.add_group_symbol(nodes, std::string()); }));
    EXPECT_EQ(0u, ChemicalDiagram::tarn_symbols_.count(20));
    EXPECT_EQ("ChemicalDiagram::add_group_symbol(nodes, type) type is an empty string",
              error_text<std::invalid_argument>([&] { d.add_group_symbol(nodes, 20); }));
    EXPECT_EQ(1u, ChemicalDiagram::tarn_symbols_.count(20));
    EXPECT_EQ("", ChemicalDiagram::tarn_symbols_[20]);
    EXPECT_EQ("HandleCommon::null_handle_error attempt to dereference a null handle",
              error_text<std::logic_error>([&] { d.add_group_symbol(nodes, "Naphthyl"); }));
    // Nodes that are not atoms of this diagram, or an atom given twice.
    ChemicalDiagram other;
    const HDiagramNode stranger = atom(other, Element::C, 0, 0);
    EXPECT_EQ("Tertiarybutyl  DiagramSymbolGroup::set_atoms, node 2 is not an atom of the diagram",
              error_text<std::invalid_argument>(
                  [&] { d.add_group_symbol({nodes[0], nodes[1], stranger, nodes[3]}, "Tertiarybutyl"); }));
    EXPECT_EQ("Tertiarybutyl  DiagramSymbolGroup::set_atoms, node 3 is given twice",
              error_text<std::invalid_argument>(
                  [&] { d.add_group_symbol({nodes[0], nodes[1], nodes[2], nodes[1]}, "Tertiarybutyl"); }));
    EXPECT_EQ(0, d.n_symbol_groups());
    EXPECT_TRUE(before == snapshot(d));
    EXPECT_EQ(where, at(nodes[1]));

    // A first node outside the diagram leaves the group empty.
    d.add_group_symbol({stranger, nodes[1]}, "Ethyl");
    ASSERT_EQ(1, d.n_symbol_groups());
    EXPECT_EQ(0u, (*d.symbol_groups().begin())->matches().nnode_matches());

    // Overlapping symbols are refused before any atom moves.
    d.add_group_symbol({nodes[2], nodes[3]}, "Ethyl");
    const Point2d moved = at(nodes[1]);
    EXPECT_EQ("ChemicalDiagram::add_group_symbol(nodes, type) a node is already in another symbol group",
              error_text<std::invalid_argument>([&] { d.add_group_symbol({nodes[1], nodes[2]}, "Ethyl"); }));
    EXPECT_EQ(2, d.n_symbol_groups());
    EXPECT_EQ(moved, at(nodes[1]));
}

TEST(DiagramSymbolGroup, ChelatingGroupSurvivesARoundTrip) {
    // Both oxygens of an acetate bonded to one metal: one bond moves to the
    // symbol, the other waits out the contraction.
    ChemicalDiagram d;
    const HDiagramNode m = atom(d, Element::Cu, 0, 0);
    const HDiagramNode c = atom(d, Element::C, 1, 0), o1 = atom(d, Element::O, 0.5, 0.8),
                       o2 = atom(d, Element::O, 0.5, -0.8);
    bond(d, c, o1);
    bond(d, c, o2);
    bond(d, m, o1);
    bond(d, m, o2);
    const testing::Snapshot before = snapshot(d);
    d.add_group_symbol({c, o1, o2}, "Carboxylic");
    d.contract_symbol_groups();
    EXPECT_EQ(2, d.nnodes());
    EXPECT_EQ(1, d.nedges());
    d.expand_symbol_groups();
    EXPECT_TRUE(before == snapshot(d));
}

}  // namespace
}  // namespace molcryst
