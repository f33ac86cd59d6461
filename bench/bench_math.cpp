// Per-call cost of the ellipsoid functions that projections and callers use
// point by point: the conformal latitude both ways (series on WGS 84, closed
// form and Newton's method above the series threshold), the meridian arc and
// the inline Clenshaw evaluation of an auxiliary-latitude series.
#include <benchmark/benchmark.h>

#include <cmath>

#include "ox.h"
#include "projection/ox_math.h"

namespace {

constexpr double kWgs84E2 = 0.0066943799901413165;
constexpr double kLargeE2 = 0.05;  // above the series threshold
constexpr int kPoints = 1024;

// Latitudes spread over (-90, 90) degrees, the same for every benchmark.
struct Latitudes {
    double v[kPoints];
    Latitudes() {
        for (int i = 0; i < kPoints; ++i) v[i] = (-89.9 + 179.8 * i / (kPoints - 1)) * ox::kDegree;
    }
};
const Latitudes kLat;

template <double (*F)(double, double)>
void per_call(benchmark::State &state, double e2) {
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(F(e2, kLat.v[i]));
        i = (i + 1) & (kPoints - 1);
    }
}

void BM_phi_to_chi(benchmark::State &state) { per_call<ox_phi_to_chi>(state, kWgs84E2); }
void BM_chi_to_phi(benchmark::State &state) { per_call<ox_chi_to_phi>(state, kWgs84E2); }
void BM_phi_to_chi_closed(benchmark::State &state) { per_call<ox_phi_to_chi>(state, kLargeE2); }
void BM_chi_to_phi_newton(benchmark::State &state) { per_call<ox_chi_to_phi>(state, kLargeE2); }

void BM_q(benchmark::State &state, double e2) {
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ox_q(6378137.0, e2, kLat.v[i]));
        i = (i + 1) & (kPoints - 1);
    }
}

// The per-point work of a projection that holds its coefficients.
void BM_aux_series(benchmark::State &state) {
    double forward[ox::kAuxTerms], inverse[ox::kAuxTerms];
    ox::conformal_coefficients(kWgs84E2, forward, inverse);
    int i = 0;
    for (auto _ : state) {
        const double lat = kLat.v[i];
        benchmark::DoNotOptimize(ox::aux_series(forward, lat, std::sin(lat), std::cos(lat)));
        i = (i + 1) & (kPoints - 1);
    }
}

// Once per spheroid: both directions of one latitude's coefficients.
void BM_conformal_coefficients(benchmark::State &state) {
    double forward[ox::kAuxTerms], inverse[ox::kAuxTerms];
    for (auto _ : state) {
        ox::conformal_coefficients(kWgs84E2, forward, inverse);
        benchmark::DoNotOptimize(forward);
        benchmark::DoNotOptimize(inverse);
    }
}

}  // namespace

BENCHMARK(BM_phi_to_chi);
BENCHMARK(BM_chi_to_phi);
BENCHMARK(BM_phi_to_chi_closed);
BENCHMARK(BM_chi_to_phi_newton);
BENCHMARK_CAPTURE(BM_q, series_wgs84, kWgs84E2);
BENCHMARK_CAPTURE(BM_q, elliptic, kLargeE2);
BENCHMARK(BM_aux_series);
BENCHMARK(BM_conformal_coefficients);
