// Prime meridians by code.
#include "factory/ox_factory.h"

namespace ox {
namespace {

// PRIMEM,code,name,longitude (degrees east of Greenwich).
ox_object *from_edit(const EditLine &line) {
    double longitude = 0.0;
    if (!edit_number(line, 2, &longitude)) return nullptr;
    return ox_primem_new(edit_field(line, 1), longitude);
}

ox_object *from_catalogue(int32_t code) {
    const cat::PrimemRow *r = cat::find(cat::kPrimems, code);
    return r != nullptr ? ox_primem_new(r->name, r->longitude) : nullptr;
}

constexpr KindBuilder kPrimem = {kEditPrimem, from_edit, from_catalogue,
                                 ox_factory_coderanges_primem, nullptr, nullptr, nullptr, false, false};

}  // namespace
}  // namespace ox

extern "C" OX_API ox_object *ox_factory_primem(int32_t code) { return ox::factory_build(ox::kPrimem, code); }
