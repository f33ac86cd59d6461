// "Loximuthal" (Siemon 1935, Tobler 1966), on a sphere of radius a (Snyder,
// Flattening the Earth, 1993, p. 213; Snyder and Voxland, An Album of Map
// Projections, 1989, p. 224): rhumb lines from the centre (central
// meridian, central parallel phi1) keep their true length and azimuth,
//     y = a (phi - phi1),
//     x = a L (phi - phi1) / (psi(phi) - psi(phi1)),  x = a L cos phi1 on phi1,
// psi the isometric latitude ln tan(pi/4 + phi/2).  The difference of psi is
// taken from sin phi - sin phi1 = 2 cos((phi + phi1)/2) sin((phi - phi1)/2),
// so the quotient keeps its digits as phi approaches phi1 (where it tends to
// cos phi1); at the poles psi is infinite and the map has pointed poles
// (x = 0 at a latitude of +-90 degrees; near them x tends to 0 only as
// 1 / ln of the distance to the pole).  Inverse:
// phi = phi1 + y / a, L = x / (a times the same quotient).  No iteration.
// On an ellipsoid the sphere of radius a is used.
//
// Refused: a central parallel at or beyond a pole, non-finite parameters.
// Every point of the sphere is converted; the inverse refuses points outside
// the map's outline.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

struct Loximuthal {
    static constexpr int32_t kCode = 43023;
    static constexpr const char *kName = "Loximuthal";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kCentralParallel;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;

    struct Constants {
        double a, phi1, sin_phi1, cos_phi1;
    };
    static bool setup(const Frame &f, Constants &c) {
        const double phi1 = f.p.central_parallel();
        c.a = f.a;
        c.phi1 = phi1;
        c.sin_phi1 = std::sin(phi1);
        c.cos_phi1 = std::cos(phi1);
        return finite(f.p.central_meridian) && std::fabs(phi1) < kHalfPi && !at_pole(phi1);
    }
    // (phi - phi1) / (psi(phi) - psi(phi1)) for a latitude phi within the
    // map; 0 at the poles.  With r = (1 + sin phi)(1 - sin phi1) / ((1 - sin
    // phi)(1 + sin phi1)), psi(phi) - psi(phi1) = ln(r) / 2 = log1p(t) / 2 for
    // t = r - 1 = 2 (sin phi - sin phi1) / ((1 - sin phi)(1 + sin phi1)): t
    // near phi1, r towards the south pole (where 1 + t cancels); 1 -+ sin phi
    // from cos^2 phi where they are small.
    template <class M>
    static OX_ALWAYS_INLINE double quotient(const Constants &c, double phi, bool &ok, double &cos_phi) {
        const double delta = phi - c.phi1;
        double s, co, sd, cd;
        M::sincos(phi, s, co);
        M::sincos(0.5 * delta, sd, cd);
        cos_phi = co;
        // sin phi - sin phi1 = 2 sin(delta/2) cos(phi1 + delta/2)
        const double diff = 2.0 * sd * (cd * c.cos_phi1 - sd * c.sin_phi1);
        const double one_minus = s > 0.0 ? co * co / (1.0 + s) : 1.0 - s;
        const double one_plus = s < 0.0 ? co * co / (1.0 - s) : 1.0 + s;
        const double t = 2.0 * diff / (one_minus * (1.0 + c.sin_phi1));
        const double r = one_plus * (1.0 - c.sin_phi1) / (one_minus * (1.0 + c.sin_phi1));
        const bool near = t >= -0.5;
        const double dpsi = 0.5 * (near ? M::log1p(near ? t : 0.0) : M::log(near ? 1.0 : r));
        const bool pole = !(std::fabs(phi) < kHalfPi);
        ok = M::sincos_ok(phi) & M::sincos_ok(0.5 * delta) & (near ? M::log1p_ok(t) : M::log_ok(r));
        const double q = dpsi == 0.0 ? c.cos_phi1 : delta / dpsi;
        return pole ? 0.0 : q;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok, q_ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        double cos_phi;
        x = c.a * lambda * quotient<M>(c, phi, q_ok, cos_phi);
        y = c.a * (phi - c.phi1);
        return ok & q_ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double phi = latitude_within(c.phi1 + y / c.a);
        bool ok, q_ok;
        double cos_phi;
        const double q = quotient<M>(c, phi, q_ok, cos_phi);
        // (near a pole the quotient changes as 1 / ln cos phi: the rounding of
        // y moves it by up to 2.2e-16 / cos phi relative)
        lon = longitude_of<M>(f, ratio(x, c.a * q, c.a), ok, width_slack(kRoundoff / cos_phi));
        lat = phi;
        return ok & (q_ok | std::isnan(phi));
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Loximuthal)
