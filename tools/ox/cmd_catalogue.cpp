// Subcommands on the built-in catalogue: info, list, code.
#include <cstdio>
#include <cstring>

#include "commands.h"
#include "ox.h"

namespace oxtool {
namespace {

struct Kind {
    int32_t (*is)(const ox_object *);
    void (*write)(ox_object *, int32_t, char *);
    void (*del)(ox_object *);
};
const Kind kKinds[] = {
    {ox_projcs_p, ox_projcs_to_string_ext, ox_projcs_del},
    {ox_geogcs_p, ox_geogcs_to_string_ext, ox_geogcs_del},
    {ox_vertcs_p, ox_vertcs_to_string_ext, ox_vertcs_del},
    {ox_geogtran_p, ox_geogtran_to_string_ext, ox_geogtran_del},
    {ox_datum_p, ox_datum_to_string_ext, ox_datum_del},
    {ox_vdatum_p, ox_vdatum_to_string_ext, ox_vdatum_del},
    {ox_spheroid_p, ox_spheroid_to_string_ext, ox_spheroid_del},
    {ox_primem_p, ox_primem_to_string_ext, ox_primem_del},
    {ox_unit_p, ox_unit_to_string_ext, ox_unit_del},
    {ox_projection_p, ox_projection_to_string_ext, ox_projection_del},
    {ox_parameter_p, ox_parameter_to_string_ext, ox_parameter_del},
    {ox_method_p, ox_method_to_string_ext, ox_method_del},
    {ox_htmethod_p, ox_htmethod_to_string_ext, ox_htmethod_del},
};

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

ox_object *catalogue_projcs(const char *arg) {
    if (arg == nullptr) return nullptr;
    const int32_t code = ox_factory_defstring_to_int(arg);
    if (code == 0) return nullptr;
    // Digits only, or a definition string: a file of that name is not meant.
    const char *p = arg;
    while (*p == ' ' || *p == '\t') ++p;
    bool digits = true;
    for (const char *q = p; *q; ++q) digits = digits && *q >= '0' && *q <= '9';
    if (!digits && std::strncmp(p, "OX_", 3) != 0) return nullptr;
    return ox_factory_projcs(code);
}

int cmd_info(int argc, char **argv) {
    if (argc < 2) {
        std::fputs("usage: ox info CODE|DEFINITION_STRING\n", stderr);
        return 2;
    }
    const int32_t code = ox_factory_defstring_to_int(argv[1]);
    ox_object *h = code != 0 ? ox_factory(code) : nullptr;
    if (h == nullptr) {
        std::fprintf(stderr, "ox info: nothing in the catalogue for '%.200s'\n", argv[1]);
        return 1;
    }
    static char text[OX_OBJSTRING_SIZE];
    for (const Kind &k : kKinds)
        if (k.is(h)) {
            k.write(h, 2, text);
            std::puts(text);
            k.del(h);
            return 0;
        }
    return 1;
}

int cmd_list(int argc, char **argv) {
    if (argc < 2) {
        std::fputs("usage: ox list KIND\n", stderr);
        return 2;
    }
    for (const List &l : kLists)
        if (std::strcmp(l.kind, argv[1]) == 0) {
            int32_t count = 0;
            ox_predefined_entry *entries = l.list(&count);
            for (int32_t i = 0; i < count; ++i) std::printf("%d %s\n", entries[i].code, entries[i].name);
            ox_table_del(entries);
            return count > 0 ? 0 : 1;
        }
    std::fprintf(stderr, "ox list: unknown kind '%.200s'\n", argv[1]);
    return 2;
}

int cmd_code(int argc, char **argv) {
    const char *path = argc >= 2 ? argv[1] : "-";
    static char text[1 << 20];
    if (!read_text(path, text, sizeof text)) {
        std::fprintf(stderr, "ox code: cannot read %.200s\n", path);
        return 2;
    }
    void (*del)(ox_object *) = nullptr;
    void (*write)(ox_object *, int32_t, char *) = nullptr;
    ox_object *h = read_any(text, &del, &write);
    if (h == nullptr) {
        std::fputs("ox code: not a readable object string\n", stderr);
        return 2;
    }
    const int32_t code = ox_factory_code(h);
    del(h);
    if (code <= 0) {
        std::puts("0");
        return 1;
    }
    const char *name = ox_factory_int_to_defstring(code);
    std::printf("%d%s%s\n", code, name ? " " : "", name ? name : "");
    return 0;
}

}  // namespace oxtool
