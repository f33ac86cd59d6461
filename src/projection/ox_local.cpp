// "Local": a local tangent plane about the centre (Longitude_Of_Center,
// Latitude_Of_Center), turned by "Azimuth" and scaled by "Scale_Factor".
//
// The plane is the east-north plane of the centre on the spheroid: a point
// of the surface has the east and north coordinates (E, N) of its
// geocentric vector relative to the centre, measured in that plane (the
// ellipsoidal orthographic projection, IOGP Guidance Note 7-2 method 9840,
// ox_tangent_plane.h; on a sphere the spherical one).  The grid's y axis
// points along the azimuth alpha (clockwise from north) and the scale
// factor k0 multiplies both coordinates:
//     x = k0 (E cos alpha - N sin alpha),  y = k0 (E sin alpha + N cos alpha).
// Near the centre this is the plane of a local survey: distances are true
// (times k0) to the first order, and within 10 km of the centre the plane
// and the surface differ by less than 1e-6 of the distance.  The inverse
// turns back and drops the point onto the surface along the plane's normal
// (closed form, no iteration).
//
// Domain: the hemisphere that faces the plane (the surface normal on the
// plane's side, as for "Orthographic", whose horizon it shares); points
// beyond fail, and so do inverse points outside the outline of the globe.
//
// Refused: a scale factor that is not positive and finite, a non-finite
// azimuth, a latitude of centre beyond a pole, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_tangent_plane.h"

namespace ox {
namespace {

template <class Plane>
struct Turned {
    struct Constants : Plane::Constants {
        double k_cos;  // k0 cos alpha
        double k_sin;  // k0 sin alpha
        double inv_k;  // 1 / k0
    };
    static bool setup(const Frame &f, Constants &c) {
        const double k0 = f.p.scale_factor, alpha = f.p.azimuth;
        if (!positive(k0) || !finite(alpha)) return false;
        c.k_cos = k0 * std::cos(alpha);
        c.k_sin = k0 * std::sin(alpha);
        c.inv_k = 1.0 / k0;
        return Plane::setup(f, c);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double e, n;
        const bool ok = Plane::template forward<M>(f, c, lon, lat, e, n);
        x = e * c.k_cos - n * c.k_sin;
        y = e * c.k_sin + n * c.k_cos;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double k2 = c.inv_k * c.inv_k;
        const double e = (x * c.k_cos + y * c.k_sin) * k2, n = (y * c.k_cos - x * c.k_sin) * k2;
        return Plane::template inverse<M>(f, c, e, n, lon, lat);
    }
};

struct Local : SphereAndEllipsoid<Turned<tangent_plane::Sphere>, Turned<tangent_plane::Ellipsoid>> {
    static constexpr int32_t kCode = 43058;
    static constexpr const char *kName = "Local";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kAzimuthCenter;
    static constexpr ox_horizon_routine kHorizon = horizon_hemisphere;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Local)
