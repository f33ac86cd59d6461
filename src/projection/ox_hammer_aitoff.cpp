// "Hammer_Aitoff" (Hammer 1892), on a sphere of radius a (Snyder, Map
// Projections: A Working Manual, 1987, p. 245; Snyder, Flattening the
// Earth, 1993, p. 130): the equatorial Lambert azimuthal equal-area
// projection of (L/2, phi) with x doubled,
//     D = sqrt(1 + cos phi cos(L/2)),
//     x = 2 sqrt 2 a cos phi sin(L/2) / D,  y = sqrt 2 a sin phi / D.
// The inverse is closed (no iteration): with z^2 = 1 - (x / 4a)^2 -
// (y / 2a)^2 = D^2 / 2,
//     cos phi sin(L/2) = z x / 2a,  sin phi = z y / a,  cos phi cos(L/2) = 2 z^2 - 1,
// and phi, L/2 from these by atan2, exact to the poles and the outline.
// Equal-area.  On an ellipsoid the sphere of radius a is used.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the map's ellipse (z^2 <
// 1/2).
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

struct HammerAitoff : OnSphereOfRadiusA {
    static constexpr int32_t kCode = 43044;
    static constexpr const char *kName = "Hammer_Aitoff";
    static constexpr Family kFamily = Family::kOther;  // a modified azimuthal projection
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        double sp, cp, sl, cl;
        M::sincos(phi, sp, cp);
        M::sincos(0.5 * lambda, sl, cl);
        const double k = kSqrt2 * c.a / std::sqrt(1.0 + cp * cl);
        x = 2.0 * k * cp * sl;
        y = k * sp;
        return ok & M::sincos_ok(phi) & M::sincos_ok(0.5 * lambda);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double u = x / (4.0 * c.a), w = y / (2.0 * c.a);
        const double z2 = 1.0 - u * u - w * w;
        const bool inside = z2 >= 0.5 * (1.0 - kEdgeSlack);
        const double z = std::sqrt(z2 < 0.5 ? 0.5 : z2);
        const double e = 2.0 * z * u, n = 2.0 * z * w;     // cos phi sin(L/2), sin phi
        const double cc = 2.0 * z * z - 1.0;                 // cos phi cos(L/2), >= 0
        const double phi = std::copysign(angle_of<M>(std::fabs(n), std::sqrt(e * e + cc * cc)), y);
        const double half = angle_of<M>(std::fabs(e), cc);
        bool ok;
        lon = longitude_of<M>(f, std::copysign(2.0 * half, x), ok);
        lat = inside ? phi : kNaN;
        return ok;
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(HammerAitoff)
