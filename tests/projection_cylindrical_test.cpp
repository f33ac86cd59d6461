// The cylindrical projections: their edge cases and invariants, and the
// handling of non-finite coordinates by every routine of this family and
// of the transverse Mercator.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "projection_support.h"

namespace {

using namespace oxtest;

// Every projection of this family with a representative parameter set.
std::vector<std::pair<const char *, Params>> family(double cm) {
    return {{"Plate_Carree", cyl_params(cm)},
            {"Equidistant_Cylindrical", cyl_params(cm, 30)},
            {"Miller_Cylindrical", cyl_params(cm)},
            {"Mercator", cyl_params(cm, 20)},
            {"Gall_Stereographic", cyl_params(cm)},
            {"Cylindrical_Equal_Area", cyl_params(cm, 30)},
            {"Behrmann", cyl_params(cm)},
            {"Transverse_Mercator", tm_params(cm)},
            {"Gauss_Kruger", tm_params(cm)}};
}

TEST(Mercator, PolesAreFiniteAndInvertNearThePole) {
    for (double rf : {kRf, 0.0}) {
        const Owned pcs = make_projcs("Mercator", cyl_params(0, 0), kA, rf);
        std::vector<double> p = {10.0, 90.0, 10.0, -90.0};
        ASSERT_EQ(forward(pcs.get(), p), 2);
        EXPECT_TRUE(std::isfinite(p[1]) && std::isfinite(p[3]));
        EXPECT_GT(p[1], 1e8);  // beyond any latitude that a map shows
        EXPECT_LT(p[3], -1e8);
        ASSERT_EQ(inverse(pcs.get(), p), 2);
        EXPECT_NEAR(p[1], 90.0, 1e-9);
        EXPECT_NEAR(p[3], -90.0, 1e-9);
        EXPECT_NEAR(p[0], 10.0, 1e-12);
    }
}

TEST(Mercator, EquatorialSphereIsRadiusTimesLongitude) {
    constexpr double a = 6371000.0;
    const Owned pcs = make_projcs("Mercator", cyl_params(0, 0), a, 0.0);
    for (double lon : {-179.5, -123.456, -1e-9, 0.0, 33.3, 179.999}) {
        std::vector<double> p = {lon, 12.0};
        ASSERT_EQ(forward(pcs.get(), p), 1);
        EXPECT_EQ(p[0], a * (lon * 0.0174532925199433)) << lon;
    }
}

// Mercator is conformal: the north-south scale equals the east-west scale
// (m1 / cos chi of the conformal latitude for the ellipsoid, in terms of x).
TEST(Mercator, ScaleIsTheSameInBothDirections) {
    const Owned pcs = make_projcs("Mercator", cyl_params(0, 0));
    for (double lat : {-75.0, -30.0, 0.0, 10.0, 45.0, 60.0, 84.0}) {
        const double h = 1e-5;
        std::vector<double> p = {0.0, lat - h, 0.0, lat + h, h, lat};
        ASSERT_EQ(forward(pcs.get(), p), 3);
        // Meridian and parallel arc lengths of the ellipsoid over 2h degrees and h degrees.
        const double e2 = (2.0 - 1.0 / kRf) / kRf, phi = lat * kDeg;
        const double w = std::sqrt(1.0 - e2 * std::sin(phi) * std::sin(phi));
        const double meridian = kA * (1.0 - e2) / (w * w * w) * 2.0 * h * kDeg;
        const double parallel = kA / w * std::cos(phi) * h * kDeg;
        EXPECT_NEAR((p[3] - p[1]) / meridian, p[4] / parallel, 1e-8) << lat;
    }
}

TEST(Miller, InverseReproducesLatitudeToRounding) {
    const Owned pcs = make_projcs("Miller_Cylindrical", cyl_params());
    std::vector<double> p;
    for (double lat = -89.999; lat < 90.0; lat += 0.7) p.insert(p.end(), {1.0, lat});
    const std::vector<double> in = p;
    ASSERT_EQ(forward(pcs.get(), p), static_cast<int32_t>(p.size() / 2));
    ASSERT_EQ(inverse(pcs.get(), p), static_cast<int32_t>(p.size() / 2));
    for (size_t i = 1; i < p.size(); i += 2) EXPECT_NEAR(p[i], in[i], 1e-12) << in[i];
}

// A standard parallel at a pole fails every point, in either direction; the
// false origin and the foot do not disturb the failure value, and the
// system holds no constants.
TEST(CylindricalEqualArea, PolarStandardParallelConvertsNothing) {
    for (double rf : {kRf, 0.0})
        for (double sp : {90.0, -90.0}) {
            const Owned pcs = make_projcs("Cylindrical_Equal_Area", cyl_params(0, sp, 100, 50), kA, rf, kFoot);
            std::vector<double> p = {10.0, 20.0, -5.0, 60.0}, q = p;
            EXPECT_EQ(forward(pcs.get(), p), 0);
            EXPECT_EQ(inverse(pcs.get(), q), 0);
            for (size_t i = 0; i < p.size(); ++i) EXPECT_TRUE(is_failure(p[i]) && is_failure(q[i]));
            EXPECT_EQ(ox_projcs_isconstloaded(pcs.get()), 0);
            EXPECT_EQ(ox_projcs_load_constants(pcs.get()), 0);
            EXPECT_EQ(ox_projcs_isconstloaded(pcs.get()), 0);
        }
}

// Equal area: a cell of dlon x dlat degrees has the same area on the map as
// on the ellipsoid (the authalic sphere area integral of Snyder 3-12).
TEST(CylindricalEqualArea, AreasArePreserved) {
    for (const char *name : {"Cylindrical_Equal_Area", "Behrmann"}) {
        const Owned pcs = make_projcs(name, cyl_params(0, 45));
        const double e2 = (2.0 - 1.0 / kRf) / kRf, e = std::sqrt(e2);
        auto q = [&](double phi) {
            const double s = std::sin(phi);
            return (1.0 - e2) * (s / (1.0 - e2 * s * s) - std::log((1.0 - e * s) / (1.0 + e * s)) / (2.0 * e));
        };
        for (double lat : {-80.0, -20.0, 0.0, 35.0, 70.0}) {
            std::vector<double> p = {0.0, lat, 2.0, lat + 1.0};
            ASSERT_EQ(forward(pcs.get(), p), 2);
            const double map_area = (p[2] - p[0]) * (p[3] - p[1]);
            const double area = kA * kA / 2.0 * (q((lat + 1.0) * kDeg) - q(lat * kDeg)) * 2.0 * kDeg;
            EXPECT_NEAR(map_area / area, 1.0, 1e-12) << name << " " << lat;
        }
    }
}

TEST(CylindricalEqualArea, RoundTripsOverTheWholeMap) {
    for (double rf : {kRf, 0.0, 150.0}) {
        const Owned pcs = make_projcs("Cylindrical_Equal_Area", cyl_params(40, -37.5), kA, rf);
        std::vector<double> p;
        for (double lat = -90.0; lat <= 90.0; lat += 2.5) p.insert(p.end(), {40.0 + lat * 1.9, lat});
        const std::vector<double> in = p;
        ASSERT_EQ(forward(pcs.get(), p), static_cast<int32_t>(p.size() / 2));
        ASSERT_EQ(inverse(pcs.get(), p), static_cast<int32_t>(p.size() / 2));
        for (size_t i = 0; i < p.size(); i += 2) {
            // At the poles y is flat in phi: a rounding of y moves phi by ~1e-8 rad.
            const double tol = std::fabs(in[i + 1]) == 90.0 ? 1e-5 : 1e-11;
            EXPECT_NEAR(p[i + 1], in[i + 1], tol) << rf << " " << in[i + 1];
            EXPECT_NEAR(lon_diff(p[i], in[i]), 0.0, 1e-11);
        }
    }
}

// Behrmann is the cylindrical equal-area projection true at 30 degrees (it
// ignores any other parallel given: Driver.EquivalentSystemsGiveTheSameBits).
TEST(Behrmann, IsEqualAreaAtThirtyDegrees) {
    for (double rf : {kRf, 0.0}) {
        const Owned b = make_projcs("Behrmann", cyl_params(10), kA, rf);
        const Owned cea = make_projcs("Cylindrical_Equal_Area", cyl_params(10, 30), kA, rf);
        std::vector<double> x = {10.0, 0.0, -120.0, 30.0, 170.0, -89.0}, z = x;
        EXPECT_EQ(forward(b.get(), x), 3);
        EXPECT_EQ(forward(cea.get(), z), 3);
        for (size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(x[i], z[i], 1e-8);
        EXPECT_EQ(inverse(b.get(), x), 3);
        EXPECT_NEAR(x[2], -120.0, 1e-11);
        EXPECT_NEAR(x[3], 30.0, 1e-11);
    }
}

// 190 degrees east of the central meridian is 170 degrees west of it.
TEST(Family, LongitudeBeyondTheAntimeridianWraps) {
    for (const auto &[name, params] : family(-60.0)) {
        const Owned pcs = make_projcs(name, params);
        std::vector<double> p = {-60.0 + 190.0, 25.0, -60.0 - 170.0, 25.0};
        ASSERT_EQ(forward(pcs.get(), p), 2) << name;
        EXPECT_NEAR(p[0], p[2], 1e-6) << name;
        EXPECT_NEAR(p[1], p[3], 1e-6) << name;
        if (std::string(name) != "Transverse_Mercator" && std::string(name) != "Gauss_Kruger") {
            ASSERT_EQ(ox_proj_to_geog(pcs.get(), 1, p.data()), 1);
            EXPECT_NEAR(p[0], 130.0, 1e-9) << name;
            EXPECT_NEAR(p[1], 25.0, 1e-9) << name;
        }
    }
    // The transverse Mercator series holds near its central meridian only:
    // there the wrap shows across the antimeridian.
    for (const auto &[name, params] : family(179.5)) {
        const Owned pcs = make_projcs(name, params);
        std::vector<double> p = {180.5, 25.0, -179.5, 25.0};
        ASSERT_EQ(forward(pcs.get(), p), 2) << name;
        EXPECT_NEAR(p[0], p[2], 1e-6) << name;
        EXPECT_NEAR(p[1], p[3], 1e-6) << name;
        ASSERT_EQ(ox_proj_to_geog(pcs.get(), 1, p.data()), 1);
        EXPECT_NEAR(p[0], -179.5, 1e-9) << name;
        EXPECT_NEAR(p[1], 25.0, 1e-9) << name;
    }
}

// NaN and infinite coordinates never crash or hang a routine; these
// routines count every point, and the finite neighbours convert normally.
// Latitudes beyond the poles are taken as the poles.
TEST(Family, NonFiniteCoordinatesAreHarmlessAndLatitudesAreClamped) {
    const std::vector<double> bad = {kNaN, 10.0, 10.0,  kNaN,   kInf,   10.0, 10.0, kInf,
                                     -kInf, -kInf, 1e308, -1e308, 5e-324, -0.0, 16.0, 44.0};
    const int32_t n = static_cast<int32_t>(bad.size() / 2);
    for (const auto &[name, params] : family(15.0)) {
        const Owned pcs = make_projcs(name, params);
        std::vector<double> f = bad, g = bad, h = bad, good = {16.0, 44.0};
        EXPECT_EQ(forward(pcs.get(), f), n) << name;
        forward(pcs.get(), good);
        EXPECT_EQ(f[2 * n - 2], good[0]) << name;
        EXPECT_EQ(f[2 * n - 1], good[1]) << name;
        EXPECT_EQ(inverse(pcs.get(), g), n) << name;
        EXPECT_EQ(inverse(pcs.get(), h, 180.0), n) << name;
        std::vector<double> beyond = {20.0, 95.0, 20.0, -1000.0}, poles = {20.0, 90.0, 20.0, -90.0};
        EXPECT_EQ(forward(pcs.get(), beyond), 2) << name;
        EXPECT_EQ(forward(pcs.get(), poles), 2) << name;
        EXPECT_EQ(beyond, poles) << name;
    }
}

}  // namespace
