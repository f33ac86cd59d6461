// String helpers, the number writer and reader, and small utilities.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "object/ox_objstrings.h"
#include "object/ox_strings.h"
#include "object/ox_utils.h"

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

namespace {
std::string fmt(double v) {
    char b[48];
    format_double(v, b, 16);
    return b;
}
}  // namespace

TEST(FormatDouble, WritesSixteenDigitsWithTheNoiseRule) {
    EXPECT_EQ(fmt(6378137.0), "6378137.0");
    EXPECT_EQ(fmt(298.257223563), "298.257223563");
    EXPECT_EQ(fmt(0.017453292519943295), "0.0174532925199433");
    EXPECT_EQ(fmt(0.0), "0.0");
    EXPECT_EQ(fmt(1e20), "1.000000e+20");  // six decimals in exponent form from 1e16 on
    EXPECT_EQ(fmt(1e16), "1.000000e+16");
    EXPECT_EQ(fmt(-17.66666666666667), "-17.66666666666667");
    EXPECT_EQ(fmt(0.1), "0.1");
    EXPECT_EQ(fmt(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(fmt(500000.0), "500000.0");
    EXPECT_EQ(fmt(0.30480060960121924), "0.3048006096012192");
    EXPECT_EQ(fmt(1e-5), "0.00001");
    EXPECT_EQ(fmt(1e-10), "1e-10");  // below 1e-9 the general form
    EXPECT_EQ(fmt(123456789012.5), "123456789012.5");
    EXPECT_EQ(fmt(-0.5), "-0.5");
    EXPECT_EQ(fmt(NAN), "nan");
}

TEST(FormatDouble, ReadsBackToTheSameValueWhereSixteenDigitsSuffice) {
    // Values of object strings: the text reads back within the equality rule.
    const double values[] = {6378206.4, 294.978698213898, 0.3048, 1.0 / 0.3048, 2.33722917, 0.9996, 1e-8,
                             12345.678901234, -999.999999999999, 0.20116684023368047};
    for (double v : values) {
        double back;
        ASSERT_TRUE(read_number(fmt(v).c_str(), &back)) << v;
        EXPECT_LE(std::fabs(back - v), std::fabs(v) * 4e-16) << fmt(v);
    }
}

TEST(ReadNumber, LeadingNumberJunkAndNonFinite) {
    double v = -1;
    EXPECT_TRUE(read_number("42.5abc", &v));
    EXPECT_EQ(v, 42.5);
    EXPECT_TRUE(read_number("abc", &v));
    EXPECT_EQ(v, 0.0);
    EXPECT_TRUE(read_number("", &v));
    EXPECT_EQ(v, 0.0);
    EXPECT_TRUE(read_number("+7", &v));
    EXPECT_EQ(v, 7.0);
    EXPECT_TRUE(read_number("0x10", &v));
    EXPECT_EQ(v, 16.0);
    EXPECT_TRUE(read_number("1e-400", &v));
    EXPECT_EQ(v, 0.0);
    EXPECT_TRUE(read_number("-2.5e3", &v));
    EXPECT_EQ(v, -2500.0);
    EXPECT_FALSE(read_number("nan", &v));
    EXPECT_FALSE(read_number("inf", &v));
    EXPECT_FALSE(read_number("-infinity", &v));
    EXPECT_FALSE(read_number("1e400", &v));
}
