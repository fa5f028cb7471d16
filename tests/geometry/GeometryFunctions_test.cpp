#include "molcryst/geometry/GeometryFunctions.h"

#include <gtest/gtest.h>

#include <random>

using namespace molcryst;

namespace {
typedef Vector<double, 3> V3;
}

TEST(GeometryFunctions, TorsionSignFollowsTheCrystallographicConvention) {
    // Looking from b to c along +z, a stands along +x and d along +y: the
    // near bond turns clockwise onto the far one, +90 degrees.
    const Point a(1, 0, 0), b(0, 0, 0), c(0, 0, 1);
    EXPECT_NEAR(torsion_angle(a, b, c, Point(0, 1, 1)).degrees(), 90.0, 1e-12);
    EXPECT_NEAR(torsion_angle(a, b, c, Point(0, -1, 1)).degrees(), -90.0, 1e-12);
    EXPECT_NEAR(torsion_angle(a, b, c, Point(1, 0, 1)).degrees(), 0.0, 1e-12);     // cis
    EXPECT_EQ(torsion_angle(a, b, c, Point(-1, 0, 1)).degrees(), 180.0);  // trans
    EXPECT_EQ(torsion_angle(Point(-1, 0, 0), b, c, Point(1, 0, 1)).degrees(), 180.0);
    // Reversing the chain keeps the sign; mirroring it flips it.
    EXPECT_NEAR(torsion_angle(Point(0, 1, 1), c, b, a).degrees(), 90.0, 1e-12);
    EXPECT_NEAR(torsion_angle(Point(-1, 0, 0), b, c, Point(0, 1, 1)).degrees(), -90.0, 1e-12);
    // The form on bond vectors agrees.
    EXPECT_NEAR(torsion_angle(b - a, c - b, Point(0, 1, 1) - c).degrees(), 90.0, 1e-12);
    // 60 degrees of a staggered chain.
    const double s = std::sqrt(3.0) / 2;
    EXPECT_NEAR(torsion_angle(a, b, c, Point(0.5, s, 1)).degrees(), 60.0, 1e-12);
}

TEST(GeometryFunctions, UndefinedTorsionsAreZeroAndInvalid) {
    const Point a(1, 0, 0), b(0, 0, 0), c(0, 0, 1), d(0, 1, 1);
    const Angle limit = Angle::from_degrees(5.0);
    EXPECT_TRUE(valid_torsion(a, b, c, d, limit));
    // a on the line b-c: straight at b.
    EXPECT_EQ(torsion_angle(Point(0, 0, -1), b, c, d).degrees(), 0.0);
    EXPECT_FALSE(valid_torsion(Point(0, 0, -1), b, c, d, limit));
    // Within the limit of straight, and folded back onto the axis.
    EXPECT_FALSE(valid_torsion(Point(0.05, 0, -1), b, c, d, limit));
    EXPECT_TRUE(valid_torsion(Point(0.2, 0, -1), b, c, d, limit));
    EXPECT_FALSE(valid_torsion(Point(0.05, 0, 1), b, c, d, limit));
    // Coincident atoms.
    EXPECT_FALSE(valid_torsion(a, b, b, d, limit));
    EXPECT_EQ(torsion_angle(a, b, b, d).degrees(), 0.0);
    EXPECT_FALSE(valid_torsion(b - a, V3(), d - c, limit));
}

TEST(GeometryFunctions, AnglesCentroidAndPaths) {
    EXPECT_NEAR(angle(Point(1, 0, 0), Point(), Point(0, 2, 0)).degrees(), 90.0, 1e-12);
    EXPECT_NEAR(angle(Point(1, 0, 0), Point(), Point(-3, 1e-9, 0)).degrees(), 180.0, 1e-7);
    EXPECT_EQ(angle(Point(), Point(), Point(0, 2, 0)).degrees(), 0.0);  // an arm of zero length
    EXPECT_NEAR(angle(V3(1, 1, 0), V3(1, 0, 0)).degrees(), 45.0, 1e-12);

    EXPECT_EQ(centroid(std::vector<Point>{Point(0, 0, 0), Point(2, 4, 6)}), Point(1, 2, 3));
    EXPECT_EQ(centroid(std::vector<Point>()), Point());
    const std::vector<V3> vectors{V3(1, 1, 1), V3(3, 3, 3)};
    EXPECT_EQ(centroid(vectors.begin(), vectors.end()), Point(2, 2, 2));

    // 0 - 1 - 2 - 3, and 4 alone; node 3's list is a null handle.
    typedef THandle<std::vector<int> > HList;
    std::vector<HList> adjacency{HList(new std::vector<int>{1}), HList(new std::vector<int>{0, 2}),
                                 HList(new std::vector<int>{1, 3}), HList(), HList(new std::vector<int>())};
    EXPECT_EQ(shortest_path(adjacency, 0, 2), 2);
    EXPECT_EQ(shortest_path(adjacency, 1, 1), 0);
    EXPECT_EQ(shortest_path(adjacency, 0, 3), 3);
    EXPECT_EQ(shortest_path(adjacency, 3, 0), -1);  // no way out of 3
    EXPECT_EQ(shortest_path(adjacency, 0, 4), -1);
    EXPECT_THROW(shortest_path(adjacency, 0, 5), std::out_of_range);
    adjacency[4]->push_back(9);
    EXPECT_THROW(shortest_path(adjacency, 4, 0), std::out_of_range);
}

TEST(GeometryFunctions, LongChainPathNeedsNoDeepStack) {
    typedef THandle<std::vector<int> > HList;
    const int n = 200000;
    std::vector<HList> adjacency;
    for (int i = 0; i < n; ++i) {
        HList list(new std::vector<int>());
        if (i > 0) list->push_back(i - 1);
        if (i + 1 < n) list->push_back(i + 1);
        adjacency.push_back(list);
    }
    EXPECT_EQ(shortest_path(adjacency, 0, n - 1), n - 1);
}

TEST(GeometryFunctions, InternalCoordinatesAreReproduced) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> u(-3.0, 3.0);
    for (int trial = 0; trial < 200; ++trial) {
        const Point a(u(random), u(random), u(random));
        const Point b(u(random), u(random), u(random));
        const Point c(u(random), u(random), u(random));
        const double length = 1.0 + 0.01 * (trial % 50);
        const Angle valence = Angle::from_degrees(60.0 + 0.5 * (trial % 100));
        const Angle torsion = Angle::from_degrees(-179.0 + 1.79 * (trial % 200));
        const double cba = angle(c, b, a).degrees();
        if (cba < 2.0 || cba > 178.0) continue;  // the reference must define a plane
        const Point d = internal_to_orthogonal(a, length, b, valence, c, torsion);
        EXPECT_NEAR(distance(d, a), length, 1e-12);
        EXPECT_NEAR(angle(d, a, b).degrees(), valence.degrees(), 1e-9);
        EXPECT_NEAR(torsion_angle(d, a, b, c).degrees(), torsion.degrees(), 1e-8);
    }
    // A reference on the line a-b: any perpendicular will do, and no throw.
    const Point d = internal_to_orthogonal(Point(), 1.0, Point(1, 0, 0), Angle::from_degrees(109.5), Point(2, 0, 0),
                                           Angle::from_degrees(60.0));
    EXPECT_NEAR(distance(d, Point()), 1.0, 1e-12);
    EXPECT_NEAR(angle(d, Point(), Point(1, 0, 0)).degrees(), 109.5, 1e-9);
}

TEST(GeometryFunctions, AlignTwoVectorsLaysAOnXAndBInXy) {
    const V3 a(1, 2, 3), b(-2, 0.5, 1);
    const Matrix<double, 3, 3> r = align_two_vectors(a, b, V3(1, 0, 0), V3(0, 1, 0));
    const V3 rb = r * b;
    EXPECT_TRUE(equals(r * a, V3(a.length(), 0, 0), 1e-12));
    EXPECT_NEAR(rb[2], 0.0, 1e-12);
    EXPECT_GT(rb[1], 0.0);
    EXPECT_NEAR(r.determinant(), 1.0, 1e-12);  // a rotation, not a reflection
    EXPECT_THROW(align_two_vectors(a, a * 2.0, V3(1, 0, 0), V3(0, 1, 0)), std::invalid_argument);
}
