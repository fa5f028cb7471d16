#include "molcryst/elements/ElementSetFactory.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ErrorText.h"
#include "common/Text.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::log_of;

namespace {

using Names = std::set<std::string>;

std::vector<std::string> symbols(const ElementSet& s) {
    std::vector<std::string> out;
    for (const Element& e : s.elements()) out.push_back(e.symbol());
    return out;
}
}  // namespace

TEST(ElementSetFactory, GroupsFollowTheTables) {
    using V = std::vector<std::string>;
    EXPECT_EQ(symbols(ElementSetFactory::group(1)), (V{"Li", "Na", "K", "Rb", "Cs", "Fr"}));
    EXPECT_EQ(symbols(ElementSetFactory::group(2)), (V{"Be", "Mg", "Ca", "Sr", "Ba", "Ra"}));
    EXPECT_EQ(symbols(ElementSetFactory::group(3)), (V{"Sc", "Y", "La", "Ac"}));
    EXPECT_EQ(symbols(ElementSetFactory::group(8)), (V{"Fe", "Ru", "Os"}));
    EXPECT_EQ(symbols(ElementSetFactory::group(12)), (V{"Zn", "Cd", "Hg"}));
    EXPECT_EQ(symbols(ElementSetFactory::group(13)), (V{"B", "Al", "Ga", "In", "Tl"}));
    EXPECT_EQ(symbols(ElementSetFactory::halogens()), (V{"F", "Cl", "Br", "I", "At"}));
    EXPECT_EQ(symbols(ElementSetFactory::noble()), (V{"He", "Ne", "Ar", "Kr", "Xe", "Rn"}));
    for (int g = 4; g <= 12; ++g) EXPECT_EQ(ElementSetFactory::group(g).nelements(), 3) << g;

    EXPECT_EQ(symbols(ElementSetFactory::transition_row(4)), (V{"Ac"}));
    EXPECT_EQ(ElementSetFactory::transition_row(3).nelements(), 10);
    EXPECT_EQ(symbols(ElementSetFactory::p_block_metals()),
              (V{"Al", "Ga", "In", "Tl", "Ge", "Sn", "Pb", "Sb", "Bi", "Po"}));
    EXPECT_EQ(symbols(ElementSetFactory::hydrogens()), (V{"H", "D"}));
    EXPECT_EQ(symbols(ElementSetFactory::unknown()), (V{"Unknown", "X", "Z", "Zz"}));
}

TEST(ElementSetFactory, FamiliesPartitionEveryCode) {
    ElementSet metals = ElementSetFactory::metals();
    ElementSet non_metals = ElementSetFactory::non_metals();
    ElementSet unknown = ElementSetFactory::unknown();
    EXPECT_EQ(metals.nelements(), 81);
    EXPECT_EQ(non_metals.nelements(), 23);
    EXPECT_FALSE(metals.intersects(non_metals));
    EXPECT_FALSE(metals.intersects(unknown));
    EXPECT_FALSE(non_metals.intersects(unknown));
    EXPECT_EQ(ElementSetFactory::all().nelements(), Element::ncodes_);
    EXPECT_EQ(ElementSetFactory::non_hydrogens().nelements(), Element::ncodes_ - 6);

    // La and Ac are transition metals, not lanthanide or actinide.
    EXPECT_TRUE(ElementSetFactory::transition_metals().has_element(Element("La")));
    EXPECT_TRUE(ElementSetFactory::transition_metals().has_element(Element("Ac")));
    EXPECT_FALSE(ElementSetFactory::lanthanides().has_element(Element("La")));
    EXPECT_FALSE(ElementSetFactory::actinides().has_element(Element("Ac")));
    EXPECT_TRUE(ElementSetFactory::lanthanides().has_element(Element("Lu")));
    EXPECT_TRUE(ElementSetFactory::actinides().has_element(Element("Lr")));
}

TEST(ElementSetFactory, NonMetalAgreesWithNonMetalsForEveryCode) {
    ElementSet non_metals = ElementSetFactory::non_metals();
    for (int c = 0; c < Element::ncodes_; ++c) {
        Element e(static_cast<Element::TARNCode>(c));
        EXPECT_EQ(e.non_metal(), non_metals.has_element(e)) << e;
    }
}

TEST(ElementSetFactory, OutOfRangeFamiliesThrowAfterLoggingTheMessage) {
    const std::string group_message = "ElementSetFactory::group() - cannot access 1 > group > 18";
    const std::string row_message = "ElementSetFactory::transition_row() - cannot access 1 > row > 4";
    const std::string log = log_of(1, [&] {
        for (int g : {0, 19, -1})
            EXPECT_EQ(error_text<std::out_of_range>([&] { ElementSetFactory::group(g); }), group_message) << g;
        for (int r : {0, 5})
            EXPECT_EQ(error_text<std::out_of_range>([&] { ElementSetFactory::transition_row(r); }), row_message) << r;
    });
    EXPECT_EQ(log, group_message + "\n" + group_message + "\n" + group_message + "\n" + row_message + "\n" +
                       row_message + "\n");
    // A quiet log formats nothing.
    EXPECT_EQ(log_of(0, [] {
                  EXPECT_THROW(ElementSetFactory::group(0), std::out_of_range);
                  EXPECT_THROW(ElementSetFactory().create_set("??"), std::invalid_argument);
              }),
              "");
}

TEST(ElementSetFactory, RegistryHoldsTheStandardNamesWithItsTwoIrregularSets) {
    ElementSetFactory f;
    EXPECT_EQ(f.all_sets(), (Names{"AA", "HD", "1A", "2A", "3A", "4A", "5A", "6A", "7A", "8A", "3B",
                                   "4B", "5B", "6B", "7B", "8X", "8Y", "8Z", "1B", "2B", "8B", "1R",
                                   "2R", "3R", "TR", "LN", "AN", "1M", "2M", "3M", "4M"}));
    ElementSet aa = f.create_set("AA");
    EXPECT_EQ(aa.nelements(), Element::ncodes_ - 1);
    EXPECT_FALSE(aa.has_element(Element("H")));
    EXPECT_TRUE(aa.has_element(Element("D")));
    EXPECT_TRUE(aa.has_element(Element("Zz")));
    EXPECT_EQ(symbols(f.create_set("4A")), (std::vector<std::string>{"Si", "Ge", "Sn", "Pb"}));
    EXPECT_EQ(f.create_set("8B").nelements(), 9);
    EXPECT_EQ(f.create_set("3B"), ElementSetFactory::group(3));
    EXPECT_EQ(f.create_set("4M"), ElementSetFactory::metals());

    // An element is found in every set that holds it.
    EXPECT_EQ(f.find(Element("H")), (Names{"HD"}));
    EXPECT_EQ(f.find(Element("D")), (Names{"AA", "HD"}));
    EXPECT_EQ(f.find(Element("C")), (Names{"AA"}));
    EXPECT_EQ(f.find(Element("Fe")), (Names{"AA", "8X", "8B", "1R", "TR", "4M"}));
    EXPECT_EQ(f.find(Element("Al")), (Names{"AA", "3A", "2M", "3M", "4M"}));

    // A set is found under the names of equal sets, order aside.
    EXPECT_EQ(f.find(ElementSetFactory::group(8)), (Names{"8X"}));
    EXPECT_EQ(f.find(ElementSet(std::vector<Element>{Element("D"), Element("H")})), (Names{"HD"}));
    EXPECT_EQ(f.find(ElementSetFactory::s_block_metals()), (Names{"1M"}));
    EXPECT_TRUE(f.find(ElementSet()).empty());
}

TEST(ElementSetFactory, NamesAreCaseSensitiveAndUnknownNamesThrowAfterLogging) {
    ElementSetFactory f;
    EXPECT_TRUE(f.registered("LN"));
    EXPECT_FALSE(f.registered("ln"));
    const std::string message = "ElementSetFactory::create_set(): group not registered : ln";
    EXPECT_EQ(log_of(1, [&] { EXPECT_EQ(error_text<std::invalid_argument>([&] { f.create_set("ln"); }), message); }),
              message + "\n");
    EXPECT_EQ(f.all_sets().size(), 31u);

    // Registering replaces; the families stay as they were.
    f.register_set("4A", ElementSetFactory::group(14));
    f.register_set("CC", ElementSet(Element("C")));
    EXPECT_EQ(f.find(Element("C")), (Names{"4A", "AA", "CC"}));
    EXPECT_EQ(ElementSetFactory::group(14).nelements(), 5);
}
