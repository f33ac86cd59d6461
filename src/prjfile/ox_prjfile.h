// Legacy projection files: the keyword-per-line text of older GIS software
// ("Projection TRANSVERSE", "Datum NAD83", "Parameters" and its lines).
//
// Reading is a scan into a fixed record of keyword values, then builders
// that turn the record into objects through the factory; writing is a
// converter from objects to the same record, then a printer.  This header is
// shared by the reader (ox_coordsys_from_prj.cpp, ox_prjfile_build.cpp), the
// vocabulary of legacy names (ox_prjfile_vocabulary.cpp) and the writer
// (ox_coordsys_to_prj.cpp).
#pragma once

#include <cstdint>

#include "ox.h"

namespace ox::prj {

// Every field of the record holds at most 255 characters.
inline constexpr int kFieldSize = 256;
inline constexpr int kParameterLines = 16;

// The error codes (OX_PRJ_* in the public header).
enum Error : int32_t {
    kOk = 0,
    kNoText = OX_PRJ_NO_TEXT,
    kCannotOpen = OX_PRJ_CANNOT_OPEN,
    kUnknownKeyword = OX_PRJ_UNKNOWN_KEYWORD,
    kTooManyParameters = OX_PRJ_TOO_MANY_PARAMETERS,
    kBadZunits = OX_PRJ_BAD_ZUNITS,
    kNoZunits = OX_PRJ_NO_ZUNITS,
    kCannotBuild = OX_PRJ_CANNOT_BUILD,
};

// The legacy projection record.  Reading fills it from the text (values upper
// case, comments removed); writing fills it from objects and prints the
// non-empty fields.
struct Record {
    char datum[kFieldSize];
    char fipszone[kFieldSize];
    char projection[kFieldSize];
    char spheroid[kFieldSize];
    char units[kFieldSize];
    char xshift[kFieldSize];
    char yshift[kFieldSize];
    char zone[kFieldSize];
    char zunits[kFieldSize];
    char zunits_comment[kFieldSize];
    char parameters[kParameterLines][kFieldSize];
    int count;  // parameter lines stored
};

void record_clear(Record *r);

// Catalogue codes that the legacy format names directly.
inline constexpr int32_t kMetre = 9001;
inline constexpr int32_t kFoot = 9002;  // the international foot
inline constexpr int32_t kFootUs = 9003;
inline constexpr int32_t kDegree = 9102;
inline constexpr int32_t kGreenwich = 8901;
inline constexpr int32_t kGrs1980 = 7019;
inline constexpr int32_t kNad27 = 4267;
inline constexpr int32_t kNad83 = 4269;
inline constexpr int32_t kNad83Harn = 4152;
inline constexpr int32_t kOldHawaiian = 4135;
inline constexpr int32_t kTransverseMercator = 43006;
inline constexpr int32_t kLambertConformalConic = 43020;

// The universal transverse Mercator zones 1 to 60, north and south.
inline constexpr double kUtmFalseEasting = 500000.0;
inline constexpr double kUtmFalseNorthingSouth = 10000000.0;
inline constexpr double kUtmScaleFactor = 0.9996;
inline constexpr double utm_central_meridian(int32_t zone) { return 6.0 * zone - 183.0; }

// ---------------------------------------------------------------------------
// Reading (ox_coordsys_from_prj.cpp).
// ---------------------------------------------------------------------------
// Scans `text` into `r`; kOk or the scan's error code.
int32_t scan(const char *text, Record *r);

// The value of a parameter line: one decimal number, or degrees, minutes and
// seconds ("-0 30 0" is -0.5).  False for a line that holds no finite number.
bool parameter_value(const char *line, double *value);
// An integer field read the way "%d" reads it (0 when it starts with no
// number; saturated at the 32-bit range).
int32_t integer_field(const char *field);
// A field that holds exactly one finite decimal number (blanks around it).
bool decimal_field(const char *field, double *value);

// ---------------------------------------------------------------------------
// Builders (ox_prjfile_build.cpp, ox_prjfile_vertical.cpp).  Each returns a
// new object or null with `*error` set; nothing is left allocated on failure.
// ---------------------------------------------------------------------------
ox_object *build_coordsys(const Record &r, int32_t *error);
ox_object *build_zunit(const Record &r, int32_t *error);
ox_object *build_vertcs(const Record &r, int32_t *error);
ox_object *build_hvcoordsys(const Record &r, int32_t *error);

// ---------------------------------------------------------------------------
// Vocabulary (ox_prjfile_vocabulary.cpp).
// ---------------------------------------------------------------------------
// A spheroid name: the catalogue spheroid and the geographic system of that
// spheroid alone (0: built as "GCS_<spheroid>" on "D_<spheroid>").
struct SpheroidName {
    const char *name;
    int32_t spheroid;
    int32_t geogcs;
    bool written;  // the name the writer uses for this spheroid
};
// Two semi-axes that name a catalogue spheroid ("6378249.2  6356515.0").
struct SpheroidAxes {
    double a, b;
    int32_t spheroid;
    int32_t geogcs;
    const char *text;  // as the writer prints it
};
// A datum name and the catalogue geographic system it stands for (0: none,
// the spheroid decides).
struct DatumName {
    const char *name;
    int32_t geogcs;
    bool written;
};
// An angular unit name of geographic systems.
struct UnitName {
    const char *name;
    int32_t unit;
};

// What a parameter line carries.
enum class LineKind : uint8_t {
    Latitude,   // an angle in degrees (DMS when written)
    Longitude,  // the same, reckoned from Greenwich
    Angle,      // an azimuth (DMS when written)
    Metres,     // a length in metres (false easting and northing)
    Number,     // a plain number (scale factor)
    Height,     // a height in metres
    Radius,     // the radius of the sphere the projection is computed on
    Selector,   // the variant of the projection ("Projection type < 1 | 2 >")
};
struct LineDesc {
    LineKind kind;
    int32_t parameter;   // parameter code (0 for the radius and a selector)
    int32_t parameter2;  // a second parameter given the same value, or 0
    const char *comment;
};

// One form of a legacy projection: the registry projection it reads as, the
// parameter lines in their order, and how the variant is told apart.
struct ProjectionForm {
    const char *name;      // legacy name ("TRANSVERSE")
    int32_t projection;    // registry code
    int32_t selector;      // the selector line's value of this variant (0: none)
    bool sphere;           // computed on a sphere of the radius line
    bool sphere_of_axis;   // ... which this library takes as the semi-major axis
    int32_t south;         // registry code when the standard parallel is negative (0: none)
    const LineDesc *lines;
    int count;
};
// Legacy names that read as another ("ECKERTVI" as "ECKERT6").
struct NameAlias {
    const char *alias;
    const char *name;
};

extern const SpheroidName kSpheroidNames[];
extern const int kSpheroidNameCount;
extern const SpheroidAxes kSpheroidAxes[];
extern const int kSpheroidAxesCount;
extern const DatumName kDatumNames[];
extern const int kDatumNameCount;
extern const UnitName kAngularUnitNames[];
extern const int kAngularUnitNameCount;
extern const ProjectionForm kProjectionForms[];
extern const int kProjectionFormCount;
extern const NameAlias kProjectionAliases[];
extern const int kProjectionAliasCount;
// Registry projections written as another one they compute identically
// (Gauss_Kruger as "Transverse_Mercator").
struct ProjectionAlias {
    int32_t projection;
    int32_t written_as;
};
extern const ProjectionAlias kProjectionWrittenAs[];
extern const int kProjectionWrittenAsCount;

// Legacy names with a construction of their own.
inline constexpr const char *kGeographic = "GEOGRAPHIC";
inline constexpr const char *kUtm = "UTM";
inline constexpr const char *kStatePlane = "STATEPLANE";
struct GridName {
    const char *name;
    int32_t projcs;  // the catalogue system
};
extern const GridName kGridNames[];
extern const int kGridNameCount;

// Look-ups by name (the name comparison: case, blanks, '-' and '_' ignored).
const SpheroidName *spheroid_by_name(const char *name);
const DatumName *datum_by_name(const char *name);
const UnitName *angular_unit_by_name(const char *name);
const GridName *grid_by_name(const char *name);
// The canonical legacy name of a projection name (aliases resolved).
const char *projection_name(const char *name);

// ---------------------------------------------------------------------------
// State plane and UTM look-ups in the catalogue (ox_prjfile_zones.cpp).
// ---------------------------------------------------------------------------
enum class StatePlaneGroup { Nad27, Nad83 };
// The catalogue code of the state plane zone `fips` of a group in `unit`
// (the 1983 feet groups are searched for a unit other than the metre), or 0.
int32_t state_plane_code(StatePlaneGroup group, int32_t fips, int32_t unit);
// The code of the zone's system in the unit of its group (US feet for 1927,
// metres for 1983), or 0.
int32_t state_plane_base_code(StatePlaneGroup group, int32_t fips);
// The catalogue code of UTM zone `zone` (north or south) on geographic system
// `geogcs`, or 0.
int32_t utm_code(int32_t geogcs, int32_t zone, bool south);

// ---------------------------------------------------------------------------
// Writing (ox_coordsys_to_prj.cpp).
// ---------------------------------------------------------------------------
// Option bit: write every projected system with its projection and parameter
// lines, never as a UTM zone, a state plane zone or a named grid.
inline constexpr int32_t kOptionExplicit = OX_PRJ_EXPLICIT;

// Fills `r` from a coordinate system and an optional vertical system.
int32_t convert(const ox_object *coordsys, const ox_object *vertcs, int32_t option, Record *r);
// The two parallels (radians) on which a Lambert conformal conic with
// standard parallels phi1 and phi2 (equal for one) and scale factor k0 has
// true scale, the poleward one first; false when there are none (k0 > 1).
bool lambert_true_scale_parallels(double e2, double phi1, double phi2, double k0, double *poleward,
                                  double *equatorward);
// Writes an angle in degrees, minutes and seconds ("  45 30  0.0"); `out`
// holds 32 characters.
void format_dms(double degrees, char out[32]);

}  // namespace ox::prj
