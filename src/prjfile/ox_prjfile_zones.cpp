// The catalogue systems that a legacy file names by a zone number: state
// plane zones by FIPS code (an index of the state plane groups, built once),
// and UTM zones by geographic system (the zone families, then the single
// rows of the catalogue).
#include <algorithm>
#include <cmath>

#include "factory/ox_catalogue.h"
#include "object/ox_object.h"
#include "prjfile/ox_prjfile.h"
#include "projection/ox_parmlist.h"

namespace ox::prj {
namespace {


// The FIPS code of a state plane name: the four digits after "FIPS_".
int32_t fips_of(const char *name) {
    for (const char *p = name; *p; ++p) {
        if (p[0] != 'F' || p[1] != 'I' || p[2] != 'P' || p[3] != 'S' || p[4] != '_') continue;
        int32_t v = 0;
        for (int i = 5; i < 9; ++i) {
            if (p[i] < '0' || p[i] > '9') return 0;
            v = v * 10 + (p[i] - '0');
        }
        return v;
    }
    return 0;
}

struct ZoneEntry {
    int32_t fips;
    int32_t code;
    int32_t unit;
};
// The zones of one or two catalogue groups, sorted by FIPS code.
struct ZoneIndex {
    static constexpr int kCapacity = 512;
    ZoneEntry entries[kCapacity];
    int count = 0;

    void add(const cat::Table<cat::ProjcsRow> &group) {
        for (int32_t i = 0; i < group.count && count < kCapacity; ++i) {
            const int32_t fips = fips_of(group.rows[i].name);
            if (fips != 0) entries[count++] = {fips, group.rows[i].code, group.rows[i].unit};
        }
    }
    void sort() {
        std::sort(entries, entries + count, [](const ZoneEntry &a, const ZoneEntry &b) {
            return a.fips != b.fips ? a.fips < b.fips : a.code < b.code;
        });
    }
    // The first entry of `fips` in `unit` (any unit for 0), or 0.
    int32_t find(int32_t fips, int32_t unit) const {
        const ZoneEntry *e = std::lower_bound(entries, entries + count, fips,
                                              [](const ZoneEntry &z, int32_t f) { return z.fips < f; });
        for (; e < entries + count && e->fips == fips; ++e)
            if (unit == 0 || e->unit == unit) return e->code;
        return 0;
    }
};

ZoneIndex make_index(const cat::Table<cat::ProjcsRow> &first, const cat::Table<cat::ProjcsRow> *second) {
    ZoneIndex index;
    index.add(first);
    if (second != nullptr) index.add(*second);
    index.sort();
    return index;
}

const ZoneIndex &index_27() {
    static const ZoneIndex index = make_index(cat::kProjcsStatePlane27, nullptr);
    return index;
}
const ZoneIndex &index_83() {
    static const ZoneIndex index = make_index(cat::kProjcsStatePlane83, nullptr);
    return index;
}
const ZoneIndex &index_83_feet() {
    static const ZoneIndex index = make_index(cat::kProjcsStatePlane83Feet1, &cat::kProjcsStatePlane83Feet2);
    return index;
}

// The value of parameter `code` among a row's parameters, or NaN.
double row_value(const cat::ProjcsRow &r, int32_t code) {
    for (int i = 0; i < r.count; ++i)
        if (cat::kParams[r.first + i].code == code) return cat::kParams[r.first + i].value;
    return NAN;
}

bool utm_values(double fe, double fn, double cm, double k, double lat0, int32_t zone, bool south) {
    return equal_rule(fe, kUtmFalseEasting) && equal_rule(fn, south ? kUtmFalseNorthingSouth : 0.0) &&
           equal_rule(cm, utm_central_meridian(zone)) && equal_rule(k, kUtmScaleFactor) && equal_rule(lat0, 0.0);
}

bool utm_family(const cat::ZoneFamily &f, int32_t geogcs) {
    return f.geogcs == geogcs && f.projection == kTransverseMercator && f.unit == kMetre;
}

}  // namespace

int32_t state_plane_base_code(StatePlaneGroup group, int32_t fips) {
    return (group == StatePlaneGroup::Nad27 ? index_27() : index_83()).find(fips, 0);
}

int32_t state_plane_code(StatePlaneGroup group, int32_t fips, int32_t unit) {
    const int32_t base = state_plane_base_code(group, fips);
    if (base == 0) return 0;
    const ZoneIndex &own = group == StatePlaneGroup::Nad27 ? index_27() : index_83();
    if (own.find(fips, unit) != 0) return base;
    return group == StatePlaneGroup::Nad83 ? index_83_feet().find(fips, unit) : 0;
}

int32_t utm_code(int32_t geogcs, int32_t zone, bool south) {
    if (zone < 1 || zone > 60) return 0;
    // Bands of the families: the member of zone `zone`.
    for (int32_t i = 0; i < cat::kZoneBands.count; ++i) {
        const cat::ZoneBand &b = cat::kZoneBands.rows[i];
        const cat::ZoneFamily &f = cat::kZoneFamilies.rows[b.family];
        if (!utm_family(f, geogcs) || zone < b.first_zone || zone > b.first_zone + (b.high - b.low)) continue;
        const double cm = f.cm_origin + f.cm_per_zone * zone;
        if (utm_values(f.false_easting + f.fe_per_zone * zone, f.false_northing, cm, f.scale_factor,
                       f.latitude_of_origin, zone, south))
            return b.low + (zone - b.first_zone);
    }
    // Listed members of the families.
    for (int32_t i = 0; i < cat::kZoneMembers.count; ++i) {
        const cat::ZoneMember &m = cat::kZoneMembers.rows[i];
        if (utm_family(cat::kZoneFamilies.rows[m.family], geogcs) &&
            utm_values(m.false_easting, m.false_northing, m.central_meridian, m.scale_factor, m.latitude_of_origin,
                       zone, south))
            return m.code;
    }
    // Single rows.
    for (const cat::Table<cat::ProjcsRow> *group : {&cat::kProjcsZone, &cat::kProjcsMisc})
        for (int32_t i = 0; i < group->count; ++i) {
            const cat::ProjcsRow &r = group->rows[i];
            if (r.geogcs == geogcs && r.projection == kTransverseMercator && r.unit == kMetre && r.count == 5 &&
                utm_values(row_value(r, kParFalseEasting), row_value(r, kParFalseNorthing),
                           row_value(r, kParCentralMeridian), row_value(r, kParScaleFactor),
                           row_value(r, kParLatitudeOfOrigin), zone, south))
                return r.code;
        }
    return 0;
}

}  // namespace ox::prj
