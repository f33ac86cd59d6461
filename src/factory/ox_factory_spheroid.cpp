// Spheroids by code.
#include "factory/ox_factory.h"

namespace ox {
namespace {

// SPHEROID,code,name,semi-major axis,flattening or inverse flattening: a
// second number greater than 1 is an inverse flattening.
ox_object *from_edit(const EditLine &line) {
    double axis = 0.0, second = 0.0;
    if (!edit_number(line, 2, &axis) || !edit_number(line, 3, &second)) return nullptr;
    return ox_spheroid_new(edit_field(line, 1), axis, second > 1.0 ? 1.0 / second : second);
}

ox_object *from_catalogue(int32_t code) {
    const cat::SpheroidRow *r = cat::find(cat::kSpheroids, code);
    if (r == nullptr) return nullptr;
    const double flattening = r->inverse_flattening == 0.0 ? 0.0 : 1.0 / r->inverse_flattening;
    return ox_spheroid_new(r->name, r->axis, flattening);
}

constexpr KindBuilder kSpheroid = {kEditSpheroid, from_edit, from_catalogue,
                                   ox_factory_coderanges_spheroid, &cat::kReplacedSpheroid, nullptr, nullptr,
                                   false, false};

}  // namespace
}  // namespace ox

extern "C" OX_API ox_object *ox_factory_spheroid(int32_t code) { return ox::factory_build(ox::kSpheroid, code); }
