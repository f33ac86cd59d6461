// "Double_Stereographic": EPSG's Oblique Stereographic (IOGP Guidance Note
// 7-2, method 9809), the "double" projection: the ellipsoid onto Gauss's
// conformal sphere of radius R = sqrt(rho0 nu0) about phi0, then the
// stereographic projection of that sphere about the image (chi0, 0) of the
// origin with scale k0:
//     psi_chi = n psi(phi) + ln(c)/2,  Lambda = n L,
//     x = 2 R k0 east / (1 + up),  y = 2 R k0 north / (1 + up),
// (east, north, up) the unit vector of (chi, Lambda) in the frame of chi0,
// with n, c and chi0 of the source (ox_projshared.h, GaussSphere, where
// ln(c)/2 is formed without differences of large terms, so that a polar
// origin works too).  Inverse: (chi, Lambda) by the rotation of the sphere,
// psi(phi) = (psi_chi - ln(c)/2) / n, phi from psi through the conformal
// latitude gd(psi) and its series (the library's auxiliary latitudes), L =
// Lambda / n; no iteration (the source iterates on phi).  On a sphere n =
// c = 1, R = a and it is the plain oblique stereographic.
//
// Domain: the longitudes within 180 / n degrees of the central meridian
// (Lambda within 180 degrees; on the Earth n - 1 < 0.0034, so this leaves
// out at most 0.6 degrees next to the antimeridian of the origin, where the
// sphere's longitudes would wrap and the map overlap itself), but the
// antipode of the origin on Gauss's sphere (at infinity).
//
// Refused: a scale factor that is not positive and finite, a latitude of
// origin beyond a pole, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

using Sphere = StereographicSphere;

struct Ellipsoid {
    struct Constants {
        double e;
        double n, log_c_half;
        double sin0, cos0;  // of chi0
        double k;           // 2 R k0
        double chi_inverse[kAuxTerms];
    };
    static bool setup(const Frame &f, Constants &c) {
        GaussSphere g;
        g.init(f.a, f.e2, latitude_parameter(f.p.latitude_of_origin));
        double chi_forward[kAuxTerms];
        conformal_coefficients(f.e2, chi_forward, c.chi_inverse);
        c.e = std::sqrt(f.e2);
        c.n = g.n;
        c.log_c_half = g.log_c_half;
        c.sin0 = g.sin_chi0;
        c.cos0 = g.cos_chi0;
        c.k = 2.0 * g.radius * f.p.scale_factor;
        return Sphere::parameters_ok(f) && std::isfinite(c.k) && std::isfinite(c.log_c_half);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double big_l = c.n * M::reduce(d);  // Lambda
        double s, co, sc, cc, sl, cl, east, north, up;
        M::sincos(lat, s, co);
        bool ok_psi, ok_chi;
        const double psi = c.n * isometric_latitude<M>(c.e, s, co, ok_psi) + c.log_c_half;
        gudermannian<M>(psi, sc, cc, ok_chi);
        M::sincos(big_l, sl, cl);
        frame_components(c.sin0, c.cos0, sc, cc, sl, cl, east, north, up);
        stereographic_xy(c.k, east, north, up, x, y);
        // (Lambda beyond pi would wrap onto the other side of the sphere)
        x = std::fabs(big_l) <= kPi ? x : failure_nan();
        return M::reduce_ok(d) & M::sincos_ok(lat) & ok_psi & ok_chi & M::sincos_ok(big_l);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double east, north, up, big_l, chi, s, co;
        stereographic_components(c.k, x, y, east, north, up);
        bool ok = frame_position<M>(c.sin0, c.cos0, east, north, up, big_l, chi, s, co);
        // psi_chi = atanh(sin chi) = sign ln((1 + |s|) / cos chi), then psi(phi).
        bool ok_psi, ok_gd;
        const double psi = (isometric_latitude<M>(0.0, s, co, ok_psi) - c.log_c_half) / c.n;
        double sp, cp;
        const double conformal = gudermannian<M>(psi, sp, cp, ok_gd);
        lat = aux_series(c.chi_inverse, conformal, sp, cp);
        const double l = f.p.central_meridian + big_l / c.n;
        lon = M::reduce(l);
        return ok & ok_psi & ok_gd & M::reduce_ok(l);
    }
};

struct DoubleStereographic : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43038;
    static constexpr const char *kName = "Double_Stereographic";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kScaleAndOrigin;
    static constexpr ox_horizon_routine kHorizon = horizon_stereographic;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(DoubleStereographic)
