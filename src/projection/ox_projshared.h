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
#include "projection/ox_projdef.h"
#include "projection/ox_projmath.h"

namespace ox {

// The largest finite double, for the checks that keep infinities out.
inline constexpr double kLargestFinite = 1.7976931348623157e308;

// A latitude parameter as the formulas take it: the pole itself when it is
// at a pole under the library's equality rule (90 degrees in the unit of
// 0.0174532925199433 radians is a hair beyond pi/2), NaN beyond a pole or
// when it is not finite.
inline double latitude_parameter(double phi) {
    if (at_pole(phi)) return std::copysign(kHalfPi, phi);
    return std::fabs(phi) <= kHalfPi ? phi : failure_nan();
}

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

// Beyond |psi| = 40 the conformal latitude is a right angle to the last bit
// (pi/2 - gd(40) = 8.5e-18): isometric latitudes are clamped there, which
// keeps the hyperbolic functions finite at the poles.
inline constexpr double kIsometricLimit = 40.0;

OX_ALWAYS_INLINE double clamp_isometric(double psi) {
    return std::fabs(psi) > kIsometricLimit ? std::copysign(kIsometricLimit, psi) : psi;
}

// atanh of the sine of an angle given as a vector of length r whose
// component s is r sin and whose other components have the length c =
// r cos >= 0: ln((r + |s|) / c) with the sign of s, which keeps full
// precision as the sine nears 1.  False in `ok` when M's logarithm is out of
// range (c = 0 gives an infinity on the C library path).
template <class M>
OX_ALWAYS_INLINE double atanh_of_sine(double s, double c, double r, bool &ok) {
    const double arg = (r + std::fabs(s)) / c;
    ok = M::log_ok(arg);
    return std::copysign(M::log(arg), s);
}

// psi of phi (|phi| <= pi/2; the caller moves a pole a hair off it), for
// the first eccentricity e; on a sphere (kEllipsoid false) e is not used.
template <class M, bool kEllipsoid>
OX_ALWAYS_INLINE double isometric_latitude(double e, double phi, bool &ok) {
    double s, c;
    M::sincos(phi, s, c);
    bool psi_ok;
    const double psi = isometric_latitude<M>(kEllipsoid ? e : 0.0, s, c, psi_ok);
    ok = M::sincos_ok(phi) & psi_ok;
    return psi;
}

// phi of psi: chi = atan(sinh psi) (sin chi = tanh psi, cos chi = 1 / cosh
// psi), then the inverse conformal series `chi_inverse` on the ellipsoid.
template <class M, bool kEllipsoid>
OX_ALWAYS_INLINE double latitude_of_isometric(const double chi_inverse[kAuxTerms], double psi, bool &ok) {
    const double p = clamp_isometric(psi);
    double sh, ch;
    M::sinh_cosh(p, sh, ch);
    ok = M::sinh_cosh_ok(p);
    const double chi = M::atan(sh);
    if constexpr (kEllipsoid) {
        return aux_series(chi_inverse, chi, sh / ch, 1.0 / ch);
    } else {
        (void)chi_inverse;
        return chi;
    }
}

// psi of phi with the C library, for set-ups.
inline double isometric_latitude_exact(double e2, double phi) {
    const double e = std::sqrt(e2 > 0.0 ? e2 : 0.0);
    const double s = std::sin(phi);
    return std::atanh(s) - e * std::atanh(e * s);
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

// The longitude M::reduce(l), or NaN for a point outside the image (`inside`
// false).  The NaN is subtracted rather than selected: a selected NaN is a
// constant that the compiler threads into the tests of the longitude that
// follow (the range predicates, the driver's centred longitudes), which then
// fold to constants on its branch, and the select of a comparison mask and
// a constant that if-conversion makes of them keeps the point loop from
// vectorising.  (l - 0 is l, signed zeros included.)
template <class M>
OX_ALWAYS_INLINE double longitude_or_nan(double l, bool inside) {
    return M::reduce(l) - (inside ? 0.0 : failure_nan());
}

// The longitude of a point at angle theta = atan2(u, v) about the apex
// (u = n x, v = n rho0 - n y) on the parallel of arc factor n rho, for the
// central meridian `central`: the difference L is theta / n, or, where the
// cone is nearly a cylinder (|theta| < 1), x (theta / sin theta) / (n rho)
// with sin theta = u / hypot(u, v), which stays exact as n tends to 0 (0 at
// the apex, n rho = 0); lon = central + L reduced to [-pi, pi], NaN when |L|
// exceeds pi (the gap of the cone).  Returns M's range predicate of the
// reduction, taken on central + L without regard to the gap (a point of
// the gap outside the range goes to the exact formula, which gives the same
// NaN): a predicate that read the gap's NaN would keep the point loop from
// vectorising, as above.
template <class M>
OX_ALWAYS_INLINE bool cone_longitude(double central, double n, double theta, double u, double v, double x,
                                     double n_rho, double &lon) {
    const double ratio = theta == 0.0 ? 1.0 : theta * M::sqrt(u * u + v * v) / u;
    const double small = n_rho == 0.0 ? 0.0 : x * ratio / n_rho;
    const double L = std::fabs(theta) < 1.0 ? small : theta / n;
    const double l = central + L;
    lon = longitude_or_nan<M>(l, std::fabs(L) <= kPi * (1.0 + 1e-14));
    return M::reduce_ok(l);
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

// The frame components of the point (lon, lat) about a centre of latitude
// sin0, cos0 on the meridian `central`: the longitude taken about it, the
// sines and cosines, then frame_components.  s and co receive sin and cos
// of the latitude.  Returns M's range predicates.
template <class M>
OX_ALWAYS_INLINE bool point_components(double sin0, double cos0, double central, double lon, double lat, double &s,
                                       double &co, double &east, double &north, double &up) {
    const double d = lon - central;
    const double L = M::reduce(d);
    double sl, cl;
    M::sincos(lat, s, co);
    M::sincos(L, sl, cl);
    frame_components(sin0, cos0, s, co, sl, cl, east, north, up);
    return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(L);
}

// The latitude and longitude difference of the point whose vector has the
// components (east, north, up) in the frame of the centre (any positive
// length: only directions count), with the sine and cosine of the latitude:
// a rotation of the sphere, exact near the poles and the centre (no
// arcsine).
template <class M>
OX_ALWAYS_INLINE bool frame_position(double sin0, double cos0, double east, double north, double up, double &dlon,
                                     double &lat, double &sin_lat, double &cos_lat) {
    const double z = up * sin0 + north * cos0;
    const double xx = up * cos0 - north * sin0;
    const double r = M::sqrt(xx * xx + east * east);
    const double inv = 1.0 / M::sqrt(z * z + r * r);
    lat = M::atan2(z, r);
    dlon = M::atan2(east, xx);
    sin_lat = z * inv;
    cos_lat = r * inv;
    return M::atan2_ok(z, r) & M::atan2_ok(east, xx);
}

// The inverse of point_components: the longitude (reduced) and latitude of
// the point with the frame components (east, north, up) about a centre of
// latitude sin0, cos0 on the meridian `central`.  Returns M's range
// predicates.
template <class M>
OX_ALWAYS_INLINE bool point_position(double sin0, double cos0, double central, double east, double north, double up,
                                     double &lon, double &lat) {
    double L, s, co;
    const bool ok = frame_position<M>(sin0, cos0, east, north, up, L, lat, s, co);
    const double l = central + L;
    lon = M::reduce(l);
    return ok & M::reduce_ok(l);
}

// ---------------------------------------------------------------------------
// The stereographic projection of a conformal sphere.
// ---------------------------------------------------------------------------

// cos phi exp(psi(phi)) = m(phi) / t(phi) (Snyder eq. 21-34), the scale
// constant of a polar stereographic, from phi without dividing by cos phi:
// (1 + s) / E for s >= 0 and cos^2 phi E / (1 + |s|) below, E = exp(e
// atanh(e |s|)).  Set-up only.
inline double cos_exp_isometric(double e, double phi) {
    const double s = std::sin(phi), c = std::cos(phi);
    const double E = std::exp(e * std::atanh(e * std::fabs(s)));
    return s >= 0.0 ? (1.0 + s) / E : c * c * E / (1.0 + std::fabs(s));
}

// The stereographic projection, from the centre (sin0, cos0 of its
// latitude on the sphere), of the point with the frame components (east,
// north, up): x = k east / (1 + up), y = k north / (1 + up), k = 2 R k0
// (Snyder eqs. 21-2 to 21-4); the antipode of the centre fails.
OX_ALWAYS_INLINE void stereographic_xy(double k, double east, double north, double up, double &x, double &y) {
    const double d = 1.0 + up;
    const double g = d > 0.0 ? k / d : failure_nan();
    x = g * east;
    y = g * north;
}
// The frame components of the plane point (x, y) of that projection: with
// t = rho / k = tan(c/2), east = 2x / (k (1 + t^2)), north likewise, up =
// (1 - t^2) / (1 + t^2) (Snyder eqs. 21-15 to 21-17 without the arcsine).
OX_ALWAYS_INLINE void stereographic_components(double k, double x, double y, double &east, double &north,
                                               double &up) {
    const double xs = x / k, ys = y / k;
    const double t2 = xs * xs + ys * ys;
    const double g = 2.0 / (1.0 + t2);
    east = g * xs;
    north = g * ys;
    up = (1.0 - t2) / (1.0 + t2);
}

// The spherical form of "Stereographic" and "Double_Stereographic" (on a
// sphere the two are one projection): the origin (Central_Meridian,
// Latitude_Of_Origin), the scale factor k0, k = 2 a k0.  Refused: a scale
// factor that is not positive and finite, a latitude of origin beyond a
// pole, non-finite parameters.
struct StereographicSphere {
    static bool parameters_ok(const Frame &f) {
        return positive(f.p.scale_factor) && finite(f.p.central_meridian) &&
               finite(latitude_parameter(f.p.latitude_of_origin));
    }
    struct Constants {
        double sin0, cos0;
        double k;  // 2 a k0
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi0 = latitude_parameter(f.p.latitude_of_origin);
        c.sin0 = std::sin(phi0);
        c.cos0 = std::cos(phi0);
        c.k = 2.0 * f.a * f.p.scale_factor;
        return parameters_ok(f);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double s, co, east, north, up;
        const bool ok = point_components<M>(c.sin0, c.cos0, f.p.central_meridian, lon, lat, s, co, east, north, up);
        stereographic_xy(c.k, east, north, up, x, y);
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double east, north, up;
        stereographic_components(c.k, x, y, east, north, up);
        return point_position<M>(c.sin0, c.cos0, f.p.central_meridian, east, north, up, lon, lat);
    }
};

// ---------------------------------------------------------------------------
// The authalic latitude, exact near the poles.
// ---------------------------------------------------------------------------

// sin beta, cos beta and 1 - |sin beta| of the authalic latitude beta from
// sin phi, without the difference qp - q of nearly equal terms: for
// s = |sin phi|,
//     qp - q = (1 - s) (1 + e2 s) / (1 - e2 s^2) + (1 - e2) atanh(e (1 - s)
//              / (1 - e2 s)) / e,   1 - s = cos^2 phi / (1 + s),
// and 1 - |sin beta| = (qp - q) / qp.  inv_qp = 1 / qp.
template <class M>
OX_ALWAYS_INLINE void authalic_sin_cos(double e, double e2, double inv_qp, double sin_phi, double cos_phi,
                                       double &sin_beta, double &cos_beta, double &one_minus, bool &ok) {
    const double s = std::fabs(sin_phi);
    const double d = cos_phi * cos_phi / (1.0 + s);  // 1 - s
    const double z = e * d / (1.0 - e2 * s);
    const double t = 2.0 * z / (1.0 - z);  // atanh z = log1p(t) / 2
    ok = M::log1p_ok(t);
    one_minus = (d * (1.0 + e2 * s) / (1.0 - e2 * s * s) + (1.0 - e2) * 0.5 * M::log1p(t) / e) * inv_qp;
    sin_beta = std::copysign(1.0 - one_minus, sin_phi);
    cos_beta = M::sqrt(one_minus * (2.0 - one_minus));
}

// The sphere and ellipsoid forms of a projection whose one formula serves
// both (the sphere is e2 = 0): the projection's file defines its Constants
// and, beside them in its namespace, setup_constants(f, e2, c),
// forward_point<M> and inverse_point<M>, which these forms find there
// through the Constants' namespace (argument-dependent lookup).
template <class C>
struct OneFormulaSphere {
    using Constants = C;
    static bool setup(const Frame &f, Constants &c) { return setup_constants(f, 0.0, c); }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        return forward_point<M>(f, c, lon, lat, x, y);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        return inverse_point<M>(f, c, x, y, lon, lat);
    }
};
template <class C>
struct OneFormulaEllipsoid : OneFormulaSphere<C> {
    static bool setup(const Frame &f, C &c) { return setup_constants(f, f.e2, c); }
};

// The form of an azimuthal projection about (Central_Meridian,
// Latitude_Of_Origin) whose forms are Forms<sphere, oblique ellipsoid,
// north polar ellipsoid, south polar ellipsoid>.
inline int azimuthal_form(const Frame &f) {
    if (f.sphere()) return 0;
    if (!at_pole(f.p.latitude_of_origin)) return 1;
    return f.p.latitude_of_origin > 0.0 ? 2 : 3;
}

}  // namespace ox
