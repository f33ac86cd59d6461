// The transform subcommand: points through a geographic transformation
// (forward or inverse), and the catalogue's transformations between two
// geographic systems.
//
// Input lines follow the tool's convention for point commands: each line
// is one point, "lon lat" or "lon lat h" (strict numbers; a third column
// that is not a number is passed through with the rest of the line), blank
// lines and lines starting with '#' are copied, a line that is not a point
// and a point that is not converted are reported on standard error with
// the line number and copied unchanged.  Exit status 0 when every point
// converted, 1 when some did not, 2 for a usage error or unreadable input.
#include <strings.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "commands.h"
#include "ox.h"

namespace oxtool {

namespace {

constexpr size_t kMaxLine = 1 << 16;  // longer lines are reported and copied
constexpr int32_t kBatch = 4096;      // points per library call

// An object of `kind` named on the command line: an object string, a
// catalogue code or definition string, or a file that holds an object
// string.  Null when none can be read.
ox_object *load_object(const char *arg, const ObjectKind *kind) {
    const char *p = arg;
    while (std::isspace(static_cast<unsigned char>(*p))) ++p;
    if (strncasecmp(p, kind->keyword, std::strlen(kind->keyword)) == 0) return kind->read(p);
    CatalogueName name;
    if (parse_system(arg, &name)) return catalogue_object(name, kind, nullptr);
    std::string text;
    if (!read_text("ox transform", arg, &text)) return nullptr;
    return kind->read(text.c_str());
}

// A strict number at `p`: sign, digits with an optional point, an optional
// exponent, followed by a blank or the end.  Sets `end` past it.
bool strict_number(const char *p, double *value, const char **end) {
    const char *q = p;
    if (*q == '+' || *q == '-') ++q;
    bool digits = false;
    while (std::isdigit(static_cast<unsigned char>(*q))) ++q, digits = true;
    if (*q == '.') {
        ++q;
        while (std::isdigit(static_cast<unsigned char>(*q))) ++q, digits = true;
    }
    if (!digits) return false;
    if (*q == 'e' || *q == 'E') {
        const char *e = q + 1;
        if (*e == '+' || *e == '-') ++e;
        if (!std::isdigit(static_cast<unsigned char>(*e))) return false;
        while (std::isdigit(static_cast<unsigned char>(*e))) ++e;
        q = e;
    }
    if (*q != '\0' && *q != ' ' && *q != '\t' && *q != '\r' && *q != '\n') return false;
    errno = 0;
    char *stop = nullptr;
    const double v = std::strtod(p, &stop);
    if (stop != q || errno == ERANGE || !std::isfinite(v)) return false;
    *value = v;
    *end = q;
    return true;
}

const char *skip_blanks(const char *p) {
    while (*p == ' ' || *p == '\t') ++p;
    return p;
}

struct Options {
    bool inverse = false;
    const char *datahome = nullptr;
    const char *input = nullptr;
    const char *output = nullptr;
    int precision = 9;
    const char *system = nullptr;
    const char *between[2] = {nullptr, nullptr};
};

// One line held until its batch is converted.
struct Line {
    long number;
    std::string text;  // the whole line, without its newline
    bool point;        // a point to convert
    bool height;       // a third number was read
    size_t rest;       // where the passed-through rest of the line starts
};

class Transformer {
   public:
    Transformer(ox_object *gt, const Options &o, std::FILE *out) : gt_(gt), o_(o), out_(out) {}

    void add(Line line, double lon, double lat, double h) {
        if (line.point) {
            points_.push_back(lon);
            points_.push_back(lat);
            heights_.push_back(h);
        }
        lines_.push_back(std::move(line));
        if (points_.size() / 2 >= static_cast<size_t>(kBatch)) flush();
    }

    // Converts the held points and writes the held lines.
    void flush() {
        const int32_t n = static_cast<int32_t>(points_.size() / 2);
        std::vector<double> in = points_, hin = heights_;
        std::vector<char> done(static_cast<size_t>(n), 1);
        if (n > 0 && convert(n, points_.data(), heights_.data()) != n) {
            // Some point was not converted: find which, one at a time.
            points_ = in;
            heights_ = hin;
            for (int32_t i = 0; i < n; ++i) done[i] = convert(1, &points_[2 * i], &heights_[i]) == 1;
        }
        size_t k = 0;
        for (const Line &line : lines_) {
            if (!line.point) {
                std::fprintf(out_, "%s\n", line.text.c_str());
                continue;
            }
            if (!done[k]) {
                std::fprintf(stderr, "ox transform: line %ld: point not converted (outside the grid, or the "
                                     "transformation converts nothing)\n",
                             line.number);
                std::fprintf(out_, "%s\n", line.text.c_str());
                ++failed_;
            } else if (line.height) {
                std::fprintf(out_, "%.*f %.*f %.4f%s\n", o_.precision, points_[2 * k], o_.precision,
                             points_[2 * k + 1], heights_[k], line.text.c_str() + line.rest);
            } else {
                std::fprintf(out_, "%.*f %.*f%s\n", o_.precision, points_[2 * k], o_.precision, points_[2 * k + 1],
                             line.text.c_str() + line.rest);
            }
            ++k;
        }
        lines_.clear();
        points_.clear();
        heights_.clear();
    }

    long failed() const { return failed_; }

   private:
    int32_t convert(int32_t n, double *p, double *h) {
        return o_.inverse ? ox_geog2_to_geog1(gt_, n, p, h) : ox_geog1_to_geog2(gt_, n, p, h);
    }
    ox_object *gt_;
    const Options &o_;
    std::FILE *out_;
    std::vector<Line> lines_;
    std::vector<double> points_, heights_;
    long failed_ = 0;
};

// Reads the points of `in` and writes them converted; the exit status.
int transform_lines(ox_object *gt, const Options &o, std::FILE *in, std::FILE *out) {
    Transformer t(gt, o, out);
    long bad = 0, number = 0;
    std::string text;
    int c = 0;
    while (c != EOF) {
        text.clear();
        bool overlong = false;
        while ((c = std::fgetc(in)) != EOF && c != '\n') {
            if (text.size() < kMaxLine)
                text.push_back(static_cast<char>(c));
            else
                overlong = true;
        }
        if (c == EOF && text.empty()) break;
        ++number;
        if (!text.empty() && text.back() == '\r') text.pop_back();
        Line line{number, text, false, false, 0};
        const char *start = skip_blanks(line.text.c_str());
        if (*start == '\0' || *start == '#') {
            t.add(std::move(line), 0, 0, 0);
            continue;
        }
        double lon, lat, h = 0.0;
        const char *p = start, *end = nullptr;
        const bool embedded_nul = std::strlen(line.text.c_str()) != line.text.size();
        if (overlong || embedded_nul || !strict_number(p, &lon, &end) || !strict_number(skip_blanks(end), &lat, &end)) {
            std::fprintf(stderr, "ox transform: line %ld: not a point (\"lon lat [h]\")\n", number);
            t.add(std::move(line), 0, 0, 0);
            ++bad;
            continue;
        }
        const char *after = end;
        line.height = strict_number(skip_blanks(after), &h, &end);
        line.rest = static_cast<size_t>((line.height ? end : after) - line.text.c_str());
        line.point = true;
        t.add(std::move(line), lon, lat, h);
    }
    t.flush();
    if (std::ferror(in)) {
        std::fprintf(stderr, "ox transform: cannot read the input\n");
        return 2;
    }
    const long failed = t.failed() + bad;
    if (failed > 0) std::fprintf(stderr, "ox transform: %ld line(s) not converted\n", failed);
    return failed > 0 ? 1 : 0;
}

// Lists the catalogue's transformations between two geographic systems.
int list_between(const Options &o) {
    const ObjectKind *geogcs = object_kind("geogcs");
    ox_object *a = load_object(o.between[0], geogcs), *b = load_object(o.between[1], geogcs);
    if (a == nullptr || b == nullptr) {
        std::fprintf(stderr, "ox transform: cannot read a geographic system (GEOGCS) from '%.200s'\n",
                     a == nullptr ? o.between[0] : o.between[1]);
        ox_geogcs_del(a);
        ox_geogcs_del(b);
        return 2;
    }
    int32_t count = 0;
    int32_t *codes = ox_factory_geogtran_codelist(&count);
    int found = 0;
    for (int32_t i = 0; i < count; ++i) {
        ox_object *gt = ox_factory_geogtran(codes[i]);
        if (gt == nullptr) continue;
        const ox_object *g1 = ox_geogtran_geogcs1(gt), *g2 = ox_geogtran_geogcs2(gt);
        const bool forward = ox_geogcs_eq(g1, a) && ox_geogcs_eq(g2, b);
        const bool reverse = !forward && ox_geogcs_eq(g1, b) && ox_geogcs_eq(g2, a);
        if (forward || reverse) {
            char name[OX_NAME_SIZE], method[OX_NAME_SIZE];
            ox_geogtran_name(gt, name);
            ox_method_name(ox_geogtran_method(gt), method);
            std::printf("%d %s %s%s\n", codes[i], name, method, reverse ? " (use --inverse)" : "");
            ++found;
        }
        ox_geogtran_del(gt);
    }
    ox_factory_codelist_del(codes);
    ox_geogcs_del(a);
    ox_geogcs_del(b);
    if (found == 0) std::fprintf(stderr, "ox transform: the catalogue has no transformation between them\n");
    return found > 0 ? 0 : 1;
}

bool parse_options(int argc, char **argv, Options *o) {
    for (int i = 1; i < argc; ++i) {
        const char *a = argv[i];
        const auto value = [&](const char *option) -> const char * {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "ox transform: %s needs a value\n", option);
                return nullptr;
            }
            return argv[++i];
        };
        if (std::strcmp(a, "--inverse") == 0) {
            o->inverse = true;
        } else if (std::strcmp(a, "--datahome") == 0) {
            if ((o->datahome = value(a)) == nullptr) return false;
        } else if (std::strcmp(a, "--input") == 0) {
            if ((o->input = value(a)) == nullptr) return false;
        } else if (std::strcmp(a, "--output") == 0) {
            if ((o->output = value(a)) == nullptr) return false;
        } else if (std::strcmp(a, "--precision") == 0) {
            const char *v = value(a);
            if (v == nullptr) return false;
            char *end = nullptr;
            const long p = std::strtol(v, &end, 10);
            if (end == v || *end != '\0' || p < 0 || p > 17) {
                std::fprintf(stderr, "ox transform: --precision takes a whole number from 0 to 17\n");
                return false;
            }
            o->precision = static_cast<int>(p);
        } else if (std::strcmp(a, "--between") == 0) {
            if (i + 2 >= argc) {
                std::fprintf(stderr, "ox transform: --between needs two geographic systems\n");
                return false;
            }
            o->between[0] = argv[++i];
            o->between[1] = argv[++i];
        } else if (a[0] == '-' && a[1] == '-') {
            std::fprintf(stderr, "ox transform: unknown option '%s'\n", a);
            return false;
        } else if (o->system == nullptr) {
            o->system = a;
        } else {
            std::fprintf(stderr, "ox transform: unexpected argument '%s'\n", a);
            return false;
        }
    }
    if ((o->system == nullptr) == (o->between[0] == nullptr)) {
        std::fprintf(stderr, "usage: ox transform [OPTIONS] TRANSFORMATION < POINTS, or ox transform --between "
                             "GEOGCS1 GEOGCS2 (ox transform --help)\n");
        return false;
    }
    return true;
}

}  // namespace

int cmd_transform(int argc, char **argv) {
    Options o;
    if (!parse_options(argc, argv, &o)) return 2;
    if (o.datahome != nullptr) ox_datahome_setdir(o.datahome);
    if (o.between[0] != nullptr) return list_between(o);
    ox_object *gt = load_object(o.system, object_kind("geogtran"));
    if (gt == nullptr) {
        std::fprintf(stderr, "ox transform: cannot read a transformation (GEOGTRAN) from '%.200s'\n", o.system);
        return 2;
    }
    std::FILE *in = o.input == nullptr || std::strcmp(o.input, "-") == 0 ? stdin : std::fopen(o.input, "rb");
    std::FILE *out = o.output == nullptr || std::strcmp(o.output, "-") == 0 ? stdout : std::fopen(o.output, "wb");
    int status = 2;
    if (in == nullptr) {
        std::fprintf(stderr, "ox transform: cannot open '%.200s'\n", o.input);
    } else if (out == nullptr) {
        std::fprintf(stderr, "ox transform: cannot write '%.200s'\n", o.output);
    } else {
        status = transform_lines(gt, o, in, out);
        if (std::fflush(out) != 0 || std::ferror(out)) {
            std::fprintf(stderr, "ox transform: cannot write the output\n");
            status = 2;
        }
    }
    if (in != nullptr && in != stdin) std::fclose(in);
    if (out != nullptr && out != stdout) std::fclose(out);
    ox_geogtran_del(gt);
    return status;
}

}  // namespace oxtool
