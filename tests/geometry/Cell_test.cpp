#include "molcryst/geometry/Cell.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "GeometryTestSupport.h"
#include "SymmetryTestGroups.h"
#include "common/Text.h"

using namespace molcryst;
using molcryst::testing::printed;

namespace {
typedef Vector<double, 3> V3;

const double pi = 3.14159265358979323846;
Angle deg(double d) { return Angle::from_degrees(d); }

// The relation as text, "none" when there is none.
std::string relation(const Cell& cell, const Point& p, const Point& q, double tolerance = 1e-7) {
    THandle<CrystalSymmetryTransformation> t = cell.symmetry_relation(p, q, tolerance);
    EXPECT_EQ(t.unhand() != nullptr, cell.is_symmetry_related(p, q, tolerance));
    if (t.unhand() == nullptr) return "none";
    const std::string text = printed(t->symmetry_operator()) + " + " + printed(t->lattice_translation());
    EXPECT_TRUE(equals(*t * p, q, tolerance)) << text;
    return text;
}
}  // namespace

TEST(Cell, MonoclinicMatricesInTheStandardOrientation) {
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90), molcryst_test::p21_c());
    const double cb = std::cos(100 * pi / 180), sb = std::sin(100 * pi / 180);
    const Matrix<double, 3, 3>& a = cell.orth_from_frac();
    EXPECT_TRUE(equals(a.row(1), V3(10, 0, 8 * cb), 1e-12));
    EXPECT_TRUE(equals(a.row(2), V3(0, 12, 0), 1e-12));
    EXPECT_TRUE(equals(a.row(3), V3(0, 0, 8 * sb), 1e-12));
    EXPECT_NEAR(cell.volume(), 10 * 12 * 8 * sb, 1e-10);
    EXPECT_NEAR(cell.beta().degrees(), 100.0, 1e-12);
    EXPECT_NEAR(cell.alpha().degrees(), 90.0, 1e-12);
    // The reciprocal axes: |b*| = 1/b, and a* is normal to b and c.
    EXPECT_NEAR(cell.b_star_axis().length(), 1.0 / 12, 1e-15);
    EXPECT_NEAR(cell.a_star_axis().length(), 1.0 / (10 * sb), 1e-15);
    EXPECT_NEAR(cell.a_star_axis().dot(cell.c_axis()), 0.0, 1e-15);
    EXPECT_NEAR(cell.a_star_axis().dot(cell.a_axis()), 1.0, 1e-15);
    // Fractional to orthogonal and back.
    const Point f(0.25, -0.5, 1.75);
    const Point o = cell.orthogonal(f);
    EXPECT_TRUE(equals(o, Point(2.5 + 1.75 * 8 * cb, -6.0, 1.75 * 8 * sb), 1e-12));
    EXPECT_TRUE(equals(cell.fractional(o), f, 1e-14));
}

TEST(Cell, TriclinicCellFromParametersAndFromEdges) {
    const Cell cell(5.0, 6.0, 7.0, deg(80), deg(85), deg(95));
    const double ca = std::cos(80 * pi / 180), cb = std::cos(85 * pi / 180), cg = std::cos(95 * pi / 180);
    EXPECT_NEAR(cell.volume(), 5 * 6 * 7 * std::sqrt(1 - ca * ca - cb * cb - cg * cg + 2 * ca * cb * cg), 1e-10);
    EXPECT_TRUE(equals(V3(cell.a(), cell.b(), cell.c()), V3(5, 6, 7), 1e-14));
    EXPECT_TRUE(
        equals(V3(cell.alpha().degrees(), cell.beta().degrees(), cell.gamma().degrees()), V3(80, 85, 95), 1e-12));
    EXPECT_EQ(cell.a_axis()[1], 0.0);
    EXPECT_EQ(cell.b_axis()[2], 0.0);
    EXPECT_GT(cell.c_axis()[2], 0.0);
    const Matrix<double, 3, 3> identity = cell.frac_from_orth() * cell.orth_from_frac();
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_NEAR(identity(i, j), i == j ? 1.0 : 0.0, 1e-15);

    // The same cell turned in space keeps its fractional frame and lengths.
    const Matrix<double, 3, 3> turn(0, -1, 0, 1, 0, 0, 0, 0, 1);
    const Cell turned(turn * cell.a_axis(), turn * cell.b_axis(), turn * cell.c_axis());
    EXPECT_NEAR(turned.volume(), cell.volume(), 1e-10);
    EXPECT_TRUE(equals(turned.orthogonal(Point(1, 0, 0)), Point(0, 5, 0), 1e-14));

    EXPECT_THROW(Cell(V3(1, 0, 0), V3(0, 1, 0), V3(1, 1, 0)), std::invalid_argument);
    EXPECT_THROW(Cell(5, 6, 7, deg(120), deg(120), deg(120)), std::invalid_argument);
    EXPECT_THROW(Cell(5, 6, 7, deg(30), deg(30), deg(90)), std::invalid_argument);
    EXPECT_THROW(Cell(-5, 6, 7, deg(90), deg(90), deg(90)), std::invalid_argument);
    // The default cell is the unit cube in P1.
    EXPECT_EQ(Cell().orthogonal(Point(0.1, 0.2, 0.3)), Point(0.1, 0.2, 0.3));
    EXPECT_EQ(Cell().spacegroup().noperators(), 1);
}

TEST(Cell, ArchiveRoundTripEqualityAndPrint) {
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90), molcryst_test::c2_c());
    const Cell copy = molcryst_test::round_trip(cell);
    EXPECT_EQ(copy, cell);
    EXPECT_EQ(copy.frac_from_orth(), cell.frac_from_orth());
    EXPECT_NE(cell, Cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90), molcryst_test::p21_c()));
    EXPECT_EQ(printed(Cell(2, 3, 4, deg(90), deg(90), deg(90), molcryst_test::p_1bar())),
              "a 2 b 3 c 4 alpha 90 beta 90 gamma 90 P-1 (2, triclinic): x,y,z; -x,-y,-z");

    const std::vector<unsigned char> bytes =
        molcryst_test::image(1.0, 1.0, 1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0);  // b, c zero
    EXPECT_EQ(molcryst_test::read_error<Cell>(bytes), "Cell::read axes: the axes span no volume");
    // A failed read leaves the cell as it was.
    Archive ar = molcryst_test::archive_of(bytes);
    Cell kept = cell;
    EXPECT_THROW(kept.read(ar), std::runtime_error);
    EXPECT_EQ(kept, cell);
}

TEST(Cell, SymmetryRelationsInPMinus1) {
    const Cell cell(5, 6, 7, deg(80), deg(85), deg(95), molcryst_test::p_1bar());
    // Inversion through the origin, and across cell edges.
    EXPECT_EQ(relation(cell, Point(0.1, 0.2, 0.3), Point(-0.1, -0.2, -0.3)), "-x,-y,-z + (0, 0, 0)");
    EXPECT_EQ(relation(cell, Point(0.1, 0.2, 0.3), Point(0.9, 1.8, -0.3)), "-x,-y,-z + (1, 2, 0)");
    // Inversion centre at (1/2, 1/2, 1/2).
    EXPECT_EQ(relation(cell, Point(0.4, 0.5, 0.5), Point(0.6, 0.5, 0.5)), "-x,-y,-z + (1, 1, 1)");
    // A pure lattice translation goes to the identity, which comes first.
    EXPECT_EQ(relation(cell, Point(0.1, 0.2, 0.3), Point(1.1, 0.2, -0.7)), "x,y,z + (1, 0, -1)");
    EXPECT_EQ(relation(cell, Point(0, 0, 0), Point(0, 0, 0)), "x,y,z + (0, 0, 0)");
    EXPECT_EQ(relation(cell, Point(0.1, 0.2, 0.3), Point(0.15, 0.2, 0.3)), "none");
    // The tolerance is strict and per component.
    EXPECT_NE(relation(cell, Point(0.1, 0.2, 0.3), Point(-0.1 + 0.9e-7, -0.2, -0.3)), "none");
    EXPECT_EQ(relation(cell, Point(0.1, 0.2, 0.3), Point(-0.1 + 1.1e-7, -0.2, -0.3)), "none");
    EXPECT_FALSE(cell.is_symmetry_related(Point(0, 0, 0), Point(0, 0, 0), 0.0));
    // Far apart or undefined points are simply unrelated.
    EXPECT_EQ(relation(cell, Point(0, 0, 0), Point(1e12, 0, 0)), "none");
    EXPECT_EQ(relation(cell, Point(0, 0, 0), Point(std::nan(""), 0, 0)), "none");
}

TEST(Cell, SymmetryRelationsInP21c) {
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90), molcryst_test::p21_c());
    const Point p(0.1, 0.2, 0.3);
    // The screw axis, the inversion and the glide plane, each across a cell edge.
    EXPECT_EQ(relation(cell, p, Point(0.9, 0.7, 0.2)), "-x,y+1/2,-z+1/2 + (1, 0, 0)");
    EXPECT_EQ(relation(cell, p, Point(-0.1, -1.2, -0.3)), "-x,-y,-z + (0, -1, 0)");
    EXPECT_EQ(relation(cell, p, Point(0.1, 0.3, -0.2)), "x,-y+1/2,z+1/2 + (0, 0, -1)");
    EXPECT_EQ(relation(cell, p, Point(0.1, 0.7, 0.3)), "none");  // a centring that P21/c lacks
    // On an inversion centre the identity, being first, wins.
    EXPECT_EQ(relation(cell, Point(0.5, 0.5, 0), Point(-0.5, 0.5, 0)), "x,y,z + (-1, 0, 0)");
    // The inverse relation runs the other way.
    THandle<CrystalSymmetryTransformation> t = cell.symmetry_relation(p, Point(0.9, 0.7, 0.2));
    EXPECT_TRUE(equals(t->inverse() * Point(0.9, 0.7, 0.2), p, 1e-15));
}

TEST(Cell, SymmetryRelationsInC2c) {
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90), molcryst_test::c2_c());
    const Point p(0.1, 0.2, 0.3);
    EXPECT_EQ(relation(cell, p, Point(0.6, 0.7, 0.3)), "x+1/2,y+1/2,z + (0, 0, 0)");
    EXPECT_EQ(relation(cell, p, Point(0.6, -0.3, 0.3)), "x+1/2,y+1/2,z + (0, -1, 0)");
    EXPECT_EQ(relation(cell, p, Point(-0.1, 0.2, 0.2)), "-x,y,-z+1/2 + (0, 0, 0)");
    EXPECT_EQ(relation(cell, p, Point(0.4, 0.3, 1.7)), "-x+1/2,-y+1/2,-z + (0, 0, 2)");
    EXPECT_EQ(relation(cell, p, Point(0.6, 0.3, 0.8)), "x+1/2,-y+1/2,z+1/2 + (0, 0, 0)");
    EXPECT_EQ(relation(cell, p, Point(0.6, 0.2, 0.3)), "none");
    // A centring image is a translational relation.
    EXPECT_TRUE(cell.symmetry_relation(p, Point(0.6, 0.7, 0.3))->is_translational());
    EXPECT_FALSE(cell.symmetry_relation(p, Point(-0.1, 0.2, 0.2))->is_translational());
}

TEST(Cell, HighSymmetryGroupRelatesEveryImage) {
    const Cell cell(4, 4, 4, deg(90), deg(90), deg(90), molcryst_test::pm_3m());
    const Point p(0.1, 0.23, 0.37);
    for (const CrystalSymmetryOperator& op : cell.spacegroup().operators()) {
        const Point q = Point(op * p + V3(2, -1, 0));
        EXPECT_TRUE(cell.is_symmetry_related(p, q));
        EXPECT_EQ(cell.symmetry_relation(p, q)->symmetry_operator(), op);
    }
    EXPECT_FALSE(cell.is_symmetry_related(p, Point(0.1, 0.23, 0.38)));
}
