// The horizon helpers that the projections share, the world horizon, and the
// public horizon of a projected system (ox_generate_horizon, ox_horizon_*).
#include "projection/ox_horizon.h"

#include <cmath>
#include <cstring>

#include "object/ox_memory.h"
#include "object/ox_utils.h"
#include "projection/ox_math.h"
#include "projection/ox_pcsconstants.h"

namespace ox {

void HorizonWriter::separate() {
    const double nan = failure_nan();
    put(nan, nan);
}

void HorizonWriter::polygon(const double *corners, int32_t n) {
    for (int32_t k = 0; k < n; ++k) {
        const double *a = corners + 2 * k;
        const double *b = corners + 2 * ((k + 1) % n);
        for (int32_t i = 0; i < kHorizonSegments; ++i) {
            const double t = static_cast<double>(i) / kHorizonSegments;
            put(a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t);
        }
    }
    if (n > 0) put(corners[0], corners[1]);
}

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
    return horizon_box(lon0, half_width, -half_height, half_height, max_vertices, vertices);
}

int32_t horizon_box(double lon0, double half_width, double south, double north, int32_t max_vertices,
                    double *vertices) {
    if (half_width > kPi - kAntimeridianInset) half_width = kPi - kAntimeridianInset;
    const double w = lon0 - half_width, e = lon0 + half_width;
    const double corners[8] = {w, south, e, south, e, north, w, north};
    HorizonWriter out(max_vertices, vertices);
    out.polygon(corners, 4);
    return out.count();
}

namespace {

constexpr int32_t kCircleVertices = 4 * kHorizonSegments;
constexpr double kEdge = kPi - kAntimeridianInset;  // the band's meridians about the centre

// The circle of angular radius r about a point of latitude lat_c (sines
// and cosines): the point at azimuth alpha, its longitude relative to the
// centre's in [-pi, pi].
struct Circle {
    double s0, c0, sr, cr;
    Circle(double lat_c, double r) : s0(std::sin(lat_c)), c0(std::cos(lat_c)), sr(std::sin(r)), cr(std::cos(r)) {}
    void point(double alpha, double &dlon, double &lat) const {
        const double sin_lat = s0 * cr + c0 * sr * std::cos(alpha);
        dlon = std::atan2(std::sin(alpha) * sr * c0, cr - s0 * sin_lat);
        lat = std::asin(sin_lat > 1.0 ? 1.0 : (sin_lat < -1.0 ? -1.0 : sin_lat));
    }
    // count points from azimuth a0 towards a1 (a1 excluded), about lon.
    void arc(HorizonWriter &out, double lon, double a0, double a1, int32_t count) const {
        for (int32_t i = 0; i < count; ++i) {
            double dlon, lat;
            point(a0 + (a1 - a0) * i / count, dlon, lat);
            out.put(lon + dlon, lat);
        }
    }
};

void edge(HorizonWriter &out, double lon0, double lat0, double lon1, double lat1) {
    for (int32_t i = 0; i < kHorizonSegments; ++i) {
        const double t = static_cast<double>(i) / kHorizonSegments;
        out.put(lon0 + (lon1 - lon0) * t, lat0 + (lat1 - lat0) * t);
    }
}

}  // namespace

int32_t horizon_circle(double lon_c, double lat_c, double radius, int32_t max_vertices, double *vertices,
                       double reach) {
    HorizonWriter out(max_vertices, vertices);
    if (!(reach < kEdge)) reach = kEdge;
    const double w = lon_c - reach, e = lon_c + reach;
    if (radius <= kHalfPi) {
        const Circle circle(lat_c, radius);
        if (std::fabs(lat_c) + radius < kHalfPi) {
            // A circle: decreasing azimuths run counter-clockwise.
            circle.arc(out, lon_c, 0.0, -kTwoPi, kCircleVertices);
            double dlon, lat;
            circle.point(0.0, dlon, lat);
            out.put(lon_c + dlon, lat);
            return out.count();
        }
        // About a pole: its edge from the meridian opposite the centre round
        // to it again (from azimuth 0 about the north pole, decreasing, which
        // runs east; from pi about the south pole, decreasing, which runs
        // west), closed along the pole.
        const bool north = lat_c > 0.0;
        double dlon, far;
        circle.point(north ? 0.0 : kPi, dlon, far);
        const double first = north ? w : e, last = north ? e : w;
        const double base = north ? 0.0 : kPi;
        if (!north) {
            out.put(w, -kHalfPi);
            out.put(e, -kHalfPi);
        }
        out.put(first, far);
        for (int32_t i = 1; i < kCircleVertices; ++i) {
            double d, lat;
            circle.point(base - kTwoPi * i / kCircleVertices, d, lat);
            // (within reach: the edge's latitude rises towards the opposite
            // meridian, so a point moved onto the last meridian is inside)
            out.put(lon_c + (d > reach ? reach : (d < -reach ? -reach : d)), lat);
        }
        out.put(last, far);
        if (north) {
            out.put(e, kHalfPi);
            out.put(w, kHalfPi);
            out.put(w, far);
        } else {
            out.put(w, -kHalfPi);
        }
        return out.count();
    }
    // All but the small cap of radius rho about the antipode (lon_c + pi,
    // -lat_c).
    const double rho = kPi - radius, lat_a = -lat_c;
    if (std::fabs(lat_a) + rho >= kHalfPi) {
        // The small cap holds a pole (the centre within rho of the other):
        // the band short of the small cap's farthest parallel.
        return lat_a < 0.0 ? horizon_box(lon_c, kPi, lat_a + rho, kHalfPi, max_vertices, vertices)
                           : horizon_box(lon_c, kPi, -kHalfPi, lat_a - rho, max_vertices, vertices);
    }
    // The band with the small cap cut out of its east and west meridians:
    // from the south-west corner east, up the east meridian round the west
    // half of the small cap, west along the north pole, down the west
    // meridian round its east half.
    const Circle small(lat_a, rho);
    edge(out, w, -kHalfPi, e, -kHalfPi);
    edge(out, e, -kHalfPi, e, lat_a - rho);
    small.arc(out, e, kPi, kTwoPi, 2 * kHorizonSegments);  // south, west, north
    edge(out, e, lat_a + rho, e, kHalfPi);
    edge(out, e, kHalfPi, w, kHalfPi);
    edge(out, w, kHalfPi, w, lat_a + rho);
    small.arc(out, w, 0.0, kPi, 2 * kHorizonSegments);  // north, east, south
    edge(out, w, lat_a - rho, w, -kHalfPi);
    out.put(w, -kHalfPi);
    return out.count();
}

OX_HORIZON_ROUTINE(horizon_world) {
    (void)spheroid;
    return horizon_band(horizon_center(parameters), kPi, kHalfPi, max_vertices, vertices);
}

// A cap's radius a little inside the hemisphere (6 m on the Earth), so that
// every vertex is on the visible side and its projection inside the
// outline after rounding (the orthographic's radius is a cos of the margin).
constexpr double kHemisphere = kHalfPi - 1e-6;

OX_HORIZON_ROUTINE(horizon_hemisphere) {
    (void)spheroid;
    return horizon_circle(horizon_center(parameters, &ParameterValues::longitude_of_center),
                          horizon_center(parameters, &ParameterValues::latitude_of_center), kHemisphere, max_vertices,
                          vertices);
}

// The hemisphere about the origin, a degree short of the meridian opposite
// it where the hemisphere holds a pole: the double stereographic's
// conformal sphere turns longitudes by n (up to 0.6 degrees on the Earth).
OX_HORIZON_ROUTINE(horizon_stereographic) {
    (void)spheroid;
    return horizon_circle(horizon_center(parameters), horizon_center(parameters, &ParameterValues::latitude_of_origin),
                          kHemisphere, max_vertices, vertices, kPi - kDegree);
}

}  // namespace ox

// ---------------------------------------------------------------------------
// The horizon of a projected system: one block, the header, the ring starts
// and the vertices in the system's units.
// ---------------------------------------------------------------------------

struct ox_horizon {
    uint32_t type;  // kHorizonTag
    int32_t kind;
    int32_t rings;
    int32_t vertices;
    double extent[4];
    // then int32_t start[rings + 1] (padded to a double), double xy[2 * vertices]
};

namespace {

constexpr uint32_t kHorizonTag = 0x200000u;  // distinct from every object tag
// A horizon routine of a caller's projection may promise any count: beyond
// this many vertices it is refused.
constexpr int32_t kMaxHorizonVertices = 1 << 20;

const ox_horizon *horizon_rec(const ox_horizon *h) { return h != nullptr && h->type == kHorizonTag ? h : nullptr; }
const int32_t *starts(const ox_horizon *h) { return reinterpret_cast<const int32_t *>(h + 1); }
size_t starts_bytes(int32_t rings) {
    const size_t bytes = sizeof(int32_t) * (static_cast<size_t>(rings) + 1);
    return (bytes + sizeof(double) - 1) / sizeof(double) * sizeof(double);
}
const double *xy(const ox_horizon *h) {
    return reinterpret_cast<const double *>(reinterpret_cast<const char *>(h + 1) + starts_bytes(h->rings));
}

ox_horizon_routine routine_of(const ox_object *projection, int32_t kind) {
    switch (kind) {
        case OX_HORIZON_GEOGRAPHIC: return ox_projection_horizon(projection);
        case OX_HORIZON_PROJECTED: return ox_projection_horizon_pcs(projection);
        case OX_HORIZON_GEOGRAPHIC_RASTER: return ox_projection_horizon_gcs_raster(projection);
        case OX_HORIZON_PROJECTED_RASTER: return ox_projection_horizon_pcs_raster(projection);
        default: return nullptr;
    }
}

bool finite_vertex(const double *v) { return std::isfinite(v[0]) && std::isfinite(v[1]); }

}  // namespace

extern "C" {

OX_API ox_horizon *ox_generate_horizon(const ox_object *projcs, int32_t kind) {
    if (!ox_projcs_p(projcs)) return nullptr;
    const ox_horizon_routine routine = routine_of(ox_projcs_projection(projcs), kind);
    if (routine == nullptr) return nullptr;
    ox::ProjSetup s;
    ox::projcs_setup(projcs, &s);
    const int32_t total = routine(s.spheroid, s.parameters, 0, nullptr);
    if (total <= 0 || total > kMaxHorizonVertices) return nullptr;
    double *raw = static_cast<double *>(ox::mem_alloc(static_cast<size_t>(total) * 2 * sizeof(double)));
    if (raw == nullptr) return nullptr;
    const int32_t got = routine(s.spheroid, s.parameters, total, raw);
    const int32_t n = got < total ? (got > 0 ? got : 0) : total;

    // Units: the geographic system's angular unit, or the false origin and
    // the linear unit.
    const bool geographic = kind == OX_HORIZON_GEOGRAPHIC || kind == OX_HORIZON_GEOGRAPHIC_RASTER;
    const double fe = s.parameters[OX_SLOT(false_easting)], fn = s.parameters[OX_SLOT(false_northing)];
    for (int32_t i = 0; i < n; ++i) {
        double *v = raw + 2 * i;
        if (geographic) {
            v[0] /= s.angular_factor;
            v[1] /= s.angular_factor;
        } else {
            v[0] = (v[0] + fe) / s.linear_factor;
            v[1] = (v[1] + fn) / s.linear_factor;
        }
    }
    // Rings: the runs of at least two vertices between the separators (a
    // vertex that is not finite).
    int32_t rings = 0, kept = 0;
    for (int32_t i = 0; i < n;) {
        int32_t j = i;
        while (j < n && finite_vertex(raw + 2 * j)) ++j;
        if (j - i >= 2) {
            ++rings;
            kept += j - i;
        }
        i = j + 1;
    }
    if (rings == 0) {
        ox::mem_free(raw);
        return nullptr;
    }
    const size_t bytes = sizeof(ox_horizon) + starts_bytes(rings) + sizeof(double) * 2 * static_cast<size_t>(kept);
    ox_horizon *h = static_cast<ox_horizon *>(ox::mem_alloc(bytes));
    if (h == nullptr) {
        ox::mem_free(raw);
        return nullptr;
    }
    h->type = kHorizonTag;
    h->kind = kind;
    h->rings = rings;
    h->vertices = kept;
    h->extent[0] = h->extent[1] = HUGE_VAL;
    h->extent[2] = h->extent[3] = -HUGE_VAL;
    int32_t *start = reinterpret_cast<int32_t *>(h + 1);
    double *out = const_cast<double *>(xy(h));
    int32_t ring = 0, k = 0;
    for (int32_t i = 0; i < n;) {
        int32_t j = i;
        while (j < n && finite_vertex(raw + 2 * j)) ++j;
        if (j - i >= 2) {
            start[ring++] = k;
            for (int32_t m = i; m < j; ++m, ++k) {
                const double x = raw[2 * m], y = raw[2 * m + 1];
                out[2 * k] = x;
                out[2 * k + 1] = y;
                h->extent[0] = std::fmin(h->extent[0], x);
                h->extent[1] = std::fmin(h->extent[1], y);
                h->extent[2] = std::fmax(h->extent[2], x);
                h->extent[3] = std::fmax(h->extent[3], y);
            }
        }
        i = j + 1;
    }
    start[rings] = k;
    ox::mem_free(raw);
    return h;
}

OX_API void ox_horizon_del(ox_horizon *horizon) {
    if (horizon_rec(horizon) == nullptr) return;
    horizon->type = 0;
    ox::mem_free(horizon);
}

OX_API int32_t ox_horizon_kind(const ox_horizon *horizon) {
    const ox_horizon *h = horizon_rec(horizon);
    return h ? h->kind : -1;
}

OX_API int32_t ox_horizon_ring_count(const ox_horizon *horizon) {
    const ox_horizon *h = horizon_rec(horizon);
    return h ? h->rings : 0;
}

OX_API int32_t ox_horizon_ring_size(const ox_horizon *horizon, int32_t ring) {
    const ox_horizon *h = horizon_rec(horizon);
    if (h == nullptr || ring < 0 || ring >= h->rings) return 0;
    return starts(h)[ring + 1] - starts(h)[ring];
}

OX_API int32_t ox_horizon_ring(const ox_horizon *horizon, int32_t ring, int32_t max_vertices, double *vertices) {
    const int32_t size = ox_horizon_ring_size(horizon, ring);
    if (size == 0 || vertices == nullptr || max_vertices <= 0) return 0;
    const int32_t n = size < max_vertices ? size : max_vertices;
    std::memcpy(vertices, xy(horizon) + 2 * static_cast<size_t>(starts(horizon)[ring]),
                sizeof(double) * 2 * static_cast<size_t>(n));
    return n;
}

OX_API int32_t ox_horizon_extent(const ox_horizon *horizon, double extent[4]) {
    const ox_horizon *h = horizon_rec(horizon);
    if (h == nullptr || extent == nullptr) return 0;
    std::memcpy(extent, h->extent, sizeof h->extent);
    return 1;
}

}  // extern "C"
