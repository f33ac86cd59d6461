// Eckert's six pseudocylindrical projections (1906), on a sphere of radius a
// (an ellipsoid's a); flat poles half as long as the equator, except where
// noted.  Formulas: Snyder, Map Projections: A Working Manual, 1987, eqs.
// 32-1 to 32-7 (IV, VI) and Snyder, Flattening the Earth, 1993, pp. 146-152
// and An Album of Map Projections (Snyder and Voxland, 1989) for I, II, III
// and V.  L is the longitude from the central meridian.
//
//   "Eckert_I"   rectilinear:     x = k1 L (1 - |phi| / pi),  y = k1 phi,
//                                 k1 = 2 sqrt(2 / (3 pi)).
//   "Eckert_II"  rectilinear, equal-area:  with t = sqrt(4 - 3 sin|phi|),
//                                 x = 2 L t / sqrt(6 pi),  y = sqrt(2 pi / 3) (2 - t) sign phi.
//   "Eckert_III" elliptical meridians:  x = k3 L (1 + sqrt(1 - (2 phi / pi)^2)),
//                                 y = 2 k3 phi,  k3 = 2 / sqrt(pi (4 + pi)).
//   "Eckert_IV"  elliptical, equal-area:  x = k3 L (1 + cos theta),
//                                 y = 2 sqrt(pi / (4 + pi)) sin theta,
//                                 theta + sin theta cos theta + 2 sin theta = (2 + pi/2) sin phi.
//   "Eckert_V"   sinusoidal meridians:  x = k5 L (1 + cos phi),  y = 2 k5 phi,
//                                 k5 = 1 / sqrt(2 + pi).
//   "Eckert_VI"  sinusoidal, equal-area:  x = k5 L (1 + cos theta),  y = 2 k5 theta,
//                                 theta + sin theta = (1 + pi/2) sin phi.
//
// Iterations (IV and VI): Newton's method on v = pi/2 - |theta| with the gap
// g = 1 - sin|phi| (ox_world.h), which keeps its digits near the poles:
//   IV: (v - sin v cos v) + 2 (1 - cos v) = (2 + pi/2) g, started from
//       s / (1 + s/3 - 0.1196 s^2), s^2 = (2 + pi/2) g (the series v = s -
//       s^2/3 + ... bent to meet v = pi/2 at the equator);
//   VI: v + (1 - cos v) = (1 + pi/2) g, started from the root of v + v^2/2;
// three steps each leave below 3e-16 rad from the equator to 1e-30 rad from
// the pole; the C library path continues to at most 60 steps for a point
// whose last step was still large.  The inverses are closed, through the
// same gap near the poles.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverses refuse points outside the map's outline.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kEckertI = 0.92131773192356127804;      // 2 sqrt(2 / (3 pi))
constexpr double kEckertIIx = 0.46065886596178063902;    // 2 / sqrt(6 pi)
constexpr double kEckertIIy = 1.4472025091165353187;     // sqrt(2 pi / 3)
constexpr double kEckertIII = 0.42223820031577120149;    // 2 / sqrt(pi (4 + pi))
constexpr double kEckertIVy = 1.3265004281770023222;     // 2 sqrt(pi / (4 + pi))
constexpr double kEckertIVk = 3.5707963267948966192;     // 2 + pi/2
constexpr double kEckertV = 0.44101277172455148219;      // 1 / sqrt(2 + pi)
constexpr double kEckertVIk = 2.5707963267948966192;     // 1 + pi/2
constexpr int kEckertSteps = 3;

// What every Eckert row shares: the parameters, the horizon, and that the
// constants (a only) are computed for each call.
struct EckertRow : OnSphereOfRadiusA {
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;
};

// The rows are written on the unit sphere: Unit::forward(lambda, phi) gives
// (x, y), Unit::inverse(x, y) gives (lambda, phi) or NaN outside, and the
// room its side edges need for the rounding of y (longitude_of).
template <class Unit>
struct Eckert : EckertRow {
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        ok &= Unit::template forward<M>(lambda, clamp_latitude(lat), x, y);
        x *= c.a;
        y *= c.a;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double lambda, extra;
        const bool ok = Unit::template inverse<M>(x / c.a, y / c.a, lambda, lat, extra);
        bool in_range;
        lon = longitude_of<M>(f, lambda, in_range, extra);
        return ok & in_range;
    }
};

struct UnitI {
    template <class M>
    static OX_ALWAYS_INLINE bool forward(double lambda, double phi, double &x, double &y) {
        x = kEckertI * lambda * (1.0 - std::fabs(phi) / kPi);
        y = kEckertI * phi;
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(double x, double y, double &lambda, double &phi, double &extra) {
        extra = 0.0;
        phi = latitude_within(y / kEckertI);
        lambda = x / (kEckertI * (1.0 - std::fabs(phi) / kPi));
        return true;
    }
};

struct UnitII {
    template <class M>
    static OX_ALWAYS_INLINE bool forward(double lambda, double phi, double &x, double &y) {
        double s, c;
        M::sincos(phi, s, c);
        const double t = std::sqrt(1.0 + 3.0 * polar_gap(phi, s, c));  // sqrt(4 - 3 sin|phi|)
        x = kEckertIIx * lambda * t;
        y = std::copysign(kEckertIIy * (2.0 - t), phi);
        return M::sincos_ok(phi);
    }
    // t = 2 - |y| / sqrt(2 pi / 3), 1 - sin|phi| = (t - 1)(t + 1) / 3.
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(double x, double y, double &lambda, double &phi, double &extra) {
        extra = 0.0;
        const double r = std::fabs(y) / kEckertIIy;  // 2 - t, 0 to 1
        const bool inside = r <= 1.0 + kEdgeSlack;
        const double t = 2.0 - (r > 1.0 ? 1.0 : r);
        const double g = (t - 1.0) * (t + 1.0) / 3.0;
        phi = inside ? latitude_of_gap<M>(g, y) : kNaN;
        lambda = x / (kEckertIIx * t);
        return true;
    }
};

struct UnitIII {
    // sqrt(1 - (2 phi / pi)^2)
    static OX_ALWAYS_INLINE double width(double phi) {
        const double q = 2.0 * std::fabs(phi) / kPi;
        return std::sqrt((1.0 - q) * (1.0 + q));
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(double lambda, double phi, double &x, double &y) {
        x = kEckertIII * lambda * (1.0 + width(phi));
        y = 2.0 * kEckertIII * phi;
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(double x, double y, double &lambda, double &phi, double &extra) {
        extra = 0.0;
        phi = latitude_within(y / (2.0 * kEckertIII));
        const double w = width(phi);
        lambda = x / (kEckertIII * (1.0 + w));
        extra = width_slack(kRoundoff / w);
        return true;
    }
};

struct UnitIV {
    // h(v) = (v - sin v cos v) + 2 (1 - cos v) from the half-angle pair.
    static OX_ALWAYS_INLINE double h(double v, double sh, double ch, double &dh) {
        const double sin_v = 2.0 * sh * ch, cos_v = (ch - sh) * (ch + sh);
        dh = 2.0 * sin_v * (1.0 + sin_v);
        return 0.5 * x_minus_sin(2.0 * v, 2.0 * sin_v * cos_v) + 4.0 * sh * sh;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(double lambda, double phi, double &x, double &y) {
        double s, c, sh, ch;
        M::sincos(phi, s, c);
        const double gap = polar_gap(phi, s, c);
        const double target = kEckertIVk * (gap < kSmallestGap ? kSmallestGap : gap);
        const double r = std::sqrt(target);
        double v = r / (1.0 + r / 3.0 - 0.1196 * target);
        const bool converged = solve_half_angle<M, kEckertSteps>(target, kHalfPi, v, sh, ch, h);
        const double cos_theta = 2.0 * sh * ch, sin_theta = (ch - sh) * (ch + sh);  // sin v, cos v
        x = kEckertIII * lambda * (1.0 + cos_theta);
        y = std::copysign(kEckertIVy * sin_theta, phi);
        return converged & M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(double x, double y, double &lambda, double &phi, double &extra) {
        extra = 0.0;
        const double st0 = y / kEckertIVy;
        const double st = std::fabs(st0) > 1.0 ? 1.0 : std::fabs(st0);
        const double ct = std::sqrt((1.0 - st) * (1.0 + st));  // sin v, cos v = st
        const double v = angle_of<M>(ct, st);
        const double g = (0.5 * x_minus_sin(2.0 * v, 2.0 * ct * st) + 2.0 * ct * ct / (1.0 + st)) / kEckertIVk;
        phi = std::fabs(st0) <= 1.0 + kEdgeSlack ? latitude_of_gap<M>(g, y) : kNaN;
        lambda = x / (kEckertIII * (1.0 + ct));
        extra = width_slack(kRoundoff / ct);
        return true;
    }
};

struct UnitV {
    template <class M>
    static OX_ALWAYS_INLINE bool forward(double lambda, double phi, double &x, double &y) {
        double s, c;
        M::sincos(phi, s, c);
        x = kEckertV * lambda * (1.0 + c);
        y = 2.0 * kEckertV * phi;
        return M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(double x, double y, double &lambda, double &phi, double &extra) {
        extra = 0.0;
        phi = latitude_within(y / (2.0 * kEckertV));
        double s, c;
        M::sincos(phi, s, c);
        lambda = x / (kEckertV * (1.0 + c));
        return M::sincos_ok(phi) | std::isnan(phi);
    }
};

struct UnitVI {
    static OX_ALWAYS_INLINE double h(double v, double sh, double ch, double &dh) {
        dh = 1.0 + 2.0 * sh * ch;
        return v + 2.0 * sh * sh;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(double lambda, double phi, double &x, double &y) {
        double s, c, sh, ch;
        M::sincos(phi, s, c);
        const double target = kEckertVIk * polar_gap(phi, s, c);
        double v = 2.0 * target / (std::sqrt(1.0 + 2.0 * target) + 1.0);
        const bool converged = solve_half_angle<M, kEckertSteps>(target, kHalfPi, v, sh, ch, h);
        x = kEckertV * lambda * (1.0 + 2.0 * sh * ch);
        y = std::copysign(2.0 * kEckertV * (kHalfPi - v), phi);
        return converged & M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(double x, double y, double &lambda, double &phi, double &extra) {
        extra = 0.0;
        const double theta = y / (2.0 * kEckertV);
        const double v0 = kHalfPi - std::fabs(theta);
        const double v = v0 < 0.0 ? 0.0 : v0;
        double sh, ch;
        M::sincos(0.5 * v, sh, ch);
        phi = std::fabs(theta) <= kLatitudeEdge ? latitude_of_gap<M>((v + 2.0 * sh * sh) / kEckertVIk, y) : kNaN;
        lambda = x / (kEckertV * (1.0 + 2.0 * sh * ch));
        return true;  // v/2 is in [0, pi/4] or NaN: within the range of sincos
    }
};

struct EckertI : Eckert<UnitI> {
    static constexpr int32_t kCode = 43015;
    static constexpr const char *kName = "Eckert_I";
    static constexpr Preserves kPreserves = Preserves::kNothing;
};
struct EckertII : Eckert<UnitII> {
    static constexpr int32_t kCode = 43014;
    static constexpr const char *kName = "Eckert_II";
    static constexpr Preserves kPreserves = Preserves::kArea;
};
struct EckertIII : Eckert<UnitIII> {
    static constexpr int32_t kCode = 43013;
    static constexpr const char *kName = "Eckert_III";
    static constexpr Preserves kPreserves = Preserves::kNothing;
};
struct EckertIV : Eckert<UnitIV> {
    static constexpr int32_t kCode = 43012;
    static constexpr const char *kName = "Eckert_IV";
    static constexpr Preserves kPreserves = Preserves::kArea;
};
struct EckertV : Eckert<UnitV> {
    static constexpr int32_t kCode = 43011;
    static constexpr const char *kName = "Eckert_V";
    static constexpr Preserves kPreserves = Preserves::kNothing;
};
struct EckertVI : Eckert<UnitVI> {
    static constexpr int32_t kCode = 43010;
    static constexpr const char *kName = "Eckert_VI";
    static constexpr Preserves kPreserves = Preserves::kArea;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(EckertVI)
OX_DEFINE_PROJECTION(EckertV)
OX_DEFINE_PROJECTION(EckertIV)
OX_DEFINE_PROJECTION(EckertIII)
OX_DEFINE_PROJECTION(EckertII)
OX_DEFINE_PROJECTION(EckertI)
