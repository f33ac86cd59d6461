// Code ranges: which kind of object, which authority and which registry
// version a code belongs to.  The authority's own bands are offset by 100000
// from the public registry's band of the same kind, the custom bands by
// 200000.
#include "factory/ox_factory.h"

namespace ox {
namespace {

#define OX_EPSG(lo, hi) {lo, hi, kEpsg, kEpsgVersion}
#define OX_MAVO(lo, hi) {lo, hi, kMavo, kMavoVersion}
#define OX_CUSTOM(lo, hi) {lo, hi, kCustom, kCustomVersion}
#define OX_SET(name, ...)                                                        \
    constexpr ox_coderange name##_ranges[] = {__VA_ARGS__};                      \
    constexpr ox_coderange_set name = {                                          \
        static_cast<int32_t>(sizeof name##_ranges / sizeof name##_ranges[0]), name##_ranges}

OX_SET(kAngularUnit, OX_EPSG(9100, 9199), OX_CUSTOM(209100, 209199));
OX_SET(kLinearUnit, OX_EPSG(9000, 9099), OX_MAVO(109000, 109099), OX_CUSTOM(209000, 209099));
OX_SET(kUnit, OX_EPSG(9000, 9099), OX_EPSG(9100, 9199), OX_MAVO(109000, 109099), OX_CUSTOM(209000, 209099),
       OX_CUSTOM(209100, 209199));
OX_SET(kSpheroid, OX_EPSG(7000, 7999), OX_MAVO(107000, 107999), OX_CUSTOM(207000, 207999));
OX_SET(kDatum, OX_EPSG(6000, 6999), OX_MAVO(106000, 106999), OX_CUSTOM(206000, 206999));
OX_SET(kPrimem, OX_EPSG(8900, 8999), OX_MAVO(108900, 108999), OX_CUSTOM(208900, 208999));
OX_SET(kGeogcs, OX_EPSG(4000, 4999), OX_MAVO(37000, 37999), OX_MAVO(104000, 104999), OX_CUSTOM(204000, 204999));
OX_SET(kHtmethod, OX_MAVO(119600, 119699));
OX_SET(kMethod, OX_EPSG(9600, 9699), OX_MAVO(109600, 109699));
OX_SET(kGeogtran, OX_EPSG(1000, 1999), OX_EPSG(8000, 8899), OX_EPSG(10000, 10099), OX_EPSG(15698, 15999),
       OX_MAVO(108000, 108899), OX_CUSTOM(208000, 208899));
OX_SET(kProjection, OX_MAVO(43000, 43499));
OX_SET(kParameter, OX_MAVO(100000, 100099));
OX_SET(kProjcs, OX_EPSG(2000, 3999), OX_EPSG(20000, 32799), OX_MAVO(53000, 54999), OX_MAVO(65000, 65199),
       OX_MAVO(102000, 103999), OX_CUSTOM(202000, 203999));
OX_SET(kVdatum, OX_EPSG(5100, 5299), OX_MAVO(105100, 105299), OX_CUSTOM(205100, 205299));
OX_SET(kVertcs, OX_EPSG(5600, 5799), OX_MAVO(105600, 105799), OX_MAVO(115600, 115799), OX_CUSTOM(205600, 205799));

}  // namespace

const ox_coderange *coderange_find(const ox_coderange_set *set, int32_t code) {
    if (set == nullptr || set->ranges == nullptr) return nullptr;
    for (int32_t i = 0; i < set->count; ++i)
        if (code >= set->ranges[i].low && code <= set->ranges[i].high) return &set->ranges[i];
    return nullptr;
}

void coderange_authority(const ox_coderange_set *set, int32_t code, const char **authority,
                         const char **version) {
    const ox_coderange *r = coderange_find(set, code);
    if (r == nullptr) return;
    *authority = r->authority;
    *version = r->version;
}

void stamp(ox_object *object, const ox_coderange_set *set, int32_t code) {
    const char *authority = nullptr, *version = nullptr;
    coderange_authority(set, code, &authority, &version);
    obj_set_code(object, code, authority, version);
}

void stamp_catalogue(ox_object *object, const ox_coderange_set *set, int32_t code) {
    constexpr int32_t kAuthorityCodes = 100000;  // the authority's own codes start here
    if (coderange_find(set, code) == nullptr && code > 0 && code < kAuthorityCodes)
        obj_set_code(object, code, kEpsg, kEpsgModernVersion);
    else
        stamp(object, set, code);
}

}  // namespace ox

extern "C" {

OX_API const ox_coderange_set *ox_factory_coderanges_angular_unit(void) { return &ox::kAngularUnit; }
OX_API const ox_coderange_set *ox_factory_coderanges_linear_unit(void) { return &ox::kLinearUnit; }
OX_API const ox_coderange_set *ox_factory_coderanges_unit(void) { return &ox::kUnit; }
OX_API const ox_coderange_set *ox_factory_coderanges_spheroid(void) { return &ox::kSpheroid; }
OX_API const ox_coderange_set *ox_factory_coderanges_datum(void) { return &ox::kDatum; }
OX_API const ox_coderange_set *ox_factory_coderanges_primem(void) { return &ox::kPrimem; }
OX_API const ox_coderange_set *ox_factory_coderanges_geogcs(void) { return &ox::kGeogcs; }
OX_API const ox_coderange_set *ox_factory_coderanges_htmethod(void) { return &ox::kHtmethod; }
OX_API const ox_coderange_set *ox_factory_coderanges_method(void) { return &ox::kMethod; }
OX_API const ox_coderange_set *ox_factory_coderanges_geogtran(void) { return &ox::kGeogtran; }
OX_API const ox_coderange_set *ox_factory_coderanges_projection(void) { return &ox::kProjection; }
OX_API const ox_coderange_set *ox_factory_coderanges_parameter(void) { return &ox::kParameter; }
OX_API const ox_coderange_set *ox_factory_coderanges_projcs(void) { return &ox::kProjcs; }
OX_API const ox_coderange_set *ox_factory_coderanges_vdatum(void) { return &ox::kVdatum; }
OX_API const ox_coderange_set *ox_factory_coderanges_vertcs(void) { return &ox::kVertcs; }

OX_API int32_t ox_factory_coderanges_check(const ox_coderange_set *set, int32_t code) {
    return ox::coderange_find(set, code) != nullptr ? 1 : 0;
}

}  // extern "C"
