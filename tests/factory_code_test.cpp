// Reverse look-up (ox_factory_code) and the predefined lists.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

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

// The index gives exactly what the exhaustive search gives: forced here by
// empty object-edit files, which send the search through every code.
TEST_F(FactoryCode, IndexAgreesWithTheExhaustiveSearch) {
    const int32_t codes[] = {4326, 4267, 4807, 104902, 4635, 4264, 6326, 6807, 6635, 7030, 7059, 8903, 9003,
                             9102, 5103, 5703, 115700, 1241, 1911, 15850, 26761, 32633, 2990, 3857, 102592,
                             27572, 43005, 100010, 9607, 119625, 2391, 25391};
    std::vector<int32_t> indexed;
    std::vector<ox_object *> objects;
    for (int32_t code : codes) {
        ox_object *h = ox_factory(code);
        ASSERT_NE(h, nullptr) << code;
        objects.push_back(h);
        ox_object *copy = anonymous(ox::obj_clone(h, h->type));
        indexed.push_back(ox_factory_code(copy));
        delete_any(copy);
    }
    const TempDir dir;
    for (const char *file : {"unit", "spheroid", "datum", "primem", "geogcs", "projcs", "vdatum", "vertcs",
                             "geogtran"})
        dir.write(file, "");
    ox_objedithome_setdir(dir.path.c_str());
    for (size_t i = 0; i < objects.size(); ++i) {
        ox_object *copy = anonymous(ox::obj_clone(objects[i], objects[i]->type));
        EXPECT_EQ(ox_factory_code(copy), indexed[i]) << codes[i];
        delete_any(copy);
        delete_any(objects[i]);
    }
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
