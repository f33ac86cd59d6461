// Horizon routines: the boundary, in geographic coordinates (radians), of
// the region that a projection can represent.
#include <cmath>

#include "projection/ox_projections.h"

namespace ox {

namespace {
constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;

// Writes the closed boundary of the band [lon0 - dlon, lon0 + dlon] x
// [-lat, lat], corners included, with `per_edge` vertices per edge.
int32_t band(double lon0, double dlon, double lat, int32_t per_edge, int32_t max, double *v) {
    const int32_t total = 4 * per_edge + 1;
    if (v == nullptr || max <= 0) return total;
    int32_t k = 0;
    auto put = [&](double x, double y) {
        if (k < max) {
            v[2 * k] = x;
            v[2 * k + 1] = y;
        }
        ++k;
    };
    const double w = lon0 - dlon, e = lon0 + dlon;
    for (int32_t i = 0; i < per_edge; ++i) put(w, -lat + 2.0 * lat * i / per_edge);      // west edge, north
    for (int32_t i = 0; i < per_edge; ++i) put(w + (e - w) * i / per_edge, lat);         // north edge, east
    for (int32_t i = 0; i < per_edge; ++i) put(e, lat - 2.0 * lat * i / per_edge);       // east edge, south
    for (int32_t i = 0; i < per_edge; ++i) put(e - (e - w) * i / per_edge, -lat);        // south edge, west
    put(w, -lat);                                                                         // closed
    return total;
}
}  // namespace

OX_HORIZON_ROUTINE(horizon_world) {
    (void)spheroid;
    const double lon0 = parameters ? parameters[2] : 0.0;
    return band(std::isfinite(lon0) ? lon0 : 0.0, kPi, kHalfPi, 1, max_vertices, vertices);
}

}  // namespace ox
