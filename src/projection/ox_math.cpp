// Ellipsoid mathematics: longitude reduction, the tolerant equality, radii
// of curvature, meridian arc, rectifying and authalic radii, geocentric
// latitude and the conversion between geodetic and Cartesian coordinates.
#include <cmath>

#include "object/ox_object.h"
#include "projection/ox_math.h"

namespace ox {

// n = (1 - sqrt(1 - e2)) / (1 + sqrt(1 - e2)), written as e2 / (1 + sqrt(1 - e2))^2
// so that a small e2 loses nothing to the difference 1 - sqrt(1 - e2).
double third_flattening(double e2) {
    const double root = 1.0 + std::sqrt(1.0 - e2);
    return e2 / (root * root);
}

namespace {

// Meridian arc in the third flattening (Helmert's expansion, e.g. Bessel-
// Helmert as in Karney, "Transverse Mercator with an accuracy of a few
// nanometers", J. Geodesy 85, 2011): with A0 = 1 + n^2/4 + n^4/64 + n^6/256,
//   M = a/(1+n) [A0 phi + sum_{k=1..7} B_k sin 2k phi],
// the periodic sum evaluated as sin 2phi times a polynomial in cos 2phi
// (Clenshaw on the Chebyshev polynomials of the second kind), so that one
// sine and one cosine suffice.
double arc_series(double a, double n, double phi) {
    const double n2 = n * n, n3 = n2 * n, n4 = n2 * n2, n5 = n4 * n, n6 = n3 * n3, n7 = n6 * n;
    const double a0 = 1.0 + n2 / 4.0 + n4 / 64.0 + n6 / 256.0;
    const double b[8] = {
        0.0,
        -1.5 * n + 3.0 / 16.0 * n3 + 3.0 / 128.0 * n5 + 15.0 / 2048.0 * n7,
        15.0 / 16.0 * n2 - 15.0 / 64.0 * n4 - 75.0 / 2048.0 * n6,
        -35.0 / 48.0 * n3 + 175.0 / 768.0 * n5 + 245.0 / 6144.0 * n7,
        315.0 / 512.0 * n4 - 441.0 / 2048.0 * n6,
        -693.0 / 1280.0 * n5 + 2079.0 / 10240.0 * n7,
        1001.0 / 2048.0 * n6,
        -6435.0 / 14336.0 * n7,
    };
    const double s2 = std::sin(2.0 * phi), c2 = std::cos(2.0 * phi);
    // sum_k b_k sin 2k phi = sin 2phi * sum_k b_k U_{k-1}(cos 2phi)
    double u1 = 0.0, u2 = 0.0;
    for (int k = 7; k >= 1; --k) {
        const double u0 = b[k] + 2.0 * c2 * u1 - u2;
        u2 = u1;
        u1 = u0;
    }
    return a / (1.0 + n) * (a0 * phi + s2 * u1);
}

}  // namespace

}  // namespace ox

using ox::kZero;

extern "C" {

// Reduction by fmod: the remainder keeps the sign of lambda; both -pi and +pi
// are returned unchanged (the interval is closed on both sides).
OX_API double ox_delta(double lambda) {
    if (std::fabs(lambda) <= ox::kPi) return lambda;  // fmod would return it unchanged
    const double r = std::fmod(lambda, ox::kTwoPi);
    if (std::fabs(r) <= ox::kPi) return r;
    return r > 0 ? r - ox::kTwoPi : r + ox::kTwoPi;
}

OX_API double ox_delta_center(double lambda, double center) { return ox_delta(lambda - center) + center; }

OX_API int32_t ox_eq(double x, double y) { return ox::equal_rule(x, y) ? 1 : 0; }

OX_API double ox_w(double e2, double phi) {
    const double s = std::sin(phi);
    return std::sqrt(1.0 - e2 * s * s);
}

OX_API double ox_m(double a, double e2, double phi) {
    const double w = ox_w(e2, phi);
    return a * (1.0 - e2) / (w * w * w);
}

OX_API double ox_n(double a, double e2, double phi) { return a / ox_w(e2, phi); }

OX_API double ox_q(double a, double e2, double phi) {
    if (e2 < ox::kSeriesThreshold) return ox::arc_series(a, ox::third_flattening(e2), phi);
    return a * (ox::elliptic_e_phi(phi, e2) - e2 * std::sin(2.0 * phi) / (2.0 * ox_w(e2, phi)));
}

OX_API double ox_q90(double a, double e2) {
    if (e2 < ox::kSeriesThreshold) {
        const double n = ox::third_flattening(e2);
        const double n2 = n * n, n4 = n2 * n2, n6 = n4 * n2;
        return a / (1.0 + n) * (1.0 + n2 / 4.0 + n4 / 64.0 + n6 / 256.0) * ox::kHalfPi;
    }
    return a * ox::elliptic_e(e2);
}

// Always through the complete elliptic integral (no series branch).
OX_API double ox_rect_r(double a, double e2) {
    if (e2 < kZero) return a;
    return a * ox::elliptic_e(e2) / ox::kHalfPi;
}

OX_API double ox_auth_r(double a, double e2) {
    if (e2 < kZero) return a;
    const double e = std::sqrt(e2);
    return a * std::sqrt((1.0 - (1.0 - e2) / (2.0 * e) * std::log((1.0 - e) / (1.0 + e))) / 2.0);
}

OX_API double ox_phi_to_phig(double e2, double phi) { return std::atan2((1.0 - e2) * std::sin(phi), std::cos(phi)); }

OX_API double ox_phig_to_phi(double e2, double psi) { return std::atan2(std::sin(psi), (1.0 - e2) * std::cos(psi)); }

OX_API void ox_curv_to_cart(double a, double e2, double phi, double lambda, double h, double *x, double *y,
                            double *z) {
    const double sp = std::sin(phi), cp = std::cos(phi);
    const double n = a / std::sqrt(1.0 - e2 * sp * sp);
    if (x) *x = (n + h) * cp * std::cos(lambda);
    if (y) *y = (n + h) * cp * std::sin(lambda);
    if (z) *z = ((1.0 - e2) * n + h) * sp;
}

// Two steps of Bowring's iteration (B. R. Bowring, "Transformation from
// spatial to geographical coordinates", Survey Review 23, 1976).
OX_API void ox_cart_to_curv(double a, double e2, double x, double y, double z, double *phi, double *lambda,
                            double *h) {
    double ph, la, hh;
    const double p = std::sqrt(x * x + y * y);
    const double b = a * std::sqrt(1.0 - e2);
    const double ep2b = b * e2 / (1.0 - e2);
    auto fold = [](double f) {
        if (std::fabs(f) > ox::kHalfPi) f = f > 0 ? ox::kPi - f : -ox::kPi - f;
        return f;
    };
    if (ox::equal_rule(p, 0.0)) {
        la = 0.0;
        ph = z >= 0 ? ox::kHalfPi : -ox::kHalfPi;
        hh = std::fabs(z) - b;
    } else {
        la = std::atan2(y, x);
        const double theta = std::atan2(a * z, b * p);
        const double st = std::sin(theta), ct = std::cos(theta);
        const double phi1 = fold(std::atan2(z + ep2b * st * st * st, p - a * e2 * ct * ct * ct));
        const double beta = std::atan(std::tan(phi1) * b / a);
        const double sb = std::sin(beta), cb = std::cos(beta);
        ph = fold(std::atan2(z + ep2b * sb * sb * sb, p - a * e2 * cb * cb * cb));
        const double beta2 = std::atan(std::tan(ph) * b / a);
        hh = (z - b * std::sin(beta2)) * std::sin(ph) + (p - a * std::cos(beta2)) * std::cos(ph);
    }
    if (phi) *phi = ph;
    if (lambda) *lambda = la;
    if (h) *h = hh;
}

}  // extern "C"
