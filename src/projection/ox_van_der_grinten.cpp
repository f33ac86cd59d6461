// "Van_der_Grinten_I" (van der Grinten 1904), on a sphere of radius a (an
// ellipsoid's a): the whole world in a circle of radius pi a, meridians and
// parallels arcs of circles (Snyder, Map Projections: A Working Manual,
// 1987, eqs. 29-1 to 29-8).
//
// Forward.  With theta = asin|2 phi / pi|, A = |pi/L - L/pi| / 2,
//     G = cos theta / (sin theta + cos theta - 1),  P = G (2 / sin theta - 1),  Q = A^2 + G,
//     x = pi a [A (G - P^2) + sqrt(A^2 (G - P^2)^2 - (P^2 + A^2)(G^2 - P^2))] / (P^2 + A^2),
//     y = pi a |P Q - A sqrt((A^2 + 1)(P^2 + A^2) - Q^2)| / (P^2 + A^2),
// with the signs of L and phi.  A is infinite on the central meridian and G
// near the equator, and the differences cancel there, so the formulas are
// evaluated as written after dividing through by 1 + A^2: with s =
// A / sqrt(1 + A^2) = (1 - l^2) / (1 + l^2) and c = 1 / sqrt(1 + A^2) =
// 2 l / (1 + l^2), l = |L| / pi, both in [0, 1], and each square root taken
// on the side where it adds (the conjugate forms:
//     x = pi a c (P^2 - G^2) / (sqrt(D) - s (G - P^2))  for G < P^2,
//     y = pi a |s^2 (2G - 1) + G^2 c^2| / (P (s^2 + G c^2) + s sqrt(E)),
// D and E the discriminants so scaled).  G, P from sin theta = |2 phi / pi|
// and cos theta = sqrt((1 - sin)(1 + sin)) without cancellation.  The
// equator (|phi| < 1e-60 rad) and the poles are taken exactly.
//
// Inverse, derived from the construction: the meridian of L through the
// point (X, Y) = (x, |y|) / (pi a) is the circle through the poles and
// (l, 0), so
//     l = 2|X| / (sqrt((1 - r^2)^2 + 4 X^2) + 1 - r^2),  r^2 = X^2 + Y^2,
// and the parallel through it the circle through (0, tan(theta/2)) and the
// outline, whose tangent t = tan(theta/2) solves
//     (Y - t)(1 - Y t^2) = X^2 t^2,  0 <= t <= Y,
// with phi = pi t / (1 + t^2).  The cubic is solved for the depth b = Y - t
// (so that the pole is a simple root) by Newton's method kept inside the
// bracket [0, Y] (bisecting a step that leaves it), from the root of its
// quadratic part; six steps in the vectorised loop, the C library path
// continuing to at most 60 while the last step exceeds 1e-12 Y.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the circle.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kEquator = 1e-60;  // |phi| below this: on the equator
constexpr int kGrintenSteps = 6;
constexpr double kGrintenTolerance = 1e-12;

// One safeguarded Newton step on g(b) = b (1 - Y (Y - b)^2) - X^2 (Y - b)^2,
// g(lo) <= 0 <= g(hi); returns the size of the step.
OX_ALWAYS_INLINE double depth_step(double x2, double y, double &b, double &lo, double &hi) {
    const double t = y - b;
    const double g = b * (1.0 - y * t * t) - x2 * t * t;
    const double dg = 1.0 - y * t * t + 2.0 * b * y * t + 2.0 * x2 * t;
    lo = g <= 0.0 ? b : lo;
    hi = g <= 0.0 ? hi : b;
    const double next = b - g / dg;
    const bool within = (next >= lo) & (next <= hi);
    const double chosen = within ? next : 0.5 * (lo + hi);
    const double size = std::fabs(chosen - b);
    b = chosen;
    return size;
}

struct VanDerGrinten {
    static constexpr int32_t kCode = 43029;
    static constexpr const char *kName = "Van_der_Grinten_I";
    static constexpr Family kFamily = Family::kOther;  // polyconic-like, circular
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;

    struct Constants {
        double scale;  // pi a
    };
    static bool setup(const Frame &f, Constants &c) {
        c.scale = kPi * f.a;
        return finite(f.p.central_meridian);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        const double l = std::fabs(lambda) / kPi;
        const double sn = std::fabs(phi) / kHalfPi;
        const double cs = std::sqrt((1.0 - sn) * (1.0 + sn));
        const double l2 = l * l;
        const double s = (1.0 - l2) / (1.0 + l2), co = 2.0 * l / (1.0 + l2);
        const double s2 = s * s, c2 = co * co;
        const double g = cs * (1.0 + cs) / (sn * (1.0 + cs - sn));
        const double p = g * (2.0 - sn) / sn;
        const double p2 = p * p, gp = g - p2;
        const double d = std::sqrt(std::fabs(s2 * gp * gp - (p2 * c2 + s2) * (g * g - p2)));
        const double xa = gp >= 0.0 ? co * (s * gp + d) / (p2 * c2 + s2) : co * (p2 - g * g) / (d - s * gp);
        const double e = std::sqrt(std::fabs(s2 * (p2 + 1.0 - 2.0 * g) + c2 * (p2 - g * g)));
        const double ya = std::fabs(s2 * (2.0 * g - 1.0) + g * g * c2) / (p * (s2 + g * c2) + s * e);
        const bool equator = sn < kEquator, pole = sn >= 1.0;
        const double xu = equator ? l : (pole ? 0.0 * l : xa);  // 0 l: a NaN longitude stays NaN
        const double yu = equator ? 0.0 : (pole ? 1.0 : ya);
        x = std::copysign(c.scale * xu, lambda);
        y = std::copysign(c.scale * yu, phi);
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double xs = x / c.scale, ys = std::fabs(y / c.scale);
        const double x2 = xs * xs, r2 = x2 + ys * ys;
        const bool inside = r2 <= 1.0 + kEdgeSlack;
        const double rest = r2 < 1.0 ? 1.0 - r2 : 0.0;
        const double l = ratio(2.0 * std::fabs(xs), std::sqrt(rest * rest + 4.0 * x2) + rest, 1.0);
        const double yc = ys > 1.0 ? 1.0 : ys;
        // The depth b = Y - t, started from the root of b' b + b'' b^2 = X^2 Y^2.
        const double lin = 1.0 - yc * yc * yc + 2.0 * x2 * yc, quad = 2.0 * yc * yc - x2, con = x2 * yc * yc;
        const double disc = lin * lin + 4.0 * quad * con;
        double b = 2.0 * con / (lin + std::sqrt(disc > 0.0 ? disc : 0.0));
        b = b > 0.0 ? (b < yc ? b : yc) : 0.0;
        double lo = 0.0, hi = yc, size = 0.0;
        const double tolerance = kGrintenTolerance * yc;
#pragma GCC unroll 8
        for (int i = 0; i < kGrintenSteps; ++i) size = depth_step(x2, yc, b, lo, hi);
        if constexpr (M::kExact)
            for (int i = kGrintenSteps; i < kMaxSteps && !(size <= tolerance); ++i) size = depth_step(x2, yc, b, lo, hi);
        const double t = yc - b;
        bool ok;
        lon = longitude_of<M>(f, std::copysign(kPi * l, xs), ok);
        lat = inside ? std::copysign(kPi * t / (1.0 + t * t), y) : kNaN;
        return ok & ((size <= tolerance) | !inside);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(VanDerGrinten)
