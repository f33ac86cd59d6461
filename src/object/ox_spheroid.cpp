// Spheroid: a name, the semi-major axis and the flattening.  Object strings
// carry the inverse flattening (0 for a sphere).
#include <cfloat>
#include <cmath>
#include <cstddef>

#include "object/ox_object.h"
#include "object/ox_objstrings.h"

namespace ox {
namespace {

double inverse_flattening_of(double f) { return std::fabs(f) <= kZero ? 0.0 : 1.0 / f; }
double flattening_of(double inverse) { return inverse == 0.0 ? 0.0 : 1.0 / inverse; }

// Axes equal; flattenings equal, or else quarter meridians within a
// micrometre: two definitions of one figure that differ only in the last
// digits of the inverse flattening compare equal.
bool eq_values(const ox_object *a, const ox_object *b) {
    const auto *x = reinterpret_cast<const Spheroid *>(a);
    const auto *y = reinterpret_cast<const Spheroid *>(b);
    if (!equal_rule(x->axis, y->axis)) return false;
    if (equal_rule(x->flattening, y->flattening)) return true;
    const double e2x = (2.0 - x->flattening) * x->flattening;
    const double e2y = (2.0 - y->flattening) * y->flattening;
    return std::fabs(ox_q90(x->axis, e2x) - ox_q90(y->axis, e2y)) < 1e-6;
}

// A flattening so close to 1 that its inverse is written as "1.0" would be
// read as a flattening of 1, which no spheroid has.
bool writable(const ox_object *h) {
    const double f = reinterpret_cast<const Spheroid *>(h)->flattening;
    if (f < 0.5) return true;  // an inverse of 2 or more, or a sphere
    char text[48];
    format_double(1.0 / f, text);
    double inverse = 0.0;
    return read_number(text, &inverse) && inverse > 1.0;
}

constexpr FieldDesc kFields[] = {
    fd_double(offsetof(Spheroid, axis)),
    fd_double(offsetof(Spheroid, flattening), inverse_flattening_of, flattening_of),
};
ox_object *build(const Parts &p) { return ox_spheroid_new(p.name, p.d[0], p.d[1]); }

}  // namespace

const TypeDesc kSpheroidDesc = {OX_TAG_SPHEROID, "SPHEROID", sizeof(Spheroid), kFields, 2, 4, true, true,
                                nullptr, build, eq_values, nullptr, nullptr, writable};
}  // namespace ox

OX_DEFINE_COMMON_OPS(spheroid, OX_TAG_SPHEROID, ox::kSpheroidDesc)

extern "C" {

OX_API ox_object *ox_spheroid_new(const char *name, double axis, double flattening) {
    if (name == nullptr || !(axis > 0.0 && axis <= DBL_MAX) || !(flattening >= 0.0 && flattening < 1.0)) return nullptr;
    ox::Spheroid *s = ox::alloc_rec<ox::Spheroid>(ox::kSpheroidDesc, name);
    if (s == nullptr) return nullptr;
    s->axis = axis;
    s->flattening = flattening;
    return &s->h;
}

OX_API double ox_spheroid_axis(const ox_object *spheroid) { return ox::field_of(spheroid, &ox::Spheroid::axis, 1.0); }

OX_API double ox_spheroid_flattening(const ox_object *spheroid) { return ox::field_of(spheroid, &ox::Spheroid::flattening, 0.0); }

}  // extern "C"
