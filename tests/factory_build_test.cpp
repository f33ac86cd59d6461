// Building objects by code: status, authority stamps, replaced codes,
// superseded definitions and the catalogue rows that callers rely on.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "object/ox_object.h"
#include "ox.h"
#include "test_util.h"

namespace {

using oxtest::Owned;

std::string name_of(const ox_object *h) {
    char name[OX_NAME_SIZE];
    ox_coordsys_name(h, name);
    if (!name[0]) ox_datum_name(h, name);
    if (!name[0]) ox_spheroid_name(h, name);
    if (!name[0]) ox_unit_name(h, name);
    if (!name[0]) ox_primem_name(h, name);
    if (!name[0]) ox_geogtran_name(h, name);
    if (!name[0]) ox_vertcs_name(h, name);
    if (!name[0]) ox_vdatum_name(h, name);
    return name;
}

struct Stamp {
    int32_t code;
    std::string authority;
    std::string version;
};

// The code and authority an object carries, read through its lazily built
// authority object.
Stamp stamp_of(ox_object *h) {
    ox_object *a = ox_coordsys_authority(h);
    if (!a) a = ox_datum_authority(h);
    if (!a) a = ox_spheroid_authority(h);
    if (!a) a = ox_unit_authority(h);
    if (!a) a = ox_primem_authority(h);
    if (!a) a = ox_geogtran_authority(h);
    if (!a) a = ox_vertcs_authority(h);
    if (!a) a = ox_vdatum_authority(h);
    if (!a) a = ox_projection_authority(h);
    Stamp s{0, "", ""};
    if (a) {
        char text[OX_NAME_SIZE];
        s.code = ox_authority_authcode(a);
        ox_authority_name(a, text);
        s.authority = text;
        ox_authority_version(a, text);
        s.version = text;
    }
    return s;
}

int32_t status_of(const ox_object *h) {
    return ox_geogcs_status(h) | ox_projcs_status(h) | ox_datum_status(h) | ox_spheroid_status(h) |
           ox_unit_status(h) | ox_primem_status(h) | ox_geogtran_status(h) | ox_vertcs_status(h) |
           ox_vdatum_status(h);
}

double parameter(const ox_object *projcs, const char *name) {
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(projcs, params);
    char text[OX_NAME_SIZE];
    for (ox_object *p : params) {
        ox_parameter_name(p, text);
        if (p && std::strcmp(text, name) == 0) return ox_parameter_value(p);
    }
    return NAN;
}

int parameter_count(const ox_object *projcs) {
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(projcs, params);
    int n = 0;
    for (ox_object *p : params) n += p != nullptr;
    return n;
}

int32_t geogcs_code(const ox_object *projcs) { return ox::obj_code(ox_projcs_geogcs(projcs)); }

class Factory : public ::testing::Test {
protected:
    void SetUp() override { ox_objedithome_setdir(nullptr); }
};

TEST_F(Factory, GenericAndKindBuildersAgree) {
    Owned a(ox_factory(4326)), b(ox_factory_geogcs(4326));
    ASSERT_TRUE(a);
    EXPECT_EQ(ox_geogcs_eq(a.get(), b.get()), 1);
    EXPECT_EQ(ox_geogcs_status(a.get()), OX_STATUS_CATALOGUE);
    const Stamp s = stamp_of(a.get());
    EXPECT_EQ(s.code, 4326);
    EXPECT_EQ(s.authority, "EPSG");
    EXPECT_EQ(s.version, "6.13");
    EXPECT_EQ(oxtest::text_of(ox_geogcs_to_string, a.get()), oxtest::kWgs84);
    // Option 1 writes the authority after the unit only; option 2 on every part.
    EXPECT_EQ(oxtest::text_of(ox_geogcs_to_string_ext, a.get(), 1),
              std::string(oxtest::kWgs84).insert(std::strlen(oxtest::kWgs84) - 1, ",AUTHORITY[\"EPSG\",4326]"));
    const std::string all = oxtest::text_of(ox_geogcs_to_string_ext, a.get(), 2);
    for (const char *clause : {"AUTHORITY[\"EPSG\",7030]", "AUTHORITY[\"EPSG\",6326]", "AUTHORITY[\"EPSG\",8901]",
                               "AUTHORITY[\"EPSG\",9102]"})
        EXPECT_NE(all.find(clause), std::string::npos) << clause;
}

TEST_F(Factory, DispatchFollowsTheCodeRanges) {
    const struct {
        int32_t code;
        int32_t (*is)(const ox_object *);
    } cases[] = {{4326, ox_geogcs_p},     {32633, ox_projcs_p},     {5703, ox_vertcs_p},
                 {6326, ox_datum_p},      {5103, ox_vdatum_p},      {1241, ox_geogtran_p},
                 {9001, ox_unit_p},       {9102, ox_unit_p},        {8901, ox_primem_p},
                 {7030, ox_spheroid_p},   {9603, ox_method_p},      {119624, ox_htmethod_p},
                 {43006, ox_projection_p}, {100001, ox_parameter_p}};
    for (const auto &c : cases) {
        Owned h(ox_factory(c.code));
        EXPECT_EQ(c.is(h.get()), 1) << c.code;
    }
    for (int32_t code : {0, -1, 1, 999, 5000, 99999999, INT32_MIN, INT32_MAX, 209001}) EXPECT_EQ(ox_factory(code), nullptr);
}

TEST_F(Factory, AuthorityBandsStampTheirAuthority) {
    Owned g(ox_factory_geogcs(104000));
    ASSERT_TRUE(g);
    EXPECT_EQ(name_of(g.get()), "GCS_Assumed_Geographic_1");
    const Stamp s = stamp_of(g.get());
    EXPECT_EQ(s.authority, "MAVO");
    EXPECT_EQ(s.version, "9.3.0");
    EXPECT_EQ(s.code, 104000);
    Owned web(ox_factory_projcs(102100));
    ASSERT_TRUE(web);
    EXPECT_EQ(name_of(web.get()), "WGS_1984_Web_Mercator_Auxiliary_Sphere");
    EXPECT_EQ(stamp_of(web.get()).authority, "MAVO");
    EXPECT_EQ(stamp_of(web.get()).code, 102100);
    EXPECT_EQ(ox_spheroid_flattening(ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(web.get())))), 0.0);
    EXPECT_EQ(ox_spheroid_axis(ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(web.get())))), 6378137.0);
    Owned web_epsg(ox_factory_projcs(3857));
    EXPECT_EQ(ox_projcs_eq(web.get(), web_epsg.get()), 1);
}

TEST_F(Factory, AuthorityUnits) {
    const struct {
        int32_t code;
        const char *name;
        double factor;
    } units[] = {{109002, "Yard_US", 0.9144018288036576}, {109003, "Chain", 20.1168},
                 {109004, "Link", 0.201168},              {109005, "Decimeter", 0.1},
                 {109006, "Centimeter", 0.01},            {109007, "Millimeter", 0.001},
                 {109008, "Inch", 0.0254},                {109009, "Inch_US", 0.025400050800101603},
                 {109010, "Rod", 5.0292},                 {109011, "Rod_US", 5.029210058420118},
                 {109012, "Nautical_Mile_US", 1853.248},  {9001, "Meter", 1.0},
                 {9003, "Foot_US", 1200.0 / 3937.0},      {9002, "Foot", 0.3048},
                 {9102, "Degree", M_PI / 180.0},          {9105, "Grad", M_PI / 200.0}};
    for (const auto &u : units) {
        Owned h(ox_factory_unit(u.code));
        ASSERT_TRUE(h) << u.code;
        EXPECT_EQ(name_of(h.get()), u.name);
        EXPECT_DOUBLE_EQ(ox_unit_factor(h.get()), u.factor) << u.name;
        EXPECT_EQ(stamp_of(h.get()).authority, u.code > 100000 ? "MAVO" : "EPSG");
    }
}

TEST_F(Factory, NamedSpheroidsDatumsAndSystems) {
    const struct {
        int32_t code;
        const char *name;
    } rows[] = {
        {7030, "WGS_1984"},           {7008, "Clarke_1866"},        {7001, "Airy_1830"},
        {107970, "XT_Charon_2000"},   {107902, "XT_Venus_2000"},    {6326, "D_WGS_1984"},
        {6269, "D_North_American_1983"}, {6230, "D_European_1950"}, {6626, "D_Reunion_1947"},
        {6155, "D_Dabola_1981"},      {6140, "D_North_American_1983_CSRS"},
        {6698, "D_Kerguelen_Island_1949"}, {6628, "D_Tahiti_1952"}, {6629, "D_Tahaa_1954"},
        {6314, "D_Deutsches_Hauptdreiecksnetz"}, {6683, "D_Philippine_Reference_System_1992"},
        {6739, "D_Hong_Kong_1963_67"}, {106003, "D_Fischer_1968"},  {106005, "D_Hough_1960"},
        {4326, "GCS_WGS_1984"},       {4269, "GCS_North_American_1983"}, {4617, "GCS_North_American_1983_CSRS"},
        {4626, "GCS_Reunion_1947"},   {4698, "GCS_Kerguelen_Island_1949"}, {4739, "GCS_Hong_Kong_1963_67"},
        {4628, "GCS_Tahiti_1952"},    {4314, "GCS_Deutsches_Hauptdreiecksnetz"},
        {104970, "GCS_Charon_2000"},  {8901, "Greenwich"},           {108900, "Reference_Meridian"},
        {5703, "NAVD_1988"},          {5103, "NAVD_1988"},           {1241, "NAD_1927_To_NAD_1983_NADCON"},
        {1470, "Abidjan_1987_To_WGS_1984"}, {15850, "Kerguelen_Island_1949_To_WGS_1984_1"},
        {1924, "Tahiti_1952_To_WGS_1984_1"}, {1926, "Reunion_1947_To_RGR_1992_1"},
        {1964, "RGR_1992_To_Reunion_1947_1"},
    };
    for (const auto &r : rows) {
        Owned h(ox_factory(r.code));
        ASSERT_TRUE(h) << r.code;
        EXPECT_EQ(name_of(h.get()), r.name) << r.code;
    }
    // Datum 106005 stands on the registry's Hough 1960.
    Owned hough(ox_factory_datum(106005));
    EXPECT_EQ(stamp_of(ox_datum_spheroid(hough.get())).code, 7053);
    Owned fischer(ox_factory_datum(106003));
    EXPECT_EQ(stamp_of(ox_datum_spheroid(fischer.get())).code, 107003);
    // Grads: the Paris-based French systems carry their angles in grads.
    Owned ntf(ox_factory_projcs(27572));
    ASSERT_TRUE(ntf);
    EXPECT_EQ(ox_unit_factor(ox_geogcs_unit(ox_projcs_geogcs(ntf.get()))), M_PI / 200.0);
    EXPECT_DOUBLE_EQ(parameter(ntf.get(), "Latitude_Of_Origin"), 52.0);
    EXPECT_DOUBLE_EQ(ox_primem_longitude(ox_geogcs_primem(ox_projcs_geogcs(ntf.get()))), 2.33722917);
}

TEST_F(Factory, ReplacedCodesBuildTheirReplacement) {
    Owned datum(ox_factory_datum(106043));
    ASSERT_TRUE(datum);
    EXPECT_EQ(ox_datum_status(datum.get()), OX_STATUS_REPLACED);
    EXPECT_EQ(stamp_of(datum.get()).code, 6626);
    Owned spheroid(ox_factory_spheroid(107005));
    ASSERT_TRUE(spheroid);
    EXPECT_EQ(ox_spheroid_status(spheroid.get()), OX_STATUS_REPLACED);
    EXPECT_EQ(stamp_of(spheroid.get()).code, 7053);
    EXPECT_EQ(stamp_of(spheroid.get()).authority, "EPSG");
    // The replaced-code tables of datums and geographic systems, in full.
    const int32_t datums[][2] = {
        {106001, 6760}, {106009, 6668}, {106012, 6658}, {106013, 6739}, {106016, 6713}, {106019, 6620},
        {106020, 6709}, {106021, 6707}, {106022, 6711}, {106023, 6714}, {106024, 6716}, {106025, 6672},
        {106027, 6719}, {106028, 6675}, {106030, 6725}, {106032, 6727}, {106034, 6729}, {106035, 6730},
        {106036, 6731}, {106037, 6732}, {106038, 6733}, {106039, 6708}, {106040, 6684}, {106041, 6724},
        {106042, 6698}, {106043, 6626}, {106045, 6712}, {106046, 6710}, {106047, 6717}, {106050, 6722},
        {106054, 6728}, {106055, 6615}, {106058, 6616}, {106059, 6734}, {106060, 6169}, {106061, 6715},
        {106062, 6736}, {106063, 6613}, {106067, 6735}, {106069, 6611}, {106072, 6171}, {106073, 6167},
        {106075, 6189}, {106076, 6612}, {106081, 6673}, {106088, 6758}};
    for (const auto &r : datums) {
        Owned h(ox_factory_datum(r[0]));
        ASSERT_TRUE(h) << r[0];
        EXPECT_EQ(ox_datum_status(h.get()), OX_STATUS_REPLACED) << r[0];
        EXPECT_EQ(stamp_of(h.get()).code, r[1]) << r[0];
        Owned direct(ox_factory_datum(r[1]));
        EXPECT_EQ(ox_datum_eq(h.get(), direct.get()), 1) << r[0];
    }
    const int32_t geogcs[][2] = {
        {4126, 4669},   {4140, 4617},   {4305, 4618},   {37001, 4760},  {37201, 4668},  {37204, 4658},
        {37205, 4739},  {37208, 4713},  {37211, 4620},  {37212, 4709},  {37213, 4707},  {37214, 4711},
        {37215, 4714},  {37216, 4716},  {37217, 4672},  {37219, 4719},  {37220, 4675},  {37222, 4725},
        {37224, 4727},  {37226, 4729},  {37227, 4730},  {37228, 4731},  {37229, 4732},  {37230, 4733},
        {37231, 4708},  {37232, 4684},  {37233, 4724},  {37234, 4698},  {37235, 4626},  {37237, 4712},
        {37238, 4710},  {37239, 4717},  {37242, 4722},  {37246, 4728},  {37247, 4615},  {37250, 4616},
        {37251, 4734},  {37252, 4169},  {37253, 4715},  {37254, 4736},  {37255, 4613},  {37259, 4735},
        {104104, 4611}, {104107, 4171}, {104108, 4167}, {104110, 4189}, {104111, 4612}, {104125, 4673},
        {104133, 4758}};
    for (const auto &r : geogcs) {
        Owned h(ox_factory_geogcs(r[0]));
        ASSERT_TRUE(h) << r[0];
        EXPECT_EQ(ox_geogcs_status(h.get()), OX_STATUS_REPLACED) << r[0];
        EXPECT_EQ(stamp_of(h.get()).code, r[1]) << r[0];
    }
    // A projected system replaced in the registry.
    Owned pcs(ox_factory_projcs(2155));
    ASSERT_TRUE(pcs);
    EXPECT_EQ(ox_projcs_status(pcs.get()), OX_STATUS_REPLACED);
    EXPECT_EQ(stamp_of(pcs.get()).code, 3102);  // through 2194, itself replaced
}

TEST_F(Factory, SupersededDefinitions) {
    const int32_t superseded[] = {6233, 6631, 6264, 4233, 4631, 4264, 1894, 1915, 1911,
                                  26761, 26762, 26763, 26764, 26765, 2979, 26432};
    for (int32_t code : superseded) {
        Owned h(ox_factory(code));
        ASSERT_TRUE(h) << code;
        EXPECT_EQ(status_of(h.get()), OX_STATUS_SUPERSEDED) << code;
        EXPECT_EQ(stamp_of(h.get()).code, code) << code;
    }
    // 3727 has a current definition of its own.
    Owned reunion(ox_factory_projcs(3727));
    EXPECT_EQ(ox_projcs_status(reunion.get()), OX_STATUS_CATALOGUE);
    EXPECT_EQ(name_of(reunion.get()), "Reunion_1947_TM_Reunion");
    // The old Hawaii zones keep the Old Hawaiian definitions.
    Owned hi2(ox_factory_projcs(26762));
    EXPECT_EQ(name_of(hi2.get()), "Old_Hawaiian_StatePlane_Hawaii_2_FIPS_5102");
}

TEST_F(Factory, St87OuveaAndWrongReunion) {
    Owned datum(ox_factory_datum(6635));
    ASSERT_TRUE(datum);
    EXPECT_EQ(name_of(datum.get()), "D_ST87_Ouvea");
    EXPECT_EQ(stamp_of(datum.get()).code, 6635);
    EXPECT_EQ(ox_datum_status(datum.get()), OX_STATUS_SUPERSEDED);
    EXPECT_EQ(stamp_of(ox_datum_spheroid(datum.get())).code, 7022);
    Owned geogcs(ox_factory_geogcs(4635));
    ASSERT_TRUE(geogcs);
    EXPECT_EQ(name_of(geogcs.get()), "GCS_ST87_Ouvea");
    EXPECT_EQ(ox_geogcs_status(geogcs.get()), OX_STATUS_SUPERSEDED);
    EXPECT_EQ(ox_geogcs_authority(geogcs.get()), nullptr);  // code 0: no authority clause
    EXPECT_EQ(ox_factory_code(geogcs.get()), 0);            // carries code 0, so no search
    Owned utm(ox_factory_projcs(2983));
    ASSERT_TRUE(utm);
    EXPECT_EQ(name_of(utm.get()), "ST87_Ouvea_UTM_58S");
    EXPECT_EQ(ox_projcs_status(utm.get()), OX_STATUS_SUPERSEDED);
    Owned wrong(ox_factory_projcs(2990));
    ASSERT_TRUE(wrong);
    EXPECT_EQ(name_of(wrong.get()), "Reunion_1947_TM_Reunion - wrong FE and FN");
    EXPECT_EQ(parameter(wrong.get(), "False_Easting"), 50000.0);
    EXPECT_EQ(parameter(wrong.get(), "False_Northing"), 160000.0);
    Owned right(ox_factory_projcs(3727));
    EXPECT_EQ(parameter(right.get(), "False_Easting"), 160000.0);
    EXPECT_EQ(parameter(right.get(), "False_Northing"), 50000.0);
}

TEST_F(Factory, UtmZones) {
    Owned z33(ox_factory_projcs(32633));
    ASSERT_TRUE(z33);
    EXPECT_EQ(oxtest::text_of(ox_projcs_to_string, z33.get()), oxtest::kUtm33);
    EXPECT_EQ(geogcs_code(z33.get()), 4326);
    EXPECT_EQ(stamp_of(ox_projcs_unit(z33.get())).code, 9001);
    Owned z60s(ox_factory_projcs(32760));
    EXPECT_EQ(name_of(z60s.get()), "WGS_1984_UTM_Zone_60S");
    EXPECT_EQ(parameter(z60s.get(), "Central_Meridian"), 177.0);
    EXPECT_EQ(parameter(z60s.get(), "False_Northing"), 10000000.0);
    Owned z1(ox_factory_projcs(32601));
    EXPECT_EQ(parameter(z1.get(), "Central_Meridian"), -177.0);
    // Outside the bands: the polar system of 32661 comes from a later group,
    // and 32700 is nothing.
    Owned ups(ox_factory_projcs(32661));
    ASSERT_TRUE(ups);
    EXPECT_EQ(name_of(ups.get()).find("UTM"), std::string::npos);
    EXPECT_EQ(ox_factory_projcs(32700), nullptr);
    Owned nad1(ox_factory_projcs(26901));
    EXPECT_EQ(name_of(nad1.get()), "NAD_1983_UTM_Zone_1N");
    EXPECT_EQ(geogcs_code(nad1.get()), 4269);
    Owned nad59(ox_factory_projcs(3372));
    EXPECT_EQ(name_of(nad59.get()), "NAD_1983_UTM_Zone_59N");
    Owned finland(ox_factory_projcs(2391));
    EXPECT_EQ(name_of(finland.get()), "Finland_Zone_1");
    Owned etrs(ox_factory_projcs(25832));
    EXPECT_EQ(name_of(etrs.get()), "ETRS_1989_UTM_Zone_32N");
}

// Every family of the zone table: its first and last code by name, and
// every member the same as the registry's row where the registry has one.
TEST_F(Factory, ZoneFamilyBands) {
    const struct {
        const char *name_template;
        int32_t low, high, first_zone;
    } bands[] = {
        {"WGS_1984_UTM_Zone_%dN", 32601, 32660, 1},      {"WGS_1984_UTM_Zone_%dS", 32701, 32760, 1},
        {"WGS_1972_UTM_Zone_%dN", 32201, 32260, 1},      {"WGS_1972_UTM_Zone_%dS", 32301, 32360, 1},
        {"NAD_1983_UTM_Zone_%dN", 26901, 26902, 1},      {"NAD_1983_UTM_Zone_%dN", 26903, 26923, 3},
        {"NAD_1983_UTM_Zone_%dN", 3372, 3373, 59},       {"NAD_1927_BLM_Zone_%dN", 32064, 32067, 14},
        {"NAD_1983_BLM_Zone_%dN_ftUS", 32164, 32167, 14}, {"WGS_1984_BLM_Zone_%dN_ftUS", 32664, 32667, 14},
        {"NAD_1927_UTM_Zone_%dN", 26701, 26702, 1},      {"NAD_1927_UTM_Zone_%dN", 26703, 26722, 3},
        {"NAD_1927_UTM_Zone_%dN", 3370, 3371, 59},       {"ETRF_1989_UTM_Zone_%dN", 103528, 103538, 28},
        {"ETRS_1989_UTM_Zone_%dN", 25828, 25838, 28},    {"Pulkovo_1942_GK_Zone_%dN", 28462, 28492, 2},
        {"Pulkovo_1942_GK_Zone_%d", 28402, 28432, 2},    {"Pulkovo_1995_GK_Zone_%dN", 20062, 20092, 2},
        {"Pulkovo_1995_GK_Zone_%d", 20002, 20032, 2},    {"Beijing_1954_GK_Zone_%dN", 21473, 21483, 13},
        {"Beijing_1954_GK_Zone_%d", 21413, 21423, 13},   {"ED_1950_UTM_Zone_%dN", 23028, 23038, 28},
        {"ED_1950_ED77_UTM_Zone_%dN", 2058, 2061, 38},   {"ATS_1977_UTM_Zone_%dN", 2219, 2220, 19},
        {"Finland_Zone_%d", 2391, 2394, 1},              {"SAD_1969_UTM_Zone_%dN", 29168, 29172, 18},
        {"SAD_1969_UTM_Zone_%dS", 29187, 29195, 17},     {"AGD_1966_AMG_Zone_%d", 20248, 20258, 48},
        {"AGD_1984_AMG_Zone_%d", 20348, 20358, 48},      {"GDA_1994_MGA_Zone_%d", 28348, 28358, 48},
        {"Adindan_UTM_Zone_%dN", 20135, 20138, 35},      {"Afgooye_UTM_Zone_%dN", 20538, 20539, 38},
        {"Ain_el_Abd_UTM_Zone_%dN", 20436, 20440, 36},   {"Aratu_UTM_Zone_%dS", 20822, 20824, 22},
        {"Batavia_UTM_Zone_%dS", 21148, 21150, 48},      {"Bogota_UTM_Zone_%dN", 21817, 21818, 17},
        {"Camacupa_UTM_Zone_%dS", 22032, 22033, 32},     {"Corrego_Alegre_UTM_Zone_%dS", 22521, 22525, 21},
        {"Fahud_UTM_Zone_%dN", 23239, 23240, 39},        {"Indonesian_1974_UTM_Zone_%dN", 23846, 23853, 46},
        {"Indonesian_1974_UTM_Zone_%dS", 23886, 23894, 46}, {"Indian_1954_UTM_Zone_%dN", 23946, 23948, 46},
        {"Indian_1975_UTM_Zone_%dN", 24047, 24048, 47},  {"Kertau_UTM_Zone_%dN", 24547, 24548, 47},
        {"La_Canoa_UTM_Zone_%dN", 24718, 24721, 18},     {"Nahrwan_1967_UTM_Zone_%dN", 27038, 27040, 38},
        {"Nord_Sahara_1959_UTM_Zone_%dN", 30729, 30732, 29}, {"PSAD_1956_UTM_Zone_%dN", 24817, 24821, 17},
        {"PSAD_1956_UTM_Zone_%dS", 24877, 24882, 17},    {"Sapper_Hill_1943_UTM_Zone_%dS", 29220, 29221, 20},
        {"Sudan_UTM_Zone_%dN", 29635, 29636, 35},        {"Tananarive_1925_UTM_Zone_%dS", 29738, 29739, 38},
        {"TC_1948_UTM_Zone_%dN", 30339, 30340, 39},      {"Timbalai_1948_UTM_Zone_%dN", 29849, 29850, 49},
        {"Argentina_Zone_%d", 22191, 22197, 1},          {"POSGAR_1994_Argentina_Zone_%d", 22181, 22187, 1},
        {"POSGAR_1998_Argentina_Zone_%d", 22171, 22177, 1}, {"Germany_Zone_%d", 31491, 31495, 1},
        {"NGN_UTM_Zone_%dN", 31838, 31839, 38},          {"Tete_UTM_Zone_%dS", 2736, 2737, 36},
        {"Moznet_UTM_Zone_%dS", 3036, 3037, 36},         {"Indian_1960_UTM_Zone_%dN", 3148, 3149, 48},
        {"NGO_1948_UTM_Zone_%dN", 102132, 102135, 32},   {"Tokyo_UTM_Zone_%dN", 3092, 3096, 51},
        {"JGD_2000_UTM_Zone_%dN", 3097, 3101, 51},       {"NAD_1927_DEF_1976_UTM_Zone_%dN", 2027, 2030, 15},
        {"NAD_1927_CGQ77_UTM_Zone_%dN", 2031, 2035, 17}, {"Old_Hawaiian_UTM_Zone_%dN", 102114, 102115, 4},
        {"PDO_1993_UTM_Zone_%dN", 3439, 3440, 39},       {"Kalianpur_1937_UTM_Zone_%dN", 24305, 24306, 45},
        {"Kalianpur_1962_UTM_Zone_%dN", 24311, 24313, 41}, {"Kalianpur_1975_UTM_Zone_%dN", 24342, 24347, 42},
        {"Hong_Kong_1980_UTM_Zone_%dN", 102141, 102142, 49}, {"Dabola_1981_UTM_Zone_%dN", 3461, 3462, 28},
        {"ELD_1979_UTM_Zone_%dN", 2077, 2080, 32},       {"Yemen_NGN_1996_UTM_Zone_%dN", 2089, 2090, 38},
        {"Arc_1950_UTM_Zone_%dS", 20934, 20936, 34},     {"Arc_1960_UTM_Zone_%dS", 21035, 21037, 35},
        {"Arc_1960_UTM_Zone_%dN", 21095, 21097, 35},     {"Cape_UTM_Zone_%dS", 22234, 22236, 34},
        {"Conakry_1905_UTM_Zone_%dN", 31528, 31529, 28}, {"NZGD_2000_UTM_Zone_%dS", 2133, 2135, 58},
        {"NZGD_1949_UTM_Zone_%dS", 27258, 27260, 58},    {"SIRGAS_UTM_Zone_%dN", 31986, 31991, 17},
        {"SIRGAS_UTM_Zone_%dS", 31992, 32000, 17},       {"SIRGAS_2000_UTM_Zone_%dN", 31971, 31976, 17},
        {"SIRGAS_2000_UTM_Zone_%dS", 31977, 31985, 17},  {"NAD_1983_CSRS_UTM_Zone_%dN", 2955, 2957, 11},
        {"NAD_1983_CSRS_UTM_Zone_%dN", 3158, 3160, 14},  {"NAD_1983_CSRS_UTM_Zone_%dN", 2958, 2962, 17},
        {"MGI_Balkans_%d", 31275, 31277, 5},             {"South_Yemen_GK_Zone_%d", 2395, 2396, 8},
        {"Hanoi_1972_GK_Zone_%d", 2044, 2045, 18},       {"MGI_3_Degree_Gauss_Zone_%d", 31265, 31268, 5},
        {"UWPP_2000_PAS_%d", 102195, 102198, 5},         {"ETRS_1989_UWPP_2000_PAS_%d", 102174, 102177, 5},
        {"DHDN_3_Degree_Gauss_Zone_%d", 31466, 31469, 2}, {"Pulkovo_1942_Adj_1983_3_Degree_GK_Zone_%d", 2397, 2399, 3},
        {"ETRS_1989_Poland_CS2000_Zone_%d", 2176, 2179, 5}, {"ED_1950_3_Degree_GK_Zone_%d", 2206, 2212, 9},
        {"ED_1950_Turkey_%d", 2181, 2187, 9},            {"REGVEN_UTM_Zone_%dN", 2201, 2203, 18},
        {"Qornoq_1927_UTM_Zone_%dN", 2216, 2217, 22},    {"Xian_1980_GK_Zone_%d", 2327, 2337, 13},
        {"Xian_1980_3_Degree_GK_Zone_%d", 2349, 2369, 25}, {"Beijing_1954_3_Degree_GK_Zone_%d", 2401, 2421, 25},
        {"Pulkovo_1942_3_Degree_GK_Zone_%d", 2523, 2549, 7}, {"Pulkovo_1942_3_Degree_GK_Zone_%d", 2551, 2581, 34},
        {"Pulkovo_1995_3_Degree_GK_Zone_%d", 2641, 2698, 7}, {"MONREF_1997_UTM_Zone_%dN", 102224, 102228, 46},
    };
    char expected[OX_NAME_SIZE];
    for (const auto &b : bands) {
        for (int32_t code : {b.low, b.high}) {
            Owned h(ox_factory_projcs(code));
            ASSERT_TRUE(h) << code;
            std::snprintf(expected, sizeof expected, b.name_template, code - b.low + b.first_zone);
            EXPECT_EQ(name_of(h.get()), expected) << code;
            EXPECT_EQ(ox_projcs_status(h.get()), OX_STATUS_CATALOGUE) << code;
            EXPECT_EQ(parameter_count(h.get()), 5) << code;
            EXPECT_FALSE(std::isnan(parameter(h.get(), "Central_Meridian"))) << code;
        }
    }
}

TEST_F(Factory, ZoneFamiliesAgreeWithTheRegistryRows) {
    FILE *f = std::fopen(OX_TEST_DATA_DIR "/zone_families.csv", "r");
    ASSERT_NE(f, nullptr);
    char line[512];
    ASSERT_NE(std::fgets(line, sizeof line, f), nullptr);  // header
    int rows = 0;
    while (std::fgets(line, sizeof line, f)) {
        int code, geogcs, projection, unit;
        char name[OX_NAME_SIZE];
        double fe, fn, cm, k, lat0;
        ASSERT_EQ(std::sscanf(line, "%d,%63[^,],%d,%d,%d,%lf,%lf,%lf,%lf,%lf", &code, name, &geogcs, &projection,
                              &unit, &fe, &fn, &cm, &k, &lat0),
                  10)
            << line;
        Owned h(ox_factory_projcs(code));
        ASSERT_TRUE(h) << code;
        EXPECT_EQ(name_of(h.get()), name);
        EXPECT_EQ(geogcs_code(h.get()), geogcs) << code;
        EXPECT_EQ(stamp_of(ox_projcs_projection(h.get())).code, projection) << code;
        EXPECT_EQ(stamp_of(ox_projcs_unit(h.get())).code, unit) << code;
        EXPECT_DOUBLE_EQ(parameter(h.get(), "False_Easting"), fe) << code;
        EXPECT_DOUBLE_EQ(parameter(h.get(), "False_Northing"), fn) << code;
        EXPECT_DOUBLE_EQ(parameter(h.get(), "Central_Meridian"), cm) << code;
        EXPECT_DOUBLE_EQ(parameter(h.get(), "Scale_Factor"), k) << code;
        EXPECT_DOUBLE_EQ(parameter(h.get(), "Latitude_Of_Origin"), lat0) << code;
        ++rows;
    }
    std::fclose(f);
    EXPECT_GT(rows, 900);
}

// One member of every family whose codes follow no offset rule (the
// registry has no row left of the ISG and Greenwich-based Norway families).
TEST_F(Factory, ListedZoneFamilies) {
    const struct {
        int32_t code;
        const char *name;
    } members[] = {
        {2009, "NAD_1927_CGQ77_MTM_3_SCoPQ"}, {2017, "NAD_1927_DEF_1976_MTM_8"}, {2068, "ELD_1979_Libya_5"},
        {2319, "ED_1950_TM27"}, {2338, "Xian_1980_GK_CM_75E"}, {2370, "Xian_1980_3_Degree_GK_CM_75E"},
        {2422, "Beijing_1954_3_Degree_GK_CM_75E"}, {2443, "JGD_2000_Japan_Zone_1"},
        {2582, "Pulkovo_1942_3_Degree_GK_CM_21E"}, {2637, "Pulkovo_1942_3_Degree_GK_CM_177W"},
        {2699, "Pulkovo_1995_3_Degree_GK_CM_21E"}, {2755, "Pulkovo_1995_3_Degree_GK_CM_177W"},
        {2935, "Pulkovo_1942_CS63_Zone_A1"}, {2939, "Pulkovo_1942_CS63_Zone_K2"}, {2945, "NAD_1983_CSRS_MTM_3"},
        {3054, "Hjorsey_1955_UTM_Zone_26N"}, {3126, "ETRS_1989_ETRS-GK19FIN"}, {3154, "NAD_1983_CSRS_UTM_Zone_7N"},
        {3169, "RGNC_1991-93_UTM_Zone_57S"}, {3178, "Greenland_1996_UTM_Zone_18N"},
        {3190, "LGD2006_Libya_TM_Zone_5"}, {3199, "LGD2006_UTM_Zone_32N"}, {3296, "RGPF_UTM_Zone_5S"},
        {3316, "Kasai_1953_Congo_TM_Zone_22"}, {3318, "IGC_1962_Congo_TM_Zone_12"},
        {3329, "Pulkovo_1942_Adj_1958_3_Degree_GK_Zone_5"}, {3333, "Pulkovo_1942_Adj_1958_GK_Zone_3"},
        {3339, "IGCB_1955_Congo_TM_Zone_12"}, {3343, "Mauritania_1999_UTM_Zone_28N"},
        {3367, "IGN_Astro_1960_UTM_Zone_28N"}, {3391, "Karbala_1979_Polservice_UTM_Zone_37N"},
        {3396, "PD/83_GK_Zone_3"}, {3398, "RD/83_GK_Zone_4"}, {3405, "VN_2000_UTM_Zone_48N"},
        {3449, "JAD_2001_UTM_Zone_17N"}, {3771, "NAD_1927_3TM_111"}, {3775, "NAD_1983_3TM_111"},
        {23830, "DGN_1995_Indonesia_TM-3_Zone_46.2"}, {23866, "DGN_1995_UTM_Zone_46N"},
        {23877, "DGN_1995_UTM_Zone_47S"}, {25391, "Philippines_Zone_I"}, {25395, "Philippines_Zone_V"},
        {26331, "Minna_UTM_Zone_31N"}, {27391, "NGO_1948_Oslo_Norway_Zone_1"}, {30161, "Japan_Zone_1"},
        {30179, "Japan_Zone_19"}, {31257, "MGI_Austria_GK_M28"}, {31284, "MGI_M28"}, {31288, "MGI_Ferro_M28"},
        {32081, "NAD_1927_MTM_1"}, {32181, "NAD_1983_MTM_1"}, {32197, "NAD_1983_MTM_17"},
    };
    for (const auto &m : members) {
        Owned h(ox_factory_projcs(m.code));
        ASSERT_TRUE(h) << m.code;
        EXPECT_EQ(name_of(h.get()), m.name);
        EXPECT_EQ(parameter_count(h.get()), 5) << m.code;
    }
    // The per-member values of families with no linear rule.
    const struct {
        int32_t code;
        double central_meridian, latitude_of_origin, false_easting;
    } values[] = {
        {32181, -53.0, 0.0, 304800.0},     {32197, -96.0, 0.0, 304800.0},
        {30169, 139.0 + 50.0 / 60.0, 36.0, 0.0},        {23830, 94.5, 0.0, 200000.0},
        {3771, -111.0, 0.0, 0.0},          {3126, 19.0, 0.0, 500000.0},
        {27391, -4.666666666666667, 58.0, 0.0},
    };
    for (const auto &v : values) {
        Owned h(ox_factory_projcs(v.code));
        ASSERT_TRUE(h) << v.code;
        EXPECT_NEAR(parameter(h.get(), "Central_Meridian"), v.central_meridian, 1e-12) << v.code;
        EXPECT_NEAR(parameter(h.get(), "Latitude_Of_Origin"), v.latitude_of_origin, 1e-12) << v.code;
        EXPECT_EQ(parameter(h.get(), "False_Easting"), v.false_easting) << v.code;
    }
}

TEST_F(Factory, StatePlaneGroups) {
    const struct {
        int32_t code;
        const char *name;
        int32_t unit;
    } rows[] = {
        {26733, "NAD_1927_StatePlane_Alaska_3_FIPS_5003", 9003},
        {26934, "NAD_1983_StatePlane_Alaska_4_FIPS_5004", 9001},
        {2235, "NAD_1983_StatePlane_Delaware_FIPS_0700_Feet", 9003},
        {2222, "NAD_1983_StatePlane_Arizona_East_FIPS_0201_Feet_Intl", 9002},
        {26801, "NAD_Michigan_StatePlane_Michigan_East_FIPS_2101", 9003},
        {26813, "NAD_Michigan_StatePlane_Michigan_South_FIPS_2113", 9003},
        {3991, "Puerto_Rico_StatePlane_Puerto_Rico_FIPS_5201", 9003},
        {3102, "American_Samoa_1962_StatePlane_American_Samoa_FIPS_5300", 9003},
        {3562, "Old_Hawaiian_StatePlane_Hawaii_2_FIPS_5102", 9003},
        {65061, "NAD_1927_StatePlane_Guam_FIPS_5400", 9003},
        {65161, "NAD_1983_StatePlane_Guam_FIPS_5400", 9001},
        {2204, "NAD_1927_StatePlane_Tennessee_FIPS_4100", 9003},
        {2205, "NAD_1983_StatePlane_Kentucky_North_FIPS_1601", 9001},
        {3088, "NAD_1983_StatePlane_Kentucky_FIPS_1600", 9001},
        {32099, "NAD_1927_StatePlane_Louisiana_Offshore_FIPS_1703", 9003},
        {32199, "NAD_1983_StatePlane_Louisiana_Offshore_FIPS_1703", 9001},
        {26799, "NAD_1927_StatePlane_California_VII_FIPS_0407", 9003},
    };
    for (const auto &r : rows) {
        Owned h(ox_factory_projcs(r.code));
        ASSERT_TRUE(h) << r.code;
        EXPECT_EQ(name_of(h.get()), r.name);
        EXPECT_EQ(stamp_of(ox_projcs_unit(h.get())).code, r.unit) << r.code;
    }
    // Lambert 2SP zones: six parameters, the standard parallels as published.
    Owned texas(ox_factory_projcs(32040));
    ASSERT_TRUE(texas);
    EXPECT_EQ(name_of(texas.get()), "NAD_1927_StatePlane_Texas_South_Central_FIPS_4204");
    EXPECT_EQ(parameter_count(texas.get()), 6);
    EXPECT_DOUBLE_EQ(parameter(texas.get(), "Standard_Parallel_1"), 28.383333333333333);
    EXPECT_DOUBLE_EQ(parameter(texas.get(), "False_Easting"), 2000000.0);
}

TEST_F(Factory, NamedNationalSystems) {
    const struct {
        int32_t code;
        const char *name;
    } rows[] = {
        {2100, "Greek_Grid"},       {20499, "Bahrain_State_Grid"}, {21897, "Colombia_Bogota_Zone"},
        {2043, "Abidjan_1987_UTM_Zone_29N"}, {2165, "Abidjan_1987_TM_5_NW"}, {31154, "Zanderij_TM_54_NW"},
        {30493, "Voirol_1879_Nord_Algerie_Ancienne"}, {102592, "Nord_Algerie_Degree"},
        {27592, "NTF_Paris_Centre_France"}, {27700, "OSGB_1936_British_National_Grid"},
        {3336, "Kerguelen_1949_UTM_42S"}, {2976, "Tahiti_1952_UTM_6S"},
        {54009, "World_Mollweide"},  {53009, "Sphere_Mollweide"},
        {102003, "USA_Contiguous_Albers_Equal_Area_Conic"}, {102018, "North_Pole_Stereographic"},
        {102014, "Europe_Lambert_Conformal_Conic"}, {3035, "ETRS_1989_LAEA_Europe"},
    };
    for (const auto &r : rows) {
        Owned h(ox_factory_projcs(r.code));
        ASSERT_TRUE(h) << r.code;
        EXPECT_EQ(name_of(h.get()), r.name);
    }
    Owned albers(ox_factory_projcs(102003));
    EXPECT_EQ(parameter(albers.get(), "Standard_Parallel_1"), 29.5);
    EXPECT_EQ(parameter(albers.get(), "Standard_Parallel_2"), 45.5);
    EXPECT_EQ(parameter(albers.get(), "Latitude_Of_Origin"), 37.5);
    EXPECT_EQ(geogcs_code(albers.get()), 4269);
}

// Every row of every catalogue kind builds; every name fits; every
// projected system has exactly the parameters its projection uses.
TEST_F(Factory, EveryCatalogueCodeBuildsAndWritesAReadableString) {
    char text[OX_OBJSTRING_SIZE];
    int built = 0;
    const ox_coderange_set *set = ox_factory_coderanges_projcs();
    for (int32_t b = 0; b < set->count; ++b)
        for (int32_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code) {
            Owned h(ox_factory_projcs(code));
            if (!h) continue;
            ++built;
            ox_projcs_to_string_ext(h.get(), 2, text);
            ASSERT_NE(text[0], '\0') << code;
            Owned back(ox_projcs_from_string(text));
            ASSERT_TRUE(back) << code << " " << text;
            // Superseded definitions carry old names that reading renames.
            if (ox_projcs_status(h.get()) != OX_STATUS_SUPERSEDED) {
                ASSERT_EQ(ox_projcs_eq(back.get(), h.get()), 1) << code;
            }
            ox_object *defaults[OX_PARAMETER_SLOTS];
            ox_object *params[OX_PARAMETER_SLOTS];
            ox_projcs_parameters(h.get(), params);
            ox_parameter_projection_defaults(ox_projcs_projection(h.get()), defaults);
            for (int s = 0; s < OX_PARAMETER_SLOTS; ++s) {
                // Every parameter sits in a slot the projection uses.
                if (params[s]) {
                    EXPECT_NE(defaults[s], nullptr) << code << " slot " << s;
                }
                ox_parameter_del(defaults[s]);
            }
        }
    EXPECT_GT(built, 3200);
}

}  // namespace

namespace {

// Every allocation of a build may fail: the builder answers null or a whole
// object and leaves nothing behind.
TEST_F(Factory, AllocationFailuresLeaveNothingBehind) {
    for (int32_t code : {4326, 32633, 30169, 26761, 2990, 4635, 6635, 106043, 107005, 1241, 5703, 115700, 102100})
        oxtest::every_allocation_fails([code] { return ox_factory(code); }, "factory");
    oxtest::every_allocation_fails([] {
        int32_t count = 0;
        ox_predefined_entry *list = ox_predefined_primem(&count);
        const bool whole = list != nullptr && count == 15;
        if (list == nullptr) {
            EXPECT_EQ(count, 0);
        }
        ox_table_del(list);
        return whole ? ox_unit_new("done", 1.0) : nullptr;
    }, "predefined list");
    oxtest::every_allocation_fails([] {
        int32_t count = -1;
        int32_t *list = ox_factory_spheroid_codelist(&count);
        if (list == nullptr) {
            EXPECT_EQ(count, 0);
        }
        ox_factory_codelist_del(list);
        return list != nullptr ? ox_unit_new("done", 1.0) : nullptr;
    }, "code list");
}

TEST_F(Factory, HostileDefinitionStrings) {
    std::string long_name(100000, 'A');
    EXPECT_EQ(ox_factory_defstring_to_int(long_name.c_str()), 0);
    long_name.replace(0, 7, "OX_GCS_");
    EXPECT_EQ(ox_factory_defstring_to_int(long_name.c_str()), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("OX_"), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("\xff\xfe\x80"), 0);
    EXPECT_EQ(ox_factory_defstring_to_int("O X _ G C S _"), 0);
    for (int32_t code : {INT32_MIN, -1, 0, 43000, 43500, 100000, 119700, INT32_MAX})
        EXPECT_EQ(ox_factory_int_to_defstring(code), nullptr) << code;
}

}  // namespace
