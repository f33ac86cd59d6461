// Per-point machinery shared by the projection routines: the argument and
// constants checks of a routine, the longitude reduction and the pole
// adjustment, two sets of elementary functions (the C library's, and inline
// branch-free kernels that the compiler can vectorise), and the loop that
// runs a projection formula over whole arrays with the vectorisable kernels,
// handing the rare points outside their range to the C library.
//
// A projection writes each formula once, as a class with a static template
//   template <class M> static bool apply(const Constants &k, double u, double v, double &x, double &y);
// on the function set M (ExactMath or FastMath), returning whether every
// argument was within M's range, and runs it with run_forward or
// run_inverse, which also apply the driver's units when it hands them over
// (PointUnits).  Both sets of functions are accurate to an ulp or so; the
// two paths agree to a few units in the last place, and every
// instruction-set variant of the fast path gives the same bits (the
// projection sources are compiled without floating-point contraction).
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "object/ox_object.h"
#include "object/ox_utils.h"
#include "ox.h"
#include "projection/ox_math.h"
#include "projection/ox_pcsconstants.h"

#if defined(__GNUC__)
#define OX_ALWAYS_INLINE __attribute__((always_inline)) inline
#define OX_NOINLINE __attribute__((noinline))
#else
#define OX_ALWAYS_INLINE inline
#define OX_NOINLINE
#endif

// Instruction-set variants of the point loops (x86-64 with GCC 12 or later:
// the x86-64-v2, -v3 and -v4 levels, chosen once from the CPU).
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12 && !defined(OX_NO_ISA_VARIANTS)
#define OX_ISA_VARIANTS 1
#else
#define OX_ISA_VARIANTS 0
#endif

namespace ox {

// ---------------------------------------------------------------------------
// Arguments, constants, longitudes and poles.
// ---------------------------------------------------------------------------

// A latitude a hair short of the pole (pi/2 - 5.6e-15), taken for a latitude
// equal to +-pi/2 under the equality rule so that tan phi stays finite.
inline constexpr double kNearPole = 1.570796326794891;

// True when a point routine has something to convert.
inline bool routine_arguments_ok(const double spheroid[2], const double parameters[16], int32_t n,
                                 const double *points) {
    return spheroid != nullptr && parameters != nullptr && points != nullptr && n > 0;
}

// The constants values when the header announces exactly `count` of them,
// else null (the routine then computes its own).
inline const double *constants_if(const int32_t *header, const double *values, int32_t count) {
    return header != nullptr && values != nullptr && header[0] == 2 && header[1] == count ? values : nullptr;
}

// Stores `count` values computed by a projection into a constants object;
// the count, or 0 when memory runs out.
int32_t store_constants(PcsConstants *c, const double *values, int32_t count);

// v, or `inside` with v's sign when |v| equals `limit` under the equality
// rule (the test of equal_rule, written without branches).
OX_ALWAYS_INLINE double pull_inside(double v, double limit, double inside) {
    const double a = std::fabs(v);
    const bool at_limit = std::fabs(a - limit) <= ((a + limit) * 0.5 + 1.0) * kZero;
    return at_limit ? std::copysign(inside, v) : v;
}

// phi, or kNearPole with phi's sign when |phi| equals pi/2 under the
// equality rule.
OX_ALWAYS_INLINE double off_pole(double phi) { return pull_inside(phi, kHalfPi, kNearPole); }

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
    static void sincos(double x, double &s, double &c) {
        s = std::sin(x);
        c = std::cos(x);
    }
    static double log(double x) { return std::log(x); }
    static double exp(double x) { return std::exp(x); }
    static double atan(double x) { return std::atan(x); }
    static double atan2(double y, double x) { return std::atan2(y, x); }
    static double asin(double x) { return std::asin(x); }
    static double reduce(double d) { return ox_delta(d); }
    static double reduce_about(double lon, double center) { return ox_delta_center(lon, center); }
    // Every argument is within the C library's range.
    static bool sincos_ok(double) { return true; }
    static bool log_ok(double) { return true; }
    static bool reduce_ok(double) { return true; }
};

// ---------------------------------------------------------------------------
// Inline kernels without branches, which the compiler vectorises (exp, atan,
// atan2 and asin are the C library's: loops that need them stay scalar).
// sincos: reduction by pi/2 in three parts
// (Cody and Waite) and the minimax polynomials of fdlibm's __kernel_sin and
// __kernel_cos on [-pi/4, pi/4], within an ulp for |x| <= kSinCosRange; log:
// fdlibm's e_log (argument split at sqrt 2, s = f / (2 + f), a degree-14
// polynomial in s), within an ulp for normal positive x.  Outside those
// ranges the results are meaningless and the caller must flag the point.
// ---------------------------------------------------------------------------
struct FastMath {
    static constexpr double kSinCosRange = 1024.0;

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

    // True where sincos is within its range (false for NaN and infinities).
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

    // True where log is within its range: positive, normal and finite.
    static OX_ALWAYS_INLINE bool log_ok(double x) {
        return x >= 2.2250738585072014e-308 && x <= 1.7976931348623157e308;
    }

    static double exp(double x) { return std::exp(x); }
    static double atan(double x) { return std::atan(x); }
    static double atan2(double y, double x) { return std::atan2(y, x); }
    static double asin(double x) { return std::asin(x); }

    static OX_ALWAYS_INLINE double reduce(double d) { return reduce_inline(d); }
    static OX_ALWAYS_INLINE bool reduce_ok(double d) { return std::fabs(d) <= kReduceInline; }
    // ox_delta_center, which is ox_delta(lon - center) + center.
    static OX_ALWAYS_INLINE double reduce_about(double lon, double center) {
        return reduce_inline(lon - center) + center;
    }
};

// ---------------------------------------------------------------------------
// Running a kernel over an array.
// ---------------------------------------------------------------------------

// Instruction-set level of the point loops: 0 the baseline of the
// processor family (on x86-64 the C library path, see run_points), 1
// x86-64-v2, 2 x86-64-v3 (AVX2), 3 x86-64-v4 (AVX-512); kExactLevel runs the
// C library's functions for every point.
inline constexpr int kExactLevel = -2;
int point_loop_level();
// Caps the level of the point loops (the tests run every variant, and the
// C library path); -1 restores the processor's own level.  Returns the
// level now in use.
int point_loop_level_limit(int level);

inline constexpr int32_t kPointBlock = 256;

// Converts points block by block: the fast kernel over the block (the loop
// that the compiler vectorises), then the exact kernel for the points that
// the fast kernel flagged, from a copy of their input.
template <class Kernel>
OX_ALWAYS_INLINE void run_points_body(const Kernel &kernel_ref, int32_t n, double *points) {
    const Kernel kernel = kernel_ref;  // a local copy: its constants cannot alias the points
    alignas(64) double saved[2 * kPointBlock];
    alignas(64) int64_t flags[kPointBlock];
    for (int64_t start = 0; start < n; start += kPointBlock) {  // 64 bits: no overflow near INT32_MAX
        const int32_t m = static_cast<int32_t>(n - start < kPointBlock ? n - start : kPointBlock);
        double *p = points + 2 * static_cast<size_t>(start);
        std::memcpy(saved, p, sizeof(double) * 2 * static_cast<size_t>(m));
        int64_t any = 0;
        for (int32_t i = 0; i < m; ++i) {
            const int64_t flag = kernel.fast(saved[2 * i], saved[2 * i + 1], p[2 * i], p[2 * i + 1]);
            flags[i] = flag;
            any |= flag;
        }
        if (any != 0)
            for (int32_t i = 0; i < m; ++i)
                if (flags[i] != 0) kernel.exact(saved[2 * i], saved[2 * i + 1], p[2 * i], p[2 * i + 1]);
    }
}

#if !defined(__x86_64__)
template <class Kernel>
OX_NOINLINE void run_points_base(const Kernel &kernel, int32_t n, double *points) {
    run_points_body(kernel, n, points);
}
#endif
#if OX_ISA_VARIANTS
template <class Kernel>
__attribute__((noinline, target("arch=x86-64-v2"))) void run_points_v2(const Kernel &kernel, int32_t n,
                                                                       double *points) {
    run_points_body(kernel, n, points);
}
template <class Kernel>
__attribute__((noinline, target("arch=x86-64-v3"))) void run_points_v3(const Kernel &kernel, int32_t n,
                                                                       double *points) {
    run_points_body(kernel, n, points);
}
template <class Kernel>
__attribute__((noinline, target("arch=x86-64-v4"))) void run_points_v4(const Kernel &kernel, int32_t n,
                                                                       double *points) {
    run_points_body(kernel, n, points);
}
#endif

// Runs the exact kernel alone.
template <class Kernel>
OX_NOINLINE void run_points_exact(const Kernel &kernel, int32_t n, double *points) {
    for (int32_t i = 0; i < n; ++i) {
        double *p = points + 2 * static_cast<size_t>(i);
        kernel.exact(p[0], p[1], p[0], p[1]);
    }
}

// Runs `kernel` over the `n` points in place with the best loop variant.
template <class Kernel>
void run_points(const Kernel &kernel, int32_t n, double *points) {
    switch (point_loop_level()) {
#if OX_ISA_VARIANTS
        case 3:
            run_points_v4(kernel, n, points);
            return;
        case 2:
            run_points_v3(kernel, n, points);
            return;
        case 1:
            run_points_v2(kernel, n, points);
            return;
#endif
        case kExactLevel:
            run_points_exact(kernel, n, points);
            return;
        default:
#if defined(__x86_64__)
            // The x86-64 baseline (SSE2) cannot vectorise these loops, and
            // there the C library's functions beat the inline kernels run one
            // point at a time.
            run_points_exact(kernel, n, points);
#else
            run_points_base(kernel, n, points);
#endif
            return;
    }
}

// The driver's conversions of units and false origin.  For the library's
// own routines the driver hands them to the routine, which applies them
// inside its point loop instead of the driver making passes of its own over
// the array; the operations, and so the results, are the same.  Forward:
// radians = value x angular factor, the latitude clamped to the poles; then,
// when `shift`, (x + false easting) / linear factor and likewise y.  Inverse:
// metres = value x linear factor - false easting (northing); then the
// longitude, about `center` when `centred`, and the latitude divided by the
// angular factor.
struct PointUnits {
    double angular;        // radians per angular unit
    double linear;         // metres per linear unit
    double false_easting;  // metres
    double false_northing;
    double center;  // inverse: radians
    bool shift;     // forward: the false origin or the linear unit is not the identity
    bool centred;   // inverse: longitudes about `center`
};
// (The two flags choose the kernel before the loop; a select on a flag
// inside it would keep the compiler from vectorising the loop.)

// What one call of the driver needs, prepared once for the whole array: the
// spheroid and parameter values of the system, its constants (loaded on
// first use when the projection has a constants routine) and the unit
// conversions of the points.  `center` is the inverse's centre longitude in
// the angular unit (0 for the forward).
struct DriverCall {
    ProjSetup setup;
    const int32_t *header = nullptr;
    const double *values = nullptr;
    PointUnits units{};

    DriverCall(ox_object *projcs, double center) {
        projcs_setup(projcs, &setup);
        if (const PcsConstants *c = projcs_constants_in_use(projcs, setup)) {
            header = c->header;
            values = c->values;
        }
        units.angular = setup.angular_factor;
        units.linear = setup.linear_factor;
        units.false_easting = setup.parameters[0];
        units.false_northing = setup.parameters[1];
        units.shift = !(units.linear == 1.0 && units.false_easting == 0.0 && units.false_northing == 0.0);
        units.center = center * setup.angular_factor;
        units.centred = !(std::fabs(units.center) <= kZero);
    }
};

// Forward conversion of units before the formula.
OX_ALWAYS_INLINE void units_to_radians(const PointUnits &u, double lon_in, double lat_in, double &lon, double &lat) {
    lon = lon_in * u.angular;
    const double phi = lat_in * u.angular;
    lat = std::fabs(phi) > kHalfPi ? std::copysign(kHalfPi, phi) : phi;
}

// Forward conversion of units after the formula, when `shift`: the false
// origin, then the linear unit (a division by 1 is exact, so for metres it
// is left out when `Metres`).
template <bool Metres>
OX_ALWAYS_INLINE void units_from_metres(const PointUnits &u, double &x, double &y) {
    x = x + u.false_easting;
    y = y + u.false_northing;
    if constexpr (!Metres) {
        x = x / u.linear;
        y = y / u.linear;
    }
}

// How a forward kernel treats its results: as they are, shifted to the
// false origin, or shifted and divided by the linear unit.
enum class Shift { kNone, kOrigin, kOriginAndUnit };

// Inverse conversion of units after the formula; false when M's longitude
// reduction was out of its range.  About a centre, a NaN longitude (a failed
// point) is kept as it is.
template <class M, bool Centred>
OX_ALWAYS_INLINE bool units_from_radians(const PointUnits &u, double &lon, double &lat) {
    bool ok = true;
    if constexpr (Centred) {
        const double about = M::reduce_about(lon, u.center);
        ok = M::reduce_ok(lon - u.center) | std::isnan(lon);
        lon = std::isnan(lon) ? lon : about;
    }
    lon = lon / u.angular;
    lat = lat / u.angular;
    return ok;
}

// Kernel objects for a formula `F` (a class with a static template
// `apply<M>(constants, u, v, x, y)` returning whether the arguments were in
// M's range) over the constants `C`: the plain routine, and the routine that
// also applies the driver's units forward or inverse.
template <class F, class C>
struct PointKernel {
    C k;
    OX_ALWAYS_INLINE int64_t fast(double u, double v, double &x, double &y) const {
        return F::template apply<FastMath>(k, u, v, x, y) ? 0 : 1;
    }
    void exact(double u, double v, double &x, double &y) const { F::template apply<ExactMath>(k, u, v, x, y); }
};

template <class F, class C, Shift S>
struct ForwardUnitsKernel {
    C k;
    PointUnits units;
    template <class M>
    OX_ALWAYS_INLINE bool run(double u, double v, double &x_out, double &y_out) const {
        double lon, lat, x, y;
        units_to_radians(units, u, v, lon, lat);
        const bool ok = F::template apply<M>(k, lon, lat, x, y);
        if constexpr (S != Shift::kNone) units_from_metres<S == Shift::kOrigin>(units, x, y);
        x_out = x;
        y_out = y;
        return ok;
    }
    OX_ALWAYS_INLINE int64_t fast(double u, double v, double &x, double &y) const {
        return run<FastMath>(u, v, x, y) ? 0 : 1;
    }
    void exact(double u, double v, double &x, double &y) const { run<ExactMath>(u, v, x, y); }
};

template <class F, class C, bool Centred>
struct InverseUnitsKernel {
    C k;
    PointUnits units;
    template <class M>
    OX_ALWAYS_INLINE bool run(double u, double v, double &lon_out, double &lat_out) const {
        const double x = u * units.linear - units.false_easting, y = v * units.linear - units.false_northing;
        double lon, lat;
        const bool ok = F::template apply<M>(k, x, y, lon, lat);
        const bool in_range = units_from_radians<M, Centred>(units, lon, lat);
        lon_out = lon;
        lat_out = lat;
        return ok & in_range;
    }
    OX_ALWAYS_INLINE int64_t fast(double u, double v, double &x, double &y) const {
        return run<FastMath>(u, v, x, y) ? 0 : 1;
    }
    void exact(double u, double v, double &x, double &y) const { run<ExactMath>(u, v, x, y); }
};

// Runs the forward formula F over the points with the constants `k`, and
// the driver's units when `units` is given.
template <class F, class C>
void run_forward(const C &k, int32_t n, double *points, const PointUnits *units) {
    if (units == nullptr)
        run_points(PointKernel<F, C>{k}, n, points);
    else if (!units->shift)
        run_points(ForwardUnitsKernel<F, C, Shift::kNone>{k, *units}, n, points);
    else if (units->linear == 1.0)
        run_points(ForwardUnitsKernel<F, C, Shift::kOrigin>{k, *units}, n, points);
    else
        run_points(ForwardUnitsKernel<F, C, Shift::kOriginAndUnit>{k, *units}, n, points);
}

// The same for an inverse formula.
template <class F, class C>
void run_inverse(const C &k, int32_t n, double *points, const PointUnits *units) {
    if (units == nullptr)
        run_points(PointKernel<F, C>{k}, n, points);
    else if (units->centred)
        run_points(InverseUnitsKernel<F, C, true>{k, *units}, n, points);
    else
        run_points(InverseUnitsKernel<F, C, false>{k, *units}, n, points);
}

// Defines the units and plain routines NAME_forward(_units) and
// NAME_inverse(_units) of a projection that keeps no constants block: the
// point constants come from MAKE(spheroid, parameters), the formulas from the
// file's Forward and Inverse.
#define OX_DIRECT_PROJECTION_ROUTINES(NAME, MAKE)                                          \
    OX_UNITS_ROUTINE(NAME##_forward_units) {                                                \
        (void)constants_header, (void)constants_values;                                     \
        if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;               \
        run_forward<Forward>(MAKE(spheroid, parameters), n, points, units);                 \
        return n;                                                                           \
    }                                                                                       \
    OX_UNITS_ROUTINE(NAME##_inverse_units) {                                                \
        (void)constants_header, (void)constants_values;                                     \
        if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;               \
        run_inverse<Inverse>(MAKE(spheroid, parameters), n, points, units);                 \
        return n;                                                                           \
    }                                                                                       \
    OX_PLAIN_ROUTINE(NAME##_forward)                                                        \
    OX_PLAIN_ROUTINE(NAME##_inverse)

// Writes the failure value into every point (a routine that can convert
// none); the driver's units leave it as it is.
inline void fail_points(int32_t n, double *points) {
    const double nan = failure_nan();
    for (size_t i = 0; i < 2 * static_cast<size_t>(n); ++i) points[i] = nan;
}

// A projection routine that also applies the driver's units (null: none,
// as the plain routine).
using UnitsRoutine = int32_t (*)(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                                 const int32_t *constants_header, const double *constants_values,
                                 const PointUnits *units);
// The units routine of one of the library's plain routines, or null.
UnitsRoutine units_routine_of(ox_projection_routine routine);

}  // namespace ox
