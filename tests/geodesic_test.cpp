// Geodesics: the inverse and direct problems against the reference vectors
// (WGS 84), round trips of random and nearly antipodal pairs, the special
// lines (meridians, the equator, the poles, coincident points), the sphere's
// closed formulas and bad input.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "test_util.h"

namespace {

using namespace oxtest;

constexpr double kA = 6378137.0;
constexpr double kF = 1.0 / 298.257223563;
constexpr double kE2 = kF * (2.0 - kF);
constexpr double kRadToDeg = 57.29577951308232;
constexpr double kPi = 3.141592653589793;

// Differences of azimuths (degrees) across the +-180 cut.
double angle_diff(double a, double b) {
    double d = std::fmod(a - b, 360.0);
    if (d > 180.0) d -= 360.0;
    if (d < -180.0) d += 360.0;
    return d;
}

// The forward azimuth at point 2 (degrees) from the returned back azimuth.
double forward_at_2(double azimuth21) { return azimuth21 * kRadToDeg + 180.0; }

// Metres between two nearby points (degrees) on WGS 84, from the radii of
// curvature.
double metres_apart(double lat1, double lon1, double lat2, double lon2) {
    const double phi = lat1 * kDeg;
    const double m = ox_m(kA, kE2, phi), n = ox_n(kA, kE2, phi);
    const double dy = (lat2 - lat1) * kDeg * m;
    const double dx = lon_diff(lon2, lon1) * kDeg * n * std::cos(phi);
    return std::hypot(dx, dy);
}

struct Row {
    bool inverse;
    double lat1, lon1, azi1, lat2, lon2, azi2, s12;
};

// The angle (radians) by which the rounding of degrees to radians moves a
// coordinate: the reference vectors took the decimal degrees themselves.
double rounding_of(double degrees) {
    const long double exact = static_cast<long double>(degrees) * 3.14159265358979323846264338327950288L / 180.0L;
    return static_cast<double>(std::fabs(static_cast<long double>(degrees * kDeg) - exact));
}

// The azimuth (degrees) that a line of length s is uncertain by, in the
// library and the reference alike: the roundings move the points by at most
// a (|d lat| + |d lon| cos lat) each, and the iteration stops once the
// longitude difference is met to within DBL_EPSILON radians, which is a
// DBL_EPSILON across, seen from s away (twice that, for safety).
double azimuth_uncertainty(const Row &r) {
    const double moved = kA * (rounding_of(r.lat1) + rounding_of(r.lon1) * std::cos(r.lat1 * kDeg) +
                               rounding_of(r.lat2) + rounding_of(r.lon2) * std::cos(r.lat2 * kDeg) + DBL_EPSILON);
    return 2.0 * moved / r.s12 * kRadToDeg;
}

// Nearly antipodal: within a degree of the antipode, where the azimuths are
// ill-conditioned.
bool nearly_antipodal(double lat1, double lon1, double lat2, double lon2) {
    return std::fabs(lat1 + lat2) < 1.0 && std::fabs(std::fabs(lon_diff(lon2, lon1)) - 180.0) < 1.0;
}

std::vector<Row> reference_rows() {
    std::vector<Row> rows;
    for (const auto &f : read_csv("geodesic.csv")) {
        Row r{};
        r.inverse = f[0] == "inverse";
        r.lat1 = std::stod(f[1]);
        r.lon1 = std::stod(f[2]);
        r.azi1 = std::stod(f[3]);
        r.lat2 = std::stod(f[4]);
        r.lon2 = std::stod(f[5]);
        r.azi2 = std::stod(f[6]);
        r.s12 = std::stod(f[7]);
        rows.push_back(r);
    }
    return rows;
}

TEST(Geodesic, InverseMatchesTheReferenceVectors) {
    int count = 0, antipodal = 0;
    double worst_s = 0, worst_azi = 0, worst_antipodal_azi = 0;
    for (const Row &r : reference_rows()) {
        if (!r.inverse) continue;
        double s, azi1, azi21;
        ASSERT_EQ(ox_geodesic_distance(kA, kE2, r.lon1 * kDeg, r.lat1 * kDeg, r.lon2 * kDeg, r.lat2 * kDeg, &s, &azi1,
                                       &azi21),
                  1);
        ++count;
        worst_s = std::fmax(worst_s, std::fabs(s - r.s12));
        EXPECT_NEAR(s, r.s12, 15e-9) << r.lat1 << " " << r.lon1 << " " << r.lat2 << " " << r.lon2;
        // Azimuths to 1e-12 degrees beyond what a short line is uncertain
        // by; nearly antipodal ones, which are ill-conditioned, to 1e-9
        // degrees.
        const double da = std::fmax(std::fabs(angle_diff(azi1 * kRadToDeg, r.azi1)),
                                    std::fabs(angle_diff(forward_at_2(azi21), r.azi2)));
        const double input = azimuth_uncertainty(r);
        if (nearly_antipodal(r.lat1, r.lon1, r.lat2, r.lon2)) {
            ++antipodal;
            worst_antipodal_azi = std::fmax(worst_antipodal_azi, da);
            EXPECT_LT(da, 1e-9 + input) << r.lat1 << " " << r.lon1 << " " << r.lat2 << " " << r.lon2;
        } else {
            worst_azi = std::fmax(worst_azi, da - input);
            EXPECT_LT(da, 1e-12 + input) << r.lat1 << " " << r.lon1 << " " << r.lat2 << " " << r.lon2;
        }
    }
    EXPECT_EQ(count, 520);
    EXPECT_GT(antipodal, 50);
    std::printf("inverse: %d rows, worst distance %.3g m, azimuth beyond the uncertainty %.3g deg (%d nearly "
                "antipodal: %.3g deg)\n", count,
                worst_s, worst_azi, antipodal, worst_antipodal_azi);
}

TEST(Geodesic, DirectMatchesTheReferenceVectors) {
    int count = 0;
    double worst = 0;
    for (const Row &r : reference_rows()) {
        if (r.inverse) continue;
        double lon2, lat2;
        ASSERT_EQ(ox_geodesic_coordinate(kA, kE2, r.lon1 * kDeg, r.lat1 * kDeg, r.s12, r.azi1 * kDeg, &lon2, &lat2), 1);
        ++count;
        const double d = metres_apart(r.lat2, r.lon2, lat2 * kRadToDeg, lon2 * kRadToDeg);
        worst = std::fmax(worst, d);
        EXPECT_LT(d, 15e-9) << r.lat1 << " " << r.lon1 << " " << r.azi1 << " " << r.s12;
        EXPECT_LE(std::fabs(lon2), kPi);
    }
    EXPECT_EQ(count, 400);
    std::printf("direct: %d rows, worst position %.3g m\n", count, worst);
}

// Solves the inverse problem, then the direct problem from point 1 along
// the azimuth found; the end must be point 2.  Returns the miss in metres.
double round_trip(double lat1, double lon1, double lat2, double lon2) {
    double s, azi1, azi21, lon, lat;
    EXPECT_EQ(ox_geodesic_distance(kA, kE2, lon1 * kDeg, lat1 * kDeg, lon2 * kDeg, lat2 * kDeg, &s, &azi1, &azi21), 1);
    EXPECT_EQ(ox_geodesic_coordinate(kA, kE2, lon1 * kDeg, lat1 * kDeg, s, azi1, &lon, &lat), 1);
    // and from point 2 back along the back azimuth
    double lonb, latb;
    EXPECT_EQ(ox_geodesic_coordinate(kA, kE2, lon2 * kDeg, lat2 * kDeg, s, azi21, &lonb, &latb), 1);
    return std::fmax(metres_apart(lat2, lon2, lat * kRadToDeg, lon * kRadToDeg),
                     metres_apart(lat1, lon1, latb * kRadToDeg, lonb * kRadToDeg));
}

TEST(Geodesic, RandomPairsRoundTrip) {
    std::mt19937_64 rng(13);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    double worst = 0;
    constexpr int kPairs = 100000;
    for (int i = 0; i < kPairs; ++i) {
        const double lat1 = std::asin(u(rng)) * kRadToDeg, lon1 = 180.0 * u(rng);
        double lat2, lon2;
        if (i % 4 == 0) {
            // nearly antipodal: within half a degree of the antipode
            lat2 = -lat1 + 0.5 * u(rng);
            lon2 = lon1 + 180.0 + 0.5 * u(rng);
        } else if (i % 4 == 1) {
            // short lines, 1 m to 20 km
            const double r = std::pow(10.0, 2.3 * u(rng) - 2.3) * 0.2;
            lat2 = std::fmax(-90.0, std::fmin(90.0, lat1 + r * u(rng)));
            lon2 = lon1 + r * u(rng);
        } else {
            lat2 = std::asin(u(rng)) * kRadToDeg;
            lon2 = 180.0 * u(rng);
        }
        if (lon2 >= 180.0) lon2 -= 360.0;
        const double miss = round_trip(lat1, lon1, lat2, lon2);
        worst = std::fmax(worst, miss);
        ASSERT_LT(miss, 15e-9) << lat1 << " " << lon1 << " " << lat2 << " " << lon2;
    }
    std::printf("round trips: %d pairs, worst %.3g m\n", kPairs, worst);
}

// Direct problems on WGS 84 and on ellipsoids with flattenings 1/100 and
// 1/50 against 30-digit quadratures of the geodesic integrals
// (tools/series/geodesic_reference.py); the inverse problem between the
// same points must give the same distance.
TEST(Geodesic, FlattenedEllipsoidsAgainstQuadrature) {
    double worst_direct = 0, worst_inverse = 0;
    int count = 0;
    for (const auto &f : read_csv("geodesic_flattened.csv")) {
        const double fl = 1.0 / std::stod(f[0]), e2 = fl * (2.0 - fl);
        const double lat1 = std::stod(f[1]), azi1 = std::stod(f[2]), s12 = std::stod(f[3]);
        const double lon2 = std::stod(f[4]), lat2 = std::stod(f[5]);
        double lon, lat;
        ASSERT_EQ(ox_geodesic_coordinate(kA, e2, 0.0, lat1, s12, azi1, &lon, &lat), 1);
        const double miss = kA * std::hypot(lat - lat2, std::remainder(lon - lon2, 2 * kPi) * std::cos(lat2));
        worst_direct = std::fmax(worst_direct, miss);
        EXPECT_LT(miss, 25e-9) << f[0] << " " << lat1 << " " << azi1 << " " << s12;
        double s, a1, a21;
        ASSERT_EQ(ox_geodesic_distance(kA, e2, 0.0, lat1, lon2, lat2, &s, &a1, &a21), 1);
        worst_inverse = std::fmax(worst_inverse, std::fabs(s - s12));
        EXPECT_NEAR(s, s12, 25e-9) << f[0] << " " << lat1 << " " << azi1 << " " << s12;
        ++count;
    }
    EXPECT_EQ(count, 36);
    std::printf("flattened ellipsoids: %d rows, worst direct %.3g m, inverse distance %.3g m\n", count, worst_direct,
                worst_inverse);
}

TEST(Geodesic, SpecialLines) {
    const double quarter = ox_q90(kA, kE2);
    double s, azi1, azi21;
    // Coincident points: distance 0, heading north, back azimuth south.
    ASSERT_EQ(ox_geodesic_distance(kA, kE2, 0.3, 0.7, 0.3, 0.7, &s, &azi1, &azi21), 1);
    EXPECT_EQ(s, 0.0);
    // Along a meridian, from the equator to the pole: the quarter meridian.
    ASSERT_EQ(ox_geodesic_distance(kA, kE2, 0.5, 0.0, 0.5, kPi / 2, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, quarter, 1e-8);
    EXPECT_EQ(azi1, 0.0);
    // Pole to pole over any meridian: twice the quarter meridian.
    ASSERT_EQ(ox_geodesic_distance(kA, kE2, 0.0, -kPi / 2, 2.0, kPi / 2, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, 2 * quarter, 2e-8);
    // Across the pole: lambda12 = pi along the meridians.
    ASSERT_EQ(ox_geodesic_distance(kA, kE2, 0.0, 80 * kDeg, kPi, 80 * kDeg, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, 2 * (quarter - ox_q(kA, kE2, 80 * kDeg)), 2e-8);
    EXPECT_NEAR(azi1, 0.0, 1e-15);
    EXPECT_NEAR(azi21, 0.0, 1e-15);
    // Along the equator up to (1 - f) pi: a lambda12; beyond, over a pole.
    ASSERT_EQ(ox_geodesic_distance(kA, kE2, 0.0, 0.0, 3.0, 0.0, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, kA * 3.0, 1e-8);
    EXPECT_NEAR(azi1, kPi / 2, 1e-15);
    EXPECT_NEAR(azi21, -kPi / 2, 1e-15);
    ASSERT_EQ(ox_geodesic_distance(kA, kE2, 0.0, 0.0, kPi, 0.0, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, 2 * quarter, 2e-8);  // antipodes on the equator: over the pole
    // The direct problem along the equator and a meridian.
    double lon, lat;
    ASSERT_EQ(ox_geodesic_coordinate(kA, kE2, 0.0, 0.0, kA, kPi / 2, &lon, &lat), 1);
    EXPECT_NEAR(lon, 1.0, 1e-15);
    EXPECT_NEAR(lat, 0.0, 1e-16);  // cos(pi/2) of the azimuth is 6e-17, not 0
    ASSERT_EQ(ox_geodesic_coordinate(kA, kE2, 1.0, 0.0, quarter, 0.0, &lon, &lat), 1);
    EXPECT_NEAR(lat, kPi / 2, 1e-14);
    // Backwards is the same as the opposite azimuth.
    double lon_b, lat_b;
    ASSERT_EQ(ox_geodesic_coordinate(kA, kE2, 0.2, 0.4, -5e6, 1.0, &lon, &lat), 1);
    ASSERT_EQ(ox_geodesic_coordinate(kA, kE2, 0.2, 0.4, 5e6, 1.0 - kPi, &lon_b, &lat_b), 1);
    EXPECT_NEAR(lon, lon_b, 1e-14);
    EXPECT_NEAR(lat, lat_b, 1e-14);
    // Outputs may be null.
    EXPECT_EQ(ox_geodesic_distance(kA, kE2, 0.0, 0.0, 1.0, 1.0, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(ox_geodesic_coordinate(kA, kE2, 0.0, 0.0, 1e6, 1.0, nullptr, nullptr), 1);
}

TEST(Geodesic, SphereClosedForms) {
    constexpr double r = 6371000.0;
    double s, azi1, azi21;
    // A quarter of a great circle along the equator and to the pole.
    ASSERT_EQ(ox_geodesic_distance(r, 0.0, 0.0, 0.0, kPi / 2, 0.0, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, r * kPi / 2, 1e-8);
    EXPECT_NEAR(azi1, kPi / 2, 1e-15);
    EXPECT_NEAR(azi21, -kPi / 2, 1e-15);
    ASSERT_EQ(ox_geodesic_distance(r, 0.0, 0.3, 0.0, 2.0, kPi / 2, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, r * kPi / 2, 1e-8);
    EXPECT_NEAR(azi1, 0.0, 1e-15);
    // 60 degrees of arc: the spherical law of cosines.
    const double lat1 = 0.4, lat2 = -0.2, dlon = 1.1;
    const double arc = std::acos(std::sin(lat1) * std::sin(lat2) + std::cos(lat1) * std::cos(lat2) * std::cos(dlon));
    ASSERT_EQ(ox_geodesic_distance(r, 0.0, 0.0, lat1, dlon, lat2, &s, &azi1, &azi21), 1);
    EXPECT_NEAR(s, r * arc, 1e-7);
    // The ellipsoid code agrees with the sphere in the limit (f = 1e-9: the
    // difference is of the order of f a).
    double s_e, azi1_e, azi21_e;
    ASSERT_EQ(ox_geodesic_distance(r, 2e-9, 0.0, lat1, dlon, lat2, &s_e, &azi1_e, &azi21_e), 1);
    EXPECT_NEAR(s, s_e, 0.02);
    EXPECT_NEAR(azi1, azi1_e, 1e-8);
    // Direct and inverse close on each other.
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    for (int i = 0; i < 1000; ++i) {
        const double la1 = std::asin(u(rng)), lo1 = kPi * u(rng), la2 = std::asin(u(rng)), lo2 = kPi * u(rng);
        ASSERT_EQ(ox_geodesic_distance(r, 0.0, lo1, la1, lo2, la2, &s, &azi1, &azi21), 1);
        double lon, lat;
        ASSERT_EQ(ox_geodesic_coordinate(r, 0.0, lo1, la1, s, azi1, &lon, &lat), 1);
        EXPECT_NEAR(lat, la2, 1e-12);
        EXPECT_NEAR(std::remainder(lon - lo2, 2 * kPi) * std::cos(la2), 0.0, 1e-12);
    }
}

TEST(Geodesic, BadInputIsRefused) {
    const double nan = kNaN, inf = kInf;
    // The ellipsoid and point 1 (both problems), then point 2 (inverse) or
    // the distance and azimuth (direct).
    struct Case {
        double a, e2, lon1, lat1, lon2, lat2;
    };
    const Case cases[] = {
        {kA, kE2, nan, 0, 0, 0},  {kA, kE2, 0, nan, 0, 0},  {kA, kE2, inf, 0, 0, 0}, {kA, kE2, 0, 1.6, 0, 0},
        {0.0, kE2, 0, 0, 1, 1},   {-kA, kE2, 0, 0, 1, 1},   {inf, kE2, 0, 0, 1, 1},  {nan, kE2, 0, 0, 1, 1},
        {kA, 1.0, 0, 0, 1, 1},    {kA, 0.5, 0, 0, 1, 1},    {kA, -0.01, 0, 0, 1, 1}, {kA, nan, 0, 0, 1, 1},
        {kA, inf, 0, 0, 1, 1},    {kA, kE2, 0, 0, inf, 0},  {kA, kE2, 0, 0, 0, -inf}, {kA, kE2, 0, 0, 0, -1.5708},
        {kA, kE2, 0, 0, nan, 0},
    };
    for (const Case &c : cases) {
        double s = 1, azi1 = 1, azi21 = 1;
        EXPECT_EQ(ox_geodesic_distance(c.a, c.e2, c.lon1, c.lat1, c.lon2, c.lat2, &s, &azi1, &azi21), 0);
        EXPECT_TRUE(is_failure(s) && is_failure(azi1) && is_failure(azi21));
        // as a direct problem: distance lon2 * 1e6, azimuth lat2
        const bool good_line = std::isfinite(c.lon2) && std::isfinite(c.lat2);
        const bool bad_start = &c < cases + 13;  // the first 13 cases
        double lon = 1, lat = 1;
        EXPECT_EQ(ox_geodesic_coordinate(c.a, c.e2, c.lon1, c.lat1, c.lon2 * 1e6, c.lat2, &lon, &lat),
                  bad_start || !good_line ? 0 : 1);
        if (bad_start || !good_line) {
            EXPECT_TRUE(is_failure(lon) && is_failure(lat));
        }
    }
    double lon, lat;
    // Huge but finite distances and longitudes still give a point.
    EXPECT_EQ(ox_geodesic_coordinate(kA, kE2, 1e10, 0.3, 1e15, 0.5, &lon, &lat), 1);
    EXPECT_LE(std::fabs(lon), kPi);
    EXPECT_LE(std::fabs(lat), kPi / 2);
    double s;
    EXPECT_EQ(ox_geodesic_distance(kA, kE2, 1e10, 0.3, -1e12, 0.5, &s, nullptr, nullptr), 1);
    EXPECT_TRUE(std::isfinite(s) && s >= 0 && s <= 2.01e7);
}

}  // namespace
