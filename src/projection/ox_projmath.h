// The point loop shared by the projection routines: the argument checks of
// a routine and the pole adjustment, the loop that runs a formula over whole
// arrays with the vectorisable kernels of ox_fastmath.h, handing the rare
// points outside their range to the C library, and the driver's unit
// conversions applied inside that loop.
//
// A formula is a class with a static template
//   template <class M> static bool apply(const State &s, double u, double v, double &x, double &y);
// on the function set M (ExactMath or FastMath), returning whether every
// argument was within M's range; run_forward and run_inverse run it over an
// array, with the driver's units when it hands them over (PointUnits).
// The two paths agree to a few units in the last place, and every
// instruction-set variant of the fast path gives the same bits.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "object/ox_object.h"
#include "object/ox_utils.h"
#include "ox.h"
#include "projection/ox_fastmath.h"
#include "projection/ox_math.h"
#include "projection/ox_pcsconstants.h"

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

// Gives every point with a NaN coordinate the failure value in both
// coordinates; the number of the others.  (Selects, no branch: the loop
// vectorises.)
OX_ALWAYS_INLINE int32_t finish_points(int32_t m, double *p) {
    const double nan = failure_nan();
    int32_t finished = 0;
    for (int32_t i = 0; i < m; ++i) {
        const bool failed = std::isnan(p[2 * i]) | std::isnan(p[2 * i + 1]);
        p[2 * i] = failed ? nan : p[2 * i];
        p[2 * i + 1] = failed ? nan : p[2 * i + 1];
        finished += failed ? 0 : 1;
    }
    return finished;
}

// How the loop counts the converted points: every point (the projection
// converts every point by definition), or the points whose results are not
// NaN, which then get the failure value in both coordinates.
enum class Count { kEvery, kFinished };

// Converts points block by block: the fast kernel over the block (the loop
// that the compiler vectorises), then the exact kernel for the points that
// the fast kernel flagged, from a copy of their input; then, while the block
// is in the cache, the count.  Returns the number of points converted.
template <Count C, class Kernel>
OX_ALWAYS_INLINE int32_t run_points_body(const Kernel &kernel_ref, int32_t n, double *points) {
    const Kernel kernel = kernel_ref;  // a local copy: its constants cannot alias the points
    alignas(64) double saved[2 * kPointBlock];
    alignas(64) int64_t flags[kPointBlock];
    int64_t converted = 0;
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
        if constexpr (C == Count::kFinished) converted += finish_points(m, p);
    }
    return C == Count::kEvery ? n : static_cast<int32_t>(converted);
}

#if !defined(__x86_64__)
template <Count C, class Kernel>
OX_NOINLINE int32_t run_points_base(const Kernel &kernel, int32_t n, double *points) {
    return run_points_body<C>(kernel, n, points);
}
#endif
#if OX_ISA_VARIANTS
template <Count C, class Kernel>
__attribute__((noinline, target("arch=x86-64-v2"))) int32_t run_points_v2(const Kernel &kernel, int32_t n,
                                                                          double *points) {
    return run_points_body<C>(kernel, n, points);
}
template <Count C, class Kernel>
__attribute__((noinline, target("arch=x86-64-v3"))) int32_t run_points_v3(const Kernel &kernel, int32_t n,
                                                                          double *points) {
    return run_points_body<C>(kernel, n, points);
}
template <Count C, class Kernel>
__attribute__((noinline, target("arch=x86-64-v4"))) int32_t run_points_v4(const Kernel &kernel, int32_t n,
                                                                          double *points) {
    return run_points_body<C>(kernel, n, points);
}
#endif

// Runs the exact kernel alone.
template <Count C, class Kernel>
OX_NOINLINE int32_t run_points_exact(const Kernel &kernel, int32_t n, double *points) {
    for (int32_t i = 0; i < n; ++i) {
        double *p = points + 2 * static_cast<size_t>(i);
        kernel.exact(p[0], p[1], p[0], p[1]);
    }
    return C == Count::kEvery ? n : finish_points(n, points);
}

// Runs `kernel` over the `n` points in place with the best loop variant;
// the number of points converted.
template <Count C, class Kernel>
int32_t run_points(const Kernel &kernel, int32_t n, double *points) {
    switch (point_loop_level()) {
#if OX_ISA_VARIANTS
        case 3: return run_points_v4<C>(kernel, n, points);
        case 2: return run_points_v3<C>(kernel, n, points);
        case 1: return run_points_v2<C>(kernel, n, points);
#endif
        case kExactLevel: return run_points_exact<C>(kernel, n, points);
        default:
#if defined(__x86_64__)
            // The x86-64 baseline (SSE2) cannot vectorise these loops, and
            // there the C library's functions beat the inline kernels run one
            // point at a time.
            return run_points_exact<C>(kernel, n, points);
#else
            return run_points_base<C>(kernel, n, points);
#endif
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
    double center;          // inverse: radians, finite
    double center_reduced;  // the centre reduced to [-pi, pi] (ox_delta), once per call
    bool shift;             // forward: the false origin or the linear unit is not the identity
    bool centred;           // inverse: longitudes about `center`
};
// (The two flags choose the kernel before the loop; a select on a flag
// inside it would keep the compiler from vectorising the loop.)

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
// reduction was out of its range.  About a centre c the longitude is
// ox_delta(lon - c) + c, with the difference taken from the centre reduced
// once per call: the same value for |c| <= pi, and for a far centre (1e17)
// the reduction stays exact and in the inline kernel's range.  A NaN
// longitude (a failed point) is kept as it is.
template <class M, bool Centred>
OX_ALWAYS_INLINE bool units_from_radians(const PointUnits &u, double &lon, double &lat) {
    bool ok = true;
    if constexpr (Centred) {
        const double d = lon - u.center_reduced;
        const double about = M::reduce(d) + u.center;
        ok = M::reduce_ok(d) | std::isnan(lon);
        lon = std::isnan(lon) ? lon : about;
    }
    lon = lon / u.angular;
    lat = lat / u.angular;
    return ok;
}

// Kernel objects for a formula `F` (a class with a static template
// `apply<M>(state, u, v, x, y)` returning whether the arguments were in M's
// range) over the state `S` that the formula reads: the plain routine, and
// the routine that also applies the driver's units forward or inverse.
template <class F, class S>
struct PointKernel {
    S state;
    OX_ALWAYS_INLINE int64_t fast(double u, double v, double &x, double &y) const {
        return F::template apply<FastMath>(state, u, v, x, y) ? 0 : 1;
    }
    void exact(double u, double v, double &x, double &y) const { F::template apply<ExactMath>(state, u, v, x, y); }
};

template <class F, class S, Shift Sh>
struct ForwardUnitsKernel {
    S state;
    PointUnits units;
    template <class M>
    OX_ALWAYS_INLINE bool run(double u, double v, double &x_out, double &y_out) const {
        double lon, lat, x, y;
        units_to_radians(units, u, v, lon, lat);
        const bool ok = F::template apply<M>(state, lon, lat, x, y);
        if constexpr (Sh != Shift::kNone) units_from_metres<Sh == Shift::kOrigin>(units, x, y);
        x_out = x;
        y_out = y;
        return ok;
    }
    OX_ALWAYS_INLINE int64_t fast(double u, double v, double &x, double &y) const {
        return run<FastMath>(u, v, x, y) ? 0 : 1;
    }
    void exact(double u, double v, double &x, double &y) const { run<ExactMath>(u, v, x, y); }
};

template <class F, class S, bool Centred>
struct InverseUnitsKernel {
    S state;
    PointUnits units;
    template <class M>
    OX_ALWAYS_INLINE bool run(double u, double v, double &lon_out, double &lat_out) const {
        const double x = u * units.linear - units.false_easting, y = v * units.linear - units.false_northing;
        double lon, lat;
        const bool ok = F::template apply<M>(state, x, y, lon, lat);
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

// Runs the forward formula F over the points with the state `s`, and the
// driver's units when `units` is given; the number of points converted.
template <Count C, class F, class S>
int32_t run_forward(const S &s, int32_t n, double *points, const PointUnits *units) {
    if (units == nullptr) return run_points<C>(PointKernel<F, S>{s}, n, points);
    if (!units->shift) return run_points<C>(ForwardUnitsKernel<F, S, Shift::kNone>{s, *units}, n, points);
    if (units->linear == 1.0) return run_points<C>(ForwardUnitsKernel<F, S, Shift::kOrigin>{s, *units}, n, points);
    return run_points<C>(ForwardUnitsKernel<F, S, Shift::kOriginAndUnit>{s, *units}, n, points);
}

// The same for an inverse formula.
template <Count C, class F, class S>
int32_t run_inverse(const S &s, int32_t n, double *points, const PointUnits *units) {
    if (units == nullptr) return run_points<C>(PointKernel<F, S>{s}, n, points);
    if (units->centred) return run_points<C>(InverseUnitsKernel<F, S, true>{s, *units}, n, points);
    return run_points<C>(InverseUnitsKernel<F, S, false>{s, *units}, n, points);
}

// Writes the failure value into every point (a routine that can convert
// none); the driver's units leave it as it is.
inline void fail_points(int32_t n, double *points) {
    const double nan = failure_nan();
    for (size_t i = 0; i < 2 * static_cast<size_t>(n); ++i) points[i] = nan;
}

}  // namespace ox
