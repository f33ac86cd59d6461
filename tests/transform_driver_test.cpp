// The transformation driver: units and prime meridians, the longitude
// rotation's datum test, heights, counts, routines of the caller's own,
// and transformations that describe no conversion.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "test_util.h"
#include "transform_support.h"

using oxtest::geogcs_text;
using oxtest::make_geogtran;
using oxtest::Owned;

namespace {

const std::vector<std::pair<std::string, double>> kEd50 = {
    {"X_Axis_Translation", -87}, {"Y_Axis_Translation", -98}, {"Z_Axis_Translation", -121}};
const char *kGrads = "UNIT[\"Grad\",0.01570796326794897]";

}  // namespace

// Output longitudes have the target's prime meridian subtracted and are
// normalised; inputs about Greenwich are not shifted.
TEST(TransformDriver, PrimeMeridiansAndUnits) {
    const Owned plain(make_geogtran(geogcs_text("A", 6378388, 297), geogcs_text("B", 6378137, 298.257223563),
                                    "Geocentric_Translation", kEd50));
    const Owned shifted(make_geogtran(geogcs_text("A", 6378388, 297), geogcs_text("B", 6378137, 298.257223563, 2.5),
                                      "Geocentric_Translation", kEd50));
    double a[4] = {-179.0, 40.0, 10.0, -20.0}, b[4] = {-179.0, 40.0, 10.0, -20.0}, h[2] = {};
    ASSERT_EQ(ox_geog1_to_geog2(plain.get(), 2, a, nullptr), 2);
    ASSERT_EQ(ox_geog1_to_geog2(shifted.get(), 2, b, h), 2);
    for (int i : {0, 2}) EXPECT_NEAR(b[i], ox_delta((a[i] - 2.5) * oxtest::kDeg) / oxtest::kDeg, 1e-12);
    EXPECT_GT(b[0], 170.0);  // -179 - 2.5 wrapped round
    EXPECT_EQ(a[1], b[1]);
    // And back: the source is Greenwich, the target's meridian added first.
    ASSERT_EQ(ox_geog2_to_geog1(shifted.get(), 2, b, h), 2);
    EXPECT_NEAR(b[0], -179.0, 1e-9);
    EXPECT_NEAR(b[3], -20.0, 1e-9);

    // Grads in and out, all parameters zero: only the units move.
    const Owned grads(make_geogtran(geogcs_text("A", 6378137, 298.257223563, 0, kGrads),
                                    geogcs_text("B", 6378137, 298.257223563, 0, kGrads), "Geocentric_Translation",
                                    {}));
    double g[2] = {150.0, 50.0}, height = 0.0;
    ASSERT_EQ(ox_geog1_to_geog2(grads.get(), 1, g, &height), 1);
    EXPECT_NEAR(g[0], 150.0, 1e-11);
    EXPECT_NEAR(g[1], 50.0, 1e-11);
    EXPECT_NEAR(height, 0.0, 1e-8);
}

// The longitude rotation turns by the meridians' difference within one
// datum and refuses two datums, leaving the points exactly as given.
TEST(TransformDriver, LongitudeRotation) {
    const std::string paris = "GEOGCS[\"GCS_NTF_Paris\",DATUM[\"D_NTF\",SPHEROID[\"Clarke_1880_IGN\",6378249.2,"
                              "293.4660212936269]],PRIMEM[\"Paris\",2.33722917],UNIT[\"Grad\",0.01570796326794897]]";
    const std::string greenwich = "GEOGCS[\"GCS_NTF\",DATUM[\"D_NTF\",SPHEROID[\"Clarke_1880_IGN\",6378249.2,"
                                  "293.4660212936269]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
    const Owned rot(make_geogtran(paris, greenwich, "Longitude_Rotation", {}));
    double p[2] = {0.0, 50.0}, h = 7.0;
    ASSERT_EQ(ox_geog1_to_geog2(rot.get(), 1, p, &h), 1);
    EXPECT_NEAR(p[0], 2.33722917, 1e-12);
    EXPECT_NEAR(p[1], 45.0, 1e-12);  // 50 grads
    EXPECT_EQ(h, 7.0);
    ASSERT_EQ(ox_geog2_to_geog1(rot.get(), 1, p, nullptr), 1);
    EXPECT_NEAR(p[0], 0.0, 1e-12);
    EXPECT_NEAR(p[1], 50.0, 1e-12);

    const Owned other(make_geogtran(paris, oxtest::kWgs84, "Longitude_Rotation", {}));
    double q[2] = {1.25, 2.5};
    EXPECT_EQ(ox_geog1_to_geog2(other.get(), 1, q, nullptr), 0);
    EXPECT_EQ(q[0], 1.25);
    EXPECT_EQ(q[1], 2.5);
}

// Heights: optional, 0 when absent; counts and refusals.
TEST(TransformDriver, HeightsCountsAndRefusals) {
    const Owned gt(make_geogtran(geogcs_text("A", 6378388, 297), geogcs_text("B", 6378137, 298.257223563),
                                 "Geocentric_Translation", kEd50));
    double with[2] = {4.0, 55.0}, without[2] = {4.0, 55.0}, h = 0.0;
    ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, with, &h), 1);
    ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, without, nullptr), 1);
    EXPECT_TRUE(oxtest::same_bits(with[0], without[0]) && oxtest::same_bits(with[1], without[1]));
    EXPECT_GT(std::fabs(h), 1.0);  // the height moved and was written back

    // NaN in, NaN out, still counted; fewer than one point: the count given.
    double nan_point[2] = {oxtest::kNaN, 10.0};
    EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 1, nan_point, nullptr), 1);
    EXPECT_TRUE(std::isnan(nan_point[0]));
    EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 0, with, nullptr), 0);
    EXPECT_EQ(ox_geog1_to_geog2(gt.get(), -3, with, nullptr), -3);
    EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 2, nullptr, nullptr), 0);
    EXPECT_EQ(ox_geog1_to_geog2(nullptr, 1, with, nullptr), 0);
    Owned not_a_transformation(oxtest::make_geogcs());
    EXPECT_EQ(ox_geog2_to_geog1(not_a_transformation.get(), 1, with, nullptr), 0);

    // Transformations that describe no conversion convert nothing.
    const char *bad_unit = "UNIT[\"Nothing\",0.0]";
    for (const auto &[g1, g2] : std::vector<std::pair<std::string, std::string>>{
             {geogcs_text("A", 6378388, 297, 0, bad_unit), geogcs_text("B", 6378137, 298.257223563)},
             {geogcs_text("A", -6378388, 297), geogcs_text("B", 6378137, 298.257223563)},
             {geogcs_text("A", 6378388, 0.5), geogcs_text("B", 6378137, 298.257223563)}}) {
        const Owned bad(make_geogtran(g1, g2, "Coordinate_Frame", kEd50));
        if (!bad) continue;  // not even readable
        double p[2] = {1.0, 2.0};
        EXPECT_EQ(ox_geog1_to_geog2(bad.get(), 1, p, nullptr), 0);
        EXPECT_EQ(p[0], 1.0);
    }
}

// A method with the caller's own routines: the driver hands it radians
// about Greenwich and converts its results back.
TEST(TransformDriver, CallersOwnRoutine) {
    static double seen[2];
    const ox_method_routine shift_north = [](const double *, const double *, const double *, const char *, int32_t n,
                                             double *points, double *, void *, void *, void *) -> int32_t {
        seen[0] = points[0], seen[1] = points[1];
        for (int32_t i = 0; i < n; ++i) points[2 * i + 1] += 0.01;
        return n;
    };
    ox_object *params[16] = {};
    Owned gt(ox_geogtran_new("Mine", ox_geogcs_from_string(geogcs_text("A", 6378137, 298.257223563, 0, kGrads).c_str()),
                             ox_geogcs_from_string(oxtest::kWgs84), ox_method_new("Shift", shift_north, shift_north),
                             params));
    ASSERT_TRUE(gt);
    double p[2] = {100.0, 0.0};
    ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), 1);
    EXPECT_NEAR(seen[0], oxtest::kDeg * 90.0, 1e-15);
    EXPECT_NEAR(p[0], 90.0, 1e-12);
    EXPECT_NEAR(p[1], 0.01 / oxtest::kDeg, 1e-12);
    // The registry's routines, called directly, work in radians.
    Owned m(ox_method_new("Geocentric_Translation", nullptr, nullptr));
    const double e1[2] = {6378388, (2 - 1 / 297.0) / 297.0}, e2[2] = {6378388, (2 - 1 / 297.0) / 297.0};
    const double values[16] = {};
    double q[2] = {0.1, 0.2};
    EXPECT_EQ(ox_method_forward(m.get())(e1, e2, values, nullptr, 1, q, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_NEAR(q[0], 0.1, 1e-15);
    EXPECT_EQ(ox_method_forward(m.get())(nullptr, e2, values, nullptr, 1, q, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(ox_method_forward(nullptr)(e1, e2, values, nullptr, 7, q, nullptr, nullptr, nullptr, nullptr), 7);
}
