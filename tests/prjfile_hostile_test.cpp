// Legacy projection files that no software wrote: binary garbage, huge
// lines and files, NUL bytes, numbers out of range, paths that are no files,
// and every allocation failing in turn.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <random>
#include <string>

#include "object/ox_memory.h"
#include "test_util.h"

using oxtest::Owned;

namespace {

int32_t string_error(const std::string &text) {
    int32_t error = 0;
    Owned h(ox_coordsys_from_prjstring(text.c_str(), &error));
    EXPECT_EQ(h.get() == nullptr, error != 0);
    return error;
}

int32_t file_error(const std::string &path) {
    int32_t error = 0;
    Owned h(ox_coordsys_from_prjfile(path.c_str(), &error));
    EXPECT_EQ(h.get() == nullptr, error != 0);
    return error;
}

void write_file(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace

TEST(PrjHostile, GarbageAndHugeLines) {
    std::mt19937 random(12);
    for (int i = 0; i < 200; ++i) {
        std::string bytes(1 + random() % 400, ' ');
        for (char &c : bytes) c = static_cast<char>(1 + random() % 255);  // no NUL inside a string
        const int32_t e = string_error(bytes);
        EXPECT_TRUE(e == OX_PRJ_NO_TEXT || e == OX_PRJ_UNKNOWN_KEYWORD || e == OX_PRJ_CANNOT_BUILD) << e;
    }
    // A 10 MB line: without line feeds no text; with them, too long a line.
    const std::string huge(10u << 20, 'A');
    EXPECT_EQ(string_error(huge), OX_PRJ_NO_TEXT);
    EXPECT_EQ(string_error("PROJECTION UTM\n" + huge + "\n"), OX_PRJ_UNKNOWN_KEYWORD);
    EXPECT_EQ(string_error("PROJECTION UTM\nPARAMETERS\n" + huge + "\n"), OX_PRJ_UNKNOWN_KEYWORD);
    // A long comment is no long line; 255 characters are, 256 are not.
    EXPECT_EQ(string_error("PROJECTION GEOGRAPHIC /* " + huge.substr(0, 5000) + "\nUNITS DD\n"), 0);
    EXPECT_EQ(string_error("DATUM NAD83" + std::string(244, ' ') + "\nPROJECTION GEOGRAPHIC\n"), 0);
    EXPECT_EQ(string_error("DATUM NAD83 " + std::string(244, 'X') + "\nPROJECTION GEOGRAPHIC\n"),
              OX_PRJ_UNKNOWN_KEYWORD);
    // Keywords with nothing after them and numbers out of range.
    EXPECT_EQ(string_error("PROJECTION\nZONE\nDATUM\nUNITS\nPARAMETERS\n"), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(string_error("PROJECTION UTM\nZONE 99999999999999999999\n"), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(string_error("PROJECTION UTM\nZONE -99999999999999999999\n"), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(string_error("PROJECTION UTM\nZONE 10\nXSHIFT 1e999\n"), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(string_error("PROJECTION UTM\nZONE 10\nYSHIFT nan\n"), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(string_error("PROJECTION LAMBERT\nPARAMETERS 99999999999 0 0\n0\n0\n0\n0\n0\n"), 0);
    EXPECT_EQ(string_error("PROJECTION GEOGRAPHIC\nSPHEROID 1e999 1\n"), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(string_error("PROJECTION GEOGRAPHIC\nUNITS 1e-320\n"), OX_PRJ_CANNOT_BUILD);
    EXPECT_EQ(string_error("PROJECTION TRANSVERSE\nUNITS 1e308\nPARAMETERS 1\n0\n0\n0\n0\n"), 0);
}

TEST(PrjHostile, PathsThatAreNoLegacyFiles) {
    oxtest::TempDir dir;
    EXPECT_EQ(file_error(dir.path), OX_PRJ_CANNOT_OPEN);  // a directory
    EXPECT_EQ(file_error(dir.path + "/missing.prj"), OX_PRJ_CANNOT_OPEN);
    int32_t error = 0;
    EXPECT_EQ(ox_coordsys_from_prjfile(nullptr, &error), nullptr);
    EXPECT_EQ(error, OX_PRJ_NO_TEXT);
    EXPECT_EQ(ox_vertcs_from_prjfile(nullptr, nullptr), nullptr);
    const std::string path = dir.path + "/file.prj";
    // NUL bytes: not text.
    write_file(path, std::string("PROJECTION GEOGRAPHIC\n\0UNITS DD\n", 33));
    EXPECT_EQ(file_error(path), OX_PRJ_UNKNOWN_KEYWORD);
    // Over a megabyte: not a legacy file, whatever it holds.
    write_file(path, "PROJECTION GEOGRAPHIC\nUNITS DD\n" + std::string((1u << 20) + 10, '\n'));
    EXPECT_EQ(file_error(path), OX_PRJ_CANNOT_OPEN);
    write_file(path, "PROJECTION GEOGRAPHIC\nUNITS DD\n" + std::string(100000, '\n'));
    EXPECT_EQ(file_error(path), 0);
    write_file(path, "");
    EXPECT_EQ(file_error(path), OX_PRJ_NO_TEXT);
    // A file that opens but cannot be read.
    if (std::ifstream("/proc/self/mem").good()) {
        EXPECT_EQ(file_error("/proc/self/mem"), OX_PRJ_CANNOT_OPEN);
    }
    // An unreadable file (a privileged user reads it all the same).
    write_file(path, "PROJECTION GEOGRAPHIC\nUNITS DD\n");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    if (geteuid() != 0) {
        EXPECT_EQ(file_error(path), OX_PRJ_CANNOT_OPEN);
    }
}

TEST(PrjHostile, EveryAllocationFails) {
    oxtest::TempDir dir;
    const std::string path = dir.path + "/sp.prj";
    write_file(path, "PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM NAD83\nUNITS FEET\n");
    int32_t e = 0;
    oxtest::every_allocation_fails([&] { return ox_coordsys_from_prjfile(path.c_str(), &e); }, "file reader");
    for (const char *text : {
             "PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM HPGN\nUNITS METERS\nXSHIFT 1\n",
             "PROJECTION STATEPLANE\nFIPSZONE 405\nDATUM NAD27\nUNITS METERS\n",
             "PROJECTION UTM\nZONE -7\nSPHEROID 6378000 6357000\nUNITS FEET\n",
             "PROJECTION GEOGRAPHIC\nSPHEROID SAMERICAN1969\nUNITS GRADS\n",
             "PROJECTION SINUSOIDAL\nPARAMETERS 0\n0 0 0\n0\n0\n",
             "PROJECTION HOTINE\nUNITS 3.28\nPARAMETERS 2\n1\n45 0 0\n7 0 0\n46 0 0\n0\n0\n",
         })
        oxtest::every_allocation_fails([&] { return ox_coordsys_from_prjstring(text, &e); }, text);
    for (const char *text : {"PROJECTION GEOGRAPHIC\nZUNITS FEET /* NAVD_1988 - VCS# = 5703\n",
                             "PROJECTION UTM\nZONE 10\nZUNITS 3.2808 /* nothing known\n"}) {
        oxtest::every_allocation_fails([&] { return ox_hvcoordsys_from_prjstring(text, &e); }, text);
        oxtest::every_allocation_fails([&] { return ox_zunit_from_prjstring(text, &e); }, text);
    }
    // The writer builds and deletes objects of its own: nothing may be left.
    Owned sp(ox_factory_projcs(2229));
    Owned navd(ox_factory_vertcs(5703));
    static char text[OX_PRJSTRING_SIZE];
    for (int n = 1; n < 2000; ++n) {
        const int64_t live = ox::mem_live_count();
        ox::mem_fail_after(n);
        const int32_t r = ox_coordsys_vertcs_to_prjstring(sp.get(), navd.get(), text, &e);
        ox::mem_fail_after(0);
        ASSERT_EQ(ox::mem_live_count(), live) << "the writer leaks when allocation " << n << " fails";
        if (r == 0 && n > 500) break;
    }
}
