// Subcommands of grid references and geodesics: georef and mgrs (positions
// to references and back) and geodesic (the inverse and direct problems).
//
// Input is read line by line (run_lines of point_lines.h: a file or standard
// input, comments, blank lines, messages and exit status as every converting
// subcommand has them), each line one conversion: the values it needs first,
// then any further columns, which are passed through unchanged.
#include <strings.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "commands.h"
#include "ox.h"
#include "point_lines.h"

namespace oxtool {

namespace {

// The whitespace-separated fields of a line, with where the rest begins.
struct Fields {
    static constexpr int kMax = 4;
    std::string field[kMax];
    int count = 0;
    const char *rest = "";  // the line after the fields taken, leading blanks included
};

Fields split(const std::string &line, int wanted) {
    Fields f;
    const char *p = line.c_str();
    while (f.count < wanted) {
        while (*p == ' ' || *p == '\t') ++p;
        if (*p == '\0') break;
        const char *start = p;
        while (*p != '\0' && *p != ' ' && *p != '\t') ++p;
        f.field[f.count++].assign(start, static_cast<size_t>(p - start));
    }
    f.rest = p;
    return f;
}

// A field that is one strict number (point_lines.h).
bool parse_number(const std::string &text, double *value) {
    const char *stop = nullptr;
    return oxtool::parse_number(text.data(), text.data() + text.size(), value, &stop) == nullptr;
}

// ---------------------------------------------------------------------------
// Options
// ---------------------------------------------------------------------------

struct Options {
    Options(const char *name, int default_digits) : command(name), digits(default_digits) {}
    const char *command;
    const char *system = "4326";
    const char *input = nullptr;   // null: standard input
    const char *output = nullptr;  // null: standard output
    bool reverse = false;
    bool direct = false;
    bool round = false;
    bool centre = false;
    bool spaces = false;
    int digits;
    int precision = 9;
    int lettering = OX_MGRS_LETTERING_AUTO;
};

bool whole_number(const char *text, long low, long high, long *value) {
    char *end = nullptr;
    errno = 0;
    const long v = std::strtol(text, &end, 10);
    if (end == text || *end != '\0' || errno != 0 || v < low || v > high) return false;
    *value = v;
    return true;
}

// Parses the options of one of the three commands; false (after a message)
// on a usage error.  `flags` lists the options the command takes.
bool parse_options(int argc, char **argv, const char *flags, Options *o) {
    auto takes = [flags](const char *option) {
        const size_t length = std::strlen(option);
        for (const char *p = flags; (p = std::strstr(p, option)) != nullptr; p += length)
            if ((p == flags || p[-1] == ' ') && (p[length] == ' ' || p[length] == '\0')) return true;
        return false;
    };
    for (int i = 1; i < argc; ++i) {
        const char *a = argv[i];
        const bool valued = std::strcmp(a, "--system") == 0 || std::strcmp(a, "--digits") == 0 ||
                            std::strcmp(a, "--precision") == 0 || std::strcmp(a, "--lettering") == 0 ||
                            std::strcmp(a, "--output") == 0;
        if ((a[0] != '-' || a[1] == '\0') && o->input == nullptr) {  // the input file ("-": standard input)
            o->input = a;
            continue;
        }
        if (!takes(a)) {
            std::fprintf(stderr, "ox %s: unknown option '%s' (ox %s --help)\n", o->command, a, o->command);
            return false;
        }
        if (valued && i + 1 >= argc) {
            std::fprintf(stderr, "ox %s: %s needs a value\n", o->command, a);
            return false;
        }
        long v = 0;
        if (std::strcmp(a, "--system") == 0) {
            o->system = argv[++i];
        } else if (std::strcmp(a, "--output") == 0) {
            o->output = argv[++i];
        } else if (std::strcmp(a, "--digits") == 0) {
            const bool mgrs = std::strcmp(o->command, "mgrs") == 0;
            if (!whole_number(argv[++i], mgrs ? 0 : 2, mgrs ? 11 : 9, &v)) {
                std::fprintf(stderr, "ox %s: --digits takes a whole number from %d to %d\n", o->command, mgrs ? 0 : 2,
                             mgrs ? 11 : 9);
                return false;
            }
            o->digits = static_cast<int>(v);
        } else if (std::strcmp(a, "--precision") == 0) {
            if (!whole_number(argv[++i], 0, 17, &v)) {
                std::fprintf(stderr, "ox %s: --precision takes a whole number from 0 to 17\n", o->command);
                return false;
            }
            o->precision = static_cast<int>(v);
        } else if (std::strcmp(a, "--lettering") == 0) {
            const char *l = argv[++i];
            if (std::strcmp(l, "auto") == 0) {
                o->lettering = OX_MGRS_LETTERING_AUTO;
            } else if (std::strcmp(l, "current") == 0) {
                o->lettering = OX_MGRS_LETTERING_CURRENT;
            } else if (std::strcmp(l, "older") == 0) {
                o->lettering = OX_MGRS_LETTERING_OLDER;
            } else {
                std::fprintf(stderr, "ox %s: --lettering takes auto, current or older\n", o->command);
                return false;
            }
        } else if (std::strcmp(a, "--reverse") == 0) {
            o->reverse = true;
        } else if (std::strcmp(a, "--direct") == 0) {
            o->direct = true;
        } else if (std::strcmp(a, "--inverse") == 0) {
            o->direct = false;
        } else if (std::strcmp(a, "--round") == 0) {
            o->round = true;
        } else if (std::strcmp(a, "--centre") == 0 || std::strcmp(a, "--center") == 0) {
            o->centre = true;
        } else if (std::strcmp(a, "--spaces") == 0) {
            o->spaces = true;
        }
    }
    return true;
}

// The geographic system that --system names: a catalogue code or definition
// string, an object string starting with GEOGCS, or a file that holds one.
ox_object *load_geogcs(const char *command, const char *arg) {
    const char *p = arg;
    while (*p == ' ' || *p == '\t') ++p;
    if (strncasecmp(p, "GEOGCS", 6) == 0) return ox_geogcs_from_string(p);
    bool digits = *p != '\0';
    for (const char *q = p; *q; ++q) digits = digits && *q >= '0' && *q <= '9';
    if (digits || std::strncmp(p, "OX_", 3) == 0) {
        const int32_t code = ox_factory_defstring_to_int(p);
        return code != 0 ? ox_factory_geogcs(code) : nullptr;
    }
    std::string text;
    return read_text(command, arg, &text) ? ox_geogcs_from_string(text.c_str()) : nullptr;
}

// ---------------------------------------------------------------------------
// The conversion of one line
// ---------------------------------------------------------------------------

// What one conversion does: read its fields, convert, print.  Returns false
// (with a message, nothing printed) when the line is not converted.
using Convert = bool (*)(std::FILE *out, ox_object *gcs, const Options &o, const std::string &line,
                         std::string *message);

// Prints a converted line: `text`, then the rest of the input line unless
// it is only blanks (the line break is run_lines's).
void print_converted(std::FILE *out, const std::string &text, const char *rest) {
    std::fputs(text.c_str(), out);
    if (rest[std::strspn(rest, " \t")] != '\0') std::fputs(rest, out);
}

std::string format_pair(double x, double y, int precision) {
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, "%.*f %.*f", precision, x, precision, y);
    return buffer;
}

// Two numbers at the start of a line.
bool read_pair(const std::string &line, Fields *f, double *x, double *y, std::string *message) {
    *f = split(line, 2);
    if (f->count < 2 || !parse_number(f->field[0], x) || !parse_number(f->field[1], y)) {
        *message = "expected two numbers";
        return false;
    }
    return true;
}

// A kind of grid reference: one point to its reference, one reference to
// its point (true when converted), and what to say of a reference not read.
struct ReferenceKind {
    bool (*encode)(ox_object *gcs, const Options &o, double *pt, char *out);
    bool (*decode)(ox_object *gcs, const Options &o, const char *text, double *pt);
    const char *not_read;
};

// Decodes a reference: the first four fields of the line, or else fewer (a
// reference may be written with spaces between its parts), the rest passed
// through.
bool decode_reference(const ReferenceKind &kind, ox_object *gcs, const Options &o, const std::string &line,
                      const char **rest, double *pt) {
    const Fields f = split(line, Fields::kMax);
    for (int k = f.count; k >= 1; --k) {
        const Fields head = split(line, k);
        const size_t begin = line.find_first_not_of(" \t");
        const std::string text = line.substr(begin, static_cast<size_t>(head.rest - line.c_str()) - begin);
        if (kind.decode(gcs, o, text.c_str(), pt)) {
            *rest = head.rest;
            return true;
        }
    }
    return false;
}

// One line of a reference conversion, either way.
bool convert_reference(std::FILE *out, const ReferenceKind &kind, ox_object *gcs, const Options &o,
                       const std::string &line, std::string *message) {
    double pt[2];
    if (o.reverse) {
        const char *rest = "";
        if (!decode_reference(kind, gcs, o, line, &rest, pt)) {
            *message = kind.not_read;
            return false;
        }
        print_converted(out, format_pair(pt[0], pt[1], o.precision), rest);
        return true;
    }
    Fields f;
    if (!read_pair(line, &f, &pt[0], &pt[1], message)) return false;
    char buffer[OX_MGRS_SIZE > OX_GEOREF_SIZE ? OX_MGRS_SIZE : OX_GEOREF_SIZE];
    if (!kind.encode(gcs, o, pt, buffer)) {
        *message = "the point has no reference (a latitude beyond 90 degrees?)";
        return false;
    }
    print_converted(out, buffer, f.rest);
    return true;
}

const ReferenceKind kGeoref = {
    [](ox_object *gcs, const Options &o, double *pt, char *out) {
        char *refs[1] = {out};
        return ox_geog_to_georef(gcs, 1, pt, o.digits, o.round ? 1 : 0, refs) == 1;
    },
    [](ox_object *gcs, const Options &, const char *text, double *pt) {
        char *refs[1] = {const_cast<char *>(text)};
        return ox_georef_to_geog(gcs, 1, refs, pt) == 1;
    },
    "not a GEOREF reference",
};

const ReferenceKind kMgrs = {
    [](ox_object *gcs, const Options &o, double *pt, char *out) {
        char *refs[1] = {out};
        const int mode = o.lettering | (o.spaces ? OX_MGRS_SPACES : 0);
        return ox_geog_to_mgrs_extended(gcs, 1, pt, o.digits, o.round ? 1 : 0, mode, refs) == 1;
    },
    [](ox_object *gcs, const Options &o, const char *text, double *pt) {
        char *refs[1] = {const_cast<char *>(text)};
        return ox_mgrs_to_geog_extended(gcs, 1, refs, o.lettering | (o.centre ? OX_MGRS_CENTER : 0), pt) == 1;
    },
    "not an MGRS reference of this lettering",
};

bool convert_georef(std::FILE *out, ox_object *gcs, const Options &o, const std::string &line,
                    std::string *message) {
    return convert_reference(out, kGeoref, gcs, o, line, message);
}

bool convert_mgrs(std::FILE *out, ox_object *gcs, const Options &o, const std::string &line,
                  std::string *message) {
    return convert_reference(out, kMgrs, gcs, o, line, message);
}

bool convert_geodesic(std::FILE *out, ox_object *gcs, const Options &o, const std::string &line,
                      std::string *message) {
    const Fields f = split(line, 4);
    double v[4];
    for (int i = 0; i < 4; ++i)
        if (i >= f.count || !parse_number(f.field[i], &v[i])) {
            *message = "expected four numbers";
            return false;
        }
    const ox_object *spheroid = ox_datum_spheroid(ox_geogcs_datum(gcs));
    const double a = ox_spheroid_axis(spheroid), fl = ox_spheroid_flattening(spheroid);
    const double e2 = fl * (2.0 - fl);
    const double unit = ox_unit_factor(ox_geogcs_unit(gcs));  // radians per angular unit
    if (o.direct) {
        double lon, lat;
        if (ox_geodesic_coordinate(a, e2, v[0] * unit, v[1] * unit, v[3], v[2] * unit, &lon, &lat) != 1) {
            *message = "no geodesic (a latitude beyond 90 degrees?)";
            return false;
        }
        print_converted(out, format_pair(lon / unit, lat / unit, o.precision), f.rest);
        return true;
    }
    double s, azi1, azi2;
    if (ox_geodesic_distance(a, e2, v[0] * unit, v[1] * unit, v[2] * unit, v[3] * unit, &s, &azi1, &azi2) != 1) {
        *message = "no geodesic (a latitude beyond 90 degrees?)";
        return false;
    }
    char buffer[192];
    std::snprintf(buffer, sizeof buffer, "%.*f %.*f %.*f", o.precision < 9 ? o.precision : 9, s, o.precision,
                  azi1 / unit, o.precision, azi2 / unit);
    print_converted(out, buffer, f.rest);
    return true;
}

// Runs a conversion over the lines of the input.
int run(int argc, char **argv, const char *flags, Options o, Convert convert) {
    if (!parse_options(argc, argv, flags, &o)) return 2;
    ox_object *gcs = load_geogcs(o.command, o.system);
    if (gcs == nullptr) {
        std::fprintf(stderr, "ox %s: cannot read a geographic system (GEOGCS) from '%.200s'\n", o.command, o.system);
        return 2;
    }
    if (std::strcmp(o.command, "geodesic") == 0) {
        const double f = ox_spheroid_flattening(ox_datum_spheroid(ox_geogcs_datum(gcs)));
        if (f * (2.0 - f) > 0.04) {
            std::fprintf(stderr, "ox geodesic: the spheroid's flattening is beyond 1/50\n");
            ox_geogcs_del(gcs);
            return 2;
        }
    }
    LineJob job{o.command, [&](std::FILE *out, const std::string &line, std::string *message) {
                    return convert(out, gcs, o, line, message);
                }};
    const int status = run_lines(job, o.input, o.output);
    ox_geogcs_del(gcs);
    return status;
}

}  // namespace

int cmd_georef(int argc, char **argv) {
    return run(argc, argv, "--system --reverse --digits --round --precision --output", Options("georef", 4),
               convert_georef);
}

int cmd_mgrs(int argc, char **argv) {
    return run(argc, argv,
               "--system --reverse --digits --round --precision --lettering --centre --center --spaces --output",
               Options("mgrs", 5), convert_mgrs);
}

int cmd_geodesic(int argc, char **argv) {
    return run(argc, argv, "--system --inverse --direct --precision --output", Options("geodesic", 0),
               convert_geodesic);
}

}  // namespace oxtool
