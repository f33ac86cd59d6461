// Plate Carree: the equirectangular projection with the equator as its
// standard parallel, on a sphere of radius a (Snyder, Map Projections: A
// Working Manual, eqs. 12-1 to 12-3 with phi1 = 0).  No constants.
#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {

namespace {

constexpr int kSlotLon0 = 2;

struct Constants {
    double a, lon0;
};

Constants constants_of(const double spheroid[2], const double parameters[16]) {
    return {spheroid[0], parameters[kSlotLon0]};
}

struct Forward {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        x = k.a * M::reduce(d);
        y = k.a * lat;
        return M::reduce_ok(d);
    }
};

struct Inverse {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.a;
        lon = M::reduce(l);
        lat = y / k.a;
        return M::reduce_ok(l);
    }
};

}  // namespace

OX_DIRECT_PROJECTION_ROUTINES(plate_carree, constants_of)

}  // namespace ox
