// Parameter: a name and a value; its code and slot come from the parameter list.
#include <cstddef>

#include "object/ox_object.h"
#include "object/ox_strings.h"
#include "projection/ox_parmlist.h"

namespace ox {
namespace {
constexpr FieldDesc kFields[] = {fd_double(offsetof(Parameter, value))};
ox_object *build(const Parts &p) { return ox_parameter_new(p.name, p.d[0]); }
}  // namespace

const TypeDesc kParameterDesc = {OX_TAG_PARAMETER, "PARAMETER", sizeof(Parameter), kFields, 1, 3, true, true,
                                 nullptr, build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(parameter, OX_TAG_PARAMETER, ox::kParameterDesc)

extern "C" {

OX_API ox_object *ox_parameter_new(const char *name, double value) {
    ox::Parameter *p = ox::alloc_rec<ox::Parameter>(ox::kParameterDesc, name);
    if (p == nullptr) return nullptr;
    p->value = value;
    ox::parmlist_set_code(&p->h);
    return &p->h;
}

OX_API double ox_parameter_value(const ox_object *parameter) { return ox::field_of(parameter, &ox::Parameter::value, 0.0); }

OX_API int32_t ox_parameter_value_set(ox_object *parameter, double value) {
    ox::Parameter *p = ox::rec<ox::Parameter>(parameter, OX_TAG_PARAMETER);
    if (p == nullptr) return 0;
    p->value = value;
    return 1;
}

// Renames a parameter without looking its code up again: it keeps the code,
// and so the slot, of its old name.
OX_API int32_t ox_parameter_name_set(ox_object *parameter, const char *name) {
    if (!ox::name_writable(name) || !ox::is_type(parameter, OX_TAG_PARAMETER)) return 0;
    ox::copy_bounded(parameter->name, name, OX_NAME_SIZE);
    return 1;
}

}  // extern "C"
