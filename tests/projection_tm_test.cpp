// Transverse Mercator (Gauss-Kruger): origin, poles, the sphere's limits,
// symmetries, the scale on the central meridian, and the error of the series
// against the exact transverse Mercator out to 15 degrees from the central
// meridian.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "projection_support.h"

namespace {

using namespace oxtest;

Owned make(const Params &params, double a = kA, double rf = kRf) {
    return make_projcs("Transverse_Mercator", params, a, rf);
}

double e2_of(double rf) { return rf == 0.0 ? 0.0 : (2.0 - 1.0 / rf) / rf; }

TEST(TransverseMercator, OriginMapsToTheFalseOrigin) {
    for (double rf : {299.3249646, 0.0}) {
        const Owned pcs = make(tm_params(-2, 0.9996012717, 49, 400000, -100000), 6377563.396, rf);
        double p[2] = {-2.0, 49.0};
        ASSERT_EQ(ox_geog_to_proj(pcs.get(), 1, p), 1);
        EXPECT_NEAR(p[0], 400000.0, 1e-9);
        EXPECT_NEAR(p[1], -100000.0, 1e-8);
    }
}

TEST(TransverseMercator, PolesAreFinite) {
    constexpr double k0 = 0.9996, lat0 = 30.0;
    for (double rf : {kRf, 0.0}) {
        const Owned pcs = make(tm_params(15, k0, lat0, 0, 0), kA, rf);
        double p[6] = {15.0, 90.0, 40.0, 90.0, -100.0, -90.0};
        ASSERT_EQ(ox_geog_to_proj(pcs.get(), 3, p), 3);
        const double e2 = e2_of(rf);
        const double to_pole = k0 * (ox_q90(kA, e2) - ox_q(kA, e2, lat0 * kDeg));
        const double to_south_pole = -k0 * (ox_q90(kA, e2) + ox_q(kA, e2, lat0 * kDeg));
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(std::isfinite(p[2 * i]) && std::isfinite(p[2 * i + 1])) << rf;
            EXPECT_NEAR(p[2 * i], 0.0, 1e-6) << rf << " " << i;
        }
        // 5.6e-15 rad short of the pole is 3.6e-8 m; the quarter meridian
        // series and the rectifying radius agree to a few micrometres.
        EXPECT_NEAR(p[1], to_pole, 1e-5) << rf;
        EXPECT_NEAR(p[3], to_pole, 1e-5) << rf;
        EXPECT_NEAR(p[5], to_south_pole, 1e-5) << rf;
        ASSERT_EQ(ox_proj_to_geog(pcs.get(), 3, p), 3);
        EXPECT_NEAR(p[1], 90.0, 1e-9) << rf;
        EXPECT_NEAR(p[5], -90.0, 1e-9) << rf;
    }
}

TEST(TransverseMercator, SphereNinetyDegreesFromTheMeridianIsFinite) {
    constexpr double a = 6371000.0, k0 = 0.9996;
    const Owned pcs = make(tm_params(-3, k0, 0, 0, 0), a, 0.0);
    double p[4] = {87.0, 0.0, -93.0, 0.0};
    ASSERT_EQ(ox_geog_to_proj(pcs.get(), 2, p), 2);
    const double b = 0.9999999999999964;
    const double x = k0 * a / 2.0 * std::log((1.0 + b) / (1.0 - b));
    EXPECT_NEAR(p[0], x, 1e-6 * x);
    EXPECT_NEAR(p[2], -x, 1e-6 * x);
    EXPECT_TRUE(std::isfinite(p[1]) && std::isfinite(p[3]));
}

TEST(TransverseMercator, SphereInverseAtThePoleIsThePole) {
    constexpr double a = 6371000.0, k0 = 0.9996, lat0 = 30.0;
    const Owned pcs = make(tm_params(0, k0, lat0, 0, 0), a, 0.0);
    double p[4] = {0.0, k0 * a * (90.0 - lat0) * kDeg, 0.0, -k0 * a * (90.0 + lat0) * kDeg};
    ASSERT_EQ(ox_proj_to_geog(pcs.get(), 2, p), 2);
    EXPECT_NEAR(p[1], 90.0, 1e-12);
    EXPECT_NEAR(p[3], -90.0, 1e-12);
}

// x is odd and y even in the longitude difference; with the origin on the
// equator y is odd in the latitude.
TEST(TransverseMercator, Symmetries) {
    for (double rf : {kRf, 0.0}) {
        const Owned pcs = make(tm_params(9, 1.0, 0, 0, 0), kA, rf);
        for (double dl : {0.1, 1.0, 2.5, 3.5})
            for (double lat : {0.0, 10.0, 47.5, 80.0}) {
                double p[8] = {9.0 + dl, lat, 9.0 - dl, lat, 9.0 + dl, -lat, 9.0, lat};
                ASSERT_EQ(ox_geog_to_proj(pcs.get(), 4, p), 4);
                // The inputs differ in their last bits after the shift by 9 degrees.
                EXPECT_NEAR(p[0], -p[2], 1e-9);
                EXPECT_NEAR(p[1], p[3], 1e-9);
                EXPECT_EQ(p[0], p[4]);
                EXPECT_NEAR(p[1], -p[5], 1e-9);
                EXPECT_EQ(p[6], 0.0);  // the central meridian maps to x = 0
            }
    }
}

// Along the central meridian the point scale is k0 (Snyder 8-11).
TEST(TransverseMercator, ScaleOnTheCentralMeridianIsK0) {
    constexpr double k0 = 0.9996;
    const double e2 = e2_of(kRf);
    const Owned pcs = make(tm_params(15, k0, 0, 0, 0));
    for (double lat : {-70.0, -15.0, 0.0, 33.0, 60.0, 84.0}) {
        const double dl = 1e-6;
        double p[2] = {15.0 + dl, lat};
        ASSERT_EQ(ox_geog_to_proj(pcs.get(), 1, p), 1);
        const double east = ox_n(kA, e2, lat * kDeg) * std::cos(lat * kDeg) * dl * kDeg;
        EXPECT_NEAR(p[0] / east, k0, 1e-9) << lat;
    }
}

// The series against the exact transverse Mercator (tm_wide_15deg.csv: the
// reference's points up to 15 degrees from the central meridian).  The
// bounds are the error curve of docs/TM_SERIES.md with some room.
TEST(TransverseMercator, SeriesErrorAgainstTheExactProjection) {
    struct Band {
        double upto;         // degrees from the central meridian
        double forward_m;    // bound on the forward error
        double inverse_deg;  // bound on the inverse error
    };
    const Band bands[] = {
        {3.0, 2e-6, 2e-11}, {4.0, 2e-5, 1e-10}, {6.0, 1e-3, 1e-8}, {10.0, 2e-2, 3e-7}, {15.0, 0.5, 2e-5}};
    const auto rows = read_reference("tm_wide_15deg.csv");
    ASSERT_GT(rows.size(), 150u);
    double worst_forward[5] = {}, worst_inverse[5] = {};
    for (std::vector<RefRow> rows_of_case : by_case(rows)) {
        RefRow &first = rows_of_case[0];
        first.projection = "Transverse_Mercator";
        const Owned pcs = projcs_of(first);
        const int32_t n = static_cast<int32_t>(rows_of_case.size());
        std::vector<double> p, q;
        for (const RefRow &r : rows_of_case) {
            p.insert(p.end(), {r.lon, r.lat});
            q.insert(q.end(), {r.x, r.y});
        }
        ASSERT_EQ(ox_geog_to_proj(pcs.get(), n, p.data()), n);
        ASSERT_EQ(ox_proj_to_geog(pcs.get(), n, q.data()), n);
        for (int32_t i = 0; i < n; ++i) {
            const RefRow &r = rows_of_case[i];
            const double dl = std::fabs(lon_diff(r.lon, r.param("Central_Meridian")));
            int band = 0;
            while (band < 4 && dl > bands[band].upto) ++band;
            const double fwd = std::hypot(p[2 * i] - r.x, p[2 * i + 1] - r.y);
            const double inv = std::max(std::fabs(q[2 * i + 1] - r.lat),
                                        std::fabs(lon_diff(q[2 * i], r.lon)) * std::cos(r.lat * kDeg));
            if (r.rf == 0.0) {
                // The sphere's closed formulas are exact everywhere.
                EXPECT_LT(fwd, 1e-6) << r.case_name << " " << r.lon << " " << r.lat;
                EXPECT_LT(inv, 1e-11) << r.case_name << " " << r.lon << " " << r.lat;
            } else {
                worst_forward[band] = std::max(worst_forward[band], fwd);
                worst_inverse[band] = std::max(worst_inverse[band], inv);
            }
        }
    }
    for (int b = 0; b < 5; ++b) {
        EXPECT_LT(worst_forward[b], bands[b].forward_m) << "up to " << bands[b].upto << " degrees";
        EXPECT_LT(worst_inverse[b], bands[b].inverse_deg) << "up to " << bands[b].upto << " degrees";
    }
}

}  // namespace
