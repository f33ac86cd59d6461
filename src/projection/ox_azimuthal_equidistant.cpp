// "Azimuthal_Equidistant" about (Central_Meridian, Latitude_Of_Origin):
// the distance and azimuth from the origin are true.
//
// Sphere (Snyder, Map Projections: A Working Manual, 1987, eqs. 25-1 to
// 25-5 and 20-14 to 20-15): with (east, north, up) the unit vector of the
// point in the frame of the origin, c = atan2(hypot(east, north), up),
// x = a c east / sin c, y = a c north / sin c; inverse: sin c / c scales
// (x, y) / a to (east, north), up = cos c, and the point by the rotation of
// the sphere.
//
// Ellipsoid, polar aspects (Snyder eqs. 25-16 to 25-22): rho = Mp -+ M
// (the meridian arc), x = rho sin L, y = -+rho cos L; inverse through the
// rectifying latitude's series.  Oblique and equatorial aspects: the
// geodesic from the origin (the library's geodesics, ox_geodesic.h,
// Karney's algorithms, exact to nanometres): x = s sin alpha, y = s cos
// alpha with s the geodesic distance and alpha the azimuth at the origin;
// inverse by the direct problem.  The forward iterates (Newton's method on
// the azimuth within a bracket, at most 83 steps, typically 2 to 4); the
// inverse does not.
//
// Domain: on the sphere the whole globe but the antipode of the origin
// (and the points within 1e-12 radians of it, whose direction is lost); on
// the ellipsoid the points within pi b of the origin (b the semi-minor
// axis): every geodesic that short is the shortest, so the map is one to
// one there; what is left out is a neighbourhood of the antipode (within
// about 34 km of it on WGS 84).  The polar aspects reach the opposite pole
// but for the pole itself.  The inverse refuses points farther than that
// from the origin.
//
// Refused: a latitude of origin beyond a pole, non-finite parameters, and
// for the ellipsoidal oblique aspect an e2 beyond 0.04 (a flattening of
// about 1/50, where the geodesic's series lose their accuracy).
#include <cmath>

#include "projection/ox_geodesic.h"
#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

bool parameters_ok(const Frame &f) {
    return finite(f.p.central_meridian) && finite(latitude_parameter(f.p.latitude_of_origin));
}

// Points within this angle (radians, 6 micrometres on the Earth) of the
// antipode of the origin fail: their direction from the origin is lost in
// the rounding of their coordinates.
constexpr double kAntipodeCut = 1e-12;

struct Sphere {
    struct Constants {
        double sin0, cos0;
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi0 = latitude_parameter(f.p.latitude_of_origin);
        c.sin0 = std::sin(phi0);
        c.cos0 = std::cos(phi0);
        return parameters_ok(f);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double s, co, east, north, up;
        const bool ok = point_components<M>(c.sin0, c.cos0, f.p.central_meridian, lon, lat, s, co, east, north, up);
        const double sin_c = M::sqrt(east * east + north * north);
        const double angle = M::atan2(sin_c, up);
        // (at the origin 0; at the antipode, and within rounding of it, no
        // direction)
        const bool antipode = (up < 0.0) & (sin_c <= kAntipodeCut);
        const double g = antipode ? failure_nan() : (sin_c > 0.0 ? f.a * angle / sin_c : f.a);
        x = g * east;
        y = g * north;
        return ok & (M::atan2_ok(sin_c, up) | (sin_c == 0.0));
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double xs = x / f.a, ys = y / f.a;
        const double angle = M::sqrt(xs * xs + ys * ys);  // c
        double sin_c, cos_c;
        M::sincos(angle, sin_c, cos_c);
        const double g = angle < kPi ? sine_ratio(sin_c, angle) : failure_nan();
        const bool ok = point_position<M>(c.sin0, c.cos0, f.p.central_meridian, xs * g, ys * g, cos_c, lon, lat);
        return ok & M::sincos_ok(angle);
    }
};

// Pole: +1 north, -1 south.
template <int Pole>
struct EllipsoidPolar {
    struct Constants {
        MeridianArc arc;
    };
    static bool setup(const Frame &f, Constants &c) {
        c.arc.init(f.a, f.e2);
        return parameters_ok(f);
    }
    // rho = R (pi/2 - Pole mu): the arc from the pole.
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        double s, co, sl, cl;
        M::sincos(lat, s, co);
        M::sincos(L, sl, cl);
        const double mu = aux_series(c.arc.to_mu, lat, s, co);
        const double away = kHalfPi - Pole * mu;
        // (the opposite pole, and within rounding of it: no direction)
        const double rho = away < kPi - kAntipodeCut ? c.arc.radius * away : failure_nan();
        x = rho * sl;
        y = -Pole * rho * cl;
        return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(L);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double rho = M::sqrt(x * x + y * y);
        bool ok;
        const double phi = c.arc.template latitude<M>(Pole * (c.arc.quarter - rho), ok);
        lat = rho < 2.0 * c.arc.quarter ? phi : failure_nan();
        const double L = M::atan2(x, -Pole * y);
        const double l = f.p.central_meridian + L;
        lon = M::reduce(l);
        return ok & M::atan2_ok(x, -Pole * y) & M::reduce_ok(l);
    }
};

// The geodesic routines take finite coordinates only: others fail here.
struct EllipsoidOblique {
    struct Constants {
        geodesic::Ellipsoid el;
        double phi0;
        double limit;  // pi b
    };
    static bool setup(const Frame &f, Constants &c) {
        const bool ok = parameters_ok(f) && f.e2 <= geodesic::kMaxE2;
        geodesic::make_ellipsoid(f.a, ok ? f.e2 : geodesic::kMaxE2, c.el);
        c.phi0 = latitude_parameter(f.p.latitude_of_origin);
        c.limit = kPi * c.el.b;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        if (!(std::isfinite(lon) && std::fabs(lat) <= kHalfPi)) {
            x = y = failure_nan();
            return true;
        }
        double s, sin_azimuth, cos_azimuth, unused_sin, unused_cos;
        geodesic::inverse(c.el, f.p.central_meridian, c.phi0, lon, lat, s, sin_azimuth, cos_azimuth, unused_sin,
                          unused_cos);
        const double g = s <= c.limit ? s : failure_nan();
        x = g * sin_azimuth;
        y = g * cos_azimuth;
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double s = std::hypot(x, y);
        if (!(s <= c.limit)) {
            lon = lat = failure_nan();
            return true;
        }
        geodesic::direct(c.el, f.p.central_meridian, c.phi0, std::atan2(x, y), s, lon, lat);
        return true;
    }
};

// The cap of 179 degrees about the origin: on the ellipsoid well within pi b
// (about 77 km inside on WGS 84), on the sphere short of the antipode.
constexpr double kNearAntipode = 179.0 * kDegree;
OX_HORIZON_ROUTINE(horizon_azimuthal_equidistant) {
    (void)spheroid;
    return horizon_circle(horizon_center(parameters),
                          horizon_center(parameters, &ParameterValues::latitude_of_origin), kNearAntipode,
                          max_vertices, vertices);
}

struct AzimuthalEquidistant {
    static constexpr int32_t kCode = 43032;
    static constexpr const char *kName = "Azimuthal_Equidistant";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kDistance;
    static constexpr ParameterSet kParameters = parameter_sets::kOrigin;
    static constexpr ox_horizon_routine kHorizon = horizon_azimuthal_equidistant;
    static constexpr bool kHasConstantsRoutine = true;

    using Forms = ox::Forms<Sphere, EllipsoidOblique, EllipsoidPolar<1>, EllipsoidPolar<-1>>;
    static int form(const Frame &f) { return azimuthal_form(f); }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(AzimuthalEquidistant)
