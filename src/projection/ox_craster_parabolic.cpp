// "Craster_Parabolic" (Putnins P4), on a sphere of radius a (Snyder, Map
// Projections: A Working Manual, 1987, p. 248; Snyder and Voxland, An
// Album of Map Projections, 1989, p. 76): an equal-area pseudocylindrical
// projection with parabolic meridians and pointed poles,
//     x = sqrt(3 / pi) a L (2 cos(2 phi / 3) - 1),  y = sqrt(3 pi) a sin(phi / 3);
//     phi = 3 asin(y / (sqrt(3 pi) a)),  L = x / (sqrt(3 / pi) a (2 cos(2 phi / 3) - 1)),
// with 2 cos(2 phi / 3) - 1 = (1 - 2 sin(phi/3)) (1 + 2 sin(phi/3)), exact
// to the poles.  No iteration.  On an ellipsoid the sphere of radius a is
// used.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the map's outline.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kCrasterX = 0.97720502380583984317;  // sqrt(3 / pi)
constexpr double kCrasterY = 3.0699801238394654654;   // sqrt(3 pi)

struct CrasterParabolic {
    static constexpr int32_t kCode = 43046;
    static constexpr const char *kName = "Craster_Parabolic";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;

    struct Constants {
        double fx, fy;  // sqrt(3 / pi) a, sqrt(3 pi) a
    };
    static bool setup(const Frame &f, Constants &c) {
        c.fx = kCrasterX * f.a;
        c.fy = kCrasterY * f.a;
        return finite(f.p.central_meridian);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double third = clamp_latitude(lat) / 3.0;
        double s, co;
        M::sincos(third, s, co);
        x = c.fx * lambda * ((1.0 - 2.0 * s) * (1.0 + 2.0 * s));
        y = c.fy * s;
        return ok & M::sincos_ok(third);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double s0 = y / c.fy;
        const double s = std::fabs(s0) > 0.5 ? std::copysign(0.5, s0) : s0;
        bool ok;
        const double w = (1.0 - 2.0 * s) * (1.0 + 2.0 * s);  // 2 cos(2 phi / 3) - 1
        lon = longitude_of<M>(f, ratio(x, c.fx * w, c.fx), ok, width_slack(kRoundoff / w));
        lat = std::fabs(s0) <= 0.5 * (1.0 + kEdgeSlack) ? 3.0 * M::asin(s) : kNaN;
        return ok;
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(CrasterParabolic)
