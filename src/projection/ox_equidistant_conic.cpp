// "Equidistant_Conic": the equidistant conic projection with two standard
// parallels, equidistant along every meridian (Snyder, Map Projections: A
// Working Manual, 1987, eqs. 16-1 to 16-16).  With the meridian arc M and
// m = cos phi / sqrt(1 - e2 sin^2 phi),
//     n = a (m1 - m2) / (M2 - M1)   (n = sin phi1 for equal parallels),
//     rho = a m1 / n + M1 - M,  theta = n L,
//     x = rho sin theta,  y = rho0 - rho cos theta.
// Written as the library's cone (ox_projshared.h) with n rho = a m1 + n (M1
// - M) and rho0 - rho = M - M0, the formulas stay exact as n tends to 0
// (parallels symmetric about the equator: the equidistant cylindrical
// limit).  n is formed from differences of the parallels, m1 - m2 = (1 - e2)
// (s2 - s1)(s2 + s1) / ((c1 w2 + c2 w1) w1 w2) and M2 - M1 = R (mu2 - mu1),
// so that it stays exact for parallels as close as they come.  Inverse: the
// arc M of the point's parallel from the distance to the apex without
// forming rho itself,
//     M = M0 - (k0 (x^2 + y^2) - 2y) / (1 + hypot(k0 x, 1 - k0 y)),
// k0 = 1 / rho0, and phi from M by the rectifying latitude's series; no
// iteration.  On a sphere M = a phi.
//
// Domain: the whole globe where rho keeps the sign of n (with standard
// parallels close to a pole the apex can fall short of it: the points
// beyond the apex fail).  The inverse refuses points outside the image.
//
// Refused: a standard parallel at or beyond a pole, a latitude of origin
// beyond a pole or beyond the apex, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

struct Constants {
    double n;
    double arc1;    // a m1 + n M1: n rho = arc1 - n M
    double m0;      // M0
    double n_rho0;  // n rho0 (> 0)
    double kappa0;  // 1 / rho0 = n / (n rho0)
    MeridianArc arc;
};

bool setup_constants(const Frame &f, double e2, Constants &c) {
    const double phi1 = f.p.standard_parallel_1, phi2 = f.p.standard_parallel_2;
    const double phi0 = latitude_parameter(f.p.latitude_of_origin);
    if (!finite(f.p.central_meridian) || !finite(phi0)) return false;
    for (double phi : {phi1, phi2})
        if (!(std::fabs(phi) < kHalfPi) || at_pole(phi)) return false;
    c.arc.init(f.a, e2);
    const double s1 = std::sin(phi1), s2 = std::sin(phi2), c1 = std::cos(phi1), c2 = std::cos(phi2);
    const double w1 = std::sqrt(1.0 - e2 * s1 * s1), w2 = std::sqrt(1.0 - e2 * s2 * s2);
    const double m1_arc = c.arc.arc(phi1, s1, c1);
    c.n = s1;
    if (phi1 != phi2) {
        const double ds = 2.0 * std::cos(0.5 * (phi1 + phi2)) * std::sin(0.5 * (phi2 - phi1));  // s2 - s1
        const double dm = (1.0 - e2) * ds * (s1 + s2) / ((c1 * w2 + c2 * w1) * w1 * w2);    // m1 - m2
        // mu2 - mu1: the periodic parts of the series taken apart from phi2 - phi1.
        const double dmu =
            (phi2 - phi1) + (aux_series(c.arc.to_mu, 0.0, s2, c2) - aux_series(c.arc.to_mu, 0.0, s1, c1));
        c.n = f.a * dm / (c.arc.radius * dmu);
    }
    c.arc1 = f.a * c1 / w1 + c.n * m1_arc;
    c.m0 = c.arc.arc(phi0, std::sin(phi0), std::cos(phi0));
    c.n_rho0 = c.arc1 - c.n * c.m0;
    c.kappa0 = c.n / c.n_rho0;
    return std::isfinite(c.n) && std::fabs(c.n) <= 1.0 && c.n_rho0 > 0.0 && std::isfinite(c.n_rho0);
}

template <class M>
OX_ALWAYS_INLINE bool forward_point(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                    double &y) {
    const double d = lon - f.p.central_meridian;
    double s, co;
    M::sincos(lat, s, co);
    const double m = c.arc.arc(lat, s, co);
    const double n_rho = c.arc1 - c.n * m;
    const bool ok = cone_forward<M>(c.n, n_rho >= 0.0 ? n_rho : failure_nan(), m - c.m0, M::reduce(d), x, y);
    return ok & M::reduce_ok(d) & M::sincos_ok(lat);
}

template <class M>
OX_ALWAYS_INLINE bool inverse_point(const Frame &f, const Constants &c, double x, double y, double &lon,
                                    double &lat) {
    const double kx = c.kappa0 * x, ky = 1.0 - c.kappa0 * y;
    const double m = c.m0 - (c.kappa0 * (x * x + y * y) - 2.0 * y) / (1.0 + M::sqrt(kx * kx + ky * ky));
    bool ok_lat, ok_theta;
    lat = c.arc.template latitude<M>(m, ok_lat);
    const double theta = cone_angle<M>(c.n, c.n_rho0, x, y, ok_theta);
    const bool ok_lon =
        cone_longitude<M>(f.p.central_meridian, c.n, theta, c.n * x, c.n_rho0 - c.n * y, x, c.arc1 - c.n * m, lon);
    return ok_lat & ok_theta & ok_lon;
}

// The whole globe (both poles are arcs, or the apex).
OX_HORIZON_ROUTINE(horizon_equidistant_conic) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kPi, kHalfPi, max_vertices, vertices);
}

// One formula serves both forms (on a sphere e2 = 0).
struct EquidistantConic : SphereAndEllipsoid<OneFormulaSphere<Constants>, OneFormulaEllipsoid<Constants>> {
    static constexpr int32_t kCode = 43027;
    static constexpr const char *kName = "Equidistant_Conic";
    static constexpr Family kFamily = Family::kConic;
    static constexpr Preserves kPreserves = Preserves::kDistance;
    static constexpr ParameterSet kParameters = parameter_sets::kTwoParallels;
    static constexpr ox_horizon_routine kHorizon = horizon_equidistant_conic;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(EquidistantConic)
