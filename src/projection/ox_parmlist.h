// The parameter list: names, codes, defaults and slots of the parameters of
// projections, vertical systems and transformation methods.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "object/ox_registry.h"
#include "ox.h"

namespace ox {

struct ParmRow : RegistryRow {
    double default_value;
    int32_t index;  // slot 0-15
};

const ParmRow *parmlist_find_by_code(int32_t code);
const ParmRow *parmlist_find_by_name(const char *name);
// The rows in stored order.
std::span<const ParmRow> parmlist_rows();
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

// The sixteen parameter values of a projected system (radians, metres and
// plain ratios), by slot: the form in which projection routines receive
// them.  Several parameters share a slot (a projection uses at most one of
// them); the member is named after the first, its comment names the others.
struct ParameterValues {
    double false_easting;           // 0
    double false_northing;          // 1
    double central_meridian;        // 2, or Longitude_Of_Origin
    double standard_parallel_1;     // 3, or Latitude_Of_1st_Point, Pseudo_Standard_Parallel_1
    double standard_parallel_2;     // 4, or Latitude_Of_2nd_Point
    double scale_factor;            // 5
    double latitude_of_origin;      // 6, or Central_Parallel
    double azimuth;                 // 7
    double longitude_of_1st_point;  // 8
    double longitude_of_2nd_point;  // 9
    double longitude_of_center;     // 10
    double latitude_of_center;      // 11
    double x_scale;                 // 12
    double y_scale;                 // 13
    double xy_plane_rotation;       // 14
    double height;                  // 15, or Option

    double latitude_of_1st_point() const { return standard_parallel_1; }
    double latitude_of_2nd_point() const { return standard_parallel_2; }
    double pseudo_standard_parallel_1() const { return standard_parallel_1; }
    double central_parallel() const { return latitude_of_origin; }
    double option() const { return height; }
};
static_assert(sizeof(ParameterValues) == OX_PARAMETER_SLOTS * sizeof(double), "one double per slot");
static_assert(offsetof(ParameterValues, scale_factor) == 5 * sizeof(double) &&
                  offsetof(ParameterValues, longitude_of_center) == 10 * sizeof(double) &&
                  offsetof(ParameterValues, height) == 15 * sizeof(double),
              "members in slot order");

// The slot of a member of ParameterValues.
#define OX_SLOT(member) static_cast<int>(offsetof(::ox::ParameterValues, member) / sizeof(double))

// The parameters that a projection uses, by code: the set that
// ox_parameter_projection_defaults makes.
using ParameterSet = std::span<const int32_t>;

// The sets that projections share.
namespace parameter_sets {
inline constexpr int32_t kFalseOriginAndMeridian[] = {kParFalseEasting, kParFalseNorthing, kParCentralMeridian};
inline constexpr int32_t kStandardParallel[] = {kParFalseEasting, kParFalseNorthing, kParCentralMeridian,
                                                kParStandardParallel1};
inline constexpr int32_t kScaleAndOrigin[] = {kParFalseEasting, kParFalseNorthing, kParCentralMeridian,
                                              kParScaleFactor, kParLatitudeOfOrigin};
inline constexpr int32_t kTwoParallels[] = {kParFalseEasting,      kParFalseNorthing,    kParCentralMeridian,
                                            kParStandardParallel1, kParStandardParallel2, kParLatitudeOfOrigin};
inline constexpr int32_t kLambert[] = {kParFalseEasting,      kParFalseNorthing, kParCentralMeridian,
                                       kParStandardParallel1, kParStandardParallel2, kParScaleFactor,
                                       kParLatitudeOfOrigin};
inline constexpr int32_t kOrigin[] = {kParFalseEasting, kParFalseNorthing, kParCentralMeridian,
                                      kParLatitudeOfOrigin};
inline constexpr int32_t kCentralParallel[] = {kParFalseEasting, kParFalseNorthing, kParCentralMeridian,
                                               kParCentralParallel};
inline constexpr int32_t kTwoPointOblique[] = {kParFalseEasting,        kParFalseNorthing,
                                               kParLongitudeOf1stPoint, kParLongitudeOf2ndPoint,
                                               kParLatitudeOf1stPoint,  kParLatitudeOf2ndPoint,
                                               kParLatitudeOfCenter,    kParScaleFactor};
inline constexpr int32_t kTwoPoint[] = {kParFalseEasting,        kParFalseNorthing,      kParLongitudeOf1stPoint,
                                        kParLongitudeOf2ndPoint, kParLatitudeOf1stPoint, kParLatitudeOf2ndPoint};
inline constexpr int32_t kAzimuthCenter[] = {kParFalseEasting,     kParFalseNorthing, kParLongitudeOfCenter,
                                             kParLatitudeOfCenter, kParAzimuth,       kParScaleFactor};
inline constexpr int32_t kKrovak[] = {kParFalseEasting,     kParFalseNorthing,           kParLongitudeOfCenter,
                                      kParLatitudeOfCenter, kParPseudoStandardParallel1, kParAzimuth,
                                      kParScaleFactor,      kParXScale,                  kParYScale,
                                      kParXYPlaneRotation};
inline constexpr int32_t kNewZealand[] = {kParFalseEasting, kParFalseNorthing, kParLongitudeOfOrigin,
                                          kParLatitudeOfOrigin};
inline constexpr int32_t kCenter[] = {kParFalseEasting, kParFalseNorthing, kParLongitudeOfCenter,
                                      kParLatitudeOfCenter};
inline constexpr int32_t kPerspective[] = {kParFalseEasting, kParFalseNorthing, kParLongitudeOfCenter,
                                           kParLatitudeOfCenter, kParHeight};
inline constexpr int32_t kOption[] = {kParFalseEasting, kParFalseNorthing, kParOption};
inline constexpr int32_t kSkew[] = {kParFalseEasting, kParFalseNorthing,   kParLongitudeOfCenter, kParLatitudeOfCenter,
                                    kParAzimuth,      kParXYPlaneRotation, kParScaleFactor};
inline constexpr int32_t kMeridianAndOption[] = {kParFalseEasting, kParFalseNorthing, kParCentralMeridian, kParOption};
}  // namespace parameter_sets

}  // namespace ox
