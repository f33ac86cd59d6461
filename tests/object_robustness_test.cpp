// Hostile use of the object layer: null and wrong-typed handles given to
// every exported operation, allocation failures on every path of the
// readers, clones and builders (no leak, no double free), and odd input.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "object/ox_memory.h"
#include "object/ox_object.h"
#include "test_util.h"

using oxtest::Owned;

namespace {

// One object of every stored type, owned by the fixture.
struct Zoo {
    std::vector<ox_object *> all;
    Zoo() {
        all.push_back(ox_unit_new("u", 1.0));
        all.push_back(ox_primem_new("p", 0.0));
        all.push_back(ox_spheroid_new("s", 6378137.0, 0.003));
        all.push_back(ox_datum_from_string(oxtest::kWgs84));
        all.push_back(ox_geogcs_from_string(oxtest::kWgs84));
        all.push_back(ox_projcs_from_string(oxtest::kUtm33));
        all.push_back(ox_parameter_new("False_Easting", 1.0));
        all.push_back(ox_factory_projection(43006));
        all.push_back(ox_factory_method(9603));
        all.push_back(ox_geogtran_from_string(
            (std::string("GEOGTRAN[\"t\",") + oxtest::kWgs84 + "," + oxtest::kWgs84 + ",METHOD[\"NTv2\"]]").c_str()));
        all.push_back(ox_authority_new("EPSG", 4326, "6.13"));
        all.push_back(ox_vdatum_new("vd"));
        all.push_back(ox_vertcs_from_string("VERTCS[\"v\",VDATUM[\"vd\"],UNIT[\"m\",1]]"));
        all.push_back(ox_hvcoordsys_from_string(oxtest::kWgs84));
        all.push_back(ox_geoxyzcs_from_string((std::string("GEOXYZCS[\"x\",") + oxtest::kWgs84 + ",UNIT[\"m\",1]]").c_str()));
        all.push_back(ox_factory_htmethod(119624));
        const double c[6] = {1, 0, 0, 0, 1, 0};
        all.push_back(ox_array_new("a", 6, c));
        all.push_back(ox_adjhcs_new("adj", ox_geogcs_from_string(oxtest::kWgs84), ox_factory_htmethod(119624),
                                    ox_array_new("a", 6, c), ox_unit_new("u", 1.0)));
        for (ox_object *h : all) EXPECT_NE(h, nullptr);
    }
    ~Zoo() {
        for (ox_object *h : all) oxtest::delete_any(h);
    }
};

// Checks the uniform operation set of one type against every other object.
#define CHECK_COMMON_OPS(T, TAGS)                                                          \
    for (ox_object *h : zoo.all) {                                                         \
        const bool mine = (h->type & (TAGS)) == h->type;                                   \
        char buf[OX_OBJSTRING_SIZE];                                                       \
        std::strcpy(buf, "junk");                                                          \
        ox_##T##_name(h, buf);                                                             \
        if (!mine) { EXPECT_STREQ(buf, "") << #T; }                                        \
        std::strcpy(buf, "junk");                                                          \
        ox_##T##_to_string(h, buf);                                                        \
        EXPECT_EQ(mine, buf[0] != '\0') << #T;                                             \
        ox_##T##_to_string_ext(mine ? nullptr : h, 2, buf);                                \
        EXPECT_STREQ(buf, "") << #T;                                                       \
        EXPECT_EQ(ox_##T##_p(h), mine ? 1 : 0) << #T;                                      \
        if (!mine) {                                                                       \
            EXPECT_EQ(ox_##T##_status(h), 0) << #T;                                        \
            EXPECT_EQ(ox_##T##_clone(h), nullptr) << #T;                                   \
            EXPECT_EQ(ox_##T##_eq(h, h), 0) << #T;                                         \
            EXPECT_EQ(ox_##T##_authority(h), nullptr) << #T;                               \
            ox_##T##_authority_set(h, nullptr);                                            \
            ox_##T##_del(h); /* must do nothing */                                         \
        } else {                                                                           \
            Owned copy(ox_##T##_clone(h));                                                 \
            EXPECT_EQ(ox_##T##_eq(h, copy.get()), 1) << #T;                                \
        }                                                                                  \
    }                                                                                      \
    ox_##T##_del(nullptr);                                                                 \
    ox_##T##_name(nullptr, nullptr);                                                       \
    ox_##T##_to_string(nullptr, nullptr);                                                  \
    ox_##T##_to_string_ext(nullptr, 1, nullptr);                                           \
    EXPECT_EQ(ox_##T##_clone(nullptr), nullptr);                                           \
    EXPECT_EQ(ox_##T##_eq(nullptr, nullptr), 0);                                           \
    EXPECT_EQ(ox_##T##_p(nullptr), 0);                                                     \
    EXPECT_EQ(ox_##T##_status(nullptr), 0);                                                \
    EXPECT_EQ(ox_##T##_authority(nullptr), nullptr);                                       \
    ox_##T##_authority_set(nullptr, nullptr);                                              \
    EXPECT_EQ(ox_##T##_from_string(nullptr), nullptr);                                     \
    EXPECT_EQ(ox_##T##_from_string(""), nullptr);                                          \
    EXPECT_EQ(ox_##T##_from_string("]]]"), nullptr);

}  // namespace

TEST(Robustness, CommonOperationsRejectNullAndWrongTypes) {
    Zoo zoo;
    CHECK_COMMON_OPS(unit, OX_TAG_UNIT)
    CHECK_COMMON_OPS(primem, OX_TAG_PRIMEM)
    CHECK_COMMON_OPS(spheroid, OX_TAG_SPHEROID)
    CHECK_COMMON_OPS(datum, OX_TAG_DATUM)
    CHECK_COMMON_OPS(geogcs, OX_TAG_GEOGCS)
    CHECK_COMMON_OPS(projcs, OX_TAG_PROJCS)
    CHECK_COMMON_OPS(parameter, OX_TAG_PARAMETER)
    CHECK_COMMON_OPS(projection, OX_TAG_PROJECTION)
    CHECK_COMMON_OPS(method, OX_TAG_METHOD)
    CHECK_COMMON_OPS(geogtran, OX_TAG_GEOGTRAN)
    CHECK_COMMON_OPS(vdatum, OX_TAG_VDATUM)
    CHECK_COMMON_OPS(vertcs, OX_TAG_VERTCS)
    CHECK_COMMON_OPS(hvcoordsys, OX_TAG_HVCOORDSYS)
    CHECK_COMMON_OPS(geoxyzcs, OX_TAG_GEOXYZCS)
    CHECK_COMMON_OPS(htmethod, OX_TAG_HTMETHOD)
    CHECK_COMMON_OPS(array, OX_TAG_ARRAY)
    CHECK_COMMON_OPS(adjhcs, OX_TAG_ADJHCS)
    CHECK_COMMON_OPS(hvdatum, OX_TAG_DATUM | OX_TAG_VDATUM)
}

TEST(Robustness, CoordsysAndAuthorityDispatchers) {
    Zoo zoo;
    for (ox_object *h : zoo.all) {
        const bool cs = h->type == OX_TAG_GEOGCS || h->type == OX_TAG_PROJCS;
        EXPECT_EQ(ox_coordsys_p(h), cs ? 1 : 0);
        EXPECT_EQ(ox_coordsys_status(h), 0);
        char buf[OX_OBJSTRING_SIZE];
        ox_coordsys_to_string(h, buf);
        EXPECT_EQ(buf[0] != '\0', cs);
        if (!cs) {
            EXPECT_EQ(ox_coordsys_clone(h), nullptr);
            ox_coordsys_del(h);
        }
        const bool auth = h->type == OX_TAG_AUTHORITY;
        EXPECT_EQ(ox_authority_p(h), auth ? 1 : 0);
        EXPECT_EQ(ox_authority_authcode(h), auth ? 4326 : 0);
        ox_authority_version(h, buf);
        EXPECT_STREQ(buf, auth ? "6.13" : "");
        if (!auth) {
            EXPECT_EQ(ox_authority_clone(h), nullptr);
            EXPECT_EQ(ox_authority_eq(h, h), 0);
            ox_authority_del(h);
        }
    }
}

TEST(Robustness, AccessorsAndSettersOfEveryType) {
    Zoo zoo;
    ox_object *params[16];
    for (ox_object *h : zoo.all) {
        if (h->type != OX_TAG_GEOGCS) {
            EXPECT_EQ(ox_geogcs_datum(h), nullptr);
            EXPECT_EQ(ox_geogcs_primem(h), nullptr);
            EXPECT_EQ(ox_geogcs_unit(h), nullptr);
        }
        if (h->type != OX_TAG_PROJCS) {
            EXPECT_EQ(ox_projcs_geogcs(h), nullptr);
            EXPECT_EQ(ox_projcs_projection(h), nullptr);
            EXPECT_EQ(ox_projcs_unit(h), nullptr);
            EXPECT_EQ(ox_projcs_eqnn(h, h), 0);
            EXPECT_EQ(ox_projcs_clone_alterunits(h, nullptr, nullptr), nullptr);
            EXPECT_EQ(ox_projcs_isconstloaded(h), 0);
            EXPECT_EQ(ox_projcs_load_constants(h), 0);
            double xy[2] = {1, 2};
            EXPECT_EQ(ox_geog_to_proj(h, 0, xy), 0);
            ox_geog_to_proj(h, 1, xy);  // reaches the identity routine: no crash
            ox_proj_to_geog_center(h, 1, xy, 3.0);
            ox_projcs_unload_constants(h);
            params[0] = nullptr;
            ox_projcs_parameters(h, params);
        }
        if (h->type != OX_TAG_GEOGTRAN) {
            EXPECT_EQ(ox_geogtran_geogcs1(h), nullptr);
            EXPECT_EQ(ox_geogtran_geogcs2(h), nullptr);
            EXPECT_EQ(ox_geogtran_method(h), nullptr);
            EXPECT_EQ(ox_geogtran_isconstloaded(h), 0);
            EXPECT_EQ(ox_geogtran_load_constants(h), 0);
            ox_geogtran_unload_constants(h);
            ox_geogtran_parameters(h, params);
        }
        if (h->type != OX_TAG_VERTCS) {
            EXPECT_EQ(ox_vertcs_hvdatum(h), nullptr);
            EXPECT_EQ(ox_vertcs_unit(h), nullptr);
            EXPECT_EQ(ox_vertcs_clone_alterunits(h, nullptr), nullptr);
        }
        if (h->type != OX_TAG_HVCOORDSYS) {
            EXPECT_EQ(ox_hvcoordsys_coordsys(h), nullptr);
            EXPECT_EQ(ox_hvcoordsys_vertcs(h), nullptr);
        }
        if (h->type != OX_TAG_GEOXYZCS) {
            EXPECT_EQ(ox_geoxyzcs_geogcs(h), nullptr);
            EXPECT_EQ(ox_geoxyzcs_unit(h), nullptr);
        }
        if (h->type != OX_TAG_ARRAY) {
            EXPECT_EQ(ox_array_num_values(h), 0);
            EXPECT_EQ(ox_array_values_pointer(h), nullptr);
            ox_array_values_copy(h, nullptr);
            EXPECT_EQ(ox_array_values_set(h, 1, nullptr), 0);
            EXPECT_EQ(ox_array_name_set(h, "x"), 0);
        }
        if (h->type != OX_TAG_ADJHCS) {
            EXPECT_EQ(ox_adjhcs_coordsys(h), nullptr);
            EXPECT_EQ(ox_adjhcs_htmethod(h), nullptr);
            EXPECT_EQ(ox_adjhcs_array(h), nullptr);
            EXPECT_EQ(ox_adjhcs_unit(h), nullptr);
            double xy[2] = {1, 2};
            EXPECT_EQ(ox_adjhcs_to_coordsys(h, 1, xy), 0);
            EXPECT_EQ(ox_coordsys_to_adjhcs(h, 1, xy), 0);
        }
        if (h->type != OX_TAG_HTMETHOD) {
            EXPECT_EQ(ox_array_htmethod_default(h), nullptr);
            EXPECT_NE(ox_htmethod_forward(h), nullptr);
        }
        if (h->type != OX_TAG_METHOD) {
            EXPECT_NE(ox_method_forward(h), nullptr);
            EXPECT_EQ(ox_parameter_method_defaults(h, params), 0);
        }
        if (h->type != OX_TAG_PROJECTION) {
            EXPECT_EQ(ox_parameter_projection_defaults(h, params), 0);
            EXPECT_NE(ox_projection_inverse(h), nullptr);
        }
        if (h->type != OX_TAG_PARAMETER) {
            EXPECT_EQ(ox_parameter_index(h), -2);
            EXPECT_EQ(ox_parameter_value_set(h, 2.0), 0);
            EXPECT_EQ(ox_parameter_name_set(h, "x"), 0);
        }
        // Constructors refuse every wrong-typed part without taking it.
        EXPECT_EQ(ox_datum_new("d", h->type == OX_TAG_SPHEROID ? nullptr : h), nullptr);
        EXPECT_EQ(ox_geoxyzcs_new("g", h, h), nullptr);
        EXPECT_EQ(ox_hvcoordsys_new(h->type == OX_TAG_GEOGCS ? nullptr : h, h->type == OX_TAG_VERTCS ? nullptr : h),
                  nullptr);
    }
    // Parameter arrays holding something other than parameters are refused.
    ox_object *bad[16] = {};
    bad[3] = zoo.all[0];
    EXPECT_EQ(ox_projcs_new("p", zoo.all[4], zoo.all[7], bad, zoo.all[0]), nullptr);
    EXPECT_EQ(ox_vertcs_new("v", zoo.all[11], bad, zoo.all[0]), nullptr);
}

TEST(Robustness, AllocationFailuresLeaveNothingBehind) {
    const std::string transformation = std::string("GEOGTRAN[\"t\",") + oxtest::kWgs84 + "," + oxtest::kWgs84 +
                                       ",METHOD[\"Coordinate_Frame\"],PARAMETER[\"X_Axis_Translation\",1],"
                                       "PARAMETER[\"Z_Axis_Rotation\",0.5],AUTHORITY[\"EPSG\",1234]]";
    const std::string pair = std::string("HVCOORDSYS[") + oxtest::kUtm33 +
                             ",VERTCS[\"v\",VDATUM[\"vd\"],PARAMETER[\"Vertical_Shift\",2],UNIT[\"m\",1]]]";
    const std::string adjusted = std::string("ADJHCS[\"a\",") + oxtest::kUtm33 +
                                 ",HTMETHOD[\"Affine_Parametric\"],ARRAY[\"c\",6,1,0,0,0,1,0],UNIT[\"m\",1]]";
    oxtest::every_allocation_fails([] { return ox_projcs_from_string(oxtest::kUtm33); }, "projcs reader");
    oxtest::every_allocation_fails([&] { return ox_geogtran_from_string(transformation.c_str()); }, "geogtran reader");
    oxtest::every_allocation_fails([&] { return ox_hvcoordsys_from_string(pair.c_str()); }, "hvcoordsys reader");
    oxtest::every_allocation_fails([&] {
        std::string bare = pair.substr(11, pair.size() - 12);
        return ox_hvcoordsys_from_string(bare.c_str());
    }, "hvcoordsys pair reader");
    oxtest::every_allocation_fails([&] { return ox_adjhcs_from_string(adjusted.c_str()); }, "adjhcs reader");

    Owned utm(ox_projcs_from_string(oxtest::kUtm33));
    ox::obj_set_code(utm.get(), 32633, "EPSG", "6.13");
    ox_projcs_authority(utm.get());
    Owned foot(ox_unit_new("Foot", 0.3048)), grad(ox_unit_new("Grad", 0.015707963267948967));
    oxtest::every_allocation_fails([&] { return ox_projcs_clone(utm.get()); }, "projcs clone");
    oxtest::every_allocation_fails([&] { return ox_projcs_clone_alterunits(utm.get(), foot.get(), grad.get()); },
                           "projcs clone with other units");
    Owned vertical(ox_vertcs_from_string("VERTCS[\"v\",VDATUM[\"vd\"],PARAMETER[\"Vertical_Shift\",2],UNIT[\"m\",1]]"));
    oxtest::every_allocation_fails([&] { return ox_vertcs_clone_alterunits(vertical.get(), foot.get()); },
                           "vertcs clone with other units");
    Owned adj(ox_adjhcs_from_string(adjusted.c_str()));
    oxtest::every_allocation_fails([&] { return ox_adjhcs_clone(adj.get()); }, "adjhcs clone");
    oxtest::every_allocation_fails([&] {
        ox_object *params[16];
        Owned p(ox_factory_projection(43039));
        const int n = ox_parameter_projection_defaults(p.get(), params);
        for (ox_object *q : params) ox_parameter_del(q);
        return n == 10 ? ox_unit_new("done", 1.0) : nullptr;
    }, "projection defaults");
    Owned coded(oxtest::make_geogcs());
    ox::obj_set_code(coded.get(), 4326, "EPSG", "6.13");
    ox::obj_set_code(ox_geogcs_unit(coded.get()), 9102, "EPSG", "6.13");
    oxtest::every_allocation_fails([&] {
        ox_object *g = ox_geogcs_clone(coded.get());
        char buf[OX_OBJSTRING_SIZE];
        ox_geogcs_to_string_ext(g, 2, buf);  // the lazy authorities may fail to build
        return g;
    }, "writer with lazy authority");
}

TEST(Robustness, OddTextsNeverCrash) {
    const char *texts[] = {
        "PROJCS", "PROJCS[", "PROJCS[]", "PROJCS[\"\"]", "PROJCS[\"x\",GEOGCS]", "GEOGCS[,,,,]",
        "GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\",1e308,1e-308]],PRIMEM[\"p\",-0],UNIT[\"u\",1e-320]]",
        "UNIT[\"u\",1,AUTHORITY[\"A\",\"x\",\"y\"]]", "AUTHORITY[\"A\",1,2,3]", "ARRAY[\"a\",-5]",
        "ARRAY[\"a\",99999999999999999999]", "ARRAY[\"a\",2,1,X[2]]", "HVCOORDSYS[]", "HVCOORDSYS[VERTCS[]]",
        "ADJHCS[\"a\"]", "VERTCS[\"v\",DATUM[\"d\",SPHEROID[\"s\",1,0]],VDATUM[\"x\"],UNIT[\"m\",1]]",
        "PROJCS[\"p\",PROJCS[\"q\"]]", "METHOD[\"\"]", "HTMETHOD[\"nope\"]", "PARAMETER[\"x\"]",
    };
    for (const char *t : texts) {
        Owned a(ox_coordsys_from_string(t)), b(ox_geogtran_from_string(t)), c(ox_hvcoordsys_from_string(t)),
            d(ox_adjhcs_from_string(t)), e(ox_vertcs_from_string(t)), f(ox_array_from_string(t)),
            g(ox_authority_from_string(t)), h(ox_unit_from_string(t)), i(ox_hvdatum_from_string(t));
    }
    // A value that the writer cannot fit leaves "".
    std::vector<ox_object *> params(16, nullptr);
    const std::string long_name(63, 'p');
    char buf[OX_OBJSTRING_SIZE];
    Owned arr(ox_array_new("a", 0, nullptr));
    std::vector<double> many(2000, 1.0 / 3.0);
    Owned big(ox_array_new("big", 2000, many.data()));
    ox_array_to_string(big.get(), buf);
    EXPECT_STREQ(buf, "");
}
