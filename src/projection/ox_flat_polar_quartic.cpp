// "Flat_Polar_Quartic" (McBryde-Thomas flat-polar quartic), on a sphere of
// radius a (Snyder, Map Projections: A Working Manual, 1987, p. 249;
// Snyder and Voxland, An Album of Map Projections, 1989, p. 104): an
// equal-area pseudocylindrical projection, poles a third as long as the
// equator,
//     x = a L (1 + 2 cos theta / cos(theta/2)) / sqrt(3 sqrt 2 + 6),
//     y = 2 sqrt 3 a sin(theta/2) / sqrt(2 + sqrt 2),
//     sin(theta/2) + sin theta = (1 + sqrt 2 / 2) sin phi.
// Iteration: Newton's method on v = pi/2 - |theta|, where the equation is
//     (sqrt 2 / 2) (sin(v/2) + (1 - cos(v/2))) + (1 - cos v) = (1 + sqrt 2 / 2) (1 - sin|phi|)
// (exact near the poles), started from the root of its quadratic part
// (sqrt 2 / 4) v + (1/2 + sqrt 2 / 16) v^2 stretched by (1 + 0.045 t), t
// the right side (the factor fitted so that the third step is below 2e-11 v
// everywhere, far inside the 1e-8 v that counts as converged); three steps
// leave below 6e-16 rad from the equator to 1e-30 rad from the pole; the C
// library path continues to at most 60 steps for a point whose last step
// was still large.  The inverse
// is closed: sin(theta/2) from y, then sin phi from the equation.  On an
// ellipsoid the sphere of radius a is used.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the map's outline.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kQuarticX = 0.31245971410378249251;  // 1 / sqrt(3 sqrt 2 + 6)
constexpr double kQuarticY = 1.8747582846226949551;   // 2 sqrt 3 / sqrt(2 + sqrt 2)
constexpr double kQuarticK = 1.7071067811865475244;   // 1 + sqrt 2 / 2
constexpr double kHalfSqrt2 = 0.70710678118654752440;
constexpr int kQuarticSteps = 3;
// The start: the root of b v + c v^2 = t, times (1 + kQuarticStretch t).
constexpr double kQuarticB = 0.35355339059327376220;  // sqrt 2 / 4
constexpr double kQuarticC = 0.58838834764831844055;  // 1/2 + sqrt 2 / 16
constexpr double kQuarticStretch = 0.045;

// The left side of the equation and its derivative, from sin and cos of v/2.
OX_ALWAYS_INLINE double quartic_h(double, double sh, double ch, double &dh) {
    dh = 0.5 * kHalfSqrt2 * (ch + sh) + 2.0 * sh * ch;
    return kHalfSqrt2 * (sh + sh * sh / (1.0 + ch)) + 2.0 * sh * sh;
}

// x per radian of L and y of the map, from sin and cos of v/2 (theta/2 =
// pi/4 - v/2).
OX_ALWAYS_INLINE void quartic_xy(double sh, double ch, double &width, double &height) {
    const double cos_theta = 2.0 * sh * ch;
    const double cos_half = kHalfSqrt2 * (ch + sh), sin_half = kHalfSqrt2 * (ch - sh);
    width = kQuarticX * (1.0 + 2.0 * cos_theta / cos_half);
    height = kQuarticY * sin_half;
}

struct FlatPolarQuartic {
    static constexpr int32_t kCode = 43045;
    static constexpr const char *kName = "Flat_Polar_Quartic";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;

    struct Constants {
        double a, fy;  // a, the y of the poles
    };
    static bool setup(const Frame &f, Constants &c) {
        c.a = f.a;
        c.fy = f.a * kQuarticY * kHalfSqrt2;
        return finite(f.p.central_meridian);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        double s, co, sh, ch, width, height;
        M::sincos(phi, s, co);
        const double target = kQuarticK * polar_gap(phi, s, co);
        double v = 2.0 * target / (kQuarticB + std::sqrt(kQuarticB * kQuarticB + 4.0 * kQuarticC * target)) *
                   (1.0 + kQuarticStretch * target);
        const bool converged = solve_half_angle<M, kQuarticSteps>(target, kHalfPi, v, sh, ch, quartic_h);
        quartic_xy(sh, ch, width, height);
        x = c.a * lambda * width;
        y = std::copysign(c.a * height, phi);
        return ok & converged & M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        // sin(theta/2) and cos(theta/2), then sin and cos of v/2 = pi/4 - theta/2.
        const double r = std::fabs(y) / c.fy;  // sin(theta/2) / sin(pi/4)
        const double sin_half = kHalfSqrt2 * (r > 1.0 ? 1.0 : r);
        const double cos_half = std::sqrt((1.0 - sin_half) * (1.0 + sin_half));
        const double sh = kHalfSqrt2 * (cos_half - sin_half), ch = kHalfSqrt2 * (cos_half + sin_half);
        double dh, width, height;
        const double g = quartic_h(0.0, sh, ch, dh) / kQuarticK;
        quartic_xy(sh, ch, width, height);
        bool ok;
        lon = longitude_of<M>(f, x / (c.a * width), ok);
        lat = r <= 1.0 + kEdgeSlack ? latitude_of_gap<M>(g, y) : kNaN;
        return ok;
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(FlatPolarQuartic)
