// "Transverse_Mercator_Complex": the routines against exact transverse
// Mercator values, round trips, symmetry and scale invariants, the sphere,
// the singular points and bad input; the truncation of the series against a
// long double evaluation carried to n^16.  Its loop variants and units
// inside the point loop are checked with the other projections
// (projection_kernels_test.cpp).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "projection/ox_pcsconstants.h"
#include "projection/ox_projlist.h"
#include "projection_support.h"

namespace {

// The registry row of "Transverse_Mercator_Complex".
const ox::ProjRow &tmc_row() { return *ox::projlist_find_by_code(43056); }


using namespace oxtest;

// A projection set-up: spheroid, parameters (radians, metres) and the
// constants block loaded by the constants routine.
struct System {
    double spheroid[2];
    double parameters[16] = {};
    ox::PcsConstants *constants = nullptr;

    System(double a, double rf, double lon0_deg, double k0, double lat0_deg) {
        const double f = rf == 0 ? 0.0 : 1.0 / rf;
        spheroid[0] = a;
        spheroid[1] = f * (2.0 - f);
        parameters[2] = lon0_deg * kDeg;
        parameters[5] = k0;
        parameters[6] = lat0_deg * kDeg;
        constants = ox::pcs_new();
        EXPECT_EQ(tmc_row().constants(constants, spheroid, parameters), 38);
    }
    ~System() { ox::pcs_delete(constants); }
    System(const System &) = delete;
    System &operator=(const System &) = delete;

    // Degrees in, metres out (no false origin), in place; returns the count.
    int32_t forward(std::vector<double> &pts, bool with_constants = true) const {
        for (double &v : pts) v *= kDeg;
        return tmc_row().forward(spheroid, parameters, static_cast<int32_t>(pts.size() / 2), pts.data(),
                                      with_constants ? constants->header : nullptr,
                                      with_constants ? constants->values : nullptr);
    }
    // Metres in, degrees out, in place; returns the count.
    int32_t inverse(std::vector<double> &pts) const {
        const int32_t count = tmc_row().inverse(spheroid, parameters, static_cast<int32_t>(pts.size() / 2),
                                                     pts.data(), constants->header, constants->values);
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

// tests/data/tm_wide.csv: exact transverse Mercator on the ellipsoid, out to
// 40 degrees from the central meridian, through projected systems read from
// object strings, at every loop level.
TEST(TmComplex, ExactValuesOutTo40Degrees) {
    const std::vector<RefRow> rows = read_reference("tm_wide.csv");
    ASSERT_EQ(rows.size(), 480u);
    const auto cases = by_case(rows);
    ASSERT_EQ(cases.size(), 12u);
    for (const int level : loop_levels()) {
        const AtLevel at(level);
        double worst_xy = 0, worst_deg = 0;
        for (const std::vector<RefRow> &members : cases) {
            const Owned pcs = projcs_of(members[0]);
            EXPECT_EQ(ox_projcs_isconstloaded(pcs.get()), 0);
            std::vector<double> p, q;
            for (const RefRow &r : members) {
                p.insert(p.end(), {r.lon, r.lat});
                q.insert(q.end(), {r.x, r.y});
            }
            const int32_t n = static_cast<int32_t>(members.size());
            ASSERT_EQ(forward(pcs.get(), p), n);
            EXPECT_EQ(ox_projcs_isconstloaded(pcs.get()), 1);
            ASSERT_EQ(inverse(pcs.get(), q), n);
            for (int32_t i = 0; i < n; ++i) {
                const RefRow &r = members[i];
                SCOPED_TRACE(r.case_name + " " + number(r.lon) + " " + number(r.lat));
                // the file prints micrometres: our error plus its rounding within 1 um
                EXPECT_NEAR(p[2 * i], r.x, 1e-6);
                EXPECT_NEAR(p[2 * i + 1], r.y, 1e-6);
                EXPECT_NEAR(q[2 * i + 1], r.lat, 1e-9);
                EXPECT_NEAR(lon_diff(q[2 * i], r.lon), 0.0, 1e-9);
                worst_xy = std::max({worst_xy, std::fabs(p[2 * i] - r.x), std::fabs(p[2 * i + 1] - r.y)});
                worst_deg = std::max({worst_deg, std::fabs(q[2 * i + 1] - r.lat), std::fabs(lon_diff(q[2 * i], r.lon))});
            }
            // the same after the constants are dropped (computed per call)
            ox_projcs_unload_constants(pcs.get());
            std::vector<double> again{members[1].lon, members[1].lat};
            ASSERT_EQ(forward(pcs.get(), again), 1);
            EXPECT_NEAR(again[0], members[1].x, 1e-6);
            EXPECT_NEAR(again[1], members[1].y, 1e-6);
        }
        std::printf("tm_wide, loop level %d: worst forward %.3g m, worst inverse %.3g deg\n", level, worst_xy,
                    worst_deg);
    }
    // the projection name and its parameters survive the object string
    const Owned pcs = projcs_of(rows[0], kFoot);
    const std::string text = text_of(ox_projcs_to_string, pcs.get());
    EXPECT_NE(text.find("PROJECTION[\"Transverse_Mercator_Complex\"]"), std::string::npos);
    const Owned back(ox_projcs_from_string(text.c_str()));
    EXPECT_EQ(ox_projcs_eq(pcs.get(), back.get()), 1);
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
    EXPECT_EQ(tmc_row().constants(c, sph, par), 0);
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
// Bad input.
// ---------------------------------------------------------------------------

TEST(TmComplex, NonFiniteCoordinatesFailAlone) {
    const System s(6378137, 298.257223563, 15, 0.9996, 0);
    const double inf = kInf, nan = kNaN;
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
        EXPECT_EQ(tmc_row().forward(sph, prm, 2, p, nullptr, nullptr), 0);
        for (double v : p) EXPECT_TRUE(is_failure(v));
        double q[4] = {1000, 2000, 3000, 4000};
        EXPECT_EQ(tmc_row().inverse(sph, prm, 2, q, nullptr, nullptr), 0);
        for (double v : q) EXPECT_TRUE(is_failure(v));
        EXPECT_EQ(tmc_row().constants(c, sph, prm), 0);
        EXPECT_EQ(c->header, nullptr);
        EXPECT_EQ(c->values, nullptr);
    };
    check_fails(nullptr, par);
    check_fails(good_sph, nullptr);
    for (double bad_a : {0.0, -1.0, kNaN, kInf}) {
        const double sph[2] = {bad_a, 0.006};
        check_fails(sph, par);
    }
    for (double bad_e2 : {1.0, 1.5, kNaN, -kInf}) {
        const double sph[2] = {6378137, bad_e2};
        check_fails(sph, par);
    }
    for (int slot : {2, 5, 6})
        for (double bad : {kNaN, kInf}) {
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
    EXPECT_EQ(tmc_row().forward(good_sph, par, 5, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(tmc_row().inverse(good_sph, par, 5, nullptr, nullptr, nullptr), 0);
    double p[2] = {0.1, 0.2};
    EXPECT_EQ(tmc_row().forward(good_sph, par, 0, p, nullptr, nullptr), 0);
    EXPECT_EQ(tmc_row().forward(good_sph, par, -3, p, nullptr, nullptr), 0);
    EXPECT_EQ(p[0], 0.1);
    EXPECT_EQ(tmc_row().constants(nullptr, good_sph, par), 0);
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
                               6378137.0, 1e7, kInf, -kInf, kNaN};
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
        check(p, tmc_row().forward(sph, par, 32, p.data(), nullptr, nullptr), false);
        check(q, tmc_row().inverse(sph, par, 32, q.data(), nullptr, nullptr), true);
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
