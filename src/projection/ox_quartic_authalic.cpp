// "Quartic_Authalic", on a sphere of radius a (Snyder and Voxland, An Album
// of Map Projections, 1989, p. 220; Snyder, Flattening the Earth, 1993, p.
// 204): an equal-area pseudocylindrical projection with quartic meridians
// and pointed poles,
//     x = a L cos phi / cos(phi/2),  y = 2 a sin(phi/2);
//     phi = 2 asin(y / 2a),  L = x cos(phi/2) / (a cos phi).
// No iteration.  On an ellipsoid the sphere of radius a is used.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the map's outline.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kHalfSqrt2 = 0.70710678118654752440;  // sin(pi/4): y / 2a at the poles

struct QuarticAuthalic : OnSphereOfRadiusA {
    static constexpr int32_t kCode = 43022;
    static constexpr const char *kName = "Quartic_Authalic";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double half = 0.5 * clamp_latitude(lat);
        double s, co;
        M::sincos(half, s, co);
        x = c.a * lambda * ((co - s) * (co + s)) / co;
        y = 2.0 * c.a * s;
        return ok & M::sincos_ok(half);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double s0 = y / (2.0 * c.a);
        const double s = std::fabs(s0) > kHalfSqrt2 ? std::copysign(kHalfSqrt2, s0) : s0;
        const double co = std::sqrt((1.0 - s) * (1.0 + s));
        bool ok;
        const double w = (co - s) * (co + s);  // cos phi
        lon = longitude_of<M>(f, ratio(x * co, c.a * w, c.a), ok, width_slack(kRoundoff / w));
        lat = std::fabs(s0) <= kHalfSqrt2 * (1.0 + kEdgeSlack) ? 2.0 * M::asin(s) : kNaN;
        return ok;
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(QuarticAuthalic)
