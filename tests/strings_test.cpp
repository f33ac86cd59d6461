// String helpers, the number writer and reader, and small utilities.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "object/ox_objstrings.h"
#include "object/ox_strings.h"
#include "object/ox_utils.h"
#include "test_util.h"

using namespace ox;

TEST(NameCompare, IgnoresCaseBlanksHyphensAndUnderscores) {
    EXPECT_EQ(name_compare("WGS_1984", "WGS 1984"), 0);
    EXPECT_EQ(name_compare("WGS_1984", "wgs-1984"), 0);
    EXPECT_EQ(name_compare("WGS_1984", "WGS1984"), 0);
    EXPECT_EQ(name_compare(" _-Meter-_ ", "meter"), 0);
    EXPECT_EQ(name_compare(nullptr, ""), 0);
    EXPECT_EQ(name_compare(nullptr, "___"), 0);
    EXPECT_LT(name_compare("abc", "abd"), 0);
    EXPECT_GT(name_compare("abd", "ABC"), 0);
    EXPECT_EQ(name_compare("a", "ab"), -'b');  // difference of the first differing characters
}

TEST(NameCompare, LimitedPrefixAndSearch) {
    EXPECT_EQ(name_compare_n("GEOGCS_X", "geogcsY", 6), 0);
    EXPECT_NE(name_compare_n("GEOGCS_X", "geogcsY", 7), 0);
    EXPECT_EQ(prefix_compare("ox-gcs wgs", "OX_GCS_"), 0);
    EXPECT_NE(prefix_compare("OX_PCS_A", "OX_GCS_"), 0);
    EXPECT_EQ(prefix_compare("OX", "OX_GCS_"), -'g');

    const char *text = "PROJCS[\"x\",GEOG CS[\"g\"]]";
    EXPECT_EQ(name_search(text, "GEOGCS"), text + 11);
    EXPECT_EQ(name_search(text, "projcs"), text);
    EXPECT_EQ(name_search(text, "VERTCS"), nullptr);
    EXPECT_EQ(name_search(nullptr, "X"), nullptr);
    EXPECT_EQ(name_search(text, nullptr), text);
    EXPECT_EQ(name_search(text, ""), text);
    EXPECT_EQ(name_search("", "X"), nullptr);
    EXPECT_STREQ(name_search("xPROJCS[", "PROJCS["), "PROJCS[");
    EXPECT_STREQ(name_search("xxPROJCS[", "PROJCS["), "PROJCS[");
}

TEST(Strings, BoundedCopyAndTrimming) {
    char buf[8];
    EXPECT_EQ(copy_bounded(buf, "abcdefghij", sizeof buf), 7u);
    EXPECT_STREQ(buf, "abcdefg");
    EXPECT_EQ(copy_bounded(buf, nullptr, sizeof buf), 0u);
    EXPECT_STREQ(buf, "");

    char a[] = "  text \t\n";
    EXPECT_STREQ(trim_right(a), "  text");
    char b[] = "  text  ";
    EXPECT_STREQ(trim_both_ends(b), "text");
    char c[] = " \t text ";
    EXPECT_STREQ(trim_in_place(c), "text");
    EXPECT_EQ(c[0], 't');

    EXPECT_TRUE(is_all_digits(nullptr));
    EXPECT_TRUE(is_all_digits(""));
    EXPECT_TRUE(is_all_digits("0123"));
    EXPECT_FALSE(is_all_digits("12a"));
    EXPECT_FALSE(is_all_digits("-1"));

    char d[] = "a,,b, c";
    char *state = nullptr;
    EXPECT_STREQ(split_token(d, ",", &state), "a");
    EXPECT_STREQ(split_token(nullptr, ",", &state), "b");
    EXPECT_STREQ(split_token(nullptr, ",", &state), " c");
    EXPECT_EQ(split_token(nullptr, ",", &state), nullptr);
}

TEST(Utils, PathJoinSwapAndFailureValue) {
    char out[16];
    EXPECT_TRUE(path_join("dir", "unit", out, sizeof out));
    EXPECT_STREQ(out, "dir/unit");
    EXPECT_TRUE(path_join("dir/", "unit", out, sizeof out));
    EXPECT_STREQ(out, "dir/unit");
    EXPECT_FALSE(path_join("directory", "toolongname", out, sizeof out));
    EXPECT_STREQ(out, "");

    uint32_t w = 0x01020304u;
    swap_bytes32(&w, 1);
    EXPECT_EQ(w, 0x04030201u);
    uint64_t v = 0x0102030405060708ull;
    swap_bytes64(&v, 1);
    EXPECT_EQ(v, 0x0807060504030201ull);

    const double nan = failure_nan();
    uint64_t bits;
    std::memcpy(&bits, &nan, sizeof bits);
    EXPECT_EQ(bits, 0x7FF8000000000001ull);
    EXPECT_TRUE(std::isnan(nan));
}

// tests/data/numbers.csv: texts the writer gives, values the reader gives.
TEST(Numbers, WriterAndReader) {
    const auto rows = oxtest::read_csv("numbers.csv");
    ASSERT_EQ(rows.size(), 37u);
    for (const auto &f : rows) {
        ASSERT_EQ(f.size(), 3u);
        char text[48];
        double v = f[1] == "refused" ? 0.0 : std::stod(f[1]), back = -1;
        if (f[0] == "write") {
            format_double(v, text, 16);
            EXPECT_EQ(std::string(text), f[2]) << f[1];
        } else if (f[0] == "read") {
            EXPECT_EQ(read_number(f[2].c_str(), &back), f[1] != "refused") << f[2];
            if (f[1] != "refused") {
                EXPECT_EQ(back, v) << f[2];
            }
        } else {
            format_double(v, text, 16);
            ASSERT_TRUE(read_number(text, &back)) << f[1];
            EXPECT_LE(std::fabs(back - v), std::fabs(v) * 4e-16) << text;
        }
    }
}
