// The oblique Mercator projections of Hotine (1946-47): the ellipsoid is
// mapped conformally onto a sphere of constant total curvature (the
// "aposphere"), whose great circle through the centre (the central line) is
// made the equator of a Mercator projection.  Six registry rows:
//
//   "Hotine_Oblique_Mercator_Azimuth_Natural_Origin"  IOGP method 9812 (variant A)
//   "Hotine_Oblique_Mercator_Azimuth_Center"          IOGP method 9815 (variant B)
//   "Rectified_Skew_Orthomorphic_Natural_Origin"      9812 with a rectified grid angle
//   "Rectified_Skew_Orthomorphic_Center"              9815 with a rectified grid angle
//   "Hotine_Oblique_Mercator_Two_Point_Natural_Origin" central line through two points
//   "Hotine_Oblique_Mercator_Two_Point_Center"
//
// Formulas: IOGP Guidance Note 7-2 (2019), section 3.2.4 (methods 9812 and
// 9815); Snyder, Map Projections: A Working Manual (1987), eqs. 9-11 to 9-24
// for the two-point forms.  With the centre (phi_c, lambda_c), the azimuth
// alpha_c of the central line there and the scale k_c on it:
//     B = sqrt(1 + e2 cos^4 phi_c / (1 - e2)),
//     A = a B k_c sqrt(1 - e2) / (1 - e2 sin^2 phi_c),
//     D = B sqrt(1 - e2) / (cos phi_c sqrt(1 - e2 sin^2 phi_c)),
//     F = D + sqrt(D^2 - 1) sign(phi_c),  H = F exp(-B psi_c),
//     gamma_0 = asin(sin alpha_c / D),  G = (F - 1/F) / 2,
//     lambda_0 = lambda_c - asin(G tan gamma_0) / B,
//     u_c = (A/B) atan(sqrt(D^2 - 1) / cos alpha_c) sign(phi_c),
// psi the isometric latitude (ox_projshared.h: t = exp(-psi) in the Guidance
// Note).  A point goes to the aposphere's oblique frame by
//     w = B psi + ln H,  S = sinh w,  T = cosh w,  V = sin B(lambda - lambda_0),
//     U T = S sin gamma_0 - V cos gamma_0,
//     v = -(A/B) atanh U,  u = (A/B) atan2(S cos gamma_0 + V sin gamma_0, cos B(lambda - lambda_0)),
// where atanh U is taken as ln((1 + |U|) / sqrt(1 - U^2)) with sqrt(1 - U^2)
// the length of the other two components of the same unit vector, which
// keeps full precision far from the central line; u is measured from the
// natural origin (the central line's node on the aposphere's equator), or
// from the centre (u - u_c) in the "_Center" rows.  The grid is then turned
// by the rectified grid angle gamma_c:
//     x = v cos gamma_c + u sin gamma_c,  y = u cos gamma_c - v sin gamma_c,
// gamma_c being the azimuth in the Hotine rows and "XY_Plane_Rotation" in
// the Rectified Skew Orthomorphic rows.  The inverse runs the same steps
// back (Guidance Note 7-2, the reverse formulas), psi to phi through the
// conformal latitude and its series: no iteration.  On a sphere (e2 below
// 2^-48) e = 0, B = 1 and psi = atanh sin phi (Snyder's spherical forms).
//
// The two-point rows take the central line through (phi_1, lambda_1) and
// (phi_2, lambda_2) with the centre on it at "Latitude_Of_Center" phi_0
// (Snyder 9-15 to 9-24): E = [D + sqrt(D^2 - 1) sign phi_0] exp(-B psi_0),
// H = exp(-B psi_1), L = exp(-B psi_2), F = E / H, G = (F - 1/F) / 2,
// J = (E^2 - L H) / (E^2 + L H), P = (L - H) / (L + H),
// lambda_0 = (lambda_1 + lambda_2) / 2 - atan(J tan(B (lambda_1 - lambda_2) / 2) / P) / B,
// gamma_0 = atan(sin(B (lambda_1 - lambda_0)) / G), alpha_c = asin(D sin gamma_0);
// the grid is turned by alpha_c.  The projection is then the azimuth form
// with that centre line.
//
// Domain: the forward converts every point but the two poles of the central
// line on the aposphere (where v is infinite); the inverse takes every (x, y)
// whose distance u along the central line from the natural origin is within
// half the aposphere's circumference (|B u / A| <= pi), the image of the
// globe.  Other points get the failure value.
//
// Refused: a centre latitude at or beyond a pole or not finite, a scale
// factor that is not positive and finite, a non-finite longitude, azimuth or
// rotation; an azimuth that points south of east or west at the centre
// (|alpha_c| beyond 90 degrees: the same central line is alpha_c -+ 180
// degrees, which the formulas take); an azimuth of +-90 degrees with the
// centre on the equator (the central line would be the equator: that is the
// Mercator projection); two points that coincide or lie at a pole, a
// latitude of centre that the line through them never reaches.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projshared.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

// The constants of every oblique row.  The rows of one group share them (a
// system's block written by the group's first row serves all of its rows),
// so they hold what each row of the group needs: the centre's offset u_c
// and both rectifications.
struct ObliqueConstants {
    double lambda0;           // longitude of the natural origin
    double b;                 // B
    double a_over_b, b_over_a;  // A / B and B / A
    double log_h;             // ln H
    double sin_g0, cos_g0;    // gamma_0, the central line's inclination at the natural origin
    double e;                 // first eccentricity (0 on a sphere)
    double u_center;          // u of the centre from the natural origin
    // The rectified grid angles, sine, cosine and the sine's negative (the
    // turns are written as sums, see ObliqueForm): the azimuth of the
    // central line at the centre, and "XY_Plane_Rotation".
    double sin_az, cos_az, minus_sin_az;
    double sin_rot, cos_rot, minus_sin_rot;
    double chi_inverse[kAuxTerms];  // conformal latitude to phi (zero on a sphere)
};

// Whether a latitude parameter is usable: finite and off the poles.
bool off_poles(double phi) { return std::fabs(phi) < kHalfPi && !at_pole(phi); }

bool all_finite(const ObliqueConstants &c) {
    const double *v = &c.lambda0;
    for (size_t i = 0; i < sizeof c / sizeof(double); ++i)
        if (!std::isfinite(v[i])) return false;
    return true;
}

// B, A, D, F and the isometric latitude of a centre latitude (Guidance Note
// 7-2, 3.2.4; Snyder 9-11, 9-12, 9-14, 9-15).
struct Aposphere {
    double b, a, d, f, psi;
};
Aposphere aposphere(const Frame &f, double e2, double phi_c, double k) {
    const double s = std::sin(phi_c), c = std::cos(phi_c);
    const double w2 = 1.0 - e2 * s * s;
    Aposphere r;
    r.b = std::sqrt(1.0 + e2 * c * c * c * c / (1.0 - e2));
    r.a = f.a * r.b * k * std::sqrt(1.0 - e2) / w2;
    r.d = r.b * std::sqrt(1.0 - e2) / (c * std::sqrt(w2));
    const double d2 = r.d * r.d > 1.0 ? r.d * r.d : 1.0;  // D >= 1 but for rounding at the equator
    r.f = r.d + std::copysign(std::sqrt(d2 - 1.0), phi_c);
    r.psi = isometric_latitude_exact(e2, phi_c);
    return r;
}

// What both groups fill alike: the eccentricity, the scale, the series and
// the rectified grid angle of the skew rows.
bool common_setup(const Frame &f, bool ellipsoid, ObliqueConstants &c) {
    const double e2 = ellipsoid ? f.e2 : 0.0;
    c.e = std::sqrt(e2);
    double unused[kAuxTerms];
    if (ellipsoid)
        conformal_coefficients(e2, unused, c.chi_inverse);
    else
        for (double &v : c.chi_inverse) v = 0.0;
    c.sin_rot = std::sin(f.p.xy_plane_rotation);
    c.cos_rot = std::cos(f.p.xy_plane_rotation);
    c.minus_sin_rot = -c.sin_rot;
    return positive(f.p.scale_factor) && finite(f.p.xy_plane_rotation);
}

// The azimuth group: centre, azimuth of the central line, scale on it.
struct AzimuthSetup {
    static bool run(const Frame &f, bool ellipsoid, ObliqueConstants &c) {
        if (!common_setup(f, ellipsoid, c)) return false;
        const double phi_c = f.p.latitude_of_center, lambda_c = f.p.longitude_of_center;
        const double alpha = ox_delta(f.p.azimuth);  // NaN stays NaN
        if (!off_poles(phi_c) || !finite(lambda_c) || !finite(alpha)) return false;
        const bool south = std::fabs(alpha) > kHalfPi && !equal_rule(std::fabs(alpha), kHalfPi);
        if (south) return false;
        const double e2 = ellipsoid ? f.e2 : 0.0;
        const Aposphere ap = aposphere(f, e2, phi_c, f.p.scale_factor);
        const double sin_a = std::sin(alpha), cos_a = std::cos(alpha) > 0.0 ? std::cos(alpha) : 0.0;
        // gamma_0 = asin(sin alpha / D) and asin(G tan gamma_0) = B (lambda_c -
        // lambda_0) by their quadrants, which keeps them exact as alpha nears
        // 90 degrees (the arcsines' arguments near 1 would lose half their
        // digits, 1.4e-8 rad of longitude): with r^2 = D^2 - 1 and G = r
        // sign(phi_c), cos gamma_0 = sqrt(r^2 + cos^2 alpha) / D and
        // cos B (lambda_c - lambda_0) = D cos alpha / sqrt(r^2 + cos^2 alpha).
        // (D = 1 on the equator, where rounding must not tilt the line)
        const double r2 = ap.d * ap.d > 1.0 && phi_c != 0.0 ? ap.d * ap.d - 1.0 : 0.0;
        const double cos_g0 = std::sqrt(r2 + cos_a * cos_a);
        if (equal_rule(cos_g0, 0.0)) return false;  // the central line is the equator
        const double g = 0.5 * (ap.f - 1.0 / ap.f);
        c.b = ap.b;
        c.a_over_b = ap.a / ap.b;
        c.b_over_a = ap.b / ap.a;
        c.log_h = std::log(ap.f) - ap.b * ap.psi;
        const double g0 = std::atan2(sin_a, cos_g0);
        c.sin_g0 = std::sin(g0);
        c.cos_g0 = std::cos(g0);
        c.lambda0 = lambda_c - std::atan2(g * sin_a, ap.d * cos_a) / ap.b;
        c.u_center = std::copysign(c.a_over_b * std::atan2(std::sqrt(r2), cos_a), phi_c);
        c.sin_az = sin_a;
        c.cos_az = std::cos(alpha);
        c.minus_sin_az = -sin_a;
        return all_finite(c);
    }
};

// The two-point group: the central line through two points, the centre on
// it at the latitude of centre (Snyder 9-15 to 9-24).
struct TwoPointSetup {
    static bool run(const Frame &f, bool ellipsoid, ObliqueConstants &c) {
        if (!common_setup(f, ellipsoid, c)) return false;
        const double phi0 = f.p.latitude_of_center;
        const double phi1 = f.p.latitude_of_1st_point(), phi2 = f.p.latitude_of_2nd_point();
        const double lambda1 = f.p.longitude_of_1st_point;
        if (!off_poles(phi0) || !off_poles(phi1) || !off_poles(phi2) || !finite(lambda1) ||
            !finite(f.p.longitude_of_2nd_point))
            return false;
        // The second longitude within half a turn of the first.
        const double lambda2 = lambda1 + ox_delta(f.p.longitude_of_2nd_point - lambda1);
        if (phi1 == phi2 && lambda1 == lambda2) return false;  // one point: no line
        const double e2 = ellipsoid ? f.e2 : 0.0;
        const Aposphere ap = aposphere(f, e2, phi0, f.p.scale_factor);
        const double b = ap.b;
        const double big_e = ap.f * std::exp(-b * ap.psi);
        const double h = std::exp(-b * isometric_latitude_exact(e2, phi1));
        const double l = std::exp(-b * isometric_latitude_exact(e2, phi2));
        const double ff = big_e / h;
        const double g = 0.5 * (ff - 1.0 / ff);
        const double j = (big_e * big_e - l * h) / (big_e * big_e + l * h);
        const double p = (l - h) / (l + h);
        const double lambda0 = 0.5 * (lambda1 + lambda2) - std::atan(j * std::tan(0.5 * b * (lambda1 - lambda2)) / p) / b;
        const double g0 = std::atan(std::sin(b * ox_delta(lambda1 - lambda0)) / g);
        const double sin_a = ap.d * std::sin(g0);
        if (!(std::fabs(sin_a) <= 1.0)) return false;  // the line never reaches the latitude of centre
        const double alpha = std::asin(sin_a);
        const double d2 = ap.d * ap.d > 1.0 ? ap.d * ap.d : 1.0;
        c.b = b;
        c.a_over_b = ap.a / b;
        c.b_over_a = b / ap.a;
        c.log_h = std::log(big_e);
        c.sin_g0 = std::sin(g0);
        c.cos_g0 = std::cos(g0);
        c.lambda0 = ox_delta(lambda0);
        c.u_center = std::copysign(c.a_over_b * std::atan2(std::sqrt(d2 - 1.0), std::cos(alpha)), phi0);
        c.sin_az = sin_a;
        c.cos_az = std::cos(alpha);
        c.minus_sin_az = -sin_a;
        return all_finite(c) && !equal_rule(std::fabs(g0), kHalfPi);
    }
};

// Geographic (radians) to the aposphere's oblique frame (u from the natural
// origin, v), and back.  `ok` in the results: the arguments were within M's
// ranges.
template <class M, bool kEllipsoid>
OX_ALWAYS_INLINE bool to_oblique(const ObliqueConstants &c, double lon, double lat, double &u, double &v) {
    const double d = lon - c.lambda0;
    bool psi_ok, log_ok;
    const double psi = isometric_latitude<M, kEllipsoid>(c.e, off_pole(lat), psi_ok);
    const double w = c.b * psi + c.log_h;
    double s, t, sv, cv;
    M::sinh_cosh(w, s, t);
    const double bl = c.b * M::reduce(d);
    M::sincos(bl, sv, cv);
    // The unit vector on the aposphere in the oblique frame, times T.
    const double along = s * c.cos_g0 + sv * c.sin_g0;  // T cos(lat') sin(lon')
    const double across = s * c.sin_g0 - sv * c.cos_g0;  // T U = T sin(lat')
    const double rest = std::sqrt(along * along + cv * cv);  // T cos(lat')
    v = -c.a_over_b * atanh_of_sine<M>(across, rest, t, log_ok);
    u = c.a_over_b * M::atan2(along, cv);
    return M::reduce_ok(d) & psi_ok & M::sinh_cosh_ok(w) & M::sincos_ok(bl) & log_ok & M::atan2_ok(along, cv);
}

template <class M, bool kEllipsoid>
OX_ALWAYS_INLINE bool from_oblique(const ObliqueConstants &c, double u, double v, double &lon, double &lat) {
    const double s = clamp_isometric(-c.b_over_a * v);
    const double bu = c.b_over_a * u;
    double sh, ch, sv, cv;
    M::sinh_cosh(s, sh, ch);
    M::sincos(bu, sv, cv);
    // The unit vector in the aposphere's own frame, times cosh s.
    const double up = sv * c.cos_g0 + sh * c.sin_g0;    // sin(lat) cosh s
    const double east = sh * c.cos_g0 - sv * c.sin_g0;  // -cos(lat) sin B(lambda - lambda0) cosh s
    const double rest = std::sqrt(east * east + cv * cv);
    bool log_ok, lat_ok;
    const double psi = (atanh_of_sine<M>(up, rest, ch, log_ok) - c.log_h) / c.b;
    lat = latitude_of_isometric<M, kEllipsoid>(c.chi_inverse, psi, lat_ok);
    const double l = c.lambda0 - M::atan2(east, cv) / c.b;
    lon = M::reduce(l);
    return M::sinh_cosh_ok(s) & M::sincos_ok(bu) & log_ok & lat_ok & M::atan2_ok(east, cv) & M::reduce_ok(l);
}

enum class Origin { kNatural, kCenter };
enum class Rectify { kAzimuth, kPlaneRotation };

// One form of one row: the group's setup, where u is measured from, which
// angle turns the grid, and sphere or ellipsoid.
template <class Setup, Origin kOrigin, Rectify kRectify, bool kEllipsoid>
struct ObliqueForm {
    using Constants = ObliqueConstants;
    static bool setup(const Frame &f, Constants &c) { return Setup::run(f, kEllipsoid, c); }

    static OX_ALWAYS_INLINE double sin_gc(const Constants &c) {
        return kRectify == Rectify::kAzimuth ? c.sin_az : c.sin_rot;
    }
    static OX_ALWAYS_INLINE double cos_gc(const Constants &c) {
        return kRectify == Rectify::kAzimuth ? c.cos_az : c.cos_rot;
    }
    static OX_ALWAYS_INLINE double minus_sin_gc(const Constants &c) {
        return kRectify == Rectify::kAzimuth ? c.minus_sin_az : c.minus_sin_rot;
    }
    static OX_ALWAYS_INLINE double u_offset(const Constants &c) {
        return kOrigin == Origin::kCenter ? c.u_center : 0.0;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double u, v;
        const bool ok = to_oblique<M, kEllipsoid>(c, lon, lat, u, v);
        u -= u_offset(c);
        // (sums with the sine's negative: a difference here would let the
        // compiler fuse the pair of x and y into a multiply-add-subtract,
        // whose results differ in the last bit from the other paths)
        const double xr = v * cos_gc(c) + u * sin_gc(c);
        const double yr = u * cos_gc(c) + v * minus_sin_gc(c);
        const bool fail = !(std::isfinite(xr) & std::isfinite(yr));
        x = fail ? failure_nan() : xr;
        y = fail ? failure_nan() : yr;
        return ok;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double v = x * cos_gc(c) + y * minus_sin_gc(c);
        const double u = y * cos_gc(c) + x * sin_gc(c) + u_offset(c);
        const bool ok = from_oblique<M, kEllipsoid>(c, u, v, lon, lat);
        // (the image of the globe is the strip |B u / A| <= pi)
        const bool fail = !(std::fabs(c.b_over_a * u) <= kPi * (1.0 + 1e-12)) | !std::isfinite(v);
        lon = fail ? failure_nan() : lon;
        lat = fail ? failure_nan() : lat;
        return ok;
    }
};

// The horizon of a group: the square of the aposphere about the centre,
// delta of arc along the central line either way and delta of oblique
// latitude across it, with delta = min(30 degrees, 0.6 d) and d the arc from
// the centre to the nearer geographic pole (whose oblique coordinates are
// u = +-(A/B) pi/2, latitude +-gamma_0: cos d = cos gamma_0 |sin(B u_c / A)|).
// Its corners lie within sqrt(2) delta < d of the centre, so the region
// holds no pole and its longitudes stay within half a turn of the centre's.
// The boundary runs counter-clockwise (x, y = v, u turned by the grid
// angle), each side in kHorizonSegments steps, taken to the ellipsoid by the
// inverse.  No region (0 vertices) for parameters that describe no
// projection.
template <class Setup>
OX_HORIZON_ROUTINE(horizon_oblique) {
    constexpr int32_t total = 4 * kHorizonSegments + 1;
    if (spheroid == nullptr || parameters == nullptr) return 0;
    const Frame f(spheroid, parameters);
    ObliqueConstants c;
    const bool ellipsoid = !f.sphere();
    if (!f.usable() || !Setup::run(f, ellipsoid, c)) return 0;
    if (vertices == nullptr || max_vertices <= 0) return total;
    auto geographic = [&](double u, double v, double &lon, double &lat) {
        if (ellipsoid)
            from_oblique<ExactMath, true>(c, u, v, lon, lat);
        else
            from_oblique<ExactMath, false>(c, u, v, lon, lat);
    };
    const double to_pole = std::acos(std::fabs(c.cos_g0 * std::sin(c.b_over_a * c.u_center)));
    const double delta = std::fmin(30.0 * kDegree, 0.6 * to_pole);
    const double along = c.a_over_b * delta, across = c.a_over_b * std::atanh(std::sin(delta));
    double center_lon, center_lat;
    geographic(c.u_center, 0.0, center_lon, center_lat);
    for (int32_t k = 0; k < total && k < max_vertices; ++k) {
        const int32_t edge = k / kHorizonSegments, step = k % kHorizonSegments;
        const double t = -1.0 + 2.0 * step / kHorizonSegments;  // -1 .. 1 along the side
        double u, v;
        switch (edge) {
            case 0: u = along * t, v = across; break;     // along the side v = +across
            case 1: u = along, v = -across * t; break;    // across at the far end
            case 2: u = -along * t, v = -across; break;   // back along v = -across
            default: u = -along, v = across * (k == total - 1 ? 1.0 : t); break;  // across, closed
        }
        double lon, lat;
        geographic(c.u_center + u, v, lon, lat);
        vertices[2 * k] = center_lon + ox_delta(lon - center_lon);
        vertices[2 * k + 1] = lat;
    }
    return total;
}

template <class Setup, Origin kOrigin, Rectify kRectify>
struct ObliqueRow : SphereAndEllipsoid<ObliqueForm<Setup, kOrigin, kRectify, false>,
                                       ObliqueForm<Setup, kOrigin, kRectify, true>> {
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr bool kHasConstantsRoutine = true;
    static constexpr ox_horizon_routine kHorizon = horizon_oblique<Setup>;
};

struct HotineAzimuthNaturalOrigin : ObliqueRow<AzimuthSetup, Origin::kNatural, Rectify::kAzimuth> {
    static constexpr int32_t kCode = 43036;
    static constexpr const char *kName = "Hotine_Oblique_Mercator_Azimuth_Natural_Origin";
    static constexpr ParameterSet kParameters = parameter_sets::kAzimuthCenter;
};
struct HotineAzimuthCenter : ObliqueRow<AzimuthSetup, Origin::kCenter, Rectify::kAzimuth> {
    static constexpr int32_t kCode = 43037;
    static constexpr const char *kName = "Hotine_Oblique_Mercator_Azimuth_Center";
    static constexpr ParameterSet kParameters = parameter_sets::kAzimuthCenter;
    using ConstantsOwner = HotineAzimuthNaturalOrigin;
};
struct RectifiedSkewNaturalOrigin : ObliqueRow<AzimuthSetup, Origin::kNatural, Rectify::kPlaneRotation> {
    static constexpr int32_t kCode = 43053;
    static constexpr const char *kName = "Rectified_Skew_Orthomorphic_Natural_Origin";
    static constexpr ParameterSet kParameters = parameter_sets::kSkew;
    using ConstantsOwner = HotineAzimuthNaturalOrigin;
};
struct RectifiedSkewCenter : ObliqueRow<AzimuthSetup, Origin::kCenter, Rectify::kPlaneRotation> {
    static constexpr int32_t kCode = 43054;
    static constexpr const char *kName = "Rectified_Skew_Orthomorphic_Center";
    static constexpr ParameterSet kParameters = parameter_sets::kSkew;
    using ConstantsOwner = HotineAzimuthNaturalOrigin;
};
struct HotineTwoPointNaturalOrigin : ObliqueRow<TwoPointSetup, Origin::kNatural, Rectify::kAzimuth> {
    static constexpr int32_t kCode = 43025;
    static constexpr const char *kName = "Hotine_Oblique_Mercator_Two_Point_Natural_Origin";
    static constexpr ParameterSet kParameters = parameter_sets::kTwoPointOblique;
};
struct HotineTwoPointCenter : ObliqueRow<TwoPointSetup, Origin::kCenter, Rectify::kAzimuth> {
    static constexpr int32_t kCode = 43035;
    static constexpr const char *kName = "Hotine_Oblique_Mercator_Two_Point_Center";
    static constexpr ParameterSet kParameters = parameter_sets::kTwoPointOblique;
    using ConstantsOwner = HotineTwoPointNaturalOrigin;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(HotineAzimuthNaturalOrigin)
OX_DEFINE_PROJECTION(HotineAzimuthCenter)
OX_DEFINE_PROJECTION(RectifiedSkewNaturalOrigin)
OX_DEFINE_PROJECTION(RectifiedSkewCenter)
OX_DEFINE_PROJECTION(HotineTwoPointNaturalOrigin)
OX_DEFINE_PROJECTION(HotineTwoPointCenter)
