// "Albers": Albers' equal-area conic projection with two standard parallels
// (Snyder, Map Projections: A Working Manual, 1987, eqs. 14-1 to 14-19;
// IOGP Guidance Note 7-2, method 9822).  With the authalic function q
// (Snyder 3-12) and m = cos phi / sqrt(1 - e2 sin^2 phi),
//     n = (m1^2 - m2^2) / (q2 - q1)   (n = sin phi1 for equal parallels),
//     C = m1^2 + n q1,  rho = a sqrt(C - n q) / n,
//     theta = n L,  x = rho sin theta,  y = rho0 - rho cos theta.
// Written as the library's cone (ox_projshared.h) with n rho = a sqrt(C -
// n q) and rho0 - rho = a (q - q0) / (sqrt(C - n q0) + sqrt(C - n q)), and n
// from differences of the parallels,
//     n = (s1 + s2) / (1 + e2 s1 s2 + w1^2 w2^2 A),
//     A = atanh(z) / z / (1 - e2 s1 s2),  z = e (s2 - s1) / (1 - e2 s1 s2),
// (s = sin phi, w^2 = 1 - e2 s^2), the formulas stay exact for parallels
// as close as they come and as n tends to 0: parallels symmetric about the
// equator give n = 0, the cylindrical limit (Lambert's cylindrical
// equal-area projection with that standard parallel).  Inverse:
//     q = q0 + 2 sqrt(C - n q0) y / a - n (x^2 + y^2) / a^2,
// sin beta = q / qp, and phi from the authalic latitude beta by its series
// (the library's auxiliary latitudes); no iteration.  On a sphere q = 2 sin
// phi and phi = asin(q / 2).
//
// Domain: the whole globe (both poles are arcs).  The inverse refuses points
// outside the image (|q| beyond qp, or in the gap of the cone).
//
// Refused: a standard parallel at or beyond a pole, a latitude of origin
// beyond a pole, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

// The constants of both forms.
struct AlbersConstants {
    double e;       // eccentricity (0 on a sphere)
    double n;       // cone constant
    double c;       // C = m1^2 + n q1
    double q0;      // q of the latitude of origin
    double s0;      // sqrt(C - n q0): n rho0 = a s0
    double qp;      // q at the pole
};

// n from the parallels (see the header), q1 and q0 by `q` (sin phi -> q).
template <class Q>
bool albers_setup(const Frame &f, double e, Q q, AlbersConstants &c) {
    const double phi1 = f.p.standard_parallel_1, phi2 = f.p.standard_parallel_2;
    const double phi0 = latitude_parameter(f.p.latitude_of_origin);
    if (!finite(f.p.central_meridian) || !finite(phi0)) return false;
    for (double phi : {phi1, phi2})
        if (!(std::fabs(phi) < kHalfPi) || at_pole(phi)) return false;
    const double e2 = e * e;
    const double s1 = std::sin(phi1), s2 = std::sin(phi2);
    const double w1_2 = 1.0 - e2 * s1 * s1, w2_2 = 1.0 - e2 * s2 * s2;
    const double d = 2.0 * std::cos(0.5 * (phi1 + phi2)) * std::sin(0.5 * (phi2 - phi1));  // s2 - s1
    const double z = e * d / (1.0 - e2 * s1 * s2);
    const double a = (z == 0.0 ? 1.0 : std::atanh(z) / z) / (1.0 - e2 * s1 * s2);
    c.e = e;
    c.n = (s1 + s2) / (1.0 + e2 * s1 * s2 + w1_2 * w2_2 * a);
    const double m1_2 = (1.0 - s1 * s1) / w1_2;
    c.c = m1_2 + c.n * q(s1);
    c.q0 = q(std::sin(phi0));
    c.qp = q(1.0);
    c.s0 = std::sqrt(std::fmax(c.c - c.n * c.q0, 0.0));
    return std::isfinite(c.n) && std::isfinite(c.c) && std::isfinite(c.s0) && std::fabs(c.n) <= 1.0;
}

// The forward from q of the point.
template <class M>
OX_ALWAYS_INLINE bool albers_forward(const Frame &f, const AlbersConstants &c, double L, double q, double &x,
                                     double &y) {
    const double rad = c.c - c.n * q;
    const double s = M::sqrt(rad > 0.0 ? rad : 0.0);  // a select, not fmax: the loop vectorises
    const double sum = c.s0 + s;
    const double offset = sum == 0.0 ? 0.0 : f.a * (q - c.q0) / sum;
    return cone_forward<M>(c.n, f.a * s, offset, L, x, y);
}

// The inverse to sin beta = q / qp and the longitude.  sin beta is within
// [-1, 1] (rounding beyond it by 1e-14 is clamped) or NaN outside the
// image, so the arcsine needs no range predicate: a predicate that read the
// NaN would keep the point loop from vectorising (see cone_longitude).
template <class M>
OX_ALWAYS_INLINE bool albers_inverse(const Frame &f, const AlbersConstants &c, double x, double y, double &lon,
                                     double &sin_beta) {
    const double a2 = f.a * f.a;
    const double q = c.q0 + 2.0 * c.s0 * y / f.a - c.n * (x * x + y * y) / a2;
    const double sb = q / c.qp;
    sin_beta = std::fabs(sb) <= 1.0 ? sb : (std::fabs(sb) <= 1.0 + 1e-14 ? std::copysign(1.0, sb) : failure_nan());
    const double rad = c.c - c.n * q;
    const double s = M::sqrt(rad > 0.0 ? rad : 0.0);  // a select, not fmax: the loop vectorises
    bool ok;
    const double u = c.n * x, v = f.a * c.s0 - c.n * y;
    const double theta = cone_angle<M>(c.n, f.a * c.s0, x, y, ok);
    return ok & cone_longitude<M>(f.p.central_meridian, c.n, theta, u, v, x, f.a * s, lon);
}

struct Sphere {
    using Constants = AlbersConstants;
    static bool setup(const Frame &f, Constants &c) {
        return albers_setup(f, 0.0, [](double s) { return 2.0 * s; }, c);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        double s, co;
        M::sincos(lat, s, co);
        return albers_forward<M>(f, c, M::reduce(d), 2.0 * s, x, y) & M::reduce_ok(d) & M::sincos_ok(lat);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double sin_phi;
        const bool ok = albers_inverse<M>(f, c, x, y, lon, sin_phi);
        lat = M::asin(sin_phi);
        return ok;
    }
};

struct Ellipsoid {
    struct Constants : AlbersConstants {
        double beta_inverse[kAuxTerms];  // authalic latitude -> phi
    };
    static bool setup(const Frame &f, Constants &c) {
        double beta_forward[kAuxTerms];
        authalic_coefficients(f.e2, beta_forward, c.beta_inverse);
        const double e = std::sqrt(f.e2);
        return albers_setup(
            f, e,
            [&](double s) {
                bool ok;
                return authalic_q<ExactMath>(e, f.e2, s, ok);
            },
            c);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        double s, co;
        M::sincos(lat, s, co);
        bool ok;
        const double q = authalic_q<M>(c.e, f.e2, s, ok);
        return albers_forward<M>(f, c, M::reduce(d), q, x, y) & ok & M::reduce_ok(d) & M::sincos_ok(lat);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double sb;
        const bool ok = albers_inverse<M>(f, c, x, y, lon, sb);
        const double cb = M::sqrt((1.0 - sb) * (1.0 + sb));
        lat = aux_series(c.beta_inverse, M::asin(sb), sb, cb);
        return ok;
    }
};

// The whole globe: both poles are arcs of the map.
OX_HORIZON_ROUTINE(horizon_albers) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kPi, kHalfPi, max_vertices, vertices);
}

struct Albers : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43007;
    static constexpr const char *kName = "Albers";
    static constexpr Family kFamily = Family::kConic;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kTwoParallels;
    static constexpr ox_horizon_routine kHorizon = horizon_albers;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Albers)
