// Units (linear and angular) by code.
#include "factory/ox_factory.h"

namespace ox {
namespace {

// UNIT,code,name,factor (metres or radians per unit).
ox_object *from_edit(const EditLine &line) {
    double factor = 0.0;
    edit_number(line, 2, &factor);  // a missing factor is refused by the constructor
    return ox_unit_new(edit_field(line, 1), factor);
}

ox_object *from_catalogue(int32_t code) {
    const cat::UnitRow *r = cat::find(cat::kUnits, code);
    return r != nullptr ? ox_unit_new(r->name, r->factor) : nullptr;
}

// A unit line that the constructor refuses is the answer (null): the
// catalogue is not consulted.
constexpr KindBuilder kUnit = {kEditUnit, from_edit, from_catalogue, ox_factory_coderanges_unit,
                               nullptr,   nullptr, nullptr, false, true};

}  // namespace
}  // namespace ox

extern "C" OX_API ox_object *ox_factory_unit(int32_t code) { return ox::factory_build(ox::kUnit, code); }
