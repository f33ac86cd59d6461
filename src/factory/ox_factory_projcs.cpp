// Projected coordinate systems by code.  The catalogue step asks its groups
// in a fixed order (miscellaneous systems, zone families and single zones,
// state plane 1927, state plane 1983 in metres, in feet, HARN state plane,
// Wisconsin county systems, the registry's systems outside the classic
// bands); the first group that knows the code builds it.
#include <initializer_list>

#include "factory/ox_factory.h"

namespace ox {
namespace {

ox_object *from_row(const cat::ProjcsRow *r) {
    if (r == nullptr) return nullptr;
    ox_object *params[OX_PARAMETER_SLOTS];
    if (!factory_params(&cat::kParams[r->first], r->count, params)) return nullptr;
    return projcs_assemble(r->name, r->geogcs, r->projection, r->unit, params);
}

// PROJCS,code,name,geographic system code,projection code,unit code, then one
// field "parameter code=value" per parameter (codes or definition strings).
ox_object *from_edit(const EditLine &line) {
    if (line.count < 5) return nullptr;
    ox_object *params[OX_PARAMETER_SLOTS] = {};
    for (int i = 5; i < line.count; ++i) {
        ox_object *p = edit_parameter(line.field[i]);
        if (p == nullptr || !put_parameter(params, p)) {
            params_delete(params);
            return nullptr;
        }
    }
    return projcs_assemble(line.field[1], edit_code(line.field[2]), edit_code(line.field[3]),
                           edit_code(line.field[4]), params);
}

// The superseded definitions "ST87_Ouvea_UTM_58S" and "Reunion_1947_TM_Reunion
// - wrong FE and FN", built with their codes and status 32.
ox_object *special(int32_t code) {
    ox_object *h = from_row(cat::find(cat::kProjcsSpecial, code));
    if (h != nullptr) {
        stamp(h, ox_factory_coderanges_projcs(), code);
        obj_set_status(h, OX_STATUS_SUPERSEDED);
    }
    return h;
}

constexpr KindBuilder kProjcs = {kEditProjcs, from_edit, projcs_from_catalogue,
                                 ox_factory_coderanges_projcs, &cat::kReplacedProjcs, &cat::kSupersededProjcs,
                                 special, false, false};

}  // namespace

ox_object *projcs_assemble(const char *name, int32_t geogcs_code, int32_t projection_code, int32_t unit_code,
                           ox_object *params[OX_PARAMETER_SLOTS]) {
    return projcs_from_parts(name, ox_factory_geogcs(geogcs_code), ox_factory_projection(projection_code), params,
                             ox_factory_unit(unit_code));
}

ox_object *projcs_from_parts(const char *name, ox_object *geogcs, ox_object *projection,
                             ox_object *params[OX_PARAMETER_SLOTS], ox_object *unit) {
    ox_object *projcs = ox_projcs_new(name, geogcs, projection, params, unit);
    if (projcs == nullptr) {
        ox_geogcs_del(geogcs);
        ox_projection_del(projection);
        ox_unit_del(unit);
        params_delete(params);
    }
    return projcs;
}

ox_object *projcs_from_catalogue(int32_t code) {
    if (ox_object *h = from_row(cat::find(cat::kProjcsMisc, code))) return h;
    if (ox_object *h = projcs_from_zone_families(code)) return h;
    if (ox_object *h = from_row(cat::find(cat::kProjcsZone, code))) return h;
    for (const cat::Table<cat::ProjcsRow> *group :
         {&cat::kProjcsStatePlane27, &cat::kProjcsStatePlane83, &cat::kProjcsStatePlane83Feet1,
          &cat::kProjcsStatePlane83Feet2, &cat::kProjcsHarn, &cat::kProjcsWiscrs, &cat::kProjcsEpsg})
        if (ox_object *h = from_row(cat::find(*group, code))) return h;
    return nullptr;
}

}  // namespace ox

extern "C" OX_API ox_object *ox_factory_projcs(int32_t code) { return ox::factory_build(ox::kProjcs, code); }
