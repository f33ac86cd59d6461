// Geographic coordinate systems by code: datum, prime meridian and angular
// unit, each through its own builder.
#include "factory/ox_factory.h"

namespace ox {
namespace {

constexpr int32_t kSt87OuveaGeogcs = 4635;
constexpr int32_t kSt87OuveaDatum = 6635;
constexpr int32_t kGreenwichCode = 8901;
constexpr int32_t kDegreeUnitCode = 9102;

ox_object *assemble(const char *name, int32_t datum_code, int32_t primem_code, int32_t unit_code) {
    return geogcs_from_parts(name, ox_factory_datum(datum_code), ox_factory_primem(primem_code),
                             ox_factory_unit(unit_code));
}

// GEOGCS,code,name,datum code,prime meridian code,angular unit code.
ox_object *from_edit(const EditLine &line) {
    if (line.count < 5) return nullptr;
    return assemble(edit_field(line, 1), edit_code(line.field[2]), edit_code(line.field[3]),
                    edit_code(line.field[4]));
}

ox_object *from_catalogue(int32_t code) {
    const cat::GeogcsRow *r = cat::find(cat::kGeogcs, code);
    return r != nullptr ? assemble(r->name, r->datum, r->primem, r->unit) : nullptr;
}

// The superseded ST87 Ouvea system: it carries the authority of its code but
// the code 0.
ox_object *special(int32_t code) {
    if (code != kSt87OuveaGeogcs) return nullptr;
    ox_object *geogcs = assemble("GCS_ST87_Ouvea", kSt87OuveaDatum, kGreenwichCode, kDegreeUnitCode);
    if (geogcs != nullptr) {
        stamp(geogcs, ox_factory_coderanges_geogcs(), code);
        obj_set_code(geogcs, 0, geogcs->authority_name_ref, geogcs->authority_version_ref);
        obj_set_status(geogcs, OX_STATUS_SUPERSEDED);
    }
    return geogcs;
}

constexpr KindBuilder kGeogcs = {kEditGeogcs, from_edit, from_catalogue,
                                 ox_factory_coderanges_geogcs, &cat::kReplacedGeogcs, &cat::kSupersededGeogcs,
                                 special, false, false};

}  // namespace

ox_object *geogcs_from_parts(const char *name, ox_object *datum, ox_object *primem, ox_object *unit) {
    ox_object *geogcs = ox_geogcs_new(name, datum, primem, unit);
    if (geogcs == nullptr) {
        ox_datum_del(datum);
        ox_primem_del(primem);
        ox_unit_del(unit);
    }
    return geogcs;
}

}  // namespace ox

extern "C" OX_API ox_object *ox_factory_geogcs(int32_t code) { return ox::factory_build(ox::kGeogcs, code); }
