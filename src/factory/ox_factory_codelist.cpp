// Code lists: the distinct codes of a kind's definition-string table,
// ascending, ended by 0.
#include "factory/ox_factory.h"
#include "object/ox_memory.h"

namespace ox {
namespace {

int32_t *codelist(cat::DefKind kind, const ox_coderange_set *filter, int32_t *count) {
    if (count != nullptr) *count = 0;
    const cat::Table<cat::DefCode> &codes = cat::kDefTables[kind].codes;  // sorted, one row per code
    int32_t *list = mem_new_array<int32_t>(static_cast<size_t>(codes.count) + 1);
    if (list == nullptr) return nullptr;
    int32_t n = 0;
    for (int32_t i = 0; i < codes.count; ++i)
        if (filter == nullptr || coderange_find(filter, codes.rows[i].code) != nullptr) list[n++] = codes.rows[i].code;
    list[n] = 0;
    if (count != nullptr) *count = n;
    return list;
}

}  // namespace
}  // namespace ox

extern "C" {

OX_API int32_t *ox_factory_geogcs_codelist(int32_t *count) { return ox::codelist(ox::cat::kDefGeogcs, nullptr, count); }
OX_API int32_t *ox_factory_projcs_codelist(int32_t *count) { return ox::codelist(ox::cat::kDefProjcs, nullptr, count); }
OX_API int32_t *ox_factory_vertcs_codelist(int32_t *count) { return ox::codelist(ox::cat::kDefVertcs, nullptr, count); }
OX_API int32_t *ox_factory_datum_codelist(int32_t *count) { return ox::codelist(ox::cat::kDefDatum, nullptr, count); }
OX_API int32_t *ox_factory_vdatum_codelist(int32_t *count) { return ox::codelist(ox::cat::kDefVdatum, nullptr, count); }
OX_API int32_t *ox_factory_geogtran_codelist(int32_t *count) {
    return ox::codelist(ox::cat::kDefGeogtran, nullptr, count);
}
OX_API int32_t *ox_factory_angular_unit_codelist(int32_t *count) {
    return ox::codelist(ox::cat::kDefUnit, ox_factory_coderanges_angular_unit(), count);
}
OX_API int32_t *ox_factory_linear_unit_codelist(int32_t *count) {
    return ox::codelist(ox::cat::kDefUnit, ox_factory_coderanges_linear_unit(), count);
}
OX_API int32_t *ox_factory_primem_codelist(int32_t *count) { return ox::codelist(ox::cat::kDefPrimem, nullptr, count); }
OX_API int32_t *ox_factory_spheroid_codelist(int32_t *count) {
    return ox::codelist(ox::cat::kDefSpheroid, nullptr, count);
}
OX_API int32_t *ox_factory_method_codelist(int32_t *count) { return ox::codelist(ox::cat::kDefMethod, nullptr, count); }
OX_API int32_t *ox_factory_htmethod_codelist(int32_t *count) {
    return ox::codelist(ox::cat::kDefHtmethod, nullptr, count);
}
OX_API int32_t *ox_factory_projection_codelist(int32_t *count) {
    return ox::codelist(ox::cat::kDefProjection, nullptr, count);
}
OX_API int32_t *ox_factory_parameter_codelist(int32_t *count) {
    return ox::codelist(ox::cat::kDefParameter, nullptr, count);
}
OX_API void ox_factory_codelist_del(int32_t *list) { ox::mem_free(list); }

}  // extern "C"
