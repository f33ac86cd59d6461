// "Sinusoidal" (Sanson-Flamsteed), with its ellipsoidal form (Snyder, Map
// Projections: A Working Manual, 1987, eqs. 30-1, 30-2 on the sphere, 30-8,
// 30-9 on the ellipsoid):
//     sphere     x = a L cos phi,  y = a phi;
//     ellipsoid  x = a L cos phi / sqrt(1 - e2 sin^2 phi),  y = M(phi),
// M the meridian arc, taken as A mu with A the rectifying radius and mu the
// rectifying latitude (the library's series in the third flattening, both
// ways).  Inverse: phi = y / a (mu = y / A and phi by the inverse series),
// L = x / (the length of the parallel per radian).  Equal-area on both.
//
// On an ellipsoid this projection uses the ellipsoid (a published
// ellipsoidal form exists), not the sphere of radius a that the other world
// projections use.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points beyond the poles or the outline
// (|L| > pi).
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

struct Sphere : OnSphereOfRadiusA {
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        double ux, uy;
        ok &= sinusoidal_forward<M>(lambda, clamp_latitude(lat), ux, uy);
        x = c.a * ux;
        y = c.a * uy;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double phi = latitude_within(y / c.a);
        double lambda;
        bool ok = sinusoidal_inverse<M>(x / c.a, phi, lambda) | std::isnan(phi), in_range;
        lon = longitude_of<M>(f, lambda, in_range);
        lat = phi;
        return ok & in_range;
    }
};

struct Ellipsoid {
    struct Constants {
        double a;
        double e2;
        double rectifying_radius;             // A
        double to_mu[kAuxTerms], to_phi[kAuxTerms];
    };
    static bool setup(const Frame &f, Constants &c) {
        c.a = f.a;
        c.e2 = f.e2;
        c.rectifying_radius = ox_rect_r(f.a, f.e2);
        rectifying_coefficients(f.e2, c.to_mu, c.to_phi);
        return finite(f.p.central_meridian) && positive(c.rectifying_radius);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        double s, co;
        M::sincos(phi, s, co);
        x = c.a * lambda * co / std::sqrt(1.0 - c.e2 * s * s);
        y = c.rectifying_radius * aux_series(c.to_mu, phi, s, co);
        return ok & M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double mu = latitude_within(y / c.rectifying_radius);
        double sm, cm, s, co;
        M::sincos(mu, sm, cm);
        const double phi = clamp_latitude(aux_series(c.to_phi, mu, sm, cm));
        M::sincos(phi, s, co);
        bool in_range;
        lon = longitude_of<M>(f, x * std::sqrt(1.0 - c.e2 * s * s) / (c.a * co), in_range);
        lat = phi;
        return (M::sincos_ok(mu) & M::sincos_ok(phi) & in_range) | std::isnan(mu);
    }
};

struct Sinusoidal : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43008;
    static constexpr const char *kName = "Sinusoidal";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Sinusoidal)
