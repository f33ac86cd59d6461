// Subcommands that convert coordinates through a projected system: project
// (geographic to projected) and unproject (projected to geographic).
#include <strings.h>

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"
#include "ox.h"

namespace oxtool {

ox_object *load_projcs(const char *arg) {
    if (arg == nullptr) return nullptr;
    const char *p = arg;
    while (std::isspace(static_cast<unsigned char>(*p))) ++p;
    if (strncasecmp(p, "PROJCS", 6) == 0) return ox_projcs_from_string(arg);
    if (ox_object *pcs = catalogue_projcs(arg)) return pcs;
    static char text[1 << 20];
    if (!read_text(arg, text, sizeof text)) return nullptr;
    return ox_projcs_from_string(text);
}

namespace {

constexpr int kBatch = 4096;    // pairs converted per call
constexpr int kMaxToken = 128;  // longer tokens are not numbers

// Reads the next whitespace-separated token of `in` into `token` (a token
// too long for it is read to its end and returned truncated, flagged by
// `overlong`); false at the end of the input.
bool next_token(FILE *in, char (&token)[kMaxToken], bool *overlong) {
    int c;
    do {
        c = std::getc(in);
    } while (c != EOF && std::isspace(c));
    if (c == EOF) return false;
    size_t len = 0;
    *overlong = false;
    while (c != EOF && !std::isspace(c)) {
        if (len + 1 < sizeof token)
            token[len++] = static_cast<char>(c);
        else
            *overlong = true;
        c = std::getc(in);
    }
    token[len] = '\0';
    return true;
}

// The value of a token, or NaN (with a message) when it is not a number.
double parse_value(const char *command, const char *token, bool overlong, bool *bad) {
    char *end = nullptr;
    errno = 0;
    const double v = std::strtod(token, &end);
    if (overlong || end == token || *end != '\0') {
        std::fprintf(stderr, "ox %s: not a number: '%s%s'\n", command, token, overlong ? "..." : "");
        *bad = true;
        return std::nan("");
    }
    return v;
}

struct Options {
    int precision;
    double center = 0.0;
    const char *system = nullptr;
};

// Parses the arguments; false (after a message) on a usage error.
bool parse_options(const char *command, int argc, char **argv, bool inverse, Options *o) {
    for (int i = 1; i < argc; ++i) {
        const char *a = argv[i];
        if (std::strcmp(a, "--precision") == 0 || (inverse && std::strcmp(a, "--center") == 0)) {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "ox %s: %s needs a value\n", command, a);
                return false;
            }
            const char *v = argv[++i];
            char *end = nullptr;
            if (std::strcmp(a, "--precision") == 0) {
                const long p = std::strtol(v, &end, 10);
                if (end == v || *end != '\0' || p < 0 || p > 17) {
                    std::fprintf(stderr, "ox %s: --precision takes a whole number from 0 to 17\n", command);
                    return false;
                }
                o->precision = static_cast<int>(p);
            } else {
                o->center = std::strtod(v, &end);
                if (end == v || *end != '\0' || !std::isfinite(o->center)) {
                    std::fprintf(stderr, "ox %s: --center takes a longitude\n", command);
                    return false;
                }
            }
        } else if (o->system == nullptr) {
            o->system = a;
        } else {
            std::fprintf(stderr, "ox %s: unexpected argument '%s'\n", command, a);
            return false;
        }
    }
    if (o->system == nullptr) {
        std::fprintf(stderr, "usage: ox %s [OPTIONS] SYSTEM < POINTS (ox %s --help)\n", command, command);
        return false;
    }
    return true;
}

// Converts and prints one batch; returns the number of points that failed.
long convert_batch(ox_object *pcs, bool inverse, double center, int precision, double *pts, int count) {
    if (count == 0) return 0;
    if (inverse)
        ox_proj_to_geog_center(pcs, count, pts, center);
    else
        ox_geog_to_proj(pcs, count, pts);
    long failed = 0;
    for (int i = 0; i < count; ++i) {
        const double x = pts[2 * i], y = pts[2 * i + 1];
        if (std::isfinite(x) && std::isfinite(y)) {
            std::printf("%.*f %.*f\n", precision, x, precision, y);
        } else {
            std::puts("nan nan");
            ++failed;
        }
    }
    return failed;
}

int run(int argc, char **argv, bool inverse) {
    const char *command = inverse ? "unproject" : "project";
    Options o;
    o.precision = inverse ? 9 : 4;
    if (!parse_options(command, argc, argv, inverse, &o)) return 2;
    ox_object *pcs = load_projcs(o.system);
    if (pcs == nullptr) {
        std::fprintf(stderr, "ox %s: cannot read a projected system (PROJCS) from '%.200s'\n", command, o.system);
        return 2;
    }
    static double pts[2 * kBatch];
    int count = 0, half = 0;
    long failed = 0;
    bool bad_input = false;
    char token[kMaxToken];
    bool overlong = false;
    while (next_token(stdin, token, &overlong)) {
        pts[2 * count + half] = parse_value(command, token, overlong, &bad_input);
        if (half == 1) {
            if (++count == kBatch) {
                failed += convert_batch(pcs, inverse, o.center, o.precision, pts, count);
                count = 0;
            }
        }
        half ^= 1;
    }
    failed += convert_batch(pcs, inverse, o.center, o.precision, pts, count);
    if (half == 1) {
        std::fprintf(stderr, "ox %s: odd number of values; the last one was ignored\n", command);
        bad_input = true;
    }
    ox_projcs_del(pcs);
    if (failed > 0) std::fprintf(stderr, "ox %s: %ld point(s) could not be converted\n", command, failed);
    return failed > 0 || bad_input ? 1 : 0;
}

}  // namespace

int cmd_project(int argc, char **argv) { return run(argc, argv, false); }
int cmd_unproject(int argc, char **argv) { return run(argc, argv, true); }

}  // namespace oxtool
