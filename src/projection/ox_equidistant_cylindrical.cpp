// Equidistant cylindrical (equirectangular) with a standard parallel, on a
// sphere of radius a (Snyder, Map Projections: A Working Manual, eqs. 12-1
// to 12-3, 12-5, 12-6).  No constants.
#include <cmath>

#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {

namespace {

constexpr int kSlotLon0 = 2;
constexpr int kSlotPhi1 = 3;

struct Constants {
    double a, a_cos_phi1, lon0;
};

Constants constants_of(const double spheroid[2], const double parameters[16]) {
    return {spheroid[0], spheroid[0] * std::cos(parameters[kSlotPhi1]), parameters[kSlotLon0]};
}

struct Forward {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        x = k.a_cos_phi1 * M::reduce(d);
        y = k.a * lat;
        return M::reduce_ok(d);
    }
};

struct Inverse {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.a_cos_phi1;
        lon = M::reduce(l);
        lat = y / k.a;
        return M::reduce_ok(l);
    }
};

}  // namespace

OX_DIRECT_PROJECTION_ROUTINES(equidistant_cylindrical, constants_of)

}  // namespace ox
