// Subcommands on single objects: version, parse, defaults.
#include <strings.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "commands.h"
#include "ox.h"

namespace oxtool {

bool read_text(const char *command, const char *path, std::string *text) {
    const bool standard = path == nullptr || std::strcmp(path, "-") == 0;
    const std::string what = input_name(path);
    const char *name = what.c_str();
    std::FILE *f = standard ? stdin : std::fopen(path, "rb");
    if (f == nullptr) {
        std::fprintf(stderr, "ox %s: cannot open %s: %s\n", command, name, std::strerror(errno));
        return false;
    }
    text->clear();
    char chunk[1 << 16];
    bool ok = true;
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, f)) > 0) {
        if (text->size() + n > kMaxText) {
            std::fprintf(stderr, "ox %s: %s is larger than %zu MiB: no object string is\n", command, name,
                         kMaxText >> 20);
            ok = false;
            break;
        }
        text->append(chunk, n);
    }
    if (ok && std::ferror(f)) {
        std::fprintf(stderr, "ox %s: cannot read %s: %s\n", command, name, std::strerror(errno));
        ok = false;
    }
    if (f != stdin) std::fclose(f);
    const size_t nul = ok ? text->find('\0') : std::string::npos;
    if (nul != std::string::npos) {
        std::fprintf(stderr, "ox %s: %s holds a NUL byte (at byte %zu): not a text\n", command, name, nul);
        ok = false;
    }
    return ok;
}

std::string input_name(const char *path) {
    if (path == nullptr || std::strcmp(path, "-") == 0) return "standard input";
    std::string name(1, '\'');
    name += path;
    name += '\'';
    return name;
}

void explain_unreadable(const char *command, const char *what, const char *text, const char *keyword) {
    int32_t position = -1;
    const int32_t code = ox_objstring_check(text, keyword, &position);
    const char *why = nullptr;
    switch (code) {
        case 0: break;
        case -1: why = "more than 256 elements"; break;
        case -3: why = "no object string (nothing but white space)"; break;
        case -4: why = "longer than 1023 characters besides white space"; break;
        case -5: why = "a character out of place"; break;
        case -6: why = "unbalanced quotes or brackets"; break;
        default: why = "not an object string"; break;
    }
    if (why == nullptr) {
        std::fprintf(stderr,
                     "ox %s: %s: not a readable %s: its brackets and quotes are right, but a part is missing, a name "
                     "unknown or a value out of range\n",
                     command, what, keyword != nullptr ? keyword : "object");
        return;
    }
    if (position < 0) {
        std::fprintf(stderr, "ox %s: %s: %s\n", command, what, why);
        return;
    }
    long line = 1, column = 1;
    for (int32_t i = 0; i < position && text[i] != '\0'; ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
    const unsigned char c = static_cast<unsigned char>(text[position]);
    if (code == -5 && c == '\0') why = "the text ends before its quotes and brackets close";
    if (code == -5 && c >= 0x20 && c < 0x7f)
        std::fprintf(stderr, "ox %s: %s: %s ('%c') at line %ld, column %ld\n", command, what, why, c, line, column);
    else
        std::fprintf(stderr, "ox %s: %s: %s at line %ld, column %ld\n", command, what, why, line, column);
}

int cmd_version(int, char **) {
    std::puts(ox_version());
    return kConverted;
}

// Reads the first object of the text by its leading keyword.
ox_object *read_any(const char *text, void (**del)(ox_object *), void (**write)(ox_object *, int32_t, char *),
                    const char **keyword) {
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
    if (keyword != nullptr) *keyword = nullptr;
    const char *p = text;
    while (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r') ++p;
    const size_t len = std::strcspn(p, "[( \t\r\n");
    for (const Reader &r : kReaders)
        if (std::strlen(r.keyword) == len && strncasecmp(p, r.keyword, len) == 0) {
            *del = r.del;
            *write = r.write;
            if (keyword != nullptr) *keyword = r.keyword;
            return r.read(text);
        }
    return nullptr;
}

int cmd_parse(int argc, char **argv) {
    int option = 0;
    const char *path = "-";
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--authority") == 0) {
            if (i + 1 >= argc || std::strlen(argv[i + 1]) != 1 || argv[i + 1][0] < '0' || argv[i + 1][0] > '2') {
                std::fputs("ox parse: --authority takes 0, 1 or 2\n", stderr);
                return kUsage;
            }
            option = argv[++i][0] - '0';
        } else {
            path = argv[i];
        }
    }
    std::string text;
    if (!read_text("parse", path, &text)) return kUsage;
    void (*del)(ox_object *) = nullptr;
    void (*write)(ox_object *, int32_t, char *) = nullptr;
    const char *keyword = nullptr;
    ox_object *obj = read_any(text.c_str(), &del, &write, &keyword);
    const std::string what = input_name(path);
    if (obj == nullptr) {
        if (keyword == nullptr)
            std::fprintf(stderr, "ox parse: %s: does not start with the keyword of an object (GEOGCS, PROJCS, ...)\n",
                         what.c_str());
        else
            explain_unreadable("parse", what.c_str(), text.c_str(), keyword);
        return kNotConverted;
    }
    static char out[OX_OBJSTRING_SIZE];
    write(obj, option, out);
    del(obj);
    if (out[0] == '\0') {
        std::fprintf(stderr,
                     "ox parse: %s: the object read has no object string that reads back equal (too long, or a "
                     "number from 1e16 on that seven digits do not carry)\n",
                     what.c_str());
        return kNotConverted;
    }
    std::puts(out);
    return kConverted;
}

int cmd_defaults(int argc, char **argv) {
    if (argc != 2) {
        std::fputs("usage: ox defaults PROJECTION (ox defaults --help)\n", stderr);
        return kUsage;
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
        std::fprintf(stderr, "ox defaults: unknown projection '%.200s'\n", argv[1]);
        return kNotConverted;
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
    return count > 0 ? kConverted : kNotConverted;
}

}  // namespace oxtool
