// The parameter list and the parameter object's registry-side operations.
#include "projection/ox_parmlist.h"

#include <cstring>

#include "object/ox_object.h"
#include "object/ox_registry.h"
#include "object/ox_strings.h"
#include "projection/ox_projlist.h"

namespace ox {

namespace {


// Stored order matters: a name look-up takes the first match.
constexpr ParmRow kRows[] = {
    {{kParFalseEasting, kMavo, kMavoVersion, "False_Easting"}, 0.0, 0},
    {{kParFalseNorthing, kMavo, kMavoVersion, "False_Northing"}, 0.0, 1},
    {{kParVerticalShift, kMavo, kMavoVersion, "Vertical_Shift"}, 0.0, 0},
    {{kParDirection, kMavo, kMavoVersion, "Direction"}, 1.0, 1},
    {{kParCentralMeridian, kMavo, kMavoVersion, "Central_Meridian"}, 0.0, 2},
    {{kParLongitudeOfOrigin, kMavo, kMavoVersion, "Longitude_Of_Origin"}, 0.0, 2},
    {{kParStandardParallel1, kMavo, kMavoVersion, "Standard_Parallel_1"}, 60.0, 3},
    {{kParStandardParallel2, kMavo, kMavoVersion, "Standard_Parallel_2"}, 60.0, 4},
    {{kParScaleFactor, kMavo, kMavoVersion, "Scale_Factor"}, 1.0, 5},
    {{kParCentralParallel, kMavo, kMavoVersion, "Central_Parallel"}, 0.0, 6},
    {{kParLatitudeOfOrigin, kMavo, kMavoVersion, "Latitude_Of_Origin"}, 0.0, 6},
    {{kParAzimuth, kMavo, kMavoVersion, "Azimuth"}, 45.0, 7},
    {{kParHeight, kMavo, kMavoVersion, "Height"}, 0.0, 15},
    {{kParOption, kMavo, kMavoVersion, "Option"}, 0.0, 15},
    {{kParLatitudeOf1stPoint, kMavo, kMavoVersion, "Latitude_Of_1st_Point"}, 0.0, 3},
    {{kParLatitudeOf2ndPoint, kMavo, kMavoVersion, "Latitude_Of_2nd_Point"}, 60.0, 4},
    {{kParLongitudeOf1stPoint, kMavo, kMavoVersion, "Longitude_Of_1st_Point"}, 0.0, 8},
    {{kParLongitudeOf2ndPoint, kMavo, kMavoVersion, "Longitude_Of_2nd_Point"}, 60.0, 9},
    {{kParLongitudeOfCenter, kMavo, kMavoVersion, "Longitude_Of_Center"}, -75.0, 10},
    {{kParLatitudeOfCenter, kMavo, kMavoVersion, "Latitude_Of_Center"}, 40.0, 11},
    {{kParPseudoStandardParallel1, kMavo, kMavoVersion, "Pseudo_Standard_Parallel_1"}, 60.0, 3},
    {{kParXYPlaneRotation, kMavo, kMavoVersion, "XY_Plane_Rotation"}, 0.0, 14},
    {{kParXScale, kMavo, kMavoVersion, "X_Scale"}, 1.0, 12},
    {{kParYScale, kMavo, kMavoVersion, "Y_Scale"}, 1.0, 13},
    {{kParXAxisTranslation, kMavo, kMavoVersion, "X_Axis_Translation"}, 0.0, 0},
    {{kParYAxisTranslation, kMavo, kMavoVersion, "Y_Axis_Translation"}, 0.0, 1},
    {{kParZAxisTranslation, kMavo, kMavoVersion, "Z_Axis_Translation"}, 0.0, 2},
    {{kParXAxisRotation, kMavo, kMavoVersion, "X_Axis_Rotation"}, 0.0, 3},
    {{kParYAxisRotation, kMavo, kMavoVersion, "Y_Axis_Rotation"}, 0.0, 4},
    {{kParZAxisRotation, kMavo, kMavoVersion, "Z_Axis_Rotation"}, 0.0, 5},
    {{kParScaleDifference, kMavo, kMavoVersion, "Scale_Difference"}, 0.0, 6},
    {{kParXCoordOfRotationOrigin, kMavo, kMavoVersion, "X_Coordinate_of_Rotation_Origin"}, 0.0, 7},
    {{kParYCoordOfRotationOrigin, kMavo, kMavoVersion, "Y_Coordinate_of_Rotation_Origin"}, 0.0, 8},
    {{kParZCoordOfRotationOrigin, kMavo, kMavoVersion, "Z_Coordinate_of_Rotation_Origin"}, 0.0, 9},
    {{kParDataset, kMavo, kMavoVersion, "Dataset_"}, 0.0, 15},
};
constexpr size_t kRowCount = sizeof kRows / sizeof kRows[0];
static_assert(kRows[kRowCount - 1].code == kParDataset, "the prefix row comes last");

constexpr char kDatasetPrefix[] = "Dataset_";

bool has_dataset_prefix(const char *name) {
    if (std::strlen(name) < sizeof kDatasetPrefix) return false;  // at least 9 characters
    for (size_t i = 0; i + 1 < sizeof kDatasetPrefix; ++i)
        if (to_lower(static_cast<unsigned char>(name[i])) != to_lower(static_cast<unsigned char>(kDatasetPrefix[i])))
            return false;
    return true;
}

}  // namespace

std::span<const ParmRow> parmlist_rows() { return kRows; }

const ParmRow *parmlist_find_by_code(int32_t code) { return registry_find_code(std::span<const ParmRow>(kRows), code); }

// The "Dataset_" row names a prefix, not a parameter: it is found by code
// only, and a name matches it through the prefix rule of ox_parameter_index.
const ParmRow *parmlist_find_by_name(const char *name) {
    // (the "Dataset_" row is the last one)
    return registry_find_name(std::span<const ParmRow>(kRows).first(kRowCount - 1), name, NameMatch::kLoose);
}

void parmlist_set_code(ox_object *parameter) {
    if (!is_type(parameter, OX_TAG_PARAMETER)) return;
    if (const ParmRow *r = parmlist_find_by_name(parameter->name))
        registry_stamp(parameter, *r);
}

ox_object *parmlist_new_by_code(int32_t code) {
    const ParmRow *r = parmlist_find_by_code(code);
    if (r == nullptr) return nullptr;
    ox_object *p = ox_parameter_new(r->name, r->default_value);
    if (p == nullptr) return nullptr;
    p->status = OX_STATUS_CATALOGUE;
    registry_stamp(p, *r);
    return p;
}

}  // namespace ox

extern "C" {

OX_API int32_t ox_parameter_index(const ox_object *parameter) {
    if (!ox::is_type(parameter, OX_TAG_PARAMETER)) return -2;
    if (parameter->code >= 1) {
        const ox::ParmRow *r = ox::parmlist_find_by_code(parameter->code);
        return r ? r->index : -1;
    }
    if (const ox::ParmRow *r = ox::parmlist_find_by_name(parameter->name)) return r->index;
    return ox::has_dataset_prefix(parameter->name) ? 15 : -1;
}

OX_API int32_t ox_parameter_projection_defaults(ox_object *projection, ox_object *parameters[16]) {
    if (parameters == nullptr) return 0;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) parameters[i] = nullptr;
    if (!ox::is_type(projection, OX_TAG_PROJECTION)) return 0;
    int32_t code = projection->code;
    if (code < 1) {
        const ox::ProjRow *row = ox::projlist_find_by_name(projection->name);
        code = row ? row->code : 0;
    }
    const ox::ProjRow *row = ox::projlist_find_by_code(code);
    if (row == nullptr) return 0;
    for (const int32_t parameter : row->parameters)
        if (ox_object *p = ox::parmlist_new_by_code(parameter)) parameters[ox_parameter_index(p)] = p;
    return static_cast<int32_t>(row->parameters.size());
}

}  // extern "C"
