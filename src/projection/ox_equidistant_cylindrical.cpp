// "Equidistant_Cylindrical" (equirectangular) with a standard parallel phi1,
// on a sphere of radius a (Snyder, Map Projections: A Working Manual, 1987,
// eqs. 12-1 to 12-3, 12-5, 12-6):
//     x = a cos phi1 L,  y = a phi.
// Refused: a standard parallel at or beyond a pole (the map would have no
// width), a non-finite central meridian.  Every point is converted.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

struct EquidistantCylindrical {
    static constexpr int32_t kCode = 43002;
    static constexpr const char *kName = "Equidistant_Cylindrical";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kDistance;
    static constexpr ParameterSet kParameters = parameter_sets::kStandardParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;
    static constexpr bool kCountsEveryPoint = true;

    struct Constants {
        double a_cos_phi1;
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi1 = f.p.standard_parallel_1;
        if (!finite(f.p.central_meridian) || !(std::fabs(phi1) < kHalfPi) || at_pole(phi1)) return false;
        c.a_cos_phi1 = f.a * std::cos(phi1);
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        x = c.a_cos_phi1 * M::reduce(d);
        y = f.a * lat;
        return M::reduce_ok(d);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double l = f.p.central_meridian + x / c.a_cos_phi1;
        lon = M::reduce(l);
        lat = y / f.a;
        return M::reduce_ok(l);
    }
};

// "Plate_Carree": the equidistant cylindrical projection with the equator as
// its standard parallel (whatever a parameter in that slot says).
struct PlateCarree : EquidistantCylindrical {
    static constexpr int32_t kCode = 43001;
    static constexpr const char *kName = "Plate_Carree";
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static bool setup(const Frame &f, Constants &c) {
        Frame equator = f;
        equator.p.standard_parallel_1 = 0.0;
        return EquidistantCylindrical::setup(equator, c);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(EquidistantCylindrical)
OX_DEFINE_PROJECTION(PlateCarree)
