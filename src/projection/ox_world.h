// What the world projections share: the longitude and latitude handling of
// their forward and inverse formulas, the accurate forms near the poles, a
// bounded Newton iteration, and the Sinusoidal, Mollweide and Aitoff
// formulas on the unit sphere, which "Goode_Homolosine", "Winkel_II" and
// "Winkel_Tripel" reuse.
//
// Every world projection converts every point of the sphere (a latitude
// beyond a pole is taken at the pole); an inverse refuses a point outside
// the map (beyond its outline or in a gap between lobes) with NaN, which
// the point loop turns into the failure value, and so does not count it.
//
// Near a pole many of these projections are flat: sin phi, not phi, is what
// their formulas carry.  There they work with the gap g = 1 - sin|phi|,
// computed without cancellation as cos^2 phi / (1 + |sin phi|), and take
// phi back as pi/2 - 2 asin(sqrt(g / 2)) (1 - sin phi = 2 sin^2(pi/4 -
// phi/2)), which keeps the latitude to an ulp where asin(sin phi) would
// lose half of its digits.
#pragma once

#include <cmath>
#include <limits>

#include "projection/ox_projdef.h"

namespace ox::world {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kSqrt2 = 1.4142135623730951;
// Relative room for rounding at the outline of a map: a point that far
// beyond an edge is taken as on it; one further out is refused.
inline constexpr double kEdgeSlack = 1e-12;
inline constexpr double kLatitudeEdge = kHalfPi * (1.0 + kEdgeSlack);
// Iterations: the steps every point takes in the vectorised loop, and the
// bound of the C library path, which continues while the last step is
// larger than kStepTolerance relative to the unknown (a point the
// vectorised loop leaves there is flagged and converted again on that
// path).  After such a step Newton's method is within about the square of
// it: far below 1e-12 rad.
inline constexpr int kMaxSteps = 60;
inline constexpr double kStepTolerance = 1e-8;

// The constants of a projection on the sphere of radius a whose only
// parameter besides the false origin is the central meridian: a, for any
// finite central meridian.  A definition (or its sphere form) derives them.
struct OnSphereOfRadiusA {
    struct Constants {
        double a;
    };
    static bool setup(const Frame &f, Constants &c) {
        c.a = f.a;
        return finite(f.p.central_meridian);
    }
};

// The longitude difference from the central meridian, reduced to [-pi, pi].
template <class M>
OX_ALWAYS_INLINE double lambda_of(const Frame &f, double lon, bool &ok) {
    const double d = lon - f.p.central_meridian;
    ok = M::reduce_ok(d);
    return M::reduce(d);
}

// A latitude beyond a pole taken at the pole (NaN stays NaN).
OX_ALWAYS_INLINE double clamp_latitude(double lat) {
    return std::fabs(lat) > kHalfPi ? std::copysign(kHalfPi, lat) : lat;
}

// 1 - |sin phi| from phi, sin phi and cos phi, without cancellation; 0 at
// the poles (+-pi/2 in double precision, whose cosine is 6e-17, not 0).
OX_ALWAYS_INLINE double polar_gap(double phi, double s, double c) {
    return std::fabs(phi) >= kHalfPi ? 0.0 : c * c / (1.0 + std::fabs(s));
}

// The latitude of the gap g = 1 - sin|phi| (0 <= g <= 1), with the sign of
// `sign` (its sign bit: -0 gives the southern latitude).
template <class M>
OX_ALWAYS_INLINE double latitude_of_gap(double g, double sign) {
    const double h = 0.5 * (g < 0.0 ? 0.0 : (g > 1.0 ? 1.0 : g));
    return std::copysign(kHalfPi - 2.0 * M::asin(std::sqrt(h)), sign);
}

// x - sin x for 0 <= x <= pi to full relative precision, given sin x: the
// series x^3/3! - x^5/5! + ... - x^17/17! below 1/2 (the first term left
// out is below 2e-20 of the sum), the difference above.
OX_ALWAYS_INLINE double x_minus_sin(double x, double sin_x) {
    const double z = x * x;
    const double series =
        x * z *
        (1.0 / 6.0 -
         z * (1.0 / 120.0 -
              z * (1.0 / 5040.0 -
                   z * (1.0 / 362880.0 -
                        z * (1.0 / 39916800.0 -
                             z * (1.0 / 6227020800.0 - z * (1.0 / 1307674368000.0 - z * (1.0 / 355687428096000.0))))))));
    return x < 0.5 ? series : x - sin_x;
}

// atan2(s, c) for s, c >= 0, not both 0, without the range restrictions of
// the inline atan2: the smaller ratio goes to atan.
template <class M>
OX_ALWAYS_INLINE double angle_of(double s, double c) {
    const double low = M::atan(s / c), high = kHalfPi - M::atan(c / s);
    return s <= c ? low : high;
}

// x / w, the longitude difference of a point x from the central meridian on
// a parallel of width w per radian; at a pointed pole (w = 0, or so small
// that the quotient leaves the map) a point within the edge slack of the
// pole, |x| <= kEdgeSlack * scale (scale: the width per radian on the
// equator, in x's unit), is the pole, at the central meridian.  Where y is
// quadratic in the width near the pole (Mollweide's sqrt 2 cos(u/2)), y
// rounds to the pole's while the width is still up to kPoleRounding: such a
// map passes a larger slack.
inline constexpr double kPoleRounding = 1.5e-8;  // sqrt(2.2e-16)
OX_ALWAYS_INLINE double ratio(double x, double w, double scale, double slack = kEdgeSlack) {
    const double q = x / w;
    const bool at_pole = std::fabs(x) <= slack * scale;
    // (0 x, not the constant 0, which the compiler would carry into the
    // rest of the formula as a path of its own: a branch in the point loop)
    return (at_pole & !(std::fabs(q) <= kPi)) ? 0.0 * x : q;
}

// The relative error that the rounding of y carries into a width computed
// as sqrt(1 - s^2) = c from s (2.2e-16 / c^2), or into 1 + c (2.2e-16 / c),
// capped: the room an inverse gives its side edges besides kEdgeSlack, so
// that the points of the outline near a pole come back.  (Beyond the cap the
// width is below 1e-6 of the equator's, and points that far outside it are
// refused.)
inline constexpr double kRoundoff = 4.4e-16;
inline constexpr double kConditionCap = 1e-3;
OX_ALWAYS_INLINE double width_slack(double relative_error) {
    return relative_error < kConditionCap ? relative_error : kConditionCap;
}

// The longitude of an inverse, lambda (radians from the central meridian)
// reduced about the central meridian; a lambda within the slack beyond the
// side edges (kEdgeSlack plus `extra`, relative) is taken on the edge, one
// further out is refused (NaN).
template <class M>
OX_ALWAYS_INLINE double longitude_of(const Frame &f, double lambda, bool &ok, double extra = 0.0) {
    const bool inside = std::fabs(lambda) <= kPi * (1.0 + kEdgeSlack + extra);
    const double on_map = std::fabs(lambda) > kPi ? std::copysign(kPi, lambda) : lambda;
    const double l = f.p.central_meridian + on_map;
    ok = M::reduce_ok(l) | !inside;
    return inside ? M::reduce(l) : kNaN;
}

// A latitude of an inverse, NaN beyond the poles (with room for rounding),
// taken at the pole just beyond it.
OX_ALWAYS_INLINE double latitude_within(double phi) {
    return std::fabs(phi) <= kLatitudeEdge ? clamp_latitude(phi) : kNaN;
}

// Newton's method on the unknown v: `step(v)` returns the correction to
// add.  The vectorised loop takes Steps steps (enough everywhere, each
// formula states why); the C library path continues, to kMaxSteps, while
// the last step is larger than kStepTolerance |v|.  Returns whether it was
// not.
template <class M, int Steps, class Step>
OX_ALWAYS_INLINE bool newton(double &v, Step &&step) {
    double dv = 0.0;
    // (unrolled: a loop left inside the point loop keeps it scalar)
#pragma GCC unroll 8
    for (int i = 0; i < Steps; ++i) {
        dv = step(v);
        v += dv;
    }
    if constexpr (M::kExact)
        for (int i = Steps; i < kMaxSteps && !(std::fabs(dv) <= kStepTolerance * std::fabs(v)); ++i) {
            dv = step(v);
            v += dv;
        }
    return std::fabs(dv) <= kStepTolerance * std::fabs(v);
}

// Solves h(v) = target for v in [0, v_max] by Newton's method (Steps steps,
// as `newton`), where h(v, sh, ch, dh) gives h and its derivative dh from v
// and the sine and cosine of v/2: one sine and cosine per step.  sh and ch
// are left as those of the solution (the last pair carried to it to first
// order, exact to the square of the last step).
template <class M, int Steps, class H>
OX_ALWAYS_INLINE bool solve_half_angle(double target, double v_max, double &v, double &sh, double &ch, H &&h) {
    sh = 0.0;
    ch = 1.0;
    return newton<M, Steps>(v, [&](double at) {
        M::sincos(0.5 * at, sh, ch);
        double dh;
        const double value = h(at, sh, ch, dh);
        const double next = at + (target - value) / dh;
        const double clipped = next > v_max ? v_max : (next < 0.0 ? 0.0 : next);
        const double half = 0.5 * (clipped - at);
        const double s_new = sh + ch * half, c_new = ch - sh * half;
        sh = s_new;
        ch = c_new;
        return clipped - at;
    });
}

// ---------------------------------------------------------------------------
// Sinusoidal on the unit sphere (Snyder, Map Projections: A Working Manual,
// 1987, eqs. 30-1, 30-2): x = lambda cos phi, y = phi.
// ---------------------------------------------------------------------------
template <class M>
OX_ALWAYS_INLINE bool sinusoidal_forward(double lambda, double phi, double &x, double &y) {
    double s, c;
    M::sincos(phi, s, c);
    x = lambda * c;
    y = phi;
    return M::sincos_ok(phi);
}
// (phi within the map; lambda is x / cos phi, finite: the cosine of +-pi/2
// in double precision is 6e-17, where the forward put x = 6e-17 lambda.)
template <class M>
OX_ALWAYS_INLINE bool sinusoidal_inverse(double x, double phi, double &lambda) {
    double s, c;
    M::sincos(phi, s, c);
    lambda = x / c;
    return M::sincos_ok(phi);
}

// ---------------------------------------------------------------------------
// Mollweide on the unit sphere (Snyder 1987, eqs. 31-1 to 31-3):
//     x = (2 sqrt 2 / pi) lambda cos theta,  y = sqrt 2 sin theta,
//     2 theta + sin 2 theta = pi sin phi.
// The auxiliary angle is solved for as u = pi - 2|theta| in [0, pi], which
// the equation turns into u - sin u = pi (1 - sin|phi|): near a pole u is
// small and this form keeps its digits.  Start: w = (6 pi g)^(1/3) and
// u = w + w^3/60 + w^5/1400, the series inversion of u - sin u = w^3/6
// (within 2 % of u at the equator, closer towards the poles); three Newton
// steps then leave below 5e-16 rad everywhere (checked on a dense grid
// from the equator to 1e-30 rad from the pole).
// ---------------------------------------------------------------------------
inline constexpr int kMollweideSteps = 3;
// The gap at which the iteration starts at the pole itself (u - sin u
// there is 0, where Newton's method has a triple root).
inline constexpr double kSmallestGap = 1e-300;

// cos theta and sin|theta| of the latitude whose gap is g = 1 - sin|phi|.
template <class M>
OX_ALWAYS_INLINE bool mollweide_angle(double g, double &cos_theta, double &sin_abs_theta) {
    const double target = kPi * (g < kSmallestGap ? kSmallestGap : g);  // u - sin u (NaN stays NaN)
    const double l = M::log(6.0 * target) / 3.0;
    const double w = M::exp(l), w2 = w * w;
    double u = w * (1.0 + w2 * (1.0 / 60.0 + w2 * (1.0 / 1400.0)));
    u = u > kPi ? kPi : u;
    // (1 - cos u = 2 sin^2(u/2))
    const bool converged = solve_half_angle<M, kMollweideSteps>(
        target, kPi, u, cos_theta, sin_abs_theta, [](double v, double sh, double ch, double &dh) {
            dh = 2.0 * sh * sh;
            return x_minus_sin(v, 2.0 * sh * ch);
        });
    // (6 target lies in [6 pi 1e-300, 6 pi] and l in [-230, 1]: within the
    // ranges of log and exp.  A NaN gap leaves the last step NaN, which
    // `converged` reports; a flag of the kernels' ranges besides would only
    // keep the point loop from vectorising.)
    return converged;
}

// The latitude and cos theta of a point whose sin theta is given (|sin
// theta| <= 1): 1 - sin|phi| = (u - sin u) / pi with u = pi - 2|theta|.
template <class M>
OX_ALWAYS_INLINE double mollweide_latitude(double sin_theta, double &cos_theta) {
    const double st = std::fabs(sin_theta);
    const double ct = std::sqrt((1.0 - st) * (1.0 + st));
    const double u = 2.0 * angle_of<M>(ct, st);
    cos_theta = ct;
    return latitude_of_gap<M>(x_minus_sin(u, 2.0 * ct * st) / kPi, sin_theta);
}

// ---------------------------------------------------------------------------
// Aitoff on the unit sphere (Snyder, Flattening the Earth, 1993, p. 131):
// the equatorial azimuthal equidistant projection of (lambda/2, phi) with x
// doubled,
//     x = 2 cos phi sin(lambda/2) / sinc alpha,  y = sin phi / sinc alpha,
//     cos alpha = cos phi cos(lambda/2),  sinc alpha = sin alpha / alpha,
// with sin alpha = sqrt(sin^2 phi + cos^2 phi sin^2(lambda/2)) (no
// cancellation near the centre) and alpha = atan2(sin alpha, cos alpha).
// ---------------------------------------------------------------------------
template <class M>
OX_ALWAYS_INLINE bool aitoff_forward(double lambda, double phi, double &x, double &y) {
    double sp, cp, sl, cl;
    M::sincos(phi, sp, cp);
    M::sincos(0.5 * lambda, sl, cl);
    const double e = cp * sl;                         // cos phi sin(lambda/2)
    const double sin_alpha = std::sqrt(sp * sp + e * e);
    const double cos_alpha = cp * cl;                 // >= 0 on the map
    const double alpha = angle_of<M>(sin_alpha, cos_alpha < 0.0 ? 0.0 : cos_alpha);
    const double k = sin_alpha > 0.0 ? alpha / sin_alpha : 1.0;  // 1 / sinc alpha
    x = 2.0 * e * k;
    y = sp * k;
    return M::sincos_ok(phi) & M::sincos_ok(0.5 * lambda);
}

}  // namespace ox::world
