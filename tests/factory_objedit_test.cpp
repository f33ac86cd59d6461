// Object-edit files: site definitions that the factory consults before its
// catalogue, and what happens with files that are wrong in every way.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "object/ox_memory.h"
#include "object/ox_object.h"
#include "test_util.h"

namespace {

using namespace oxtest;

class ObjectEdit : public ::testing::Test {
protected:
    TempDir scratch;
    const std::string &dir = scratch.path;

    void TearDown() override { ox_objedithome_setdir(nullptr); }
    void write(const char *file, const std::string &text) { scratch.write(file, text); }
    // Writes the file and points the object-edit home at the directory (the
    // files present are recorded when the directory is set).
    void edit(const char *file, const std::string &text) {
        write(file, text);
        ox_objedithome_setdir(dir.c_str());
    }
};

TEST_F(ObjectEdit, SpheroidSecondNumberIsFlatteningOrItsInverse) {
    edit("spheroid",
         "SPHEROID,7030,\"Flat_84\",6378137.0,0.0033528106647474805\n"
         "SPHEROID,7030,\"Later_Line\",6378137.0,298.257223563\n"
         "SPHEROID,7004,\"Inverse\",6377397.155,299.1528128\n");
    Owned flat(ox_factory_spheroid(7030));
    ASSERT_TRUE(flat);
    EXPECT_EQ(name_of(flat.get()), "Flat_84");  // the first matching line wins
    EXPECT_EQ(ox_spheroid_flattening(flat.get()), 0.0033528106647474805);
    EXPECT_EQ(ox_spheroid_status(flat.get()), OX_STATUS_OBJEDIT);
    EXPECT_EQ(ox::obj_code(flat.get()), -1);  // an edited object is not stamped
    Owned inverse(ox_factory_spheroid(7004));
    EXPECT_DOUBLE_EQ(ox_spheroid_flattening(inverse.get()), 1.0 / 299.1528128);
    // Codes without a line still come from the catalogue.
    Owned grs80(ox_factory_spheroid(7019));
    EXPECT_EQ(ox_spheroid_status(grs80.get()), OX_STATUS_CATALOGUE);
    // The edited spheroid reaches every catalogue datum built on it.
    Owned wgs84(ox_factory_geogcs(4326));
    ASSERT_TRUE(wgs84);
    EXPECT_EQ(ox_geogcs_status(wgs84.get()), OX_STATUS_CATALOGUE);
    EXPECT_EQ(name_of(ox_datum_spheroid(ox_geogcs_datum(wgs84.get()))), "Flat_84");
}

TEST_F(ObjectEdit, EveryKindReadsItsLine) {
    write("unit", "UNIT,209001,\"Furlong\",201.168\n");
    write("primem", "PRIMEM,208901,\"Local_Meridian\",-3.5\n");
    write("datum", "DATUM,206001,\"D_Local\",OX_S_WGS_1984\n");
    write("geogcs", "GEOGCS,204001,\"GCS_Local\",206001,208901,9102\n");
    write("projcs",
          "PROJCS,202001,\"Local_TM\",204001,OX_PRJ_TRANSVERSE_MERCATOR,209001,100001=1000,100002=2000,"
          "OX_PAR_CENTRAL_MERIDIAN=-3,100003=1.0,100021=40\n");
    write("vdatum", "VDATUM,205101,\"Local_Height_Datum\"\n");
    write("vertcs",
          "VERTCS,205601,\"Local_Height\",205101,9001\n"
          "VERTCS,205602,\"Local_Depth\",205101,9002,100006=1.5,100007=-1\n");
    write("geogtran",
          "GEOGTRAN,208001,\"Local_To_WGS_1984\",204001,4326,9603,100040=1,100041=2,100042=3\n"
          "GEOGTRAN,208002,\"Local_Grid\",4267,4269,9613,Dataset_local\n");
    ox_objedithome_setdir(dir.c_str());

    Owned unit(ox_factory_unit(209001));
    ASSERT_TRUE(unit);
    EXPECT_EQ(ox_unit_factor(unit.get()), 201.168);
    Owned primem(ox_factory_primem(208901));
    EXPECT_EQ(ox_primem_longitude(primem.get()), -3.5);
    Owned datum(ox_factory_datum(206001));
    ASSERT_TRUE(datum);
    EXPECT_EQ(ox::obj_code(ox_datum_spheroid(datum.get())), 7030);  // its part comes from the catalogue
    Owned geogcs(ox_factory_geogcs(204001));
    ASSERT_TRUE(geogcs);
    EXPECT_EQ(name_of(ox_geogcs_datum(geogcs.get())), "D_Local");
    EXPECT_EQ(ox_geogcs_status(geogcs.get()), OX_STATUS_OBJEDIT);
    Owned projcs(ox_factory_projcs(202001));
    ASSERT_TRUE(projcs);
    EXPECT_EQ(name_of(ox_projcs_projection(projcs.get())), "Transverse_Mercator");
    EXPECT_EQ(name_of(ox_projcs_unit(projcs.get())), "Furlong");
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(projcs.get(), params);
    EXPECT_EQ(ox_parameter_value(params[0]), 1000.0);
    EXPECT_EQ(ox_parameter_value(params[2]), -3.0);
    EXPECT_EQ(ox_parameter_value(params[6]), 40.0);
    // By code, through the generic builder, even in the custom bands.
    Owned generic(ox_factory(202001));
    EXPECT_EQ(ox_projcs_eq(generic.get(), projcs.get()), 1);

    Owned height(ox_factory_vertcs(205601));
    ASSERT_TRUE(height);
    ox_vertcs_parameters(height.get(), params);
    EXPECT_EQ(ox_parameter_value(params[1]), 1.0);  // no parameters given: pointing up
    // An edited vertical system carries the code asked for and its authority.
    ox_object *authority = ox_vertcs_authority(height.get());
    ASSERT_NE(authority, nullptr);
    EXPECT_EQ(ox_authority_authcode(authority), 205601);
    char text[OX_NAME_SIZE];
    ox_authority_name(authority, text);
    EXPECT_STREQ(text, "CUSTOM");
    Owned depth(ox_factory_vertcs(205602));
    ASSERT_TRUE(depth);
    ox_vertcs_parameters(depth.get(), params);
    EXPECT_EQ(ox_parameter_value(params[0]), 1.5);
    EXPECT_EQ(ox_parameter_value(params[1]), -1.0);

    Owned tran(ox_factory_geogtran(208001));
    ASSERT_TRUE(tran);
    ox_geogtran_parameters(tran.get(), params);
    EXPECT_EQ(ox_parameter_value(params[2]), 3.0);
    Owned grid(ox_factory_geogtran(208002));
    ASSERT_TRUE(grid);
    ox_geogtran_parameters(grid.get(), params);
    EXPECT_EQ(name_of(params[15]), "Dataset_local");
}

TEST_F(ObjectEdit, AFailedUnitLineIsTheAnswer) {
    edit("unit", "UNIT,9001,\"Meter\",0.0\nUNIT,9002,\"Foot\"\n");
    EXPECT_EQ(ox_factory_unit(9001), nullptr);  // refused by the constructor: no catalogue fallback
    EXPECT_EQ(ox_factory_unit(9002), nullptr);  // no factor
    Owned degree(ox_factory_unit(9102));
    EXPECT_EQ(ox_unit_status(degree.get()), OX_STATUS_CATALOGUE);
}

TEST_F(ObjectEdit, FailedLinesOfOtherKindsFallBackToTheCatalogue) {
    write("spheroid", "SPHEROID,7030,\"Bad\",-1.0,298.0\n");
    write("datum", "DATUM,6326,\"D_Bad\",999999\n");
    write("geogcs",
          "GEOGCS,4326,\"GCS_Bad\",6326,8901\n"              // a part missing
          "GEOGCS,204002,\"GCS_Self\",204002,8901,9102\n");  // names its own code as its datum
    ox_objedithome_setdir(dir.c_str());
    Owned spheroid(ox_factory_spheroid(7030));
    EXPECT_EQ(ox_spheroid_status(spheroid.get()), OX_STATUS_CATALOGUE);
    Owned datum(ox_factory_datum(6326));
    EXPECT_EQ(name_of(datum.get()), "D_WGS_1984");
    Owned geogcs(ox_factory_geogcs(4326));
    EXPECT_EQ(name_of(geogcs.get()), "GCS_WGS_1984");
    EXPECT_EQ(ox_factory_geogcs(204002), nullptr);
}

TEST_F(ObjectEdit, GarbageAndOverlongLines) {
    std::string text = "this is no definition\n,,,,\"\"\"\n\n   \nSPHEROID\nSPHEROID,abc,\"X\",1,2\n";
    text += "SPHEROID,7030,";
    text.append(3000, 'x');  // read in pieces of 1023
    text += "\n";
    text.append(1020, ' ');
    text += "SPHEROID,7004,\"Cut\",1,0\n";  // the keyword split by the buffer
    text += "junk, SPHEROID , 7001 , \"Spaced\" , 6377563.396 , 299.3249646\n";
    text.append(5000, ',');
    text += '\n';
    text += '\0';
    text += "binary\xff\xfe\n";
    text += "SPHEROID,7022,\"Late\",6378388,297\n";
    edit("spheroid", text);
    Owned airy(ox_factory_spheroid(7001));
    ASSERT_TRUE(airy);
    EXPECT_EQ(name_of(airy.get()), "Spaced");
    EXPECT_EQ(ox_spheroid_status(airy.get()), OX_STATUS_OBJEDIT);
    Owned wgs(ox_factory_spheroid(7030));
    EXPECT_EQ(ox_spheroid_status(wgs.get()), OX_STATUS_CATALOGUE);  // the overlong line has no numbers
    Owned intl(ox_factory_spheroid(7022));
    EXPECT_EQ(name_of(intl.get()), "Late");
}

TEST_F(ObjectEdit, MissingOrUnreadableFilesAreIgnored) {
    ASSERT_EQ(mkdir((dir + "/datum").c_str(), 0700), 0);  // a directory, not a file
    ox_objedithome_setdir(dir.c_str());
    Owned datum(ox_factory_datum(6326));
    EXPECT_EQ(ox_datum_status(datum.get()), OX_STATUS_CATALOGUE);
    // A file created after the directory was set is not seen until it is set again.
    write("spheroid", "SPHEROID,7030,\"New\",6378137,298.257223563\n");
    Owned before(ox_factory_spheroid(7030));
    EXPECT_EQ(ox_spheroid_status(before.get()), OX_STATUS_CATALOGUE);
    ox_objedithome_setdir(dir.c_str());
    Owned after(ox_factory_spheroid(7030));
    EXPECT_EQ(ox_spheroid_status(after.get()), OX_STATUS_OBJEDIT);
    // A file removed after the directory was set falls back as well.
    std::remove((dir + "/spheroid").c_str());
    Owned gone(ox_factory_spheroid(7030));
    EXPECT_EQ(ox_spheroid_status(gone.get()), OX_STATUS_CATALOGUE);
}

// Something put in place of a file that is not a regular file (a FIFO would
// make a blocking reader wait for a writer for ever) counts as absent.
TEST_F(ObjectEdit, WhatIsNotARegularFileIsSkipped) {
    edit("spheroid", "SPHEROID,7030,\"Edited\",6378137,298.257223563\n");
    Owned edited(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(edited.get()), "Edited");
    const std::string path = dir + "/spheroid";
    ASSERT_EQ(std::remove(path.c_str()), 0);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    Owned fifo(ox_factory_spheroid(7030));
    EXPECT_EQ(ox_spheroid_status(fifo.get()), OX_STATUS_CATALOGUE);
    ox_objedithome_setdir(dir.c_str());  // present when the directory is set: not a file of the home either
    Owned again(ox_factory_spheroid(7030));
    EXPECT_EQ(ox_spheroid_status(again.get()), OX_STATUS_CATALOGUE);
}

// A file is read once per version: a new size or modification time makes
// the next look-up read it again (its first line of a code still wins).
TEST_F(ObjectEdit, AChangedFileIsReadAgain) {
    edit("spheroid", "SPHEROID,7030,\"First\",6378137,298.257223563\n");
    EXPECT_EQ(name_of(Owned(ox_factory_spheroid(7030)).get()), "First");
    write("spheroid", "SPHEROID,7030,\"Second\",6378137,298.257223563\nSPHEROID,7030,\"Later\",1,0\n");
    EXPECT_EQ(name_of(Owned(ox_factory_spheroid(7030)).get()), "Second");
    // The same size, another modification time.
    write("spheroid", "SPHEROID,7030,\"Thirds\",6378137,298.257223563\nSPHEROID,7030,\"Later\",1,0\n");
    const struct timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, (dir + "/spheroid").c_str(), times, 0), 0);
    EXPECT_EQ(name_of(Owned(ox_factory_spheroid(7030)).get()), "Thirds");
}

// Memory exhausted while a file is indexed: the builder answers null rather
// than the catalogue's definition; nothing is left behind.
TEST_F(ObjectEdit, ExhaustedMemoryWhileIndexing) {
    std::string text;
    for (int i = 0; i < 3000; ++i) text += "SPHEROID," + std::to_string(207000 + i) + ",\"S\",6378137,300\n";
    edit("spheroid", text);
    bool refused = false;
    for (int n = 1;; ++n) {
        ox_objedithome_setdir(dir.c_str());  // forget the index
        const int64_t live = ox::mem_live_count();
        const int64_t before = ox::mem_allocation_count();
        ox::mem_fail_after(n);
        ox_object *h = ox_factory_spheroid(207001);
        ox::mem_fail_after(0);
        const bool reached = ox::mem_allocation_count() - before >= n;
        if (!reached) {
            EXPECT_EQ(name_of(h), "S");
            ox_spheroid_del(h);
            break;
        }
        refused |= h == nullptr;
        ox_spheroid_del(h);
        ox_objedithome_setdir(dir.c_str());
        ASSERT_EQ(ox::mem_live_count(), live) << "allocation " << n;
    }
    EXPECT_TRUE(refused);
}

TEST_F(ObjectEdit, DirectoryLengthLimit) {
    // A directory of 255 characters is used; one of 256 disables the files.
    std::string deep = dir;
    while (deep.size() < 255) {
        const size_t room = 255 - deep.size() - 1;
        deep += '/';
        deep.append(std::min<size_t>(room, 100), 'd');
        ASSERT_EQ(mkdir(deep.c_str(), 0700), 0) << deep;
    }
    ASSERT_EQ(deep.size(), 255u);
    FILE *f = std::fopen((deep + "/spheroid").c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fputs("SPHEROID,7030,\"Deep\",6378137,298.257223563\n", f);
    std::fclose(f);
    ox_objedithome_setdir(deep.c_str());
    Owned used(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(used.get()), "Deep");
    ox_objedithome_setdir((deep + "/").c_str());  // the same directory in 256 characters
    Owned ignored(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(ignored.get()), "WGS_1984");
    ox_objedithome_setdir(std::string(10000, 'x').c_str());
    Owned long_dir(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(long_dir.get()), "WGS_1984");
}

const char *g_provided = nullptr;
const char *provider() { return g_provided; }

TEST_F(ObjectEdit, DirectoryProvider) {
    write("spheroid", "SPHEROID,7030,\"Provided\",6378137,298.257223563\n");
    g_provided = dir.c_str();
    ox_objedithome_setfunc(provider);
    Owned a(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(a.get()), "Provided");
    g_provided = nullptr;  // a provider may answer null: no files
    ox_objedithome_setfunc(provider);
    Owned b(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(b.get()), "WGS_1984");
    ox_objedithome_setdir(dir.c_str());
    ox_objedithome_setfunc(nullptr);  // cleared for good
    Owned c(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(c.get()), "WGS_1984");
    ox_objedithome_setdir("");
    Owned d(ox_factory_spheroid(7030));
    EXPECT_EQ(name_of(d.get()), "WGS_1984");
}

TEST_F(ObjectEdit, PredefinedListsIncludeEditedCodes) {
    edit("unit", "UNIT,209001,\"Furlong\",201.168\nUNIT,209101,\"Quadrant\",1.5707963267948966\n");
    int32_t count = 0;
    ox_predefined_entry *linear = ox_predefined_linear_unit(&count);
    ASSERT_NE(linear, nullptr);
    bool found = false;
    for (int32_t i = 0; i < count; ++i) found |= linear[i].code == 209001 && std::strcmp(linear[i].name, "Furlong") == 0;
    EXPECT_TRUE(found);
    ox_table_del(linear);
    ox_predefined_entry *angular = ox_predefined_angular_unit(&count);
    ASSERT_NE(angular, nullptr);
    found = false;
    for (int32_t i = 0; i < count; ++i) found |= angular[i].code == 209101;
    EXPECT_TRUE(found);
    ox_table_del(angular);
}

// With object-edit files in play the reverse look-up searches exhaustively
// and finds the edited definitions too.
TEST_F(ObjectEdit, ReverseLookupSeesEditedDefinitions) {
    edit("datum", "DATUM,206005,\"D_Site\",7030\n");
    Owned site(ox_datum_new("D_Site", ox_spheroid_new("WGS_1984", 6378137.0, 1 / 298.257223563)));
    EXPECT_EQ(ox_factory_code(site.get()), 206005);
    Owned wgs(ox_datum_new("D_WGS_1984", ox_spheroid_new("WGS_1984", 6378137.0, 1 / 298.257223563)));
    EXPECT_EQ(ox_factory_code(wgs.get()), 6326);
}

}  // namespace
