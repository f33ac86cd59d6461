// Subcommands of grid references and geodesics: georef and mgrs (positions
// to references and back) and geodesic (the inverse and direct problems).
//
// Input is read line by line from standard input, each line one conversion:
// the values it needs first, then any further columns, which are passed
// through unchanged.  Comments (lines whose first non-blank character is
// '#') and blank lines are copied as they are.  A line that cannot be read
// or converted is copied through unchanged and reported on standard error
// with its line number.  Exit status: 0 when every line converted, 1 when
// some did not, 2 for a usage error or input that cannot be read.
#include <strings.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "commands.h"
#include "ox.h"

namespace oxtool {

namespace {

constexpr size_t kMaxLine = 65536;  // longer lines are reported, not converted

// ---------------------------------------------------------------------------
// Line input
// ---------------------------------------------------------------------------

// Reads lines of a stream of any size in bounded memory.
class LineReader {
  public:
    explicit LineReader(FILE *in) : in_(in) {}
    // The next line without its end ('\n' or "\r\n"); false at the end of
    // the input.  `overlong` is set for a line longer than kMaxLine, of which
    // only the beginning is kept (the rest is read and dropped).  `nul` is
    // set for a line holding a NUL byte.
    bool next(std::string *line, bool *overlong, bool *nul) {
        line->clear();
        *overlong = false;
        *nul = false;
        int c;
        bool any = false;
        while ((c = std::getc(in_)) != EOF) {
            any = true;
            if (c == '\n') break;
            if (c == '\0') *nul = true;
            if (line->size() < kMaxLine)
                line->push_back(static_cast<char>(c));
            else
                *overlong = true;
        }
        if (!line->empty() && line->back() == '\r') line->pop_back();
        ++number_;
        return any;
    }
    long number() const { return number_; }
    bool failed() const { return std::ferror(in_) != 0; }

  private:
    FILE *in_;
    long number_ = 0;
};

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

bool comment_or_blank(const std::string &line) {
    for (char c : line) {
        if (c == '#') return true;
        if (c != ' ' && c != '\t') return false;
    }
    return true;
}

// A decimal number: optional sign, digits with an optional decimal point,
// optional exponent; nothing else (no hexadecimal, no nan or inf).
bool parse_number(const std::string &text, double *value) {
    const char *p = text.c_str();
    const char *q = p;
    if (*q == '+' || *q == '-') ++q;
    int digits = 0;
    while (std::isdigit(static_cast<unsigned char>(*q))) ++q, ++digits;
    if (*q == '.') {
        ++q;
        while (std::isdigit(static_cast<unsigned char>(*q))) ++q, ++digits;
    }
    if (digits == 0) return false;
    if (*q == 'e' || *q == 'E') {
        ++q;
        if (*q == '+' || *q == '-') ++q;
        if (!std::isdigit(static_cast<unsigned char>(*q))) return false;
        while (std::isdigit(static_cast<unsigned char>(*q))) ++q;
    }
    if (*q != '\0') return false;
    errno = 0;
    *value = std::strtod(p, nullptr);
    return std::isfinite(*value);
}

// ---------------------------------------------------------------------------
// Options
// ---------------------------------------------------------------------------

struct Options {
    Options(const char *name, int default_digits) : command(name), digits(default_digits) {}
    const char *command;
    const char *system = "4326";
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
                            std::strcmp(a, "--precision") == 0 || std::strcmp(a, "--lettering") == 0;
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
ox_object *load_geogcs(const char *arg) {
    const char *p = arg;
    while (*p == ' ' || *p == '\t') ++p;
    if (strncasecmp(p, "GEOGCS", 6) == 0) return ox_geogcs_from_string(p);
    bool digits = *p != '\0';
    for (const char *q = p; *q; ++q) digits = digits && *q >= '0' && *q <= '9';
    if (digits || std::strncmp(p, "OX_", 3) == 0) {
        const int32_t code = ox_factory_defstring_to_int(p);
        return code != 0 ? ox_factory_geogcs(code) : nullptr;
    }
    static char text[1 << 20];
    if (!read_text(arg, text, sizeof text)) return nullptr;
    return ox_geogcs_from_string(text);
}

// ---------------------------------------------------------------------------
// The conversion of one line
// ---------------------------------------------------------------------------

// What one conversion does: read its fields, convert, print.  Returns false
// (with a message, nothing printed) when the line is not converted.
using Convert = bool (*)(ox_object *gcs, const Options &o, const std::string &line, std::string *message);

// Prints a converted line: `text`, then the rest of the input line unless
// it is only blanks.
void print_converted(const std::string &text, const char *rest) {
    std::fputs(text.c_str(), stdout);
    if (rest[std::strspn(rest, " \t")] != '\0') std::fputs(rest, stdout);
    std::fputc('\n', stdout);
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
bool convert_reference(const ReferenceKind &kind, ox_object *gcs, const Options &o, const std::string &line,
                       std::string *message) {
    double pt[2];
    if (o.reverse) {
        const char *rest = "";
        if (!decode_reference(kind, gcs, o, line, &rest, pt)) {
            *message = kind.not_read;
            return false;
        }
        print_converted(format_pair(pt[0], pt[1], o.precision), rest);
        return true;
    }
    Fields f;
    if (!read_pair(line, &f, &pt[0], &pt[1], message)) return false;
    char buffer[OX_MGRS_SIZE > OX_GEOREF_SIZE ? OX_MGRS_SIZE : OX_GEOREF_SIZE];
    if (!kind.encode(gcs, o, pt, buffer)) {
        *message = "the point has no reference (a latitude beyond 90 degrees?)";
        return false;
    }
    print_converted(buffer, f.rest);
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

bool convert_georef(ox_object *gcs, const Options &o, const std::string &line, std::string *message) {
    return convert_reference(kGeoref, gcs, o, line, message);
}

bool convert_mgrs(ox_object *gcs, const Options &o, const std::string &line, std::string *message) {
    return convert_reference(kMgrs, gcs, o, line, message);
}

bool convert_geodesic(ox_object *gcs, const Options &o, const std::string &line, std::string *message) {
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
        print_converted(format_pair(lon / unit, lat / unit, o.precision), f.rest);
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
    print_converted(buffer, f.rest);
    return true;
}

// Runs a conversion over the lines of standard input.
int run(int argc, char **argv, const char *flags, Options o, Convert convert) {
    if (!parse_options(argc, argv, flags, &o)) return 2;
    ox_object *gcs = load_geogcs(o.system);
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
    LineReader reader(stdin);
    std::string line, message;
    bool overlong = false, nul = false;
    long failed = 0;
    while (reader.next(&line, &overlong, &nul)) {
        if (!overlong && !nul && comment_or_blank(line)) {
            std::puts(line.c_str());
            continue;
        }
        message.clear();
        if (overlong) {
            message = "line longer than 65536 characters";
        } else if (nul) {
            message = "NUL byte in the line";
        } else if (convert(gcs, o, line, &message)) {
            continue;
        }
        std::fprintf(stderr, "ox %s: line %ld: %s\n", o.command, reader.number(), message.c_str());
        if (!overlong && !nul) std::puts(line.c_str());  // (those two are not copied)
        ++failed;
    }
    const bool unreadable = reader.failed();
    ox_geogcs_del(gcs);
    if (unreadable) {
        std::fprintf(stderr, "ox %s: error reading the input\n", o.command);
        return 2;
    }
    if (failed > 0) std::fprintf(stderr, "ox %s: %ld line(s) not converted\n", o.command, failed);
    return failed > 0 ? 1 : 0;
}

}  // namespace

int cmd_georef(int argc, char **argv) {
    return run(argc, argv, "--system --reverse --digits --round --precision", Options("georef", 4), convert_georef);
}

int cmd_mgrs(int argc, char **argv) {
    return run(argc, argv, "--system --reverse --digits --round --precision --lettering --centre --center --spaces",
               Options("mgrs", 5), convert_mgrs);
}

int cmd_geodesic(int argc, char **argv) {
    return run(argc, argv, "--system --inverse --direct --precision", Options("geodesic", 0), convert_geodesic);
}

}  // namespace oxtool
