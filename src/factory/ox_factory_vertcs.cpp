// Vertical coordinate systems by code: on a vertical datum, or (second
// catalogue) on a horizontal datum for ellipsoidal heights.
#include "factory/ox_factory.h"
#include "projection/ox_parmlist.h"

namespace ox {
namespace {

ox_object *assemble(const char *name, ox_object *datum, int32_t unit_code, ox_object *params[OX_PARAMETER_SLOTS]) {
    ox_object *unit = ox_factory_unit(unit_code);
    ox_object *vertcs = datum != nullptr ? ox_vertcs_new(name, datum, params, unit) : nullptr;
    if (vertcs == nullptr) {
        ox_hvdatum_del(datum);
        ox_unit_del(unit);
        params_delete(params);
    }
    return vertcs;
}

ox_object *from_row(const cat::VertcsRow *r, ox_object *(*datum_builder)(int32_t)) {
    if (r == nullptr) return nullptr;
    ox_object *params[OX_PARAMETER_SLOTS];
    if (!factory_params(&cat::kParams[r->first], r->count, params)) return nullptr;
    return assemble(r->name, datum_builder(r->datum), r->unit, params);
}

// VERTCS,code,name,datum code,unit code[,parameter code=value...]: a code in
// the vertical datum bands names a vertical datum, one in the datum bands a
// horizontal datum.  Without parameters the system has no shift and points
// up.
ox_object *from_edit(const EditLine &line) {
    if (line.count < 4) return nullptr;
    const int32_t datum_code = edit_code(line.field[2]);
    ox_object *datum = nullptr;
    if (ox_factory_coderanges_check(ox_factory_coderanges_vdatum(), datum_code))
        datum = ox_factory_vdatum(datum_code);
    else if (ox_factory_coderanges_check(ox_factory_coderanges_datum(), datum_code))
        datum = ox_factory_datum(datum_code);
    ox_object *params[OX_PARAMETER_SLOTS] = {};
    bool ok = true;
    for (int i = 4; i < line.count && ok; ++i) {
        ox_object *p = edit_parameter(line.field[i]);
        ok = p != nullptr && put_parameter(params, p);
    }
    if (ok && line.count == 4) {
        const cat::ParamValue defaults[] = {{kParVerticalShift, 0.0, nullptr}, {kParDirection, 1.0, nullptr}};
        ok = factory_params(defaults, 2, params);
    }
    if (!ok) {
        params_delete(params);
        ox_hvdatum_del(datum);
        return nullptr;
    }
    return assemble(line.field[1], datum, edit_code(line.field[3]), params);
}

ox_object *from_catalogue(int32_t code) {
    if (ox_object *h = from_row(cat::find(cat::kVertcs, code), ox_factory_vdatum)) return h;
    return from_row(cat::find(cat::kVertcsHdatum, code), ox_factory_datum);
}

// An edited vertical system is stamped with the code asked for.
constexpr KindBuilder kVertcs = {kEditVertcs, from_edit, from_catalogue,
                                 ox_factory_coderanges_vertcs, &cat::kReplacedVertcs, nullptr, nullptr,
                                 true, false};

}  // namespace
}  // namespace ox

extern "C" OX_API ox_object *ox_factory_vertcs(int32_t code) { return ox::factory_build(ox::kVertcs, code); }
