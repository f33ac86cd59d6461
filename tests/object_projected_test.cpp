// Parameters, projections and projected systems; the projection registry
// and the parameter list.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "object/ox_object.h"
#include "projection/ox_parmlist.h"
#include "projection/ox_projlist.h"
#include "projection/ox_projlist.h"
#include "test_util.h"

using namespace oxtest;

TEST(ProjectionRegistry, EveryCodeOnceAndAliases) {
    const auto rows = ox::projlist_rows();
    ASSERT_EQ(rows.size(), 59u);
    std::set<int> codes;
    for (const ox::ProjRow *row : rows) codes.insert(row->code);
    EXPECT_EQ(codes.size(), 59u);
    EXPECT_EQ(*codes.begin(), 43001);
    EXPECT_EQ(*codes.rbegin(), 43059);
    EXPECT_EQ(ox::projlist_find_by_code(43000), nullptr);
    EXPECT_EQ(ox::projlist_find_by_code(43060), nullptr);
    EXPECT_STREQ(ox::projlist_find_by_code(43057)->name, "Robinson_Legacy");
    EXPECT_EQ(ox::projlist_find_by_name("No_Such_Projection"), nullptr);
    // Gauss-Kruger and Transverse Mercator share every routine.
    const ox::ProjRow *gk = ox::projlist_find_by_code(43005), *tm = ox::projlist_find_by_code(43006);
    EXPECT_EQ(gk->forward, tm->forward);
    EXPECT_EQ(gk->inverse, tm->inverse);
    EXPECT_EQ(gk->constants, tm->constants);
}

TEST(ProjectionObject, ConstructionNamesAndCodes) {
    Owned alias(ox_projection_from_string("PROJECTION[\"Lambert_Conformal_Conic_1SP\"]"));
    ASSERT_TRUE(alias);
    EXPECT_EQ(name_of(alias.get()), "Lambert_Conformal_Conic");
    EXPECT_EQ(ox::obj_code(alias.get()), 43020);
    EXPECT_EQ(ox_projection_status(alias.get()), OX_STATUS_STRING);

    Owned own(ox_projection_new("Lambert_Conformal_Conic_1SP", ox_projection_forward(nullptr),
                                ox_projection_inverse(nullptr), nullptr));
    ASSERT_TRUE(own);
    EXPECT_EQ(name_of(own.get()), "Lambert_Conformal_Conic_1SP");
    EXPECT_EQ(ox::obj_code(own.get()), -1);  // the code look-up ignores aliases
    EXPECT_EQ(ox_projection_horizon(own.get()), ox_projection_horizon(nullptr));  // default world horizon
    EXPECT_EQ(ox::projection_constants(own.get()), nullptr);

    Owned by_name(ox_projection_new("Mercator", nullptr, nullptr, nullptr));
    ASSERT_TRUE(by_name);
    EXPECT_EQ(ox::obj_code(by_name.get()), 43004);
    EXPECT_EQ(ox_projection_forward(by_name.get()), ox::projlist_find_by_code(43004)->forward);
    EXPECT_EQ(ox::projection_constants(by_name.get()), nullptr);  // never filled by the constructor
    EXPECT_EQ(ox_projection_new("Unknown", nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(ox_projection_new(nullptr, nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(ox_projection_from_string("PROJECTION[\"Unknown\"]"), nullptr);

    Owned factory(ox_factory_projection(43006));
    ASSERT_TRUE(factory);
    EXPECT_EQ(ox_projection_status(factory.get()), OX_STATUS_CATALOGUE);
    EXPECT_EQ(ox::projection_constants(factory.get()), ox::projlist_find_by_code(43006)->constants);
    Owned copy(ox_projection_clone(factory.get()));
    EXPECT_EQ(ox::projection_constants(copy.get()), ox::projection_constants(factory.get()));
    EXPECT_EQ(ox_projection_eq(factory.get(), copy.get()), 1);
    EXPECT_EQ(text_of(ox_projection_to_string_ext, factory.get(), 1),
              "PROJECTION[\"Transverse_Mercator\",AUTHORITY[\"MAVO\",43006]]");

    // Null or invalid projections reach identity routines.
    double pts[2] = {1.5, -2.5};
    EXPECT_EQ(ox_projection_forward(nullptr)(nullptr, nullptr, 1, pts, nullptr, nullptr), 1);
    EXPECT_EQ(pts[0], 1.5);
    EXPECT_EQ(ox_projection_horizon_pcs(nullptr), nullptr);
    EXPECT_EQ(ox_projection_horizon_gcs_raster(nullptr), nullptr);
    EXPECT_EQ(ox_projection_horizon_pcs_raster(nullptr), nullptr);
}

TEST(ParameterList, IndexRules) {
    auto index_of = [](const char *name) {
        Owned p(ox_parameter_new(name, 0.0));
        return ox_parameter_index(p.get());
    };
    EXPECT_EQ(index_of("False_Easting"), 0);
    EXPECT_EQ(index_of("false northing"), 1);
    EXPECT_EQ(index_of("Central_Meridian"), 2);
    EXPECT_EQ(index_of("Longitude_Of_Origin"), 2);
    EXPECT_EQ(index_of("Scale_Factor"), 5);
    EXPECT_EQ(index_of("Height"), 15);
    EXPECT_EQ(index_of("Dataset_conus"), 15);
    EXPECT_EQ(index_of("dataset_x"), 15);
    EXPECT_EQ(index_of("Dataset_"), -1);  // the prefix alone names no parameter
    EXPECT_EQ(index_of("Unknown_Parameter"), -1);
    EXPECT_EQ(ox_parameter_index(nullptr), -2);
    Owned u(ox_unit_new("u", 1));
    EXPECT_EQ(ox_parameter_index(u.get()), -2);

    // The list's own "Dataset_" row is reached by its code.
    Owned by_code(ox_factory_parameter(100047));
    EXPECT_EQ(ox_parameter_index(by_code.get()), 15);
    Owned grid(ox_parameter_new("x", 0));
    ASSERT_TRUE(ox_parameter_name_set(grid.get(), "Dataset_ntv2_0"));
    EXPECT_EQ(ox_parameter_index(grid.get()), 15);

    // A renamed parameter keeps the code, and so the slot, of its old name.
    Owned cm(ox_parameter_new("Central_Meridian", 15.0));
    EXPECT_EQ(ox::obj_code(cm.get()), 100010);
    ASSERT_TRUE(ox_parameter_name_set(cm.get(), "Something_Else"));
    EXPECT_EQ(ox_parameter_index(cm.get()), 2);
    EXPECT_EQ(ox_parameter_name_set(cm.get(), nullptr), 0);
    EXPECT_EQ(ox_parameter_value_set(u.get(), 1.0), 0);
    EXPECT_EQ(ox_parameter_value(u.get()), 0.0);
}

TEST(ParameterList, DefaultsOfEveryProjection) {
    auto slots_of = [](int code) {
        Owned projection(ox_factory_projection(code));
        ox_object *params[16];
        const int count = ox_parameter_projection_defaults(projection.get(), params);
        std::string slots;
        int made = 0;
        for (int i = 0; i < 16; ++i)
            if (params[i] != nullptr) {
                slots += std::to_string(i) + " ";
                EXPECT_EQ(ox_parameter_status(params[i]), OX_STATUS_CATALOGUE);
                ox_parameter_del(params[i]);
                ++made;
            }
        EXPECT_EQ(count, made) << code;
        return slots;
    };
    EXPECT_EQ(slots_of(43039), "0 1 3 5 7 10 11 12 13 14 ");
    EXPECT_EQ(slots_of(43052), "0 1 15 ");
    for (int code = 43001; code <= 43059; ++code) EXPECT_NE(slots_of(code), "") << code;

    ox_object *params[16];
    params[3] = reinterpret_cast<ox_object *>(&params);  // cleared even when nothing is made
    EXPECT_EQ(ox_parameter_projection_defaults(nullptr, params), 0);
    EXPECT_EQ(params[3], nullptr);
    Owned renamed(ox_projection_new("Mercator", nullptr, nullptr, nullptr));
    ox::obj_set_code(renamed.get(), -1, nullptr, nullptr);  // the name is looked up again
    EXPECT_EQ(ox_parameter_projection_defaults(renamed.get(), params), 4);
    for (ox_object *p : params) ox_parameter_del(p);
}

namespace {
std::string utm_with(const std::string &parameters) {
    return "PROJCS[\"p\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,"
           "298.257223563]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],"
           "PROJECTION[\"Transverse_Mercator\"]," +
           parameters + "UNIT[\"Meter\",1.0]]";
}
}  // namespace

TEST(ProjectedSystem, SlotsAndEqualityWithoutName) {
    Owned p(ox_projcs_from_string(kUtm33));
    ox_object *params[16];
    ox_projcs_parameters(p.get(), params);
    EXPECT_EQ(ox_parameter_value(params[2]), 15.0);
    EXPECT_EQ(ox_parameter_value(params[5]), 0.9996);
    EXPECT_EQ(params[3], nullptr);
    std::string other = kUtm33;
    other.replace(other.find("WGS_1984_UTM_Zone_33N"), 21, "Another_Name");
    Owned q(ox_projcs_from_string(other.c_str()));
    EXPECT_EQ(ox_projcs_eq(p.get(), q.get()), 0);
    EXPECT_EQ(ox_projcs_eqnn(p.get(), q.get()), 1);
    std::string changed = other;
    changed.replace(changed.find("0.9996"), 6, "0.9997");
    Owned r(ox_projcs_from_string(changed.c_str()));
    EXPECT_EQ(ox_projcs_eqnn(p.get(), r.get()), 0);
}

TEST(ProjectedSystem, CloneWithOtherUnits) {
    Owned p(ox_projcs_from_string(
        utm_with("PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",100.0],"
                 "PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Standard_Parallel_1\",30.0],"
                 "PARAMETER[\"Scale_Factor\",0.9996],")
            .c_str()));
    ASSERT_TRUE(p);
    Owned foot(ox_unit_new("Foot", 0.3048)), grad(ox_unit_new("Grad", 0.015707963267948967));
    Owned in_feet(ox_projcs_clone_alterunits(p.get(), foot.get(), nullptr));
    ASSERT_TRUE(in_feet);
    ox_object *params[16];
    ox_projcs_parameters(in_feet.get(), params);
    EXPECT_DOUBLE_EQ(ox_parameter_value(params[0]), 500000.0 / 0.3048);
    EXPECT_DOUBLE_EQ(ox_parameter_value(params[1]), 100.0 / 0.3048);
    EXPECT_EQ(ox_parameter_value(params[2]), 15.0);
    EXPECT_EQ(ox_parameter_value(params[5]), 0.9996);
    EXPECT_EQ(ox_unit_factor(ox_projcs_unit(in_feet.get())), 0.3048);
    EXPECT_EQ(ox_geogcs_eq(ox_projcs_geogcs(in_feet.get()), ox_projcs_geogcs(p.get())), 1);

    Owned in_grads(ox_projcs_clone_alterunits(p.get(), nullptr, grad.get()));
    ASSERT_TRUE(in_grads);
    ox_projcs_parameters(in_grads.get(), params);
    EXPECT_NEAR(ox_parameter_value(params[2]), 15.0 / 0.9, 1e-12);
    EXPECT_NEAR(ox_parameter_value(params[3]), 30.0 / 0.9, 1e-12);
    EXPECT_EQ(ox_parameter_value(params[0]), 500000.0);
    EXPECT_EQ(name_of(ox_geogcs_unit(ox_projcs_geogcs(in_grads.get()))), "Grad");
    EXPECT_EQ(name_of(ox_projcs_geogcs(in_grads.get())), "GCS_WGS_1984");

    Owned same(ox_projcs_clone_alterunits(p.get(), ox_projcs_unit(p.get()), nullptr));
    EXPECT_EQ(ox_projcs_eq(same.get(), p.get()), 1);
    Owned neither(ox_projcs_clone_alterunits(p.get(), nullptr, nullptr));
    EXPECT_EQ(ox_projcs_eq(neither.get(), p.get()), 1);
    EXPECT_EQ(ox_projcs_clone_alterunits(nullptr, foot.get(), grad.get()), nullptr);
}

TEST(ProjectedSystem, ConstructorOwnershipAndConstants) {
    ox_object *params[16] = {};
    params[0] = ox_parameter_new("False_Easting", 1.0);
    ox_object *geogcs = make_geogcs();
    ox_object *projection = ox_factory_projection(43001);
    ox_object *unit = ox_unit_new("Meter", 1.0);
    EXPECT_EQ(ox_projcs_new(nullptr, geogcs, projection, params, unit), nullptr);
    EXPECT_EQ(ox_projcs_new("p", geogcs, projection, nullptr, unit), nullptr);
    EXPECT_EQ(ox_projcs_new("p", geogcs, unit, params, unit), nullptr);  // wrong-typed projection
    Owned p(ox_projcs_new("p", geogcs, projection, params, unit));
    ASSERT_TRUE(p);
    EXPECT_EQ(ox_projcs_geogcs(p.get()), geogcs);
    EXPECT_EQ(ox_projcs_projection(p.get()), projection);
    EXPECT_EQ(ox_projcs_unit(p.get()), unit);
    EXPECT_EQ(ox_projcs_isconstloaded(p.get()), 0);
    ox_projcs_unload_constants(p.get());
    EXPECT_EQ(ox_projcs_isconstloaded(nullptr), 0);
}

