// Transverse Mercator (Gauss-Kruger): the power series in the longitude
// difference on the ellipsoid, the closed formulas on the sphere.
//
// Ellipsoid: the series of Thomas (1952) and Redfearn (1948) as set out in
// Snyder, Map Projections: A Working Manual (USGS PP 1395, 1987), eqs. 8-9
// to 8-10 and 8-17 to 8-18 with the terms carried to L^8 and eta^8; the
// meridian distance is the rectifying latitude times the rectifying radius.
// Sphere: Snyder eqs. 8-1 to 8-3 (forward) and 8-6 to 8-7 (inverse).
//
// Constants: sphere {k0 a, k0 a / 2}; ellipsoid 21 values, see below.
#include <cmath>

#include "projection/ox_math.h"
#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {
namespace {

constexpr int kSlotLon0 = 2;
constexpr int kSlotK0 = 5;
constexpr int kSlotPhi0 = 6;

// Layout of the constants.
constexpr int32_t kSphereCount = 2;
constexpr int kSphereK0A = 0;      // k0 a
constexpr int kSphereHalfK0A = 1;  // k0 a / 2
constexpr int32_t kEllipsoidCount = 3 + 2 * kAuxTerms;
constexpr int kSecondEcc2 = 0;             // e'^2 = e2 / (1 - e2)
constexpr int kMu0 = 1;                    // rectifying latitude of the latitude of origin
constexpr int kRectRadius = 2;             // rectifying radius R
constexpr int kMuForward = 3;              // phi -> mu coefficients
constexpr int kMuInverse = 3 + kAuxTerms;  // mu -> phi (footpoint latitude) coefficients
static_assert(kEllipsoidCount == 21, "21 ellipsoid constants");

// On the sphere, B = cos phi sin L is kept a hair inside +-1 (1 - 2^-48).
constexpr double kMaxB = 0.9999999999999964;

// Reciprocals of the factorial divisors of the series.
constexpr double k1_6 = 1.0 / 6.0, k1_24 = 1.0 / 24.0, k1_120 = 1.0 / 120.0, k1_720 = 1.0 / 720.0;
constexpr double k1_5040 = 1.0 / 5040.0, k1_40320 = 1.0 / 40320.0;
// The inverse longitude series keeps the divisor 5020 in its L^7 term.
constexpr double k1_5020 = 1.0 / 5020.0;

bool is_sphere(const double spheroid[2]) { return spheroid[1] < kZero; }

// Computes the constants of the system into `v`; returns their number.
int32_t tm_values(const double spheroid[2], const double parameters[16], double v[kEllipsoidCount]) {
    const double a = spheroid[0], e2 = spheroid[1], k0 = parameters[kSlotK0];
    if (is_sphere(spheroid)) {
        v[kSphereK0A] = k0 * a;
        v[kSphereHalfK0A] = k0 * a / 2.0;
        return kSphereCount;
    }
    const double phi0 = parameters[kSlotPhi0];
    rectifying_coefficients(e2, v + kMuForward, v + kMuInverse);
    v[kSecondEcc2] = e2 / (1.0 - e2);
    v[kMu0] = aux_series(v + kMuForward, phi0, std::sin(phi0), std::cos(phi0));
    v[kRectRadius] = ox_rect_r(a, e2);
    return kEllipsoidCount;
}

// The stored constants when they fit the spheroid's branch, else `local`
// filled for this call.
const double *tm_constants(const double spheroid[2], const double parameters[16], const int32_t *header,
                           const double *values, double local[kEllipsoidCount]) {
    const double *k = constants_if(header, values, is_sphere(spheroid) ? kSphereCount : kEllipsoidCount);
    if (k != nullptr) return k;
    tm_values(spheroid, parameters, local);
    return local;
}

// The ellipsoid constants of the point formulas.
struct TmEllipsoid {
    double e2, lon0, k0, k0a, ep2, mu0, rk0, one_minus_e2;
    double mu_forward[kAuxTerms], mu_inverse[kAuxTerms];

    TmEllipsoid(const double spheroid[2], const double parameters[16], const double *k)
        : e2(spheroid[1]),
          lon0(parameters[kSlotLon0]),
          k0(parameters[kSlotK0]),
          k0a(parameters[kSlotK0] * spheroid[0]),
          ep2(k[kSecondEcc2]),
          mu0(k[kMu0]),
          rk0(k[kRectRadius] * parameters[kSlotK0]),
          one_minus_e2(1.0 - spheroid[1]) {
        for (int i = 0; i < kAuxTerms; ++i) {
            mu_forward[i] = k[kMuForward + i];
            mu_inverse[i] = k[kMuInverse + i];
        }
    }
};

// Ellipsoid forward (Snyder 8-9, 8-10 with the eta^2 terms to eta^8).
struct ForwardEllipsoid {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const TmEllipsoid &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        const double L = M::reduce(d);
        const double phi = off_pole(lat);
        double s, c;
        M::sincos(phi, s, c);
        const double t = s / c, t2 = t * t, t4 = t2 * t2, t6 = t4 * t2;
        const double c2 = c * c;
        const double h2 = k.ep2 * c2, h4 = h2 * h2, h6 = h4 * h2, h8 = h4 * h4;  // powers of eta
        const double kn = k.k0a / std::sqrt(1.0 - k.e2 * s * s);                 // k0 N
        const double L2 = L * L, u = c2 * L2;                                    // (L cos phi)^2
        const double mu = aux_series(k.mu_forward, phi, s, c);

        const double y4 = (5.0 - t2 + 9.0 * h2 + 4.0 * h4) * k1_24;
        const double y6 = (61.0 - 58.0 * t2 + t4 + 270.0 * h2 + 445.0 * h4 + 324.0 * h6 + 88.0 * h8 -
                           (330.0 + 680.0 * h2 + 600.0 * h4 + 192.0 * h6) * t2 * h2) *
                          k1_720;
        const double y8 = (1385.0 - 3111.0 * t2 + 543.0 * t4 - t6) * k1_40320;
        const double x3 = (1.0 - t2 + h2) * k1_6;
        const double x5 =
            (5.0 - 18.0 * t2 + t4 + 14.0 * h2 + 13.0 * h4 + 4.0 * h6 - (58.0 + 64.0 * h2 + 24.0 * h4) * t2 * h2) *
            k1_120;
        const double x7 = (61.0 - 479.0 * t2 + 179.0 * t4 - t6) * k1_5040;

        y = (mu - k.mu0) * k.rk0 + kn * s * c * L2 * (0.5 + u * (y4 + u * (y6 + u * y8)));
        x = kn * c * L * (1.0 + u * (x3 + u * (x5 + u * x7)));
        return M::reduce_ok(d) & M::sincos_ok(phi);
    }
};

// Ellipsoid inverse (Snyder 8-17, 8-18 with the eta^2 terms to eta^8),
// written in q = x / (k0 nu), with nu / rho = w^2 / (1 - e2).
struct InverseEllipsoid {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const TmEllipsoid &k, double x, double y, double &lon, double &lat) {
        const double mu = y / k.rk0 + k.mu0;
        double sm, cm;
        M::sincos(mu, sm, cm);
        const double phi1 = aux_series(k.mu_inverse, mu, sm, cm);  // footpoint latitude
        double s, c;
        M::sincos(phi1, s, c);
        const double t = s / c, t2 = t * t, t4 = t2 * t2, t6 = t4 * t2;
        const double w2 = 1.0 - k.e2 * s * s;
        const double nu_k0 = k.k0a / std::sqrt(w2);  // k0 nu
        const double nu_rho = w2 / k.one_minus_e2;   // nu / rho
        const double h2 = k.ep2 * c * c, h4 = h2 * h2, h6 = h4 * h2, h8 = h4 * h4;
        const double q = x / nu_k0, q2 = q * q;

        const double p4 = (5.0 + 3.0 * t2 + h2 - 4.0 * h4 - 9.0 * t2 * h2) * k1_24;
        const double p6 =
            (61.0 + 90.0 * t2 + 45.0 * t4 + 46.0 * h2 - 3.0 * h4 + 100.0 * h6 + 88.0 * h8 - 252.0 * t2 * h2 -
             66.0 * t2 * h4 + 84.0 * t2 * h6 - 192.0 * t2 * h8 - 90.0 * t4 * h2 + 225.0 * t4 * h4) *
            k1_720;
        const double p8 = (1385.0 + 3633.0 * t2 + 4095.0 * t4 + 1575.0 * t6) * k1_40320;
        const double l3 = (1.0 + 2.0 * t2 + h2) * k1_6;
        const double l5 = (5.0 + 28.0 * t2 + 24.0 * t4 + 6.0 * h2 + 8.0 * t2 * h2 - 3.0 * h4 + 4.0 * t2 * h4 -
                           4.0 * h6 + 24.0 * t2 * h6) *
                          k1_120;
        const double l7 = (61.0 + 662.0 * t2 + 1320.0 * t4 + 720.0 * t6) * k1_5020;

        const double dlon = q / c * (1.0 - q2 * (l3 - q2 * (l5 - q2 * l7)));
        lat = phi1 - t * nu_rho * q2 * (0.5 - q2 * (p4 - q2 * (p6 - q2 * p8)));
        const double lon_unreduced = dlon + k.lon0;
        lon = M::reduce(lon_unreduced);
        return M::sincos_ok(mu) & M::sincos_ok(phi1) & M::reduce_ok(lon_unreduced);
    }
};

// The sphere constants of the point formulas.
struct TmSphere {
    double lon0, phi0, k0a, half_k0a;
};

// Sphere forward (Snyder 8-1 to 8-3): B = cos phi sin L, x = (k0 a / 2)
// ln((1 + B) / (1 - B)), y = k0 a (atan2(tan phi, cos L) - phi0).
struct ForwardSphere {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const TmSphere &k, double lon, double lat, double &x, double &y) {
        const double d = lon - k.lon0;
        const double L = M::reduce(d);
        const double phi = off_pole(lat);
        double sp, cp, sl, cl;
        M::sincos(phi, sp, cp);
        M::sincos(L, sl, cl);
        const double b = pull_inside(cp * sl, 1.0, kMaxB);
        const double ratio = (1.0 + b) / (1.0 - b);
        x = k.half_k0a * M::log(ratio);
        y = k.k0a * (M::atan2(sp / cp, cl) - k.phi0);
        return M::reduce_ok(d) & M::sincos_ok(phi) & M::sincos_ok(L) & M::log_ok(ratio);
    }
};

// Sphere inverse (Snyder 8-6, 8-7): D = y / (k0 a) + phi0, X = x / (k0 a),
// phi = asin(2 sin D / (e^-X + e^X)), lambda = atan2(e^X - e^-X, 2 cos D).
struct InverseSphere {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const TmSphere &k, double x, double y, double &lon, double &lat) {
        const double d = y / k.k0a + k.phi0;
        const double xr = x / k.k0a;
        const double ex = M::exp(xr), emx = M::exp(-xr);
        double sd, cd;
        M::sincos(d, sd, cd);
        const double sn = 2.0 * sd / (emx + ex);
        lat = M::asin(std::fabs(sn) > 1.0 ? std::copysign(1.0, sn) : sn);
        const double l = M::atan2(ex - emx, 2.0 * cd) + k.lon0;
        lon = M::reduce(l);
        return M::sincos_ok(d) & M::reduce_ok(l);
    }
};

}  // namespace

OX_CONSTANTS_ROUTINE(gauss_kruger_constants) {
    if (c == nullptr || spheroid == nullptr || parameters == nullptr) return 0;
    double v[kEllipsoidCount];
    return store_constants(c, v, tm_values(spheroid, parameters, v));
}

// Every point is converted; the count is n.
OX_UNITS_ROUTINE(gauss_kruger_forward_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kEllipsoidCount];
    const double *k = tm_constants(spheroid, parameters, constants_header, constants_values, local);
    if (is_sphere(spheroid))
        run_forward<ForwardSphere>(
            TmSphere{parameters[kSlotLon0], parameters[kSlotPhi0], k[kSphereK0A], k[kSphereHalfK0A]}, n, points, units);
    else
        run_forward<ForwardEllipsoid>(TmEllipsoid(spheroid, parameters, k), n, points, units);
    return n;
}

OX_UNITS_ROUTINE(gauss_kruger_inverse_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    double local[kEllipsoidCount];
    const double *k = tm_constants(spheroid, parameters, constants_header, constants_values, local);
    if (is_sphere(spheroid))
        run_inverse<InverseSphere>(
            TmSphere{parameters[kSlotLon0], parameters[kSlotPhi0], k[kSphereK0A], k[kSphereHalfK0A]}, n, points, units);
    else
        run_inverse<InverseEllipsoid>(TmEllipsoid(spheroid, parameters, k), n, points, units);
    return n;
}

OX_PLAIN_ROUTINE(gauss_kruger_forward)
OX_PLAIN_ROUTINE(gauss_kruger_inverse)

}  // namespace ox
