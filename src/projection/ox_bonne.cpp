// "Bonne": Bonne's pseudoconic equal-area projection about the standard
// parallel phi1 (Snyder, Map Projections: A Working Manual, 1987, eqs. 19-1
// to 19-4 on the sphere, 19-7 to 19-14 on the ellipsoid; IOGP Guidance Note
// 7-2, method 9827).  With the meridian arc M and m = cos phi / sqrt(1 - e2
// sin^2 phi),
//     rho = a m1 / sin phi1 + M1 - M,  E = a m L / rho,
//     x = rho sin E,  y = a m1 / sin phi1 - rho cos E.
// Written with the arc u = a m L along the parallel and the curvature
// kappa = 1 / rho = kappa1 / (1 + kappa1 (M1 - M)), kappa1 = sin phi1 /
// (a m1):
//     x = u sin(E)/E,  y = (M - M1) + u sin(E/2) sin(E/2)/(E/2),  E = u kappa,
// which stays exact as phi1 tends to the equator (kappa1 -> 0, the
// sinusoidal limit, which phi1 = 0 gives exactly).  Inverse, without
// forming rho:
//     M = M1 - (kappa1 (x^2 + y^2) - 2y) / (1 + hypot(kappa1 x, 1 - kappa1 y)),
//     E = atan2(kappa1 x, 1 - kappa1 y),  u = x E / sin E (or E / kappa),
//     L = u / (a m),
// phi from M by the rectifying latitude's series; no iteration.  On a
// sphere M = a phi and m = cos phi.  A southern standard parallel is the
// mirror image (kappa1 < 0).
//
// Domain: the whole globe (the poles are points).  The inverse refuses
// points outside the image (beyond a pole, or more than 180 degrees of
// longitude along their parallel).
//
// Refused: a standard parallel at or beyond a pole (Werner's limit, where
// the parallel of origin is a point), non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

struct Constants {
    double e2;      // 0 on a sphere
    double kappa1;  // sin phi1 / (a m1)
    double m1;      // M1, the arc of the standard parallel
    MeridianArc arc;
};

bool setup_constants(const Frame &f, double e2, Constants &c) {
    const double phi1 = f.p.standard_parallel_1;
    if (!finite(f.p.central_meridian) || !(std::fabs(phi1) < kHalfPi) || at_pole(phi1)) return false;
    const double s1 = std::sin(phi1), c1 = std::cos(phi1);
    c.e2 = e2;
    c.arc.init(f.a, e2);
    c.kappa1 = s1 * std::sqrt(1.0 - e2 * s1 * s1) / (f.a * c1);
    c.m1 = c.arc.arc(phi1, s1, c1);
    return std::isfinite(c.kappa1);
}

constexpr double kPoleBand = (kHalfPi + 1.0) * kZero;

template <class M>
OX_ALWAYS_INLINE bool forward_point(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                    double &y) {
    const double d = lon - f.p.central_meridian;
    const double L = M::reduce(d);
    double s, co;
    M::sincos(lat, s, co);
    const double m = c.arc.arc(lat, s, co);
    const double u = f.a * co / M::sqrt(1.0 - c.e2 * s * s) * L;
    const double half = 0.5 * u * c.kappa1 / (1.0 + c.kappa1 * (c.m1 - m));
    double sh, ch;
    M::sincos(half, sh, ch);
    const double r = sine_ratio(sh, half);
    x = u * r * ch;
    y = (m - c.m1) + u * r * sh;
    return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(half);
}

template <class M>
OX_ALWAYS_INLINE bool inverse_point(const Frame &f, const Constants &c, double x, double y, double &lon,
                                    double &lat) {
    const double p = c.kappa1 * x, q = 1.0 - c.kappa1 * y;
    const double hyp = M::sqrt(p * p + q * q);
    const double m = c.m1 - (c.kappa1 * (x * x + y * y) - 2.0 * y) / (1.0 + hyp);
    bool ok_lat;
    const double phi = c.arc.template latitude<M>(m, ok_lat);
    const double e_angle = M::atan2(p, q);
    const double ratio = e_angle == 0.0 ? 1.0 : e_angle * hyp / p;  // E / sin E
    const double u = std::fabs(e_angle) < 1.0 ? x * ratio : e_angle * (1.0 + c.kappa1 * (c.m1 - m)) / c.kappa1;
    double s, co;
    M::sincos(phi, s, co);
    const double am = f.a * co / M::sqrt(1.0 - c.e2 * s * s);
    const bool pole = std::fabs(std::fabs(phi) - kHalfPi) <= kPoleBand;
    const double L = pole ? 0.0 : u / am;
    const double l = f.p.central_meridian + L;
    const bool inside = std::fabs(L) <= kPi * (1.0 + 1e-14);
    lon = longitude_or_nan<M>(l, inside);
    lat = phi;
    // phi is NaN or within a right angle, in the sine's range.  The
    // reduction's predicate is taken on l before the NaN of a point outside
    // the image (a predicate that read that NaN would keep the point loop
    // from vectorising; such a point out of range goes to the exact
    // formula, which gives the same NaN).
    return ok_lat & M::atan2_ok(p, q) & M::reduce_ok(l);
}

// One formula serves both forms (on a sphere e2 = 0).
struct Bonne : SphereAndEllipsoid<OneFormulaSphere<Constants>, OneFormulaEllipsoid<Constants>> {
    static constexpr int32_t kCode = 43024;
    static constexpr const char *kName = "Bonne";
    static constexpr Family kFamily = Family::kPseudoconic;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kStandardParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;
    static constexpr bool kCountsEveryPoint = false;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Bonne)
