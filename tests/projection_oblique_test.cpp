// The oblique Mercators, Krovak and the New Zealand Map Grid: their
// geometry (the central line, conformality, the rectified grid), the axis
// parameters of Krovak, domains, round trips and refusals.  The peer's
// vectors are checked in projection_reference_test.cpp and the worked
// examples of the catalogue's systems in catalogue_projection_test.cpp.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "projection/ox_pcsconstants.h"
#include "projection_support.h"

namespace {

using namespace oxtest;

Params hotine(double lonc, double latc, double azimuth, double k = 0.9996, double fe = 0, double fn = 0) {
    return {{"False_Easting", fe},         {"False_Northing", fn}, {"Longitude_Of_Center", lonc},
            {"Latitude_Of_Center", latc}, {"Azimuth", azimuth},  {"Scale_Factor", k}};
}
Params skew(double lonc, double latc, double azimuth, double rotation, double k = 0.99984) {
    Params p = hotine(lonc, latc, azimuth, k);
    p.push_back({"XY_Plane_Rotation", rotation});
    return p;
}
Params two_point(double lon1, double lat1, double lon2, double lat2, double latc, double k = 0.9996) {
    return {{"False_Easting", 0},         {"False_Northing", 0},        {"Longitude_Of_1st_Point", lon1},
            {"Latitude_Of_1st_Point", lat1}, {"Longitude_Of_2nd_Point", lon2}, {"Latitude_Of_2nd_Point", lat2},
            {"Latitude_Of_Center", latc}, {"Scale_Factor", k}};
}
// The Czech and Slovak system, with the axis parameters.
Params krovak(double x_scale = 1, double y_scale = 1, double rotation = 0, double pseudo_parallel = 78.5,
              double k = 0.9999) {
    return {{"False_Easting", 0},
            {"False_Northing", 0},
            {"Longitude_Of_Center", 24.83333333333333},
            {"Latitude_Of_Center", 49.5},
            {"Pseudo_Standard_Parallel_1", pseudo_parallel},
            {"Azimuth", 30.28813975277778},
            {"Scale_Factor", k},
            {"X_Scale", x_scale},
            {"Y_Scale", y_scale},
            {"XY_Plane_Rotation", rotation}};
}
Params new_zealand(double lon0 = 173, double lat0 = -41) {
    return {{"False_Easting", 2510000},
            {"False_Northing", 6023150},
            {"Longitude_Of_Origin", lon0},
            {"Latitude_Of_Origin", lat0}};
}

constexpr const char *kHotineNatural = "Hotine_Oblique_Mercator_Azimuth_Natural_Origin";
constexpr const char *kHotineCenter = "Hotine_Oblique_Mercator_Azimuth_Center";
constexpr const char *kSkewNatural = "Rectified_Skew_Orthomorphic_Natural_Origin";
constexpr const char *kSkewCenter = "Rectified_Skew_Orthomorphic_Center";
constexpr const char *kTwoPointNatural = "Hotine_Oblique_Mercator_Two_Point_Natural_Origin";
constexpr const char *kTwoPointCenter = "Hotine_Oblique_Mercator_Two_Point_Center";

struct System {
    const char *projection;
    Params params;
    double lon0, lat0, radius;  // a region about (lon0, lat0), degrees
};
// Every row of this file with a representative system and the region it is
// used in (the whole globe for the oblique Mercators).
std::vector<System> systems() {
    return {{kHotineNatural, hotine(-86, 45.30916666666667, 337.25556), -86, 45, 180},
            {kHotineCenter, hotine(7.439583333333333, 46.95240555555556, 90, 1), 7, 47, 180},
            {kSkewNatural, skew(102.25, 4, 323.0257964666667, 323.1301023611111), 102, 4, 180},
            {kSkewCenter, skew(115, 4, 53.31582047222222, 53.13010236111111), 115, 4, 180},
            {kTwoPointNatural, two_point(-80, 40, -70, 45, 42), -75, 42, 180},
            {kTwoPointCenter, two_point(5, 45, 20, 52, 48, 0.9999), 12, 48, 180},
            {"Krovak", krovak(), 17, 49.5, 20},
            {"Krovak", krovak(-1, 1, 90), 17, 49.5, 20},
            {"New_Zealand_Map_Grid", new_zealand(), 173, -41, 11.9}};
}

// Points on a grid over a system's region (the poles left out: their
// longitude is arbitrary).
std::vector<double> grid(const System &s, double step) {
    std::vector<double> p;
    const double south = std::max(-89.9, s.lat0 - s.radius), north = std::min(89.9, s.lat0 + s.radius);
    for (double lat = south; lat <= north; lat += step)
        for (double lon = s.lon0 - s.radius + step / 3; lon < s.lon0 + s.radius; lon += step) p.insert(p.end(), {lon, lat});
    return p;
}

// Round trips over each row's region, on the ellipsoid and on a sphere.
TEST(ObliqueFamily, RoundTripsOverTheDomain) {
    for (const System &s : systems())
        for (double rf : {kRf, 0.0}) {
            SCOPED_TRACE(std::string(s.projection) + (rf == 0 ? " sphere" : " ellipsoid"));
            const Owned pcs = make_projcs(s.projection, s.params, kA, rf);
            std::vector<double> p = grid(s, s.radius / 40.0);
            const std::vector<double> in = p;
            const int32_t n = static_cast<int32_t>(p.size() / 2);
            ASSERT_EQ(forward(pcs.get(), p), n);
            ASSERT_EQ(inverse(pcs.get(), p), n);
            double worst = 0;
            for (size_t i = 0; i < p.size(); i += 2) {
                const double along = std::fabs(lon_diff(p[i], in[i])) * std::cos(in[i + 1] * kDeg);
                worst = std::max(worst, std::max(along, std::fabs(p[i + 1] - in[i + 1])));
            }
            EXPECT_LT(worst, 1e-11);
        }
}

// The scale of a map at a point along the meridian and along the parallel
// (map distance over ellipsoidal arc for a step h in degrees), and the angle
// between the images of the meridian and the parallel.
struct LocalScale {
    double meridian, parallel, angle;
};
LocalScale local_scale(ox_object *pcs, double lon, double lat, double a, double rf) {
    const double h = 1e-5;
    std::vector<double> p = {lon, lat - h, lon, lat + h, lon - h, lat, lon + h, lat};
    EXPECT_EQ(forward(pcs, p), 4);
    const double e2 = rf == 0 ? 0 : (2.0 - 1.0 / rf) / rf, phi = lat * kDeg;
    const double w = std::sqrt(1.0 - e2 * std::sin(phi) * std::sin(phi));
    const double meridian_arc = a * (1.0 - e2) / (w * w * w) * 2.0 * h * kDeg;
    const double parallel_arc = a / w * std::cos(phi) * 2.0 * h * kDeg;
    const double mx = p[2] - p[0], my = p[3] - p[1], px = p[6] - p[4], py = p[7] - p[5];
    return {std::hypot(mx, my) / meridian_arc, std::hypot(px, py) / parallel_arc,
            std::atan2(mx * py - my * px, mx * px + my * py)};
}

// Hotine and Krovak are conformal: equal scales along the meridian and the
// parallel, whose images cross at a right angle.  (The New Zealand grid's
// polynomial is conformal on its own ellipsoid, International 1924, to the
// truncation of its series.)
TEST(ObliqueFamily, ConformalEverywhere) {
    for (const System &s : systems())
        for (double rf : {kRf, 0.0}) {
            const bool nz = std::string(s.projection) == "New_Zealand_Map_Grid";
            if (nz && rf == 0.0) continue;
            const double a = nz ? 6378388.0 : kA;
            if (nz) rf = 297.0;
            const Owned pcs = make_projcs(s.projection, s.params, a, rf);
            const double reach = std::min(s.radius, 60.0) * 0.9;
            for (double dlat : {-1.0, -0.3, 0.0, 0.5, 1.0})
                for (double dlon : {-1.0, 0.0, 0.7}) {
                    const double lon = s.lon0 + dlon * reach, lat = s.lat0 + dlat * reach;
                    if (std::fabs(lat) > 85) continue;
                    const LocalScale k = local_scale(pcs.get(), lon, lat, a, rf);
                    SCOPED_TRACE(std::string(s.projection) + " at " + number(lon) + " " + number(lat));
                    EXPECT_NEAR(k.meridian / k.parallel, 1.0, nz ? 1e-6 : 1e-8);
                    EXPECT_NEAR(std::fabs(k.angle), M_PI / 2, nz ? 1e-6 : 1e-8);
                }
        }
}

// On the central line the scale is k_c at the centre; the centre rows put
// the centre at the false origin, and the Hotine rows turn the grid so that
// the central line leaves the centre at its azimuth.
TEST(ObliqueMercator, CentreScaleAndGridBearingOfTheCentralLine) {
    for (double rf : {kRf, 0.0})
        for (double azimuth : {337.25556, 20.0, 90.0, -63.665963}) {
            const double lonc = -110, latc = 35, k = 0.9999;
            SCOPED_TRACE(number(azimuth) + " rf " + number(rf));
            const Owned centre = make_projcs(kHotineCenter, hotine(lonc, latc, azimuth, k, 1000, 2000), kA, rf);
            const Owned natural = make_projcs(kHotineNatural, hotine(lonc, latc, azimuth, k), kA, rf);
            std::vector<double> c = {lonc, latc};
            ASSERT_EQ(forward(centre.get(), c), 1);
            EXPECT_NEAR(c[0], 1000, 1e-7);
            EXPECT_NEAR(c[1], 2000, 1e-7);
            const LocalScale scale = local_scale(centre.get(), lonc, latc, kA, rf);
            EXPECT_NEAR(scale.meridian, k, 1e-8);
            // 1 m from the centre along the azimuth (by the centre's meridian
            // and prime-vertical radii: the chord's bearing is the azimuth to
            // 1e-7).
            const double e2 = rf == 0 ? 0 : (2.0 - 1.0 / rf) / rf, phi = latc * kDeg;
            const double w = std::sqrt(1.0 - e2 * std::sin(phi) * std::sin(phi));
            const double a = azimuth * kDeg, d = 1.0;
            const double dlat = d * std::cos(a) / (kA * (1.0 - e2) / (w * w * w)) / kDeg;
            const double dlon = d * std::sin(a) / (kA / w * std::cos(phi)) / kDeg;
            for (const Owned *pcs : {&centre, &natural}) {
                std::vector<double> p = {lonc, latc, lonc + dlon, latc + dlat};
                ASSERT_EQ(forward(pcs->get(), p), 2);
                const double bearing = std::atan2(p[2] - p[0], p[3] - p[1]);
                EXPECT_NEAR(std::remainder(bearing - a, 2 * M_PI), 0.0, 2e-7);
            }
        }
}

// The two-point rows put both points on the central line: with the natural
// origin (and the centre) on it too, the two points' images are collinear
// with the false origin.
TEST(ObliqueMercator, TwoPointsLieOnTheCentralLine) {
    const double lines[][5] = {{-80, 40, -70, 45, 42},   {20, 10, 40, 30, 20},       {5, 45, 20, 52, 48},
                               {23.6, -43.3, 33.9, -54.0, -48.6}, {170, -10, -170, 5, -2}, {10, 30, 10, 50, 40},
                               {-20, 35, 20, 35, 36}};
    for (const auto &l : lines)
        for (double rf : {kRf, 0.0})
            for (const char *name : {kTwoPointNatural, kTwoPointCenter}) {
                SCOPED_TRACE(std::string(name) + " " + number(l[0]) + " " + number(l[1]) + " rf " + number(rf));
                const Owned pcs = make_projcs(name, two_point(l[0], l[1], l[2], l[3], l[4]), kA, rf);
                std::vector<double> p = {l[0], l[1], l[2], l[3]};
                ASSERT_EQ(forward(pcs.get(), p), 2);
                const double cross = p[0] * p[3] - p[1] * p[2];
                EXPECT_NEAR(cross / (std::hypot(p[0], p[1]) * std::hypot(p[2], p[3]) + 1.0), 0.0, 1e-12);
                EXPECT_GT(std::hypot(p[0] - p[2], p[1] - p[3]), 1e5);  // two distinct points
            }
}

// The Rectified Skew Orthomorphic rows with the azimuth as their rotation
// are the Hotine rows, bit for bit; the centre rows differ from the natural
// origin rows by the fixed offset of the centre along the central line.
TEST(ObliqueMercator, RowsOfTheAzimuthGroupAgree) {
    const std::vector<double> points = {115.8, 5.4, 112.0, 1.0, 119.5, 7.2, 109.6, -3.3};
    for (double rf : {kRf, 0.0}) {
        auto run = [&](const char *name, const Params &params) {
            const Owned pcs = make_projcs(name, params, kA, rf);
            std::vector<double> p = points;
            EXPECT_EQ(forward(pcs.get(), p), 4);
            return p;
        };
        const double az = 53.31582047222222;
        const auto hn = run(kHotineNatural, hotine(115, 4, az, 0.99984));
        const auto hc = run(kHotineCenter, hotine(115, 4, az, 0.99984));
        EXPECT_EQ(hn, run(kSkewNatural, skew(115, 4, az, az)));
        EXPECT_EQ(hc, run(kSkewCenter, skew(115, 4, az, az)));
        for (size_t i = 2; i < points.size(); i += 2) {
            EXPECT_NEAR(hn[i] - hc[i], hn[0] - hc[0], 1e-8);
            EXPECT_NEAR(hn[i + 1] - hc[i + 1], hn[1] - hc[1], 1e-8);
        }
        // The offset lies along the central line, at the azimuth on the grid.
        EXPECT_NEAR(std::atan2(hn[0] - hc[0], hn[1] - hc[1]), az * kDeg, 1e-12);
    }
}

// A constants block, which the rows of a group share, gives the same bits
// as constants computed for the call.
TEST(ObliqueFamily, KeptConstantsGiveTheSameBits) {
    for (const System &s : systems())
        for (double rf : {kRf, 0.0}) {
            SCOPED_TRACE(s.projection);
            const Owned pcs = make_projcs(s.projection, s.params, kA, rf);
            std::vector<double> kept = {s.lon0 + 1, s.lat0 - 1, s.lon0 - 2, s.lat0 + 0.5};
            std::vector<double> fresh = kept;
            const bool has_routine = std::string(s.projection) != "New_Zealand_Map_Grid";
            EXPECT_EQ(ox_projcs_load_constants(pcs.get()) > 0, has_routine);
            forward(pcs.get(), kept);
            ox_projcs_unload_constants(pcs.get());
            const Owned plain = with_routines(pcs.get(), nullptr, nullptr);
            forward(plain.get(), fresh);
            EXPECT_EQ(kept, fresh);
        }
}

// Krovak's axis parameters: X_Scale = -1, Y_Scale = 1 and a rotation of 90
// degrees turn the southing and westing into easting and northing exactly;
// other scales and rotations are a plain linear map of the plane.
TEST(Krovak, AxisParametersTurnAndScaleThePlane) {
    const std::vector<double> points = {14.42, 50.08, 12.7, 48.6, 18.8, 49.9, 21.0, 48.7};
    auto run = [&](const Params &params, bool inverse_too) {
        const Owned pcs = make_projcs("Krovak", params, 6377397.155, 299.1528128);
        std::vector<double> p = points;
        EXPECT_EQ(forward(pcs.get(), p), 4);
        if (inverse_too) {
            std::vector<double> q = p;
            EXPECT_EQ(inverse(pcs.get(), q), 4);
            for (size_t i = 0; i < q.size(); ++i) EXPECT_NEAR(q[i], points[i], 1e-11);
        }
        return p;
    };
    const auto south_west = run(krovak(), true);
    const auto east_north = run(krovak(-1, 1, 90), true);
    const auto turned = run(krovak(2, 0.5, 30), true);
    const double c = std::cos(30 * kDeg), s = std::sin(30 * kDeg);
    for (size_t i = 0; i < points.size(); i += 2) {
        EXPECT_EQ(east_north[i], -south_west[i + 1]);
        EXPECT_EQ(east_north[i + 1], -south_west[i]);
        EXPECT_NEAR(turned[i], 2 * (south_west[i] * c + south_west[i + 1] * s), 1e-6);
        EXPECT_NEAR(turned[i + 1], 0.5 * (-south_west[i] * s + south_west[i + 1] * c), 1e-6);
    }
    // Prague's southing and westing are both positive, about 1 043 and 743 km.
    EXPECT_NEAR(south_west[0], 1043898.66, 0.01);
    EXPECT_NEAR(south_west[1], 743101.01, 0.01);
}

// Points outside a projection's domain get the failure value, forward or
// inverse, and are left out of the count.
TEST(ObliqueFamily, PointsOutsideTheDomainFail) {
    auto fails = [](const char *name, const Params &params, std::vector<double> p, bool inverse_direction) {
        const Owned pcs = make_projcs(name, params);
        const int32_t n = inverse_direction ? inverse(pcs.get(), p) : forward(pcs.get(), p);
        EXPECT_EQ(n, 0) << name;
        for (double v : p) EXPECT_TRUE(is_failure(v)) << name;
    };
    // Beyond half the aposphere's circumference along the central line.
    fails(kHotineNatural, hotine(0, 0, 0, 1), {0, 2.1e7, 0, -2.1e7}, true);
    fails(kTwoPointCenter, two_point(5, 45, 20, 52, 48), {-2e8, 0}, true);
    // Krovak: beyond the cone's opening (theta = n pi on either side of the
    // southing axis).
    fails("Krovak", krovak(), {-1e6, 1e3, -1e6, -1e3}, true);
    // The New Zealand grid beyond 12 degrees of its origin.
    fails("New_Zealand_Map_Grid", new_zealand(), {173, -53.5, 185.5, -41, 150, 0}, false);
    fails("New_Zealand_Map_Grid", new_zealand(), {2510000 + 2e6, 6023150, 2510000, 6023150 - 3e6}, true);
}

// The poles are inside every domain but New Zealand's: finite forward,
// and back to the pole.
TEST(ObliqueFamily, PolesProjectAndComeBack) {
    for (const System &s : systems()) {
        if (std::string(s.projection) == "New_Zealand_Map_Grid") continue;
        for (double rf : {kRf, 0.0}) {
            const Owned pcs = make_projcs(s.projection, s.params, kA, rf);
            std::vector<double> p = {10.0, 90.0, -30.0, -90.0};
            ASSERT_EQ(forward(pcs.get(), p), 2) << s.projection;
            for (double v : p) EXPECT_TRUE(std::isfinite(v)) << s.projection;
            ASSERT_EQ(inverse(pcs.get(), p), 2) << s.projection;
            EXPECT_NEAR(p[1], 90.0, 1e-9) << s.projection;
            EXPECT_NEAR(p[3], -90.0, 1e-9) << s.projection;
        }
    }
}

// NaN and infinite coordinates, huge longitudes and latitudes beyond the
// poles never crash a routine; the finite neighbours convert normally, and
// latitudes beyond the poles are taken as the poles.
TEST(ObliqueFamily, BadCoordinatesAreHarmless) {
    const std::vector<double> bad = {kNaN, 10.0, 10.0,  kNaN,   kInf,   10.0, 10.0, kInf,
                                     -kInf, -kInf, 1e300, 45.0, 1e308, -1e308, 5e-324, -0.0};
    for (const System &s : systems()) {
        const Owned pcs = make_projcs(s.projection, s.params);
        std::vector<double> f = bad, g = bad, good = {s.lon0 + 0.5, s.lat0 + 0.5};
        f.insert(f.end(), good.begin(), good.end());
        g.insert(g.end(), {1e300, -1e300, kNaN, 0.0});
        const int32_t n = forward(pcs.get(), f);
        EXPECT_GE(n, 1) << s.projection;
        forward(pcs.get(), good);
        EXPECT_EQ(f[f.size() - 2], good[0]) << s.projection;
        EXPECT_EQ(f[f.size() - 1], good[1]) << s.projection;
        for (size_t i = 0; i + 2 < f.size(); ++i) EXPECT_TRUE(is_failure(f[i]) || std::isfinite(f[i])) << s.projection;
        inverse(pcs.get(), g);
        for (size_t i = 0; i < g.size(); ++i) EXPECT_TRUE(is_failure(g[i]) || std::isfinite(g[i])) << s.projection;
        std::vector<double> beyond = {s.lon0, 95.0, s.lon0, -1000.0}, poles = {s.lon0, 90.0, s.lon0, -90.0};
        forward(pcs.get(), beyond);
        forward(pcs.get(), poles);
        for (size_t i = 0; i < beyond.size(); ++i)
            EXPECT_TRUE(beyond[i] == poles[i] || (is_failure(beyond[i]) && is_failure(poles[i]))) << s.projection;
    }
}

// Parameters that describe no map: every point fails, the count is 0, and
// the system keeps no constants.
TEST(ObliqueFamily, ImpossibleParametersAreRefused) {
    struct Refusal {
        const char *projection;
        Params params;
        double rf = kRf;
    };
    const Refusal refusals[] = {
        {kHotineNatural, hotine(0, 0, 90)},               // the central line would be the equator
        {kHotineCenter, hotine(10, 0, -90), 0.0},
        {kHotineCenter, hotine(10, 45, 135)},             // pointing south of east: write -45
        {kSkewNatural, skew(10, 90, 30, 30)},             // the centre at a pole
        {kSkewCenter, skew(10, 45, 30, 30, 0)},           // a zero scale
        {kHotineNatural, hotine(10, 45, 30, -1)},
        {kTwoPointNatural, two_point(10, 40, 10, 40, 40)},  // one point
        {kTwoPointCenter, two_point(10, 90, 20, 40, 40)},   // a point at a pole
        {kTwoPointCenter, two_point(0, 1, 10, 2, 60)},      // the line never reaches 60 degrees
        {kTwoPointNatural, two_point(0, 30, 10, 40, 35, 0)},
        {"Krovak", krovak(1, 1, 0, 0)},                   // the pseudo standard parallel on the equator
        {"Krovak", krovak(1, 1, 0, 90)},                  // at the pole
        {"Krovak", krovak(1, 1, 0, -30)},
        {"Krovak", krovak(0, 1, 0)},                      // an axis scale of 0
        {"Krovak", krovak(1, 0, 0), 0.0},
        {"Krovak", krovak(1, 1, 0, 78.5, 0)},             // a zero scale
        {"New_Zealand_Map_Grid", new_zealand(173, -91)},
    };
    for (const Refusal &r : refusals) {
        SCOPED_TRACE(projcs_text(r.projection, kA, r.rf, r.params));
        const Owned pcs = make_projcs(r.projection, r.params, kA, r.rf);
        ASSERT_TRUE(pcs);
        std::vector<double> p = {10.0, 20.0, -5.0, 40.0}, q = {1e5, 2e5, 0.0, 0.0};
        EXPECT_EQ(forward(pcs.get(), p), 0);
        EXPECT_EQ(inverse(pcs.get(), q), 0);
        for (size_t i = 0; i < p.size(); ++i) EXPECT_TRUE(is_failure(p[i]) && is_failure(q[i]));
        EXPECT_EQ(ox_projcs_load_constants(pcs.get()), 0);
        // and no region
        ox::ProjSetup setup;
        ox::projcs_setup(pcs.get(), &setup);
        EXPECT_EQ(ox_projection_horizon(ox_projcs_projection(pcs.get()))(setup.spheroid, setup.parameters, 0, nullptr), 0);
    }
}

// The New Zealand grid's inverse is its forward's inverse to rounding over
// its domain (the published latitude series alone is good to about 1e-9
// degrees), and its origin is the false origin.
TEST(NewZealandMapGrid, OriginAndInverseOfTheForward) {
    const Owned pcs = make_projcs("New_Zealand_Map_Grid", new_zealand(), 6378388, 297);
    std::vector<double> p = {173, -41};
    ASSERT_EQ(forward(pcs.get(), p), 1);
    EXPECT_EQ(p[0], 2510000.0);
    EXPECT_EQ(p[1], 6023150.0);
    std::vector<double> corners = {162, -52.9, 184.9, -29.1, 161.1, -29.5, 184.5, -52.5};
    const std::vector<double> in = corners;
    ASSERT_EQ(forward(pcs.get(), corners), 4);
    ASSERT_EQ(inverse(pcs.get(), corners), 4);
    for (size_t i = 0; i < in.size(); i += 2) {
        EXPECT_NEAR(lon_diff(corners[i], in[i]), 0.0, 1e-12);
        EXPECT_NEAR(corners[i + 1], in[i + 1], 1e-12);
    }
}

// IOGP Guidance Note 7-2's example of the New Zealand Map Grid: easting
// 2487100.638 m, northing 6751049.719 m is latitude -34.444066, longitude
// 172.739194 degrees, printed to 1e-6 degrees.  (The forward of the printed
// angles can only agree to their rounding, about 0.1 m.)
TEST(NewZealandMapGrid, GuidanceNoteExample) {
    const Owned pcs = make_projcs("New_Zealand_Map_Grid", new_zealand(), 6378388, 297);
    std::vector<double> p = {2487100.638, 6751049.719};
    ASSERT_EQ(inverse(pcs.get(), p), 1);
    EXPECT_NEAR(p[0], 172.739194, 5e-7);
    EXPECT_NEAR(p[1], -34.444066, 5e-7);
    p = {172.739194, -34.444066};
    ASSERT_EQ(forward(pcs.get(), p), 1);
    EXPECT_NEAR(p[0], 2487100.638, 0.1);
    EXPECT_NEAR(p[1], 6751049.719, 0.1);
}

}  // namespace
