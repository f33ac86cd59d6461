// Geocentric coordinate system: a geographic system and a linear unit.
#include <cstddef>

#include "object/ox_object.h"

namespace ox {
namespace {
constexpr FieldDesc kFields[] = {
    fd_sub(offsetof(Geoxyzcs, geogcs), OX_TAG_GEOGCS),
    fd_sub(offsetof(Geoxyzcs, unit), OX_TAG_UNIT),
};
ox_object *build(const Parts &p) { return ox_geoxyzcs_new(p.name, p.sub[0], p.sub[1]); }
}  // namespace

const TypeDesc kGeoxyzcsDesc = {OX_TAG_GEOXYZCS, "GEOXYZCS", sizeof(Geoxyzcs), kFields, 2, 2, true, true, nullptr,
                                build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(geoxyzcs, OX_TAG_GEOXYZCS, ox::kGeoxyzcsDesc)

extern "C" {

OX_API ox_object *ox_geoxyzcs_new(const char *name, ox_object *geogcs, ox_object *unit) {
    if (name == nullptr || !ox::is_type(geogcs, OX_TAG_GEOGCS) || !ox::is_type(unit, OX_TAG_UNIT)) return nullptr;
    ox::Geoxyzcs *g = ox::alloc_rec<ox::Geoxyzcs>(ox::kGeoxyzcsDesc, name);
    if (g == nullptr) return nullptr;
    g->geogcs = geogcs;
    g->unit = unit;
    return &g->h;
}

OX_API ox_object *ox_geoxyzcs_geogcs(const ox_object *geoxyzcs) { return ox::field_of(geoxyzcs, &ox::Geoxyzcs::geogcs); }

OX_API ox_object *ox_geoxyzcs_unit(const ox_object *geoxyzcs) { return ox::field_of(geoxyzcs, &ox::Geoxyzcs::unit); }

}  // extern "C"
