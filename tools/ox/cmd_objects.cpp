// Subcommands on single objects: version, parse, defaults.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"
#include "ox.h"

namespace oxtool {

bool read_text(const char *path, char *buffer, size_t size) {
    FILE *f = (path == nullptr || std::strcmp(path, "-") == 0) ? stdin : std::fopen(path, "rb");
    if (f == nullptr) return false;
    const size_t n = std::fread(buffer, 1, size - 1, f);
    const bool ok = !std::ferror(f);
    if (f != stdin) std::fclose(f);
    buffer[n] = '\0';
    return ok;
}

int cmd_version(int, char **) {
    std::puts(ox_version());
    return 0;
}

// Reads the first object of the text by its leading keyword.
ox_object *read_any(const char *text, void (**del)(ox_object *),
                    void (**write)(ox_object *, int32_t, char *)) {
    struct Reader {
        const char *keyword;
        ox_object *(*read)(const char *);
        void (*del)(ox_object *);
        void (*write)(ox_object *, int32_t, char *);
    };
    static const Reader kReaders[] = {
        {"HVCOORDSYS", ox_hvcoordsys_from_string, ox_hvcoordsys_del, ox_hvcoordsys_to_string_ext},
        {"ADJHCS", ox_adjhcs_from_string, ox_adjhcs_del, ox_adjhcs_to_string_ext},
        {"GEOGTRAN", ox_geogtran_from_string, ox_geogtran_del, ox_geogtran_to_string_ext},
        {"PROJCS", ox_projcs_from_string, ox_projcs_del, ox_projcs_to_string_ext},
        {"GEOXYZCS", ox_geoxyzcs_from_string, ox_geoxyzcs_del, ox_geoxyzcs_to_string_ext},
        {"VERTCS", ox_vertcs_from_string, ox_vertcs_del, ox_vertcs_to_string_ext},
        {"GEOGCS", ox_geogcs_from_string, ox_geogcs_del, ox_geogcs_to_string_ext},
        {"DATUM", ox_datum_from_string, ox_datum_del, ox_datum_to_string_ext},
        {"VDATUM", ox_vdatum_from_string, ox_vdatum_del, ox_vdatum_to_string_ext},
        {"SPHEROID", ox_spheroid_from_string, ox_spheroid_del, ox_spheroid_to_string_ext},
        {"PRIMEM", ox_primem_from_string, ox_primem_del, ox_primem_to_string_ext},
        {"UNIT", ox_unit_from_string, ox_unit_del, ox_unit_to_string_ext},
        {"PROJECTION", ox_projection_from_string, ox_projection_del, ox_projection_to_string_ext},
        {"PARAMETER", ox_parameter_from_string, ox_parameter_del, ox_parameter_to_string_ext},
        {"METHOD", ox_method_from_string, ox_method_del, ox_method_to_string_ext},
        {"HTMETHOD", ox_htmethod_from_string, ox_htmethod_del, ox_htmethod_to_string_ext},
        {"ARRAY", ox_array_from_string, ox_array_del, ox_array_to_string_ext},
        {"AUTHORITY", ox_authority_from_string, ox_authority_del, ox_authority_to_string_ext},
    };
    const char *p = text;
    while (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r') ++p;
    const size_t len = std::strcspn(p, "[( \t\r\n");
    for (const Reader &r : kReaders)
        if (std::strlen(r.keyword) == len && strncasecmp(p, r.keyword, len) == 0) {
            *del = r.del;
            *write = r.write;
            return r.read(text);
        }
    return nullptr;
}

int cmd_parse(int argc, char **argv) {
    int option = 0;
    const char *path = "-";
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--authority") == 0 && i + 1 < argc) {
            option = std::atoi(argv[++i]);
        } else {
            path = argv[i];
        }
    }
    static char text[1 << 20];
    if (!read_text(path, text, sizeof text)) {
        std::fprintf(stderr, "ox parse: cannot read %s\n", path);
        return 1;
    }
    void (*del)(ox_object *) = nullptr;
    void (*write)(ox_object *, int32_t, char *) = nullptr;
    ox_object *obj = read_any(text, &del, &write);
    if (obj == nullptr) {
        std::fputs("ox parse: not a readable object string\n", stderr);
        return 1;
    }
    static char out[OX_OBJSTRING_SIZE];
    write(obj, option, out);
    std::puts(out);
    del(obj);
    return 0;
}

int cmd_defaults(int argc, char **argv) {
    if (argc < 2) {
        std::fputs("usage: ox defaults PROJECTION\n", stderr);
        return 2;
    }
    char *end;
    const long code = std::strtol(argv[1], &end, 10);
    ox_object *projection = nullptr;
    if (*end == '\0') {
        projection = ox_factory_projection(static_cast<int32_t>(code));
    } else {
        projection = ox_projection_new(argv[1], nullptr, nullptr, nullptr);
    }
    if (projection == nullptr) {
        std::fprintf(stderr, "ox defaults: unknown projection '%s'\n", argv[1]);
        return 1;
    }
    ox_object *params[OX_PARAMETER_SLOTS];
    const int32_t count = ox_parameter_projection_defaults(projection, params);
    char text[OX_OBJSTRING_SIZE];
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i)
        if (params[i] != nullptr) {
            ox_parameter_to_string(params[i], text);
            std::puts(text);
            ox_parameter_del(params[i]);
        }
    ox_projection_del(projection);
    return count > 0 ? 0 : 1;
}

}  // namespace oxtool
