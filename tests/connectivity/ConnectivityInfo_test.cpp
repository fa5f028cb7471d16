#include "molcryst/connectivity/ConnectivityInfo.h"

#include <gtest/gtest.h>

#include <sstream>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molecule/TestMolecules.h"

namespace molcryst {
namespace {

using testing::error_text;

HConnectivity one_atom(Element e) {
    HConnectivity c(new Connectivity());
    c->add(HConnectivityAtom(new ConnectivityAtom(e)));
    return c;
}

// The multipliers after simplify_multipliers, unknown ones as -1.
std::vector<double> simplified(const std::vector<double>& multipliers) {
    ConnectivityInfo info;
    for (double m : multipliers) {
        if (m < 0)
            info.add_connectivity(one_atom(Element::C));
        else
            info.add_connectivity(one_atom(Element::C), m);
    }
    info.simplify_multipliers();
    std::vector<double> out;
    for (int i = 0; i < info.nconnectivities(); ++i) out.push_back(info.multiplier_unknown(i) ? -1 : info.multiplier(i));
    return out;
}

TEST(ConnectivityInfo, SimplifyMultipliers) {
    EXPECT_EQ(simplified({2, 4}), (std::vector<double>{1, 2}));
    EXPECT_EQ(simplified({0.5, 1}), (std::vector<double>{1, 2}));
    EXPECT_EQ(simplified({0.25, 0.75}), (std::vector<double>{1, 3}));
    EXPECT_EQ(simplified({0.333, 1}), (std::vector<double>{1, 3}));
    EXPECT_EQ(simplified({0.6667, 2}), (std::vector<double>{1, 3}));  // 2 and 6, then halved
    EXPECT_EQ(simplified({6, 10, 30}), (std::vector<double>{3, 5, 15}));
    EXPECT_EQ(simplified({0.125, 1}), (std::vector<double>{0.125, 1}));  // no row near 0.125
    EXPECT_EQ(simplified({0.5, 0.25}), (std::vector<double>{2, 1}));  // the 0.25 row scales both by 4
    // An unknown multiplier takes no part and stays 1.0; a zero one neither.
    EXPECT_EQ(simplified({0.5, -1, 1.5}), (std::vector<double>{1, -1, 3}));
    EXPECT_EQ(simplified({4, 0, 8}), (std::vector<double>{1, 0, 2}));
    EXPECT_EQ(simplified({-1, -1}), (std::vector<double>{-1, -1}));
    EXPECT_EQ(simplified({}), (std::vector<double>{}));
    // Fractions the table does not know are left alone.
    EXPECT_EQ(simplified({0.1, 0.7}), (std::vector<double>{0.1, 0.7}));
    std::vector<double> huge = simplified({1e300, 0.25});  // ends, whatever it makes of such numbers
    EXPECT_EQ(huge.size(), 2u);
}

TEST(ConnectivityInfo, ItemsMultipliersAndMessages) {
    ConnectivityInfo info;
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.add_connectivity(HConnectivity(), 1.0); }),
              "ConnectivityInfo::add_connectivity: connectivity is zero");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.add_connectivity(HConnectivity()); }),
              "ConnectivityInfo::add_connectivity: connectivity is zero");
    info.add_connectivity(one_atom(Element::O));
    EXPECT_TRUE(info.multiplier_unknown(0));
    EXPECT_EQ(info.multiplier(0), 1.0);
    info.set_multiplier(0, 2.5);
    EXPECT_FALSE(info.multiplier_unknown(0));
    EXPECT_EQ(info.multiplier(0), 2.5);
    info.set_multiplier_unknown(0);
    EXPECT_TRUE(info.multiplier_unknown(0));
    EXPECT_EQ(info.multiplier(0), 1.0);

    const std::string tail = ": Index out of range.";
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.multiplier(-1); }), "ConnectivityInfo::multiplier" + tail);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.multiplier(1); }), "ConnectivityInfo::multiplier" + tail);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.set_multiplier(1, 1); }),
              "ConnectivityInfo::set_multiplier" + tail);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.set_multiplier_unknown(-1); }),
              "ConnectivityInfo::set_multiplier_unknown" + tail);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.multiplier_unknown(3); }),
              "ConnectivityInfo::multiplier_unknown" + tail);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { info.remove_connectivity(1); }),
              "ConnectivityInfo::remove_connectivity" + tail);

    ConnectivityInfo other;
    other.add_connectivity(one_atom(Element::N), 3);
    info.add(other);
    ASSERT_EQ(info.nconnectivities(), 2);
    info.set_multiplier(1, 4);
    EXPECT_EQ(other.multiplier(0), 3);  // items are copied, records shared
    EXPECT_EQ(info.connectivity(1), other.connectivity(0));
    info.remove_connectivity(0);
    EXPECT_EQ(info.connectivity(0)->atom(0)->element(), Element(Element::N));
    info.clear();
    EXPECT_EQ(info.nconnectivities(), 0);
}

TEST(ConnectivityInfo, SplitGivesEachPartTheParentsMultiplier) {
    HConnectivity salt(new Connectivity(*testing::water()));
    salt->add(HConnectivityAtom(new ConnectivityAtom(Element::Na, 1)));
    ConnectivityInfo info;
    info.add_connectivity(salt, 2);
    info.add_connectivity(HConnectivity(new Connectivity(*salt)));
    info.split();
    ASSERT_EQ(info.nconnectivities(), 4);
    EXPECT_EQ(info.connectivity(0)->natoms(), 3);
    EXPECT_EQ(info.connectivity(1)->natoms(), 1);
    EXPECT_EQ(info.multiplier(0), 2);
    EXPECT_EQ(info.multiplier(1), 2);
    EXPECT_FALSE(info.multiplier_unknown(1));
    EXPECT_TRUE(info.multiplier_unknown(2));
    EXPECT_TRUE(info.multiplier_unknown(3));
    EXPECT_EQ(info.multiplier(3), 1.0);
    EXPECT_EQ(salt->natoms(), 4);  // the records split are copies
}

TEST(ConnectivityInfo, ArchiveLayoutPrintAndBadInput) {
    ConnectivityInfo info;
    info.add_connectivity(one_atom(Element::O), 0.5);
    info.add_connectivity(one_atom(Element::H));
    Archive ar = Archive::temporary();
    info.write(ar);
    std::vector<unsigned char> expected = testing::words({2});
    auto item = [&expected](bool unknown, double m, signed char code) {
        expected.push_back(unknown ? 1 : 0);
        std::vector<unsigned char> d = testing::doubles({m});
        expected.insert(expected.end(), d.begin(), d.end());
        std::vector<unsigned char> w = testing::words({1});
        expected.insert(expected.end(), w.begin(), w.end());
        expected.push_back(static_cast<unsigned char>(code));
        w = testing::words({0, 0});
        expected.insert(expected.end(), w.begin(), w.end());
    };
    item(false, 0.5, Element::O);
    item(true, 1.0, Element::H);
    EXPECT_EQ(testing::bytes_of(ar), expected);

    ConnectivityInfo back;
    back.add_connectivity(one_atom(Element::C), 7);  // read replaces what was there
    back.read(ar);
    EXPECT_EQ(back, info);
    EXPECT_EQ(back.nconnectivities(), 2);

    std::ostringstream out;
    info.print(out);
    EXPECT_EQ(out.str(),
              "connectivities: 2\nmultiplier: 0.5\nnatoms: 1\nelement: O, formal_charge: 0\nnbonds: 0\n"
              "multiplier: unknown\nnatoms: 1\nelement: H, formal_charge: 0\nnbonds: 0\n");

    expected.resize(expected.size() - 3);  // cut inside the last record
    Archive cut = testing::archive_of(expected);
    EXPECT_NE(error_text<std::runtime_error>([&] { back.read(cut); }), "no exception");
    EXPECT_EQ(back, info);  // a failed read leaves the list as it was
    Archive negative = testing::archive_of(testing::words({-3}));
    EXPECT_NE(error_text<std::runtime_error>([&] { back.read(negative); }).find("ConnectivityInfo::read"),
              std::string::npos);
}

}  // namespace
}  // namespace molcryst
