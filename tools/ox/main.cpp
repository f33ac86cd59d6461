// ox: the command-line face of the library.
#include <cstdio>
#include <cstring>

#include "commands.h"

namespace oxtool {
namespace {

// How the line-based conversions treat their input (help texts).
#define OX_LINE_RULES                                                                 \
    "Comments (#) and blank lines are copied. A line that cannot be converted is\n"   \
    "copied unchanged and reported on standard error with its number (lines over\n"  \
    "65536 characters or holding a NUL byte are reported and not copied). Exit\n"    \
    "status 0 when every line converted, 1 when some did not, 2 for a usage error\n" \
    "or input that cannot be read.\n"

// The geographic system option of the same conversions.
#define OX_SYSTEM_OPTION                                                             \
    "  --system S     the geographic system: a code (default 4326), a definition\n" \
    "                 string, an object string GEOGCS[...] or a file holding one"

const Command kCommands[] = {
    {"version", "print the library version",
     "usage: ox version\n\nPrints the library's version text.\n", cmd_version},
    {"parse", "read an object string and print it back normalised",
     "usage: ox parse [--authority 0|1|2] [FILE|-]\n\n"
     "Reads an object string (GEOGCS, PROJCS, GEOGTRAN, VERTCS, ...) from FILE or\n"
     "standard input and prints it as the library writes it. --authority chooses\n"
     "where AUTHORITY clauses are written: 0 none (default), 1 outermost object,\n"
     "2 every object. Exit status 1 when the text cannot be read.\n",
     cmd_parse},
    {"defaults", "list the parameters of a projection with their defaults",
     "usage: ox defaults PROJECTION\n\n"
     "PROJECTION is a registry name (\"Transverse_Mercator\", aliases accepted) or\n"
     "code (43006). Prints one PARAMETER[...] per line in slot order.\n",
     cmd_defaults},
    {"project", "project longitude/latitude pairs through a projected system",
     "usage: ox project [--precision N] SYSTEM < POINTS\n\n"
     "SYSTEM is a projected system: a catalogue code (32633, EPSG:7855) or definition string\n"
     "(OX_PCS_WGS_1984_UTM_ZONE_33N), an object string starting with PROJCS[, or\n"
     "the name of a file that holds one. POINTS are whitespace-separated longitude and\n"
     "latitude pairs in the angular unit of the system's GEOGCS, read from standard\n"
     "input; each pair is written to standard output as \"x y\" in the system's\n"
     "linear unit, false easting and northing included.\n\n"
     "  --precision N  digits after the decimal point, 0 to 17 (default 4)\n\n"
     "A point that cannot be converted, or a value that is not a number, prints\n"
     "\"nan nan\". Exit status 0 when every point converted, 1 when some did not or\n"
     "the input was malformed, 2 for a usage error or an unreadable SYSTEM.\n",
     cmd_project},
    {"unproject", "unproject x/y pairs back to longitude/latitude",
     "usage: ox unproject [--precision N] [--center LON] SYSTEM < POINTS\n\n"
     "SYSTEM is a projected system: a catalogue code (32633, EPSG:7855) or definition string\n"
     "(OX_PCS_WGS_1984_UTM_ZONE_33N), an object string starting with PROJCS[, or\n"
     "the name of a file that holds one. POINTS are whitespace-separated x and y pairs\n"
     "in the system's linear unit, read from standard input; each pair is written\n"
     "to standard output as \"longitude latitude\" in the angular unit of the\n"
     "system's GEOGCS.\n\n"
     "  --precision N  digits after the decimal point, 0 to 17 (default 9)\n"
     "  --center LON   return longitudes within 180 degrees (half a turn of the\n"
     "                 angular unit) of LON instead of the usual range\n\n"
     "A point that cannot be converted, or a value that is not a number, prints\n"
     "\"nan nan\". Exit status 0 when every point converted, 1 when some did not or\n"
     "the input was malformed, 2 for a usage error or an unreadable SYSTEM.\n",
     cmd_unproject},
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
     "Exit status 1 when the catalogue has nothing for it, 2 for a usage error.\n",
     cmd_info},
    {"list", "list the catalogue objects of a kind",
     "usage: ox list KIND\n\n"
     "Prints the code and name of every current catalogue object of KIND, one per\n"
     "line, sorted by name. KIND is projcs, geogcs, vertcs, geogtran, datum,\n"
     "vdatum, spheroid, primem, projection, parameter, method, htmethod,\n"
     "angular_unit or linear_unit. Object-edit files (OXOBJEDITHOME) are included.\n",
     cmd_list},
    {"code", "find the catalogue code of an object string",
     "usage: ox code [FILE|-]\n\n"
     "Reads an object string from FILE or standard input and prints the code of\n"
     "the equal catalogue object and its definition string. Exit status 1 when\n"
     "the catalogue has no equal object (\"0\" is printed), 2 when the text is not\n"
     "readable.\n",
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
     "Exit status 1 when nothing is equivalent, 2 when the text is not a\n"
     "readable PROJCS or GEOGCS.\n",
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
     "usage: ox georef [--reverse] [--digits N] [--round] [--precision N] [--system GEOGCS] < LINES\n\n"
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
     "               [--spaces] [--precision N] [--system GEOGCS] < LINES\n\n"
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
     "usage: ox geodesic [--inverse|--direct] [--precision N] [--system GEOGCS] < LINES\n\n"
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
    std::fputs("usage: ox COMMAND [ARGS]\n\nCommands:\n", out);
    for (const Command &c : kCommands) std::fprintf(out, "  %-10s %s\n", c.name, c.synopsis);
    std::fputs("\nRun 'ox COMMAND --help' for the options of a command.\n", out);
}

}  // namespace
}  // namespace oxtool

int main(int argc, char **argv) {
    using namespace oxtool;
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
        return argc < 2 ? 2 : 0;
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
    return 2;
}
