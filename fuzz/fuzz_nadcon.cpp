// Fuzz target: the NADCON/HARN loader.  The input is a ".los" and a ".las"
// file: a 4-byte little-endian length of the ".los" part, then the two
// parts (fewer than 4 bytes: the whole input serves as both).  A pair that
// loads is then used: points at the grid's corners, centre, edges and
// outside it, NaN, forward and inverse, through the registry's routines.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "ox.h"
#include "transform/ox_gridmethods.h"
#include "transform/ox_gtconstants.h"

namespace {

std::FILE *stream(const uint8_t *data, size_t size) {
    // fmemopen refuses an empty buffer: a one-byte stand-in that is never read.
    static char empty[1];
    return size == 0 ? fmemopen(empty, 1, "rb") : fmemopen(const_cast<uint8_t *>(data), size, "rb");
}

void use(ox::GtConstants *block) {
    const auto *extent = static_cast<const double *>(block->third);
    const double xmin = extent[0], ymin = extent[1], xmax = extent[2], ymax = extent[3];
    const double lons[] = {xmin, xmax, (xmin + xmax) / 2, xmin + 1e-9, xmax - 1e-9, xmin - 1, NAN, 170.0};
    const double lats[] = {ymin, ymax, (ymin + ymax) / 2, ymin + 1e-9, ymax - 1e-9, -ymin, NAN};
    double points[2 * 8 * 7];
    int n = 0;
    for (double lon : lons)
        for (double lat : lats) {
            points[2 * n] = lon * 0.017453292519943295;
            points[2 * n + 1] = lat * 0.017453292519943295;
            ++n;
        }
    ox_object *method = ox_method_new("NADCON", nullptr, nullptr);
    const double ellipsoid[2] = {6378137.0, 0.0066943799901413165};
    const double values[16] = {};
    ox_method_forward(method)(ellipsoid, ellipsoid, values, "Dataset_fuzz", n, points, nullptr, block->first,
                              block->second, block->third);
    ox_method_inverse(method)(ellipsoid, ellipsoid, values, "Dataset_fuzz", n, points, nullptr, block->first,
                              block->second, block->third);
    ox_method_del(method);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const uint8_t *los = data, *las = data;
    size_t los_size = size, las_size = size;
    if (size >= 4) {
        const uint32_t split = static_cast<uint32_t>(data[0]) | static_cast<uint32_t>(data[1]) << 8 |
                               static_cast<uint32_t>(data[2]) << 16 | static_cast<uint32_t>(data[3]) << 24;
        los = data + 4;
        los_size = split < size - 4 ? split : size - 4;
        las = los + los_size;
        las_size = size - 4 - los_size;
    }
    std::FILE *a = stream(los, los_size), *b = stream(las, las_size);
    ox::GtConstants *block = ox::gt_new();
    if (a != nullptr && b != nullptr && ox::nadcon_load_streams(a, b, block) != 0) use(block);
    ox::gt_delete(block);
    if (a != nullptr) std::fclose(a);
    if (b != nullptr) std::fclose(b);
    return 0;
}
