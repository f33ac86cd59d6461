// Lambert's cylindrical equal-area projection, normal aspect, with a
// standard parallel phi1 (Snyder, Map Projections: A Working Manual, eqs.
// 10-1, 10-2, 10-6, 10-7 on the sphere; 10-15, 10-16 with 3-12 on the
// ellipsoid).  The ellipsoidal inverse goes through the authalic latitude
// beta, sin beta = q / qp (Snyder 3-11), and back to phi by the authalic
// series.  The same routines serve "Behrmann" with phi1 = 30 degrees.
//
// Constants: none when |phi1| = 90 degrees; sphere {a cos phi1, a / cos
// phi1}; ellipsoid 8 values, see below.
#include <cmath>

#include "object/ox_utils.h"
#include "projection/ox_math.h"
#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {

namespace {
constexpr int kSlotLon0 = 2;
constexpr int kSlotPhi1 = 3;

constexpr int32_t kSphereCount = 2;
constexpr int kSphereX = 0;  // a cos phi1
constexpr int kSphereY = 1;  // a / cos phi1
constexpr int32_t kEllipsoidCount = 8;
constexpr int kEcc = 0;         // e
constexpr int kTwoEcc = 1;      // 2 e
constexpr int kAK0 = 2;         // a k0, k0 = cos phi1 / w(phi1)
constexpr int kAOver2K0 = 3;    // a / (2 k0)
constexpr int kOneMinusE2 = 4;  // 1 - e2
constexpr int kTwoK0 = 5;       // 2 k0
constexpr int kQp = 6;          // q at the pole
constexpr int kAQp = 7;         // a qp

bool is_sphere(const double spheroid[2]) { return spheroid[1] < kZero; }
bool polar_parallel(double phi1) { return equal_rule(std::fabs(phi1), kHalfPi); }

struct Constants {
    double lon0, fx, fy, e, two_e, e2;
};

// Sphere: x = a cos phi1 L, y = a sin phi / cos phi1.
struct ForwardSphere {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        double s, c;
        M::sincos(lat, s, c);
        x = k.fx * M::reduce(d);
        y = k.fy * s;
        return M::reduce_ok(d) && M::sincos_ok(lat);
    }
};

// Ellipsoid: x = a k0 L, y = (a / 2 k0) q(phi), q as in Snyder 3-12.
struct ForwardEllipsoid {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        double s, c;
        M::sincos(lat, s, c);
        const double ratio = (1.0 - k.e * s) / (1.0 + k.e * s);
        x = k.fx * M::reduce(d);
        y = k.fy * (s / (1.0 - k.e2 * s * s) - M::log(ratio) / k.two_e);
        return M::reduce_ok(d) && M::sincos_ok(lat) && M::log_ok(ratio);
    }
};

}  // namespace

int32_t cea_values(const double spheroid[2], double phi1, double v[kCeaMaxConstants]) {
    if (polar_parallel(phi1)) return 0;
    const double a = spheroid[0], e2 = spheroid[1];
    if (is_sphere(spheroid)) {
        v[kSphereX] = a * std::cos(phi1);
        v[kSphereY] = a / std::cos(phi1);
        return kSphereCount;
    }
    const double e = std::sqrt(e2);
    const double k0 = std::cos(phi1) / ox_w(e2, phi1);
    const double qp = 1.0 - (1.0 - e2) / (2.0 * e) * std::log((1.0 - e) / (1.0 + e));
    v[kEcc] = e;
    v[kTwoEcc] = 2.0 * e;
    v[kAK0] = a * k0;
    v[kAOver2K0] = a / (2.0 * k0);
    v[kOneMinusE2] = 1.0 - e2;
    v[kTwoK0] = 2.0 * k0;
    v[kQp] = qp;
    v[kAQp] = a * qp;
    return kEllipsoidCount;
}

int32_t cea_forward_points(const double spheroid[2], double lon0, double phi1, const int32_t *header,
                           const double *values, int32_t n, double *points) {
    if (polar_parallel(phi1)) {
        const double nan = failure_nan();
        for (size_t i = 0; i < 2 * static_cast<size_t>(n); ++i) points[i] = nan;
        return 0;
    }
    double local[kCeaMaxConstants];
    const double *k = constants_if(header, values, is_sphere(spheroid) ? kSphereCount : kEllipsoidCount);
    if (k == nullptr) {
        cea_values(spheroid, phi1, local);
        k = local;
    }
    if (is_sphere(spheroid))
        run_formula<ForwardSphere>(Constants{lon0, k[kSphereX], k[kSphereY], 0.0, 0.0, 0.0}, n, points);
    else
        run_formula<ForwardEllipsoid>(
            Constants{lon0, k[kAK0], k[kAOver2K0] * k[kOneMinusE2], k[kEcc], k[kTwoEcc], spheroid[1]}, n, points);
    return n;
}

int32_t cea_inverse_points(const double spheroid[2], double lon0, double phi1, const int32_t *header,
                           const double *values, int32_t n, double *points) {
    if (polar_parallel(phi1)) {
        const double nan = failure_nan();
        for (size_t i = 0; i < 2 * static_cast<size_t>(n); ++i) points[i] = nan;
        return 0;
    }
    double local[kCeaMaxConstants];
    const double *k = constants_if(header, values, is_sphere(spheroid) ? kSphereCount : kEllipsoidCount);
    if (k == nullptr) {
        cea_values(spheroid, phi1, local);
        k = local;
    }
    if (is_sphere(spheroid)) {
        const double fx = k[kSphereX], fy = k[kSphereY];
        for (int32_t i = 0; i < n; ++i) {
            double *p = points + 2 * static_cast<size_t>(i);
            double s = p[1] / fy;
            s = std::fabs(s) > 1.0 ? std::copysign(1.0, s) : s;
            p[0] = reduce_longitude(lon0 + p[0] / fx);
            p[1] = std::asin(s);
        }
        return n;
    }
    // The authalic series back to phi, its coefficients computed once here.
    double forward_unused[kAuxTerms], ci[kAuxTerms];
    authalic_coefficients(spheroid[1], forward_unused, ci);
    const double fx = k[kAK0], fb = k[kTwoK0] / k[kAQp];  // sin beta = 2 k0 y / (a qp)
    for (int32_t i = 0; i < n; ++i) {
        double *p = points + 2 * static_cast<size_t>(i);
        double sb = p[1] * fb;
        sb = std::fabs(sb) > 1.0 ? std::copysign(1.0, sb) : sb;
        const double beta = std::asin(sb);
        p[0] = reduce_longitude(lon0 + p[0] / fx);
        p[1] = aux_series(ci, beta, sb, std::sqrt((1.0 - sb) * (1.0 + sb)));
    }
    return n;
}

OX_CONSTANTS_ROUTINE(cylindrical_eqarea_constants) {
    if (c == nullptr || spheroid == nullptr || parameters == nullptr) return 0;
    double v[kCeaMaxConstants];
    const int32_t count = cea_values(spheroid, parameters[kSlotPhi1], v);
    return count > 0 ? store_constants(c, v, count) : 0;
}

// Every point is converted, except when the standard parallel is a pole:
// then every point receives the failure value and the count is 0.
OX_PROJECTION_ROUTINE(cylindrical_eqarea_forward) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    return cea_forward_points(spheroid, parameters[kSlotLon0], parameters[kSlotPhi1], constants_header,
                              constants_values, n, points);
}

OX_PROJECTION_ROUTINE(cylindrical_eqarea_inverse) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    return cea_inverse_points(spheroid, parameters[kSlotLon0], parameters[kSlotPhi1], constants_header,
                              constants_values, n, points);
}

}  // namespace ox
