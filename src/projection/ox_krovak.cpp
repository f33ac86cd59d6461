// "Krovak": Krovak's oblique conformal conic projection (IOGP Guidance Note
// 7-2, 2019, section 3.1.3, method 9819; its north-orientated form 1041 by
// the axis parameters below).  The ellipsoid is mapped conformally onto the
// Gaussian sphere, the sphere turned so that the cone's axis, at co-latitude
// alpha_c ("Azimuth") on the meridian of the origin lambda_O
// ("Longitude_Of_Center"), becomes its pole, and a Lambert conic projection
// with the standard parallel phi_p ("Pseudo_Standard_Parallel_1") and scale
// k_p there ("Scale_Factor") is made of the turned sphere.  With phi_c the
// latitude of the centre ("Latitude_Of_Center"):
//     B = sqrt(1 + e2 cos^4 phi_c / (1 - e2)),
//     A = a sqrt(1 - e2) / (1 - e2 sin^2 phi_c),
//     gamma_0 = asin(sin phi_c / B),  t_0 = exp(atanh sin gamma_0 - B psi_c),
//     n = sin phi_p,  r_0 = k_p A / tan phi_p;
// a point (phi, lambda) with isometric latitude psi (ox_projshared.h) goes to
//     U = gd(B psi + ln t_0),  V = B (lambda_O - lambda),
//     sin T = cos alpha_c sin U + sin alpha_c cos U cos V,
//     D = atan2(cos U sin V, cos alpha_c cos U cos V - sin alpha_c sin U),
//     r = r_0 tan^n(pi/4 + phi_p/2) / tan^n(pi/4 + T/2),  theta = n D,
//     X_p = r cos theta (southing),  Y_p = r sin theta (westing),
// the Guidance Note's formulas with D by its quadrant and tan(pi/4 + T/2)
// taken as exp(atanh sin T) from the components of the turned unit vector.
// The inverse runs the same steps back: T and D from the plane, U and V by
// the inverse turn, phi from U through the conformal latitude and its
// series (no iteration).  On a sphere (e2 below 2^-48) B = 1, t_0 = 1.
//
// Axes.  (X_p, Y_p) are the Guidance Note's southing and westing.  The
// plane is turned by the angle w ("XY_Plane_Rotation") and scaled per axis:
//     x = X_Scale (X_p cos w + Y_p sin w),  y = Y_Scale (-X_p sin w + Y_p cos w),
// so X_Scale = Y_Scale = 1, w = 0 gives x = southing, y = westing (method
// 9819, as the registry writes its coordinates) and X_Scale = -1,
// Y_Scale = 1, w = 90 degrees gives x = -westing = easting, y = -southing =
// northing (method 1041, Krovak North Orientated).  Quarter turns are exact.
// The false easting and northing are added to x and y after the turn.
//
// Domain: the forward converts every point but the antipode of the cone's
// pole (where r is infinite); the inverse takes every (x, y) within the
// cone's opening, |theta| <= n pi.  Other points get the failure value.
//
// Refused: a latitude of centre at or beyond a pole, a pseudo standard
// parallel not strictly between the equator and the north pole, a scale
// factor that is not positive, an axis scale of 0, any parameter that is not
// finite.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projshared.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

struct KrovakConstants {
    double lambda_o;        // longitude of origin
    double b;               // B
    double log_t0;          // ln t_0
    double sin_ac, cos_ac;  // co-latitude of the cone's axis
    double n;               // sin phi_p
    double log_k;           // ln(r_0 tan^n(pi/4 + phi_p/2))
    double e;               // first eccentricity (0 on a sphere)
    double m11, m12, m21, m22;  // (x, y) = m (X_p, Y_p)
    double i11, i12, i21, i22;  // the inverse matrix
    double chi_inverse[kAuxTerms];
};

// sin and cos of an angle, exact for the multiples of a right angle.
void exact_sincos(double angle, double &s, double &c) {
    const double quarters = std::nearbyint(angle / kHalfPi);
    if (std::fabs(quarters) < 1e9 && equal_rule(angle, quarters * kHalfPi)) {
        const int k = static_cast<int>(std::fmod(quarters, 4.0) + 4.0) % 4;
        constexpr double kSin[4] = {0.0, 1.0, 0.0, -1.0}, kCos[4] = {1.0, 0.0, -1.0, 0.0};
        s = kSin[k];
        c = kCos[k];
        return;
    }
    s = std::sin(angle);
    c = std::cos(angle);
}

bool krovak_setup(const Frame &f, bool ellipsoid, KrovakConstants &c) {
    const double phi_c = f.p.latitude_of_center, phi_p = f.p.pseudo_standard_parallel_1();
    const double alpha = f.p.azimuth, k = f.p.scale_factor;
    const double sx = f.p.x_scale, sy = f.p.y_scale, w = f.p.xy_plane_rotation;
    if (!(std::fabs(phi_c) < kHalfPi) || at_pole(phi_c) || !(phi_p > 0.0 && phi_p < kHalfPi) || at_pole(phi_p) ||
        !positive(k) || !finite(f.p.longitude_of_center) || !finite(alpha) || !finite(sx) || !finite(sy) ||
        sx == 0.0 || sy == 0.0 || !finite(w))
        return false;
    const double e2 = ellipsoid ? f.e2 : 0.0;
    const double s = std::sin(phi_c), co = std::cos(phi_c);
    const double b = std::sqrt(1.0 + e2 * co * co * co * co / (1.0 - e2));
    const double a = f.a * std::sqrt(1.0 - e2) / (1.0 - e2 * s * s);
    const double g0 = std::asin(s / b);
    c.lambda_o = f.p.longitude_of_center;
    c.b = b;
    c.log_t0 = std::atanh(std::sin(g0)) - b * isometric_latitude_exact(e2, phi_c);
    c.sin_ac = std::sin(alpha);
    c.cos_ac = std::cos(alpha);
    c.n = std::sin(phi_p);
    const double r0 = k * a / std::tan(phi_p);
    c.log_k = std::log(r0) + c.n * std::atanh(c.n);
    c.e = std::sqrt(e2);
    double sw, cw;
    exact_sincos(w, sw, cw);
    c.m11 = sx * cw;
    c.m12 = sx * sw;
    c.m21 = -sy * sw;
    c.m22 = sy * cw;
    const double det = sx * sy;  // cos^2 w + sin^2 w = 1
    c.i11 = c.m22 / det;
    c.i12 = -c.m12 / det;
    c.i21 = -c.m21 / det;
    c.i22 = c.m11 / det;
    double unused[kAuxTerms];
    if (ellipsoid)
        conformal_coefficients(e2, unused, c.chi_inverse);
    else
        for (double &v : c.chi_inverse) v = 0.0;
    const double *v = &c.lambda_o;
    for (size_t i = 0; i < sizeof c / sizeof(double); ++i)
        if (!std::isfinite(v[i])) return false;
    return true;
}

// From the cone's frame (the isometric latitude psi_t of T, and D) to the
// ellipsoid.
template <class M, bool kEllipsoid>
OX_ALWAYS_INLINE bool from_cone(const KrovakConstants &c, double psi_t, double d, double &lon, double &lat) {
    const double p = clamp_isometric(psi_t);
    double sh, ch, sd, cd;
    M::sinh_cosh(p, sh, ch);  // sin T = sh / ch, cos T = 1 / ch
    M::sincos(d, sd, cd);
    // The turn back to the Gaussian sphere, every component times cosh psi_t.
    const double up = c.cos_ac * sh - c.sin_ac * cd;  // sin U
    const double west = sd;                          // cos U sin V
    const double south = c.sin_ac * sh + c.cos_ac * cd;  // cos U cos V
    bool log_ok, lat_ok;
    const double psi_u = atanh_of_sine<M>(up, std::sqrt(west * west + south * south), ch, log_ok);
    lat = latitude_of_isometric<M, kEllipsoid>(c.chi_inverse, (psi_u - c.log_t0) / c.b, lat_ok);
    const double l = c.lambda_o - M::atan2(west, south) / c.b;
    lon = M::reduce(l);
    return M::sinh_cosh_ok(p) & M::sincos_ok(d) & log_ok & lat_ok & M::atan2_ok(west, south) & M::reduce_ok(l);
}

template <bool kEllipsoid>
struct KrovakForm {
    using Constants = KrovakConstants;
    static bool setup(const Frame &f, Constants &c) { return krovak_setup(f, kEllipsoid, c); }

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool psi_ok, t_ok;
        const double psi = isometric_latitude<M, kEllipsoid>(c.e, off_pole(lat), psi_ok);
        const double w = c.b * psi + c.log_t0;
        const double d = lon - c.lambda_o;
        const double v = -c.b * M::reduce(d);
        double sh, ch, sv, cv;
        M::sinh_cosh(w, sh, ch);  // sin U = sh / ch, cos U = 1 / ch
        M::sincos(v, sv, cv);
        // The turned unit vector, every component times cosh w.
        const double up = c.cos_ac * sh + c.sin_ac * cv;   // sin T
        const double west = sv;                           // cos T sin D
        const double south = c.cos_ac * cv - c.sin_ac * sh;  // cos T cos D
        const double psi_t = atanh_of_sine<M>(up, std::sqrt(west * west + south * south), ch, t_ok);
        const double theta = c.n * M::atan2(west, south);
        const double arg = c.log_k - c.n * psi_t;
        const double r = M::exp(arg);
        double st, ct;
        M::sincos(theta, st, ct);
        const double xp = r * ct, yp = r * st;
        const double xr = c.m11 * xp + c.m12 * yp, yr = c.m21 * xp + c.m22 * yp;
        const bool fail = !(std::isfinite(xr) & std::isfinite(yr));
        x = fail ? failure_nan() : xr;
        y = fail ? failure_nan() : yr;
        return psi_ok & M::reduce_ok(d) & M::sinh_cosh_ok(w) & M::sincos_ok(v) & t_ok & M::atan2_ok(west, south) &
               M::exp_ok(arg) & M::sincos_ok(theta);
    }

    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double xp = c.i11 * x + c.i12 * y, yp = c.i21 * x + c.i22 * y;
        const double r = std::sqrt(xp * xp + yp * yp);
        const double d = M::atan2(yp, xp) / c.n;
        const double psi_t = (c.log_k - M::log(r)) / c.n;
        const bool ok = from_cone<M, kEllipsoid>(c, psi_t, d, lon, lat);
        // (the cone's opening: |theta| <= n pi)
        const bool fail = !(std::fabs(d) <= kPi * (1.0 + 1e-12)) | !(r <= 1.7976931348623157e308);
        lon = fail ? failure_nan() : lon;
        lat = fail ? failure_nan() : lat;
        return ok & M::atan2_ok(yp, xp) & M::log_ok(r);
    }
};

// The horizon: the cap about the cone's pole that reaches 15 degrees beyond
// the pseudo standard parallel, kept clear of the geographic pole (at most
// 0.9 alpha_c from the cone's pole), as the small circle T = const on the
// Gaussian sphere taken to the ellipsoid; longitudes within half a turn of
// the origin's.  The ring runs counter-clockwise in longitude and latitude,
// and so on the plane in east-north axes (X_Scale Y_Scale < 0 with the
// turn of the north-orientated form); the south-west axes mirror the plane,
// where the same ring runs clockwise.  No region (0 vertices) for
// parameters that describe no projection.
OX_HORIZON_ROUTINE(horizon_krovak) {
    constexpr int32_t kVertices = 4 * kHorizonSegments + 1;
    if (spheroid == nullptr || parameters == nullptr) return 0;
    const Frame f(spheroid, parameters);
    KrovakConstants c;
    const bool ellipsoid = !f.sphere();
    if (!f.usable() || !krovak_setup(f, ellipsoid, c)) return 0;
    if (vertices == nullptr || max_vertices <= 0) return kVertices;
    const double beyond = kHalfPi - f.p.pseudo_standard_parallel_1() + 15.0 * kDegree;
    const double clear = 0.9 * std::fabs(std::atan2(std::fabs(c.sin_ac), c.cos_ac));
    const double radius = beyond < clear ? beyond : clear;
    const double psi_t = std::atanh(std::cos(radius));
    for (int32_t k = 0; k < kVertices && k < max_vertices; ++k) {
        const double d = k == kVertices - 1 ? kPi : kPi - kTwoPi * k / (kVertices - 1);
        double lon, lat;
        if (ellipsoid)
            from_cone<ExactMath, true>(c, psi_t, d, lon, lat);
        else
            from_cone<ExactMath, false>(c, psi_t, d, lon, lat);
        vertices[2 * k] = c.lambda_o + ox_delta(lon - c.lambda_o);
        vertices[2 * k + 1] = lat;
    }
    return kVertices;
}

struct Krovak : SphereAndEllipsoid<KrovakForm<false>, KrovakForm<true>> {
    static constexpr int32_t kCode = 43039;
    static constexpr const char *kName = "Krovak";
    static constexpr Family kFamily = Family::kConic;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kKrovak;
    static constexpr ox_horizon_routine kHorizon = horizon_krovak;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Krovak)
