// Identification by parameters: object strings written by other software
// for catalogue systems (tests/data/foreign_object_strings.txt) find their
// system first; the tolerances, scores, ranking and limits; and every
// catalogue system identifies itself exactly.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "test_util.h"

namespace {

using namespace oxtest;

std::vector<ox_identify_candidate> identify(const ox_object *h, int32_t capacity = 64) {
    std::vector<ox_identify_candidate> c(static_cast<size_t>(capacity));
    const int32_t n = ox_factory_identify(h, c.data(), capacity);
    c.resize(static_cast<size_t>(std::min(n, capacity)));
    return c;
}

Owned read_system(const std::string &text) {
    return Owned(text.rfind("PROJCS", 0) == 0 ? ox_projcs_from_string(text.c_str())
                                              : ox_geogcs_from_string(text.c_str()));
}

TEST(Identify, ForeignObjectStringsFindTheirSystemFirst) {
    std::ifstream in(std::string(OX_TEST_DATA_DIR) + "/foreign_object_strings.txt");
    ASSERT_TRUE(in.good());
    std::string line;
    int cases = 0;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        const int32_t code = std::stoi(line.substr(0, line.find(' ')));
        const Owned h = read_system(line.substr(line.find(' ') + 1));
        ASSERT_TRUE(h) << code << ": the text does not read";
        const auto c = identify(h.get());
        ASSERT_FALSE(c.empty()) << code;
        EXPECT_EQ(c[0].code, code) << "first candidate " << c[0].code;
        EXPECT_GE(c[0].score, OX_IDENTIFY_EQUIVALENT_DATUM);
        for (size_t i = 1; i < c.size(); ++i) EXPECT_LE(c[i].score, c[i - 1].score) << code;
        ++cases;
    }
    EXPECT_GE(cases, 15);
}

// A catalogue system is its own best candidate, with the exact score; classic
// and modern systems, projected and geographic.
TEST(Identify, CatalogueSystemsIdentifyThemselves) {
    for (int32_t code : {32633, 26918, 2154, 27700, 3857, 2065, 103800, 7855, 6677, 5514}) {
        const Owned h(ox_factory_projcs(code));
        ASSERT_TRUE(h) << code;
        const auto c = identify(h.get());
        ASSERT_FALSE(c.empty()) << code;
        EXPECT_EQ(c[0].code, code);
        EXPECT_EQ(c[0].score, OX_IDENTIFY_EXACT) << code;
    }
    for (int32_t code : {4326, 4269, 4807, 7844, 6668}) {
        const Owned h(ox_factory_geogcs(code));
        const auto c = identify(h.get());
        ASSERT_FALSE(c.empty()) << code;
        EXPECT_EQ(c[0].code, code);
        EXPECT_EQ(c[0].score, OX_IDENTIFY_EXACT);
    }
}

const char *kUtm33Foreign =
    "PROJCS[\"WGS 84 / UTM zone 33N\",GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,"
    "298.257223563]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]],"
    "PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"central_meridian\",%s],PARAMETER[\"scale_factor\",0.9996],"
    "PARAMETER[\"false_easting\",500000],UNIT[\"metre\",1]]";

Owned utm33_with_meridian(const char *meridian) {
    char text[1024];
    std::snprintf(text, sizeof text, kUtm33Foreign, meridian);
    return Owned(ox_projcs_from_string(text));
}

TEST(Identify, ParametersAgreeWithin1e9Relative) {
    EXPECT_EQ(identify(utm33_with_meridian("15.00000000001").get())[0].code, 32633);  // 7e-13 relative
    EXPECT_TRUE(identify(utm33_with_meridian("15.0001").get()).empty());              // 7e-6 relative
    // The same system in another linear unit or on another figure is not equivalent.
    const Owned feet(ox_projcs_from_string(
        "PROJCS[\"x\",GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
        "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
        "PARAMETER[\"central_meridian\",15],PARAMETER[\"scale_factor\",0.9996],PARAMETER[\"false_easting\",500000],"
        "UNIT[\"Foot_US\",0.3048006096012192]]"));
    EXPECT_TRUE(identify(feet.get()).empty());
    const Owned sphere(ox_projcs_from_string(
        "PROJCS[\"x\",GEOGCS[\"s\",DATUM[\"s\",SPHEROID[\"s\",6378137,0]],PRIMEM[\"Greenwich\",0],"
        "UNIT[\"degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"central_meridian\",15],"
        "PARAMETER[\"scale_factor\",0.9996],PARAMETER[\"false_easting\",500000],UNIT[\"Meter\",1]]"));
    EXPECT_TRUE(identify(sphere.get()).empty());
}

TEST(Identify, ScoresRankNamesThenWords) {
    // Renamed system on the catalogue's datum name: parameters score.
    Owned h(ox_factory_projcs(32633));
    char text[OX_OBJSTRING_SIZE];
    ox_projcs_to_string(h.get(), text);
    std::string renamed = text;
    renamed.replace(renamed.find("WGS_1984_UTM_Zone_33N"), 21, "My_UTM_33");
    auto c = identify(Owned(ox_projcs_from_string(renamed.c_str())).get());
    ASSERT_FALSE(c.empty());
    EXPECT_EQ(c[0].code, 32633);
    EXPECT_EQ(c[0].score, OX_IDENTIFY_PARAMETERS);
    // NAD 1983 UTM 18 on a datum named otherwise: every NAD 1983 realisation
    // is equivalent, the one whose names share most words first.
    const Owned nad(ox_projcs_from_string(
        "PROJCS[\"NAD83(HARN) / UTM zone 18N\",GEOGCS[\"NAD83(HARN)\",DATUM[\"NAD83_High_Accuracy_Reference_Network\","
        "SPHEROID[\"GRS 1980\",6378137,298.257222101]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]],"
        "PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"central_meridian\",-75],PARAMETER[\"scale_factor\",0.9996],"
        "PARAMETER[\"false_easting\",500000],PARAMETER[\"false_northing\",0],UNIT[\"metre\",1]]"));
    c = identify(nad.get());
    ASSERT_GT(c.size(), 5u);
    EXPECT_EQ(c[0].code, 3748);  // NAD_1983_HARN_UTM_Zone_18N
    for (const auto &x : c) EXPECT_EQ(x.score, OX_IDENTIFY_EQUIVALENT_DATUM);
}

TEST(Identify, CapacityAndRefusals) {
    const Owned h(ox_factory_projcs(26918));
    const int32_t all = ox_factory_identify(h.get(), nullptr, 0);
    EXPECT_GT(all, 5);
    ox_identify_candidate two[2] = {{-1, -1}, {-1, -1}};
    EXPECT_EQ(ox_factory_identify(h.get(), two, 2), all);  // the number found, two written
    EXPECT_EQ(two[0].code, 26918);
    EXPECT_NE(two[1].code, -1);
    ox_identify_candidate untouched = {-7, -7};
    EXPECT_EQ(ox_factory_identify(h.get(), &untouched, -5), all);
    EXPECT_EQ(untouched.code, -7);
    EXPECT_EQ(ox_factory_identify(nullptr, two, 2), 0);
    const Owned unit(ox_factory_unit(9001));
    EXPECT_EQ(ox_factory_identify(unit.get(), two, 2), 0);
    // A projection the registry does not know identifies nothing.
    const Owned own(ox_projcs_from_string(
        "PROJCS[\"x\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
        "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"My_Own\"],UNIT[\"Meter\",1.0]]"));
    if (own) {
        EXPECT_EQ(ox_factory_identify(own.get(), two, 2), 0);
    }
}

// The index is shared: threads that query at once get the same answers.
TEST(Identify, ConcurrentQueriesAgree) {
    const Owned h(ox_factory_projcs(2154));
    const auto expected = identify(h.get());
    std::vector<std::thread> threads;
    std::vector<int> same(4, 0);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i) {
                ox_identify_candidate c[64];
                const int32_t n = ox_factory_identify(h.get(), c, 64);
                bool ok = n == static_cast<int32_t>(expected.size());
                for (int32_t k = 0; ok && k < n; ++k) ok = c[k].code == expected[static_cast<size_t>(k)].code;
                same[static_cast<size_t>(t)] += ok;
            }
        });
    for (auto &t : threads) t.join();
    for (int s : same) EXPECT_EQ(s, 50);
}

}  // namespace
