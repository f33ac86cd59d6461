// The projected-system summary (ox_pcsinfo_generate): one system of every
// family in the registry, checked against the system's own parts, its
// horizon and its point routines; units other than metres and degrees; bad
// handles.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "projection/ox_projlist.h"
#include "projection_support.h"

namespace {

using namespace oxtest;

TEST(PcsInfo, OneSystemOfEveryFamily) {
    const std::vector<std::vector<std::string>> cases = read_csv("horizon_cases.csv");
    std::set<int> families;
    for (const auto &c : cases) {
        const ox::ProjRow *row = ox::projlist_find_by_name(c[0].c_str());
        ASSERT_NE(row, nullptr) << c[0];
        if (row->forward == ox::proj_unavailable || !families.insert(static_cast<int>(row->family)).second) continue;
        SCOPED_TRACE(c[0]);
        Params params;
        size_t at = 0;
        while (at < c[3].size()) {
            const size_t end = std::min(c[3].find(';', at), c[3].size()), eq = c[3].find('=', at);
            params.emplace_back(c[3].substr(at, eq - at), std::stod(c[3].substr(eq + 1, end - eq - 1)));
            at = end + 1;
        }
        const Owned pcs = make_projcs(c[0], params, std::stod(c[1]), std::stod(c[2]));
        ox_pcsinfo info;
        ASSERT_EQ(ox_pcsinfo_generate(pcs.get(), &info), 1);
        EXPECT_STREQ(info.name, "test");
        EXPECT_STREQ(info.projection, row->name);
        EXPECT_EQ(info.projection_code, row->code);
        EXPECT_EQ(info.family, static_cast<int>(row->family));
        const int preserves[] = {OX_PRESERVES_SHAPE, OX_PRESERVES_AREA, OX_PRESERVES_DISTANCE, 0};
        EXPECT_EQ(info.preserves, preserves[static_cast<int>(row->preserves)]);
        EXPECT_STREQ(info.linear_unit, "Meter");
        EXPECT_EQ(info.linear_factor, 1.0);
        EXPECT_STREQ(info.angular_unit, "Degree");
        EXPECT_EQ(info.prime_meridian, 0.0);
        // The parameters as the system states them.
        ASSERT_EQ(info.parameter_count, static_cast<int32_t>(params.size()));
        double fe = 0, fn = 0, cm = kNaN, lat0 = kNaN;
        for (const auto &[name, value] : params) {
            bool listed = false;
            for (int32_t k = 0; k < info.parameter_count; ++k)
                listed |= name == info.parameter_names[k] && value == info.parameter_values[k];
            EXPECT_TRUE(listed) << name;
            if (name == "False_Easting") fe = value;
            if (name == "False_Northing") fn = value;
            if (name == "Central_Meridian" || name == "Longitude_Of_Center") cm = value;
            if (name == "Latitude_Of_Origin" || name == "Central_Parallel" || name == "Latitude_Of_Center") lat0 = value;
        }
        // The central meridian and origin: the parameters, else the point at
        // the false origin.
        std::vector<double> origin = {fe, fn};
        inverse(pcs.get(), origin);
        EXPECT_NEAR(info.central_meridian, std::isnan(cm) ? origin[0] : cm, 1e-9);
        EXPECT_NEAR(info.origin_latitude, std::isnan(lat0) ? origin[1] : lat0, 1e-9);
        // The extents are the horizons'.
        for (int32_t kind : {OX_HORIZON_PROJECTED, OX_HORIZON_GEOGRAPHIC}) {
            ox_horizon *h = ox_generate_horizon(pcs.get(), kind);
            double e[4];
            ASSERT_EQ(ox_horizon_extent(h, e), 1);
            for (int k = 0; k < 4; ++k)
                EXPECT_NEAR(kind == OX_HORIZON_PROJECTED ? info.extent[k] : info.geographic_extent[k], e[k],
                            1e-9 * (1 + std::fabs(e[k])));
            ox_horizon_del(h);
        }
    }
    EXPECT_TRUE(families.count(static_cast<int>(ox::Family::kCylindrical)));
    EXPECT_TRUE(families.count(static_cast<int>(ox::Family::kPolyhedral)));
}

TEST(PcsInfo, UtmFullerAndUnits) {
    const Owned utm(ox_factory_projcs(32633));
    ox_pcsinfo info;
    ASSERT_EQ(ox_pcsinfo_generate(utm.get(), &info), 1);
    EXPECT_STREQ(info.name, "WGS_1984_UTM_Zone_33N");
    EXPECT_STREQ(info.projection, "Transverse_Mercator");
    EXPECT_EQ(info.projection_code, 43006);
    EXPECT_EQ(info.family, OX_FAMILY_CYLINDRICAL);
    EXPECT_STREQ(info.family_name, "Cylindrical");
    EXPECT_EQ(info.preserves, OX_PRESERVES_SHAPE);
    EXPECT_STREQ(info.preserves_name, "conformal");
    EXPECT_NEAR(info.central_meridian, 15.0, 1e-12);
    EXPECT_EQ(info.origin_latitude, 0.0);
    EXPECT_NEAR(info.geographic_extent[0], 5.0, 1e-12);
    EXPECT_NEAR(info.geographic_extent[2], 25.0, 1e-12);
    EXPECT_EQ(info.geographic_extent[3], 90.0);
    EXPECT_EQ(info.parameter_count, 5);
    EXPECT_STREQ(info.parameter_names[3], "Scale_Factor");
    EXPECT_EQ(info.parameter_values[3], 0.9996);

    const Owned fuller = make_projcs("Fuller", {{"False_Easting", 0}, {"False_Northing", 0}, {"Option", 0}});
    ASSERT_EQ(ox_pcsinfo_generate(fuller.get(), &info), 1);
    EXPECT_STREQ(info.family_name, "Polyhedral");
    EXPECT_STREQ(info.preserves_name, "compromise");
    EXPECT_TRUE(std::isfinite(info.central_meridian) && std::isfinite(info.origin_latitude));

    // A system in US feet on a geographic system in grads about Paris: angles
    // in degrees, the extent in feet.
    const char *text =
        "PROJCS[\"p\",GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\",6378137.0,298.257223563]],"
        "PRIMEM[\"Paris\",2.33722917],UNIT[\"Grad\",0.01570796326794897]],PROJECTION[\"Mercator\"],"
        "PARAMETER[\"False_Easting\",1000.0],PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",10.0],"
        "PARAMETER[\"Standard_Parallel_1\",0.0],UNIT[\"Foot_US\",0.3048006096012192]]";
    const Owned paris(ox_projcs_from_string(text));
    ASSERT_TRUE(paris);
    ASSERT_EQ(ox_pcsinfo_generate(paris.get(), &info), 1);
    EXPECT_NEAR(info.central_meridian, 9.0, 1e-12);
    EXPECT_NEAR(info.prime_meridian, 2.33722917, 1e-12);
    EXPECT_STREQ(info.linear_unit, "Foot_US");
    EXPECT_STREQ(info.angular_unit, "Grad");
    EXPECT_NEAR(info.geographic_extent[0], 9.0 - 180.0, 1e-9);
    EXPECT_NEAR(info.extent[0] + info.extent[2], 2000.0, 1e-6);  // about the false easting, in feet
    EXPECT_NEAR(info.extent[2] - info.extent[0], 2 * ox::kPi * kA / kFootUS, 1e-3);
}

TEST(PcsInfo, BadHandles) {
    ox_pcsinfo info;
    std::memset(&info, 0x5a, sizeof info);
    EXPECT_EQ(ox_pcsinfo_generate(nullptr, &info), 0);
    EXPECT_EQ(info.name[0], '\0');
    EXPECT_EQ(info.parameter_count, 0);
    const Owned geog(ox_factory_geogcs(4326));
    EXPECT_EQ(ox_pcsinfo_generate(geog.get(), &info), 0);
    const Owned utm(ox_factory_projcs(32633));
    EXPECT_EQ(ox_pcsinfo_generate(utm.get(), nullptr), 0);
    // A caller's projection the registry does not know: family "Other".
    ox_object *parameters[16] = {};
    Owned mine(ox_projcs_new("mine", ox_factory_geogcs(4326),
                             ox_projection_new("Mine", ox::proj_identity, ox::proj_identity, nullptr), parameters,
                             ox_factory_unit(9001)));
    ASSERT_EQ(ox_pcsinfo_generate(mine.get(), &info), 1);
    EXPECT_EQ(info.projection_code, -1);
    EXPECT_STREQ(info.family_name, "Other");
    EXPECT_EQ(info.central_meridian, 0.0);  // the identity's natural origin
    EXPECT_EQ(info.parameter_count, 0);
}

}  // namespace
