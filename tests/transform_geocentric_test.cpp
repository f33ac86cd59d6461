// The geocentric methods: the reference vectors of every method, the
// Guidance Note's worked examples, the conventions that tie the methods
// together, and the inline geodetic <-> geocentric conversions against the
// exported ones.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>

#include "projection/ox_projmath.h"
#include "test_util.h"
#include "transform/ox_geocentric.h"
#include "transform_support.h"

using oxtest::geogcs_text;
using oxtest::make_geogtran;
using oxtest::Owned;

namespace {

constexpr double kArcSecond = 4.84813681109536e-6;

struct Row {
    std::string method;
    double a1, rf1, a2, rf2;
    double p[10];  // tx ty tz rx ry rz ds px py pz
    double lon, lat, h, lon2, lat2, h2;
};

std::vector<Row> helmert_rows() {
    std::vector<Row> rows;
    for (const auto &f : oxtest::read_csv("helmert_reference.csv")) {
        Row r;
        r.method = f[1];
        r.a1 = std::stod(f[2]), r.rf1 = std::stod(f[3]), r.a2 = std::stod(f[4]), r.rf2 = std::stod(f[5]);
        for (int i = 0; i < 10; ++i) r.p[i] = std::stod(f[6 + i]);
        r.lon = std::stod(f[16]), r.lat = std::stod(f[17]), r.h = std::stod(f[18]);
        r.lon2 = std::stod(f[19]), r.lat2 = std::stod(f[20]), r.h2 = std::stod(f[21]);
        rows.push_back(r);
    }
    return rows;
}

const char *const kParameterNames[10] = {
    "X_Axis_Translation", "Y_Axis_Translation", "Z_Axis_Translation", "X_Axis_Rotation",
    "Y_Axis_Rotation",    "Z_Axis_Rotation",    "Scale_Difference",   "X_Coordinate_of_Rotation_Origin",
    "Y_Coordinate_of_Rotation_Origin", "Z_Coordinate_of_Rotation_Origin"};

ox_object *transformation(const std::string &method, double a1, double rf1, double a2, double rf2, const double p[10]) {
    std::vector<std::pair<std::string, double>> parameters;
    const int count = method == "Molodensky_Badekas" ? 10 : method == "Geocentric_Translation" ||
                                                                    method.rfind("Molodensky", 0) == 0
                                                                ? 3
                                                                : 7;
    for (int i = 0; i < count; ++i) parameters.emplace_back(kParameterNames[i], p[i]);
    return make_geogtran(geogcs_text("A", a1, rf1), geogcs_text("B", a2, rf2), method, parameters);
}

double e2_of(double rf) { return rf == 0.0 ? 0.0 : (2.0 - 1.0 / rf) / rf; }

}  // namespace

// Every row of the reference vectors (720 points, the seven geocentric
// methods on several ellipsoid pairs), with heights: within 1e-9 degree and
// 1 mm.
TEST(GeocentricMethods, ReferenceVectors) {
    struct Worst {
        double angle = 0, height = 0;
        int points = 0;
    };
    std::map<std::string, Worst> worst;
    for (const Row &r : helmert_rows()) {
        const Owned gt(transformation(r.method, r.a1, r.rf1, r.a2, r.rf2, r.p));
        ASSERT_TRUE(gt) << r.method;
        double xy[2] = {r.lon, r.lat}, h = r.h;
        ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, xy, &h), 1);
        Worst &w = worst[r.method];
        w.angle = std::max({w.angle, std::fabs(oxtest::lon_diff(xy[0], r.lon2)), std::fabs(xy[1] - r.lat2)});
        w.height = std::max(w.height, std::fabs(h - r.h2));
        ++w.points;
    }
    EXPECT_EQ(worst.size(), 6u);  // every method but the twin Bursa_Wolf
    for (const auto &[method, w] : worst) {
        std::printf("  %-24s %4d points, worst %.2g degree, %.2g m in height\n", method.c_str(), w.points, w.angle,
                    w.height);
        EXPECT_LE(w.angle, 1e-9) << method;
        EXPECT_LE(w.height, 1e-3) << method;
    }
}

// The Guidance Note's examples to the printed precision.
TEST(GeocentricMethods, GuidanceNoteExamples) {
    for (const auto &f : oxtest::read_csv("guidance_note_transformations.csv")) {
        SCOPED_TRACE(f[0]);
        double p[10];
        for (int i = 0; i < 10; ++i) p[i] = std::stod(f[5 + i]);
        const double a1 = std::stod(f[1]), rf1 = std::stod(f[2]), a2 = std::stod(f[3]), rf2 = std::stod(f[4]);
        const Owned gt(transformation(f[0], a1, rf1, a2, rf2, p));
        ASSERT_TRUE(gt);
        double lat, lon, h;
        ox_cart_to_curv(a1, e2_of(rf1), std::stod(f[15]), std::stod(f[16]), std::stod(f[17]), &lat, &lon, &h);
        double xy[2] = {lon / oxtest::kDeg, lat / oxtest::kDeg};
        ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, xy, &h), 1);
        double x, y, z;
        ox_curv_to_cart(a2, e2_of(rf2), xy[1] * oxtest::kDeg, xy[0] * oxtest::kDeg, h, &x, &y, &z);
        const double unit = std::pow(10.0, -std::stoi(f[21])) + 1e-6;  // one unit of the last printed digit
        EXPECT_NEAR(x, std::stod(f[18]), unit);
        EXPECT_NEAR(y, std::stod(f[19]), unit);
        EXPECT_NEAR(z, std::stod(f[20]), unit);
    }
}

// The Guidance Note's Molodensky examples (WGS 84 to ED50, dX 84.87, dY
// 96.49, dZ 116.95 m) in the sexagesimal seconds it prints (0.001") and the
// height in its printed centimetres or millimetres.
TEST(GeocentricMethods, GuidanceNoteMolodenskyExamples) {
    const double t[10] = {84.87, 96.49, 116.95};
    const auto dms = [](double d, double m, double s) { return d + m / 60 + s / 3600; };
    struct Example {
        const char *method;
        double lat_seconds, lon_seconds, h, h_unit;
    };
    for (const Example &e : {Example{"Molodensky", 36.565, 51.477, 28.02, 0.01},
                             Example{"Molodensky_Abridged", 36.563, 51.477, 28.091, 0.001}}) {
        SCOPED_TRACE(e.method);
        const Owned gt(transformation(e.method, 6378137, 298.257223563, 6378388, 297, t));
        double p[2] = {dms(2, 7, 46.380), dms(53, 48, 33.820)}, h = 73.0;
        ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, &h), 1);
        EXPECT_NEAR((p[1] - dms(53, 48, 0)) * 3600, e.lat_seconds, 0.0005);
        EXPECT_NEAR((p[0] - dms(2, 7, 0)) * 3600, e.lon_seconds, 0.0005);
        EXPECT_NEAR(h, e.h, e.h_unit / 2);
    }
}

// Conventions: coordinate frame is Bursa-Wolf; position vector is
// coordinate frame with the angles negated; the seven-parameter inverses
// use the exact matrix; with nothing to do a translation changes nothing.
TEST(GeocentricMethods, ConventionsAndInverses) {
    const double seven[10] = {-89.5, -93.8, -123.1, 1.2, -2.3, 3.4, 4.5, 0, 0, 0};
    double negated[10];
    std::copy(seven, seven + 10, negated);
    for (int i = 3; i < 6; ++i) negated[i] = -seven[i];
    const Owned cf(transformation("Coordinate_Frame", 6378388, 297, 6378137, 298.257223563, seven));
    const Owned bw(transformation("Bursa_Wolf", 6378388, 297, 6378137, 298.257223563, seven));
    const Owned pv(transformation("Position_Vector", 6378388, 297, 6378137, 298.257223563, negated));
    std::mt19937_64 rng(9);
    std::uniform_real_distribution<double> lon(-180, 180), lat(-89.9, 89.9), height(-500, 9000);
    for (int i = 0; i < 200; ++i) {
        const double p0[2] = {lon(rng), lat(rng)}, h0 = height(rng);
        double a[2] = {p0[0], p0[1]}, b[2] = {p0[0], p0[1]}, c[2] = {p0[0], p0[1]}, ha = h0, hb = h0, hc = h0;
        ox_geog1_to_geog2(cf.get(), 1, a, &ha);
        ox_geog1_to_geog2(bw.get(), 1, b, &hb);
        ox_geog1_to_geog2(pv.get(), 1, c, &hc);
        EXPECT_TRUE(oxtest::same_bits(a[0], b[0]) && oxtest::same_bits(a[1], b[1]) && oxtest::same_bits(ha, hb));
        EXPECT_TRUE(oxtest::same_bits(a[0], c[0]) && oxtest::same_bits(a[1], c[1]) && oxtest::same_bits(ha, hc));
        ASSERT_EQ(ox_geog2_to_geog1(cf.get(), 1, a, &ha), 1);
        EXPECT_NEAR(oxtest::lon_diff(a[0], p0[0]), 0.0, 1e-12);
        EXPECT_NEAR(a[1], p0[1], 1e-12);
        EXPECT_NEAR(ha, h0, 1e-6);
    }
    // Rotations of several degrees: the round trip closes to the precision
    // of the geocentric conversions, not to a small-angle error.
    const double large[10] = {500, -300, 200, 7200, -10800, 18000, 25, 0, 0, 0};
    const Owned big(transformation("Coordinate_Frame", 6377397.155, 299.1528128, 6378137, 298.257223563, large));
    double pts[4] = {5.0, 52.0, -120.0, -33.0}, hs[2] = {100.0, -20.0};
    ASSERT_EQ(ox_geog1_to_geog2(big.get(), 2, pts, hs), 2);
    EXPECT_GT(std::fabs(pts[0] - 5.0), 1.0);  // it really turned
    ASSERT_EQ(ox_geog2_to_geog1(big.get(), 2, pts, hs), 2);
    EXPECT_NEAR(pts[0], 5.0, 1e-11);
    EXPECT_NEAR(pts[1], 52.0, 1e-11);
    EXPECT_NEAR(pts[3], -33.0, 1e-11);
    EXPECT_NEAR(hs[1], -20.0, 1e-5);
    // All zero on one ellipsoid: the round trip through geocentric
    // coordinates only.
    const double zero[10] = {};
    const Owned id(transformation("Geocentric_Translation", 6378137, 298.257223563, 6378137, 298.257223563, zero));
    for (double la : {-90.0, -45.0, 0.0, 30.0, 89.999, 90.0}) {
        double q[2] = {12.5, la}, h = 123.0;
        ox_geog1_to_geog2(id.get(), 1, q, &h);
        EXPECT_NEAR(q[1], la, 1e-13);
        EXPECT_NEAR(h, 123.0, 1e-8);
        if (std::fabs(la) < 90) {
            EXPECT_NEAR(q[0], 12.5, 1e-13);
        }
    }
}

// Molodensky: the inverse is the forward with the ellipsoids exchanged and
// the translations negated; the poles keep their longitude; latitudes
// beyond a pole are stored as the pole.
TEST(GeocentricMethods, MolodenskyInverseAndPoles) {
    const double t[10] = {-87, -98, -121};
    double minus[10] = {87, 98, 121};
    for (const char *method : {"Molodensky", "Molodensky_Abridged"}) {
        SCOPED_TRACE(method);
        const Owned gt(transformation(method, 6378388, 297, 6378137, 298.257223563, t));
        const Owned back(transformation(method, 6378137, 298.257223563, 6378388, 297, minus));
        double a[4] = {3.0, 47.0, -70.0, -12.0}, b[4] = {3.0, 47.0, -70.0, -12.0}, ha[2] = {50, 0}, hb[2] = {50, 0};
        ASSERT_EQ(ox_geog2_to_geog1(gt.get(), 2, a, ha), 2);
        ASSERT_EQ(ox_geog1_to_geog2(back.get(), 2, b, hb), 2);
        for (int i = 0; i < 4; ++i) EXPECT_TRUE(oxtest::same_bits(a[i], b[i])) << i;
        EXPECT_TRUE(oxtest::same_bits(ha[0], hb[0]));
        // The pole keeps its longitude; the latitude cannot pass it.
        double pole[2] = {33.0, 90.0};
        ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, pole, nullptr), 1);
        EXPECT_EQ(pole[0], 33.0);
        EXPECT_LE(pole[1], 90.0);
        const double push[10] = {1e5, 0, 0};
        const Owned north(transformation(method, 6378137, 298.257223563, 6378137, 298.257223563, push));
        double near_pole[2] = {180.0, 89.99};
        ox_geog1_to_geog2(north.get(), 1, near_pole, nullptr);
        EXPECT_DOUBLE_EQ(near_pole[1], 90.0);  // the pole, in the unit's rounding
    }
}

// The inline conversions of the point formulas against the exported
// ox_curv_to_cart / ox_cart_to_curv, with the fast kernels and the C
// library's, from the axis to far above the surface.
TEST(GeocentricMethods, InlineConversionsMatchTheExportedOnes) {
    for (double rf : {298.257223563, 297.0, 0.0}) {
        const double a = 6378137.0, e2 = e2_of(rf);
        ox::GeocentricEllipsoid g;
        ASSERT_TRUE(ox::geocentric_ellipsoid(a, e2, g));
        std::mt19937_64 rng(3);
        std::uniform_real_distribution<double> lon(-ox::kPi, ox::kPi), lat(-ox::kHalfPi, ox::kHalfPi),
            height(-1e4, 1e7);
        for (int i = 0; i < 2000; ++i) {
            const double la = i < 4 ? (i % 2 ? 1 : -1) * ox::kHalfPi : lat(rng), lo = lon(rng), h = height(rng);
            double x, y, z, x1, y1, z1, x2, y2, z2;
            ox_curv_to_cart(a, e2, la, lo, h, &x, &y, &z);
            ox::geodetic_to_geocentric<ox::ExactMath>(g, la, lo, h, x1, y1, z1);
            EXPECT_TRUE(oxtest::same_bits(x, x1) && oxtest::same_bits(y, y1) && oxtest::same_bits(z, z1));
            ox::geodetic_to_geocentric<ox::FastMath>(g, la, lo, h, x2, y2, z2);
            EXPECT_NEAR(x2, x, 1e-8);
            EXPECT_NEAR(z2, z, 1e-8);
            double phi, lam, hh, phi1, lam1, hh1;
            ox_cart_to_curv(a, e2, x, y, z, &phi, &lam, &hh);
            for (int fast = 0; fast < 2; ++fast) {
                const bool in_range = fast ? ox::geocentric_to_geodetic<ox::FastMath>(g, x, y, z, phi1, lam1, hh1)
                                           : ox::geocentric_to_geodetic<ox::ExactMath>(g, x, y, z, phi1, lam1, hh1);
                if (!in_range) continue;
                EXPECT_NEAR(phi1, phi, 2e-15);
                EXPECT_NEAR(phi1, la, 1e-14);
                if (std::fabs(la) < ox::kHalfPi) {
                    EXPECT_NEAR(lam1, lam, 2e-15);
                }
                EXPECT_NEAR(hh1, hh, 2e-8 * (1 + std::fabs(h) * 1e-6));
            }
        }
        // The polar axis: the pole, longitude 0, height |z| - b.
        double phi, lam, h;
        const double b = a * std::sqrt(1 - e2);
        ox::geocentric_to_geodetic<ox::ExactMath>(g, 0, 0, -b - 10, phi, lam, h);
        EXPECT_EQ(phi, -ox::kHalfPi);
        EXPECT_EQ(lam, 0.0);
        EXPECT_NEAR(h, 10.0, 1e-9);
    }
}

// Every instruction-set variant of the point loop gives the same bits, and
// the C library's path agrees with them to rounding.
TEST(GeocentricMethods, LoopVariantsAgree) {
    const double seven[10] = {-349.041, -333.959, -1.925, 0.3531, -2.9792, 0.6638, -12.9963,
                              -3469899.6995, 1985672.011, 4952102.5496};
    const int own = ox::point_loop_level();
    for (const char *method : {"Geocentric_Translation", "Coordinate_Frame", "Molodensky", "Molodensky_Abridged",
                               "Molodensky_Badekas"}) {
        SCOPED_TRACE(method);
        const Owned gt(transformation(method, 6377397.155, 299.1528128, 6378249.2, 293.4660212936269, seven));
        std::mt19937_64 rng(11);
        std::uniform_real_distribution<double> lon(-180, 180), lat(-90, 90);
        std::vector<double> in(2 * 1000), hin(1000);
        for (size_t i = 0; i < hin.size(); ++i) in[2 * i] = lon(rng), in[2 * i + 1] = lat(rng), hin[i] = lat(rng) * 10;
        in[0] = 90.0;  // an argument the fast kernels hand on (atan2 of x = 0)
        std::vector<std::vector<double>> out;
        for (int level : {own, 1, ox::kExactLevel}) {
            ox::point_loop_level_limit(level);
            std::vector<double> p = in, h = hin;
            ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1000, p.data(), h.data()), 1000);
            p.insert(p.end(), h.begin(), h.end());
            out.push_back(p);
        }
        ox::point_loop_level_limit(-1);
        for (size_t i = 0; i < out[0].size(); ++i) {
            EXPECT_TRUE(oxtest::same_bits(out[0][i], out[1][i])) << i;
            EXPECT_NEAR(out[0][i], out[2][i], i < 2000 ? 1e-12 : 1e-7) << i;
        }
    }
}
