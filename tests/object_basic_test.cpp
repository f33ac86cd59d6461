// Units, prime meridians, spheroids, datums and geographic systems: the
// uniform operation set, equality rules, object strings and rename tables.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <string>

#include "object/ox_object.h"
#include "test_util.h"

using namespace oxtest;

TEST(Objects, ConstructorsRefuseBadValues) {
    EXPECT_EQ(ox_unit_new(nullptr, 1.0), nullptr);
    EXPECT_EQ(ox_unit_new("u", 0.0), nullptr);
    EXPECT_EQ(ox_unit_new("u", -1.0), nullptr);
    EXPECT_EQ(ox_unit_new("u", NAN), nullptr);
    EXPECT_EQ(ox_primem_new("p", 180.0000001), nullptr);
    EXPECT_EQ(ox_primem_new("p", NAN), nullptr);
    Owned east(ox_primem_new("p", 180.0)), west(ox_primem_new("p", -180.0));
    EXPECT_TRUE(east && west);
    EXPECT_EQ(ox_spheroid_new("s", 0.0, 0.0), nullptr);
    EXPECT_EQ(ox_spheroid_new("s", 1.0, -0.1), nullptr);
    EXPECT_EQ(ox_spheroid_new("s", 1.0, 1.0), nullptr);
    EXPECT_EQ(ox_spheroid_new("s", 1.0, NAN), nullptr);
    EXPECT_EQ(ox_datum_new("d", nullptr), nullptr);
    Owned unit(ox_unit_new("u", 1.0));
    EXPECT_EQ(ox_datum_new("d", unit.get()), nullptr);  // a wrong-typed part is refused and not taken
    EXPECT_EQ(ox_unit_factor(unit.get()), 1.0);
}

// (The uniform operations with wrong handles: Robustness.*.)
TEST(Objects, NeutralValuesForWrongHandles) {
    Owned unit(ox_unit_new("Meter", 1.0));
    EXPECT_EQ(ox_unit_factor(nullptr), 1.0);
    EXPECT_EQ(ox_primem_longitude(unit.get()), 0.0);
    EXPECT_EQ(ox_spheroid_axis(unit.get()), 1.0);
    EXPECT_EQ(ox_spheroid_flattening(unit.get()), 0.0);
    EXPECT_EQ(ox_datum_spheroid(unit.get()), nullptr);
    EXPECT_EQ(ox_unit_status(unit.get()), OX_STATUS_NEW);
}

TEST(Objects, NamesAreCutToSixtyThreeCharacters) {
    EXPECT_EQ(name_of(Owned(ox_unit_new(std::string(70, 'n').c_str(), 1.0)).get()), std::string(63, 'n'));
}

TEST(Equality, ToleranceBoundaryAndNames) {
    Owned a(ox_unit_new("Degree", 0.0174532925199433)), b(ox_unit_new("degree", 0.017453292519943295));
    EXPECT_EQ(ox_unit_eq(a.get(), b.get()), 1);
    Owned m1(ox_unit_new("Meter", 1.0)), m2(ox_unit_new("Me-ter", 1.0));
    EXPECT_EQ(ox_unit_eq(m1.get(), m2.get()), 1);
    Owned p0(ox_primem_new("p", 0.0)), p3(ox_primem_new("p", 3.0e-15)), p4(ox_primem_new("p", 4.0e-15));
    EXPECT_EQ(ox_primem_eq(p0.get(), p3.get()), 1);
    EXPECT_EQ(ox_primem_eq(p0.get(), p4.get()), 0);
    // Relative for large values.
    Owned big1(ox_primem_new("p", 100.0)), big2(ox_primem_new("p", 100.0 + 3e-13));
    EXPECT_EQ(ox_primem_eq(big1.get(), big2.get()), 1);
    EXPECT_EQ(ox_unit_eq(m1.get(), p0.get()), 0);  // different types never compare equal
    EXPECT_EQ(ox_unit_eq(nullptr, nullptr), 0);
}

TEST(Equality, SpheroidsThroughTheQuarterMeridian) {
    Owned a(ox_spheroid_new("WGS_1984", 6378137.0, 1 / 298.257223563));
    Owned b(ox_spheroid_new("WGS_1984", 6378137.0, 1 / 298.25722356));
    Owned c(ox_spheroid_new("WGS_1984", 6378137.0, 1 / 298.3));
    Owned d(ox_spheroid_new("Other", 6378137.0, 1 / 298.257223563));
    EXPECT_EQ(ox_spheroid_eq(a.get(), b.get()), 1);
    EXPECT_EQ(ox_spheroid_eq(a.get(), c.get()), 0);
    EXPECT_EQ(ox_spheroid_eq(a.get(), d.get()), 0);
}

// tests/data/object_strings.txt: texts that read and write back unchanged,
// texts that do not read, and texts that read as equal objects.
TEST(ObjectStrings, ReadWriteAndRefuse) {
    std::ifstream in(OX_TEST_DATA_DIR "/object_strings.txt");
    auto read = [](const std::string &text) {
        const ox::TypeDesc *d = ox::type_desc_by_keyword(text.substr(0, text.find_first_of("[(")).c_str());
        EXPECT_NE(d, nullptr) << text;
        return Owned(d ? ox::obj_from_string(*d, text.c_str()) : nullptr);
    };
    std::string line, section;
    int rows = 0;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        if (line[0] == '[') {
            section = line;
            continue;
        }
        ++rows;
        const size_t bar = line.find(" | ");
        const Owned a = read(line.substr(0, bar));
        if (section == "[unreadable]") {
            EXPECT_FALSE(a) << line;
            continue;
        }
        ASSERT_TRUE(a) << line;
        if (section == "[round trip]") {
            EXPECT_EQ(text_of(a.get()), line);
            EXPECT_EQ(status_of(a.get()), OX_STATUS_STRING);
            continue;
        }
        const Owned b = read(line.substr(bar + 3));
        ASSERT_TRUE(b) << line;
        EXPECT_EQ(ox::obj_eq(a.get(), b.get(), a.get()->type), 1) << line;
        if (section == "[rewritten]") {
            EXPECT_EQ(text_of(b.get()), line.substr(0, bar));
        }
    }
    EXPECT_EQ(rows, 43);
}

TEST(ObjectStrings, GeographicSystemFromPartsAndFreeOrder) {
    Owned g(ox_geogcs_from_string(kWgs84));
    Owned built(make_geogcs());
    EXPECT_EQ(ox_geogcs_eq(g.get(), built.get()), 1);
    // the reader keeps the authority it meets among unknown objects
    Owned shuffled(ox_geogcs_from_string(
        "geogcs ( \"GCS_WGS_1984\" , UNIT(\"Degree\",0.0174532925199433), PRIMEM[\"Greenwich\",0],"
        "AUTHORITY[\"EPSG\",4326], FOO[1,BAR[2]], DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137,"
        "298.257223563]], UNIT[\"Other\",1])"));
    EXPECT_EQ(ox_authority_authcode(ox_geogcs_authority(shuffled.get())), 4326);
    Owned sphere(ox_spheroid_from_string("SPHEROID[\"Sphere\",6371000.0,0.0]"));
    EXPECT_EQ(ox_spheroid_flattening(sphere.get()), 0.0);
}

TEST(ObjectStrings, ReadTimeRenames) {
    Owned g(ox_geogcs_from_string(
        "GEOGCS[\"GCS_Tahiti\",DATUM[\"D_Tahiti\",SPHEROID[\"s\",1,0]],PRIMEM[\"p\",0],UNIT[\"u\",1]]"));
    ASSERT_TRUE(g);
    EXPECT_EQ(name_of(g.get()), "GCS_Tahiti_1952");
    EXPECT_EQ(name_of(ox_geogcs_datum(g.get())), "D_Tahiti_1952");
    // Types without a rename table keep what they read.
    Owned u(ox_unit_from_string("UNIT[\"D_Tahiti\",1]"));
    EXPECT_EQ(name_of(u.get()), "D_Tahiti");
}

TEST(ObjectStrings, HongKongCorrection) {
    auto read = [](const char *datum, const char *unit) {
        const std::string text = std::string("GEOGCS[\"GCS_Hong_Kong_1963\",DATUM[\"") + datum +
                                 "\",SPHEROID[\"International_1924\",6378388.0,297.0]],PRIMEM[\"Greenwich\",0.0]," +
                                 unit + "]";
        return name_of(Owned(ox_geogcs_from_string(text.c_str())).get());
    };
    EXPECT_EQ(read("D_Hong_Kong_1963_67", "UNIT[\"Degree\",0.0174532925199433]"), "GCS_Hong_Kong_1963_67");
    EXPECT_EQ(read("D_Hong_Kong_1963_67", "UNIT[\"Grad\",0.01570796326794897]"), "GCS_Hong_Kong_1963");
    EXPECT_EQ(read("D_Hong_Kong_1963", "UNIT[\"Degree\",0.0174532925199433]"), "GCS_Hong_Kong_1963");
    // Not made inside a projected system.
    const std::string projected =
        "PROJCS[\"p\",GEOGCS[\"GCS_Hong_Kong_1963\",DATUM[\"D_Hong_Kong_1963_67\",SPHEROID[\"s\",6378388.0,297.0]],"
        "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Plate_Carree\"],UNIT[\"m\",1]]";
    Owned p(ox_projcs_from_string(projected.c_str()));
    EXPECT_EQ(name_of(ox_projcs_geogcs(p.get())), "GCS_Hong_Kong_1963");
}

// A catalogue system: option 1 writes the authority only after the
// outermost unit, option 2 on every part that has a code.
TEST(Authority, WriterOptionsPlaceTheClause) {
    Owned g(ox_factory_geogcs(4326));
    const std::string plain = text_of(ox_geogcs_to_string_ext, g.get(), 0);
    EXPECT_EQ(plain, kWgs84);
    EXPECT_EQ(text_of(ox_geogcs_to_string_ext, g.get(), 1),
              plain.substr(0, plain.size() - 1) + ",AUTHORITY[\"EPSG\",4326]]");
    EXPECT_EQ(text_of(ox_geogcs_to_string_ext, g.get(), 2),
              "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563,"
              "AUTHORITY[\"EPSG\",7030]],AUTHORITY[\"EPSG\",6326]],PRIMEM[\"Greenwich\",0.0,AUTHORITY[\"EPSG\",8901]],"
              "UNIT[\"Degree\",0.0174532925199433,AUTHORITY[\"EPSG\",9102]],AUTHORITY[\"EPSG\",4326]]");
    EXPECT_EQ(text_of(ox_geogcs_to_string_ext, g.get(), 7), plain);  // any other option: none
    // The lazily built authority carries the version; the clause never does.
    EXPECT_EQ(stamp_of(g.get()).version, "6.13");

    // Option 2 read back keeps every authority.
    Owned back(ox_geogcs_from_string(text_of(ox_geogcs_to_string_ext, g.get(), 2).c_str()));
    ASSERT_TRUE(back);
    EXPECT_EQ(ox_authority_authcode(ox_unit_authority(ox_geogcs_unit(back.get()))), 9102);
    EXPECT_EQ(ox_unit_status(ox_geogcs_unit(back.get())), OX_STATUS_STRING);
}

TEST(Authority, ObjectAndReaderForms) {
    Owned b(ox_authority_from_string("AUTHORITY[\"epsg\",4326,\"8.2\"]"));
    Owned c(ox_authority_from_string("AUTHORITY[\"EPSG\",\"rev2\",4326]"));
    ASSERT_TRUE(b && c);
    char version[16];
    ox_authority_version(c.get(), version);
    EXPECT_STREQ(version, "rev2");
    ox_authority_version(b.get(), version);
    EXPECT_STREQ(version, "8.2");
    EXPECT_EQ(ox_authority_authcode(c.get()), 4326);
    EXPECT_EQ(ox_authority_status(c.get()), OX_STATUS_STRING);

    Owned made(ox_authority_new("MAVO", 102100, "a version longer than fifteen"));
    ox_authority_version(made.get(), version);
    EXPECT_STREQ(version, "a version longe");
    EXPECT_EQ(text_of(ox_authority_to_string, made.get()), "AUTHORITY[\"MAVO\",102100]");
    EXPECT_EQ(text_of(ox_authority_to_string_ext, made.get(), 2), "AUTHORITY[\"MAVO\",102100]");
    EXPECT_EQ(ox_authority_new("EPSG", 0, nullptr), nullptr);
    EXPECT_EQ(ox_authority_new(nullptr, 1, nullptr), nullptr);

    // authority_set takes ownership, replaces, clears; a wrong type is ignored.
    Owned u(ox_unit_new("Meter", 1.0));
    EXPECT_EQ(ox_unit_authority(u.get()), nullptr);
    ox_unit_authority_set(u.get(), ox_authority_new("EPSG", 9001, "6.13"));
    EXPECT_EQ(ox_authority_authcode(ox_unit_authority(u.get())), 9001);
    Owned other(ox_unit_new("Foot", 0.3048));
    ox_unit_authority_set(u.get(), other.get());
    EXPECT_EQ(ox_authority_authcode(ox_unit_authority(u.get())), 9001);
    ox_unit_authority_set(u.get(), nullptr);
    EXPECT_EQ(ox_unit_authority(u.get()), nullptr);
}

// (Wrong handles: Robustness.CoordsysAndAuthorityDispatchers.)
TEST(Coordsys, DispatchOverGeographicAndProjected) {
    Owned g(ox_coordsys_from_string(kWgs84));
    Owned p(ox_coordsys_from_string(kUtm33));
    EXPECT_EQ(ox_geogcs_p(g.get()), 1);
    EXPECT_EQ(ox_projcs_p(p.get()), 1);
    EXPECT_EQ(ox_coordsys_eq(g.get(), p.get()), 0);
    Owned gc(ox_coordsys_clone(g.get())), pc(ox_coordsys_clone(p.get()));
    EXPECT_EQ(ox_coordsys_eq(g.get(), gc.get()), 1);
    EXPECT_EQ(ox_coordsys_eq(p.get(), pc.get()), 1);
    EXPECT_EQ(ox_coordsys_status(g.get()), 0);  // deliberately always 0
    EXPECT_EQ(ox_geogcs_status(g.get()), OX_STATUS_STRING);
    char name[OX_NAME_SIZE];
    ox_coordsys_name(p.get(), name);
    EXPECT_STREQ(name, "WGS_1984_UTM_Zone_33N");
    // "PROJCS" anywhere, even in a name, selects the projected reader.
    EXPECT_EQ(ox_coordsys_from_string("GEOGCS[\"my PROJCS\",DATUM[\"d\",SPHEROID[\"s\",1,0]],PRIMEM[\"p\",0],"
                                      "UNIT[\"u\",1]]"),
              nullptr);
}

TEST(Clone, IsDeepAndKeepsProvenance) {
    Owned g(ox_geogcs_from_string(kWgs84));
    ox::obj_set_code(g.get(), 4326, "EPSG", "6.13");
    ox_geogcs_authority(g.get());
    Owned c(ox_geogcs_clone(g.get()));
    ASSERT_TRUE(c);
    EXPECT_NE(ox_geogcs_datum(c.get()), ox_geogcs_datum(g.get()));
    EXPECT_NE(ox_geogcs_authority(c.get()), ox_geogcs_authority(g.get()));
    EXPECT_EQ(ox_geogcs_status(c.get()), OX_STATUS_STRING);
    EXPECT_EQ(ox::obj_code(c.get()), 4326);
    EXPECT_EQ(ox_authority_authcode(ox_geogcs_authority(c.get())), 4326);
    ox_geogcs_del(g.release());
    EXPECT_EQ(text_of(ox_geogcs_to_string, c.get()), kWgs84);  // the clone outlives its source
}
