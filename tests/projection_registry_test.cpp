// The projection list keeps its promises (every row's routines, the
// sharing of horizons and constants routines that the registry prescribes),
// and each projection's setup refuses the parameters that describe no map.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "projection/ox_projlist.h"
#include "projection_support.h"

namespace {

using namespace oxtest;

TEST(ProjectionList, EveryRowHasWhatTheListPromises) {
    const std::vector<std::vector<std::string>> expected = read_csv("projection_registry.csv");
    const auto rows = ox::projlist_rows();
    ASSERT_EQ(rows.size(), expected.size());
    std::map<std::string, ox_horizon_routine> horizon_of;
    std::map<std::string, ox::ConstantsRoutine> constants_of;
    int implemented = 0;
    for (size_t i = 0; i < rows.size(); ++i) {
        const ox::ProjRow &row = *rows[i];
        const std::vector<std::string> &want = expected[i];
        SCOPED_TRACE(row.name);
        EXPECT_EQ(std::to_string(row.code), want[0]);  // in the stored order
        EXPECT_EQ(row.name, want[1]);
        ASSERT_NE(row.forward, nullptr);
        ASSERT_NE(row.inverse, nullptr);
        ASSERT_NE(row.horizon, nullptr);
        EXPECT_FALSE(row.parameters.empty());
        if (row.forward == ox::proj_unavailable) continue;
        ++implemented;
        // The driver reaches the routines that take its units through the
        // list, so a forgotten one cannot silently fall back to its passes.
        ASSERT_NE(row.forward_units, nullptr);
        ASSERT_NE(row.inverse_units, nullptr);
        EXPECT_EQ(ox::projlist_units_routine(row.forward), row.forward_units);
        EXPECT_EQ(ox::projlist_units_routine(row.inverse), row.inverse_units);
        EXPECT_NE(row.horizon_pcs, nullptr);
        EXPECT_EQ(row.constants != nullptr, want[3] == "yes");
        // Rows naming the same horizon (constants group) share the routine.
        const auto [h, new_horizon] = horizon_of.emplace(want[2], row.horizon);
        EXPECT_TRUE(new_horizon || h->second == row.horizon) << want[2];
        if (want.size() > 4 && !want[4].empty()) {
            const auto [c, new_group] = constants_of.emplace(want[4], row.constants);
            EXPECT_TRUE(new_group || c->second == row.constants) << want[4];
        }
        // Two-pass fallbacks would still work, but the list's routines are
        // distinct from any other row's unless the registry says they share.
        for (const ox::ProjRow *other : rows)
            if (other != &row && other->forward == row.forward) {
                EXPECT_TRUE(std::string(row.name) == "Gauss_Kruger" || std::string(row.name) == "Transverse_Mercator")
                    << other->name;
            }
    }
    EXPECT_GE(implemented, 10);
    EXPECT_EQ(ox::projlist_units_routine(ox::proj_identity), nullptr);
    EXPECT_EQ(ox::projlist_units_routine(nullptr), nullptr);
}

// Parameters that describe no map: every point of the call gets the failure
// value, the count is 0, and the system keeps no constants.
TEST(ProjectionSetup, ImpossibleParametersAreRefused) {
    // A value that no object string carries (NaN, infinity) is set into
    // its slot after the system is read.
    struct Refusal {
        const char *projection;
        Params params;
        double a = kA, rf = kRf;
        int slot = -1;
        double value = 0.0;
    };
    const int kCm = OX_SLOT(central_meridian), kK0 = OX_SLOT(scale_factor);
    const Refusal refusals[] = {
        {"Mercator", cyl_params(0, 90)},
        {"Mercator", cyl_params(0, -90), kA, 0},
        {"Mercator", cyl_params(0, 95)},
        {"Mercator", cyl_params(0, 10), kA, kRf, kCm, kNaN},
        {"Equidistant_Cylindrical", cyl_params(0, 90)},
        {"Cylindrical_Equal_Area", cyl_params(0, -90)},
        {"Cylindrical_Equal_Area", cyl_params(0, 90), kA, 0},
        {"Miller_Cylindrical", cyl_params(0), kA, kRf, kCm, kInf},
        {"Gall_Stereographic", cyl_params(0), kA, kRf, kCm, kNaN},
        {"Plate_Carree", cyl_params(0), kA, kRf, kCm, -kInf},
        {"Transverse_Mercator", tm_params(15, 0)},
        {"Transverse_Mercator", tm_params(15, -1), kA, 0},
        {"Transverse_Mercator", tm_params(), kA, kRf, kK0, kNaN},
        {"Transverse_Mercator", tm_params(15, 0.9996, 91)},
        {"Gauss_Kruger", tm_params(), kA, kRf, kCm, kNaN},
        {"Transverse_Mercator_Complex", tm_params(15, 0)},
        {"Mercator", cyl_params(0, 10), 0.0},                // no semi-major axis
        {"Transverse_Mercator", tm_params(), kInf},          // an infinite one
        {"Cylindrical_Equal_Area", cyl_params(0, 10), kA, 1.0},  // flattening 1: e2 = 1
        {"Behrmann", cyl_params(0), -kA},
    };
    for (const Refusal &r : refusals) {
        SCOPED_TRACE(projcs_text(r.projection, r.a, r.rf, r.params) + " slot " + std::to_string(r.slot));
        const Owned good = make_projcs(r.projection, r.params, kA, kRf);
        ASSERT_TRUE(good);
        ox::ProjSetup s;
        ox::projcs_setup(good.get(), &s);
        s.spheroid[0] = r.a;
        s.spheroid[1] = r.rf == 0.0 ? 0.0 : (1.0 / r.rf) * (2.0 - 1.0 / r.rf);
        if (r.slot >= 0) s.parameters[r.slot] = r.value;
        const ox::ProjRow &row = *ox::projlist_find_by_name(r.projection);
        for (const auto routine : {row.forward, row.inverse}) {
            double points[4] = {0.1, 0.2, -0.3, 0.4};
            EXPECT_EQ(routine(s.spheroid, s.parameters, 2, points, nullptr, nullptr), 0);
            for (double v : points) EXPECT_TRUE(is_failure(v));
        }
        if (row.constants != nullptr) {
            ox::PcsConstants *c = ox::pcs_new();
            EXPECT_EQ(row.constants(c, s.spheroid, s.parameters), 0);
            EXPECT_EQ(c->values, nullptr);
            ox::pcs_delete(c);
        }
        // Through the driver, where the parameters can be carried.
        if (r.slot < 0 && r.a == kA && r.rf != 1.0) {
            const Owned pcs = make_projcs(r.projection, r.params, r.a, r.rf);
            std::vector<double> p = {10.0, 20.0, -5.0, 40.0};
            EXPECT_EQ(forward(pcs.get(), p), 0);
            for (double v : p) EXPECT_TRUE(is_failure(v));
            EXPECT_EQ(ox_projcs_load_constants(pcs.get()), 0);
        }
    }
}

// A constants block that another projection, or another form of the same
// projection, wrote is never read as this one's: the routines compute their
// own constants instead.
TEST(ProjectionSetup, ConstantsBlocksAreReadOnlyByTheirWriter) {
    const Owned tm = make_projcs("Transverse_Mercator", tm_params());
    const Owned sphere = make_projcs("Transverse_Mercator", tm_params(), kA, 0.0);
    const Owned mercator = make_projcs("Mercator", cyl_params(15, 10));
    ox::ProjSetup ts, ss, ms;
    ox::projcs_setup(tm.get(), &ts);
    ox::projcs_setup(sphere.get(), &ss);
    ox::projcs_setup(mercator.get(), &ms);
    const ox::ProjRow &tm_row = *ox::projlist_find_by_code(43006), &merc_row = *ox::projlist_find_by_code(43004);
    ox::PcsConstants *tm_block = ox::pcs_new(), *sphere_block = ox::pcs_new(), *merc_block = ox::pcs_new();
    ASSERT_EQ(tm_row.constants(tm_block, ts.spheroid, ts.parameters), 21);
    ASSERT_EQ(tm_row.constants(sphere_block, ss.spheroid, ss.parameters), 2);
    ASSERT_EQ(merc_row.constants(merc_block, ms.spheroid, ms.parameters), 20);
    const std::vector<double> input = {16.0 * kDeg, 50.0 * kDeg, 13.5 * kDeg, -20.0 * kDeg};
    auto run = [&](const ox::ProjRow &row, const ox::ProjSetup &s, const ox::PcsConstants *block) {
        std::vector<double> p = input;
        EXPECT_EQ(row.forward_units(s.spheroid, s.parameters, 2, p.data(), block, nullptr), 2);
        return p;
    };
    const std::vector<double> own = run(tm_row, ts, tm_block);
    EXPECT_EQ(own, run(tm_row, ts, nullptr));
    EXPECT_EQ(own, run(tm_row, ts, merc_block));   // Mercator's layout: ignored
    EXPECT_EQ(own, run(tm_row, ts, sphere_block));  // the spherical form's: ignored
    EXPECT_EQ(run(merc_row, ms, merc_block), run(merc_row, ms, tm_block));
    for (ox::PcsConstants *b : {tm_block, sphere_block, merc_block}) ox::pcs_delete(b);
}

}  // namespace
