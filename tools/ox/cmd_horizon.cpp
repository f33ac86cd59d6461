// The outline of a projected system's map (horizon) as GeoJSON, and the
// summary of a projected system that `ox info` adds.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "commands.h"
#include "ox.h"

namespace oxtool {

namespace {

// A JSON string's characters (names are plain, but a caller's object
// string may hold anything).
void json_text(FILE *out, const char *s) {
    std::fputc('"', out);
    for (; *s != '\0'; ++s) {
        const unsigned char c = static_cast<unsigned char>(*s);
        if (c == '"' || c == '\\')
            std::fprintf(out, "\\%c", c);
        else if (c < 0x20)
            std::fprintf(out, "\\u%04x", c);
        else
            std::fputc(c, out);
    }
    std::fputc('"', out);
}

}  // namespace

int cmd_horizon(int argc, char **argv) {
    bool projected = false, raster = false;
    int precision = -1;
    const char *system = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--projected") == 0) {
            projected = true;
        } else if (std::strcmp(argv[i], "--raster") == 0) {
            raster = true;
        } else if (std::strcmp(argv[i], "--precision") == 0 && i + 1 < argc) {
            char *end = nullptr;
            const long p = std::strtol(argv[++i], &end, 10);
            if (*end != '\0' || p < 0 || p > 17) {
                std::fputs("ox horizon: --precision takes a whole number from 0 to 17\n", stderr);
                return 2;
            }
            precision = static_cast<int>(p);
        } else if (std::strncmp(argv[i], "--", 2) == 0 || system != nullptr) {
            std::fprintf(stderr, "ox horizon: unexpected argument '%.200s'\n", argv[i]);
            return 2;
        } else {
            system = argv[i];
        }
    }
    if (system == nullptr) {
        std::fputs("usage: ox horizon [--projected] [--raster] [--precision N] SYSTEM\n", stderr);
        return 2;
    }
    ox_object *pcs = load_projcs(system);
    if (pcs == nullptr) {
        std::fprintf(stderr, "ox horizon: cannot read a projected system (PROJCS) from '%.200s'\n", system);
        return 2;
    }
    const int32_t kind = (projected ? OX_HORIZON_PROJECTED : OX_HORIZON_GEOGRAPHIC) +
                         (raster ? OX_HORIZON_GEOGRAPHIC_RASTER : 0);
    ox_horizon *h = ox_generate_horizon(pcs, kind);
    if (h == nullptr) {
        std::fprintf(stderr, "ox horizon: the projection has no %s%s horizon\n", raster ? "raster " : "",
                     projected ? "projected" : "geographic");
        ox_projcs_del(pcs);
        return 1;
    }
    if (precision < 0) precision = projected ? 3 : 9;
    char name[OX_NAME_SIZE];
    ox_projcs_name(pcs, name);
    std::fputs("{\"type\":\"FeatureCollection\",\"features\":[", stdout);
    std::vector<double> ring;
    for (int32_t r = 0; r < ox_horizon_ring_count(h); ++r) {
        ring.resize(2 * static_cast<size_t>(ox_horizon_ring_size(h, r)));
        const int32_t n = ox_horizon_ring(h, r, static_cast<int32_t>(ring.size() / 2), ring.data());
        std::printf("%s\n{\"type\":\"Feature\",\"properties\":{\"system\":", r > 0 ? "," : "");
        json_text(stdout, name);
        std::printf(",\"kind\":\"%s\",\"ring\":%d},\"geometry\":{\"type\":\"Polygon\",\"coordinates\":[[",
                    projected ? "projected" : "geographic", static_cast<int>(r));
        for (int32_t i = 0; i < n; ++i)
            std::printf("%s[%.*f,%.*f]", i > 0 ? "," : "", precision, ring[2 * i], precision, ring[2 * i + 1]);
        std::fputs("]]}}", stdout);
    }
    std::fputs("\n]}\n", stdout);
    ox_horizon_del(h);
    ox_projcs_del(pcs);
    return 0;
}

void print_pcs_summary(FILE *out, const ox_object *projcs) {
    ox_pcsinfo info;
    if (ox_pcsinfo_generate(projcs, &info) == 0) return;
    std::fprintf(out, "# projection: %s (%d), %s, %s\n", info.projection, static_cast<int>(info.projection_code),
                 info.family_name, info.preserves_name);
    std::fprintf(out, "# central meridian: %.12g, latitude of origin: %.12g (degrees)\n", info.central_meridian,
                 info.origin_latitude);
    std::fprintf(out, "# extent: %.3f %.3f %.3f %.3f (%s)\n", info.extent[0], info.extent[1], info.extent[2],
                 info.extent[3], info.linear_unit);
    std::fprintf(out, "# geographic extent: %.9g %.9g %.9g %.9g (degrees)\n", info.geographic_extent[0],
                 info.geographic_extent[1], info.geographic_extent[2], info.geographic_extent[3]);
    std::fprintf(out, "# units: %s (%.16g m), %s (%.16g rad)\n", info.linear_unit, info.linear_factor,
                 info.angular_unit, info.angular_factor);
    for (int32_t k = 0; k < info.parameter_count; ++k)
        std::fprintf(out, "# %s: %.16g\n", info.parameter_names[k], info.parameter_values[k]);
}

}  // namespace oxtool
