// Hydrogen normalisation: terminal hydrogens moved along their bonds to the
// distance of their anchor's element, anchors and everything else left
// alone, the sites the hydrogens had left untouched, and the table of
// distances edited.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "common/ErrorText.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/edit/HydrogenNormalisation.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

double length_of(const Molecule& m, const char* a, const char* b) {
    return m.distance(atom_index(m, a), atom_index(m, b));
}

Point at(const Molecule& m, const char* a) { return atom_labelled(m, a)->site()->orth(); }

}  // namespace

TEST(HydrogenNormalisation, MovesTerminalHydrogensAlongTheirBonds) {
    // Methanol with short X-ray distances, an amine N-H, a deuterium, a
    // hydrogen bridging two oxygens, dihydrogen, and an S-H (no entry).
    const HMolecule3d m = molecule(
        "C C1 0 0 0; O O1 1.43 0 0; H H1 -0.95 0 0; H H2 1.70 0.80 0; N N1 0 2 0; H H3 0 2.9 0; H D1 0 -0.95 0;"
        "O O2 5 0 0; O O3 7.4 0 0; H HB 6.2 0 0; H HH1 0 0 9; H HH2 0.74 0 9; S S1 0 9 0; H HS 1.2 9 0",
        "C1-O1 C1-H1 O1-H2 C1-N1 N1-H3 C1-D1 O2-HB O3-HB HH1-HH2 S1-HS");
    atom_labelled(*m, "D1")->set_element(Element("D"));
    const HSite old_h1 = atom_labelled(*m, "H1")->site();
    old_h1->set_occupancy(UncertainValue(0.5));
    const Vector<double, 3> h2_direction = at(*m, "H2") - at(*m, "O1");
    HMolecule3d before(new Molecule3d(*m));

    const HCell cell(new Cell(10, 12, 14, Angle::from_degrees(90), Angle::from_degrees(100), Angle::from_degrees(90)));
    HydrogenNormalisation normalise(HMolecule(m), cell);
    EXPECT_FALSE(normalise.is_absolute());
    normalise.apply();
    EXPECT_NEAR(length_of(*m, "C1", "H1"), 1.083, 1e-12);
    EXPECT_NEAR(length_of(*m, "O1", "H2"), 0.983, 1e-12);
    EXPECT_NEAR(length_of(*m, "N1", "H3"), 1.009, 1e-12);
    // Direction unchanged, fractional point through the cell, the old site
    // object where it was and its occupancy carried over.
    const Vector<double, 3> d = at(*m, "H2") - at(*m, "O1");
    EXPECT_NEAR(cross(d, h2_direction).length(), 0.0, 1e-12);
    EXPECT_GT(dot(d, Vector<double, 3>(h2_direction)), 0.0);
    const HSite h1 = atom_labelled(*m, "H1")->site();
    EXPECT_NE(h1.unhand(), old_h1.unhand());
    EXPECT_EQ(old_h1->orth(), Point(-0.95, 0, 0));
    EXPECT_EQ(h1->occupancy().value(), 0.5);
    EXPECT_LT((Point(cell->orth_from_frac() * h1->frac()) - h1->orth()).length(), 1e-12);
    // Anchors, deuterium, the bridge, H-H and S-H stay where they were.
    for (const char* fixed : {"C1", "O1", "N1", "D1", "HB", "O2", "O3", "HH1", "HH2", "S1", "HS"})
        EXPECT_EQ(at(*m, fixed), at(*before, fixed)) << fixed;

    // Applying again changes nothing more; the table can be edited.
    normalise.apply();
    EXPECT_NEAR(length_of(*m, "C1", "H1"), 1.083, 1e-12);
    normalise.add(Element("S"), 1.338);
    normalise.add(Element("H"), 0.7414);
    normalise.add(Element("C"), 1.09);
    EXPECT_EQ(normalise.nelements(), 5);
    normalise.apply();
    EXPECT_NEAR(length_of(*m, "S1", "HS"), 1.338, 1e-12);
    EXPECT_NEAR(length_of(*m, "C1", "H1"), 1.09, 1e-12);
    // H-H: the first hydrogen of the bond moves towards its partner's distance.
    EXPECT_NEAR(length_of(*m, "HH1", "HH2"), 0.7414, 1e-12);
    EXPECT_EQ(at(*m, "HH2"), at(*before, "HH2"));
    normalise.remove(Element("S"));
    normalise.reset_normalisation_data();
    EXPECT_EQ(normalise.nelements(), 3);
    EXPECT_EQ(normalise.begin_elements()->second, 1.083);  // C sorts before N and O
    for (const char* e : {"C", "N", "O"}) normalise.remove(Element(e));
    EXPECT_EQ(normalise.nelements(), 0);
    atom_labelled(*m, "H1")->site()->set_coordinates(Point(-3, 0, 0));
    normalise.apply();  // an empty table does nothing
    EXPECT_EQ(at(*m, "H1"), Point(-3, 0, 0));
}

TEST(HydrogenNormalisation, ZeroDistancesAndMissingObjects) {
    // Water whose second hydrogen sits on the oxygen: the first bond is
    // treated, then the pass stops.
    const HMolecule3d w = molecule("O O1 0 0 0; H H1 0.9 0 0; H H2 0 0 0; H H3 0 0.9 0", "O1-H1 O1-H2 O1-H3");
    const HydrogenNormalisation normalise(HMolecule(w), HCell(new Cell()));
    EXPECT_EQ(error_text<std::runtime_error>([&]() { normalise.apply(); }),
              "HydrogenNormalisation::normalise_distance: Cannot scale a zero distance.");
    EXPECT_NEAR(length_of(*w, "O1", "H1"), 0.983, 1e-12);
    EXPECT_NEAR(length_of(*w, "O1", "H3"), 0.9, 1e-12);

    EXPECT_EQ(error_text<std::runtime_error>([&]() { HydrogenNormalisation().apply(); }),
              "HydrogenNormalisation::apply: Cannot normalise this object's molecule.");
    HydrogenNormalisation late;
    late.set_molecule_and_cell(HMolecule(w), HCell());
    EXPECT_EQ(error_text<std::runtime_error>([&]() { late.apply(); }),
              "HydrogenNormalisation::apply: Cannot normalise this object's molecule.");
    // Atoms without sites are passed over.
    const HMolecule3d bare = molecule("O O1; H H1 1 0 0", "O1-H1");
    late.set_molecule_and_cell(HMolecule(bare), HCell(new Cell()));
    late.apply();
    EXPECT_EQ(at(*bare, "H1"), Point(1, 0, 0));
}

TEST(HydrogenNormalisation, NormalisesEveryMoleculeOfACrystalMaker) {
    const HMolecule3d a = water(), b = molecule("N N1 0 0 0; H H1 0 0 0.87", "N1-H1");
    const Cell cell(8, 8, 8, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90));
    Hvector_HMolecule list(new vector_HMolecule{HMolecule(a), HMolecule(b)});
    const CrystalMaker maker(cell, list, Hvector_HMolecule(), Hvector_HMolecule());
    ASSERT_EQ(maker.nmolecules(), 2);
    HydrogenNormalisation().apply(maker);
    EXPECT_NEAR(length_of(*a, "O1", "H1"), 0.983, 1e-12);
    EXPECT_NEAR(length_of(*a, "O1", "H2"), 0.983, 1e-12);
    EXPECT_NEAR(length_of(*b, "N1", "H1"), 1.009, 1e-12);
    EXPECT_NEAR(atom_labelled(*b, "H1")->site()->frac()[2], 1.009 / 8, 1e-12);
}
