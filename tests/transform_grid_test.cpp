// The grid methods and the data home: NADCON/HARN pairs the tests write in
// both byte orders against hand-computed bilinear values, the three real
// NTv2 grids against the reference vectors, sub-grids, units, and grids
// that must not load.
#include <gtest/gtest.h>
#include <strings.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <string>

#include "object/ox_memory.h"
#include "test_util.h"
#include "transform/ox_gridmethods.h"
#include "transform/ox_gtconstants.h"
#include "transform_support.h"

using oxtest::geogcs_text;
using oxtest::make_geogtran;
using oxtest::Owned;

namespace {

// The test grid: 25 x 4 nodes, 0.25 x 0.5 degree, from (-100, 30); shifts
// chosen exactly representable and not bilinear.
oxtest::NadconGrid test_grid(float xmin = -100.0f, float ymin = 30.0f) {
    return {25,
            4,
            xmin,
            0.25f,
            ymin,
            0.5f,
            [](int i, int j) { return 1.0f + 0.125f * i + 0.5f * j + static_cast<float>((i * j) % 3); },
            [](int i, int j) { return -2.0f + 0.25f * j + 0.0625f * i * i; }};
}

ox_object *grid_transformation(const char *method, const std::string &grid) {
    return make_geogtran(geogcs_text("A", 6378206.4, 294.978698213898), geogcs_text("B", 6378137, 298.257222101),
                         method, {{"Dataset_" + grid, 0.0}});
}

struct DataHome {
    explicit DataHome(const std::string &dir) { ox_datahome_setdir(dir.c_str()); }
    ~DataHome() { ox_datahome_setdir(nullptr); }
};

// Loads a NADCON pair from bytes through memory streams.
int32_t load_nadcon(const std::string &los, const std::string &las, ox::GtConstants *block) {
    std::FILE *a = fmemopen(const_cast<char *>(los.data()), los.size(), "rb");
    std::FILE *b = fmemopen(const_cast<char *>(las.data()), las.size(), "rb");
    const int32_t rc = a && b ? ox::nadcon_load_streams(a, b, block) : 0;
    if (a) std::fclose(a);
    if (b) std::fclose(b);
    return rc;
}
int32_t load_ntv2(const std::string &gsb, ox::GtConstants *block) {
    std::FILE *f = fmemopen(const_cast<char *>(gsb.data()), gsb.size(), "rb");
    const int32_t rc = f ? ox::ntv2_load_stream(f, block) : 0;
    if (f) std::fclose(f);
    return rc;
}

}  // namespace

// The hand-computed point: cell (2, 2), fx = 1/4, fy = 1/2; corners
// lon 3.25, 2.375, 2.75, 2.875 -> 2.90625"; lat -1.25, -0.9375, -1, -0.6875
// -> -1.046875".  Both byte orders, both methods, every spelling of the
// name, loaded and straight from the files.
TEST(NadconGrids, HandComputedShiftsInBothByteOrders) {
    oxtest::TempDir dir;
    write_nadcon(dir.path + "/nadcon", "little", test_grid(), false);
    write_nadcon(dir.path + "/nadcon", "big", test_grid(), true);
    write_nadcon(dir.path + "/harn", "big", test_grid(), true);
    const DataHome home(dir.path);
    const double want_lon = ox_delta((-99.4375 - 2.90625 / 3600) * oxtest::kDeg) / oxtest::kDeg;
    const double want_lat = 31.25 - 1.046875 / 3600;
    for (const auto &[method, grid] : std::vector<std::pair<const char *, std::string>>{
             {"NADCON", "little"}, {"NADCON", "big"}, {"HARN", "big"}, {"NADCON", "BIG"}}) {
        SCOPED_TRACE(std::string(method) + " " + grid);
        const Owned gt(grid_transformation(method, grid));
        double p[4] = {-99.4375, 31.25, -100.0, 31.0}, h[2] = {5.0, 7.0};  // the second on the western edge
        if (grid == "BIG") {  // no such file (names are case-sensitive on this system)
            EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 2, p, nullptr), 0);
            EXPECT_EQ(p[0], -99.4375);
            continue;
        }
        ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 2, p, h), 1);
        EXPECT_NEAR(p[0], want_lon, 1e-12);
        EXPECT_NEAR(p[1], want_lat, 1e-12);
        EXPECT_EQ(p[2], -100.0);  // outside: unchanged
        EXPECT_TRUE(h[0] == 5.0 && h[1] == 7.0);  // heights kept
        ASSERT_EQ(ox_geog2_to_geog1(gt.get(), 2, p, nullptr), 1);
        EXPECT_NEAR(p[0], -99.4375, 1e-12);
        EXPECT_NEAR(p[1], 31.25, 1e-12);
    }
    // "Dataset_", "DATASET_" and no prefix name the same pair; the routine
    // called without loaded blocks reads the cells from the files.
    Owned m(ox_method_new("NADCON", nullptr, nullptr));
    const double e[2] = {6378137, 0.00669438}, values[16] = {};
    for (const char *name : {"Dataset_little", "DATASET_big", "little"}) {
        double q[2] = {-99.4375 * oxtest::kDeg, 31.25 * oxtest::kDeg};
        EXPECT_EQ(ox_method_forward(m.get())(e, e, values, name, 1, q, nullptr, nullptr, nullptr, nullptr), 1);
        EXPECT_NEAR(q[0] / oxtest::kDeg, want_lon, 1e-12) << name;
        EXPECT_NEAR(q[1] / oxtest::kDeg, want_lat, 1e-12) << name;
        EXPECT_EQ(ox_method_inverse(m.get())(e, e, values, name, 1, q, nullptr, nullptr, nullptr, nullptr), 1);
        EXPECT_NEAR(q[0] / oxtest::kDeg, -99.4375, 1e-12) << name;
    }
    double r[2] = {0.1, 0.2};
    EXPECT_EQ(ox_method_forward(m.get())(e, e, values, "", 1, r, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(ox_method_forward(m.get())(e, e, values, "Dataset_none", 1, r, nullptr, nullptr, nullptr, nullptr), 0);
}

// The far west (a longitude above 140 taken 360 lower) and the southern
// grids (stored mirrored north).
TEST(NadconGrids, FarWestAndSouthernConventions) {
    oxtest::TempDir dir;
    write_nadcon(dir.path + "/nadcon", "west", test_grid(-195.0f, 50.0f), false);
    write_nadcon(dir.path + "/nadcon", "south", test_grid(-175.0f, 10.0f), false);
    const DataHome home(dir.path);
    const Owned west(grid_transformation("NADCON", "west"));
    double p[2] = {170.0, 51.0};
    ASSERT_EQ(ox_geog1_to_geog2(west.get(), 1, p, nullptr), 1);
    EXPECT_NEAR(p[0], 170.0 - (1.0 + 0.125 * 20 + 0.5 * 2 + 1) / 3600, 1e-12);  // node (20, 2): 40 % 3 = 1
    const Owned south(grid_transformation("NADCON", "south"));
    double q[2] = {-172.0, -11.0};
    ASSERT_EQ(ox_geog1_to_geog2(south.get(), 1, q, nullptr), 1);
    EXPECT_NEAR(q[1], -(11.0 + (-2.0 + 0.25 * 2 + 0.0625 * 144) / 3600), 1e-12);  // node (12, 2)
}

// The data home: at most 255 characters, the separator added only when
// missing, a directory where a file should be.
TEST(DataHome, LengthSeparatorAndDirectories) {
    oxtest::TempDir dir;
    std::string deep = dir.path;
    while (deep.size() < 240) deep += "/d";
    deep += "/" + std::string(254 - deep.size() - 1, 'x');
    ASSERT_EQ(deep.size(), 254u);
    write_nadcon(deep + "/nadcon", "g", test_grid(), false);
    const Owned gt(grid_transformation("NADCON", "g"));
    for (const auto &[home, loads] :
         std::vector<std::pair<std::string, bool>>{{deep, true}, {deep + "/", true}, {deep + "//", false}}) {
        ox_datahome_setdir(home.c_str());  // 254, 255 and 256 characters
        ox_geogtran_unload_constants(gt.get());
        double p[2] = {-99.4375, 31.25};
        EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), loads ? 1 : 0) << home.size();
    }
    static std::string provided;
    provided = deep;
    ox_datahome_setfunc([] { return provided.c_str(); });
    double p[2] = {-99.4375, 31.25};
    EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), 1);
    ox_datahome_setfunc(nullptr);
    ox_geogtran_unload_constants(gt.get());
    EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), 0);
    // A failed load is not remembered: the next call tries again.
    ox_datahome_setdir(deep.c_str());
    EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), 1);
    // Directories named like the files.
    oxtest::make_dirs(dir.path + "/nadcon/dirs.los");
    oxtest::make_dirs(dir.path + "/nadcon/dirs.las");
    oxtest::make_dirs(dir.path + "/ntv2/dirs.gsb");
    ox_datahome_setdir(dir.path.c_str());
    for (const char *method : {"NADCON", "NTv2"}) {
        const Owned d(grid_transformation(method, "dirs"));
        EXPECT_EQ(ox_geogtran_load_constants(d.get()), 0) << method;
    }
    ox_datahome_setdir(nullptr);
}

// NADCON pairs that must not load: every truncation, counts whose product
// overflows 32 bits, absurd sizes and spacings, NaN shifts, a ".las" that
// disagrees with its ".los"; no block is left behind and nothing larger
// than the file is allocated.
TEST(NadconGrids, HostilePairsDoNotLoad) {
    const oxtest::NadconGrid g = test_grid();
    const std::string los = oxtest::nadcon_bytes(g, false, false), las = oxtest::nadcon_bytes(g, true, false);
    ox::GtConstants *block = ox::gt_new();
    ASSERT_EQ(load_nadcon(los, las, block), 1);
    ox::gt_delete(block);
    const int64_t live = ox::mem_live_count();
    const auto refused = [&](const std::string &a, const std::string &b, const char *what) {
        ox::GtConstants *c = ox::gt_new();
        EXPECT_EQ(load_nadcon(a, b, c), 0) << what;
        EXPECT_EQ(c->first, nullptr) << what;
        ox::gt_delete(c);
        EXPECT_EQ(ox::mem_live_count(), live) << what;
    };
    for (size_t cut = 0; cut < los.size(); cut += 7) refused(los.substr(0, cut), las, "truncated .los");
    refused(los, las.substr(0, las.size() - 1), "truncated .las");
    const auto with = [&](std::string bytes, size_t offset, const void *value) {
        std::memcpy(&bytes[offset], value, 4);
        return bytes;
    };
    const int32_t huge = 0x10000, negative = -30, zero = 0;
    const float nan = NAN, inf = INFINITY, nought = 0.0f, minus = -0.25f;
    refused(with(with(los, 64, &huge), 68, &huge), with(with(las, 64, &huge), 68, &huge), "65536 x 65536");
    refused(with(los, 64, &negative), with(las, 64, &negative), "negative columns");
    refused(with(los, 68, &zero), with(las, 68, &zero), "no rows");
    refused(with(los, 80, &nought), with(las, 80, &nought), "zero spacing");
    refused(with(los, 80, &minus), with(las, 80, &minus), "negative spacing");
    refused(with(los, 76, &nan), with(las, 76, &nan), "NaN origin");
    refused(with(los, 88, &inf), with(las, 88, &inf), "infinite spacing");
    refused(with(los, 100 + 4 * 3, &nan), las, "NaN shift");
    refused(los, with(las, 84, &minus), ".las header unlike the .los");
    refused(los, oxtest::nadcon_bytes(test_grid(-99.0f), true, false), ".las grid elsewhere");
    // Big-endian and little-endian halves of one pair are both read right.
    ox::GtConstants *mixed = ox::gt_new();
    EXPECT_EQ(load_nadcon(los, oxtest::nadcon_bytes(g, true, true), mixed), 1);
    ox::gt_delete(mixed);
    // Every allocation of the load failing in turn.
    for (int64_t n = 1; n <= 4; ++n) {
        ox::GtConstants *c = ox::gt_new();
        ox::mem_fail_after(n);
        const int32_t rc = load_nadcon(los, las, c);
        ox::mem_fail_after(0);
        EXPECT_EQ(rc != 0, c->first != nullptr);
        ox::gt_delete(c);
        EXPECT_EQ(ox::mem_live_count(), live);
    }
}

// The three real grids against the reference vectors, forward and
// inverse, through transformations that find them in the data home.
TEST(Ntv2Grids, ReferenceVectors) {
    const DataHome home(OX_TEST_DATA_DIR "/grids");
    std::map<std::string, ox_object *> by_grid;
    double worst_forward = 0, worst_inverse = 0;
    int points = 0;
    for (const auto &f : oxtest::read_csv("ntv2_reference.csv")) {
        ox_object *&gt = by_grid[f[0]];
        if (gt == nullptr) gt = grid_transformation("NTv2", f[0].substr(0, f[0].size() - 4));
        const bool forward = f[1] == "forward";
        double p[2] = {std::stod(f[2]), std::stod(f[3])};
        ASSERT_EQ(forward ? ox_geog1_to_geog2(gt, 1, p, nullptr) : ox_geog2_to_geog1(gt, 1, p, nullptr),
                  1);
        const double d = std::max(std::fabs(p[0] - std::stod(f[4])), std::fabs(p[1] - std::stod(f[5])));
        (forward ? worst_forward : worst_inverse) = std::max(forward ? worst_forward : worst_inverse, d);
        ++points;
    }
    std::printf("  %d points, worst %.2g degree forward, %.2g inverse\n", points, worst_forward, worst_inverse);
    EXPECT_EQ(by_grid.size(), 3u);
    for (auto &[grid, gt] : by_grid) ox_geogtran_del(gt);
    EXPECT_LE(worst_forward, 1e-9);
    EXPECT_LE(worst_inverse, 1e-9);
    // The name may carry its extension; a point outside is left alone.
    const Owned named(grid_transformation("NTv2", "BETA2007.gsb"));
    double p[4] = {10.0, 50.0, 100.0, 10.0};
    EXPECT_EQ(ox_geog1_to_geog2(named.get(), 2, p, nullptr), 1);
    EXPECT_EQ(p[2], 100.0);
    EXPECT_EQ(p[3], 10.0);
}

namespace {

// A parent grid (2 x 2 degrees at 0.5) with a child (1 x 1 degree at 0.25)
// and a grandchild, and a second top-level grid; each level shifts by its
// own constant so that the grid used shows in the result.
std::vector<oxtest::Ntv2SubGrid> nested_grids() {
    const auto level = [](float dlat, float dlon) {
        return [dlat, dlon](int, int) { return std::pair<float, float>(dlat, dlon); };
    };
    return {{"PARENT", "NONE", 36000, 43200, -7200, 0, 1800, 1800, level(1.0f, 2.0f)},
            {"CHILD", "PARENT", 36000, 39600, -7200, -3600, 900, 900, level(3.0f, 4.0f)},
            {"GRAND", "CHILD", 36000, 37800, -7200, -5400, 450, 450, level(5.0f, 6.0f)},
            {"OTHER", "NONE", 0, 3600, 0, 3600, 900, 900, level(7.0f, 8.0f)}};
}

}  // namespace

// Parent and child sub-grids: the finest containing the point wins; edges
// belong to the grid; every unit and byte order gives the same shifts.
TEST(Ntv2Grids, SubGridsUnitsAndByteOrders) {
    oxtest::TempDir dir;
    int k = 0;
    for (const char *unit : {"SECONDS", "MINUTES", "DEGREES", "RADIANS"})
        for (bool big : {false, true})
            oxtest::write_file(dir.path + "/g" + std::to_string(k++) + ".gsb",
                               oxtest::ntv2_bytes(nested_grids(), unit, big));
    oxtest::make_dirs(dir.path + "/ntv2");
    for (int i = 0; i < k; ++i)
        std::rename((dir.path + "/g" + std::to_string(i) + ".gsb").c_str(),
                    (dir.path + "/ntv2/g" + std::to_string(i) + ".gsb").c_str());
    const DataHome home(dir.path);
    // lon east, lat; the (dlat, dlon west) arc-seconds expected, or none.
    struct Case {
        double lon, lat, dlat, dlon;
        bool inside, edge, round_trip;
    };
    const Case cases[] = {
        {1.75, 10.25, 5, 6, true, false, false},  // grandchild
        {1.2, 10.8, 3, 4, true, false, true},     // child only
        {0.5, 11.5, 1, 2, true, false, true},     // parent only
        // Corners, a hair inside (the unit conversions round a point on an
        // edge to either side of it).
        {2.0 - 1e-10, 12.0 - 1e-10, 1, 2, true, true, false},  // the parent's north-east corner
        {1.0 + 1e-10, 10.0 + 1e-10, 3, 4, true, true, false},  // the child's south-west corner
        {1.5 + 1e-10, 10.5 - 1e-10, 5, 6, true, true, false},  // the grandchild's north-west corner
        {-0.5, 0.5, 7, 8, true, false, true},     // the other top-level grid
        {3.0, 10.5, 0, 0, false, false, false},   // east of everything
        {1.5, 9.99, 0, 0, false, false, false},   // south of everything
    };
    for (int i = 0; i < k; ++i) {
        SCOPED_TRACE(i);
        const bool radians = i >= 6;  // extents in radians do not land on the edges exactly
        const Owned gt(grid_transformation("NTv2", "g" + std::to_string(i)));
        for (const Case &c : cases) {
            if (radians && c.edge) continue;
            double p[2] = {c.lon, c.lat};
            ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), c.inside ? 1 : 0) << c.lon << " " << c.lat;
            EXPECT_NEAR(p[0], c.lon - c.dlon / 3600, 2e-10);
            EXPECT_NEAR(p[1], c.lat + c.dlat / 3600, 2e-10);
            if (!c.round_trip) continue;
            ASSERT_EQ(ox_geog2_to_geog1(gt.get(), 1, p, nullptr), 1);
            EXPECT_NEAR(p[0], c.lon, 1e-12);
            EXPECT_NEAR(p[1], c.lat, 1e-12);
        }
    }
}

// NTv2 files that must not load.
TEST(Ntv2Grids, HostileFilesDoNotLoad) {
    const std::string good = oxtest::ntv2_bytes(nested_grids(), "SECONDS", false);
    ox::GtConstants *block = ox::gt_new();
    ASSERT_EQ(load_ntv2(good, block), 1);
    ox::gt_delete(block);
    const int64_t live = ox::mem_live_count();
    const auto refused = [&](const std::string &bytes, const std::string &what) {
        ox::GtConstants *c = ox::gt_new();
        EXPECT_EQ(load_ntv2(bytes, c), 0) << what;
        ox::gt_delete(c);
        EXPECT_EQ(ox::mem_live_count(), live) << what;
    };
    // Every truncation before the last node (the END record is optional).
    for (size_t cut = 0; cut + 16 < good.size(); cut += cut < 400 ? 1 : 37) refused(good.substr(0, cut), "cut");
    const auto patched = [&](size_t offset, const void *value, size_t n) {
        std::string b = good;
        std::memcpy(&b[offset], value, n);
        return b;
    };
    const size_t sub = 11 * 16;  // the first sub-grid's header
    const int32_t huge = 0x7fffffff, minus = -1, count = 0x40000000;
    const double nan = NAN, negative = -1800.0;
    const float fnan = NAN;
    refused(patched(2 * 16 + 8, &huge, 4), "NUM_FILE huge");
    refused(patched(2 * 16 + 8, &minus, 4), "NUM_FILE negative");
    refused(patched(sub + 10 * 16 + 8, &count, 4), "GS_COUNT overflowing");
    refused(patched(sub + 4 * 16 + 8, &nan, 8), "NaN extent");
    refused(patched(sub + 8 * 16 + 8, &negative, 8), "negative increment");
    refused(patched(sub + 11 * 16 + 4, &fnan, 4), "NaN shift");
    refused(patched(3 * 16 + 8, "FURLONGS", 8), "unknown unit");
    refused(patched(0, "NUM_ORAC", 8), "not the layout");
    // Parents: a cycle, a name no grid has, two grids of one name.
    auto grids = nested_grids();
    grids[0].parent = "GRAND";
    refused(oxtest::ntv2_bytes(grids, "SECONDS", false), "cycle");
    grids = nested_grids();
    grids[1].parent = "NOBODY";
    refused(oxtest::ntv2_bytes(grids, "SECONDS", true), "unknown parent");
    grids = nested_grids();
    grids[3].name = "CHILD";
    refused(oxtest::ntv2_bytes(grids, "SECONDS", false), "duplicate name");
    grids = nested_grids();
    grids[0].n_lat += 100;  // not a whole number of rows
    refused(oxtest::ntv2_bytes(grids, "SECONDS", false), "extent off the nodes");
    // Every allocation failing in turn.
    for (int64_t n = 1; n <= 6; ++n) {
        ox::GtConstants *c = ox::gt_new();
        ox::mem_fail_after(n);
        const int32_t rc = load_ntv2(good, c);
        ox::mem_fail_after(0);
        EXPECT_EQ(rc != 0, c->first != nullptr);
        ox::gt_delete(c);
        EXPECT_EQ(ox::mem_live_count(), live);
    }
}

// Every grid transformation of the catalogue (NADCON and NTv2) builds and,
// once a grid of its name is in the data home, converts a point inside it
// forward and back; without the grid it converts nothing.
TEST(GridMethods, EveryCatalogueGridTransformationConverts) {
    oxtest::TempDir dir;
    const DataHome home(dir.path);
    // One NTv2 grid of 1 x 1 degree about (99 W, 31 N), constant shifts.
    const std::vector<oxtest::Ntv2SubGrid> ntv2 = {
        {"ONLY", "NONE", 30.5 * 3600, 31.5 * 3600, 98.5 * 3600, 99.5 * 3600, 900, 900,
         [](int, int) { return std::pair<float, float>(0.5f, 1.5f); }}};
    const std::string gsb = oxtest::ntv2_bytes(ntv2, "SECONDS", false);
    oxtest::make_dirs(dir.path + "/ntv2");
    int32_t count = 0;
    int32_t *codes = ox_factory_geogtran_codelist(&count);
    ASSERT_NE(codes, nullptr);
    std::map<std::string, int> converted;
    std::set<std::string> written;  // grids already in the data home
    for (int32_t k = 0; k < count; ++k) {
        const Owned gt(ox_factory_geogtran(codes[k]));
        ASSERT_TRUE(gt) << codes[k];
        char method[OX_NAME_SIZE], grid[OX_NAME_SIZE];
        ox_method_name(ox_geogtran_method(gt.get()), method);
        const bool nadcon = std::strcmp(method, "NADCON") == 0, ntv = std::strcmp(method, "NTv2") == 0;
        if (!nadcon && !ntv) continue;
        SCOPED_TRACE(codes[k]);
        ox_object *params[OX_PARAMETER_SLOTS];
        ox_geogtran_parameters(gt.get(), params);
        ASSERT_NE(params[15], nullptr);
        ox_parameter_name(params[15], grid);
        ASSERT_EQ(std::strncmp(grid, "Dataset_", 8), 0);
        const std::string name = grid + 8;
        // In the source system's unit.
        const double unit = ox_unit_factor(ox_geogcs_unit(ox_geogtran_geogcs1(gt.get())));
        const double lon = -99.0 * oxtest::kDeg / unit, lat = 31.0 * oxtest::kDeg / unit;
        double p[2] = {lon, lat};
        if (written.insert(std::string(method) + "/" + name).second) {
            EXPECT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), 0);  // no grid yet
            EXPECT_TRUE(p[0] == lon && p[1] == lat);
            if (nadcon) {
                oxtest::write_nadcon(dir.path + "/nadcon", name, test_grid(), (k & 1) != 0);
            } else {
                const bool has_suffix = name.size() > 4 && strcasecmp(name.c_str() + name.size() - 4, ".gsb") == 0;
                oxtest::write_file(dir.path + "/ntv2/" + name + (has_suffix ? "" : ".gsb"), gsb);
            }
        }
        ASSERT_EQ(ox_geog1_to_geog2(gt.get(), 1, p, nullptr), 1) << name;
        EXPECT_GT(std::fabs(p[0] - lon) + std::fabs(p[1] - lat), 0.0);
        ASSERT_EQ(ox_geog2_to_geog1(gt.get(), 1, p, nullptr), 1) << name;
        EXPECT_NEAR(p[0], lon, 1e-10 / unit * oxtest::kDeg);
        EXPECT_NEAR(p[1], lat, 1e-10 / unit * oxtest::kDeg);
        ++converted[method];
    }
    ox_factory_codelist_del(codes);
    EXPECT_GT(converted["NADCON"], 100);
    EXPECT_GT(converted["NTv2"], 40);
    std::printf("  catalogue grid transformations converted: %d NADCON, %d NTv2\n", converted["NADCON"],
                converted["NTv2"]);
}
