// "Stereographic": the stereographic projection about (Central_Meridian,
// Latitude_Of_Origin) with a scale factor k0, in every aspect.
//
// Sphere (Snyder, Map Projections: A Working Manual, 1987, eqs. 21-2 to
// 21-4 and 21-15 to 21-17): x = 2 a k0 east / (1 + up), y = 2 a k0 north /
// (1 + up), (east, north, up) the unit vector of the point in the frame of
// the origin.
//
// Ellipsoid: through the conformal latitude chi (Snyder eqs. 21-24 to 21-26
// and 21-36 to 21-38; the polar aspect, IOGP Guidance Note 7-2 method 9810,
// is its limit): the same formulas on the sphere of the conformal
// latitudes about chi1, the conformal latitude of the origin, with
//     2 R k0 = 2 a k0 m1 / cos chi1 = a k0 (g(phi1) + g(-phi1)) / w1,
// g(phi) = cos phi exp(psi(phi)) (ox_projshared.h), which is finite at a
// pole: there the formula is the polar stereographic, rho = 2 a k0 t /
// sqrt((1 + e)^(1 + e) (1 - e)^(1 - e)).  chi from phi and back by the
// conformal series (the library's auxiliary latitudes); no iteration.  This
// is not the "double" projection of EPSG's Oblique Stereographic (see
// "Double_Stereographic"), which uses Gauss's sphere.
//
// Domain: the whole globe but the antipode of the origin (at infinity).
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
        double sin0, cos0;  // of chi1
        double k;           // 2 R k0
        double chi_forward[kAuxTerms], chi_inverse[kAuxTerms];
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi1 = latitude_parameter(f.p.latitude_of_origin), e = std::sqrt(f.e2);
        conformal_coefficients(f.e2, c.chi_forward, c.chi_inverse);
        const double chi1 = aux_series(c.chi_forward, phi1, std::sin(phi1), std::cos(phi1));
        c.sin0 = std::sin(chi1);
        c.cos0 = std::cos(chi1);
        const double w1 = std::sqrt(1.0 - f.e2 * std::sin(phi1) * std::sin(phi1));
        c.k = f.a * f.p.scale_factor * (cos_exp_isometric(e, phi1) + cos_exp_isometric(e, -phi1)) / w1;
        return Sphere::parameters_ok(f) && std::isfinite(c.k);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        double s, co, sc, cc, sl, cl, east, north, up;
        M::sincos(lat, s, co);
        const double chi = aux_series(c.chi_forward, lat, s, co);
        M::sincos(chi, sc, cc);
        M::sincos(L, sl, cl);
        frame_components(c.sin0, c.cos0, sc, cc, sl, cl, east, north, up);
        stereographic_xy(c.k, east, north, up, x, y);
        return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(chi) & M::sincos_ok(L);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double east, north, up, L, chi, s, co;
        stereographic_components(c.k, x, y, east, north, up);
        const bool ok = frame_position<M>(c.sin0, c.cos0, east, north, up, L, chi, s, co);
        lat = aux_series(c.chi_inverse, chi, s, co);
        const double l = f.p.central_meridian + L;
        lon = M::reduce(l);
        return ok & M::reduce_ok(l);
    }
};

struct Stereographic : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43026;
    static constexpr const char *kName = "Stereographic";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kScaleAndOrigin;
    static constexpr ox_horizon_routine kHorizon = horizon_stereographic;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Stereographic)
