#include "molcryst/molecule/AtomicDisplacementParameters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {
typedef Vector<double, 3> V3;

Angle deg(double d) { return Angle::from_degrees(d); }
}  // namespace

TEST(AtomicDisplacementParameters, IndicesInEitherOrderAndTheIndexRule) {
    AtomicDisplacementParameters adp(0.01, 0.02, 0.03, 0.004, 0.005, 0.006);
    EXPECT_EQ(adp.u(1, 2), 0.004);
    EXPECT_EQ(adp.u(2, 1), 0.004);
    EXPECT_EQ(adp.u(3, 1), 0.005);
    EXPECT_EQ(adp.u(3, 2), 0.006);
    EXPECT_EQ(adp.u(3, 3), 0.03);
    adp.set_u(2, 1, UncertainValue::parse("0.0041(3)"));
    EXPECT_EQ(adp.u()[AtomicDisplacementParameters::u12].value(), 0.0041);
    EXPECT_EQ(adp.u_uncertainty(1, 2), Uncertainty(3, 4));
    EXPECT_FALSE(adp.u_uncertainty(1, 1).known());
    EXPECT_EQ(adp.u_matrix(), (Matrix<double, 3, 3>(0.01, 0.0041, 0.005, 0.0041, 0.02, 0.006, 0.005, 0.006, 0.03)));

    for (int bad : {0, 4, -1})
        EXPECT_EQ(error_text<std::out_of_range>([&] { adp.u(bad, 1); }),
                  "Illegal AtomicDisplacementParameters indices (" + std::to_string(bad) + ",1)");
    EXPECT_THROW(adp.set_u(1, 4, 0.0), std::out_of_range);
    EXPECT_THROW(adp.u_uncertainty(2, 0), std::out_of_range);
}

TEST(AtomicDisplacementParameters, IsotropicTensorAndEquivalentValue) {
    // In a monoclinic cell an isotropic tensor has U13 = U cos(beta*) in its
    // U(cif) form, and U(eq) gives back U.
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90));
    const AtomicDisplacementParameters iso(UncertainValue(0.02), cell);
    const double cos_beta_star = cell.a_star_axis().unit().dot(cell.c_star_axis().unit());
    EXPECT_NEAR(iso.u(1, 1), 0.02, 1e-15);
    EXPECT_NEAR(iso.u(2, 2), 0.02, 1e-15);
    EXPECT_NEAR(iso.u(1, 3), 0.02 * cos_beta_star, 1e-15);
    EXPECT_NEAR(iso.u(1, 2), 0.0, 1e-15);
    EXPECT_NEAR(iso.u_equivalent(cell), 0.02, 1e-15);
    // An anisotropic tensor in an orthogonal cell: the mean of the diagonal.
    const Cell box(5, 6, 7, deg(90), deg(90), deg(90));
    EXPECT_NEAR(AtomicDisplacementParameters(0.01, 0.02, 0.06, 0.001, 0.0, 0.0).u_equivalent(box), 0.03, 1e-15);
}

TEST(AtomicDisplacementParameters, LevelTableHoldsTheMaxwellQuantiles) {
    const struct {
        int percent;
        double radius;
    } checks[] = {{1, 0.3389},  {2, 0.4299},  {3, 0.4951},  {4, 0.5479},  {5, 0.5932},  {49, 1.5209},
                  {50, 1.5382}, {51, 1.5555}, {96, 2.8829}, {97, 2.9912}, {98, 3.1365}, {99, 3.3682}};
    for (const auto& c : checks) EXPECT_NEAR(AtomicDisplacementParameters::probability_scale(c.percent), c.radius, 5e-5);
    for (int p = 2; p <= 99; ++p)
        EXPECT_GT(AtomicDisplacementParameters::probability_scale(p), AtomicDisplacementParameters::probability_scale(p - 1));
    EXPECT_THROW(AtomicDisplacementParameters::probability_scale(0), std::out_of_range);
}

TEST(AtomicDisplacementParameters, EllipsoidAxesAndLimits) {
    const Cell unit;
    const AtomicDisplacementParameters adp(0.02, 0.02, 0.01, 0.01, 0.0, 0.0);
    const Site site(Point(1, 2, 3));
    const Ellipsoid e = adp.ellipsoid(unit, site, 50.0);
    EXPECT_EQ(e.centre(), Point(1, 2, 3));
    // Eigenvalues 0.03 along (1, 1, 0), 0.01 along (1, -1, 0) and along z.
    double lengths[3];
    for (int i = 0; i < 3; ++i) lengths[i] = e.axis(i).length();
    std::sort(lengths, lengths + 3);
    const double scale = AtomicDisplacementParameters::probability_scale(50);
    EXPECT_NEAR(lengths[0], std::sqrt(0.01) * scale, 1e-12);
    EXPECT_NEAR(lengths[1], std::sqrt(0.01) * scale, 1e-12);
    EXPECT_NEAR(lengths[2], std::sqrt(0.03) * scale, 1e-12);
    for (int i = 0; i < 3; ++i) {
        if (std::fabs(e.axis(i).length() - lengths[2]) < 1e-9) {
            EXPECT_NEAR(std::fabs(e.axis(i).unit().dot(V3(1, 1, 0).unit())), 1.0, 1e-12);
        }
    }

    // Probability: 0.5001 takes entry 1, 99.4999 entry 99; beyond them, refused.
    EXPECT_NEAR(adp.ellipsoid(unit, site, 0.5001).axis(2).length(),
                std::sqrt(0.01) * AtomicDisplacementParameters::probability_scale(1), 1e-12);
    EXPECT_NO_THROW(adp.ellipsoid(unit, site, 99.4999));
    EXPECT_NEAR(adp.ellipsoid(unit, site, 49.5).axis(2).length(), std::sqrt(0.01) * scale, 1e-12);
    for (double bad : {0.5, 99.5, -1.0, 100.0, std::nan("")})
        EXPECT_EQ(error_text<std::invalid_argument>([&] { adp.ellipsoid(unit, site, bad); }),
                  "AtomicDisplacementParameters::ellipsoid() invalid probability level.");
    for (double u22 : {-0.01, 0.0})
        EXPECT_EQ(error_text<std::runtime_error>(
                      [&] { AtomicDisplacementParameters(0.01, u22, 0.03, 0, 0, 0).ellipsoid(unit, site, 50.0); }),
                  "AtomicDisplacementParameters::ellipsoid(): eigen values must be positive. (Value is " +
                      printed(u22) + ")");
}

TEST(AtomicDisplacementParameters, SymmetryImagesCarryTheTensor) {
    const Cell cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90));
    const AtomicDisplacementParameters adp(UncertainValue::parse("0.010(1)"), UncertainValue::parse("0.020(2)"),
                                           UncertainValue::parse("0.030(3)"), UncertainValue::parse("0.004(1)"),
                                           UncertainValue::parse("0.005(2)"), UncertainValue::parse("0.006(3)"));
    // The twofold axis along b: u12 and u23 change sign, the rest stay.
    const AtomicDisplacementParameters two = adp.transformed(Matrix<int, 3, 3>(-1, 0, 0, 0, 1, 0, 0, 0, -1), cell);
    EXPECT_EQ(two, AtomicDisplacementParameters(adp.u()[0], adp.u()[1], adp.u()[2],
                                                UncertainValue(-0.004, Uncertainty(1, 3)), adp.u()[4],
                                                UncertainValue(-0.006, Uncertainty(3, 3))));
    // The inversion changes nothing.
    EXPECT_EQ(adp.transformed(-Matrix<int, 3, 3>::identity(), cell), adp);
    // In a hexagonal cell the threefold axis keeps an isotropic tensor isotropic.
    const Cell hexagonal(5.0, 5.0, 9.0, deg(90), deg(90), deg(120));
    const AtomicDisplacementParameters iso(UncertainValue(0.02), hexagonal);
    EXPECT_TRUE(equals(iso.transformed(Matrix<int, 3, 3>(0, -1, 0, 1, -1, 0, 0, 0, 1), hexagonal), iso, 1e-15));
}

TEST(AtomicDisplacementParameters, ArchivePrintAndComparisons) {
    const AtomicDisplacementParameters adp(UncertainValue::parse("0.0123(4)"), 0.02, 0.03, 0.0, -0.001, 0.002);
    Archive ar = archive_of(written(adp));
    AtomicDisplacementParameters back;
    back.read(ar);
    EXPECT_EQ(back, adp);
    EXPECT_EQ(printed(adp), "u11 0.0123(4) u22 0.02 u33 0.03 u12 0 u13 -0.001 u23 0.002");
    const AtomicDisplacementParameters bare = strip_uncertainties(adp);
    EXPECT_NE(bare, adp);
    EXPECT_TRUE(equals(bare, adp, 1e-15));
    EXPECT_FALSE(bare.u_uncertainty(1, 1).known());
    EXPECT_FALSE(equals(bare, AtomicDisplacementParameters(0.0123, 0.02, 0.03, 0.0, -0.001, 0.0022), 1e-4));

    Archive shortfile = archive_of(cut(written(adp), 8));
    AtomicDisplacementParameters kept = adp;
    EXPECT_THROW(kept.read(shortfile), std::runtime_error);
    EXPECT_EQ(kept, adp);
}
