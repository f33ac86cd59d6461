// The universal polar stereographic projection of MGRS beyond the UTM
// latitudes: the polar stereographic projection on the ellipsoid, IOGP
// Guidance Note 7-2 (2019), method 9810 "Polar Stereographic (variant A)",
// with the natural origin at the pole, k0 = 0.994 and false easting and
// northing 2 000 000 m (DMA TM 8358.2).
//
// Through the conformal latitude chi the projection is the spherical polar
// stereographic one: t = tan(pi/4 - chi/2) = cos chi / (1 + sin chi) about
// the north pole (chi -> -chi about the south pole), and
//     rho = 2 a k0 t / sqrt((1 + e)^(1 + e) (1 - e)^(1 - e)),
//     E = FE + rho sin(lambda),   N = FN -+ rho cos(lambda);
// the inverse takes t = rho / radius back to chi = pi/2 - 2 atan t and the
// geodetic latitude by the library's conformal-latitude inverse.
#include <cmath>

#include "gridref/ox_gridref.h"
#include "projection/ox_math.h"

namespace ox {

namespace {

constexpr double kUpsScale = 0.994;
constexpr double kUpsFalseOrigin = 2000000.0;

}  // namespace

void ups_constants(double a, double e2, UpsConstants *c) {
    c->e2 = e2;
    const double e = std::sqrt(e2);
    // (1 + e)^(1 + e) (1 - e)^(1 - e), through log1p so that a small e loses nothing
    const double product = std::exp((1.0 + e) * std::log1p(e) + (1.0 - e) * std::log1p(-e));
    c->radius = 2.0 * a * kUpsScale / std::sqrt(product);
}

void ups_forward(const UpsConstants &c, bool north, double lon, double lat, double *easting, double *northing) {
    const double chi = ox_phi_to_chi(c.e2, north ? lat : -lat);
    // (at the pole itself cos chi is the cosine of the double nearest pi/2, 6e-17: 0)
    const double rho = chi >= kHalfPi ? 0.0 : c.radius * std::cos(chi) / (1.0 + std::sin(chi));
    *easting = kUpsFalseOrigin + rho * std::sin(lon);
    *northing = north ? kUpsFalseOrigin - rho * std::cos(lon) : kUpsFalseOrigin + rho * std::cos(lon);
}

void ups_inverse(const UpsConstants &c, bool north, double easting, double northing, double *lon, double *lat) {
    const double dx = easting - kUpsFalseOrigin;
    const double dy = north ? kUpsFalseOrigin - northing : northing - kUpsFalseOrigin;
    const double t = std::sqrt(dx * dx + dy * dy) / c.radius;
    const double chi = kHalfPi - 2.0 * std::atan(t);
    const double phi = ox_chi_to_phi(c.e2, chi);
    *lat = north ? phi : -phi;
    *lon = std::atan2(dx, dy);
}

}  // namespace ox
