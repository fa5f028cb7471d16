// Hydrogen-bond criterion: the donor and acceptor types of real functional
// groups, the switches, the geometric limits of the classification and of
// the pair test, hydrogen bonds of dimers found and ether pairs not, paths
// counted from the donor, print forms, archives and bad input.
#include "molcryst/contact/HBondCriterion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ContactRecord.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/contact/DistanceCriterion.h"
#include "molcryst/crystal/Crystal.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef HBondCriterion HB;

const double pi = std::acos(-1.0);

// Methyl and ring hydrogens, which no rule looks at, are left out of the
// molecules written here; bond lengths and angles are those of real structures.

HMolecule3d methanol() { return molecule("C C1 0 0 0; O O1 1.43 0 0; H H1 1.7533 0.9066 0", "C1-O1 O1-H1"); }

HMolecule3d phenol() {
    return molecule(
        "C C1 1.39 0 0; C C2 0.695 1.2038 0; C C3 -0.695 1.2038 0; C C4 -1.39 0 0; C C5 -0.695 -1.2038 0;"
        "C C6 0.695 -1.2038 0; O O1 2.75 0 0; H H1 3.0625 0.9077 0",
        "C1:C2 C2:C3 C3:C4 C4:C5 C5:C6 C6:C1 C1-O1 O1-H1");
}

HMolecule3d dimethyl_ether() { return molecule("C C1 0 0 0; O O1 1.41 0 0; C C2 1.9153 1.3163 0", "C1-O1 O1-C2"); }

HMolecule3d acetone() {
    return molecule("C C2 0 0 0; O O1 0 1.21 0; C C1 -1.30 -0.75 0; C C3 1.30 -0.75 0", "C2=O1 C2-C1 C2-C3");
}

// Amines on N1 at the origin, the substituents along tetrahedral directions.
HMolecule3d methylamine() {
    return molecule("N N1 0 0 0; C C1 1.47 0 0; H H1 -0.3367 0.9522 0; H H2 -0.3367 -0.4761 0.8247",
                    "N1-C1 N1-H1 N1-H2");
}

HMolecule3d dimethylamine() {
    return molecule("N N1 0 0 0; C C1 1.46 0 0; C C2 -0.4866 1.3765 0; H H1 -0.3367 -0.4761 0.8247",
                    "N1-C1 N1-C2 N1-H1");
}

HMolecule3d trimethylamine() {
    return molecule("N N1 0 0 0; C C1 1.46 0 0; C C2 -0.4866 1.3765 0; C C3 -0.4866 -0.6882 1.1921",
                    "N1-C1 N1-C2 N1-C3");
}

HMolecule3d with_charge(HMolecule3d m, const std::string& label, int charge) {
    atom_labelled(*m, label)->set_formal_charge(charge);
    return m;
}

HMolecule3d tetramethylammonium() {
    HMolecule3d m = trimethylamine();
    m->add(atom_at(Element::C, "C4", -0.4866, -0.6882, -1.1921));
    add_bonds(*m, "N1-C4");
    return with_charge(m, "N1", 1);
}

HMolecule3d methylammonium() {
    return with_charge(molecule("N N1 0 0 0; C C1 1.49 0 0; H H1 -0.3433 0.9711 0; H H2 -0.3433 -0.4855 0.8410;"
                                "H H3 -0.3433 -0.4855 -0.8410",
                                "N1-C1 N1-H1 N1-H2 N1-H3"),
                       "N1", 1);
}

HMolecule3d methanimine() { return molecule("C C1 0 0 0; N N1 1.27 0 0; H H1 1.6154 0.9491 0", "C1=N1 N1-H1"); }

HMolecule3d pyrrole() {
    return molecule(
        "N N1 1.1739 0 0; C C2 0.3628 1.1164 0; C C3 -0.9497 0.6900 0; C C4 -0.9497 -0.6900 0;"
        "C C5 0.3628 -1.1164 0; H H1 2.1839 0 0",
        "N1:C2 C2:C3 C3:C4 C4:C5 C5:N1 N1-H1");
}

HMolecule3d methanethiol() { return molecule("C C1 0 0 0; S S1 1.82 0 0; H H1 1.9717 1.3314 0", "C1-S1 S1-H1"); }

// CH3-NH-CH=CH2 planar at N1 (angles of 120 degrees).
HMolecule3d planar_enamine() {
    return molecule("N N1 0 0 0; C C1 0 1.46 0; C C3 1.2124 -0.70 0; C C4 1.3059 -2.0367 0; H H9 -0.8747 -0.5050 0",
                    "N1-C1 N1-C3 C3=C4 N1-H9");
}

HMolecule3d aqua_zinc() {
    return molecule("Zn Zn1 0 0 0; O O1 2.05 0 0; H H1 2.6143 0.7766 0; H H2 2.6143 -0.7766 0", "Zn1-O1 O1-H1 O1-H2");
}

HMolecule3d ion(const char* element, const std::string& label) {
    return with_charge(molecule(std::string(element) + " " + label + " 0 0 0"), label, -1);
}

// A copy of `m` whose atoms have no sites.
HMolecule3d without_sites(const Molecule& m) {
    HMolecule3d copy(new Molecule3d(m));
    for (int i = 0; i < copy->natoms(); ++i) copy->atom(i)->set_site(HSite());
    return copy;
}

std::string donor_name(const Molecule& m, const std::string& label) {
    return HB::default_donors()[HB::donor_atom_type(*atom_labelled(m, label))].name;
}

std::string acceptor_name(const Molecule& m, const std::string& label) {
    return HB::default_acceptors()[HB::acceptor_atom_type(*atom_labelled(m, label))].name;
}

struct GroupRow {
    const char* group;
    HMolecule3d m;
    const char* label;
    const char* donor;
    const char* acceptor;
    int bits;  // hbond_type with the default switches
};

std::vector<GroupRow> functional_groups() {
    return {
        {"alcohol", methanol(), "O1", "hydroxyl O", "hydroxyl O", 6},
        {"alcohol", methanol(), "H1", "not donor", "non acceptor", 1},
        {"phenol", phenol(), "O1", "hydroxyl O", "hydroxyl O", 6},
        {"water", water(), "O1", "water O", "water O", 6},
        {"water", water(), "H2", "not donor", "non acceptor", 1},
        {"ether", dimethyl_ether(), "O1", "not donor", "bridging O (ether, etc.)", 2},
        {"ketone", acetone(), "O1", "not donor", "other terminal O (C=O, S=O ...)", 2},
        {"carboxylic acid", acetic_acid(), "O1", "not donor", "other terminal O (C=O, S=O ...)", 2},
        {"carboxylic acid", acetic_acid(), "O2", "hydroxyl O", "hydroxyl O", 6},
        {"carboxylic acid", acetic_acid(), "H6", "not donor", "non acceptor", 1},
        {"carboxylic acid", acetic_acid(), "H3", "not donor", "non acceptor", 0},  // on carbon
        {"carboxylate", with_charge(acetate(), "O2", -1), "O1", "not donor", "carboxylate O", 2},
        {"carboxylate", with_charge(acetate(), "O2", -1), "O2", "not donor", "carboxylate O", 2},
        // Drawn without the charge, the single-bonded oxygen reads as a hydroxyl.
        {"carboxylate", acetate(), "O2", "hydroxyl O", "hydroxyl O", 6},
        {"amide", acetamide(), "N1", "amide or thioamide N", "non acceptor", 4},
        {"amide", acetamide(), "O1", "not donor", "other terminal O (C=O, S=O ...)", 2},
        {"thioamide", thioacetamide(), "N1", "amide or thioamide N", "non acceptor", 4},
        {"thioamide", thioacetamide(), "S1", "not donor", "terminal S", 2},
        {"primary amine", methylamine(), "N1", "pyramidal N", "3-coordinate N", 6},
        {"secondary amine", dimethylamine(), "N1", "pyramidal N", "3-coordinate N", 6},
        {"tertiary amine", trimethylamine(), "N1", "not donor", "3-coordinate N", 2},
        {"quaternary ammonium", tetramethylammonium(), "N1", "not donor", "non acceptor", 0},
        {"ammonium", ammonium(), "N1", "ammonium N (NH4+, RNH3+ etc.)", "non acceptor", 4},
        {"ammonium", methylammonium(), "N1", "ammonium N (NH4+, RNH3+ etc.)", "non acceptor", 4},
        {"enamine, pyramidal", vinylamine(false, true), "N1", "pyramidal N", "non acceptor", 4},
        {"enamine, planar", planar_enamine(), "N1", "planar N", "non acceptor", 4},
        {"tertiary enamine, planar", vinylamine(true), "N1", "not donor", "non acceptor", 0},
        {"tertiary enamine, pyramidal", vinylamine(false), "N1", "not donor", "3-coordinate N", 2},
        // Without sites the planarity goes untested.
        {"tertiary enamine, no sites", without_sites(*vinylamine(true)), "N1", "not donor", "3-coordinate N", 2},
        {"guanidinium", guanidinium(), "N1", "planar N", "non acceptor", 4},
        {"guanidinium", guanidinium(), "N2", "planar N", "non acceptor", 4},
        {"imine", methanimine(), "N1", "imine N", "other 2-coordinate N", 6},
        {"nitrile", acetonitrile(), "N1", "not donor", "terminal N (cyano, etc.)", 2},
        {"isocyanide", methyl_isocyanide(), "N1", "not donor", "non acceptor", 0},
        {"azide", methyl_azide(), "N1", "not donor", "other 2-coordinate N", 2},
        {"nitro", nitromethane(), "N1", "not donor", "non acceptor", 0},
        {"nitro", nitromethane(), "O1", "not donor", "other terminal O (C=O, S=O ...)", 2},
        {"nitro", with_charge(nitromethane(), "O2", -1), "O2", "not donor", "other terminal O (C=O, S=O ...)", 2},
        {"pyridine", benzene(true, true), "N1", "not donor", "aromatic (6-ring) N", 2},
        {"pyridine, Kekule", benzene(false, true), "N1", "not donor", "other 2-coordinate N", 2},
        // The donor rule asks for two aromatic bonds, whatever the ring size.
        {"pyrrole", pyrrole(), "N1", "aromatic (6-ring) N", "non acceptor", 4},
        {"thiol", methanethiol(), "S1", "non metal bound S", "unclassified S", 6},
        {"thioether", dimethyl_sulphide(), "S1", "not donor", "unclassified S", 2},
        {"sulphoxide", dimethyl_sulphoxide(), "O1", "not donor", "other terminal O (C=O, S=O ...)", 2},
        {"sulphone", dimethyl_sulphone(), "S1", "not donor", "non acceptor", 0},
        {"sulphonate", methanesulphonate(), "O1", "not donor", "other terminal O (C=O, S=O ...)", 2},
        {"sulphonate", with_charge(methanesulphonate(), "O3", -1), "O3", "not donor", "other terminal O (C=O, S=O ...)",
         2},
        {"fluoride", ion("F", "F1"), "F1", "not donor", "fluoride ion (F-)", 2},
        {"chloride", ion("Cl", "Cl1"), "Cl1", "not donor", "chloride ion (Cl-)", 2},
        {"bromide", ion("Br", "Br1"), "Br1", "not donor", "bromide ion (Br-)", 2},
        {"iodide", ion("I", "I1"), "I1", "not donor", "iodide ion (I-)", 2},
        {"fluoromethane", molecule("C C1 0 0 0; F F1 1.39 0 0", "C1-F1"), "F1", "not donor", "unclassified F", 0},
        {"chloromethane", molecule("C C1 0 0 0; Cl Cl1 1.78 0 0", "C1-Cl1"), "Cl1", "not donor", "unclassified Cl", 2},
        {"bromomethane", molecule("C C1 0 0 0; Br Br1 1.94 0 0", "C1-Br1"), "Br1", "not donor", "unclassified Br", 2},
        {"iodomethane", molecule("C C1 0 0 0; I I1 2.14 0 0", "C1-I1"), "I1", "not donor", "unclassified I", 2},
        {"aqua ligand", aqua_zinc(), "O1", "metal bound O", "metal bound O", 6},
        {"aqua ligand", aqua_zinc(), "H1", "not donor", "non acceptor", 1},
        {"ammine ligand", iron_complex(), "N1", "metal bound N", "non acceptor", 4},
        {"chloro ligand", iron_complex(), "Cl1", "not donor", "metal bound Cl", 2},
        {"nitrile ligand", iron_complex(), "N2", "not donor", "non acceptor", 0},
        {"thiolate ligand", iron_complex(), "S1", "metal bound S", "metal bound S", 6},
        {"nitrido ligand", iron_complex(), "N3", "not donor", "metal bound N", 2},
        {"imido ligand", iron_complex(), "N4", "metal bound N", "metal bound N", 6},
        {"imido ligand", iron_complex(), "H10", "not donor", "non acceptor", 1},
        // Lone atoms: N passes through every donor rule to "pyramidal"; O reads as water.
        {"lone N", molecule("N N1 0 0 0"), "N1", "pyramidal N", "non acceptor", 4},
        {"lone O", molecule("O O1 0 0 0"), "O1", "water O", "water O", 6},
        {"lone S", molecule("S S1 0 0 0"), "S1", "non metal bound S", "unclassified S", 6},
        {"unknown element", molecule("Unknown X1 0 0 0; H H1 1 0 0", "X1-H1"), "X1", "not donor", "non acceptor", 0},
        {"hydride", molecule("Unknown X1 0 0 0; H H1 1 0 0", "X1-H1"), "H1", "not donor", "non acceptor", 0},
        {"lone H", molecule("H H1 0 0 0"), "H1", "not donor", "non acceptor", 0},
        {"bridging H", molecule("O O1 0 0 0; H H1 1.2 0 0; O O2 2.4 0 0", "O1-H1 H1-O2"), "H1", "not donor",
         "non acceptor", 0},
        {"deuteroxyl", molecule("C C1 0 0 0; O O1 1.43 0 0; D D1 1.7533 0.9066 0", "C1-O1 O1-D1"), "D1", "not donor",
         "non acceptor", 1},
    };
}

}  // namespace

TEST(HBondCriterion, FunctionalGroupsAreClassifiedFromTheirBonds) {
    const HB c(3.5, 0.0, Angle::from_degrees(120), false, false, INTRA_AND_INTERMOLECULAR, 0, 999);
    for (const GroupRow& row : functional_groups()) {
        SCOPED_TRACE(std::string(row.group) + " " + row.label);
        EXPECT_EQ(donor_name(*row.m, row.label), row.donor);
        EXPECT_EQ(acceptor_name(*row.m, row.label), row.acceptor);
        const Atom& a = *atom_labelled(*row.m, row.label);
        EXPECT_EQ(c.hbond_type(a), row.bits);
        EXPECT_EQ(c.is_acceptor(a), (row.bits & 2) != 0);
        EXPECT_EQ(c.is_donatable_hydrogen(a), row.bits == 1);
        EXPECT_EQ(c.is_hydrogen_bonding_atom(a), row.bits != 0);
        EXPECT_EQ(c.test_atom(*row.m, atom_index(*row.m, row.label)), (row.bits & 3) != 0);
    }
    // A donor atom needs a hydrogen of its own, unless hydrogens are ignored.
    const HB heavy(3.5, 0.0, Angle::from_degrees(120), false, true, INTRA_AND_INTERMOLECULAR, 0, 999);
    HMolecule3d lone_o = molecule("O O1 0 0 0"), w = water();
    EXPECT_FALSE(c.is_donor(*lone_o->atom(0)));
    EXPECT_TRUE(heavy.is_donor(*lone_o->atom(0)));
    EXPECT_TRUE(c.is_donor(*w->atom(0)));
    EXPECT_FALSE(heavy.test_atom(*w, 1));  // hydrogens take no part
    EXPECT_TRUE(heavy.test_atom(*dimethyl_ether(), 1));
    // A deuterium counts as a hydrogen on a donor.
    EXPECT_TRUE(c.is_donor(*atom_labelled(*molecule("O O1 0 0 0; D D1 0.96 0 0", "O1-D1"), "O1")));
}

TEST(HBondCriterion, ConnectivityScoreCountsBondOrdersSkippingMetalsAndHydrogensOnRequest) {
    // Fe1 on N1 by a single bond, N1 with three hydrogens; N2 on Fe1, N2#C1.
    HMolecule3d fe = iron_complex();
    const HAtom n1 = atom_labelled(*fe, "N1"), n2 = atom_labelled(*fe, "N2");
    EXPECT_EQ(HB::connectivity_score(*n1, n1->bonds(), false, false), 40);
    EXPECT_EQ(HB::connectivity_score(*n1, n1->bonds(), false, true), 10);
    EXPECT_EQ(HB::connectivity_score(*n1, n1->bonds(), true, false), 30);
    EXPECT_EQ(HB::connectivity_score(*n2, n2->bonds(), true, true), 30);
    // Every bond type once, around a metal with non-metal neighbours.
    HMolecule3d star(new Molecule3d());
    star->add(atom_at(Element::Fe, "Fe1", 0, 0, 0));
    for (int t = 0; t <= 9; ++t) {
        star->add(atom_at(Element::O, "O" + std::to_string(t), t + 1.0, 0, 0));
        star->add(HBond(new Bond3d(static_cast<BondType>(t))), 0, t + 1);
    }
    EXPECT_EQ(HB::connectivity_score(*star->atom(0), star->atom(0)->bonds(), true, true),
              10 + 10 + 20 + 30 + 40 + 15 + 10 + 15 + 0 + 0);
    EXPECT_EQ(HB::connectivity_score(*star->atom(1), star->atom(1)->bonds(), false, false), 10);
    EXPECT_EQ(HB::connectivity_score(*star->atom(1), star->atom(1)->bonds(), true, false), 0);
}

TEST(HBondCriterion, SwitchesTurnEachTypeOffAndNamesFindTypes) {
    // Each type in the table, turned off, takes its bit away, and the bit of
    // every hydrogen on a donor goes with it.
    for (const GroupRow& row : functional_groups()) {
        SCOPED_TRACE(std::string(row.group) + " " + row.label);
        const HAtom a = atom_labelled(*row.m, row.label);
        HB c(3.5, 0.0, Angle::from_degrees(120), false, false, INTERMOLECULAR, 0, 999);
        c.set_alphadonor(HB::donor_atom_type(*a), HB::UNSET);
        c.set_acceptor(HB::acceptor_atom_type(*a), HB::UNSET);
        const int left = a->element().atomic_number() == 1 ? row.bits : 0;
        EXPECT_EQ(c.hbond_type(*a), left);
        for (const HAtom& n : a->neighbours())
            if (n->element().atomic_number() == 1) {
                EXPECT_EQ(c.hbond_type(*n), 0);
            }
    }
    // Covalent fluorine is the one type off by default; switched on it accepts.
    HB c(3.5, 0.0, Angle::from_degrees(120), false, false, INTERMOLECULAR, 0, 999);
    HMolecule3d fluoro = molecule("C C1 0 0 0; F F1 1.39 0 0", "C1-F1");
    c.set_acceptor(HB::ACCEPTOR_UNCLASSIFIED_F, HB::SET);
    EXPECT_EQ(c.hbond_type(*fluoro->atom(1)), 2);
    // The bracket rows "not donor" and "non acceptor", once set, take in
    // every atom but carbon, and the hydrogens on them.
    HMolecule3d hydride = molecule("Fe Fe1 0 0 0; H H1 1.5 0 0", "Fe1-H1");
    c.set_alphadonor(HB::NOT_DONOR, HB::SET);
    c.set_acceptor(HB::NON_ACCEPTOR, HB::SET);
    EXPECT_EQ(c.hbond_type(*hydride->atom(0)), 6);
    EXPECT_EQ(c.hbond_type(*hydride->atom(1)), 1);
    EXPECT_EQ(c.hbond_type(*acetone()->atom(0)), 0);

    // Ranges are inclusive and empty when reversed; sets take each member.
    HB r(3.5, 0.0, Angle::from_degrees(120), false, false, INTERMOLECULAR, 0, 999);
    r.set_alphadonor(HB::DONOR_WATER_O, HB::DONOR_METAL_BOUND_O, HB::UNSET);
    EXPECT_EQ(r.donors(), HB::default_donors());
    r.set_alphadonor(HB::DONOR_METAL_BOUND_O, HB::DONOR_WATER_O, HB::UNSET);
    r.set_acceptor({HB::ACCEPTOR_WATER_O, HB::ACCEPTOR_IODIDE_ION}, HB::UNSET);
    r.set_acceptor(HB::ACCEPTOR_CHLORINE_BEGIN, HB::ACCEPTOR_CHLORIDE_ION, HB::SET);
    std::string changed;
    for (int i = 0; i < HB::ndonor_types; ++i)
        if (r.donors()[i] != HB::default_donors()[i]) changed += std::to_string(i) + " ";
    for (int i = 0; i < HB::nacceptor_types; ++i)
        if (r.acceptors()[i] != HB::default_acceptors()[i]) changed += "a" + std::to_string(i) + " ";
    EXPECT_EQ(changed, "11 12 a12 a27 a39 ");

    EXPECT_EQ(r.string_to_donor_atom_type("metal bound O"), HB::DONOR_METAL_BOUND_O);
    EXPECT_EQ(r.string_to_acceptor_atom_type("metal bound O"), HB::ACCEPTOR_METAL_BOUND_O);
    EXPECT_EQ(r.string_to_donor_atom_type("Metal bound O"), HB::NOT_DONOR);
    EXPECT_EQ(r.string_to_acceptor_atom_type("hydroxyl"), HB::NON_ACCEPTOR);
    EXPECT_EQ(r.string_to_acceptor_atom_type("+nitrogen"), HB::ACCEPTOR_NITROGEN_BEGIN);  // the first of two
    EXPECT_EQ(HB::default_donors().size(), 21u);
    EXPECT_EQ(HB::default_acceptors().size(), 43u);
}

namespace {

// Unit vectors of three bonds around the z axis with equal angles between
// them, adding up to `sum` degrees.
std::vector<Point> three_bonds(double sum, double length) {
    const double c = std::cos(sum / 3 * pi / 180);
    const double s = std::sqrt((1 - c) / 1.5);  // sine of the tilt from -z
    std::vector<Point> out;
    for (int i = 0; i < 3; ++i)
        out.push_back(Point(length * s * std::cos(2 * pi * i / 3), length * s * std::sin(2 * pi * i / 3),
                            -length * std::sqrt(1 - s * s)));
    return out;
}

std::string at(const Point& p) {
    std::ostringstream out;
    out << std::setprecision(17) << p[0] << " " << p[1] << " " << p[2];
    return out.str();
}

}  // namespace

TEST(HBondCriterion, GeometricLimitsOfTheNitrogenRules) {
    for (double delta : {-0.01, 0.01}) {
        SCOPED_TRACE(delta);
        // Donor: an enamine N-H is pyramidal below a sum of 350 degrees, planar above.
        std::vector<Point> p = three_bonds(350 + delta, 1.4);
        HMolecule3d enamine =
            molecule("N N1 0 0 0; H H1 " + at(p[0]) + "; C C1 " + at(p[1]) + "; C C2 " + at(p[2]) + "; C C3 5 5 5",
                     "N1-H1 N1-C1 N1-C2 C2=C3");
        EXPECT_EQ(donor_name(*enamine, "N1"), delta < 0 ? "pyramidal N" : "planar N");
        // Acceptor: an amine accepts up to a sum of 355 degrees.
        p = three_bonds(355 + delta, 1.46);
        HMolecule3d amine =
            molecule("N N1 0 0 0; C C1 " + at(p[0]) + "; C C2 " + at(p[1]) + "; C C3 " + at(p[2]), "N1-C1 N1-C2 N1-C3");
        EXPECT_EQ(acceptor_name(*amine, "N1"), delta < 0 ? "3-coordinate N" : "non acceptor");
        // An imine C=N-C accepts up to an angle of 175 degrees.
        const double t = (175 + delta) * pi / 180;
        HMolecule3d imine = molecule(
            "C C1 -1.27 0 0; N N1 0 0 0; C C2 " + at(Point(-1.47 * std::cos(t), 1.47 * std::sin(t), 0)), "C1=N1 N1-C2");
        EXPECT_EQ(acceptor_name(*imine, "N1"), delta < 0 ? "other 2-coordinate N" : "non acceptor");
    }
    // A neighbour without a site leaves the angles untested.
    HMolecule3d flat =
        molecule("N N1 0 0 0; C C1 1.46 0 0; C C2 -0.73 1.2644 0; C C3 -0.73 -1.2644 0", "N1-C1 N1-C2 N1-C3");
    EXPECT_EQ(acceptor_name(*flat, "N1"), "non acceptor");
    flat->atom(3)->set_site(HSite());
    EXPECT_EQ(acceptor_name(*flat, "N1"), "3-coordinate N");
}

namespace {

// "from>to distance" per contact, with molecule numbers when there are two.
template <class Contacts>
std::string hbonds_of(const Contacts& contacts, const Molecule& m1, const Molecule& m2) {
    std::ostringstream out;
    out << std::fixed << std::setprecision(3);
    for (const auto& c : *contacts) {
        if (out.tellp() > 0) out << "; ";
        out << m1.atom(c->atom_from())->label() << ">" << m2.atom(c->atom_to())->label() << " " << c->strength();
    }
    return out.str();
}

std::string crystal_bonds(const Hvector_HMolecularContact& contacts) {
    std::ostringstream out;
    out << std::fixed << std::setprecision(3);
    for (const HMolecularContact& c : *contacts) {
        if (out.tellp() > 0) out << "; ";
        out << c->molecule_from()->atom(c->atom_from())->label() << ">" << c->molecule_to()->atom(c->atom_to())->label()
            << " " << c->strength();
    }
    return out.str();
}

// The image of `m` through the inversion centre `p`.
HMolecule3d inverted(const Molecule& m, const Point& p) {
    HMolecule3d copy(new Molecule3d(m));
    for (int i = 0; i < copy->natoms(); ++i) {
        const Point& q = copy->atom(i)->site()->orth();
        copy->atom(i)->set_site(HSite(new Site(Point(2 * p[0] - q[0], 2 * p[1] - q[1], 2 * p[2] - q[2]))));
    }
    return copy;
}

// The image of `m` moved by (x, y, z).
HMolecule3d moved(const Molecule& m, double x, double y, double z) {
    HMolecule3d copy(new Molecule3d(m));
    for (int i = 0; i < copy->natoms(); ++i) {
        const Point& q = copy->atom(i)->site()->orth();
        copy->atom(i)->set_site(HSite(new Site(Point(q[0] + x, q[1] + y, q[2] + z))));
    }
    return copy;
}

Crystal crystal_of(const HMolecule& a, const HMolecule& b) {
    return Crystal(Cell(), Hvector_HMolecule(new vector_HMolecule{a, b}));
}

// The library's own defaults for a search between molecules.
HB between_molecules(bool no_hydrogens = false) {
    return HB(0.0, -5.0, Angle::from_degrees(120), true, no_hydrogens, INTERMOLECULAR, 4, 999);
}

}  // namespace

TEST(HBondCriterion, DimersAreFoundAndEtherPairsAreNot) {
    // The centrosymmetric acetic acid dimer: O2-H6...O1' at 1.67 A, twice.
    HMolecule3d acid = acetic_acid();
    Crystal dimer = crystal_of(acid, inverted(*acid, Point(-1.8987, 0.0093, 0)));
    EXPECT_EQ(crystal_bonds(dimer.nonbonded_search(0, between_molecules())), "O1>H6 1.670; H6>O1 1.670");
    EXPECT_EQ(crystal_bonds(dimer.nonbonded_search(1, between_molecules())), "O1>H6 1.670; H6>O1 1.670");
    // Without hydrogens the donor oxygens stand at the ends, 2.64 A apart.
    EXPECT_EQ(crystal_bonds(dimer.nonbonded_search(0, between_molecules(true))), "O1>O2 2.640; O2>O1 2.640");
    const Hvector_HMolecularContact found = dimer.nonbonded_search(0, between_molecules());
    EXPECT_EQ((*found)[0]->type(), 3);
    EXPECT_TRUE((*found)[0]->intermolecular());

    // The water dimer: H1 points at the second oxygen, 2.91 A from the first.
    HMolecule3d w = water();
    HMolecule3d w2 = molecule("O O1 2.91 0 0; H H1 3.2300 0.9024 0; H H2 3.2300 -0.4512 0.7815", "O1-H1 O1-H2");
    Crystal waters = crystal_of(w, w2);
    EXPECT_EQ(crystal_bonds(waters.nonbonded_search(0, between_molecules())), "H1>O1 1.953");
    EXPECT_EQ(crystal_bonds(waters.nonbonded_search(1, between_molecules())), "O1>H1 1.953");
    // Without hydrogens both oxygens may donate, and each reads from its own side.
    EXPECT_EQ(crystal_bonds(waters.nonbonded_search(0, between_molecules(true))), "O1>O1 2.910");

    // Two ethers 3.0 A apart, and an ether beside a ketone: nothing donates.
    HMolecule3d ether = dimethyl_ether();
    EXPECT_EQ(crystal_bonds(crystal_of(ether, moved(*ether, 0, 0, 3.0)).nonbonded_search(0, between_molecules())), "");
    EXPECT_EQ(crystal_bonds(crystal_of(ether, moved(*ether, 0, 0, 3.0)).nonbonded_search(0, between_molecules(true))),
              "");

    // Asked one pair at a time, a contact reads from the first atom to the second.
    const HB c = between_molecules();
    EXPECT_EQ(hbonds_of(c.find_contact(w, 1, w2, 0), *w, *w2), "H1>O1 1.953");
    EXPECT_EQ(hbonds_of(c.find_contact(w2, 0, w, 1), *w2, *w), "O1>H1 1.953");
    EXPECT_EQ(c.find_contact(w, 1, w, 0)->size(), 0u);  // intermolecular only
    EXPECT_EQ(c.find_intramolecular_contact(*w, 1, 0)->size(), 0u);
    EXPECT_EQ(c.find_contact(w, 2, w2, 0)->size(), 0u);  // H2 points away
}

TEST(HBondCriterion, DistanceAndAngleLimitsAreInclusive) {
    HMolecule3d w = water();
    HMolecule3d w2 = molecule("O O1 2.6 1.3 0; H H1 3.2 1.8 0; H H2 3.0 0.7 0.6", "O1-H1 O1-H2");
    const double d = distance(w->atom(1)->site()->orth(), w2->atom(0)->site()->orth());
    const Angle a = angle(w->atom(0)->site()->orth(), w->atom(1)->site()->orth(), w2->atom(0)->site()->orth());
    ASSERT_GT(a.degrees(), 120);
    const auto found = [&](double max, double min, const Angle& limit, bool vdw) {
        return HB(max, min, limit, vdw, false, INTERMOLECULAR, 0, 0).find_contact(w, 1, w2, 0)->size();
    };
    EXPECT_EQ(found(d, d, a, false), 1u);
    EXPECT_EQ(found(std::nextafter(d, 0.0), 0.0, a, false), 0u);
    EXPECT_EQ(found(5.0, std::nextafter(d, 5.0), a, false), 0u);
    EXPECT_EQ(found(5.0, 0.0, a + Angle::from_radians(1e-12), false), 0u);
    // Corrected by the radii of H and O, 1.2 + 1.52.
    EXPECT_EQ(found(d - 2.72 + 1e-9, d - 2.72 - 1e-9, a, true), 1u);
    EXPECT_EQ(found(d - 2.72 - 1e-9, -5.0, a, true), 0u);
    // The strength is the distance itself, corrected or not.
    EXPECT_EQ((*HB(0.0, -5.0, a, true, false, INTERMOLECULAR, 0, 0).find_contact(w, 1, w2, 0))[0]->strength(), d);
    EXPECT_EQ(HB(0.5, 0.0, a, false, false, INTERMOLECULAR, 0, 0).max_radius(), 0.5);
    EXPECT_DOUBLE_EQ(HB(0.5, 0.0, a, true, false, INTERMOLECULAR, 0, 0).max_radius(), 0.5 + 1.98 + 1.2);
    EXPECT_DOUBLE_EQ(HB(0.5, 0.0, a, true, true, INTERMOLECULAR, 0, 0).max_radius(), 0.5 + 1.98 + 1.8);
}

namespace {

// H1 on O1 points at O2 1.9 A away, at 180 degrees; O1 and O2 are joined
// through `n` carbons placed out of the way (or directly): the path from H1
// to O2 is n + 2 bonds.
HMolecule3d ring_closure(int n) {
    HMolecule3d m = molecule("O O1 -0.96 0 0; H H1 0 0 0; O O2 1.9 0 0", "O1-H1");
    for (int i = 0; i < n; ++i) {
        m->add(atom_at(Element::C, "C" + std::to_string(i + 1), -1.0 + 3.0 * i / (n > 1 ? n - 1 : 1), 5.0, 0.0));
        m->add(HBond(new Bond3d(SINGLE_BOND)), i == 0 ? 0 : m->natoms() - 2, m->natoms() - 1);
    }
    m->add(HBond(new Bond3d(SINGLE_BOND)), n == 0 ? 0 : m->natoms() - 1, 2);
    return m;
}

}  // namespace

TEST(HBondCriterion, PathsCountFromTheDonor) {
    // The path from H1 to O2, counted from O1, against the limits [2, 3];
    // searched pair by pair and in one group search (which walks paths
    // from each atom only as far as the limit needs).
    for (int n = 0; n <= 5; ++n) {
        SCOPED_TRACE(n);
        HMolecule3d m = ring_closure(n);
        const HB c(2.0, 0.0, Angle::from_degrees(120), false, false, INTRAMOLECULAR, 2, 3);
        const bool within = n + 1 >= 2 && n + 1 <= 3;
        EXPECT_EQ(c.find_intramolecular_contact(*m, 1, 2)->size(), within ? 1u : 0u);
        EXPECT_EQ(hbonds_of(m->nonbonded_search(c), *m, *m), within ? "H1>O2 1.900; O2>H1 1.900" : "");
        EXPECT_EQ(c.test_path(*m, 2, 1), within);
        // Without hydrogens nothing is subtracted: O1 to O2 is n + 1 bonds.
        const HB heavy(3.0, 0.0, Angle::from_degrees(120), false, true, INTRAMOLECULAR, 2, 3);
        EXPECT_EQ(heavy.test_path(*m, 0, 2), within);
        EXPECT_EQ(heavy.test_path(*m, 1, 2), n + 2 >= 2 && n + 2 <= 3);
    }
    // Between two molecules the path is asked only when they are equal:
    // here a copy in the same place, whose atoms are unbonded to H1.
    HMolecule3d m = ring_closure(0);
    HMolecule3d same(new Molecule3d(*m));
    const HB both(2.0, 0.0, Angle::from_degrees(120), false, false, INTRA_AND_INTERMOLECULAR, 2, 3);
    EXPECT_EQ(both.find_contact(m, 1, same, 2)->size(), 0u);  // 2 bonds in m, 1 from the donor
    same->atom(0)->set_label("X");
    EXPECT_EQ(both.find_contact(m, 1, same, 2)->size(), 1u);
}

TEST(HBondCriterion, PrintForms) {
    HB c = between_molecules();
    EXPECT_EQ(printed(c),
              "Contacts must be closer than 0 + sum of vdw radii Angstroms\n"
              "D-H ... A angle must be greater than 120 degrees\n"
              "type: INTER\n");
    // Switches that differ from the defaults, donors first, nothing between.
    c.set_alphadonor(HB::DONOR_WATER_O, HB::UNSET);
    c.set_acceptor(HB::ACCEPTOR_UNCLASSIFIED_F, HB::SET);
    c.set_acceptor(HB::ACCEPTOR_NITROGEN_BEGIN, HB::BRACKET);  // as it was
    EXPECT_EQ(printed(c),
              "Contacts must be closer than 0 + sum of vdw radii Angstroms\n"
              "D-H ... A angle must be greater than 120 degrees\n"
              "unset water Oset unclassified F"
              "type: INTER\n");
    EXPECT_EQ(printed(HB(3.2, 0.0, Angle::from_degrees(135.5), false, true, INTRA_AND_INTERMOLECULAR, 3, 8)),
              "Contacts must be closer than 3.2 + sum of vdw radii Angstroms\n"
              "D-H ... A angle tolerance ignored: 135.5 degrees\n"
              "type: INTRA and INTER, max bond path: 8, min bond path: 3\n");
    EXPECT_EQ(printed(HB::default_acceptors()[HB::ACCEPTOR_NITROGEN_BEGIN]), "unset +nitrogen");
    EXPECT_EQ(printed(HB::default_donors()[HB::DONOR_METAL_BOUND_N]), "set metal bound N");
    EXPECT_EQ(printed(HB::AtomTypeProperties()), "unset ");
    EXPECT_STREQ(c.class_name(), "HBondCriterion");
}

TEST(HBondCriterion, ArchiveLayoutRoundTripEqualityAndCorruptArchives) {
    HB c(2.5, 1.5, Angle::from_radians(2.0), true, false, INTRAMOLECULAR, 1, 4);
    const std::vector<unsigned char> bytes = written(c);
    EXPECT_EQ(bytes, doubles({2.5, 1.5}) + words({1, 0}) + doubles({2.0}) + words({1, 4, 2}));

    // Read into a criterion with other switches: the switches stay.
    HB target(9, 9, Angle(), false, true, INTERMOLECULAR, 0, 0);
    target.set_acceptor(HB::ACCEPTOR_WATER_O, HB::UNSET);
    Archive ar = archive_of(bytes);
    target.read(ar);
    EXPECT_TRUE(target.vdw_corrected());
    EXPECT_FALSE(target.no_hydrogens());
    EXPECT_EQ(target.min_angle(), Angle::from_radians(2.0));
    EXPECT_FALSE(target == c);  // the switch
    target.set_acceptor(HB::ACCEPTOR_WATER_O, HB::SET);
    EXPECT_TRUE(target == c);
    // Any int other than 0 reads as true.
    Archive seven = archive_of(doubles({2.5, 1.5}) + words({7, -1}) + doubles({2.0}) + words({1, 4, 2}));
    target.read(seven);
    EXPECT_TRUE(target.vdw_corrected());
    EXPECT_TRUE(target.no_hydrogens());

    // Equality: vdw_corrected plays no part; no_hydrogens, the angle, the
    // paths, the class and each switch do.
    const HB base(2.5, 1.5, Angle::from_radians(2.0), false, false, INTRAMOLECULAR, 1, 4);
    EXPECT_TRUE(base == c);
    EXPECT_FALSE(base == HB(2.5, 1.5, Angle::from_radians(2.0), false, true, INTRAMOLECULAR, 1, 4));
    EXPECT_FALSE(base == HB(2.5, 1.5, Angle::from_radians(2.1), false, false, INTRAMOLECULAR, 1, 4));
    EXPECT_FALSE(base == HB(2.5, 1.5, Angle::from_radians(2.0), false, false, INTRAMOLECULAR, 1, 5));
    EXPECT_FALSE(static_cast<const ContactCriterion&>(base) ==
                 DistanceCriterion(2.5, 1.5, INTRAMOLECULAR, 1, 4, false));
    HContactCriterion copy = base.clone();
    static_cast<HB&>(*copy).set_alphadonor(HB::DONOR_HYDROXYL_O, HB::UNSET);
    EXPECT_NE(*copy, base);
    EXPECT_EQ(base.donors(), HB::default_donors());
    c.assign(*copy);
    EXPECT_TRUE(c == *copy);
    EXPECT_EQ(
        error_text<std::invalid_argument>([&] { c.assign(DistanceCriterion(1, 0, INTERMOLECULAR, 0, 0, false)); }),
        "HBondCriterion::assign(const ContactCriterion&) the argument is not of the same class");

    // Every truncation fails cleanly and changes nothing; so does an angle
    // that is not a number and a type that no criterion writes.
    const std::string before = printed(target);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        Archive cut_ar = archive_of(cut(bytes, n));
        EXPECT_THROW(target.read(cut_ar), std::runtime_error) << n;
        EXPECT_EQ(printed(target), before);
    }
    Archive nan_ar = archive_of(doubles({2.5, 1.5}) + words({1, 0}) +
                                doubles({std::numeric_limits<double>::quiet_NaN()}) + words({1, 4, 2}));
    EXPECT_EQ(error_text<std::runtime_error>([&] { target.read(nan_ar); }),
              "HBondCriterion::read min_angle: the angle is not a finite number");
    Archive type_ar = archive_of(doubles({2.5, 1.5}) + words({1, 0}) + doubles({2.0}) + words({1, 4, 0}));
    EXPECT_EQ(error_text<std::runtime_error>([&] { target.read(type_ar); }),
              "ContactCriterion::read type: contact type 0 is not 1, 2 or 3");
    Archive short_ar = archive_of(doubles({2.5, 1.5}) + words({1}));
    EXPECT_EQ(
        error_text<std::runtime_error>([&] { target.read(short_ar); }).find("HBondCriterion::read no_hydrogens: "), 0u);
    EXPECT_EQ(printed(target), before);

    // A switch alone: setting, then the name as a string.
    const std::vector<unsigned char> one = written(HB::default_acceptors()[HB::ACCEPTOR_CARBOXYLATE_O]);
    const std::string name = "carboxylate O";
    EXPECT_EQ(one, words({1, 13}) + std::vector<unsigned char>(name.begin(), name.end()));
    HB::DonorAtomTypeProperties p;
    Archive one_ar = archive_of(one);
    p.read(one_ar);
    EXPECT_EQ(printed(p), "set carboxylate O");
    EXPECT_EQ(p.type, HB::NOT_DONOR);  // the type is not archived
    Archive bad_setting = archive_of(words({2, 0}));
    EXPECT_EQ(error_text<std::runtime_error>([&] { p.read(bad_setting); }),
              "HBondCriterion::AtomTypeProperties::read setting: setting 2 is not -1, 0 or 1");
    Archive long_name = archive_of(words({0, 1000}) + words({0}));
    EXPECT_EQ(error_text<std::runtime_error>([&] {
                  p.read(long_name);
              }).find("HBondCriterion::AtomTypeProperties::read name: string length 1000 "),
              0u);
    EXPECT_EQ(printed(p), "set carboxylate O");
    // Equality of switches: type, then setting and name.
    EXPECT_FALSE(HB::DonorAtomTypeProperties(HB::DONOR_WATER_O, "x", 1) ==
                 HB::DonorAtomTypeProperties(HB::DONOR_HYDROXYL_O, "x", 1));
    EXPECT_TRUE(static_cast<const HB::AtomTypeProperties&>(HB::DonorAtomTypeProperties(HB::DONOR_WATER_O, "x", 1)) ==
                HB::DonorAtomTypeProperties(HB::DONOR_HYDROXYL_O, "x", 1));
}

TEST(HBondCriterion, BadInputGivesStatedResultsOrCleanErrors) {
    const HB c(3.0, 0.0, Angle::from_degrees(120), false, false, INTRA_AND_INTERMOLECULAR, -5, 999);
    // A donor without a site: no angle to test, so no contact.
    HMolecule3d w = water();
    HMolecule3d w2 = molecule("O O1 2.91 0 0; H H1 3.2300 0.9024 0; H H2 3.2300 -0.4512 0.7815", "O1-H1 O1-H2");
    w->atom(0)->set_site(HSite());
    EXPECT_EQ(c.find_contact(w, 1, w2, 0)->size(), 0u);
    EXPECT_EQ(hbonds_of(w->nonbonded_search(c), *w, *w), "");
    // A pair asked directly whose atom has no site: the handle's error.
    EXPECT_EQ(error_text<std::logic_error>([&] { c.find_contact(w2, 1, w, 0); }),
              "HandleCommon::null_handle_error attempt to dereference a null handle");
    // A hydrogen without a parent, or with two, donates nothing.
    HMolecule3d loose = molecule("H H1 0 0 0; O O1 1.8 0 0; H H2 5 0 0; O O2 6.0 0 0; O O3 4.0 0 0", "H2-O2 H2-O3");
    EXPECT_EQ(hbonds_of(loose->nonbonded_search(c), *loose, *loose), "");
    // Unknown elements and pseudo-elements are neither donors nor acceptors.
    HMolecule3d odd = molecule("X X1 0 0 0; H H1 1 0 0; Zz Z1 2.5 0 0; O O1 4 0 0", "X1-H1");
    EXPECT_EQ(hbonds_of(odd->nonbonded_search(c), *odd, *odd), "");
}

namespace {

// The same rules through a subclass that the group searches do not trust
// with a search radius, that keeps nothing between pairs and that asks the
// molecule for each path: the literal walk over all pairs.
class Literal : public HBondCriterion {
public:
    using HBondCriterion::HBondCriterion;
    bool test_path(const Molecule& mol, int a, int b) const override {
        int path = mol.shortest_path(a, b);
        if (!no_hydrogens() &&
            (mol.atom(a)->element().atomic_number() == 1 || mol.atom(b)->element().atomic_number() == 1))
            --path;
        return min_path() <= path && path <= max_path();
    }

protected:
    void begin_group_search() const override {}
    void end_group_search() const override {}
};

// `copies` waters, acetic acids and acetamides in a box of side `side`, at
// random places and turns, all in one molecule.
HMolecule3d picture(std::mt19937& rng, int copies, double side) {
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const HMolecule3d parts[3] = {water(), acetic_acid(), acetamide()};
    HMolecule3d m(new Molecule3d());
    for (int k = 0; k < copies; ++k) {
        const Molecule& part = *parts[k % 3];
        const double a = 2 * pi * unit(rng), b = 2 * pi * unit(rng);
        const double x = side * unit(rng), y = side * unit(rng), z = side * unit(rng);
        const int first = m->natoms();
        for (int i = 0; i < part.natoms(); ++i) {
            const Point& p = part.atom(i)->site()->orth();
            // A turn about z, then about x.
            const double px = p[0] * std::cos(a) - p[1] * std::sin(a), py = p[0] * std::sin(a) + p[1] * std::cos(a);
            HAtom atom = part.atom(i)->clone();
            atom->set_site(HSite(new Site(
                Point(x + px, y + py * std::cos(b) - p[2] * std::sin(b), z + py * std::sin(b) + p[2] * std::cos(b)))));
            m->add(atom);
        }
        for (int j = 0; j < part.nbonds(); ++j) {
            const HBond bond = part.bond(j);
            m->add(HBond(new Bond3d(bond->type())), first + bond->atom1()->index(), first + bond->atom2()->index());
        }
    }
    return m;
}

std::vector<int> all_atoms(const Molecule& m) {
    std::vector<int> out;
    for (int i = 0; i < m.natoms(); ++i) out.push_back(i);
    return out;
}

template <class Contacts>
std::string records(const Contacts& contacts) {
    std::string out;
    for (const auto& c : *contacts) out += record(*c) + "\n";
    return out;
}

}  // namespace

TEST(HBondCriterion, GridSearchFindsWhatTheWalkOverAllPairsFindsAndClassifiesEachAtomOnce) {
    std::mt19937 rng(14);
    const HMolecule3d a = picture(rng, 30, 11.0), b = picture(rng, 24, 11.0);
    const Crystal crystal = crystal_of(a, b);
    const std::vector<int> atoms_a = all_atoms(*a), atoms_b = all_atoms(*b);
    struct Settings {
        double max, min, degrees;
        bool vdw, no_hydrogens;
        ContactType type;
        int min_path, max_path;
    };
    std::size_t nfound = 0;
    for (const Settings& s : {Settings{0.0, -5.0, 120, true, false, INTRA_AND_INTERMOLECULAR, -2, 999},
                              Settings{0.3, -5.0, 100, true, true, INTRA_AND_INTERMOLECULAR, -1, 1},
                              Settings{2.6, 1.5, 120, false, false, INTRA_AND_INTERMOLECULAR, -2, -2},
                              Settings{3.2, 0.0, 0, false, true, INTERMOLECULAR, 0, 0}}) {
        for (bool any_acceptor : {false, true}) {
            HB fast(s.max, s.min, Angle::from_degrees(s.degrees), s.vdw, s.no_hydrogens, s.type, s.min_path,
                    s.max_path);
            Literal slow(s.max, s.min, Angle::from_degrees(s.degrees), s.vdw, s.no_hydrogens, s.type, s.min_path,
                         s.max_path);
            // "non acceptor" switched on admits every element, and the radius no longer bounds.
            fast.set_acceptor(HB::NON_ACCEPTOR, any_acceptor ? HB::SET : HB::BRACKET);
            slow.set_acceptor(HB::NON_ACCEPTOR, any_acceptor ? HB::SET : HB::BRACKET);
            const std::string between = records(fast.find_crystal_contact(crystal, 0, atoms_a, 1, atoms_b));
            EXPECT_EQ(between, records(slow.find_crystal_contact(crystal, 0, atoms_a, 1, atoms_b)));
            const long long before = fast.nclassified();
            const std::string inside = records(a->nonbonded_search(fast));
            EXPECT_LE(fast.nclassified() - before, 2LL * a->natoms());
            EXPECT_EQ(inside, records(a->nonbonded_search(slow)));
            nfound += std::count(between.begin(), between.end(), '\n') + std::count(inside.begin(), inside.end(), '\n');
        }
    }
    EXPECT_GT(nfound, 50u) << nfound;
}
