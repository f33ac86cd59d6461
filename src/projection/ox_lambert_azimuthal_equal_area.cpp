// "Lambert_Azimuthal_Equal_Area" about (Central_Meridian,
// Latitude_Of_Origin), every aspect (Snyder, Map Projections: A Working
// Manual, 1987, eqs. 24-1 to 24-31; IOGP Guidance Note 7-2, method 9820).
//
// Sphere: with (east, north, up) the unit vector of the point in the frame
// of the origin, k = sqrt(2 / (1 + up)), x = a k east, y = a k north.
// Inverse: h = rho / 2a = sin(c/2), east = x cos(c/2) / a, north = y
// cos(c/2) / a, up = 1 - 2h^2, and the point by the rotation of the sphere.
//
// Ellipsoid, oblique and equatorial aspects: the same on the authalic
// sphere of radius Rq = a sqrt(qp / 2), in the authalic latitude beta,
// stretched by D = a m1 / (Rq cos beta1) across and 1/D along the meridian:
//     B = Rq sqrt(2 / (1 + up)),  x = B D east,  y = (B / D) north.
// Polar aspects: rho = a sqrt(qp -+ q), x = rho sin L, y = -+rho cos L.
// sin beta and cos beta come from sin phi without the difference qp - q of
// nearly equal terms (ox_projshared.h), so that the map is exact next to a
// pole; phi from beta by the authalic series (the library's auxiliary
// latitudes); no iteration.
//
// Domain: the whole globe but the antipode of the origin (a circle on the
// map's edge, of radius 2a on a sphere).  The inverse refuses points outside
// that circle.
//
// Refused: a latitude of origin beyond a pole, non-finite parameters.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

bool parameters_ok(const Frame &f) {
    return finite(f.p.central_meridian) && finite(latitude_parameter(f.p.latitude_of_origin));
}

// The frame components of the point (x/r, y/r) of a map of radius factor r
// (a on the sphere, Rq on the authalic sphere): h = sin(c/2).
template <class M>
OX_ALWAYS_INLINE void equal_area_components(double xs, double ys, double &east, double &north, double &up) {
    const double h2 = 0.25 * (xs * xs + ys * ys);
    const double half_cos = h2 <= 1.0 ? M::sqrt(1.0 - h2) : failure_nan();  // cos(c/2)
    east = xs * half_cos;
    north = ys * half_cos;
    up = 1.0 - 2.0 * h2;
}

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
        const double one_up = 1.0 + up;
        const double k = one_up > 0.0 ? f.a * M::sqrt(2.0 / one_up) : failure_nan();
        x = k * east;
        y = k * north;
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double east, north, up;
        equal_area_components<M>(x / f.a, y / f.a, east, north, up);
        return point_position<M>(c.sin0, c.cos0, f.p.central_meridian, east, north, up, lon, lat);
    }
};

// What both ellipsoidal aspects need.
struct AuthalicConstants {
    double e;
    double inv_qp;  // 1 / qp
    double beta_inverse[kAuxTerms];

    void init(const Frame &f) {
        e = std::sqrt(f.e2);
        inv_qp = 1.0 / authalic_q_pole(e, f.e2);
        double beta_forward[kAuxTerms];
        authalic_coefficients(f.e2, beta_forward, beta_inverse);
    }
};

struct EllipsoidOblique {
    struct Constants : AuthalicConstants {
        double sin0, cos0;  // of beta1
        double rq;          // Rq
        double d;           // D
    };
    static bool setup(const Frame &f, Constants &c) {
        c.init(f);
        const double phi1 = latitude_parameter(f.p.latitude_of_origin);
        const double s1 = std::sin(phi1), c1 = std::cos(phi1);
        double one_minus;
        bool ok;
        authalic_sin_cos<ExactMath>(c.e, f.e2, c.inv_qp, s1, c1, c.sin0, c.cos0, one_minus, ok);
        c.rq = f.a * std::sqrt(0.5 / c.inv_qp);
        c.d = f.a * c1 / (std::sqrt(1.0 - f.e2 * s1 * s1) * c.rq * c.cos0);
        return parameters_ok(f) && std::isfinite(c.d) && c.d > 0.0;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        double s, co, sb, cb, om, sl, cl, east, north, up;
        bool ok;
        M::sincos(lat, s, co);
        authalic_sin_cos<M>(c.e, f.e2, c.inv_qp, s, co, sb, cb, om, ok);
        M::sincos(L, sl, cl);
        frame_components(c.sin0, c.cos0, sb, cb, sl, cl, east, north, up);
        const double one_up = 1.0 + up;
        const double b = one_up > 0.0 ? c.rq * M::sqrt(2.0 / one_up) : failure_nan();
        x = b * c.d * east;
        y = b / c.d * north;
        return ok & M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(L);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        double east, north, up, L, beta, sb, cb;
        equal_area_components<M>(x / (c.d * c.rq), y * c.d / c.rq, east, north, up);
        const bool ok = frame_position<M>(c.sin0, c.cos0, east, north, up, L, beta, sb, cb);
        lat = aux_series(c.beta_inverse, beta, sb, cb);
        const double l = f.p.central_meridian + L;
        lon = M::reduce(l);
        return ok & M::reduce_ok(l);
    }
};

// Pole: +1 north, -1 south.
template <int Pole>
struct EllipsoidPolar {
    struct Constants : AuthalicConstants {
        double a_root_qp;  // a sqrt(qp)
    };
    static bool setup(const Frame &f, Constants &c) {
        c.init(f);
        c.a_root_qp = f.a / std::sqrt(c.inv_qp);
        return parameters_ok(f);
    }
    // rho = a sqrt(qp (1 - Pole sin beta)).
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double L = M::reduce(d);
        double s, co, sb, cb, om, sl, cl;
        bool ok;
        M::sincos(lat, s, co);
        authalic_sin_cos<M>(c.e, f.e2, c.inv_qp, s, co, sb, cb, om, ok);
        const double away = s * Pole >= 0.0 ? om : 2.0 - om;  // 1 - Pole sin beta
        const double rho = c.a_root_qp * M::sqrt(away);
        M::sincos(L, sl, cl);
        x = rho * sl;
        y = -Pole * rho * cl;
        return ok & M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(L);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double xs = x / c.a_root_qp, ys = y / c.a_root_qp;
        const double away = xs * xs + ys * ys;  // 1 - Pole sin beta
        const double sb = Pole * (1.0 - away);
        const double cb = away <= 2.0 ? M::sqrt(away * (2.0 - away)) : failure_nan();
        const double beta = M::atan2(sb, cb);
        lat = aux_series(c.beta_inverse, beta, sb, cb);
        const double L = M::atan2(x, -Pole * y);
        const double l = f.p.central_meridian + L;
        lon = M::reduce(l);
        return M::atan2_ok(sb, cb) & M::atan2_ok(x, -Pole * y) & M::reduce_ok(l);
    }
};

// The cap of 179.9 degrees about the origin: the whole globe but the
// antipode, which is the map's edge.
constexpr double kNearAntipode = 179.9 * kDegree;
OX_HORIZON_ROUTINE(horizon_lambert_azimuthal) {
    (void)spheroid;
    return horizon_circle(horizon_center(parameters),
                          horizon_center(parameters, &ParameterValues::latitude_of_origin), kNearAntipode,
                          max_vertices, vertices);
}

struct LambertAzimuthalEqualArea {
    static constexpr int32_t kCode = 43033;
    static constexpr const char *kName = "Lambert_Azimuthal_Equal_Area";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kOrigin;
    static constexpr ox_horizon_routine kHorizon = horizon_lambert_azimuthal;
    static constexpr bool kHasConstantsRoutine = true;

    using Forms = ox::Forms<Sphere, EllipsoidOblique, EllipsoidPolar<1>, EllipsoidPolar<-1>>;
    static int form(const Frame &f) { return azimuthal_form(f); }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(LambertAzimuthalEqualArea)
