// Vertical coordinate system: a datum (horizontal or vertical), sixteen
// parameter slots and a linear unit.
#include <cstddef>

#include "object/ox_object.h"
#include "projection/ox_parmlist.h"

namespace ox {
namespace {

constexpr FieldDesc kFields[] = {
    fd_sub(offsetof(Vertcs, hvdatum), OX_TAG_DATUM | OX_TAG_VDATUM),
    fd_params(offsetof(Vertcs, params)),
    fd_sub(offsetof(Vertcs, unit), OX_TAG_UNIT),
};
ox_object *build(const Parts &p) {
    return ox_vertcs_new(p.name, p.sub[0], const_cast<ox_object **>(p.params), p.sub[1]);
}

}  // namespace

const TypeDesc kVertcsDesc = {OX_TAG_VERTCS, "VERTCS", sizeof(Vertcs), kFields, 3, 2, true, true, nullptr, build,
                              nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(vertcs, OX_TAG_VERTCS, ox::kVertcsDesc)

namespace {
const ox::Vertcs *vcs(const ox_object *h) { return ox::rec<ox::Vertcs>(h, OX_TAG_VERTCS); }
}  // namespace

extern "C" {

OX_API ox_object *ox_vertcs_new(const char *name, ox_object *hvdatum, ox_object *parameters[16], ox_object *unit) {
    if (name == nullptr || !ox::params_acceptable(parameters) || !ox::is_a(hvdatum, OX_TAG_DATUM | OX_TAG_VDATUM) ||
        !ox::is_type(unit, OX_TAG_UNIT))
        return nullptr;
    ox::Vertcs *v = ox::alloc_rec<ox::Vertcs>(ox::kVertcsDesc, name);
    if (v == nullptr) return nullptr;
    v->hvdatum = hvdatum;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) v->params[i] = parameters[i];
    v->unit = unit;
    return &v->h;
}

OX_API ox_object *ox_vertcs_hvdatum(const ox_object *vertcs) { return ox::field_of(vertcs, &ox::Vertcs::hvdatum); }

OX_API ox_object *ox_vertcs_unit(const ox_object *vertcs) { return ox::field_of(vertcs, &ox::Vertcs::unit); }

OX_API void ox_vertcs_parameters(const ox_object *vertcs, ox_object *parameters[16]) {
    if (parameters == nullptr) return;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) parameters[i] = nullptr;
    ox::copy_params_of<ox::Vertcs>(vertcs, parameters);
}

// Clone with another linear unit: every parameter of linear kind (the
// "Vertical_Shift") is multiplied by old factor / new factor.
OX_API ox_object *ox_vertcs_clone_alterunits(const ox_object *vertcs, const ox_object *unit) {
    const ox::Vertcs *v = vcs(vertcs);
    if (v == nullptr) return nullptr;
    const double old_f = ox_unit_factor(v->unit);
    if (!ox::is_type(unit, OX_TAG_UNIT) || ox::equal_rule(old_f, ox_unit_factor(unit))) return ox_vertcs_clone(vertcs);
    const double ratio = old_f / ox_unit_factor(unit);
    ox_object *params[OX_PARAMETER_SLOTS] = {};
    ox_object *datum = ox_hvdatum_clone(v->hvdatum);
    ox_object *new_unit = ox_unit_clone(unit);
    bool ok = datum != nullptr && new_unit != nullptr;
    for (int i = 0; i < OX_PARAMETER_SLOTS && ok; ++i) {
        if (v->params[i] == nullptr) continue;
        if ((params[i] = ox_parameter_clone(v->params[i])) == nullptr) {
            ok = false;
        } else if (params[i]->code == ox::kParVerticalShift) {
            ox_parameter_value_set(params[i], ox_parameter_value(params[i]) * ratio);
        }
    }
    ox_object *result = ok ? ox_vertcs_new(vertcs->name, datum, params, new_unit) : nullptr;
    if (result == nullptr) {
        ox_hvdatum_del(datum);
        ox_unit_del(new_unit);
        ox::params_delete(params);
    }
    return result;
}

}  // extern "C"
