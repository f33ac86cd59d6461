// Fuzz target: the NTv2 loader.  The input is a ".gsb" file; one that loads
// is then used: points at every sub-grid's corners, centre and edges, just
// outside them and NaN, forward and inverse, through the registry's
// routines.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "ox.h"
#include "transform/ox_gridmethods.h"
#include "transform/ox_gtconstants.h"

namespace {

constexpr double kRadiansPerSecond = 4.84813681109536e-6;

void use(ox::GtConstants *block) {
    const auto *grids = static_cast<const ox::Ntv2Grid *>(block->first);
    const auto *summary = static_cast<const ox::Ntv2Summary *>(block->third);
    std::vector<double> points;
    for (int32_t i = 0; i < summary->count && i < 64; ++i) {
        const ox::Ntv2Grid &g = grids[i];
        const double lats[] = {g.s_lat, g.n_lat, (g.s_lat + g.n_lat) / 2, g.s_lat - 1e-3, g.n_lat + g.lat_inc / 3};
        const double lons[] = {g.e_long, g.w_long, (g.e_long + g.w_long) / 2, g.w_long + 1e-3};
        for (double lat : lats)
            for (double lon : lons) {
                points.push_back(-lon * kRadiansPerSecond);
                points.push_back(lat * kRadiansPerSecond);
            }
    }
    points.push_back(NAN);
    points.push_back(0.5);
    ox_object *method = ox_method_new("NTv2", nullptr, nullptr);
    const double ellipsoid[2] = {6378137.0, 0.0066943799901413165};
    const double values[16] = {};
    const int32_t n = static_cast<int32_t>(points.size() / 2);
    ox_method_forward(method)(ellipsoid, ellipsoid, values, "Dataset_fuzz", n, points.data(), nullptr, block->first,
                              block->second, block->third);
    ox_method_inverse(method)(ellipsoid, ellipsoid, values, "Dataset_fuzz", n, points.data(), nullptr, block->first,
                              block->second, block->third);
    ox_method_del(method);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    std::FILE *f = fmemopen(const_cast<uint8_t *>(data), size, "rb");
    if (f == nullptr) return 0;
    ox::GtConstants *block = ox::gt_new();
    if (ox::ntv2_load_stream(f, block) != 0) use(block);
    ox::gt_delete(block);
    std::fclose(f);
    return 0;
}
