// Horizons, over every projection of the registry that has routines (so
// that each projection is covered as it lands): the geographic and the
// projected horizon of a system are the same closed, counter-clockwise
// rings; every vertex projects and unprojects; and a point just outside the
// map's edge is refused, or else is a point the map really has there (an
// edge the map goes on beyond, like the Mercator's cut-off or a band where a
// series holds).  Then the public horizon functions on bad arguments.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "projection/ox_horizon.h"
#include "projection/ox_projlist.h"
#include "projection_support.h"

namespace {

using namespace oxtest;

struct System {
    std::string projection;
    double a, rf;
    Params params;
};

// The systems of tests/data/horizon_cases.csv for a projection, or one on
// its default parameters.
std::vector<System> systems_of(const ox::ProjRow &row) {
    static const std::vector<std::vector<std::string>> rows = read_csv("horizon_cases.csv");
    std::vector<System> out;
    for (const auto &f : rows) {
        if (f.size() != 4 || f[0] != row.name) continue;
        System s{f[0], std::stod(f[1]), std::stod(f[2]), {}};
        std::stringstream ps(f[3]);
        std::string kv;
        while (std::getline(ps, kv, ';')) {
            const size_t eq = kv.find('=');
            s.params.emplace_back(kv.substr(0, eq), std::stod(kv.substr(eq + 1)));
        }
        out.push_back(s);
    }
    if (out.empty()) {
        Owned projection(ox_factory_projection(row.code));
        ox_object *defaults[16];
        ox_parameter_projection_defaults(projection.get(), defaults);
        System s{row.name, kA, kRf, {}};
        for (ox_object *p : defaults)
            if (p != nullptr) {
                s.params.emplace_back(name_of(p), ox_parameter_value(p));
                ox_parameter_del(p);
            }
        out.push_back(s);
    }
    return out;
}

using Ring = std::vector<double>;  // x, y pairs

std::vector<Ring> rings(const ox_object *pcs, int32_t kind) {
    std::vector<Ring> out;
    ox_horizon *h = ox_generate_horizon(pcs, kind);
    for (int32_t r = 0; r < ox_horizon_ring_count(h); ++r) {
        Ring ring(2 * static_cast<size_t>(ox_horizon_ring_size(h, r)));
        EXPECT_EQ(ox_horizon_ring(h, r, static_cast<int32_t>(ring.size() / 2), ring.data()),
                  static_cast<int32_t>(ring.size() / 2));
        out.push_back(ring);
    }
    ox_horizon_del(h);
    return out;
}

double signed_area(const Ring &r) {
    double area = 0.0;
    for (size_t i = 0; i + 3 < r.size(); i += 2) area += r[i] * r[i + 3] - r[i + 2] * r[i + 1];
    return area / 2.0;
}

// Checks one system's horizons; counts the points just outside that were
// refused and those tried.
void check_system(const ox::ProjRow &row, const System &s, int &refused, int &tried) {
    SCOPED_TRACE(projcs_text(s.projection, s.a, s.rf, s.params));
    const Owned pcs = make_projcs(s.projection, s.params, s.a, s.rf);
    if (!pcs) return;
    const bool polyhedral = row.family == ox::Family::kPolyhedral;
    const std::vector<Ring> geo = rings(pcs.get(), OX_HORIZON_GEOGRAPHIC);
    const std::vector<Ring> xy = rings(pcs.get(), OX_HORIZON_PROJECTED);
    EXPECT_FALSE(geo.empty());
    EXPECT_EQ(geo.size(), xy.size());
    double extent[4];
    {
        ox_horizon *h = ox_generate_horizon(pcs.get(), OX_HORIZON_PROJECTED);
        EXPECT_EQ(ox_horizon_extent(h, extent), 1);
        ox_horizon_del(h);
    }
    const double size = std::max(extent[2] - extent[0], extent[3] - extent[1]);
    // A series projection may lose a few centimetres at the edge of its band.
    const double tol = 1e-8 * size + 1e-6;  // metres
    for (size_t r = 0; r < std::min(geo.size(), xy.size()); ++r) {
        const Ring &g = geo[r], &p = xy[r];
        ASSERT_EQ(g.size(), p.size());
        const size_t n = p.size() / 2;
        ASSERT_GE(n, 4u);
        EXPECT_EQ(p[0], p[2 * n - 2]);  // closed
        EXPECT_EQ(p[1], p[2 * n - 1]);
        EXPECT_GT(signed_area(p), 0.0) << "counter-clockwise";
        if (!polyhedral) {
            EXPECT_GT(signed_area(g), 0.0) << "counter-clockwise in longitude and latitude";
        }
        // Every vertex projects and unprojects: onto its own vertex and back;
        // on a polyhedral map, whose outline runs along both sides of a cut,
        // back onto the same point of the sphere.
        std::vector<double> f = g, b = p;
        EXPECT_EQ(forward(pcs.get(), f), static_cast<int32_t>(n));
        EXPECT_EQ(inverse(pcs.get(), b), static_cast<int32_t>(n));
        std::vector<double> fb = polyhedral ? f : b;
        if (polyhedral)
            inverse(pcs.get(), fb);
        else
            forward(pcs.get(), fb);
        for (size_t i = 0; i < n; ++i) {
            if (polyhedral) {
                EXPECT_NEAR(b[2 * i], g[2 * i], 1e-9) << "vertex " << i;
                EXPECT_NEAR(b[2 * i + 1], g[2 * i + 1], 1e-9) << "vertex " << i;
                EXPECT_LE(std::hypot(std::remainder(fb[2 * i] - g[2 * i], 360.0) * std::cos(g[2 * i + 1] * kDeg),
                                     fb[2 * i + 1] - g[2 * i + 1]),
                          1e-9)
                    << "vertex " << i;
            } else {
                EXPECT_LE(std::hypot(f[2 * i] - p[2 * i], f[2 * i + 1] - p[2 * i + 1]), tol) << "vertex " << i;
                EXPECT_LE(std::hypot(fb[2 * i] - p[2 * i], fb[2 * i + 1] - p[2 * i + 1]), tol) << "vertex " << i;
            }
        }
        // Just outside the middle of every side.  (Not on the cylinders: they
        // wrap round at the antimeridian, and their inverses take a point
        // beyond a pole line for the pole.)  Where the outline between two
        // vertices is curved (a meridian at the edge of most world maps), the
        // middle of the chord lies inside a convex side, up to 1e-3 of the
        // map's size for 32 segments a side: the step starts from the side
        // itself, the forward of the middle of the geographic segment.
        // (Polyhedral maps have straight sides, and there the geographic
        // middle may fall on the other side of a cut.)
        if (row.family == ox::Family::kCylindrical) continue;
        // The middle of a side: on a polyhedral map the middle of its
        // straight side; elsewhere the image of the middle of the geographic
        // side (a curved outline, like a world map's meridian, bulges out
        // beyond the chord's middle).
        const double step = 1e-6 * size;
        std::vector<double> middles;
        for (size_t i = 0; i + 1 < n; ++i) {
            middles.push_back(0.5 * (g[2 * i] + g[2 * i + 2]));
            middles.push_back(0.5 * (g[2 * i + 1] + g[2 * i + 3]));
        }
        if (!polyhedral) forward(pcs.get(), middles);
        std::vector<double> out;
        for (size_t i = 0; i + 1 < n; ++i) {
            const double dx = p[2 * i + 2] - p[2 * i], dy = p[2 * i + 3] - p[2 * i + 1], len = std::hypot(dx, dy);
            if (len < 1e-6 * size) continue;
            const double nx = dy / len, ny = -dx / len;  // outward: the ring is counter-clockwise
            double mx = 0.5 * (p[2 * i] + p[2 * i + 2]), my = 0.5 * (p[2 * i + 1] + p[2 * i + 3]);
            const bool wraps = std::fabs(g[2 * i + 2] - g[2 * i]) > 180.0;  // (no middle to take)
            if (!polyhedral && !wraps && std::isfinite(middles[2 * i]) && std::isfinite(middles[2 * i + 1])) {
                mx = middles[2 * i];
                my = middles[2 * i + 1];
            }
            out.push_back(mx + step * nx);
            out.push_back(my + step * ny);
        }
        std::vector<double> back = out;
        inverse(pcs.get(), back);
        std::vector<double> again = back;
        forward(pcs.get(), again);
        for (size_t i = 0; i < out.size(); i += 2) {
            ++tried;
            if (is_failure(back[i]) && is_failure(back[i + 1])) {
                ++refused;
                continue;
            }
            const double ex = again[i] - out[i], ey = again[i + 1] - out[i + 1];
            EXPECT_LE(std::hypot(ex, ey), tol) << "outside (" << out[i] << ", " << out[i + 1] << ") gave ("
                                         << back[i] << ", " << back[i + 1] << "), which projects to ("
                                         << again[i] << ", " << again[i + 1] << ")";
        }
    }
    // The raster variants: every face a ring whose vertices unproject onto
    // the geographic ring's and project back onto some face.
    const bool raster = row.horizon_gcs_raster != nullptr;
    EXPECT_EQ(raster, row.horizon_pcs_raster != nullptr);
    EXPECT_EQ(raster, polyhedral);
    const std::vector<Ring> rgeo = rings(pcs.get(), OX_HORIZON_GEOGRAPHIC_RASTER);
    const std::vector<Ring> rxy = rings(pcs.get(), OX_HORIZON_PROJECTED_RASTER);
    EXPECT_EQ(rgeo.empty(), !raster);
    EXPECT_EQ(rgeo.size(), rxy.size());
    for (size_t r = 0; r < std::min(rgeo.size(), rxy.size()); ++r) {
        std::vector<double> b = rxy[r];
        EXPECT_EQ(inverse(pcs.get(), b), static_cast<int32_t>(b.size() / 2));
        EXPECT_GT(signed_area(rxy[r]), 0.0);
        for (size_t i = 0; i < b.size(); ++i) EXPECT_NEAR(b[i], rgeo[r][i], 1e-9);
    }
}

TEST(Horizon, EveryRowsHorizonsProjectUnprojectAndRefuseBeyondAHardEdge) {
    int rows = 0;
    for (const ox::ProjRow *row : ox::projlist_rows()) {
        if (row->forward == ox::proj_unavailable) continue;
        ++rows;
        SCOPED_TRACE(row->name);
        for (const System &s : systems_of(*row)) {
            int refused = 0, tried = 0;
            check_system(*row, s, refused, tried);
            // A polyhedral map ends everywhere at its outline, as does a world
            // map that is not a cylinder.
            if (row->family == ox::Family::kPolyhedral ||
                (row->horizon == ox::horizon_world && row->family != ox::Family::kCylindrical)) {
                EXPECT_EQ(refused, tried);
            }
        }
    }
    EXPECT_GE(rows, 12);
}

TEST(Horizon, PublicFunctionsRefuseWhatIsNotAHorizon) {
    const Owned utm(ox_factory_projcs(32633));
    const Owned geog(ox_factory_geogcs(4326));
    EXPECT_EQ(ox_generate_horizon(nullptr, OX_HORIZON_GEOGRAPHIC), nullptr);
    EXPECT_EQ(ox_generate_horizon(geog.get(), OX_HORIZON_GEOGRAPHIC), nullptr);
    for (int32_t kind : {-1, 4, 1 << 30}) EXPECT_EQ(ox_generate_horizon(utm.get(), kind), nullptr);
    // Only polyhedral maps have raster horizons.
    EXPECT_EQ(ox_generate_horizon(utm.get(), OX_HORIZON_GEOGRAPHIC_RASTER), nullptr);
    EXPECT_EQ(ox_generate_horizon(utm.get(), OX_HORIZON_PROJECTED_RASTER), nullptr);

    ox_horizon *h = ox_generate_horizon(utm.get(), OX_HORIZON_PROJECTED);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(ox_horizon_kind(h), OX_HORIZON_PROJECTED);
    EXPECT_EQ(ox_horizon_ring_count(h), 1);
    const int32_t size = ox_horizon_ring_size(h, 0);
    EXPECT_EQ(size, 4 * 32 + 1);
    double few[6] = {0, 0, 0, 0, 0, 0};
    EXPECT_EQ(ox_horizon_ring(h, 0, 2, few), 2);
    EXPECT_EQ(few[4], 0.0);  // nothing past what was asked for
    EXPECT_EQ(ox_horizon_ring(h, 1, 2, few), 0);
    EXPECT_EQ(ox_horizon_ring(h, -1, 2, few), 0);
    EXPECT_EQ(ox_horizon_ring(h, 0, 0, few), 0);
    EXPECT_EQ(ox_horizon_ring(h, 0, 2, nullptr), 0);
    EXPECT_EQ(ox_horizon_ring_size(h, 1), 0);
    EXPECT_EQ(ox_horizon_extent(h, nullptr), 0);
    // UTM 33N: 10 degrees either side of 15 E, false easting 500 km.
    double extent[4];
    EXPECT_EQ(ox_horizon_extent(h, extent), 1);
    EXPECT_NEAR(extent[0] + extent[2], 1e6, 1e-3);
    EXPECT_NEAR(extent[3], 9997964.943, 0.01);  // the pole: WGS 84's quarter meridian times 0.9996
    ox_horizon_del(h);

    // Null, and an object that is not a horizon, are refused everywhere.
    ox_horizon *not_a_horizon = reinterpret_cast<ox_horizon *>(utm.get());
    for (ox_horizon *bad : {static_cast<ox_horizon *>(nullptr), not_a_horizon}) {
        EXPECT_EQ(ox_horizon_kind(bad), -1);
        EXPECT_EQ(ox_horizon_ring_count(bad), 0);
        EXPECT_EQ(ox_horizon_ring_size(bad, 0), 0);
        EXPECT_EQ(ox_horizon_ring(bad, 0, 3, few), 0);
        EXPECT_EQ(ox_horizon_extent(bad, extent), 0);
        ox_horizon_del(bad);
    }
    EXPECT_EQ(ox_projcs_p(utm.get()), 1);  // untouched by the delete
}

// A projection of a caller's own whose horizon routine misbehaves: a count
// that no memory could hold is refused, NaN vertices only split rings.
OX_HORIZON_ROUTINE(huge_horizon) {
    (void)spheroid, (void)parameters, (void)max_vertices, (void)vertices;
    return 0x7fffffff;
}
OX_HORIZON_ROUTINE(nan_horizon) {
    (void)spheroid, (void)parameters;
    const double v[] = {0, 0, 1, 0, kNaN, kNaN, 1, 1, kNaN, 0, 0, 1, 0, 0};
    for (int32_t i = 0; i < std::min<int32_t>(max_vertices, 7); ++i) {
        vertices[2 * i] = v[2 * i];
        vertices[2 * i + 1] = v[2 * i + 1];
    }
    return 7;
}

TEST(Horizon, CallersRoutinesAreBounded) {
    const struct {
        ox_horizon_routine routine;
        int rings_expected;
    } cases[] = {{huge_horizon, -1}, {nan_horizon, 2}};
    for (const auto &[routine, rings_expected] : cases) {
        ox_object *parameters[16] = {};
        Owned pcs(ox_projcs_new("mine", ox_factory_geogcs(4326),
                                ox_projection_new("Mine", ox::proj_identity, ox::proj_identity, routine),
                                parameters, ox_factory_unit(9001)));
        ASSERT_TRUE(pcs);
        ox_horizon *h = ox_generate_horizon(pcs.get(), OX_HORIZON_GEOGRAPHIC);
        if (rings_expected < 0) {
            EXPECT_EQ(h, nullptr);
        } else {
            EXPECT_EQ(ox_horizon_ring_count(h), rings_expected);
            EXPECT_EQ(ox_horizon_ring_size(h, 0), 2);
            EXPECT_EQ(ox_horizon_ring_size(h, 1), 2);  // (0, 1), (0, 0): (1, 1) alone is no ring
        }
        ox_horizon_del(h);
        // Without a projected horizon routine there is no projected horizon.
        EXPECT_EQ(ox_generate_horizon(pcs.get(), OX_HORIZON_PROJECTED), nullptr);
    }
}

}  // namespace
