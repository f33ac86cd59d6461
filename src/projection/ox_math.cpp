// Ellipsoid mathematics: longitude reduction, the tolerant equality, radii
// of curvature, meridian arc, rectifying and authalic radii, geocentric
// latitude and the conversion between geodetic and Cartesian coordinates.
#include <cmath>

#include "object/ox_object.h"
#include "object/ox_utils.h"
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

// ---------------------------------------------------------------------------
// Auxiliary latitudes.  Below kSeriesThreshold the conversions are the
// Fourier series in n of ox_math3 (Karney, "On auxiliary latitudes", Survey
// Review 2023); at and above it, closed forms forward and Newton's method,
// started from the series, inverse.
// ---------------------------------------------------------------------------

// Newton's method ends after a correction below this (relative to the
// unknown where it can be large): the error left is then of the order of its
// square, far below the rounding of the result.
constexpr double kNewtonTolerance = 9.313225746154785e-10;  // 2^-30
constexpr int kConformalMaxCount = 30000;
constexpr int kAuthalicMaxIterations = 500;
constexpr int kRectifyingMaxIterations = 50;

// The cases that need no computation: a sphere returns the latitude, a
// spheroid that is no ellipsoid (e2 not below 1, or NaN) and a latitude
// beyond a pole give NaN, the poles are fixed points.  True when `out` holds
// the result.
bool aux_trivial(double e2, double lat, double *out) {
    if (e2 < kZero) {
        *out = lat;
        return true;
    }
    if (!(e2 < 1.0) || !(std::fabs(lat) <= kHalfPi)) {
        *out = failure_nan();
        return true;
    }
    if (std::fabs(lat) == kHalfPi || lat == 0.0) {
        *out = lat;
        return true;
    }
    return false;
}

double by_series(AuxSeries series, double e2, double lat) {
    double c[kAuxTerms];
    aux_coefficients(series, third_flattening(e2), c);
    return aux_series(c, lat, std::sin(lat), std::cos(lat));
}

// Conformal latitude, closed form: tan chi = tan phi cosh x - sinh x sec phi
// with x = e atanh(e sin phi) (Snyder 3-1 in the form of Karney 2011).
double conformal_closed(double e2, double phi) {
    const double e = std::sqrt(e2), s = std::sin(phi);
    const double x = e * std::atanh(e * s);
    return std::atan2(s * std::cosh(x) - std::sinh(x), std::cos(phi));
}

// tau' = tan chi of tau = tan phi (Karney, "Transverse Mercator with an accuracy
// of a few nanometers", J. Geodesy 85, 2011).
double conformal_tangent(double e, double tau) {
    const double tau1 = std::hypot(1.0, tau);
    const double sigma = std::sinh(e * std::atanh(e * tau / tau1));
    return std::hypot(1.0, sigma) * tau - sigma * tau1;
}

// Geodetic from conformal latitude: Newton's method on tau = tan phi with the
// derivative d tau'/d tau = (1 - e2) sqrt(1 + tau'^2) sqrt(1 + tau^2) /
// (1 + (1 - e2) tau^2) (Karney 2011), from tau = tau'/(1 - e2).
double conformal_inverse_closed(double e2, double chi) {
    const double e = std::sqrt(e2), e2m = 1.0 - e2;
    const double taup = std::tan(chi);
    double tau = taup / e2m;
    for (int count = 1;; ++count) {
        const double taupa = conformal_tangent(e, tau);
        const double dtau =
            (taup - taupa) * (1.0 + e2m * tau * tau) / (e2m * std::hypot(1.0, tau) * std::hypot(1.0, taupa));
        tau += dtau;
        if (!(std::fabs(dtau) >= kNewtonTolerance * std::fmax(1.0, std::fabs(tau))) || count > kConformalMaxCount) {
            break;
        }
    }
    return std::atan(tau);
}

// Authalic latitude, closed form (Snyder 3-11, 3-12), for 0 <= phi <= pi/2:
// sin beta = q/qp with q = (1 - e2) (s/(1 - e2 s^2) + atanh(e s)/e).  cos beta
// comes from qp^2 - q^2 = d (qp + q), where d = qp - q is rearranged so that
// it keeps its precision at the pole:
//   d = (1 - s)(1 + e2 s)/(1 - e2 s^2) + (1 - e2) atanh(e (1 - s)/(1 - e2 s))/e.
// Returns beta and, in *slope, d beta/d phi = q'(phi)/(qp cos beta).
double authalic_closed(double e2, double phi, double *slope) {
    const double e = std::sqrt(e2), s = std::sin(phi), c = std::cos(phi);
    const double es2 = 1.0 - e2 * s * s;
    const double q = (1.0 - e2) * (s / es2 + std::atanh(e * s) / e);
    const double qp = 1.0 + (1.0 - e2) * std::atanh(e) / e;
    const double one_minus_s = c * c / (1.0 + s);
    const double d = one_minus_s * (1.0 + e2 * s) / es2 + (1.0 - e2) * std::atanh(e * one_minus_s / (1.0 - e2 * s)) / e;
    const double qp_cos_beta = std::sqrt(d * (qp + q));
    if (slope) *slope = 2.0 * (1.0 - e2) * c / (es2 * es2 * qp_cos_beta);
    return std::atan2(q, qp_cos_beta);
}

// Solves f(phi) = target for 0 < target < pi/2, f increasing on [0, pi/2]
// with f(0) = 0 and f(pi/2) = pi/2, by Newton's method from `phi`; a step
// that would leave the bracket kept around the root is replaced by bisection,
// so that the iteration cannot diverge.  f returns its value and slope.
template <class Function>
double solve_latitude(Function f, double target, double phi, int max_iterations) {
    double lo = 0.0, hi = kHalfPi;
    if (!(phi > lo && phi < hi)) phi = target;
    for (int i = 0; i < max_iterations; ++i) {
        double slope;
        const double residual = f(phi, &slope) - target;
        if (residual == 0.0) break;
        if (residual > 0.0) {
            hi = phi;
        } else {
            lo = phi;
        }
        double next = phi - residual / slope;
        const bool newton = next >= lo && next <= hi;
        if (!newton) next = 0.5 * (lo + hi);
        const double step = next - phi;
        phi = next;
        if (step == 0.0 || (newton && std::fabs(step) <= kNewtonTolerance)) break;
    }
    return phi;
}

// Geodetic from authalic latitude: Newton's method on phi, started from the
// series.
double authalic_inverse_closed(double e2, double beta) {
    const double target = std::fabs(beta);
    const double start = by_series(AuxSeries::AuthalicInverse, e2, target);
    const auto f = [e2](double phi, double *slope) { return authalic_closed(e2, phi, slope); };
    return std::copysign(solve_latitude(f, target, start, kAuthalicMaxIterations), beta);
}

// Rectifying latitude, closed form: mu = (pi/2) M(phi)/M(pi/2) with the arc
// M/a = E(phi, e) - e2 sin phi cos phi / w and the quarter meridian E(e).
double rectifying_closed(double e2, double phi, double quarter) {
    const double s = std::sin(phi), c = std::cos(phi);
    return kHalfPi * (elliptic_e_phi(phi, e2) - e2 * s * c / std::sqrt(1.0 - e2 * s * s)) / quarter;
}

// Geodetic from rectifying latitude: Newton's method on phi, started from
// the series, with d mu/d phi = (pi/2) (1 - e2) / (w^3 E(e)).
double rectifying_inverse_closed(double e2, double mu) {
    const double quarter = elliptic_e(e2);
    const double target = std::fabs(mu);
    const double start = by_series(AuxSeries::RectifyingInverse, e2, target);
    const auto f = [e2, quarter](double phi, double *slope) {
        const double s = std::sin(phi), w2 = 1.0 - e2 * s * s;
        *slope = kHalfPi * (1.0 - e2) / (w2 * std::sqrt(w2) * quarter);
        return rectifying_closed(e2, phi, quarter);
    };
    return std::copysign(solve_latitude(f, target, start, kRectifyingMaxIterations), mu);
}

// Reduced latitude: tan eta = sqrt(1 - e2) tan phi = (1 - n)/(1 + n) tan phi,
// whose Fourier series is exact: eta = phi + sum (-n)^k/k sin 2k phi, and the
// inverse the same with n for -n.
double reduced_series(double e2, double lat, double sign) {
    const double n = sign * third_flattening(e2);
    double c[kAuxTerms], power = 1.0;
    for (int k = 1; k <= kAuxTerms; ++k) {
        power *= n;
        c[k - 1] = power / k;
    }
    return aux_series(c, lat, std::sin(lat), std::cos(lat));
}

// The two sides of the threshold of each conversion, as (e2, latitude).
template <AuxSeries kSeries>
double series_of(double e2, double lat) {
    return by_series(kSeries, e2, lat);
}
double reduced_forward_series(double e2, double phi) { return reduced_series(e2, phi, -1.0); }
double reduced_inverse_series(double e2, double eta) { return reduced_series(e2, eta, 1.0); }
double authalic_forward_closed(double e2, double phi) {
    return std::copysign(authalic_closed(e2, std::fabs(phi), nullptr), phi);
}
double rectifying_forward_closed(double e2, double phi) { return rectifying_closed(e2, phi, elliptic_e(e2)); }
double reduced_forward_closed(double e2, double phi) {
    return std::atan2(std::sqrt(1.0 - e2) * std::sin(phi), std::cos(phi));
}
double reduced_inverse_closed(double e2, double eta) {
    return std::atan2(std::sin(eta), std::sqrt(1.0 - e2) * std::cos(eta));
}

// One conversion: the cases that need no computation, the series below the
// threshold, the closed or iterative form at and above it.
template <double (*kSeries)(double, double), double (*kExact)(double, double)>
double convert(double e2, double lat) {
    double result;
    if (aux_trivial(e2, lat, &result)) return result;
    return e2 < kSeriesThreshold ? kSeries(e2, lat) : kExact(e2, lat);
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

OX_API double ox_phi_to_chi(double e2, double phi) {
    return ox::convert<ox::series_of<ox::AuxSeries::ConformalForward>, ox::conformal_closed>(e2, phi);
}

OX_API double ox_chi_to_phi(double e2, double chi) {
    return ox::convert<ox::series_of<ox::AuxSeries::ConformalInverse>, ox::conformal_inverse_closed>(e2, chi);
}

OX_API double ox_phi_to_beta(double e2, double phi) {
    return ox::convert<ox::series_of<ox::AuxSeries::AuthalicForward>, ox::authalic_forward_closed>(e2, phi);
}

OX_API double ox_beta_to_phi(double e2, double beta) {
    return ox::convert<ox::series_of<ox::AuxSeries::AuthalicInverse>, ox::authalic_inverse_closed>(e2, beta);
}

OX_API double ox_phi_to_mu(double e2, double phi) {
    return ox::convert<ox::series_of<ox::AuxSeries::RectifyingForward>, ox::rectifying_forward_closed>(e2, phi);
}

OX_API double ox_mu_to_phi(double e2, double mu) {
    return ox::convert<ox::series_of<ox::AuxSeries::RectifyingInverse>, ox::rectifying_inverse_closed>(e2, mu);
}

OX_API double ox_phi_to_eta(double e2, double phi) {
    return ox::convert<ox::reduced_forward_series, ox::reduced_forward_closed>(e2, phi);
}

OX_API double ox_eta_to_phi(double e2, double eta) {
    return ox::convert<ox::reduced_inverse_series, ox::reduced_inverse_closed>(e2, eta);
}

}  // extern "C"
