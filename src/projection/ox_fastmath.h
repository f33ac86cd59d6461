// The two function sets that every projection and transformation formula is
// written over (`template <class M>`): ExactMath, the C library's functions,
// and FastMath, inline kernels without branches that the compiler
// vectorises across a block of points.
//
// Each FastMath kernel is valid over a stated range and has a predicate
// NAME_ok that says whether an argument is within it; a formula returns the
// conjunction of its predicates, and the point loop (ox_projmath.h) gives
// the points outside to the ExactMath formula.  The predicates of ExactMath
// are always true.  Within their ranges the kernels agree with the C library
// to the number of ulps given last (tests/projection_kernels_test.cpp):
//
//   sincos    fdlibm's __kernel_sin/__kernel_cos after a three-part Cody and
//             Waite reduction by pi/2                      |x| <= 1024          1
//   log       fdlibm's e_log                               normal positive x    1
//   exp       fdlibm's e_exp                               -708 <= x <= 709     1
//   atan      fdlibm's s_atan (four reduction points)      every x              1
//   atan2     atan(y / x) moved by pi for x < 0            x != 0, y / x finite 1
//                                                          and not subnormal
//   asin      atan(x / sqrt((1 - x)(1 + x)))               |x| <= 1             2
//   sinh_cosh Taylor series below 1/2, (e - 1/e) / 2 above;
//             cosh = sqrt(1 + sinh^2)                       |x| <= 350           2
//   log1p     Goldberg's log(u) t / (u - 1), u = 1 + t      1 + t normal pos.    2
//   sqrt      the hardware square root (correctly rounded) every x              0
//
// The sources that use them are compiled without floating-point contraction
// and with -fno-math-errno and -fno-trapping-math (CMakeLists.txt): no option
// changes a result, and every instruction-set variant gives the same bits.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "ox.h"
#include "projection/ox_math.h"

#if defined(__GNUC__)
#define OX_ALWAYS_INLINE __attribute__((always_inline)) inline
#define OX_NOINLINE __attribute__((noinline))
#else
#define OX_ALWAYS_INLINE inline
#define OX_NOINLINE
#endif

namespace ox {

// Below this magnitude FastMath reduces a longitude difference by one
// addition.
inline constexpr double kReduceInline = 9.0;

// The longitude reduction ox_delta (fmod by 2 pi, then one fold into
// [-pi, pi]) with its common case in line.  For pi < |d| <= 9 (< 3 pi) fmod
// returns d or d -+ 2 pi exactly and the fold leaves d -+ 2 pi, which is
// itself exact by Sterbenz's lemma: d - 2 pi ((d > pi) - (d < -pi)) gives the
// same bits, once a zero takes the sign of d as fmod's does (d = -2 pi gives
// -0).  Larger, infinite and NaN differences go to ox_delta.
OX_ALWAYS_INLINE double reduce_inline(double d) {
    const double r = d - kTwoPi * (static_cast<double>(d > kPi) - static_cast<double>(d < -kPi));
    return r == 0.0 ? d * 0.0 : r;
}

// ---------------------------------------------------------------------------
// The C library's functions.
// ---------------------------------------------------------------------------
struct ExactMath {
    static constexpr bool kExact = true;
    static void sincos(double x, double &s, double &c) {
        s = std::sin(x);
        c = std::cos(x);
    }
    static double log(double x) { return std::log(x); }
    static double exp(double x) { return std::exp(x); }
    static double atan(double x) { return std::atan(x); }
    static double atan2(double y, double x) { return std::atan2(y, x); }
    static double asin(double x) { return std::asin(x); }
    static double log1p(double x) { return std::log1p(x); }
    static double sqrt(double x) { return std::sqrt(x); }
    static void sinh_cosh(double x, double &s, double &c) {
        s = std::sinh(x);
        c = std::cosh(x);
    }
    static double reduce(double d) { return ox_delta(d); }
    // Every argument is within the C library's range.
    static bool sincos_ok(double) { return true; }
    static bool log_ok(double) { return true; }
    static bool exp_ok(double) { return true; }
    static bool atan2_ok(double, double) { return true; }
    static bool asin_ok(double) { return true; }
    static bool log1p_ok(double) { return true; }
    static bool sinh_cosh_ok(double) { return true; }
    static bool reduce_ok(double) { return true; }
};

// ---------------------------------------------------------------------------
// The inline kernels.  Outside its range a kernel's result is meaningless
// and the point must be flagged through the kernel's predicate.
// ---------------------------------------------------------------------------
struct FastMath {
    static constexpr bool kExact = false;
    static constexpr double kSinCosRange = 1024.0;
    static constexpr double kExpLow = -708.0, kExpHigh = 709.0;
    static constexpr double kSinhCoshRange = 350.0;
    static constexpr double kSmallestNormal = 2.2250738585072014e-308;
    static constexpr double kLargest = 1.7976931348623157e308;

    static OX_ALWAYS_INLINE void sincos(double x, double &s_out, double &c_out) {
        constexpr double kTwoOverPi = 6.36619772367581382433e-01;
        constexpr double kPio2Hi = 1.57079632673412561417e+00;       // first 33 bits of pi/2
        constexpr double kPio2Mid = 6.07710050630396597660e-11;      // next 33 bits
        constexpr double kPio2MidTail = 2.02226624879595063154e-21;  // pi/2 - kPio2Hi - kPio2Mid
        constexpr double kRoundToInt = 6755399441055744.0;           // 1.5 * 2^52
        constexpr double S1 = -1.66666666666666324348e-01, S2 = 8.33333333332248946124e-03,
                         S3 = -1.98412698298579493134e-04, S4 = 2.75573137070700676789e-06,
                         S5 = -2.50507602534068634195e-08, S6 = 1.58969099521155010221e-10;
        constexpr double C1 = 4.16666666666666019037e-02, C2 = -1.38888888888741095749e-03,
                         C3 = 2.48015872894767294178e-05, C4 = -2.75573143513906633035e-07,
                         C5 = 2.08757232129817482790e-09, C6 = -1.13596475577881948265e-11;

        // k = nearest integer to x / (pi/2); its low bits are the quadrant.
        const double shifted = x * kTwoOverPi + kRoundToInt;
        const double k = shifted - kRoundToInt;
        const uint64_t quadrant = std::bit_cast<uint64_t>(shifted);
        // y + yy = x - k pi/2 to about 100 bits.
        const double r0 = x - k * kPio2Hi;
        const double w0 = k * kPio2Mid;
        const double r = r0 - w0;
        const double w = k * kPio2MidTail - ((r0 - r) - w0);
        const double y = r - w;
        const double yy = (r - y) - w;
        // sin and cos of y + yy on [-pi/4, pi/4].
        const double z = y * y, v = z * y;
        const double ps = S2 + z * (S3 + z * (S4 + z * (S5 + z * S6)));
        const double sn = y - ((z * (0.5 * yy - v * ps) - yy) - v * S1);
        const double pc = z * (C1 + z * (C2 + z * (C3 + z * (C4 + z * (C5 + z * C6)))));
        const double hz = 0.5 * z, one_minus_hz = 1.0 - hz;
        const double cs = one_minus_hz + (((1.0 - one_minus_hz) - hz) + (z * pc - y * yy));
        // Quadrants 1 and 3 swap sine and cosine; the signs follow.
        const bool swap = (quadrant & 1u) != 0;
        const bool neg_sin = (quadrant & 2u) != 0;
        const bool neg_cos = ((quadrant + 1u) & 2u) != 0;
        const double s = swap ? cs : sn, c = swap ? sn : cs;
        s_out = neg_sin ? -s : s;
        c_out = neg_cos ? -c : c;
    }
    // (false for NaN and infinities)
    static OX_ALWAYS_INLINE bool sincos_ok(double x) { return std::fabs(x) <= kSinCosRange; }

    static OX_ALWAYS_INLINE double log(double x) {
        constexpr double kLn2Hi = 6.93147180369123816490e-01, kLn2Lo = 1.90821492927058770002e-10;
        constexpr double Lg1 = 6.666666666666735130e-01, Lg2 = 3.999999999940941908e-01, Lg3 = 2.857142874366239149e-01,
                         Lg4 = 2.222219843214978396e-01, Lg5 = 1.818357216161805012e-01, Lg6 = 1.531383769920937332e-01,
                         Lg7 = 1.479819860511658591e-01;
        constexpr double kTwo52 = 4503599627370496.0;
        // x = 2^k m with m in [sqrt(2)/2, sqrt(2)): shift the high word so that
        // the exponent field carries k + 1023 directly.
        const uint64_t bits = std::bit_cast<uint64_t>(x);
        const uint64_t high = (bits >> 32) + (0x3ff00000u - 0x3fe6a09eu);
        const uint64_t biased_k = high >> 20;
        const uint64_t m_high = (high & 0x000fffffu) + 0x3fe6a09eu;
        const double m = std::bit_cast<double>((m_high << 32) | (bits & 0xffffffffu));
        const double k = std::bit_cast<double>(0x4330000000000000ull | biased_k) - (kTwo52 + 1023.0);
        const double f = m - 1.0, hfsq = 0.5 * f * f;
        const double s = f / (2.0 + f), z = s * s, w = z * z;
        const double r = z * (Lg1 + w * (Lg3 + w * (Lg5 + w * Lg7))) + w * (Lg2 + w * (Lg4 + w * Lg6));
        return s * (hfsq + r) + k * kLn2Lo - hfsq + f + k * kLn2Hi;
    }
    // positive, normal and finite
    static OX_ALWAYS_INLINE bool log_ok(double x) { return x >= kSmallestNormal && x <= kLargest; }

    // x = k ln 2 + r, a rational approximation of exp(r), and k added to the
    // exponent of the result (the low bits of `shifted` hold k in two's
    // complement; the range keeps the result normal).
    static OX_ALWAYS_INLINE double exp(double x) {
        constexpr double kLn2Hi = 6.93147180369123816490e-01, kLn2Lo = 1.90821492927058770002e-10;
        constexpr double kInvLn2 = 1.44269504088896338700e+00, kRoundToInt = 6755399441055744.0;
        constexpr double P1 = 1.66666666666666019037e-01, P2 = -2.77777777770155933842e-03,
                         P3 = 6.61375632143793436117e-05, P4 = -1.65339022054652515390e-06,
                         P5 = 4.13813679705723846039e-08;
        const double shifted = x * kInvLn2 + kRoundToInt;
        const double k = shifted - kRoundToInt;
        const double hi = x - k * kLn2Hi, lo = k * kLn2Lo, r = hi - lo;
        const double r2 = r * r;
        const double c = r - r2 * (P1 + r2 * (P2 + r2 * (P3 + r2 * (P4 + r2 * P5))));
        const double y = 1.0 - ((lo - (r * c) / (2.0 - c)) - hi);
        return std::bit_cast<double>(std::bit_cast<uint64_t>(y) + (std::bit_cast<uint64_t>(shifted) << 52));
    }
    static OX_ALWAYS_INLINE bool exp_ok(double x) { return x >= kExpLow && x <= kExpHigh; }

    // t = (a - h) / (1 + h a) about h = tan(atan_hi), or -1/a beyond 39/16,
    // chosen by plain selects; an odd polynomial of degree 23 in t.
    static OX_ALWAYS_INLINE double atan(double x) {
        constexpr double T0 = 3.33333333333329318027e-01, T1 = -1.99999999998764832476e-01,
                         T2 = 1.42857142725034663711e-01, T3 = -1.11111104054623557880e-01,
                         T4 = 9.09088713343650656196e-02, T5 = -7.69187620504482999495e-02,
                         T6 = 6.66107313738753120669e-02, T7 = -5.83357013379057348645e-02,
                         T8 = 4.97687799461593236017e-02, T9 = -3.65315727442169155270e-02,
                         T10 = 1.62858201153657823623e-02;
        const double a = std::fabs(x);
        double num = a, den = 1.0, hi = 0.0, lo = 0.0;
        const bool r0 = a >= 0.4375, r1 = a >= 0.6875, r2 = a >= 1.1875, r3 = a >= 2.4375;
        num = r0 ? 2.0 * a - 1.0 : num;
        den = r0 ? 2.0 + a : den;
        hi = r0 ? 4.63647609000806093515e-01 : hi;
        lo = r0 ? 2.26987774529616870924e-17 : lo;
        num = r1 ? a - 1.0 : num;
        den = r1 ? a + 1.0 : den;
        hi = r1 ? 7.85398163397448278999e-01 : hi;
        lo = r1 ? 3.06161699786838301793e-17 : lo;
        num = r2 ? a - 1.5 : num;
        den = r2 ? 1.0 + 1.5 * a : den;
        hi = r2 ? 9.82793723247329054082e-01 : hi;
        lo = r2 ? 1.39033110312309984516e-17 : lo;
        num = r3 ? -1.0 : num;
        den = r3 ? a : den;
        hi = r3 ? 1.57079632679489655800e+00 : hi;
        lo = r3 ? 6.12323399573676603587e-17 : lo;
        const double t = num / den;
        const double z = t * t, w = z * z;
        const double s1 = z * (T0 + w * (T2 + w * (T4 + w * (T6 + w * (T8 + w * T10)))));
        const double s2 = w * (T1 + w * (T3 + w * (T5 + w * (T7 + w * T9))));
        const double reduced = hi - ((t * (s1 + s2) - lo) - t);
        const double plain = t - t * (s1 + s2);
        return std::copysign(r0 ? reduced : plain, x);
    }

    // atan(y / x), moved by pi with the sign of y when x is negative.
    static OX_ALWAYS_INLINE double atan2(double y, double x) {
        const double r = atan(y / x);
        return x < 0.0 ? r + std::copysign(kPi, y) : r;
    }
    // x = 0 (whose sign decides the result), both infinite, a quotient that
    // overflows or falls below the normal range (where the quotient has lost
    // bits) go to the C library; y = 0 is exact.
    static OX_ALWAYS_INLINE bool atan2_ok(double y, double x) {
        const double q = std::fabs(y / x);
        return (x != 0.0) & (q <= kLargest) & ((q >= kSmallestNormal) | (y == 0.0));
    }

    static OX_ALWAYS_INLINE double asin(double x) { return atan(x / std::sqrt((1.0 - x) * (1.0 + x))); }
    static OX_ALWAYS_INLINE bool asin_ok(double x) { return std::fabs(x) <= 1.0; }

    // log1p(t) = log(u) t / (u - 1) with u = 1 + t (Goldberg, "What every
    // computer scientist should know about floating-point arithmetic", 1991).
    static OX_ALWAYS_INLINE double log1p(double t) {
        const double u = 1.0 + t;
        return u == 1.0 ? t : log(u) * (t / (u - 1.0));
    }
    static OX_ALWAYS_INLINE bool log1p_ok(double t) { return log_ok(1.0 + t); }

    static OX_ALWAYS_INLINE double sqrt(double x) { return std::sqrt(x); }

    // sinh: a + a^3/3! + ... + a^15/15! below 1/2 (the first omitted term is
    // 2e-20 of the sum), (e - 1/e) / 2 with e = exp|x| above; cosh from sinh.
    static OX_ALWAYS_INLINE void sinh_cosh(double x, double &s, double &c) {
        const double a = std::fabs(x);
        const double x2 = a * a;
        const double series =
            a * (1.0 + x2 * (1.0 / 6.0 +
                             x2 * (1.0 / 120.0 +
                                   x2 * (1.0 / 5040.0 +
                                         x2 * (1.0 / 362880.0 +
                                               x2 * (1.0 / 39916800.0 +
                                                     x2 * (1.0 / 6227020800.0 + x2 * (1.0 / 1307674368000.0))))))));
        const double e = exp(a < kSinhCoshRange ? a : kSinhCoshRange);
        const double sh = a < 0.5 ? series : 0.5 * (e - 1.0 / e);
        s = std::copysign(sh, x);
        c = std::sqrt(1.0 + sh * sh);
    }
    static OX_ALWAYS_INLINE bool sinh_cosh_ok(double x) { return std::fabs(x) <= kSinhCoshRange; }

    static OX_ALWAYS_INLINE double reduce(double d) { return reduce_inline(d); }
    static OX_ALWAYS_INLINE bool reduce_ok(double d) { return std::fabs(d) <= kReduceInline; }
};

}  // namespace ox
