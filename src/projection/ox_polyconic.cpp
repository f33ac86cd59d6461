// "Polyconic": the American polyconic projection (Snyder, Map Projections: A
// Working Manual, 1987, eqs. 18-1 to 18-3 on the sphere, 18-12 to 18-13 on
// the ellipsoid; IOGP Guidance Note 7-2, method 9818).  Every parallel is
// the arc of the circle of radius N cot phi touching the cone of that
// parallel, true to scale along the central meridian and the parallels:
//     E = L sin phi,
//     x = N cot phi sin E,  y = M - M0 + N cot phi (1 - cos E),
// written with h = E/2 and r = sin(h)/h as
//     x = N cos phi L r cos h,  y = M - M0 + N cos phi L r sin h,
// exact on and near the equator (x = a L, y = -M0 there).
//
// Inverse: the latitude of the circle through (x, Y), Y = y + M0, is the
// root of
//     g(phi) = (x^2 + D^2) sin phi - 2 D N cos phi,  D = Y - M(phi),
// on [0, phi(M = |Y|)] for the north (the south is the mirror image):
// g(0) = -2 a |Y| < 0, g >= 0 at the upper end, and g'(phi) = cos phi (x^2 +
// D^2 + 2 rho N) > 0 (rho the meridian radius), so the root is unique (the
// map is one to one).  Newton's method on g from the upper end, kept inside
// the bracket by bisection when a step would leave it (a step onto an end
// of the bracket is taken), ends when a step is below 1e-15 radians: at
// most 64 steps (the bisections alone reach 1e-15 in 51), 2 to 4 within 20
// degrees of the central meridian, up to about 20 at 180 degrees.  The
// inline path takes kFastSteps steps without a branch and gives the points
// whose last step was not below 1e-15 to the C library path.  Then E =
// atan2(x sin phi, N cos phi - D sin phi) and L = E / sin phi.  On a sphere
// the same formulas with M = a phi and N = a.
//
// Domain: the whole globe.  The inverse refuses points outside the image
// (a longitude more than 180 degrees from the central meridian).
//
// Refused: a latitude of origin beyond a pole, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

constexpr int kMaxSteps = 64;
constexpr int kFastSteps = 6;
constexpr double kConverged = 1e-15;

struct Constants {
    double e2;  // 0 on a sphere
    double m0;  // M0
    MeridianArc arc;
};

bool setup_constants(const Frame &f, double e2, Constants &c) {
    const double phi0 = latitude_parameter(f.p.latitude_of_origin);
    if (!finite(f.p.central_meridian) || !finite(phi0)) return false;
    c.e2 = e2;
    c.arc.init(f.a, e2);
    c.m0 = c.arc.arc(phi0, std::sin(phi0), std::cos(phi0));
    return std::isfinite(c.m0);
}

template <class M>
OX_ALWAYS_INLINE bool forward_point(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                    double &y) {
    const double d = lon - f.p.central_meridian;
    const double L = M::reduce(d);
    double s, co;
    M::sincos(lat, s, co);
    const double n_cos = f.a * co / M::sqrt(1.0 - c.e2 * s * s);  // N cos phi
    const double h = 0.5 * L * s;
    double sh, ch;
    M::sincos(h, sh, ch);
    const double arc = n_cos * L * sine_ratio(sh, h);
    x = arc * ch;
    y = c.arc.arc(lat, s, co) - c.m0 + arc * sh;
    return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(h);
}

// One step of Newton's method on g at phi for the point (x, Y) (x2 = x^2),
// kept inside the bracket [lo, hi] of the root by bisection when the step
// would leave it (also for a NaN step); the bracket is narrowed to phi on
// the side of g's sign.  Returns |the change of phi|.
template <class M>
OX_ALWAYS_INLINE double newton_step(const Frame &f, const Constants &c, double x2, double Y, double &phi, double &lo,
                                    double &hi) {
    double s, co;
    M::sincos(phi, s, co);
    const double w2 = 1.0 - c.e2 * s * s;
    const double nu = f.a / M::sqrt(w2);
    const double rho = nu * (1.0 - c.e2) / w2;
    const double D = Y - c.arc.arc(phi, s, co);
    const double g = (x2 + D * D) * s - 2.0 * D * nu * co;
    const double slope = co * (x2 + D * D + 2.0 * rho * nu);
    const bool below = g < 0.0;
    lo = below ? phi : lo;
    hi = below ? hi : phi;
    const double step = phi - g / slope;
    const double next = ((step >= lo) & (step <= hi)) ? step : 0.5 * (lo + hi);
    const double change = std::fabs(next - phi);
    phi = next;
    return change;
}

// The latitude in [0, pi/2] of the parallel through (x, Y), Y > 0, finite
// x.  The C library path iterates until a step is below kConverged (at most
// kMaxSteps); the inline path takes kFastSteps steps, without a branch, and
// is false in `ok` when the last one was not below kConverged (the point
// goes to the C library path).
template <class M>
OX_ALWAYS_INLINE double parallel_through(const Frame &f, const Constants &c, double x, double Y, bool &ok) {
    const double x2 = x * x;
    double lo = 0.0;
    const double top = c.arc.template latitude<M>(Y < c.arc.quarter ? Y : c.arc.quarter, ok);
    double hi = Y < c.arc.quarter ? top : kHalfPi;
    double phi = hi;
    if constexpr (M::kExact) {
        for (int step = 0; step < kMaxSteps; ++step)
            if (!(newton_step<M>(f, c, x2, Y, phi, lo, hi) > kConverged)) break;
    } else {
        double change = 0.0;
#pragma GCC unroll 8
        for (int step = 0; step < kFastSteps; ++step) change = newton_step<M>(f, c, x2, Y, phi, lo, hi);
        ok = ok & (change <= kConverged);
    }
    return phi;
}

// (Without a branch: a point that is not iterated, on the equator or not
// finite, iterates on harmless values and takes its own result by a select.)
template <class M>
OX_ALWAYS_INLINE bool inverse_point(const Frame &f, const Constants &c, double x, double y, double &lon,
                                    double &lat) {
    const double Y = y + c.m0;
    const double ay = std::fabs(Y);
    const bool iterate = (ay > 0.0) & (ay <= kLargestFinite) & (std::fabs(x) <= kLargestFinite);
    const double xi = iterate ? x : 0.0, yi = iterate ? ay : f.a;
    bool ok_root;
    const double root = parallel_through<M>(f, c, xi, yi, ok_root);
    double s, co;
    M::sincos(root, s, co);
    const double nu = f.a / M::sqrt(1.0 - c.e2 * s * s);
    const double D = yi - c.arc.arc(root, s, co);
    const double u = xi * s, v = nu * co - D * s;
    const double L = (iterate & (s > 0.0)) ? M::atan2(u, v) / s : x / f.a;
    const double phi = iterate ? root : (ay == 0.0 ? 0.0 : failure_nan());  // (NaN or infinite input)
    const double l = f.p.central_meridian + L;
    lon = longitude_or_nan<M>(l, std::fabs(L) <= kPi * (1.0 + 1e-14));
    lat = std::copysign(phi, Y);
    // The reduction's predicate is taken on l before the NaN of a point
    // outside the image (a predicate that read that NaN would keep the
    // point loop from vectorising; such a point out of range goes to the C
    // library path, which gives the same NaN).
    return ((ok_root & M::atan2_ok(u, v)) | !iterate) & M::reduce_ok(l);
}

// One formula serves both forms (on a sphere e2 = 0).
struct Polyconic : SphereAndEllipsoid<OneFormulaSphere<Constants>, OneFormulaEllipsoid<Constants>> {
    static constexpr int32_t kCode = 43021;
    static constexpr const char *kName = "Polyconic";
    static constexpr Family kFamily = Family::kPolyconic;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kOrigin;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Polyconic)
