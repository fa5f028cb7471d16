#include "molcryst/elements/Element.h"

#include <gtest/gtest.h>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"

#include <array>
#include <cctype>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "molcryst/support/Archive.h"
#include "molcryst/support/StringFunctions.h"

using namespace molcryst;
using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;
using molcryst::testing::error_text;

namespace {

Element::TARNCode code(int c) { return static_cast<Element::TARNCode>(c); }

// What a name lookup means, written as plainly as possible: the codes scanned
// in order against the symbols. The library's tables must agree with it.
int reference_exact_code(const std::string& s) {
    for (int c = 0; c < Element::ncodes_; ++c)
        if (Element::table_[c] == s) return c;
    return 0;
}

int reference_name_code(const std::string& s) {  // -1 for a refused name
    std::string upper = toupper(s);
    if (s.size() == 7) return upper == "UNKNOWN" ? 0 : -1;
    if (s.size() != 1 && s.size() != 2) return -1;
    for (int c = 0; c < Element::ncodes_; ++c)
        if (toupper(Element::table_[c]) == upper) return c;
    return -1;
}

}  // namespace

TEST(Element, CodesPutCarbonAndHydrogenFirstThenSymbolsInOrderWithLuBeforeLr) {
    // C, H and Zz stand in the property rows below.
    EXPECT_EQ(Element::table_[3], "Ac");
    for (int c = 3; c < Element::ncodes_ - 1; ++c) {
        if (c == Element::Lu) {
            EXPECT_GT(Element::table_[c], Element::table_[c + 1]) << "Lu stays before Lr";
        } else {
            EXPECT_LT(Element::table_[c], Element::table_[c + 1]) << "code " << c;
        }
    }
    // Elements order by code, not by atomic number.
    EXPECT_LT(Element("C"), Element("H"));
    EXPECT_LT(Element("H"), Element("Ac"));
    EXPECT_LT(Element("Lu"), Element("Lr"));
    EXPECT_GT(Element("B"), Element("Au"));
    EXPECT_NE(Element("H"), Element("D"));
    EXPECT_EQ(Element("Cl"), Element(Element::Cl));
}

TEST(Element, TellingRowsOfThePropertyTable) {
    struct Row {
        const char* symbol;
        int code, z;
        double vdw, covalent, volume, weight;
    };
    // Deuterium is hydrogen but for its weight; the unknowns have only the
    // radius that stands for "none published".
    const Row rows[] = {
        {"C", 1, 6, 1.7, 0.68, 13.87, 12.011},     {"H", 2, 1, 1.2, 0.23, 5.08, 1.008},
        {"D", 27, 1, 1.2, 0.23, 5.08, 2.0},        {"Cu", 26, 29, 1.4, 1.52, 26.9, 63.546},
        {"K", 46, 19, 2.75, 1.33, 36.0, 39.102},   {"Lu", 50, 71, 2.0, 1.72, 35.0, 174.97},
        {"Lr", 51, 103, 2.0, 0.0, 0.0, 255.5},     {"Fm", 34, 100, 2.0, 0.0, 0.0, 257.0},
        {"Na", 57, 11, 2.27, 0.97, 26.0, 22.9898}, {"X", 100, 0, 2.0, 0.0, 0.0, 0.0},
        {"Z", 104, 0, 2.0, 0.0, 0.0, 0.0},         {"Zz", 107, 0, 2.0, 0.0, 0.0, 0.0},
        {"Unknown", 0, 0, 2.0, 0.0, 0.0, 0.0},
    };
    EXPECT_EQ(Element().code(), Element::Unknown);
    EXPECT_EQ(to_string(Element()), "Unknown");
    for (const Row& r : rows) {
        SCOPED_TRACE(r.symbol);
        Element e(r.symbol);
        EXPECT_EQ(e.code(), r.code);
        EXPECT_EQ(e.symbol(), r.symbol);
        EXPECT_EQ(e.atomic_number(), r.z);
        EXPECT_EQ(e.vdw_radius(), r.vdw);
        EXPECT_EQ(e.covalent_radius(), r.covalent);
        EXPECT_EQ(e.atomic_volume(), r.volume);
        EXPECT_EQ(e.atomic_weight(), r.weight);
    }
}

TEST(Element, EveryAtomicNumberOnceExceptHydrogenTwiceAndZeroForTheFourUnknowns) {
    std::map<int, std::vector<std::string> > by_z;
    for (int c = 0; c < Element::ncodes_; ++c) by_z[Element::atomic_numbers_[c]].push_back(Element::table_[c]);
    EXPECT_EQ(by_z.size(), 104u);  // 0 to 103
    EXPECT_EQ(by_z.rbegin()->first, 103);
    EXPECT_EQ(by_z[0], (std::vector<std::string>{"Unknown", "X", "Z", "Zz"}));
    EXPECT_EQ(by_z[1], (std::vector<std::string>{"H", "D"}));
    for (const auto& entry : by_z)
        if (entry.first > 1) {
            EXPECT_EQ(entry.second.size(), 1u) << "atomic number " << entry.first;
        }
}

TEST(Element, AtomicNumberToCodeTakesTheLowestCodeAndStopsAtLawrencium) {
    // H, never D; Unknown, never X.
    const std::pair<int, Element::TARNCode> cases[] = {
        {1, Element::H},    {0, Element::Unknown},   {6, Element::C},        {71, Element::Lu},
        {103, Element::Lr}, {104, Element::Unknown}, {-1, Element::Unknown}, {6 + 256, Element::Unknown}};
    for (const auto& c : cases) EXPECT_EQ(Element::atomic_number_to_tarn_code(c.first), c.second) << c.first;
}

TEST(Element, NamesOutsideTheShortOnesAndRefusalsNamingTheTextAsGiven) {
    // Names of one or two printable characters are all checked below.
    EXPECT_EQ(Element("uNkNoWn").code(), 0);
    Element e("N");
    e.init("na");
    EXPECT_EQ(e.code(), Element::Na);
    EXPECT_EQ(error_text<std::invalid_argument>([] { Element(" C"); }), "Element::Element: Illegal element name:  C");
    EXPECT_EQ(error_text<std::invalid_argument>([] { Element(std::string("Lw")); }),
              "Element::Element: Illegal element name: Lw");
    EXPECT_EQ(error_text<std::invalid_argument>([] { Element(static_cast<const char*>(nullptr)); }),
              "Element::Element: Illegal element name: ");
    for (const char* name : {"", "CLA", "Unknow", "Unknown ", "Unk", "\xc3\x89"})
        EXPECT_THROW(Element{name}, std::invalid_argument) << '"' << name << '"';
    EXPECT_THROW(Element(std::string("C\0", 2)), std::invalid_argument);
    EXPECT_THROW(e.init("Fee"), std::invalid_argument);
    EXPECT_EQ(e.code(), Element::Na);
}

TEST(Element, LookupsAgreeWithAPlainScanForEveryShortName) {
    // Symbol lookups are exact ("UNKNOWN" misses, though the constructor
    // takes it) and stop at no embedded NUL.
    EXPECT_EQ(Element::atomic_symbol_to_tarn_code(std::string("C\0", 2)), 0);
    EXPECT_EQ(Element::atomic_symbol_to_tarn_code(static_cast<const char*>(nullptr)), 0);
    // Every name of one or two printable characters, and each symbol in
    // three cases: what the lookup maps answer must be what scanning says.
    std::vector<std::string> names;
    for (char a = ' '; a <= '~'; ++a) {
        names.push_back(std::string(1, a));
        for (char b = ' '; b <= '~'; ++b) names.push_back(std::string{a, b});
    }
    for (const std::string& s : Element::table_) {
        names.push_back(s);
        names.push_back(toupper(s));
        std::string lower = s;
        for (char& ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        names.push_back(lower);
    }
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        ASSERT_EQ(Element::atomic_symbol_to_tarn_code(name), reference_exact_code(name));
        ASSERT_EQ(Element::atomic_symbol_to_tarn_code(name.c_str()), reference_exact_code(name));
        int expected = reference_name_code(name);
        if (expected < 0) {
            ASSERT_THROW(Element{name}, std::invalid_argument);
            ASSERT_THROW(Element{name.c_str()}, std::invalid_argument);
        } else {
            ASSERT_EQ(Element(name).code(), expected);
            ASSERT_EQ(Element(name.c_str()).code(), expected);
        }
    }
}

TEST(Element, CodesOutsideTheTableAreRefusedWithTheDecimalCode) {
    EXPECT_EQ(error_text<std::invalid_argument>([] { Element e(code(108)); }),
              "Element::Element: Illegal element code - 108");
    EXPECT_EQ(error_text<std::invalid_argument>([] { Element e(code(-1)); }),
              "Element::Element: Illegal element code - -1");
    EXPECT_EQ(to_string(Element::Zz), "107");
}

TEST(Element, ArchivedAsOneSignedByteAloneAndInVectors) {
    Archive ar = Archive::temporary();
    ar << Element("Zz");
    std::vector<Element> v = {Element("C"), Element("D"), Element(), Element("Lr")};
    ar << v;
    EXPECT_EQ(bytes_of(ar), (std::vector<unsigned char>{107, 4, 0, 0, 0, 1, 27, 0, 51}));

    Element single("Fe");
    std::vector<Element> back;
    ar >> single >> back;
    EXPECT_EQ(single.code(), Element::Zz);
    EXPECT_EQ(back, v);
}

TEST(Element, BadOrMissingArchiveBytesThrow) {
    Archive minus_one = archive_of({0xFF});
    Element e;
    EXPECT_EQ(error_text<std::invalid_argument>([&] { e.read(minus_one); }),
              "Element::Element: Illegal element code - -1");
    for (unsigned char byte : {108, 127, 128}) {
        Archive ar = archive_of({byte});
        EXPECT_THROW(Element{ar}, std::invalid_argument) << int(byte);
    }
    Archive empty = archive_of({});
    std::string what = error_text<std::runtime_error>([&] { Element read(empty); });
    EXPECT_NE(what.find("Element::read code"), std::string::npos) << what;
    Archive short_vector = archive_of({3, 0, 0, 0, 1, 2});  // a vector of three with two bytes left
    std::vector<Element> v;
    EXPECT_THROW(short_vector >> v, std::runtime_error);
}

TEST(Element, EstimatedVolumeGrowsLinearlyFrom298Kelvin) {
    EXPECT_EQ(Element("C").estimated_atomic_volume(298.0), 13.87);
    EXPECT_DOUBLE_EQ(Element("C").estimated_atomic_volume(398.0), 13.87 * (1 + 100 * 9.5e-5));
    EXPECT_DOUBLE_EQ(Element("O").estimated_atomic_volume(100.0), 11.39 * (1 - 198 * 9.5e-5));
    for (const char* none : {"Fm", "Lr", "Md", "No"}) EXPECT_EQ(Element(none).estimated_atomic_volume(150.0), 0.0);
}

TEST(Element, ScatteringFactorAtZeroIsTheSumOfTheCoefficientsAndNearTheElectronCount) {
    for (int c = 0; c < Element::ncodes_; ++c) {
        Element e(code(c));
        double sum = Element::a1_[c] + Element::a2_[c] + Element::a3_[c] + Element::a4_[c] + Element::c_[c];
        EXPECT_DOUBLE_EQ(e.xray_scattering_factor(0.0), sum) << e;
        // A neutral atom scatters forward as its electrons do: this catches a
        // row of coefficients standing against the wrong element.
        if (sum != 0.0) {
            EXPECT_NEAR(sum, e.atomic_number(), 0.1) << e;
        }
    }
    const Element o("O");
    double s = 0.25;
    EXPECT_DOUBLE_EQ(o.xray_scattering_factor(s), 3.0485 * std::exp(-13.2771 * s) + 2.2868 * std::exp(-5.7011 * s) +
                                                      1.5463 * std::exp(-0.3239 * s) +
                                                      0.867 * std::exp(-32.9089 * s) + 0.2508);
}

TEST(Element, ScatteringCoefficientsMatchTheDataFile) {
    std::ifstream in(MOLCRYST_ELEMENTS_TEST_DATA_DIR "/xray_scattering_neutral.tsv");
    ASSERT_TRUE(in) << "cannot open the data file";
    const std::array<double, Element::ncodes_>* columns[] = {&Element::a1_, &Element::b1_, &Element::a2_,
                                                             &Element::b2_, &Element::a3_, &Element::b3_,
                                                             &Element::a4_, &Element::b4_, &Element::c_};
    std::vector<bool> listed(Element::ncodes_, false);
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#' || line.compare(0, 6, "symbol") == 0) continue;
        std::istringstream fields(line);
        std::string symbol;
        fields >> symbol;
        int c = Element::atomic_symbol_to_tarn_code(symbol);
        ASSERT_NE(c, 0) << symbol;
        listed[c] = true;
        for (int k = 0; k < 9; ++k) {
            double value = 0;
            ASSERT_TRUE(fields >> value) << symbol;
            EXPECT_EQ((*columns[k])[c], value) << symbol << " coefficient " << k;
        }
    }
    // Rows the file does not give: deuterium copies hydrogen, the rest are zero.
    std::vector<std::string> unlisted;
    for (int c = 0; c < Element::ncodes_; ++c) {
        if (listed[c]) continue;
        unlisted.push_back(Element::table_[c]);
        int source = c == Element::D ? Element::H : -1;
        for (const auto* column : columns) EXPECT_EQ((*column)[c], source < 0 ? 0.0 : (*column)[source]);
    }
    EXPECT_EQ(unlisted, (std::vector<std::string>{"Unknown", "D", "Es", "Fm", "Lr", "Md", "No", "X", "Z", "Zz"}));
}

TEST(lower_element_case, LowersTheSecondLetterOfListedPairsOnly) {
    // "LW" is listed though no element is "Lw"; the lists leave out two
    // symbols of the table, gold and lawrencium. The answer says whether the text changed.
    const std::pair<std::string, std::string> cases[] = {
        {"CL", "Cl"}, {"CA", "Ca"}, {"ZZ", "Zz"}, {"LW", "Lw"}, {"NB", "Nb"}, {"CH", "CH"},   {"AB", "AB"},
        {"C", "C"},   {"", ""},     {"Cl", "Cl"}, {"cl", "cl"}, {"JA", "JA"}, {"CLA", "CLA"}, {"UA", "UA"},
        {"AU", "AU"}, {"LR", "LR"},
    };
    for (const auto& c : cases) {
        std::string s = c.first;
        EXPECT_EQ(lower_element_case(s), c.first != c.second) << c.first;
        EXPECT_EQ(s, c.second);
    }
}
