// The projection driver: units, parameter conversion, latitude clamping,
// false easting and northing, the centred inverse, constants on first use,
// systems that must agree bit for bit, and bad handles and arrays.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "projection/ox_pcsconstants.h"
#include "projection_support.h"

namespace {

using namespace oxtest;

TEST(Driver, NullOrWrongHandleReachesTheIdentity) {
    const std::vector<double> given = {0.25, -0.5, 1.0, 1.25};
    std::vector<double> pts = given;
    EXPECT_EQ(forward(nullptr, pts), 2);
    EXPECT_EQ(inverse(nullptr, pts), 2);
    const Owned unit(ox_unit_new("Meter", 1.0));
    EXPECT_EQ(forward(unit.get(), pts), 2);
    EXPECT_EQ(inverse(unit.get(), pts), 2);
    EXPECT_EQ(pts, given);
    EXPECT_EQ(ox_projcs_load_constants(unit.get()), 0);
    EXPECT_EQ(ox_projcs_load_constants(nullptr), 0);
    EXPECT_EQ(ox_projcs_isconstloaded(unit.get()), 0);
}

TEST(Driver, NullArrayOrNoPointsConvertNothing) {
    const Owned pcs = make_projcs("Transverse_Mercator", tm_params());
    double pt[2] = {15.0, 45.0};
    EXPECT_EQ(ox_geog_to_proj(pcs.get(), 1, nullptr), 0);
    EXPECT_EQ(ox_proj_to_geog(pcs.get(), 1, nullptr), 0);
    EXPECT_EQ(ox_geog_to_proj(pcs.get(), 0, pt), 0);
    EXPECT_EQ(ox_geog_to_proj(pcs.get(), -5, pt), 0);
    EXPECT_EQ(ox_proj_to_geog_center(pcs.get(), -1, pt, 180.0), 0);
    EXPECT_EQ(pt[0], 15.0);
    EXPECT_EQ(pt[1], 45.0);
}

TEST(Driver, FeetSystemAppliesFalseEastingInMetres) {
    // 500000 US survey feet of false easting
    const Owned ft = make_projcs("Transverse_Mercator", tm_params(), kA, kRf, kFoot);
    const Owned m = make_projcs("Transverse_Mercator", tm_params(15, 0.9996, 0, 0));
    std::vector<double> on_cm = {15.0, 0.0};
    ASSERT_EQ(forward(ft.get(), on_cm), 1);
    EXPECT_NEAR(on_cm[0], 500000.0, 1e-8);
    EXPECT_NEAR(on_cm[1], 0.0, 1e-8);
    std::vector<double> pf = {17.5, 48.25}, pm = pf;
    ASSERT_EQ(forward(ft.get(), pf), 1);
    ASSERT_EQ(forward(m.get(), pm), 1);
    EXPECT_NEAR(pf[0], (pm[0] + 500000.0 * kFootUS) / kFootUS, 1e-7);
    EXPECT_NEAR(pf[1], pm[1] / kFootUS, 1e-7);
    ASSERT_EQ(inverse(ft.get(), pf), 1);
    EXPECT_NEAR(pf[0], 17.5, 1e-11);
    EXPECT_NEAR(pf[1], 48.25, 1e-11);
}

TEST(Driver, AngularUnitAppliesToPointsAndParameters) {
    std::string grads = projcs_text("Transverse_Mercator", kA, kRf, tm_params(16.66666666666667));
    const std::string degree = "UNIT[\"Degree\",0.0174532925199433]";
    grads.replace(grads.find(degree), degree.size(), "UNIT[\"Grad\",0.01570796326794897]");
    const Owned g(ox_projcs_from_string(grads.c_str()));
    ASSERT_TRUE(g);
    const Owned d = make_projcs("Transverse_Mercator", tm_params());
    std::vector<double> pg = {20.0, 50.0}, pd = {18.0, 45.0};  // the same point in grads and degrees
    ASSERT_EQ(forward(g.get(), pg), 1);
    ASSERT_EQ(forward(d.get(), pd), 1);
    EXPECT_NEAR(pg[0], pd[0], 1e-6);
    EXPECT_NEAR(pg[1], pd[1], 1e-6);
    ASSERT_EQ(inverse(g.get(), pg), 1);
    EXPECT_NEAR(pg[0], 20.0, 1e-10);
    EXPECT_NEAR(pg[1], 50.0, 1e-10);
}

TEST(Driver, CentredInverse) {
    const Owned pcs = make_projcs("Plate_Carree", cyl_params());
    std::vector<double> p = {-170.0, 10.0, 170.0, -10.0};
    ASSERT_EQ(forward(pcs.get(), p), 2);
    std::vector<double> c0 = p, c180 = p, tiny = p, bad = p;
    ASSERT_EQ(inverse(pcs.get(), c0), 2);
    ASSERT_EQ(inverse(pcs.get(), c180, 180.0), 2);
    EXPECT_NEAR(c0[0], -170.0, 1e-12);
    EXPECT_NEAR(c0[2], 170.0, 1e-12);
    EXPECT_NEAR(c180[0], 190.0, 1e-12);
    EXPECT_NEAR(c180[2], 170.0, 1e-12);
    EXPECT_NEAR(c180[1], 10.0, 1e-12);
    EXPECT_NEAR(c180[3], -10.0, 1e-12);
    // A centre below the library-wide zero counts as none.
    ASSERT_EQ(inverse(pcs.get(), tiny, 1e-14), 2);
    EXPECT_EQ(tiny[0], c0[0]);
    // A centre that is not finite centres nothing: every point fails.
    for (double centre : {kNaN, kInf, -kInf}) {
        bad = p;
        EXPECT_EQ(inverse(pcs.get(), bad, centre), 0);
        for (double v : bad) EXPECT_TRUE(is_failure(v));
    }
    // A far centre is reduced exactly, once: the longitudes lie within half
    // a turn of it, as for the same centre a whole number of turns nearer.
    std::vector<double> far = p, near = p;
    ASSERT_EQ(inverse(pcs.get(), far, 180.0 + 360.0 * 1e6), 2);
    ASSERT_EQ(inverse(pcs.get(), near, 180.0), 2);
    EXPECT_NEAR(far[0] - 360.0 * 1e6, near[0], 1e-6);
    EXPECT_EQ(far[1], near[1]);
}

TEST(Driver, ConstantsLoadedOnFirstUse) {
    const Owned tm = make_projcs("Transverse_Mercator", tm_params());
    const Owned pc = make_projcs("Plate_Carree", cyl_params());
    EXPECT_EQ(ox_projcs_isconstloaded(tm.get()), 0);
    EXPECT_EQ(ox_projcs_isconstloaded(pc.get()), 0);
    std::vector<double> p = {15.0, 45.0};
    forward(tm.get(), p);
    forward(pc.get(), p);
    EXPECT_EQ(ox_projcs_isconstloaded(tm.get()), 1);
    EXPECT_EQ(ox_projcs_isconstloaded(pc.get()), 0);
    EXPECT_EQ(ox_projcs_load_constants(pc.get()), 0);
    EXPECT_EQ(ox_projcs_load_constants(tm.get()), 21);
    ox_projcs_unload_constants(tm.get());
    EXPECT_EQ(ox_projcs_isconstloaded(tm.get()), 0);
    inverse(tm.get(), p);
    EXPECT_EQ(ox_projcs_isconstloaded(tm.get()), 1);
    // A clone starts without constants.
    const Owned clone(ox_projcs_clone(tm.get()));
    EXPECT_EQ(ox_projcs_isconstloaded(clone.get()), 0);
    const Owned sphere = make_projcs("Transverse_Mercator", tm_params(), 6371000.0, 0.0);
    EXPECT_EQ(ox_projcs_load_constants(sphere.get()), 2);
}

// Systems that must give the same bits: an alias, special cases of a more
// general projection, and the registry's routines in a projection made by
// ox_projection_new, which has no constants routine (its routines compute
// what they need per call).
TEST(Driver, EquivalentSystemsGiveTheSameBits) {
    struct Pair {
        const char *a;
        Params pa;
        const char *b;  // null: `a` without its constants routine
        Params pb;
    };
    const Params cyl = cyl_params(15, kNaN, 1000, -2000), sp = cyl_params(15, 20, 1000, -2000);
    const Pair pairs[] = {
        {"Gauss_Kruger", tm_params(), "Transverse_Mercator", tm_params()},
        {"Equidistant_Cylindrical", cyl_params(-20, 0), "Plate_Carree", cyl_params(-20)},
        {"Behrmann", cyl_params(10, 45), "Behrmann", cyl_params(10)},  // other parallels are ignored
        {"Transverse_Mercator", tm_params(), nullptr, {}},
        {"Transverse_Mercator_Complex", tm_params(-110.16666666666667, 0.9999, 31), nullptr, {}},
        {"Mercator", sp, nullptr, {}},
        {"Gall_Stereographic", cyl, nullptr, {}},
        {"Cylindrical_Equal_Area", sp, nullptr, {}},
        {"Behrmann", cyl, nullptr, {}},
    };
    const std::vector<double> points = {15.0,  45.0,  17.0,  -30.0, 12.5, 80.0, 15.0,   0.0,   18.4,  -33.0, 11.0,
                                        89.0,  15.0,  -90.0, -20.0, 0.0,  100.0, 45.0,  -179.0, -89.0, 160.0, 90.0,
                                        -100,  40,    -150,  -10,   -110, 31,    -112.5, 80};
    for (const Pair &pair : pairs)
        for (double rf : {kRf, 0.0}) {
            SCOPED_TRACE(std::string(pair.a) + " rf " + number(rf));
            const Owned a = make_projcs(pair.a, pair.pa, kA, rf);
            const Owned b = pair.b ? make_projcs(pair.b, pair.pb, kA, rf) : with_routines(a.get(), nullptr, nullptr);
            std::vector<double> pa = points, pb = points;
            EXPECT_EQ(forward(a.get(), pa), forward(b.get(), pb));
            if (!pair.b) {
                EXPECT_EQ(ox_projcs_isconstloaded(a.get()), 1);
                EXPECT_EQ(ox_projcs_isconstloaded(b.get()), 0);
            }
            for (size_t k = 0; k < pa.size(); ++k) ASSERT_TRUE(same_bits(pa[k], pb[k])) << "forward " << k;
            EXPECT_EQ(inverse(a.get(), pa), inverse(b.get(), pb));
            for (size_t k = 0; k < pa.size(); ++k) ASSERT_TRUE(same_bits(pa[k], pb[k])) << "inverse " << k;
        }
}

// Constants of a layout a routine does not expect are ignored, never read
// past their end; null arrays handed straight to a routine convert nothing.
TEST(Driver, ForeignConstantsAreIgnored) {
    for (const auto &[name, foreign_count] : {std::pair{"Transverse_Mercator", 3}, {"Transverse_Mercator_Complex", 21}}) {
        const Owned pcs = make_projcs(name, tm_params(-110.16666666666667, 0.9999, 31));
        ox::ProjSetup s;
        ox::projcs_setup(pcs.get(), &s);
        const ox_projection_routine fwd = ox_projection_forward(ox_projcs_projection(pcs.get()));
        const int32_t header[2] = {2, foreign_count};
        const double values[21] = {1.0, 2.0, 3.0};
        double a[2] = {-100.0 * kDeg, 40.0 * kDeg}, b[2] = {-100.0 * kDeg, 40.0 * kDeg};
        EXPECT_EQ(fwd(s.spheroid, s.parameters, 1, a, header, values), 1);
        EXPECT_EQ(fwd(s.spheroid, s.parameters, 1, b, nullptr, nullptr), 1);
        EXPECT_TRUE(same_bits(a[0], b[0]) && same_bits(a[1], b[1])) << name;
        EXPECT_EQ(fwd(nullptr, s.parameters, 1, a, nullptr, nullptr), 0);
        EXPECT_EQ(fwd(s.spheroid, nullptr, 1, a, nullptr, nullptr), 0);
        EXPECT_EQ(fwd(s.spheroid, s.parameters, 1, nullptr, nullptr, nullptr), 0);
    }
}

TEST(Driver, ParameterValuesBySlot) {
    const Params albers = {{"False_Easting", 1000.0},     {"False_Northing", -10.0},
                           {"Central_Meridian", -96.0},   {"Standard_Parallel_1", 29.5},
                           {"Latitude_Of_Origin", 23.0},  {"Height", 100.0}};
    const Owned pcs(ox_projcs_from_string(projcs_text("Albers", kA, kRf, albers, "UNIT[\"Foot\",0.3048]").c_str()));
    ASSERT_TRUE(pcs);
    ox::ProjSetup s;
    ox::projcs_setup(pcs.get(), &s);
    const double deg = 0.0174532925199433;
    EXPECT_EQ(s.spheroid[0], kA);
    const double f = 1.0 / kRf;
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
    ox_projcs_parameters(pcs.get(), parms);
    ox_object *p16[16] = {};
    for (int i = 0; i < 15; ++i) p16[i] = parms[i] ? ox_parameter_clone(parms[i]) : nullptr;
    p16[15] = ox_parameter_new("Option", 3.0);
    p16[4] = ox_parameter_new("Standard_Parallel_2", 45.5);
    const Owned other(ox_projcs_new("q", ox_geogcs_clone(ox_projcs_geogcs(pcs.get())),
                                    ox_projection_clone(ox_projcs_projection(pcs.get())), p16,
                                    ox_unit_new("Foot", 0.3048)));
    ASSERT_TRUE(other);
    ox::projcs_setup(other.get(), &s);
    EXPECT_DOUBLE_EQ(s.parameters[4], 45.5 * deg);
    EXPECT_EQ(s.parameters[15], 3.0);

    // A null handle: unit sphere, unit factors, empty slots with their defaults.
    ox::projcs_setup(nullptr, &s);
    EXPECT_EQ(s.spheroid[0], 1.0);
    EXPECT_EQ(s.spheroid[1], 0.0);
    EXPECT_EQ(s.parameters[5], 1.0);
    EXPECT_EQ(s.parameters[0], 0.0);
}

}  // namespace
