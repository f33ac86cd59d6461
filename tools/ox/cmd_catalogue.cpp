// Subcommands on the built-in catalogue: info, list, code, identify.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"
#include "ox.h"

namespace oxtool {
namespace {

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

int cmd_info(int argc, char **argv) {
    const ObjectKind *kind = nullptr;
    const char *arg = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--kind") == 0 && i + 1 < argc) {
            kind = object_kind(argv[++i]);
            if (kind == nullptr) {
                std::fprintf(stderr, "ox info: unknown kind '%.200s'\n", argv[i]);
                return 2;
            }
        } else if (arg == nullptr && std::strncmp(argv[i], "--", 2) != 0) {
            arg = argv[i];
        } else {
            arg = nullptr;
            break;
        }
    }
    if (arg == nullptr) {
        std::fputs("usage: ox info [--kind KIND] CODE|EPSG:CODE|DEFINITION_STRING\n", stderr);
        return 2;
    }
    CatalogueName name;
    ox_object *h = parse_system(arg, &name) ? catalogue_object(name, kind, &kind) : nullptr;
    if (h == nullptr) {
        std::fprintf(stderr, "ox info: nothing in the catalogue for '%.200s'\n", arg);
        return 1;
    }
    static char text[OX_OBJSTRING_SIZE];
    const bool ok = readable_text(h, text);
    if (ok) {
        std::puts(text);
        print_pcs_summary(stdout, h);
    }
    kind->del(h);
    return ok ? 0 : 1;
}

int cmd_identify(int argc, char **argv) {
    long limit = 10;
    const char *path = "-";
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--limit") == 0 && i + 1 < argc) {
            char *end = nullptr;
            limit = std::strtol(argv[++i], &end, 10);
            if (*end != '\0' || limit < 1 || limit > 1000) {
                std::fputs("ox identify: --limit takes a whole number from 1 to 1000\n", stderr);
                return 2;
            }
        } else if (std::strncmp(argv[i], "--", 2) == 0) {
            std::fprintf(stderr, "ox identify: unknown option '%.200s'\n", argv[i]);
            return 2;
        } else {
            path = argv[i];
        }
    }
    static char text[1 << 20];
    if (!read_text(path, text, sizeof text)) {
        std::fprintf(stderr, "ox identify: cannot read %.200s\n", path);
        return 2;
    }
    void (*del)(ox_object *) = nullptr;
    void (*write)(ox_object *, int32_t, char *) = nullptr;
    ox_object *h = read_any(text, &del, &write);
    if (h == nullptr || !(ox_projcs_p(h) || ox_geogcs_p(h))) {
        std::fputs("ox identify: not a readable PROJCS or GEOGCS object string\n", stderr);
        if (h != nullptr) del(h);
        return 2;
    }
    static ox_identify_candidate candidates[1000];
    const int32_t found = ox_factory_identify(h, candidates, static_cast<int32_t>(limit));
    const ObjectKind *kind = kind_of(h);
    del(h);
    for (int32_t i = 0; i < found && i < limit; ++i) {
        ox_object *c = kind->build(candidates[i].code);
        char name[OX_NAME_SIZE] = "";
        if (c != nullptr) {
            if (ox_projcs_p(c))
                ox_projcs_name(c, name);
            else
                ox_geogcs_name(c, name);
        }
        kind->del(c);
        std::printf("%d %d %s\n", candidates[i].code, candidates[i].score, name);
    }
    if (found > limit)
        std::fprintf(stderr, "ox identify: %d more candidate(s) (--limit)\n", found - static_cast<int32_t>(limit));
    return found > 0 ? 0 : 1;
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
