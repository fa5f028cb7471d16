#include "molcryst/elements/ElementSet.h"

#include <gtest/gtest.h>

#include <vector>

using namespace molcryst;

namespace {
std::vector<Element> elements_of(std::initializer_list<const char*> names) {
    std::vector<Element> out;
    for (const char* n : names) out.emplace_back(n);
    return out;
}
}  // namespace

TEST(ElementSet, AddKeepsInsertionOrderWithoutDuplicatesAndRemoveIsSilent) {
    ElementSet s;
    s.add_elements(elements_of({"Na", "K", "Na", "Cl"}));
    s += Element("K");
    EXPECT_EQ(s.elements(), elements_of({"Na", "K", "Cl"}));
    s.remove_element(Element("Fe"));
    s -= Element("K");
    EXPECT_EQ(s.elements(), elements_of({"Na", "Cl"}));
    s.remove_elements(elements_of({"Cl", "Na", "Cl"}));
    EXPECT_TRUE(s.elements().empty());

    ElementSet single(Element("D"));
    EXPECT_TRUE(single.has_element(Element("D")));
    EXPECT_FALSE(single.has_element(Element("H")));
}

TEST(ElementSet, VectorIsKeptAsGivenAndRemovalTakesEveryCopy) {
    ElementSet s(elements_of({"O", "O", "C"}));
    EXPECT_EQ(s.nelements(), 3);
    s.remove_element(Element("O"));
    EXPECT_EQ(s.elements(), elements_of({"C"}));
}

TEST(ElementSet, EqualityAndIntersectionIgnoreOrder) {
    ElementSet a(elements_of({"Na", "K"}));
    ElementSet b(elements_of({"K", "Na"}));
    EXPECT_EQ(a, b);
    EXPECT_NE(a, ElementSet(elements_of({"Na"})));
    EXPECT_NE(a, ElementSet(elements_of({"Na", "K", "Li"})));
    EXPECT_EQ(ElementSet(), ElementSet());

    EXPECT_TRUE(a.intersects(ElementSet(elements_of({"Fe", "Cl", "K"}))));
    EXPECT_FALSE(a.intersects(ElementSet(elements_of({"H", "D", "Zz"}))));
    EXPECT_FALSE(a.intersects(ElementSet()));

    ElementSet u = a;
    u += ElementSet(elements_of({"Li", "K"}));
    EXPECT_EQ(u.elements(), elements_of({"Na", "K", "Li"}));
    u -= b;
    EXPECT_EQ(u.elements(), elements_of({"Li"}));
}
