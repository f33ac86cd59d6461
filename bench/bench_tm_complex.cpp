// "Transverse_Mercator_Complex" on WGS 84: forward and inverse of 1,000,000
// points per call, the registry's routines called directly with loaded
// constants (the routines that take a constants block), and
// the same through the driver on a UTM-like system read from an object
// string.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "ox.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projlist.h"

namespace {

constexpr double kDeg = 0.017453292519943295;
constexpr int32_t kPoints = 1000000;

const ox::ProjRow &tmc_row() { return *ox::projlist_find_by_code(43056); }

struct Wgs84Utm {
    double spheroid[2] = {6378137.0, 0.0066943799901413165};
    double parameters[16] = {};
    ox::PcsConstants *constants = ox::pcs_new();
    std::vector<double> geographic, projected;

    // Points within `width` degrees of the central meridian, latitudes up to 84.
    explicit Wgs84Utm(double width) {
        parameters[2] = 15 * kDeg;
        parameters[5] = 0.9996;
        tmc_row().constants(constants, spheroid, parameters);
        std::mt19937_64 rng(1);
        std::uniform_real_distribution<double> lon(15 - width, 15 + width), lat(-84, 84);
        geographic.resize(2 * kPoints);
        for (int32_t i = 0; i < kPoints; ++i) {
            geographic[2 * i] = lon(rng) * kDeg;
            geographic[2 * i + 1] = lat(rng) * kDeg;
        }
        projected = geographic;
        tmc_row().forward_units(spheroid, parameters, kPoints, projected.data(), constants, nullptr);
    }
    ~Wgs84Utm() { ox::pcs_delete(constants); }
};

void BM_TmComplexForward(benchmark::State &state) {
    const Wgs84Utm s(static_cast<double>(state.range(0)));
    std::vector<double> work(s.geographic.size());
    for (auto _ : state) {
        state.PauseTiming();
        work = s.geographic;
        state.ResumeTiming();
        benchmark::DoNotOptimize(
            tmc_row().forward_units(s.spheroid, s.parameters, kPoints, work.data(), s.constants, nullptr));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

void BM_TmComplexInverse(benchmark::State &state) {
    const Wgs84Utm s(static_cast<double>(state.range(0)));
    std::vector<double> work(s.projected.size());
    for (auto _ : state) {
        state.PauseTiming();
        work = s.projected;
        state.ResumeTiming();
        benchmark::DoNotOptimize(
            tmc_row().inverse_units(s.spheroid, s.parameters, kPoints, work.data(), s.constants, nullptr));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

// Through ox_geog_to_proj / ox_proj_to_geog (degrees and metres, false
// easting), points within 3 degrees of the central meridian.
ox_object *zone33() {
    return ox_projcs_from_string(
        "PROJCS[\"TMC_Zone_33\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,"
        "298.257223563]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],"
        "PROJECTION[\"Transverse_Mercator_Complex\"],PARAMETER[\"False_Easting\",500000.0],"
        "PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Scale_Factor\",0.9996],"
        "PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]");
}

void BM_TmComplexDriver(benchmark::State &state) {
    const bool inverse = state.range(0) != 0;
    const Wgs84Utm s(3.0);
    ox_object *pcs = zone33();
    ox_projcs_load_constants(pcs);
    std::vector<double> input = s.geographic;
    for (double &v : input) v /= kDeg;
    if (inverse) ox_geog_to_proj(pcs, kPoints, input.data());
    std::vector<double> work(input.size());
    for (auto _ : state) {
        state.PauseTiming();
        work = input;
        state.ResumeTiming();
        benchmark::DoNotOptimize(inverse ? ox_proj_to_geog(pcs, kPoints, work.data())
                                         : ox_geog_to_proj(pcs, kPoints, work.data()));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
    ox_projcs_del(pcs);
}

}  // namespace

// Argument: half-width of the zone in degrees (3 = a UTM zone, 40 = wide).
BENCHMARK(BM_TmComplexForward)->Arg(3)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TmComplexInverse)->Arg(3)->Arg(40)->Unit(benchmark::kMillisecond);
// Argument: 0 forward, 1 inverse.
BENCHMARK(BM_TmComplexDriver)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
