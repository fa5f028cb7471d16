// Torsion setting and stored geometries: torsions of butane and of a peptide
// backbone set and read back, the side that moves, the refusals (ring bonds,
// terminal bonds, atoms not joined) with the molecule left as it was, and
// snapshots that restore the exact coordinates.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ErrorText.h"
#include "molcryst/edit/ConformationSetting.h"
#include "molcryst/edit/GeometryCollection.h"
#include "molcryst/edit/StoredGeometry.h"
#include "molcryst/edit/ValenceAngleSetting.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

/// The point d with |cd| = length, angle b-c-d and torsion a-b-c-d as given.
Point place(const Point& a, const Point& b, const Point& c, double length, double angle_deg, double torsion_deg) {
    const double pi = std::acos(-1.0);
    const double theta = angle_deg * pi / 180.0, phi = torsion_deg * pi / 180.0;
    Vector<double, 3> bc = c - b;
    bc = bc / bc.length();
    Vector<double, 3> n = cross(b - a, bc);
    n = n / n.length();
    const Vector<double, 3> m = cross(n, bc);
    const Vector<double, 3> d2(-length * std::cos(theta), length * std::sin(theta) * std::cos(phi),
                               length * std::sin(theta) * std::sin(phi));
    return Point(c + bc * d2[0] + m * d2[1] + n * d2[2]);
}

/// Adds an atom placed from three earlier ones, bonded to `c`.
void grow(Molecule3d& m, const std::string& element, const std::string& label, const std::string& a,
          const std::string& b, const std::string& c, double length, double angle, double torsion) {
    const Point p = place(atom_labelled(m, a)->site()->orth(), atom_labelled(m, b)->site()->orth(),
                          atom_labelled(m, c)->site()->orth(), length, angle, torsion);
    m.add(atom_at(Element(element), label, p[0], p[1], p[2]));
    add_bonds(m, c + "-" + label);
}

/// Butane with all its hydrogens, anti: C1-C2-C3-C4 at 180 degrees.
HMolecule3d butane() {
    HMolecule3d m = molecule("C C1 0 0 0; C C2 1.53 0 0; C C3 2.04 1.44 0", "C1-C2 C2-C3");
    grow(*m, "C", "C4", "C1", "C2", "C3", 1.53, 111.0, 180.0);
    const char* h[][5] = {{"H1A", "C3", "C2", "C1", "60"},   {"H1B", "C3", "C2", "C1", "180"},
                          {"H1C", "C3", "C2", "C1", "-60"},  {"H2A", "C4", "C3", "C2", "120"},
                          {"H2B", "C4", "C3", "C2", "-120"}, {"H3A", "C1", "C2", "C3", "120"},
                          {"H3B", "C1", "C2", "C3", "-120"}, {"H4A", "C2", "C3", "C4", "60"},
                          {"H4B", "C2", "C3", "C4", "180"},  {"H4C", "C2", "C3", "C4", "-60"}};
    for (const auto& r : h) grow(*m, "H", r[0], r[1], r[2], r[3], 1.09, 109.5, std::stod(r[4]));
    return m;
}

/// An alanine dipeptide backbone: CH3-C(=O)-N(H)-CA(H)(CB)-C(=O)-N(H)-CH3.
HMolecule3d dipeptide() {
    HMolecule3d m = molecule("C CM1 0 0 0; C C0 1.52 0 0; N N1 2.10 1.22 0", "CM1-C0 C0-N1");
    grow(*m, "O", "O0", "N1", "CM1", "C0", 1.23, 121.0, 180.0);
    grow(*m, "C", "CA", "CM1", "C0", "N1", 1.46, 122.0, 180.0);
    grow(*m, "H", "HN1", "CA", "C0", "N1", 1.01, 119.0, 180.0);
    grow(*m, "C", "C1", "C0", "N1", "CA", 1.52, 110.0, -60.0);
    grow(*m, "C", "CB", "C0", "N1", "CA", 1.53, 110.0, 180.0);
    grow(*m, "H", "HA", "C0", "N1", "CA", 1.09, 109.0, 60.0);
    grow(*m, "O", "O1", "N1", "CA", "C1", 1.23, 121.0, -45.0);
    grow(*m, "N", "N2", "N1", "CA", "C1", 1.33, 116.0, 135.0);
    grow(*m, "C", "CM2", "CA", "C1", "N2", 1.46, 122.0, 180.0);
    grow(*m, "H", "HN2", "CM2", "C1", "N2", 1.01, 119.0, 180.0);
    return m;
}

double torsion_of(const Molecule& m, const char* a, const char* b, const char* c, const char* d) {
    return m.torsion_angle(atom_index(m, a), atom_index(m, b), atom_index(m, c), atom_index(m, d)).degrees();
}

/// The difference of two angles in degrees, folded into [0, 180].
double angle_gap(double a, double b) {
    const double d = std::fmod(std::fabs(a - b), 360.0);
    return d > 180.0 ? 360.0 - d : d;
}

std::vector<Point> coordinates(const Molecule& m) {
    std::vector<Point> points;
    for (int i = 0; i < m.natoms(); ++i) points.push_back(m.atom(i)->has_site() ? m.atom(i)->site()->orth() : Point());
    return points;
}

std::vector<HSite> sites_of(const Molecule& m) {
    std::vector<HSite> sites;
    for (int i = 0; i < m.natoms(); ++i) sites.push_back(m.atom(i)->site());
    return sites;
}

HTorsionAngleSetting torsion(const Molecule& m, const char* a, const char* b, const char* c, const char* d,
                             double degrees) {
    return HTorsionAngleSetting(new TorsionAngleSetting(atom_labelled(m, a), atom_labelled(m, b), atom_labelled(m, c),
                                                        atom_labelled(m, d), Angle::from_degrees(degrees)));
}

HConformationSetting setting(const HMolecule3d& m, const std::vector<HTorsionAngleSetting>& torsions) {
    Hvector_HTorsionAngleSetting list(new vector_HTorsionAngleSetting(torsions));
    return HConformationSetting(new ConformationSetting(HMolecule(m), list, HCell()));
}

}  // namespace

TEST(ConformationSetting, ButaneTorsionsReadBackAndBondsKeepTheirLengths) {
    const HMolecule3d m = butane();
    const double c2c3 = m->distance(atom_index(*m, "C2"), atom_index(*m, "C3"));
    const double offset = torsion_of(*m, "H2A", "C2", "C3", "C4") - torsion_of(*m, "C1", "C2", "C3", "C4");
    for (double wanted : {60.0, -60.0, 0.0, 180.0, 123.456789, -179.999, 180.0}) {
        setting(m, {torsion(*m, "C1", "C2", "C3", "C4", wanted)})->apply();
        EXPECT_LT(angle_gap(torsion_of(*m, "C1", "C2", "C3", "C4"), wanted), 1e-6) << wanted;
        // The hydrogens turn with their carbon: the H-C-C-H torsions keep their offsets.
        EXPECT_LT(angle_gap(torsion_of(*m, "H2A", "C2", "C3", "C4"), wanted + offset), 1e-6) << wanted;
        EXPECT_NEAR(m->distance(atom_index(*m, "C2"), atom_index(*m, "C3")), c2c3, 1e-12);
    }
    // Setting the present value moves nothing beyond rounding.
    const std::vector<Point> before = coordinates(*m);
    setting(m, {torsion(*m, "C1", "C2", "C3", "C4", 180.0)})->apply();
    const std::vector<Point> after = coordinates(*m);
    for (std::size_t i = 0; i < before.size(); ++i) EXPECT_LT((after[i] - before[i]).length(), 1e-9);
    // Atoms two bonds apart: the smaller end turns about the line through them.
    setting(m, {torsion(*m, "H1A", "C1", "C3", "C4", 10.0)})->apply();
    EXPECT_LT(angle_gap(torsion_of(*m, "H1A", "C1", "C3", "C4"), 10.0), 1e-6);
    EXPECT_EQ(m->atom(atom_index(*m, "C2"))->site()->orth(), after[static_cast<std::size_t>(atom_index(*m, "C2"))]);
}

TEST(ConformationSetting, PeptideBackboneTorsionsInOrderSeeEachOther) {
    const HMolecule3d m = dipeptide();
    // phi, psi and the second omega, set one after the other in one edit.
    setting(m, {torsion(*m, "C0", "N1", "CA", "C1", -57.8), torsion(*m, "N1", "CA", "C1", "N2", -47.0),
                torsion(*m, "CA", "C1", "N2", "CM2", 175.25)})
        ->apply();
    EXPECT_LT(angle_gap(torsion_of(*m, "C0", "N1", "CA", "C1"), -57.8), 1e-6);
    EXPECT_LT(angle_gap(torsion_of(*m, "N1", "CA", "C1", "N2"), -47.0), 1e-6);
    EXPECT_LT(angle_gap(torsion_of(*m, "CA", "C1", "N2", "CM2"), 175.25), 1e-6);
    // Two torsions on one bond: the second is set on what the first left.
    setting(m, {torsion(*m, "C0", "N1", "CA", "C1", 60.0), torsion(*m, "C0", "N1", "CA", "CB", -150.0)})->apply();
    EXPECT_LT(angle_gap(torsion_of(*m, "C0", "N1", "CA", "CB"), -150.0), 1e-6);
    EXPECT_GT(angle_gap(torsion_of(*m, "C0", "N1", "CA", "C1"), 60.0), 1.0);
    // The same torsion named from the other end reads the same.
    setting(m, {torsion(*m, "C1", "CA", "N1", "C0", -75.0)})->apply();
    EXPECT_LT(angle_gap(torsion_of(*m, "C0", "N1", "CA", "C1"), -75.0), 1e-6);
}

TEST(ConformationSetting, TheSmallerSideMovesAndTheAtom2SideOnATie) {
    const HMolecule3d m = dipeptide();
    // About N1-CA the N-terminal side (N1, C0, CM1, O0, HN1) is smaller than
    // the CA side (8 atoms): it moves, CA's stays.
    HMolecule3d before(new Molecule3d(*m));
    setting(m, {torsion(*m, "C0", "N1", "CA", "C1", -100.0)})->apply();
    for (const char* fixed : {"CA", "C1", "CB", "HA", "O1", "N2", "CM2", "HN2", "N1"})
        EXPECT_EQ(atom_labelled(*m, fixed)->site()->orth(), atom_labelled(*before, fixed)->site()->orth()) << fixed;
    EXPECT_NE(atom_labelled(*m, "C0")->site()->orth(), atom_labelled(*before, "C0")->site()->orth());
    // Butane is symmetric about C2-C3: on equal sides the atom2 side moves.
    const HMolecule3d b = butane();
    HMolecule3d b0(new Molecule3d(*b));
    setting(b, {torsion(*b, "C4", "C3", "C2", "C1", 70.0)})->apply();
    EXPECT_EQ(atom_labelled(*b, "C2")->site()->orth(), atom_labelled(*b0, "C2")->site()->orth());
    EXPECT_EQ(atom_labelled(*b, "C1")->site()->orth(), atom_labelled(*b0, "C1")->site()->orth());
    EXPECT_NE(atom_labelled(*b, "C4")->site()->orth(), atom_labelled(*b0, "C4")->site()->orth());
    // The moved atoms got sites of their own: the old site objects stay put.
    EXPECT_LT(angle_gap(torsion_of(*b0, "C1", "C2", "C3", "C4"), 180.0), 1e-9);
}

TEST(ConformationSetting, RefusalsLeaveTheMoleculeAsItWas) {
    // A ring (cyclohexane) with a methyl, and a separate water molecule.
    HMolecule3d m = molecule(
        "C R1 1.52 0 0; C R2 0.76 1.32 0.25; C R3 -0.76 1.32 -0.25; C R4 -1.52 0 0; C R5 -0.76 -1.32 0.25;"
        "C R6 0.76 -1.32 -0.25; C ME 3.0 0 0.3; H H1 3.4 1.0 0.4; O W 6 6 6; H HW 6.96 6 6; C NS",
        "R1-R2 R2-R3 R3-R4 R4-R5 R5-R6 R6-R1 R1-ME ME-H1 W-HW");
    const HConformationSetting ok = setting(m, {torsion(*m, "R2", "R1", "ME", "H1", 30.0)});
    const std::vector<HSite> sites = sites_of(*m);
    const std::vector<Point> points = coordinates(*m);
    auto unchanged = [&]() {
        for (int i = 0; i < m->natoms(); ++i) {
            EXPECT_EQ(m->atom(i)->site().unhand(), sites[static_cast<std::size_t>(i)].unhand()) << i;
            if (m->atom(i)->has_site()) {
                EXPECT_EQ(m->atom(i)->site()->orth(), points[static_cast<std::size_t>(i)]) << i;
            }
        }
    };
    struct Case {
        const char *a, *b, *c, *d, *message;
    };
    const std::string prefix = "ConformationSetting::apply() failed - ";
    const Case cases[] = {
        {"R6", "R1", "R2", "R3", "no atoms to rotate"},     // a ring bond
        {"R1", "ME", "H1", "R2", "no atoms to rotate"},     // a terminal atom: nothing beyond it turns
        {"R1", "R2", "W", "HW", "no path between atoms"},   // two fragments
        {"R2", "R1", "ME", "NS", "atom without site"},      // no site to measure
        {"R2", "R1", "ME", "R3", "atoms 1 and 4 are not on the two sides"},  // not bonded in that order
    };
    for (const Case& c : cases) {
        // Alone, and after a torsion that could be set: the whole edit is undone.
        EXPECT_EQ(error_text<std::runtime_error>([&]() { setting(m, {torsion(*m, c.a, c.b, c.c, c.d, 60.0)})->apply(); }),
                  prefix + c.message);
        unchanged();
        EXPECT_EQ(error_text<std::runtime_error>([&]() {
                      setting(m, {torsion(*m, "R2", "R1", "ME", "H1", 30.0), torsion(*m, c.a, c.b, c.c, c.d, 60.0)})
                          ->apply();
                  }),
                  prefix + c.message);
        unchanged();
    }
    ok->apply();
    EXPECT_LT(angle_gap(torsion_of(*m, "R2", "R1", "ME", "H1"), 30.0), 1e-6);
}

TEST(ConformationSetting, ConstructorsCheckTheirHandles) {
    const HMolecule3d m = butane();
    const Angle a = Angle::from_degrees(10.0);
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { TorsionAngleSetting(HMolecule(), 0, 1, 2, 3, a); }),
              "TorsionAngleSetting() invalid zero molecule handle");
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { TorsionAngleSetting(m->atom(0), m->atom(1), HAtom(), m->atom(3), a); }),
              "TorsionAngleSetting() invalid zero atom handle");
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { ValenceAngleSetting(HMolecule(), 0, 1, 2, a); }),
              "ValenceAngleSetting() invalid zero molecule handle");
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { ValenceAngleSetting(HAtom(), m->atom(1), m->atom(2), a); }),
              "ValenceAngleSetting() invalid zero atom handle");
    const TorsionAngleSetting t(HMolecule(m), 0, 1, 2, 3, a);
    EXPECT_EQ(t.atom3_.unhand(), m->atom(2).unhand());
    EXPECT_THROW(TorsionAngleSetting(HMolecule(m), 0, 1, 2, 99, a), std::out_of_range);
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { setting(m, {HTorsionAngleSetting()}); }),
              "ConformationSetting::ConformationSetting: invalid zero torsion handle");
    // Without a molecule there is nothing to turn.
    EXPECT_EQ(error_text<std::runtime_error>([&]() { ConformationSetting().apply(); }),
              "ConformationSetting::apply() failed - no path between atoms");
    EXPECT_FALSE(ConformationSetting().is_absolute());
}

TEST(StoredGeometry, RestoresTheExactCoordinatesAndRefusesAnEditedMolecule) {
    const HMolecule3d m = dipeptide();
    const std::vector<Point> original = coordinates(*m);
    const HStoredGeometry stored(new StoredGeometry(HMolecule(m)));
    EXPECT_TRUE(stored->is_absolute());
    setting(m, {torsion(*m, "C0", "N1", "CA", "C1", 75.0), torsion(*m, "N1", "CA", "C1", "N2", 10.0)})->apply();
    for (int pass = 0; pass < 2; ++pass) {
        stored->apply();
        EXPECT_EQ(coordinates(*m), original);
        // What is done to the atoms now cannot reach the record.
        m->atom(0)->site()->set_coordinates(Point(9, 9, 9));
    }
    stored->apply();
    EXPECT_EQ(coordinates(*m), original);

    // Stepping through conformers: a collection of settings with the start geometry.
    GeometryCollection conformers(HMolecule(m), {HMoleculeGeometryEdit(setting(m, {torsion(*m, "C0", "N1", "CA", "C1", -60.0)})),
                                                 HMoleculeGeometryEdit(setting(m, {torsion(*m, "C0", "N1", "CA", "C1", 180.0)})),
                                                 HMoleculeGeometryEdit(stored)});
    conformers.start();
    EXPECT_LT(angle_gap(torsion_of(*m, "C0", "N1", "CA", "C1"), -60.0), 1e-6);
    conformers.next();
    EXPECT_LT(angle_gap(torsion_of(*m, "C0", "N1", "CA", "C1"), 180.0), 1e-6);
    conformers.next();
    EXPECT_EQ(coordinates(*m), original);

    // Sites given by atom index; counts must agree.
    std::vector<HSite> sites = sites_of(*m);
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { StoredGeometry(HMolecule(m), std::vector<HSite>(3)); }),
              "StoredGeometry::StoredGeometry: Number of atoms (" + std::to_string(m->natoms()) +
                  ") does not match number of sites (3)");
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { StoredGeometry(HMolecule(), sites); }),
              "StoredGeometry::StoredGeometry: Invalid molecule.");
    EXPECT_EQ(error_text<std::invalid_argument>([&]() { StoredGeometry s{HMolecule()}; }),
              "StoredGeometry::StoredGeometry: Invalid molecule.");
    StoredGeometry given(HMolecule(m), sites);
    EXPECT_NE(given.site(m->atom(0)).unhand(), sites[0].unhand());
    EXPECT_EQ(given.site(m->atom(0))->orth(), sites[0]->orth());
    StoredGeometry taken(HMolecule(m), sites);
    taken.load_molecule(HMolecule());
    EXPECT_EQ(error_text<std::runtime_error>([&]() { taken.apply(); }), "StoredGeometry::apply: no molecule");
    EXPECT_EQ(given.site(m->atom(0))->orth(), sites[0]->orth());

    // An atom more, or another atom in place of one: refused, nothing moved.
    m->atom(1)->site()->set_coordinates(Point(5, 5, 5));
    const std::vector<Point> moved = coordinates(*m);
    m->add(atom_at(Element("H"), "HX", 1, 1, 1));
    EXPECT_EQ(error_text<std::runtime_error>([&]() { stored->apply(); }),
              "StoredGeometry::apply: The molecule has been edited, so this StoredGeometry is invalid");
    m->remove(m->atom(0));
    EXPECT_EQ(error_text<std::runtime_error>([&]() { stored->apply(); }),
              "StoredGeometry::apply:  at least one atom in is no longer in the molecule.");
    EXPECT_EQ(m->atom(0)->site()->orth(), moved[1]);
}

TEST(ConformationSetting, AxisAtomsAtOnePointAreRefusedAndTheMoleculeIsLeft) {
    // C2 and C3 at one point: no axis to turn about.
    HMolecule3d m = molecule("C C1 0 0 0; C C2 1.5 0 0; C C3 1.5 0 0; C C4 2.5 1 0", "C1-C2 C2-C3 C3-C4");
    std::vector<HSite> sites;
    for (int i = 0; i < m->natoms(); ++i) sites.push_back(m->atom(i)->site());
    EXPECT_EQ(error_text<std::runtime_error>([&]() { setting(m, {torsion(*m, "C1", "C2", "C3", "C4", 60.0)})->apply(); }),
              "ConformationSetting::apply() failed - atoms 2 and 3 coincide");
    for (int i = 0; i < m->natoms(); ++i) EXPECT_EQ(m->atom(i)->site(), sites[static_cast<std::size_t>(i)]) << i;
}
