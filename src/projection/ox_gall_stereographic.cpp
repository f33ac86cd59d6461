// "Gall_Stereographic": Gall's stereographic cylindrical projection (secant
// at 45 degrees), on a sphere of radius a (Snyder, Flattening the Earth,
// 1993, p. 109):
//     x = a L / sqrt 2,  y = a (1 + sqrt 2 / 2) tan(phi / 2),
//     phi = 2 atan2(y, a (1 + sqrt 2 / 2)).
// Refused: a non-finite central meridian.  Every point is converted.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

constexpr double kSqrt2 = 1.4142135623730951;

struct GallStereographic {
    static constexpr int32_t kCode = 43016;
    static constexpr const char *kName = "Gall_Stereographic";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;
    static constexpr bool kCountsEveryPoint = true;

    struct Constants {
        double fx;  // a / sqrt 2
        double fy;  // a + a / sqrt 2
    };
    static bool setup(const Frame &f, Constants &c) {
        c.fx = f.a / kSqrt2;
        c.fy = f.a + f.a / kSqrt2;
        return finite(f.p.central_meridian);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double half = 0.5 * lat;
        double s, co;
        M::sincos(half, s, co);
        x = c.fx * M::reduce(d);
        y = c.fy * (s / co);
        return M::reduce_ok(d) & M::sincos_ok(half);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double l = f.p.central_meridian + x / c.fx;
        lon = M::reduce(l);
        lat = 2.0 * M::atan2(y, c.fy);
        return M::reduce_ok(l) & M::atan2_ok(y, c.fy);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(GallStereographic)
