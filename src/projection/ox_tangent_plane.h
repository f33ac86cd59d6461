// The tangent plane of a point of the spheroid: the orthographic
// projection about (Longitude_Of_Center, Latitude_Of_Center), whose forms
// "Orthographic", "Gnomonic" (its constants) and "Local" (its plane) share.
// The formulas and their sources are described in ox_orthographic.cpp.
#pragma once

#include <cmath>

#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace tangent_plane {

// Refused: a latitude of centre beyond a pole, non-finite parameters.
inline bool parameters_ok(const Frame &f) {
    return finite(f.p.longitude_of_center) && finite(latitude_parameter(f.p.latitude_of_center));
}

// The frame components of a point about the centre.
template <class M>
OX_ALWAYS_INLINE bool components(const Frame &f, double sin0, double cos0, double lon, double lat, double &s,
                                 double &co, double &east, double &north, double &up) {
    return point_components<M>(sin0, cos0, f.p.longitude_of_center, lon, lat, s, co, east, north, up);
}

// The point of the frame components about the centre.
template <class M>
OX_ALWAYS_INLINE bool finish_inverse(const Frame &f, double sin0, double cos0, double east, double north, double up,
                                     double &lon, double &lat) {
    return point_position<M>(sin0, cos0, f.p.longitude_of_center, east, north, up, lon, lat);
}

struct Sphere {
    struct Constants {
        double sin0, cos0;
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi0 = latitude_parameter(f.p.latitude_of_center);
        c.sin0 = std::sin(phi0);
        c.cos0 = std::cos(phi0);
        return parameters_ok(f);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double s, co, east, north, up;
        const bool ok = components<M>(f, c.sin0, c.cos0, lon, lat, s, co, east, north, up);
        const double g = up >= 0.0 ? f.a : failure_nan();
        x = g * east;
        y = g * north;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double east = x / f.a, north = y / f.a;
        const double u2 = 1.0 - (east * east + north * north);
        const double up = u2 >= 0.0 ? M::sqrt(u2) : failure_nan();
        return finish_inverse<M>(f, c.sin0, c.cos0, east, north, up, lon, lat);
    }
};

struct Ellipsoid {
    struct Constants {
        double sin0, cos0;
        double nu0;       // a / w0
        double a_coef;    // A = (1 - e2 cos^2 phi0) / (1 - e2)
        double b_coef;    // e2 sin phi0 cos phi0 / (1 - e2): B = nu0 + y b_coef
        double c_coef;    // (1 - e2 sin^2 phi0) / (1 - e2): C = x^2 + y^2 c_coef
        double offset;    // e2 nu0 sin phi0 cos phi0
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi0 = latitude_parameter(f.p.latitude_of_center);
        const double s0 = std::sin(phi0), c0 = std::cos(phi0);
        const double one_e2 = 1.0 - f.e2;
        c.sin0 = s0;
        c.cos0 = c0;
        c.nu0 = f.a / std::sqrt(1.0 - f.e2 * s0 * s0);
        c.a_coef = (1.0 - f.e2 * c0 * c0) / one_e2;
        c.b_coef = f.e2 * s0 * c0 / one_e2;
        c.c_coef = (1.0 - f.e2 * s0 * s0) / one_e2;
        c.offset = f.e2 * c.nu0 * s0 * c0;
        return parameters_ok(f);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        double s, co, east, north, up;
        const bool ok = components<M>(f, c.sin0, c.cos0, lon, lat, s, co, east, north, up);
        const double nu = f.a / M::sqrt(1.0 - f.e2 * s * s);
        const double g = up >= 0.0 ? nu : failure_nan();
        x = g * east;
        y = g * north + (c.offset - f.e2 * nu * s * c.cos0);
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double b = c.nu0 + y * c.b_coef;
        const double cc = x * x + y * y * c.c_coef;
        const double disc = b * b - c.a_coef * cc;
        const double u = disc >= 0.0 ? -cc / (b + M::sqrt(disc)) : failure_nan();
        // The geocentric vector in the frame of the centre's meridian (X
        // towards the centre's meridian at the equator, Y east, Z north),
        // the third coordinate divided by 1 - e2: the direction of the
        // normal at the point, whose latitude is phi.
        const double xh = (c.nu0 + u) * c.cos0 - y * c.sin0;
        const double zh = ((1.0 - f.e2) * c.nu0 + u) * c.sin0 + y * c.cos0;
        const double p = M::sqrt(xh * xh + x * x);
        lat = M::atan2(zh, (1.0 - f.e2) * p);
        const double L = M::atan2(x, xh);
        const double l = f.p.longitude_of_center + L;
        lon = M::reduce(l);
        return M::atan2_ok(zh, (1.0 - f.e2) * p) & M::atan2_ok(x, xh) & M::reduce_ok(l);
    }
};

}  // namespace tangent_plane
}  // namespace ox
