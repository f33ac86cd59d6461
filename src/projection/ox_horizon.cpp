// The horizon helpers that the projections share, and the world horizon.
#include "projection/ox_horizon.h"

#include <cmath>
#include <cstring>

#include "projection/ox_math.h"

namespace ox {

namespace {
// Vertices per edge: enough for the projected boundary to follow the curves
// of the parallels and meridians it is made of.
constexpr int32_t kPerEdge = 32;
}  // namespace

double horizon_center(const double parameters[OX_PARAMETER_SLOTS], double ParameterValues::*longitude) {
    if (parameters == nullptr) return 0.0;
    ParameterValues p;
    std::memcpy(&p, parameters, sizeof p);
    const double lon0 = p.*longitude;
    return std::isfinite(lon0) ? lon0 : 0.0;
}

double horizon_longitude(double lon0, double offset) {
    double lon = lon0 + offset;
    const double inward = offset > 0.0 ? -HUGE_VAL : HUGE_VAL;
    for (int i = 0; i < 4 && std::fabs(lon - lon0) > std::fabs(offset); ++i) lon = std::nextafter(lon, inward);
    return lon;
}

int32_t horizon_band(double lon0, double half_width, double half_height, int32_t max_vertices, double *vertices) {
    const int32_t total = 4 * kPerEdge + 1;
    if (vertices == nullptr || max_vertices <= 0) return total;
    int32_t k = 0;
    auto put = [&](double x, double y) {
        if (k < max_vertices) {
            vertices[2 * k] = x;
            vertices[2 * k + 1] = y;
        }
        ++k;
    };
    const double lat = half_height;
    const double w = horizon_longitude(lon0, -half_width), e = horizon_longitude(lon0, half_width);
    for (int32_t i = 0; i < kPerEdge; ++i) put(w, -lat + 2.0 * lat * i / kPerEdge);  // west edge, north
    for (int32_t i = 0; i < kPerEdge; ++i) put(w + (e - w) * i / kPerEdge, lat);     // north edge, east
    for (int32_t i = 0; i < kPerEdge; ++i) put(e, lat - 2.0 * lat * i / kPerEdge);   // east edge, south
    for (int32_t i = 0; i < kPerEdge; ++i) put(e - (e - w) * i / kPerEdge, -lat);    // south edge, west
    put(w, -lat);                                                                     // closed
    return total;
}

OX_HORIZON_ROUTINE(horizon_world) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kPi, kHalfPi, max_vertices, vertices);
}

}  // namespace ox
