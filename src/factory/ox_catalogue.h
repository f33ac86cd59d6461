// The built-in catalogue: constant tables compiled from data/ by tools/gencat
// (the generated ox_catalogue_data.cpp defines them), and the look-ups the
// kind builders use.  Every table of rows is sorted by code; every
// definition-string table by name in byte order.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ox::cat {

// A parameter value of a catalogue row: the parameter's code, its value and,
// for the grid parameter of a transformation ("Dataset_conus"), its name.
struct ParamValue {
    int32_t code;
    double value;
    const char *name;  // null: the parameter list's name of `code`
};

struct UnitRow { int32_t code; const char *name; double factor; };
struct PrimemRow { int32_t code; const char *name; double longitude; };
struct SpheroidRow { int32_t code; const char *name; double axis; double inverse_flattening; };
struct DatumRow { int32_t code; const char *name; int32_t spheroid; };
struct GeogcsRow { int32_t code; const char *name; int32_t datum; int32_t primem; int32_t unit; };
struct ProjcsRow {
    int32_t code;
    const char *name;
    int32_t geogcs;
    int32_t projection;
    int32_t unit;
    uint16_t first;  // parameters: kParams[first .. first + count)
    uint16_t count;
};
struct VdatumRow { int32_t code; const char *name; };
struct VertcsRow {
    int32_t code;
    const char *name;
    int32_t datum;  // a vertical datum, or a horizontal datum in the second table
    int32_t unit;
    uint16_t first;
    uint16_t count;
};
struct GeogtranRow {
    int32_t code;
    const char *name;
    int32_t method;
    int32_t geogcs1;
    int32_t geogcs2;
    uint16_t first;
    uint16_t count;
};

// A zone family: a name template with the zone number ("%d", a second "%d"
// for a sub-zone, or "%s" for the zone in Roman numerals) and the parts and
// transverse Mercator parameters of its members.  Band members take the
// linear rule below; listed members carry their own values.
struct ZoneFamily {
    const char *name_template;
    int32_t geogcs;
    int32_t projection;
    int32_t unit;
    double false_easting;     // at zone 0
    double fe_per_zone;
    double false_northing;
    double cm_origin;         // central meridian at zone 0
    double cm_per_zone;
    double scale_factor;
    double latitude_of_origin;
};
// A contiguous band of codes of one family: zone = code - low + first_zone.
struct ZoneBand { int32_t low; int32_t high; int32_t first_zone; int32_t family; };
// A member of a family whose codes follow no offset rule.
struct ZoneMember {
    int32_t code;
    int32_t family;
    int32_t zone;
    int32_t zone2;
    double false_easting;
    double false_northing;
    double central_meridian;
    double scale_factor;
    double latitude_of_origin;
};

struct Replaced { int32_t old_code; int32_t new_code; };
struct DefRow { const char *name; int32_t code; };
// Canonical row of each code of a definition-string table: the row of the
// code that comes first in name order.
struct DefCode { int32_t code; int32_t row; };

template <class Row>
struct Table {
    const Row *rows;
    int32_t count;
};

// One definition-string table with its prefix and its code index.
struct DefTable {
    const char *prefix;
    Table<DefRow> names;
    Table<DefCode> codes;
};

// Kinds of the definition-string tables, in the order the name look-up
// tests their prefixes.
enum DefKind : int {
    kDefGeogcs, kDefProjcs, kDefVertcs, kDefDatum, kDefVdatum, kDefGeogtran, kDefUnit, kDefPrimem,
    kDefSpheroid, kDefMethod, kDefHtmethod, kDefProjection, kDefParameter, kDefKinds
};

extern const ParamValue kParams[];
extern const Table<UnitRow> kUnits;
extern const Table<PrimemRow> kPrimems;
extern const Table<SpheroidRow> kSpheroids;
extern const Table<DatumRow> kDatums;
extern const Table<GeogcsRow> kGeogcs;
// Projected groups in the order the projected builder consults them: the
// classic groups, the HARN state plane systems, the Wisconsin county systems,
// then the registry's systems outside the classic bands; the superseded
// definitions of the builder's last step apart.
extern const Table<ProjcsRow> kProjcsMisc, kProjcsZone, kProjcsStatePlane27, kProjcsStatePlane83,
    kProjcsStatePlane83Feet1, kProjcsStatePlane83Feet2, kProjcsHarn, kProjcsWiscrs, kProjcsEpsg, kProjcsSpecial;
extern const Table<ZoneFamily> kZoneFamilies;
extern const Table<ZoneBand> kZoneBands;      // sorted by low
extern const Table<ZoneMember> kZoneMembers;  // sorted by code
extern const Table<VdatumRow> kVdatums;
extern const Table<VertcsRow> kVertcs;        // on vertical datums
extern const Table<VertcsRow> kVertcsHdatum;  // on horizontal datums
extern const Table<GeogtranRow> kGeogtrans;
extern const Table<Replaced> kReplacedSpheroid, kReplacedDatum, kReplacedGeogcs, kReplacedProjcs,
    kReplacedVdatum, kReplacedVertcs, kReplacedGeogtran;
// Codes whose catalogue definition is superseded (built with status 32).
extern const Table<int32_t> kSupersededDatum, kSupersededGeogcs, kSupersededProjcs, kSupersededGeogtran;
extern const DefTable kDefTables[kDefKinds];
extern const Table<DefRow> kSupersededNames;  // sorted by name
extern const Table<DefCode> kSupersededCodes;  // sorted by code

// The row whose `key` member equals `code` in a table sorted by that member,
// or null (binary search).
template <class Row>
const Row *find_by(const Table<Row> &t, int32_t code, int32_t Row::*key) {
    int32_t lo = 0, hi = t.count;
    while (lo < hi) {
        const int32_t mid = lo + (hi - lo) / 2;
        if (t.rows[mid].*key < code)
            lo = mid + 1;
        else
            hi = mid;
    }
    return lo < t.count && t.rows[lo].*key == code ? &t.rows[lo] : nullptr;
}

// The row of `code` in a table sorted by code, or null.
template <class Row>
const Row *find(const Table<Row> &t, int32_t code) {
    return find_by(t, code, &Row::code);
}

inline bool contains(const Table<int32_t> &t, int32_t code) {
    for (int32_t i = 0; i < t.count; ++i)
        if (t.rows[i] == code) return true;
    return false;
}

// The replacement of a replaced code, or 0.
inline int32_t replacement(const Table<Replaced> &t, int32_t code) {
    const Replaced *r = find_by(t, code, &Replaced::old_code);
    return r ? r->new_code : 0;
}

}  // namespace ox::cat
