// Fuzz target: the GEOREF and MGRS decoders (both letterings, corner and
// centre) on three geographic systems (WGS 84, NAD 1927 with the older MGRS
// lettering, a sphere in grads), the text also split in two references;
// whatever is read must be a finite position on the globe, and an MGRS
// position must encode again.  The first 16 bytes, taken as two doubles,
// also go through the encoders and the geodesic problems.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "ox.h"

namespace {

ox_object *system_of(int which) {
    static ox_object *systems[3] = {
        ox_factory_geogcs(4326),
        ox_factory_geogcs(4267),
        ox_geogcs_from_string("GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\",6371000.0,0.0]],PRIMEM[\"Paris\",2.33722917],"
                              "UNIT[\"Grad\",0.01570796326794897]]"),
    };
    return systems[which];
}

// Degrees per unit of the three systems (the third in grads).
constexpr double kHalfTurn[3] = {180.0, 180.0, 200.0};

// A position read: NaN in both coordinates, or finite and on the globe
// within `slack` degrees (GEOREF does not bound the minutes: 99.99... of
// them past the last degree reach 1.67 degrees beyond the edges).
void check_position(const double *pt, int which, double slack) {
    if (std::isnan(pt[0]) && std::isnan(pt[1])) return;
    if (!std::isfinite(pt[0]) || !std::isfinite(pt[1])) __builtin_trap();
    const double unit = kHalfTurn[which] / 180.0;
    if (std::fabs(pt[1]) > (90.0 + slack) * unit || std::fabs(pt[0]) > (180.0 + slack) * unit) __builtin_trap();
}

void decode_all(char *text, int which) {
    ox_object *gcs = system_of(which);
    char *refs[1] = {text};
    double pt[2];
    const int32_t georef = ox_georef_to_geog(gcs, 1, refs, pt);
    if (georef != (std::isnan(pt[0]) ? 0 : 1)) __builtin_trap();
    check_position(pt, which, 1.67);
    for (int mode : {0, OX_MGRS_CENTER, OX_MGRS_LETTERING_CURRENT, OX_MGRS_LETTERING_OLDER | OX_MGRS_CENTER}) {
        const int32_t got = ox_mgrs_to_geog_extended(gcs, 1, refs, mode, pt);
        if (got != (std::isnan(pt[0]) ? 0 : 1)) __builtin_trap();
        check_position(pt, which, 1e-9);
        if (got == 1) {
            char out[OX_MGRS_SIZE];
            char *outs[1] = {out};
            if (ox_geog_to_mgrs_extended(gcs, 1, pt, 5, 0, mode & 0xF, outs) != 1) __builtin_trap();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string text(reinterpret_cast<const char *>(data), size);  // NUL-terminated copy
    const int which = size > 0 ? data[0] % 3 : 0;
    decode_all(text.data(), which);
    // two references in one call, split at the first newline
    const size_t cut = text.find('\n');
    if (cut != std::string::npos) {
        text[cut] = '\0';
        char *refs[2] = {text.data(), text.data() + cut + 1};
        double pts[4];
        ox_mgrs_to_geog(system_of(which), 2, refs, pts);
        ox_georef_to_geog(system_of(which), 2, refs, pts);
    }
    if (size >= 16) {
        double v[2];
        std::memcpy(v, data, sizeof v);
        const int digits = size > 16 ? static_cast<int8_t>(data[16]) : 5;
        char a[OX_MGRS_SIZE], b[OX_GEOREF_SIZE];
        char *ra[1] = {a}, *rb[1] = {b};
        ox_geog_to_mgrs(system_of(which), 1, v, digits, digits & 1, ra);
        ox_geog_to_georef(system_of(which), 1, v, digits, digits & 1, rb);
        if (std::strlen(a) >= OX_MGRS_SIZE || std::strlen(b) >= OX_GEOREF_SIZE) __builtin_trap();
        double s, z1, z2, lon, lat;
        ox_geodesic_distance(6378137.0, 0.0066943799901413165, v[0], v[1], v[1], v[0], &s, &z1, &z2);
        ox_geodesic_coordinate(6378137.0, 0.0066943799901413165, v[0], v[1], v[0] * 1e6, v[1], &lon, &lat);
    }
    return 0;
}
