// GEOREF: the encoding rules (digit clamps, truncation and rounding, the
// east and north edges, the nudge of the minute fraction), the decoding
// rules (spaces, leading characters, refusals, the south-west corner) and
// bad input.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "test_util.h"

namespace {

using namespace oxtest;

// The catalogue's WGS 84, whose degree is pi/180 exactly (an object string's
// 16-digit factor 0.0174532925199433 is slightly larger, which moves values
// such as -179.5 degrees to just below a whole minute, and +180 degrees
// beyond pi).
ox_object *wgs84() { return ox_factory_geogcs(4326); }

// Encodes (lon, lat) pairs in degrees.
std::vector<std::string> encode(const std::vector<double> &pts, int digits, int round, int32_t *count = nullptr) {
    Owned gcs(wgs84());
    const size_t n = pts.size() / 2;
    std::vector<std::vector<char>> buffers(n, std::vector<char>(OX_GEOREF_SIZE, 'x'));
    std::vector<char *> refs;
    for (auto &b : buffers) refs.push_back(b.data());
    const int32_t done = ox_geog_to_georef(gcs.get(), static_cast<int32_t>(n), pts.data(), digits, round, refs.data());
    if (count != nullptr) *count = done;
    std::vector<std::string> out;
    for (auto &b : buffers) out.emplace_back(b.data());
    return out;
}

std::string encode1(double lon, double lat, int digits, int round = 0) { return encode({lon, lat}, digits, round)[0]; }

// Decodes references to (lon, lat) pairs in degrees; returns the count.
int32_t decode(std::vector<const char *> refs, std::vector<double> *pts) {
    Owned gcs(wgs84());
    pts->assign(2 * refs.size(), 0.0);
    const int32_t count = ox_georef_to_geog(gcs.get(), static_cast<int32_t>(refs.size()),
                                            const_cast<char **>(refs.data()), pts->data());
    return count;
}

TEST(Georef, EncodesCellsAndMinutes) {
    EXPECT_EQ(encode1(-179.5, -89.5, 2), "AAAA3030");
    // London: zone M (-15..0), band K (45..60), degree letters P (13) and G (6).
    EXPECT_EQ(encode1(-1.8, 51.0666666667, 2), "MKPG1204");
    EXPECT_EQ(encode1(-1.8, 51.0666666667, 4), "MKPG12000400");
    // digits clamp to 2..9
    EXPECT_EQ(encode1(-1.8, 51.0666666667, 1), "MKPG1204");
    EXPECT_EQ(encode1(-1.8, 51.0666666667, -7), "MKPG1204");
    const std::string nine = encode1(-1.8, 51.0666666667, 12);
    EXPECT_EQ(nine, encode1(-1.8, 51.0666666667, 9));
    EXPECT_EQ(nine.size(), 4u + 18u);
    EXPECT_EQ(nine.substr(0, 13), "MKPG120000000");
    // truncation against rounding: 0.99 minutes into degree P of zone M
    EXPECT_EQ(encode1(-2.0 + 0.99 / 60.0, 0.5, 2), "MGPA0030");
    EXPECT_EQ(encode1(-2.0 + 0.99 / 60.0, 0.5, 2, 1), "MGPA0130");
    // rounding carries into the degree and the zone: 14 deg 59.7 min of zone M
    EXPECT_EQ(encode1(-0.005, 0.5, 2), "MGQA5930");
    EXPECT_EQ(encode1(-0.005, 0.5, 2, 1), "NGAA0030");
    // longitudes beyond 180 degrees are reduced first
    EXPECT_EQ(encode1(180.0 + 97.25, -3.5, 4), encode1(97.25 - 180.0, -3.5, 4));
}

TEST(Georef, EastAndNorthEdgesAreClamped) {
    // +180 degrees: zone Z, degree Q, 60 whole minutes; +90: band M, degree Q, 60.
    EXPECT_EQ(encode1(180.0, 90.0, 2), "ZMQQ6060");
    EXPECT_EQ(encode1(180.0, 90.0, 3), "ZMQQ600600");
    // latitudes beyond the poles are taken at the pole
    EXPECT_EQ(encode1(0.0, 123.0, 2), encode1(0.0, 90.0, 2));
    EXPECT_EQ(encode1(0.0, -1e300, 2), encode1(0.0, -90.0, 2));
    EXPECT_EQ(encode1(-180.0, -90.0, 2), "AAAA0000");
}

TEST(Georef, NudgeKeepsTheLastDigit) {
    // Minutes such as 18.1 .. 18.9 are not exact in binary, and the
    // conversion to radians and back leaves them a few units of the 16th
    // digit low: the nudge of one unit in the 15th digit of the minutes from
    // the west edge keeps the last digit (which is why it scales with that
    // count, 21018 minutes here).
    for (int k = 1; k <= 9; ++k) {
        const double lon = 170.0 + (18.0 + k / 10.0) / 60.0;
        EXPECT_EQ(encode1(lon, -89.0, 3).substr(0, 7), "ZAFB18" + std::to_string(k)) << k;
    }
    EXPECT_EQ(encode1(178.0 + 12.3456 / 60.0, -89.0, 6).substr(4, 6), "123456");
    // One unit of the last place south of -68 degrees is 1319.9999999999995
    // minutes from the south edge: the nudge reaches the whole minute, which
    // is then carried into the degree (not written as 59 minutes and a
    // fraction of 10 tenths).
    const double below = std::nextafter(-68.0, -90.0);
    EXPECT_EQ(encode1(-179.9, below, 3), "ABAH060000");
    EXPECT_EQ(encode1(-179.9, below, 2), "ABAG0659");  // no decimals: the whole minutes truncated
    EXPECT_EQ(encode1(-179.9, -68.0, 2), "ABAH0600");
}

TEST(Georef, DecodesTheSouthWestCorner) {
    std::vector<double> p;
    EXPECT_EQ(decode({" MKPG1204 "}, &p), 1);
    EXPECT_NEAR(p[0], -1.8, 1e-12);
    EXPECT_NEAR(p[1], 51.0 + 4.0 / 60.0, 1e-12);
    // h = 0: the degree cell; h = 1: tens of minutes; h = 3: tenths.
    EXPECT_EQ(decode({"MKPG", "MKPG12", "MKPG123045", "xxMKPG"}, &p), 4);
    EXPECT_NEAR(p[0], -2.0, 1e-12);
    EXPECT_NEAR(p[1], 51.0, 1e-12);
    EXPECT_NEAR(p[2], -2.0 + 10.0 / 60.0, 1e-12);
    EXPECT_NEAR(p[3], 51.0 + 20.0 / 60.0, 1e-12);
    EXPECT_NEAR(p[4], -2.0 + 12.3 / 60.0, 1e-12);
    EXPECT_NEAR(p[5], 51.0 + 4.5 / 60.0, 1e-12);
    EXPECT_NEAR(p[6], -2.0, 1e-12);  // leading lower-case letters ignored
    // 18 digits
    EXPECT_EQ(decode({"AAAA123456789987654321"}, &p), 1);
    EXPECT_NEAR(p[0], -180.0 + 12.3456789 / 60.0, 1e-11);
    EXPECT_NEAR(p[1], -90.0 + 98.7654321 / 60.0, 1e-11);
}

TEST(Georef, RoundTripsLandInTheirCell) {
    for (int digits = 2; digits <= 9; ++digits) {
        const double cell = std::pow(10.0, 2 - digits) / 60.0;  // degrees
        for (double lon = -179.9; lon < 180.0; lon += 13.7) {
            for (double lat = -89.9; lat < 90.0; lat += 7.3) {
                const std::string ref = encode1(lon, lat, digits);
                std::vector<double> p;
                ASSERT_EQ(decode({ref.c_str()}, &p), 1) << ref;
                EXPECT_LE(p[0], lon + 1e-9) << ref;
                EXPECT_GT(p[0] + cell, lon - 1e-9) << ref;
                EXPECT_LE(p[1], lat + 1e-9) << ref;
                EXPECT_GT(p[1] + cell, lat - 1e-9) << ref;
            }
        }
    }
}

TEST(Georef, RefusesWhatIsNotAReference) {
    const std::string overlong = "MKPG" + std::string(10000, '1');
    const std::string spaced = std::string(10000, ' ') + "MKPG1204" + std::string(10000, ' ');
    std::vector<const char *> refs = {nullptr,     "",         "   ",       "MKPG123",  "MKPI1204", "MKOG1204",
                                      "IKPG1204",  "mkpg1204", "MKPG12 04", "MKPG12a4", "MKP",      "MK",
                                      "MKPG1234567890123456789",           "MK\xc3\xa9G1204",      overlong.c_str(),
                                      "MNPG1204",  "\xff\xfe"};
    std::vector<double> p;
    EXPECT_EQ(decode(refs, &p), 0);
    for (double v : p) EXPECT_TRUE(std::isnan(v));
    EXPECT_EQ(decode({spaced.c_str()}, &p), 1);
    // the count is of the references read, each NaN pair stays in place
    EXPECT_EQ(decode({"MKPG1204", "bad", "AAAA"}, &p), 2);
    EXPECT_TRUE(std::isnan(p[2]) && std::isnan(p[3]));
}

TEST(Georef, BadArgumentsConvertNothing) {
    Owned gcs(wgs84());
    char buffer[OX_GEOREF_SIZE] = "junk";
    char *refs[1] = {buffer};
    double pt[2] = {1.0, 2.0};
    EXPECT_EQ(ox_geog_to_georef(nullptr, 1, pt, 4, 0, refs), 0);
    EXPECT_STREQ(buffer, "");
    Owned unit(ox_unit_new("Degree", 0.0174532925199433));
    EXPECT_EQ(ox_geog_to_georef(unit.get(), 1, pt, 4, 0, refs), 0);
    EXPECT_EQ(ox_geog_to_georef(gcs.get(), 0, pt, 4, 0, refs), 0);
    EXPECT_EQ(ox_geog_to_georef(gcs.get(), 1, nullptr, 4, 0, refs), 0);
    EXPECT_EQ(ox_geog_to_georef(gcs.get(), 1, pt, 4, 0, nullptr), 0);
    char *none[1] = {nullptr};
    EXPECT_EQ(ox_geog_to_georef(gcs.get(), 1, pt, 4, 0, none), 0);
    // NaN and infinite coordinates give "" and are not counted
    std::vector<double> bad = {kNaN, 1.0, 1.0, kNaN, kInf, 1.0, 1.0, -kInf, 1.0, 1.0};
    int32_t count = 0;
    const auto out = encode(bad, 4, 0, &count);
    EXPECT_EQ(count, 1);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(out[i], "");
    EXPECT_EQ(out[4].size(), 12u);
    // decoding: null geogcs or arrays
    char ok[] = "MKPG1204";
    char *in[1] = {ok};
    EXPECT_EQ(ox_georef_to_geog(nullptr, 1, in, pt), 0);
    EXPECT_TRUE(std::isnan(pt[0]) && std::isnan(pt[1]));
    EXPECT_EQ(ox_georef_to_geog(gcs.get(), 1, nullptr, pt), 0);
    EXPECT_EQ(ox_georef_to_geog(gcs.get(), 1, in, nullptr), 0);
    EXPECT_EQ(ox_georef_to_geog(gcs.get(), -3, in, pt), 0);
}

TEST(Georef, UnitsOfTheGeographicSystem) {
    // A system in grads: the same references for the same places.
    Owned grads(ox_geogcs_from_string(
        "GEOGCS[\"g\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
        "PRIMEM[\"Greenwich\",0.0],UNIT[\"Grad\",0.01570796326794897]]"));
    ASSERT_TRUE(grads);
    const double pt[2] = {-2.0, 56.74074074074074};  // -1.8 and 51.0666... degrees
    char buffer[OX_GEOREF_SIZE];
    char *refs[1] = {buffer};
    ASSERT_EQ(ox_geog_to_georef(grads.get(), 1, pt, 2, 0, refs), 1);
    EXPECT_STREQ(buffer, "MKPG1204");
    double back[2];
    ASSERT_EQ(ox_georef_to_geog(grads.get(), 1, refs, back), 1);
    EXPECT_NEAR(back[0], -2.0, 1e-12);
    EXPECT_NEAR(back[1], 56.74074074074074, 1e-12);
}

}  // namespace
