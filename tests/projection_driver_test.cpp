// The projection driver: units, parameter conversion, latitude clamping,
// false easting and northing, the centred inverse, constants on first use,
// and bad handles and arrays.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "ox.h"
#include "projection/ox_pcsconstants.h"
#include "projection_support.h"

namespace {

using Params = std::vector<std::pair<std::string, double>>;
constexpr double kA = 6378137.0, kRf = 298.257223563;
constexpr double kDeg = 0.017453292519943295;
const std::string kMeter = "UNIT[\"Meter\",1.0]";
const std::string kFootUS = "UNIT[\"Foot_US\",0.3048006096012192]";

ox_object *make(const std::string &projection, const Params &params, const std::string &unit = kMeter, double a = kA,
                double rf = kRf) {
    ox_object *p = ox_projcs_from_string(oxtest::projcs_text(projection, a, rf, params, unit).c_str());
    EXPECT_NE(p, nullptr) << projection;
    return p;
}

const Params kUtm33 = {{"False_Easting", 500000},
                       {"False_Northing", 0},
                       {"Central_Meridian", 15},
                       {"Scale_Factor", 0.9996},
                       {"Latitude_Of_Origin", 0}};

TEST(Driver, NullOrWrongHandleReachesTheIdentity) {
    std::vector<double> pts = {0.25, -0.5, 1.0, 1.25};
    EXPECT_EQ(ox_geog_to_proj(nullptr, 2, pts.data()), 2);
    EXPECT_EQ(pts, (std::vector<double>{0.25, -0.5, 1.0, 1.25}));
    EXPECT_EQ(ox_proj_to_geog(nullptr, 2, pts.data()), 2);
    EXPECT_EQ(pts, (std::vector<double>{0.25, -0.5, 1.0, 1.25}));

    ox_object *unit = ox_unit_new("Meter", 1.0);
    EXPECT_EQ(ox_geog_to_proj(unit, 2, pts.data()), 2);
    EXPECT_EQ(ox_proj_to_geog_center(unit, 2, pts.data(), 0.0), 2);
    EXPECT_EQ(pts, (std::vector<double>{0.25, -0.5, 1.0, 1.25}));
    EXPECT_EQ(ox_projcs_load_constants(unit), 0);
    EXPECT_EQ(ox_projcs_load_constants(nullptr), 0);
    EXPECT_EQ(ox_projcs_isconstloaded(unit), 0);
    ox_unit_del(unit);
}

TEST(Driver, NullArrayOrNoPointsConvertNothing) {
    ox_object *pcs = make("Transverse_Mercator", kUtm33);
    double pt[2] = {15.0, 45.0};
    EXPECT_EQ(ox_geog_to_proj(pcs, 1, nullptr), 0);
    EXPECT_EQ(ox_proj_to_geog(pcs, 1, nullptr), 0);
    EXPECT_EQ(ox_geog_to_proj(pcs, 0, pt), 0);
    EXPECT_EQ(ox_geog_to_proj(pcs, -5, pt), 0);
    EXPECT_EQ(ox_proj_to_geog_center(pcs, -1, pt, 180.0), 0);
    EXPECT_EQ(pt[0], 15.0);
    EXPECT_EQ(pt[1], 45.0);
    ox_projcs_del(pcs);
}

TEST(Driver, LatitudesBeyondThePolesAreClamped) {
    for (const char *name : {"Plate_Carree", "Transverse_Mercator", "Mercator", "Cylindrical_Equal_Area"}) {
        Params params = {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", 0}};
        if (std::string(name) == "Transverse_Mercator") params = kUtm33;
        if (std::string(name) == "Cylindrical_Equal_Area") params.push_back({"Standard_Parallel_1", 30});
        ox_object *pcs = make(name, params);
        double a[4] = {20.0, 95.0, 20.0, -1000.0}, b[4] = {20.0, 90.0, 20.0, -90.0};
        EXPECT_EQ(ox_geog_to_proj(pcs, 2, a), 2) << name;
        EXPECT_EQ(ox_geog_to_proj(pcs, 2, b), 2) << name;
        for (int i = 0; i < 4; ++i) EXPECT_EQ(a[i], b[i]) << name << " " << i;
        ox_projcs_del(pcs);
    }
}

TEST(Driver, FeetSystemAppliesFalseEastingInMetres) {
    Params feet = kUtm33;
    feet[0].second = 500000.0;  // 500000 US survey feet
    ox_object *ft = make("Transverse_Mercator", feet, kFootUS);
    Params metres = kUtm33;
    metres[0].second = 0.0;
    ox_object *m = make("Transverse_Mercator", metres);

    constexpr double kFoot = 0.3048006096012192;
    double on_cm[2] = {15.0, 0.0};
    ASSERT_EQ(ox_geog_to_proj(ft, 1, on_cm), 1);
    EXPECT_NEAR(on_cm[0], 500000.0, 1e-8);
    EXPECT_NEAR(on_cm[1], 0.0, 1e-8);

    double pf[2] = {17.5, 48.25}, pm[2] = {17.5, 48.25};
    ASSERT_EQ(ox_geog_to_proj(ft, 1, pf), 1);
    ASSERT_EQ(ox_geog_to_proj(m, 1, pm), 1);
    EXPECT_NEAR(pf[0], (pm[0] + 500000.0 * kFoot) / kFoot, 1e-7);
    EXPECT_NEAR(pf[1], pm[1] / kFoot, 1e-7);

    ASSERT_EQ(ox_proj_to_geog(ft, 1, pf), 1);
    EXPECT_NEAR(pf[0], 17.5, 1e-11);
    EXPECT_NEAR(pf[1], 48.25, 1e-11);
    ox_projcs_del(ft);
    ox_projcs_del(m);
}

TEST(Driver, AngularUnitAppliesToPointsAndParameters) {
    const std::string grads =
        "PROJCS[\"g\",GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\",6378137.0,298.257223563]],"
        "PRIMEM[\"Greenwich\",0.0],UNIT[\"Grad\",0.01570796326794897]],"
        "PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"False_Easting\",500000.0],"
        "PARAMETER[\"Central_Meridian\",16.66666666666667],"
        "PARAMETER[\"Scale_Factor\",0.9996],PARAMETER[\"Latitude_Of_Origin\",0.0],"
        "UNIT[\"Meter\",1.0]]";
    ox_object *g = ox_projcs_from_string(grads.c_str());
    ASSERT_NE(g, nullptr);
    ox_object *d = make("Transverse_Mercator", kUtm33);
    double pg[2] = {20.0, 50.0}, pd[2] = {18.0, 45.0};  // the same point in grads and degrees
    ASSERT_EQ(ox_geog_to_proj(g, 1, pg), 1);
    ASSERT_EQ(ox_geog_to_proj(d, 1, pd), 1);
    EXPECT_NEAR(pg[0], pd[0], 1e-6);
    EXPECT_NEAR(pg[1], pd[1], 1e-6);
    ASSERT_EQ(ox_proj_to_geog(g, 1, pg), 1);
    EXPECT_NEAR(pg[0], 20.0, 1e-10);
    EXPECT_NEAR(pg[1], 50.0, 1e-10);
    ox_projcs_del(g);
    ox_projcs_del(d);
}

TEST(Driver, CentredInverse) {
    ox_object *pcs = make("Plate_Carree", {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", 0}});
    double p[4] = {-170.0, 10.0, 170.0, -10.0};
    ASSERT_EQ(ox_geog_to_proj(pcs, 2, p), 2);
    double c0[4], c180[4];
    std::copy(p, p + 4, c0);
    std::copy(p, p + 4, c180);
    ASSERT_EQ(ox_proj_to_geog(pcs, 2, c0), 2);
    ASSERT_EQ(ox_proj_to_geog_center(pcs, 2, c180, 180.0), 2);
    EXPECT_NEAR(c0[0], -170.0, 1e-12);
    EXPECT_NEAR(c0[2], 170.0, 1e-12);
    EXPECT_NEAR(c180[0], 190.0, 1e-12);
    EXPECT_NEAR(c180[2], 170.0, 1e-12);
    EXPECT_NEAR(c180[1], 10.0, 1e-12);
    EXPECT_NEAR(c180[3], -10.0, 1e-12);
    // A centre below the library-wide zero counts as none.
    double tiny[4];
    std::copy(p, p + 4, tiny);
    ASSERT_EQ(ox_proj_to_geog_center(pcs, 2, tiny, 1e-14), 2);
    EXPECT_EQ(tiny[0], c0[0]);
    // A NaN centre leaves NaN longitudes, nothing worse.
    double bad[4];
    std::copy(p, p + 4, bad);
    EXPECT_EQ(ox_proj_to_geog_center(pcs, 2, bad, std::nan("")), 2);
    EXPECT_TRUE(std::isnan(bad[0]));
    EXPECT_NEAR(bad[1], 10.0, 1e-12);
    ox_projcs_del(pcs);
}

TEST(Driver, ConstantsLoadedOnFirstUse) {
    ox_object *tm = make("Transverse_Mercator", kUtm33);
    ox_object *pc = make("Plate_Carree", {{"False_Easting", 0}, {"False_Northing", 0}, {"Central_Meridian", 0}});
    EXPECT_EQ(ox_projcs_isconstloaded(tm), 0);
    EXPECT_EQ(ox_projcs_isconstloaded(pc), 0);
    double p[2] = {15.0, 45.0};
    ox_geog_to_proj(tm, 1, p);
    ox_geog_to_proj(pc, 1, p);
    EXPECT_EQ(ox_projcs_isconstloaded(tm), 1);
    EXPECT_EQ(ox_projcs_isconstloaded(pc), 0);
    EXPECT_EQ(ox_projcs_load_constants(pc), 0);
    EXPECT_EQ(ox_projcs_load_constants(tm), 21);
    ox_projcs_unload_constants(tm);
    EXPECT_EQ(ox_projcs_isconstloaded(tm), 0);
    ox_proj_to_geog(tm, 1, p);
    EXPECT_EQ(ox_projcs_isconstloaded(tm), 1);

    // A clone starts without constants.
    ox_object *clone = ox_projcs_clone(tm);
    EXPECT_EQ(ox_projcs_isconstloaded(clone), 0);
    ox_projcs_del(clone);

    ox_object *sphere = make("Transverse_Mercator", kUtm33, kMeter, 6371000.0, 0.0);
    EXPECT_EQ(ox_projcs_load_constants(sphere), 2);
    ox_projcs_del(sphere);
    ox_projcs_del(tm);
    ox_projcs_del(pc);
}

// A projection made by ox_projection_new has no constants routine: its
// routines compute what they need per call, with the same results.
TEST(Driver, RoutinesWithoutConstantsAgree) {
    for (const char *name :
         {"Transverse_Mercator", "Mercator", "Gall_Stereographic", "Cylindrical_Equal_Area", "Behrmann"}) {
        for (double rf : {kRf, 0.0}) {
            Params params = kUtm33;
            if (std::string(name) != "Transverse_Mercator")
                params = {{"False_Easting", 1000}, {"False_Northing", -2000}, {"Central_Meridian", 15}};
            if (std::string(name) == "Mercator" || std::string(name) == "Cylindrical_Equal_Area")
                params.push_back({"Standard_Parallel_1", 20});
            ox_object *with = make(name, params, kMeter, kA, rf);
            ox_object *geogcs = ox_geogcs_clone(ox_projcs_geogcs(with));
            ox_object *parms[16] = {};
            ox_object *src[16];
            ox_projcs_parameters(with, src);
            for (int i = 0; i < 16; ++i) parms[i] = src[i] ? ox_parameter_clone(src[i]) : nullptr;
            ox_object *without = ox_projcs_new("bare", geogcs, ox_projection_new(name, nullptr, nullptr, nullptr),
                                               parms, ox_unit_new("Meter", 1.0));
            ASSERT_NE(without, nullptr);
            std::vector<double> a = {15.0, 45.0, 17.0, -30.0, 12.5, 80.0, 15.0, 0.0}, b = a;
            EXPECT_EQ(ox_geog_to_proj(with, 4, a.data()), 4);
            EXPECT_EQ(ox_geog_to_proj(without, 4, b.data()), 4);
            EXPECT_EQ(ox_projcs_isconstloaded(with), 1) << name;
            EXPECT_EQ(ox_projcs_isconstloaded(without), 0) << name;
            EXPECT_EQ(a, b) << name << " rf " << rf;
            EXPECT_EQ(ox_proj_to_geog(with, 4, a.data()), 4);
            EXPECT_EQ(ox_proj_to_geog(without, 4, b.data()), 4);
            EXPECT_EQ(a, b) << name << " rf " << rf;
            ox_projcs_del(with);
            ox_projcs_del(without);
        }
    }
}

// Constants of a size a routine does not expect are ignored, never read
// past their end.
TEST(Driver, ForeignConstantsAreIgnored) {
    ox_object *pcs = make("Transverse_Mercator", kUtm33);
    ox::ProjSetup s;
    ox::projcs_setup(pcs, &s);
    const ox_projection_routine fwd = ox_projection_forward(ox_projcs_projection(pcs));
    const int32_t header[2] = {2, 3};
    const double values[3] = {1.0, 2.0, 3.0};
    double a[2] = {16.0 * kDeg, 44.0 * kDeg}, b[2] = {16.0 * kDeg, 44.0 * kDeg};
    EXPECT_EQ(fwd(s.spheroid, s.parameters, 1, a, header, values), 1);
    EXPECT_EQ(fwd(s.spheroid, s.parameters, 1, b, nullptr, nullptr), 1);
    EXPECT_EQ(a[0], b[0]);
    EXPECT_EQ(a[1], b[1]);
    // Null arrays handed straight to a routine convert nothing.
    EXPECT_EQ(fwd(nullptr, s.parameters, 1, a, nullptr, nullptr), 0);
    EXPECT_EQ(fwd(s.spheroid, nullptr, 1, a, nullptr, nullptr), 0);
    EXPECT_EQ(fwd(s.spheroid, s.parameters, 1, nullptr, nullptr, nullptr), 0);
    ox_projcs_del(pcs);
}

TEST(Driver, ParameterValuesBySlot) {
    const std::string text =
        "PROJCS[\"p\",GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],"
        "UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Albers\"],PARAMETER[\"False_Easting\",1000.0],"
        "PARAMETER[\"False_Northing\",-10.0],PARAMETER[\"Central_Meridian\",-96.0],"
        "PARAMETER[\"Standard_Parallel_1\",29.5],PARAMETER[\"Latitude_Of_Origin\",23.0],"
        "PARAMETER[\"Height\",100.0],UNIT[\"Foot\",0.3048]]";
    ox_object *pcs = ox_projcs_from_string(text.c_str());
    ASSERT_NE(pcs, nullptr);
    ox::ProjSetup s;
    ox::projcs_setup(pcs, &s);
    const double deg = 0.0174532925199433;
    EXPECT_EQ(s.spheroid[0], 6378137.0);
    const double f = 1.0 / 298.257223563;
    EXPECT_EQ(s.spheroid[1], f * (2.0 - f));
    EXPECT_DOUBLE_EQ(s.parameters[0], 1000.0 * 0.3048);
    EXPECT_DOUBLE_EQ(s.parameters[1], -10.0 * 0.3048);
    EXPECT_DOUBLE_EQ(s.parameters[2], -96.0 * deg);
    EXPECT_DOUBLE_EQ(s.parameters[3], 29.5 * deg);
    EXPECT_EQ(s.parameters[4], s.parameters[3]);  // missing second parallel takes the first
    EXPECT_EQ(s.parameters[5], 1.0);              // missing scale factor
    EXPECT_DOUBLE_EQ(s.parameters[6], 23.0 * deg);
    EXPECT_EQ(s.parameters[7], 0.0);
    EXPECT_EQ(s.parameters[12], 1.0);
    EXPECT_EQ(s.parameters[13], 1.0);
    EXPECT_DOUBLE_EQ(s.parameters[15], 100.0 * 0.3048);  // a height is a length
    EXPECT_EQ(s.angular_factor, deg);
    EXPECT_EQ(s.linear_factor, 0.3048);

    // A second parallel of its own is kept; an Option in slot 15 is a plain number.
    ox_object *parms[16];
    ox_projcs_parameters(pcs, parms);
    ox_object *p16[16] = {};
    for (int i = 0; i < 16; ++i) p16[i] = parms[i] ? ox_parameter_clone(parms[i]) : nullptr;
    ox_parameter_del(p16[15]);
    p16[15] = ox_parameter_new("Option", 3.0);
    p16[4] = ox_parameter_new("Standard_Parallel_2", 45.5);
    ox_object *other = ox_projcs_new("q", ox_geogcs_clone(ox_projcs_geogcs(pcs)),
                                     ox_projection_clone(ox_projcs_projection(pcs)), p16, ox_unit_new("Foot", 0.3048));
    ASSERT_NE(other, nullptr);
    ox::projcs_setup(other, &s);
    EXPECT_DOUBLE_EQ(s.parameters[4], 45.5 * deg);
    EXPECT_EQ(s.parameters[15], 3.0);
    ox_projcs_del(other);
    ox_projcs_del(pcs);

    // A null handle: unit sphere, unit factors, empty slots with their defaults.
    ox::projcs_setup(nullptr, &s);
    EXPECT_EQ(s.spheroid[0], 1.0);
    EXPECT_EQ(s.spheroid[1], 0.0);
    EXPECT_EQ(s.parameters[5], 1.0);
    EXPECT_EQ(s.parameters[0], 0.0);
}

TEST(Driver, GaussKrugerIsTransverseMercator) {
    for (double rf : {kRf, 0.0}) {
        ox_object *tm = make("Transverse_Mercator", kUtm33, kMeter, kA, rf);
        ox_object *gk = make("Gauss_Kruger", kUtm33, kMeter, kA, rf);
        std::vector<double> a = {15.0, 45.0, 18.4, -33.0, 11.0, 89.0, 15.0, -90.0}, b = a;
        EXPECT_EQ(ox_geog_to_proj(tm, 4, a.data()), 4);
        EXPECT_EQ(ox_geog_to_proj(gk, 4, b.data()), 4);
        EXPECT_EQ(a, b);
        EXPECT_EQ(ox_proj_to_geog(tm, 4, a.data()), 4);
        EXPECT_EQ(ox_proj_to_geog(gk, 4, b.data()), 4);
        EXPECT_EQ(a, b);
        ox_projcs_del(tm);
        ox_projcs_del(gk);
    }
}

TEST(Driver, FailedPointsKeepTheFailureValueThroughUnits) {
    // Cylindrical_Equal_Area with its standard parallel at the pole fails
    // every point; the false easting and the foot do not disturb the NaN.
    ox_object *pcs =
        make("Cylindrical_Equal_Area",
             {{"False_Easting", 100}, {"False_Northing", 50}, {"Central_Meridian", 0}, {"Standard_Parallel_1", 90}},
             kFootUS);
    double p[4] = {10.0, 20.0, -5.0, 60.0};
    EXPECT_EQ(ox_geog_to_proj(pcs, 2, p), 0);
    for (double v : p) EXPECT_TRUE(oxtest::is_failure(v));
    double q[4] = {10.0, 20.0, -5.0, 60.0};
    EXPECT_EQ(ox_proj_to_geog(pcs, 2, q), 0);
    for (double v : q) EXPECT_TRUE(oxtest::is_failure(v));
    EXPECT_EQ(ox_projcs_isconstloaded(pcs), 0);
    EXPECT_EQ(ox_projcs_load_constants(pcs), 0);
    EXPECT_EQ(ox_projcs_isconstloaded(pcs), 0);
    ox_projcs_del(pcs);
}

}  // namespace
