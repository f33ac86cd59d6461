// Definition strings, code ranges and code lists of the catalogue.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>
#include <string>

#include "factory/ox_catalogue.h"
#include "ox.h"
#include "test_util.h"

namespace {

TEST(Defstring, LeadingDigitsAreTheCode) {
    EXPECT_EQ(ox_factory_defstring_to_int("4326"), 4326);
    EXPECT_EQ(ox_factory_defstring_to_int("  4326"), 4326);
    EXPECT_EQ(ox_factory_defstring_to_int("\t4326abc"), 4326);
    EXPECT_EQ(ox_factory_defstring_to_int(""), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("   "), 0);
    EXPECT_EQ(ox_factory_defstring_to_int(nullptr), 0);
    // A sign is not a digit: the name path finds nothing.
    EXPECT_EQ(ox_factory_defstring_to_int("-1"), 0);
    // Overlong digit strings saturate instead of overflowing.
    EXPECT_EQ(ox_factory_defstring_to_int("99999999999999999999999"), INT32_MAX);
}

TEST(Defstring, NameMatchIsExactAfterALoosePrefixTest) {
    EXPECT_EQ(ox_factory_defstring_to_int("OX_GCS_WGS_1984"), 4326);
    EXPECT_EQ(ox_factory_defstring_to_int("  OX_GCS_WGS_1984"), 4326);
    EXPECT_EQ(ox_factory_defstring_to_int("ox_gcs_wgs_1984"), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("OX_GCS_WGS_1984 "), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("ox-gcs wgs"), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("OX_XYZ_A"), 0);
    // The prefix picks the table: a projected name under the geographic
    // prefix is not found.
    EXPECT_EQ(ox_factory_defstring_to_int("OX_GCS_WGS_1984_UTM_ZONE_33N"), 0);
    // Names absent from the prefix tables resolve through the superseded names.
    EXPECT_EQ(ox_factory_defstring_to_int("OX_GCS_MHAST"), 4264);
    EXPECT_EQ(ox_factory_defstring_to_int("OX_PCS_PITON_DES_NEIGES_TM_REUNION"), 3727);
}

// tests/data/definition_strings.csv: names to codes and back; the
// superseded-names table row by row.
TEST(Defstring, TellingRowsAndTheSupersededNames) {
    int superseded = 0;
    for (const auto &f : oxtest::read_csv("definition_strings.csv")) {
        const int32_t code = std::stoi(f[1]);
        EXPECT_EQ(ox_factory_defstring_to_int(f[0].c_str()), code) << f[0];
        EXPECT_EQ(ox_factory_defstring_to_int(ox_factory_int_to_defstring(code)), code) << code;
        if (f[2] != "superseded") continue;
        ASSERT_LT(superseded, ox::cat::kSupersededNames.count);
        EXPECT_EQ(ox::cat::kSupersededNames.rows[superseded].name, f[0]);
        EXPECT_EQ(ox::cat::kSupersededNames.rows[superseded].code, code);
        ++superseded;
    }
    EXPECT_EQ(superseded, 17);
    EXPECT_EQ(ox::cat::kSupersededNames.count, 17);
    EXPECT_STREQ(ox_factory_int_to_defstring(4326), "OX_GCS_WGS_1984");
    EXPECT_STREQ(ox_factory_int_to_defstring(32633), "OX_PCS_WGS_1984_UTM_ZONE_33N");
    EXPECT_STREQ(ox_factory_int_to_defstring(9102), "OX_U_DEGREE");
    // Synonyms turn back into their first name.
    EXPECT_STREQ(ox_factory_int_to_defstring(6626), "OX_D_PITON_DES_NEIGES");
    EXPECT_STREQ(ox_factory_int_to_defstring(6155), "OX_D_DABOLA");
    EXPECT_STREQ(ox_factory_int_to_defstring(4617), "OX_GCS_NAD_1983_CSRS");
    // Superseded names are consulted last.
    EXPECT_STREQ(ox_factory_int_to_defstring(4264), "OX_GCS_MHAST");
    EXPECT_STREQ(ox_factory_int_to_defstring(3727), "OX_PCS_REUNION_1947_TM_REUNION");
    EXPECT_STREQ(ox_factory_int_to_defstring(26761), "OX_PCS_NAD_1927_HI_1");
}

TEST(Defstring, HostileStringsAndUnknownCodes) {
    std::string long_name(100000, 'A');
    EXPECT_EQ(ox_factory_defstring_to_int(long_name.c_str()), 0);
    long_name.replace(0, 7, "OX_GCS_");
    EXPECT_EQ(ox_factory_defstring_to_int(long_name.c_str()), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("OX_"), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("\xff\xfe\x80"), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("O X _ G C S _"), 0);
    // no name carries a custom code
    for (int32_t code : {INT32_MIN, -5, -1, 0, 1, 43000, 43500, 100000, 119700, 209001, INT32_MAX})
        EXPECT_EQ(ox_factory_int_to_defstring(code), nullptr) << code;
}

// Each table (tests/data/definition_tables.csv): prefix, first and last
// rows, lowest and highest codes, sorted by name in byte order, every name
// carries its prefix, and every row's code turns back into a name of the
// same code.
TEST(Defstring, TablesAreSortedAndConsistent) {
    const auto expected = oxtest::read_csv("definition_tables.csv");
    ASSERT_EQ(expected.size(), static_cast<size_t>(ox::cat::kDefKinds));
    for (int k = 0; k < ox::cat::kDefKinds; ++k) {
        const ox::cat::DefTable &t = ox::cat::kDefTables[k];
        const auto &e = expected[k];
        SCOPED_TRACE(e[0]);
        EXPECT_EQ(t.prefix, e[0]);
        ASSERT_GT(t.names.count, 0);
        EXPECT_EQ(t.names.rows[0].name, e[1]);
        EXPECT_EQ(t.names.rows[t.names.count - 1].name, e[2]);
        EXPECT_EQ(t.codes.rows[0].code, std::stoi(e[3]));
        EXPECT_EQ(t.codes.rows[t.codes.count - 1].code, std::stoi(e[4]));
        for (int32_t i = 0; i < t.names.count; ++i) {
            const char *name = t.names.rows[i].name;
            ASSERT_EQ(std::strncmp(name, e[0].c_str(), e[0].size()), 0) << name;
            ASSERT_LT(std::strlen(name), 64u) << name;
            if (i > 0) {
                ASSERT_LT(std::strcmp(t.names.rows[i - 1].name, name), 0) << name;
            }
            ASSERT_EQ(ox_factory_defstring_to_int(name), t.names.rows[i].code) << name;
            const char *back = ox_factory_int_to_defstring(t.names.rows[i].code);
            ASSERT_NE(back, nullptr) << name;
            ASSERT_EQ(ox_factory_defstring_to_int(back), t.names.rows[i].code) << name;
        }
    }
    // The registry kinds: one name per registry row.
    EXPECT_EQ(ox::cat::kDefTables[ox::cat::kDefProjection].names.count, 59);
    EXPECT_EQ(ox::cat::kDefTables[ox::cat::kDefParameter].names.count, 35);
    EXPECT_EQ(ox::cat::kDefTables[ox::cat::kDefMethod].names.count, 11);
    EXPECT_EQ(ox::cat::kDefTables[ox::cat::kDefHtmethod].names.count, 2);
}

// The registry definition strings follow the registries' own names.
TEST(Defstring, RegistryNamesMatchTheRegistries) {
    for (ox::cat::DefKind k : {ox::cat::kDefProjection, ox::cat::kDefMethod, ox::cat::kDefHtmethod}) {
        const ox::cat::DefTable &t = ox::cat::kDefTables[k];
        for (int32_t i = 0; i < t.names.count; ++i) {
            const oxtest::Owned h(ox_factory(t.names.rows[i].code));
            ASSERT_TRUE(h) << t.names.rows[i].name;
            std::string upper = t.prefix;
            for (char c : oxtest::name_of(h.get())) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
            EXPECT_EQ(upper, t.names.rows[i].name);
        }
    }
}

TEST(CodeRanges, SetsAndBoundaries) {
    const ox_coderange_set *pcs = ox_factory_coderanges_projcs();
    ASSERT_EQ(pcs->count, 6);
    EXPECT_EQ(pcs->ranges[0].low, 2000);
    EXPECT_EQ(pcs->ranges[0].high, 3999);
    EXPECT_STREQ(pcs->ranges[0].authority, "EPSG");
    EXPECT_STREQ(pcs->ranges[0].version, "6.13");
    EXPECT_STREQ(pcs->ranges[2].authority, "MAVO");
    EXPECT_STREQ(pcs->ranges[2].version, "9.3.0");
    EXPECT_STREQ(pcs->ranges[5].authority, "CUSTOM");
    EXPECT_STREQ(pcs->ranges[5].version, "");
    EXPECT_EQ(ox_factory_coderanges_check(pcs, 2000), 1);
    EXPECT_EQ(ox_factory_coderanges_check(pcs, 3999), 1);
    EXPECT_EQ(ox_factory_coderanges_check(pcs, 1999), 0);
    EXPECT_EQ(ox_factory_coderanges_check(ox_factory_coderanges_geogtran(), 1999), 1);
    EXPECT_EQ(ox_factory_coderanges_check(ox_factory_coderanges_geogcs(), 4000), 1);
    EXPECT_EQ(ox_factory_coderanges_check(nullptr, 4326), 0);
    const ox_coderange_set empty = {0, nullptr};
    EXPECT_EQ(ox_factory_coderanges_check(&empty, 4326), 0);
    const struct {
        const ox_coderange_set *(*set)();
        int32_t count;
    } counts[] = {
        {ox_factory_coderanges_angular_unit, 2}, {ox_factory_coderanges_linear_unit, 3},
        {ox_factory_coderanges_unit, 5},         {ox_factory_coderanges_spheroid, 3},
        {ox_factory_coderanges_datum, 3},        {ox_factory_coderanges_primem, 3},
        {ox_factory_coderanges_geogcs, 4},       {ox_factory_coderanges_htmethod, 1},
        {ox_factory_coderanges_method, 2},       {ox_factory_coderanges_geogtran, 6},
        {ox_factory_coderanges_projection, 1},   {ox_factory_coderanges_parameter, 1},
        {ox_factory_coderanges_projcs, 6},       {ox_factory_coderanges_vdatum, 3},
        {ox_factory_coderanges_vertcs, 4},
    };
    for (const auto &c : counts) EXPECT_EQ(c.set()->count, c.count);
    // The authority's bands are the public bands plus 100000, the custom ones plus 200000.
    const ox_coderange_set *vcs = ox_factory_coderanges_vertcs();
    EXPECT_EQ(vcs->ranges[2].low, 115600);
    EXPECT_STREQ(vcs->ranges[2].authority, "MAVO");
    EXPECT_EQ(vcs->ranges[3].low, 205600);
}

TEST(CodeList, SortedDistinctAndTerminated) {
    int32_t count = -1;
    int32_t *list = ox_factory_datum_codelist(&count);
    ASSERT_NE(list, nullptr);
    ASSERT_GT(count, 400);
    EXPECT_EQ(list[count], 0);
    for (int32_t i = 1; i < count; ++i) ASSERT_LT(list[i - 1], list[i]);
    // 6626 has three names and is listed once.
    EXPECT_EQ(std::count(list, list + count, 6626), 1);
    ox_factory_codelist_del(list);
    list = ox_factory_projection_codelist(nullptr);  // the count is optional
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list[0], 43001);
    EXPECT_EQ(list[59], 0);
    ox_factory_codelist_del(list);
    ox_factory_codelist_del(nullptr);
}

TEST(CodeList, UnitListsDoNotOverlap) {
    int32_t na = 0, nl = 0;
    int32_t *angular = ox_factory_angular_unit_codelist(&na);
    int32_t *linear = ox_factory_linear_unit_codelist(&nl);
    ASSERT_NE(angular, nullptr);
    ASSERT_NE(linear, nullptr);
    std::set<int32_t> a(angular, angular + na), l(linear, linear + nl);
    EXPECT_TRUE(a.count(9102));
    EXPECT_FALSE(l.count(9102));
    EXPECT_TRUE(l.count(9001));
    EXPECT_FALSE(a.count(9001));
    EXPECT_TRUE(l.count(109012));
    for (int32_t c : a) EXPECT_TRUE(c >= 9100 && c <= 9199) << c;
    for (int32_t c : l) EXPECT_TRUE(c < 200000) << c;
    ox_factory_codelist_del(angular);
    ox_factory_codelist_del(linear);
}

TEST(CodeList, EveryListedCodeBuilds) {
    int32_t *(*lists[])(int32_t *) = {ox_factory_geogcs_codelist,   ox_factory_projcs_codelist,
                                       ox_factory_vertcs_codelist,   ox_factory_datum_codelist,
                                       ox_factory_vdatum_codelist,   ox_factory_geogtran_codelist,
                                       ox_factory_angular_unit_codelist, ox_factory_linear_unit_codelist,
                                       ox_factory_primem_codelist,   ox_factory_spheroid_codelist,
                                       ox_factory_method_codelist,   ox_factory_htmethod_codelist,
                                       ox_factory_projection_codelist, ox_factory_parameter_codelist};
    for (auto fn : lists) {
        int32_t n = 0;
        int32_t *list = fn(&n);
        ASSERT_NE(list, nullptr);
        for (int32_t i = 0; i < n; ++i) {
            ox_object *h = ox_factory(list[i]);
            ASSERT_NE(h, nullptr) << list[i];
            oxtest::delete_any(h);
        }
        ox_factory_codelist_del(list);
    }
}

}  // namespace
