// Zone families of transverse Mercator systems: UTM, Gauss-Kruger, MTM and
// the national zone series.  A family is one name template and one rule; its
// members are the codes of its bands (zone = code - low + first zone) or the
// codes of its member list.
#include <cstdio>

#include "factory/ox_factory.h"
#include "projection/ox_parmlist.h"

namespace ox {
namespace {

// Zone numbers in Roman numerals ("Philippines_Zone_IV").
void roman(int n, char *out, size_t size) {
    static const struct { int value; const char *text; } kDigits[] = {
        {1000, "M"}, {900, "CM"}, {500, "D"}, {400, "CD"}, {100, "C"}, {90, "XC"}, {50, "L"},
        {40, "XL"},  {10, "X"},   {9, "IX"},  {5, "V"},    {4, "IV"},  {1, "I"}};
    size_t k = 0;
    for (const auto &d : kDigits)
        for (; n >= d.value && k + 4 < size; n -= d.value)
            for (const char *t = d.text; *t; ++t) out[k++] = *t;
    out[k] = '\0';
}

void member_name(const cat::ZoneFamily &f, int zone, int zone2, char name[OX_NAME_SIZE]) {
    bool is_text = false;
    for (const char *p = f.name_template; *p; ++p)
        if (p[0] == '%' && p[1] == 's') is_text = true;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    if (is_text) {
        char text[32];
        roman(zone, text, sizeof text);
        std::snprintf(name, OX_NAME_SIZE, f.name_template, text);
    } else {
        std::snprintf(name, OX_NAME_SIZE, f.name_template, zone, zone2);
    }
#pragma GCC diagnostic pop
}

ox_object *build_member(const cat::ZoneFamily &f, int zone, int zone2, double fe, double fn, double cm, double k,
                        double lat0) {
    const cat::ParamValue values[] = {{kParFalseEasting, fe, nullptr},     {kParFalseNorthing, fn, nullptr},
                                      {kParCentralMeridian, cm, nullptr},  {kParScaleFactor, k, nullptr},
                                      {kParLatitudeOfOrigin, lat0, nullptr}};
    ox_object *params[OX_PARAMETER_SLOTS];
    if (!factory_params(values, 5, params)) return nullptr;
    char name[OX_NAME_SIZE];
    member_name(f, zone, zone2, name);
    return projcs_assemble(name, f.geogcs, f.projection, f.unit, params);
}

}  // namespace

ox_object *projcs_from_zone_families(int32_t code) {
    // Bands: sorted by their first code and disjoint, so a binary search.
    int32_t lo = 0, hi = cat::kZoneBands.count;
    while (lo < hi) {
        const int32_t mid = lo + (hi - lo) / 2;
        if (cat::kZoneBands.rows[mid].high < code)
            lo = mid + 1;
        else
            hi = mid;
    }
    if (lo < cat::kZoneBands.count && cat::kZoneBands.rows[lo].low <= code) {
        const cat::ZoneBand &b = cat::kZoneBands.rows[lo];
        const cat::ZoneFamily &f = cat::kZoneFamilies.rows[b.family];
        const int zone = code - b.low + b.first_zone;
        double cm = f.cm_origin + f.cm_per_zone * zone;
        if (cm > 180.0) cm -= 360.0;  // zones past the antimeridian
        return build_member(f, zone, 0, f.false_easting + f.fe_per_zone * zone, f.false_northing, cm,
                            f.scale_factor, f.latitude_of_origin);
    }
    if (const cat::ZoneMember *m = cat::find(cat::kZoneMembers, code))
        return build_member(cat::kZoneFamilies.rows[m->family], m->zone, m->zone2, m->false_easting,
                            m->false_northing, m->central_meridian, m->scale_factor, m->latitude_of_origin);
    return nullptr;
}

}  // namespace ox
