// "New_Zealand_Map_Grid": the conformal polynomial projection of New Zealand
// (Reilly, "A conformal mapping projection with minimum scale error", Survey
// Review 22, 1973; Land Information New Zealand's published coefficients;
// IOGP Guidance Note 7-2, 2019, section 3.2.2, method 9811).  With the
// latitude difference from the origin in units of 10^5 seconds of arc,
//     dphi' = (phi - phi_0) * 180/pi * 3600 * 10^-5,
// the isometric-latitude difference is the real series
//     dpsi = sum_{k=1..10} A_k dphi'^k,
// and with zeta = dpsi + i (lambda - lambda_0) the grid is the complex
// polynomial
//     z = sum_{k=1..6} B_k zeta^k,  y = a Re z,  x = a Im z
// (northing and easting about the origin).  The inverse starts from the
// published series zeta = sum C_k z^k and refines it by the published
// Newton-Raphson step
//     zeta <- (z + sum_{k=2..6} (k - 1) B_k zeta^k) / (sum_{k=1..6} k B_k zeta^(k-1)),
// kNewtonSteps times; the latitude starts from the published series
// dphi' = sum_{k=1..9} D_k dpsi^k and is refined by kNewtonSteps Newton
// steps on the A series, so that the inverse is the forward's own inverse
// to rounding (the published D series alone is good to about 0.1 mm).
// Every step is taken (no test inside the loop).  Measured on a grid over
// the domain, three steps converge to the last bits within 8 degrees of the
// origin and four within 15; five are taken.
//
// The coefficients belong to the International 1924 ellipsoid; on another
// spheroid the grid is scaled by its semi-major axis.
//
// Domain: within kDomain (12 degrees) of the origin in latitude and in
// longitude, well beyond New Zealand and its offshore islands (7 degrees;
// the Chatham Islands 10.5); the inverse
// takes the points whose result lies there and whose last Newton step was
// below 1e-11 of the polynomial's argument.  Other points get the failure
// value.  Refused: a non-finite origin or one beyond a pole.
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {
namespace {

// Units of 10^5 seconds of arc per radian.
constexpr double kUnitsPerRadian = 180.0 / kPi * 3600.0 * 1e-5;
constexpr double kDomain = 12.0 * kDegree;
constexpr int kNewtonSteps = 5;
constexpr double kConverged = 1e-11;

// dpsi = sum A_k dphi'^k.
constexpr double kA[10] = {0.6399175073, -0.1358797613, 0.063294409, -0.02526853, 0.0117879,
                           -0.0055161,   0.0026906,     -0.001333,   0.00067,     -0.00034};
// z = sum B_k zeta^k (real and imaginary parts).
constexpr double kBre[6] = {0.7557853228, 0.249204646, -0.001541739, -0.10162907, -0.26623489, -0.6870983};
constexpr double kBim[6] = {0.0, 0.003371507, 0.041058560, 0.01727609, -0.36249218, -1.1651967};
// zeta = sum C_k z^k.
constexpr double kCre[6] = {1.3231270439, -0.577245789, 0.508307513, -0.15094762, 1.01418179, 1.9660549};
constexpr double kCim[6] = {0.0, -0.007809598, -0.112208952, 0.18200602, 1.64497696, 2.5127645};
// dphi' = sum D_k dpsi^k.
constexpr double kD[9] = {1.5627014243, 0.5185406398, -0.03333098, -0.1052906, -0.0368594,
                          0.007317,     0.01220,       0.00394,     -0.0013};

// sum_{k=1..N} c_k t^k and its derivative, by Horner's rule.
template <int N>
OX_ALWAYS_INLINE double real_series(const double (&c)[N], double t, double &derivative) {
    double p = 0.0, dp = 0.0;
#pragma GCC unroll 16
    for (int k = N - 1; k >= 0; --k) {
        dp = dp * t + p;
        p = p * t + c[k];
    }
    derivative = p + t * dp;  // d/dt (t p(t))
    return t * p;
}

// sum_{k=1..6} c_k w^k for complex w = (wr, wi), by Horner's rule.
OX_ALWAYS_INLINE void complex_series(const double (&cr)[6], const double (&ci)[6], double wr, double wi, double &zr,
                                     double &zi) {
    double pr = 0.0, pi = 0.0;
#pragma GCC unroll 8
    for (int k = 5; k >= 0; --k) {
        const double tr = pr * wr - pi * wi + cr[k];
        pi = pr * wi + pi * wr + ci[k];
        pr = tr;
    }
    zr = pr * wr - pi * wi;
    zi = pr * wi + pi * wr;
}

bool origin_ok(const Frame &f) {
    return finite(f.p.central_meridian) && std::fabs(f.p.latitude_of_origin) <= kHalfPi;
}

// The horizon: the domain, the box of kDomain about the origin (latitudes
// kept within the poles), counter-clockwise from its south-west corner.
OX_HORIZON_ROUTINE(horizon_new_zealand) {
    if (spheroid == nullptr || parameters == nullptr) return 0;
    const Frame f(spheroid, parameters);
    if (!origin_ok(f)) return 0;
    const double lon0 = f.p.central_meridian, lat0 = f.p.latitude_of_origin;
    const double half = kDomain * (1.0 - 1e-9);  // (inside, whatever the rounding of the edges)
    const double south = lat0 - half < -kHalfPi ? -kHalfPi : lat0 - half;
    const double north = lat0 + half > kHalfPi ? kHalfPi : lat0 + half;
    const double west = lon0 - half, east = lon0 + half;
    const double corners[8] = {west, south, east, south, east, north, west, north};
    HorizonWriter out(max_vertices, vertices);
    out.polygon(corners, 4);
    return out.count();
}

struct NewZealandMapGrid {
    static constexpr int32_t kCode = 43040;
    static constexpr const char *kName = "New_Zealand_Map_Grid";
    static constexpr Family kFamily = Family::kOther;
    static constexpr Preserves kPreserves = Preserves::kShape;
    static constexpr ParameterSet kParameters = parameter_sets::kNewZealand;
    static constexpr ox_horizon_routine kHorizon = horizon_new_zealand;
    static constexpr bool kHasConstantsRoutine = false;

    struct Constants {};
    static bool setup(const Frame &f, Constants &) { return origin_ok(f); }

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &, double lon, double lat, double &x,
                                         double &y) {
        const double dphi = lat - f.p.latitude_of_origin;
        const double d = lon - f.p.central_meridian;
        const double dlambda = M::reduce(d);
        double unused;
        const double dpsi = real_series(kA, dphi * kUnitsPerRadian, unused);
        double zr, zi;
        complex_series(kBre, kBim, dpsi, dlambda, zr, zi);
        const bool inside = (std::fabs(dphi) <= kDomain) & (std::fabs(dlambda) <= kDomain);
        x = inside ? f.a * zi : failure_nan();
        y = inside ? f.a * zr : failure_nan();
        return M::reduce_ok(d);
    }

    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &, double x, double y, double &lon,
                                         double &lat) {
        const double zr = y / f.a, zi = x / f.a;
        double wr, wi;
        complex_series(kCre, kCim, zr, zi, wr, wi);
        double step = 0.0;
        // (the fixed loops unrolled, so that the loop over the points vectorises)
#pragma GCC unroll 8
        for (int i = 0; i < kNewtonSteps; ++i) {
            // zeta <- zeta - (f(zeta) - z) / f'(zeta), which is the published
            // form (z + sum (k-1) B_k zeta^k) / (sum k B_k zeta^(k-1)).
            double fr = 0.0, fi = 0.0, dr = 0.0, di = 0.0;
#pragma GCC unroll 8
            for (int k = 5; k >= 0; --k) {
                const double tdr = dr * wr - di * wi + fr, tdi = dr * wi + di * wr + fi;
                const double tfr = fr * wr - fi * wi + kBre[k], tfi = fr * wi + fi * wr + kBim[k];
                dr = tdr, di = tdi, fr = tfr, fi = tfi;
            }
            // f(zeta) = zeta p(zeta), f'(zeta) = p(zeta) + zeta p'(zeta).
            const double vr = fr * wr - fi * wi - zr, vi = fr * wi + fi * wr - zi;
            const double gr = fr + (dr * wr - di * wi), gi = fi + (dr * wi + di * wr);
            const double g2 = gr * gr + gi * gi;
            const double sr = (vr * gr + vi * gi) / g2, si = (vi * gr - vr * gi) / g2;
            wr -= sr;
            wi -= si;
            step = std::fabs(sr) + std::fabs(si);
        }
        double derivative;
        double t = real_series(kD, wr, derivative);
#pragma GCC unroll 8
        for (int i = 0; i < kNewtonSteps; ++i) {
            const double residual = real_series(kA, t, derivative) - wr;
            t -= residual / derivative;
        }
        const double dphi = t / kUnitsPerRadian;
        const double l = f.p.central_meridian + wi;
        const bool inside = (std::fabs(dphi) <= kDomain * (1.0 + 1e-12)) & (std::fabs(wi) <= kDomain * (1.0 + 1e-12)) &
                            (step <= kConverged * (1.0 + std::fabs(wr) + std::fabs(wi)));
        lat = inside ? f.p.latitude_of_origin + dphi : failure_nan();
        lon = inside ? M::reduce(l) : failure_nan();
        return M::reduce_ok(l);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(NewZealandMapGrid)
