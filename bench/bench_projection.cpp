// Projection throughput: UTM zone 33N and Mercator through the driver on
// systems read from object strings, 1,000,000 points per call, and a floor
// loop with the least transcendental work any of these projections does per
// point (one sine/cosine pair and one logarithm).
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "ox.h"
#include "projection/ox_projmath.h"

namespace {

constexpr int32_t kPoints = 1000000;

const char kGeogcs[] =
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
    "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";

ox_object *utm33n() {
    const std::string text = std::string("PROJCS[\"WGS_1984_UTM_Zone_33N\",") + kGeogcs +
                             ",PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"False_Easting\",500000.0],"
                             "PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",15.0],"
                             "PARAMETER[\"Scale_Factor\",0.9996],PARAMETER[\"Latitude_Of_Origin\",0.0],"
                             "UNIT[\"Meter\",1.0]]";
    return ox_projcs_from_string(text.c_str());
}

ox_object *mercator() {
    const std::string text = std::string("PROJCS[\"WGS_1984_World_Mercator\",") + kGeogcs +
                             ",PROJECTION[\"Mercator\"],PARAMETER[\"False_Easting\",0.0],"
                             "PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",0.0],"
                             "PARAMETER[\"Standard_Parallel_1\",0.0],UNIT[\"Meter\",1.0]]";
    return ox_projcs_from_string(text.c_str());
}

// Deterministic points: a zone of +-3 degrees about `lon0`, latitudes in
// [-80, 84] (a linear congruential generator keeps the order irregular).
std::vector<double> points(double lon0, double half_width) {
    std::vector<double> p(2 * static_cast<size_t>(kPoints));
    uint64_t state = 42;
    auto next = [&state] {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<double>(state >> 11) * 0x1.0p-53;
    };
    for (int32_t i = 0; i < kPoints; ++i) {
        p[2 * i] = lon0 - half_width + 2.0 * half_width * next();
        p[2 * i + 1] = -80.0 + 164.0 * next();
    }
    return p;
}

using Convert = int32_t (*)(ox_object *, int32_t, double *);

void run(benchmark::State &state, ox_object *pcs, const std::vector<double> &input, Convert convert) {
    std::vector<double> work(input.size());
    for (auto _ : state) {
        state.PauseTiming();
        std::memcpy(work.data(), input.data(), input.size() * sizeof(double));
        state.ResumeTiming();
        benchmark::DoNotOptimize(convert(pcs, kPoints, work.data()));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

void BM_UtmForward(benchmark::State &state) {
    ox_object *pcs = utm33n();
    ox_projcs_load_constants(pcs);
    run(state, pcs, points(15.0, 3.0), ox_geog_to_proj);
    ox_projcs_del(pcs);
}

void BM_UtmInverse(benchmark::State &state) {
    ox_object *pcs = utm33n();
    std::vector<double> p = points(15.0, 3.0);
    ox_geog_to_proj(pcs, kPoints, p.data());
    run(state, pcs, p, ox_proj_to_geog);
    ox_projcs_del(pcs);
}

void BM_MercatorForward(benchmark::State &state) {
    ox_object *pcs = mercator();
    ox_projcs_load_constants(pcs);
    run(state, pcs, points(0.0, 180.0), ox_geog_to_proj);
    ox_projcs_del(pcs);
}

void BM_MercatorInverse(benchmark::State &state) {
    ox_object *pcs = mercator();
    std::vector<double> p = points(0.0, 180.0);
    ox_geog_to_proj(pcs, kPoints, p.data());
    run(state, pcs, p, ox_proj_to_geog);
    ox_projcs_del(pcs);
}

// The same conversions with the point loops held to one instruction-set
// level (0 baseline x86-64, 1 x86-64-v2, 2 AVX2, 3 AVX-512; -2 the C
// library's functions for every point).
void by_level(benchmark::State &state, void (*bench)(benchmark::State &)) {
    const int level = static_cast<int>(state.range(0));
    if (level >= 0 && ox::point_loop_level_limit(level) != level) {
        state.SkipWithError("level not supported by this processor");
        ox::point_loop_level_limit(-1);
        return;
    }
    ox::point_loop_level_limit(level);
    bench(state);
    ox::point_loop_level_limit(-1);
}
void BM_UtmForwardAtLevel(benchmark::State &state) { by_level(state, BM_UtmForward); }
void BM_UtmInverseAtLevel(benchmark::State &state) { by_level(state, BM_UtmInverse); }
void BM_MercatorForwardAtLevel(benchmark::State &state) { by_level(state, BM_MercatorForward); }

// One sine/cosine pair and one logarithm per point, in place, as a
// projection routine would write them.
void BM_Floor(benchmark::State &state) {
    std::vector<double> input = points(15.0, 3.0);
    for (double &v : input) v *= 0.017453292519943295;  // radians, as a routine gets them
    std::vector<double> work(input.size());
    for (auto _ : state) {
        state.PauseTiming();
        std::memcpy(work.data(), input.data(), input.size() * sizeof(double));
        state.ResumeTiming();
        double *p = work.data();
        for (int32_t i = 0; i < kPoints; ++i) {
            const double s = std::sin(p[2 * i + 1]), c = std::cos(p[2 * i + 1]);
            p[2 * i] = s * c;
            p[2 * i + 1] = std::log(2.0 + s);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

}  // namespace

BENCHMARK(BM_UtmForward)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UtmInverse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MercatorForward)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MercatorInverse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Floor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UtmForwardAtLevel)->Arg(-2)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UtmInverseAtLevel)->Arg(-2)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MercatorForwardAtLevel)->Arg(-2)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
