// ox: the command-line face of the library.
#include <cstdio>
#include <cstring>

#include "commands.h"

namespace oxtool {
namespace {

#define OX_EXIT_STATUS                                                                  \
    "Exit status: 0 when everything was converted, 1 when some input was not (each\n"    \
    "case reported on standard error), 2 for a usage error or an input that cannot\n"   \
    "be read.\n"

#define OX_POINT_LINES                                                                  \
    "Each input line is one point: two numbers separated by blanks or tabs, then\n"      \
    "optional further columns, which are copied unchanged after the converted pair\n"   \
    "(so x y z files keep their heights). Numbers are decimal with an optional\n"        \
    "exponent (no hexadecimal, nan or inf). Blank lines and lines starting with '#'\n"  \
    "are copied unchanged; any other line that does not start with two numbers is\n"   \
    "reported with its line number and copied unchanged. A point that cannot be\n"      \
    "converted is written as \"nan nan\" followed by the rest of its line and\n"         \
    "reported. Input of any size is read in bounded memory.\n"

const Command kCommands[] = {
    {"version", "print the library version",
     "usage: ox version\n       ox --version\n\nPrints the library's version text.\n", cmd_version},
    {"parse", "read an object string and print it back normalised",
     "usage: ox parse [--authority 0|1|2] [FILE|-]\n\n"
     "Reads an object string (GEOGCS, PROJCS, GEOGTRAN, VERTCS, ...) from FILE or\n"
     "standard input and prints it as the library writes it. --authority chooses\n"
     "where AUTHORITY clauses are written: 0 none (default), 1 outermost object,\n"
     "2 every object. A text that cannot be read is explained: where and why its\n"
     "reading stopped.\n\n" OX_EXIT_STATUS,
     cmd_parse},
    {"defaults", "list the parameters of a projection with their defaults",
     "usage: ox defaults PROJECTION\n\n"
     "PROJECTION is a registry name (\"Transverse_Mercator\", aliases accepted) or\n"
     "code (43006). Prints one PARAMETER[...] per line in slot order.\n\n" OX_EXIT_STATUS,
     cmd_defaults},
    {"project", "project longitude/latitude points through a projected system",
     "usage: ox project [--precision N] [--output FILE] SYSTEM [INPUT|-]\n\n"
     "SYSTEM is a projected system: a catalogue code (32633, EPSG:7855) or definition string\n"
     "(OX_PCS_WGS_1984_UTM_ZONE_33N), an object string starting with PROJCS[, or\n"
     "the name of a file that holds one. INPUT (standard input when absent or \"-\")\n"
     "holds longitude and latitude in the angular unit of the system's GEOGCS; each\n"
     "point is written as \"x y\" in the system's linear unit, false easting and\n"
     "northing included.\n\n" OX_POINT_LINES "\n"
     "  --precision N  digits after the decimal point, 0 to 17 (default 4)\n"
     "  --output FILE  write to FILE instead of standard output\n\n" OX_EXIT_STATUS,
     cmd_project},
    {"unproject", "unproject x/y points back to longitude/latitude",
     "usage: ox unproject [--precision N] [--center LON] [--output FILE] SYSTEM [INPUT|-]\n\n"
     "SYSTEM is a projected system: a catalogue code (32633, EPSG:7855) or definition string\n"
     "(OX_PCS_WGS_1984_UTM_ZONE_33N), an object string starting with PROJCS[, or\n"
     "the name of a file that holds one. INPUT (standard input when absent or \"-\")\n"
     "holds x and y in the system's linear unit; each point is written as\n"
     "\"longitude latitude\" in the angular unit of the system's GEOGCS. A result\n"
     "that is not finite, or a latitude beyond a pole (a point outside the\n"
     "projection, which series projections still convert), counts as not\n"
     "converted.\n\n" OX_POINT_LINES "\n"
     "  --precision N  digits after the decimal point, 0 to 17 (default 9)\n"
     "  --center LON   return longitudes within 180 degrees (half a turn of the\n"
     "                 angular unit) of LON instead of the usual range\n"
     "  --output FILE  write to FILE instead of standard output\n\n" OX_EXIT_STATUS,
     cmd_unproject},
    {"info", "print a catalogue object by code or definition string",
     "usage: ox info [--kind KIND] CODE|EPSG:CODE|DEFINITION_STRING\n\n"
     "Builds the object of a catalogue code (4326, EPSG:7855) or definition string\n"
     "(OX_GCS_WGS_1984) and prints its object string with an AUTHORITY on every\n"
     "object, or on the outermost object only where the whole text would be too\n"
     "long for the reader: what it prints, `ox parse` reads back.\n\n"
     "A plain code is tried as a projected, geographic and vertical system first,\n"
     "then as the kind its code range names, then as any other kind; the codes of\n"
     "the registry outside the classic bands (GDA2020 7844, MGA 7855, JGD2011\n"
     "6668-6687, ...) build too.\n\n"
     "  --kind KIND  build the code as KIND: projcs, geogcs, vertcs, geogtran,\n"
     "               datum, vdatum, spheroid, primem, unit, projection,\n"
     "               parameter, method or htmethod (ox info --kind datum 6677)\n\n"
     OX_EXIT_STATUS,
     cmd_info},
    {"list", "list the catalogue objects of a kind",
     "usage: ox list KIND\n\n"
     "Prints the code and name of every current catalogue object of KIND, one per\n"
     "line, sorted by name. KIND is projcs, geogcs, vertcs, geogtran, datum,\n"
     "vdatum, spheroid, primem, projection, parameter, method, htmethod,\n"
     "angular_unit or linear_unit. Object-edit files (OXOBJEDITHOME) are included.\n\n" OX_EXIT_STATUS,
     cmd_list},
    {"code", "find the catalogue code of an object string",
     "usage: ox code [FILE|-]\n\n"
     "Reads an object string from FILE or standard input and prints the code of\n"
     "the equal catalogue object and its definition string; \"0\" when the catalogue\n"
     "has no equal object.\n\n" OX_EXIT_STATUS,
     cmd_code},
    {"identify", "find the catalogue systems equivalent to an object string",
     "usage: ox identify [--limit N] [FILE|-]\n\n"
     "Reads a PROJCS or GEOGCS object string from FILE or standard input and\n"
     "prints the catalogue systems with the same projection, parameters (within\n"
     "1e-9 relative; an omitted parameter takes its default), spheroid, prime\n"
     "meridian and units, one per line as \"code score name\", best first:\n\n"
     "  100  names and parameters equal\n"
     "   90  parameters and datum name equal, the system named otherwise\n"
     "   80  parameters equal, on a datum of another name and the same figure\n\n"
     "  --limit N  print at most N candidates, 1 to 1000 (default 10)\n\n"
     OX_EXIT_STATUS "(1 also when nothing is equivalent; 2 for an object other than a PROJCS or\n"
     "GEOGCS.)\n",
     cmd_identify},
};

void overview(FILE *out) {
    std::fputs("usage: ox COMMAND [ARGS]\n       ox --version\n\nCommands:\n", out);
    for (const Command &c : kCommands) std::fprintf(out, "  %-10s %s\n", c.name, c.synopsis);
    std::fputs("\nRun 'ox COMMAND --help' for the options of a command; 'man ox' for the manual.\n\n", out);
    std::fputs(OX_EXIT_STATUS, out);
}

}  // namespace
}  // namespace oxtool

int main(int argc, char **argv) {
    using namespace oxtool;
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) return cmd_version(1, argv + 1);
    if (argc < 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0 ||
        std::strcmp(argv[1], "help") == 0) {
        if (argc >= 3 && std::strcmp(argv[1], "help") == 0) {
            for (const Command &c : kCommands)
                if (std::strcmp(c.name, argv[2]) == 0) {
                    std::fputs(c.help, stdout);
                    return 0;
                }
        }
        overview(argc < 2 ? stderr : stdout);
        return argc < 2 ? kUsage : kConverted;
    }
    for (const Command &c : kCommands)
        if (std::strcmp(c.name, argv[1]) == 0) {
            for (int i = 2; i < argc; ++i)
                if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
                    std::fputs(c.help, stdout);
                    return 0;
                }
            return c.run(argc - 1, argv + 1);
        }
    std::fprintf(stderr, "ox: unknown command '%s'\n\n", argv[1]);
    overview(stderr);
    return kUsage;
}
