// "Aitoff" (Aitoff 1889), on a sphere of radius a (Snyder, Flattening the
// Earth, 1993, p. 131): the equatorial azimuthal equidistant projection of
// (L/2, phi) with x doubled (the formulas are in ox_world.h, shared with
// "Winkel_Tripel").  Since the azimuthal equidistant projection has a closed
// inverse, so has Aitoff's (no iteration): with X = x / 2a, Y = y / a and
// the angular distance c = sqrt(X^2 + Y^2) from the centre,
//     sin phi = Y sin c / c,  cos phi sin(L/2) = X sin c / c,  cos phi cos(L/2) = cos c,
// and phi, L/2 from these by atan2, exact to the poles and the outline.
// On an ellipsoid the sphere of radius a is used.
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the map's ellipse (c >
// pi/2).
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

struct Aitoff : OnSphereOfRadiusA {
    static constexpr int32_t kCode = 43043;
    static constexpr const char *kName = "Aitoff";
    static constexpr Family kFamily = Family::kOther;  // a modified azimuthal projection
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        ok &= aitoff_forward<M>(lambda, clamp_latitude(lat), x, y);
        x *= c.a;
        y *= c.a;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double u = 0.5 * x / c.a, w = y / c.a;
        const double dist = std::sqrt(u * u + w * w);
        const bool inside = dist <= kLatitudeEdge;
        const double d = dist > kHalfPi ? kHalfPi : dist;
        double sd, cd;
        M::sincos(d, sd, cd);
        const double k = d > 0.0 ? sd / d : 1.0;
        const double e = u * k, n = w * k;  // cos phi sin(L/2), sin phi
        const double phi = std::copysign(angle_of<M>(std::fabs(n), std::sqrt(e * e + cd * cd)), w);
        const double half = angle_of<M>(std::fabs(e), cd);
        bool ok;
        lon = longitude_of<M>(f, std::copysign(2.0 * half, u), ok);
        lat = inside ? phi : kNaN;
        return ok;  // 0 <= d <= pi/2 or NaN: within the range of sincos
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Aitoff)
