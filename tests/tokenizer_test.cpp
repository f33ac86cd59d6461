// The object-string tokenizer: normalisation, splitting, depths and every
// error code.
#include <gtest/gtest.h>

#include <string>

#include "object/ox_objstrings.h"
#include "test_util.h"

using namespace ox;

namespace {

struct Tok {
    Tokens w;
    int rc;
    Tok(const char *text, const char *keyword = nullptr) { rc = tokenize_object_string(&w, text, keyword); }
    std::string at(int i) const { return w.token[i]; }
};

}  // namespace

TEST(Tokenizer, SplitsTheGeographicExampleWithDepths) {
    Tok t(oxtest::kWgs84);
    ASSERT_EQ(t.rc, kTokOk);
    const char *texts[] = {"GEOGCS", "GCS_WGS_1984", "DATUM", "D_WGS_1984", "SPHEROID", "WGS_1984", "6378137.0",
                           "298.257223563", "PRIMEM", "Greenwich", "0.0", "UNIT", "Degree", "0.0174532925199433"};
    const int depths[] = {0, 1, 1, 2, 2, 3, 3, 3, 1, 2, 2, 1, 2, 2};
    ASSERT_EQ(t.w.count, 14);
    for (int i = 0; i < 14; ++i) {
        EXPECT_EQ(t.at(i), texts[i]) << i;
        EXPECT_EQ(t.w.depth[i], depths[i]) << i;
    }
}

TEST(Tokenizer, QuotesParenthesesAndWhiteSpace) {
    Tok a("UNIT(\"Degree\", 0.0174532925199433)");
    ASSERT_EQ(a.rc, kTokOk);
    ASSERT_EQ(a.w.count, 3);
    EXPECT_EQ(a.at(1), "Degree");
    EXPECT_EQ(a.at(2), "0.0174532925199433");

    Tok b("  UNIT [ \"  Foot   US \" ,\n 0.3048 ]");
    ASSERT_EQ(b.rc, kTokOk);
    EXPECT_EQ(b.at(1), "Foot   US");  // blanks just inside the quotes dropped, each other one kept
    Tok c("UNIT[\"a\tb\",1]");
    ASSERT_EQ(c.rc, kTokOk);
    EXPECT_EQ(c.at(1), "a b");

    Tok d("UNIT[Degree,\"0.5\"]");  // quoted and bare tokens read alike
    ASSERT_EQ(d.rc, kTokOk);
    EXPECT_EQ(d.at(1), "Degree");
    EXPECT_EQ(d.at(2), "0.5");

    Tok e("UNIT[\"a,b[c]\",1]");  // delimiters inside quotes belong to the name
    ASSERT_EQ(e.rc, kTokOk);
    EXPECT_EQ(e.at(1), "a,b[c]");
}

TEST(Tokenizer, EmptyValuesAndTextAfterTheObject) {
    Tok a("A[x,,y]");
    ASSERT_EQ(a.rc, kTokOk);
    ASSERT_EQ(a.w.count, 4);
    EXPECT_EQ(a.at(2), "");

    Tok b("A[B[1],C[2]]");  // the empty piece after "]," is not a token
    ASSERT_EQ(b.rc, kTokOk);
    EXPECT_EQ(b.w.count, 5);

    Tok c("UNIT[\"m\",1] trailing garbage [[[");
    ASSERT_EQ(c.rc, kTokOk);
    EXPECT_EQ(c.w.count, 3);

    Tok d("UNIT[\"m\",1]]]]");  // a stray closing bracket after the object is ignored
    EXPECT_EQ(d.rc, kTokOk);
}

TEST(Tokenizer, KeywordChoosesWhereReadingStarts) {
    Tok t(oxtest::kUtm33, "UNIT");
    ASSERT_EQ(t.rc, kTokOk);
    EXPECT_EQ(t.at(0), "UNIT");
    EXPECT_EQ(t.at(1), "Degree");  // the first UNIT of the text
    EXPECT_EQ(t.w.count, 3);

    Tok g(oxtest::kUtm33, "GEOGCS");
    ASSERT_EQ(g.rc, kTokOk);
    EXPECT_EQ(g.w.count, 14);  // only the GEOGCS inside the PROJCS

    Tok missing("UNIT[\"m\",1]", "SPHEROID");  // not found: from the start
    ASSERT_EQ(missing.rc, kTokOk);
    EXPECT_EQ(missing.at(0), "UNIT");
}

TEST(Tokenizer, ErrorCodes) {
    EXPECT_EQ(tokenize_object_string(nullptr, "UNIT[\"m\",1]", nullptr), kTokNoWorkArea);
    EXPECT_EQ(Tok(nullptr).rc, kTokNoText);
    EXPECT_EQ(Tok("").rc, kTokNoText);
    EXPECT_EQ(Tok(" \t\n ").rc, kTokNoText);
    EXPECT_EQ(Tok("[UNIT]").rc, kTokBadCharacter);
    EXPECT_EQ(Tok("\"UNIT\"").rc, kTokBadCharacter);
    EXPECT_EQ(Tok("UNIT[\"m\"x,1]").rc, kTokBadCharacter);   // closing quote not followed by , or ]
    EXPECT_EQ(Tok("UNIT[\"m\"").rc, kTokBadCharacter);       // nothing after the closing quote
    EXPECT_EQ(Tok("A[B[1]x,C[2]]").rc, kTokBadCharacter);    // a character after ]
    EXPECT_EQ(Tok("A[B[1]\"x\"]").rc, kTokBadCharacter);
    EXPECT_EQ(Tok("UNIT[\"m,1]").rc, kTokUnbalanced);
    EXPECT_EQ(Tok("UNIT[\"m\",1").rc, kTokUnbalanced);
    EXPECT_EQ(Tok("A[B[C[1]]").rc, kTokUnbalanced);
}

TEST(Tokenizer, LengthAndTokenLimits) {
    // 1023 normalised characters read; one more does not.
    auto unit_of_length = [](int n) {
        std::string s = "UNIT[\"";
        const int name = n - static_cast<int>(s.size()) - 4;  // "\",1]"
        s += std::string(static_cast<size_t>(name), 'x');
        return s + "\",1]";
    };
    ASSERT_EQ(unit_of_length(1023).size(), 1023u);
    EXPECT_EQ(Tok(unit_of_length(1023).c_str()).rc, kTokOk);
    EXPECT_EQ(Tok(unit_of_length(1024).c_str()).rc, kTokTooLong);
    // White space outside quotes does not count.
    std::string spaced = unit_of_length(1023);
    spaced.insert(4, 5000, ' ');
    EXPECT_EQ(Tok(spaced.c_str()).rc, kTokOk);

    // 256 tokens read; 257 do not.
    auto tokens = [](int n) {  // keyword, then n - 1 values
        std::string s = "A[";
        for (int i = 1; i < n; ++i) s += (i > 1 ? ",1" : "1");
        return s + "]";
    };
    Tok ok(tokens(256).c_str());
    EXPECT_EQ(ok.rc, kTokOk);
    EXPECT_EQ(ok.w.count, 256);
    EXPECT_EQ(Tok(tokens(257).c_str()).rc, kTokTooManyTokens);
}

TEST(Tokenizer, HostileNestingStaysBounded) {
    std::string deep = "A";
    for (int i = 0; i < 600; ++i) deep += "[";
    for (int i = 0; i < 600; ++i) deep += "]";
    EXPECT_EQ(Tok(deep.c_str()).rc, kTokTooLong);
    std::string nested = "A";  // every '[' makes a token
    for (int i = 0; i < 300; ++i) nested += "[";
    for (int i = 0; i < 300; ++i) nested += "]";
    EXPECT_EQ(Tok(nested.c_str()).rc, kTokTooManyTokens);
    std::string nested_ok = "UNIT";
    for (int i = 0; i < 200; ++i) nested_ok += "[";
    for (int i = 0; i < 200; ++i) nested_ok += "]";
    EXPECT_EQ(Tok(nested_ok.c_str()).rc, kTokOk);
    EXPECT_EQ(ox_unit_from_string(nested_ok.c_str()), nullptr);
}
