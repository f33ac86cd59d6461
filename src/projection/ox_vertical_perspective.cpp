// "Vertical_Near_Side_Perspective": the view of the globe from a point at
// "Height" h above the centre (Longitude_Of_Center, Latitude_Of_Center),
// projected onto the tangent plane of the centre (Snyder, Map Projections:
// A Working Manual, 1987, eqs. 23-1 to 23-5 and 23-18 to 23-19), on the
// sphere of radius a on any spheroid (the latitudes taken as spherical).
// With P = 1 + h/a, the distance of the viewpoint from the centre of the
// sphere in radii, and (east, north, up) the unit vector of the point in
// the frame of the centre (up = cos c):
//     k = (P - 1) / (P - up),  x = a k east,  y = a k north.
// Inverse, with rho = hypot(x, y) and S = sqrt(1 - rho^2 (P + 1) / (a^2 (P -
// 1))):
//     sin c = rho g,  g = (P - S) a (P - 1) / (a^2 (P - 1)^2 + rho^2),
// (Snyder 23-18 without the division by rho), east = x g, north = y g,
// up = cos c, and the point by the rotation of the sphere; no iteration.
//
// Domain: the part of the globe seen from the viewpoint, up >= 1/P (the
// horizon is the small circle cos c = 1/P); the inverse refuses points
// outside the disc that the horizon bounds (S^2 < 0).
//
// Refused: a height that is not positive and finite (at or below the
// surface there is no perspective), a latitude of centre beyond a pole,
// non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

struct VerticalPerspective {
    static constexpr int32_t kCode = 43049;
    static constexpr const char *kName = "Vertical_Near_Side_Perspective";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kPerspective;
    static OX_HORIZON_ROUTINE(horizon);
    static constexpr ox_horizon_routine kHorizon = horizon;
    static constexpr bool kHasConstantsRoutine = true;

    struct Constants {
        double sin0, cos0;
        double p;          // P = 1 + h / a
        double p_minus_1;  // h / a
        double inv_p;      // 1 / P, the cosine of the horizon's radius
        double a_h;        // a (P - 1) = h
        double squeeze;    // (P + 1) / (a^2 (P - 1))
    };
    static bool setup(const Frame &f, Constants &c) {
        const double h = f.p.height, phi0 = latitude_parameter(f.p.latitude_of_center);
        if (!positive(h) || !finite(f.p.longitude_of_center) || !finite(phi0)) return false;
        c.sin0 = std::sin(phi0);
        c.cos0 = std::cos(phi0);
        c.p_minus_1 = h / f.a;
        c.p = 1.0 + c.p_minus_1;
        c.inv_p = 1.0 / c.p;
        c.a_h = h;
        c.squeeze = (c.p + 1.0) / (f.a * h);
        return std::isfinite(c.p) && std::isfinite(c.squeeze);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double s, co, east, north, up;
        const bool ok = point_components<M>(c.sin0, c.cos0, f.p.longitude_of_center, lon, lat, s, co, east, north, up);
        const double k = up >= c.inv_p ? f.a * c.p_minus_1 / (c.p - up) : failure_nan();
        x = k * east;
        y = k * north;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double rho2 = x * x + y * y;
        const double s2 = 1.0 - rho2 * c.squeeze;
        const double S = s2 >= 0.0 ? M::sqrt(s2) : failure_nan();
        const double g = (c.p - S) * c.a_h / (c.a_h * c.a_h + rho2);
        const double sin_c = M::sqrt(rho2) * g;
        const double up = M::sqrt((1.0 - sin_c) * (1.0 + sin_c));
        return point_position<M>(c.sin0, c.cos0, f.p.longitude_of_center, x * g, y * g, up, lon, lat);
    }
};

// The small circle of the horizon, cos c = 1/P, 1e-6 radians inside (so
// that its projection is inside the disc of the map after rounding).
OX_HORIZON_ROUTINE(VerticalPerspective::horizon) {
    double radius = kHalfPi - 1e-6;
    if (spheroid != nullptr && parameters != nullptr) {
        VerticalPerspective::Constants c;
        if (Frame(spheroid, parameters).usable() && setup(Frame(spheroid, parameters), c))
            radius = std::acos(c.inv_p) - 1e-6;
    }
    return horizon_circle(horizon_center(parameters, &ParameterValues::longitude_of_center),
                          horizon_center(parameters, &ParameterValues::latitude_of_center), radius, max_vertices,
                          vertices);
}

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(VerticalPerspective)
