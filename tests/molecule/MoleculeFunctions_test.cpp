// Hydrogen counting on molecules drawn with their charges (the table of
// valences and its exceptions for charged groups, metal ligands, aromatic
// rings and boron cages); hydrogen placement checked against bond lengths,
// valence angles and torsions, on groups of real molecules and on degenerate
// geometry; the ring ordering; the molecule builders; and the bad input.
#include "molcryst/molecule/MoleculeFunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "TestMolecules.h"
#include "common/ErrorText.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/geometry/Transformation.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

const double tetrahedral = std::acos(-1.0 / 3.0) * 180.0 / std::acos(-1.0);

HMolecule3d stripped(HMolecule3d m) {
    m->remove_hydrogens();
    return m;
}

HMolecule3d charged(HMolecule3d m, const std::string& label, int charge) {
    atom_labelled(*m, label)->set_formal_charge(charge);
    return m;
}

void add_bond(Molecule& m, const std::string& a, const std::string& b, BondType type) {
    m.add(HBond(new Bond3d(type)), atom_index(m, a), atom_index(m, b));
}

// "label count, ..." over the atoms other than hydrogen, in index order.
std::string counts(const HMolecule3d& m) {
    std::string out;
    for (int i = 0; i < m->natoms(); ++i) {
        if (m->atom(i)->element().atomic_number() == 1) continue;
        out += (out.empty() ? "" : ", ") + m->atom(i)->label() + " " + std::to_string(calculate_hydrogens(m, i));
    }
    return out;
}

Point at(const HAtom& a) { return a->site()->orth(); }
Point at(const Molecule& m, const std::string& label) { return at(atom_labelled(m, label)); }
double degrees(const Point& a, const Point& b, const Point& c) { return angle(a, b, c).degrees(); }

// Adds `n` hydrogens without sites to the atom labelled `label`, places
// them, and returns them in the order they were added.
std::vector<HAtom> place(const HMolecule3d& m, const std::string& label, int n, const Cell& cell = Cell()) {
    const int first = m->natoms();
    add_hydrogens(m, atom_index(*m, label), n);
    generate_hydrogen_sites(cell, m, atom_index(*m, label));
    std::vector<HAtom> added;
    for (int k = first; k < m->natoms(); ++k) added.push_back(m->atom(k));
    return added;
}

bool finite(const Point& p) { return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]); }

}  // namespace

TEST(MoleculeFunctions, HydrogenCountsOfChargedGroupsLigandsAndRings) {
    // Lone-atom valences, halves rounded down, and the noble gases and metals.
    const HMolecule3d lone =
        molecule("C C1; Si Si1; N N1; P P1; As As1; O O1; S S1; Se Se1; Cl Cl1; I I1; Xe Xe1; Na Na1; Fe Fe1; H H1");
    // C1 has five bonds, N1 five and Cl1 two.
    HMolecule3d overvalent = molecule("C C1; C C2; C C3; C C4; C C5; C C6; N N1; Cl Cl1",
                                      "C1-C2 C1-C3 C1-C4 C1-C5 C1-C6 N1-C2 N1-C3 N1-C4 N1-C5 Cl1-C6 Cl1-N1");
    HMolecule3d aminoaryl = molecule("Cu Cu1; N N1; C C1; C C2", "Cu1-N1 N1-C1 C1:C2");
    HMolecule3d pyridine_ligand = stripped(benzene(true, true));
    pyridine_ligand->add(atom_without_site("Cu", "Cu1"));
    add_bond(*pyridine_ligand, "Cu1", "N1", SINGLE_BOND);
    HMolecule3d ferrocenyl = molecule("Fe Fe1; C C1; C C2; C C3; C C4; C C5", "C1:C2 C2:C3 C3:C4 C4:C5 C5:C1");
    for (const char* c : {"C1", "C2", "C3", "C4", "C5"}) add_bond(*ferrocenyl, "Fe1", c, PI_BOND);
    HMolecule3d carboxylate = molecule("C C1; C C2; O O1; O O2", "C1-C2");
    add_bond(*carboxylate, "C2", "O1", DELOCALISED_BOND);
    add_bond(*carboxylate, "C2", "O2", DELOCALISED_BOND);
    const char* const nhc = "Ir Ir1; C C1; N N1; C C2; C C3; N N2; C C4; C C5";
    const char* const nhc_ring = "C1:N1 N1:C2 C2:C3 C3:N2 N2:C1 N1-C4 N2-C5";

    struct Case {
        const char* what;
        HMolecule3d m;
        const char* expected;
    } cases[] = {
        {"lone atoms", lone, "C1 4, Si1 4, N1 3, P1 3, As1 3, O1 2, S1 2, Se1 2, Cl1 1, I1 1, Xe1 0, Na1 0, Fe1 0"},
        {"over-valent atoms get none", overvalent, "C1 0, C2 2, C3 2, C4 2, C5 2, C6 2, N1 0, Cl1 0"},
        {"amide", stripped(acetamide()), "C2 0, C1 3, O1 0, N1 2"},
        {"carboxylic acid", stripped(acetic_acid()), "C2 0, C1 3, O1 0, O2 1"},
        {"carboxylate", charged(stripped(acetate()), "O2", -1), "C2 0, C1 3, O1 0, O2 0"},
        {"delocalised carboxylate", carboxylate, "C1 3, C2 0, O1 0, O2 0"},
        {"nitro", charged(charged(stripped(nitromethane()), "N1", 1), "O2", -1), "C1 3, N1 0, O1 0, O2 0"},
        {"ammonium", charged(stripped(ammonium()), "N1", 1), "N1 4"},
        {"iminium", charged(stripped(guanidinium()), "N1", 1), "C1 0, N1 2, N2 2, N3 2"},
        {"sulphonate", charged(stripped(methanesulphonate()), "O3", -1), "S1 0, C1 3, O1 0, O2 0, O3 0"},
        {"aromatic ring", stripped(benzene()), "C1 1, C2 1, C3 1, C4 1, C5 1, C6 1"},
        // Ammine, nitrile, thiolate, nitrido and imido on one iron.
        {"iron complex", stripped(iron_complex()), "Fe1 0, N1 3, Cl1 0, N2 0, C1 0, C2 3, S1 0, N3 0, N4 1, C3 3"},
        // An amine with saturated surroundings donates a lone pair; one on an
        // aromatic carbon, or on two metals, keeps its metal bonds.
        {"alkylamine ligand", molecule("Cu Cu1; N N1; C C1; C C2", "Cu1-N1 N1-C1 C1-C2"), "Cu1 0, N1 2, C1 2, C2 3"},
        {"arylamine ligand", aminoaryl, "Cu1 0, N1 1, C1 1, C2 2"},
        {"bridging amide", molecule("Cu Cu1; Cu Cu2; N N1", "Cu1-N1 Cu2-N1"), "Cu1 0, Cu2 0, N1 1"},
        {"phosphine ligand", molecule("Pt Pt1; P P1; C C1", "Pt1-P1 P1-C1"), "Pt1 0, P1 2, C1 3"},
        {"pyridine ligand", pyridine_ligand, "N1 0, C2 1, C3 1, C4 1, C5 1, C6 1, Cu1 0"},
        // Water (one single bond to a metal), oxo and methoxide.
        {"oxygen ligands", molecule("Cu Cu1; O O1; O O2; O O3; C C1", "Cu1-O1 Cu1=O2 Cu1-O3 O3-C1"),
         "Cu1 0, O1 2, O2 0, O3 0, C1 3"},
        {"cyclopentadienyl on iron", ferrocenyl, "Fe1 0, C1 1, C2 1, C3 1, C4 1, C5 1"},
        {"carbene on iridium", molecule(nhc, std::string("Ir1-C1 ") + nhc_ring),
         "Ir1 0, C1 0, N1 0, C2 1, C3 1, N2 0, C4 3, C5 3"},
        // Without its metal the carbene carbon reads as that of an
        // imidazolium; a radical is not in the table: a nitroxide oxygen
        // reads as that of a hydroxylamine.
        {"free carbene", molecule(nhc, nhc_ring), "Ir1 0, C1 1, N1 0, C2 1, C3 1, N2 0, C4 3, C5 3"},
        {"nitroxide", molecule("N N1; O O1; C C1; C C2", "N1-O1 N1-C1 N1-C2"), "N1 0, O1 1, C1 3, C2 3"},
        // A boron whose heavy neighbours close rings of borons and carbons has
        // one hydrogen whatever its bonds.
        {"boron cluster", molecule("B B1; B B2; B B3; B B4", "B1-B2 B1-B3 B1-B4 B2-B3 B2-B4 B3-B4"),
         "B1 1, B2 1, B3 1, B4 1"},
        {"boronic acid", molecule("B B1; C C1; O O1; O O2", "B1-C1 B1-O1 B1-O2"), "B1 0, C1 3, O1 1, O2 1"},
        {"lone boron", molecule("B B1"), "B1 1"},
    };
    for (const Case& c : cases) EXPECT_EQ(counts(c.m), c.expected) << c.what;

    // A half is rounded down: 2.5 gives 2, 1.5 gives 1.
    EXPECT_EQ(bondsum_calculation(aminoaryl, 3, 4), 2);
    EXPECT_EQ(bondsum_calculation(aminoaryl, 3, 3), 1);
    // A lone hydrogen would get a partner; only the whole-molecule form
    // keeps a proton as it is.
    EXPECT_EQ(calculate_hydrogens(lone, atom_index(*lone, "H1")), 1);

    // Neighbours come in handle order, so the rules that read the first
    // neighbour are checked against whichever comes first. In a carbaborane
    // a boron whose first heavy neighbour is the carbon falls back to its
    // bond sum (3 - 3); a hydroxide on a metal by a polymeric bond is read
    // as water when its hydrogen comes first.
    HMolecule3d carbaborane = molecule("C C1; B B2; B B3; B B4", "B2-B3 B2-B4 B3-B4 C1-B2 C1-B3 C1-B4");
    for (int i = 1; i < 4; ++i) {
        const bool carbon_first =
            carbaborane->atom(carbaborane->atom_connections_nonhydrogen(i)->front())->element() == Element(Element::C);
        EXPECT_EQ(calculate_hydrogens(carbaborane, i), carbon_first ? 0 : 1) << i;
    }
    HMolecule3d hydroxide = molecule("O O1; H H1; Cu Cu1", "O1-H1");
    add_bond(*hydroxide, "O1", "Cu1", POLYMERIC_BOND);
    const bool hydrogen_first = hydroxide->atom_connections(0)->front() == 1;
    EXPECT_EQ(calculate_hydrogens(hydroxide, 0), hydrogen_first ? 1 : 0);
}

TEST(MoleculeFunctions, CountingRefusesUnknownElementsAndBondTypes) {
    const HMolecule3d unknown_element = molecule("X X1; C C1", "X1~C1");
    EXPECT_EQ(error_text<std::runtime_error>([&] { calculate_hydrogens(unknown_element, 0); }),
              "Calculate hydrogens::Unknown element found");
    const HMolecule3d unknown_bond = molecule("Na Na1; C C1", "Na1~C1");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(error_text<std::runtime_error>([&] { calculate_hydrogens(unknown_bond, i); }),
                  "Calculate hydrogens::Unknown bond type found");
    EXPECT_EQ(error_text<std::runtime_error>([&] { bondsum_calculation(unknown_bond, 1, 4); }),
              "Calculate bondsum::Unknown bond type found");
    // The reserved type passes the first check and fails in the bond sum.
    HMolecule3d reserved = molecule("C C1; C C2");
    add_bond(*reserved, "C1", "C2", RESERVED_BOND);
    EXPECT_EQ(error_text<std::runtime_error>([&] { calculate_hydrogens(reserved, 0); }),
              "Calculate_bondsum: unable to identify bond type");
    // A null molecule or an index outside it throws rather than crashing.
    EXPECT_ANY_THROW(calculate_hydrogens(HMolecule(), 0));
    EXPECT_THROW(calculate_hydrogens(reserved, 2), std::out_of_range);
    EXPECT_THROW(generate_hydrogen_sites(Cell(), reserved, -1), std::out_of_range);
}

TEST(MoleculeFunctions, GenerateHydrogensReplacesEveryHydrogen) {
    HMolecule3d m = acetamide();
    atom_labelled(*m, "N1")->set_formal_charge(1);
    generate_hydrogens(m);
    EXPECT_EQ(labels_of(*m), (std::vector<std::string>{"C2", "C1", "O1", "N1", "H", "H", "H", "H", "H", "H"}));
    EXPECT_EQ(nhydrogens(m), 6);
    for (int i = 4; i < m->natoms(); ++i)
        EXPECT_TRUE(!m->atom(i)->has_site() && m->atom(i)->bonds().front()->type() == SINGLE_BOND);
    EXPECT_EQ(bonds_of(*m), "C2-C1 C2-O1 C2-N1 C1-H C1-H C1-H N1-H N1-H N1-H");
    // A proton stays a proton; counts of 0 or less add nothing.
    HMolecule3d proton = molecule("H H1 0 0 0");
    generate_hydrogens(proton);
    EXPECT_EQ(proton->natoms(), 1);
    add_hydrogens(m, 0, 0);
    add_hydrogens(m, 0, -2);
    EXPECT_EQ(m->natoms(), 10);
}

TEST(MoleculeFunctions, AddHydrogensWithSitesTagsAboveEveryTagOfTheMaker) {
    HMolecule3d m = stripped(acetamide());
    for (int i = 0; i < m->natoms(); ++i) m->atom(i)->set_symmtag(i);
    HMolecule3d other = molecule("O O9 5 5 5");
    other->atom(0)->set_symmtag(7);
    HMolecule3d unsited = molecule("N N1");
    const Cell cell(10.0, 11.0, 12.0, Angle::from_degrees(90.0), Angle::from_degrees(100.0), Angle::from_degrees(90.0));
    HCrystalMaker maker(new CrystalMaker(cell, Hvector_HMolecule(new vector_HMolecule{other}), Hvector_HMolecule(),
                                         Hvector_HMolecule(new vector_HMolecule{m, unsited})));
    add_hydrogens_with_sites(maker, m, atom_index(*m, "C1"), 3);
    // A site-less hydrogen already there is placed and tagged with the new ones.
    add_hydrogens(m, atom_index(*m, "N1"), 1);
    add_hydrogens_with_sites(maker, m, atom_index(*m, "N1"), 1);
    // Tags go in neighbour order, which is the order of handles.
    std::set<int> methyl_tags, amine_tags;
    for (int i = 4; i < m->natoms(); ++i) {
        (i < 7 ? methyl_tags : amine_tags).insert(m->atom(i)->symmtag());
        ASSERT_TRUE(m->atom(i)->has_site());
        const Site& s = *m->atom(i)->site();
        EXPECT_LT(distance(s.frac(), cell.fractional(s.orth())), 1e-12);
        EXPECT_EQ(s.occupancy().value(), 1.0);
    }
    EXPECT_EQ(methyl_tags, (std::set<int>{8, 9, 10}));
    EXPECT_EQ(amine_tags, (std::set<int>{11, 12}));
    // Without a site on the parent the hydrogens stay without site or tag.
    add_hydrogens_with_sites(maker, unsited, 0, 3);
    ASSERT_EQ(unsited->natoms(), 4);
    EXPECT_FALSE(unsited->atom(3)->has_site());
    EXPECT_EQ(unsited->atom(3)->symmtag(), -1);
}

TEST(MoleculeFunctions, PlacedHydrogensOfCommonGroups) {
    // Methyl: tetrahedral, staggered at 60, 180 and 300 degrees against the
    // anchor's other neighbour of lowest index (O1), so a deposited methyl
    // eclipsing it lies 60 degrees away.
    HMolecule3d amide = stripped(acetamide());
    const std::vector<HAtom> methyl = place(amide, "C1", 3);
    const HAtom reference = atom_labelled(*amide, "O1");
    for (const HAtom& h : methyl) {
        EXPECT_NEAR(distance(at(h), at(*amide, "C1")), 1.083, 1e-9);
        EXPECT_NEAR(degrees(at(*amide, "C2"), at(*amide, "C1"), at(h)), tetrahedral, 1e-6);
        const double t = torsion_angle(at(reference), at(*amide, "C2"), at(*amide, "C1"), at(h)).degrees();
        EXPECT_NEAR(std::fmod(t + 360.0, 120.0), 60.0, 1e-6);
    }
    EXPECT_NEAR(degrees(at(methyl[0]), at(*amide, "C1"), at(methyl[1])), tetrahedral, 1e-6);

    // Amide NH2: planar, 120 degrees, where the deposited hydrogens are.
    const HMolecule3d deposited = acetamide();
    const std::vector<HAtom> nh2 = place(amide, "N1", 2);
    for (const char* h : {"H1", "H2"})
        EXPECT_LT(std::min(distance(at(nh2[0]), at(*deposited, h)), distance(at(nh2[1]), at(*deposited, h))), 0.03);
    EXPECT_NEAR(degrees(at(nh2[0]), at(*amide, "N1"), at(nh2[1])), 120.0, 1e-6);

    // Methylene between two anchors: H-C-H tetrahedral, one on each side of
    // the C-C-C plane, mirror images.
    HMolecule3d propane = molecule("C C1 0 0 0; C C2 1.53 0 0; C C3 -0.5731 1.4186 0", "C1-C2 C1-C3");
    const std::vector<HAtom> ch2 = place(propane, "C1", 2);
    EXPECT_NEAR(degrees(at(ch2[0]), at(*propane, "C1"), at(ch2[1])), tetrahedral, 1e-6);
    EXPECT_NEAR(at(ch2[0])[2], -at(ch2[1])[2], 1e-9);
    EXPECT_NEAR(degrees(at(*propane, "C2"), at(*propane, "C1"), at(ch2[0])),
                degrees(at(*propane, "C3"), at(*propane, "C1"), at(ch2[1])), 1e-6);

    // Methine, and an amine N-H: opposite the sum of the bonds, which for
    // tetrahedral neighbours is the fourth corner.
    HMolecule3d amine = stripped(vinylamine(false));
    const HAtom nh = place(amine, "N1", 1)[0];
    for (const char* anchor : {"C1", "C2", "C3"})
        EXPECT_NEAR(degrees(at(*amine, anchor), at(*amine, "N1"), at(nh)), tetrahedral, 1e-3) << anchor;

    // Aromatic CH: in the plane on the bisector, where the deposited ones are.
    HMolecule3d ring = stripped(benzene());
    const HMolecule3d ring_deposited = benzene();
    for (int i = 1; i <= 6; ++i) {
        const HAtom h = place(ring, "C" + std::to_string(i), 1)[0];
        EXPECT_LT(distance(at(h), at(*ring_deposited, "H" + std::to_string(i))), 0.01);
    }

    // Hydroxyl: 120 degrees from its one anchor, wherever acceptors are;
    // a terminal alkyne: straight on.
    HMolecule3d methanol = molecule("C C1 0 0 0; O O1 0.8 1.0 0.6", "C1-O1");
    HMolecule3d with_acceptor = molecule("C C1 0 0 0; O O1 0.8 1.0 0.6; O O2 2.9 1.6 1.2", "C1-O1");
    const HAtom oh = place(methanol, "O1", 1)[0];
    EXPECT_NEAR(degrees(at(*methanol, "C1"), at(*methanol, "O1"), at(oh)), 120.0, 1e-6);
    EXPECT_NEAR(distance(at(oh), at(*methanol, "O1")), 0.983, 1e-9);
    EXPECT_LT(distance(at(place(with_acceptor, "O1", 1)[0]), at(oh)), 1e-12);
    HMolecule3d alkyne = molecule("C C1 0 0 0; C C2 1.2 0 0; C C3 2.66 0 0", "C1#C2 C2-C3");
    EXPECT_LT(distance(at(place(alkyne, "C1", 1)[0]), Point(-1.083, 0, 0)), 1e-9);

    // Lone atoms: a tetrahedron with its first corner on x, a pyramid, a
    // water with its first hydrogen on y, and 1.4 A beyond the first row.
    const struct {
        const char* symbol;
        double length;
        Vector<double, 3> first;
    } lone_atoms[] = {
        {"C", 1.083, {1, 0, 0}}, {"N", 1.009, {0, 0, 0}}, {"O", 0.983, {0, 1, 0}}, {"Cl", 1.4, {1, 0, 0}}};
    for (const auto& c : lone_atoms) {
        HMolecule3d lone = molecule(std::string(c.symbol) + " A1 1 2 3");
        generate_hydrogens(lone);
        generate_hydrogen_sites(Cell(), lone);
        const Point p = at(*lone, "A1");
        bool on_axis = c.first.length() == 0.0;
        for (int i = 1; i < lone->natoms(); ++i) {
            EXPECT_NEAR(distance(at(lone->atom(i)), p), c.length, 1e-9) << c.symbol;
            on_axis = on_axis || distance(at(lone->atom(i)), p + c.first * c.length) < 1e-9;
            for (int j = 1; j < i; ++j)
                EXPECT_NEAR(degrees(at(lone->atom(i)), p, at(lone->atom(j))), tetrahedral, 1e-6) << c.symbol;
        }
        EXPECT_TRUE(on_axis) << c.symbol;
    }
}

TEST(MoleculeFunctions, PlacementOnDegenerateGeometryAndBadInput) {
    struct Case {
        const char* what;
        HMolecule3d m;
        int nh;
    } cases[] = {
        // The anchor's neighbour on the line of the bond: no plane for the torsion.
        {"methyl on a nitrile", stripped(acetonitrile()), 3},
        {"methylene between opposite anchors", molecule("C C1 0 0 0; C C2 1.5 0 0; C C3 -1.5 0 0", "C1-C2 C1-C3"), 2},
        {"methine between opposite anchors", molecule("C C1 0 0 0; C C2 1.5 0 0; C C3 -1.5 0 0", "C1-C2 C1-C3"), 1},
        {"anchor on the parent", molecule("C C1 1 1 1; C C2 1 1 1; C C3 2.5 1 1", "C1-C2 C1-C3"), 2},
        {"hydroxyl on an anchor on the parent", molecule("O O1 1 1 1; C C2 1 1 1", "O1-C2"), 1},
        {"methyl on an anchor on the parent", molecule("C C1 1 1 1; C C2 1 1 1", "C1-C2"), 3},
        {"four hydrogens on one anchor", molecule("Si C1 0 0 0; C C2 1.9 0 0", "C1-C2"), 4},
    };
    for (const Case& c : cases) {
        const std::vector<HAtom> hs = place(c.m, c.m->atom(0)->label(), c.nh);
        const Point p = at(c.m->atom(0));
        for (std::size_t i = 0; i < hs.size(); ++i) {
            ASSERT_TRUE(finite(at(hs[i]))) << c.what;
            EXPECT_GT(distance(at(hs[i]), p), 0.9) << c.what;
            for (std::size_t j = 0; j < i; ++j) EXPECT_GT(distance(at(hs[i]), at(hs[j])), 0.5) << c.what;
        }
    }
    // Three anchors in a plane: one hydrogen on its normal; two on a cone
    // about it, at 1.1 times the tetrahedral angle from the anchors' side.
    HMolecule3d planar = stripped(vinylamine(true));
    EXPECT_NEAR(std::fabs(at(place(planar, "N1", 1)[0])[2]), 1.009, 1e-9);
    HMolecule3d planar2 = stripped(vinylamine(true));
    const std::vector<HAtom> cone = place(planar2, "N1", 2);
    EXPECT_NEAR(at(cone[0])[2], at(cone[1])[2], 1e-9);
    EXPECT_NEAR(std::fabs(at(cone[0])[2]), -1.009 * std::cos(1.1 * tetrahedral * std::acos(-1.0) / 180.0), 1e-9);
    // Methine between opposite anchors: across the line of the bonds.
    HMolecule3d straight = molecule("C C1 0 0 0; C C2 1.5 0 0; C C3 -1.5 0 0", "C1-C2 C1-C3");
    EXPECT_NEAR(degrees(at(*straight, "C2"), Point(0, 0, 0), at(place(straight, "C1", 1)[0])), 90.0, 1e-6);

    // A parent needs a site.
    HMolecule3d m = molecule("C C1; O O1 0 0 0", "C1-O1");
    add_hydrogens(m, 0, 1);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { generate_hydrogen_sites(Cell(), m, 0); }),
              "Cannot calculate coordinates for hydrogens bonded to atom C1 (0) because it does not have position "
              "information. (generate_hydrogen_sites)");
    // The whole-molecule form passes over atoms without sites; a hydrogen
    // parent is skipped even with a site-less neighbour.
    generate_hydrogen_sites(Cell(), m);
    EXPECT_FALSE(m->atom(2)->has_site());
    HMolecule3d hh = molecule("H H1 0 0 0; H H2", "H1-H2");
    generate_hydrogen_sites(Cell(), hh, 0);
    EXPECT_FALSE(hh->atom(1)->has_site());
}

TEST(MoleculeFunctions, ConnectedRingFollowsTheBonds) {
    HMolecule3d ring = stripped(benzene());
    THandle<OrderedGraph<HAtom, HBond> > graph(new OrderedGraph<HAtom, HBond>());
    std::set<HAtom> atoms;
    for (int i = 0; i < 6; ++i) atoms.insert(ring->atom(i));
    for (int i = 0; i < 6; ++i) graph->add_node(ring->atom(i));
    for (int i = 0; i < 6; ++i) graph->add_edge(HBond(new Bond3d(SINGLE_BOND)), ring->atom(i), ring->atom((i + 1) % 6));
    const THandle<std::vector<HAtom> > order = connected_ring(ring->atom(2), atoms, graph);
    ASSERT_EQ(order->size(), 6u);
    EXPECT_EQ(order->front(), ring->atom(2));
    for (std::size_t k = 0; k < 6; ++k) EXPECT_TRUE(graph->has_edge((*order)[k], (*order)[(k + 1) % 6]));

    // A ring left open is no ring.
    graph->remove_edge(ring->atom(5), ring->atom(0));
    EXPECT_EQ(error_text<std::runtime_error>([&] { connected_ring(ring->atom(0), atoms, graph); }),
              "StereoMolecule: could not find connected ring");
}

TEST(MoleculeFunctions, CreateMoleculesSplitsIntoConnectedParts) {
    std::vector<HAtom> atoms;
    for (const char* label : {"C1", "O1", "N1", "C2"}) atoms.push_back(atom_without_site(std::string(label, 1), label));
    const std::vector<THandle<BondData> > bonds = {THandle<BondData>(new BondData(0, 1, DOUBLE_BOND)),
                                                   THandle<BondData>(new BondData(2, 3, SINGLE_BOND))};
    std::vector<Point> points = {Point(1, 0, 0), Point(2.2, 0, 0), Point(5, 0, 0), Point(6.5, 0, 0)};
    const Cell cell(10.0, 10.0, 10.0, Angle::from_degrees(90.0), Angle::from_degrees(90.0), Angle::from_degrees(90.0));
    const THandle<Transformation> shift(new Transformation(1, 0, 0, 1.0, 0, 1, 0, 0, 0, 0, 1, 0));
    const Hvector_HMolecule molecules = create_molecules(cell, atoms, bonds, points, shift);
    ASSERT_EQ(molecules->size(), 2u);
    EXPECT_EQ(labels_of(*(*molecules)[0]), (std::vector<std::string>{"C1", "O1"}));
    EXPECT_EQ(labels_of(*(*molecules)[1]), (std::vector<std::string>{"N1", "C2"}));
    EXPECT_EQ((*molecules)[0]->bond(0)->type(), DOUBLE_BOND);
    EXPECT_LT(distance(atoms[1]->site()->orth(), Point(3.2, 0, 0)), 1e-12);
    EXPECT_LT(distance(atoms[1]->site()->frac(), Point(0.32, 0, 0)), 1e-12);

    // The occupancy survives; atoms without sites are passed over.
    std::vector<HAtom> half = {atom_without_site("C", "C9"), atoms[0]};
    half[1]->set_site(HSite(new Site(Point(2, 3, 4), Point(0, 0, 0), 0.5)));
    add_fractional(cell, half, THandle<Transformation>());
    EXPECT_FALSE(half[0]->has_site());
    EXPECT_EQ(half[1]->site()->occupancy().value(), 0.5);
    EXPECT_LT(distance(half[1]->site()->frac(), Point(0.2, 0.3, 0.4)), 1e-12);

    std::vector<Point> too_few(2);
    EXPECT_THROW(create_molecules(cell, atoms, bonds, too_few, THandle<Transformation>()), std::invalid_argument);
    const std::vector<THandle<BondData> > outside = {THandle<BondData>(new BondData(0, 4, SINGLE_BOND))};
    EXPECT_THROW(create_molecules(atoms, outside), std::out_of_range);
}
