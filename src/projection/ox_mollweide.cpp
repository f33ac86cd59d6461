// "Mollweide" (homalographic), on a sphere of radius a (Snyder, Map
// Projections: A Working Manual, 1987, eqs. 31-1 to 31-3, 31-5 to 31-7):
//     x = a (2 sqrt 2 / pi) L cos theta,  y = a sqrt 2 sin theta,
//     2 theta + sin 2 theta = pi sin phi.
// The equation for theta is solved by Newton's method, three steps from a
// series start (ox_world.h: below 5e-16 rad everywhere, the poles
// included; the C library path continues to at most 60 steps for a point
// whose last step was still large).  The inverse is closed:
//     theta = asin(y / (a sqrt 2)),  sin phi = (2 theta + sin 2 theta) / pi,
//     L = pi x / (2 sqrt 2 a cos theta),
// with phi taken from 1 - sin|phi| near the poles.  Equal-area.  On an
// ellipsoid the sphere of radius a is used.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the ellipse of the map.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kMollweideX = 0.90031631615710606956;  // 2 sqrt 2 / pi

struct Mollweide {
    static constexpr int32_t kCode = 43009;
    static constexpr const char *kName = "Mollweide";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;

    struct Constants {
        double fx, fy;  // a 2 sqrt 2 / pi, a sqrt 2
    };
    static bool setup(const Frame &f, Constants &c) {
        c.fx = f.a * kMollweideX;
        c.fy = f.a * kSqrt2;
        return finite(f.p.central_meridian);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        double s, co, cos_theta, sin_theta;
        M::sincos(phi, s, co);
        ok &= mollweide_angle<M>(polar_gap(phi, s, co), cos_theta, sin_theta);
        x = c.fx * lambda * cos_theta;
        y = std::copysign(c.fy * sin_theta, phi);
        return ok & M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double st = y / c.fy;
        const bool inside = std::fabs(st) <= 1.0 + kEdgeSlack;
        double cos_theta;
        const double phi = mollweide_latitude<M>(std::fabs(st) > 1.0 ? std::copysign(1.0, st) : st, cos_theta);
        bool ok;
        lon = longitude_of<M>(f, ratio(x, c.fx * cos_theta, c.fx, kPi * kPoleRounding), ok,
                              width_slack(kRoundoff / (cos_theta * cos_theta)));
        lat = inside ? phi : kNaN;
        return ok;
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Mollweide)
