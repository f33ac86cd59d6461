// The isometric latitude psi of the ellipsoid and its inverse, written once
// over a function set M for the conformal projections that go through it
// (the oblique Mercators and Krovak):
//     psi = atanh(sin phi) - e atanh(e sin phi)
// (Snyder, Map Projections: A Working Manual, 1987, eq. 3-7 in logarithmic
// form; IOGP Guidance Note 7-2 writes t = exp(-psi)).  The first term is
// taken as ln((1 + |sin phi|) / cos phi) with the sign of phi, so that a
// latitude a hair off a pole stays finite and exact, the second as
// (e/2) log1p(2 e sin phi / (1 - e sin phi)), exact for any e below 1.
// The inverse goes through the conformal latitude chi = gd(psi) =
// atan(sinh psi) and the library's conformal-latitude series back to phi.
// On a sphere (kEllipsoid false) psi = atanh(sin phi) and phi = chi.
#pragma once

#include <cmath>

#include "projection/ox_fastmath.h"
#include "projection/ox_math.h"

namespace ox {

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
// the first eccentricity e (0 on a sphere).
template <class M, bool kEllipsoid>
OX_ALWAYS_INLINE double isometric_latitude(double e, double phi, bool &ok) {
    double s, c;
    M::sincos(phi, s, c);
    bool log_ok;
    double psi = atanh_of_sine<M>(s, c, 1.0, log_ok);
    ok = M::sincos_ok(phi) & log_ok;
    if constexpr (kEllipsoid) {
        const double es = e * s;
        const double t = 2.0 * es / (1.0 - es);
        psi -= 0.5 * e * M::log1p(t);
        ok = ok & M::log1p_ok(t);
    }
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

}  // namespace ox
