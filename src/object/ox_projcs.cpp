// Projected coordinate system: a geographic system, a projection, sixteen
// parameter slots and a linear unit, plus the projection constants.
#include <cstddef>

#include "object/ox_object.h"
#include "projection/ox_pcsconstants.h"

namespace ox {
namespace {

// Old projected names of island and territory systems replaced on reading:
// names written before the systems took their datum's year or realisation.
constexpr RenameRow kRenames[] = {
    {"Tahiti_UTM_6S", "Tahiti_1952_UTM_6S"},
    {"Tahaa_UTM_5S", "Tahaa_1954_UTM_5S"},
    {"K0_1949_UTM_42S", "Kerguelen_1949_UTM_42S"},
    {"Tahiti_52_UTM_6S", "Tahiti_1952_UTM_6S"},
    {"Tahaa_54_UTM_5S", "Tahaa_1954_UTM_5S"},
    {"Kerguelen_Island_1949_UTM_42S", "Kerguelen_1949_UTM_42S"},
    {"Piton_des_Neiges_TM_Reunion", "Reunion_1947_TM_Reunion"},
    {"Reunion_TM_Reunion", "Reunion_1947_TM_Reunion"},
    {"Nuku_Hiva_UTM_7S", "IGN_1972_Nuku_Hiva_UTM_Zone_7S"},
    {"IGN72_Nuku_Hiva_UTM_7S", "IGN_1972_Nuku_Hiva_UTM_Zone_7S"},
    {"Hiva_Oa_UTM_7S", "IGN_1963_Hiva_Oa_UTM_Zone_7S"},
    {"IGN63_Hiva_Oa_UTM_7S", "IGN_1963_Hiva_Oa_UTM_Zone_7S"},
    {"Fatu_Iva_UTM_7S", "Fatu_Iva_1972_UTM_Zone_7S"},
    {"Fatu_Iva_72_UTM_7S", "Fatu_Iva_1972_UTM_Zone_7S"},
    {"Moorea_UTM_6S", "Moorea_1987_UTM_Zone_6S"},
    {"Maupiti_UTM_5S", "Maupiti_1983_UTM_Zone_5S"},
    {"Maupiti_83_UTM_5S", "Maupiti_1983_UTM_Zone_5S"},
    {"Combani_UTM_38S", "Combani_1950_UTM_Zone_38S"},
    {"Lifou_UTM_58S", "IGN_1956_Lifou_UTM_Zone_58S"},
    {"IGN56_Lifou_UTM_58S", "IGN_1956_Lifou_UTM_Zone_58S"},
    {"Grande_Terre_UTM_58S", "IGN_1972_Grande_Terre_UTM_Zone_58S"},
    {"IGN72_Grande_Terre_UTM_58S", "IGN_1972_Grande_Terre_UTM_Zone_58S"},
    {"Ile_des_Pins_UTM_58S", "ST84_Ile_des_Pins_UTM_Zone_58S"},
    {"Noumea_UTM_58S", "NEA_1974_Noumea_UTM_Zone_58S"},
    {"NEA74_Noumea_UTM_58S", "NEA_1974_Noumea_UTM_Zone_58S"},
    {"Ouvea_UTM_58S", "ST87_Ouvea_UTM_Zone_58S"},
    {"Sainte_Anne_UTM_20N", "Guadeloupe_1948_UTM_Zone_20N"},
    {"Fort_Desaix_UTM_20N", "Martinique_1938_UTM_Zone_20N"},
    {"Fort_Marigot_UTM_20N", "Fort_Marigot_UTM_Zone_20N"},
    {"St_Pierre_et_Miquelon_UTM_21N", "Saint_Pierre_et_Miquelon_1950_UTM_Zone_21N"},
    {"Mayotte_Combani_UTM_38S", "Combani_1950_UTM_Zone_38S"},
    {nullptr, nullptr},
};
static_assert(sizeof kRenames / sizeof kRenames[0] == 32, "31 rename rows");

void free_constants(void *c) { pcs_delete(static_cast<PcsConstants *>(c)); }

constexpr FieldDesc kFields[] = {
    fd_sub(offsetof(Projcs, geogcs), OX_TAG_GEOGCS),
    fd_sub(offsetof(Projcs, projection), OX_TAG_PROJECTION),
    fd_params(offsetof(Projcs, params)),
    fd_sub(offsetof(Projcs, unit), OX_TAG_UNIT),
    fd_constants(offsetof(Projcs, constants)),
};
ox_object *build(const Parts &p) {
    return ox_projcs_new(p.name, p.sub[0], p.sub[1], const_cast<ox_object **>(p.params), p.sub[2]);
}

}  // namespace

const TypeDesc kProjcsDesc = {OX_TAG_PROJCS, "PROJCS", sizeof(Projcs), kFields, 5, 2, true, true, kRenames,
                              build, nullptr, free_constants, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(projcs, OX_TAG_PROJCS, ox::kProjcsDesc)

namespace {
using ox::Projcs;
const Projcs *pcs(const ox_object *h) { return ox::rec<Projcs>(h, OX_TAG_PROJCS); }
}  // namespace

extern "C" {

OX_API ox_object *ox_projcs_new(const char *name, ox_object *geogcs, ox_object *projection,
                                ox_object *parameters[16], ox_object *unit) {
    if (name == nullptr || !ox::params_acceptable(parameters) || !ox::is_type(geogcs, OX_TAG_GEOGCS) ||
        !ox::is_type(projection, OX_TAG_PROJECTION) || !ox::is_type(unit, OX_TAG_UNIT))
        return nullptr;
    Projcs *p = ox::alloc_rec<Projcs>(ox::kProjcsDesc, name);
    if (p == nullptr) return nullptr;
    p->geogcs = geogcs;
    p->projection = projection;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) p->params[i] = parameters[i];
    p->unit = unit;
    p->constants = nullptr;
    return &p->h;
}

OX_API ox_object *ox_projcs_geogcs(const ox_object *projcs) { return ox::field_of(projcs, &ox::Projcs::geogcs); }

OX_API ox_object *ox_projcs_projection(const ox_object *projcs) { return ox::field_of(projcs, &ox::Projcs::projection); }

OX_API ox_object *ox_projcs_unit(const ox_object *projcs) { return ox::field_of(projcs, &ox::Projcs::unit); }

OX_API void ox_projcs_parameters(const ox_object *projcs, ox_object *parameters[16]) {
    ox::copy_params_of<Projcs>(projcs, parameters);
}

OX_API int32_t ox_projcs_eqnn(const ox_object *a, const ox_object *b) {
    return pcs(a) && pcs(b) && ox::obj_eq_parts(a, b, false) ? 1 : 0;
}

OX_API int32_t ox_projcs_isconstloaded(const ox_object *projcs) {
    const Projcs *p = pcs(projcs);
    return p && p->constants ? 1 : 0;
}

OX_API void ox_projcs_unload_constants(ox_object *projcs) {
    Projcs *p = ox::rec<Projcs>(projcs, OX_TAG_PROJCS);
    if (p == nullptr) return;
    ox::pcs_delete(p->constants);
    p->constants = nullptr;
}

// Clone with other units.  Linear parameters (slots 0 and 1) are multiplied
// by old linear factor / new factor, angular parameters by old angular
// factor / new factor.
OX_API ox_object *ox_projcs_clone_alterunits(const ox_object *projcs, const ox_object *linear_unit,
                                             const ox_object *angular_unit) {
    const Projcs *p = pcs(projcs);
    if (p == nullptr) return nullptr;
    const bool have_linear = ox::is_type(linear_unit, OX_TAG_UNIT);
    const bool have_angular = ox::is_type(angular_unit, OX_TAG_UNIT);
    double linear_ratio = 1.0, angular_ratio = 1.0;
    bool linear_change = false, angular_change = false;
    if (have_linear) {
        const double old_f = ox_unit_factor(p->unit), new_f = ox_unit_factor(linear_unit);
        if (!ox::equal_rule(old_f, new_f)) {
            linear_change = true;
            linear_ratio = old_f / new_f;
        }
    }
    if (have_angular) {
        const double old_f = ox_unit_factor(ox_geogcs_unit(p->geogcs)), new_f = ox_unit_factor(angular_unit);
        if (!ox::equal_rule(old_f, new_f)) {
            angular_change = true;
            angular_ratio = old_f / new_f;
        }
    }
    if (!linear_change && !angular_change) return ox_projcs_clone(projcs);

    ox_object *params[OX_PARAMETER_SLOTS] = {};
    ox_object *projection = ox_projection_clone(p->projection);
    bool ok = projection != nullptr;
    for (int i = 0; i < OX_PARAMETER_SLOTS && ok; ++i)
        if (p->params[i] != nullptr && (params[i] = ox_parameter_clone(p->params[i])) == nullptr) ok = false;
    if (ok) {
        for (int s : ox::kLinearSlots)
            if (params[s]) ox_parameter_value_set(params[s], ox_parameter_value(params[s]) * linear_ratio);
        for (int s : ox::kAngularSlots)
            if (params[s]) ox_parameter_value_set(params[s], ox_parameter_value(params[s]) * angular_ratio);
    }
    ox_object *geogcs = nullptr;
    if (ok && angular_change) {
        ox_object *datum = ox_datum_clone(ox_geogcs_datum(p->geogcs));
        ox_object *primem = ox_primem_clone(ox_geogcs_primem(p->geogcs));
        ox_object *unit = ox_unit_clone(angular_unit);
        geogcs = ox_geogcs_new(p->geogcs->name, datum, primem, unit);
        if (geogcs == nullptr) {
            ox_datum_del(datum);
            ox_primem_del(primem);
            ox_unit_del(unit);
        }
    } else if (ok) {
        geogcs = ox_geogcs_clone(p->geogcs);
    }
    ox_object *unit = ok ? ox_unit_clone(linear_change ? linear_unit : p->unit) : nullptr;
    ox_object *result = nullptr;
    if (geogcs != nullptr && unit != nullptr) result = ox_projcs_new(projcs->name, geogcs, projection, params, unit);
    if (result == nullptr) {
        ox_projection_del(projection);
        ox::params_delete(params);
        ox_geogcs_del(geogcs);
        ox_unit_del(unit);
    }
    return result;
}

}  // extern "C"
