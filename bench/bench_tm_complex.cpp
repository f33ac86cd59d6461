// "Transverse_Mercator_Complex" on WGS 84: forward and inverse of 1,000,000
// points per call, routines called directly with loaded constants.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "projection/ox_pcsconstants.h"
#include "projection/ox_projections.h"

namespace {

constexpr double kDeg = 0.017453292519943295;
constexpr int32_t kPoints = 1000000;

struct Wgs84Utm {
    double spheroid[2] = {6378137.0, 0.0066943799901413165};
    double parameters[16] = {};
    ox::PcsConstants *constants = ox::pcs_new();
    std::vector<double> geographic, projected;

    // Points within `width` degrees of the central meridian, latitudes up to 84.
    explicit Wgs84Utm(double width) {
        parameters[2] = 15 * kDeg;
        parameters[5] = 0.9996;
        ox::tm_complex_constants(constants, spheroid, parameters);
        std::mt19937_64 rng(1);
        std::uniform_real_distribution<double> lon(15 - width, 15 + width), lat(-84, 84);
        geographic.resize(2 * kPoints);
        for (int32_t i = 0; i < kPoints; ++i) {
            geographic[2 * i] = lon(rng) * kDeg;
            geographic[2 * i + 1] = lat(rng) * kDeg;
        }
        projected = geographic;
        ox::tm_complex_forward(spheroid, parameters, kPoints, projected.data(), constants->header,
                               constants->values);
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
        benchmark::DoNotOptimize(ox::tm_complex_forward(s.spheroid, s.parameters, kPoints, work.data(),
                                                        s.constants->header, s.constants->values));
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
        benchmark::DoNotOptimize(ox::tm_complex_inverse(s.spheroid, s.parameters, kPoints, work.data(),
                                                        s.constants->header, s.constants->values));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

}  // namespace

// Argument: half-width of the zone in degrees (3 = a UTM zone, 40 = wide).
BENCHMARK(BM_TmComplexForward)->Arg(3)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TmComplexInverse)->Arg(3)->Arg(40)->Unit(benchmark::kMillisecond);
