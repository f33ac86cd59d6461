// Adjusted horizontal coordinate system: a base coordinate system whose
// coordinates are further transformed by a horizontal method with the
// coefficients of an array, expressed in a unit of its own.
#include <cmath>
#include <cstddef>

#include "object/ox_object.h"
#include "transform/ox_htmethlist.h"

namespace ox {
namespace {

constexpr FieldDesc kFields[] = {
    fd_sub(offsetof(Adjhcs, coordsys), OX_TAG_GEOGCS | OX_TAG_PROJCS),
    fd_sub(offsetof(Adjhcs, htmethod), OX_TAG_HTMETHOD),
    fd_sub(offsetof(Adjhcs, array), OX_TAG_ARRAY),
    fd_sub(offsetof(Adjhcs, unit), OX_TAG_UNIT),
};
ox_object *build(const Parts &p) { return ox_adjhcs_new(p.name, p.sub[0], p.sub[1], p.sub[2], p.sub[3]); }

// Unit factor of the base system: its linear unit, or the angular unit of a
// geographic system.
double base_factor(const ox_object *coordsys) {
    return ox_projcs_p(coordsys) ? ox_unit_factor(ox_projcs_unit(coordsys))
                                 : ox_unit_factor(ox_geogcs_unit(coordsys));
}

// Coefficients needed by each method: the affine method six, the projective
// method eight; other methods take whatever the array holds.
int32_t coefficients_needed(const ox_object *htmethod) {
    switch (htmethod->code) {
        case kHtAffineParametric: return 6;
        case kHtProjectiveParametric: return 8;
        default: return 0;
    }
}

// Coefficients that convert points to finite points both ways: every one of
// them finite and, for the affine and projective methods, a matrix that can
// be inverted (a singular one would send every point onto a line).
bool usable(const ox_object *htmethod, const double *c, int32_t count) {
    for (int32_t i = 0; i < count; ++i)
        if (!std::isfinite(c[i])) return false;
    double inverse[9];
    switch (htmethod->code) {
        case kHtAffineParametric: return affine_invert(c, inverse);
        case kHtProjectiveParametric: return projective_invert(c, inverse);
        default: return true;
    }
}

void scale(int32_t n, double *points, double factor) {
    if (factor == 1.0) return;
    for (int32_t i = 0; i < 2 * n; ++i) points[i] *= factor;
}

// Runs the method on copies of the coefficients (at most 64 are passed).
int32_t run(const Adjhcs *a, bool forward, int32_t n, double *points) {
    if (a == nullptr || points == nullptr || n < 1) return 0;
    const int32_t count = ox_array_num_values(a->array);
    if (count > 64 || count < coefficients_needed(a->htmethod)) return 0;
    double coefficients[64] = {};
    ox_array_values_copy(a->array, coefficients);
    if (!usable(a->htmethod, coefficients, count)) return 0;
    const ox_htmethod_routine routine = forward ? ox_htmethod_forward(a->htmethod) : ox_htmethod_inverse(a->htmethod);
    const double ratio = base_factor(a->coordsys) / ox_unit_factor(a->unit);
    if (forward) {
        const int32_t done = routine(nullptr, coefficients, n, points);
        if (done > 0) scale(n, points, ratio);
        return done;
    }
    scale(n, points, 1.0 / ratio);
    const int32_t done = routine(nullptr, coefficients, n, points);
    if (done == 0) scale(n, points, ratio);  // the coefficients cannot be inverted: leave the points as given
    return done;
}

}  // namespace

const TypeDesc kAdjhcsDesc = {OX_TAG_ADJHCS, "ADJHCS", sizeof(Adjhcs), kFields, 4, 2, true, false, nullptr, build,
                              nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(adjhcs, OX_TAG_ADJHCS, ox::kAdjhcsDesc)

namespace {
const ox::Adjhcs *adj(const ox_object *h) { return ox::rec<ox::Adjhcs>(h, OX_TAG_ADJHCS); }
}  // namespace

extern "C" {

OX_API ox_object *ox_adjhcs_new(const char *name, ox_object *coordsys, ox_object *htmethod, ox_object *array,
                                ox_object *unit) {
    if (name == nullptr || !ox::is_a(coordsys, OX_TAG_GEOGCS | OX_TAG_PROJCS) ||
        !ox::is_type(htmethod, OX_TAG_HTMETHOD) || !ox::is_type(array, OX_TAG_ARRAY) ||
        !ox::is_type(unit, OX_TAG_UNIT))
        return nullptr;
    ox::Adjhcs *a = ox::alloc_rec<ox::Adjhcs>(ox::kAdjhcsDesc, name);
    if (a == nullptr) return nullptr;
    a->coordsys = coordsys;
    a->htmethod = htmethod;
    a->array = array;
    a->unit = unit;
    return &a->h;
}

OX_API ox_object *ox_adjhcs_coordsys(const ox_object *adjhcs) { return ox::field_of(adjhcs, &ox::Adjhcs::coordsys); }

OX_API ox_object *ox_adjhcs_htmethod(const ox_object *adjhcs) { return ox::field_of(adjhcs, &ox::Adjhcs::htmethod); }

OX_API ox_object *ox_adjhcs_array(const ox_object *adjhcs) { return ox::field_of(adjhcs, &ox::Adjhcs::array); }

OX_API ox_object *ox_adjhcs_unit(const ox_object *adjhcs) { return ox::field_of(adjhcs, &ox::Adjhcs::unit); }

OX_API int32_t ox_adjhcs_to_coordsys(const ox_object *adjhcs, int32_t n, double *points) {
    return ox::run(adj(adjhcs), false, n, points);
}

OX_API int32_t ox_coordsys_to_adjhcs(const ox_object *adjhcs, int32_t n, double *points) {
    return ox::run(adj(adjhcs), true, n, points);
}

}  // extern "C"
