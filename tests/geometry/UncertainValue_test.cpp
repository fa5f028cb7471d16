#include "molcryst/geometry/UncertainValue.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

#include "GeometryTestSupport.h"
#include "molcryst/geometry/Angle.h"

using namespace molcryst;

namespace {
std::string printed(const UncertainValue& v) {
    std::ostringstream text;
    text << v;
    return text.str();
}
}  // namespace

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
    try {
        UncertainValue::parse("1.2(");
        FAIL();
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "UncertainValue::parse(const std::string&, bool*) cannot read \"1.2(\"");
    }
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

    Archive ar = Archive::temporary();
    v.write(ar);
    EXPECT_EQ(molcryst_test::bytes_of(ar).size(), 13u);

    std::vector<unsigned char> bytes;
    molcryst_test::append(bytes, 1.0);
    molcryst_test::append(bytes, -2);  // digits below -1
    molcryst_test::append(bytes, static_cast<signed char>(0));
    EXPECT_EQ(molcryst_test::read_error<UncertainValue>(bytes), "Uncertainty::read: negative digits -2");

    bytes.clear();
    molcryst_test::append(bytes, 1.0);
    molcryst_test::append(bytes, -1);  // unknown, yet with a decimal place
    molcryst_test::append(bytes, static_cast<signed char>(3));
    EXPECT_EQ(molcryst_test::read_error<UncertainValue>(bytes),
              "Uncertainty::read: an unknown uncertainty with a decimal place");

    bytes.clear();
    molcryst_test::append(bytes, std::numeric_limits<double>::quiet_NaN());
    molcryst_test::append(bytes, 1);
    molcryst_test::append(bytes, static_cast<signed char>(3));
    EXPECT_EQ(molcryst_test::read_error<UncertainValue>(bytes), "UncertainValue::read: the value is not a finite number");

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

    std::ostringstream text;
    text << Uncertainty(12, 4) << ' ' << Uncertainty() << ' ' << Uncertainty(2, -2);
    EXPECT_EQ(text.str(), "0.0012 ? 200");
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

    std::ostringstream text;
    text << Angle::from_degrees(120.0);
    EXPECT_EQ(text.str(), "120 degrees");

    EXPECT_EQ(molcryst_test::round_trip(Angle::from_degrees(109.5)), Angle::from_degrees(109.5));
    std::vector<unsigned char> bytes;
    molcryst_test::append(bytes, std::numeric_limits<double>::infinity());
    EXPECT_EQ(molcryst_test::read_error<Angle>(bytes), "Angle::read radians: the angle is not a finite number");
}
