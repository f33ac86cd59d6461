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
        return M::reduce_ok(d) && M::sincos_ok(half);
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

OX_PROJECTION_ROUTINE(gall_stereographic_forward) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kCount];
    const double *k = gall_constants_for(spheroid, constants_header, constants_values, local);
    run_formula<Forward>(Constants{parameters[kSlotLon0], k[kXFactor], k[kYFactor]}, n, points);
    return n;
}

OX_PROJECTION_ROUTINE(gall_stereographic_inverse) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kCount];
    const double *k = gall_constants_for(spheroid, constants_header, constants_values, local);
    const double lon0 = parameters[kSlotLon0], fx = k[kXFactor], fy = k[kYFactor];
    for (int32_t i = 0; i < n; ++i) {
        double *p = points + 2 * static_cast<size_t>(i);
        p[0] = reduce_longitude(lon0 + p[0] / fx);
        p[1] = 2.0 * std::atan2(p[1], fy);
    }
    return n;
}

}  // namespace ox
