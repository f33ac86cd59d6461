// Writing legacy projection files: the converter from a coordinate system
// (and a vertical system) to the legacy record, the printer of the record,
// and the entry points for files and strings.
//
// A projected system is written, in this order of preference, as a UTM zone,
// a state plane zone or a named grid when reading that back gives the same
// system (its own name aside), else as its legacy projection with the
// parameter lines the driver would use: angles in degrees, minutes and
// seconds reckoned from Greenwich, lengths in metres.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "object/ox_object.h"
#include "object/ox_objstrings.h"
#include "object/ox_strings.h"
#include "prjfile/ox_prjfile.h"
#include "projection/ox_parmlist.h"
#include "projection/ox_pcsconstants.h"

namespace ox::prj {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
// The seconds of an angle are written to the microsecond; from this on they
// round up to the next minute.
constexpr double kSecondsCarry = 59.9999995;
constexpr double kMaxDegrees = 2147483647.0;

const char *const kVcsFormat = " /* %s - VCS# = %6d";

// ---------------------------------------------------------------------------
// The printer.
// ---------------------------------------------------------------------------
void print_line(TextOut &out, const char *label, const char *value, const char *after = "") {
    if (value[0] == '\0') return;
    out.put(label);
    out.put(value);
    out.put(after);
    out.put_char('\n');
}

void print(const Record &r, TextOut &out) {
    print_line(out, "Projection    ", r.projection);
    print_line(out, "Fipszone      ", r.fipszone);
    print_line(out, "Zone          ", r.zone);
    print_line(out, "Datum         ", r.datum);
    print_line(out, "Spheroid      ", r.spheroid);
    print_line(out, "Units         ", r.units);
    print_line(out, "Zunits        ", r.zunits, r.zunits_comment);
    print_line(out, "Xshift        ", r.xshift);
    print_line(out, "Yshift        ", r.yshift);
    if (r.count > 0) print_line(out, "Parameters    ", r.parameters[0]);
    for (int i = 1; i < r.count; ++i)
        if (r.parameters[i][0] != '\0') {
            out.put(r.parameters[i]);
            out.put_char('\n');
        }
}

// ---------------------------------------------------------------------------
// Pieces of the record.
// ---------------------------------------------------------------------------
void set(char *field, const char *value) { copy_bounded(field, value, kFieldSize); }

// True when `unit` is the catalogue unit `code` (by its code, or by name and
// size).
bool is_unit(const ox_object *unit, int32_t code) {
    if (obj_code(unit) > 0) return obj_code(unit) == code;
    ox_object *u = ox_factory_unit(code);
    const bool same = ox_unit_eq(unit, u) != 0;
    ox_unit_del(u);
    return same;
}

// A linear unit: "METERS", "FEET" (the US survey foot), else the number of
// units per metre.
void linear_units(const ox_object *unit, char *field) {
    if (is_unit(unit, kMetre)) {
        set(field, "METERS");
    } else if (is_unit(unit, kFootUs)) {
        set(field, "FEET");
    } else {
        format_double(1.0 / ox_unit_factor(unit), field);
    }
}

// The datum line (when the datum has a legacy name) and the spheroid line
// (its name, the two semi-axes of a named pair, else "a b").
void datum_and_spheroid(const ox_object *geogcs, Record *r) {
    const ox_object *datum = ox_geogcs_datum(geogcs);
    const ox_object *spheroid = ox_datum_spheroid(datum);
    for (int i = 0; i < kDatumNameCount && r->datum[0] == '\0'; ++i) {
        if (!kDatumNames[i].written) continue;
        ox_object *g = ox_factory_geogcs(kDatumNames[i].geogcs);
        if (ox_datum_eq(datum, ox_geogcs_datum(g))) set(r->datum, kDatumNames[i].name);
        ox_geogcs_del(g);
    }
    for (int i = 0; i < kSpheroidNameCount && r->spheroid[0] == '\0'; ++i) {
        if (!kSpheroidNames[i].written) continue;
        ox_object *s = ox_factory_spheroid(kSpheroidNames[i].spheroid);
        if (ox_spheroid_eq(spheroid, s)) set(r->spheroid, kSpheroidNames[i].name);
        ox_spheroid_del(s);
    }
    for (int i = 0; i < kSpheroidAxesCount && r->spheroid[0] == '\0'; ++i) {
        ox_object *s = ox_factory_spheroid(kSpheroidAxes[i].spheroid);
        if (ox_spheroid_eq(spheroid, s)) set(r->spheroid, kSpheroidAxes[i].text);
        ox_spheroid_del(s);
    }
    if (r->spheroid[0] == '\0') {
        const double a = ox_spheroid_axis(spheroid);
        char axis[48], minor[48];
        format_double(a, axis);
        format_double(a * (1.0 - ox_spheroid_flattening(spheroid)), minor);
        std::snprintf(r->spheroid, kFieldSize, "%s %s", axis, minor);
    }
}

// The ZUNITS line of a vertical system (null: "NO") with the comment that
// names a catalogue system.
int32_t zunits(const ox_object *vertcs, Record *r) {
    if (vertcs == nullptr) {
        set(r->zunits, "NO");
        return kOk;
    }
    if (!ox_vertcs_p(vertcs)) return kCannotBuild;
    const ox_object *unit = ox_vertcs_unit(vertcs);
    linear_units(unit, r->zunits);
    ox_object *copy = ox_vertcs_clone(vertcs);  // the look-up stamps the object it is given
    if (copy == nullptr) return kCannotBuild;
    const int32_t code = ox_factory_code(copy);
    ox_vertcs_del(copy);
    if (code > 0) std::snprintf(r->zunits_comment, kFieldSize, kVcsFormat, vertcs->name, code);
    return kOk;
}

int32_t geographic(const ox_object *geogcs, Record *r) {
    // The legacy file knows only Greenwich: another prime meridian would
    // shift every longitude read back.
    if (!equal_rule(ox_primem_longitude(ox_geogcs_primem(geogcs)), 0.0)) return kCannotBuild;
    const ox_object *unit = ox_geogcs_unit(geogcs);
    const UnitName *named = nullptr;
    for (int pass = 0; pass < 2 && named == nullptr; ++pass)
        for (int i = 0; i < kAngularUnitNameCount && named == nullptr; ++i) {
            ox_object *u = ox_factory_unit(kAngularUnitNames[i].unit);
            // First by name and size, then by size alone.
            if (pass == 0 ? ox_unit_eq(unit, u) : equal_rule(ox_unit_factor(unit), ox_unit_factor(u)))
                named = &kAngularUnitNames[i];
            ox_unit_del(u);
        }
    if (named == nullptr) return kCannotBuild;
    set(r->projection, kGeographic);
    set(r->units, named->name);
    datum_and_spheroid(geogcs, r);
    return kOk;
}

// ---------------------------------------------------------------------------
// Projected systems named by a zone or a grid.
// ---------------------------------------------------------------------------
// True when reading `candidate` back gives `projcs` (its own name aside).
bool reads_back(const Record &candidate, const ox_object *projcs) {
    int32_t error = kOk;
    ox_object *h = build_coordsys(candidate, &error);
    const bool same = h != nullptr && ox_projcs_eqnn(h, projcs);
    ox_coordsys_del(h);
    return same;
}

bool as_zone_or_grid(const ox_object *projcs, const ProjSetup &s, Record *r) {
    Record c;
    // UTM: the transverse Mercator of a zone, north or south.
    const double cm = s.parameters[2] / kRadiansPerDegree;
    const double zone = std::round((cm - utm_central_meridian(0)) / 6.0);  // the zone of the nearest meridian
    if (equal_rule(s.parameters[5], kUtmScaleFactor) && equal_rule(s.parameters[0], kUtmFalseEasting) && zone >= 1 &&
        zone <= 60) {
        c = *r;
        set(c.projection, kUtm);
        const bool south = equal_rule(s.parameters[1], kUtmFalseNorthingSouth);
        std::snprintf(c.zone, kFieldSize, "%d", static_cast<int>(south ? -zone : zone));
        if (reads_back(c, projcs)) {
            *r = c;
            return true;
        }
    }
    // State plane: the FIPS code of the name, one leading zero removed.
    if (const char *fips = std::strstr(projcs->name, "FIPS_")) {
        fips += 5;
        if (is_digit(fips[0]) && is_digit(fips[1]) && is_digit(fips[2]) && is_digit(fips[3])) {
            c = *r;
            set(c.projection, kStatePlane);
            const int skip = fips[0] == '0' ? 1 : 0;
            std::memcpy(c.fipszone, fips + skip, static_cast<size_t>(4 - skip));
            c.fipszone[4 - skip] = '\0';
            if (reads_back(c, projcs)) {
                *r = c;
                return true;
            }
        }
    }
    for (int i = 0; i < kGridNameCount; ++i) {
        c = *r;
        set(c.projection, kGridNames[i].name);
        set(c.datum, "");
        set(c.spheroid, "");
        if (reads_back(c, projcs)) {
            *r = c;
            return true;
        }
    }
    return false;
}

// ---------------------------------------------------------------------------
// Projected systems with their parameter lines.
// ---------------------------------------------------------------------------
int slot_of(int32_t parameter) {
    const ParmRow *row = parmlist_find_by_code(parameter);
    return row ? row->index : -1;
}

// The driver's value of a slot that a system leaves empty.
double missing_value(int slot, const ProjSetup &s) {
    switch (slot) {
        case 5:
        case 12:
        case 13: return 1.0;
        case 4: return s.parameters[3];
        default: return 0.0;
    }
}

bool format_dms_checked(double degrees, char out[32]) {
    if (!(std::fabs(degrees) < kMaxDegrees)) return false;
    format_dms(degrees, out);
    return true;
}

// Fills the parameter lines of `form` for a system; false when the form
// cannot carry it.
bool fill_form(const ProjectionForm &form, int32_t projection, const ox_object *projcs, const ProjSetup &s,
               Record *r) {
    const bool south_pole = projection == form.south;
    if (form.south != 0 && (s.parameters[3] < 0.0) != south_pole) return false;
    const bool sphere = s.spheroid[1] < kZero && s.spheroid[1] > -kZero;
    if (form.sphere && !sphere && !form.sphere_of_axis) return false;
    ox_object *handles[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(projcs, handles);
    bool carried[OX_PARAMETER_SLOTS] = {};
    for (int i = 0; i < form.count; ++i) {
        const LineDesc &d = form.lines[i];
        if ((d.parameter != 0 && slot_of(d.parameter) < 0) || (d.parameter2 != 0 && slot_of(d.parameter2) < 0))
            return false;
        if (d.parameter != 0) carried[slot_of(d.parameter)] = true;
        if (d.parameter2 != 0) {
            // One line for two parameters: they must agree.
            if (!equal_rule(s.parameters[slot_of(d.parameter)], s.parameters[slot_of(d.parameter2)])) return false;
            carried[slot_of(d.parameter2)] = true;
        }
    }
    // A parameter the form has no line for must hold what its absence means.
    for (int k = 0; k < OX_PARAMETER_SLOTS; ++k)
        if (handles[k] != nullptr && !carried[k] && !equal_rule(s.parameters[k], missing_value(k, s))) return false;

    const double meridian = ox_primem_longitude(ox_geogcs_primem(ox_projcs_geogcs(projcs)));
    set(r->projection, form.name);
    r->count = form.count;
    for (int i = 0; i < form.count; ++i) {
        const LineDesc &d = form.lines[i];
        const double v = d.parameter != 0 ? s.parameters[slot_of(d.parameter)] : 0.0;
        char value[48];
        switch (d.kind) {
            case LineKind::Selector: std::snprintf(value, sizeof value, "%d", form.selector); break;
            case LineKind::Radius: format_double(s.spheroid[0], value); break;
            case LineKind::Longitude: {
                double lon = v / kRadiansPerDegree + meridian;  // from Greenwich
                if (lon > 180.0) lon -= 360.0;
                if (lon <= -180.0) lon += 360.0;
                if (!format_dms_checked(lon, value)) return false;
                break;
            }
            case LineKind::Latitude:
            case LineKind::Angle:
                if (!format_dms_checked(v / kRadiansPerDegree, value)) return false;
                break;
            case LineKind::Metres:
            case LineKind::Height:
            case LineKind::Number:
                if (!std::isfinite(v)) return false;
                format_double(v, value);
                break;
        }
        std::snprintf(r->parameters[i], kFieldSize, "%12s %s", value, d.comment);
    }
    return true;
}

int32_t projected(const ox_object *projcs, int32_t option, Record *r) {
    ProjSetup s;
    projcs_setup(projcs, &s);
    datum_and_spheroid(ox_projcs_geogcs(projcs), r);
    linear_units(ox_projcs_unit(projcs), r->units);
    if ((option & kOptionExplicit) == 0 && as_zone_or_grid(projcs, s, r)) return kOk;

    int32_t projection = obj_code(ox_projcs_projection(projcs));
    for (int i = 0; i < kProjectionWrittenAsCount; ++i)
        if (kProjectionWrittenAs[i].projection == projection) projection = kProjectionWrittenAs[i].written_as;
    // A Lambert cone with a scale factor: its two parallels of true scale.
    if (projection == kLambertConformalConic && !equal_rule(s.parameters[5], 1.0)) {
        double poleward = 0.0, equatorward = 0.0;
        if (!lambert_true_scale_parallels(s.spheroid[1], s.parameters[3], s.parameters[4], s.parameters[5], &poleward,
                                          &equatorward))
            return kCannotBuild;
        s.parameters[3] = poleward;
        s.parameters[4] = equatorward;
        s.parameters[5] = 1.0;
    }
    for (int i = 0; i < kProjectionFormCount; ++i) {
        const ProjectionForm &f = kProjectionForms[i];
        if (f.projection != projection && f.south != projection) continue;
        Record c = *r;
        if (fill_form(f, projection, projcs, s, &c)) {
            *r = c;
            return kOk;
        }
    }
    return kCannotBuild;
}

// Writes the text of a system into `buffer` (OX_PRJSTRING_SIZE characters).
int32_t write_text(const ox_object *coordsys, const ox_object *vertcs, int32_t option, char *buffer) {
    buffer[0] = '\0';
    Record r;
    const int32_t e = convert(coordsys, vertcs, option, &r);
    if (e != kOk) return e;
    TextOut out(buffer, OX_PRJSTRING_SIZE);
    print(r, out);
    out.finish();
    return out.ok ? kOk : kCannotBuild;
}

int32_t report(int32_t code, int32_t *error) {
    if (error != nullptr) *error = code;
    return code;
}

int32_t to_string(const ox_object *coordsys, const ox_object *vertcs, int32_t option, char *buffer, int32_t *error) {
    if (buffer == nullptr) return report(kNoText, error);
    return report(write_text(coordsys, vertcs, option, buffer), error);
}

int32_t to_file(const ox_object *coordsys, const ox_object *vertcs, int32_t option, const char *path,
                int32_t *error) {
    if (path == nullptr) return report(kNoText, error);
    char text[OX_PRJSTRING_SIZE];
    const int32_t e = write_text(coordsys, vertcs, option, text);
    if (e != kOk) return report(e, error);
    FILE *f = std::fopen(path, "w");
    if (f == nullptr) return report(kCannotOpen, error);
    const bool written = std::fputs(text, f) >= 0;
    const bool closed = std::fclose(f) == 0;
    return report(written && closed ? kOk : kCannotOpen, error);
}

}  // namespace

void format_dms(double v, char out[32]) {
    const double a = std::fabs(v);
    double degrees = std::floor(a);
    const double rest = std::max(0.0, a * 3600.0 - degrees * 3600.0);
    double minutes = std::floor(rest / 60.0);
    double seconds = std::max(0.0, rest - 60.0 * minutes);
    if (seconds >= kSecondsCarry) {
        seconds = 0.0;
        minutes += 1.0;
    }
    if (minutes >= 60.0) {
        minutes -= 60.0;
        degrees += 1.0;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%9.6f", seconds);
    for (char *p = text; *p; ++p)
        if (*p != ' ' && !is_digit(static_cast<unsigned char>(*p))) *p = '.';  // a locale's decimal comma
    size_t n = std::strlen(text);
    while (n > 0 && text[n - 1] == '0') text[--n] = '\0';
    if (n > 0 && text[n - 1] == '.') std::strcat(text, "0");
    // "%4d %2d %s"; a zero degree field of a negative angle is "  -0".
    const int m = static_cast<int>(minutes);
    const int head = degrees == 0.0 && v < 0.0
                         ? std::snprintf(out, 32, "%4s %2d ", "  -0", m)
                         : std::snprintf(out, 32, "%4d %2d ", static_cast<int>(v < 0.0 ? -degrees : degrees), m);
    copy_bounded(out + head, text, static_cast<size_t>(32 - head));
}

int32_t convert(const ox_object *coordsys, const ox_object *vertcs, int32_t option, Record *r) {
    record_clear(r);
    int32_t e = zunits(vertcs, r);
    if (e != kOk) return e;
    if (ox_geogcs_p(coordsys)) return geographic(coordsys, r);
    if (ox_projcs_p(coordsys)) return projected(coordsys, option, r);
    return kCannotBuild;
}

}  // namespace ox::prj

extern "C" {

OX_API int32_t ox_coordsys_to_prjfile(const ox_object *coordsys, int32_t option, const char *path, int32_t *error) {
    return ox::prj::to_file(coordsys, nullptr, option, path, error);
}
OX_API int32_t ox_coordsys_to_prjstring(const ox_object *coordsys, int32_t option, char *buffer, int32_t *error) {
    return ox::prj::to_string(coordsys, nullptr, option, buffer, error);
}
OX_API int32_t ox_coordsys_vertcs_to_prjfile(const ox_object *coordsys, const ox_object *vertcs, const char *path,
                                             int32_t *error) {
    return ox::prj::to_file(coordsys, vertcs, 0, path, error);
}
OX_API int32_t ox_coordsys_vertcs_to_prjstring(const ox_object *coordsys, const ox_object *vertcs, char *buffer,
                                               int32_t *error) {
    return ox::prj::to_string(coordsys, vertcs, 0, buffer, error);
}
OX_API int32_t ox_hvcoordsys_to_prjfile(const ox_object *hvcoordsys, const char *path, int32_t *error) {
    if (!ox_hvcoordsys_p(hvcoordsys)) return ox::prj::report(ox::prj::kCannotBuild, error);
    return ox::prj::to_file(ox_hvcoordsys_coordsys(hvcoordsys), ox_hvcoordsys_vertcs(hvcoordsys), 0, path, error);
}
OX_API int32_t ox_hvcoordsys_to_prjstring(const ox_object *hvcoordsys, char *buffer, int32_t *error) {
    if (!ox_hvcoordsys_p(hvcoordsys)) return ox::prj::report(ox::prj::kCannotBuild, error);
    return ox::prj::to_string(ox_hvcoordsys_coordsys(hvcoordsys), ox_hvcoordsys_vertcs(hvcoordsys), 0, buffer,
                              error);
}

}  // extern "C"
