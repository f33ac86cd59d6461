// Mercator, normal aspect, with a standard parallel.  On the ellipsoid the
// isometric latitude is taken through the conformal latitude chi:
// y = K ln tan(pi/4 + chi/2) (Snyder, Map Projections: A Working Manual,
// eqs. 7-1, 7-2, 7-7 and 3-1; IOGP Guidance Note 7-2, method 9805), chi from
// phi and back by their series in the third flattening.  The inverse is
// chi = pi/2 - 2 atan(exp(-y/K)) (Snyder 7-4, 7-10).
//
// Constants: sphere {cos phi1, a cos phi1}; ellipsoid 20 values, see below.
#include <cmath>

#include "projection/ox_math.h"
#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {
namespace {

constexpr int kSlotLon0 = 2;
constexpr int kSlotPhi1 = 3;

constexpr int32_t kSphereCount = 2;
constexpr int kSphereCosPhi1 = 0;  // cos phi1
constexpr int kSphereK = 1;        // a cos phi1
constexpr int32_t kEllipsoidCount = 2 + 2 * kAuxTerms;
constexpr int kM1 = 0;                      // m1 = cos phi1 / w(phi1)
constexpr int kEllipsoidK = 1;              // a m1
constexpr int kChiForward = 2;              // phi -> chi coefficients
constexpr int kChiInverse = 2 + kAuxTerms;  // chi -> phi coefficients
static_assert(kEllipsoidCount == 20, "20 ellipsoid constants");

bool is_sphere(const double spheroid[2]) { return spheroid[1] < kZero; }

int32_t mercator_values(const double spheroid[2], const double parameters[16], double v[kEllipsoidCount]) {
    const double a = spheroid[0], e2 = spheroid[1], phi1 = parameters[kSlotPhi1];
    if (is_sphere(spheroid)) {
        v[kSphereCosPhi1] = std::cos(phi1);
        v[kSphereK] = a * std::cos(phi1);
        return kSphereCount;
    }
    v[kM1] = std::cos(phi1) / ox_w(e2, phi1);
    v[kEllipsoidK] = a * v[kM1];
    conformal_coefficients(e2, v + kChiForward, v + kChiInverse);
    return kEllipsoidCount;
}

const double *mercator_constants_for(const double spheroid[2], const double parameters[16], const int32_t *header,
                                     const double *values, double local[kEllipsoidCount]) {
    const double *k = constants_if(header, values, is_sphere(spheroid) ? kSphereCount : kEllipsoidCount);
    if (k != nullptr) return k;
    mercator_values(spheroid, parameters, local);
    return local;
}

// The constants of the point formulas.
struct MercatorConstants {
    double lon0, k;
    double chi_forward[kAuxTerms], chi_inverse[kAuxTerms];
};

// ln tan(pi/4 + chi/2) = ln((1 + sin chi) / cos chi), odd in chi: taken on
// |sin chi| so that 1 + |sin chi| never cancels (a latitude a hair off the
// south pole stays finite, as the north pole does).
template <class M>
OX_ALWAYS_INLINE double isometric(double sin_chi, double cos_chi, double &arg) {
    arg = (1.0 + std::fabs(sin_chi)) / cos_chi;
    return std::copysign(M::log(arg), sin_chi);
}

struct ForwardSphere {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const MercatorConstants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        const double phi = off_pole(lat);
        double s, c, arg;
        M::sincos(phi, s, c);
        x = k.k * M::reduce(d);
        y = k.k * isometric<M>(s, c, arg);
        return M::reduce_ok(d) & M::sincos_ok(phi) & M::log_ok(arg);
    }
};

struct ForwardEllipsoid {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const MercatorConstants &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        const double phi = off_pole(lat);
        double s, c, sc, cc, arg;
        M::sincos(phi, s, c);
        const double chi = aux_series(k.chi_forward, phi, s, c);  // conformal latitude
        M::sincos(chi, sc, cc);
        x = k.k * M::reduce(d);
        y = k.k * isometric<M>(sc, cc, arg);
        return M::reduce_ok(d) & M::sincos_ok(phi) & M::sincos_ok(chi) & M::log_ok(arg);
    }
};

// chi = pi/2 - 2 atan(exp(-y / K)); on the sphere phi = chi.
struct InverseSphere {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const MercatorConstants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.k;
        lat = kHalfPi - 2.0 * M::atan(M::exp(-y / k.k));
        lon = M::reduce(l);
        return M::reduce_ok(l);
    }
};

struct InverseEllipsoid {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const MercatorConstants &k, double x, double y, double &lon, double &lat) {
        const double l = k.lon0 + x / k.k;
        const double chi = kHalfPi - 2.0 * M::atan(M::exp(-y / k.k));
        double s, c;
        M::sincos(chi, s, c);
        lat = aux_series(k.chi_inverse, chi, s, c);
        lon = M::reduce(l);
        return M::reduce_ok(l) & M::sincos_ok(chi);
    }
};

MercatorConstants point_constants(const double spheroid[2], const double parameters[16], const double *k) {
    MercatorConstants m{parameters[kSlotLon0], 0.0, {}, {}};
    if (is_sphere(spheroid)) {
        m.k = k[kSphereK];
    } else {
        m.k = k[kEllipsoidK];
        for (int i = 0; i < kAuxTerms; ++i) {
            m.chi_forward[i] = k[kChiForward + i];
            m.chi_inverse[i] = k[kChiInverse + i];
        }
    }
    return m;
}

}  // namespace

OX_CONSTANTS_ROUTINE(mercator_constants) {
    if (c == nullptr || spheroid == nullptr || parameters == nullptr) return 0;
    double v[kEllipsoidCount];
    return store_constants(c, v, mercator_values(spheroid, parameters, v));
}

// Every point is converted; the count is n.
OX_UNITS_ROUTINE(mercator_forward_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kEllipsoidCount];
    const double *k = mercator_constants_for(spheroid, parameters, constants_header, constants_values, local);
    const MercatorConstants m = point_constants(spheroid, parameters, k);
    if (is_sphere(spheroid))
        run_forward<ForwardSphere>(m, n, points, units);
    else
        run_forward<ForwardEllipsoid>(m, n, points, units);
    return n;
}

OX_UNITS_ROUTINE(mercator_inverse_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kEllipsoidCount];
    const double *k = mercator_constants_for(spheroid, parameters, constants_header, constants_values, local);
    const MercatorConstants m = point_constants(spheroid, parameters, k);
    if (is_sphere(spheroid))
        run_inverse<InverseSphere>(m, n, points, units);
    else
        run_inverse<InverseEllipsoid>(m, n, points, units);
    return n;
}

OX_PLAIN_ROUTINE(mercator_forward)
OX_PLAIN_ROUTINE(mercator_inverse)

}  // namespace ox
