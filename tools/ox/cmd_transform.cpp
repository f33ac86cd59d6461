// The transform subcommand: points through a geographic transformation
// (forward or inverse), and the catalogue's transformations between two
// geographic systems.
//
// Points are read by the tool's shared point reader (point_lines.h): each
// line is one point, "lon lat" or "lon lat h" (a third column that is not a
// number is passed through with the rest of the line); a point that is not
// converted is reported on standard error with its line number and copied
// unchanged.  Exit status 0 when every point converted, 1 when some did not,
// 2 for a usage error or unreadable input.
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
#include "point_lines.h"
#include "ox.h"

namespace oxtool {

namespace {


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

struct Options {
    bool inverse = false;
    const char *datahome = nullptr;
    const char *input = nullptr;
    const char *output = nullptr;
    int precision = 9;
    const char *system = nullptr;
    const char *between[2] = {nullptr, nullptr};
};

// Converts the points of `o.input` through the transformation (forward, or
// inverse with --inverse) into `o.output`; the exit status.
int transform_points(ox_object *gt, const Options &o) {
    const auto convert = [&](int32_t n, double *points, double *heights) {
        return o.inverse ? ox_geog2_to_geog1(gt, n, points, heights) : ox_geog1_to_geog2(gt, n, points, heights);
    };
    std::vector<double> points, heights;
    PointJob job;
    job.command = "transform";
    job.optional_values = 1;  // the height
    job.copy_failed = true;
    job.convert = [&](PointBatch &b) {
        // Interleaved longitudes and latitudes and the heights (0 where a
        // line has none), converted with one call; b.values keeps the input.
        const auto fill = [&] {
            points.resize(2 * static_cast<size_t>(b.n));
            heights.resize(static_cast<size_t>(b.n));
            for (int32_t i = 0; i < b.n; ++i) {
                points[2 * i] = b.values[3 * i];
                points[2 * i + 1] = b.values[3 * i + 1];
                heights[i] = std::isnan(b.values[3 * i + 2]) ? 0.0 : b.values[3 * i + 2];
            }
        };
        fill();
        std::vector<char> done(static_cast<size_t>(b.n), 1);
        if (convert(b.n, points.data(), heights.data()) != b.n) {
            // Some point was not converted (the count says how many, not
            // which): convert them one at a time.
            fill();
            for (int32_t i = 0; i < b.n; ++i) done[i] = convert(1, &points[2 * i], &heights[i]) == 1;
        }
        for (int32_t i = 0; i < b.n; ++i) {
            if (!done[i]) {
                b.failure[i] = "point not converted (outside the grid, or the transformation converts nothing)";
                continue;
            }
            b.values[3 * i] = points[2 * i];
            b.values[3 * i + 1] = points[2 * i + 1];
            if (!std::isnan(b.values[3 * i + 2])) b.values[3 * i + 2] = heights[i];
        }
    };
    job.write = [&](std::FILE *out, const double *v) {
        std::fprintf(out, "%.*f %.*f", o.precision, v[0], o.precision, v[1]);
        if (!std::isnan(v[2])) std::fprintf(out, " %.4f", v[2]);
    };
    return run_point_lines(job, o.input, o.output);
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
    const int status = transform_points(gt, o);
    ox_geogtran_del(gt);
    return status;
}

}  // namespace oxtool
