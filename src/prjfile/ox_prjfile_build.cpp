// Building coordinate systems from a legacy projection record: the
// geographic system of the datum and spheroid lines, the units, and the
// projected system of each legacy projection name (its parameter lines), of
// a UTM zone, of a state plane zone and of a named grid, with the shifts of
// the false origin.
#include <cmath>
#include <cstdio>
#include <cstring>

#include "factory/ox_catalogue.h"
#include "factory/ox_factory.h"
#include "object/ox_strings.h"
#include "prjfile/ox_prjfile.h"
#include "projection/ox_parmlist.h"

namespace ox::prj {
namespace {

constexpr const char *kUserDefined = "User_Defined";
constexpr const char *kDefaultSpheroid = "CLARKE1866";  // the legacy default

// Deletes an object at the end of scope unless released.
struct Hold {
    ox_object *h;
    explicit Hold(ox_object *p = nullptr) : h(p) {}
    Hold(const Hold &) = delete;
    Hold &operator=(const Hold &) = delete;
    ~Hold() { obj_delete(h); }
    ox_object *release() {
        ox_object *p = h;
        h = nullptr;
        return p;
    }
};

bool starts_with(const char *s, const char *prefix) { return std::strncmp(s, prefix, std::strlen(prefix)) == 0; }

// Joins pieces into a name, cut at 63 characters like every name.
void join_name(char out[OX_NAME_SIZE], const char *a, const char *b, const char *c = "") {
    size_t n = copy_bounded(out, a, OX_NAME_SIZE);
    n += copy_bounded(out + n, b, OX_NAME_SIZE - n);
    copy_bounded(out + n, c, OX_NAME_SIZE - n);
}

ox_object *fail(int32_t *error, int32_t code) {
    *error = code;
    return nullptr;
}

// A geographic system from named parts (Greenwich, degrees); null on failure.
ox_object *geogcs_of_parts(const char *gcs, const char *datum, ox_object *spheroid) {
    ox_object *d = ox_datum_new(datum, spheroid);
    if (d == nullptr) {
        ox_spheroid_del(spheroid);
        return nullptr;
    }
    return geogcs_from_parts(gcs, d, ox_factory_primem(kGreenwich), ox_factory_unit(kDegree));
}

// "GCS_User_Defined" on "D_User_Defined" with a spheroid of these values.
ox_object *user_geogcs(double axis, double flattening, int32_t *error) {
    ox_object *s = ox_spheroid_new("User_Defined_Spheroid", axis, flattening);
    if (s == nullptr) return fail(error, kCannotBuild);
    char gcs[OX_NAME_SIZE], datum[OX_NAME_SIZE];
    join_name(gcs, "GCS_", kUserDefined);
    join_name(datum, "D_", kUserDefined);
    ox_object *g = geogcs_of_parts(gcs, datum, s);
    return g ? g : fail(error, kCannotBuild);
}

// The geographic system of a catalogue spheroid alone: the catalogue's
// system when it has one, else "GCS_<spheroid>" on "D_<spheroid>".
ox_object *spheroid_geogcs(int32_t spheroid, int32_t geogcs, int32_t *error) {
    if (geogcs != 0) {
        ox_object *g = ox_factory_geogcs(geogcs);
        return g ? g : fail(error, kCannotBuild);
    }
    ox_object *s = ox_factory_spheroid(spheroid);
    if (s == nullptr) return fail(error, kCannotBuild);
    char gcs[OX_NAME_SIZE], datum[OX_NAME_SIZE];
    join_name(gcs, "GCS_", s->name);
    join_name(datum, "D_", s->name);
    ox_object *g = geogcs_of_parts(gcs, datum, s);
    return g ? g : fail(error, kCannotBuild);
}

// The two numbers of a spheroid given by its semi-axes (one number: a
// sphere); false when the text is not one or two numbers.
bool spheroid_axes(const char *text, double *a, double *b) {
    char first[kFieldSize];
    copy_bounded(first, text, sizeof first);
    char *rest = first;
    while (*rest && !is_space(static_cast<unsigned char>(*rest))) ++rest;
    const bool two = *rest != '\0';
    if (two) *rest++ = '\0';
    if (!decimal_field(first, a)) return false;
    *b = *a;
    return !two || decimal_field(rest, b);
}

// The geographic system of the datum and spheroid lines: a named datum
// decides; else the spheroid (named, two semi-axes, or Clarke 1866 when the
// record names none).
ox_object *geogcs_of_record(const Record &r, int32_t *error) {
    if (r.datum[0] != '\0') {
        const DatumName *d = datum_by_name(r.datum);
        if (d == nullptr) return fail(error, kCannotBuild);
        if (d->geogcs != 0) {
            ox_object *g = ox_factory_geogcs(d->geogcs);
            return g ? g : fail(error, kCannotBuild);
        }
    }
    const char *spheroid = r.spheroid[0] != '\0' ? r.spheroid : kDefaultSpheroid;
    if (const SpheroidName *s = spheroid_by_name(spheroid)) return spheroid_geogcs(s->spheroid, s->geogcs, error);
    double a = 0.0, b = 0.0;
    if (!spheroid_axes(spheroid, &a, &b) || !(a > 0.0) || !(b > 0.0) || b > a) return fail(error, kCannotBuild);
    for (int i = 0; i < kSpheroidAxesCount; ++i)
        if (equal_rule(a, kSpheroidAxes[i].a) && equal_rule(b, kSpheroidAxes[i].b))
            return spheroid_geogcs(kSpheroidAxes[i].spheroid, kSpheroidAxes[i].geogcs, error);
    return user_geogcs(a, (a - b) / a, error);
}

// The linear unit of the units line: metres by default, "MET...", "FE..."
// (the US survey foot), or a number of units per metre (the catalogue unit
// of that size, else a "User_Defined_Unit").
ox_object *linear_unit(const char *units, int32_t *error) {
    int32_t code = kMetre;
    double per_metre = 0.0;
    if (units[0] == '\0' || starts_with(units, "MET")) {
        code = kMetre;
    } else if (starts_with(units, "FE")) {
        code = kFootUs;
    } else if (decimal_field(units, &per_metre) && per_metre > 0.0 && std::isfinite(1.0 / per_metre)) {
        const double factor = 1.0 / per_metre;
        code = 0;
        for (int32_t i = 0; i < cat::kUnits.count && code == 0; ++i)
            if (ox_factory_coderanges_check(ox_factory_coderanges_linear_unit(), cat::kUnits.rows[i].code) &&
                equal_rule(cat::kUnits.rows[i].factor, factor))
                code = cat::kUnits.rows[i].code;
        if (code == 0) {
            ox_object *u = ox_unit_new("User_Defined_Unit", factor);
            return u ? u : fail(error, kCannotBuild);
        }
    } else {
        return fail(error, kCannotBuild);
    }
    ox_object *u = ox_factory_unit(code);
    return u ? u : fail(error, kCannotBuild);
}

// The name suffix of a system converted to another unit.
const char *unit_suffix(const ox_object *unit) {
    switch (obj_code(unit)) {
        case kMetre: return "_Meters";
        case kFootUs: return "_Feet";
        case kFoot: return "_Feet_Intl";
        default: return "_AltUnits";
    }
}

void append_name(ox_object *h, const char *suffix) {
    char name[OX_NAME_SIZE];
    join_name(name, h->name, suffix);
    copy_bounded(h->name, name, OX_NAME_SIZE);
}

// The shifts of the false origin (system units); false for a shift line
// that is not a number.
bool shifts(const Record &r, double *x, double *y) {
    *x = *y = 0.0;
    return (r.xshift[0] == '\0' || decimal_field(r.xshift, x)) && (r.yshift[0] == '\0' || decimal_field(r.yshift, y));
}

// No longer the catalogue's object: a new object's status and no code.
void unstamp(ox_object *h) {
    obj_set_code(h, -1, nullptr, nullptr);
    obj_set_status(h, OX_STATUS_NEW);
}

// A catalogue projected system (owned) brought to the units and shifts of
// the record.
ox_object *adapt(ox_object *projcs, const Record &r, int32_t *error) {
    Hold held(projcs);
    Hold unit(linear_unit(r.units, error));
    double dx = 0.0, dy = 0.0;
    if (unit.h == nullptr) return nullptr;
    if (!shifts(r, &dx, &dy)) return fail(error, kCannotBuild);
    if (!equal_rule(ox_unit_factor(unit.h), ox_unit_factor(ox_projcs_unit(projcs)))) {
        Hold converted(ox_projcs_clone_alterunits(projcs, unit.h, nullptr));
        if (converted.h == nullptr) return fail(error, kCannotBuild);
        append_name(converted.h, unit_suffix(unit.h));
        obj_delete(held.release());
        held.h = converted.release();
    }
    if (dx != 0.0 || dy != 0.0) {
        ox_object *params[OX_PARAMETER_SLOTS];
        ox_projcs_parameters(held.h, params);
        if (params[0] == nullptr || params[1] == nullptr) return fail(error, kCannotBuild);
        ox_parameter_value_set(params[0], ox_parameter_value(params[0]) + dx);
        ox_parameter_value_set(params[1], ox_parameter_value(params[1]) + dy);
        append_name(held.h, "_Shifted");
        unstamp(held.h);
    }
    return held.release();
}

// A projected system from its parts (all owned, deleted on failure).
ox_object *assemble(const char *name, ox_object *geogcs, ox_object *projection, ox_object *params[OX_PARAMETER_SLOTS],
                    ox_object *unit, int32_t *error) {
    ox_object *h = projcs_from_parts(name, geogcs, projection, params, unit);
    return h ? h : fail(error, kCannotBuild);
}

// ---------------------------------------------------------------------------
// UTM, state plane and the named grids.
// ---------------------------------------------------------------------------
ox_object *build_utm(const Record &r, int32_t *error) {
    const int32_t signed_zone = integer_field(r.zone);
    if (signed_zone < -60 || signed_zone > 60 || signed_zone == 0) return fail(error, kCannotBuild);
    const bool south = signed_zone < 0;  // a negative zone is in the southern hemisphere
    const int32_t zone = south ? -signed_zone : signed_zone;
    Hold geogcs(geogcs_of_record(r, error));
    if (geogcs.h == nullptr) return nullptr;
    const int32_t gcs_code = obj_code(geogcs.h);
    const int32_t code = gcs_code > 0 ? utm_code(gcs_code, zone, south) : 0;
    if (code != 0) {
        ox_object *h = ox_factory_projcs(code);
        return h ? adapt(h, r, error) : fail(error, kCannotBuild);
    }
    // A zone the catalogue does not hold: the same construction on this datum.
    const cat::ParamValue values[] = {{kParFalseEasting, kUtmFalseEasting, nullptr},
                                      {kParFalseNorthing, south ? kUtmFalseNorthingSouth : 0.0, nullptr},
                                      {kParCentralMeridian, utm_central_meridian(zone), nullptr},
                                      {kParScaleFactor, kUtmScaleFactor, nullptr},
                                      {kParLatitudeOfOrigin, 0.0, nullptr}};
    ox_object *params[OX_PARAMETER_SLOTS];
    if (!factory_params(values, 5, params)) return fail(error, kCannotBuild);
    const char *gcs = geogcs.h->name;
    if (starts_with(gcs, "GCS_")) gcs += 4;
    char zone_text[32], name[OX_NAME_SIZE];
    std::snprintf(zone_text, sizeof zone_text, "_UTM_Zone_%d%c", zone, south ? 'S' : 'N');
    join_name(name, gcs, zone_text);
    ox_object *h = assemble(name, geogcs.release(), ox_factory_projection(kTransverseMercator), params,
                            ox_factory_unit(kMetre), error);
    return h ? adapt(h, r, error) : nullptr;
}

// The HARN variant of a 1983 state plane system: the same zone on the
// high-precision network.
ox_object *on_harn(ox_object *projcs, int32_t *error) {
    Hold held(projcs);
    ox_object *params[OX_PARAMETER_SLOTS] = {}, *source[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(projcs, source);
    bool ok = true;
    for (int i = 0; i < OX_PARAMETER_SLOTS && ok; ++i)
        if (source[i] != nullptr) ok = (params[i] = ox_parameter_clone(source[i])) != nullptr;
    if (!ok) {
        params_delete(params);
        return fail(error, kCannotBuild);
    }
    char name[OX_NAME_SIZE];
    const char *n = projcs->name;
    join_name(name, "NAD_1983_HARN_", starts_with(n, "NAD_1983_") ? n + 9 : n);
    return assemble(name, ox_factory_geogcs(kNad83Harn), ox_projection_clone(ox_projcs_projection(projcs)), params,
                    ox_unit_clone(ox_projcs_unit(projcs)), error);
}

ox_object *build_state_plane(const Record &r, int32_t *error) {
    int32_t fips = integer_field(r.fipszone);
    if (fips == 0) fips = integer_field(r.zone);
    // The datum chooses the group; without one, the spheroid of 1983.
    const DatumName *datum = r.datum[0] != '\0' ? datum_by_name(r.datum) : nullptr;
    if (r.datum[0] != '\0' && datum == nullptr) return fail(error, kCannotBuild);
    if (datum != nullptr && datum->geogcs == 0) datum = nullptr;  // "NONE": as if not given
    const SpheroidName *spheroid = spheroid_by_name(r.spheroid);
    const bool nad83 = datum != nullptr ? datum->geogcs == kNad83 || datum->geogcs == kNad83Harn
                                        : spheroid != nullptr && spheroid->spheroid == kGrs1980;
    if (datum != nullptr && !nad83 && datum->geogcs != kNad27 && datum->geogcs != kOldHawaiian)
        return fail(error, kCannotBuild);
    const StatePlaneGroup group = nad83 ? StatePlaneGroup::Nad83 : StatePlaneGroup::Nad27;
    Hold unit(linear_unit(r.units, error));
    if (unit.h == nullptr) return nullptr;
    int32_t code = state_plane_code(group, fips, obj_code(unit.h));
    if (code == 0) code = state_plane_base_code(group, fips);
    if (code == 0) return fail(error, kCannotBuild);
    ox_object *h = ox_factory_projcs(code);
    if (h == nullptr) return fail(error, kCannotBuild);
    if (datum != nullptr && datum->geogcs == kOldHawaiian && obj_code(ox_projcs_geogcs(h)) != kOldHawaiian) {
        ox_projcs_del(h);
        return fail(error, kCannotBuild);
    }
    if (datum != nullptr && datum->geogcs == kNad83Harn && (h = on_harn(h, error)) == nullptr) return nullptr;
    return adapt(h, r, error);
}

ox_object *build_grid(const GridName &grid, const Record &r, int32_t *error) {
    ox_object *h = ox_factory_projcs(grid.projcs);
    return h ? adapt(h, r, error) : fail(error, kCannotBuild);
}

// ---------------------------------------------------------------------------
// A projection with its parameter lines.
// ---------------------------------------------------------------------------
ox_object *build_form(const char *legacy, const Record &r, int32_t *error) {
    // The lines that hold something, in their order.
    const char *lines[kParameterLines];
    int count = 0;
    for (int i = 0; i < r.count; ++i)
        if (r.parameters[i][0] != '\0') lines[count++] = r.parameters[i];
    const ProjectionForm *form = nullptr;
    for (int i = 0; i < kProjectionFormCount && form == nullptr; ++i) {
        const ProjectionForm &f = kProjectionForms[i];
        if (!name_eq(f.name, legacy)) continue;
        double selector = 0.0;
        if (f.selector == 0 || (count > 0 && parameter_value(lines[0], &selector) && selector == f.selector))
            form = &f;
    }
    if (form == nullptr || count != form->count) return fail(error, kCannotBuild);

    Hold unit(linear_unit(r.units, error));
    if (unit.h == nullptr) return nullptr;
    const double factor = ox_unit_factor(unit.h);
    double dx = 0.0, dy = 0.0;
    if (!shifts(r, &dx, &dy)) return fail(error, kCannotBuild);
    cat::ParamValue values[kParameterLines * 2];
    int nvalues = 0;
    double radius = 0.0, first_parallel = 0.0;
    for (int i = 0; i < form->count; ++i) {
        const LineDesc &d = form->lines[i];
        double v = 0.0;
        if (!parameter_value(lines[i], &v)) return fail(error, kCannotBuild);
        if (d.kind == LineKind::Radius) {
            if (v < 0.0) return fail(error, kCannotBuild);
            radius = v;
            continue;
        }
        if (d.kind == LineKind::Selector) continue;
        if (d.kind == LineKind::Metres) v = v / factor + (d.parameter == kParFalseEasting ? dx : dy);
        if (d.kind == LineKind::Height) v /= factor;  // a height is in the system's unit
        if (d.parameter == kParStandardParallel1) first_parallel = v;
        values[nvalues++] = {d.parameter, v, nullptr};
        if (d.parameter2 != 0) values[nvalues++] = {d.parameter2, v, nullptr};
    }

    Hold geogcs(geogcs_of_record(r, error));
    if (geogcs.h == nullptr) return nullptr;
    if (form->sphere) {
        // On the sphere of the radius line; a radius of 0 takes the semi-major
        // axis of the datum and spheroid lines.
        if (radius == 0.0) radius = ox_spheroid_axis(ox_datum_spheroid(ox_geogcs_datum(geogcs.h)));
        obj_delete(geogcs.release());
        if ((geogcs.h = user_geogcs(radius, 0.0, error)) == nullptr) return nullptr;
    }
    const int32_t projection_code = form->south != 0 && first_parallel < 0.0 ? form->south : form->projection;
    ox_object *projection = ox_factory_projection(projection_code);
    ox_object *params[OX_PARAMETER_SLOTS];
    if (projection == nullptr || !factory_params(values, nvalues, params)) {
        ox_projection_del(projection);
        return fail(error, kCannotBuild);
    }
    char name[OX_NAME_SIZE];
    join_name(name, projection->name, dx != 0.0 || dy != 0.0 ? "_Shifted" : "");
    return assemble(name, geogcs.release(), projection, params, unit.release(), error);
}

ox_object *build_projected(const Record &r, int32_t *error) {
    const char *legacy = projection_name(r.projection);
    if (name_eq(legacy, kUtm)) return build_utm(r, error);
    if (name_eq(legacy, kStatePlane)) return build_state_plane(r, error);
    if (const GridName *grid = grid_by_name(legacy)) return build_grid(*grid, r, error);
    return build_form(legacy, r, error);
}

ox_object *build_geographic(const Record &r, int32_t *error) {
    double dx = 0.0, dy = 0.0;
    if (!shifts(r, &dx, &dy) || dx != 0.0 || dy != 0.0) return fail(error, kCannotBuild);  // no false origin
    Hold geogcs(geogcs_of_record(r, error));
    if (geogcs.h == nullptr || r.units[0] == '\0') return geogcs.release();
    const UnitName *named = angular_unit_by_name(r.units);
    if (named == nullptr) return fail(error, kCannotBuild);
    Hold unit(ox_factory_unit(named->unit));
    if (unit.h == nullptr) return fail(error, kCannotBuild);
    if (ox_unit_eq(unit.h, ox_geogcs_unit(geogcs.h))) return geogcs.release();
    char name[OX_NAME_SIZE];
    join_name(name, geogcs.h->name, "_AltUnits");
    ox_object *h = geogcs_from_parts(name, ox_datum_clone(ox_geogcs_datum(geogcs.h)),
                                     ox_primem_clone(ox_geogcs_primem(geogcs.h)), unit.release());
    return h ? h : fail(error, kCannotBuild);
}

}  // namespace

ox_object *build_coordsys(const Record &r, int32_t *error) {
    *error = kOk;
    ox_object *h = starts_with(r.projection, "GEOG") ? build_geographic(r, error) : build_projected(r, error);
    if (h == nullptr && *error == kOk) *error = kCannotBuild;
    return h;
}

}  // namespace ox::prj
