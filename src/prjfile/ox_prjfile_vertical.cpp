// The vertical side of a legacy projection record: the unit of the ZUNITS
// line, the vertical system it names in its comment ("NAVD_1988 - VCS# =
// 5703") or an "Unknown VCS" in that unit, and the pair of the horizontal
// and the vertical system.
#include <cmath>
#include <cstring>

#include "factory/ox_catalogue.h"
#include "factory/ox_factory.h"
#include "object/ox_strings.h"
#include "prjfile/ox_prjfile.h"
#include "projection/ox_parmlist.h"

namespace ox::prj {
namespace {

constexpr const char *kVcsMarker = " - VCS# = ";

// The vertical system that the zunits comment names, when its name is the
// comment's text before the marker; null otherwise.
ox_object *named_vertcs(const char *comment) {
    const char *marker = std::strstr(comment, kVcsMarker);
    if (marker == nullptr) return nullptr;
    const int32_t code = integer_field(marker + std::strlen(kVcsMarker));
    if (code <= 0) return nullptr;
    ox_object *v = ox_factory_vertcs(code);
    char name[kFieldSize];
    const size_t n = static_cast<size_t>(marker - comment);
    std::memcpy(name, comment, n);
    name[n] = '\0';
    if (v != nullptr && !name_eq(v->name, name)) {
        ox_vertcs_del(v);
        return nullptr;
    }
    return v;
}

}  // namespace

ox_object *build_zunit(const Record &r, int32_t *error) {
    const char *z = r.zunits;
    *error = kOk;
    if (z[0] == '\0' || std::strncmp(z, "NO", 2) == 0) {
        *error = kNoZunits;
        return nullptr;
    }
    ox_object *unit = nullptr;
    if (std::strncmp(z, "MET", 3) == 0) {
        unit = ox_factory_unit(kMetre);
    } else if (std::strncmp(z, "FE", 2) == 0) {
        unit = ox_factory_unit(kFootUs);
    } else {
        // A number of vertical units per metre.
        double per_metre = 0.0;
        if (!decimal_field(z, &per_metre) || !(per_metre > 0.0) || !std::isfinite(1.0 / per_metre) ||
            !(1.0 / per_metre > 0.0)) {
            *error = kBadZunits;
            return nullptr;
        }
        unit = ox_unit_new("User_Defined_Unit", 1.0 / per_metre);
    }
    if (unit == nullptr) *error = kCannotBuild;
    return unit;
}

ox_object *build_vertcs(const Record &r, int32_t *error) {
    ox_object *unit = build_zunit(r, error);
    if (unit == nullptr) return nullptr;
    if (ox_object *v = named_vertcs(r.zunits_comment)) {
        if (ox_unit_eq(ox_vertcs_unit(v), unit)) {
            ox_unit_del(unit);
            return v;
        }
        ox_object *altered = ox_vertcs_clone_alterunits(v, unit);
        ox_vertcs_del(v);
        ox_unit_del(unit);
        if (altered == nullptr) *error = kCannotBuild;
        return altered;
    }
    // "Unknown VCS": no shift, pointing up, in the ZUNITS unit.
    const cat::ParamValue values[] = {{kParDirection, 1.0, nullptr}, {kParVerticalShift, 0.0, nullptr}};
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_object *datum = ox_vdatum_new("Unknown");
    ox_object *v = nullptr;
    if (datum != nullptr && factory_params(values, 2, params)) {
        v = ox_vertcs_new("Unknown VCS", datum, params, unit);
        if (v == nullptr) params_delete(params);
    }
    if (v == nullptr) {
        ox_vdatum_del(datum);
        ox_unit_del(unit);
        *error = kCannotBuild;
    }
    return v;
}

ox_object *build_hvcoordsys(const Record &r, int32_t *error) {
    ox_object *coordsys = build_coordsys(r, error);
    if (coordsys == nullptr) return nullptr;
    int32_t vertical_error = kOk;
    ox_object *vertcs = build_vertcs(r, &vertical_error);
    // A file without a vertical unit is a horizontal system alone.
    if (vertcs == nullptr && vertical_error != kNoZunits) {
        ox_coordsys_del(coordsys);
        *error = vertical_error;
        return nullptr;
    }
    ox_object *pair = ox_hvcoordsys_new(coordsys, vertcs);
    if (pair == nullptr) {
        ox_coordsys_del(coordsys);
        ox_vertcs_del(vertcs);
        *error = kCannotBuild;
        return nullptr;
    }
    *error = kOk;
    return pair;
}

}  // namespace ox::prj
