// Ellipsoid mathematics: the auxiliary-latitude series and the exported
// ellipsoid functions, against reference values computed to 30 digits in
// decimal arithmetic (tools/series/reference_values.py), round trips and the
// documented edge cases.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "ox.h"
#include "projection/ox_math.h"

namespace {

constexpr double kWgs84E2 = 0.0066943799901413165;
constexpr double kThreshold = 0.006884661117170036;
const double kInf = HUGE_VAL;
const double kNaN = std::nan("");

struct LatitudeRow {
    double e2, phi, chi, beta, mu, eta, arc;  // arc: meridian arc divided by a
};
struct SpheroidRow {
    double e2, quarter, rect, auth;  // divided by a
};

struct Reference {
    std::vector<LatitudeRow> latitudes;
    std::vector<SpheroidRow> spheroids;
};

const Reference &reference() {
    static const Reference ref = [] {
        Reference r;
        std::ifstream in(std::string(OX_TEST_DATA_DIR) + "/ellipsoid_reference.txt");
        std::string line;
        while (std::getline(in, line)) {
            std::istringstream s(line);
            std::string kind;
            s >> kind;
            if (kind == "L") {
                LatitudeRow row{};
                s >> row.e2 >> row.phi >> row.chi >> row.beta >> row.mu >> row.eta >> row.arc;
                r.latitudes.push_back(row);
            } else if (kind == "S") {
                SpheroidRow row{};
                s >> row.e2 >> row.quarter >> row.rect >> row.auth;
                r.spheroids.push_back(row);
            }
        }
        return r;
    }();
    return ref;
}

double series(const double c[ox::kAuxTerms], double lat) {
    return ox::aux_series(c, lat, std::sin(lat), std::cos(lat));
}

// Largest error accepted from the series with coefficients of e2: rounding
// only on the Earth's ellipsoids; the n^10 truncation above (largest in the
// conformal inverse, 6e-13 rad at e2 = 0.1).
double series_tolerance(double e2) { return e2 < 0.007 ? 4e-16 : (e2 < 0.06 ? 1e-15 : 1e-12); }

// Dense latitude grid over [-90, 90] degrees, the poles included.
std::vector<double> latitude_grid() {
    std::vector<double> g;
    for (int i = -9000; i <= 9000; ++i) g.push_back(i * 0.01 * ox::kDegree);
    g.front() = -ox::kHalfPi;
    g.back() = ox::kHalfPi;
    return g;
}

}  // namespace

// ---------------------------------------------------------------------------
// Coefficient routines and aux_series
// ---------------------------------------------------------------------------

TEST(AuxSeries, ForwardAndInverseMatchReference) {
    ASSERT_EQ(reference().latitudes.size(), 112u);
    for (const LatitudeRow &r : reference().latitudes) {
        double cf[ox::kAuxTerms], ci[ox::kAuxTerms], af[ox::kAuxTerms], ai[ox::kAuxTerms], rf[ox::kAuxTerms],
            ri[ox::kAuxTerms];
        ox::conformal_coefficients(r.e2, cf, ci);
        ox::authalic_coefficients(r.e2, af, ai);
        ox::rectifying_coefficients(r.e2, rf, ri);
        const double tol = series_tolerance(r.e2);
        SCOPED_TRACE(testing::Message() << "e2 " << r.e2 << " phi " << r.phi);
        EXPECT_NEAR(series(cf, r.phi), r.chi, tol);
        EXPECT_NEAR(series(ci, r.chi), r.phi, tol);
        EXPECT_NEAR(series(af, r.phi), r.beta, tol);
        EXPECT_NEAR(series(ai, r.beta), r.phi, tol);
        EXPECT_NEAR(series(rf, r.phi), r.mu, tol);
        EXPECT_NEAR(series(ri, r.mu), r.phi, tol);
    }
}

TEST(AuxSeries, RoundTripsCloseOnDenseGrids) {
    struct Case {
        double e2, tol;
    };
    const Case cases[] = {{kWgs84E2, 1e-15}, {kThreshold, 1e-15}, {0.05, 1e-12}, {0.1, 1e-12}, {-0.02, 1e-12}};
    void (*const routines[])(double, double *, double *) = {ox::conformal_coefficients, ox::authalic_coefficients,
                                                           ox::rectifying_coefficients};
    const std::vector<double> grid = latitude_grid();
    for (const Case &c : cases) {
        for (auto routine : routines) {
            double fwd[ox::kAuxTerms], inv[ox::kAuxTerms];
            routine(c.e2, fwd, inv);
            double worst = 0.0, worst_back = 0.0;
            for (double phi : grid) {
                worst = std::fmax(worst, std::fabs(series(inv, series(fwd, phi)) - phi));
                worst_back = std::fmax(worst_back, std::fabs(series(fwd, series(inv, phi)) - phi));
            }
            EXPECT_LE(worst, c.tol) << "e2 " << c.e2;
            EXPECT_LE(worst_back, c.tol) << "e2 " << c.e2;
        }
    }
}

TEST(AuxSeries, SeriesAreOddAndFixThePoles) {
    double fwd[ox::kAuxTerms], inv[ox::kAuxTerms];
    ox::conformal_coefficients(0.08, fwd, inv);
    for (double phi : {0.1, 0.7, 1.3}) EXPECT_DOUBLE_EQ(series(fwd, -phi), -series(fwd, phi));
    EXPECT_NEAR(series(fwd, ox::kHalfPi), ox::kHalfPi, 1e-15);
    EXPECT_NEAR(series(inv, -ox::kHalfPi), -ox::kHalfPi, 1e-15);
    EXPECT_EQ(series(fwd, 0.0), 0.0);
}

// A sphere has no periodic terms; no ellipsoid (e2 >= 1 or NaN) gives NaN
// coefficients.
TEST(AuxSeries, SphereAndNoEllipsoid) {
    double fwd[ox::kAuxTerms], inv[ox::kAuxTerms];
    for (double e2 : {0.0, 1.0, 1.5, kInf, kNaN})
        for (auto routine : {ox::conformal_coefficients, ox::authalic_coefficients, ox::rectifying_coefficients}) {
            routine(e2, fwd, inv);
            for (int k = 0; k < ox::kAuxTerms; ++k) {
                EXPECT_TRUE(e2 == 0.0 ? fwd[k] == 0.0 && inv[k] == 0.0 : std::isnan(fwd[k]) && std::isnan(inv[k]))
                    << e2;
            }
        }
}

TEST(AuxSeries, ThirdFlatteningKeepsSmallEccentricities) {
    // n = e2 / 4 (1 + e2/2 + ...) without cancellation for tiny e2
    EXPECT_DOUBLE_EQ(ox::third_flattening(1e-12), 1e-12 / 4 * (1 + 0.5e-12));
    EXPECT_NEAR(ox::third_flattening(kWgs84E2), 1 / (2 * 298.257223563 - 1), 5e-19);
}

// ---------------------------------------------------------------------------
// Exported auxiliary-latitude conversions
// ---------------------------------------------------------------------------

namespace {

using Conversion = double (*)(double, double);
struct ConversionPair {
    const char *name;
    Conversion forward, inverse;
};
const ConversionPair kConversions[] = {
    {"conformal", ox_phi_to_chi, ox_chi_to_phi},
    {"authalic", ox_phi_to_beta, ox_beta_to_phi},
    {"rectifying", ox_phi_to_mu, ox_mu_to_phi},
    {"reduced", ox_phi_to_eta, ox_eta_to_phi},
};

double auxiliary_of(const LatitudeRow &r, int which) {
    const double values[] = {r.chi, r.beta, r.mu, r.eta};
    return values[which];
}

}  // namespace

TEST(AuxLatitude, MatchesReferenceToRounding) {
    for (const LatitudeRow &r : reference().latitudes) {
        for (int j = 0; j < 4; ++j) {
            SCOPED_TRACE(testing::Message() << kConversions[j].name << " e2 " << r.e2 << " phi " << r.phi);
            const double aux = auxiliary_of(r, j);
            EXPECT_NEAR(kConversions[j].forward(r.e2, r.phi), aux, 4.5e-16);
            EXPECT_NEAR(kConversions[j].inverse(r.e2, aux), r.phi, 4.5e-16);
            EXPECT_NEAR(kConversions[j].forward(r.e2, -r.phi), -aux, 4.5e-16);
        }
    }
}

TEST(AuxLatitude, RoundTripsOnDenseGrids) {
    struct Case {
        double e2, tol;
    };
    // Below the threshold the series, at and above it closed forms and
    // Newton's method (the rectifying one through Carlson's integrals, a few
    // units in the last place).
    const Case cases[] = {{kWgs84E2, 4.5e-16},
                          {std::nextafter(kThreshold, 0.0), 4.5e-16},
                          {kThreshold, 1.2e-15},
                          {0.05, 1.2e-15},
                          {0.1, 1.2e-15},
                          {0.5, 4e-15}};
    const std::vector<double> grid = latitude_grid();
    for (const Case &c : cases) {
        for (const ConversionPair &p : kConversions) {
            double worst = 0.0;
            for (double phi : grid) worst = std::fmax(worst, std::fabs(p.inverse(c.e2, p.forward(c.e2, phi)) - phi));
            EXPECT_LE(worst, c.tol) << p.name << " e2 " << c.e2;
        }
    }
}

TEST(AuxLatitude, SeriesAndClosedFormsMeetAtTheThreshold) {
    const double below = std::nextafter(kThreshold, 0.0);
    for (const ConversionPair &p : kConversions) {
        for (double phi : latitude_grid()) {
            ASSERT_NEAR(p.forward(below, phi), p.forward(kThreshold, phi), 9e-16) << p.name << " " << phi;
            ASSERT_NEAR(p.inverse(below, phi), p.inverse(kThreshold, phi), 9e-16) << p.name << " " << phi;
        }
    }
}

TEST(AuxLatitude, ReducedTwiceIsGeocentric) {
    // tan(eta(eta(phi))) = (1 - e2) tan phi, the geocentric latitude.
    for (double e2 : {kWgs84E2, 0.05}) {
        for (double deg = -89.5; deg < 90; deg += 3.7) {
            const double phi = deg * ox::kDegree;
            EXPECT_NEAR(ox_phi_to_eta(e2, ox_phi_to_eta(e2, phi)), ox_phi_to_phig(e2, phi), 5e-16);
            EXPECT_NEAR(ox_eta_to_phi(e2, ox_eta_to_phi(e2, phi)), ox_phig_to_phi(e2, phi), 5e-16);
        }
    }
}

TEST(AuxLatitude, PolesEquatorAndSphere) {
    for (const ConversionPair &p : kConversions) {
        for (double e2 : {kWgs84E2, kThreshold, 0.1, 0.9}) {
            for (Conversion f : {p.forward, p.inverse}) {
                EXPECT_EQ(f(e2, ox::kHalfPi), ox::kHalfPi) << p.name << " " << e2;
                EXPECT_EQ(f(e2, -ox::kHalfPi), -ox::kHalfPi) << p.name << " " << e2;
                EXPECT_EQ(f(e2, 0.0), 0.0) << p.name << " " << e2;
            }
        }
        // e2 below 2^-48 (negative too) is a sphere: the latitude comes back bit for bit
        for (double e2 : {0.0, 3e-15, -0.5, -HUGE_VAL}) {
            for (double lat : {0.3, -1.2, 2.5, kNaN}) {
                const double f = p.forward(e2, lat), i = p.inverse(e2, lat);
                EXPECT_TRUE(std::memcmp(&f, &lat, sizeof f) == 0) << p.name << " " << e2;
                EXPECT_TRUE(std::memcmp(&i, &lat, sizeof i) == 0) << p.name << " " << e2;
            }
        }
    }
}

TEST(AuxLatitude, BadInputGivesNaNPromptly) {
    for (const ConversionPair &p : kConversions) {
        for (Conversion f : {p.forward, p.inverse}) {
            for (double e2 : {kWgs84E2, 0.3}) {
                EXPECT_TRUE(std::isnan(f(e2, kNaN))) << p.name;
                EXPECT_TRUE(std::isnan(f(e2, kInf))) << p.name;
                EXPECT_TRUE(std::isnan(f(e2, -kInf))) << p.name;
                EXPECT_TRUE(std::isnan(f(e2, 1.6))) << p.name << ": beyond the pole";
            }
            for (double e2 : {1.0, 1.5, kInf, kNaN}) EXPECT_TRUE(std::isnan(f(e2, 0.5))) << p.name << " " << e2;
        }
    }
}

TEST(AuxLatitude, IterationsStayBoundedNearTheDegenerateEllipsoid) {
    // Newton's method is ill-conditioned as e2 -> 1 (d phi/d chi ~ 1/(1 - e2));
    // the results stay finite, monotone and close.
    for (double e2 : {0.99, 0.999999}) {
        for (const ConversionPair &p : kConversions) {
            double previous = -ox::kHalfPi;
            for (double deg = -89.0; deg <= 89.0; deg += 1.0) {
                const double phi = deg * ox::kDegree;
                const double back = p.inverse(e2, p.forward(e2, phi));
                ASSERT_NEAR(back, phi, e2 < 0.999 ? 1e-13 : 1e-9) << p.name << " " << e2;
                ASSERT_GT(p.forward(e2, phi), previous) << p.name;
                previous = p.forward(e2, phi);
            }
        }
    }
}

// ---------------------------------------------------------------------------
// Longitude reduction and the tolerant equality
// ---------------------------------------------------------------------------

TEST(EllipsoidMath, LongitudeReduction) {
    const double pi = ox::kPi;
    EXPECT_DOUBLE_EQ(ox_delta(3 * pi / 2), -pi / 2);
    EXPECT_DOUBLE_EQ(ox_delta(-3 * pi / 2), pi / 2);
    EXPECT_EQ(ox_delta(pi), pi);
    EXPECT_EQ(ox_delta(-pi), -pi);
    EXPECT_EQ(ox_delta(7 * pi), pi);
    EXPECT_DOUBLE_EQ(ox_delta(190 * ox::kDegree), -170 * ox::kDegree);
    EXPECT_NEAR(ox_delta(-1e3), -1e3 + 159 * ox::kTwoPi, 1e-12);
    EXPECT_EQ(ox_delta(0.25), 0.25);
    EXPECT_EQ(ox_eq(ox_delta_center(-179 * ox::kDegree, 180 * ox::kDegree), 181 * ox::kDegree), 1);
    EXPECT_NEAR(ox_delta_center(10 * ox::kDegree, -170 * ox::kDegree), 10 * ox::kDegree, 1e-15);
    EXPECT_TRUE(std::isnan(ox_delta(kInf)));
    EXPECT_TRUE(std::isnan(ox_delta(kNaN)));
    EXPECT_TRUE(std::isnan(ox_delta_center(1.0, kInf)));
    EXPECT_TRUE(std::isnan(ox_delta_center(-kInf, 0.0)));
}

TEST(EllipsoidMath, TolerantEquality) {
    EXPECT_EQ(ox_eq(1e20, 1e20 + 1e5), 1);
    EXPECT_EQ(ox_eq(0, 1e-14), 0);
    EXPECT_EQ(ox_eq(0, 3.5e-15), 1);
    EXPECT_EQ(ox_eq(1.0, 1.0 + 1e-14), 0);
    EXPECT_EQ(ox_eq(-2.0, -2.0 - 5e-15), 1);
    // an infinite difference is never within the (then infinite) tolerance
    EXPECT_EQ(ox_eq(kInf, 1.0), 0);
    EXPECT_EQ(ox_eq(-kInf, kInf), 0);
    EXPECT_EQ(ox_eq(1e308, -1e308), 0);
    EXPECT_EQ(ox_eq(kInf, kInf), 1);
    EXPECT_EQ(ox_eq(kNaN, kNaN), 0);
    EXPECT_EQ(ox_eq(kNaN, 0.0), 0);
}

// ---------------------------------------------------------------------------
// Radii, meridian arc and radii of the whole ellipsoid
// ---------------------------------------------------------------------------

TEST(EllipsoidMath, RadiiOfCurvature) {
    const double a = 6378137.0, e2 = kWgs84E2;
    EXPECT_DOUBLE_EQ(ox_w(e2, 0.0), 1.0);
    EXPECT_DOUBLE_EQ(ox_m(a, e2, 0.0), a * (1 - e2));
    EXPECT_DOUBLE_EQ(ox_n(a, e2, 0.0), a);
    // at the pole both radii are a^2/b
    EXPECT_NEAR(ox_m(a, e2, ox::kHalfPi), a / std::sqrt(1 - e2), 1e-8);
    EXPECT_NEAR(ox_n(a, e2, ox::kHalfPi), a / std::sqrt(1 - e2), 1e-8);
    // M is the derivative of the meridian arc, for the series and the elliptic branch
    for (double e2x : {e2, 0.05}) {
        for (double deg = -85.0; deg <= 85.0; deg += 8.5) {
            const double phi = deg * ox::kDegree, h = 1e-4;
            const double slope = (ox_q(a, e2x, phi + h) - ox_q(a, e2x, phi - h)) / (2 * h);
            EXPECT_NEAR(slope, ox_m(a, e2x, phi), 1e-2) << e2x << " " << deg;
        }
    }
}

TEST(EllipsoidMath, MeridianArcMatchesQuadrature) {
    for (const LatitudeRow &r : reference().latitudes) {
        // series below the threshold, elliptic integrals at and above it
        EXPECT_NEAR(ox_q(1.0, r.e2, r.phi), r.arc, 6e-16 * std::fmax(1.0, r.arc)) << r.e2 << " " << r.phi;
        EXPECT_NEAR(ox_q(6378137.0, r.e2, -r.phi), -6378137.0 * r.arc, 4e-9) << r.e2 << " " << r.phi;
    }
}

TEST(EllipsoidMath, MeridianArcBeyondThePole) {
    // M(phi + pi) = M(phi) + 2 Q on both branches
    for (double e2 : {kWgs84E2, 0.1}) {
        const double a = 6378137.0, quarter = ox_q90(a, e2);
        for (double phi : {-2.0, -0.4, 0.3, 1.2, 2.9}) {
            EXPECT_NEAR(ox_q(a, e2, phi + ox::kPi), ox_q(a, e2, phi) + 2 * quarter, 1e-8) << e2 << " " << phi;
        }
        EXPECT_NEAR(ox_q(a, e2, ox::kPi), 2 * quarter, 1e-8);
    }
}

TEST(EllipsoidMath, WholeEllipsoidRadiiMatchReference) {
    ASSERT_EQ(reference().spheroids.size(), 4u);
    for (const SpheroidRow &s : reference().spheroids) {
        EXPECT_NEAR(ox_q90(1.0, s.e2), s.quarter, 3e-16) << s.e2;
        EXPECT_NEAR(ox_rect_r(1.0, s.e2), s.rect, 3e-16) << s.e2;
        EXPECT_NEAR(ox_auth_r(1.0, s.e2), s.auth, 3e-16) << s.e2;
    }
    // a sphere gives a exactly
    EXPECT_EQ(ox_auth_r(6371000.0, 0.0), 6371000.0);
    EXPECT_EQ(ox_rect_r(6371000.0, 0.0), 6371000.0);
    EXPECT_EQ(ox_q90(6371000.0, 0.0), 6371000.0 * ox::kHalfPi);
}

TEST(EllipsoidMath, QuarterMeridianBranchesAgree) {
    // WGS 84 goes through the series, 0.007 through the elliptic integral:
    // each agrees with the other branch to the series' accuracy (n^8 ~ 1e-22).
    const double a = 6378137.0;
    const double below = std::nextafter(kThreshold, 0.0);
    EXPECT_NEAR(ox_q90(a, below), ox_q90(a, kThreshold), 4e-9);
    EXPECT_NEAR(ox_q90(a, kWgs84E2), a * ox::elliptic_e(kWgs84E2), 4e-9);
    EXPECT_NEAR(ox_q90(a, 0.007), 10001198.272392791, 4e-9);
    for (double deg = -90.0; deg <= 90.0; deg += 2.5) {
        EXPECT_NEAR(ox_q(a, below, deg * ox::kDegree), ox_q(a, kThreshold, deg * ox::kDegree), 4e-9) << deg;
    }
}

// ---------------------------------------------------------------------------
// Geocentric latitude and Cartesian coordinates
// ---------------------------------------------------------------------------

TEST(EllipsoidMath, GeocentricLatitude) {
    for (double deg = -89.5; deg <= 89.5; deg += 7.3) {
        const double phi = deg * ox::kDegree;
        const double psi = ox_phi_to_phig(kWgs84E2, phi);
        EXPECT_NEAR(ox_phig_to_phi(kWgs84E2, psi), phi, 4.5e-16);
        EXPECT_LE(std::fabs(psi), std::fabs(phi));
        EXPECT_NEAR(psi, std::atan((1 - kWgs84E2) * std::tan(phi)), 4.5e-16);
    }
}

TEST(EllipsoidMath, CartesianRoundTrips) {
    const double a = 6378137.0;
    for (double e2 : {kWgs84E2, 0.0, 0.05}) {
        for (double h : {-1e4, -100.0, 0.0, 1.0, 1e3, 1e5, 1e6, 1e7}) {
            for (double deg = -90.0; deg <= 90.0; deg += 0.5) {
                const double phi = deg * ox::kDegree, lam = (deg * 2.0 - 10.0) * ox::kDegree;
                double x, y, z, p, l, hh;
                ox_curv_to_cart(a, e2, phi, lam, h, &x, &y, &z);
                ox_cart_to_curv(a, e2, x, y, z, &p, &l, &hh);
                // two Bowring steps: a few units in the last place on the Earth,
                // the truncation of the iteration shows at e2 = 0.05 (2e-13 rad at 1e7 m)
                ASSERT_NEAR(p, phi, e2 < 0.01 ? 1e-15 : 1e-12) << e2 << " " << h << " " << deg;
                ASSERT_NEAR(hh, h, 1e-8) << e2 << " " << h << " " << deg;
                if (std::fabs(deg) < 90.0) {
                    ASSERT_NEAR(l, ox_delta(lam), 1e-15);
                }
            }
        }
    }
}

TEST(EllipsoidMath, CartesianPolarBranch) {
    const double a = 6378137.0, b = a * std::sqrt(1 - kWgs84E2);
    double p, l, h;
    ox_cart_to_curv(a, kWgs84E2, 0.0, 0.0, b, &p, &l, &h);
    EXPECT_EQ(p, ox::kHalfPi);
    EXPECT_EQ(l, 0.0);
    EXPECT_EQ(h, 0.0);
    ox_cart_to_curv(a, kWgs84E2, 0.0, 0.0, -b, &p, &l, &h);
    EXPECT_EQ(p, -ox::kHalfPi);
    EXPECT_EQ(l, 0.0);
    EXPECT_EQ(h, 0.0);
    ox_cart_to_curv(a, kWgs84E2, 1e-15, -1e-15, -b - 250.0, &p, &l, &h);
    EXPECT_EQ(p, -ox::kHalfPi);
    EXPECT_DOUBLE_EQ(h, 250.0);
    // the centre of the Earth: polar branch, at depth b
    ox_cart_to_curv(a, kWgs84E2, 0.0, 0.0, 0.0, &p, &l, &h);
    EXPECT_EQ(p, ox::kHalfPi);
    EXPECT_DOUBLE_EQ(h, -b);
    // null outputs are skipped
    ox_cart_to_curv(a, kWgs84E2, a, 0.0, 0.0, nullptr, nullptr, nullptr);
    ox_curv_to_cart(a, kWgs84E2, 0.0, 0.0, 0.0, nullptr, nullptr, nullptr);
}

// ---------------------------------------------------------------------------
// Non-finite input reaches every function and comes back promptly
// ---------------------------------------------------------------------------

TEST(EllipsoidMath, NonFiniteInputReturnsPromptly) {
    const double bad[] = {kNaN, kInf, -kInf};
    const double a = 6378137.0;
    for (double v : bad) {
        EXPECT_TRUE(std::isnan(ox_w(v, 0.5)) || ox_w(v, 0.5) >= 0.0);
        EXPECT_TRUE(std::isnan(ox_w(kWgs84E2, v)));
        EXPECT_TRUE(std::isnan(ox_m(a, kWgs84E2, v)));
        EXPECT_TRUE(std::isnan(ox_n(a, kWgs84E2, v)));
        EXPECT_TRUE(std::isnan(ox_q(a, kWgs84E2, v)));
        EXPECT_TRUE(std::isnan(ox_q(a, 0.1, v)));
        EXPECT_TRUE(std::isnan(ox_q(a, v, 0.5)));
        EXPECT_TRUE(std::isnan(ox_q90(a, v)) || std::isinf(ox_q90(a, v)));
        EXPECT_TRUE(std::isnan(ox_rect_r(a, v)) || v < 0);
        EXPECT_TRUE(std::isnan(ox_auth_r(a, v)) || v < 0);
        EXPECT_TRUE(std::isnan(ox_phi_to_phig(kWgs84E2, v)));
        EXPECT_TRUE(std::isnan(ox_phig_to_phi(kWgs84E2, v)));
        double x, y, z;
        ox_curv_to_cart(a, kWgs84E2, v, 0.3, 0.0, &x, &y, &z);
        EXPECT_TRUE(std::isnan(x) && std::isnan(y) && std::isnan(z));
        double p, l, h;
        ox_cart_to_curv(a, kWgs84E2, v, 1e6, 1e6, &p, &l, &h);
        EXPECT_FALSE(std::isfinite(h));
        ox_cart_to_curv(a, v, 1e6, 1e6, 1e6, &p, &l, &h);
        EXPECT_FALSE(std::isfinite(p) && std::isfinite(h));
    }
    // degenerate spheroids end the duplication loops too
    for (double e2 : {1.0, 1.5, -1e300, 1e300}) {
        EXPECT_FALSE(std::isfinite(ox_q90(a, e2)) && e2 > 1.0) << e2;
        (void)ox_q(a, e2, 0.7);
        (void)ox_rect_r(a, e2);
        (void)ox_auth_r(a, e2);
    }
}
