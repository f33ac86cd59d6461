// Transformations and methods; vertical, geocentric, horizontal-method,
// array and adjusted systems; the affine and projective methods.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "object/ox_object.h"
#include "test_util.h"
#include "transform/ox_htmethlist.h"
#include "transform/ox_methlist.h"

using oxtest::Owned;
using oxtest::text_of;

namespace {
const std::string kGeog1 =
    "GEOGCS[\"GCS_European_1950\",DATUM[\"D_European_1950\",SPHEROID[\"International_1924\",6378388.0,297.0]],"
    "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
const std::string kGeog2 = oxtest::kWgs84;
const std::string kTransformation = "GEOGTRAN[\"ED_1950_To_WGS_1984_1\"," + kGeog1 + "," + kGeog2 +
                                    ",METHOD[\"Geocentric_Translation\"],PARAMETER[\"X_Axis_Translation\",-87.0],"
                                    "PARAMETER[\"Y_Axis_Translation\",-98.0],PARAMETER[\"Z_Axis_Translation\",-121.0]]";
}  // namespace

// Reading and writing: tests/data/object_strings.txt.
TEST(Transformation, PartsAndDirection) {
    Owned t(ox_geogtran_from_string(kTransformation.c_str()));
    ASSERT_TRUE(t);
    EXPECT_EQ(oxtest::name_of(ox_geogtran_geogcs1(t.get())), "GCS_European_1950");
    EXPECT_EQ(oxtest::name_of(ox_geogtran_method(t.get())), "Geocentric_Translation");
    EXPECT_EQ(ox::obj_code(ox_geogtran_method(t.get())), 9603);
    // the two systems swapped: the other direction, not equal
    const std::string swapped = "GEOGTRAN[\"ED_1950_To_WGS_1984_1\"," + kGeog2 + "," + kGeog1 +
                                ",METHOD[\"Geocentric_Translation\"],PARAMETER[\"X_Axis_Translation\",-87.0],"
                                "PARAMETER[\"Y_Axis_Translation\",-98.0],PARAMETER[\"Z_Axis_Translation\",-121.0]]";
    Owned s(ox_geogtran_from_string(swapped.c_str()));
    ASSERT_TRUE(s);
    EXPECT_EQ(ox_geogtran_eq(t.get(), s.get()), 0);
}

TEST(MethodRegistry, RowsNamesAndDefaults) {
    EXPECT_EQ(ox::methlist_rows().size(), 11u);
    // Coordinate frame is the Bursa-Wolf computation under another name.
    EXPECT_EQ(ox::methlist_find_by_code(9607)->forward, ox::methlist_find_by_code(109607)->forward);
    EXPECT_EQ(ox::methlist_find_by_name("coordinate_frame"), nullptr);
    ox_object *params[16];
    for (int32_t code : {9603, 9607, 9636, 9613, 9601}) {
        Owned m(ox_factory_method(code));
        const int n = ox_parameter_method_defaults(m.get(), params);
        int made = 0;
        for (ox_object *p : params) {
            made += p != nullptr;
            EXPECT_EQ(ox_parameter_value(p), 0.0);
            ox_parameter_del(p);
        }
        EXPECT_EQ(n, made) << code;
        EXPECT_EQ(n == 0, code == 9601) << code;  // longitude rotation: none
    }
    EXPECT_EQ(ox_parameter_method_defaults(nullptr, params), 0);

    Owned custom(ox_method_new("My_Method", ox_method_forward(nullptr), ox_method_inverse(nullptr)));
    ASSERT_TRUE(custom);
    EXPECT_EQ(ox::obj_code(custom.get()), -1);
    EXPECT_EQ(ox_method_status(custom.get()), OX_STATUS_NEW);
    EXPECT_EQ(ox_method_new("My_Method", nullptr, nullptr), nullptr);
    Owned named(ox_method_new("Molodensky", nullptr, nullptr));
    EXPECT_EQ(ox::obj_code(named.get()), 9604);
    EXPECT_EQ(ox::method_load_constants(named.get()), nullptr);  // only registry-made methods load grids
    Owned by_code(ox_factory_method(9613));
    EXPECT_NE(ox::method_load_constants(by_code.get()), nullptr);
    EXPECT_EQ(ox_method_status(by_code.get()), OX_STATUS_CATALOGUE);
    // A null method runs a routine that converts nothing and reports the count.
    double pts[2] = {0.1, 0.2};
    EXPECT_EQ(ox_method_forward(nullptr)(nullptr, nullptr, nullptr, nullptr, 1, pts, nullptr, nullptr, nullptr,
                                         nullptr),
              1);
    EXPECT_EQ(pts[0], 0.1);
}

TEST(Transformation, ConstantsOnlyForGridMethods) {
    Owned t(ox_geogtran_from_string(kTransformation.c_str()));
    EXPECT_EQ(ox_geogtran_load_constants(t.get()), 0);
    EXPECT_EQ(ox_geogtran_isconstloaded(t.get()), 0);
    ox_geogtran_unload_constants(t.get());
    EXPECT_EQ(ox_geogtran_load_constants(nullptr), 0);
    Owned clone(ox_geogtran_clone(t.get()));
    EXPECT_EQ(ox_geogtran_eq(clone.get(), t.get()), 1);
    EXPECT_EQ(ox_geogtran_isconstloaded(clone.get()), 0);
}

TEST(Vertical, DatumsSystemsAndUnits) {
    Owned vd(ox_vdatum_from_string("VDATUM[\"D_NAVD_1988\",AUTHORITY[\"EPSG\",5103]]"));
    ASSERT_TRUE(vd);
    EXPECT_EQ(text_of(ox_vdatum_to_string, vd.get()), "VDATUM[\"D_NAVD_1988\"]");
    EXPECT_EQ(ox_hvdatum_p(vd.get()), 1);
    const char *vertical =
        "VERTCS[\"NAVD_1988\",VDATUM[\"D_North_American_Vertical_Datum_1988\"],PARAMETER[\"Vertical_Shift\",1.0],"
        "PARAMETER[\"Direction\",1.0],UNIT[\"Meter\",1.0]]";
    Owned v(ox_vertcs_from_string(vertical));
    ASSERT_TRUE(v);
    EXPECT_EQ(ox_vdatum_p(ox_vertcs_hvdatum(v.get())), 1);
    Owned foot(ox_unit_new("Foot", 0.3048));
    Owned feet(ox_vertcs_clone_alterunits(v.get(), foot.get()));
    ASSERT_TRUE(feet);
    ox_object *params[16];
    ox_vertcs_parameters(feet.get(), params);
    EXPECT_DOUBLE_EQ(ox_parameter_value(params[0]), 1.0 / 0.3048);
    EXPECT_EQ(ox_parameter_value(params[1]), 1.0);  // the direction is not a length
    Owned same(ox_vertcs_clone_alterunits(v.get(), nullptr));
    EXPECT_EQ(ox_vertcs_eq(same.get(), v.get()), 1);

    // A vertical system on a horizontal datum.
    Owned on_datum(ox_vertcs_from_string(
        "VERTCS[\"WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
        "PARAMETER[\"Vertical_Shift\",0.0],PARAMETER[\"Direction\",1.0],UNIT[\"Meter\",1.0]]"));
    ASSERT_TRUE(on_datum);
    EXPECT_EQ(ox_datum_p(ox_vertcs_hvdatum(on_datum.get())), 1);
    EXPECT_EQ(ox_hvdatum_eq(ox_vertcs_hvdatum(on_datum.get()), vd.get()), 0);

    Owned hv_v(ox_hvdatum_from_string("VERTCS[\"x\",VDATUM[\"vd\"],UNIT[\"m\",1]]"));
    EXPECT_EQ(ox_vdatum_p(hv_v.get()), 1);
    Owned hv_d(ox_hvdatum_from_string(oxtest::kWgs84));
    EXPECT_EQ(ox_datum_p(hv_d.get()), 1);
    ox_vertcs_parameters(nullptr, params);
    EXPECT_EQ(params[0], nullptr);
}

TEST(Pairs, HorizontalAndVerticalWithAndWithoutWrapper) {
    const std::string vertical = "VERTCS[\"v\",VDATUM[\"vd\"],PARAMETER[\"Vertical_Shift\",0.0],UNIT[\"Meter\",1.0]]";
    const std::string pair = std::string(oxtest::kUtm33) + "," + vertical;
    Owned a(ox_hvcoordsys_from_string(pair.c_str()));
    ASSERT_TRUE(a);
    EXPECT_EQ(ox_hvcoordsys_status(a.get()), OX_STATUS_STRING);
    EXPECT_EQ(text_of(ox_hvcoordsys_to_string, a.get()), pair);
    Owned b(ox_hvcoordsys_from_string(("HVCOORDSYS[" + pair + "]").c_str()));
    ASSERT_TRUE(b);
    EXPECT_EQ(ox_hvcoordsys_eq(a.get(), b.get()), 1);
    Owned only_vertical(ox_hvcoordsys_new(nullptr, ox_vertcs_from_string(vertical.c_str())));
    ASSERT_TRUE(only_vertical);
    EXPECT_EQ(text_of(ox_hvcoordsys_to_string, only_vertical.get()), vertical);
    EXPECT_EQ(ox_hvcoordsys_eq(a.get(), only_vertical.get()), 0);
    EXPECT_EQ(ox_hvcoordsys_new(nullptr, nullptr), nullptr);
    char name[OX_NAME_SIZE] = "junk";
    ox_hvcoordsys_name(a.get(), name);
    EXPECT_STREQ(name, "");
    Owned geographic(ox_hvcoordsys_from_string(oxtest::kWgs84));
    ASSERT_TRUE(geographic);
    EXPECT_EQ(ox_geogcs_p(ox_hvcoordsys_coordsys(geographic.get())), 1);
    EXPECT_EQ(ox_hvcoordsys_vertcs(geographic.get()), nullptr);
    EXPECT_EQ(ox_hvcoordsys_from_string("PROJCS[\"broken\"],VERTCS[\"v\",VDATUM[\"vd\"],UNIT[\"m\",1]]"), nullptr);
}

TEST(Geocentric, Parts) {
    Owned g(ox_geoxyzcs_from_string(("GEOXYZCS[\"WGS_1984_Geocentric\"," + kGeog2 + ",UNIT[\"Meter\",1.0]]").c_str()));
    EXPECT_EQ(ox_unit_factor(ox_geoxyzcs_unit(g.get())), 1.0);
    EXPECT_EQ(ox_geogcs_p(ox_geoxyzcs_geogcs(g.get())), 1);
}

TEST(HorizontalMethods, AffineAndProjective) {
    const double affine[6] = {2.0, 0.5, 10.0, -0.25, 3.0, -4.0};
    double pts[4] = {1.0, 2.0, -3.0, 0.5};
    const double orig[4] = {1.0, 2.0, -3.0, 0.5};
    ASSERT_EQ(ox::affine_forward(nullptr, affine, 2, pts), 2);
    EXPECT_DOUBLE_EQ(pts[0], 2.0 + 1.0 + 10.0);
    EXPECT_DOUBLE_EQ(pts[1], -0.25 + 6.0 - 4.0);
    ASSERT_EQ(ox::affine_inverse(nullptr, affine, 2, pts), 2);
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(pts[i], orig[i], 1e-13);
    const double singular[6] = {1.0, 2.0, 0.0, 2.0, 4.0, 0.0};
    EXPECT_EQ(ox::affine_inverse(nullptr, singular, 2, pts), 0);
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(pts[i], orig[i], 1e-13);

    // Projective with G = H = 0 is the affine transformation.
    const double flat[8] = {2.0, 0.5, 10.0, -0.25, 3.0, -4.0, 0.0, 0.0};
    double a[2] = {1.0, 2.0}, b[2] = {1.0, 2.0};
    ox::projective_forward(nullptr, flat, 1, a);
    ox::affine_forward(nullptr, affine, 1, b);
    EXPECT_DOUBLE_EQ(a[0], b[0]);
    EXPECT_DOUBLE_EQ(a[1], b[1]);
    const double proj[8] = {1.1, 0.2, 5.0, -0.1, 0.9, -2.0, 0.001, -0.002};
    double p[4] = {3.0, 4.0, -7.0, 1.5};
    ox::projective_forward(nullptr, proj, 2, p);
    ASSERT_EQ(ox::projective_inverse(nullptr, proj, 2, p), 2);
    EXPECT_NEAR(p[0], 3.0, 1e-12);
    EXPECT_NEAR(p[3], 1.5, 1e-12);
    // A point on the horizon gives infinities or NaN, not an error.
    const double horizon[8] = {1, 0, 0, 0, 1, 0, 1, 0};
    double h[2] = {-1.0, 0.0};
    EXPECT_EQ(ox::projective_forward(nullptr, horizon, 1, h), 1);
    EXPECT_FALSE(std::isfinite(h[0]));
}

TEST(HorizontalMethods, ObjectsArraysAndAdjustedSystems) {
    Owned affine(ox_factory_htmethod(119624)), projective(ox_htmethod_new("2D_Projective_Parametric", nullptr, nullptr));
    ASSERT_TRUE(affine && projective);
    EXPECT_EQ(ox_htmethod_status(affine.get()), OX_STATUS_CATALOGUE);
    EXPECT_EQ(ox::obj_code(projective.get()), 119625);
    Owned six(ox_array_htmethod_default(affine.get())), eight(ox_array_htmethod_default(projective.get()));
    EXPECT_EQ(ox_array_num_values(six.get()), 6);
    EXPECT_EQ(ox_array_num_values(eight.get()), 8);
    EXPECT_EQ(text_of(ox_array_to_string_ext, six.get(), 2), "ARRAY[\"Coefficients\",6,1.0,0.0,0.0,0.0,1.0,0.0]");
    EXPECT_EQ(ox_htmethod_new("affine_parametric", nullptr, nullptr), nullptr);  // exact names only
    Owned custom(ox_htmethod_new("Mine", ox::htmethod_nothing, ox::htmethod_nothing));
    EXPECT_EQ(ox_array_htmethod_default(custom.get()), nullptr);
    double pts[2] = {1, 2};
    EXPECT_EQ(ox_htmethod_forward(nullptr)(nullptr, nullptr, 1, pts), 1);

    const double values[3] = {1.5, -2.5, 3.5};
    Owned arr(ox_array_new("a", 3, values));
    double copy[3];
    ox_array_values_copy(arr.get(), copy);
    EXPECT_EQ(copy[2], 3.5);
    const double two[2] = {9, 8};
    EXPECT_EQ(ox_array_values_set(arr.get(), 2, two), 1);
    EXPECT_EQ(ox_array_values_pointer(arr.get())[1], 8.0);
    EXPECT_EQ(ox_array_values_set(arr.get(), 5, values), 1);  // values beyond the array are not written
    EXPECT_EQ(ox_array_name_set(arr.get(), "renamed"), 1);
    Owned back(ox_array_from_string(text_of(ox_array_to_string, arr.get()).c_str()));
    EXPECT_EQ(ox_array_eq(back.get(), arr.get()), 1);
    Owned empty1(ox_array_new("e", 0, nullptr)), empty2(ox_array_new("e", 0, nullptr));
    EXPECT_EQ(ox_array_eq(empty1.get(), empty2.get()), 1);
    EXPECT_EQ(ox_array_new("e", -1, nullptr), nullptr);

    // An adjusted projected system: scale 2 and shift, then to feet.
    const double coefficients[6] = {2.0, 0.0, 100.0, 0.0, 2.0, -50.0};
    Owned adj(ox_adjhcs_new("Adjusted", ox_projcs_from_string(oxtest::kUtm33),
                            ox_factory_htmethod(119624), ox_array_new("Coefficients", 6, coefficients),
                            ox_unit_new("Foot", 0.3048)));
    ASSERT_TRUE(adj);
    const std::string text = text_of(ox_adjhcs_to_string_ext, adj.get(), 2);
    EXPECT_EQ(text.find("AUTHORITY"), std::string::npos);
    Owned adj2(ox_adjhcs_from_string(text.c_str()));
    ASSERT_TRUE(adj2);
    EXPECT_EQ(ox_adjhcs_eq(adj.get(), adj2.get()), 1);
    double xy[2] = {1000.0, 2000.0};
    ASSERT_EQ(ox_coordsys_to_adjhcs(adj.get(), 1, xy), 1);
    EXPECT_DOUBLE_EQ(xy[0], 2100.0 / 0.3048);
    EXPECT_DOUBLE_EQ(xy[1], 3950.0 / 0.3048);
    ASSERT_EQ(ox_adjhcs_to_coordsys(adj.get(), 1, xy), 1);
    EXPECT_NEAR(xy[0], 1000.0, 1e-9);
    EXPECT_NEAR(xy[1], 2000.0, 1e-9);
    EXPECT_EQ(ox_adjhcs_to_coordsys(nullptr, 1, xy), 0);
    const double singular[6] = {0, 0, 0, 0, 0, 0};
    ox_array_values_set(ox_adjhcs_array(adj.get()), 6, singular);
    EXPECT_EQ(ox_adjhcs_to_coordsys(adj.get(), 1, xy), 0);
    EXPECT_NEAR(xy[0], 1000.0, 1e-9);  // left as given
}
