// MGRS: the reference vectors (WGS 84, both directions), round trips of
// random points at every precision, the older lettering on the spheroids
// that use it, the zone exceptions, units and prime meridians, and bad
// input.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "test_util.h"

namespace {

using namespace oxtest;

// Encodes (lon, lat) pairs in the unit of `gcs`.
std::vector<std::string> encode(ox_object *gcs, const std::vector<double> &pts, int digits, int round = 0,
                                int mode = OX_MGRS_LETTERING_AUTO, int32_t *count = nullptr) {
    const size_t n = pts.size() / 2;
    std::vector<std::vector<char>> buffers(n, std::vector<char>(OX_MGRS_SIZE, 'x'));
    std::vector<char *> refs;
    for (auto &b : buffers) refs.push_back(b.data());
    const int32_t done =
        ox_geog_to_mgrs_extended(gcs, static_cast<int32_t>(n), pts.data(), digits, round, mode, refs.data());
    if (count != nullptr) *count = done;
    std::vector<std::string> out;
    for (auto &b : buffers) out.emplace_back(b.data());
    return out;
}

std::string encode1(ox_object *gcs, double lon, double lat, int digits, int round = 0,
                    int mode = OX_MGRS_LETTERING_AUTO) {
    return encode(gcs, {lon, lat}, digits, round, mode)[0];
}

// Decodes references; returns the count and the (lon, lat) pairs.
int32_t decode(ox_object *gcs, const std::vector<std::string> &texts, std::vector<double> *pts,
               int mode = OX_MGRS_LETTERING_AUTO) {
    std::vector<char *> refs;
    for (const auto &t : texts) refs.push_back(const_cast<char *>(t.c_str()));
    pts->assign(2 * texts.size(), 0.0);
    return ox_mgrs_to_geog_extended(gcs, static_cast<int32_t>(texts.size()), refs.data(), mode, pts->data());
}

struct ReferenceRow {
    bool forward;
    double lat, lon;
    int precision;
    std::string mgrs;
};

std::vector<ReferenceRow> reference_rows() {
    std::vector<ReferenceRow> rows;
    for (const auto &f : read_csv("mgrs.csv"))
        rows.push_back({f[0] == "forward", std::stod(f[1]), std::stod(f[2]), std::stoi(f[3]), f[4]});
    return rows;
}

TEST(Mgrs, ForwardMatchesTheReferenceVectors) {
    Owned gcs(ox_geogcs_from_string(kWgs84));
    std::vector<double> pts;
    std::vector<const ReferenceRow *> rows;
    const auto all = reference_rows();
    for (const auto &r : all)
        if (r.forward) rows.push_back(&r);
    ASSERT_EQ(rows.size(), 398u);
    // one call per precision, all rows of it at once
    for (int digits = 0; digits <= 5; ++digits) {
        std::vector<double> pts;
        std::vector<const ReferenceRow *> these;
        for (const auto *r : rows)
            if (r->precision == digits) {
                pts.push_back(r->lon);
                pts.push_back(r->lat);
                these.push_back(r);
            }
        int32_t count = 0;
        const auto refs = encode(gcs.get(), pts, digits, 0, OX_MGRS_LETTERING_AUTO, &count);
        EXPECT_EQ(count, static_cast<int32_t>(these.size()));
        for (size_t i = 0; i < these.size(); ++i)
            EXPECT_EQ(refs[i], these[i]->mgrs) << these[i]->lat << " " << these[i]->lon;
    }
}

TEST(Mgrs, ReverseMatchesTheReferenceVectors) {
    Owned gcs(ox_factory_geogcs(4326));
    std::vector<std::string> texts;
    std::vector<const ReferenceRow *> rows;
    const auto all = reference_rows();
    for (const auto &r : all)
        if (!r.forward) {
            texts.push_back(r.mgrs);
            rows.push_back(&r);
        }
    ASSERT_EQ(rows.size(), 394u);
    std::vector<double> pts;
    EXPECT_EQ(decode(gcs.get(), texts, &pts, OX_MGRS_CENTER), 394);
    double worst = 0;
    for (size_t i = 0; i < rows.size(); ++i) {
        const double d = std::fmax(std::fabs(lon_diff(pts[2 * i], rows[i]->lon)), std::fabs(pts[2 * i + 1] - rows[i]->lat));
        worst = std::fmax(worst, d);
        EXPECT_LT(d, 1e-9) << texts[i];
    }
    std::printf("reverse: %zu rows, worst %.3g degrees\n", rows.size(), worst);
}

// The grid zone of a reference: the zone digits and band letter, or the UPS letter.
std::string grid_zone(const std::string &ref) {
    const size_t letters = ref.find_first_not_of("0123456789");
    return ref.substr(0, letters + 1);
}

// Whether (lon, lat) in degrees lies within `metres` of an edge of a grid
// zone: a band's parallel, a zone's meridian (with the Norway and Svalbard
// exceptions) or the edge of a polar cap.
bool near_grid_zone_edge(double lon, double lat, double metres) {
    const double dlat = metres / 110000.0 + 1e-9;
    const double dlon = metres / (111000.0 * std::cos(std::fmin(std::fabs(lat) + dlat, 89.99) * kDeg)) + 1e-9;
    for (double parallel = -80.0; parallel <= 72.0; parallel += 8.0)
        if (std::fabs(lat - parallel) < dlat) return true;
    if (std::fabs(lat - 84.0) < dlat) return true;
    for (double meridian = -180.0; meridian <= 180.0; meridian += 6.0)
        if (std::fabs(lon_diff(lon, meridian)) < dlon) return true;
    for (double meridian : {3.0, 9.0, 21.0, 33.0, 42.0})
        if (std::fabs(lon - meridian) < dlon) return true;
    return false;
}

// The reference with `extra` zeros appended to each digit half.
std::string refined(const std::string &ref, int digits, int extra) {
    const size_t start = ref.size() - 2 * digits;
    const std::string zeros(extra, '0');
    return ref.substr(0, start) + ref.substr(start, digits) + zeros + ref.substr(start + digits) + zeros;
}

TEST(Mgrs, RandomPointsRoundTripAtEveryPrecision) {
    Owned gcs(ox_factory_geogcs(4326));
    std::mt19937_64 rng(2024);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    constexpr int kPoints = 4000;
    std::vector<double> pts;
    for (int i = 0; i < kPoints; ++i) {
        pts.push_back(180.0 * u(rng));
        // a quarter of the points in the polar caps and the Svalbard and Norway zones
        const double lat = i % 4 == 0 ? (u(rng) > 0 ? 84.0 + 6.0 * std::fabs(u(rng)) : -80.0 - 10.0 * std::fabs(u(rng)))
                           : i % 4 == 1 ? 56.0 + 28.0 * std::fabs(u(rng))
                                        : std::asin(u(rng)) / kDeg;
        if (i % 4 == 1) pts.back() = 21.0 * (u(rng) + 1.0);
        pts.push_back(lat);
    }
    int skipped_centre = 0, skipped_corner = 0;
    for (int digits = 0; digits <= 11; ++digits) {
        int32_t count = 0;
        const auto refs = encode(gcs.get(), pts, digits, 0, OX_MGRS_LETTERING_AUTO, &count);
        ASSERT_EQ(count, kPoints);
        std::vector<double> centres, corners;
        ASSERT_EQ(decode(gcs.get(), refs, &centres, OX_MGRS_CENTER), kPoints);
        ASSERT_EQ(decode(gcs.get(), refs, &corners), kPoints);
        const auto again = encode(gcs.get(), centres, digits);
        // the south-west corner, rounded to a hundredth of the square, is the
        // reference with two more zeros
        const auto corner_refs = encode(gcs.get(), corners, digits + 2 > 11 ? 11 : digits + 2, 1);
        const double cell = std::pow(10.0, 5 - digits);
        for (int i = 0; i < kPoints; ++i) {
            // The centre (or corner) of a square cut by the edge of its grid
            // zone may lie in the next grid zone.
            if (grid_zone(again[i]) != grid_zone(refs[i])) {
                ++skipped_centre;
                EXPECT_TRUE(near_grid_zone_edge(pts[2 * i], pts[2 * i + 1], 1.5 * cell)) << refs[i];
            } else {
                EXPECT_EQ(again[i], refs[i]) << pts[2 * i] << " " << pts[2 * i + 1];
            }
            if (digits + 2 <= 11) {
                if (grid_zone(corner_refs[i]) != grid_zone(refs[i])) {
                    ++skipped_corner;
                    EXPECT_TRUE(near_grid_zone_edge(pts[2 * i], pts[2 * i + 1], 1.5 * cell)) << refs[i];
                } else {
                    EXPECT_EQ(corner_refs[i], refined(refs[i], digits, 2)) << pts[2 * i] << " " << pts[2 * i + 1];
                }
            }
        }
    }
    std::printf("round trips: %d points x 12 precisions; centres outside the grid zone %d, corners %d\n", kPoints,
                skipped_centre, skipped_corner);
}

TEST(Mgrs, ZonesBandsAndPolarCaps) {
    Owned gcs(ox_factory_geogcs(4326));
    // UTM zone 33 north; the band letters and hemispheres
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, 0), "33UWT");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 15.0, -0.0001, 0)), "33M");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 15.0, 0.0, 0)), "33N");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 15.0, 83.99, 0)), "33X");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 15.0, -79.99, 0)), "33C");
    // Norway and Svalbard
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 2.9, 60.0, 0)), "31V");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 3.0, 60.0, 0)), "32V");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 11.9, 60.0, 0)), "32V");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 3.0, 55.9, 0)), "31U");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 8.9, 78.0, 0)), "31X");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 9.0, 78.0, 0)), "33X");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 20.9, 78.0, 0)), "33X");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 21.0, 78.0, 0)), "35X");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 33.0, 78.0, 0)), "37X");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 42.0, 78.0, 0)), "38X");
    // the antimeridian belongs to zone 1
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 180.0, 10.0, 0)), "01P");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), -180.0, 10.0, 0)), "01P");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 179.99, 10.0, 0)), "60P");
    // UPS: the poles and the letters of the four zones
    EXPECT_EQ(encode1(gcs.get(), 0.0, 90.0, 5), "ZAH0000000000");
    EXPECT_EQ(encode1(gcs.get(), 0.0, -90.0, 5), "BAN0000000000");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), -10.0, 84.0, 0)), "Y");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 10.0, 84.0, 0)), "Z");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), -10.0, -80.001, 0)), "A");
    EXPECT_EQ(grid_zone(encode1(gcs.get(), 10.0, -80.001, 0)), "B");
    // spaces and rounding
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, 5, 0, OX_MGRS_SPACES), "33U WT 00000 61038");
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, 0, 0, OX_MGRS_SPACES), "33U WT");
    EXPECT_EQ(encode1(gcs.get(), 0.0, 90.0, 1, 0, OX_MGRS_SPACES), "Z AH 0 0");
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, 4), "33UWT00006103");
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, 4, 1), "33UWT00006104");  // 5761038.2 m: 61038 rounds up
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, 11).size(), 27u);
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, 99), encode1(gcs.get(), 15.0, 52.0, 11));  // clamped
    EXPECT_EQ(encode1(gcs.get(), 15.0, 52.0, -3), "33UWT");
}

TEST(Mgrs, ReadsEveryWrittenForm) {
    Owned gcs(ox_factory_geogcs(4326));
    std::vector<double> p;
    const std::vector<std::string> forms = {"33UWT0000061038", "33U WT 00000 61038", "  33UWT 00000 61038  ",
                                            "33UWT  0000061038"};
    ASSERT_EQ(decode(gcs.get(), forms, &p), 4);
    for (int i = 1; i < 4; ++i) {
        EXPECT_EQ(p[2 * i], p[0]);
        EXPECT_EQ(p[2 * i + 1], p[1]);
    }
    EXPECT_NEAR(p[0], 15.0, 1e-5);
    EXPECT_NEAR(p[1], 52.0, 1e-5);
    // one-digit zones, and the same place at every precision
    ASSERT_EQ(decode(gcs.get(), {"4QFJ12345678", "04QFJ12345678", "4QFJ123400567800"}, &p), 3);
    EXPECT_EQ(p[0], p[2]);
    EXPECT_NEAR(p[0], p[4], 1e-12);
    EXPECT_NEAR(p[1], p[5], 1e-12);
    // the south-west corner and the centre are half a square apart
    std::vector<double> c;
    ASSERT_EQ(decode(gcs.get(), {"33UXU0061"}, &p), 1);
    ASSERT_EQ(decode(gcs.get(), {"33UXU0061"}, &c, OX_MGRS_CENTER), 1);
    double s, azi, back;
    ASSERT_EQ(ox_geodesic_distance(6378137.0, 0.00669437999014, p[0] * kDeg, p[1] * kDeg, c[0] * kDeg, c[1] * kDeg, &s,
                                   &azi, &back),
              1);
    EXPECT_NEAR(s, 500.0 * std::sqrt(2.0) / 0.9997, 0.5);  // half the diagonal of a 1 km square
}

TEST(Mgrs, OlderLetteringOnTheOlderSpheroids) {
    // NAD27 (Clarke 1866), DHDN (Bessel 1841), Arc 1950 (Clarke 1880 (Arc)):
    // the older lettering in automatic mode; ED50 (International 1924) and
    // WGS 84: the current one.
    const int older[] = {4267, 4314, 4209};
    const int current[] = {4326, 4230, 4269};
    const double lon = -75.5, lat = 40.25;  // zone 18, an odd zone
    const double lon_even = 12.5;           // zone 33... and 32 for an even zone
    for (int code : older) {
        Owned gcs(ox_factory_geogcs(code));
        ASSERT_TRUE(gcs) << code;
        for (double x : {lon, lon_even}) {
            const std::string autom = encode1(gcs.get(), x, lat, 5);
            const std::string old = encode1(gcs.get(), x, lat, 5, 0, OX_MGRS_LETTERING_OLDER);
            const std::string now = encode1(gcs.get(), x, lat, 5, 0, OX_MGRS_LETTERING_CURRENT);
            EXPECT_EQ(autom, old) << code;
            // the same square, its row letter ten letters on
            const std::string rows = "ABCDEFGHJKLMNPQRSTUV";
            ASSERT_EQ(now.size(), old.size());
            EXPECT_EQ(now.substr(0, 4), old.substr(0, 4));
            EXPECT_EQ(now.substr(5), old.substr(5));
            EXPECT_EQ(rows[(rows.find(now[4]) + 10) % 20], old[4]) << now << " " << old;
            // and back, with the lettering it was written in
            std::vector<double> p, q;
            ASSERT_EQ(decode(gcs.get(), {autom}, &p), 1);
            ASSERT_EQ(decode(gcs.get(), {now}, &q, OX_MGRS_LETTERING_CURRENT), 1);
            EXPECT_EQ(p, q);
            EXPECT_NEAR(p[0], x, 2e-5);
            EXPECT_NEAR(p[1], lat, 2e-5);
            // read with the other lettering, a reference is 1000 km off or no square of its band
            std::vector<double> r;
            if (decode(gcs.get(), {autom}, &r, OX_MGRS_LETTERING_CURRENT) == 1) {
                EXPECT_GT(std::fabs(r[1] - lat), 5.0);
            }
        }
    }
    for (int code : current) {
        Owned gcs(ox_factory_geogcs(code));
        ASSERT_TRUE(gcs) << code;
        EXPECT_EQ(encode1(gcs.get(), lon, lat, 5), encode1(gcs.get(), lon, lat, 5, 0, OX_MGRS_LETTERING_CURRENT));
    }
    // UPS has one lettering
    Owned nad27(ox_factory_geogcs(4267));
    EXPECT_EQ(encode1(nad27.get(), 30.0, 86.0, 3), encode1(nad27.get(), 30.0, 86.0, 3, 0, OX_MGRS_LETTERING_CURRENT));
}

TEST(Mgrs, UnitsAndPrimeMeridian) {
    Owned wgs84(ox_factory_geogcs(4326));
    const std::string expected = encode1(wgs84.get(), 2.35, 48.85, 5);
    // radians
    Owned rad(ox_geogcs_from_string(
        "GEOGCS[\"r\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
        "PRIMEM[\"Greenwich\",0.0],UNIT[\"Radian\",1.0]]"));
    ASSERT_TRUE(rad);
    EXPECT_EQ(encode1(rad.get(), 2.35 * kDeg, 48.85 * kDeg, 5), expected);
    // longitudes from a prime meridian 2.5 degrees east of Greenwich
    Owned shifted(ox_geogcs_from_string(
        "GEOGCS[\"p\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
        "PRIMEM[\"East\",2.5],UNIT[\"Degree\",0.0174532925199433]]"));
    ASSERT_TRUE(shifted);
    EXPECT_EQ(encode1(shifted.get(), 2.35 - 2.5, 48.85, 5), expected);
    std::vector<double> p;
    ASSERT_EQ(decode(shifted.get(), {expected}, &p), 1);
    EXPECT_NEAR(p[0], 2.35 - 2.5, 2e-5);
    // the object string's degree (0.0174532925199433) is a degree: exact edges
    Owned text(ox_geogcs_from_string(kWgs84));
    EXPECT_EQ(grid_zone(encode1(text.get(), 84.0, 84.0, 0)), "Z");
    EXPECT_EQ(grid_zone(encode1(text.get(), 3.0, 56.0, 0)), "32V");
}

TEST(Mgrs, RefusesWhatIsNotAReference) {
    Owned gcs(ox_factory_geogcs(4326));
    const std::string overlong = "33UWT" + std::string(10000, '1');
    const std::string valid = "33UWT0000061038";
    std::vector<std::string> bad = {
        "", "   ", "33uxu0000061038", "33UXU000006103", "33UXU00000 6103", "33UXU0000 061038",
        "33UXI0000061038",   // I is no square letter
        "33OXU0000061038",   // nor a band
        "33AXU0000061038",   // A is no UTM band
        "61UXU0000061038", "0UXU0000061038", "00UXU0000061038", "100UXU00000610",
        "33YXU0000061038",   // Y is no UTM band
        "33UX", "33U", "33", "Z", "ZA", "CAH00",
        "33UXW0000061038",   // W is no row letter
        "33UJU0000061038",   // J is no column of zone 33 (S-Z)
        "32XNN0000000000", "34XDA00", "36XVH00",  // zones that do not exist in band X
        "31VFK", "31VEL",    // east of 3 E: zone 32 in band V
        "33UXH",             // a row 1000 km from band U
        "YAH", "ZRH",        // UPS columns of the other side
        "ZAQ", "BAI",        // UPS rows that do not exist
        "BRZ", "ZJP",        // UPS squares beyond the polar caps
        "YRA",               // a UPS square south of 84 N
        "33UXU0000061038x", "33UXU 00000 61038 9", "33UXU12345678901234567890123",
        "33U\xc3\x9cU0000061038", "\xff\xfe", overlong,
        "33UXU\t00000\t61038",
    };
    std::vector<double> p;
    EXPECT_EQ(decode(gcs.get(), bad, &p), 0);
    for (size_t i = 0; i < bad.size(); ++i) EXPECT_TRUE(is_failure(p[2 * i]) && is_failure(p[2 * i + 1])) << bad[i];
    // null entries and the count of those read
    char v[] = "33UWT0000061038";
    char *refs[3] = {v, nullptr, v};
    double out[6];
    EXPECT_EQ(ox_mgrs_to_geog(gcs.get(), 3, refs, out), 2);
    EXPECT_TRUE(is_failure(out[2]) && is_failure(out[3]));
    // truncations of a valid reference: only whole groups read
    for (size_t len = 0; len < valid.size(); ++len) {
        std::vector<double> q;
        const int32_t got = decode(gcs.get(), {valid.substr(0, len)}, &q);
        const bool whole = len == 5 || len == 7 || len == 9 || len == 11 || len == 13;
        EXPECT_EQ(got, whole ? 1 : 0) << valid.substr(0, len);
    }
}

TEST(Mgrs, BadArgumentsConvertNothing) {
    Owned gcs(ox_factory_geogcs(4326));
    char buffer[OX_MGRS_SIZE] = "junk";
    char *refs[1] = {buffer};
    double pt[2] = {15.0, 52.0};
    EXPECT_EQ(ox_geog_to_mgrs(nullptr, 1, pt, 5, 0, refs), 0);
    EXPECT_STREQ(buffer, "");
    Owned unit(ox_unit_new("Degree", 0.0174532925199433));
    EXPECT_EQ(ox_geog_to_mgrs(unit.get(), 1, pt, 5, 0, refs), 0);
    EXPECT_EQ(ox_geog_to_mgrs(gcs.get(), 0, pt, 5, 0, refs), 0);
    EXPECT_EQ(ox_geog_to_mgrs(gcs.get(), 1, nullptr, 5, 0, refs), 0);
    EXPECT_EQ(ox_geog_to_mgrs(gcs.get(), 1, pt, 5, 0, nullptr), 0);
    EXPECT_EQ(ox_geog_to_mgrs_extended(gcs.get(), 1, pt, 5, 0, 3, refs), 0);                // no such lettering
    EXPECT_EQ(ox_geog_to_mgrs_extended(gcs.get(), 1, pt, 5, 0, OX_MGRS_CENTER, refs), 0);   // a decoding flag
    EXPECT_EQ(ox_geog_to_mgrs_extended(gcs.get(), 1, pt, 5, 0, 0x100, refs), 0);
    EXPECT_EQ(ox_geog_to_mgrs(gcs.get(), 1, pt, 5, 0, refs), 1);
    // NaN, infinite and out-of-range coordinates
    std::vector<double> bad = {kNaN, 1.0, 1.0, kNaN, kInf, 1.0, 1.0, -kInf, 1.0, 90.000001, 1.0, -91.0, 1e300, 45.0};
    int32_t count = 0;
    const auto out = encode(gcs.get(), bad, 5, 0, OX_MGRS_LETTERING_AUTO, &count);
    EXPECT_EQ(count, 1);  // only the huge longitude, which is reduced
    for (int i = 0; i < 6; ++i) EXPECT_EQ(out[i], "");
    EXPECT_FALSE(out[6].empty());
    // decoding
    char ok[] = "33UWT0000061038";
    char *in[1] = {ok};
    EXPECT_EQ(ox_mgrs_to_geog(nullptr, 1, in, pt), 0);
    EXPECT_TRUE(is_failure(pt[0]) && is_failure(pt[1]));
    EXPECT_EQ(ox_mgrs_to_geog(gcs.get(), 1, nullptr, pt), 0);
    EXPECT_EQ(ox_mgrs_to_geog(gcs.get(), 1, in, nullptr), 0);
    EXPECT_EQ(ox_mgrs_to_geog_extended(gcs.get(), 1, in, OX_MGRS_SPACES, pt), 0);  // an encoding flag
    EXPECT_EQ(ox_mgrs_to_geog_extended(gcs.get(), 1, in, 7, pt), 0);
    EXPECT_EQ(ox_mgrs_to_geog_extended(gcs.get(), 1, in, OX_MGRS_CENTER | OX_MGRS_LETTERING_CURRENT, pt), 1);
    // in the older lettering the same letters name a square 700 km north of band U
    EXPECT_EQ(ox_mgrs_to_geog_extended(gcs.get(), 1, in, OX_MGRS_CENTER | OX_MGRS_LETTERING_OLDER, pt), 0);
}

}  // namespace
