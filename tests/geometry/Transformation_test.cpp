#include "molcryst/geometry/Transformation.h"

#include <gtest/gtest.h>

#include "common/Text.h"
#include "molcryst/geometry/Ellipsoid.h"
#include "molcryst/geometry/Quaternion.h"
#include "molcryst/geometry/Rectangle2d.h"

using namespace molcryst;

namespace {
typedef Vector<double, 3> V3;
}

TEST(Transformation, PointsTakeTheTranslationAndVectorsDoNot) {
    const Transformation t(0, -1, 0, 5, 1, 0, 0, 6, 0, 0, 1, 7);
    EXPECT_EQ(t * Point(1, 0, 0), Point(5, 7, 7));
    EXPECT_EQ(t * V3(1, 0, 0), V3(0, 1, 0));
    const Transformation u = t.inverse();
    EXPECT_TRUE(equals(u * (t * Point(1, 2, 3)), Point(1, 2, 3), 1e-12));
    EXPECT_TRUE(equals((t * u) * Point(4, 5, 6), Point(4, 5, 6), 1e-12));
}

TEST(Transformation, SetRotTurnsByTheRightHandRule) {
    Transformation t(1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3);
    t.set_rot(V3(0, 0, 2), Angle::from_degrees(90.0));
    // x turns to y about +z; the translation stays.
    EXPECT_TRUE(equals(t * V3(1, 0, 0), V3(0, 1, 0), 1e-15));
    EXPECT_EQ(t.translation(), V3(1, 2, 3));
    // About a skew axis, the axis is fixed and a perpendicular turns by the angle.
    Transformation r;
    const V3 axis(1, 1, 1);
    r.set_rot(axis, Angle::from_degrees(120.0));
    EXPECT_TRUE(equals(r * axis, axis, 1e-14));
    EXPECT_TRUE(equals(r * V3(1, 0, 0), V3(0, 1, 0), 1e-14));
    EXPECT_THROW(r.set_rot(V3(), Angle()), std::invalid_argument);

    // A quaternion of the same axis and angle turns the same way.
    V3 v(0.3, -1.2, 2.0);
    Quaternion(axis, Angle::from_degrees(120.0)).rotate(v);
    EXPECT_TRUE(equals(v, r * V3(0.3, -1.2, 2.0), 1e-14));
    const Quaternion q = Quaternion(V3(0, 0, 1), Angle::from_degrees(30.0)) * Quaternion(V3(0, 0, 1), Angle::from_degrees(60.0));
    V3 x(1, 0, 0);
    q.rotate(x);
    EXPECT_TRUE(equals(x, V3(0, 1, 0), 1e-15));
    EXPECT_THROW(Quaternion(V3(), Angle()), std::invalid_argument);
}

TEST(Ellipsoid, AxesVolumeAndInclusion) {
    const Ellipsoid e(Point(1, 1, 1), V3(2, 0, 0), V3(0, 1, 0), V3(0, 0, 0.5));
    EXPECT_NEAR(e.volume(), 4.0 / 3.0 * 3.14159265358979323846, 1e-12);
    EXPECT_TRUE(e.contains(Point(3, 1, 1)));
    EXPECT_FALSE(e.contains(Point(1, 1, 1.6)));
    EXPECT_EQ(e.axis(0), V3(2, 0, 0));
    const Ellipsoid flat(Point(), V3(1, 0, 0), V3(2, 0, 0), V3(0, 0, 1));
    EXPECT_TRUE(flat.contains(Point()));
    EXPECT_FALSE(flat.contains(Point(0.1, 0, 0)));
}

TEST(Rectangle2d, CornersInEitherOrder) {
    const Rectangle2d r(3, 4, 1, 0);
    EXPECT_EQ(r, Rectangle2d(1, 0, 3, 4));
    EXPECT_EQ(r.centre(), Point2d(2, 2));
    EXPECT_TRUE(r.contains(Point2d(3, 4)));
    EXPECT_FALSE(r.contains(Point2d(3.5, 4)));
    EXPECT_EQ(molcryst::testing::printed(r), "(1, 0) (3, 4)");
}
