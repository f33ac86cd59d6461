// The summary of a projected system (ox_pcsinfo_generate): what a program
// shows a person about it, gathered from the system's parts, its
// projection's registry row (family, what it preserves) and its horizon.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <limits>

#include "object/ox_object.h"
#include "projection/ox_math.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projlist.h"

namespace ox {
namespace {

constexpr const char *kFamilyNames[] = {"Cylindrical", "Pseudocylindrical", "Conic",      "Pseudoconic",
                                        "Azimuthal",   "Polyconic",         "Polyhedral", "Other"};
static_assert(static_cast<int>(Family::kCylindrical) == OX_FAMILY_CYLINDRICAL &&
                  static_cast<int>(Family::kPolyhedral) == OX_FAMILY_POLYHEDRAL &&
                  static_cast<int>(Family::kOther) == OX_FAMILY_OTHER,
              "the public family numbers are the registry's");

struct PreservesText {
    Preserves preserves;
    int32_t bits;
    const char *name;
};
constexpr PreservesText kPreserves[] = {
    {Preserves::kShape, OX_PRESERVES_SHAPE, "conformal"},
    {Preserves::kArea, OX_PRESERVES_AREA, "equal-area"},
    {Preserves::kDistance, OX_PRESERVES_DISTANCE, "equidistant"},
    {Preserves::kNothing, 0, "compromise"},
};

template <size_t N>
void copy_text(char (&to)[N], const char *from) {
    std::snprintf(to, N, "%s", from);
}

// The value of the first of `slots` the system has, in degrees, or NaN.
double angle_parameter(ox_object *const parameters[16], std::initializer_list<int> slots, double angular_factor) {
    for (int slot : slots)
        if (parameters[slot] != nullptr) return ox_parameter_value(parameters[slot]) * angular_factor / kDegree;
    return std::numeric_limits<double>::quiet_NaN();
}

// The horizon's extent, or NaN when there is none.
void horizon_extent(const ox_object *projcs, int32_t kind, double extent[4]) {
    ox_horizon *h = ox_generate_horizon(projcs, kind);
    if (ox_horizon_extent(h, extent) == 0)
        for (int k = 0; k < 4; ++k) extent[k] = std::numeric_limits<double>::quiet_NaN();
    ox_horizon_del(h);
}

}  // namespace
}  // namespace ox

extern "C" OX_API int32_t ox_pcsinfo_generate(const ox_object *projcs, ox_pcsinfo *info) {
    using namespace ox;
    if (info == nullptr) return 0;
    std::memset(info, 0, sizeof *info);
    if (!ox_projcs_p(projcs)) return 0;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ox_projcs_name(projcs, info->name);
    const ox_object *projection = ox_projcs_projection(projcs);
    ox_projection_name(projection, info->projection);
    const ProjRow *row = projection != nullptr && projection->code > 0 ? projlist_find_by_code(projection->code)
                                                                       : nullptr;
    info->projection_code = row != nullptr ? row->code : -1;
    const Family family = row != nullptr ? row->family : Family::kOther;
    info->family = static_cast<int32_t>(family);
    copy_text(info->family_name, kFamilyNames[info->family]);
    const Preserves preserves = row != nullptr ? row->preserves : Preserves::kNothing;
    for (const PreservesText &p : kPreserves)
        if (p.preserves == preserves) {
            info->preserves = p.bits;
            copy_text(info->preserves_name, p.name);
        }

    ProjSetup s;
    projcs_setup(projcs, &s);
    info->linear_factor = s.linear_factor;
    info->angular_factor = s.angular_factor;
    ox_unit_name(ox_projcs_unit(projcs), info->linear_unit);
    const ox_object *geogcs = ox_projcs_geogcs(projcs);
    ox_unit_name(ox_geogcs_unit(geogcs), info->angular_unit);
    const ox_object *primem = ox_geogcs_primem(geogcs);
    info->prime_meridian = ox_primem_longitude(primem);

    ox_object *parameters[16];
    ox_projcs_parameters(projcs, parameters);
    for (int slot = 0; slot < OX_PARAMETER_SLOTS; ++slot) {
        if (parameters[slot] == nullptr) continue;
        ox_parameter_name(parameters[slot], info->parameter_names[info->parameter_count]);
        info->parameter_values[info->parameter_count++] = ox_parameter_value(parameters[slot]);
    }

    // The central meridian and latitude of origin: the parameters that say
    // them, else the point at the natural origin.
    double origin[2] = {0.0, 0.0};
    ox_projection_inverse(projection)(s.spheroid, s.parameters, 1, origin, nullptr, nullptr);
    const double cm = angle_parameter(parameters, {OX_SLOT(central_meridian), OX_SLOT(longitude_of_center)},
                                      s.angular_factor);
    const double lat0 = angle_parameter(parameters, {OX_SLOT(latitude_of_origin), OX_SLOT(latitude_of_center)},
                                        s.angular_factor);
    info->central_meridian = std::isnan(cm) ? (std::isfinite(origin[0]) ? origin[0] / kDegree : nan) : cm;
    info->origin_latitude = std::isnan(lat0) ? (std::isfinite(origin[1]) ? origin[1] / kDegree : nan) : lat0;

    horizon_extent(projcs, OX_HORIZON_PROJECTED, info->extent);
    horizon_extent(projcs, OX_HORIZON_GEOGRAPHIC, info->geographic_extent);
    for (double &v : info->geographic_extent) v = v * s.angular_factor / kDegree;
    return 1;
}
