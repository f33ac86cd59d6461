// Horizon routines: the closed boundary, in geographic coordinates
// (radians), of the region that a projection represents, and the same
// boundary projected (the projected horizons are instances of
// horizon_projected in ox_projections.h).
#include <cmath>

#include "projection/ox_projections.h"

namespace ox {

namespace {
constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kDegree = 0.017453292519943295;

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

// Vertices per edge: enough for the projected boundary to follow the curves
// of the parallels and meridians it is made of.
constexpr int32_t kPerEdge = 32;

double central_meridian(const double *parameters) {
    const double lon0 = parameters ? parameters[2] : 0.0;
    return std::isfinite(lon0) ? lon0 : 0.0;
}
}  // namespace

OX_HORIZON_ROUTINE(horizon_world) {
    (void)spheroid;
    return band(central_meridian(parameters), kPi, kHalfPi, kPerEdge, max_vertices, vertices);
}

// Mercator: the whole longitude range, latitudes up to the parallel at which
// the map is as high as it is wide (atan(sinh(pi)), 85.0511287798066 degrees).
OX_HORIZON_ROUTINE(horizon_mercator) {
    (void)spheroid;
    return band(central_meridian(parameters), kPi, 1.4844222297453324, kPerEdge, max_vertices, vertices);
}

// Transverse Mercator by the power series in the longitude difference: the
// band of 10 degrees either side of the central meridian, pole to pole, where
// the series stays within a few centimetres of the exact projection.
OX_HORIZON_ROUTINE(horizon_transverse_mercator) {
    (void)spheroid;
    return band(central_meridian(parameters), 10.0 * kDegree, kHalfPi, kPerEdge, max_vertices, vertices);
}

// Transverse Mercator by Krueger's series: 40 degrees either side of the
// central meridian, where it is accurate to nanometres.
OX_HORIZON_ROUTINE(horizon_transverse_mercator_complex) {
    (void)spheroid;
    return band(central_meridian(parameters), 40.0 * kDegree, kHalfPi, kPerEdge, max_vertices, vertices);
}

}  // namespace ox
