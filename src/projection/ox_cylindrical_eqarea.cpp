// "Cylindrical_Equal_Area": Lambert's cylindrical equal-area projection,
// normal aspect, with a standard parallel phi1 (Snyder, Map Projections: A
// Working Manual, 1987, eqs. 10-1, 10-2, 10-6, 10-7 on the sphere; 10-15,
// 10-16 with 3-12 on the ellipsoid):
//     sphere     x = a cos phi1 L,  y = a sin phi / cos phi1;
//     ellipsoid  x = a k0 L,  y = a q(phi) / (2 k0),  k0 = cos phi1 / w(phi1),
// with q as in Snyder 3-12.  The ellipsoidal inverse goes through the
// authalic latitude beta, sin beta = q / qp (Snyder 3-11), and back to phi
// by the authalic series.
//
// "Behrmann" is the same projection with its standard parallel at 30 degrees
// (Behrmann, 1910; Snyder, p. 76), whatever a parameter in that slot says.
//
// Refused: a standard parallel at or beyond a pole (the map would have no
// width), a non-finite central meridian.  Every point is converted.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

bool parameters_ok(const Frame &f) {
    const double phi1 = f.p.standard_parallel_1;
    return finite(f.p.central_meridian) && std::fabs(phi1) < kHalfPi && !at_pole(phi1);
}

struct Sphere {
    struct Constants {
        double fx;  // a cos phi1
        double fy;  // a / cos phi1
    };
    static bool setup(const Frame &f, Constants &c) {
        if (!parameters_ok(f)) return false;
        c.fx = f.a * std::cos(f.p.standard_parallel_1);
        c.fy = f.a / std::cos(f.p.standard_parallel_1);
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        double s, co;
        M::sincos(lat, s, co);
        x = c.fx * M::reduce(d);
        y = c.fy * s;
        return M::reduce_ok(d) & M::sincos_ok(lat);
    }
    // phi = asin(y cos phi1 / a), Delta lambda = x / (a cos phi1).
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double l = f.p.central_meridian + x / c.fx;
        const double s = y / c.fy;
        lat = M::asin(std::fabs(s) > 1.0 ? std::copysign(1.0, s) : s);
        lon = M::reduce(l);
        return M::reduce_ok(l);
    }
};

struct Ellipsoid {
    struct Constants {
        double fx;          // a k0
        double fy;          // a (1 - e2) / (2 k0)
        double e, two_e;    // e and 2 e
        double sin_beta;    // 2 k0 / (a qp): sin beta per metre of y
        double beta_inverse[kAuxTerms];  // authalic latitude to phi
    };
    static bool setup(const Frame &f, Constants &c) {
        if (!parameters_ok(f)) return false;
        const double a = f.a, e2 = f.e2, phi1 = f.p.standard_parallel_1;
        const double e = std::sqrt(e2);
        const double k0 = std::cos(phi1) / ox_w(e2, phi1);
        const double qp = 1.0 - (1.0 - e2) / (2.0 * e) * std::log((1.0 - e) / (1.0 + e));
        c.fx = a * k0;
        c.fy = a / (2.0 * k0) * (1.0 - e2);
        c.e = e;
        c.two_e = 2.0 * e;
        c.sin_beta = 2.0 * k0 / (a * qp);
        double forward_unused[kAuxTerms];
        authalic_coefficients(e2, forward_unused, c.beta_inverse);
        return true;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        double s, co;
        M::sincos(lat, s, co);
        const double ratio = (1.0 - c.e * s) / (1.0 + c.e * s);
        x = c.fx * M::reduce(d);
        y = c.fy * (s / (1.0 - f.e2 * s * s) - M::log(ratio) / c.two_e);
        return M::reduce_ok(d) & M::sincos_ok(lat) & M::log_ok(ratio);
    }
    // sin beta = 2 k0 y / (a qp), phi from beta by the authalic series,
    // Delta lambda = x / (a k0).
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double l = f.p.central_meridian + x / c.fx;
        const double s = y * c.sin_beta;
        const double sb = std::fabs(s) > 1.0 ? std::copysign(1.0, s) : s;
        lat = aux_series(c.beta_inverse, M::asin(sb), sb, std::sqrt((1.0 - sb) * (1.0 + sb)));
        lon = M::reduce(l);
        return M::reduce_ok(l);
    }
};

struct CylindricalEqualArea : SphereAndEllipsoid<Sphere, Ellipsoid> {
    static constexpr int32_t kCode = 43034;
    static constexpr const char *kName = "Cylindrical_Equal_Area";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kStandardParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;
    static constexpr bool kCountsEveryPoint = true;
};

// A form of the projection with the standard parallel at 30 degrees.
constexpr double kBehrmannParallel = 0.5235987755982988;
template <class Form>
struct AtBehrmannParallel : Form {
    static bool setup(const Frame &f, typename Form::Constants &c) {
        Frame at30 = f;
        at30.p.standard_parallel_1 = kBehrmannParallel;
        return Form::setup(at30, c);
    }
};

struct Behrmann : SphereAndEllipsoid<AtBehrmannParallel<Sphere>, AtBehrmannParallel<Ellipsoid>> {
    static constexpr int32_t kCode = 43017;
    static constexpr const char *kName = "Behrmann";
    static constexpr Family kFamily = Family::kCylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;
    static constexpr bool kCountsEveryPoint = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(CylindricalEqualArea)
OX_DEFINE_PROJECTION(Behrmann)
