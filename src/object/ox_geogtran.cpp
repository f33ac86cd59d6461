// Geographic transformation: source and target geographic systems, a method,
// sixteen parameter slots, and the grid constants of a grid method.
#include <cstddef>

#include "object/ox_object.h"
#include "transform/ox_gtconstants.h"
#include "transform/ox_methlist.h"

namespace ox {
namespace {

// Old transformation names replaced on reading.
constexpr RenameRow kRenames[] = {
    {"Tahiti_To_WGS_1984_1", "Tahiti_1952_To_WGS_1984_1"},
    {"Tahaa_To_WGS_1984_1", "Tahaa_1954_To_WGS_1984_1"},
    {"K0_1949_To_WGS_1984_1", "Kerguelen_Island_1949_To_WGS_1984_1"},
    {"Piton_des_Neiges_To_WGS_1984_1", "Reunion_1947_To_WGS_1984_1"},
    {"Piton_des_Neiges_To_RGR_1992_1", "Reunion_1947_To_RGR_1992_1"},
    {"RGR_1992_To_Piton_des_Neiges_1", "RGR_1992_To_Reunion_1947_1"},
    {"Amersfoort_To_WGS_1984_3X", "Amersfoort_To_WGS_1984_3"},
    {"NAD_1983_CSRS98_To_WGS_1984", "NAD_1983_CSRS_To_WGS_1984"},
    {"ATS_1977_To_NAD_1983_CSRS98_NTv2_New_Brunswick", "ATS_1977_To_NAD_1983_CSRS_NTv2_New_Brunswick"},
    {"NAD_1983_CSRS98_To_WGS_1984_1", "NAD_1983_CSRS_To_WGS_1984_1"},
    {"NAD_1983_To_NAD_1983_CSRS98_1", "NAD_1983_To_NAD_1983_CSRS_1"},
    {"NAD_1927_To_NAD_1983_CSRS98_1", "NAD_1927_To_NAD_1983_CSRS_1"},
    {"NAD_1927_CGQ77_To_NAD_1983_CSRS98", "NAD_1927_CGQ77_To_NAD_1983_CSRS"},
    {"ATS_1977_To_NAD_1983_CSRS98_2_NTv2_Prince_Edward_Is", "ATS_1977_To_NAD_1983_CSRS_2_NTv2_Prince_Edward_Is"},
    {"NAD_1927_To_NAD_1983_CSRS98_2", "NAD_1927_To_NAD_1983_CSRS_2"},
    {"NAD_1983_To_NAD_1983_CSRS98_2", "NAD_1983_To_NAD_1983_CSRS_2"},
    {"NAD_1983_To_NAD_1983_CSRS98_3", "NAD_1983_To_NAD_1983_CSRS_3"},
    {"ATS_1977_To_NAD_1983_CSRS98_NTv2_Nova_Scotia", "ATS_1977_To_NAD_1983_CSRS_NTv2_Nova_Scotia"},
    {"NAD_1983_CSRS98_To_WGS_1984_2", "NAD_1983_CSRS_To_WGS_1984_2"},
    {"NAD_1983_To_NAD_1983_CSRS98_4", "NAD_1983_To_NAD_1983_CSRS_4"},
    {"ATS_1977_To_NAD_1983_CSRS98_NTv2_Maritimes", "ATS_1977_To_NAD_1983_CSRS_NTv2_Maritimes"},
    {nullptr, nullptr},
};

void free_constants(void *c) { gt_delete(static_cast<GtConstants *>(c)); }

constexpr FieldDesc kFields[] = {
    fd_sub(offsetof(Geogtran, geogcs1), OX_TAG_GEOGCS),
    fd_sub(offsetof(Geogtran, geogcs2), OX_TAG_GEOGCS),
    fd_sub(offsetof(Geogtran, method), OX_TAG_METHOD),
    fd_params(offsetof(Geogtran, params)),
    fd_constants(offsetof(Geogtran, constants)),
};
ox_object *build(const Parts &p) {
    return ox_geogtran_new(p.name, p.sub[0], p.sub[1], p.sub[2], const_cast<ox_object **>(p.params));
}

}  // namespace

const TypeDesc kGeogtranDesc = {OX_TAG_GEOGTRAN, "GEOGTRAN", sizeof(Geogtran), kFields, 5, 2, true, true,
                                kRenames, build, nullptr, free_constants, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(geogtran, OX_TAG_GEOGTRAN, ox::kGeogtranDesc)

namespace {
using ox::Geogtran;
Geogtran *gt(const ox_object *h) { return ox::rec<Geogtran>(const_cast<ox_object *>(h), OX_TAG_GEOGTRAN); }
}  // namespace

extern "C" {

OX_API ox_object *ox_geogtran_new(const char *name, ox_object *geogcs1, ox_object *geogcs2, ox_object *method,
                                  ox_object *parameters[16]) {
    if (name == nullptr || !ox::params_acceptable(parameters) || !ox::is_type(geogcs1, OX_TAG_GEOGCS) ||
        !ox::is_type(geogcs2, OX_TAG_GEOGCS) || !ox::is_type(method, OX_TAG_METHOD))
        return nullptr;
    Geogtran *g = ox::alloc_rec<Geogtran>(ox::kGeogtranDesc, name);
    if (g == nullptr) return nullptr;
    g->geogcs1 = geogcs1;
    g->geogcs2 = geogcs2;
    g->method = method;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) g->params[i] = parameters[i];
    g->constants = nullptr;
    return &g->h;
}

OX_API ox_object *ox_geogtran_geogcs1(const ox_object *geogtran) { return ox::field_of(geogtran, &ox::Geogtran::geogcs1); }

OX_API ox_object *ox_geogtran_geogcs2(const ox_object *geogtran) { return ox::field_of(geogtran, &ox::Geogtran::geogcs2); }

OX_API ox_object *ox_geogtran_method(const ox_object *geogtran) { return ox::field_of(geogtran, &ox::Geogtran::method); }

OX_API void ox_geogtran_parameters(const ox_object *geogtran, ox_object *parameters[16]) {
    ox::copy_params_of<Geogtran>(geogtran, parameters);
}

OX_API int32_t ox_geogtran_isconstloaded(const ox_object *geogtran) {
    const Geogtran *g = gt(geogtran);
    return g && g->constants ? 1 : 0;
}

OX_API void ox_geogtran_unload_constants(ox_object *geogtran) {
    Geogtran *g = gt(geogtran);
    if (g == nullptr) return;
    ox::gt_delete(g->constants);
    g->constants = nullptr;
}

// Loads the grid of a grid method into a new constants block; the grid is
// named by the parameter in slot 15 ("Dataset_..."), empty when there is none.
OX_API int32_t ox_geogtran_load_constants(ox_object *geogtran) {
    Geogtran *g = gt(geogtran);
    if (g == nullptr) return 0;
    ox_geogtran_unload_constants(geogtran);
    const ox::LoadConstantsRoutine load = ox::method_load_constants(g->method);
    if (load == nullptr) return 0;
    const char *grid_name = g->params[15] ? g->params[15]->name : "";
    ox::GtConstants *block = ox::gt_new();
    if (block == nullptr) return 0;
    const int32_t rc = load(block, grid_name);
    if (rc != 0)
        g->constants = block;
    else
        ox::gt_delete(block);
    return rc;
}

}  // extern "C"
