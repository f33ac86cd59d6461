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

// How the line-based conversions treat their input (help texts).
#define OX_LINE_RULES                                                                 \
    "Comments (#) and blank lines are copied. A line that cannot be converted (a\n"  \
    "number that is not strictly decimal, a NUL byte, over 65536 characters) is\n"   \
    "copied unchanged and reported on standard error with its number.\n"             \
    OX_EXIT_STATUS

// The geographic system option of the same conversions, and their input and
// output.
#define OX_SYSTEM_OPTION                                                             \
    "  --output FILE  write FILE instead of standard output; INPUT is a file (none\n" \
    "                 or \"-\": standard input)\n"                                    \
    "  --system S     the geographic system: a code (default 4326), a definition\n" \
    "                 string, an object string GEOGCS[...] or a file holding one"

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
    {"transform", "convert longitude/latitude points through a datum transformation",
     "usage: ox transform [OPTIONS] TRANSFORMATION < POINTS\n"
     "       ox transform [--datahome DIR] --between GEOGCS1 GEOGCS2\n\n"
     "TRANSFORMATION is a geographic transformation: a catalogue code (1241,\n"
     "EPSG:1313) or definition string (OX_GT_...), an object string starting with\n"
     "GEOGTRAN[, or the name of a file that holds one. Each input line is a point\n"
     "\"lon lat\" or \"lon lat h\" in the angular unit of the transformation's first\n"
     "system (its second with --inverse), h an ellipsoidal height in metres; it is\n"
     "written as \"lon lat [h]\" in the other system's unit, whatever followed the\n"
     "numbers copied after them. Blank lines and lines starting with '#' are copied.\n"
     "The geocentric methods convert the height; the others keep it.\n\n"
     "  --inverse        from the second system to the first\n"
     "  --datahome DIR   the directory of the grid files (nadcon/, harn/, ntv2/);\n"
     "                   otherwise the environment variable OXDATAHOME\n"
     "  --input FILE     read the points from FILE (default: standard input)\n"
     "  --output FILE    write the points to FILE (default: standard output)\n"
     "  --precision N    digits after the decimal point, 0 to 17 (default 9)\n"
     "  --between GEOGCS1 GEOGCS2\n"
     "                   list the catalogue's transformations between two geographic\n"
     "                   systems (codes, definition strings, GEOGCS[ strings or files)\n"
     "                   as \"code name method\", those from GEOGCS2 to GEOGCS1 marked\n"
     "                   \"(use --inverse)\"\n\n"
     "A line that is not a point, and a point that is not converted (outside the\n"
     "grid, or a transformation that converts nothing, such as a grid that cannot be\n"
     "found), is reported on standard error with its line number and copied\n"
     "unchanged. Exit status 0 when every point converted, 1 when some did not (or\n"
     "--between found nothing), 2 for a usage error, an unreadable TRANSFORMATION\n"
     "or unreadable input.\n",
     cmd_transform},
    {"info", "print a catalogue object by code or definition string",
     "usage: ox info [--kind KIND] CODE|EPSG:CODE|DEFINITION_STRING\n\n"
     "Builds the object of a catalogue code (4326, EPSG:7855) or definition string\n"
     "(OX_GCS_WGS_1984) and prints its object string with an AUTHORITY on every\n"
     "object, or on the outermost object only where the whole text would be too\n"
     "long for the reader: what it prints, `ox parse` reads back. A projected\n"
     "system is followed by its summary, lines that start with \"# \": the\n"
     "projection, its family and what it preserves, the central meridian and\n"
     "latitude of origin in degrees, the extent of its horizon in the linear unit\n"
     "and in degrees, the units and the parameters.\n\n"
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
    {"prj", "read or write a legacy projection file",
     "usage: ox prj read [--authority 0|1|2] FILE|-\n"
     "       ox prj write [--explicit] [--vertcs VERTCS] [--output FILE] SYSTEM\n\n"
     "read: reads the legacy projection file FILE (\"-\": standard input), the\n"
     "keyword-per-line text of older GIS software (Projection, Zone, Datum,\n"
     "Spheroid, Units, Zunits, Parameters, ...), and prints the object string of its\n"
     "system, followed by the VERTCS of its Zunits line when it has one.\n"
     "--authority chooses where AUTHORITY clauses are written: 0 none (default),\n"
     "1 outermost object, 2 every object. On failure the error code is printed\n"
     "with its meaning.\n\n"
     "write: prints the legacy projection file of SYSTEM: a catalogue code (26945)\n"
     "or definition string, an object string (PROJCS[...] or GEOGCS[...], with a\n"
     "VERTCS[...] beside it or not), or the name of a file holding one.\n"
     "  --explicit      the projection and parameter lines even for UTM, state plane\n"
     "                  and named grid systems (not with a vertical system)\n"
     "  --vertcs CODE   the Zunits line of this catalogue vertical system (5703)\n"
     "  --output FILE   write the file FILE instead of standard output\n\n"
     "Exit status 0 on success; 1 when the file cannot be read as a system or the\n"
     "system has no legacy form (the error code and its meaning are printed); 2 for\n"
     "a usage error, an unreadable FILE or SYSTEM.\n",
     cmd_prjfile},
    {"georef", "convert positions to GEOREF references and back",
     "usage: ox georef [--reverse] [--digits N] [--round] [--precision N] [--system GEOGCS]\n"
     "                 [--output FILE] [INPUT]\n\n"
     "Each input line is one conversion; further columns after the values it\n"
     "needs are passed through. Forward: \"longitude latitude\" in the angular unit\n"
     "of GEOGCS becomes a GEOREF reference (\"MKPG12000400\"). With --reverse a\n"
     "reference (the first column) becomes \"longitude latitude\", the south-west\n"
     "corner of its cell.\n\n"
     "  --digits N     minute digits per axis, 2 to 9 (default 4)\n"
     "  --round        round to the nearest cell instead of truncating\n"
     "  --precision N  decimals of decoded coordinates, 0 to 17 (default 9)\n"
     OX_SYSTEM_OPTION "\n\n"
     OX_LINE_RULES,
     cmd_georef},
    {"mgrs", "convert positions to MGRS references and back",
     "usage: ox mgrs [--reverse] [--digits N] [--round] [--lettering L] [--centre]\n"
     "               [--spaces] [--precision N] [--system GEOGCS] [--output FILE] [INPUT]\n\n"
     "Each input line is one conversion; further columns after the values it\n"
     "needs are passed through. Forward: \"longitude latitude\" in the angular unit\n"
     "of GEOGCS (on its datum) becomes an MGRS reference (\"33UWT0000061038\"): UTM\n"
     "from 80S to 84N with the Norway and Svalbard zones, UPS beyond. With\n"
     "--reverse a reference (the first column, or the first columns when it is\n"
     "written with spaces between its parts) becomes \"longitude latitude\", the south-west corner of\n"
     "its square.\n\n"
     "  --digits N     digits per axis, 0 (100 km square) to 5 (1 m), down to 11\n"
     "                 (1 micrometre) (default 5)\n"
     "  --round        round to the nearest square instead of truncating\n"
     "  --lettering L  the 100 km square letters: auto (the older lettering on the\n"
     "                 Bessel and Clarke spheroids; default), current or older\n"
     "  --centre       decode to the centre of the square (also --center)\n"
     "  --spaces       write \"33U WT 00000 61038\"\n"
     "  --precision N  decimals of decoded coordinates, 0 to 17 (default 9)\n"
     OX_SYSTEM_OPTION "\n\n"
     OX_LINE_RULES,
     cmd_mgrs},
    {"geodesic", "distances and azimuths on the ellipsoid, and points reached",
     "usage: ox geodesic [--inverse|--direct] [--precision N] [--system GEOGCS]\n"
     "                   [--output FILE] [INPUT]\n\n"
     "The shortest lines on the spheroid of GEOGCS. Each input line is one\n"
     "problem; further columns after its four numbers are passed through. Angles\n"
     "are in the angular unit of GEOGCS, azimuths clockwise from north, distances\n"
     "in metres.\n\n"
     "  --inverse      (default) \"lon1 lat1 lon2 lat2\" becomes \"distance azimuth12\n"
     "                 azimuth21\": the length of the geodesic, its azimuth at point\n"
     "                 1 and the azimuth at point 2 back towards point 1\n"
     "  --direct       \"lon1 lat1 azimuth distance\" becomes \"lon2 lat2\", the point\n"
     "                 reached\n"
     "  --precision N  decimals, 0 to 17 (default 9; distances at most 9)\n"
     OX_SYSTEM_OPTION ";\n"
     "                 its flattening may be at most 1/50\n\n"
     OX_LINE_RULES,
     cmd_geodesic},
    {"horizon", "print the outline of a projected system's map as GeoJSON",
     "usage: ox horizon [--projected] [--raster] [--precision N] SYSTEM\n\n"
     "SYSTEM is a projected system: a catalogue code (32633, EPSG:7855) or definition string\n"
     "(OX_PCS_WGS_1984_UTM_ZONE_33N), an object string starting with PROJCS[, or\n"
     "the name of a file that holds one. Prints the horizon of the system, the\n"
     "boundary of the area its projection represents, as a GeoJSON\n"
     "FeatureCollection on standard output: one Polygon feature per closed ring,\n"
     "counter-clockwise, every side cut into 32 steps. Load it into any GIS.\n\n"
     "  --projected    x and y in the system's linear unit, false easting and\n"
     "                 northing included (default: longitude and latitude in the\n"
     "                 angular unit of the system's GEOGCS)\n"
     "  --raster       every face of a polyhedral map (\"Fuller\", \"Cube\") as a\n"
     "                 ring of its own instead of the outline of the whole net\n"
     "  --precision N  digits after the decimal point, 0 to 17 (default 9 for\n"
     "                 angles, 3 for lengths)\n\n"
     "Exit status 1 when the projection has no such horizon, 2 for a usage error\n"
     "or an unreadable SYSTEM.\n",
     cmd_horizon},
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
