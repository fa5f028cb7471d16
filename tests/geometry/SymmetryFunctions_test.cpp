#include "molcryst/geometry/SymmetryFunctions.h"

#include <gtest/gtest.h>

#include <random>

#include "SymmetryTestGroups.h"
#include "common/Text.h"
#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/geometry/OrthogonalSolid.h"
#include "molcryst/geometry/Slab.h"
#include "molcryst/geometry/TransformedSolidComposite.h"

using namespace molcryst;

namespace {
typedef Vector<double, 3> V3;
typedef Vector<int, 3> V3i;

Angle deg(double d) { return Angle::from_degrees(d); }

THandle<Solid> box(const Point& a, const Point& b) { return THandle<Solid>(new Box(a, b)); }

std::string text_of(const std::vector<CrystalSymmetryTransformation>& ts) {
    std::string out;
    for (std::size_t i = 0; i < ts.size(); ++i) out += (i == 0 ? "" : " ") + molcryst::testing::printed(ts[i]);
    return out;
}
}  // namespace

TEST(SymmetryFunctions, FindTranslationCoversEveryWayIn) {
    const Box unit(Point(0, 0, 0), Point(1, 1, 1));
    TranslationRange r = find_translation(Point(0.3, 2.3, -0.7), unit);
    EXPECT_EQ(r.lower, V3i(0, -2, 1));
    EXPECT_EQ(r.upper, V3i(0, -2, 1));
    // A point on a face comes in from both sides; rounding cannot lose it.
    r = find_translation(Point(1.0 + 1e-13, 0.5, 0.5), unit);
    EXPECT_EQ(r.lower[0], -1);
    EXPECT_EQ(r.upper[0], 0);
    EXPECT_EQ(find_translation(Point(0.5, 0.5, 0.5), Box(Point(-1, 0, 0), Point(2, 1, 1))).count(), 3);
    // A thin box that the point cannot reach along x.
    const Box thin(Point(0, 0, 0), Point(0.2, 1, 1));
    EXPECT_TRUE(find_translation(Point(0.5, 0.5, 0.5), thin).empty());
    EXPECT_TRUE(find_translation(Point(0.5, 0.5, 0.5), Box()).empty());

    // A set: the ranges of the points that can come in, joined.
    r = find_translation(std::vector<Point>{Point(0.1, 0.5, 0.5), Point(0.5, 0.5, 0.5), Point(-2.9, 0.5, 3.5)}, thin);
    EXPECT_EQ(r.lower, V3i(-0, 0, -3));
    EXPECT_EQ(r.upper, V3i(3, 0, 0));
    EXPECT_TRUE(find_translation(std::vector<Point>(), unit).empty());

    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_THROW(find_translation(Point(), Box(Point(0, 0, -inf), Point(1, 1, 1))), std::domain_error);
    EXPECT_THROW(find_translation(Point(), Box(Point(0, 0, 0), Point(1e5, 1e5, 1e5))), std::domain_error);
    EXPECT_THROW(find_translation(Point(1e12, 0, 0), unit), std::domain_error);
}

TEST(SymmetryFunctions, SolidsInBothFrames) {
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(120), deg(90), molcryst_test::p21_c());
    // A box in Angstrom around the origin.
    const OrthogonalSolid around(box(Point(-2, -2, -2), Point(2, 2, 2)));
    EXPECT_TRUE(around.contains(cell, Point(0.1, 0.1, 0.1)));  // (-0.2, 1.2, 0.69) Angstrom
    EXPECT_FALSE(around.contains(cell, Point(0.1, 0.2, 0.1)));
    const Box fb = around.fractional_box(cell);
    for (int c = 0; c < 8; ++c) {
        const Point corner((c & 1) ? 2 : -2, (c & 2) ? 2 : -2, (c & 4) ? 2 : -2);
        EXPECT_TRUE(Box(fb).expand(1e-12).contains(cell.fractional(corner)));
    }
    const FractionalSolid packing(box(Point(0, 0, 0), Point(1, 1, 1)));
    EXPECT_TRUE(packing.contains(cell, Point(1, 0, 0.5)));
    EXPECT_EQ(packing.fractional_box(cell), Box(Point(0, 0, 0), Point(1, 1, 1)));

    // A slab through the cell, cut to the packing box.
    THandle<TransformedSolid> slab(new OrthogonalSolid(THandle<Solid>(new Slab(Plane(V3(0, 1, 0), 6.0), 2.0))));
    const TransformedSolidComposite cut(slab, THandle<TransformedSolid>(new FractionalSolid(box(Point(0, 0, 0), Point(1, 1, 1)))));
    EXPECT_TRUE(cut.contains(cell, Point(0.5, 0.5, 0.5)));
    EXPECT_FALSE(cut.contains(cell, Point(0.5, 0.7, 0.5)));  // y = 8.4 Angstrom, outside the slab
    EXPECT_FALSE(cut.contains(cell, Point(1.5, 0.5, 0.5)));  // outside the box
    EXPECT_TRUE(cut.fractional_box(cell).is_finite());
    EXPECT_THROW(FractionalSolid(THandle<Solid>()), std::invalid_argument);
    EXPECT_THROW(TransformedSolidComposite(slab, THandle<TransformedSolid>()), std::invalid_argument);
    // The slab alone has no end to search.
    EXPECT_THROW(find_symmetry_transformations(cell, std::vector<Point>{Point(0.5, 0.5, 0.5)}, *slab,
                                               SymmetryFunctions::AnyIncluded),
                 std::domain_error);
    // The slab holds 5/12 <= y <= 7/12: of the images at y 0.45, 0.95, 0.55, 0.05, two.
    EXPECT_EQ(text_of(find_symmetry_transformations(cell, std::vector<Point>{Point(0.1, 0.45, 0.3)}, cut,
                                                    SymmetryFunctions::AnyIncluded)),
              "x,y,z -x+1,-y+1,-z+1");
}

TEST(SymmetryFunctions, PointsIntoTheUnitCell) {
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90), molcryst_test::p21_c());
    const FractionalSolid unit(box(Point(0, 0, 0), Point(1, 1, 1)));
    // One general position: one image per operator, in operator order.
    EXPECT_EQ(text_of(find_symmetry_transformations(cell, {Point(0.1, 0.2, 0.3)}, unit, SymmetryFunctions::AnyIncluded)),
              "x,y,z -x+1,y+1/2,-z+1/2 -x+1,-y+1,-z+1 x,-y+1/2,z+1/2");
    // An atom on the cell corner has its images on all eight corners, x outermost.
    const std::vector<CrystalSymmetryTransformation> corner =
        find_symmetry_transformations(cell, {Point(0, 0, 0)}, unit, SymmetryFunctions::AnyIncluded);
    // The screw and the glide put it at (0, 1/2, 1/2), on the faces x = 0 and x = 1.
    ASSERT_EQ(corner.size(), 8u + 2u + 8u + 2u);
    EXPECT_EQ(corner[0].lattice_translation(), V3i(0, 0, 0));
    EXPECT_EQ(corner[1].lattice_translation(), V3i(0, 0, 1));
    EXPECT_EQ(corner[4].lattice_translation(), V3i(1, 0, 0));
    EXPECT_EQ(text_of(std::vector<CrystalSymmetryTransformation>(corner.begin() + 8, corner.begin() + 10)),
              "-x,y+1/2,-z+1/2 -x+1,y+1/2,-z+1/2");
    // Two points across the box face: any admits the translations that
    // bring in either, all only those that bring in both.
    const Cell p1(10.0, 12.0, 8.0, deg(90), deg(100), deg(90));
    const std::vector<Point> pair{Point(0.9, 0.5, 0.5), Point(1.1, 0.5, 0.5)};
    EXPECT_EQ(text_of(find_symmetry_transformations(p1, pair, unit, SymmetryFunctions::AnyIncluded)), "x-1,y,z x,y,z");
    EXPECT_EQ(text_of(find_symmetry_transformations(p1, pair, unit, SymmetryFunctions::AllIncluded)), "");
    const std::vector<Point> inside{Point(0.8, 0.5, 0.5), Point(0.9, 0.5, 0.5)};
    EXPECT_EQ(text_of(find_symmetry_transformations(p1, inside, unit, SymmetryFunctions::AllIncluded)), "x,y,z");
    EXPECT_EQ(find_symmetry_transformations(cell, std::vector<Point>(), unit, SymmetryFunctions::AnyIncluded).size(), 0u);
}

TEST(SymmetryFunctions, BoxRouteFindsEveryTransformationOfThePointRoute) {
    std::mt19937 random(99);
    std::uniform_real_distribution<double> u(-0.3, 0.3);
    const Spacegroup groups[] = {molcryst_test::p_1bar(), molcryst_test::p21_c(), molcryst_test::c2_c(),
                                 molcryst_test::pm_3m()};
    for (const Spacegroup& group : groups) {
        const Cell cell(10.0, 11.0, 12.0, deg(90), deg(95), deg(90), group);
        const FractionalSolid region(box(Point(-0.25, 0.0, -0.5), Point(1.25, 2.0, 1.0)));
        for (int trial = 0; trial < 10; ++trial) {
            const Point centre(2.0 * u(random), 2.0 * u(random), 2.0 * u(random));
            std::vector<Point> molecule;
            Box extent;
            for (int k = 0; k < 12; ++k) {
                molecule.push_back(Point(centre + V3(u(random), u(random), u(random))));
                extent.merge(molecule.back());
            }
            const std::vector<CrystalSymmetryTransformation> by_points =
                find_symmetry_transformations(cell, molecule, region, SymmetryFunctions::AnyIncluded);
            const std::vector<CrystalSymmetryTransformation> by_box = find_symmetry_transformations(
                cell, FractionalSolid(THandle<Solid>(new Box(extent))), region, SymmetryFunctions::AnyIncluded);
            // Weeding out the boxes with no point inside leaves the point route, in its order.
            std::vector<CrystalSymmetryTransformation> weeded;
            for (const CrystalSymmetryTransformation& t : by_box) {
                bool inside = false;
                for (const Point& p : molecule) inside = inside || region.contains(cell, t * p);
                if (inside) weeded.push_back(t);
            }
            EXPECT_GE(by_box.size(), by_points.size());
            EXPECT_EQ(text_of(weeded), text_of(by_points));
        }
    }
}

TEST(SymmetryFunctions, BoxRouteAllIncludedNeedsTheWholeBoxInside) {
    const Cell cell(10.0, 10.0, 10.0, deg(90), deg(90), deg(90), molcryst_test::p_1bar());
    const FractionalSolid small(box(Point(0.1, 0.1, 0.1), Point(0.2, 0.2, 0.2)));
    const FractionalSolid region(box(Point(0, 0, 0), Point(1, 1, 1)));
    EXPECT_EQ(text_of(find_symmetry_transformations(cell, small, region, SymmetryFunctions::AllIncluded)),
              "x,y,z -x+1,-y+1,-z+1");
    const FractionalSolid straddling(box(Point(0.9, 0.1, 0.1), Point(1.1, 0.2, 0.2)));
    EXPECT_EQ(text_of(find_symmetry_transformations(cell, straddling, region, SymmetryFunctions::AllIncluded)), "");
    EXPECT_EQ(text_of(find_symmetry_transformations(cell, straddling, region, SymmetryFunctions::AnyIncluded)),
              "x-1,y,z x,y,z -x+1,-y+1,-z+1 -x+2,-y+1,-z+1");
    EXPECT_TRUE(find_symmetry_transformations(cell, FractionalSolid(THandle<Solid>(new Box())), region,
                                              SymmetryFunctions::AnyIncluded)
                    .empty());
}
