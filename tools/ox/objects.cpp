// What the subcommands share about objects: the kinds with their builders,
// readers and writers, SYSTEM arguments that name catalogue objects
// ("EPSG:7855", "7855", "OX_PCS_WGS_1984_UTM_ZONE_33N"), and the object
// string `ox info` prints.
#include <strings.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "commands.h"

namespace oxtool {

// In the order a plain code is tried: the coordinate systems first, then the
// other kinds.
const ObjectKind kObjectKinds[] = {
    {"projcs", "PROJCS", ox_projcs_p, ox_factory_projcs, ox_projcs_from_string, ox_projcs_to_string_ext,
     ox_projcs_del},
    {"geogcs", "GEOGCS", ox_geogcs_p, ox_factory_geogcs, ox_geogcs_from_string, ox_geogcs_to_string_ext,
     ox_geogcs_del},
    {"vertcs", "VERTCS", ox_vertcs_p, ox_factory_vertcs, ox_vertcs_from_string, ox_vertcs_to_string_ext,
     ox_vertcs_del},
    {"geogtran", "GEOGTRAN", ox_geogtran_p, ox_factory_geogtran, ox_geogtran_from_string,
     ox_geogtran_to_string_ext, ox_geogtran_del},
    {"datum", "DATUM", ox_datum_p, ox_factory_datum, ox_datum_from_string, ox_datum_to_string_ext, ox_datum_del},
    {"vdatum", "VDATUM", ox_vdatum_p, ox_factory_vdatum, ox_vdatum_from_string, ox_vdatum_to_string_ext,
     ox_vdatum_del},
    {"spheroid", "SPHEROID", ox_spheroid_p, ox_factory_spheroid, ox_spheroid_from_string,
     ox_spheroid_to_string_ext, ox_spheroid_del},
    {"primem", "PRIMEM", ox_primem_p, ox_factory_primem, ox_primem_from_string, ox_primem_to_string_ext,
     ox_primem_del},
    {"unit", "UNIT", ox_unit_p, ox_factory_unit, ox_unit_from_string, ox_unit_to_string_ext, ox_unit_del},
    {"projection", "PROJECTION", ox_projection_p, ox_factory_projection, ox_projection_from_string,
     ox_projection_to_string_ext, ox_projection_del},
    {"parameter", "PARAMETER", ox_parameter_p, ox_factory_parameter, ox_parameter_from_string,
     ox_parameter_to_string_ext, ox_parameter_del},
    {"method", "METHOD", ox_method_p, ox_factory_method, ox_method_from_string, ox_method_to_string_ext,
     ox_method_del},
    {"htmethod", "HTMETHOD", ox_htmethod_p, ox_factory_htmethod, ox_htmethod_from_string,
     ox_htmethod_to_string_ext, ox_htmethod_del},
};
const int kObjectKindCount = static_cast<int>(sizeof kObjectKinds / sizeof kObjectKinds[0]);

const ObjectKind *object_kind(const char *name) {
    for (const ObjectKind &k : kObjectKinds)
        if (name != nullptr && std::strcmp(k.name, name) == 0) return &k;
    return nullptr;
}

const ObjectKind *kind_of(const ox_object *h) {
    for (const ObjectKind &k : kObjectKinds)
        if (k.is(h)) return &k;
    return nullptr;
}

namespace {

// Definition-string prefixes and their kinds.
const struct {
    const char *prefix;
    const char *kind;
} kPrefixes[] = {
    {"OX_GCS_", "geogcs"}, {"OX_PCS_", "projcs"},     {"OX_VCS_", "vertcs"},     {"OX_D_", "datum"},
    {"OX_VERTD_", "vdatum"}, {"OX_GT_", "geogtran"},  {"OX_U_", "unit"},         {"OX_PM_", "primem"},
    {"OX_S_", "spheroid"},   {"OX_MTH_", "method"},   {"OX_HTMTH_", "htmethod"}, {"OX_PRJ_", "projection"},
    {"OX_PAR_", "parameter"},
};

}  // namespace

bool parse_system(const char *arg, CatalogueName *out) {
    *out = CatalogueName{};
    if (arg == nullptr) return false;
    const char *p = arg;
    while (std::isspace(static_cast<unsigned char>(*p))) ++p;
    if (strncasecmp(p, "EPSG:", 5) == 0) p += 5;
    if (std::isdigit(static_cast<unsigned char>(*p))) {
        char *end = nullptr;
        const long code = std::strtol(p, &end, 10);
        while (std::isspace(static_cast<unsigned char>(*end))) ++end;
        if (*end != '\0' || code <= 0 || code > 2147483647L) return false;
        out->code = static_cast<int32_t>(code);
        return true;
    }
    if (std::strncmp(p, "OX_", 3) != 0) return false;
    out->code = ox_factory_defstring_to_int(p);
    for (const auto &x : kPrefixes)
        if (std::strncmp(p, x.prefix, std::strlen(x.prefix)) == 0) out->kind = object_kind(x.kind);
    return out->code != 0;
}

ox_object *catalogue_object(const CatalogueName &name, const ObjectKind *kind, const ObjectKind **built) {
    if (name.code == 0) return nullptr;
    if (kind == nullptr) kind = name.kind;
    ox_object *h = nullptr;
    if (kind != nullptr) {
        h = kind->build(name.code);
    } else {
        // The coordinate-system kinds first, then whatever kind the code's
        // range names, then the others (the registry's codes outside the bands).
        for (const char *k : {"projcs", "geogcs", "vertcs"})
            if ((h = object_kind(k)->build(name.code)) != nullptr) break;
        if (h == nullptr) h = ox_factory(name.code);
        for (int i = 0; h == nullptr && i < kObjectKindCount; ++i) h = kObjectKinds[i].build(name.code);
    }
    if (built != nullptr) *built = h != nullptr ? kind_of(h) : nullptr;
    return h;
}

ox_object *catalogue_projcs(const char *arg) {
    CatalogueName name;
    if (!parse_system(arg, &name)) return nullptr;
    return catalogue_object(name, object_kind("projcs"), nullptr);
}

bool readable_text(ox_object *h, char text[OX_OBJSTRING_SIZE]) {
    const ObjectKind *kind = kind_of(h);
    if (kind == nullptr) return false;
    // Every AUTHORITY where the reader takes the text back, else the
    // outermost one only, else none: a composite object with an authority on
    // each part can outgrow the reader's 1023 characters.
    for (int32_t option : {2, 1, 0}) {
        kind->write(h, option, text);
        if (text[0] == '\0') continue;
        ox_object *back = kind->read(text);
        const bool readable = back != nullptr;
        kind->del(back);
        if (readable) return true;
    }
    text[0] = '\0';
    return false;
}

}  // namespace oxtool
