// The pattern that every projection follows: one definition in one file,
// from which one generic adapter makes the registry's routines.
//
// A definition D is a struct with
//   kCode, kName              its registry code and name;
//   kFamily, kPreserves       its family and what it preserves (the
//                             projected-system summary reports them);
//   kParameters               the parameters it uses (ox_parmlist.h), which
//                             ox_parameter_projection_defaults makes;
//   kHorizon                  its geographic horizon routine (the projected
//                             horizon is that boundary through its forward);
//   kHasConstantsRoutine      whether a system keeps its constants (the
//                             registry's constants routine); without, the
//                             routines compute them for every call;
//   kCountsEveryPoint         (optional, default false) true when the
//                             projection converts every point by definition
//                             and counts NaN results too; otherwise a point
//                             with a NaN result gets the failure value and is
//                             not counted;
// and either the members of one form, or `using Forms = ox::Forms<...>` with
// `static int form(const Frame &)` choosing one (SphereAndEllipsoid does the
// usual choice).  A form is
//   struct Constants          what the formulas need besides the frame,
//                             computed once per system: doubles only; a
//                             system's constants block stores it verbatim,
//                             tagged with the definition and form that wrote
//                             it;
//   static bool setup(const Frame &, Constants &)
//                             validates the parameters and fills the
//                             constants, or refuses (false): then every point
//                             of a call gets the failure value and the count
//                             is 0;
//   template <class M> static bool forward(const Frame &, const Constants &,
//                             double lon, double lat, double &x, double &y)
//   template <class M> static bool inverse(..., double x, double y,
//                             double &lon, double &lat)
//                             the formulas over the function set M
//                             (ox_fastmath.h): radians and metres about the
//                             natural origin; they return whether every
//                             argument was within M's range.
// Optional: `using ConstantsOwner = E` (E's constants routine serves D, and
// D's forms read E's blocks), kHorizonPcs (a projected horizon of its own,
// where the forward of the geographic one would not do: the outline of a
// net runs along both sides of its cuts), kHorizonGcsRaster,
// kHorizonPcsRaster.
//
// OX_DEFINE_PROJECTION(D) in the definition's file makes the registry row
// kProjectionD; the list in ox_projlist.cpp names it.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "object/ox_object.h"
#include "object/ox_utils.h"
#include "object/ox_registry.h"
#include "ox.h"
#include "projection/ox_fastmath.h"
#include "projection/ox_math.h"
#include "projection/ox_parmlist.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projmath.h"

// The signatures of the registry's routines.
#define OX_PROJECTION_ROUTINE(fn)                                                                 \
    int32_t fn(const double spheroid[2], const double parameters[16], int32_t n, double *points, \
               const int32_t *constants_header, const double *constants_values)
#define OX_HORIZON_ROUTINE(fn) \
    int32_t fn(const double spheroid[2], const double parameters[16], int32_t max_vertices, double *vertices)

namespace ox {

// The family of a projection and what it preserves.
enum class Family : uint8_t {
    kCylindrical,
    kPseudocylindrical,
    kConic,
    kPseudoconic,
    kAzimuthal,
    kPolyconic,
    kPolyhedral,
    kOther,
};
enum class Preserves : uint8_t {
    kShape,     // conformal
    kArea,      // equal-area
    kDistance,  // equidistant along some lines
    kNothing,   // a compromise
};

// A projection routine that also applies the driver's units (null: none,
// as the plain routine) and takes the system's constants block.
using UnitsRoutine = int32_t (*)(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                                 const PcsConstants *block, const PointUnits *units);

// What a setup and the formulas read: the spheroid and the parameter values.
struct Frame {
    double a;   // semi-major axis, metres
    double e2;  // first eccentricity squared
    ParameterValues p;

    Frame(const double spheroid[2], const double parameters[OX_PARAMETER_SLOTS]) : a(spheroid[0]), e2(spheroid[1]) {
        std::memcpy(&p, parameters, sizeof p);
    }
    // The library's one test for a sphere: e2 below 2^-48.
    bool sphere() const { return e2 < kZero; }
    // A spheroid any projection can use: a finite and positive, e2 finite
    // and below 1.
    bool usable() const { return std::isfinite(a) && a > 0.0 && std::isfinite(e2) && e2 < 1.0; }
};

// Checks that setups share.
inline bool finite(double v) { return std::isfinite(v); }
inline bool positive(double v) { return std::isfinite(v) && v > 0.0; }
// |phi| is a right angle under the library's equality rule.
inline bool at_pole(double phi) { return equal_rule(std::fabs(phi), kHalfPi); }

// The forms of a definition with several.
template <class... F>
struct Forms {};

// The usual pair of forms: a spherical formula on a sphere, an ellipsoidal
// one otherwise.
template <class Sphere, class Ellipsoid>
struct SphereAndEllipsoid {
    using Forms = ox::Forms<Sphere, Ellipsoid>;
    static int form(const Frame &f) { return f.sphere() ? 0 : 1; }
};

namespace projdef {

template <class D>
constexpr bool kHasForms = requires { typename D::Forms; };

template <class D>
struct FormsOf {
    using type = Forms<D>;
};
template <class D>
    requires kHasForms<D>
struct FormsOf<D> {
    using type = typename D::Forms;
};

template <class D>
int form_index(const Frame &f) {
    if constexpr (kHasForms<D>)
        return D::form(f);
    else
        return 0;
}

// Calls fn.template operator()<F>() for the form at `index`.
template <class Fn, class... F>
int32_t visit(Forms<F...>, int index, Fn &&fn) {
    int32_t result = 0;
    int i = 0;
    (void)((i++ == index ? (result = fn.template operator()<F>(), true) : false) || ...);
    return result;
}

template <class D>
constexpr bool counts_every_point() {
    if constexpr (requires { D::kCountsEveryPoint; })
        return D::kCountsEveryPoint;
    else
        return false;
}

template <class D>
struct ConstantsOwnerOf {
    using type = D;
};
template <class D>
    requires requires { typename D::ConstantsOwner; }
struct ConstantsOwnerOf<D> {
    using type = typename D::ConstantsOwner;
};

// The tag of the blocks that the constants routine of Owner writes for its
// form I: a distinct address per definition and form.
template <class Owner, int I>
inline constexpr char kLayoutTag = 0;

// The constants and frame that a formula reads, copied into the point
// kernel.
template <class Form>
struct Bound {
    Frame frame;
    typename Form::Constants c;
};
template <class Form>
struct ForwardFormula {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Bound<Form> &b, double u, double v, double &x, double &y) {
        return Form::template forward<M>(b.frame, b.c, u, v, x, y);
    }
};
template <class Form>
struct InverseFormula {
    template <class M>
    static OX_ALWAYS_INLINE bool apply(const Bound<Form> &b, double u, double v, double &x, double &y) {
        return Form::template inverse<M>(b.frame, b.c, u, v, x, y);
    }
};

template <class Form>
constexpr int32_t value_count() {
    using C = typename Form::Constants;
    static_assert(std::is_trivially_copyable_v<C>, "constants are plain values");
    if constexpr (std::is_empty_v<C>) {
        return 0;
    } else {
        static_assert(sizeof(C) % sizeof(double) == 0, "constants are doubles");
        return static_cast<int32_t>(sizeof(C) / sizeof(double));
    }
}

// The index of Form among F..., for the tag.
template <class Form, class... F>
constexpr int index_of(Forms<F...>) {
    int i = 0, found = -1;
    ((std::is_same_v<Form, F> ? (found = i, ++i) : ++i), ...);
    return found;
}

}  // namespace projdef

// The routines that the adapter makes from a definition D.
template <class D>
struct ProjectionRoutines {
    using FormList = typename projdef::FormsOf<D>::type;
    static constexpr Count kCount = projdef::counts_every_point<D>() ? Count::kEvery : Count::kFinished;

    template <class Form>
    static const void *layout_tag() {
        return &projdef::kLayoutTag<typename projdef::ConstantsOwnerOf<D>::type,
                                    projdef::index_of<Form>(FormList{})>;
    }

    // The constants of a form: the system's block when this definition's
    // constants routine wrote it for this form, else the setup's; false when
    // the setup refuses.
    template <class Form>
    static bool constants_of(const Frame &f, const PcsConstants *block, typename Form::Constants &c) {
        if (projdef::value_count<Form>() > 0 && block != nullptr && block->layout == layout_tag<Form>() &&
            block->header != nullptr && block->values != nullptr &&
            block->header[1] == projdef::value_count<Form>()) {
            std::memcpy(&c, block->values, sizeof c);
            return true;
        }
        return f.usable() && Form::setup(f, c);
    }

    template <bool Inverse>
    static int32_t run(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                       const PcsConstants *block, const PointUnits *units) {
        if (points == nullptr || n <= 0) return 0;
        if (spheroid == nullptr || parameters == nullptr) {
            fail_points(n, points);
            return 0;
        }
        const Frame f(spheroid, parameters);
        return projdef::visit(FormList{}, projdef::form_index<D>(f), [&]<class Form>() -> int32_t {
            projdef::Bound<Form> b{f, {}};
            if (!constants_of<Form>(f, block, b.c)) {
                fail_points(n, points);
                return 0;
            }
            if constexpr (Inverse)
                return run_inverse<kCount, projdef::InverseFormula<Form>>(b, n, points, units);
            else
                return run_forward<kCount, projdef::ForwardFormula<Form>>(b, n, points, units);
        });
    }

    static int32_t forward_units(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                                 const PcsConstants *block, const PointUnits *units) {
        return run<false>(spheroid, parameters, n, points, block, units);
    }
    static int32_t inverse_units(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                                 const PcsConstants *block, const PointUnits *units) {
        return run<true>(spheroid, parameters, n, points, block, units);
    }
    // The registry's routines.  Called directly they compute the constants
    // for the call: a header and values handed in this way carry no tag, so
    // they are not read.
    static OX_PROJECTION_ROUTINE(forward) {
        (void)constants_header, (void)constants_values;
        return run<false>(spheroid, parameters, n, points, nullptr, nullptr);
    }
    static OX_PROJECTION_ROUTINE(inverse) {
        (void)constants_header, (void)constants_values;
        return run<true>(spheroid, parameters, n, points, nullptr, nullptr);
    }

    // The constants routine: the chosen form's constants, stored with their
    // tag; 0 (nothing stored) when the setup refuses.
    static int32_t constants(PcsConstants *block, const double spheroid[2], const double parameters[16]) {
        if (block == nullptr || spheroid == nullptr || parameters == nullptr) return 0;
        const Frame f(spheroid, parameters);
        if (!f.usable()) return 0;
        return projdef::visit(FormList{}, projdef::form_index<D>(f), [&]<class Form>() -> int32_t {
            typename Form::Constants c;
            if (!Form::setup(f, c)) return 0;
            constexpr int32_t count = projdef::value_count<Form>();
            double *values = pcs_alloc(block, count);
            if (values == nullptr) return 0;
            std::memcpy(values, &c, sizeof c);
            block->layout = layout_tag<Form>();
            return count;
        });
    }
};

// The projected horizon of a projection: its geographic horizon taken
// through its forward routine (metres about the natural origin, points the
// projection cannot convert as the failure value).
template <ox_horizon_routine Geographic, ox_projection_routine Forward>
OX_HORIZON_ROUTINE(horizon_projected) {
    const int32_t total = Geographic(spheroid, parameters, max_vertices, vertices);
    if (vertices != nullptr && max_vertices > 0 && spheroid != nullptr && parameters != nullptr)
        Forward(spheroid, parameters, total < max_vertices ? total : max_vertices, vertices, nullptr, nullptr);
    return total;
}

// A row of the projection registry.
struct ProjRow : RegistryRow {
    ox_projection_routine forward;
    ox_projection_routine inverse;
    ox_horizon_routine horizon;
    ox_horizon_routine horizon_pcs;
    ox_horizon_routine horizon_gcs_raster;
    ox_horizon_routine horizon_pcs_raster;
    ConstantsRoutine constants;
    // What the list adds: the routines that take the driver's units and
    // the system's constants block, and the parameters the projection uses.
    UnitsRoutine forward_units;
    UnitsRoutine inverse_units;
    ParameterSet parameters;
    Family family;
    Preserves preserves;
};

// The registry row of a definition.
template <class D>
constexpr ProjRow projection_row() {
    using R = ProjectionRoutines<D>;
    using Owner = typename projdef::ConstantsOwnerOf<D>::type;
    ProjRow row{{D::kCode, kMavo, kMavoVersion, D::kName},
                R::forward,
                R::inverse,
                D::kHorizon,
                horizon_projected<D::kHorizon, R::forward>,
                nullptr,
                nullptr,
                D::kHasConstantsRoutine ? ProjectionRoutines<Owner>::constants : nullptr,
                R::forward_units,
                R::inverse_units,
                D::kParameters,
                D::kFamily,
                D::kPreserves};
    if constexpr (requires { D::kHorizonPcs; }) row.horizon_pcs = D::kHorizonPcs;
    if constexpr (requires { D::kHorizonGcsRaster; }) row.horizon_gcs_raster = D::kHorizonGcsRaster;
    if constexpr (requires { D::kHorizonPcsRaster; }) row.horizon_pcs_raster = D::kHorizonPcsRaster;
    return row;
}

// A second registry row for the routines of D under another name and code
// (the registry's deliberate twins).
template <class D>
constexpr ProjRow projection_row_named(int32_t code, const char *name) {
    ProjRow row = projection_row<D>();
    row.code = code;
    row.name = name;
    return row;
}

}  // namespace ox

// Defines the registry row kProjection<D> of the definition D (in the
// definition's file, after D).
#define OX_DEFINE_PROJECTION(D)                   \
    namespace ox {                                \
    extern const ProjRow kProjection##D;          \
    constinit const ProjRow kProjection##D = projection_row<D>(); \
    }
