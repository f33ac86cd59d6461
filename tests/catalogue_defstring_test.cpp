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
}

TEST(Defstring, TellingRows) {
    const struct {
        const char *name;
        int32_t code;
    } rows[] = {
        {"OX_GCS_WGS_1984", 4326},       {"OX_D_WGS_1984", 6326},
        {"OX_S_WGS_1984", 7030},         {"OX_PM_GREENWICH", 8901},
        {"OX_U_METER", 9001},            {"OX_U_FOOT_US", 9003},
        {"OX_U_DEGREE", 9102},           {"OX_PRJ_TRANSVERSE_MERCATOR", 43006},
        {"OX_PAR_FALSE_EASTING", 100001}, {"OX_MTH_GEOCENTRIC_TRANSLATION", 9603},
        {"OX_GT_NAD_1927_TO_NAD_1983_NADCON", 1241}, {"OX_VCS_NAVD_1988", 5703},
        {"OX_VERTD_NAVD_1988", 5103},    {"OX_PCS_WGS_1984_UTM_ZONE_33N", 32633},
        {"OX_GCS_NAD_1983_CSRS", 4617},  {"OX_GCS_NAD_1983_CSRS98", 4617},
        {"OX_D_DABOLA", 6155},           {"OX_D_DABOLA_1981", 6155},
        {"OX_D_PITON_DES_NEIGES", 6626}, {"OX_D_REUNION", 6626},
        {"OX_D_REUNION_1947", 6626},     {"OX_PAR_Z_COORD_OF_ROTATION_ORIGIN", 100050},
        {"OX_HTMTH_AFFINE_PARAMETRIC", 119624}, {"OX_HTMTH_2D_PROJECTIVE_PARAMETRIC", 119625},
    };
    for (const auto &r : rows) {
        EXPECT_EQ(ox_factory_defstring_to_int(r.name), r.code) << r.name;
        EXPECT_GT(ox_factory_defstring_to_int(ox_factory_int_to_defstring(r.code)), 0) << r.code;
    }
    EXPECT_STREQ(ox_factory_int_to_defstring(4326), "OX_GCS_WGS_1984");
    EXPECT_STREQ(ox_factory_int_to_defstring(32633), "OX_PCS_WGS_1984_UTM_ZONE_33N");
    EXPECT_STREQ(ox_factory_int_to_defstring(9102), "OX_U_DEGREE");
}

TEST(Defstring, SynonymsTurnBackIntoTheirFirstName) {
    EXPECT_STREQ(ox_factory_int_to_defstring(6626), "OX_D_PITON_DES_NEIGES");
    EXPECT_STREQ(ox_factory_int_to_defstring(6155), "OX_D_DABOLA");
    EXPECT_STREQ(ox_factory_int_to_defstring(4617), "OX_GCS_NAD_1983_CSRS");
}

TEST(Defstring, SupersededNamesAreConsultedLast) {
    EXPECT_EQ(ox_factory_defstring_to_int("OX_GCS_MHAST"), 4264);
    EXPECT_STREQ(ox_factory_int_to_defstring(4264), "OX_GCS_MHAST");
    EXPECT_EQ(ox_factory_defstring_to_int("OX_PCS_PITON_DES_NEIGES_TM_REUNION"), 3727);
    EXPECT_STREQ(ox_factory_int_to_defstring(3727), "OX_PCS_REUNION_1947_TM_REUNION");
    EXPECT_STREQ(ox_factory_int_to_defstring(26761), "OX_PCS_NAD_1927_HI_1");
    const struct {
        const char *name;
        int32_t code;
    } superseded[] = {
        {"OX_D_GANDAJIKA_1970", 6233}, {"OX_D_K0_1949", 6631},  {"OX_D_MHAST", 6264},
        {"OX_GCS_GANDAJIKA_1970", 4233}, {"OX_GCS_K0_1949", 4631}, {"OX_GCS_MHAST", 4264},
        {"OX_GT_GANDAJIKA_1970_TO_WGS_1984_1", 1894}, {"OX_GT_K0_1949_TO_WGS_1984_1", 1915},
        {"OX_GT_PITON_DES_NEIGES_TO_WGS_1984_1", 1911}, {"OX_PCS_K0_1949_UTM_42S", 2979},
        {"OX_PCS_MHAST_UTM_32S", 26432}, {"OX_PCS_NAD_1927_HI_1", 26761}, {"OX_PCS_NAD_1927_HI_2", 26762},
        {"OX_PCS_NAD_1927_HI_3", 26763}, {"OX_PCS_NAD_1927_HI_4", 26764}, {"OX_PCS_NAD_1927_HI_5", 26765},
        {"OX_PCS_PITON_DES_NEIGES_TM_REUNION", 3727},
    };
    ASSERT_EQ(ox::cat::kSupersededNames.count, 17);
    for (int i = 0; i < 17; ++i) {
        EXPECT_STREQ(ox::cat::kSupersededNames.rows[i].name, superseded[i].name);
        EXPECT_EQ(ox::cat::kSupersededNames.rows[i].code, superseded[i].code);
        EXPECT_EQ(ox_factory_defstring_to_int(superseded[i].name), superseded[i].code);
    }
}

TEST(Defstring, ZeroAndUnknownCodesHaveNoName) {
    EXPECT_EQ(ox_factory_int_to_defstring(0), nullptr);
    EXPECT_EQ(ox_factory_int_to_defstring(-5), nullptr);
    EXPECT_EQ(ox_factory_int_to_defstring(1), nullptr);
    EXPECT_EQ(ox_factory_int_to_defstring(209001), nullptr);  // no name carries a custom code
    EXPECT_EQ(ox_factory_int_to_defstring(INT32_MAX), nullptr);
}

// Each table: prefix, first and last rows, lowest and highest codes, sorted
// by name in byte order, every name carries its prefix, and every row's code
// turns back into a name of the same code.
TEST(Defstring, TablesAreSortedAndConsistent) {
    const struct {
        const char *prefix, *first, *last;
        int32_t lowest, highest;
    } expected[ox::cat::kDefKinds] = {
        {"OX_GCS_", "OX_GCS_ABIDJAN_1987", "OX_GCS_ZANDERIJ", 4001, 104970},
        {"OX_PCS_", "OX_PCS_ABIDJAN_1987_TM_5_NW", "OX_PCS_ZANDERIJ_TM_54_NW", 2000, 103538},
        {"OX_VCS_", "OX_VCS_AHD", "OX_VCS_YELLOW_SEA_1985", 5600, 115702},
        {"OX_D_", "OX_D_ABIDJAN_1987", "OX_D_ZANDERIJ", 6001, 106970},
        {"OX_VERTD_", "OX_VERTD_AHD", "OX_VERTD_YELLOW_SEA_1985", 5100, 105102},
        {"OX_GT_", "OX_GT_ABIDJAN_1987_TO_WGS_1984", "OX_GT_ZANDERIJ_TO_WGS_1984", 1024, 15999},
        {"OX_U_", "OX_U_CENTIMETER", "OX_U_YARD_US", 9001, 109031},
        {"OX_PM_", "OX_PM_ATHENS", "OX_PM_STOCKHOLM", 8901, 108900},
        {"OX_S_", "OX_S_AIRY_1830", "OX_S_XT_VENUS_2000", 7001, 107970},
        {"OX_MTH_", "OX_MTH_BURSA_WOLF", "OX_MTH_POSITION_VECTOR", 9601, 109613},
        {"OX_HTMTH_", "OX_HTMTH_2D_PROJECTIVE_PARAMETRIC", "OX_HTMTH_AFFINE_PARAMETRIC", 119624, 119625},
        {"OX_PRJ_", "OX_PRJ_AITOFF", "OX_PRJ_WINKEL_TRIPEL", 43001, 43059},
        {"OX_PAR_", "OX_PAR_AZIMUTH", "OX_PAR_Z_COORD_OF_ROTATION_ORIGIN", 100001, 100050},
    };
    for (int k = 0; k < ox::cat::kDefKinds; ++k) {
        const ox::cat::DefTable &t = ox::cat::kDefTables[k];
        const auto &e = expected[k];
        SCOPED_TRACE(e.prefix);
        EXPECT_STREQ(t.prefix, e.prefix);
        ASSERT_GT(t.names.count, 0);
        EXPECT_STREQ(t.names.rows[0].name, e.first);
        EXPECT_STREQ(t.names.rows[t.names.count - 1].name, e.last);
        EXPECT_EQ(t.codes.rows[0].code, e.lowest);
        EXPECT_EQ(t.codes.rows[t.codes.count - 1].code, e.highest);
        for (int32_t i = 0; i < t.names.count; ++i) {
            const char *name = t.names.rows[i].name;
            ASSERT_EQ(std::strncmp(name, e.prefix, std::strlen(e.prefix)), 0) << name;
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
    char name[OX_NAME_SIZE];
    for (ox::cat::DefKind k : {ox::cat::kDefProjection, ox::cat::kDefMethod, ox::cat::kDefHtmethod}) {
        const ox::cat::DefTable &t = ox::cat::kDefTables[k];
        for (int32_t i = 0; i < t.names.count; ++i) {
            ox_object *h = ox_factory(t.names.rows[i].code);
            ASSERT_NE(h, nullptr) << t.names.rows[i].name;
            ox_projection_name(h, name);
            if (!name[0]) ox_method_name(h, name);
            if (!name[0]) ox_htmethod_name(h, name);
            std::string upper = t.prefix;
            for (const char *p = name; *p; ++p) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
            EXPECT_EQ(upper, t.names.rows[i].name);
            oxtest::delete_any(h);
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
