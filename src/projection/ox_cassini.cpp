// "Cassini": the Cassini-Soldner projection, the transverse form of the
// equidistant cylindrical projection, with a scale factor k0 on both
// coordinates (1 for Cassini-Soldner itself).
//
// Sphere (Snyder, Map Projections: A Working Manual, 1987, eqs. 13-1 to
// 13-7), written with atan2 so that it is exact everywhere:
//     x = a k0 atan2(cos phi sin L, hypot(sin phi, cos phi cos L)),
//     y = a k0 (atan2(sin phi, cos phi cos L) - phi0);
//     phi = atan2(sin D cos(x'), hypot(sin x', cos D cos x')),
//     L = atan2(sin x', cos x' cos D),  x' = x / (a k0),  D = y / (a k0) + phi0.
//
// Ellipsoid: the series of IOGP Guidance Note 7-2, method 9806 (Snyder eqs.
// 13-8 to 13-14), with A = L cos phi, T = tan^2 phi, C = e2 cos^2 phi / (1 -
// e2), written in sin and cos of phi so that nothing is infinite at a pole:
//     X = nu L c [1 - L^2 s^2 / 6 - L^4 s^2 (8c^2 - s^2 + 8C c^2) / 120],
//     Y = M - M0 + nu L^2 s c [1/2 + L^2 (5c^2 - s^2 + 6C c^2) / 24],
// x = k0 X, y = k0 Y.  The inverse series of the same source (from the
// footpoint latitude of M0 + Y) is not the exact inverse of the forward
// series: a round trip misses by up to 6 micrometres 4 degrees from the
// central meridian.  So the inverse takes it as the start and corrects it
// three times, p <- p + G(x, y) - G(F(p)) (F the forward, G the inverse
// series): each correction multiplies the error by the derivative of
// G(F(p)) - p, about 1e-11 at 4 degrees, and the inverse is exact to
// rounding for the forward that the registry defines: round trips within
// 1e-11 degrees up to 10 degrees from the central meridian, within 1e-8
// degrees over the whole band (the correction converges slowly far out at
// high latitudes).
//
// Domain: the ellipsoidal series are meant for a band about the central
// meridian; points more than 30 degrees of longitude from it fail
// (horizon: that band), as do inverse points whose answer lies beyond it.
// The sphere has no limit (every point is converted).
//
// Refused: a scale factor that is not positive and finite, a latitude of
// origin beyond a pole, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

constexpr double kBand = 30.0 * kDegree;
constexpr int kCorrections = 3;  // of the inverse series (see above)

bool parameters_ok(const Frame &f) {
    return positive(f.p.scale_factor) && finite(f.p.central_meridian) &&
           finite(latitude_parameter(f.p.latitude_of_origin));
}

struct Sphere {
    struct Constants {
        double ak0;   // a k0
        double phi0;  // the latitude of origin
    };
    static bool setup(const Frame &f, Constants &c) {
        c.ak0 = f.a * f.p.scale_factor;
        c.phi0 = latitude_parameter(f.p.latitude_of_origin);
        return parameters_ok(f);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        double s, co, sl, cl;
        M::sincos(lat, s, co);
        M::sincos(L, sl, cl);
        const double u = co * sl, v = co * cl;
        const double h = M::sqrt(s * s + v * v);
        x = c.ak0 * M::atan2(u, h);
        y = c.ak0 * (M::atan2(s, v) - c.phi0);
        return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(L) & M::atan2_ok(u, h) & M::atan2_ok(s, v);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double xs = x / c.ak0, D = y / c.ak0 + c.phi0;
        double sx, cx, sd, cd;
        M::sincos(xs, sx, cx);
        M::sincos(D, sd, cd);
        const double v = cx * cd;
        const double h = M::sqrt(sx * sx + v * v);
        const double L = M::atan2(sx, v);
        const double l = f.p.central_meridian + L;
        const bool inside = std::fabs(xs) <= kHalfPi;
        lat = inside ? M::atan2(sd * cx, h) : failure_nan();
        lon = M::reduce(l);
        return M::sincos_ok(xs) & M::sincos_ok(D) & M::atan2_ok(sd * cx, h) & M::atan2_ok(sx, v) & M::reduce_ok(l);
    }
};

struct Ellipsoid {
    struct Constants {
        double k0;
        double ep2;  // e2 / (1 - e2)
        double m0;   // M0
        MeridianArc arc;
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi0 = latitude_parameter(f.p.latitude_of_origin);
        c.k0 = f.p.scale_factor;
        c.ep2 = f.e2 / (1.0 - f.e2);
        c.arc.init(f.a, f.e2);
        c.m0 = c.arc.arc(phi0, std::sin(phi0), std::cos(phi0));
        return parameters_ok(f);
    }

    // The series forward, X and Y in metres on the map of scale 1.
    template <class M>
    static OX_ALWAYS_INLINE bool series_forward(const Frame &f, const Constants &c, double phi, double L, double &X,
                                                double &Y) {
        double s, co;
        M::sincos(phi, s, co);
        const double nu = f.a / M::sqrt(1.0 - f.e2 * s * s);
        const double s2 = s * s, c2 = co * co, L2 = L * L;
        const double cc2 = c.ep2 * c2 * c2;  // C cos^2 phi
        X = nu * L * co * (1.0 - L2 * s2 / 6.0 - L2 * L2 * s2 * (8.0 * c2 - s2 + 8.0 * cc2) / 120.0);
        Y = c.arc.arc(phi, s, co) - c.m0 + nu * L2 * s * co * (0.5 + L2 * (5.0 * c2 - s2 + 6.0 * cc2) / 24.0);
        return M::sincos_ok(phi);
    }
    // The inverse series from X and Y (scale 1): the footpoint latitude phi1
    // of M0 + Y, D = X / nu1,
    //     phi = phi1 - (nu1 tan phi1 / rho1) (D^2/2 - (1 + 3 T1) D^4/24),
    //     L = (D - T1 D^3/3 + (1 + 3 T1) T1 D^5/15) / cos phi1.
    template <class M>
    static OX_ALWAYS_INLINE bool series_inverse(const Frame &f, const Constants &c, double X, double Y, double &phi,
                                                double &L) {
        bool ok;
        const double phi1 = c.arc.template latitude<M>(c.m0 + Y, ok);
        double s, co;
        M::sincos(phi1, s, co);
        const double w2 = 1.0 - f.e2 * s * s;
        const double nu = f.a / M::sqrt(w2);
        const double nu_over_rho = w2 / (1.0 - f.e2);
        const double t = s / co, t2 = t * t;
        const double D = X / nu, D2 = D * D;
        phi = phi1 - nu_over_rho * t * D2 * (0.5 - (1.0 + 3.0 * t2) * D2 / 24.0);
        L = D * (1.0 - t2 * D2 / 3.0 + (1.0 + 3.0 * t2) * t2 * D2 * D2 / 15.0) / co;
        return ok;  // (phi1 is NaN or within a right angle, in the sine's range)
    }

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        double X, Y;
        const bool ok = series_forward<M>(f, c, lat, L, X, Y);
        const bool inside = std::fabs(L) <= kBand * (1.0 + 1e-8);  // (the band's edge, after the inverse's error)
        x = inside ? c.k0 * X : failure_nan();
        y = c.k0 * Y;
        return ok & M::reduce_ok(d);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double X = x / c.k0, Y = y / c.k0;
        double phi0, L0, phi, L;
        bool ok = series_inverse<M>(f, c, X, Y, phi0, L0);
        phi = phi0;
        L = L0;
        // (unrolled: a loop inside the point loop keeps that from vectorising)
#pragma GCC unroll 3
        for (int step = 0; step < kCorrections; ++step) {
            double Xp, Yp, phi_p, L_p;
            ok = ok & series_forward<M>(f, c, phi, L, Xp, Yp);
            ok = ok & series_inverse<M>(f, c, Xp, Yp, phi_p, L_p);
            phi += phi0 - phi_p;
            L += L0 - L_p;
        }
        const double l = f.p.central_meridian + L;
        // (the band's edge after the inverse's own error there, 1e-8 degrees)
        const bool inside = (std::fabs(L) <= kBand * (1.0 + 1e-8)) & (std::fabs(phi) <= kHalfPi);
        lon = M::reduce(l);
        lat = inside ? phi : failure_nan();
        return ok & (M::reduce_ok(l) | !inside);
    }
};

OX_HORIZON_ROUTINE(horizon_cassini) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kBand, kHalfPi, max_vertices, vertices);
}

struct Cassini : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43028;
    static constexpr const char *kName = "Cassini";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kDistance;
    static constexpr ParameterSet kParameters = parameter_sets::kScaleAndOrigin;
    static constexpr ox_horizon_routine kHorizon = horizon_cassini;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Cassini)
