// Unit of measure: a name and the size of one unit in metres or radians.
#include <cfloat>
#include <cstddef>

#include "object/ox_object.h"

namespace ox {
namespace {
constexpr FieldDesc kFields[] = {fd_double(offsetof(Unit, factor))};
ox_object *build(const Parts &p) { return ox_unit_new(p.name, p.d[0]); }
}  // namespace

const TypeDesc kUnitDesc = {OX_TAG_UNIT, "UNIT", sizeof(Unit), kFields, 1, 3, true, true, nullptr,
                            build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(unit, OX_TAG_UNIT, ox::kUnitDesc)

extern "C" {

OX_API ox_object *ox_unit_new(const char *name, double factor) {
    if (name == nullptr || !(factor > 0.0 && factor <= DBL_MAX)) return nullptr;
    ox::Unit *u = ox::alloc_rec<ox::Unit>(ox::kUnitDesc, name);
    if (u == nullptr) return nullptr;
    u->factor = factor;
    return &u->h;
}

OX_API double ox_unit_factor(const ox_object *unit) { return ox::field_of(unit, &ox::Unit::factor, 1.0); }

}  // extern "C"
