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
    double beta_inverse[kAuxTerms];  // inverse: authalic latitude to phi
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
        return M::reduce_ok(d) & M::sincos_ok(lat);
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
        return M::reduce_ok(d) & M::sincos_ok(lat) & M::log_ok(ratio);
    }
};

// Sphere inverse: phi = asin(y cos phi1 / a), Delta lambda = x / (a cos phi1).
struct InverseSphere {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.fx;
        const double s = y / k.fy;
        lat = M::asin(std::fabs(s) > 1.0 ? std::copysign(1.0, s) : s);
        lon = M::reduce(l);
        return M::reduce_ok(l);
    }
};

// Ellipsoid inverse: sin beta = 2 k0 y / (a qp), phi from beta by the
// authalic series, Delta lambda = x / (a k0).
struct InverseEllipsoid {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.fx;
        const double s = y * k.fy;
        const double sb = std::fabs(s) > 1.0 ? std::copysign(1.0, s) : s;
        lat = aux_series(k.beta_inverse, M::asin(sb), sb, std::sqrt((1.0 - sb) * (1.0 + sb)));
        lon = M::reduce(l);
        return M::reduce_ok(l);
    }
};

// The constants of the point formulas from the constants block.
Constants point_constants(const double spheroid[2], double lon0, const double *k, bool inverse) {
    if (is_sphere(spheroid)) return Constants{lon0, k[kSphereX], k[kSphereY], 0.0, 0.0, 0.0, {}};
    Constants c{lon0, k[kAK0], k[kAOver2K0] * k[kOneMinusE2], k[kEcc], k[kTwoEcc], spheroid[1], {}};
    if (inverse) {
        // The authalic series back to phi, its coefficients computed once per call.
        double forward_unused[kAuxTerms];
        authalic_coefficients(spheroid[1], forward_unused, c.beta_inverse);
        c.fy = k[kTwoK0] / k[kAQp];  // sin beta per metre of y
    }
    return c;
}

// The constants block when it fits the spheroid, else `local` filled.
const double *cea_constants(const double spheroid[2], double phi1, const int32_t *header, const double *values,
                            double local[kCeaMaxConstants]) {
    const double *k = constants_if(header, values, is_sphere(spheroid) ? kSphereCount : kEllipsoidCount);
    if (k != nullptr) return k;
    cea_values(spheroid, phi1, local);
    return local;
}

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
                           const double *values, int32_t n, double *points, const PointUnits *units) {
    if (polar_parallel(phi1)) {
        fail_points(n, points);
        return 0;
    }
    double local[kCeaMaxConstants];
    const double *k = cea_constants(spheroid, phi1, header, values, local);
    if (is_sphere(spheroid))
        run_forward<ForwardSphere>(point_constants(spheroid, lon0, k, false), n, points, units);
    else
        run_forward<ForwardEllipsoid>(point_constants(spheroid, lon0, k, false), n, points, units);
    return n;
}

int32_t cea_inverse_points(const double spheroid[2], double lon0, double phi1, const int32_t *header,
                           const double *values, int32_t n, double *points, const PointUnits *units) {
    if (polar_parallel(phi1)) {
        fail_points(n, points);
        return 0;
    }
    double local[kCeaMaxConstants];
    const double *k = cea_constants(spheroid, phi1, header, values, local);
    if (is_sphere(spheroid))
        run_inverse<InverseSphere>(point_constants(spheroid, lon0, k, true), n, points, units);
    else
        run_inverse<InverseEllipsoid>(point_constants(spheroid, lon0, k, true), n, points, units);
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
OX_UNITS_ROUTINE(cylindrical_eqarea_forward_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    return cea_forward_points(spheroid, parameters[kSlotLon0], parameters[kSlotPhi1], constants_header,
                              constants_values, n, points, units);
}

OX_UNITS_ROUTINE(cylindrical_eqarea_inverse_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    return cea_inverse_points(spheroid, parameters[kSlotLon0], parameters[kSlotPhi1], constants_header,
                              constants_values, n, points, units);
}

OX_PLAIN_ROUTINE(cylindrical_eqarea_forward)
OX_PLAIN_ROUTINE(cylindrical_eqarea_inverse)

}  // namespace ox
