#include "molcryst/geometry/Plane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "GeometryTestSupport.h"
#include "common/Text.h"
#include "molcryst/geometry/Box.h"
#include "molcryst/geometry/Slab.h"

using namespace molcryst;
using molcryst::testing::printed;

namespace {
typedef Vector<double, 3> V3;
}

TEST(Plane, LeastSquaresPlaneOfPoints) {
    // Points on z = 2 with noise that averages out: the plane z = 2.
    const std::vector<Point> flat{Point(0, 0, 2.1), Point(3, 0, 1.9), Point(0, 3, 1.9), Point(3, 3, 2.1)};
    const Plane p(flat);
    EXPECT_NEAR(p.normal()[2], 1.0, 1e-12);
    EXPECT_NEAR(p.distance(), 2.0, 1e-12);

    // A tilted ring: every point lies on the plane, the normal points away
    // from the origin.
    const V3 n = V3(1, -2, 2) / 3.0;
    std::vector<Point> ring;
    const V3 e1 = V3(2, 1, 0).unit();
    const V3 e2 = cross(n, e1);
    for (int i = 0; i < 6; ++i) {
        const double t = i * 3.14159265358979323846 / 3;
        ring.push_back(Point(n * -5.0 + e1 * (1.4 * std::cos(t)) + e2 * (1.4 * std::sin(t))));
    }
    const Plane tilted(ring);
    EXPECT_TRUE(equals(tilted.normal(), -n, 1e-12));
    EXPECT_NEAR(tilted.distance(), 5.0, 1e-12);
    for (const Point& q : ring) EXPECT_NEAR(tilted.signed_distance(q), 0.0, 1e-12);
    EXPECT_NEAR(distance(tilted.project(Point()), Point(n * -5.0)), 0.0, 1e-12);

    // Through the origin the largest normal component is positive.
    const Plane xz(std::vector<Point>{Point(1, 0, 0), Point(0, 0, 1), Point(-1, 0, -1)});
    EXPECT_TRUE(equals(xz.normal(), V3(0, 1, 0), 1e-12));
}

TEST(Plane, FewPointsStillGiveAPlane) {
    EXPECT_EQ(Plane(std::vector<Point>()), Plane());
    const Plane one(std::vector<Point>{Point(1, 2, 3)});
    EXPECT_EQ(one.normal(), V3(0, 0, 1));
    EXPECT_DOUBLE_EQ(one.distance(), 3.0);
    const Plane two(std::vector<Point>{Point(0, 0, 0), Point(2, 0, 0)});
    EXPECT_NEAR(two.normal()[0], 0.0, 1e-12);
    EXPECT_NEAR(two.normal().length(), 1.0, 1e-12);
}

TEST(Plane, ConstructorNormalisesAndArchives) {
    const Plane p(V3(0, 0, 2), -1.5);
    EXPECT_EQ(p.normal(), V3(0, 0, 1));
    EXPECT_DOUBLE_EQ(p.distance(), -1.5);
    EXPECT_THROW(Plane(V3(), 1.0), std::invalid_argument);
    const Plane q(V3(1, 2, 3), 4.25);
    EXPECT_EQ(molcryst_test::round_trip(q), q);
    EXPECT_EQ(printed(Plane()), "normal (0, 0, 1) distance 0");
    EXPECT_EQ(molcryst_test::read_error<Plane>(molcryst_test::image(0.0, 0.0, 2.0, 1.0)),
              "Plane::read: the normal is not a unit vector");
}

TEST(Box, EmptyMergeExpandAndInclusion) {
    Box b;
    EXPECT_TRUE(b.empty());
    EXPECT_FALSE(b.contains(Point()));
    b.expand(1.0);
    EXPECT_TRUE(b.empty());  // expanding nothing leaves nothing
    b.merge(Point(1, 2, 3));
    EXPECT_FALSE(b.empty());
    EXPECT_TRUE(b.contains(Point(1, 2, 3)));
    b.merge(Box(Point(0, 0, 0), Point(-1, 1, 1)));
    EXPECT_EQ(b, Box(Point(-1, 0, 0), Point(1, 2, 3)));
    b.merge(Box());
    EXPECT_EQ(b, Box(Point(-1, 0, 0), Point(1, 2, 3)));
    b.expand(0.5, 0.0, 1.0);
    EXPECT_EQ(b, Box(Point(-1.5, 0, -1), Point(1.5, 2, 4)));
    // Faces are inside.
    EXPECT_TRUE(b.contains(Point(1.5, 2, 4)));
    EXPECT_FALSE(b.contains(Point(1.5, 2.000001, 4)));
    EXPECT_TRUE(b.overlaps(Box(Point(1.5, 2, 4), Point(9, 9, 9))));
    EXPECT_TRUE(b.intersection(Box(Point(2, 0, 0), Point(3, 1, 1))).empty());
    EXPECT_EQ(b.intersection(Box(Point(0, 0, 0), Point(9, 9, 9))), Box(Point(0, 0, 0), Point(1.5, 2, 4)));
    EXPECT_EQ(b.centre(), Point(0, 1, 1.5));

    EXPECT_EQ(molcryst_test::round_trip(b), b);
    EXPECT_EQ(molcryst_test::round_trip(Box()), Box());
    EXPECT_EQ(printed(Box(Point(0, 0, 0), Point(1, 1, 1))) + ' ' + printed(Box()), "(0, 0, 0) (1, 1, 1) empty");
}

TEST(Box, ImageUnderAnAffineMap) {
    const Box unit(Point(0, 0, 0), Point(1, 1, 1));
    const Matrix<double, 3, 3> m(1, -1, 0, 1, 0, 0, 0, 0, -1);
    EXPECT_EQ(transform_box(m, V3(0.5, 0, 0), unit), Box(Point(-0.5, 0, -1), Point(1.5, 1, 0)));
    EXPECT_TRUE(transform_box(m, V3(), Box()).empty());
    // A zero coefficient ignores an unbounded axis.
    const double inf = std::numeric_limits<double>::infinity();
    const Box slab(Point(-inf, -inf, 0), Point(inf, inf, 1));
    const Box image = transform_box(Matrix<double, 3, 3>(0, 0, 2, 1, 0, 0, 0, 1, 0), V3(), slab);
    EXPECT_EQ(image.minimum()[0], 0.0);
    EXPECT_EQ(image.maximum()[0], 2.0);
    EXPECT_FALSE(image.is_finite());
}

TEST(Slab, ContainsAndBoundingBox) {
    const Slab slab(Plane(V3(0, 0, -1), 2.0), 1.0);  // -z = 2: the slab from z = -2.5 to z = -1.5
    EXPECT_TRUE(slab.contains(Point(100, -7, -2.5)));
    EXPECT_TRUE(slab.contains(Point(0, 0, -1.5)));
    EXPECT_FALSE(slab.contains(Point(0, 0, -1.4)));
    const Box box = slab.bounding_box();
    EXPECT_EQ(box.minimum()[2], -2.5);
    EXPECT_EQ(box.maximum()[2], -1.5);
    EXPECT_TRUE(std::isinf(box.minimum()[0]));
    EXPECT_FALSE(Slab(Plane(V3(1, 1, 0), 0.0), 1.0).bounding_box().is_finite());
    EXPECT_THROW(Slab(Plane(), -1.0), std::invalid_argument);
}
