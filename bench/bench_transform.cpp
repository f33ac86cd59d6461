// Datum transformation throughput through the driver (ox_geog1_to_geog2,
// ox_geog2_to_geog1 on transformations read from object strings, degrees
// in and out), 1,000,000 points per call, heights absent or given; grid
// methods with their grid loaded (a grid written for the benchmark into a
// temporary data home); and the time to load a 20 MB grid.
#include <benchmark/benchmark.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ox.h"

namespace {

constexpr int32_t kPoints = 1000000;

const char *const kEd50 =
    "GEOGCS[\"ED50\",DATUM[\"D_ED50\",SPHEROID[\"International_1924\",6378388.0,297.0]],PRIMEM[\"Greenwich\",0.0],"
    "UNIT[\"Degree\",0.0174532925199433]]";
const char *const kWgs84 =
    "GEOGCS[\"WGS84\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],"
    "UNIT[\"Degree\",0.0174532925199433]]";

std::string transformation(const char *method, const char *parameters) {
    return std::string("GEOGTRAN[\"T\",") + kEd50 + "," + kWgs84 + ",METHOD[\"" + method + "\"]" + parameters + "]";
}

const char *const kTranslation =
    ",PARAMETER[\"X_Axis_Translation\",-87.0],PARAMETER[\"Y_Axis_Translation\",-98.0],"
    "PARAMETER[\"Z_Axis_Translation\",-121.0]";
const char *const kSeven =
    ",PARAMETER[\"X_Axis_Translation\",-89.5],PARAMETER[\"Y_Axis_Translation\",-93.8],"
    "PARAMETER[\"Z_Axis_Translation\",-123.1],PARAMETER[\"X_Axis_Rotation\",0.1],PARAMETER[\"Y_Axis_Rotation\",0.2],"
    "PARAMETER[\"Z_Axis_Rotation\",-0.156],PARAMETER[\"Scale_Difference\",1.2]";
const char *const kBadekas =
    ",PARAMETER[\"X_Axis_Translation\",-89.5],PARAMETER[\"Y_Axis_Translation\",-93.8],"
    "PARAMETER[\"Z_Axis_Translation\",-123.1],PARAMETER[\"X_Axis_Rotation\",0.1],PARAMETER[\"Y_Axis_Rotation\",0.2],"
    "PARAMETER[\"Z_Axis_Rotation\",-0.156],PARAMETER[\"Scale_Difference\",1.2],"
    "PARAMETER[\"X_Coordinate_of_Rotation_Origin\",3903453.1482],"
    "PARAMETER[\"Y_Coordinate_of_Rotation_Origin\",368135.3134],"
    "PARAMETER[\"Z_Coordinate_of_Rotation_Origin\",5012970.3051]";

// Points in a box (degrees).
std::vector<double> points(double lon0, double lon1, double lat0, double lat1) {
    std::mt19937_64 rng(1);
    std::uniform_real_distribution<double> lon(lon0, lon1), lat(lat0, lat1);
    std::vector<double> p(2 * static_cast<size_t>(kPoints));
    for (int32_t i = 0; i < kPoints; ++i) p[2 * i] = lon(rng), p[2 * i + 1] = lat(rng);
    return p;
}

// Converts the points once per iteration, the input restored outside the
// timed region.
void run(benchmark::State &state, ox_object *gt, const std::vector<double> &in, bool inverse, bool heights) {
    std::vector<double> p = in, h(heights ? kPoints : 0, 100.0);
    int32_t converted = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::memcpy(p.data(), in.data(), in.size() * sizeof(double));
        state.ResumeTiming();
        converted = inverse ? ox_geog2_to_geog1(gt, kPoints, p.data(), heights ? h.data() : nullptr)
                            : ox_geog1_to_geog2(gt, kPoints, p.data(), heights ? h.data() : nullptr);
        benchmark::DoNotOptimize(p.data());
    }
    if (converted != kPoints) state.SkipWithError("not every point converted");
    state.SetItemsProcessed(state.iterations() * kPoints);
}

void geocentric(benchmark::State &state, const char *method, const char *parameters, bool inverse, bool heights) {
    ox_object *gt = ox_geogtran_from_string(transformation(method, parameters).c_str());
    run(state, gt, points(-180, 180, -85, 85), inverse, heights);
    ox_geogtran_del(gt);
}

// ---------------------------------------------------------------------------
// Grids written for the benchmark.
// ---------------------------------------------------------------------------

template <class T>
void put(std::string &out, T v) {
    out.append(reinterpret_cast<const char *>(&v), sizeof v);
}
void record(std::string &out, const char *keyword, const char *text) {
    char k[8], v[8];
    std::memset(k, ' ', 8);
    std::memset(v, ' ', 8);
    std::memcpy(k, keyword, std::strlen(keyword));
    std::memcpy(v, text, std::strlen(text));
    out.append(k, 8);
    out.append(v, 8);
}
template <class T>
void record(std::string &out, const char *keyword, T value) {
    char k[8];
    std::memset(k, ' ', 8);
    std::memcpy(k, keyword, std::strlen(keyword));
    out.append(k, 8);
    put(out, value);
    if (sizeof value == 4) put(out, int32_t{0});
}

// An NTv2 grid of rows x cols nodes at 36 arc-seconds from (0 E, 40 N).
std::string ntv2_grid(int rows, int cols) {
    std::string out;
    record(out, "NUM_OREC", int32_t{11});
    record(out, "NUM_SREC", int32_t{11});
    record(out, "NUM_FILE", int32_t{1});
    record(out, "GS_TYPE", "SECONDS");
    record(out, "VERSION", "NTv2.0");
    record(out, "SYSTEM_F", "FROM");
    record(out, "SYSTEM_T", "TO");
    for (const char *k : {"MAJOR_F", "MINOR_F", "MAJOR_T", "MINOR_T"}) record(out, k, 6378137.0);
    record(out, "SUB_NAME", "GRID");
    record(out, "PARENT", "NONE");
    record(out, "CREATED", "");
    record(out, "UPDATED", "");
    record(out, "S_LAT", 144000.0);
    record(out, "N_LAT", 144000.0 + 36.0 * (rows - 1));
    record(out, "E_LONG", -36.0 * (cols - 1));
    record(out, "W_LONG", 0.0);
    record(out, "LAT_INC", 36.0);
    record(out, "LONG_INC", 36.0);
    record(out, "GS_COUNT", int32_t{rows * cols});
    out.reserve(out.size() + 16 * static_cast<size_t>(rows) * cols + 16);
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < cols; ++i) {
            put(out, static_cast<float>(1.5 + 0.001 * i));
            put(out, static_cast<float>(-2.5 + 0.001 * j));
            put(out, 0.0f);
            put(out, 0.0f);
        }
    record(out, "END", "");
    return out;
}

// A NADCON file of nr x nc values at 0.01 degree from (-100, 30).
std::string nadcon_file(int nc, int nr, bool latitude) {
    std::string out(64, ' ');
    put(out, int32_t{nc});
    put(out, int32_t{nr});
    put(out, int32_t{1});
    for (float v : {-100.0f, 0.01f, 30.0f, 0.01f, 0.0f}) put(out, v);
    out.resize(4 * static_cast<size_t>(nc) + 4, '\0');
    for (int j = 0; j < nr; ++j) {
        put(out, int32_t{0});
        for (int i = 0; i < nc; ++i) put(out, static_cast<float>(latitude ? 0.5 + 0.001 * j : -1.0 + 0.001 * i));
    }
    return out;
}

struct Home {
    std::string dir;
    Home() {
        char pattern[] = "/tmp/ox_bench_XXXXXX";
        dir = mkdtemp(pattern);
        mkdir((dir + "/ntv2").c_str(), 0755);
        mkdir((dir + "/nadcon").c_str(), 0755);
        write("ntv2/small.gsb", ntv2_grid(501, 501));
        write("ntv2/large.gsb", ntv2_grid(1141, 1141));  // 20.8 MB
        write("nadcon/small.los", nadcon_file(501, 501, false));
        write("nadcon/small.las", nadcon_file(501, 501, true));
        write("nadcon/large.los", nadcon_file(2280, 1141, false));  // 2 x 10.4 MB
        write("nadcon/large.las", nadcon_file(2280, 1141, true));
        ox_datahome_setdir(dir.c_str());
    }
    ~Home() {
        for (const char *f : {"ntv2/small.gsb", "ntv2/large.gsb", "nadcon/small.los", "nadcon/small.las",
                              "nadcon/large.los", "nadcon/large.las"})
            std::remove((dir + "/" + f).c_str());
        rmdir((dir + "/ntv2").c_str());
        rmdir((dir + "/nadcon").c_str());
        rmdir(dir.c_str());
    }
    void write(const char *name, const std::string &bytes) const {
        std::FILE *f = std::fopen((dir + "/" + name).c_str(), "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
    }
};
const Home &home() {
    static const Home h;
    return h;
}

ox_object *grid_transformation(const char *method, const char *grid) {
    home();
    return ox_geogtran_from_string(
        transformation(method, (std::string(",PARAMETER[\"Dataset_") + grid + "\",0.0]").c_str()).c_str());
}

void grid(benchmark::State &state, const char *method, bool inverse) {
    ox_object *gt = grid_transformation(method, "small");
    // Points inside both grids: 0.1 to 4.9 E (NTv2), -99.9 to -95.1 (NADCON).
    const bool ntv2 = std::strcmp(method, "NTv2") == 0;
    run(state, gt, ntv2 ? points(0.1, 4.9, 40.1, 44.9) : points(-99.9, -95.1, 30.1, 34.9), inverse, false);
    ox_geogtran_del(gt);
}

void load(benchmark::State &state, const char *method) {
    ox_object *gt = grid_transformation(method, "large");
    for (auto _ : state) {
        if (ox_geogtran_load_constants(gt) == 0) state.SkipWithError("grid not loaded");
        state.PauseTiming();
        ox_geogtran_unload_constants(gt);
        state.ResumeTiming();
    }
    ox_geogtran_del(gt);
}

}  // namespace

BENCHMARK_CAPTURE(geocentric, GeocentricTranslation, "Geocentric_Translation", kTranslation, false, false)
    ->Name("BM_GeocentricTranslationForward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, GeocentricTranslationHeights, "Geocentric_Translation", kTranslation, false, true)
    ->Name("BM_GeocentricTranslationForwardHeights")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, GeocentricTranslationInverse, "Geocentric_Translation", kTranslation, true, false)
    ->Name("BM_GeocentricTranslationInverse")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, CoordinateFrame, "Coordinate_Frame", kSeven, false, false)
    ->Name("BM_CoordinateFrameForward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, CoordinateFrameInverse, "Coordinate_Frame", kSeven, true, false)
    ->Name("BM_CoordinateFrameInverse")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, PositionVector, "Position_Vector", kSeven, false, false)
    ->Name("BM_PositionVectorForward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, MolodenskyBadekas, "Molodensky_Badekas", kBadekas, false, false)
    ->Name("BM_MolodenskyBadekasForward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, Molodensky, "Molodensky", kTranslation, false, false)
    ->Name("BM_MolodenskyForward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(geocentric, MolodenskyAbridged, "Molodensky_Abridged", kTranslation, false, false)
    ->Name("BM_MolodenskyAbridgedForward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(grid, Ntv2, "NTv2", false)->Name("BM_Ntv2Forward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(grid, Ntv2Inverse, "NTv2", true)->Name("BM_Ntv2Inverse")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(grid, Nadcon, "NADCON", false)->Name("BM_NadconForward")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(grid, NadconInverse, "NADCON", true)->Name("BM_NadconInverse")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, Ntv2Load, "NTv2")->Name("BM_Ntv2Load20MB")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, NadconLoad, "NADCON")->Name("BM_NadconLoad2x10MB")->Unit(benchmark::kMillisecond);
