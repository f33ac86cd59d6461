// The pattern that every datum transformation method follows: one
// definition in one file, from which one generic adapter makes the
// registry's routines (the counterpart of src/projection/ox_projdef.h).
//
// A definition D is a struct with
//   kCode, kName              its registry code and name;
//   kParameters               the parameters it uses (ox_parmlist.h), which
//                             ox_parameter_method_defaults makes;
//   kKind                     Kind::kGeocentric (the driver moves the points
//                             to Greenwich first and back afterwards; every
//                             point is converted and counted),
//                             Kind::kMeridian (the longitude rotation: it
//                             makes the meridian change itself) or
//                             Kind::kGrid (no meridian change; a point the
//                             grid does not cover is left as it is and not
//                             counted);
//   struct Constants          every per-call quantity of the formulas
//                             (matrices, ellipsoid quantities, grids);
//   static bool setup(const MethodFrame &, Direction, Constants &)
//                             reads the two ellipsoids and the parameter
//                             values by name and fills the constants of one
//                             direction, or refuses (false: the call then
//                             converts nothing, count 0, points untouched);
//   template <class M> static bool point(const Constants &, double lon,
//                             double lat, double h, double &lon_out,
//                             double &lat_out, double &h_out, bool &converted)
//                             the formula of one point over the function set
//                             M (ox_fastmath.h), radians and metres about
//                             Greenwich; returns whether every argument was
//                             within M's range; `converted` is false for a
//                             point it leaves as it was (Kind::kGrid).
// A method whose inverse is another formula (the grids' iteration) says
// `kInverseFormula = true` and has point_inverse<M> of the same form.
// A grid method also has
//   static int32_t unloaded(const MethodFrame &, Direction, int32_t n,
//                           double *points, double *heights)
//                             what the routine does when it is called
//                             without loaded grid blocks.
//
// The forward goes from the first ellipsoid to the second, the inverse from
// the second to the first; both receive the ellipsoids in that order.
// OX_DEFINE_METHOD(D) in the definition's file makes the registry row
// kMethodD; the list in ox_methlist.cpp names it.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

#include "object/ox_object.h"
#include "object/ox_registry.h"
#include "ox.h"
#include "projection/ox_fastmath.h"
#include "projection/ox_math.h"
#include "projection/ox_parmlist.h"
#include "projection/ox_projmath.h"
#include "transform/ox_gtconstants.h"

// The signatures of the registry's routines.
#define OX_METHOD_ROUTINE(fn)                                                                        \
    int32_t fn(const double ellipsoid1[2], const double ellipsoid2[2], const double values[16],     \
               const char *grid_name, int32_t n, double *points, double *heights, void *first,      \
               void *second, void *third)
#define OX_LOADER_ROUTINE(fn) int32_t fn(ox::GtConstants *block, const char *grid_name)

namespace ox {

enum class Direction { kForward, kInverse };

// What kind of point routine a method has (see the top of this file).
enum class MethodKind { kGeocentric, kMeridian, kGrid };

// The driver's conversions of the points, applied inside the point loop
// (as the projection driver's are): radians = value x `in_factor`; when
// `shift`, longitude = ox_delta(longitude + pm_in) before the formula and
// ox_delta(longitude - pm_out) after it; then value / `out_factor`.  A
// plain routine call uses factors 1 and no shift, which changes no bit.
struct MethodUnits {
    double in_factor;   // radians per unit of the source system
    double out_factor;  // radians per unit of the target system
    double pm_in;       // radians: the source's prime meridian
    double pm_out;      // radians: the target's prime meridian
    bool shift;         // either prime meridian is not Greenwich
};

// A method routine that also applies the driver's units.
using MethodUnitsRoutine = int32_t (*)(const double ellipsoid1[2], const double ellipsoid2[2], const double values[16],
                                       const char *grid_name, int32_t n, double *points, double *heights, void *first,
                                       void *second, void *third, const MethodUnits *units);

// What a setup reads: the two ellipsoids, the parameter values by name and
// the grid.
struct MethodFrame {
    double a1, e2_1;  // first (source) ellipsoid: semi-major axis in metres, e squared
    double a2, e2_2;  // second (target) ellipsoid
    MethodParameterValues p;
    const char *grid_name;  // the slot-15 parameter's name, or null
    void *first, *second, *third;

    MethodFrame(const double ellipsoid1[2], const double ellipsoid2[2], const double values[OX_PARAMETER_SLOTS],
                const char *grid, void *b1, void *b2, void *b3)
        : a1(ellipsoid1[0]),
          e2_1(ellipsoid1[1]),
          a2(ellipsoid2[0]),
          e2_2(ellipsoid2[1]),
          grid_name(grid),
          first(b1),
          second(b2),
          third(b3) {
        std::memcpy(&p, values, sizeof p);
    }
    bool loaded() const { return first != nullptr && second != nullptr && third != nullptr; }
};

// An ellipsoid any method can use: a finite and positive, e2 finite and
// within (-1, 1).
inline bool usable_ellipsoid(double a, double e2) {
    return std::isfinite(a) && a > 0.0 && std::isfinite(e2) && e2 < 1.0 && e2 > -1.0;
}

// latitude clamped to the closed range [-pi/2, pi/2] (NaN kept).
OX_ALWAYS_INLINE double clamp_latitude(double lat) {
    const double limited = lat > kHalfPi ? kHalfPi : lat;
    return limited < -kHalfPi ? -kHalfPi : limited;
}

namespace methdef {

template <class D>
constexpr bool kHasUnloaded = requires { &D::unloaded; };

template <class D>
constexpr bool inverse_formula() {
    if constexpr (requires { D::kInverseFormula; })
        return D::kInverseFormula;
    else
        return false;
}

// The kernel of the point loop (ox_projmath.h): the driver's units around
// the formula; `Shift` says whether the prime meridians are moved.
template <class D, bool Shift, Direction Dir>
struct Kernel {
    static constexpr bool kHeights = true;
    typename D::Constants c;
    MethodUnits units;

    template <class M>
    OX_ALWAYS_INLINE int64_t run(double u, double v, double h, double &x_out, double &y_out, double &h_out) const {
        double lon = u * units.in_factor;
        const double lat = v * units.in_factor;
        bool ok = true;
        if constexpr (Shift) {
            const double d = lon + units.pm_in;
            lon = M::reduce(d);
            ok = M::reduce_ok(d);
        }
        double lon2, lat2;
        bool converted = true;
        if constexpr (Dir == Direction::kInverse && inverse_formula<D>())
            ok &= D::template point_inverse<M>(c, lon, lat, h, lon2, lat2, h_out, converted);
        else
            ok &= D::template point<M>(c, lon, lat, h, lon2, lat2, h_out, converted);
        if constexpr (Shift) {
            const double d = lon2 - units.pm_out;
            lon2 = M::reduce(d);
            ok &= M::reduce_ok(d) | std::isnan(d);
        }
        x_out = lon2 / units.out_factor;
        y_out = lat2 / units.out_factor;
        return (ok ? 0 : kRedoExactly) | (converted ? 0 : kNotConverted);
    }
    OX_ALWAYS_INLINE int64_t fast(double u, double v, double h, double &x, double &y, double &h_out) const {
        return run<FastMath>(u, v, h, x, y, h_out);
    }
    int64_t exact(double u, double v, double h, double &x, double &y, double &h_out) const {
        return run<ExactMath>(u, v, h, x, y, h_out) & kNotConverted;
    }
};

}  // namespace methdef

// The routines that the adapter makes from a definition D.
template <class D>
struct MethodRoutines {
    static constexpr Count kCount = D::kKind == MethodKind::kGrid ? Count::kKernel : Count::kEvery;

    template <Direction Dir>
    static int32_t run(const double ellipsoid1[2], const double ellipsoid2[2], const double values[16],
                       const char *grid_name, int32_t n, double *points, double *heights, void *first, void *second,
                       void *third, const MethodUnits *units) {
        // Fewer than one point: nothing to do; the geocentric methods
        // report the count they were given.
        if (n < 1) return kCount == Count::kEvery ? n : 0;
        if (points == nullptr || ellipsoid1 == nullptr || ellipsoid2 == nullptr || values == nullptr) return 0;
        const MethodFrame f(ellipsoid1, ellipsoid2, values, grid_name, first, second, third);
        if constexpr (methdef::kHasUnloaded<D>)
            if (!f.loaded()) return D::unloaded(f, Dir, n, points, heights);
        typename D::Constants c;
        if (!D::setup(f, Dir, c)) return 0;
        static constexpr MethodUnits kPlain = {1.0, 1.0, 0.0, 0.0, false};
        const MethodUnits &u = units != nullptr ? *units : kPlain;
        if (D::kKind == MethodKind::kGeocentric && u.shift)
            return run_points<kCount>(methdef::Kernel<D, true, Dir>{c, u}, n, points, heights);
        return run_points<kCount>(methdef::Kernel<D, false, Dir>{c, u}, n, points, heights);
    }

    static int32_t forward_units(const double e1[2], const double e2[2], const double values[16], const char *grid,
                                 int32_t n, double *points, double *heights, void *b1, void *b2, void *b3,
                                 const MethodUnits *units) {
        return run<Direction::kForward>(e1, e2, values, grid, n, points, heights, b1, b2, b3, units);
    }
    static int32_t inverse_units(const double e1[2], const double e2[2], const double values[16], const char *grid,
                                 int32_t n, double *points, double *heights, void *b1, void *b2, void *b3,
                                 const MethodUnits *units) {
        return run<Direction::kInverse>(e1, e2, values, grid, n, points, heights, b1, b2, b3, units);
    }
    // The registry's routines.
    static OX_METHOD_ROUTINE(forward) {
        return run<Direction::kForward>(ellipsoid1, ellipsoid2, values, grid_name, n, points, heights, first, second,
                                        third, nullptr);
    }
    static OX_METHOD_ROUTINE(inverse) {
        return run<Direction::kInverse>(ellipsoid1, ellipsoid2, values, grid_name, n, points, heights, first, second,
                                        third, nullptr);
    }
};

// A row of the method registry.
struct MethRow : RegistryRow {
    ox_method_routine forward;
    ox_method_routine inverse;
    LoadConstantsRoutine load_constants;
    // What the list adds: the routines with the driver's units, the
    // parameters the method uses and its kind.
    MethodUnitsRoutine forward_units;
    MethodUnitsRoutine inverse_units;
    ParameterSet parameters;
    MethodKind kind;
};

// The registry row of a definition under its own code and name, or under
// another (the registry's deliberate twins share their routines).
template <class D>
constexpr MethRow method_row(int32_t code, const char *authority, const char *version, const char *name) {
    using R = MethodRoutines<D>;
    LoadConstantsRoutine loader = nullptr;
    if constexpr (requires { D::load; }) loader = D::load;
    return MethRow{{code, authority, version, name}, R::forward,    R::inverse,    loader,
                   R::forward_units,                  R::inverse_units, D::kParameters, D::kKind};
}
template <class D>
constexpr MethRow method_row() {
    return method_row<D>(D::kCode, D::kAuthority, D::kAuthorityVersion, D::kName);
}

}  // namespace ox

// Defines the registry row kMethod<D> of the definition D (in the
// definition's file, after D).
#define OX_DEFINE_METHOD(D)                                   \
    namespace ox {                                            \
    extern const MethRow kMethod##D;                          \
    constinit const MethRow kMethod##D = method_row<D>();     \
    }
