// Subcommand on legacy projection files: prj read, prj write.
#include <strings.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"
#include "ox.h"

namespace oxtool {
namespace {

// The meaning of a legacy-file error code, for the reader or the writer.
const char *meaning(int32_t code, bool writing) {
    switch (code) {
        case OX_PRJ_NO_TEXT: return "no text: the input is empty or has fewer than two line ends";
        case OX_PRJ_CANNOT_OPEN:
            return writing ? "the file cannot be created" : "the file cannot be opened or read";
        case OX_PRJ_UNKNOWN_KEYWORD:
            return "a line begins with no known keyword (or is not text, or is over 255 characters)";
        case OX_PRJ_TOO_MANY_PARAMETERS: return "more than 16 parameter lines";
        case OX_PRJ_BAD_ZUNITS: return "the ZUNITS value is not a number above 0";
        case OX_PRJ_NO_ZUNITS: return "no vertical unit (ZUNITS empty or NO)";
        case OX_PRJ_CANNOT_BUILD:
            return writing ? "the system has no legacy form (or memory ran out)"
                           : "the text names no system that can be built (or memory ran out)";
        default: return "unknown error";
    }
}

int usage() {
    std::fputs("usage: ox prj read [--authority 0|1|2] FILE|-\n"
               "       ox prj write [--explicit] [--vertcs VERTCS] [--output FILE] SYSTEM\n"
               "(ox prj --help)\n",
               stderr);
    return 2;
}

int prj_read(int argc, char **argv) {
    int option = 0;
    const char *path = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--authority") == 0 && i + 1 < argc) {
            option = std::atoi(argv[++i]);
        } else if (path == nullptr) {
            path = argv[i];
        } else {
            return usage();
        }
    }
    if (path == nullptr) return usage();
    int32_t error = 0;
    ox_object *h = nullptr;
    if (std::strcmp(path, "-") == 0) {
        static char text[1 << 20];
        if (!read_text(path, text, sizeof text)) {
            std::fputs("ox prj read: cannot read standard input\n", stderr);
            return 2;
        }
        h = ox_hvcoordsys_from_prjstring(text, &error);
    } else {
        h = ox_hvcoordsys_from_prjfile(path, &error);
    }
    if (h == nullptr) {
        std::fprintf(stderr, "ox prj read: %.200s: error %d: %s\n", path, error, meaning(error, false));
        return error == OX_PRJ_CANNOT_OPEN ? 2 : 1;
    }
    static char out[OX_OBJSTRING_SIZE];
    ox_hvcoordsys_to_string_ext(h, option, out);
    std::puts(out);
    ox_hvcoordsys_del(h);
    return 0;
}

// The code of a catalogue code or definition string argument, or 0.
int32_t catalogue_code(const char *arg) {
    const char *p = arg;
    while (std::isspace(static_cast<unsigned char>(*p))) ++p;
    bool digits = *p != '\0';
    for (const char *q = p; *q; ++q) digits = digits && std::isdigit(static_cast<unsigned char>(*q));
    return digits || std::strncmp(p, "OX_", 3) == 0 ? ox_factory_defstring_to_int(p) : 0;
}

// The systems that SYSTEM names: a code, a definition string, an object
// string (a PROJCS or GEOGCS, with a VERTCS beside it or not), or a file
// holding one.  Null when none can be read.
ox_object *load_system(const char *arg) {
    if (const int32_t code = catalogue_code(arg)) {
        if (ox_factory_coderanges_check(ox_factory_coderanges_geogcs(), code))
            return ox_hvcoordsys_new(ox_factory_geogcs(code), nullptr);
        if (ox_factory_coderanges_check(ox_factory_coderanges_projcs(), code))
            return ox_hvcoordsys_new(ox_factory_projcs(code), nullptr);
        return nullptr;
    }
    static char text[1 << 20];
    const char *p = arg;
    while (std::isspace(static_cast<unsigned char>(*p))) ++p;
    if (strncasecmp(p, "PROJCS", 6) != 0 && strncasecmp(p, "GEOGCS", 6) != 0 && strncasecmp(p, "VERTCS", 6) != 0 &&
        strncasecmp(p, "HVCOORDSYS", 10) != 0) {
        if (!read_text(arg, text, sizeof text)) return nullptr;
        p = text;
    }
    return ox_hvcoordsys_from_string(p);
}

int prj_write(int argc, char **argv) {
    bool explicit_lines = false;
    const char *vertcs_arg = nullptr, *output = nullptr, *system = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--explicit") == 0) {
            explicit_lines = true;
        } else if (std::strcmp(argv[i], "--vertcs") == 0 && i + 1 < argc) {
            vertcs_arg = argv[++i];
        } else if (std::strcmp(argv[i], "--output") == 0 && i + 1 < argc) {
            output = argv[++i];
        } else if (system == nullptr) {
            system = argv[i];
        } else {
            return usage();
        }
    }
    if (system == nullptr) return usage();
    ox_object *pair = load_system(system);
    if (pair == nullptr || ox_hvcoordsys_coordsys(pair) == nullptr) {
        std::fprintf(stderr, "ox prj write: '%.200s' is no geographic or projected system\n", system);
        ox_hvcoordsys_del(pair);
        return 2;
    }
    ox_object *vertcs = nullptr;
    if (vertcs_arg != nullptr) {
        const int32_t code = catalogue_code(vertcs_arg);
        if (ox_factory_coderanges_check(ox_factory_coderanges_vertcs(), code)) vertcs = ox_factory_vertcs(code);
        if (vertcs == nullptr) {
            std::fprintf(stderr, "ox prj write: '%.200s' is no vertical system of the catalogue\n", vertcs_arg);
            ox_hvcoordsys_del(pair);
            return 2;
        }
    }
    const ox_object *coordsys = ox_hvcoordsys_coordsys(pair);
    const ox_object *zsystem = vertcs != nullptr ? vertcs : ox_hvcoordsys_vertcs(pair);
    if (explicit_lines && zsystem != nullptr) {
        std::fputs("ox prj write: --explicit cannot be combined with a vertical system\n", stderr);
        ox_vertcs_del(vertcs);
        ox_hvcoordsys_del(pair);
        return 2;
    }
    const int32_t option = explicit_lines ? OX_PRJ_EXPLICIT : 0;
    int32_t error = 0;
    static char text[OX_PRJSTRING_SIZE];
    if (output != nullptr) {
        if (zsystem != nullptr)
            ox_coordsys_vertcs_to_prjfile(coordsys, zsystem, output, &error);
        else
            ox_coordsys_to_prjfile(coordsys, option, output, &error);
    } else if (zsystem != nullptr) {
        ox_coordsys_vertcs_to_prjstring(coordsys, zsystem, text, &error);
    } else {
        ox_coordsys_to_prjstring(coordsys, option, text, &error);
    }
    ox_vertcs_del(vertcs);
    ox_hvcoordsys_del(pair);
    if (error != 0) {
        std::fprintf(stderr, "ox prj write: error %d: %s\n", error, meaning(error, true));
        return 1;
    }
    if (output == nullptr) std::fputs(text, stdout);
    return 0;
}

}  // namespace

int cmd_prjfile(int argc, char **argv) {
    if (argc < 2) return usage();
    if (std::strcmp(argv[1], "read") == 0) return prj_read(argc - 1, argv + 1);
    if (std::strcmp(argv[1], "write") == 0) return prj_write(argc - 1, argv + 1);
    std::fprintf(stderr, "ox prj: unknown subcommand '%.200s'\n", argv[1]);
    return usage();
}

}  // namespace oxtool
