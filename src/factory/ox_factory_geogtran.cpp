// Geographic transformations by code: both geographic systems, the method
// and its parameters (a grid method's parameter is named after its grid).
#include <cstring>

#include "factory/ox_factory.h"
#include "projection/ox_parmlist.h"

namespace ox {
namespace {

constexpr char kDatasetPrefix[] = "Dataset_";

ox_object *assemble(const char *name, int32_t geogcs1_code, int32_t geogcs2_code, int32_t method_code,
                    ox_object *params[OX_PARAMETER_SLOTS]) {
    ox_object *geogcs1 = ox_factory_geogcs(geogcs1_code);
    ox_object *geogcs2 = ox_factory_geogcs(geogcs2_code);
    ox_object *method = ox_factory_method(method_code);
    ox_object *geogtran = ox_geogtran_new(name, geogcs1, geogcs2, method, params);
    if (geogtran == nullptr) {
        ox_geogcs_del(geogcs1);
        ox_geogcs_del(geogcs2);
        ox_method_del(method);
        params_delete(params);
    }
    return geogtran;
}

// The grid parameter of an edit line: a field "Dataset_<grid>".
ox_object *edit_grid(const char *field) {
    if (std::strncmp(field, kDatasetPrefix, sizeof kDatasetPrefix - 1) != 0 ||
        field[sizeof kDatasetPrefix - 1] == '\0')
        return nullptr;
    ox_object *p = ox_factory_parameter(kParDataset);
    if (p != nullptr) ox_parameter_name_set(p, field);
    return p;
}

// GEOGTRAN,code,name,source geographic code,target geographic code,method
// code, then "parameter code=value" fields and, for a grid method, a field
// "Dataset_<grid>".
ox_object *from_edit(const EditLine &line) {
    if (line.count < 5) return nullptr;
    ox_object *params[OX_PARAMETER_SLOTS] = {};
    for (int i = 5; i < line.count; ++i) {
        ox_object *p = std::strchr(line.field[i], '=') != nullptr ? edit_parameter(line.field[i])
                                                                   : edit_grid(line.field[i]);
        if (p == nullptr || !put_parameter(params, p)) {
            params_delete(params);
            return nullptr;
        }
    }
    return assemble(line.field[1], edit_code(line.field[2]), edit_code(line.field[3]), edit_code(line.field[4]),
                    params);
}

ox_object *from_catalogue(int32_t code) {
    const cat::GeogtranRow *r = cat::find(cat::kGeogtrans, code);
    if (r == nullptr) return nullptr;
    ox_object *params[OX_PARAMETER_SLOTS];
    if (!factory_params(&cat::kParams[r->first], r->count, params)) return nullptr;
    return assemble(r->name, r->geogcs1, r->geogcs2, r->method, params);
}

constexpr KindBuilder kGeogtran = {kEditGeogtran, from_edit, from_catalogue,
                                   ox_factory_coderanges_geogtran, &cat::kReplacedGeogtran,
                                   &cat::kSupersededGeogtran, nullptr, false, false};

}  // namespace
}  // namespace ox

extern "C" OX_API ox_object *ox_factory_geogtran(int32_t code) { return ox::factory_build(ox::kGeogtran, code); }
