#include "molcryst/support/StringFunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>

#include "molcryst/support/CaseInsensitiveStringLess.h"

using namespace molcryst;

TEST(StringFunctions, TrimStripAndUpperCase) {
    EXPECT_EQ(trim("  \tC1 A\t ", " \t"), "C1 A");
    EXPECT_EQ(trim(" \t ", " \t"), "");
    EXPECT_EQ(trim("xxCxx", "x"), "C");
    EXPECT_EQ(strip("2x-1.5", "-+0123456789."), "x");
    EXPECT_EQ(strip("", "a"), "");
    EXPECT_EQ(toupper("Cl2 fe"), "CL2 FE");
}

TEST(StringFunctions, SplitSkipsOrKeepsBlankFields) {
    std::vector<std::string> fields = {"stale"};
    split("C, N ,O", fields, " , ", StringFunctionParameters::BlankFieldControl(0));
    EXPECT_EQ(fields, (std::vector<std::string>{"C", "N", "O"}));
    split("a,,b,", fields, ",", StringFunctionParameters::keep_blank_fields);
    EXPECT_EQ(fields, (std::vector<std::string>{"a", "", "b", ""}));
    split("", fields, ",");
    EXPECT_TRUE(fields.empty());
}

TEST(StringFunctions, IntegerAndRealConversions) {
    // The unchecked form reads the leading number, as the formula parser needs.
    EXPECT_EQ(string_to_int("2-"), 2);
    EXPECT_EQ(string_to_int("-2"), -2);
    EXPECT_EQ(string_to_int("+1"), 1);
    EXPECT_EQ(string_to_int("x"), 0);
    EXPECT_THROW(string_to_int("99999999999"), std::overflow_error);

    bool ok = false;
    EXPECT_EQ(string_to_int(" 42 ", ok), 42);
    EXPECT_TRUE(ok);
    for (const char* bad : {"", "4x", "x4", "99999999999", "1.5"}) {
        EXPECT_EQ(string_to_int(bad, ok), 0) << bad;
        EXPECT_FALSE(ok) << bad;
    }
    EXPECT_DOUBLE_EQ(string_to_double("0.5", ok), 0.5);
    EXPECT_TRUE(ok);
    EXPECT_DOUBLE_EQ(string_to_double("-1e3", ok), -1000.0);
    EXPECT_TRUE(ok);
    for (const char* bad : {"", "x", "1.5.5", "1e999"}) {
        string_to_double(bad, ok);
        EXPECT_FALSE(ok) << bad;
    }
    EXPECT_EQ(int_to_string(-17), "-17");
    EXPECT_EQ(molcryst::to_string(2.5), "2.5");
    EXPECT_EQ(molcryst::to_string(7u), "7");
}

TEST(StringFunctions, GetlineDropsLineEndsAndTheUnterminatedLastLine) {
    std::istringstream in("ABC\nDEF\r\nGHI");
    std::vector<std::string> kept;
    std::string line;
    // How an index file is read: a line counts only if the stream is still good and not at its end.
    while (in.good() && !in.eof()) {
        tarn::getline(in, line);
        if (in.good() && !in.eof()) kept.push_back(line);
    }
    EXPECT_EQ(kept, (std::vector<std::string>{"ABC", "DEF"}));
}

TEST(CaseInsensitiveStringLess, OrdersIgnoringCase) {
    CaseInsensitiveStringLess less;
    EXPECT_FALSE(less("abc", "ABC"));
    EXPECT_FALSE(less("ABC", "abc"));
    EXPECT_TRUE(less("ab", "ABC"));
    EXPECT_TRUE(less("abc", "ABD"));
    EXPECT_TRUE(less("Z", "a") == false);
    std::set<std::string, CaseInsensitiveStringLess> names = {"Cl", "CL", "c", "B"};
    EXPECT_EQ(names.size(), 3u);
    EXPECT_EQ(*names.begin(), "B");
}
