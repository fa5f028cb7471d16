#include "molcryst/formula/SumFormula.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "../common/ErrorText.h"
#include "../common/Text.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::printed;

namespace {

SumFormula formula(std::initializer_list<std::pair<const char*, double> > parts, bool D_is_H = true) {
    std::vector<Element> elements;
    std::vector<double> multipliers;
    for (const auto& p : parts) {
        elements.emplace_back(p.first);
        multipliers.push_back(p.second);
    }
    return SumFormula(elements, multipliers, D_is_H);
}

}  // namespace

TEST(SumFormula, PrintsCarbonHydrogenDeuteriumThenTheRestByCode) {
    EXPECT_EQ(printed(formula({{"O", 1}, {"H", 6}, {"C", 2}})), "C2 H6 O1");
    EXPECT_EQ(printed(formula({{"Zn", 1}, {"Cl", 2}, {"D", 2}, {"H", 1}, {"C", 0.5}}, false)), "C0.5 H1 D2 Cl2 Zn1");
    EXPECT_EQ(printed(SumFormula(true)), "");
    EXPECT_EQ(printed(SumFormula(Element("C"), 0.0, true)), "");
    EXPECT_EQ(SumFormula(Element("C"), -1e-8, true).nelements(), 0);
}

TEST(SumFormula, DeuteriumCountsAsHydrogenOnlyWhileTheFlagIsSet) {
    SumFormula f = formula({{"D", 2}, {"H", 4}});
    EXPECT_EQ(printed(f), "H6");
    EXPECT_FALSE(f.contains(Element("D")));
    f.set_D_is_H(false);
    EXPECT_EQ(printed(f), "H4 D2");
    f.set_D_is_H(true);
    EXPECT_DOUBLE_EQ(f.multiplier(Element("H")), 6.0);
    // Setting hydrogen while D is H sets the whole of both.
    f.set_multiplier(Element("H"), 3.0);
    f.set_D_is_H(false);
    EXPECT_EQ(printed(f), "H3");
}

TEST(SumFormula, EditsAndArithmetic) {
    SumFormula f = formula({{"C", 6}, {"H", 12}, {"O", 6}});
    f.set_multiplier(Element("N"), 1e-8);
    EXPECT_FALSE(f.contains(Element("N")));
    f.set_multiplier(Element("O"), 5e-8);
    EXPECT_EQ(printed(f), "C6 H12");
    f.remove(Element("H"));
    EXPECT_EQ(f.elements_present(), std::vector<Element>{Element("C")});

    const SumFormula water = formula({{"H", 2}, {"O", 1}});
    SumFormula hydrate = formula({{"Cu", 1}, {"S", 1}, {"O", 4}}) + water * 5.0;
    EXPECT_EQ(printed(hydrate), "H10 Cu1 O9 S1");
    EXPECT_NEAR(hydrate.molecular_weight(), 249.68, 0.02);  // CuSO4.5H2O
    hydrate /= 2.0;
    EXPECT_DOUBLE_EQ(hydrate.multiplier(Element("O")), 4.5);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { hydrate /= 0.0; }), "SumFormula::operator/=: division by zero.");
    EXPECT_DOUBLE_EQ(hydrate.multiplier(Element("O")), 4.5);

    EXPECT_TRUE(equals(water, formula({{"O", 1.00001}, {"H", 2}}), 1e-4));
    EXPECT_FALSE(equals(water, formula({{"O", 1.001}, {"H", 2}}), 1e-4));
    EXPECT_FALSE(equals(water, formula({{"O", 1}, {"D", 2}}, false), 1e-4));
    EXPECT_NEAR(water.estimated_volume(298.0),
                2 * Element("H").estimated_atomic_volume(298.0) + Element("O").estimated_atomic_volume(298.0), 1e-12);
}

TEST(SumFormula, EmpiricalFormula) {
    EXPECT_EQ(printed(formula({{"C", 6}, {"H", 12}, {"O", 6}}).empirical_formula()), "C1 H2 O1");
    EXPECT_EQ(printed(formula({{"C", 2}, {"H", 5}, {"O", 1}}).empirical_formula()), "C2 H5 O1");
    EXPECT_EQ(printed(formula({{"C", 0.5}, {"H", 1}}).empirical_formula()), "C0.5 H1");
    EXPECT_EQ(printed(formula({{"C", 70}, {"H", 140}}).empirical_formula()), "C1 H2");
    EXPECT_EQ(printed(SumFormula(true).empirical_formula()), "");
    // Divided down to nothing, a formula is empty, and has no empirical formula to search for.
    SumFormula tiny = formula({{"C", 1}});
    tiny /= 1e9;
    EXPECT_EQ(tiny.nelements(), 0);
    EXPECT_EQ(printed(tiny.empirical_formula()), "");
}

TEST(SumFormula, MismatchedVectorsAreRefused) {
    EXPECT_EQ(error_text<std::invalid_argument>(
                  [] { SumFormula(std::vector<Element>{Element("C")}, std::vector<double>{}, true); }),
              "SumFormula::SumFormula(): number of elements and multipliers inconsistent.");
}
