// Code to definition string: the canonical name of a code is the first of
// its names in the name order of its kind's table; codes that only the
// superseded-names table knows resolve there.
#include "factory/ox_factory.h"

namespace ox {

// The definition-string table of the kind whose code range holds `code`,
// tested in the fixed order of the kinds; null when no range holds it.
const cat::DefTable *defstring_table(int32_t code) {
    static const struct {
        const ox_coderange_set *(*ranges)();
        cat::DefKind kind;
    } kOrder[] = {
        {ox_factory_coderanges_geogcs, cat::kDefGeogcs},         {ox_factory_coderanges_projcs, cat::kDefProjcs},
        {ox_factory_coderanges_vertcs, cat::kDefVertcs},         {ox_factory_coderanges_datum, cat::kDefDatum},
        {ox_factory_coderanges_vdatum, cat::kDefVdatum},         {ox_factory_coderanges_geogtran, cat::kDefGeogtran},
        {ox_factory_coderanges_linear_unit, cat::kDefUnit},      {ox_factory_coderanges_angular_unit, cat::kDefUnit},
        {ox_factory_coderanges_primem, cat::kDefPrimem},         {ox_factory_coderanges_spheroid, cat::kDefSpheroid},
        {ox_factory_coderanges_method, cat::kDefMethod},         {ox_factory_coderanges_htmethod, cat::kDefHtmethod},
        {ox_factory_coderanges_projection, cat::kDefProjection}, {ox_factory_coderanges_parameter, cat::kDefParameter},
    };
    for (const auto &k : kOrder)
        if (coderange_find(k.ranges(), code) != nullptr) return &cat::kDefTables[k.kind];
    return nullptr;
}

}  // namespace ox

extern "C" OX_API const char *ox_factory_int_to_defstring(int32_t code) {
    if (code == 0) return nullptr;
    if (const ox::cat::DefTable *t = ox::defstring_table(code))
        if (const ox::cat::DefCode *c = ox::cat::find(t->codes, code)) return t->names.rows[c->row].name;
    if (const ox::cat::DefCode *c = ox::cat::find(ox::cat::kSupersededCodes, code))
        return ox::cat::kSupersededNames.rows[c->row].name;
    return nullptr;
}
