// Transverse Mercator and the cylindrical projections against the reference
// vectors of open-source peers, through ox_geog_to_proj / ox_proj_to_geog on
// systems read from object strings: forward within 1 mm, inverse within
// 1e-9 degrees, and round trips through our own forward and inverse.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "projection_support.h"

namespace {

using namespace oxtest;

constexpr double kForwardTolerance = 1e-3;    // metres
constexpr double kInverseTolerance = 1e-9;    // degrees
constexpr double kRoundTripTolerance = 1e-9;  // degrees

// Longitude is meaningless at the poles.
bool at_pole(double lat) { return std::fabs(lat) > 90.0 - 1e-9; }

class Reference : public ::testing::TestWithParam<std::vector<RefRow>> {};

TEST_P(Reference, ForwardInverseAndRoundTrip) {
    const std::vector<RefRow> &rows = GetParam();
    const Owned pcs = projcs_of(rows[0]);
    const int32_t n = static_cast<int32_t>(rows.size());

    std::vector<double> fwd, inv;
    for (const RefRow &r : rows) {
        fwd.insert(fwd.end(), {r.lon, r.lat});
        inv.insert(inv.end(), {r.x, r.y});
    }
    EXPECT_EQ(ox_geog_to_proj(pcs.get(), n, fwd.data()), n);
    EXPECT_EQ(ox_proj_to_geog(pcs.get(), n, inv.data()), n);
    std::vector<double> back = fwd;
    EXPECT_EQ(ox_proj_to_geog(pcs.get(), n, back.data()), n);

    for (int32_t i = 0; i < n; ++i) {
        const RefRow &r = rows[i];
        SCOPED_TRACE(r.case_name + " lon " + number(r.lon) + " lat " + number(r.lat));
        EXPECT_NEAR(fwd[2 * i], r.x, kForwardTolerance);
        EXPECT_NEAR(fwd[2 * i + 1], r.y, kForwardTolerance);
        EXPECT_NEAR(inv[2 * i + 1], r.lat, kInverseTolerance);
        EXPECT_NEAR(back[2 * i + 1], r.lat, kRoundTripTolerance);
        if (!at_pole(r.lat)) {
            EXPECT_NEAR(lon_diff(inv[2 * i], r.lon), 0.0, kInverseTolerance);
            EXPECT_NEAR(lon_diff(back[2 * i], r.lon), 0.0, kRoundTripTolerance);
        }
    }
}

std::vector<std::vector<RefRow>> cases() {
    return by_case(read_reference("projections_cylindrical_tm.csv"));
}

std::string case_name(const ::testing::TestParamInfo<std::vector<RefRow>> &info) {
    std::string s = info.param[0].case_name;
    for (char &c : s)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return s;
}

INSTANTIATE_TEST_SUITE_P(Peers, Reference, ::testing::ValuesIn(cases()), case_name);

TEST(ReferenceData, EveryProjectionIsCovered) {
    const auto rows = read_reference("projections_cylindrical_tm.csv");
    ASSERT_EQ(rows.size(), 1480u);
    for (const char *name :
         {"Transverse_Mercator", "Gauss_Kruger", "Mercator", "Plate_Carree", "Equidistant_Cylindrical",
          "Miller_Cylindrical", "Gall_Stereographic", "Cylindrical_Equal_Area", "Behrmann"}) {
        size_t count = 0;
        for (const RefRow &r : rows) count += r.projection == name;
        EXPECT_GE(count, 80u) << name;
    }
}

}  // namespace
