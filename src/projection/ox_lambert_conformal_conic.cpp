// "Lambert_Conformal_Conic": Lambert's conformal conic projection with one
// or two standard parallels and a scale factor (Snyder, Map Projections: A
// Working Manual, 1987, eqs. 15-1 to 15-11; IOGP Guidance Note 7-2,
// methods 9801 and 9802).  With the isometric latitude psi (ln 1/t of
// Snyder 15-9) and m = cos phi / sqrt(1 - e2 sin^2 phi),
//     n = (ln m1 - ln m2) / (psi2 - psi1)   (two parallels),
//     n = sin phi1                          (one, or two equal: EPSG's 1SP),
//     rho = K exp(-n psi),  K = a k0 m1 exp(n psi1) / n,
//     theta = n L,  x = rho sin theta,  y = rho0 - rho cos theta,
// rho0 the rho of the latitude of origin.  The scale factor k0 multiplies
// the map (EPSG's 2SP method has k0 = 1).  Inverse: rho = sign(n)
// hypot(x, rho0 - y), psi = -ln(rho / K) / n, the conformal latitude
// chi = gd(psi) and phi from chi by the conformal series (the library's
// auxiliary latitudes); no iteration.  On a sphere psi = atanh(sin phi) and
// phi = gd(psi).  The differences ln m1 - ln m2 and psi2 - psi1 are formed
// from differences of the parallels, so that n is exact for parallels as
// close as they come.
//
// Domain: the whole globe but the pole opposite the apex (at infinity);
// the apex pole maps to the apex.  The inverse refuses points in the gap of
// the cone (longitude more than 180 degrees from the central meridian).
//
// Refused: a standard parallel at or beyond a pole, a cone constant |n|
// below 1e-5 (parallels symmetric about the equator or at it: the cone is a
// cylinder, and y = rho0 - rho cos theta would lose digits as 1/n grows;
// "Mercator" is that limit), a latitude of origin at the pole opposite the
// apex or beyond a pole, a scale factor that is not positive and finite,
// non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

constexpr double kSmallestCone = 1e-5;

// ln(m1 / m2) and psi2 - psi1 for the parallels phi1, phi2 from their
// differences (no difference of nearly equal terms), e the eccentricity:
//   m1 / m2 = (cos phi1 / cos phi2) (w2 / w1),
//   cos phi1 / cos phi2 = 1 + 2 sin(sigma) sin(delta) / cos phi2,
//   w2^2 / w1^2 = 1 - e2 sin(2 sigma) sin(2 delta) / w1^2,
//   atanh s2 - atanh s1 = atanh((s2 - s1) / (1 - s1 s2)),
// with sigma = (phi1 + phi2) / 2, delta = (phi2 - phi1) / 2 and
// s2 - s1 = 2 cos(sigma) sin(delta).
void parallel_differences(double e, double phi1, double phi2, double &log_m_ratio, double &psi_difference) {
    const double e2 = e * e;
    const double sigma = 0.5 * (phi1 + phi2), delta = 0.5 * (phi2 - phi1);
    const double s1 = std::sin(phi1), s2 = std::sin(phi2), c2 = std::cos(phi2);
    const double w1_2 = 1.0 - e2 * s1 * s1;
    log_m_ratio = std::log1p(2.0 * std::sin(sigma) * std::sin(delta) / c2) +
                  0.5 * std::log1p(-e2 * std::sin(2.0 * sigma) * std::sin(2.0 * delta) / w1_2);
    const double ds = 2.0 * std::cos(sigma) * std::sin(delta);
    psi_difference = std::atanh(ds / (1.0 - s1 * s2));
    if (e > 0.0) psi_difference -= e * std::atanh(e * ds / (1.0 - e2 * s1 * s2));
}

// The constants of both forms (e = 0 on a sphere).
struct LccConstants {
    double e;
    double n;
    double k;       // K: rho = K exp(-n psi)
    double rho0;    // rho of the latitude of origin
    double n_rho0;  // n rho0 (>= 0)
    double pole;    // the apex pole's latitude, sign(n) pi/2
};

bool lcc_setup(const Frame &f, double e, LccConstants &c) {
    const double phi1 = f.p.standard_parallel_1, phi2 = f.p.standard_parallel_2;
    const double phi0 = latitude_parameter(f.p.latitude_of_origin), k0 = f.p.scale_factor;
    if (!finite(f.p.central_meridian) || !positive(k0) || !finite(phi0)) return false;
    for (double phi : {phi1, phi2})
        if (!(std::fabs(phi) < kHalfPi) || at_pole(phi)) return false;
    const double e2 = e * e;
    double n = std::sin(phi1);
    if (phi1 != phi2) {
        double log_m_ratio, psi_difference;
        parallel_differences(e, phi1, phi2, log_m_ratio, psi_difference);
        n = log_m_ratio / psi_difference;
    }
    if (!(std::fabs(n) >= kSmallestCone) || !(std::fabs(n) < 1.0)) return false;
    bool ok;
    const double s1 = std::sin(phi1), cos1 = std::cos(phi1);
    const double m1 = cos1 / std::sqrt(1.0 - e2 * s1 * s1);
    const double psi1 = isometric_latitude<ExactMath>(e, s1, cos1, ok);
    c.e = e;
    c.n = n;
    c.k = f.a * k0 * m1 * std::exp(n * psi1) / n;
    c.pole = std::copysign(kHalfPi, n);
    if (at_pole(phi0)) {
        if (phi0 * n < 0.0) return false;  // the origin at infinity
        c.rho0 = 0.0;
    } else {
        c.rho0 = c.k * std::exp(-n * isometric_latitude<ExactMath>(e, std::sin(phi0), std::cos(phi0), ok));
    }
    c.n_rho0 = n * c.rho0;
    return std::isfinite(c.k) && std::isfinite(c.rho0);
}

// The pole band: |phi| within the library's equality rule of pi/2.
constexpr double kPoleBand = (kHalfPi + 1.0) * kZero;

template <class M>
OX_ALWAYS_INLINE bool lcc_forward(const Frame &f, const LccConstants &c, double lon, double lat, double &x,
                                  double &y) {
    const double d = lon - f.p.central_meridian;
    const double L = M::reduce(d);
    double s, co;
    M::sincos(lat, s, co);
    bool ok_psi;
    const double psi = isometric_latitude<M>(c.e, s, co, ok_psi);
    const double rho_formula = c.k * M::exp(-c.n * psi);
    // The apex pole is the apex; the opposite pole has no image.
    const bool pole = std::fabs(std::fabs(lat) - kHalfPi) <= kPoleBand;
    const bool apex = pole & (lat * c.n > 0.0);
    const double rho = apex ? 0.0 : (pole ? failure_nan() : rho_formula);
    const bool ok = cone_forward<M>(c.n, c.n * rho, c.rho0 - rho, L, x, y);
    return ok & M::reduce_ok(d) & M::sincos_ok(lat) & ok_psi & (M::exp_ok(-c.n * psi) | pole);
}

template <class M>
OX_ALWAYS_INLINE bool lcc_inverse(const Frame &f, const LccConstants &c, double x, double y, double &lon,
                                  double &lat, double &sin_chi, double &cos_chi) {
    const double dy = c.rho0 - y;
    const double rho = M::sqrt(x * x + dy * dy);
    const double ratio = rho / std::fabs(c.k);
    const double psi = -M::log(ratio) / c.n;
    bool ok_chi, ok_theta;
    const double chi = gudermannian<M>(psi, sin_chi, cos_chi, ok_chi);
    const double theta = cone_angle<M>(c.n, c.n_rho0, x, y, ok_theta);
    const bool ok_lon = cone_longitude<M>(f.p.central_meridian, c.n, theta, c.n * x, c.n_rho0 - c.n * y, x,
                                          std::fabs(c.n) * rho, lon);
    lat = rho <= kLargestFinite ? chi : failure_nan();  // (an infinite x or y has no point)
    return M::log_ok(ratio) & ok_chi & ok_theta & ok_lon;
}

struct Sphere {
    using Constants = LccConstants;
    static bool setup(const Frame &f, Constants &c) { return lcc_setup(f, 0.0, c); }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        return lcc_forward<M>(f, c, lon, lat, x, y);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double s, co;
        return lcc_inverse<M>(f, c, x, y, lon, lat, s, co);
    }
};

struct Ellipsoid {
    struct Constants : LccConstants {
        double chi_inverse[kAuxTerms];  // chi -> phi
    };
    static bool setup(const Frame &f, Constants &c) {
        double chi_forward[kAuxTerms];
        conformal_coefficients(f.e2, chi_forward, c.chi_inverse);
        return lcc_setup(f, std::sqrt(f.e2), c);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        return lcc_forward<M>(f, c, lon, lat, x, y);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double s, co, chi;
        const bool ok = lcc_inverse<M>(f, c, x, y, lon, chi, s, co);
        lat = aux_series(c.chi_inverse, chi, s, co);
        return ok;
    }
};

// The whole longitude range, from the apex pole to 10 degrees short of the
// opposite pole (which is at infinity).
constexpr double kFarLimit = 80.0 * kDegree;
OX_HORIZON_ROUTINE(horizon_lambert_conformal_conic) {
    Ellipsoid::Constants c;
    const bool north = spheroid == nullptr || parameters == nullptr ||
                       !Ellipsoid::setup(Frame(spheroid, parameters), c) || c.n > 0.0;
    return horizon_box(horizon_center(parameters), kPi, north ? -kFarLimit : -kHalfPi, north ? kHalfPi : kFarLimit,
                       max_vertices, vertices);
}

struct LambertConformalConic : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43020;
    static constexpr const char *kName = "Lambert_Conformal_Conic";
    static constexpr Family kFamily = Family::kConic;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kLambert;
    static constexpr ox_horizon_routine kHorizon = horizon_lambert_conformal_conic;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(LambertConformalConic)
