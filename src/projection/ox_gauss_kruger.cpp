// "Transverse_Mercator" and its twin "Gauss_Kruger": the power series in the
// longitude difference on the ellipsoid, the closed formulas on the sphere.
//
// Ellipsoid: the series of Thomas (1952) and Redfearn (1948) as set out in
// Snyder, Map Projections: A Working Manual (USGS PP 1395, 1987), eqs. 8-9
// to 8-10 and 8-17 to 8-18 with the terms carried to L^8 and eta^8; the
// meridian distance is the rectifying latitude times the rectifying radius.
// Sphere: Snyder eqs. 8-1 to 8-3 (forward) and 8-6 to 8-7 (inverse).
//
// Refused: a scale factor that is not positive and finite, a non-finite
// central meridian, a latitude of origin that is not finite or beyond a
// pole.  Every other point is converted and counted; the series is meant
// for the band of a few degrees about the central meridian (horizon: 10
// degrees either side, where it stays within a few centimetres).
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

// On the sphere, B = cos phi sin L is kept a hair inside +-1 (1 - 2^-48).
constexpr double kMaxB = 0.9999999999999964;

// Reciprocals of the factorial divisors of the series.
constexpr double k1_6 = 1.0 / 6.0, k1_24 = 1.0 / 24.0, k1_120 = 1.0 / 120.0, k1_720 = 1.0 / 720.0;
constexpr double k1_5040 = 1.0 / 5040.0, k1_40320 = 1.0 / 40320.0;
// The inverse longitude series keeps the divisor 5020 in its L^7 term.
constexpr double k1_5020 = 1.0 / 5020.0;

bool parameters_ok(const Frame &f) {
    return positive(f.p.scale_factor) && finite(f.p.central_meridian) &&
           std::fabs(f.p.latitude_of_origin) <= kHalfPi;
}

struct Ellipsoid {
    struct Constants {
        double ep2;          // e'^2 = e2 / (1 - e2)
        double mu0;          // rectifying latitude of the latitude of origin
        double rect_radius;  // rectifying radius R; the origin's meridian distance is R mu0
        double mu_forward[kAuxTerms], mu_inverse[kAuxTerms];  // phi -> mu and mu -> phi
    };
    static bool setup(const Frame &f, Constants &c) {
        if (!parameters_ok(f)) return false;
        const double phi0 = f.p.latitude_of_origin;
        rectifying_coefficients(f.e2, c.mu_forward, c.mu_inverse);
        c.ep2 = f.e2 / (1.0 - f.e2);
        c.mu0 = aux_series(c.mu_forward, phi0, std::sin(phi0), std::cos(phi0));
        c.rect_radius = ox_rect_r(f.a, f.e2);
        return true;
    }

    // Snyder 8-9, 8-10 with the eta^2 terms to eta^8.
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        const double phi = off_pole(lat);
        double s, co;
        M::sincos(phi, s, co);
        const double t = s / co, t2 = t * t, t4 = t2 * t2, t6 = t4 * t2;
        const double c2 = co * co;
        const double h2 = c.ep2 * c2, h4 = h2 * h2, h6 = h4 * h2, h8 = h4 * h4;        // powers of eta
        const double kn = (f.p.scale_factor * f.a) / std::sqrt(1.0 - f.e2 * s * s);  // k0 N
        const double L2 = L * L, u = c2 * L2;                                         // (L cos phi)^2
        const double mu = aux_series(c.mu_forward, phi, s, co);

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

        y = (mu - c.mu0) * (c.rect_radius * f.p.scale_factor) + kn * s * co * L2 * (0.5 + u * (y4 + u * (y6 + u * y8)));
        x = kn * co * L * (1.0 + u * (x3 + u * (x5 + u * x7)));
        return M::reduce_ok(d) & M::sincos_ok(phi);
    }

    // Snyder 8-17, 8-18 with the eta^2 terms to eta^8, written in
    // q = x / (k0 nu), with nu / rho = w^2 / (1 - e2).
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double mu = y / (c.rect_radius * f.p.scale_factor) + c.mu0;
        double sm, cm;
        M::sincos(mu, sm, cm);
        const double phi1 = aux_series(c.mu_inverse, mu, sm, cm);  // footpoint latitude
        double s, co;
        M::sincos(phi1, s, co);
        const double t = s / co, t2 = t * t, t4 = t2 * t2, t6 = t4 * t2;
        const double w2 = 1.0 - f.e2 * s * s;
        const double nu_k0 = (f.p.scale_factor * f.a) / std::sqrt(w2);  // k0 nu
        const double nu_rho = w2 / (1.0 - f.e2);                         // nu / rho
        const double h2 = c.ep2 * co * co, h4 = h2 * h2, h6 = h4 * h2, h8 = h4 * h4;
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

        const double dlon = q / co * (1.0 - q2 * (l3 - q2 * (l5 - q2 * l7)));
        lat = phi1 - t * nu_rho * q2 * (0.5 - q2 * (p4 - q2 * (p6 - q2 * p8)));
        const double lon_unreduced = dlon + f.p.central_meridian;
        lon = M::reduce(lon_unreduced);
        return M::sincos_ok(mu) & M::sincos_ok(phi1) & M::reduce_ok(lon_unreduced);
    }
};

struct Sphere {
    struct Constants {
        double k0a;       // k0 a
        double half_k0a;  // k0 a / 2
    };
    static bool setup(const Frame &f, Constants &c) {
        if (!parameters_ok(f)) return false;
        c.k0a = f.p.scale_factor * f.a;
        c.half_k0a = f.p.scale_factor * f.a / 2.0;
        return true;
    }

    // Snyder 8-1 to 8-3: B = cos phi sin L, x = (k0 a / 2) ln((1 + B) / (1 - B)),
    // y = k0 a (atan2(tan phi, cos L) - phi0).
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        const double phi = off_pole(lat);
        double sp, cp, sl, cl;
        M::sincos(phi, sp, cp);
        M::sincos(L, sl, cl);
        const double b = pull_inside(cp * sl, 1.0, kMaxB);
        const double ratio = (1.0 + b) / (1.0 - b);
        const double tan_phi = sp / cp;
        x = c.half_k0a * M::log(ratio);
        y = c.k0a * (M::atan2(tan_phi, cl) - f.p.latitude_of_origin);
        return M::reduce_ok(d) & M::sincos_ok(phi) & M::sincos_ok(L) & M::log_ok(ratio) & M::atan2_ok(tan_phi, cl);
    }

    // Snyder 8-6, 8-7: D = y / (k0 a) + phi0, X = x / (k0 a),
    // phi = asin(2 sin D / (e^-X + e^X)), lambda = atan2(e^X - e^-X, 2 cos D).
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double d = y / c.k0a + f.p.latitude_of_origin;
        const double xr = x / c.k0a;
        const double ex = M::exp(xr), emx = M::exp(-xr);
        double sd, cd;
        M::sincos(d, sd, cd);
        const double sn = 2.0 * sd / (emx + ex);
        lat = M::asin(std::fabs(sn) > 1.0 ? std::copysign(1.0, sn) : sn);
        const double dy = ex - emx, dx = 2.0 * cd;
        const double l = M::atan2(dy, dx) + f.p.central_meridian;
        lon = M::reduce(l);
        return M::sincos_ok(d) & M::exp_ok(xr) & M::exp_ok(-xr) & M::atan2_ok(dy, dx) & M::reduce_ok(l);
    }
};

// The band of 10 degrees either side of the central meridian, pole to
// pole, where the series stays within a few centimetres of the exact
// projection.
constexpr double kSeriesBand = 10.0 * kDegree;
OX_HORIZON_ROUTINE(horizon_transverse_mercator) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kSeriesBand, kHalfPi, max_vertices, vertices);
}

struct TransverseMercator : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43006;
    static constexpr const char *kName = "Transverse_Mercator";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kScaleAndOrigin;
    static constexpr ox_horizon_routine kHorizon = horizon_transverse_mercator;
    static constexpr bool kHasConstantsRoutine = true;
    static constexpr bool kCountsEveryPoint = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(TransverseMercator)

// "Gauss_Kruger" shares every routine of "Transverse_Mercator"; only the name
// and code differ.
namespace ox {
extern const ProjRow kProjectionGaussKruger;
constinit const ProjRow kProjectionGaussKruger = projection_row_named<TransverseMercator>(43005, "Gauss_Kruger");
}  // namespace ox
