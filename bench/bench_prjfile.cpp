// Legacy projection files: reading a typical state plane file and building
// its system, from a string and from a file; reading a projection with its
// parameter lines; writing.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "ox.h"

namespace {

// As older software wrote it: comments, shift lines, an empty Parameters.
const char *const kStatePlane =
    "/* California zone V, NAD 1983, US survey feet\n"
    "Projection    STATEPLANE\n"
    "Fipszone      405\n"
    "Datum         NAD83\n"
    "Spheroid      GRS1980\n"
    "Units         FEET\n"
    "Zunits        NO\n"
    "Xshift        0.0000000000\n"
    "Yshift        0.0000000000\n"
    "Parameters\n";

const char *const kAlbers =
    "Projection    ALBERS\n"
    "Datum         NAD83\n"
    "Spheroid      GRS1980\n"
    "Units         METERS\n"
    "Zunits        NO\n"
    "Parameters\n"
    "  29 30  0.000 /* 1st standard parallel\n"
    "  45 30  0.000 /* 2nd standard parallel\n"
    " -96  0  0.000 /* central meridian\n"
    "  37 30  0.000 /* latitude of projection's origin\n"
    "0.00000000 /* false easting (meters)\n"
    "0.00000000 /* false northing (meters)\n";

void read_string(benchmark::State &state, const char *text) {
    ox_objedithome_setdir(nullptr);
    int32_t error = 0;
    for (auto _ : state) {
        ox_object *h = ox_coordsys_from_prjstring(text, &error);
        benchmark::DoNotOptimize(h);
        ox_coordsys_del(h);
    }
    if (error != 0) state.SkipWithError("not read");
}

void BM_PrjReadStatePlaneString(benchmark::State &state) { read_string(state, kStatePlane); }
BENCHMARK(BM_PrjReadStatePlaneString);

void BM_PrjReadAlbersString(benchmark::State &state) { read_string(state, kAlbers); }
BENCHMARK(BM_PrjReadAlbersString);

// The file variant: open, read and close the file as well.
void BM_PrjReadStatePlaneFile(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    char path[] = "/tmp/ox_bench_prjXXXXXX";
    const int fd = mkstemp(path);
    FILE *f = fd >= 0 ? fdopen(fd, "w") : nullptr;
    if (f == nullptr) {
        state.SkipWithError("no temporary file");
        return;
    }
    std::fputs(kStatePlane, f);
    std::fclose(f);
    int32_t error = 0;
    for (auto _ : state) {
        ox_object *h = ox_coordsys_from_prjfile(path, &error);
        benchmark::DoNotOptimize(h);
        ox_coordsys_del(h);
    }
    std::remove(path);
    if (error != 0) state.SkipWithError("not read");
}
BENCHMARK(BM_PrjReadStatePlaneFile);

// Writing tries the zone forms first, building each to compare.
void BM_PrjWriteStatePlane(benchmark::State &state) {
    ox_object *h = ox_factory_projcs(2229);
    static char text[OX_PRJSTRING_SIZE];
    int32_t error = 0;
    for (auto _ : state) benchmark::DoNotOptimize(ox_coordsys_to_prjstring(h, 0, text, &error));
    ox_projcs_del(h);
}
BENCHMARK(BM_PrjWriteStatePlane);

}  // namespace
