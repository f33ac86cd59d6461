// The world projections: round trips over a dense global grid (the poles,
// the edges and the interruptions included), the outline and the gaps of
// the maps refused, their horizons, equal areas, the Robinson table, and
// every kind of bad input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "projection/ox_pcsconstants.h"
#include "projection/ox_projlist.h"
#include "projection_support.h"

namespace {

using namespace oxtest;

struct World {
    const char *projection;
    Params params;
    bool equal_area;
};

Params option(double cm, double value) { return {{"Central_Meridian", cm}, {"Option", value}}; }

// Every world projection with a central meridian away from Greenwich.
std::vector<World> worlds(double cm = 0.0) {
    return {{"Sinusoidal", cyl_params(cm), true},
            {"Mollweide", cyl_params(cm), true},
            {"Eckert_I", cyl_params(cm), false},
            {"Eckert_II", cyl_params(cm), true},
            {"Eckert_III", cyl_params(cm), false},
            {"Eckert_IV", cyl_params(cm), true},
            {"Eckert_V", cyl_params(cm), false},
            {"Eckert_VI", cyl_params(cm), true},
            {"Winkel_I", cyl_params(cm, 50.467), false},
            {"Winkel_II", cyl_params(cm, 50.467), false},
            {"Winkel_Tripel", cyl_params(cm, 50.467), false},
            {"Quartic_Authalic", cyl_params(cm), true},
            {"Loximuthal", {{"Central_Meridian", cm}, {"Central_Parallel", 40}}, false},
            {"Van_der_Grinten_I", cyl_params(cm), false},
            {"Robinson", cyl_params(cm), false},
            {"Robinson_Legacy", cyl_params(cm), false},
            {"Aitoff", cyl_params(cm), false},
            {"Hammer_Aitoff", cyl_params(cm), true},
            {"Flat_Polar_Quartic", cyl_params(cm), true},
            {"Craster_Parabolic", cyl_params(cm), true},
            {"Times", cyl_params(cm), false},
            {"Goode_Homolosine", option(cm, 0), true},
            {"Goode_Homolosine", option(cm, 1), true},
            {"Goode_Homolosine", option(cm, 2), true}};
}

std::string label(const World &w) {
    std::string s = w.projection;
    for (const auto &p : w.params)
        if (p.first == "Option") s += " option " + number(p.second);
    return s;
}

// A dense global grid: every 0.5 degree, the edges and the poles, the
// meridians just either side of every interruption of Goode's layouts,
// and latitudes approaching the poles.
std::vector<double> global_grid(double cm) {
    std::vector<double> p;
    for (double lat = -90.0; lat <= 90.0; lat += 0.5)
        for (double lon = -180.0; lon <= 180.0; lon += 0.5) p.insert(p.end(), {cm + lon, lat});
    for (double cut : {-100.0, -90.0, -60.0, -40.0, -20.0, 60.0, 80.0, 90.0})
        for (double lat = -90.0; lat <= 90.0; lat += 0.25)
            for (double side : {-1e-7, 0.0, 1e-7}) p.insert(p.end(), {cm + cut + side, lat});
    for (double d : {1e-1, 1e-3, 1e-5})
        for (double lon = -180.0; lon <= 180.0; lon += 7.5) p.insert(p.end(), {cm + lon, 90.0 - d, cm + lon, d - 90.0});
    return p;
}

// Inverse of forward brings every point back to within 1e-11 degrees of
// arc (the latitude, and the longitude times the cosine of the latitude, so
// that a point on a seam or the antimeridian may come back on either side)
// below 89.9 degrees of latitude.  Closer to the poles these maps are flat
// (y varies as the square or the 4/3 power of the distance to the pole), so
// the rounding of y alone moves the latitude by up to ~1e-7 degrees, and at
// the flat pole of the Flat Polar Quartic (y linear in the square of the
// distance to the pole) by 5e-7 degrees: there the point comes back within
// 1e-6 degrees of arc (11 cm).
TEST(WorldProjections, RoundTripsCloseOverTheGlobe) {
    for (double cm : {0.0, -123.25}) {
        const std::vector<double> grid = global_grid(cm);
        const int32_t n = static_cast<int32_t>(grid.size() / 2);
        for (const World &w : worlds(cm)) {
            SCOPED_TRACE(label(w) + " cm " + number(cm));
            const Owned pcs = make_projcs(w.projection, w.params, kA, 0.0);
            std::vector<double> xy = grid;
            ASSERT_EQ(forward(pcs.get(), xy), n);
            std::vector<double> back = xy;
            EXPECT_EQ(inverse(pcs.get(), back, cm), n);
            double worst = 0.0, worst_polar = 0.0;
            for (int32_t i = 0; i < n; ++i) {
                const double lon = grid[2 * i], lat = grid[2 * i + 1];
                const double arc = std::max(std::fabs(back[2 * i + 1] - lat),
                                            std::fabs(lon_diff(back[2 * i], lon)) * std::cos(lat * kDeg));
                double &bound = std::fabs(lat) <= 89.9 ? worst : worst_polar;
                bound = std::max(bound, arc);
            }
            EXPECT_LE(worst, 1e-11);
            EXPECT_LE(worst_polar, 1e-6);
        }
    }
}

// The iterations take a fixed number of steps on the vectorised path and
// hand a point whose last step was still large to the C library path,
// which iterates on.  On every loop level the results agree with that path
// to a few ulps (1.5e-8 m forward, 2e-13 degrees inverse) over every
// 0.01 degree of latitude and latitudes approaching the poles to 1e-15
// degrees: a fixed count that stopped short of convergence would show.
TEST(WorldProjections, IterationsConvergeOnEveryLoopLevel) {
    std::vector<double> grid;
    for (double lon : {-180.0, -97.5, -0.25, 13.0, 179.75, 180.0}) {
        for (int i = 0; i <= 18000; ++i) grid.insert(grid.end(), {lon, -90.0 + 0.01 * i});
        for (double k = 0.0; k <= 15.0; k += 0.25)
            grid.insert(grid.end(), {lon, 90.0 - std::pow(10.0, -k), lon, std::pow(10.0, -k) - 90.0});
    }
    for (const World &w : worlds()) {
        const std::string name = w.projection;
        if (name != "Mollweide" && name != "Eckert_IV" && name != "Eckert_VI" && name != "Flat_Polar_Quartic" &&
            name != "Winkel_II" && name != "Winkel_Tripel" && name != "Goode_Homolosine")
            continue;
        SCOPED_TRACE(label(w));
        const Owned pcs = make_projcs(w.projection, w.params, kA, 0.0);
        std::vector<double> xy_exact = grid, back_exact;
        {
            const AtLevel exact(ox::kExactLevel);
            forward(pcs.get(), xy_exact);
            back_exact = xy_exact;
            inverse(pcs.get(), back_exact);
        }
        for (const int level : loop_levels()) {
            const AtLevel at(level);
            std::vector<double> xy = grid;
            forward(pcs.get(), xy);
            std::vector<double> back = xy_exact;
            inverse(pcs.get(), back);
            double worst_f = 0.0, worst_i = 0.0;
            for (size_t k = 0; k < grid.size(); ++k) {
                // (a point on the side edge within 1e-6 degrees of a pole
                // may be refused, on every path alike)
                ASSERT_FALSE(std::isnan(xy[k])) << "level " << level << " value " << k;
                ASSERT_EQ(std::isnan(back[k]), std::isnan(back_exact[k])) << "level " << level << " value " << k;
                worst_f = std::max(worst_f, std::fabs(xy[k] - xy_exact[k]));
                const double d = std::isnan(back[k]) ? 0.0 : std::fabs(back[k] - back_exact[k]);
                worst_i = std::max(worst_i, k % 2 == 0 ? std::min(d, std::fabs(d - 360.0)) : d);
            }
            EXPECT_LE(worst_f, 1.5e-8) << "level " << level;
            EXPECT_LE(worst_i, 2e-13) << "level " << level;
        }
    }
}

// Every vertex of the projected horizon unprojects onto its geographic
// vertex (to 1e-9 rad, and 1e-8 rad at the flat pole of the Flat Polar
// Quartic, where one unit in the last place of y is 8e-9 rad); a point 1e-6 beyond the outline (moved away from the centre of
// the map) is refused.
TEST(WorldProjections, HorizonsProjectAndTheOutlineIsHard) {
    for (const World &w : worlds(33.118679)) {
        SCOPED_TRACE(label(w));
        const Owned pcs = make_projcs(w.projection, w.params, kA, 0.0);
        ox::ProjSetup s;
        ox::projcs_setup(pcs.get(), &s);
        const ox_object *projection = ox_projcs_projection(pcs.get());
        const ox_horizon_routine geographic = ox_projection_horizon(projection);
        const ox_horizon_routine projected = ox_projection_horizon_pcs(projection);
        ASSERT_NE(projected, nullptr);
        const int32_t total = geographic(s.spheroid, s.parameters, 0, nullptr);
        ASSERT_GT(total, 100);
        std::vector<double> geo(2 * total), map(2 * total);
        ASSERT_EQ(geographic(s.spheroid, s.parameters, total, geo.data()), total);
        ASSERT_EQ(projected(s.spheroid, s.parameters, total, map.data()), total);
        EXPECT_EQ(geo.front(), geo[2 * total - 2]);  // closed
        std::vector<double> back = map;
        const ox::ProjRow &row = *ox::projlist_find_by_name(w.projection);
        EXPECT_EQ(row.inverse(s.spheroid, s.parameters, total, back.data(), nullptr, nullptr), total);
        for (int32_t i = 0; i < total; ++i) {
            EXPECT_NEAR(back[2 * i + 1], geo[2 * i + 1], 1e-8) << i;
            if (std::fabs(geo[2 * i + 1]) < 1.5707963267948966 - 1e-9) {
                EXPECT_NEAR(std::remainder(back[2 * i] - geo[2 * i], 2.0 * M_PI), 0.0, 1e-9) << i;
            }
        }
        if (std::string(label(w)).find("option") != std::string::npos && label(w) != "Goode_Homolosine option 0")
            continue;  // the interruptions: see GoodeGapsAreRefused
        std::vector<double> outside = map;
        for (double &v : outside) v *= 1.0 + 1e-6;
        EXPECT_EQ(row.inverse(s.spheroid, s.parameters, total, outside.data(), nullptr, nullptr), 0);
        for (double v : outside) EXPECT_TRUE(is_failure(v));
    }
}

// Between the lobes of an interrupted layout there is nothing: the middle
// of every gap is refused, and the points either side of it are not (the
// cut meridian itself may fall on either side by rounding).
TEST(WorldProjections, GoodeGapsAreRefused) {
    for (double o : {1.0, 2.0}) {
        const Owned pcs = make_projcs("Goode_Homolosine", option(0, o), kA, 0.0);
        const std::vector<double> cuts = o == 1.0 ? std::vector<double>{-40, -100, -20, 80}
                                                  : std::vector<double>{-90, 60, -60, 90};
        for (size_t k = 0; k < cuts.size(); ++k) {
            const double sign = k < (o == 1.0 ? 1u : 2u) ? 1.0 : -1.0;  // northern cuts first
            for (double lat : {10.0, 45.0, 70.0, 89.0}) {
                std::vector<double> p = {cuts[k] - 1e-6, sign * lat, cuts[k] + 1e-6, sign * lat};
                ASSERT_EQ(forward(pcs.get(), p), 2);
                const double mid = 0.5 * (p[0] + p[2]);
                std::vector<double> gap = {mid, p[1], p[0], p[1], p[2], p[3]};
                EXPECT_EQ(inverse(pcs.get(), gap), 2) << o << " " << cuts[k] << " " << lat;
                EXPECT_TRUE(is_failure(gap[0]) && is_failure(gap[1]));
                EXPECT_NEAR(gap[2], cuts[k] - 1e-6, 1e-9);
                EXPECT_NEAR(gap[4], cuts[k] + 1e-6, 1e-9);
            }
        }
        // The step of 22 m where the Mollweide part begins is no part of
        // the map either.
        std::vector<double> step = {0.0, 6378137.0 * (40.7366111 * kDeg) + 10.0};
        EXPECT_EQ(inverse(pcs.get(), step), 0);
    }
}

// Equal area: a small cell has the same area on the map as on the sphere.
TEST(WorldProjections, EqualAreaProjectionsKeepAreas) {
    for (const World &w : worlds(10.0)) {
        if (!w.equal_area) continue;
        SCOPED_TRACE(label(w));
        const Owned pcs = make_projcs(w.projection, w.params, kA, 0.0);
        for (double lat : {-75.0, -41.0, -12.0, 0.5, 30.0, 50.0, 85.0})
            for (double lon : {-150.0, -35.0, 12.0, 95.0}) {
                const double h = 1e-4;
                std::vector<double> p = {10 + lon, lat, 10 + lon + h, lat, 10 + lon, lat + h};
                ASSERT_EQ(forward(pcs.get(), p), 3);
                const double map = std::fabs((p[2] - p[0]) * (p[5] - p[1]) - (p[4] - p[0]) * (p[3] - p[1]));
                const double sphere = kA * kA * std::cos((lat + h / 2) * kDeg) * h * kDeg * h * kDeg;
                EXPECT_NEAR(map / sphere, 1.0, 1e-5) << lon << " " << lat;
            }
    }
}

// Robinson's table at its nodes, and the spline between them monotonic and
// within the bend of the table of the straight lines of Robinson_Legacy
// (24 km at the edge of the map near the poles, on the Earth).
TEST(WorldProjections, RobinsonFollowsItsTable) {
    const double y_table[] = {0.0, 0.3100, 0.6176, 0.8936, 1.0};  // 0, 25, 50, 75, 90 degrees
    const double x_table[] = {1.0, 0.9730, 0.8679, 0.6732, 0.5322};
    const double a = 6371000.0;
    for (const char *name : {"Robinson", "Robinson_Legacy"}) {
        const Owned pcs = make_projcs(name, cyl_params(0), a, 0.0);
        for (int i = 0; i < 5; ++i) {
            std::vector<double> p = {90.0, 25.0 * i - (i == 4 ? 10.0 : 0.0)};
            ASSERT_EQ(forward(pcs.get(), p), 1);
            EXPECT_NEAR(p[0], 0.8487 * a * x_table[i] * M_PI / 2, 1e-6) << name << i;
            EXPECT_NEAR(p[1], 1.3523 * a * y_table[i], 1e-6) << name << i;
        }
    }
    const Owned spline = make_projcs("Robinson", cyl_params(0), a, 0.0);
    const Owned linear = make_projcs("Robinson_Legacy", cyl_params(0), a, 0.0);
    double previous = -1.0, worst = 0.0;
    for (double lat = 0.0; lat <= 90.0; lat += 0.01) {
        std::vector<double> p = {180.0, lat}, q = p;
        forward(spline.get(), p);
        forward(linear.get(), q);
        EXPECT_GT(p[1], previous);  // y grows with the latitude: one inverse
        previous = p[1];
        worst = std::max({worst, std::fabs(p[0] - q[0]), std::fabs(p[1] - q[1])});
    }
    EXPECT_LT(worst, 25000.0);
    EXPECT_GT(worst, 20000.0);
}

// NaN and infinities, far longitudes, the poles and the antimeridian never
// crash or hang: NaN input fails that point only; a longitude of 1e300 is
// its reduction; latitudes beyond the poles are the poles; every point of
// the sphere, the antimeridian included, is converted.
TEST(WorldProjections, BadInputIsHarmless) {
    const std::vector<double> bad = {kNaN, 10.0, 10.0, kNaN, kInf, 10.0, 10.0, kInf, -kInf, -kInf,
                                     1e300, 20.0, -1e300, -20.0, 5e-324, -0.0, 16.0, 44.0};
    const int32_t n = static_cast<int32_t>(bad.size() / 2);
    for (const World &w : worlds(15.0)) {
        SCOPED_TRACE(label(w));
        const Owned pcs = make_projcs(w.projection, w.params);
        std::vector<double> f = bad;
        EXPECT_EQ(forward(pcs.get(), f), n - 4);  // the NaNs and the longitudes +-inf
        for (int i : {0, 1, 2, 4}) EXPECT_TRUE(is_failure(f[2 * i]) && is_failure(f[2 * i + 1])) << i;
        for (int i : {3, 5, 6, 7, 8}) EXPECT_TRUE(std::isfinite(f[2 * i]) && std::isfinite(f[2 * i + 1])) << i;
        std::vector<double> g = bad, h = bad;
        EXPECT_LE(inverse(pcs.get(), g), n);
        EXPECT_LE(inverse(pcs.get(), h, 180.0), n);
        for (size_t i = 0; i < g.size(); i += 2) EXPECT_EQ(std::isnan(g[i]), std::isnan(g[i + 1]));
        std::vector<double> beyond = {20.0, 95.0, 20.0, -1000.0}, poles = {20.0, 90.0, 20.0, -90.0};
        EXPECT_EQ(forward(pcs.get(), beyond), 2);
        EXPECT_EQ(forward(pcs.get(), poles), 2);
        EXPECT_EQ(beyond, poles);
        std::vector<double> edge = {15.0 + 180.0, 30.0, 15.0 - 180.0, -30.0, 15.0 + 180.0, 90.0};
        EXPECT_EQ(forward(pcs.get(), edge), 3);
        EXPECT_EQ(inverse(pcs.get(), edge), 3);
    }
}

// Parameters that describe no map are refused: every point fails and no
// constants are kept.
TEST(WorldProjections, ImpossibleParametersAreRefused) {
    const std::vector<std::pair<const char *, Params>> refused = {
        {"Goode_Homolosine", option(0, 3)},    {"Goode_Homolosine", option(0, -1)},
        {"Goode_Homolosine", option(0, 0.5)},  {"Goode_Homolosine", option(0, 1e300)},
        {"Loximuthal", {{"Central_Parallel", 90}}}, {"Loximuthal", {{"Central_Parallel", -95}}},
        {"Winkel_Tripel", cyl_params(0, 90)},  {"Winkel_I", cyl_params(0, 91)},
        {"Winkel_II", cyl_params(0, -120)},
    };
    for (const auto &[name, params] : refused) {
        SCOPED_TRACE(projcs_text(name, kA, kRf, params));
        const Owned pcs = make_projcs(name, params);
        std::vector<double> p = {10.0, 20.0, -5.0, 40.0}, q = {1e5, 2e5};
        EXPECT_EQ(forward(pcs.get(), p), 0);
        EXPECT_EQ(inverse(pcs.get(), q), 0);
        for (double v : p) EXPECT_TRUE(is_failure(v));
        EXPECT_EQ(ox_projcs_load_constants(pcs.get()), 0);
    }
    // NaN and infinite parameters, which no object string carries.
    for (const World &w : worlds()) {
        const Owned pcs = make_projcs(w.projection, w.params);
        ox::ProjSetup s;
        ox::projcs_setup(pcs.get(), &s);
        const ox::ProjRow &row = *ox::projlist_find_by_name(w.projection);
        for (int slot : {OX_SLOT(central_meridian), OX_SLOT(standard_parallel_1), OX_SLOT(latitude_of_origin),
                         OX_SLOT(height)})
            for (double value : {kNaN, kInf}) {
                double parameters[16];
                std::copy(std::begin(s.parameters), std::end(s.parameters), parameters);
                parameters[slot] = value;
                double points[4] = {0.1, 0.2, -0.3, 0.4};
                const int32_t count = row.forward(s.spheroid, parameters, 2, points, nullptr, nullptr);
                const bool used = slot == OX_SLOT(central_meridian) ||
                                  (slot == OX_SLOT(standard_parallel_1) && w.params.size() > 3) ||
                                  (slot == OX_SLOT(latitude_of_origin) && label(w) == "Loximuthal") ||
                                  (slot == OX_SLOT(height) && std::string(w.projection) == "Goode_Homolosine");
                if (used) {
                    EXPECT_EQ(count, 0) << label(w) << " slot " << slot;
                }
            }
    }
}

}  // namespace
