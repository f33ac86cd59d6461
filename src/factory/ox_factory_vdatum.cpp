// Vertical datums by code.
#include "factory/ox_factory.h"

namespace ox {
namespace {

// VDATUM,code,name.
ox_object *from_edit(const EditLine &line) { return ox_vdatum_new(edit_field(line, 1)); }

ox_object *from_catalogue(int32_t code) {
    const cat::VdatumRow *r = cat::find(cat::kVdatums, code);
    return r != nullptr ? ox_vdatum_new(r->name) : nullptr;
}

constexpr KindBuilder kVdatum = {kEditVdatum, from_edit, from_catalogue,
                                 ox_factory_coderanges_vdatum, &cat::kReplacedVdatum, nullptr, nullptr,
                                 false, false};

}  // namespace
}  // namespace ox

extern "C" OX_API ox_object *ox_factory_vdatum(int32_t code) { return ox::factory_build(ox::kVdatum, code); }
