// "Mercator", normal aspect, with a standard parallel phi1 (Snyder, Map
// Projections: A Working Manual, 1987, eqs. 7-1, 7-2, 7-4, 7-7 and 7-10;
// IOGP Guidance Note 7-2, method 9805).  On the ellipsoid the isometric
// latitude is taken through the conformal latitude chi,
//     x = K L,  y = K ln tan(pi/4 + chi/2),  K = a cos phi1 / w(phi1),
// chi from phi and back by their series in the third flattening; the inverse
// is chi = pi/2 - 2 atan(exp(-y/K)).  On a sphere chi = phi and K = a cos phi1.
//
// Refused: a standard parallel at or beyond a pole (the map would have no
// width), a non-finite central meridian or standard parallel.  Every other
// point is converted and counted (the poles at latitude 89.99999999999968).
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

// ln tan(pi/4 + chi/2) = ln((1 + sin chi) / cos chi), odd in chi: taken on
// |sin chi| so that 1 + |sin chi| never cancels (a latitude a hair off the
// south pole stays finite, as the north pole does).
template <class M>
OX_ALWAYS_INLINE double isometric(double sin_chi, double cos_chi, double &arg) {
    arg = (1.0 + std::fabs(sin_chi)) / cos_chi;
    return std::copysign(M::log(arg), sin_chi);
}

// chi = pi/2 - 2 atan(exp(-y/K)).
template <class M>
OX_ALWAYS_INLINE double conformal_of_isometric(double psi, bool &ok) {
    ok = M::exp_ok(-psi);
    return kHalfPi - 2.0 * M::atan(M::exp(-psi));
}

bool parameters_ok(const Frame &f) {
    return finite(f.p.central_meridian) && std::fabs(f.p.standard_parallel_1) < kHalfPi &&
           !at_pole(f.p.standard_parallel_1);
}

struct Sphere {
    struct Constants {
        double cos_phi1;
        double metres_per_radian;  // K = a cos phi1
    };
    static bool setup(const Frame &f, Constants &c) {
        if (!parameters_ok(f)) return false;
        c.cos_phi1 = std::cos(f.p.standard_parallel_1);
        c.metres_per_radian = f.a * std::cos(f.p.standard_parallel_1);
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double phi = off_pole(lat);
        double s, co, arg;
        M::sincos(phi, s, co);
        x = c.metres_per_radian * M::reduce(d);
        y = c.metres_per_radian * isometric<M>(s, co, arg);
        return M::reduce_ok(d) & M::sincos_ok(phi) & M::log_ok(arg);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double l = f.p.central_meridian + x / c.metres_per_radian;
        bool ok;
        lat = conformal_of_isometric<M>(y / c.metres_per_radian, ok);
        lon = M::reduce(l);
        return M::reduce_ok(l) & ok;
    }
};

struct Ellipsoid {
    struct Constants {
        double m1;  // cos phi1 / w(phi1)
        double metres_per_radian;  // K = a m1
        double chi_forward[kAuxTerms], chi_inverse[kAuxTerms];
    };
    static bool setup(const Frame &f, Constants &c) {
        if (!parameters_ok(f)) return false;
        const double phi1 = f.p.standard_parallel_1;
        c.m1 = std::cos(phi1) / ox_w(f.e2, phi1);
        c.metres_per_radian = f.a * c.m1;
        conformal_coefficients(f.e2, c.chi_forward, c.chi_inverse);
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double phi = off_pole(lat);
        double s, co, sc, cc, arg;
        M::sincos(phi, s, co);
        const double chi = aux_series(c.chi_forward, phi, s, co);
        M::sincos(chi, sc, cc);
        x = c.metres_per_radian * M::reduce(d);
        y = c.metres_per_radian * isometric<M>(sc, cc, arg);
        return M::reduce_ok(d) & M::sincos_ok(phi) & M::sincos_ok(chi) & M::log_ok(arg);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double l = f.p.central_meridian + x / c.metres_per_radian;
        bool ok;
        const double chi = conformal_of_isometric<M>(y / c.metres_per_radian, ok);
        double s, co;
        M::sincos(chi, s, co);
        lat = aux_series(c.chi_inverse, chi, s, co);
        lon = M::reduce(l);
        return M::reduce_ok(l) & M::sincos_ok(chi) & ok;
    }
};

// The whole longitude range, latitudes up to the parallel at which the map
// is as high as it is wide (atan(sinh(pi)), 85.0511287798066 degrees).
constexpr double kSquareMapLatitude = 1.4844222297453324;
OX_HORIZON_ROUTINE(horizon_mercator) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kPi, kSquareMapLatitude, max_vertices, vertices);
}

struct Mercator : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43004;
    static constexpr const char *kName = "Mercator";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kStandardParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_mercator;
    static constexpr bool kHasConstantsRoutine = true;
    static constexpr bool kCountsEveryPoint = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Mercator)
