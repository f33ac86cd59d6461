// "Orthographic" and "Gnomonic", the two perspective azimuthals with the
// viewpoint at infinity and at the centre, about (Longitude_Of_Center,
// Latitude_Of_Center); they share one constants routine.
//
// Orthographic, sphere (Snyder, Map Projections: A Working Manual, 1987,
// eqs. 20-3 to 20-5, 20-14 to 20-15): x = a east, y = a north, (east,
// north, up) the unit vector of the point in the frame of the centre.
// Ellipsoid (IOGP Guidance Note 7-2, method 9840): the east and north
// coordinates of the point in the tangent plane of the centre,
//     x = nu cos phi sin L,
//     y = nu (sin phi cos phi0 - cos phi sin phi0 cos L)
//         + e2 (nu0 sin phi0 - nu sin phi) cos phi0.
// The inverse is closed (the source iterates): the point is where the
// normal of the tangent plane through (x, y) meets the ellipsoid nearer
// the viewer, U the height above the plane, the root of A U^2 + 2 B U + C
// = 0 with
//     A = (1 - e2 cos^2 phi0) / (1 - e2),  B = nu0 + y e2 sin phi0 cos phi0 / (1 - e2),
//     C = x^2 + y^2 (1 - e2 sin^2 phi0) / (1 - e2),
// U = -C / (B + sqrt(B^2 - A C)); then the geocentric vector of the point
// gives lambda = atan2 and phi = atan2(Z, (1 - e2) p).  On a sphere the same
// is the spherical inverse.
//
// Domain: the visible hemisphere, sin phi sin phi0 + cos phi cos phi0 cos L
// >= 0 (the normal of the surface facing the viewer); the inverse refuses
// points outside the outline of the globe.
//
// Gnomonic (Snyder eqs. 22-4 to 22-5, 22-14 to 22-15), on the sphere of
// radius a on any spheroid (the latitudes taken as spherical): x = a east /
// up, y = a north / up.  Domain: the hemisphere about the centre without
// its edge (up > 0: the great circle 90 degrees away is at infinity).  Its
// constants are the orthographic's (the centre's sine and cosine; the
// ellipsoidal orthographic's block serves it on an ellipsoid).
//
// Refused: a latitude of centre beyond a pole, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"
#include "projection/ox_tangent_plane.h"

namespace ox {
namespace {

using OrthographicSphere = tangent_plane::Sphere;
using OrthographicEllipsoid = tangent_plane::Ellipsoid;
using tangent_plane::components;
using tangent_plane::finish_inverse;

OX_HORIZON_ROUTINE(horizon_gnomonic);

struct Orthographic : SphereAndEllipsoid<OrthographicSphere, OrthographicEllipsoid> {
    static constexpr int32_t kCode = 43041;
    static constexpr const char *kName = "Orthographic";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kCenter;
    static constexpr ox_horizon_routine kHorizon = horizon_hemisphere;
    static constexpr bool kHasConstantsRoutine = true;
};

// The gnomonic formulas over the constants of either orthographic form.
template <class Form>
struct GnomonicOn {
    using Constants = typename Form::Constants;
    static bool setup(const Frame &f, Constants &c) { return Form::setup(f, c); }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double s, co, east, north, up;
        const bool ok = components<M>(f, c.sin0, c.cos0, lon, lat, s, co, east, north, up);
        const double g = up > 0.0 ? f.a / up : failure_nan();
        x = g * east;
        y = g * north;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        // (an infinite x or y is no point of the map, not its edge)
        const double up = std::fabs(x) + std::fabs(y) < HUGE_VAL ? 1.0 : failure_nan();
        return finish_inverse<M>(f, c.sin0, c.cos0, x / f.a, y / f.a, up, lon, lat);
    }
};

struct Gnomonic : SphereAndEllipsoid<GnomonicOn<OrthographicSphere>, GnomonicOn<OrthographicEllipsoid>> {
    static constexpr int32_t kCode = 43047;
    static constexpr const char *kName = "Gnomonic";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kCenter;
    static constexpr ox_horizon_routine kHorizon = horizon_gnomonic;
    static constexpr bool kHasConstantsRoutine = true;
    using ConstantsOwner = Orthographic;
};

// The cap within 70 degrees of the centre: the gnomonic map grows without
// bound towards 90 degrees (at 70 its radius is 2.7 a).
constexpr double kGnomonicCap = 70.0 * kDegree;
OX_HORIZON_ROUTINE(horizon_gnomonic) {
    (void)spheroid;
    return horizon_circle(horizon_center(parameters, &ParameterValues::longitude_of_center),
                          horizon_center(parameters, &ParameterValues::latitude_of_center), kGnomonicCap,
                          max_vertices, vertices);
}

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Orthographic)
OX_DEFINE_PROJECTION(Gnomonic)
