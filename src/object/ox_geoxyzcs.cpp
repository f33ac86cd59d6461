// Geocentric coordinate system: a geographic system and a linear unit.
#include <cstddef>

#include "factory/ox_catalogue.h"
#include "object/ox_object.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

bool angular_code(int32_t code) {
    return code > 0 && ox_factory_coderanges_check(ox_factory_coderanges_angular_unit(), code) != 0;
}

// A unit that measures angles, by what it carries: a code of the angular
// bands (stamped by the factory or read in its AUTHORITY), or the name of an
// angular unit of the catalogue ("Degree", "Radian", "Grad", ...).  Cartesian
// coordinates in such a unit would mean nothing.
bool is_angular(const ox_object *unit) {
    if (angular_code(unit->code)) return true;
    if (unit->authority != nullptr && angular_code(ox_authority_authcode(unit->authority))) return true;
    for (int32_t i = 0; i < cat::kUnits.count; ++i)
        if (angular_code(cat::kUnits.rows[i].code) && name_eq(cat::kUnits.rows[i].name, unit->name)) return true;
    return false;
}

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
    if (name == nullptr || !ox::is_type(geogcs, OX_TAG_GEOGCS) || !ox::is_type(unit, OX_TAG_UNIT) ||
        ox::is_angular(unit))
        return nullptr;
    ox::Geoxyzcs *g = ox::alloc_rec<ox::Geoxyzcs>(ox::kGeoxyzcsDesc, name);
    if (g == nullptr) return nullptr;
    g->geogcs = geogcs;
    g->unit = unit;
    return &g->h;
}

OX_API ox_object *ox_geoxyzcs_geogcs(const ox_object *geoxyzcs) { return ox::field_of(geoxyzcs, &ox::Geoxyzcs::geogcs); }

OX_API ox_object *ox_geoxyzcs_unit(const ox_object *geoxyzcs) { return ox::field_of(geoxyzcs, &ox::Geoxyzcs::unit); }

}  // extern "C"
