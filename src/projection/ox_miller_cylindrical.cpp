// Miller cylindrical, on a sphere of radius a (Snyder, Map Projections: A
// Working Manual, eqs. 11-1, 11-2, 11-6, 11-7).  No constants.
#include <cmath>

#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {

namespace {

constexpr int kSlotLon0 = 2;
constexpr double kFiveEighthsPi = 1.9634954084936207;  // 5 pi / 8

struct Constants {
    double a, lon0;
};

Constants constants_of(const double spheroid[2], const double parameters[16]) {
    return {spheroid[0], parameters[kSlotLon0]};
}

// x = a L, y = a ln tan(pi/4 + 0.4 phi) / 0.8.
struct Forward {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        const double u = kQuarterPi + 0.4 * lat;
        double s, c;
        M::sincos(u, s, c);
        const double tan_u = s / c;
        x = k.a * M::reduce(d);
        y = k.a * M::log(tan_u) / 0.8;
        return M::reduce_ok(d) & M::sincos_ok(u) & M::log_ok(tan_u);
    }
};

// Delta lambda = x / a, phi = atan(exp(0.8 y / a)) / 0.4 - 5 pi / 8.
struct Inverse {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.a;
        lon = M::reduce(l);
        lat = M::atan(M::exp(0.8 * y / k.a)) / 0.4 - kFiveEighthsPi;
        return M::reduce_ok(l);
    }
};

}  // namespace

OX_DIRECT_PROJECTION_ROUTINES(miller_cylindrical, constants_of)

}  // namespace ox
