// The cylindrical projections: their edge cases and invariants, and the
// handling of non-finite coordinates by every routine of this family and
// of the transverse Mercator.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "ox.h"
#include "projection_support.h"

namespace {

using Params = std::vector<std::pair<std::string, double>>;
constexpr double kA = 6378137.0, kRf = 298.257223563;
constexpr double kDeg = 0.017453292519943295;

ox_object *make(const std::string &projection, const Params &params, double a = kA, double rf = kRf) {
    ox_object *p = ox_projcs_from_string(oxtest::projcs_text(projection, a, rf, params).c_str());
    EXPECT_NE(p, nullptr) << projection;
    return p;
}

Params base(double cm, double sp1 = std::nan("")) {
    Params p = {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", cm}};
    if (!std::isnan(sp1)) p.push_back({"Standard_Parallel_1", sp1});
    return p;
}

// Every projection of this family with a representative parameter set.
struct Case {
    const char *projection;
    Params params;
};
std::vector<Case> family(double cm) {
    Params tm = {{"False_Easting", 500000},
                 {"False_Northing", 0},
                 {"Central_Meridian", cm},
                 {"Scale_Factor", 0.9996},
                 {"Latitude_Of_Origin", 0}};
    return {{"Plate_Carree", base(cm)},
            {"Equidistant_Cylindrical", base(cm, 30)},
            {"Miller_Cylindrical", base(cm)},
            {"Mercator", base(cm, 20)},
            {"Gall_Stereographic", base(cm)},
            {"Cylindrical_Equal_Area", base(cm, 30)},
            {"Behrmann", base(cm)},
            {"Transverse_Mercator", tm},
            {"Gauss_Kruger", tm}};
}

TEST(Mercator, PolesAreFiniteAndInvertNearThePole) {
    for (double rf : {kRf, 0.0}) {
        ox_object *pcs = make("Mercator", base(0, 0), kA, rf);
        double p[4] = {10.0, 90.0, 10.0, -90.0};
        ASSERT_EQ(ox_geog_to_proj(pcs, 2, p), 2);
        EXPECT_TRUE(std::isfinite(p[1]));
        EXPECT_TRUE(std::isfinite(p[3]));
        EXPECT_GT(p[1], 1e8);  // beyond any latitude that a map shows
        EXPECT_LT(p[3], -1e8);
        ASSERT_EQ(ox_proj_to_geog(pcs, 2, p), 2);
        EXPECT_NEAR(p[1], 90.0, 1e-9);
        EXPECT_NEAR(p[3], -90.0, 1e-9);
        EXPECT_NEAR(p[0], 10.0, 1e-12);
        ox_projcs_del(pcs);
    }
}

TEST(Mercator, EquatorialSphereIsRadiusTimesLongitude) {
    constexpr double a = 6371000.0;
    ox_object *pcs = make("Mercator", base(0, 0), a, 0.0);
    const std::vector<double> lons = {-179.5, -123.456, -1e-9, 0.0, 33.3, 179.999};
    for (double lon : lons) {
        double p[2] = {lon, 12.0};
        ASSERT_EQ(ox_geog_to_proj(pcs, 1, p), 1);
        EXPECT_EQ(p[0], a * (lon * 0.0174532925199433)) << lon;
    }
    ox_projcs_del(pcs);
}

// Mercator is conformal: the north-south scale equals the east-west scale
// (m1 / cos chi of the conformal latitude for the ellipsoid, in terms of x).
TEST(Mercator, ScaleIsTheSameInBothDirections) {
    ox_object *pcs = make("Mercator", base(0, 0));
    for (double lat : {-75.0, -30.0, 0.0, 10.0, 45.0, 60.0, 84.0}) {
        const double h = 1e-5;
        double p[6] = {0.0, lat - h, 0.0, lat + h, h, lat};
        ASSERT_EQ(ox_geog_to_proj(pcs, 3, p), 3);
        // Meridian and parallel arc lengths of the ellipsoid over 2h degrees and h degrees.
        const double e2 = (2.0 - 1.0 / kRf) / kRf, phi = lat * kDeg;
        const double w = std::sqrt(1.0 - e2 * std::sin(phi) * std::sin(phi));
        const double meridian = kA * (1.0 - e2) / (w * w * w) * 2.0 * h * kDeg;
        const double parallel = kA / w * std::cos(phi) * h * kDeg;
        EXPECT_NEAR((p[3] - p[1]) / meridian, p[4] / parallel, 1e-8) << lat;
    }
    ox_projcs_del(pcs);
}

TEST(EquidistantCylindrical, EquatorialParallelIsPlateCarree) {
    for (double rf : {kRf, 0.0}) {
        ox_object *eqc = make("Equidistant_Cylindrical", base(-20, 0), kA, rf);
        ox_object *pc = make("Plate_Carree", base(-20), kA, rf);
        std::vector<double> a = {-20.0, 0.0, 100.0, 45.0, -179.0, -89.0, 160.0, 90.0}, b = a;
        EXPECT_EQ(ox_geog_to_proj(eqc, 4, a.data()), 4);
        EXPECT_EQ(ox_geog_to_proj(pc, 4, b.data()), 4);
        EXPECT_EQ(a, b);
        EXPECT_EQ(ox_proj_to_geog(eqc, 4, a.data()), 4);
        EXPECT_EQ(ox_proj_to_geog(pc, 4, b.data()), 4);
        EXPECT_EQ(a, b);
        ox_projcs_del(eqc);
        ox_projcs_del(pc);
    }
}

TEST(Miller, InverseReproducesLatitudeToRounding) {
    ox_object *pcs = make("Miller_Cylindrical", base(0));
    std::vector<double> p;
    for (double lat = -89.999; lat < 90.0; lat += 0.7) p.insert(p.end(), {1.0, lat});
    const std::vector<double> in = p;
    const int32_t n = static_cast<int32_t>(p.size() / 2);
    ASSERT_EQ(ox_geog_to_proj(pcs, n, p.data()), n);
    ASSERT_EQ(ox_proj_to_geog(pcs, n, p.data()), n);
    for (int32_t i = 0; i < n; ++i) EXPECT_NEAR(p[2 * i + 1], in[2 * i + 1], 1e-12) << in[2 * i + 1];
    ox_projcs_del(pcs);
}

TEST(CylindricalEqualArea, PolarStandardParallelConvertsNothing) {
    for (double rf : {kRf, 0.0})
        for (double sp : {90.0, -90.0}) {
            ox_object *pcs = make("Cylindrical_Equal_Area", base(0, sp), kA, rf);
            double p[4] = {1.0, 2.0, 3.0, 4.0};
            EXPECT_EQ(ox_geog_to_proj(pcs, 2, p), 0);
            for (double v : p) EXPECT_TRUE(oxtest::is_failure(v));
            EXPECT_EQ(ox_projcs_isconstloaded(pcs), 0);
            ox_projcs_del(pcs);
        }
}

// Equal area: a cell of dlon x dlat degrees has the same area on the map as
// on the ellipsoid (the authalic sphere area integral of Snyder 3-12).
TEST(CylindricalEqualArea, AreasArePreserved) {
    for (const char *name : {"Cylindrical_Equal_Area", "Behrmann"}) {
        ox_object *pcs = make(name, base(0, 45));
        const double e2 = (2.0 - 1.0 / kRf) / kRf, e = std::sqrt(e2);
        auto q = [&](double phi) {
            const double s = std::sin(phi);
            return (1.0 - e2) * (s / (1.0 - e2 * s * s) - std::log((1.0 - e * s) / (1.0 + e * s)) / (2.0 * e));
        };
        for (double lat : {-80.0, -20.0, 0.0, 35.0, 70.0}) {
            double p[4] = {0.0, lat, 2.0, lat + 1.0};
            ASSERT_EQ(ox_geog_to_proj(pcs, 2, p), 2);
            const double map_area = (p[2] - p[0]) * (p[3] - p[1]);
            const double area = kA * kA / 2.0 * (q((lat + 1.0) * kDeg) - q(lat * kDeg)) * 2.0 * kDeg;
            EXPECT_NEAR(map_area / area, 1.0, 1e-12) << name << " " << lat;
        }
        ox_projcs_del(pcs);
    }
}

TEST(CylindricalEqualArea, RoundTripsOverTheWholeMap) {
    for (double rf : {kRf, 0.0, 150.0}) {
        ox_object *pcs = make("Cylindrical_Equal_Area", base(40, -37.5), kA, rf);
        std::vector<double> p;
        for (double lat = -90.0; lat <= 90.0; lat += 2.5) p.insert(p.end(), {40.0 + lat * 1.9, lat});
        const std::vector<double> in = p;
        const int32_t n = static_cast<int32_t>(p.size() / 2);
        ASSERT_EQ(ox_geog_to_proj(pcs, n, p.data()), n);
        ASSERT_EQ(ox_proj_to_geog(pcs, n, p.data()), n);
        for (int32_t i = 0; i < n; ++i) {
            // At the poles y is flat in phi: a rounding of y moves phi by ~1e-8 rad.
            const double tol = std::fabs(in[2 * i + 1]) == 90.0 ? 1e-5 : 1e-11;
            EXPECT_NEAR(p[2 * i + 1], in[2 * i + 1], tol) << rf << " " << in[2 * i + 1];
            EXPECT_NEAR(oxtest::lon_diff(p[2 * i], in[2 * i]), 0.0, 1e-11);
        }
        ox_projcs_del(pcs);
    }
}

TEST(Behrmann, IsEqualAreaAtThirtyDegreesAndIgnoresOtherParallels) {
    for (double rf : {kRf, 0.0}) {
        ox_object *b = make("Behrmann", base(10), kA, rf);
        ox_object *b45 = make("Behrmann", base(10, 45), kA, rf);
        ox_object *cea = make("Cylindrical_Equal_Area", base(10, 30), kA, rf);
        std::vector<double> x = {10.0, 0.0, -120.0, 30.0, 170.0, -89.0}, y = x, z = x;
        EXPECT_EQ(ox_geog_to_proj(b, 3, x.data()), 3);
        EXPECT_EQ(ox_geog_to_proj(b45, 3, y.data()), 3);
        EXPECT_EQ(ox_geog_to_proj(cea, 3, z.data()), 3);
        EXPECT_EQ(x, y);
        for (size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(x[i], z[i], 1e-8);
        EXPECT_EQ(ox_proj_to_geog(b, 3, x.data()), 3);
        EXPECT_NEAR(x[2], -120.0, 1e-11);
        EXPECT_NEAR(x[3], 30.0, 1e-11);
        ox_projcs_del(b);
        ox_projcs_del(b45);
        ox_projcs_del(cea);
    }
}

// 190 degrees east of the central meridian is 170 degrees west of it.
TEST(Family, LongitudeBeyondTheAntimeridianWraps) {
    for (const Case &c : family(-60.0)) {
        ox_object *pcs = make(c.projection, c.params);
        double p[4] = {-60.0 + 190.0, 25.0, -60.0 - 170.0, 25.0};
        ASSERT_EQ(ox_geog_to_proj(pcs, 2, p), 2) << c.projection;
        EXPECT_NEAR(p[0], p[2], 1e-6) << c.projection;
        EXPECT_NEAR(p[1], p[3], 1e-6) << c.projection;
        const std::string name = c.projection;
        if (name != "Transverse_Mercator" && name != "Gauss_Kruger") {
            ASSERT_EQ(ox_proj_to_geog(pcs, 1, p), 1);
            EXPECT_NEAR(p[0], 130.0, 1e-9) << c.projection;
            EXPECT_NEAR(p[1], 25.0, 1e-9) << c.projection;
        }
        ox_projcs_del(pcs);
    }
    // The transverse Mercator series holds near its central meridian only:
    // there the wrap shows across the antimeridian.
    for (const Case &c : family(179.5)) {
        ox_object *pcs = make(c.projection, c.params);
        double p[4] = {180.5, 25.0, -179.5, 25.0};
        ASSERT_EQ(ox_geog_to_proj(pcs, 2, p), 2) << c.projection;
        EXPECT_NEAR(p[0], p[2], 1e-6) << c.projection;
        EXPECT_NEAR(p[1], p[3], 1e-6) << c.projection;
        ASSERT_EQ(ox_proj_to_geog(pcs, 1, p), 1);
        EXPECT_NEAR(p[0], -179.5, 1e-9) << c.projection;
        EXPECT_NEAR(p[1], 25.0, 1e-9) << c.projection;
        ox_projcs_del(pcs);
    }
}

// NaN and infinite coordinates never crash or hang a routine; these
// routines count every point, and the finite neighbours convert normally.
TEST(Family, NonFiniteCoordinatesAreHarmless) {
    const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
    const std::vector<double> bad = {nan,  10.0, 10.0,  nan,    inf,    10.0, 10.0, inf,
                                     -inf, -inf, 1e308, -1e308, 5e-324, -0.0, 16.0, 44.0};
    const int32_t n = static_cast<int32_t>(bad.size() / 2);
    for (const Case &c : family(15.0)) {
        ox_object *pcs = make(c.projection, c.params);
        std::vector<double> f = bad;
        EXPECT_EQ(ox_geog_to_proj(pcs, n, f.data()), n) << c.projection;
        double good[2] = {16.0, 44.0};
        ox_geog_to_proj(pcs, 1, good);
        EXPECT_EQ(f[2 * n - 2], good[0]) << c.projection;
        EXPECT_EQ(f[2 * n - 1], good[1]) << c.projection;

        std::vector<double> g = bad;
        EXPECT_EQ(ox_proj_to_geog(pcs, n, g.data()), n) << c.projection;
        std::vector<double> h = bad;
        EXPECT_EQ(ox_proj_to_geog_center(pcs, n, h.data(), 180.0), n) << c.projection;
        ox_projcs_del(pcs);
    }
}

}  // namespace
