// "Transverse_Mercator_Complex": the routines against exact transverse
// Mercator values, round trips, symmetry and scale invariants, the sphere,
// the singular points and bad input; the truncation of the series against a
// long double evaluation carried to n^16.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "object/ox_utils.h"
#include "ox.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace {

constexpr double kDeg = 0.017453292519943295;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// A projection set-up: spheroid, parameters (radians, metres) and the
// constants block loaded by the constants routine.
struct System {
    double spheroid[2];
    double parameters[16] = {};
    ox::PcsConstants *constants = nullptr;

    System(double a, double rf, double lon0_deg, double k0, double lat0_deg, double fe = 0, double fn = 0) {
        const double f = rf == 0 ? 0.0 : 1.0 / rf;
        spheroid[0] = a;
        spheroid[1] = f * (2.0 - f);
        parameters[0] = fe;
        parameters[1] = fn;
        parameters[2] = lon0_deg * kDeg;
        parameters[5] = k0;
        parameters[6] = lat0_deg * kDeg;
        constants = ox::pcs_new();
        EXPECT_EQ(ox::tm_complex_constants(constants, spheroid, parameters), 38);
    }
    ~System() { ox::pcs_delete(constants); }
    System(const System &) = delete;
    System &operator=(const System &) = delete;

    // Degrees in, metres out (no false origin), in place; returns the count.
    int32_t forward(std::vector<double> &pts, bool with_constants = true) const {
        std::vector<double> rad(pts);
        for (double &v : rad) v *= kDeg;
        const int32_t count = ox::tm_complex_forward(spheroid, parameters, static_cast<int32_t>(pts.size() / 2),
                                                     rad.data(), with_constants ? constants->header : nullptr,
                                                     with_constants ? constants->values : nullptr);
        pts = rad;
        return count;
    }
    // Metres in, degrees out, in place; returns the count.
    int32_t inverse(std::vector<double> &pts, bool with_constants = true) const {
        const int32_t count = ox::tm_complex_inverse(spheroid, parameters, static_cast<int32_t>(pts.size() / 2),
                                                     pts.data(), with_constants ? constants->header : nullptr,
                                                     with_constants ? constants->values : nullptr);
        for (double &v : pts) v /= kDeg;
        return count;
    }
    std::pair<double, double> fwd(double lon, double lat) const {
        std::vector<double> p{lon, lat};
        forward(p);
        return {p[0], p[1]};
    }
    std::pair<double, double> inv(double x, double y) const {
        std::vector<double> p{x, y};
        inverse(p);
        return {p[0], p[1]};
    }
};

bool is_failure(double v) {
    uint64_t bits, want;
    const double f = ox::failure_nan();
    std::memcpy(&bits, &v, 8);
    std::memcpy(&want, &f, 8);
    return bits == want;
}

double lon_diff(double a, double b) {
    double d = std::fmod(a - b, 360.0);
    if (d > 180) d -= 360;
    if (d < -180) d += 360;
    return d;
}

// The point-loop levels to check: the C library path, then every
// instruction-set variant of the inline kernels that the processor has (on
// x86-64 level 0 is the C library path too).
std::vector<int> loop_levels() {
    std::vector<int> levels{ox::kExactLevel};
    const int top = ox::point_loop_level_limit(-1);
#if defined(__x86_64__)
    const int first = 1;
#else
    const int first = 0;
#endif
    for (int level = first; level <= top; ++level) levels.push_back(level);
    return levels;
}

// Runs the body at one loop level and restores the processor's own.
struct AtLevel {
    explicit AtLevel(int level) { ox::point_loop_level_limit(level); }
    ~AtLevel() { ox::point_loop_level_limit(-1); }
    AtLevel(const AtLevel &) = delete;
    AtLevel &operator=(const AtLevel &) = delete;
};

// ---------------------------------------------------------------------------
// Exact values (tests/data/tm_wide.csv: exact transverse Mercator on the
// ellipsoid, out to 40 degrees from the central meridian).
// ---------------------------------------------------------------------------

struct Row {
    std::string name;
    double a, rf, fe, fn, lon0, k0, lat0, lon, lat, x, y;
};

std::vector<Row> load_rows() {
    std::vector<Row> rows;
    std::ifstream in(std::string(OX_TEST_DATA_DIR) + "/tm_wide.csv");
    std::string line;
    std::getline(in, line);  // header
    while (std::getline(in, line)) {
        std::vector<std::string> f;
        std::stringstream ss(line);
        std::string cell;
        while (std::getline(ss, cell, ',')) f.push_back(cell);
        if (f.size() != 9) continue;
        std::map<std::string, double> p;
        std::stringstream ps(f[4]);
        while (std::getline(ps, cell, ';')) {
            const auto eq = cell.find('=');
            p[cell.substr(0, eq)] = std::strtod(cell.c_str() + eq + 1, nullptr);
        }
        rows.push_back({f[0], std::strtod(f[2].c_str(), nullptr), std::strtod(f[3].c_str(), nullptr),
                        p["False_Easting"], p["False_Northing"], p["Central_Meridian"], p["Scale_Factor"],
                        p["Latitude_Of_Origin"], std::strtod(f[5].c_str(), nullptr),
                        std::strtod(f[6].c_str(), nullptr), std::strtod(f[7].c_str(), nullptr),
                        std::strtod(f[8].c_str(), nullptr)});
    }
    return rows;
}

TEST(TmComplex, ExactValuesOutTo40Degrees) {
    const std::vector<Row> rows = load_rows();
    ASSERT_EQ(rows.size(), 480u);
    for (const int level : loop_levels()) {
    SCOPED_TRACE("loop level " + std::to_string(level));
    const AtLevel at(level);
    double worst_xy = 0, worst_deg = 0;
    for (const Row &r : rows) {
        SCOPED_TRACE(r.name + " " + std::to_string(r.lon) + " " + std::to_string(r.lat));
        const System s(r.a, r.rf, r.lon0, r.k0, r.lat0);
        const auto [x, y] = s.fwd(r.lon, r.lat);
        // the file prints micrometres: our error plus its rounding within 1 um
        EXPECT_NEAR(x + r.fe, r.x, 1e-6);
        EXPECT_NEAR(y + r.fn, r.y, 1e-6);
        worst_xy = std::max({worst_xy, std::fabs(x + r.fe - r.x), std::fabs(y + r.fn - r.y)});
        const auto [lon, lat] = s.inv(r.x - r.fe, r.y - r.fn);
        EXPECT_NEAR(lat, r.lat, 1e-9);
        EXPECT_NEAR(lon_diff(lon, r.lon), 0.0, 1e-9);
        worst_deg = std::max({worst_deg, std::fabs(lat - r.lat), std::fabs(lon_diff(lon, r.lon))});
    }
    std::printf("tm_wide, loop level %d: worst forward %.3g m, worst inverse %.3g deg\n", level, worst_xy,
                worst_deg);
    }
}

// ---------------------------------------------------------------------------
// Invariants.
// ---------------------------------------------------------------------------

TEST(TmComplex, RoundTripsCloseTo1e12Degrees) {
    const System systems[] = {
        {6378137, 298.257223563, 15, 0.9996, 0},       {6377563.396, 299.3249646, -2, 0.9996012717, 49},
        {6378137, 200, 10, 0.9996, -30},               {6371000, 0, -3, 0.9996, 30},
        {6378249.2, 293.4660212936269, -60.760825, 0.9994352, -44.513733},
    };
    for (const int level : loop_levels()) {
    const AtLevel at(level);
    double worst = 0;
    for (const System &s : systems) {
        std::vector<double> pts;
        for (double lat = -89.5; lat <= 89.5; lat += 4.75)
            for (double dl = -40; dl <= 40; dl += 2.5) pts.insert(pts.end(), {s.parameters[2] / kDeg + dl, lat});
        std::vector<double> work(pts);
        const int32_t count = static_cast<int32_t>(pts.size() / 2);
        ASSERT_EQ(s.forward(work), count);
        ASSERT_EQ(s.inverse(work), count);
        // closure on the ground: latitude, and longitude times cos(latitude)
        for (size_t i = 0; i < pts.size(); i += 2) {
            EXPECT_NEAR(work[i + 1], pts[i + 1], 1e-12) << pts[i] << " " << pts[i + 1];
            EXPECT_NEAR(lon_diff(work[i], pts[i]) * std::cos(pts[i + 1] * kDeg), 0.0, 1e-12)
                << pts[i] << " " << pts[i + 1];
            worst = std::max({worst, std::fabs(work[i + 1] - pts[i + 1]),
                              std::fabs(lon_diff(work[i], pts[i]) * std::cos(pts[i + 1] * kDeg))});
        }
    }
    std::printf("round trips within 40 degrees, loop level %d: worst %.3g deg\n", level, worst);
    }
}

TEST(TmComplex, EveryVectorLoopLevelGivesTheSameBits) {
    // The inline kernels give the same bits at every instruction-set level,
    // and agree with the C library path to a few units in the last place;
    // failures (the far points and the NaN) fail on every path.
    const System s(6378137, 298.257223563, 15, 0.9996, 0);
    std::vector<double> in;
    for (double lat = -90; lat <= 90; lat += 3.7)
        for (double dl = -179; dl <= 180; dl += 7.3) in.insert(in.end(), {15 + dl, lat});
    in.insert(in.end(), {kNan, 10, 15 + 1e-9, 1e-9, 15 + 3000, 30});
    std::vector<std::vector<double>> fwd, inv;
    const std::vector<int> levels = loop_levels();
    for (const int level : levels) {
        const AtLevel at(level);
        std::vector<double> f(in);
        s.forward(f);
        std::vector<double> i(fwd.empty() ? f : fwd.front());
        s.inverse(i);
        fwd.push_back(f);
        inv.push_back(i);
    }
    for (size_t l = 1; l < levels.size(); ++l)
        for (size_t k = 0; k < in.size(); ++k) {
            EXPECT_EQ(std::isnan(fwd[l][k]), std::isnan(fwd[0][k])) << k;
            EXPECT_EQ(std::isnan(inv[l][k]), std::isnan(inv[0][k])) << k;
            if (!std::isnan(fwd[0][k])) {
                EXPECT_NEAR(fwd[l][k], fwd[0][k], 2e-9 + 1e-15 * std::fabs(fwd[0][k])) << k;
            }
            if (!std::isnan(inv[0][k])) {
                EXPECT_NEAR(inv[l][k], inv[0][k], 1e-13) << k;
            }
            if (l > 1) {
                EXPECT_EQ(std::memcmp(&fwd[l][k], &fwd[1][k], 8), 0) << "level " << levels[l] << " " << k;
                EXPECT_EQ(std::memcmp(&inv[l][k], &inv[1][k], 8), 0) << "level " << levels[l] << " " << k;
            }
        }
}

TEST(TmComplex, SymmetryAboutTheCentralMeridianAndTheEquator) {
    // x odd in the longitude difference, y even; y odd in the latitude (origin
    // on the equator): exact with the central meridian at 0, where the
    // longitude differences are exact negatives.
    const System s(6378137, 298.257223563, 0, 0.9996, 0);
    const System t(6378137, 298.257223563, 9, 0.9996, 0);
    for (double lat : {-85.0, -60.0, -23.5, -1e-7, 7.0, 45.0, 72.0})
        for (double dl : {1e-6, 0.5, 3.0, 17.0, 33.0, 40.0, 100.0, 150.0}) {
            const auto [x1, y1] = s.fwd(dl, lat);
            const auto [x2, y2] = s.fwd(-dl, lat);
            const auto [x3, y3] = s.fwd(dl, -lat);
            if (std::isnan(x1)) {  // outside the domain (near the equator far out): so are the mirror images
                EXPECT_TRUE(is_failure(x2) && is_failure(x3)) << lat << " " << dl;
                continue;
            }
            EXPECT_EQ(x1, -x2);
            EXPECT_EQ(y1, y2);
            EXPECT_EQ(x3, x1);
            EXPECT_EQ(y3, -y1);
            const auto [x4, y4] = t.fwd(9 + dl, lat);
            EXPECT_NEAR(x4, x1, 1e-8);
            EXPECT_NEAR(y4, y1, 1e-8);
        }
    for (double dl : {0.0, 5.0, 39.0, 60.0}) EXPECT_EQ(s.fwd(dl, 0.0).second, 0.0);      // the equator
    for (double lat : {-90.0, -45.0, 0.0, 30.0, 89.0}) EXPECT_EQ(t.fwd(9, lat).first, 0.0);  // the meridian
    // the natural origin with a latitude of origin
    const System o(6377563.396, 299.3249646, -2, 0.9996012717, 49);
    const auto [x0, y0] = o.fwd(-2, 49);
    EXPECT_EQ(x0, 0.0);
    EXPECT_NEAR(y0, 0.0, 1e-9);
    // beyond 90 degrees from the central meridian: the mirror image in the
    // plane of that meridian (y about the pole's northing)
    const double pole = s.fwd(0, 90).second;
    for (double lat : {-50.0, 10.0, 80.0}) {
        const auto [xf, yf] = s.fwd(60, lat);
        const auto [xb, yb] = s.fwd(120, lat);
        EXPECT_NEAR(xb, xf, 1e-8);
        EXPECT_NEAR(yb, std::copysign(2 * pole, lat) - yf, 1e-8);
    }
}

TEST(TmComplex, CentralMeridianIsTheScaledMeridianArc) {
    // y = k0 (M(phi) - M(phi0)) on the central meridian; the point scale there is k0.
    for (double rf : {298.257223563, 294.978698213898, 200.0, 0.0}) {
        const System s(6378137, rf, 0, 0.9996, 31);
        const double a = s.spheroid[0], e2 = s.spheroid[1];
        for (double lat = -89; lat <= 89; lat += 8) {
            const double phi = lat * kDeg;
            EXPECT_NEAR(s.fwd(0, lat).second, 0.9996 * (ox_q(a, e2, phi) - ox_q(a, e2, 31 * kDeg)), 2e-8);
            const double h = 1e-6;
            const double dy = (s.fwd(0, lat + h / kDeg).second - s.fwd(0, lat - h / kDeg).second) / (2 * h);
            EXPECT_NEAR(dy / ox_m(a, e2, phi), 0.9996, 1e-8) << rf << " " << lat;
        }
    }
}

TEST(TmComplex, PolesAndTheEquatorAt90Degrees) {
    for (double rf : {298.257223563, 0.0}) {
        const System s(6378137, rf, 0, 0.9996, 0);
        const double pole = 0.9996 * ox_q90(s.spheroid[0], s.spheroid[1]);
        for (double dl : {0.0, 40.0, 90.0, 135.0, -179.0, 180.0}) {
            const auto [xn, yn] = s.fwd(dl, 90);
            EXPECT_NEAR(xn, 0.0, 1e-9);
            EXPECT_NEAR(yn, pole, 1e-8);
            const auto [xs, ys] = s.fwd(dl, -90);
            EXPECT_NEAR(xs, 0.0, 1e-9);
            EXPECT_NEAR(ys, -pole, 1e-8);
        }
        EXPECT_NEAR(s.inv(0, pole).second, 90.0, 1e-12);
        EXPECT_NEAR(s.inv(0, -pole).second, -90.0, 1e-12);
        // latitudes beyond the poles are taken as the pole
        EXPECT_NEAR(s.fwd(15, 95).second, pole, 1e-8);
        // off the equator, 90 degrees from the central meridian is an ordinary point
        const auto [x, y] = s.fwd(90, 60);
        ASSERT_TRUE(std::isfinite(x) && std::isfinite(y));
        EXPECT_NEAR(y, pole, 1e-8);
        const auto [lon, lat] = s.inv(x, y);
        EXPECT_NEAR(lon, 90, 1e-12);
        EXPECT_NEAR(lat, 60, 1e-12);
    }
    // On the equator 90 degrees from the central meridian x has no finite
    // limit.  On the sphere the nearest double point is still finite (the
    // longitude pi/2 in double is 6e-17 short of it) and comes back; on the
    // ellipsoid the series diverges there and the point fails.
    const System sphere(6371000, 0, 0, 1, 0);
    const auto [xs, ys] = sphere.fwd(90, 0);
    EXPECT_TRUE(std::isfinite(xs) && xs > 30 * 6371000.0);
    EXPECT_EQ(ys, 0.0);
    EXPECT_NEAR(sphere.inv(xs, ys).first, 90, 1e-12);
    EXPECT_NEAR(sphere.inv(1e300, 0).first, 90, 1e-12);  // the limit of the inverse
    EXPECT_NEAR(sphere.inv(-1e300, 0).first, -90, 1e-12);
    const System wgs(6378137, 298.257223563, 0, 1, 0);
    std::vector<double> p{90, 0, -90, 0, 89.9, 0.01, 1, 1};
    EXPECT_EQ(wgs.forward(p), 1);
    for (size_t i = 0; i < 6; ++i) EXPECT_TRUE(is_failure(p[i])) << i;
}

TEST(TmComplex, EllipsoidDomainEndsWhereTheSeriesFails) {
    // Converted wherever the first neglected term stays below 1e-10 of the
    // radius: |eta'| <= 1.885 on WGS 84, which reaches 72.7 degrees from the
    // central meridian on the equator and every longitude from 17 degrees of
    // latitude on.
    const System s(6378137, 298.257223563, 0, 1, 0);
    std::vector<double> in{72.5, 0, 73, 0, 60, 5, 89, 17.5, 120, 18, 106, 0, 179, 0.5, 180, 20};
    std::vector<double> p(in);
    EXPECT_EQ(s.forward(p), 6);
    const bool ok[] = {true, false, true, true, true, false, true, true};
    for (size_t i = 0; i < 8; ++i) EXPECT_EQ(std::isfinite(p[2 * i]), ok[i]) << in[2 * i] << " " << in[2 * i + 1];
    // every converted point comes back (to the truncation of the series, under
    // a millimetre at the border of the domain); the inverse refuses the region beyond
    std::vector<double> q(p);
    EXPECT_EQ(s.inverse(q), 6);
    for (size_t i = 0; i < 8; ++i)
        if (ok[i]) {
            EXPECT_NEAR(lon_diff(q[2 * i], in[2 * i]) * std::cos(in[2 * i + 1] * kDeg), 0, 1e-8);
            EXPECT_NEAR(q[2 * i + 1], in[2 * i + 1], 1e-8);
        }
    const double radius = s.constants->values[1];
    std::vector<double> r{2.0 * radius, 0.0, -2.0 * radius, 1000.0, 1.8 * radius, 0.0, 0.0, 3.2 * radius};
    EXPECT_EQ(s.inverse(r), 1);
    EXPECT_TRUE(std::isfinite(r[4]) && std::isfinite(r[5]));
    for (size_t i : {0u, 1u, 2u, 3u, 6u, 7u}) EXPECT_TRUE(is_failure(r[i])) << i;
    // a flatter spheroid has a narrower domain; a sphere none
    const System flat(6378137, 200, 0, 1, 0);
    std::vector<double> f{70, 0, 68, 0};
    EXPECT_EQ(flat.forward(f), 1);
    EXPECT_TRUE(is_failure(f[0]));
    EXPECT_TRUE(std::isfinite(f[2]));
    const System sphere(6371000, 0, 0, 1, 0);
    std::vector<double> g{89.999, 0, 179.5, 0.001};
    EXPECT_EQ(sphere.forward(g), 2);
    // a spheroid too flat for the series converts nothing
    double sph[2] = {6378137, 0.5}, par[16] = {};
    par[5] = 1;
    ox::PcsConstants *c = ox::pcs_new();
    EXPECT_EQ(ox::tm_complex_constants(c, sph, par), 0);
    ox::pcs_delete(c);
}

TEST(TmComplex, SphereIsTheClosedFormula) {
    // x = k0 a atanh(cos phi sin L), y = k0 a (atan2(tan phi, cos L) - phi0), on
    // both sides of 90 degrees from the central meridian.
    const double a = 6371000, k0 = 0.9996, lat0 = 30;
    const System s(a, 0, -3, k0, lat0);
    for (double lat = -88; lat <= 88; lat += 11)
        for (double dl = -175; dl <= 175; dl += 12.5) {
            const double phi = lat * kDeg, l = dl * kDeg;
            const double xe = k0 * a * std::atanh(std::cos(phi) * std::sin(l));
            const double ye = k0 * a * (std::atan2(std::tan(phi), std::cos(l)) - lat0 * kDeg);
            const auto [x, y] = s.fwd(-3 + dl, lat);
            // (atanh near 1 is ill-conditioned: the closed form itself loses digits there)
            EXPECT_NEAR(x, xe, 1e-8 + 1e-14 * std::fabs(xe)) << lat << " " << dl;
            EXPECT_NEAR(y, ye, 1e-8) << lat << " " << dl;
            const auto [lon, la] = s.inv(x, y);
            EXPECT_NEAR(la, lat, 1e-11);
            EXPECT_NEAR(lon_diff(lon, -3 + dl), 0.0, 1e-11);
        }
    // a prolate or otherwise tiny e2 is a sphere
    System t(a, 0, -3, k0, lat0);
    t.spheroid[1] = -1e-20;
    std::vector<double> p{10, 20}, q{10, 20};
    EXPECT_EQ(t.forward(p, false), 1);
    EXPECT_EQ(s.forward(q, false), 1);
    EXPECT_EQ(p, q);
}

// ---------------------------------------------------------------------------
// Constants, bad input.
// ---------------------------------------------------------------------------

TEST(TmComplex, WithoutConstantsGivesTheSameResults) {
    const System s(6378206.4, 294.978698213898, -110.16666666666667, 0.9999, 31);
    std::vector<double> p{-100, 40, -150, -10, -110, 31, -112.5, 80}, q(p);
    EXPECT_EQ(s.forward(p, true), 4);
    EXPECT_EQ(s.forward(q, false), 4);
    EXPECT_EQ(p, q);
    EXPECT_EQ(s.inverse(p, true), 4);
    EXPECT_EQ(s.inverse(q, false), 4);
    EXPECT_EQ(p, q);
    // a block of another layout is not used
    const int32_t wrong_header[2] = {2, 21};
    std::vector<double> r{-100, 40}, t{-100, 40};
    for (double &v : r) v *= kDeg;
    for (double &v : t) v *= kDeg;
    const double junk[21] = {};
    EXPECT_EQ(ox::tm_complex_forward(s.spheroid, s.parameters, 1, r.data(), wrong_header, junk), 1);
    EXPECT_EQ(ox::tm_complex_forward(s.spheroid, s.parameters, 1, t.data(), nullptr, nullptr), 1);
    EXPECT_EQ(r, t);
}

TEST(TmComplex, NonFiniteCoordinatesFailAlone) {
    const System s(6378137, 298.257223563, 15, 0.9996, 0);
    const double inf = kInf, nan = kNan;
    std::vector<double> p{nan, 10, 15, inf, 16, 45, -inf, 0, 15, -nan};
    EXPECT_EQ(s.forward(p), 1);
    for (size_t i : {0u, 1u, 2u, 3u, 6u, 7u, 8u, 9u}) EXPECT_TRUE(is_failure(p[i])) << i;
    EXPECT_TRUE(std::isfinite(p[4]) && std::isfinite(p[5]));
    std::vector<double> q{nan, 0, 1000, inf, 20000, 5e6, -inf, -inf};
    EXPECT_EQ(s.inverse(q), 1);
    for (size_t i : {0u, 1u, 2u, 3u, 6u, 7u}) EXPECT_TRUE(is_failure(q[i])) << i;
    EXPECT_TRUE(std::isfinite(q[4]) && std::isfinite(q[5]));
    // coordinates far outside the projection never give infinities
    std::vector<double> far{1e300, 0, -1e30, 1e30, 1e9, 3e7, 0, 1e300};
    const int32_t count = s.inverse(far);
    int32_t finite = 0;
    for (size_t i = 0; i < far.size(); i += 2) {
        EXPECT_EQ(std::isfinite(far[i]), std::isfinite(far[i + 1]));
        if (std::isfinite(far[i])) {
            ++finite;
            EXPECT_LE(std::fabs(far[i + 1]), 90.0);
            EXPECT_LE(std::fabs(far[i]), 180.0);
        } else {
            EXPECT_TRUE(is_failure(far[i]) && is_failure(far[i + 1]));
        }
    }
    EXPECT_EQ(count, finite);
    // longitudes far outside [-180, 180] are reduced
    const auto [x1, y1] = s.fwd(15 + 3 + 360.0 * 1000, 20);
    const auto [x2, y2] = s.fwd(18, 20);
    EXPECT_NEAR(x1, x2, 1e-5);
    EXPECT_NEAR(y1, y2, 1e-5);
    const auto [x3, y3] = s.fwd(1e300, 20);
    EXPECT_TRUE(std::isfinite(x3) && std::isfinite(y3));
}

TEST(TmComplex, InvalidSystemsConvertNothing) {
    const double good_sph[2] = {6378137, 0.0066943799901413165};
    double par[16] = {};
    par[5] = 0.9996;
    ox::PcsConstants *c = ox::pcs_new();
    auto check_fails = [&](const double *sph, const double *prm) {
        double p[4] = {0.1, 0.2, 0.3, 0.4};
        EXPECT_EQ(ox::tm_complex_forward(sph, prm, 2, p, nullptr, nullptr), 0);
        for (double v : p) EXPECT_TRUE(is_failure(v));
        double q[4] = {1000, 2000, 3000, 4000};
        EXPECT_EQ(ox::tm_complex_inverse(sph, prm, 2, q, nullptr, nullptr), 0);
        for (double v : q) EXPECT_TRUE(is_failure(v));
        EXPECT_EQ(ox::tm_complex_constants(c, sph, prm), 0);
        EXPECT_EQ(c->header, nullptr);
        EXPECT_EQ(c->values, nullptr);
    };
    check_fails(nullptr, par);
    check_fails(good_sph, nullptr);
    for (double bad_a : {0.0, -1.0, kNan, kInf}) {
        const double sph[2] = {bad_a, 0.006};
        check_fails(sph, par);
    }
    for (double bad_e2 : {1.0, 1.5, kNan, -kInf}) {
        const double sph[2] = {6378137, bad_e2};
        check_fails(sph, par);
    }
    for (int slot : {2, 5, 6})
        for (double bad : {kNan, kInf}) {
            double prm[16] = {};
            prm[5] = 0.9996;
            prm[slot] = bad;
            check_fails(good_sph, prm);
        }
    for (double bad_k0 : {0.0, -1.0}) {
        double prm[16] = {};
        prm[5] = bad_k0;
        check_fails(good_sph, prm);
    }
    ox::pcs_delete(c);
    // null points, empty arrays, null constants object
    EXPECT_EQ(ox::tm_complex_forward(good_sph, par, 5, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(ox::tm_complex_inverse(good_sph, par, 5, nullptr, nullptr, nullptr), 0);
    double p[2] = {0.1, 0.2};
    EXPECT_EQ(ox::tm_complex_forward(good_sph, par, 0, p, nullptr, nullptr), 0);
    EXPECT_EQ(ox::tm_complex_forward(good_sph, par, -3, p, nullptr, nullptr), 0);
    EXPECT_EQ(p[0], 0.1);
    EXPECT_EQ(ox::tm_complex_constants(nullptr, good_sph, par), 0);
}

TEST(TmComplex, ArbitraryBitPatternsGiveFailuresOrValidPoints) {
    // Every result is either the failure value (not counted) or finite, with
    // geographic results in range; spheroids and parameters vary too.
    std::mt19937_64 rng(7);
    auto any_double = [&] {
        const uint64_t bits = rng();
        double v;
        std::memcpy(&v, &bits, 8);
        return v;
    };
    const double specials[] = {0.0, -0.0, 1.0, -1.0, 1e-300, 1e300, 1.5707963267948966, 3.141592653589793,
                               6378137.0, 1e7, kInf, -kInf, kNan};
    auto pick = [&] { return rng() % 3 == 0 ? specials[rng() % 13] : any_double(); };
    for (int round = 0; round < 200; ++round) {
        double sph[2] = {6378137.0, 0.0066943799901413165};
        double par[16] = {};
        par[5] = 0.9996;
        if (round % 4 == 1) sph[1] = 0.0;
        if (round % 4 == 2) sph[1] = std::fabs(pick());
        if (round % 4 == 3) {
            par[2] = pick();
            par[6] = pick();
        }
        std::vector<double> p(64), q(64);
        for (size_t i = 0; i < p.size(); ++i) p[i] = q[i] = pick();
        auto check = [&](std::vector<double> &v, int32_t count, bool geographic) {
            int32_t converted = 0;
            for (size_t i = 0; i < v.size(); i += 2) {
                if (is_failure(v[i])) {
                    EXPECT_TRUE(is_failure(v[i + 1]));
                    continue;
                }
                ++converted;
                ASSERT_TRUE(std::isfinite(v[i]) && std::isfinite(v[i + 1]));
                if (geographic) {
                    EXPECT_LE(std::fabs(v[i]), 3.141592653589793);
                    EXPECT_LE(std::fabs(v[i + 1]), 1.5707963267948966 + 1e-15);
                }
            }
            EXPECT_EQ(converted, count);
        };
        check(p, ox::tm_complex_forward(sph, par, 32, p.data(), nullptr, nullptr), false);
        check(q, ox::tm_complex_inverse(sph, par, 32, q.data(), nullptr, nullptr), true);
    }
}

// ---------------------------------------------------------------------------
// Truncation of the series: the same mathematics in long double, summed term
// by term (no Clenshaw), with the series carried to n^16.
// ---------------------------------------------------------------------------

using ld = long double;

// The reference series (tests/data/krueger_reference_series.txt, written by
// tools/series/krueger_series.py --order 16 --reference): the coefficients of
// n^0..n^16 of the rectifying factor and of alpha_k and chi_k, k = 1..16.
constexpr int kReferenceOrder = 16;
struct ReferenceSeries {
    ld rectifying[kReferenceOrder + 1] = {};
    ld alpha[kReferenceOrder][kReferenceOrder + 1] = {};
    ld chi[kReferenceOrder][kReferenceOrder + 1] = {};
    int lines = 0;
};

const ReferenceSeries &reference_series() {
    static const ReferenceSeries series = [] {
        ReferenceSeries s;
        std::ifstream in(std::string(OX_TEST_DATA_DIR) + "/krueger_reference_series.txt");
        std::string line;
        while (std::getline(in, line)) {
            if (line.empty() || line[0] == '#') continue;
            std::istringstream fields(line);
            std::string name;
            int k = 0;
            fields >> name >> k;
            ld *row = name == "rectifying" ? s.rectifying
                      : name == "alpha" && k >= 1 && k <= kReferenceOrder ? s.alpha[k - 1]
                      : name == "chi" && k >= 1 && k <= kReferenceOrder   ? s.chi[k - 1]
                                                                          : nullptr;
            if (row == nullptr) continue;
            std::string value;
            for (int j = 0; j <= kReferenceOrder && fields >> value; ++j) row[j] = std::strtold(value.c_str(), nullptr);
            ++s.lines;
        }
        return s;
    }();
    return series;
}

struct Reference {
    int order;
    ld n, ka, northing0;
    ld alpha[kReferenceOrder], chi[kReferenceOrder];

    static ld poly(const ld *c, ld n, int order) {
        ld sum = 0;
        for (int j = order; j >= 0; --j) sum = sum * n + c[j];
        return sum;
    }

    Reference(ld a, ld rf, ld k0, ld lat0_deg, int ord) : order(ord) {
        const ld f = rf == 0 ? 0 : 1 / rf;
        n = f / (2 - f);
        const ReferenceSeries &s = reference_series();
        ka = k0 * a / (1 + n) * poly(s.rectifying, n, order);
        for (int k = 0; k < kReferenceOrder; ++k) {
            alpha[k] = k < order ? poly(s.alpha[k], n, order) : 0;
            chi[k] = k < order ? poly(s.chi[k], n, order) : 0;
        }
        northing0 = 0;
        northing0 = forward(0, lat0_deg * kDeg).second;
    }

    std::pair<ld, ld> forward(ld l, ld phi) const {
        ld c = phi;
        for (int k = 1; k <= order; ++k) c += chi[k - 1] * std::sin(2 * k * phi);
        const ld xip = std::atan2(std::sin(c), std::cos(c) * std::cos(l));
        const ld etap = std::asinh(std::cos(c) * std::sin(l) / std::hypot(std::sin(c), std::cos(c) * std::cos(l)));
        ld xi = xip, eta = etap;
        for (int k = 1; k <= order; ++k) {
            xi += alpha[k - 1] * std::sin(2 * k * xip) * std::cosh(2 * k * etap);
            eta += alpha[k - 1] * std::cos(2 * k * xip) * std::sinh(2 * k * etap);
        }
        return {ka * eta, ka * xi - northing0};
    }
};

TEST(TmComplex, SeriesTruncationWithin35Degrees) {
    ASSERT_EQ(reference_series().lines, 1 + 2 * kReferenceOrder);
    struct Case {
        double a, rf, k0, lat0;
    };
    const Case cases[] = {{6378137, 298.257223563, 0.9996, 0},
                          {6377397.155, 299.1528128, 1.0, 0},
                          {6378249.2, 293.4660212936269, 0.9994352, -44.513733},
                          {6378137, 200, 0.9996, 0}};
    for (const int level : loop_levels())
    for (const Case &c : cases) {
        const AtLevel at(level);
        const Reference exact(c.a, c.rf, c.k0, c.lat0, 16);
        const Reference order8(c.a, c.rf, c.k0, c.lat0, 8);
        const System s(c.a, c.rf, 0, c.k0, c.lat0);
        ld truncation = 0, total35 = 0, total40 = 0, inverse40 = 0;
        for (double lat = -89.75; lat <= 90; lat += 2.5)
            for (double dl = 0.0; dl <= 40.0; dl += 1.25) {
                const auto [xe, ye] = exact.forward(dl * kDeg, lat * kDeg);
                const auto [x8, y8] = order8.forward(dl * kDeg, lat * kDeg);
                const auto [x, y] = s.fwd(dl, lat);
                const ld err8 = std::hypot(x8 - xe, y8 - ye);
                const ld err = std::hypot(x - xe, y - ye);
                if (dl <= 35.0) {
                    truncation = std::max(truncation, err8);
                    total35 = std::max(total35, err);
                }
                total40 = std::max(total40, err);
                // the inverse from the exact plane coordinates
                const auto [lon, la] = s.inv(static_cast<double>(xe), static_cast<double>(ye));
                inverse40 = std::max({inverse40, static_cast<ld>(std::fabs(la - lat)),
                                      static_cast<ld>(std::fabs(lon_diff(lon, dl) * std::cos(lat * kDeg)))});
            }
        EXPECT_LT(truncation, 5e-9L) << c.rf;  // the n^8 series itself
        EXPECT_LT(total40, 1e-8L) << c.rf;     // the routine, with double rounding
        EXPECT_LT(inverse40, 1e-12L) << c.rf;
        std::printf("loop level %d, rf %.9g: truncation %.3Lg m, routine %.3Lg m (35 deg), %.3Lg m (40 deg), "
                    "inverse %.3Lg deg\n",
                    level, c.rf, truncation, total35, total40, inverse40);
    }
}

}  // namespace

// ---------------------------------------------------------------------------
// Through a projected coordinate system: object string, driver, units.
// ---------------------------------------------------------------------------

namespace {

std::string number(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    return buf;
}

// A projected system on the row's spheroid and parameters; `foot` puts the
// linear unit (and so the false origin) in US survey feet.
ox_object *make_projcs(const Row &r, bool foot = false) {
    const double unit = foot ? 0.3048006096012192 : 1.0;
    const std::string text =
        "PROJCS[\"TMC\",GEOGCS[\"GCS\",DATUM[\"D\",SPHEROID[\"S\"," + number(r.a) + "," + number(r.rf) +
        "]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],"
        "PROJECTION[\"Transverse_Mercator_Complex\"],"
        "PARAMETER[\"False_Easting\"," + number(r.fe / unit) + "],PARAMETER[\"False_Northing\"," + number(r.fn / unit) +
        "],PARAMETER[\"Central_Meridian\"," + number(r.lon0) + "],PARAMETER[\"Scale_Factor\"," + number(r.k0) +
        "],PARAMETER[\"Latitude_Of_Origin\"," + number(r.lat0) + "],UNIT[\"" + (foot ? "Foot_US" : "Meter") + "\"," +
        number(unit) + "]]";
    return ox_projcs_from_string(text.c_str());
}

}  // namespace

TEST(TmComplex, ProjectedSystemsReproduceTheExactValues) {
    const std::vector<Row> rows = load_rows();
    std::map<std::string, std::vector<const Row *>> cases;
    for (const Row &r : rows) cases[r.name].push_back(&r);
    ASSERT_EQ(cases.size(), 12u);
    for (const auto &[name, members] : cases) {
        SCOPED_TRACE(name);
        ox_object *pcs = make_projcs(*members[0]);
        ASSERT_NE(pcs, nullptr);
        EXPECT_EQ(ox_projcs_isconstloaded(pcs), 0);
        std::vector<double> pts;
        for (const Row *r : members) pts.insert(pts.end(), {r->lon, r->lat});
        const int32_t count = static_cast<int32_t>(members.size());
        ASSERT_EQ(ox_geog_to_proj(pcs, count, pts.data()), count);
        EXPECT_EQ(ox_projcs_isconstloaded(pcs), 1);
        for (int32_t i = 0; i < count; ++i) {
            EXPECT_NEAR(pts[2 * i], members[i]->x, 1e-6);
            EXPECT_NEAR(pts[2 * i + 1], members[i]->y, 1e-6);
        }
        ASSERT_EQ(ox_proj_to_geog(pcs, count, pts.data()), count);
        for (int32_t i = 0; i < count; ++i) {
            EXPECT_NEAR(lon_diff(pts[2 * i], members[i]->lon) * std::cos(members[i]->lat * kDeg), 0, 1e-9);
            EXPECT_NEAR(pts[2 * i + 1], members[i]->lat, 1e-9);
        }
        // the same after the constants are dropped (computed per call)
        ox_projcs_unload_constants(pcs);
        std::vector<double> again{members[1]->lon, members[1]->lat};
        ASSERT_EQ(ox_geog_to_proj(pcs, 1, again.data()), 1);
        EXPECT_NEAR(again[0], members[1]->x, 1e-6);
        EXPECT_NEAR(again[1], members[1]->y, 1e-6);
        ox_projcs_del(pcs);
    }
}

TEST(TmComplex, ProjectedSystemInFeetAndFailedPoints) {
    const std::vector<Row> rows = load_rows();
    const Row *row = nullptr;
    for (const Row &r : rows)
        if (r.name == "tmc_arizona_east_clarke1866" && std::fabs(r.lon - r.lon0) > 20) row = &r;
    ASSERT_NE(row, nullptr);
    ox_object *pcs = make_projcs(*row, true);
    ASSERT_NE(pcs, nullptr);
    const double ft = 0.3048006096012192;
    const double nan = kNan;
    // a good point between a NaN and a point outside the domain of the series
    std::vector<double> p{nan, 30, row->lon, row->lat, row->lon0 + 80, 0.5};
    EXPECT_EQ(ox_geog_to_proj(pcs, 3, p.data()), 1);
    EXPECT_TRUE(std::isnan(p[0]) && std::isnan(p[1]) && std::isnan(p[4]) && std::isnan(p[5]));
    EXPECT_NEAR(p[2] * ft, row->x, 1e-6);
    EXPECT_NEAR(p[3] * ft, row->y, 1e-6);
    std::vector<double> q{row->x / ft, row->y / ft};
    EXPECT_EQ(ox_proj_to_geog(pcs, 1, q.data()), 1);
    EXPECT_NEAR(q[0], row->lon, 1e-9);
    EXPECT_NEAR(q[1], row->lat, 1e-9);
    // the projection name and its parameters survive the object string
    char text[OX_OBJSTRING_SIZE];
    ox_projcs_to_string(pcs, text);
    EXPECT_NE(std::strstr(text, "PROJECTION[\"Transverse_Mercator_Complex\"]"), nullptr);
    ox_object *back = ox_projcs_from_string(text);
    EXPECT_EQ(ox_projcs_eq(pcs, back), 1);
    ox_projcs_del(back);
    ox_projcs_del(pcs);
}

namespace {

// A caller's routines that forward to the library's: the driver then makes
// its own passes for units and false origin around them.
int32_t forward_passthrough(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                            const int32_t *header, const double *values) {
    return ox::tm_complex_forward(spheroid, parameters, n, points, header, values);
}
int32_t inverse_passthrough(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                            const int32_t *header, const double *values) {
    return ox::tm_complex_inverse(spheroid, parameters, n, points, header, values);
}

}  // namespace

TEST(TmComplex, UnitsInsideTheLoopGiveTheDriversOwnBits) {
    const std::vector<Row> rows = load_rows();
    const Row &row = rows[300];
    ox_object *pcs = make_projcs(row, true);
    ASSERT_NE(pcs, nullptr);
    ox_object *params[16], *copies[16];
    ox_projcs_parameters(pcs, params);
    for (int i = 0; i < 16; ++i) copies[i] = params[i] ? ox_parameter_clone(params[i]) : nullptr;
    ox_object *own = ox_projcs_new(
        "TMC", ox_geogcs_clone(ox_projcs_geogcs(pcs)),
        ox_projection_new("Transverse_Mercator_Complex", forward_passthrough, inverse_passthrough, nullptr), copies,
        ox_unit_clone(ox_projcs_unit(pcs)));
    ASSERT_NE(own, nullptr);
    std::vector<double> a;
    for (const Row &r : rows)
        if (r.name == row.name) a.insert(a.end(), {r.lon, r.lat});
    a.insert(a.end(), {kNan, 1.0, row.lon0 + 85, 0.0});  // two failures
    std::vector<double> b(a);
    const int32_t n = static_cast<int32_t>(a.size() / 2);
    EXPECT_EQ(ox_geog_to_proj(pcs, n, a.data()), n - 2);
    EXPECT_EQ(ox_geog_to_proj(own, n, b.data()), n - 2);
    for (size_t i = 0; i < a.size(); ++i) EXPECT_EQ(std::memcmp(&a[i], &b[i], 8), 0) << i;
    EXPECT_EQ(ox_proj_to_geog_center(pcs, n, a.data(), 180.0), n - 2);
    EXPECT_EQ(ox_proj_to_geog_center(own, n, b.data(), 180.0), n - 2);
    for (size_t i = 0; i < a.size(); ++i) EXPECT_EQ(std::memcmp(&a[i], &b[i], 8), 0) << i;
    EXPECT_TRUE(is_failure(a[a.size() - 1]) && is_failure(a[a.size() - 4]));
    ox_projcs_del(own);
    ox_projcs_del(pcs);
}
