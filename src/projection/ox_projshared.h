// The mathematics that the conic, azimuthal and meridian-based projections
// share, written once over a function set M (ox_fastmath.h):
//
//   isometric latitude   psi = atanh(sin phi) - e atanh(e sin phi)
//                        (Snyder, Map Projections: A Working Manual, 1987,
//                        eq. 3-7; ln(1/t) of eq. 15-9), and back through the
//                        conformal latitude chi = gd(psi) and its series;
//   authalic q           q = (1 - e2) [sin phi / (1 - e2 sin^2 phi)
//                        + atanh(e sin phi) / e]  (Snyder eq. 3-12), and back
//                        through the authalic latitude, sin beta = q / qp;
//   meridian arc         M = R mu(phi), R the rectifying radius, mu the
//                        rectifying latitude by its series, and back;
//   Gauss's sphere       the conformal sphere of the oblique stereographic
//                        (IOGP Guidance Note 7-2, method 9809): with the
//                        isometric latitudes, psi_chi = n psi_phi + ln(c)/2;
//   the cone             the plane coordinates of a point on a parallel arc
//                        of a conic projection (Snyder eqs. 14-1 to 14-5),
//                        written so that they stay exact when the cone
//                        constant n is small;
//   the spherical frame  the east, north and up components of a point seen
//                        from the centre of an azimuthal projection, and the
//                        point of given components (rotation of the sphere).
//
// The series of the auxiliary latitudes are the library's (ox_math.h).
#pragma once

#include <cmath>

#include "projection/ox_fastmath.h"
#include "projection/ox_math.h"
#include "projection/ox_projmath.h"

namespace ox {

// The largest finite double, for the checks that keep infinities out.
inline constexpr double kLargestFinite = 1.7976931348623157e308;

// s / x for the sine s of a small angle x, and 1 at x = 0.
OX_ALWAYS_INLINE double sine_ratio(double s, double x) { return x == 0.0 ? 1.0 : s / x; }

// ---------------------------------------------------------------------------
// Isometric and conformal latitudes.
// ---------------------------------------------------------------------------

// psi(phi) from sin and cos of phi for the eccentricity e (0 on a sphere),
// odd in phi and taken on |sin phi| so that 1 + |sin phi| never cancels:
//   psi = sign(s) [ln((1 + |s|) / cos phi) - e/2 ln(1 + 2e|s| / (1 - e|s|))].
// `ok` is M's range predicate.
template <class M>
OX_ALWAYS_INLINE double isometric_latitude(double e, double sin_phi, double cos_phi, bool &ok) {
    const double as = std::fabs(sin_phi);
    const double arg = (1.0 + as) / cos_phi;
    const double t = 2.0 * e * as / (1.0 - e * as);
    ok = M::log_ok(arg) & M::log1p_ok(t);
    return std::copysign(M::log(arg) - 0.5 * e * M::log1p(t), sin_phi);
}

// The conformal latitude chi = gd(psi) of an isometric latitude, with its
// sine and cosine: with v = exp(-|psi|), sin chi = (1 - v^2) / (1 + v^2),
// cos chi = 2v / (1 + v^2), chi = pi/2 - 2 atan v (all signed as psi).
template <class M>
OX_ALWAYS_INLINE double gudermannian(double psi, double &sin_chi, double &cos_chi, bool &ok) {
    const double a = -std::fabs(psi);
    const double v = M::exp(a);
    const double v2 = v * v;
    const double inv = 1.0 / (1.0 + v2);
    sin_chi = std::copysign((1.0 - v2) * inv, psi);
    cos_chi = 2.0 * v * inv;
    ok = M::exp_ok(a);
    return std::copysign(kHalfPi - 2.0 * M::atan(v), psi);
}

// ---------------------------------------------------------------------------
// The authalic function q.
// ---------------------------------------------------------------------------

// q(phi) from sin phi; e = sqrt(e2) > 0.  atanh(e s) = log1p(2es / (1 - es)) / 2.
template <class M>
OX_ALWAYS_INLINE double authalic_q(double e, double e2, double sin_phi, bool &ok) {
    const double es = e * sin_phi;
    const double t = 2.0 * es / (1.0 - es);
    ok = M::log1p_ok(t);
    return (1.0 - e2) * (sin_phi / (1.0 - es * es) + 0.5 * M::log1p(t) / e);
}
// q at the pole: 1 + (1 - e2) atanh(e) / e.
inline double authalic_q_pole(double e, double e2) { return 1.0 + (1.0 - e2) * std::atanh(e) / e; }

// ---------------------------------------------------------------------------
// The meridian arc.
// ---------------------------------------------------------------------------

// The constants of the meridian arc of a spheroid (on a sphere the
// coefficients are 0 and R = a).
struct MeridianArc {
    double radius;                  // the rectifying radius R
    double to_mu[kAuxTerms];        // phi -> mu
    double to_phi[kAuxTerms];       // mu -> phi
    double quarter;                 // R pi/2, the arc from the equator to a pole

    void init(double a, double e2) {
        radius = ox_rect_r(a, e2);
        rectifying_coefficients(e2 < kZero ? 0.0 : e2, to_mu, to_phi);
        quarter = radius * kHalfPi;
    }
    // M(phi) from phi and its sine and cosine.
    OX_ALWAYS_INLINE double arc(double phi, double sin_phi, double cos_phi) const {
        return radius * aux_series(to_mu, phi, sin_phi, cos_phi);
    }
    // The latitude of the arc m; NaN beyond a pole.
    template <class M>
    OX_ALWAYS_INLINE double latitude(double m, bool &ok) const {
        const double mu = m / radius;
        double s, c;
        M::sincos(mu, s, c);
        ok = M::sincos_ok(mu);
        const double phi = aux_series(to_phi, mu, s, c);
        return std::fabs(mu) <= kHalfPi * (1.0 + 1e-15) ? phi : failure_nan();
    }
};

// ---------------------------------------------------------------------------
// Gauss's conformal sphere.
// ---------------------------------------------------------------------------

// The sphere of the oblique stereographic about phi0 (IOGP Guidance Note
// 7-2, method 9809): R = sqrt(rho0 nu0), n = sqrt(1 + e2 cos^4 phi0 /
// (1 - e2)), sin chi0 = sin phi0 / n, and c such that chi0 is the image of
// phi0.  In isometric latitudes psi_chi = n psi_phi + ln(c)/2 with
//   ln(c)/2 = atanh(sin chi0) - n psi(phi0)
//           = ln((n + s) / (1 + s)) - ln(1 + e2 cos^2 phi0 / (1 - e2)) / 2
//             - (n - 1) atanh(s) + n e atanh(e s)          (s = sin phi0),
// from n^2 - s^2 = cos^2 phi0 (1 + e2 cos^2 phi0 / (1 - e2)): no difference
// of large terms, even at a pole, where (n - 1) atanh(s) tends to 0.
struct GaussSphere {
    double radius;      // R
    double n;           // n
    double log_c_half;  // ln(c) / 2
    double sin_chi0, cos_chi0;

    void init(double a, double e2, double phi0) {
        const double s = std::sin(phi0), c = std::cos(phi0);
        const double e = std::sqrt(e2);
        const double k = e2 * c * c / (1.0 - e2);
        radius = a * std::sqrt(1.0 - e2) / (1.0 - e2 * s * s);
        n = std::sqrt(1.0 + k * c * c);
        const double n_minus_1 = k * c * c / (n + 1.0);
        const double far = c > 0.0 ? n_minus_1 * std::log((1.0 + std::fabs(s)) / c) : 0.0;  // (n - 1) |atanh s|
        log_c_half = std::log((n + s) / (1.0 + s)) - 0.5 * std::log1p(k) - std::copysign(far, s) +
                     n * e * std::atanh(e * s);
        sin_chi0 = s / n;
        cos_chi0 = c * std::sqrt(1.0 + k) / n;  // sqrt(n^2 - s^2) / n
    }
};

// ---------------------------------------------------------------------------
// The cone.
// ---------------------------------------------------------------------------

// The plane coordinates of a conic projection (Snyder eqs. 14-1 to 14-5 and
// their kin) from the cone constant n, the longitude difference L, the arc
// factor n rho of the point's parallel (rho its radius) and the offset
// rho0 - rho of that parallel from the origin's:
//   theta = n L,  x = rho sin theta,  y = rho0 - rho cos theta
//     = (rho0 - rho) + rho (1 - cos theta),
// with rho sin theta = (n rho) L sin(theta)/theta and rho (1 - cos theta) =
// (n rho) L sin(theta/2) sin(theta/2)/(theta/2): finite and exact as n
// tends to 0 (the cylindrical limit).
template <class M>
OX_ALWAYS_INLINE bool cone_forward(double n, double n_rho, double offset, double L, double &x, double &y) {
    const double half = 0.5 * n * L;
    double s, c;
    M::sincos(half, s, c);
    const double r = sine_ratio(s, half);
    const double arc = n_rho * L;  // rho theta
    x = arc * r * c;
    y = offset + arc * r * s;
    return M::sincos_ok(half);
}

// The angle theta of a plane point about the apex of a cone, from n and the
// arc factor n rho0 of the origin's parallel (n rho0 >= 0): the direction of
// (x, rho0 - y) times the sign of n, atan2(n x, n rho0 - n y).
template <class M>
OX_ALWAYS_INLINE double cone_angle(double n, double n_rho0, double x, double y, bool &ok) {
    const double u = n * x, v = n_rho0 - n * y;
    ok = M::atan2_ok(u, v);
    return M::atan2(u, v);
}

// The longitude difference of a point at angle theta = atan2(u, v) about
// the apex (u = n x, v = n rho0 - n y) on the parallel of arc factor n rho:
// theta / n, or, where the cone is nearly a cylinder (|theta| < 1),
// x (theta / sin theta) / (n rho) with sin theta = u / hypot(u, v), which
// stays exact as n tends to 0 (0 at the apex, n rho = 0).  NaN when
// |theta / n| exceeds pi (the gap of the cone).
template <class M>
OX_ALWAYS_INLINE double cone_longitude(double n, double theta, double u, double v, double x, double n_rho) {
    const double ratio = theta == 0.0 ? 1.0 : theta * M::sqrt(u * u + v * v) / u;
    const double small = n_rho == 0.0 ? 0.0 : x * ratio / n_rho;
    const double L = std::fabs(theta) < 1.0 ? small : theta / n;
    return std::fabs(L) <= kPi * (1.0 + 1e-14) ? L : failure_nan();
}

// ---------------------------------------------------------------------------
// The spherical frame of an azimuthal projection.
// ---------------------------------------------------------------------------

// The components of the unit vector of a point (sin and cos of its latitude
// s, c, of its longitude difference sl, cl) in the frame of the centre
// (sin0, cos0 of its latitude): east, north and up (up = cos of the angular
// distance).
OX_ALWAYS_INLINE void frame_components(double sin0, double cos0, double s, double c, double sl, double cl,
                                       double &east, double &north, double &up) {
    const double ccl = c * cl;
    east = c * sl;
    north = cos0 * s - sin0 * ccl;
    up = sin0 * s + cos0 * ccl;
}

// The latitude and longitude difference of the point whose unit vector has
// the components (east, north, up) in the frame of the centre: a rotation
// of the sphere, exact near the poles and the centre (no arcsine).
template <class M>
OX_ALWAYS_INLINE bool frame_position(double sin0, double cos0, double east, double north, double up, double &dlon,
                                     double &lat) {
    const double z = up * sin0 + north * cos0;
    const double xx = up * cos0 - north * sin0;
    const double r = M::sqrt(xx * xx + east * east);
    lat = M::atan2(z, r);
    dlon = M::atan2(east, xx);
    return M::atan2_ok(z, r) & M::atan2_ok(east, xx);
}

}  // namespace ox
