// The secant form of a Lambert conformal conic.  The legacy LAMBERT line set
// has two standard parallels and no scale factor, so a cone given with a
// scale factor (one standard parallel and k0 < 1, as many national grids
// define it) is written with the two parallels on which its scale is true:
// the same cone constant and the same radius function, hence the same map.
//
// Snyder, Map Projections: A Working Manual (1987), eqs. 14-15, 15-9 and
// 15-8: m = cos phi / sqrt(1 - e2 sin^2 phi), t = tan(pi/4 - phi/2) /
// ((1 - e sin phi) / (1 + e sin phi))^(e/2), n = (ln m1 - ln m2) /
// (ln t1 - ln t2) (n = sin phi1 for one parallel), F = m1 / (n t1^n); the
// scale along a parallel is k = k0 F n t^n / m.  d ln k / d phi has the
// sign of sin phi - n, so k is least on the parallel asin(n) and grows
// towards both poles: for a least scale below 1 there is one parallel of
// true scale on either side.
#include <cmath>

#include "prjfile/ox_prjfile.h"

namespace ox::prj {
namespace {

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kQuarterPi = 0.7853981633974483;
constexpr double kPoleMargin = 1e-9;   // radians short of a pole
constexpr double kScaleTolerance = 1e-15;
constexpr int kMaxBisections = 200;

struct Cone {
    double e, n, log_k0fn;  // ln(k0 F n)

    static double log_m(double e, double phi) {
        const double s = e * std::sin(phi);
        return std::log(std::cos(phi)) - 0.5 * std::log1p(-s * s);
    }
    static double log_t(double e, double phi) {
        const double s = e * std::sin(phi);
        return std::log(std::tan(kQuarterPi - 0.5 * phi)) - 0.5 * e * (std::log1p(-s) - std::log1p(s));
    }
    // ln k on the parallel phi.
    double log_scale(double phi) const { return log_k0fn + n * log_t(e, phi) - log_m(e, phi); }

    // The parallel between `low` and `high` where ln k crosses 0 (ln k is
    // monotonic there, of opposite signs at the two ends).
    double crossing(double low, double high) const {
        const bool rising = log_scale(low) < 0.0;
        for (int i = 0; i < kMaxBisections && high - low > 1e-16; ++i) {
            const double mid = 0.5 * (low + high);
            if ((log_scale(mid) < 0.0) == rising)
                low = mid;
            else
                high = mid;
        }
        return 0.5 * (low + high);
    }
};

}  // namespace

bool lambert_true_scale_parallels(double e2, double phi1, double phi2, double k0, double *poleward,
                                  double *equatorward) {
    if (!(e2 >= 0.0 && e2 < 1.0 && k0 > 0.0 && std::fabs(phi1) < kHalfPi && std::fabs(phi2) < kHalfPi))
        return false;
    const double e = std::sqrt(e2);
    Cone cone{e, 0.0, 0.0};
    const double dt = Cone::log_t(e, phi1) - Cone::log_t(e, phi2);
    cone.n = std::fabs(phi1 - phi2) < 1e-12 ? std::sin(phi1) : (Cone::log_m(e, phi1) - Cone::log_m(e, phi2)) / dt;
    if (!(std::fabs(cone.n) > 1e-12 && std::fabs(cone.n) < 1.0)) return false;
    // ln(k0 F n) with F = m1 / (n t1^n).
    cone.log_k0fn = std::log(k0) + Cone::log_m(e, phi1) - cone.n * Cone::log_t(e, phi1);
    const double least = std::asin(cone.n);
    const double least_scale = cone.log_scale(least);
    if (least_scale > kScaleTolerance) return false;  // the cone cuts no parallel at true scale
    double north = least, south = least;
    if (least_scale < -kScaleTolerance) {
        north = cone.crossing(least, kHalfPi - kPoleMargin);
        south = cone.crossing(-kHalfPi + kPoleMargin, least);
    }
    const bool northern = cone.n > 0.0;
    *poleward = northern ? north : south;
    *equatorward = northern ? south : north;
    return std::isfinite(north) && std::isfinite(south);
}

}  // namespace ox::prj
