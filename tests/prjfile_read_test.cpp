// Reading legacy projection files: the grammar and its error codes, the
// numbers of the parameter lines, the vocabulary, the zone systems against
// the catalogue, the vertical readers, and files written the way older
// software wrote them.
#include <gtest/gtest.h>

#include <string>

#include "prjfile/ox_prjfile.h"
#include "test_util.h"

using oxtest::Owned;

namespace {

// Reads a text; the error code in `error`.
Owned read(const std::string &text, int32_t *error) { return Owned(ox_coordsys_from_prjstring(text.c_str(), error)); }

int32_t error_of(const std::string &text) {
    int32_t error = 1;
    Owned h = read(text, &error);
    EXPECT_EQ(h.get() == nullptr, error != 0) << text;
    return error;
}

Owned catalogue(int32_t code) { return Owned(ox_factory(code)); }

std::string data(const std::string &file) { return std::string(OX_TEST_DATA_DIR) + "/prjfiles/" + file; }

}  // namespace

TEST(PrjScan, LineEndsAndTheLastLine) {
    EXPECT_EQ(error_of(""), OX_PRJ_NO_TEXT);
    int32_t error = 0;
    EXPECT_EQ(ox_coordsys_from_prjstring(nullptr, &error), nullptr);
    EXPECT_EQ(error, OX_PRJ_NO_TEXT);
    // One line, even with its line feed, is no file.
    EXPECT_EQ(error_of("PROJECTION GEOGRAPHIC\n"), OX_PRJ_NO_TEXT);
    EXPECT_EQ(error_of("PROJECTION GEOGRAPHIC\nUNITS DD"), OX_PRJ_NO_TEXT);
    EXPECT_EQ(error_of("PROJECTION GEOGRAPHIC\nUNITS DD\n"), 0);
    EXPECT_EQ(error_of("projection geographic\nunits dd\n"), 0);
    // The last line without a line feed is not read: here it would fail.
    EXPECT_EQ(error_of("PROJECTION GEOGRAPHIC\nUNITS DD\nFOO 1"), 0);
    EXPECT_EQ(error_of("PROJECTION GEOGRAPHIC\nUNITS DD\nFOO 1\n"), OX_PRJ_UNKNOWN_KEYWORD);
    EXPECT_EQ(error_of("PROJECTION GEOGRAPHIC\n\n\r\n  \t\nDENSIFY 5\nUNITS DD\n"), 0);
    // A null error output: null and nothing else.
    EXPECT_EQ(ox_coordsys_from_prjstring("PROJECTION GEOGRAPHIC\nUNITS DD\n", nullptr), nullptr);
}

TEST(PrjScan, RecordFields) {
    ox::prj::Record r;
    ASSERT_EQ(ox::prj::scan("ZONE 10 /* comment\n  datum  nad83  harn\nzunits meters /* NAVD_1988 - VCS# = 5703\n"
                            "Units\nSWITCH\nQuadrant 4\nFORMAT x\nGENERALIZE\nFLIP\nparameters  1.0 /* a\n\n  \r\n",
                            &r),
              0);
    EXPECT_STREQ(r.zone, "10");
    EXPECT_STREQ(r.datum, "NAD83");  // the datum's first word only
    EXPECT_STREQ(r.zunits, "METERS");
    EXPECT_STREQ(r.zunits_comment, "NAVD_1988 - VCS# = 5703");  // comments keep their case
    EXPECT_STREQ(r.units, "");
    ASSERT_EQ(r.count, 2);  // "\n\n" is skipped, "  \r\n" is an empty parameter line
    EXPECT_STREQ(r.parameters[0], "1.0");
    EXPECT_STREQ(r.parameters[1], "");
    // A later keyword replaces the earlier value.
    ASSERT_EQ(ox::prj::scan("ZONE 10\nZONE 11\n", &r), 0);
    EXPECT_STREQ(r.zone, "11");
}

TEST(PrjScan, SixteenParameterLines) {
    std::string text = "PROJECTION TRANSVERSE\nPARAMETERS 1\n";
    for (int i = 2; i <= 16; ++i) text += "0\n";
    ox::prj::Record r;
    EXPECT_EQ(ox::prj::scan(text.c_str(), &r), 0);
    EXPECT_EQ(r.count, 16);
    EXPECT_EQ(ox::prj::scan((text + "0\n").c_str(), &r), OX_PRJ_TOO_MANY_PARAMETERS);
    // Lines after PARAMETERS are parameter lines, whatever they say.
    EXPECT_EQ(ox::prj::scan("PARAMETERS\nFOO\n", &r), 0);
}

TEST(PrjValues, DegreesMinutesSecondsAndDecimals) {
    struct Case {
        const char *line;
        double value;
    };
    for (const Case &c : {Case{"-0 30 0", -0.5}, Case{"45 30 0", 45.5}, Case{"12.25", 12.25}, Case{"-117 15 0.0", -117.25},
                          Case{"  29 59 59.999996", 29.0 + 59.0 / 60.0 + 59.999996 / 3600.0}, Case{"45 30", 45.5},
                          Case{"0 -30 0", -0.5}, Case{"500000.0", 500000.0}, Case{"+1.5e3", 1500.0}, Case{".5", 0.5},
                          Case{"7", 7.0}, Case{"45 30 ", 45.5}}) {
        double v = 0.0;
        ASSERT_TRUE(ox::prj::parameter_value(c.line, &v)) << c.line;
        EXPECT_DOUBLE_EQ(v, c.value) << c.line;
    }
    // Not numbers, or numbers with a tail: refused rather than misread.
    for (const char *bad : {"", "abc", "1e999", "NaN", "inf", "1,5", "45 30.5", "45 30 0 12", "45 30 x", "- 5"}) {
        double v = 0.0;
        EXPECT_FALSE(ox::prj::parameter_value(bad, &v)) << bad;
    }
    EXPECT_EQ(ox::prj::integer_field("  -33 /x"), -33);
    EXPECT_EQ(ox::prj::integer_field("X"), 0);
    EXPECT_EQ(ox::prj::integer_field("99999999999"), INT32_MAX);
}

TEST(PrjRead, GeographicSystems) {
    int32_t e = 0;
    EXPECT_TRUE(ox_geogcs_eq(read("PROJECTION GEOGRAPHIC\nDATUM NAD27\n", &e).get(), catalogue(4267).get()));
    // Without a datum the spheroid decides, Clarke 1866 when none is named.
    EXPECT_TRUE(ox_geogcs_eq(read("PROJECTION GEOGRAPHIC\nUNITS DD\n", &e).get(), catalogue(4008).get()));
    EXPECT_TRUE(ox_geogcs_eq(read("PROJECTION GEOG\nSPHEROID INT1924\n", &e).get(), catalogue(4022).get()));
    EXPECT_TRUE(ox_geogcs_eq(read("PROJECTION GEOGRAPHIC\nDATUM NONE\nSPHEROID WGS84\n", &e).get(), catalogue(4326).get()));
    // Two semi-axes: the Clarke 1880 forms, else a user-defined spheroid.
    EXPECT_TRUE(ox_geogcs_eq(read("PROJECTION GEOGRAPHIC\nSPHEROID 6378249.145  6356514.9663955\n", &e).get(),
                             catalogue(4013).get()));
    EXPECT_TRUE(ox_geogcs_eq(read("PROJECTION GEOGRAPHIC\nSPHEROID 6378249.2 6356515.0\n", &e).get(),
                             catalogue(4011).get()));
    Owned user = read("PROJECTION GEOGRAPHIC\nSPHEROID 6378000 6357000\n", &e);
    ASSERT_TRUE(user);
    EXPECT_EQ(oxtest::name_of(user.get()), "GCS_User_Defined");
    ox_object *spheroid = ox_datum_spheroid(ox_geogcs_datum(user.get()));
    EXPECT_EQ(oxtest::name_of(spheroid), "User_Defined_Spheroid");
    EXPECT_DOUBLE_EQ(ox_spheroid_flattening(spheroid), 21000.0 / 6378000.0);
    // Another angular unit: a new system named "_AltUnits".
    Owned radians = read("PROJECTION GEOGRAPHIC\nDATUM WGS84\nUNITS RADIANS\n", &e);
    ASSERT_TRUE(radians);
    EXPECT_EQ(oxtest::name_of(radians.get()), "GCS_WGS_1984_AltUnits");
    EXPECT_EQ(ox_unit_factor(ox_geogcs_unit(radians.get())), 1.0);
    // Refused: unknown names, impossible spheroids, a linear unit, a shift.
    for (const char *bad : {"DATUM MARS", "SPHEROID FOOBAR", "SPHEROID 6357000 6378000", "SPHEROID 0", "UNITS METERS",
                            "UNITS PARSECS", "XSHIFT 10"})
        EXPECT_EQ(error_of(std::string("PROJECTION GEOGRAPHIC\n") + bad + "\n"), OX_PRJ_CANNOT_BUILD) << bad;
    EXPECT_EQ(error_of("PROJECTION GEOGRAPHIC\nXSHIFT 0.0\n"), 0);
}

TEST(PrjRead, ZoneSystemsAgainstTheCatalogue) {
    struct Case {
        const char *text;
        int32_t code;
    };
    for (const Case &c : {
             Case{"PROJECTION UTM\nZONE 10\nDATUM NAD27\n", 26710},
             Case{"PROJECTION UTM\nZONE 10\nDATUM NAD83\n", 26910},
             Case{"PROJECTION UNIVERSAL\nZONE -60\nDATUM WGS84\n", 32760},
             Case{"PROJECTION UTM\nZONE 4\nDATUM OLD_HAWAIIAN\n", 102114},
             Case{"PROJECTION UTM\nZONE 10\nDATUM HPGN\n", 3740},  // a single row, not a family
             Case{"PROJECTION UTM\nZONE -55\nDATUM GDA94\n", 28355},
             Case{"PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM NAD27\nUNITS FEET\n", 26745},
             Case{"PROJECTION STATEPLANE\nZONE 405\nDATUM NAD83\n", 26945},
             Case{"PROJECTION STATEPLANE\nFIPSZONE 405\nSPHEROID GRS1980\nUNITS FEET\n", 2229},
             Case{"PROJECTION STATEPLANE\nFIPSZONE 4203\nUNITS FEET\n", 32039},
             Case{"PROJECTION STATEPLANE\nFIPSZONE 5101\nDATUM OLD_HAWAIIAN\nUNITS FEET\n", 26761},
             Case{"PROJECTION GREATBRITAIN_GRID\n\n", 27700},
             Case{"PROJECTION NEWZEALAND_GRID\nDATUM WGS84\n", 27200},
         }) {
        int32_t error = 1;
        Owned h = read(c.text, &error);
        EXPECT_EQ(error, 0) << c.text;
        EXPECT_TRUE(ox_projcs_eq(h.get(), catalogue(c.code).get())) << c.text;
    }
}

TEST(PrjRead, ZoneSystemsOutsideTheCatalogue) {
    int32_t e = 0;
    // NAD 1927 state plane in metres (the units of a projected system unless
    // the file says otherwise): the feet system converted, "_Meters".
    Owned metres = read("PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM NAD27\n", &e);
    ASSERT_TRUE(metres);
    EXPECT_EQ(oxtest::name_of(metres.get()), "NAD_1927_StatePlane_California_V_FIPS_0405_Meters");
    EXPECT_NEAR(oxtest::parameter(metres.get(), "False_Easting"), 609601.2192024384, 1e-6);
    // HPGN: the 1983 zone on the high-precision network.
    Owned harn = read("PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM HPGN\n", &e);
    ASSERT_TRUE(harn);
    EXPECT_EQ(oxtest::name_of(harn.get()), "NAD_1983_HARN_StatePlane_California_V_FIPS_0405");
    EXPECT_TRUE(ox_geogcs_eq(ox_projcs_geogcs(harn.get()), catalogue(4152).get()));
    // UTM in US feet, shifted; a zone on a datum without UTM systems.
    Owned feet = read("PROJECTION UTM\nZONE 10\nDATUM NAD83\nUNITS FEET\nXSHIFT 100\nYSHIFT -5\n", &e);
    ASSERT_TRUE(feet);
    EXPECT_EQ(oxtest::name_of(feet.get()), "NAD_1983_UTM_Zone_10N_Feet_Shifted");
    EXPECT_NEAR(oxtest::parameter(feet.get(), "False_Easting"), 500000.0 / 0.30480060960121924 + 100.0, 1e-6);
    EXPECT_EQ(oxtest::parameter(feet.get(), "False_Northing"), -5.0);
    EXPECT_EQ(ox_projcs_status(feet.get()), OX_STATUS_NEW);
    Owned clarke = read("PROJECTION UTM\nZONE -21\nSPHEROID CLARKE1880\n", &e);
    ASSERT_TRUE(clarke);
    EXPECT_EQ(oxtest::name_of(clarke.get()), "Clarke_1880_RGS_UTM_Zone_21S");
    EXPECT_EQ(oxtest::parameter(clarke.get(), "Central_Meridian"), -57.0);
    EXPECT_EQ(oxtest::parameter(clarke.get(), "False_Northing"), 10000000.0);
    // Refused: no zone (a keyword with nothing after it), an unknown zone or
    // datum, a Hawaiian datum for a mainland zone.
    for (const char *bad :
         {"PROJECTION UTM\nZONE\n", "PROJECTION UTM\nZONE 61\n", "PROJECTION STATEPLANE\nFIPSZONE 9999\n",
          "PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM WGS84\n",
          "PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM OLD_HAWAIIAN\n", "PROJECTION UTM\nZONE 10\nUNITS FURLONGS\n"})
        EXPECT_EQ(error_of(bad), OX_PRJ_CANNOT_BUILD) << bad;
}

TEST(PrjRead, ProjectionsWithParameterLines) {
    int32_t e = 0;
    // Transverse Mercator, DMS spread over lines, in international feet.
    Owned tm = read("PROJECTION TRANSVERSE\nDATUM WGS84\nUNITS 3.280839895013123\nPARAMETERS\n0.9996\n-0 30 0\n"
                    "45 30 0\n152.4\n0\n",
                    &e);
    ASSERT_TRUE(tm) << e;
    EXPECT_EQ(oxtest::name_of(tm.get()), "Transverse_Mercator");
    EXPECT_EQ(oxtest::parameter(tm.get(), "Central_Meridian"), -0.5);
    EXPECT_EQ(oxtest::parameter(tm.get(), "Latitude_Of_Origin"), 45.5);
    EXPECT_NEAR(oxtest::parameter(tm.get(), "False_Easting"), 500.0, 1e-9);  // metres on the line
    EXPECT_EQ(oxtest::name_of(ox_projcs_unit(tm.get())), "Foot");
    // A selector line picks the variant; one standard parallel fills both.
    Owned conic = read("PROJECTION EQUIDISTANT\nPARAMETERS 1\n40 0 0\n10 0 0\n30 0 0\n0\n0\n", &e);
    ASSERT_TRUE(conic) << e;
    EXPECT_EQ(oxtest::parameter(conic.get(), "Standard_Parallel_2"), 40.0);
    Owned hotine = read("PROJECTION HOTINE\nPARAMETERS\n2\n1.0\n90 0 0\n7 26 22.5\n46 57 8.66\n0\n0\n", &e);
    ASSERT_TRUE(hotine) << e;
    EXPECT_EQ(oxtest::name_of(ox_projcs_projection(hotine.get())), "Hotine_Oblique_Mercator_Azimuth_Center");
    // The polar stereographic: the hemisphere of the standard parallel.
    Owned south = read("PROJECTION POLAR\nDATUM WGS84\nPARAMETERS 0 0 0\n-71 0 0\n0\n0\n", &e);
    EXPECT_TRUE(ox_projcs_eqnn(south.get(), catalogue(3031).get()));
    // A sphere projection: the radius line makes the geographic system.
    Owned sphere = read("PROJECTION SINUSOIDAL\nPARAMETERS 6371000\n-100 0 0\n0\n0\n", &e);
    ASSERT_TRUE(sphere);
    EXPECT_EQ(oxtest::name_of(ox_projcs_geogcs(sphere.get())), "GCS_User_Defined");
    EXPECT_EQ(ox_spheroid_axis(ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(sphere.get())))), 6371000.0);
    Owned radius0 = read("PROJECTION MILLER\nSPHEROID SPHERE\nPARAMETERS 0\n0 0 0\n0\n0\n", &e);
    ASSERT_TRUE(radius0);
    EXPECT_EQ(ox_spheroid_axis(ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(radius0.get())))), 6370997.0);
    // Refused: too few or too many lines, a bad number, an unknown selector
    // or name, a negative radius.
    for (const char *bad : {"PROJECTION TRANSVERSE\nPARAMETERS 1\n0\n0\n0\n", "PROJECTION TRANSVERSE\nPARAMETERS\n",
                            "PROJECTION TRANSVERSE\nPARAMETERS 1\n0\n0\n0\n0\n0\n",
                            "PROJECTION TRANSVERSE\nPARAMETERS 1\nNaN\n0\n0\n0\n",
                            "PROJECTION TRANSVERSE\nPARAMETERS 1\n1e999\n0\n0\n0\n",
                            "PROJECTION HOTINE\nPARAMETERS 3\n1\n0\n0\n0\n0\n0\n", "PROJECTION MARS\n\n",
                            "PROJECTION\n\n", "PROJECTION SINUSOIDAL\nPARAMETERS -1\n0\n0\n0\n"})
        EXPECT_EQ(error_of(bad), OX_PRJ_CANNOT_BUILD) << bad;
}

TEST(PrjRead, VerticalUnitAndSystem) {
    int32_t e = 0;
    Owned metre(ox_zunit_from_prjstring("ZUNITS METERS /* NAVD_1988 - VCS# = 5703\n\n", &e));
    EXPECT_TRUE(ox_unit_eq(metre.get(), catalogue(9001).get()));
    Owned number(ox_zunit_from_prjstring("ZUNITS 3.2808\n\n", &e));
    EXPECT_EQ(oxtest::name_of(number.get()), "User_Defined_Unit");
    EXPECT_DOUBLE_EQ(ox_unit_factor(number.get()), 1.0 / 3.2808);
    for (const char *text : {"ZUNITS 0\n\n", "ZUNITS -1\n\n", "ZUNITS NaN\n\n", "ZUNITS 1e-320\n\n", "ZUNITS ABC\n\n"}) {
        EXPECT_EQ(ox_zunit_from_prjstring(text, &e), nullptr);
        EXPECT_EQ(e, OX_PRJ_BAD_ZUNITS) << text;
    }
    for (const char *text : {"ZUNITS NO\n\n", "ZUNITS\n\n", "UNITS METERS\n\n"}) {
        EXPECT_EQ(ox_vertcs_from_prjstring(text, &e), nullptr);
        EXPECT_EQ(e, OX_PRJ_NO_ZUNITS) << text;
    }
    // The comment names a catalogue system: that system, in the ZUNITS unit.
    Owned navd(ox_vertcs_from_prjstring("ZUNITS METERS /* NAVD_1988 - VCS# = 5703\n\n", &e));
    EXPECT_TRUE(ox_vertcs_eq(navd.get(), catalogue(5703).get()));
    Owned feet(ox_vertcs_from_prjstring("ZUNITS FEET /* navd 1988 - VCS# = 5703\n\n", &e));
    Owned altered(ox_vertcs_clone_alterunits(catalogue(5703).get(), catalogue(9003).get()));
    EXPECT_TRUE(ox_vertcs_eq(feet.get(), altered.get()));
    // A name that is not the code's, or no comment: "Unknown VCS".
    for (const char *text : {"ZUNITS METERS /* MSL - VCS# = 5703\n\n", "ZUNITS FEET\n\n"}) {
        Owned unknown(ox_vertcs_from_prjstring(text, &e));
        ASSERT_TRUE(unknown) << text;
        EXPECT_EQ(oxtest::name_of(unknown.get()), "Unknown VCS");
        EXPECT_EQ(oxtest::name_of(ox_vertcs_hvdatum(unknown.get())), "Unknown");
    }
    // The combined reader: a horizontal system alone without ZUNITS.
    Owned alone(ox_hvcoordsys_from_prjstring("PROJECTION GEOGRAPHIC\nZUNITS NO\n", &e));
    ASSERT_TRUE(alone);
    EXPECT_EQ(ox_hvcoordsys_vertcs(alone.get()), nullptr);
    EXPECT_EQ(ox_hvcoordsys_from_prjstring("PROJECTION GEOGRAPHIC\nZUNITS 0\n", &e), nullptr);
    EXPECT_EQ(e, OX_PRJ_BAD_ZUNITS);
}

TEST(PrjRead, FilesWrittenByOlderSoftware) {
    for (const auto &row : oxtest::read_csv("prjfiles/expected.csv")) {
        const std::string path = data(row[0]);
        int32_t error = 1;
        Owned h(ox_coordsys_from_prjfile(path.c_str(), &error));
        ASSERT_TRUE(h) << row[0] << " error " << error;
        Owned expected = catalogue(std::stoi(row[1]));
        if (row[2] == "1")
            EXPECT_TRUE(ox_projcs_eqnn(h.get(), expected.get())) << row[0];
        else
            EXPECT_TRUE(ox_coordsys_eq(h.get(), expected.get())) << row[0];
    }
    int32_t error = 1;
    Owned pair(ox_hvcoordsys_from_prjfile(data("ca5_nad83_navd88.prj").c_str(), &error));
    ASSERT_TRUE(pair);
    EXPECT_TRUE(ox_vertcs_eq(ox_hvcoordsys_vertcs(pair.get()), catalogue(5703).get()));
    Owned unit(ox_zunit_from_prjfile(data("ca5_nad83_navd88.prj").c_str(), &error));
    EXPECT_TRUE(ox_unit_eq(unit.get(), catalogue(9001).get()));
}
