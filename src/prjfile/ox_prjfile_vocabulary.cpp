// The vocabulary of legacy projection files: spheroid, datum, unit and
// projection names, and the parameter lines of each projection with the
// comments the writer puts after them.  Constant tables, read by the
// builders and the writer alike.
#include "object/ox_strings.h"
#include "prjfile/ox_prjfile.h"
#include "projection/ox_parmlist.h"

namespace ox::prj {

// Spheroid names.  The geographic system is the catalogue's system of that
// spheroid with no other datum ("GCS_Clarke_1866"), or the real datum where
// the catalogue has no such system because it would carry the real one's
// name (WGS 84, WGS 72); 0 where the catalogue has none.
const SpheroidName kSpheroidNames[] = {
    {"AIRY", 7001, 4001, true},
    {"AUSTRALIAN", 7003, 4003, true},
    {"BESSEL", 7004, 4004, true},
    {"CLARKE1866", 7008, 4008, true},
    {"CLARKE1880", 7012, 4012, true},
    {"EVEREST", 7015, 4015, true},
    {"EVEREST1956", 7044, 4044, true},
    {"EVEREST1969", 7056, 0, true},
    {"EVEREST_SS", 7016, 4016, true},
    {"FISCHER1960", 107002, 37002, true},
    {"FISCHER1968", 107003, 37003, true},
    {"GRS1980", 7019, 4019, true},
    {"GRS80", 7019, 4019, false},
    {"HAYFORD", 7022, 4022, false},
    {"HELMERT1906", 7020, 4020, true},
    {"HOUGH", 7053, 37005, true},
    {"INT1909", 7022, 4022, true},
    {"INTERNATIONAL1909", 7022, 4022, false},
    {"INT1924", 7022, 4022, false},
    {"INT1967", 7036, 4036, true},
    {"INTERNATIONAL1967", 7036, 4036, false},
    {"KRASOVSKY", 7024, 4024, true},
    {"KRASSOVSKY", 7024, 4024, false},
    {"MERCURY1960", 107002, 37002, false},
    {"MERCURY60", 107002, 37002, false},
    {"MERCURY1968", 107003, 37003, false},
    {"MERCURY68", 107003, 37003, false},
    {"MODAIRY", 7002, 4002, true},
    {"MODIFIEDAIRY", 7002, 4002, false},
    {"MODEVEREST", 7018, 4018, true},
    {"MODIFIEDEVEREST", 7018, 4018, false},
    {"MODFISCHER1960", 107004, 37004, true},
    {"MODIFIEDFISCHER1960", 107004, 37004, false},
    {"NAD27", 7008, 4008, false},
    {"NAD83", 7019, 4019, false},
    {"SAMERICAN1969", 7050, 0, true},
    {"SOUTHAMERICAN1969", 7050, 0, false},
    {"SEASIA", 107004, 37004, false},
    {"SOUTHEASTASIA", 107004, 37004, false},
    {"SPHERE", 107008, 37008, true},
    {"WALBECK", 107007, 37007, true},
    {"WGS1966", 107001, 0, true},
    {"WGS66", 107001, 0, false},
    {"WGS72", 7043, 4322, true},
    {"WGS1972", 7043, 4322, false},
    {"WGS84", 7030, 4326, true},
    {"WGS1984", 7030, 4326, false},
};
const int kSpheroidNameCount = sizeof kSpheroidNames / sizeof kSpheroidNames[0];

// Clarke 1880 as older files give it: by its two semi-axes.
const SpheroidAxes kSpheroidAxes[] = {
    {6378249.145, 6356514.9663955, 7013, 4013, "6378249.145  6356514.9663955"},
    {6378249.2, 6356515.0, 7011, 4011, "6378249.2  6356515.0"},
};
const int kSpheroidAxesCount = sizeof kSpheroidAxes / sizeof kSpheroidAxes[0];

// Datum names.  "ALASKA" is the North American datum of 1927 as files for
// Alaska name it; the writer says "NAD27".
const DatumName kDatumNames[] = {
    {"NONE", 0, false},          {"USER_DEFINED", 0, false}, {"IND_B", 4144, true},  {"IND_I", 4146, true},
    {"NAD83", 4269, true},       {"NAD27", 4267, true},      {"WGS72", 4322, true},  {"WGS84", 4326, true},
    {"OLD_HAWAIIAN", 4135, true}, {"HK80", 4611, true},       {"NWL9D", 4276, true},  {"HPGN", 4152, true},
    {"ALASKA", 4267, false},     {"AGD84", 4203, true},      {"GDA94", 4283, true},  {"JGD2000", 4612, true},
};
const int kDatumNameCount = sizeof kDatumNames / sizeof kDatumNames[0];

// Angular units of geographic systems.
const UnitName kAngularUnitNames[] = {
    {"DD", 9102},      {"RADIANS", 9101}, {"MINUTES", 9103}, {"SECONDS", 9104},
    {"GRADS", 9105},   {"GONS", 9106},    {"MILS", 9114},
};
const int kAngularUnitNameCount = sizeof kAngularUnitNames / sizeof kAngularUnitNames[0];

// Systems named by the projection line alone.
const GridName kGridNames[] = {
    {"GREATBRITAIN_GRID", 27700},
    {"NEWZEALAND_GRID", 27200},
};
const int kGridNameCount = sizeof kGridNames / sizeof kGridNames[0];

const NameAlias kProjectionAliases[] = {
    {"OBLIQUE", "OBLIQUE_MERCATOR"},     {"ECKERTVI", "ECKERT6"}, {"ECKERTIV", "ECKERT4"},
    {"GALLS_STEREOGRAPHIC", "GALL_STEREOGRAPHIC"}, {"UNIVERSAL", "UTM"},  {"SIMPLE_CONIC", "EQUIDISTANT"},
};
const int kProjectionAliasCount = sizeof kProjectionAliases / sizeof kProjectionAliases[0];

const ProjectionAlias kProjectionWrittenAs[] = {
    {43005, 43006},  // Gauss_Kruger: the same routines as Transverse_Mercator
    {43056, 43006},  // Transverse_Mercator_Complex: the same projection, another series
};
const int kProjectionWrittenAsCount = sizeof kProjectionWrittenAs / sizeof kProjectionWrittenAs[0];

namespace {

using K = LineKind;

// Comments shared by several projections.
constexpr const char *kFeLower = "/* false easting (meters)";
constexpr const char *kFnLower = "/* false northing (meters)";
constexpr const char *kFeUpper = "/* False easting (meters)";
constexpr const char *kFnUpper = "/* False northing (meters)";
constexpr const char *kFeDms = "/* False Easting  (Meters)";
constexpr const char *kFnDms = "/* False Northing (Meters)";
constexpr const char *kCmLower = "/* longitude of central meridian";
constexpr const char *kRadiusLower = "/* radius of the sphere of reference";
constexpr const char *kRadiusUpper = "/* Radius of the sphere of reference";
constexpr const char *kHotineType = "/* Projection type < 1 | 2 >";
constexpr const char *kHotineScale = "/* Scale factor at center of projection";

#define OX_FALSE_ORIGIN(FE, FN) {K::Metres, kParFalseEasting, 0, FE}, {K::Metres, kParFalseNorthing, 0, FN}

constexpr LineDesc kConic[] = {
    {K::Latitude, kParStandardParallel1, 0, "/* 1st standard parallel"},
    {K::Latitude, kParStandardParallel2, 0, "/* 2nd standard parallel"},
    {K::Longitude, kParCentralMeridian, 0, "/* central meridian"},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* latitude of origin"},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
constexpr LineDesc kEquidistantOne[] = {
    {K::Selector, 0, 0, "/* Number of standard parallels < 1 | 2 >"},
    {K::Latitude, kParStandardParallel1, kParStandardParallel2, "/* Latitude  of the standard parallel (DMS)"},
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of the central meridian (DMS)"},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* Latitude  of the origin (DMS)"},
    OX_FALSE_ORIGIN(kFeDms, kFnDms),
};
constexpr LineDesc kEquidistantTwo[] = {
    {K::Selector, 0, 0, "/* Number of standard parallels < 1 | 2 >"},
    {K::Latitude, kParStandardParallel1, 0, "/* Latitude  of the 1st standard parallel (DMS)"},
    {K::Latitude, kParStandardParallel2, 0, "/* Latitude  of the 2nd standard parallel (DMS)"},
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of the central meridian (DMS)"},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* Latitude  of the origin (DMS)"},
    OX_FALSE_ORIGIN(kFeDms, kFnDms),
};
constexpr LineDesc kTransverse[] = {
    {K::Number, kParScaleFactor, 0, "/* scale factor at central meridian"},
    {K::Longitude, kParCentralMeridian, 0, kCmLower},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* latitude of origin"},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
// Mercator and the polar stereographic: the latitude of true scale.
constexpr LineDesc kTrueScale[] = {
    {K::Longitude, kParCentralMeridian, 0, kCmLower},
    {K::Latitude, kParStandardParallel1, 0, "/* latitude of standard parallel"},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
constexpr LineDesc kPolyconic[] = {
    {K::Longitude, kParCentralMeridian, 0, kCmLower},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* latitude of projection's origin"},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
constexpr LineDesc kCylindrical[] = {
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of Central Meridian (D M S)"},
    {K::Latitude, kParStandardParallel1, 0, "/* Latitude  of the standard parallel (DMS)"},
    OX_FALSE_ORIGIN(kFeDms, kFnDms),
};
constexpr LineDesc kCassini[] = {
    {K::Number, kParScaleFactor, 0, "/* scale factor at central meridian"},
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of central meridian"},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* Latitude of origin of projection"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};
constexpr LineDesc kBonne[] = {
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of central meridian"},
    {K::Latitude, kParStandardParallel1, 0, "/* Latitude of standard parallel"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};
constexpr LineDesc kGall[] = {
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of central meridian"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};
// World projections on the datum's spheroid: the central meridian alone.
constexpr LineDesc kWorld[] = {
    {K::Longitude, kParCentralMeridian, 0, kCmLower},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
constexpr LineDesc kTwoPoint[] = {
    {K::Latitude, kParLatitudeOf1stPoint, 0, "/* Latitude of point A"},
    {K::Longitude, kParLongitudeOf1stPoint, 0, "/* Longitude of point A"},
    {K::Latitude, kParLatitudeOf2ndPoint, 0, "/* Latitude of point B"},
    {K::Longitude, kParLongitudeOf2ndPoint, 0, "/* Longitude of point B"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};
constexpr LineDesc kObliqueTwoPoint[] = {
    {K::Selector, 0, 0, kHotineType},
    {K::Number, kParScaleFactor, 0, kHotineScale},
    {K::Latitude, kParLatitudeOf1stPoint, 0, "/* Latitude of 1st point of central line of projection"},
    {K::Longitude, kParLongitudeOf1stPoint, 0, "/* Longitude of 1st point of central line of projection"},
    {K::Latitude, kParLatitudeOf2ndPoint, 0, "/* Latitude of 2nd point of central line of projection"},
    {K::Longitude, kParLongitudeOf2ndPoint, 0, "/* Longitude of 2nd point of central line of projection"},
    {K::Latitude, kParLatitudeOfCenter, 0, "/* Latitude of projection's origin"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};
constexpr LineDesc kObliqueAzimuth[] = {
    {K::Selector, 0, 0, kHotineType},
    {K::Number, kParScaleFactor, 0, kHotineScale},
    {K::Angle, kParAzimuth, 0, "/* Azimuth at center of projection"},
    {K::Longitude, kParLongitudeOfCenter, 0, "/* Longitude of projection's origin"},
    {K::Latitude, kParLatitudeOfCenter, 0, "/* Latitude of projection's origin"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};
constexpr LineDesc kLocal[] = {
    {K::Longitude, kParLongitudeOfCenter, 0, "/* Longitude of the origin"},
    {K::Latitude, kParLatitudeOfCenter, 0, "/* Latitude of the origin"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};

// Projections computed on the sphere of the first line.
constexpr LineDesc kSphereWorld[] = {
    {K::Radius, 0, 0, kRadiusLower},
    {K::Longitude, kParCentralMeridian, 0, kCmLower},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
constexpr LineDesc kSphereTrueScale[] = {
    {K::Radius, 0, 0, kRadiusLower},
    {K::Longitude, kParCentralMeridian, 0, kCmLower},
    {K::Latitude, kParStandardParallel1, 0, "/* latitude of standard parallel"},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
// Azimuthal projections whose centre is the central meridian and latitude of
// origin.
constexpr LineDesc kSphereOrigin[] = {
    {K::Radius, 0, 0, kRadiusUpper},
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of center of projection"},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* Latitude of center of projection"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};
constexpr LineDesc kSphereEquidistant[] = {
    {K::Radius, 0, 0, "/* Radius of the Reference Sphere (Meters)"},
    {K::Longitude, kParCentralMeridian, 0, "/* Longitude of projection center"},
    {K::Latitude, kParLatitudeOfOrigin, 0, "/* Latitude of projection center"},
    OX_FALSE_ORIGIN(kFeDms, kFnDms),
};
// Azimuthal projections whose centre is the longitude and latitude of centre.
constexpr LineDesc kSphereCenter[] = {
    {K::Radius, 0, 0, kRadiusLower},
    {K::Longitude, kParLongitudeOfCenter, 0, "/* longitude of center of projection"},
    {K::Latitude, kParLatitudeOfCenter, 0, "/* latitude of center of projection"},
    OX_FALSE_ORIGIN(kFeLower, kFnLower),
};
constexpr LineDesc kPerspective[] = {
    {K::Radius, 0, 0, kRadiusUpper},
    {K::Height, kParHeight, 0, "/* Height of perspective point above sphere"},
    {K::Longitude, kParLongitudeOfCenter, 0, "/* Longitude of center of projection"},
    {K::Latitude, kParLatitudeOfCenter, 0, "/* Latitude of center of projection"},
    OX_FALSE_ORIGIN(kFeUpper, kFnUpper),
};

#undef OX_FALSE_ORIGIN

template <size_t N>
constexpr int count_of(const LineDesc (&)[N]) {
    return static_cast<int>(N);
}

}  // namespace

#define OX_LINES(table) table, count_of(table)

// In the writer's order of preference: the first form that can carry a
// system is written.
const ProjectionForm kProjectionForms[] = {
    {"ALBERS", 43007, 0, false, false, 0, OX_LINES(kConic)},
    {"LAMBERT", 43020, 0, false, false, 0, OX_LINES(kConic)},
    {"EQUIDISTANT", 43027, 1, false, false, 0, OX_LINES(kEquidistantOne)},
    {"EQUIDISTANT", 43027, 2, false, false, 0, OX_LINES(kEquidistantTwo)},
    {"TRANSVERSE", 43006, 0, false, false, 0, OX_LINES(kTransverse)},
    {"MERCATOR", 43004, 0, false, false, 0, OX_LINES(kTrueScale)},
    {"POLAR", 43050, 0, false, false, 43051, OX_LINES(kTrueScale)},
    {"SOUTHPOLE", 43051, 0, false, false, 0, OX_LINES(kTrueScale)},
    {"POLYCONIC", 43021, 0, false, false, 0, OX_LINES(kPolyconic)},
    {"CYLINDRICAL", 43034, 0, false, false, 0, OX_LINES(kCylindrical)},
    {"CASSINI", 43028, 0, false, false, 0, OX_LINES(kCassini)},
    {"BONNE", 43024, 0, false, false, 0, OX_LINES(kBonne)},
    {"GALL_STEREOGRAPHIC", 43016, 0, false, false, 0, OX_LINES(kGall)},
    {"EQUA", 43001, 0, false, false, 0, OX_LINES(kWorld)},
    {"MOLLWEIDE", 43009, 0, false, false, 0, OX_LINES(kWorld)},
    {"ROBINSON", 43030, 0, false, false, 0, OX_LINES(kWorld)},
    {"ECKERT4", 43012, 0, false, false, 0, OX_LINES(kWorld)},
    {"ECKERT6", 43010, 0, false, false, 0, OX_LINES(kWorld)},
    {"GRINTEN", 43029, 0, false, false, 0, OX_LINES(kWorld)},
    {"HAMMER", 43044, 0, false, false, 0, OX_LINES(kWorld)},
    {"FLAT", 43045, 0, false, false, 0, OX_LINES(kWorld)},
    {"CRASTER", 43046, 0, false, false, 0, OX_LINES(kWorld)},
    {"TWO_POINT", 43031, 0, false, false, 0, OX_LINES(kTwoPoint)},
    {"OBLIQUE_MERCATOR", 43025, 1, false, false, 0, OX_LINES(kObliqueTwoPoint)},
    {"OBLIQUE_MERCATOR", 43036, 2, false, false, 0, OX_LINES(kObliqueAzimuth)},
    {"HOTINE", 43035, 1, false, false, 0, OX_LINES(kObliqueTwoPoint)},
    {"HOTINE", 43037, 2, false, false, 0, OX_LINES(kObliqueAzimuth)},
    {"LOCAL", 43058, 0, false, false, 0, OX_LINES(kLocal)},
    {"SINUSOIDAL", 43008, 0, true, false, 0, OX_LINES(kSphereWorld)},
    {"MILLER", 43003, 0, true, true, 0, OX_LINES(kSphereWorld)},
    {"AITOFF", 43043, 0, true, false, 0, OX_LINES(kSphereWorld)},
    {"TIMES", 43048, 0, true, false, 0, OX_LINES(kSphereWorld)},
    {"EQUIRECTANGULAR", 43002, 0, true, true, 0, OX_LINES(kSphereTrueScale)},
    {"WINKEL", 43042, 0, true, false, 0, OX_LINES(kSphereTrueScale)},
    {"STEREOGRAPHIC", 43026, 0, true, false, 0, OX_LINES(kSphereOrigin)},
    {"LAMBERT_AZIMUTH", 43033, 0, true, false, 0, OX_LINES(kSphereOrigin)},
    {"AZIMUTHAL", 43032, 0, true, false, 0, OX_LINES(kSphereEquidistant)},
    {"ORTHOGRAPHIC", 43041, 0, true, false, 0, OX_LINES(kSphereCenter)},
    {"GNOMONIC", 43047, 0, true, false, 0, OX_LINES(kSphereCenter)},
    {"PERSPECTIVE", 43049, 0, true, false, 0, OX_LINES(kPerspective)},
};
const int kProjectionFormCount = sizeof kProjectionForms / sizeof kProjectionForms[0];

#undef OX_LINES

namespace {
template <class Row>
const Row *by_name(const Row *rows, int count, const char *name) {
    for (int i = 0; i < count; ++i)
        if (name_eq(rows[i].name, name)) return &rows[i];
    return nullptr;
}
}  // namespace

const SpheroidName *spheroid_by_name(const char *name) { return by_name(kSpheroidNames, kSpheroidNameCount, name); }
const DatumName *datum_by_name(const char *name) { return by_name(kDatumNames, kDatumNameCount, name); }
const UnitName *angular_unit_by_name(const char *name) {
    return by_name(kAngularUnitNames, kAngularUnitNameCount, name);
}
const GridName *grid_by_name(const char *name) { return by_name(kGridNames, kGridNameCount, name); }

const char *projection_name(const char *name) {
    for (int i = 0; i < kProjectionAliasCount; ++i)
        if (name_eq(kProjectionAliases[i].alias, name)) return kProjectionAliases[i].name;
    return name;
}

}  // namespace ox::prj
