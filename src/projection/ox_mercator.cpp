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

// The constants of the forward formulas.
struct MercatorForwardConstants {
    double lon0, k;
    double chi_forward[kAuxTerms];
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
    static OX_ALWAYS_INLINE bool apply(const MercatorForwardConstants &k, double lon, double lat, double &x,
                                       double &y) {
        const double d = lon - k.lon0;
        const double phi = off_pole(lat);
        double s, c, arg;
        M::sincos(phi, s, c);
        x = k.k * M::reduce(d);
        y = k.k * isometric<M>(s, c, arg);
        return M::reduce_ok(d) && M::sincos_ok(phi) && M::log_ok(arg);
    }
};

struct ForwardEllipsoid {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const MercatorForwardConstants &k, double lon, double lat, double &x,
                                       double &y) {
        const double d = lon - k.lon0;
        const double phi = off_pole(lat);
        double s, c, sc, cc, arg;
        M::sincos(phi, s, c);
        const double chi = aux_series(k.chi_forward, phi, s, c);  // conformal latitude
        M::sincos(chi, sc, cc);
        x = k.k * M::reduce(d);
        y = k.k * isometric<M>(sc, cc, arg);
        return M::reduce_ok(d) && M::sincos_ok(phi) && M::sincos_ok(chi) && M::log_ok(arg);
    }
};

}  // namespace

OX_CONSTANTS_ROUTINE(mercator_constants) {
    if (c == nullptr || spheroid == nullptr || parameters == nullptr) return 0;
    double v[kEllipsoidCount];
    return store_constants(c, v, mercator_values(spheroid, parameters, v));
}

// Every point is converted; the count is n.
OX_PROJECTION_ROUTINE(mercator_forward) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kEllipsoidCount];
    const double *k = mercator_constants_for(spheroid, parameters, constants_header, constants_values, local);
    MercatorForwardConstants f{parameters[kSlotLon0], 0.0, {}};
    if (is_sphere(spheroid)) {
        f.k = k[kSphereK];
        run_formula<ForwardSphere>(f, n, points);
    } else {
        f.k = k[kEllipsoidK];
        for (int i = 0; i < kAuxTerms; ++i) f.chi_forward[i] = k[kChiForward + i];
        run_formula<ForwardEllipsoid>(f, n, points);
    }
    return n;
}

OX_PROJECTION_ROUTINE(mercator_inverse) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kEllipsoidCount];
    const double *k = mercator_constants_for(spheroid, parameters, constants_header, constants_values, local);
    const double lon0 = parameters[kSlotLon0];
    if (is_sphere(spheroid)) {
        const double K = k[kSphereK];
        for (int32_t i = 0; i < n; ++i) {
            double *p = points + 2 * static_cast<size_t>(i);
            const double chi = kHalfPi - 2.0 * std::atan(std::exp(-p[1] / K));
            p[0] = reduce_longitude(lon0 + p[0] / K);
            p[1] = chi;
        }
    } else {
        const double K = k[kEllipsoidK];
        const double *ci = k + kChiInverse;
        for (int32_t i = 0; i < n; ++i) {
            double *p = points + 2 * static_cast<size_t>(i);
            const double chi = kHalfPi - 2.0 * std::atan(std::exp(-p[1] / K));
            p[0] = reduce_longitude(lon0 + p[0] / K);
            p[1] = aux_series(ci, chi, std::sin(chi), std::cos(chi));
        }
    }
    return n;
}

}  // namespace ox
