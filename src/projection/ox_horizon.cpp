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

int32_t horizon_band(double lon0, double half_width, double half_height, int32_t max_vertices, double *vertices) {
    return horizon_box(lon0, half_width, -half_height, half_height, max_vertices, vertices);
}

int32_t horizon_box(double lon0, double half_width, double south, double north, int32_t max_vertices,
                    double *vertices) {
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
    const double w = lon0 - half_width, e = lon0 + half_width, height = north - south;
    for (int32_t i = 0; i < kPerEdge; ++i) put(w, south + height * i / kPerEdge);  // west edge, north
    for (int32_t i = 0; i < kPerEdge; ++i) put(w + (e - w) * i / kPerEdge, north);  // north edge, east
    for (int32_t i = 0; i < kPerEdge; ++i) put(e, north - height * i / kPerEdge);  // east edge, south
    for (int32_t i = 0; i < kPerEdge; ++i) put(e - (e - w) * i / kPerEdge, south);  // south edge, west
    put(w, south);                                                                  // closed
    return total;
}

int32_t horizon_circle(double lon_c, double lat_c, double radius, int32_t max_vertices, double *vertices) {
    constexpr int32_t kVertices = 4 * kPerEdge;
    if (vertices == nullptr || max_vertices <= 0) return kVertices + 1;
    const double s0 = std::sin(lat_c), c0 = std::cos(lat_c), sr = std::sin(radius), cr = std::cos(radius);
    for (int32_t i = 0; i <= kVertices && i < max_vertices; ++i) {
        // The point at distance `radius` and azimuth alpha from the centre,
        // its longitude within pi of the centre's (a cap about a pole or the
        // antipode crosses the opposite meridian there).
        const double alpha = kTwoPi * (i % kVertices) / kVertices;
        const double sin_lat = s0 * cr + c0 * sr * std::cos(alpha);
        const double dlon = std::atan2(std::sin(alpha) * sr * c0, cr - s0 * sin_lat);
        vertices[2 * i] = lon_c + dlon;
        vertices[2 * i + 1] = std::asin(sin_lat > 1.0 ? 1.0 : (sin_lat < -1.0 ? -1.0 : sin_lat));
    }
    return kVertices + 1;
}

OX_HORIZON_ROUTINE(horizon_world) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kPi, kHalfPi, max_vertices, vertices);
}

// A cap's radius a hair inside the hemisphere, so that every vertex is on
// the visible side after rounding.
constexpr double kHemisphere = kHalfPi - 1e-9;

OX_HORIZON_ROUTINE(horizon_hemisphere) {
    (void)spheroid;
    return horizon_circle(horizon_center(parameters, &ParameterValues::longitude_of_center),
                          horizon_center(parameters, &ParameterValues::latitude_of_center), kHemisphere, max_vertices,
                          vertices);
}

OX_HORIZON_ROUTINE(horizon_stereographic) {
    (void)spheroid;
    return horizon_circle(horizon_center(parameters), horizon_center(parameters, &ParameterValues::latitude_of_origin),
                          kHemisphere, max_vertices, vertices);
}

}  // namespace ox
