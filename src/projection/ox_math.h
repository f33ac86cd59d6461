// Internal declarations of the ellipsoid mathematics (the exported
// functions are in ox.h): constants, Carlson's symmetric elliptic integrals,
// and the meridian-arc series.
#pragma once

namespace ox {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kHalfPi = 1.5707963267948966;
inline constexpr double kQuarterPi = 0.7853981633974483;
inline constexpr double kDegree = 0.017453292519943295;  // radians per degree
// Below this e2 the meridian arc uses the series in the third flattening,
// at and above it the elliptic integrals.
inline constexpr double kSeriesThreshold = 0.006884661117170036;

// Carlson's symmetric elliptic integrals of the first and second kind,
// by the duplication method (B. C. Carlson, "Computing elliptic integrals by
// duplication", Numer. Math. 33, 1979).
double carlson_rf(double x, double y, double z);
double carlson_rd(double x, double y, double z);
// Complete elliptic integral of the second kind E(e) for e^2 = e2.
double elliptic_e(double e2);
// Incomplete elliptic integral of the second kind E(phi, e) for e^2 = e2.
double elliptic_e_phi(double phi, double e2);

// Third flattening n = (1 - sqrt(1 - e2)) / (1 + sqrt(1 - e2)), NaN when e2 > 1.
double third_flattening(double e2);

}  // namespace ox

namespace ox {

// Auxiliary-latitude series.  Each conversion between the geodetic latitude
// and an auxiliary latitude (conformal chi, authalic beta, rectifying mu) is
//   target = source + sum_{k=1..kAuxTerms} c[k-1] sin(2k source),
// with coefficients that depend on the spheroid only; they are computed once
// per spheroid (for the constants blocks of the projections) by the routines
// below, forward (geodetic to auxiliary) and inverse.
inline constexpr int kAuxTerms = 9;
// The six series, each a table of polynomials in the third flattening n.
enum class AuxSeries {
    ConformalForward,
    ConformalInverse,
    AuthalicForward,
    AuthalicInverse,
    RectifyingForward,
    RectifyingInverse,
};
// The coefficients of one series for the third flattening n (one direction
// only: the exported conversions need no more).
void aux_coefficients(AuxSeries series, double n, double c[kAuxTerms]);
// Both directions for the spheroid e2; NaN coefficients when e2 is not below 1.
void conformal_coefficients(double e2, double forward[kAuxTerms], double inverse[kAuxTerms]);
void authalic_coefficients(double e2, double forward[kAuxTerms], double inverse[kAuxTerms]);
void rectifying_coefficients(double e2, double forward[kAuxTerms], double inverse[kAuxTerms]);

// Evaluates lat + sum c[k-1] sin(2k lat) by Clenshaw summation, given sin and
// cos of lat (so that a caller that has them pays no further sine).
inline double aux_series(const double c[kAuxTerms], double lat, double sin_lat, double cos_lat) {
    const double s2 = 2.0 * sin_lat * cos_lat;                 // sin 2lat
    const double x = 2.0 * (cos_lat - sin_lat) * (cos_lat + sin_lat);  // 2 cos 2lat
    double u0 = 0.0, u1 = 0.0;
    for (int k = kAuxTerms; k >= 1; --k) {
        const double t = x * u0 - u1 + c[k - 1];
        u1 = u0;
        u0 = t;
    }
    return lat + s2 * u0;
}

}  // namespace ox
