#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/connectivity/CrystalTopologyIndex.h"
#include "molcryst/connectivity/Order3AtomTopologyIndex.h"
#include "molecule/TestMolecules.h"

namespace molcryst {
namespace {

using testing::error_text;

// A record of the atoms "C C O" and the bonds "0-1 1-2", elements by symbol.
HConnectivity record(const std::vector<std::string>& elements, const std::vector<std::pair<int, int> >& bonds,
                     BondType type = SINGLE_BOND) {
    HConnectivity c(new Connectivity());
    for (const std::string& e : elements) c->add(HConnectivityAtom(new ConnectivityAtom(Element(e))));
    for (const auto& b : bonds) c->add(HConnectivityBond(new ConnectivityBond(type)), b.first, b.second);
    return c;
}

int order3(const HConnectivity& c) { return Order3AtomTopologyIndex().index(c); }

TEST(Order3AtomTopologyIndex, PrimeTableByElement) {
    const unsigned int* keys = Order3AtomTopologyIndex::element_prime_keys;
    EXPECT_EQ(keys[Element::Unknown], 0u);
    EXPECT_EQ(keys[Element::C], 3u);
    EXPECT_EQ(keys[Element::H], 5u);
    EXPECT_EQ(keys[Element::D], 5u);
    EXPECT_EQ(keys[Element::O], 7u);
    EXPECT_EQ(keys[Element::N], 11u);
    EXPECT_EQ(keys[Element::Ac], 433u);
    EXPECT_EQ(keys[Element::Lu], 409u);
    EXPECT_EQ(keys[Element::Lr], 577u);
    EXPECT_EQ(keys[Element::X], 547u);
    EXPECT_EQ(keys[Element::Z], 557u);
    EXPECT_EQ(keys[Element::Zz], 563u);
    // Odd primes, distinct but for deuterium, which weighs as hydrogen.
    std::set<unsigned int> seen;
    for (int code = 1; code < Element::ncodes_; ++code) {
        const unsigned int k = keys[code];
        EXPECT_TRUE(k % 2 == 1) << code;
        for (unsigned int d = 3; d * d <= k; d += 2) {
            EXPECT_NE(k % d, 0u) << code;
        }
        if (code != Element::D) {
            EXPECT_TRUE(seen.insert(k).second) << code;
        }
    }
}

TEST(Order3AtomTopologyIndex, IndicesOfSmallGraphs) {
    EXPECT_EQ(order3(record({"O"}, {})), 7);
    EXPECT_EQ(order3(record({"Unknown"}, {})), 0);
    EXPECT_EQ(error_text<std::invalid_argument>([] { order3(HConnectivity()); }),
              "Order3AtomTopologyIndex: connectivity is zero");
    // O-H: degrees 1, 1; second order 1, 1; third order 1, 1: 7 * 5.
    EXPECT_EQ(order3(record({"O", "H"}, {{0, 1}})), 35);
    // H-O-H: degrees 1, 2, 1; order 2: 2, 2, 2; order 3: 2, 4, 2: two bonds of 7 * 5 * 4 * 2.
    EXPECT_EQ(order3(record({"H", "O", "H"}, {{0, 1}, {1, 2}})), 560);
    // Bond types and charges do not count: ethene and ethane without hydrogens.
    EXPECT_EQ(order3(record({"C", "C"}, {{0, 1}}, DOUBLE_BOND)), order3(record({"C", "C"}, {{0, 1}})));
    HConnectivity charged = record({"O", "H"}, {{0, 1}});
    charged->atom(0)->set_formal_charge(-1);
    EXPECT_EQ(order3(charged), 35);
}

TEST(Order3AtomTopologyIndex, SameGraphInAnotherOrderAndIsomers) {
    // Acetic acid as drawn, and with its atoms in reverse order.
    HMolecule3d acid = testing::acetic_acid();
    HConnectivity forward(new Connectivity(*acid));
    HConnectivity reversed(new Connectivity());
    const int n = forward->natoms();
    for (int i = n - 1; i >= 0; --i) reversed->add(forward->atom(i)->clone());
    for (int i = forward->nbonds() - 1; i >= 0; --i) {
        HConnectivityBond b = forward->bond(i);
        reversed->add(b->clone(), n - 1 - b->atom2()->index(), n - 1 - b->atom1()->index());
    }
    EXPECT_NE(*forward, *reversed);
    EXPECT_EQ(order3(forward), order3(reversed));
    // Methyl formate has acetic acid's atoms, arranged otherwise.
    HConnectivity formate = record({"C", "O", "C", "O", "H", "H", "H", "H"},
                                   {{0, 1}, {1, 2}, {2, 3}, {0, 4}, {0, 5}, {0, 6}, {2, 7}});
    EXPECT_NE(order3(formate), order3(forward));
    // Ethanol and dimethyl ether, heavy atoms only.
    EXPECT_NE(order3(record({"C", "C", "O"}, {{0, 1}, {1, 2}})), order3(record({"C", "O", "C"}, {{0, 1}, {1, 2}})));
    // n-butane and isobutane: the same atoms and bond count, another shape.
    EXPECT_NE(order3(record({"C", "C", "C", "C"}, {{0, 1}, {1, 2}, {2, 3}})),
              order3(record({"C", "C", "C", "C"}, {{0, 1}, {0, 2}, {0, 3}})));
}

HConnectivityInfo info_of(const std::vector<std::pair<HConnectivity, double> >& items) {
    HConnectivityInfo info(new ConnectivityInfo());
    for (const auto& it : items) {
        if (it.second < 0)
            info->add_connectivity(it.first);
        else
            info->add_connectivity(it.first, it.second);
    }
    return info;
}

TEST(CrystalTopologyIndex, SortedRecordsSumsAndRemoval) {
    HTopologyIndex order3_index(new Order3AtomTopologyIndex());
    HConnectivityInfo info = info_of({{record({"O", "H"}, {{0, 1}}), 2.0},
                                      {record({"O"}, {}), -1},
                                      {record({"H"}, {}), 0.5},
                                      {record({"O"}, {}), 3.0}});
    CrystalTopologyIndex crystal(info, order3_index);
    ASSERT_EQ(crystal.nindices(), 4);
    EXPECT_EQ(crystal.indices()[0].index, 5);
    EXPECT_EQ(crystal.indices()[1].index, 7);
    EXPECT_EQ(crystal.indices()[1].multiplier, -1.0);  // unknown sorts before 3
    EXPECT_EQ(crystal.indices()[2].multiplier, 3.0);
    EXPECT_EQ(crystal.indices()[3].index, 35);
    EXPECT_EQ(crystal.index_sum(false), 5 + 7 + 7 + 35);
    EXPECT_EQ(crystal.index_sum(true), 5 * 1 + 7 * 1 + 7 * 3 + 35 * 2);  // a half counts as one, unknown as one
    EXPECT_EQ(CrystalTopologyIndex().index_sum(true), 0);

    std::ostringstream out;
    crystal.print(out);
    EXPECT_EQ(out.str(), "nindices: 4\nindex 5 multiplier 0.5\nindex 7 multiplier x\nindex 7 multiplier 3\n"
                         "index 35 multiplier 2\n");

    EXPECT_TRUE(crystal.at_least_one_connectivity_equals(7));
    EXPECT_FALSE(crystal.at_least_one_connectivity_equals(11));
    EXPECT_EQ(crystal.connectivities_that_equal(7), (std::vector<int>{1, 2}));
    CrystalTopologyIndex fewer(crystal);
    fewer.remove_connectivity(7);
    EXPECT_EQ(fewer.nindices(), 2);
    fewer.remove_connectivity_by_index(0);
    EXPECT_EQ(fewer.indices()[0].index, 35);
    EXPECT_EQ(error_text<std::out_of_range>([&] { fewer.remove_connectivity_by_index(1); }),
              "CrystalTopologyIndex::remove_connectivity_by_index(): index out of range.");

    const std::string null_message =
        "CrystalTopologyIndex::calculate_indices(): HConnectivityInfo or HTopologyIndex is zero";
    EXPECT_EQ(error_text<std::invalid_argument>([&] { crystal.calculate_indices(HConnectivityInfo(), order3_index); }),
              null_message);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { crystal.calculate_indices(info, HTopologyIndex()); }),
              null_message);
    EXPECT_EQ(crystal.nindices(), 4);

    // The example of index_sum: indices 10 and 3 at 0.5 and 2.
    Archive ar = testing::archive_of([] {
        std::vector<unsigned char> b = testing::words({2, 10});
        std::vector<unsigned char> m = testing::doubles({0.5});
        b.insert(b.end(), m.begin(), m.end());
        std::vector<unsigned char> w = testing::words({3});
        b.insert(b.end(), w.begin(), w.end());
        m = testing::doubles({2.0});
        b.insert(b.end(), m.begin(), m.end());
        return b;
    }());
    CrystalTopologyIndex example;
    example.read(ar);
    EXPECT_EQ(example.index_sum(true), 10 + 6);
    Archive copy = Archive::temporary();
    example.write(copy);
    ar.rewind();
    EXPECT_EQ(testing::bytes_of(copy), testing::bytes_of(ar));
    Archive bad = testing::archive_of(testing::words({5, 1, 2}));
    EXPECT_NE(error_text<std::runtime_error>([&] { example.read(bad); }).find("CrystalTopologyIndex::read"),
              std::string::npos);
    EXPECT_EQ(example.index_sum(false), 13);
}

TEST(CrystalTopologyIndex, EqualsAndEquivalenceWithUnknownMultipliers) {
    HTopologyIndex order3_index(new Order3AtomTopologyIndex());
    HConnectivity water = record({"O", "H", "H"}, {{0, 1}, {0, 2}});
    HConnectivity sodium = record({"Na"}, {});
    CrystalTopologyIndex a(info_of({{water, 2.0}, {sodium, 1.0}}), order3_index);
    CrystalTopologyIndex b(info_of({{sodium, 1.0}, {water, -1}}), order3_index);
    CrystalTopologyIndex c(info_of({{water, 2.05}, {sodium, 1.0}}), order3_index);
    EXPECT_TRUE(a == CrystalTopologyIndex(info_of({{sodium, 1.0}, {water, 2.0}}), order3_index));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(equals(a, b, 1e-7, 0));   // unknown matches any multiplier
    EXPECT_FALSE(equals(a, b, 1e-7, 1));  // or only -1.0 itself
    EXPECT_TRUE(equals(a, c, 0.05 + 1e-12, 1));
    EXPECT_FALSE(equals(a, c, 0.01, 1));
    CrystalTopologyIndex d(info_of({{water, 2.0}}), order3_index);
    EXPECT_FALSE(equals(a, d, 1.0, 0));

    // Out of order: equals walks as they stand, is_equivalent orders copies.
    CrystalTopologyIndex unsorted;
    Archive ar = Archive::temporary();
    const CrystalTopologyIndex::Record first = a.indices()[0], second = a.indices()[1];
    ar << 2u << second.index << second.multiplier << first.index << first.multiplier;
    ar.rewind();
    unsorted.read(ar);
    EXPECT_FALSE(equals(a, unsorted, 1e-7, 1));
    EXPECT_TRUE(is_equivalent(a, unsorted, 1e-7, 1));
    EXPECT_EQ(unsorted.indices()[0].index, second.index);  // the copies were sorted, not the originals
}

}  // namespace
}  // namespace molcryst
