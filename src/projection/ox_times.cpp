// "Times" (John Moir's projection for The Times Atlas, 1965), on a sphere of
// radius a (Snyder, Flattening the Earth, 1993, p. 213): a pseudocylindrical
// compromise derived from Gall's stereographic projection,
//     T = tan(phi / 2),  S = sin(pi T / 4),
//     x = a L (0.74482 - 0.34588 S^2),  y = 1.70711 a T;
//     phi = 2 atan(y / (1.70711 a)),  L = x / (a (0.74482 - 0.34588 S^2)).
// No iteration.  On an ellipsoid the sphere of radius a is used.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the map's outline (|T| > 1).
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kTimesX0 = 0.74482, kTimesX2 = 0.34588, kTimesY = 1.70711;

struct Times {
    static constexpr int32_t kCode = 43048;
    static constexpr const char *kName = "Times";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;

    struct Constants {
        double a, fy;  // a, 1.70711 a
    };
    static bool setup(const Frame &f, Constants &c) {
        c.a = f.a;
        c.fy = kTimesY * f.a;
        return finite(f.p.central_meridian);
    }
    // x per radian of L for T = tan(phi / 2).
    template <class M>
    static OX_ALWAYS_INLINE double width(const Constants &c, double t) {
        double s, co;
        M::sincos(kQuarterPi * t, s, co);
        return c.a * (kTimesX0 - kTimesX2 * s * s);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double half = 0.5 * clamp_latitude(lat);
        double s, co;
        M::sincos(half, s, co);
        const double t = s / co;
        x = lambda * width<M>(c, t);
        y = c.fy * t;
        return ok & M::sincos_ok(half);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double t0 = y / c.fy;
        const double t = std::fabs(t0) > 1.0 ? std::copysign(1.0, t0) : t0;
        bool ok;
        lon = longitude_of<M>(f, x / width<M>(c, t), ok);
        lat = std::fabs(t0) <= 1.0 + kEdgeSlack ? 2.0 * M::atan(t) : kNaN;
        return ok;
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Times)
