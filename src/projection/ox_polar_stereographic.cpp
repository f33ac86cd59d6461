// "Stereographic_North_Pole" and "Stereographic_South_Pole": the polar
// stereographic projection with the scale true along the standard parallel
// phi_c (IOGP Guidance Note 7-2, method 9829, polar stereographic variant
// B; Snyder, Map Projections: A Working Manual, 1987, eqs. 21-33 to 21-40):
//     rho = a m_c t / t_c,  x = rho sin L,  y = -rho cos L   (north pole),
//                                           y = +rho cos L   (south pole),
// t = tan(pi/4 - chi/2) for the north (of -chi for the south), chi the
// conformal latitude, m_c / t_c = g(phi_c) / w_c with g(phi) = cos phi
// exp(psi(phi)) (ox_projshared.h), finite for phi_c at the pole, where
// it is variant A with k0 = 1: rho = 2 a t / sqrt((1 + e)^(1 + e) (1 -
// e)^(1 - e)).  The standard parallel is taken as written: a parallel of
// the other hemisphere is a parallel like any other.  These are the
// stereographic projection of the conformal sphere about its pole (the
// library's stereographic formulas), with chi from phi and back by the
// conformal series; no iteration.  On a sphere chi = phi and rho = a (1 +
// sin phi_c) t.
//
// Domain: the whole globe but the opposite pole (at infinity).
//
// Refused: a standard parallel beyond a pole or at the opposite pole (the
// map would have no size), a non-finite central meridian.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

// The pole of a row: +1 north, -1 south.
template <int Pole>
struct Polar {
    // 2 R k0 of the stereographic about the pole: a g(phi_c) / w_c, the
    // standard parallel mirrored for the south.
    static bool scale(const Frame &f, double e, double &k) {
        const double phi_c = latitude_parameter(Pole * f.p.standard_parallel_1);
        if (!finite(f.p.central_meridian) || !finite(phi_c)) return false;
        const double s = std::sin(phi_c);
        k = f.a * cos_exp_isometric(e, phi_c) / std::sqrt(1.0 - e * e * s * s);
        return std::isfinite(k) && k > 1e-9 * f.a;
    }

    struct Sphere {
        struct Constants {
            double k;
        };
        static bool setup(const Frame &f, Constants &c) { return scale(f, 0.0, c.k); }
        template <class M>
        static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                             double &y) {
            const double d = lon - f.p.central_meridian;
            const double L = M::reduce(d);
            double s, co, sl, cl;
            M::sincos(lat, s, co);
            M::sincos(L, sl, cl);
            // The frame of the pole: east = cos phi sin L, north = -Pole cos phi cos L, up = Pole sin phi.
            stereographic_xy(c.k, co * sl, -Pole * co * cl, Pole * s, x, y);
            return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(L);
        }
        template <class M>
        static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                             double &lat) {
            double east, north, up, L, s, co;
            stereographic_components(c.k, x, y, east, north, up);
            const bool ok = frame_position<M>(Pole, 0.0, east, north, up, L, lat, s, co);
            const double l = f.p.central_meridian + L;
            lon = M::reduce(l);
            return ok & M::reduce_ok(l);
        }
    };

    struct Ellipsoid {
        struct Constants {
            double k;
            double chi_forward[kAuxTerms], chi_inverse[kAuxTerms];
        };
        static bool setup(const Frame &f, Constants &c) {
            conformal_coefficients(f.e2, c.chi_forward, c.chi_inverse);
            return scale(f, std::sqrt(f.e2), c.k);
        }
        template <class M>
        static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                             double &y) {
            const double d = lon - f.p.central_meridian;
            const double L = M::reduce(d);
            double s, co, sc, cc, sl, cl;
            M::sincos(lat, s, co);
            const double chi = aux_series(c.chi_forward, lat, s, co);
            M::sincos(chi, sc, cc);
            M::sincos(L, sl, cl);
            stereographic_xy(c.k, cc * sl, -Pole * cc * cl, Pole * sc, x, y);
            return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(chi) & M::sincos_ok(L);
        }
        template <class M>
        static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                             double &lat) {
            double east, north, up, L, chi, s, co;
            stereographic_components(c.k, x, y, east, north, up);
            const bool ok = frame_position<M>(Pole, 0.0, east, north, up, L, chi, s, co);
            lat = aux_series(c.chi_inverse, chi, s, co);
            const double l = f.p.central_meridian + L;
            lon = M::reduce(l);
            return ok & M::reduce_ok(l);
        }
    };
};

// The hemisphere of the pole.
OX_HORIZON_ROUTINE(horizon_stereographic_north_pole) {
    (void)spheroid;
    return horizon_box(horizon_center(parameters), kPi, 0.0, kHalfPi, max_vertices, vertices);
}
OX_HORIZON_ROUTINE(horizon_stereographic_south_pole) {
    (void)spheroid;
    return horizon_box(horizon_center(parameters), kPi, -kHalfPi, 0.0, max_vertices, vertices);
}

struct StereographicNorthPole : SphereAndEllipsoid<Polar<1>::Sphere, Polar<1>::Ellipsoid> {
    static constexpr int32_t kCode = 43050;
    static constexpr const char *kName = "Stereographic_North_Pole";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kStandardParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_stereographic_north_pole;
    static constexpr bool kHasConstantsRoutine = true;
};

struct StereographicSouthPole : SphereAndEllipsoid<Polar<-1>::Sphere, Polar<-1>::Ellipsoid> {
    static constexpr int32_t kCode = 43051;
    static constexpr const char *kName = "Stereographic_South_Pole";
    static constexpr Family kFamily = Family::kAzimuthal;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kStandardParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_stereographic_south_pole;
    static constexpr bool kHasConstantsRoutine = true;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(StereographicNorthPole)
OX_DEFINE_PROJECTION(StereographicSouthPole)
