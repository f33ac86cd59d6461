// Winkel's three projections (1914, 1918, 1921), on a sphere of radius a
// (an ellipsoid's a), each the mean of the equirectangular projection with
// standard parallel phi1 ("Standard_Parallel_1") and another projection
// (Snyder, Flattening the Earth, 1993, pp. 231-232; Snyder and Voxland, An
// Album of Map Projections, 1989, p. 134).  L is the longitude from the
// central meridian.
//
//   "Winkel_I"      with the sinusoidal:
//                   x = a L (cos phi1 + cos phi) / 2,  y = a phi.
//   "Winkel_II"     with Mollweide's projection scaled to the same equator
//                   and poles (x = L cos theta, y = (pi/2) sin theta):
//                   x = a L (cos phi1 + cos theta) / 2,
//                   y = a (phi + (pi/2) sin theta) / 2,
//                   2 theta + sin 2 theta = pi sin phi (ox_world.h).
//   "Winkel_Tripel" with Aitoff's projection (ox_world.h):
//                   x = a (L cos phi1 + x_aitoff) / 2,  y = a (phi + y_aitoff) / 2.
//
// Inverses.  Winkel I: closed.  Winkel II: y depends on phi alone.  With
// Mollweide's auxiliary angle as u = pi - 2|theta| (ox_world.h) and the
// depth d = pi/2 - |y|/a, the definition of y gives the colatitude w =
// pi/2 - |phi| in closed form, w(u) = 2 d - pi sin^2(u/4), and Mollweide's
// equation becomes one equation in u without an inverse sine,
//     F(u) = (u - sin u) / pi - (1 - cos w(u)) = 0,
//     F'(u) = (1 - cos u) / pi + (pi/4) sin w sin(u/2) > 0,
// solved by Newton's method.  Near a pole d grows as u^(3/2) (u = 0 at the
// pole, pi on the equator), so the start is u = s^2 with s = z P(z), z =
// d^(1/3) and P of degree 6 (least squares against the exact solution,
// relative error of s below 4e-5 from the pole to the equator, P(0) =
// (2 sqrt(3 pi))^(1/3), the pole's limit).  Newton's method keeps its
// relative rate at any scale of u, so two steps leave a last step below
// 1.4e-9 u everywhere (checked on a dense grid of d from 1e-30 to pi/2),
// and u within about its square.  Within kPoleDepth (1e-30 rad) of a pole,
// w = 2 d to 1e-40 rad.  Then L from x.
// Winkel Tripel: Newton's method on both coordinates with the analytic
// Jacobian, started from phi = y/a and L = 2x / (a (cos phi1 + cos phi)),
// the unknowns kept on the map; kTripelSteps steps in the vectorised loop.
// Both continue on the C library path, to at most 60 steps, for a point
// whose last step was still larger than 1e-8 (relative to u, for Winkel
// II, and 1e-9 rad for the Tripel); a Tripel point still not converged
// there lies outside the map and is refused.
//
// Refused: a non-finite central meridian or standard parallel, a standard
// parallel beyond a pole (at a pole for Winkel Tripel, whose poles would
// then be points and its inverse singular).  Every point of the sphere is
// converted; the inverses refuse points outside the map's outline.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

struct WinkelConstants {
    double a, cos_phi1;
};
bool winkel_setup(const Frame &f, WinkelConstants &c) {
    const double phi1 = f.p.standard_parallel_1;
    c.a = f.a;
    c.cos_phi1 = std::cos(phi1);
    return finite(f.p.central_meridian) && finite(phi1) && std::fabs(phi1) <= kHalfPi;
}

template <class Unit>
struct WinkelForm {
    using Constants = WinkelConstants;
    static bool setup(const Frame &f, Constants &c) { return winkel_setup(f, c) && Unit::usable(c); }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        ok &= Unit::template forward<M>(c, lambda, clamp_latitude(lat), x, y);
        x *= c.a;
        y *= c.a;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double lambda, extra = 0.0;
        const bool ok = Unit::template inverse<M>(c, x / c.a, y / c.a, lambda, lat, extra);
        bool in_range;
        lon = longitude_of<M>(f, lambda, in_range, extra);
        return ok & in_range;
    }
};

struct UnitI {
    static bool usable(const WinkelConstants &) { return true; }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const WinkelConstants &c, double lambda, double phi, double &x, double &y) {
        double s, co;
        M::sincos(phi, s, co);
        x = 0.5 * lambda * (c.cos_phi1 + co);
        y = phi;
        return M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const WinkelConstants &c, double x, double y, double &lambda, double &phi, double &extra) {
        phi = latitude_within(y);
        double s, co;
        M::sincos(phi, s, co);
        lambda = ratio(2.0 * x, c.cos_phi1 + co, 1.0 + c.cos_phi1);
        extra = 0.0;
        return true;  // |phi| <= pi/2 or NaN: within the range of sincos
    }
};

constexpr int kWinkelIISteps = 2;
// The start of the inverse: s / z = P(z), z = d^(1/3) (coefficients of z^0
// to z^6).
constexpr double kWinkelIIStart[7] = {1.8311412797595623,  -0.6717540895362643, 0.705341145235908,
                                      -0.7831211193490938, 0.7762428662315926,  -0.45849238458295816,
                                      0.12454139970631321};
constexpr double kPoleDepth = 1e-30;  // rad

struct UnitII {
    static bool usable(const WinkelConstants &) { return true; }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const WinkelConstants &c, double lambda, double phi, double &x, double &y) {
        double s, co, cos_theta, sin_theta;
        M::sincos(phi, s, co);
        const bool ok = mollweide_angle<M>(polar_gap(phi, s, co), cos_theta, sin_theta);
        x = 0.5 * lambda * (c.cos_phi1 + cos_theta);
        y = std::copysign(0.5 * (std::fabs(phi) + kHalfPi * sin_theta), phi);
        return ok & M::sincos_ok(phi);
    }
    // The colatitude w of the depth d and Mollweide's u (sh, ch: the sine
    // and cosine of u/2): w = 2 d - pi sin^2(u/4), sin^2(u/4) = (1 - cos(u/2)) / 2.
    static OX_ALWAYS_INLINE double colatitude(double d, double sh, double ch) {
        return 2.0 * d - 0.5 * kPi * sh * sh / (1.0 + ch);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const WinkelConstants &c, double x, double y, double &lambda, double &phi,
                                         double &extra) {
        const double d0 = kHalfPi - std::fabs(y);
        const bool inside = d0 >= -kHalfPi * kEdgeSlack;
        // (0 d0 keeps the solve from being folded for the constant, which
        // leaves a branch in the point loop; NaN stays NaN)
        const double depth = d0 < kPoleDepth ? kPoleDepth + 0.0 * d0 : d0;
        const double z = M::exp(M::log(depth) / 3.0);
        const double *P = kWinkelIIStart;
        const double s = z * (P[0] + z * (P[1] + z * (P[2] + z * (P[3] + z * (P[4] + z * (P[5] + z * P[6]))))));
        double u = s * s > kPi ? kPi : s * s;
        double sh, ch;  // sin and cos of u/2
        // F(u) = (u - sin u) / pi - (1 - cos w(u)), F'(u) = (1 - cos u) / pi + sin w (pi/4) sin(u/2).
        const bool converged =
            solve_half_angle<M, kWinkelIISteps>(0.0, kPi, u, sh, ch, [depth](double v, double sh_v, double ch_v, double &dF) {
                double sw, cw;  // of w/2
                M::sincos(0.5 * colatitude(depth, sh_v, ch_v), sw, cw);
                dF = 2.0 * sh_v * sh_v / kPi + 0.5 * kPi * sw * cw * sh_v;
                return x_minus_sin(v, 2.0 * sh_v * ch_v) / kPi - 2.0 * sw * sw;
            });
        const double w_of_u = colatitude(depth, sh, ch);
        const double w = d0 < kPoleDepth ? (d0 < 0.0 ? 0.0 : 2.0 * d0) : w_of_u;
        const double cos_theta = sh;  // cos theta = sin(u/2)
        phi = inside ? std::copysign(kHalfPi - w, y) : kNaN;
        lambda = ratio(2.0 * x, c.cos_phi1 + cos_theta, 1.0 + c.cos_phi1);
        extra = width_slack(kRoundoff / cos_theta);
        // (depth is within [1e-30, pi/2], in the range of log and exp; w/2 in
        // that of sincos; a NaN leaves the last step NaN, not converged)
        return converged | !inside;
    }
};

constexpr int kTripelSteps = 5;
constexpr double kTripelTolerance = 1e-9;  // rad, the last step of a converged point

struct UnitTripel {
    static bool usable(const WinkelConstants &c) { return c.cos_phi1 > 1e-12; }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const WinkelConstants &c, double lambda, double phi, double &x, double &y) {
        const bool ok = aitoff_forward<M>(lambda, phi, x, y);
        x = 0.5 * (lambda * c.cos_phi1 + x);
        y = 0.5 * (phi + y);
        return ok;
    }
    // One Newton step from (lambda, phi) towards the point (x, y); returns
    // the size of the step (before the unknowns are kept on the map).
    template <class M>
    static OX_ALWAYS_INLINE double step(const WinkelConstants &c, double x, double y, double &lambda, double &phi) {
        double sp, cp, sl, cl;
        M::sincos(phi, sp, cp);
        M::sincos(0.5 * lambda, sl, cl);
        const double e = cp * sl;
        const double sin_alpha = std::sqrt(sp * sp + e * e);
        const double cos_alpha = cp * cl < 0.0 ? 0.0 : cp * cl;
        const double alpha = angle_of<M>(sin_alpha, cos_alpha);
        const double k = sin_alpha > 0.0 ? alpha / sin_alpha : 1.0;  // alpha / sin alpha
        // q = (sin alpha - alpha cos alpha) / sin^3 alpha, 1/3 + 2 alpha^2 / 15 near 0
        const double q = alpha > 1e-4 ? (sin_alpha - alpha * cos_alpha) / (sin_alpha * sin_alpha * sin_alpha)
                                      : 1.0 / 3.0 + 2.0 / 15.0 * alpha * alpha;
        const double rx = 0.5 * (lambda * c.cos_phi1 + 2.0 * e * k) - x;
        const double ry = 0.5 * (phi + sp * k) - y;
        const double j11 = 0.5 * (c.cos_phi1 + cp * cl * k + e * e * q);
        const double j12 = sl * sp * (cp * cl * q - k);
        const double j21 = 0.25 * sp * e * q;
        const double j22 = 0.5 * (1.0 + cp * k + sp * sp * cl * q);
        const double det = j11 * j22 - j12 * j21;
        const double dl = (j12 * ry - j22 * rx) / det, dp = (j21 * rx - j11 * ry) / det;
        const double l1 = lambda + dl, p1 = phi + dp;
        // (kept within [-pi, pi] and [-pi/2, pi/2], or NaN, which the size of
        // the step reports: within the range of sincos)
        lambda = std::fabs(l1) > kPi ? std::copysign(kPi, l1) : l1;
        phi = std::fabs(p1) > kHalfPi ? std::copysign(kHalfPi, p1) : p1;
        return std::fabs(dl) + std::fabs(dp);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const WinkelConstants &c, double x, double y, double &lambda, double &phi, double &extra) {
        double p = std::fabs(y) > kHalfPi ? std::copysign(kHalfPi, y) : y;
        double s, co;
        M::sincos(p, s, co);
        const double l0 = 2.0 * x / (c.cos_phi1 + co);
        double l = std::fabs(l0) > kPi ? std::copysign(kPi, l0) : l0;
        double size = 0.0;
#pragma GCC unroll 8
        for (int i = 0; i < kTripelSteps; ++i) size = step<M>(c, x, y, l, p);
        if constexpr (M::kExact)
            for (int i = kTripelSteps; i < kMaxSteps && !(size <= kTripelTolerance); ++i) size = step<M>(c, x, y, l, p);
        const bool converged = size <= kTripelTolerance;
        extra = 0.0;
        lambda = l;  // (a point with a NaN latitude fails as a whole)
        phi = converged ? p : kNaN;
        return converged | std::isnan(x) | std::isnan(y);
    }
};

struct WinkelRow {
    static constexpr Family kFamily = Family::kOther;  // a compromise of a cylindrical and another
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kStandardParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
};

struct WinkelI : WinkelRow, WinkelForm<UnitI> {
    static constexpr int32_t kCode = 43018;
    static constexpr const char *kName = "Winkel_I";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr bool kHasConstantsRoutine = false;
};
struct WinkelII : WinkelRow, WinkelForm<UnitII> {
    static constexpr int32_t kCode = 43019;
    static constexpr const char *kName = "Winkel_II";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr bool kHasConstantsRoutine = false;
};
struct WinkelTripel : WinkelRow, WinkelForm<UnitTripel> {
    static constexpr int32_t kCode = 43042;
    static constexpr const char *kName = "Winkel_Tripel";
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(WinkelI)
OX_DEFINE_PROJECTION(WinkelII)
OX_DEFINE_PROJECTION(WinkelTripel)
