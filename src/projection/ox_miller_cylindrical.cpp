// "Miller_Cylindrical", on a sphere of radius a (Snyder, Map Projections: A
// Working Manual, 1987, eqs. 11-1, 11-2, 11-6, 11-7):
//     x = a L,  y = a ln tan(pi/4 + 0.4 phi) / 0.8,
//     phi = atan(exp(0.8 y / a)) / 0.4 - 5 pi / 8.
// Refused: a non-finite central meridian.  Every point is converted.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

constexpr double kFiveEighthsPi = 1.9634954084936207;  // 5 pi / 8

struct MillerCylindrical {
    static constexpr int32_t kCode = 43003;
    static constexpr const char *kName = "Miller_Cylindrical";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;
    static constexpr bool kCountsEveryPoint = true;

    struct Constants {};
    static bool setup(const Frame &f, Constants &) { return finite(f.p.central_meridian); }

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double u = kQuarterPi + 0.4 * lat;
        double s, c;
        M::sincos(u, s, c);
        const double tan_u = s / c;
        x = f.a * M::reduce(d);
        y = f.a * M::log(tan_u) / 0.8;
        return M::reduce_ok(d) & M::sincos_ok(u) & M::log_ok(tan_u);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &, double x, double y, double &lon,
                                         double &lat) {
        const double l = f.p.central_meridian + x / f.a;
        const double e = 0.8 * y / f.a;
        lon = M::reduce(l);
        lat = M::atan(M::exp(e)) / 0.4 - kFiveEighthsPi;
        return M::reduce_ok(l) & M::exp_ok(e);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(MillerCylindrical)
