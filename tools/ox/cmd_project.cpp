// Subcommands that convert coordinates through a projected system: project
// (geographic to projected) and unproject (projected to geographic), line by
// line through the shared point reader.
#include <strings.h>

#include <cctype>
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

// A projected system read from an object string, with a message when the
// text is no readable PROJCS.
ox_object *projcs_of_text(const char *command, const char *what, const char *text) {
    if (ox_object *pcs = ox_projcs_from_string(text)) return pcs;
    void (*del)(ox_object *) = nullptr;
    void (*write)(ox_object *, int32_t, char *) = nullptr;
    const char *keyword = nullptr;
    if (ox_object *other = read_any(text, &del, &write, &keyword)) {
        std::fprintf(stderr, "ox %s: %s holds a %s, not a PROJCS\n", command, what, keyword);
        del(other);
        return nullptr;
    }
    explain_unreadable(command, what, text, "PROJCS");
    return nullptr;
}

bool names_catalogue_object(const char *p) {
    return std::isdigit(static_cast<unsigned char>(*p)) || std::strncmp(p, "OX_", 3) == 0 ||
           strncasecmp(p, "EPSG:", 5) == 0;
}

}  // namespace

ox_object *load_projcs(const char *command, const char *arg) {
    const char *p = arg;
    while (std::isspace(static_cast<unsigned char>(*p))) ++p;
    CatalogueName name;
    if (parse_system(p, &name)) {
        if (ox_object *pcs = catalogue_projcs(p)) return pcs;
        const ObjectKind *kind = nullptr;
        if (ox_object *other = catalogue_object(name, nullptr, &kind)) {
            std::fprintf(stderr, "ox %s: the code %d names a %s, not a PROJCS\n", command, name.code, kind->keyword);
            kind->del(other);
        } else {
            std::fprintf(stderr, "ox %s: no catalogue object has the code %d\n", command, name.code);
        }
        return nullptr;
    }
    if (names_catalogue_object(p)) {
        std::fprintf(stderr, "ox %s: '%.200s' names no catalogue object (no such code or definition string)\n",
                     command, p);
        return nullptr;
    }
    if (std::strpbrk(p, "[(") != nullptr) return projcs_of_text(command, "the object string", arg);
    std::string text;
    if (!read_text(command, arg, &text)) return nullptr;
    return projcs_of_text(command, input_name(arg).c_str(), text.c_str());
}

namespace {

struct Options {
    int precision;
    double center = 0.0;
    const char *system = nullptr;
    const char *input = nullptr;
    const char *output = nullptr;
};

// Parses the arguments; false (after a message) on a usage error.
bool parse_options(const char *command, int argc, char **argv, bool inverse, Options *o) {
    for (int i = 1; i < argc; ++i) {
        const char *a = argv[i];
        const bool precision = std::strcmp(a, "--precision") == 0;
        const bool center = inverse && std::strcmp(a, "--center") == 0;
        const bool output = std::strcmp(a, "--output") == 0 || std::strcmp(a, "-o") == 0;
        if (precision || center || output) {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "ox %s: %s needs a value\n", command, a);
                return false;
            }
            const char *v = argv[++i];
            if (output) {
                o->output = v;
            } else if (precision) {
                char *end = nullptr;
                const long n = std::strtol(v, &end, 10);
                if (end == v || *end != '\0' || n < 0 || n > 17) {
                    std::fprintf(stderr, "ox %s: --precision takes a whole number from 0 to 17\n", command);
                    return false;
                }
                o->precision = static_cast<int>(n);
            } else {
                const char *stop = nullptr;
                if (parse_number(v, v + std::strlen(v), &o->center, &stop) != nullptr || *stop != '\0') {
                    std::fprintf(stderr, "ox %s: --center takes a longitude\n", command);
                    return false;
                }
            }
        } else if (a[0] == '-' && a[1] == '-') {
            std::fprintf(stderr, "ox %s: unknown option '%s' (ox %s --help)\n", command, a, command);
            return false;
        } else if (o->system == nullptr) {
            o->system = a;
        } else if (o->input == nullptr) {
            o->input = a;
        } else {
            std::fprintf(stderr, "ox %s: unexpected argument '%s'\n", command, a);
            return false;
        }
    }
    if (o->system == nullptr) {
        std::fprintf(stderr, "usage: ox %s [OPTIONS] SYSTEM [INPUT] (ox %s --help)\n", command, command);
        return false;
    }
    return true;
}

int run(int argc, char **argv, bool inverse) {
    const char *command = inverse ? "unproject" : "project";
    Options o;
    o.precision = inverse ? 9 : 4;
    if (!parse_options(command, argc, argv, inverse, &o)) return kUsage;
    ox_object *pcs = load_projcs(command, o.system);
    if (pcs == nullptr || !ox_projcs_p(pcs)) return kUsage;  // only a projected system reaches the drivers

    // A latitude beyond a pole, in the geographic system's angular unit (the
    // series projections convert every point, even one far outside their
    // domain, so the result is checked).
    const double quarter = 1.5707963267948966 / ox_unit_factor(ox_geogcs_unit(ox_projcs_geogcs(pcs)));
    PointJob job;
    job.command = command;
    job.convert = [&](PointBatch &b) {
        if (inverse)
            ox_proj_to_geog_center(pcs, b.n, b.values, o.center);
        else
            ox_geog_to_proj(pcs, b.n, b.values);
        for (int32_t i = 0; i < b.n; ++i) {
            const double x = b.values[2 * i], y = b.values[2 * i + 1];
            if (!std::isfinite(x) || !std::isfinite(y))
                b.failure[i] = "not converted (no result)";
            else if (inverse && std::fabs(y) > quarter * (1 + 1e-12))
                b.failure[i] = "not converted (a latitude beyond the pole: the point lies outside the projection)";
        }
    };
    job.write = [&](std::FILE *out, const double *v) {
        std::fprintf(out, "%.*f %.*f", o.precision, v[0], o.precision, v[1]);
    };
    const int status = run_point_lines(job, o.input, o.output);
    ox_projcs_del(pcs);
    return status;
}

}  // namespace

int cmd_project(int argc, char **argv) { return run(argc, argv, false); }
int cmd_unproject(int argc, char **argv) { return run(argc, argv, true); }

}  // namespace oxtool
