// The parameter list and the parameter object's registry-side operations.
#include "projection/ox_parmlist.h"

#include <cstring>

#include "object/ox_object.h"
#include "object/ox_strings.h"
#include "projection/ox_projlist.h"

namespace ox {

namespace {


// Stored order matters: a name look-up takes the first match.
constexpr ParmRow kRows[] = {
    {kParFalseEasting, kMavo, kMavoVersion, "False_Easting", 0.0, 0},
    {kParFalseNorthing, kMavo, kMavoVersion, "False_Northing", 0.0, 1},
    {kParVerticalShift, kMavo, kMavoVersion, "Vertical_Shift", 0.0, 0},
    {kParDirection, kMavo, kMavoVersion, "Direction", 1.0, 1},
    {kParCentralMeridian, kMavo, kMavoVersion, "Central_Meridian", 0.0, 2},
    {kParLongitudeOfOrigin, kMavo, kMavoVersion, "Longitude_Of_Origin", 0.0, 2},
    {kParStandardParallel1, kMavo, kMavoVersion, "Standard_Parallel_1", 60.0, 3},
    {kParStandardParallel2, kMavo, kMavoVersion, "Standard_Parallel_2", 60.0, 4},
    {kParScaleFactor, kMavo, kMavoVersion, "Scale_Factor", 1.0, 5},
    {kParCentralParallel, kMavo, kMavoVersion, "Central_Parallel", 0.0, 6},
    {kParLatitudeOfOrigin, kMavo, kMavoVersion, "Latitude_Of_Origin", 0.0, 6},
    {kParAzimuth, kMavo, kMavoVersion, "Azimuth", 45.0, 7},
    {kParHeight, kMavo, kMavoVersion, "Height", 0.0, 15},
    {kParOption, kMavo, kMavoVersion, "Option", 0.0, 15},
    {kParLatitudeOf1stPoint, kMavo, kMavoVersion, "Latitude_Of_1st_Point", 0.0, 3},
    {kParLatitudeOf2ndPoint, kMavo, kMavoVersion, "Latitude_Of_2nd_Point", 60.0, 4},
    {kParLongitudeOf1stPoint, kMavo, kMavoVersion, "Longitude_Of_1st_Point", 0.0, 8},
    {kParLongitudeOf2ndPoint, kMavo, kMavoVersion, "Longitude_Of_2nd_Point", 60.0, 9},
    {kParLongitudeOfCenter, kMavo, kMavoVersion, "Longitude_Of_Center", -75.0, 10},
    {kParLatitudeOfCenter, kMavo, kMavoVersion, "Latitude_Of_Center", 40.0, 11},
    {kParPseudoStandardParallel1, kMavo, kMavoVersion, "Pseudo_Standard_Parallel_1", 60.0, 3},
    {kParXYPlaneRotation, kMavo, kMavoVersion, "XY_Plane_Rotation", 0.0, 14},
    {kParXScale, kMavo, kMavoVersion, "X_Scale", 1.0, 12},
    {kParYScale, kMavo, kMavoVersion, "Y_Scale", 1.0, 13},
    {kParXAxisTranslation, kMavo, kMavoVersion, "X_Axis_Translation", 0.0, 0},
    {kParYAxisTranslation, kMavo, kMavoVersion, "Y_Axis_Translation", 0.0, 1},
    {kParZAxisTranslation, kMavo, kMavoVersion, "Z_Axis_Translation", 0.0, 2},
    {kParXAxisRotation, kMavo, kMavoVersion, "X_Axis_Rotation", 0.0, 3},
    {kParYAxisRotation, kMavo, kMavoVersion, "Y_Axis_Rotation", 0.0, 4},
    {kParZAxisRotation, kMavo, kMavoVersion, "Z_Axis_Rotation", 0.0, 5},
    {kParScaleDifference, kMavo, kMavoVersion, "Scale_Difference", 0.0, 6},
    {kParXCoordOfRotationOrigin, kMavo, kMavoVersion, "X_Coordinate_of_Rotation_Origin", 0.0, 7},
    {kParYCoordOfRotationOrigin, kMavo, kMavoVersion, "Y_Coordinate_of_Rotation_Origin", 0.0, 8},
    {kParZCoordOfRotationOrigin, kMavo, kMavoVersion, "Z_Coordinate_of_Rotation_Origin", 0.0, 9},
    {kParDataset, kMavo, kMavoVersion, "Dataset_", 0.0, 15},
};
constexpr int kRowCount = sizeof kRows / sizeof kRows[0];

// The parameter codes that each projection uses, by projection code (the
// defaults that ox_parameter_projection_defaults makes).
constexpr int32_t FE = kParFalseEasting, FN = kParFalseNorthing, CM = kParCentralMeridian,
                  SP1 = kParStandardParallel1, SP2 = kParStandardParallel2, SF = kParScaleFactor,
                  LO = kParLatitudeOfOrigin;
struct ProjectionParameters {
    const int32_t *codes;
    int count;
};
constexpr int32_t kSetFeFnCm[] = {FE, FN, CM};
constexpr int32_t kSetSp1[] = {FE, FN, CM, SP1};
constexpr int32_t kSetScaleOrigin[] = {FE, FN, CM, SF, LO};
constexpr int32_t kSetTwoParallels[] = {FE, FN, CM, SP1, SP2, LO};
constexpr int32_t kSetLambert[] = {FE, FN, CM, SP1, SP2, SF, LO};
constexpr int32_t kSetOrigin[] = {FE, FN, CM, LO};
constexpr int32_t kSetCentralParallel[] = {FE, FN, CM, kParCentralParallel};
constexpr int32_t kSetTwoPointOblique[] = {FE, FN, kParLongitudeOf1stPoint, kParLongitudeOf2ndPoint,
                                           kParLatitudeOf1stPoint, kParLatitudeOf2ndPoint,
                                           kParLatitudeOfCenter, SF};
constexpr int32_t kSetTwoPoint[] = {FE, FN, kParLongitudeOf1stPoint, kParLongitudeOf2ndPoint,
                                    kParLatitudeOf1stPoint, kParLatitudeOf2ndPoint};
constexpr int32_t kSetAzimuthCenter[] = {FE, FN, kParLongitudeOfCenter, kParLatitudeOfCenter, kParAzimuth, SF};
constexpr int32_t kSetKrovak[] = {FE, FN, kParLongitudeOfCenter, kParLatitudeOfCenter,
                                  kParPseudoStandardParallel1, kParAzimuth, SF, kParXScale, kParYScale,
                                  kParXYPlaneRotation};
constexpr int32_t kSetNewZealand[] = {FE, FN, kParLongitudeOfOrigin, LO};
constexpr int32_t kSetCenter[] = {FE, FN, kParLongitudeOfCenter, kParLatitudeOfCenter};
constexpr int32_t kSetPerspective[] = {FE, FN, kParLongitudeOfCenter, kParLatitudeOfCenter, kParHeight};
constexpr int32_t kSetOption[] = {FE, FN, kParOption};
constexpr int32_t kSetSkew[] = {FE, FN, kParLongitudeOfCenter, kParLatitudeOfCenter, kParAzimuth,
                                kParXYPlaneRotation, SF};
constexpr int32_t kSetCmOption[] = {FE, FN, CM, kParOption};

#define OX_SET(s) ProjectionParameters{s, static_cast<int>(sizeof s / sizeof s[0])}
ProjectionParameters parameters_of_projection(int32_t code) {
    switch (code) {
        case 43001: case 43003: case 43008: case 43009: case 43010: case 43011: case 43012: case 43013:
        case 43014: case 43015: case 43016: case 43017: case 43022: case 43029: case 43030: case 43043:
        case 43044: case 43045: case 43046: case 43048: case 43057:
            return OX_SET(kSetFeFnCm);
        case 43002: case 43004: case 43018: case 43019: case 43024: case 43034: case 43042: case 43050:
        case 43051:
            return OX_SET(kSetSp1);
        case 43005: case 43006: case 43026: case 43028: case 43038: case 43056: return OX_SET(kSetScaleOrigin);
        case 43007: case 43027: return OX_SET(kSetTwoParallels);
        case 43020: return OX_SET(kSetLambert);
        case 43021: case 43032: case 43033: return OX_SET(kSetOrigin);
        case 43023: return OX_SET(kSetCentralParallel);
        case 43025: case 43035: return OX_SET(kSetTwoPointOblique);
        case 43031: return OX_SET(kSetTwoPoint);
        case 43036: case 43037: case 43058: return OX_SET(kSetAzimuthCenter);
        case 43039: return OX_SET(kSetKrovak);
        case 43040: return OX_SET(kSetNewZealand);
        case 43041: case 43047: return OX_SET(kSetCenter);
        case 43049: return OX_SET(kSetPerspective);
        case 43052: return OX_SET(kSetOption);
        case 43053: case 43054: return OX_SET(kSetSkew);
        case 43055: case 43059: return OX_SET(kSetCmOption);
        default: return {nullptr, 0};
    }
}
#undef OX_SET

constexpr char kDatasetPrefix[] = "Dataset_";

bool has_dataset_prefix(const char *name) {
    if (std::strlen(name) < sizeof kDatasetPrefix) return false;  // at least 9 characters
    for (size_t i = 0; i + 1 < sizeof kDatasetPrefix; ++i)
        if (to_lower(static_cast<unsigned char>(name[i])) != to_lower(static_cast<unsigned char>(kDatasetPrefix[i])))
            return false;
    return true;
}

}  // namespace

const ParmRow *parmlist_rows(int *count) {
    if (count != nullptr) *count = kRowCount;
    return kRows;
}

const ParmRow *parmlist_find_by_code(int32_t code) {
    for (const ParmRow &r : kRows)
        if (r.code == code) return &r;
    return nullptr;
}

// The "Dataset_" row names a prefix, not a parameter: it is found by code
// only, and a name matches it through the prefix rule of ox_parameter_index.
const ParmRow *parmlist_find_by_name(const char *name) {
    for (const ParmRow &r : kRows)
        if (r.code != kParDataset && name_eq(name, r.name)) return &r;
    return nullptr;
}

void parmlist_set_code(ox_object *parameter) {
    if (!is_type(parameter, OX_TAG_PARAMETER)) return;
    if (const ParmRow *r = parmlist_find_by_name(parameter->name))
        obj_set_code(parameter, r->code, r->authority_name, r->authority_version);
}

ox_object *parmlist_new_by_code(int32_t code) {
    const ParmRow *r = parmlist_find_by_code(code);
    if (r == nullptr) return nullptr;
    ox_object *p = ox_parameter_new(r->name, r->default_value);
    if (p == nullptr) return nullptr;
    p->status = OX_STATUS_CATALOGUE;
    obj_set_code(p, r->code, r->authority_name, r->authority_version);
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
    const ox::ProjectionParameters set = ox::parameters_of_projection(code);
    for (int i = 0; i < set.count; ++i)
        if (ox_object *p = ox::parmlist_new_by_code(set.codes[i])) parameters[ox_parameter_index(p)] = p;
    return set.count;
}

}  // extern "C"
