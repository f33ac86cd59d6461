// The parameter list: names, codes, defaults and slots of the parameters of
// projections, vertical systems and transformation methods.
#pragma once

#include <cstdint>

#include "ox.h"

namespace ox {

struct ParmRow {
    int32_t code;
    const char *authority_name;
    const char *authority_version;
    const char *name;
    double default_value;
    int32_t index;  // slot 0-15
};

const ParmRow *parmlist_find_by_code(int32_t code);
const ParmRow *parmlist_find_by_name(const char *name);
// The rows in stored order; `count` receives their number.
const ParmRow *parmlist_rows(int *count);
// Sets the code and authority of a parameter from the row of its name.
void parmlist_set_code(ox_object *parameter);
// A parameter made from the row of `code` (default value, status 4), or null.
ox_object *parmlist_new_by_code(int32_t code);

// Parameter codes used throughout the library.
enum ParameterCode : int32_t {
    kParFalseEasting = 100001,
    kParFalseNorthing = 100002,
    kParScaleFactor = 100003,
    kParAzimuth = 100004,
    kParHeight = 100005,
    kParVerticalShift = 100006,
    kParDirection = 100007,
    kParCentralMeridian = 100010,
    kParLongitudeOfOrigin = 100011,
    kParLongitudeOfCenter = 100012,
    kParLongitudeOf1stPoint = 100013,
    kParLongitudeOf2ndPoint = 100014,
    kParCentralParallel = 100020,
    kParLatitudeOfOrigin = 100021,
    kParLatitudeOfCenter = 100022,
    kParLatitudeOf1stPoint = 100023,
    kParLatitudeOf2ndPoint = 100024,
    kParStandardParallel1 = 100025,
    kParStandardParallel2 = 100026,
    kParPseudoStandardParallel1 = 100027,
    kParOption = 100036,
    kParXScale = 100037,
    kParYScale = 100038,
    kParXYPlaneRotation = 100039,
    kParXAxisTranslation = 100040,
    kParYAxisTranslation = 100041,
    kParZAxisTranslation = 100042,
    kParXAxisRotation = 100043,
    kParYAxisRotation = 100044,
    kParZAxisRotation = 100045,
    kParScaleDifference = 100046,
    kParDataset = 100047,
    kParXCoordOfRotationOrigin = 100048,
    kParYCoordOfRotationOrigin = 100049,
    kParZCoordOfRotationOrigin = 100050,
};

}  // namespace ox
