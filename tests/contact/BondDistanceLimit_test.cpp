// BondDistanceLimit: the table's tuned rows, rule and zero-limit elements;
// the bond test at its bounds; the grid search against the walk over all
// pairs; archive layout.
#include "molcryst/contact/BondDistanceLimit.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/crystal/CrystalSymmetryMapping.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

TEST(BondDistanceLimit, TableRowsRuleAndElementsThatNeverBond) {
    struct Row {
        const char* a;
        const char* b;
        double limit;
    };
    const Row rows[] = {{"C", "C", 1.81},   {"C", "H", 1.36},   {"H", "H", 1.41},   {"D", "H", 1.41},
                        {"C", "O", 1.81},   {"N", "O", 1.81},   {"H", "O", 1.36},   {"Cl", "Cl", 2.18},
                        {"C", "Br", 2.34},  {"Al", "C", 2.48},  {"Cu", "O", 2.8},   {"Fe", "Fe", 3.13},
                        {"Ce", "Ce", 3.21}, {"Ag", "Ag", 3.23}, {"D", "D", 1.41},   {"C", "N", 1.81},
                        {"Zn", "O", 2.58},  {"Na", "O", 2.79},  {"Na", "Na", 1.49}, {"Ba", "La", 2.76},
                        {"Ba", "C", 3.28},  {"Na", "H", 1.65},  {"Ba", "Cl", 3.59}};
    for (const Row& r : rows) {
        EXPECT_EQ(BondDistanceLimit::limit(r.a, r.b), r.limit) << r.a << "-" << r.b;
        EXPECT_EQ(BondDistanceLimit::limit(r.b, r.a), r.limit) << r.b << "-" << r.a;
    }
    const BondDistanceLimit::Table& table = BondDistanceLimit::bond_limits();
    int upper_nonzero = 0;
    for (int i = 0; i < Element::ncodes_; ++i)
        for (int j = 0; j < Element::ncodes_; ++j) {
            if (j < i) {
                EXPECT_EQ(table[i][j], 0.0);
            } else if (table[i][j] > 0) {
                ++upper_nonzero;
            }
        }
    // 93 elements with a radius, 93 * 94 / 2 pairs.
    EXPECT_EQ(upper_nonzero, 4371);
    for (const char* never : {"Unknown", "At", "Bk", "Cf", "Cm", "Es", "Fm", "Fr", "Lr", "Md", "No", "Rn", "X", "Z", "Zz"})
        for (int code = 0; code < Element::ncodes_; ++code)
            EXPECT_EQ(BondDistanceLimit::limit(never, static_cast<Element::TARNCode>(code)), 0.0) << never;
}

TEST(BondDistanceLimit, BondTestAtItsBounds) {
    const BondDistanceLimit rule(0.5, false), with_hydrogens(0.5, true);
    auto pair = [](const char* e1, const char* e2, double d) {
        return std::make_pair(atom_at(e1, "A", 0, 0, 0), atom_at(e2, "B", d, 0, 0));
    };
    // At the minimum no bond; at the limit itself a bond.
    EXPECT_FALSE(rule.is_a_bond(pair("C", "C", 0.5).first, pair("C", "C", 0.5).second));
    auto cc = pair("C", "C", 1.81);
    EXPECT_TRUE(rule.is_a_bond(cc.first, cc.second));
    cc.second->site()->set_coordinates(Point(1.8100000001, 0, 0));
    EXPECT_FALSE(rule.is_a_bond(cc.first, cc.second));
    // Two hydrogens only when allowed, deuterium counted as hydrogen; X never.
    auto hh = pair("H", "H", 0.7), dh = pair("D", "H", 0.7), cx = pair("C", "X", 1.2);
    EXPECT_FALSE(rule.is_a_bond(hh.first, hh.second));
    EXPECT_TRUE(with_hydrogens.is_a_bond(hh.first, hh.second));
    EXPECT_FALSE(rule.is_a_bond(dh.first, dh.second));
    EXPECT_TRUE(with_hydrogens.is_a_bond(dh.first, dh.second));
    EXPECT_FALSE(with_hydrogens.is_a_bond(cx.first, cx.second));
    // Without a site there is no bond; a null atom is refused.
    EXPECT_FALSE(rule.is_a_bond(atom_without_site("C", "C1"), cc.first));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { rule.is_a_bond(HAtom(), cc.first); }),
              "BondDistanceLimit::is_a_bond(HAtom, HAtom) atom1 is a null pointer");
    // On two images the test is on their targets.
    auto image = [](const HAtom& a) {
        return HCrystalSymmetryMapping(new AtomSymmetryMapping(atom_at("N", "S", 9, 9, 9), a, CrystalSymmetryTransformation()));
    };
    auto co = pair("Cu", "O", 2.79);
    EXPECT_TRUE(rule.is_a_bond(image(co.first), image(co.second)));
    EXPECT_FALSE(rule.is_a_bond(image(hh.first), image(hh.second)));
    EXPECT_THROW(rule.is_a_bond(HCrystalSymmetryMapping(), image(co.first)), std::invalid_argument);
}

namespace {

std::vector<std::pair<int, int> > all_pairs(const BondDistanceLimit& rule, const std::vector<HAtom>& from,
                                            const std::vector<HAtom>& to, bool triangle) {
    std::vector<std::pair<int, int> > pairs;
    for (std::size_t i = 0; i < from.size(); ++i)
        for (std::size_t j = triangle ? i + 1 : 0; j < to.size(); ++j)
            if (rule.is_a_bond(from[i], to[j])) pairs.push_back(std::make_pair(static_cast<int>(i), static_cast<int>(j)));
    return pairs;
}

}  // namespace

TEST(BondDistanceLimit, GridSearchFindsWhatTheWalkOverAllPairsFinds) {
    // A gas of 1500 atoms of mixed elements in a 25 A box, some without
    // sites and a few far out or not finite, which the grid cannot hold.
    std::mt19937 random(5);
    std::uniform_real_distribution<double> coordinate(0.0, 25.0);
    const char* const elements[] = {"C", "H", "O", "N", "Cu", "Cl", "H", "C", "X", "Na"};
    std::vector<HAtom> atoms;
    for (int k = 0; k < 1500; ++k) {
        const char* e = elements[k % 10];
        if (k % 97 == 0)
            atoms.push_back(atom_without_site(e, "A"));
        else
            atoms.push_back(atom_at(e, "A", coordinate(random), coordinate(random), coordinate(random)));
    }
    atoms.push_back(atom_at("C", "F1", 3e9, 0, 0));
    atoms.push_back(atom_at("C", "F2", 3e9 + 1.5, 0, 0));
    atoms.push_back(atom_at("C", "F3", std::nan(""), 0, 0));
    const BondDistanceLimit rule(0.4, false);
    const std::vector<std::pair<int, int> > found = rule.bonded_pairs(atoms);
    EXPECT_EQ(found, all_pairs(rule, atoms, atoms, true));
    EXPECT_GT(found.size(), 500u);
    EXPECT_EQ(found.back(), std::make_pair(1500, 1501));  // the two far-out atoms

    const std::vector<HAtom> from(atoms.begin(), atoms.begin() + 300), to(atoms.begin() + 200, atoms.end());
    EXPECT_EQ(rule.bonded_pairs(from, to), all_pairs(rule, from, to, false));
    EXPECT_TRUE(rule.bonded_pairs(std::vector<HAtom>()).empty());
    atoms.push_back(HAtom());
    EXPECT_EQ(error_text<std::invalid_argument>([&] { rule.bonded_pairs(atoms); }),
              "BondDistanceLimit::bonded_pairs(const std::vector<HAtom>&) atom 1503 is a null pointer");
}

TEST(BondDistanceLimit, ArchiveLayoutAndEquality) {
    const BondDistanceLimit rule(0.25, true);
    EXPECT_EQ(written(rule), doubles({0.25}) + std::vector<unsigned char>{1});
    BondDistanceLimit back(0, false);
    EXPECT_NE(back, rule);
    Archive ar = archive_of(written(rule));
    back.read(ar);
    EXPECT_EQ(back, rule);
    EXPECT_EQ(back.min_distance(), 0.25);
    EXPECT_TRUE(back.hydrogens_may_bond());
    Archive short_ar = archive_of(doubles({0.5}));
    EXPECT_THROW(back.read(short_ar), std::runtime_error);
    EXPECT_EQ(back, rule);
}
