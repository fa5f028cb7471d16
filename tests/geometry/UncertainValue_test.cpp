#include "molcryst/geometry/UncertainValue.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "GeometryTestSupport.h"
#include "common/Text.h"
#include "molcryst/geometry/Angle.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::printed;
using molcryst_test::image;
using molcryst_test::read_error;

TEST(UncertainValue, ParsesAndPrintsBackTheCrystallographicNotation) {
    for (const char* text : {"1.234(5)", "0.0123(12)", "-7(2)", "12.50(25)", "0.5(10)", "3.0(0)"}) {
        bool ok = false;
        const UncertainValue v = UncertainValue::parse(text, &ok);
        EXPECT_TRUE(ok) << text;
        EXPECT_EQ(printed(v), text);
    }
    bool ok = false;
    UncertainValue v = UncertainValue::parse("  0.0123(12)\t", &ok);
    ASSERT_TRUE(ok);
    EXPECT_DOUBLE_EQ(v.value(), 0.0123);
    EXPECT_EQ(v.uncertainty(), Uncertainty(12, 4));
    EXPECT_DOUBLE_EQ(v.standard_uncertainty(), 0.0012);

    // Exponent forms scale the uncertainty's place with the value.
    v = UncertainValue::parse("1.5e-3(2)", &ok);
    ASSERT_TRUE(ok);
    EXPECT_DOUBLE_EQ(v.standard_uncertainty(), 0.0002);
    EXPECT_EQ(printed(v), "0.0015(2)");
    EXPECT_EQ(printed(UncertainValue::parse("1.2e3(2)")), "1200(200)");

    // A bare number has an unknown uncertainty; ".5" and "5." are numbers too.
    v = UncertainValue::parse("1.234");
    EXPECT_FALSE(v.uncertainty().known());
    EXPECT_EQ(printed(v), "1.234");
    EXPECT_DOUBLE_EQ(UncertainValue::parse(".5(1)").standard_uncertainty(), 0.1);
    EXPECT_DOUBLE_EQ(UncertainValue::parse("5.(1)").standard_uncertainty(), 1.0);
}

TEST(UncertainValue, BadTextReportsFailure) {
    const char* bad[] = {"",       "   ",      "abc",      "1.234(",  "1.234()", "(5)",       "1.234(5",
                         "1.2.3",  "1.234(5)x", "1.234 (5)", "1.234(-5)", "+-1",   "e5",        "1e",
                         "1.0(1234567890)", "1e99999", "1e400", "nan", "inf", "1,5", "0x10", "1.0(5)(5)"};
    for (const char* text : bad) {
        bool ok = true;
        const UncertainValue v = UncertainValue::parse(text, &ok);
        EXPECT_FALSE(ok) << text;
        EXPECT_EQ(v, UncertainValue()) << text;
        EXPECT_THROW(UncertainValue::parse(text), std::invalid_argument) << text;
    }
    // Far beyond any decimal place an uncertainty may have.
    bool ok = true;
    UncertainValue::parse("1." + std::string(200, '0') + "(1)", &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(error_text<std::invalid_argument>([] { UncertainValue::parse("1.2("); }),
              "UncertainValue::parse(const std::string&, bool*) cannot read \"1.2(\"");
}

TEST(UncertainValue, RangeIsPlusMinusKStandardUncertainties) {
    const UncertainValue occupancy = UncertainValue::parse("0.50(1)");
    const std::pair<double, double> r = occupancy.range(3.0);
    EXPECT_NEAR(r.first, 0.47, 1e-15);
    EXPECT_NEAR(r.second, 0.53, 1e-15);
    EXPECT_EQ(occupancy.range(-3.0), r);
    EXPECT_EQ(UncertainValue(0.5).range(3.0), std::make_pair(0.5, 0.5));
}

TEST(UncertainValue, ArchivesRoundTripAndRejectBadValues) {
    const UncertainValue v = UncertainValue::parse("-0.0123(12)");
    EXPECT_EQ(molcryst_test::round_trip(v), v);
    EXPECT_EQ(molcryst_test::round_trip(UncertainValue(2.5)), UncertainValue(2.5));
    EXPECT_EQ(molcryst_test::round_trip(UncertainValue::parse("1.2e3(2)")), UncertainValue::parse("1.2e3(2)"));

    EXPECT_EQ(molcryst::testing::written(v).size(), 13u);

    // Value, digits, decimal place: digits below -1; unknown digits (-1)
    // with a decimal place; a value that is no number.
    const signed char none = 0, three = 3;
    EXPECT_EQ(read_error<UncertainValue>(image(1.0, -2, none)), "Uncertainty::read: negative digits -2");
    EXPECT_EQ(read_error<UncertainValue>(image(1.0, -1, three)),
              "Uncertainty::read: an unknown uncertainty with a decimal place");
    EXPECT_EQ(read_error<UncertainValue>(image(std::numeric_limits<double>::quiet_NaN(), 1, three)),
              "UncertainValue::read: the value is not a finite number");

    // A short file is the archive's to report, and the object keeps its value.
    Archive shortfile = molcryst_test::archive_of({1, 2, 3});
    UncertainValue kept(4.0);
    EXPECT_THROW(kept.read(shortfile), std::runtime_error);
    EXPECT_EQ(kept, UncertainValue(4.0));
}

TEST(Uncertainty, CombinesIndependentTermsAtTheFinestPlace) {
    const Uncertainty u[2] = {Uncertainty(3, 4), Uncertainty(4, 3)};
    const double permutation[2] = {0.0, -1.0};
    EXPECT_EQ(Uncertainty::combine(permutation, u, 2), Uncertainty(4, 3));
    const double sum[2] = {1.0, 1.0};
    EXPECT_EQ(Uncertainty::combine(sum, u, 2), Uncertainty(40, 4));  // sqrt(0.0003^2 + 0.004^2) = 0.0040
    const Uncertainty unknown[2] = {Uncertainty(3, 4), Uncertainty()};
    EXPECT_FALSE(Uncertainty::combine(sum, unknown, 2).known());
    EXPECT_FALSE(Uncertainty::combine(permutation, unknown, 1).known());  // no term counts
    EXPECT_THROW(Uncertainty(-1, 0), std::invalid_argument);

    EXPECT_EQ(printed(Uncertainty(12, 4)) + ' ' + printed(Uncertainty()) + ' ' + printed(Uncertainty(2, -2)),
              "0.0012 ? 200");
}

TEST(Angle, DegreesRadiansArithmeticAndArchive) {
    const Angle right = Angle::from_degrees(90.0);
    EXPECT_DOUBLE_EQ(right.radians(), 3.14159265358979323846 / 2);
    EXPECT_DOUBLE_EQ(Angle(0.5, Angle::Radians).degrees(), 0.5 * 180.0 / 3.14159265358979323846);
    EXPECT_DOUBLE_EQ((right + right).degrees(), 180.0);
    EXPECT_DOUBLE_EQ((right / 2.0).degrees(), 45.0);
    EXPECT_DOUBLE_EQ((-right).degrees(), -90.0);
    Angle a = right;
    a += Angle::from_degrees(30.0);
    a *= 2.0;
    EXPECT_NEAR(a.degrees(), 240.0, 1e-12);
    EXPECT_LT(right, a);
    EXPECT_NEAR(sin(Angle::from_degrees(30.0)), 0.5, 1e-15);
    EXPECT_NEAR(cos(Angle::from_degrees(60.0)), 0.5, 1e-15);

    // A cosine just beyond 1 by rounding still gives an angle.
    EXPECT_EQ(Angle::acos(1.0 + 1e-15).degrees(), 0.0);
    EXPECT_DOUBLE_EQ(Angle::acos(-1.0 / 3.0).degrees(), 109.47122063449069);

    EXPECT_EQ(printed(Angle::from_degrees(120.0)), "120 degrees");

    EXPECT_EQ(molcryst_test::round_trip(Angle::from_degrees(109.5)), Angle::from_degrees(109.5));
    EXPECT_EQ(read_error<Angle>(image(std::numeric_limits<double>::infinity())),
              "Angle::read radians: the angle is not a finite number");
}
