// Writing legacy projection files: the degrees-minutes-seconds layout, the
// labels and their order, the ZUNITS line, every projection form written
// and read back, the refusals and the file variants.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "prjfile/ox_prjfile.h"
#include "test_util.h"

using oxtest::Owned;

namespace {

std::string dms(double v) {
    char out[32];
    ox::prj::format_dms(v, out);
    return out;
}

std::string written(const ox_object *coordsys, int32_t option = 0, int32_t *code = nullptr) {
    static char text[OX_PRJSTRING_SIZE];
    int32_t error = 1;
    const int32_t r = ox_coordsys_to_prjstring(coordsys, option, text, &error);
    EXPECT_EQ(r, error);
    if (code != nullptr) *code = r;
    return text;
}

Owned catalogue(int32_t code) { return Owned(ox_factory(code)); }

}  // namespace

TEST(PrjWrite, DegreesMinutesSeconds) {
    EXPECT_EQ(dms(-0.5), "  -0 30  0.0");
    EXPECT_EQ(dms(45.5), "  45 30  0.0");
    EXPECT_EQ(dms(-117.25), "-117 15  0.0");
    EXPECT_EQ(dms(29.9999999999), "  30  0  0.0");  // the carry goes into minutes and degrees
    EXPECT_EQ(dms(29.999999999), "  29 59 59.999996");
    EXPECT_EQ(dms(0.0), "   0  0  0.0");
    EXPECT_EQ(dms(-0.0000001), "  -0  0  0.00036");
    EXPECT_EQ(dms(52.15616055555555), "  52  9 22.178");
    // Every form reads back as the angle to within half a microsecond.
    for (double v : {-0.5, 45.5, -117.25, 29.9999999999, 29.999999999, 4.45405154589748, -179.99999, 89.123456789}) {
        double back = 0.0;
        ASSERT_TRUE(ox::prj::parameter_value(dms(v).c_str(), &back)) << v;
        EXPECT_NEAR(back, v, 0.5e-6 / 3600.0 + 1e-13) << v;
    }
}

TEST(PrjWrite, LabelsAndLayout) {
    ox::prj::Record r;
    ox::prj::record_clear(&r);
    // A record with the projection alone is one line.
    Owned utm = catalogue(32633);
    EXPECT_EQ(written(utm.get()),
              "Projection    UTM\nZone          33\nDatum         WGS84\nSpheroid      WGS84\nUnits         METERS\n"
              "Zunits        NO\n");
    Owned sp = catalogue(2229);
    EXPECT_EQ(written(sp.get()),
              "Projection    STATEPLANE\nFipszone      405\nDatum         NAD83\nSpheroid      GRS1980\n"
              "Units         FEET\nZunits        NO\n");
    // The FIPS zone comes from the name, one leading zero removed.
    Owned texas = catalogue(32039);
    EXPECT_NE(written(texas.get()).find("\nFipszone      4203\nDatum         NAD27\n"), std::string::npos);
    Owned geographic = catalogue(4267);
    EXPECT_EQ(written(geographic.get()),
              "Projection    GEOGRAPHIC\nDatum         NAD27\nSpheroid      CLARKE1866\nUnits         DD\n"
              "Zunits        NO\n");
    // The explicit option: the projection and its lines, first on the
    // Parameters line, each with its comment.
    EXPECT_EQ(written(sp.get(), OX_PRJ_EXPLICIT),
              "Projection    LAMBERT\nDatum         NAD83\nSpheroid      GRS1980\nUnits         FEET\nZunits        NO\n"
              "Parameters      35 28  0.0 /* 1st standard parallel\n"
              "  34  2  0.0 /* 2nd standard parallel\n"
              "-118  0  0.0 /* central meridian\n"
              "  33 30  0.0 /* latitude of origin\n"
              "2000000.000101601 /* false easting (meters)\n"
              "500000.0001016 /* false northing (meters)\n");
}

TEST(PrjWrite, VerticalUnitLine) {
    Owned gcs = catalogue(4326);
    Owned navd = catalogue(5703);
    static char text[OX_PRJSTRING_SIZE];
    int32_t e = 1;
    ASSERT_EQ(ox_coordsys_vertcs_to_prjstring(gcs.get(), navd.get(), text, &e), 0);
    EXPECT_NE(std::string(text).find("\nZunits        METERS /* NAVD_1988 - VCS# =   5703\n"), std::string::npos) << text;
    Owned back(ox_vertcs_from_prjstring(text, &e));
    EXPECT_TRUE(ox_vertcs_eq(back.get(), navd.get()));
    // A unit other than the metre and the US foot: units per metre; a system
    // the catalogue does not hold: no comment.
    ox_object *params[OX_PARAMETER_SLOTS] = {};
    Owned custom(ox_vertcs_new("Local heights", ox_vdatum_new("Local"), params, ox_unit_new("Foot", 0.3048)));
    ASSERT_EQ(ox_coordsys_vertcs_to_prjstring(gcs.get(), custom.get(), text, &e), 0);
    EXPECT_NE(std::string(text).find("\nZunits        3.280839895013123\n"), std::string::npos) << text;
    // The pair writers hand both halves on.
    Owned pair(ox_hvcoordsys_new(ox_coordsys_clone(gcs.get()), ox_vertcs_clone(navd.get())));
    ASSERT_EQ(ox_hvcoordsys_to_prjstring(pair.get(), text, &e), 0);
    Owned read_pair(ox_hvcoordsys_from_prjstring(text, &e));
    EXPECT_TRUE(ox_hvcoordsys_eq(read_pair.get(), pair.get()));
}

TEST(PrjWrite, EveryFormReadsBack) {
    // A system for every projection form, with values that DMS carries
    // exactly, on a spheroid for the ellipsoidal forms and on a sphere for
    // the others: writing and reading back gives the same parameters.
    ox::prj::Record r;
    for (int i = 0; i < ox::prj::kProjectionFormCount; ++i) {
        const ox::prj::ProjectionForm &f = ox::prj::kProjectionForms[i];
        std::ostringstream text;
        text << "PROJECTION " << f.name << "\nDATUM NAD83\nUNITS FEET\n";
        for (int k = 0; k < f.count; ++k) {
            text << (k == 0 ? "PARAMETERS " : "");
            switch (f.lines[k].kind) {
                case ox::prj::LineKind::Selector: text << f.selector; break;
                case ox::prj::LineKind::Radius: text << "6371000.0"; break;
                case ox::prj::LineKind::Number: text << "0.9996"; break;
                case ox::prj::LineKind::Metres: text << 1000.5 * (k + 1); break;
                case ox::prj::LineKind::Height: text << "35786000"; break;
                default: text << (f.south != 0 ? -(10 + k) : 10 + k) << " " << 3 * k << " " << 1.5 * k; break;
            }
            text << " /* a comment\n";
        }
        int32_t e = 1;
        Owned h(ox_coordsys_from_prjstring(text.str().c_str(), &e));
        ASSERT_TRUE(h) << text.str() << e;
        int32_t code = 1;
        const std::string out = written(h.get(), OX_PRJ_EXPLICIT, &code);
        ASSERT_EQ(code, 0) << text.str();
        ASSERT_EQ(ox::prj::scan(out.c_str(), &r), 0);
        EXPECT_STREQ(r.projection, f.name);
        Owned back(ox_coordsys_from_prjstring(out.c_str(), &e));
        EXPECT_TRUE(ox_projcs_eq(back.get(), h.get())) << out;
    }
}

TEST(PrjWrite, PrimeMeridianAndUnitsOfAngles) {
    // Longitudes are written from Greenwich, in degrees, whatever the system.
    Owned lisbon = catalogue(20791);
    const std::string text = written(lisbon.get(), OX_PRJ_EXPLICIT);
    EXPECT_NE(text.find("  -8  7 54.862 /* longitude of central meridian"), std::string::npos) << text;
    const char *grads = "PROJCS[\"g\",GEOGCS[\"g\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
                        "PRIMEM[\"Paris\",2.33722917],UNIT[\"Grad\",0.01570796326794897]],PROJECTION["
                        "\"Transverse_Mercator\"],PARAMETER[\"Central_Meridian\",100.0],PARAMETER[\"Scale_Factor\",1.0],"
                        "UNIT[\"Meter\",1.0]]";
    Owned g(ox_projcs_from_string(grads));
    const std::string t = written(g.get());
    EXPECT_NE(t.find("  92 20 14.025012 /* longitude of central meridian"), std::string::npos) << t;
    // A geographic system on another meridian has no legacy form.
    int32_t code = 0;
    Owned paris = catalogue(4807);
    EXPECT_EQ(written(paris.get(), 0, &code), "");
    EXPECT_EQ(code, OX_PRJ_CANNOT_BUILD);
}

TEST(PrjWrite, LambertWithAScaleFactorBySecantParallels) {
    // NTF (Paris) Lambert zone II: one parallel at 52 grads with k0 =
    // 0.99987742, on Clarke 1880 (IGN) and the Paris meridian.  Its parallels
    // of true scale are published as 47 41 45.652 and 45 53 56.108.
    Owned ntf = catalogue(27572);
    const std::string text = written(ntf.get());
    ox::prj::Record r;
    ASSERT_EQ(ox::prj::scan(text.c_str(), &r), 0) << text;
    EXPECT_STREQ(r.projection, "LAMBERT");
    EXPECT_STREQ(r.spheroid, "6378249.2  6356515.0");
    double v[6];
    for (int i = 0; i < 6; ++i) ASSERT_TRUE(ox::prj::parameter_value(r.parameters[i], &v[i])) << r.parameters[i];
    constexpr double kMilliSecond = 0.001 / 3600.0;
    EXPECT_NEAR(v[0], 47.0 + 41.0 / 60.0 + 45.652 / 3600.0, kMilliSecond);
    EXPECT_NEAR(v[1], 45.0 + 53.0 / 60.0 + 56.108 / 3600.0, kMilliSecond);
    EXPECT_NEAR(v[2], 2.33722917, 1e-9);  // the Paris meridian, from Greenwich
    EXPECT_NEAR(v[3], 46.8, 1e-9);        // 52 grads
    // A cone whose least scale is above 1 cuts no parallel at true scale.
    double a = 0.0, b = 0.0;
    EXPECT_FALSE(ox::prj::lambert_true_scale_parallels(0.0066943800229, 0.8168, 0.8168, 1.0001, &a, &b));
    ASSERT_TRUE(ox::prj::lambert_true_scale_parallels(0.0066943800229, 0.8168, 0.8168, 1.0, &a, &b));
    EXPECT_EQ(a, 0.8168);
    EXPECT_EQ(b, 0.8168);
}

TEST(PrjWrite, Refusals) {
    int32_t code = 0;
    // No legacy projection; a sphere-only form for an ellipsoid; a parameter
    // the form has no line for (the scale factor of the polar aspect).
    for (int32_t refused : {2065, 3035, 28992, 32661}) {
        Owned h = catalogue(refused);
        ASSERT_TRUE(h) << refused;
        EXPECT_EQ(written(h.get(), 0, &code), "") << refused;
        EXPECT_EQ(code, OX_PRJ_CANNOT_BUILD) << refused;
    }
    static char text[OX_PRJSTRING_SIZE];
    int32_t e = 0;
    Owned unit = catalogue(9001);
    EXPECT_EQ(ox_coordsys_to_prjstring(unit.get(), 0, text, &e), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(ox_coordsys_to_prjstring(nullptr, 0, text, &e), OX_PRJ_CANNOT_BUILD);
    Owned gcs = catalogue(4326);
    EXPECT_EQ(ox_coordsys_to_prjstring(gcs.get(), 0, nullptr, &e), OX_PRJ_NO_TEXT);
    EXPECT_EQ(ox_coordsys_vertcs_to_prjstring(gcs.get(), unit.get(), text, &e), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(ox_hvcoordsys_to_prjstring(gcs.get(), text, &e), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(ox_coordsys_to_prjstring(gcs.get(), 0, text, nullptr), 0);  // the error output is optional
}

TEST(PrjWrite, Files) {
    oxtest::TempDir dir;
    const std::string path = dir.path + "/zone.prj";
    Owned sp = catalogue(26945);
    int32_t e = 1;
    ASSERT_EQ(ox_coordsys_to_prjfile(sp.get(), 0, path.c_str(), &e), 0);
    Owned back(ox_coordsys_from_prjfile(path.c_str(), &e));
    EXPECT_TRUE(ox_projcs_eq(back.get(), sp.get()));
    Owned navd = catalogue(5703);
    ASSERT_EQ(ox_coordsys_vertcs_to_prjfile(sp.get(), navd.get(), path.c_str(), &e), 0);
    Owned pair(ox_hvcoordsys_from_prjfile(path.c_str(), &e));
    ASSERT_EQ(ox_hvcoordsys_to_prjfile(pair.get(), path.c_str(), &e), 0);
    Owned vertical(ox_vertcs_from_prjfile(path.c_str(), &e));
    EXPECT_TRUE(ox_vertcs_eq(vertical.get(), navd.get()));
    // Nothing is created for a refused system; a directory cannot be written.
    const std::string refused = dir.path + "/refused.prj";
    Owned krovak = catalogue(2065);
    EXPECT_EQ(ox_coordsys_to_prjfile(krovak.get(), 0, refused.c_str(), &e), OX_PRJ_CANNOT_BUILD);
    EXPECT_FALSE(std::ifstream(refused).good());
    EXPECT_EQ(ox_coordsys_to_prjfile(sp.get(), 0, dir.path.c_str(), &e), OX_PRJ_CANNOT_OPEN);
    EXPECT_EQ(ox_coordsys_to_prjfile(sp.get(), 0, nullptr, &e), OX_PRJ_NO_TEXT);
}
