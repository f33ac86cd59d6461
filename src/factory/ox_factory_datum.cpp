// Horizontal datums by code.  The spheroid is built through its own
// builder, so a spheroid object-edit file changes every datum built on it.
#include "factory/ox_factory.h"

namespace ox {
namespace {

constexpr int32_t kSt87OuveaDatum = 6635;
constexpr int32_t kInternational1924 = 7022;

ox_object *datum_on(const char *name, int32_t spheroid_code) {
    ox_object *spheroid = ox_factory_spheroid(spheroid_code);
    ox_object *datum = ox_datum_new(name, spheroid);
    if (datum == nullptr) ox_spheroid_del(spheroid);
    return datum;
}

// DATUM,code,name,spheroid code.
ox_object *from_edit(const EditLine &line) {
    const char *spheroid = edit_field(line, 2);
    return spheroid != nullptr ? datum_on(edit_field(line, 1), edit_code(spheroid)) : nullptr;
}

ox_object *from_catalogue(int32_t code) {
    const cat::DatumRow *r = cat::find(cat::kDatums, code);
    return r != nullptr ? datum_on(r->name, r->spheroid) : nullptr;
}

// The superseded ST87 Ouvea datum (International 1924), still built for the
// systems defined on it.
ox_object *special(int32_t code) {
    if (code != kSt87OuveaDatum) return nullptr;
    ox_object *datum = datum_on("D_ST87_Ouvea", kInternational1924);
    if (datum != nullptr) {
        stamp(datum, ox_factory_coderanges_datum(), code);
        obj_set_status(datum, OX_STATUS_SUPERSEDED);
    }
    return datum;
}

constexpr KindBuilder kDatum = {kEditDatum, from_edit, from_catalogue,
                                ox_factory_coderanges_datum, &cat::kReplacedDatum, &cat::kSupersededDatum, special,
                                false, false};

}  // namespace
}  // namespace ox

extern "C" OX_API ox_object *ox_factory_datum(int32_t code) { return ox::factory_build(ox::kDatum, code); }
