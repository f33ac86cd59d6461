// Gall's stereographic cylindrical projection (secant at 45 degrees), on a
// sphere of radius a: x = a L / sqrt 2, y = a (1 + sqrt 2 / 2) tan(phi / 2)
// (Snyder, Flattening the Earth, 1993, p. 109).
//
// Constants: {a / sqrt 2, a + a / sqrt 2}.
#include <cmath>

#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {

namespace {
constexpr int kSlotLon0 = 2;
constexpr double kSqrt2 = 1.4142135623730951;
constexpr int32_t kCount = 2;
constexpr int kXFactor = 0;  // a / sqrt 2
constexpr int kYFactor = 1;  // a + a / sqrt 2

void gall_values(const double spheroid[2], double v[kCount]) {
    const double a = spheroid[0];
    v[kXFactor] = a / kSqrt2;
    v[kYFactor] = a + a / kSqrt2;
}

const double *gall_constants_for(const double spheroid[2], const int32_t *header, const double *values,
                                 double local[kCount]) {
    const double *k = constants_if(header, values, kCount);
    if (k != nullptr) return k;
    gall_values(spheroid, local);
    return local;
}
struct Constants {
    double lon0, fx, fy;
};

// x = (a / sqrt 2) L, y = (a + a / sqrt 2) tan(phi / 2).
struct Forward {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        const double half = 0.5 * lat;
        double s, c;
        M::sincos(half, s, c);
        x = k.fx * M::reduce(d);
        y = k.fy * (s / c);
        return M::reduce_ok(d) & M::sincos_ok(half);
    }
};

// Delta lambda = x / (a / sqrt 2), phi = 2 atan2(y, a + a / sqrt 2).
struct Inverse {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.fx;
        lon = M::reduce(l);
        lat = 2.0 * M::atan2(y, k.fy);
        return M::reduce_ok(l);
    }
};

}  // namespace

OX_CONSTANTS_ROUTINE(gall_stereographic_constants) {
    (void)parameters;
    if (c == nullptr || spheroid == nullptr) return 0;
    double v[kCount];
    gall_values(spheroid, v);
    return store_constants(c, v, kCount);
}

OX_UNITS_ROUTINE(gall_stereographic_forward_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kCount];
    const double *k = gall_constants_for(spheroid, constants_header, constants_values, local);
    run_forward<Forward>(Constants{parameters[kSlotLon0], k[kXFactor], k[kYFactor]}, n, points, units);
    return n;
}

OX_UNITS_ROUTINE(gall_stereographic_inverse_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kCount];
    const double *k = gall_constants_for(spheroid, constants_header, constants_values, local);
    run_inverse<Inverse>(Constants{parameters[kSlotLon0], k[kXFactor], k[kYFactor]}, n, points, units);
    return n;
}

OX_PLAIN_ROUTINE(gall_stereographic_forward)
OX_PLAIN_ROUTINE(gall_stereographic_inverse)

}  // namespace ox
