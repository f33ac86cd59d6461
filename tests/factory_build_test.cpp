// Building objects by code: status, authority stamps, replaced codes,
// superseded definitions and the catalogue rows that callers rely on
// (tests/data/catalogue_rows.csv, replaced_codes.csv, zone_bands.csv,
// zone_families.csv).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>

#include "object/ox_object.h"
#include "test_util.h"

namespace {

using namespace oxtest;

class Factory : public ::testing::Test {
protected:
    void SetUp() override { ox_objedithome_setdir(nullptr); }
};

TEST_F(Factory, GenericAndKindBuildersAgree) {
    const Owned a(ox_factory(4326)), b(ox_factory_geogcs(4326));
    ASSERT_TRUE(a);
    EXPECT_EQ(ox_geogcs_eq(a.get(), b.get()), 1);
    EXPECT_EQ(ox_geogcs_status(a.get()), OX_STATUS_CATALOGUE);
    const Stamp s = stamp_of(a.get());
    EXPECT_EQ(s.code, 4326);
    EXPECT_EQ(s.authority, "EPSG");
    EXPECT_EQ(s.version, "6.13");
    EXPECT_EQ(text_of(ox_geogcs_to_string, a.get()), kWgs84);
}

TEST_F(Factory, DispatchFollowsTheCodeRanges) {
    const struct {
        int32_t code;
        int32_t (*is)(const ox_object *);
    } cases[] = {{4326, ox_geogcs_p},     {32633, ox_projcs_p},     {5703, ox_vertcs_p},
                 {6326, ox_datum_p},      {5103, ox_vdatum_p},      {1241, ox_geogtran_p},
                 {9001, ox_unit_p},       {9102, ox_unit_p},        {8901, ox_primem_p},
                 {7030, ox_spheroid_p},   {9603, ox_method_p},      {119624, ox_htmethod_p},
                 {43006, ox_projection_p}, {100001, ox_parameter_p}};
    for (const auto &c : cases) EXPECT_EQ(c.is(Owned(ox_factory(c.code)).get()), 1) << c.code;
    for (int32_t code : {0, -1, 1, 999, 5000, 99999999, INT32_MIN, INT32_MAX, 209001, 32700})
        EXPECT_EQ(ox_factory(code), nullptr) << code;
}

TEST_F(Factory, AuthorityBandsStampTheirAuthority) {
    const Owned g(ox_factory_geogcs(104000));
    ASSERT_TRUE(g);
    EXPECT_EQ(name_of(g.get()), "GCS_Assumed_Geographic_1");
    const Stamp s = stamp_of(g.get());
    EXPECT_EQ(s.authority, "MAVO");
    EXPECT_EQ(s.version, "9.3.0");
    EXPECT_EQ(s.code, 104000);
    const Owned web(ox_factory_projcs(102100));
    ASSERT_TRUE(web);
    EXPECT_EQ(name_of(web.get()), "WGS_1984_Web_Mercator_Auxiliary_Sphere");
    EXPECT_EQ(stamp_of(web.get()).authority, "MAVO");
    EXPECT_EQ(stamp_of(web.get()).code, 102100);
    const ox_object *sphere = ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(web.get())));
    EXPECT_EQ(ox_spheroid_flattening(sphere), 0.0);
    EXPECT_EQ(ox_spheroid_axis(sphere), 6378137.0);
    const Owned web_epsg(ox_factory_projcs(3857));
    EXPECT_EQ(ox_projcs_eq(web.get(), web_epsg.get()), 1);
}

// Every row: the name, status, factor, parts and parameter values a code builds.
TEST_F(Factory, CatalogueRows) {
    const auto rows = read_csv("catalogue_rows.csv");
    ASSERT_GT(rows.size(), 160u);
    for (const auto &f : rows) {
        ASSERT_EQ(f.size(), 8u);
        const int32_t code = std::stoi(f[0]);
        SCOPED_TRACE(f[0]);
        const Owned h(ox_factory(code));
        ASSERT_TRUE(h);
        EXPECT_EQ(stamp_of(h.get()).code, code);
        if (!f[1].empty()) { EXPECT_EQ(name_of(h.get()), f[1]); }
        if (!f[2].empty()) { EXPECT_EQ(status_of(h.get()), std::stoi(f[2])); }
        if (!f[3].empty()) {
            EXPECT_DOUBLE_EQ(ox_unit_factor(h.get()), std::stod(f[3]));
            EXPECT_EQ(stamp_of(h.get()).authority, code > 100000 ? "MAVO" : "EPSG");
        }
        if (!f[4].empty()) { EXPECT_EQ(ox::obj_code(ox_projcs_geogcs(h.get())), std::stoi(f[4])); }
        if (!f[5].empty()) { EXPECT_EQ(stamp_of(ox_projcs_unit(h.get())).code, std::stoi(f[5])); }
        if (!f[6].empty()) { EXPECT_EQ(parameter_count(h.get()), std::stoi(f[6])); }
        std::stringstream ps(f[7]);
        std::string kv;
        while (std::getline(ps, kv, ';')) {
            const std::string name = kv.substr(0, kv.find('='));
            const double want = std::stod(kv.substr(kv.find('=') + 1)), got = parameter(h.get(), name.c_str());
            if (want == std::round(want)) {
                EXPECT_EQ(got, want) << name;
            } else {
                EXPECT_DOUBLE_EQ(got, want) << name;
            }
        }
    }
    // The datums stand on the spheroids of their rows; the Paris-based French
    // systems carry their angles in grads.
    EXPECT_EQ(stamp_of(ox_datum_spheroid(Owned(ox_factory_datum(106005)).get())).code, 7053);
    EXPECT_EQ(stamp_of(ox_datum_spheroid(Owned(ox_factory_datum(106003)).get())).code, 107003);
    const Owned ntf(ox_factory_projcs(27572));
    ASSERT_TRUE(ntf);
    EXPECT_EQ(ox_unit_factor(ox_geogcs_unit(ox_projcs_geogcs(ntf.get()))), M_PI / 200.0);
    EXPECT_DOUBLE_EQ(parameter(ntf.get(), "Latitude_Of_Origin"), 52.0);
    EXPECT_DOUBLE_EQ(ox_primem_longitude(ox_geogcs_primem(ox_projcs_geogcs(ntf.get()))), 2.33722917);
    // UTM 33 north writes the usual text; 32661 comes from a later group.
    EXPECT_EQ(text_of(ox_projcs_to_string, Owned(ox_factory_projcs(32633)).get()), kUtm33);
    EXPECT_EQ(name_of(Owned(ox_factory_projcs(32661)).get()).find("UTM"), std::string::npos);
}

TEST_F(Factory, ReplacedCodesBuildTheirReplacement) {
    const auto rows = read_csv("replaced_codes.csv");
    ASSERT_EQ(rows.size(), 97u);
    for (const auto &f : rows) {
        const Owned h(ox_factory(std::stoi(f[0]))), direct(ox_factory(std::stoi(f[1])));
        ASSERT_TRUE(h && direct) << f[0];
        EXPECT_EQ(status_of(h.get()), OX_STATUS_REPLACED) << f[0];
        EXPECT_EQ(stamp_of(h.get()).code, std::stoi(f[1])) << f[0];
        EXPECT_EQ(stamp_of(h.get()).authority, "EPSG") << f[0];
        EXPECT_EQ(ox::obj_eq(h.get(), direct.get(), h.get()->type), 1) << f[0];
    }
}

TEST_F(Factory, St87Ouvea) {
    const Owned datum(ox_factory_datum(6635));
    ASSERT_TRUE(datum);
    EXPECT_EQ(stamp_of(ox_datum_spheroid(datum.get())).code, 7022);
    const Owned geogcs(ox_factory_geogcs(4635));
    ASSERT_TRUE(geogcs);
    EXPECT_EQ(name_of(geogcs.get()), "GCS_ST87_Ouvea");
    EXPECT_EQ(ox_geogcs_status(geogcs.get()), OX_STATUS_SUPERSEDED);
    EXPECT_EQ(ox_geogcs_authority(geogcs.get()), nullptr);  // code 0: no authority clause
    EXPECT_EQ(ox_factory_code(geogcs.get()), 0);            // carries code 0, so no search
}

// Every family of the zone table: its first and last code by name.
TEST_F(Factory, ZoneFamilyBands) {
    const auto bands = read_csv("zone_bands.csv");
    ASSERT_EQ(bands.size(), 110u);
    char expected[OX_NAME_SIZE];
    for (const auto &b : bands) {
        const int32_t low = std::stoi(b[1]), high = std::stoi(b[2]), first_zone = std::stoi(b[3]);
        for (int32_t code : {low, high}) {
            const Owned h(ox_factory_projcs(code));
            ASSERT_TRUE(h) << code;
            std::snprintf(expected, sizeof expected, b[0].c_str(), code - low + first_zone);
            EXPECT_EQ(name_of(h.get()), expected) << code;
            EXPECT_EQ(ox_projcs_status(h.get()), OX_STATUS_CATALOGUE) << code;
            EXPECT_EQ(parameter_count(h.get()), 5) << code;
            EXPECT_FALSE(std::isnan(parameter(h.get(), "Central_Meridian"))) << code;
        }
    }
}

// Every member the same as the registry's row where the registry has one.
TEST_F(Factory, ZoneFamiliesAgreeWithTheRegistryRows) {
    const auto rows = read_csv("zone_families.csv");
    ASSERT_GT(rows.size(), 900u);
    const char *names[] = {"False_Easting", "False_Northing", "Central_Meridian", "Scale_Factor", "Latitude_Of_Origin"};
    for (const auto &f : rows) {
        ASSERT_EQ(f.size(), 10u);
        const Owned h(ox_factory_projcs(std::stoi(f[0])));
        ASSERT_TRUE(h) << f[0];
        EXPECT_EQ(name_of(h.get()), f[1]);
        EXPECT_EQ(ox::obj_code(ox_projcs_geogcs(h.get())), std::stoi(f[2])) << f[0];
        EXPECT_EQ(stamp_of(ox_projcs_projection(h.get())).code, std::stoi(f[3])) << f[0];
        EXPECT_EQ(stamp_of(ox_projcs_unit(h.get())).code, std::stoi(f[4])) << f[0];
        for (int i = 0; i < 5; ++i) EXPECT_DOUBLE_EQ(parameter(h.get(), names[i]), std::stod(f[5 + i])) << f[0];
    }
}

// Every row of every catalogue kind builds; every name fits; every
// projected system has exactly the parameters its projection uses.
TEST_F(Factory, EveryCatalogueCodeBuildsAndWritesAReadableString) {
    char text[OX_OBJSTRING_SIZE];
    int built = 0;
    const ox_coderange_set *set = ox_factory_coderanges_projcs();
    for (int32_t b = 0; b < set->count; ++b)
        for (int32_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code) {
            const Owned h(ox_factory_projcs(code));
            if (!h) continue;
            ++built;
            ox_projcs_to_string_ext(h.get(), 2, text);
            ASSERT_NE(text[0], '\0') << code;
            const Owned back(ox_projcs_from_string(text));
            ASSERT_TRUE(back) << code << " " << text;
            // Superseded definitions carry old names that reading renames.
            if (ox_projcs_status(h.get()) != OX_STATUS_SUPERSEDED) {
                ASSERT_EQ(ox_projcs_eq(back.get(), h.get()), 1) << code;
            }
            ox_object *defaults[OX_PARAMETER_SLOTS];
            ox_object *params[OX_PARAMETER_SLOTS];
            ox_projcs_parameters(h.get(), params);
            ox_parameter_projection_defaults(ox_projcs_projection(h.get()), defaults);
            for (int s = 0; s < OX_PARAMETER_SLOTS; ++s) {
                // Every parameter sits in a slot the projection uses.
                if (params[s]) {
                    EXPECT_NE(defaults[s], nullptr) << code << " slot " << s;
                }
                ox_parameter_del(defaults[s]);
            }
        }
    EXPECT_GT(built, 3200);
}

// Every allocation of a build may fail: the builder answers null or a whole
// object and leaves nothing behind.
TEST_F(Factory, AllocationFailuresLeaveNothingBehind) {
    for (int32_t code : {4326, 32633, 30169, 26761, 2990, 4635, 6635, 106043, 107005, 1241, 5703, 115700, 102100})
        every_allocation_fails([code] { return ox_factory(code); }, "factory");
    every_allocation_fails([] {
        int32_t count = 0;
        ox_predefined_entry *list = ox_predefined_primem(&count);
        const bool whole = list != nullptr && count == 15;
        if (list == nullptr) {
            EXPECT_EQ(count, 0);
        }
        ox_table_del(list);
        return whole ? ox_unit_new("done", 1.0) : nullptr;
    }, "predefined list");
    every_allocation_fails([] {
        int32_t count = -1;
        int32_t *list = ox_factory_spheroid_codelist(&count);
        if (list == nullptr) {
            EXPECT_EQ(count, 0);
        }
        ox_factory_codelist_del(list);
        return list != nullptr ? ox_unit_new("done", 1.0) : nullptr;
    }, "code list");
}

}  // namespace
