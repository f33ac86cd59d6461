// Carlson's symmetric elliptic integrals RF and RD by duplication, and the
// Legendre integrals of the second kind built on them.
//   B. C. Carlson, "Computing elliptic integrals by duplication",
//   Numer. Math. 33 (1979) 1-16; closing series from Carlson and Notis,
//   ACM TOMS 7 (1981).
#include <cmath>

#include "projection/ox_math.h"

namespace ox {

namespace {
constexpr double kTolerance = 0.0001;  // relative deviation of every argument from the mean
}

// The loop ends on the tolerance alone (a NaN argument ends it at once).
double carlson_rf(double x, double y, double z) {
    double mean, dx, dy, dz;
    for (;;) {
        const double sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
        const double lambda = sx * sy + sx * sz + sy * sz;
        x = 0.25 * (x + lambda);
        y = 0.25 * (y + lambda);
        z = 0.25 * (z + lambda);
        mean = (x + y + z) / 3.0;
        dx = (mean - x) / mean;
        dy = (mean - y) / mean;
        dz = (mean - z) / mean;
        if (!(std::fabs(dx) >= kTolerance || std::fabs(dy) >= kTolerance || std::fabs(dz) >= kTolerance)) break;
    }
    const double e2 = dx * dy - dz * dz;
    const double e3 = dx * dy * dz;
    return (1.0 + (e2 / 24.0 - 0.1 - 3.0 * e3 / 44.0) * e2 + e3 / 14.0) / std::sqrt(mean);
}

double carlson_rd(double x, double y, double z) {
    double sum = 0.0, factor = 1.0;
    double mean, dx, dy, dz;
    for (;;) {
        const double sx = std::sqrt(x), sy = std::sqrt(y), sz = std::sqrt(z);
        const double lambda = sx * (sy + sz) + sy * sz;
        sum += factor / (sz * (z + lambda));
        factor *= 0.25;
        x = 0.25 * (x + lambda);
        y = 0.25 * (y + lambda);
        z = 0.25 * (z + lambda);
        mean = 0.2 * (x + y + 3.0 * z);
        dx = (mean - x) / mean;
        dy = (mean - y) / mean;
        dz = (mean - z) / mean;
        if (!(std::fabs(dx) >= kTolerance || std::fabs(dy) >= kTolerance || std::fabs(dz) >= kTolerance)) break;
    }
    constexpr double c1 = 3.0 / 14.0, c2 = 1.0 / 6.0, c3 = 9.0 / 22.0, c4 = 3.0 / 26.0;
    constexpr double c5 = 0.25 * c3, c6 = 1.5 * c4;
    const double ea = dx * dy, eb = dz * dz;
    const double ec = ea - eb, ed = ea - 6.0 * eb, ee = ed + ec + ec;
    return 3.0 * sum + factor * (1.0 + ed * (-c1 + c5 * ed - c6 * dz * ee) + dz * (c2 * ee + dz * (-c3 * ec + dz * c4 * ea))) /
                           (mean * std::sqrt(mean));
}

double elliptic_e(double e2) { return carlson_rf(0.0, 1.0 - e2, 1.0) - e2 / 3.0 * carlson_rd(0.0, 1.0 - e2, 1.0); }

// Carlson's form E(phi, k) = sin phi RF(cos^2 phi, 1 - k^2 sin^2 phi, 1)
// - (k^2/3) sin^3 phi RD(cos^2 phi, 1 - k^2 sin^2 phi, 1) holds for |phi| <= pi/2;
// beyond, E(j pi + r, k) = 2j E(k) + E(r, k).
double elliptic_e_phi(double phi, double e2) {
    double turns = 0.0;
    if (std::fabs(phi) > kHalfPi) {
        turns = std::nearbyint(phi / kPi);
        phi -= turns * kPi;
    }
    const double s = std::sin(phi), c = std::cos(phi);
    const double q = 1.0 - e2 * s * s;
    const double e = s * carlson_rf(c * c, q, 1.0) - e2 / 3.0 * s * s * s * carlson_rd(c * c, q, 1.0);
    return turns == 0.0 ? e : e + 2.0 * turns * elliptic_e(e2);
}

}  // namespace ox
