// "Fuller" and "Cube": every point of the sphere has one place on the map
// and comes back from it, every point of the net comes from one point of
// the sphere, gaps and the space beyond the net are refused; Fuller's
// icosahedron is the published one and his faces keep their edges true and
// evenly divided; the cube's faces are gnomonic; bad input is refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "projection/ox_projlist.h"
#include "projection_support.h"

namespace {

using namespace oxtest;

struct Map {
    const char *projection;
    Params params;
    double a, rf;
};
const Map kMaps[] = {
    {"Fuller", {{"False_Easting", 0}, {"False_Northing", 0}, {"Option", 0}}, 6371000, 0},
    {"Fuller", {{"False_Easting", 250000}, {"False_Northing", -1e6}, {"Option", 1}}, kA, kRf},
    {"Cube", {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", 0}, {"Option", 0}}, 6371000, 0},
    {"Cube", {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", -123.5}, {"Option", 1}}, kA, kRf},
    {"Cube", {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", 179}, {"Option", 0}}, kA, kRf},
};

void unit_vector(double lon_deg, double lat_deg, double v[3]) {
    const double lon = lon_deg * kDeg, lat = lat_deg * kDeg;
    v[0] = std::cos(lat) * std::cos(lon);
    v[1] = std::cos(lat) * std::sin(lon);
    v[2] = std::sin(lat);
}
// Angle between two points given in degrees, radians.
double angle(double lon1, double lat1, double lon2, double lat2) {
    double a[3], b[3];
    unit_vector(lon1, lat1, a);
    unit_vector(lon2, lat2, b);
    const double c[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    return std::atan2(std::sqrt(c[0] * c[0] + c[1] * c[1] + c[2] * c[2]), a[0] * b[0] + a[1] * b[1] + a[2] * b[2]);
}

std::vector<double> ring_of(const ox_object *pcs, int32_t kind, int32_t ring = 0) {
    ox_horizon *h = ox_generate_horizon(pcs, kind);
    std::vector<double> r(2 * static_cast<size_t>(ox_horizon_ring_size(h, ring)));
    ox_horizon_ring(h, ring, static_cast<int32_t>(r.size() / 2), r.data());
    ox_horizon_del(h);
    return r;
}

// The sphere at every half degree, the poles and the antimeridian included,
// and the face edges of the net (the geographic raster horizon: points on
// the edges and the vertices) with points a hair to either side of them.
std::vector<double> globe(const ox_object *pcs) {
    std::vector<double> p;
    for (int i = -360; i <= 360; ++i)
        for (int j = -180; j <= 180; ++j) p.insert(p.end(), {i * 0.5, j * 0.5});
    ox_horizon *h = ox_generate_horizon(pcs, OX_HORIZON_GEOGRAPHIC_RASTER);
    for (int32_t r = 0; r < ox_horizon_ring_count(h); ++r) {
        std::vector<double> ring(2 * static_cast<size_t>(ox_horizon_ring_size(h, r)));
        ox_horizon_ring(h, r, static_cast<int32_t>(ring.size() / 2), ring.data());
        for (size_t k = 0; k < ring.size(); k += 2)
            for (double d : {0.0, 1e-9, -1e-9}) p.insert(p.end(), {ring[k] + d, ring[k + 1] + d});
    }
    ox_horizon_del(h);
    return p;
}

TEST(Polyhedral, EveryPointOfTheSphereComesBackFromTheMap) {
    for (const Map &m : kMaps) {
        SCOPED_TRACE(projcs_text(m.projection, m.a, m.rf, m.params));
        const Owned pcs = make_projcs(m.projection, m.params, m.a, m.rf);
        const std::vector<double> in = globe(pcs.get());
        for (int level : loop_levels()) {
            AtLevel at(level);
            std::vector<double> p = in;
            EXPECT_EQ(forward(pcs.get(), p), static_cast<int32_t>(p.size() / 2));
            EXPECT_EQ(inverse(pcs.get(), p), static_cast<int32_t>(p.size() / 2));
            double worst = 0.0;
            for (size_t i = 0; i < p.size(); i += 2)
                worst = std::max(worst, angle(in[i], std::clamp(in[i + 1], -90.0, 90.0), p[i], p[i + 1]));
            EXPECT_LE(worst / kDeg, 1e-11) << "level " << level;
        }
    }
}

// Point in polygon (even-odd) and the distance to the polygon's sides.
bool inside(const std::vector<double> &r, double x, double y, double &edge) {
    bool in = false;
    edge = HUGE_VAL;
    for (size_t i = 0; i + 3 < r.size(); i += 2) {
        const double x1 = r[i], y1 = r[i + 1], x2 = r[i + 2], y2 = r[i + 3];
        if ((y1 > y) != (y2 > y) && x < x1 + (y - y1) * (x2 - x1) / (y2 - y1)) in = !in;
        const double dx = x2 - x1, dy = y2 - y1, len2 = dx * dx + dy * dy;
        const double t = std::clamp(((x - x1) * dx + (y - y1) * dy) / len2, 0.0, 1.0);
        edge = std::min(edge, std::hypot(x - x1 - t * dx, y - y1 - t * dy));
    }
    return in;
}

TEST(Polyhedral, EveryPointOfTheNetComesFromOnePointAndGapsAreRefused) {
    for (const Map &m : kMaps) {
        SCOPED_TRACE(projcs_text(m.projection, m.a, m.rf, m.params));
        const Owned pcs = make_projcs(m.projection, m.params, m.a, m.rf);
        const std::vector<double> outline = ring_of(pcs.get(), OX_HORIZON_PROJECTED);
        double e[4];
        ox_horizon *h = ox_generate_horizon(pcs.get(), OX_HORIZON_PROJECTED);
        ox_horizon_extent(h, e);
        ox_horizon_del(h);
        // A grid over and around the net, off the lattice of the faces' edges.
        std::vector<double> q;
        std::vector<bool> in;
        const double w = e[2] - e[0], ht = e[3] - e[1];
        for (int i = 0; i <= 400; ++i)
            for (int j = 0; j <= 300; ++j) {
                const double x = e[0] - 0.02 * w + 1.04 * w * (i + 0.3183) / 400;
                const double y = e[1] - 0.02 * ht + 1.04 * ht * (j + 0.2718) / 300;
                double edge;
                const bool is_in = inside(outline, x, y, edge);
                if (edge < 1e-7 * w) continue;
                q.insert(q.end(), {x, y});
                in.push_back(is_in);
            }
        std::vector<double> g = q;
        inverse(pcs.get(), g);
        std::vector<double> back = g;
        forward(pcs.get(), back);
        int inside_points = 0;
        for (size_t k = 0; k < in.size(); ++k) {
            const double *gk = &g[2 * k], *bk = &back[2 * k], *qk = &q[2 * k];
            if (in[k]) {
                ++inside_points;
                ASSERT_TRUE(std::isfinite(gk[0]) && std::isfinite(gk[1])) << qk[0] << " " << qk[1];
                EXPECT_LE(std::hypot(bk[0] - qk[0], bk[1] - qk[1]), 1e-6) << qk[0] << " " << qk[1];
            } else {
                EXPECT_TRUE(is_failure(gk[0]) && is_failure(gk[1])) << qk[0] << " " << qk[1];
            }
        }
        EXPECT_GT(inside_points, 40000);
    }
}

// Fuller's table of the icosahedron's vertices (degrees east, north; Gray
// 1995, Table 1, after Fuller).
const double kFullerVertices[12][2] = {
    {10.536199, 64.700000},   {-5.245390, 2.300882},    {58.157706, 10.447378},  {122.300000, 39.100000},
    {-143.478490, 50.103201}, {-67.132330, 23.717925},  {36.521478, -50.103200}, {112.867670, -23.717930},
    {174.754600, -2.300882},  {-121.842300, -10.447380}, {-57.700000, -39.100000}, {-169.463800, -64.700000},
};

TEST(Polyhedral, FullersIcosahedronAndFaces) {
    const Owned pcs = make_projcs("Fuller", {{"False_Easting", 0}, {"False_Northing", 0}, {"Option", 1}}, 6371000, 0);
    ox_horizon *geo = ox_generate_horizon(pcs.get(), OX_HORIZON_GEOGRAPHIC_RASTER);
    ox_horizon *xy = ox_generate_horizon(pcs.get(), OX_HORIZON_PROJECTED_RASTER);
    ASSERT_EQ(ox_horizon_ring_count(geo), 20);
    const double edge = std::atan(2.0);  // the icosahedron's edge, radians
    std::vector<int> seen(12, 0);
    for (int32_t f = 0; f < 20; ++f) {
        std::vector<double> g(2 * 97), p(2 * 97);
        ASSERT_EQ(ox_horizon_ring(geo, f, 97, g.data()), 97);
        ASSERT_EQ(ox_horizon_ring(xy, f, 97, p.data()), 97);
        // The corners are Fuller's vertices (his table has 6 decimals and is
        // a regular icosahedron to 4e-5 degrees).
        for (int corner = 0; corner < 3; ++corner) {
            const double lon = g[2 * 32 * corner], lat = g[2 * 32 * corner + 1];
            int nearest = 0;
            for (int v = 1; v < 12; ++v)
                if (angle(lon, lat, kFullerVertices[v][0], kFullerVertices[v][1]) <
                    angle(lon, lat, kFullerVertices[nearest][0], kFullerVertices[nearest][1]))
                    nearest = v;
            EXPECT_LE(angle(lon, lat, kFullerVertices[nearest][0], kFullerVertices[nearest][1]) / kDeg, 4e-5);
            ++seen[nearest];
        }
        // Every edge is a great-circle arc of atan 2, true to scale on the map
        // and evenly divided: the evenly spaced points of the plane edge
        // unproject to evenly spaced points of the arc.
        for (int i = 0; i < 96; ++i) {
            EXPECT_NEAR(angle(g[2 * i], g[2 * i + 1], g[2 * i + 2], g[2 * i + 3]), edge / 32, 1e-13);
            EXPECT_NEAR(std::hypot(p[2 * i + 2] - p[2 * i], p[2 * i + 3] - p[2 * i + 1]), 6371000 * edge / 32, 1e-6);
        }
        // The face's centre goes to the centre of its triangle.
        double c[3] = {0, 0, 0}, v[3];
        for (int corner = 0; corner < 3; ++corner) {
            unit_vector(g[2 * 32 * corner], g[2 * 32 * corner + 1], v);
            for (int k = 0; k < 3; ++k) c[k] += v[k];
        }
        std::vector<double> centre = {std::atan2(c[1], c[0]) / kDeg,
                                      std::atan2(c[2], std::hypot(c[0], c[1])) / kDeg};
        EXPECT_EQ(forward(pcs.get(), centre), 1);
        EXPECT_NEAR(centre[0], (p[0] + p[64] + p[128]) / 3, 1e-6);
        EXPECT_NEAR(centre[1], (p[1] + p[65] + p[129]) / 3, 1e-6);
    }
    for (int v = 0; v < 12; ++v) EXPECT_EQ(seen[v], 5) << "vertex " << v + 1;  // five faces meet at each
    ox_horizon_del(geo);
    ox_horizon_del(xy);
}

TEST(Polyhedral, CubeFacesAreGnomonic) {
    const double a = 6371000, cm = 40;
    for (double option : {0.0, 1.0}) {
        const Owned pcs = make_projcs(
            "Cube", {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", cm}, {"Option", option}}, a, 0);
        // The front face: centre at the origin, its corner where the cube's
        // vertex is, its edge's midpoint 45 degrees from the centre.
        const double corner = std::atan(1.0 / std::sqrt(2.0)) / kDeg;
        std::vector<double> p = {cm, 0, cm + 45, corner, cm + 45, 0, cm, 45};
        forward(pcs.get(), p);
        const std::vector<double> expected = {0, 0, a, a, a, 0, 0, a};
        for (size_t i = 0; i < p.size(); ++i) EXPECT_NEAR(p[i], expected[i], 1e-6) << i;
        // Great circles are straight within a face: points of the great
        // circle through two points of the east face stay on their line.
        double u[3], w[3];
        unit_vector(cm + 80, 20, u);
        unit_vector(cm + 110, -30, w);
        std::vector<double> line;
        for (double t = 0; t <= 1.0; t += 0.125) {
            double s[3];
            for (int k = 0; k < 3; ++k) s[k] = (1 - t) * u[k] + t * w[k];
            line.insert(line.end(), {std::atan2(s[1], s[0]) / kDeg, std::atan2(s[2], std::hypot(s[0], s[1])) / kDeg});
        }
        forward(pcs.get(), line);
        const size_t last = line.size() - 2;
        for (size_t i = 0; i < line.size(); i += 2) {
            const double cross = (line[last] - line[0]) * (line[i + 1] - line[1]) -
                                 (line[last + 1] - line[1]) * (line[i] - line[0]);
            EXPECT_NEAR(cross / std::hypot(line[last] - line[0], line[last + 1] - line[1]), 0.0, 1e-6);
        }
    }
}

TEST(Polyhedral, BadInputIsRefused) {
    for (const Map &m : kMaps) {
        SCOPED_TRACE(projcs_text(m.projection, m.a, m.rf, m.params));
        const Owned pcs = make_projcs(m.projection, m.params, m.a, m.rf);
        // Non-finite coordinates fail; longitudes of any size are reduced;
        // latitudes beyond a pole, infinite ones too, are the pole.
        std::vector<double> p = {kNaN, 10, 10, kNaN, kInf, 0, 1e300, 10, -1e300, -95, 180, 90, -180, -90, 0, -kInf};
        EXPECT_EQ(forward(pcs.get(), p), 5);
        for (int i = 0; i < 6; ++i) EXPECT_TRUE(is_failure(p[i]));
        for (size_t i = 6; i < p.size(); ++i) EXPECT_TRUE(std::isfinite(p[i]));
        std::vector<double> q = {kNaN, 0, 0, kInf, 1e300, 0, -1e300, 1e300, 1e20, 1e20};
        EXPECT_EQ(inverse(pcs.get(), q), 0);
        for (double v : q) EXPECT_TRUE(is_failure(v));
    }
    // An Option outside the documented set refuses every point and has no
    // horizon; so does a central meridian that is not finite.
    for (const char *projection : {"Fuller", "Cube"}) {
        const ox::ProjRow &row = *ox::projlist_find_by_name(projection);
        for (double option : {0.5, 2.0, -1.0, kNaN, kInf, 1e300}) {
            double spheroid[2] = {6371000, 0}, parameters[16] = {};
            parameters[15] = option;
            for (auto routine : {row.forward, row.inverse}) {
                double points[4] = {0.1, 0.2, 0.3, 0.4};
                EXPECT_EQ(routine(spheroid, parameters, 2, points, nullptr, nullptr), 0) << option;
                for (double v : points) EXPECT_TRUE(is_failure(v));
            }
            for (auto horizon : {row.horizon, row.horizon_pcs, row.horizon_gcs_raster, row.horizon_pcs_raster})
                EXPECT_EQ(horizon(spheroid, parameters, 0, nullptr), 0) << option;
        }
        const Owned pcs = make_projcs(projection, {{"False_Easting", 0}, {"False_Northing", 0}, {"Option", 3}});
        EXPECT_EQ(ox_generate_horizon(pcs.get(), OX_HORIZON_GEOGRAPHIC), nullptr);
        EXPECT_EQ(ox_generate_horizon(pcs.get(), OX_HORIZON_PROJECTED_RASTER), nullptr);
        // Null spheroid or parameters: nothing.
        double spheroid[2] = {6371000, 0}, parameters[16] = {};
        EXPECT_EQ(row.horizon(nullptr, parameters, 0, nullptr), 0);
        EXPECT_EQ(row.horizon_pcs(spheroid, nullptr, 0, nullptr), 0);
    }
    double spheroid[2] = {6371000, 0}, parameters[16] = {};
    parameters[2] = kNaN;
    const ox::ProjRow &cube = *ox::projlist_find_by_name("Cube");
    double points[2] = {0.1, 0.2};
    EXPECT_EQ(cube.forward(spheroid, parameters, 1, points, nullptr, nullptr), 0);
    EXPECT_EQ(cube.horizon(spheroid, parameters, 0, nullptr), 0);
}

}  // namespace
