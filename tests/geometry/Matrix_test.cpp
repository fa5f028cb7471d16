#include "molcryst/geometry/Matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "GeometryTestSupport.h"
#include "common/Text.h"
#include "molcryst/geometry/Jacobi.h"
#include "molcryst/geometry/Point.h"

using namespace molcryst;
using molcryst::testing::printed;

namespace {
typedef Vector<double, 3> V3;
typedef Vector<int, 3> V3i;
typedef Matrix<double, 3, 3> M33;
typedef Matrix<int, 3, 3> M33i;
typedef Matrix<double, 4, 4> M44;
typedef Matrix<int, 2, 2> M22i;
typedef Array<int, 4> A4i;
}  // namespace

TEST(Array, DefaultZeroFillsAndArchivesWithoutCount) {
    A4i a;
    for (int i = 0; i < 4; ++i) EXPECT_EQ(a[i], 0);
    a[2] = 7;
    EXPECT_THROW(a.at(4), std::out_of_range);
    EXPECT_THROW(a.at(-1), std::out_of_range);
    Archive ar = Archive::temporary();
    ar << a;
    EXPECT_EQ(molcryst_test::bytes_of(ar).size(), 16u);  // four ints, no count
    A4i b;
    ar >> b;
    EXPECT_EQ(a, b);
    EXPECT_NE(a, A4i());
}

TEST(Vector, ArithmeticLengthsAndStrictEquals) {
    const V3 u(1.0, 2.0, 2.0);
    EXPECT_DOUBLE_EQ(u.length(), 3.0);
    EXPECT_EQ(u + u, u * 2.0);
    EXPECT_EQ(2.0 * u - u, u);
    EXPECT_EQ(cross(V3(1, 0, 0), V3(0, 1, 0)), V3(0, 0, 1));
    EXPECT_EQ(cross(u, u * 3.0), V3());  // parallel: zero, no throw
    V3 v = u;
    v.set_length(6.0);
    EXPECT_TRUE(equals(v, V3(2, 4, 4), 1e-12));
    EXPECT_THROW(V3().set_length(1.0), std::domain_error);
    EXPECT_THROW(V3(1e-8, 0, 0).normalise(1e-7), std::domain_error);
    EXPECT_NEAR(V3(1e-8, 0, 0).unit(1e-9).length(), 1.0, 1e-15);

    // equals is strict: a difference of exactly the tolerance fails.
    EXPECT_TRUE(equals(V3(0, 0, 0), V3(0.25, 0, 0), 0.5));
    EXPECT_FALSE(equals(V3(0, 0, 0), V3(0.5, 0, 0), 0.5));

    EXPECT_EQ(printed(V3i(1, -2, 3)), "(1, -2, 3)");

    // Points and vectors convert freely.
    const Point p(1, 2, 3);
    const V3 d = p - Point(1, 1, 1);
    const Point q = d;
    EXPECT_EQ(q, Point(0, 1, 2));
    EXPECT_DOUBLE_EQ(distance(p, Point(1, 2, 5)), 2.0);

    // Sorting and matching point lists.
    EXPECT_TRUE(PointCompareXYZ()(Point(0, 5, 5), Point(1, 0, 0)));
    EXPECT_TRUE(PointCompareXYZ()(Point(1, 0, 5), Point(1, 1, 0)));
    EXPECT_FALSE(PointCompareXYZ()(Point(1, 1, 0), Point(1, 1, 0)));
    EXPECT_TRUE(PointEqualsPredicate(Point(1, 1, 1), 1e-7)(Point(1 + 0.9e-7, 1 - 0.9e-7, 1)));
    EXPECT_FALSE(PointEqualsPredicate(Point(1, 1, 1), 1e-7)(Point(1, 1, 1 + 1.1e-7)));
}

TEST(Matrix, RowsCountFromOneAndElementsFromZero) {
    M33i m(1, 2, 3, 4, 5, 6, 7, 8, 10);
    EXPECT_EQ(m.row(1), V3i(1, 2, 3));
    EXPECT_EQ(m.row(3), V3i(7, 8, 10));
    EXPECT_EQ(m.column(2), V3i(2, 5, 8));
    EXPECT_EQ(m(1, 2), 6);
    EXPECT_THROW(m.row(0), std::out_of_range);
    EXPECT_THROW(m.row(4), std::out_of_range);
    m.set_row(2, V3i(0, 1, 0));
    EXPECT_EQ(m(1, 1), 1);
    EXPECT_EQ(m.transpose().row(1), V3i(1, 0, 7));
    EXPECT_EQ(m * V3i(1, 0, 0), V3i(1, 0, 7));

    EXPECT_EQ(printed(M22i(A4i(3))), "(3, 3; 3, 3)");
}

TEST(Matrix, InverseDeterminantAndSymmetry) {
    const M33 a(4, 1, 2, 1, 5, 3, 2, 3, 6);
    EXPECT_DOUBLE_EQ(a.determinant(), 4 * 21 - 1 * 0 + 2 * (3 - 10));
    const M33 product = a * a.inverse();
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_NEAR(product(i, j), i == j ? 1.0 : 0.0, 1e-14);
    M33 b = a;
    Invert(b);
    EXPECT_EQ(b, a.inverse());

    EXPECT_THROW(M33(1, 2, 3, 2, 4, 6, 0, 0, 1).inverse(), std::domain_error);
    // Integer matrices invert only when unimodular.
    const M33i screw(0, -1, 0, 1, -1, 0, 0, 0, 1);
    EXPECT_EQ(screw * screw.inverse(), (M33i::identity()));
    EXPECT_THROW(M33i(2, 0, 0, 0, 1, 0, 0, 0, 1).inverse(), std::domain_error);

    // Larger matrices go by elimination.
    M44 t = M44::identity();
    t(0, 3) = 2.0;
    t(1, 0) = 3.0;
    const M44 i4 = t * t.inverse();
    EXPECT_EQ(i4, (M44::identity()));
    EXPECT_DOUBLE_EQ(t.determinant(), 1.0);

    M33 s(1, 2, 0, 4, 1, 0, 0, 0, 1);
    s.make_symmetric();
    EXPECT_EQ(s, M33(1, 3, 0, 3, 1, 0, 0, 0, 1));
}

namespace {

// Checks that `vectors` holds orthonormal eigenvectors of `m` for `values`.
void expect_eigensystem(const M33& m, const V3& values, const M33& vectors, double tolerance) {
    const M33 vtv = vectors.transpose() * vectors;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_NEAR(vtv(i, j), i == j ? 1.0 : 0.0, 1e-12);
    for (int k = 1; k <= 3; ++k) {
        const V3 v = vectors.column(k);
        const V3 residual = m * v - v * values[k - 1];
        EXPECT_LT(residual.length(), tolerance);
    }
}

}  // namespace

TEST(Jacobi, KnownMatrices) {
    V3 values;
    M33 vectors;

    // Diagonal: nothing to do, the axes come back as they are.
    Jacobi<3>(M33(3, 0, 0, 0, 1, 0, 0, 0, 2), values, vectors);
    EXPECT_EQ(values, V3(3, 1, 2));
    EXPECT_EQ(vectors, (M33::identity()));

    // A 2 by 2 block with eigenvalues 1 and 3 along the diagonals of xy.
    const M33 block(2, 1, 0, 1, 2, 0, 0, 0, 3);
    Jacobi<3>(block, values, vectors);
    EXPECT_NEAR(values[0], 1.0, 1e-15);
    EXPECT_NEAR(values[1], 3.0, 1e-15);
    EXPECT_NEAR(values[2], 3.0, 1e-15);
    EXPECT_NEAR(std::fabs(vectors(0, 0)), std::sqrt(0.5), 1e-15);
    expect_eigensystem(block, values, vectors, 1e-14);

    // Only the upper triangle is read.
    M33 upper(2, 1, 0, 0, 2, 0, 0, 0, 3);
    Jacobi<3>(upper, values, vectors);
    expect_eigensystem(block, values, vectors, 1e-14);

    const M33 full(4, 1, 2, 1, 5, 3, 2, 3, 6);
    Jacobi<3>(full, values, vectors);
    EXPECT_NEAR(values[0] + values[1] + values[2], 15.0, 1e-12);
    EXPECT_NEAR(values[0] * values[1] * values[2], full.determinant(), 1e-10);
    expect_eigensystem(full, values, vectors, 1e-13);
}

TEST(Jacobi, ConvergesOnRandomAndNearlyDegenerateMatrices) {
    std::mt19937 random(12345);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int trial = 0; trial < 3000; ++trial) {
        M33 m;
        const int kind = trial % 3;
        for (int i = 0; i < 3; ++i)
            for (int j = i; j < 3; ++j) {
                double x = uniform(random);
                if (kind == 1) x = (i == j ? 1.0 : 0.0) + 1e-13 * x;  // a nearly threefold eigenvalue
                if (kind == 2) x *= std::pow(10.0, 6.0 * uniform(random));  // wide dynamic range
                m(i, j) = x;
                m(j, i) = x;
            }
        V3 values;
        M33 vectors;
        ASSERT_NO_THROW(Jacobi<3>(m, values, vectors));
        double scale = 0.0;
        for (int i = 0; i < 9; ++i) scale = std::fmax(scale, std::fabs(m[i]));
        expect_eigensystem(m, values, vectors, 1e-12 * scale + 1e-300);
    }
}
