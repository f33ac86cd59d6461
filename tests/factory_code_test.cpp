// Reverse look-up (ox_factory_code) and the predefined lists.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "factory/ox_factory.h"
#include "object/ox_object.h"
#include "object/ox_strings.h"
#include "ox.h"
#include "test_util.h"

namespace {

using namespace oxtest;

// A copy of a catalogue object that has never been looked up (code -1), as
// if it had been built by hand.
ox_object *anonymous(ox_object *catalogue_object) {
    ox_object *h = catalogue_object;
    ox::obj_set_code(h, -1, nullptr, nullptr);
    ox::obj_set_status(h, OX_STATUS_NEW);
    return h;
}

class FactoryCode : public ::testing::Test {
protected:
    void SetUp() override { ox_objedithome_setdir(nullptr); }
    void TearDown() override { ox_objedithome_setdir(nullptr); }
};

TEST_F(FactoryCode, HandBuiltSystemsFindTheirCode) {
    Owned wgs(make_geogcs());
    ASSERT_TRUE(wgs);
    EXPECT_EQ(ox_factory_code(wgs.get()), 4326);
    EXPECT_EQ(stamp_of(wgs.get()).authority, "EPSG");
    EXPECT_EQ(stamp_of(wgs.get()).version, "6.13");
    Owned utm(ox_projcs_from_string(kUtm33));
    ASSERT_TRUE(utm);
    EXPECT_EQ(ox_factory_code(utm.get()), 32633);
    // Names compare without regard to case and separators.
    Owned loose(ox_projcs_from_string(
        "PROJCS[\"wgs 1984 utm zone 33n\",GEOGCS[\"gcs-wgs-1984\",DATUM[\"D WGS 1984\","
        "SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],"
        "UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
        "PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],"
        "PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Scale_Factor\",0.9996],"
        "PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]"));
    EXPECT_EQ(ox_factory_code(loose.get()), 32633);
    Owned meter(ox_unit_new("Meter", 1.0));
    EXPECT_EQ(ox_factory_code(meter.get()), 9001);
    Owned web(ox_unit_new("Hectometer", 100.0));
    EXPECT_EQ(ox_factory_code(web.get()), 109031);
    EXPECT_EQ(stamp_of(web.get()).authority, "MAVO");
    Owned tm(ox_projection_new("Transverse_Mercator", nullptr, nullptr, nullptr));
    EXPECT_EQ(ox_factory_code(tm.get()), 43006);  // set from the registry when made
}

TEST_F(FactoryCode, KnownCodesAndMissesAreNotSearchedAgain) {
    Owned a(ox_factory_geogcs(4269));
    EXPECT_EQ(ox_factory_code(a.get()), 4269);
    Owned odd(make_geogcs("GCS_Nowhere"));
    EXPECT_EQ(ox_factory_code(odd.get()), 0);
    EXPECT_EQ(ox::obj_code(odd.get()), 0);  // the miss is kept
    EXPECT_EQ(ox_factory_code(odd.get()), 0);
    // A catalogue name with other values is no match.
    Owned flattened(make_geogcs("GCS_WGS_1984", 6378137.0, 300.0));
    EXPECT_EQ(ox_factory_code(flattened.get()), 0);
    EXPECT_EQ(ox_factory_code(nullptr), 0);
    Owned auth(ox_authority_new("EPSG", 4326, ""));
    EXPECT_EQ(ox_factory_code(auth.get()), 0);
    const double values[] = {1, 2};
    Owned array(ox_array_new("A", 2, values));
    EXPECT_EQ(ox_factory_code(array.get()), 0);
}

TEST_F(FactoryCode, StatusRuleAndBandOrder) {
    // The old Hawaii state plane codes define the same systems as the current
    // Old Hawaiian ones: the current code (status 4) wins.
    Owned hawaii(anonymous(ox_factory_projcs(26762)));
    EXPECT_EQ(ox_factory_code(hawaii.get()), 3562);
    // Two current codes with one definition: the first band wins.
    Owned web(anonymous(ox_factory_projcs(102100)));
    EXPECT_EQ(ox_factory_code(web.get()), 3857);
    // Only a replaced or superseded code builds it: the lowest status wins.
    Owned ouvea(anonymous(ox_factory_geogcs(4635)));
    EXPECT_EQ(ox_factory_code(ouvea.get()), 4635);
    Owned mhast(anonymous(ox_factory_geogcs(4264)));
    EXPECT_EQ(ox_factory_code(mhast.get()), 4264);
}

// The answer by definition: every code of the kind's bands built and
// compared in order, the first current match (status 4 or 8), else the equal
// one of lowest status.
int32_t exhaustive(const ox_object *object) {
    const ox::KindInfo *kind = ox::kind_info(object->type);
    const ox_coderange_set *set = kind->ranges();
    int32_t best = 0, best_status = 64;
    for (int32_t b = 0; b < set->count; ++b)
        for (int64_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code) {
            ox_object *h = kind->build(static_cast<int32_t>(code));
            if (h == nullptr) continue;
            const bool equal = ox::obj_eq(h, object, kind->tag) != 0;
            const int32_t status = h->status & 0xFF;
            delete_any(h);
            if (!equal) continue;
            if (status <= OX_STATUS_OBJEDIT) return static_cast<int32_t>(code);
            if (status < best_status) best = static_cast<int32_t>(code), best_status = status;
        }
    return best;
}

// The index gives exactly what the exhaustive search gives, for every kind,
// without object-edit files and with empty ones.
TEST_F(FactoryCode, IndexAgreesWithTheExhaustiveSearch) {
    const int32_t codes[] = {4326, 4267, 4807, 104902, 4635, 4264, 6326, 6807, 6635, 7030, 7059, 8903, 9003,
                             9102, 5103, 5703, 115700, 1241, 1911, 15850, 26761, 32633, 2990, 3857, 102592,
                             27572, 43005, 100010, 9607, 119625, 2391, 25391};
    const TempDir dir;
    for (const char *file : {"unit", "spheroid", "datum", "primem", "geogcs", "projcs", "vdatum", "vertcs",
                             "geogtran"})
        dir.write(file, "");
    for (int32_t code : codes) {
        Owned h(ox_factory(code));
        ASSERT_TRUE(h) << code;
        Owned copy(anonymous(ox::obj_clone(h.get(), h.get()->type)));
        const int32_t truth = exhaustive(copy.get());
        EXPECT_NE(truth, 0) << code;
        ox_objedithome_setdir(nullptr);
        EXPECT_EQ(ox_factory_code(copy.get()), truth) << code;
        ox_objedithome_setdir(dir.path.c_str());
        ox::obj_set_code(copy.get(), -1, nullptr, nullptr);
        EXPECT_EQ(ox_factory_code(copy.get()), truth) << code;
    }
}

// With object-edit files the candidates are the catalogue's plus the codes
// the kind's own file defines under the name: the answers are those of the
// exhaustive search, and follow the file when it changes.
TEST_F(FactoryCode, EditedNamesAndDefinitionsAreFound) {
    const TempDir dir;
    const std::string long_name(70, 'L');
    dir.write("geogcs", "# site systems\n"
                        "GEOGCS,4326,\"GCS_Site_Renamed\",6326,8901,9102\n"  // WGS 84 under a site name
                        "GEOGCS,4326,\"GCS_Second_Line\",6326,8901,9102\n"   // not the first line: ignored
                        "GEOGCS,204010,\"GCS_WGS_1972\",6322,8901,9102\n"    // a catalogue name on a site code
                        "GEOGCS,204011,\"GCS_Site_B\",6322,8901,9102\n"
                        "GEOGCS,204012,\"" + long_name + "\",6326,8901,9102\n"
                        "GEOGCS,300000,\"GCS_Outside\",6326,8901,9102\n");  // outside every band
    dir.write("datum", "DATUM,6269,\"D_North_American_1983\",7019\n");    // no change of name
    ox_objedithome_setdir(dir.path.c_str());
    const auto geogcs = [](const char *name, int32_t datum) {
        return ox_geogcs_new(name, ox_factory_datum(datum), ox_factory_primem(8901), ox_factory_unit(9102));
    };
    struct Case {
        const char *name;
        int32_t datum, expected;
    } cases[] = {
        {"GCS_Site_Renamed", 6326, 4326}, {"GCS_WGS_1984", 6326, 0},  {"GCS_Second_Line", 6326, 0},
        {"GCS_WGS_1972", 6322, 4322},     {"GCS_Site_B", 6322, 204011}, {long_name.c_str(), 6326, 204012},
        {"GCS_Outside", 6326, 0},         {"GCS_North_American_1983", 6269, 4269},
    };
    for (const Case &c : cases) {
        Owned g(geogcs(c.name, c.datum));
        ASSERT_TRUE(g) << c.name;
        const int32_t truth = exhaustive(g.get());
        EXPECT_EQ(truth, c.expected) << c.name;
        EXPECT_EQ(ox_factory_code(g.get()), truth) << c.name;
    }
    // A changed file is indexed again: the site name now names code 204013.
    dir.write("geogcs", "GEOGCS,204013,\"GCS_Site_B\",6322,8901,9102\n");
    Owned b(geogcs("GCS_Site_B", 6322));
    EXPECT_EQ(ox_factory_code(b.get()), 204013);
    Owned wgs(geogcs("GCS_WGS_1984", 6326));
    EXPECT_EQ(ox_factory_code(wgs.get()), 4326);
}

// Every kind has a list of its current definitions, sorted by name: no
// replaced (status 16) or superseded (status 32) code.
TEST_F(FactoryCode, PredefinedListsHoldCurrentDefinitionsSortedByName) {
    const struct {
        ox_predefined_entry *(*list)(int32_t *);
        std::vector<int32_t> in, out;
        int32_t at_least;
    } kinds[] = {
        {ox_predefined_spheroid, {7030}, {107005}, 1},
        {ox_predefined_geogcs, {4326}, {4264, 4635, 37001}, 1},
        {ox_predefined_projcs, {32633, 102100}, {26761, 2155, 2990}, 3000},
        {ox_predefined_projection, {43001, 43059}, {}, 59},
        {ox_predefined_vertcs, {}, {}, 1},      {ox_predefined_geogtran, {}, {}, 1},
        {ox_predefined_vdatum, {}, {}, 1},      {ox_predefined_primem, {}, {}, 1},
        {ox_predefined_parameter, {}, {}, 1},   {ox_predefined_method, {}, {}, 1},
        {ox_predefined_htmethod, {}, {}, 1},    {ox_predefined_angular_unit, {}, {}, 1},
        {ox_predefined_linear_unit, {}, {}, 1}, {ox_predefined_datum, {6326}, {106043}, 1},
    };
    for (const auto &k : kinds) {
        int32_t count = -1;
        ox_predefined_entry *list = k.list(&count);
        ASSERT_NE(list, nullptr);
        EXPECT_GE(count, k.at_least);
        std::map<int32_t, std::string> names;
        for (int32_t i = 0; i < count; ++i) {
            names[list[i].code] = list[i].name;
            if (i > 0) {
                EXPECT_LE(ox::name_compare(list[i - 1].name, list[i].name), 0) << list[i].name;
            }
        }
        for (int32_t code : k.in) EXPECT_EQ(names.count(code), 1u) << code;
        for (int32_t code : k.out) EXPECT_EQ(names.count(code), 0u) << code;
        if (k.list == ox_predefined_geogcs) {
            EXPECT_EQ(names[4326], "GCS_WGS_1984");
        }
        if (k.list == ox_predefined_projection) {
            EXPECT_EQ(count, 59);
            EXPECT_STREQ(list[0].name, "Aitoff");
        }
        ox_table_del(list);
    }
    EXPECT_EQ(ox_predefined_datum(nullptr), nullptr);
    ox_table_del(nullptr);
}

}  // namespace
