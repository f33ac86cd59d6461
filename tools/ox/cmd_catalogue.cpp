// Subcommands on the built-in catalogue: info, list, code.
#include <cstdio>
#include <cstring>
#include <string>

#include "commands.h"
#include "ox.h"

namespace oxtool {
namespace {

struct Kind {
    int32_t (*is)(const ox_object *);
    void (*write)(ox_object *, int32_t, char *);
    void (*del)(ox_object *);
    const char *name;
};
const Kind kKinds[] = {
    {ox_projcs_p, ox_projcs_to_string_ext, ox_projcs_del, "projected system (PROJCS)"},
    {ox_geogcs_p, ox_geogcs_to_string_ext, ox_geogcs_del, "geographic system (GEOGCS)"},
    {ox_vertcs_p, ox_vertcs_to_string_ext, ox_vertcs_del, "vertical system (VERTCS)"},
    {ox_geogtran_p, ox_geogtran_to_string_ext, ox_geogtran_del, "transformation (GEOGTRAN)"},
    {ox_datum_p, ox_datum_to_string_ext, ox_datum_del, "datum (DATUM)"},
    {ox_vdatum_p, ox_vdatum_to_string_ext, ox_vdatum_del, "vertical datum (VDATUM)"},
    {ox_spheroid_p, ox_spheroid_to_string_ext, ox_spheroid_del, "spheroid (SPHEROID)"},
    {ox_primem_p, ox_primem_to_string_ext, ox_primem_del, "prime meridian (PRIMEM)"},
    {ox_unit_p, ox_unit_to_string_ext, ox_unit_del, "unit (UNIT)"},
    {ox_projection_p, ox_projection_to_string_ext, ox_projection_del, "projection (PROJECTION)"},
    {ox_parameter_p, ox_parameter_to_string_ext, ox_parameter_del, "parameter (PARAMETER)"},
    {ox_method_p, ox_method_to_string_ext, ox_method_del, "method (METHOD)"},
    {ox_htmethod_p, ox_htmethod_to_string_ext, ox_htmethod_del, "horizontal method (HTMETHOD)"},
};

const Kind *kind_of(const ox_object *h) {
    for (const Kind &k : kKinds)
        if (k.is(h)) return &k;
    return nullptr;
}

struct List {
    const char *kind;
    ox_predefined_entry *(*list)(int32_t *);
};
const List kLists[] = {
    {"projcs", ox_predefined_projcs},         {"geogcs", ox_predefined_geogcs},
    {"vertcs", ox_predefined_vertcs},         {"geogtran", ox_predefined_geogtran},
    {"datum", ox_predefined_datum},           {"vdatum", ox_predefined_vdatum},
    {"spheroid", ox_predefined_spheroid},     {"primem", ox_predefined_primem},
    {"projection", ox_predefined_projection}, {"parameter", ox_predefined_parameter},
    {"method", ox_predefined_method},         {"htmethod", ox_predefined_htmethod},
    {"angular_unit", ox_predefined_angular_unit}, {"linear_unit", ox_predefined_linear_unit},
};

}  // namespace

const char *kind_name(const ox_object *h) {
    if (const Kind *k = kind_of(h)) return k->name;
    return "object";
}

void delete_object(ox_object *h) {
    if (const Kind *k = kind_of(h)) k->del(h);
}

int cmd_info(int argc, char **argv) {
    if (argc != 2) {
        std::fputs("usage: ox info CODE|DEFINITION_STRING (ox info --help)\n", stderr);
        return kUsage;
    }
    const int32_t code = ox_factory_defstring_to_int(argv[1]);
    ox_object *h = code != 0 ? ox_factory(code) : nullptr;
    const Kind *k = kind_of(h);
    if (k == nullptr) {
        if (code == 0)
            std::fprintf(stderr, "ox info: '%.200s' is no code and no known definition string\n", argv[1]);
        else
            std::fprintf(stderr, "ox info: no catalogue object has the code %d\n", code);
        return kNotConverted;
    }
    static char text[OX_OBJSTRING_SIZE];
    k->write(h, 2, text);
    if (text[0] == '\0') k->write(h, 1, text);  // with every AUTHORITY too long to read back
    k->del(h);
    std::puts(text);
    return kConverted;
}

int cmd_list(int argc, char **argv) {
    if (argc != 2) {
        std::fputs("usage: ox list KIND (ox list --help)\n", stderr);
        return kUsage;
    }
    for (const List &l : kLists)
        if (std::strcmp(l.kind, argv[1]) == 0) {
            int32_t count = 0;
            ox_predefined_entry *entries = l.list(&count);
            for (int32_t i = 0; i < count; ++i) std::printf("%d %s\n", entries[i].code, entries[i].name);
            ox_table_del(entries);
            return count > 0 ? kConverted : kNotConverted;
        }
    std::fprintf(stderr, "ox list: unknown kind '%.200s' (ox list --help)\n", argv[1]);
    return kUsage;
}

int cmd_code(int argc, char **argv) {
    if (argc > 2) {
        std::fputs("usage: ox code [FILE|-] (ox code --help)\n", stderr);
        return kUsage;
    }
    const char *path = argc == 2 ? argv[1] : "-";
    std::string text;
    if (!read_text("code", path, &text)) return kUsage;
    void (*del)(ox_object *) = nullptr;
    void (*write)(ox_object *, int32_t, char *) = nullptr;
    const char *keyword = nullptr;
    ox_object *h = read_any(text.c_str(), &del, &write, &keyword);
    const std::string what = input_name(path);
    if (h == nullptr) {
        if (keyword == nullptr)
            std::fprintf(stderr, "ox code: %s: does not start with the keyword of an object (GEOGCS, PROJCS, ...)\n",
                         what.c_str());
        else
            explain_unreadable("code", what.c_str(), text.c_str(), keyword);
        return kNotConverted;
    }
    const int32_t code = ox_factory_code(h);
    del(h);
    if (code <= 0) {
        std::fprintf(stderr, "ox code: %s: no catalogue object is equal to it\n", what.c_str());
        std::puts("0");
        return kNotConverted;
    }
    const char *name = ox_factory_int_to_defstring(code);
    std::printf("%d%s%s\n", code, name ? " " : "", name ? name : "");
    return kConverted;
}

}  // namespace oxtool
