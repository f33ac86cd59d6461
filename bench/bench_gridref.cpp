// Grid references and geodesics on WGS 84: MGRS encoding and decoding of
// 100,000 random points per call (worldwide, metre precision), GEOREF the
// same, and the geodesic inverse and direct problems over random pairs
// (one call per pair), with the nearly antipodal pairs apart.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "ox.h"

namespace {

constexpr double kDeg = 0.017453292519943295;
constexpr double kA = 6378137.0;
constexpr double kE2 = 0.0066943799901413165;
constexpr int32_t kPoints = 100000;

// Random points over the sphere (uniform in area), degrees.
std::vector<double> random_points(int32_t n, uint64_t seed) {
    std::mt19937_64 rng(seed);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> pts(2 * static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) {
        pts[2 * i] = 180.0 * u(rng);
        pts[2 * i + 1] = std::asin(u(rng)) / kDeg;
    }
    return pts;
}

// Reference buffers for n points.
struct Refs {
    std::vector<char> text;
    std::vector<char *> ptrs;
    Refs(int32_t n, int size) : text(static_cast<size_t>(n) * size), ptrs(static_cast<size_t>(n)) {
        for (int32_t i = 0; i < n; ++i) ptrs[i] = text.data() + static_cast<size_t>(i) * size;
    }
};

// Encodes kPoints random points per iteration with `encode`.
template <class Encode>
void encode_points(benchmark::State &state, int size, uint64_t seed, Encode encode) {
    ox_object *gcs = ox_factory_geogcs(4326);
    const auto pts = random_points(kPoints, seed);
    Refs refs(kPoints, size);
    for (auto _ : state) benchmark::DoNotOptimize(encode(gcs, pts.data(), refs.ptrs.data()));
    state.SetItemsProcessed(state.iterations() * kPoints);
    ox_geogcs_del(gcs);
}

// Decodes the references of kPoints random points (written by `encode`)
// per iteration with `decode`.
template <class Encode, class Decode>
void decode_points(benchmark::State &state, int size, uint64_t seed, Encode encode, Decode decode) {
    ox_object *gcs = ox_factory_geogcs(4326);
    const auto pts = random_points(kPoints, seed);
    Refs refs(kPoints, size);
    encode(gcs, pts.data(), refs.ptrs.data());
    std::vector<double> out(2 * static_cast<size_t>(kPoints));
    for (auto _ : state) benchmark::DoNotOptimize(decode(gcs, refs.ptrs.data(), out.data()));
    state.SetItemsProcessed(state.iterations() * kPoints);
    ox_geogcs_del(gcs);
}

void BM_MgrsEncode(benchmark::State &state) {
    const int digits = static_cast<int>(state.range(0));
    encode_points(state, OX_MGRS_SIZE, 1, [digits](ox_object *gcs, const double *pts, char **refs) {
        return ox_geog_to_mgrs(gcs, kPoints, pts, digits, 0, refs);
    });
}

void BM_MgrsDecode(benchmark::State &state) {
    const int digits = static_cast<int>(state.range(0));
    const int mode = state.range(1) != 0 ? OX_MGRS_CENTER : 0;
    decode_points(
        state, OX_MGRS_SIZE, 2,
        [digits](ox_object *gcs, const double *pts, char **refs) {
            return ox_geog_to_mgrs(gcs, kPoints, pts, digits, 0, refs);
        },
        [mode](ox_object *gcs, char **refs, double *out) {
            return ox_mgrs_to_geog_extended(gcs, kPoints, refs, mode, out);
        });
}

void BM_GeorefEncode(benchmark::State &state) {
    encode_points(state, OX_GEOREF_SIZE, 3, [](ox_object *gcs, const double *pts, char **refs) {
        return ox_geog_to_georef(gcs, kPoints, pts, 6, 0, refs);
    });
}

void BM_GeorefDecode(benchmark::State &state) {
    decode_points(
        state, OX_GEOREF_SIZE, 4,
        [](ox_object *gcs, const double *pts, char **refs) { return ox_geog_to_georef(gcs, kPoints, pts, 6, 0, refs); },
        [](ox_object *gcs, char **refs, double *out) { return ox_georef_to_geog(gcs, kPoints, refs, out); });
}

// Pairs of points in radians: random over the globe (range 0), or within
// half a degree of each other's antipode (range 1).
std::vector<double> random_pairs(int32_t n, bool antipodal) {
    std::mt19937_64 rng(5);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> p(4 * static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) {
        const double lat1 = std::asin(u(rng)), lon1 = M_PI * u(rng);
        p[4 * i] = lon1;
        p[4 * i + 1] = lat1;
        if (antipodal) {
            p[4 * i + 2] = lon1 + M_PI + 0.5 * kDeg * u(rng);
            p[4 * i + 3] = -lat1 + 0.5 * kDeg * u(rng);
        } else {
            p[4 * i + 2] = M_PI * u(rng);
            p[4 * i + 3] = std::asin(u(rng));
        }
    }
    return p;
}

void BM_GeodesicInverse(benchmark::State &state) {
    constexpr int32_t kPairs = 10000;
    const auto p = random_pairs(kPairs, state.range(0) != 0);
    const double e2 = state.range(1) != 0 ? 0.0 : kE2;
    for (auto _ : state) {
        for (int32_t i = 0; i < kPairs; ++i) {
            double s, a1, a2;
            ox_geodesic_distance(kA, e2, p[4 * i], p[4 * i + 1], p[4 * i + 2], p[4 * i + 3], &s, &a1, &a2);
            benchmark::DoNotOptimize(s);
            benchmark::DoNotOptimize(a1);
            benchmark::DoNotOptimize(a2);
        }
    }
    state.SetItemsProcessed(state.iterations() * kPairs);
}

void BM_GeodesicDirect(benchmark::State &state) {
    constexpr int32_t kPairs = 10000;
    std::mt19937_64 rng(6);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> p(4 * kPairs);
    for (int32_t i = 0; i < kPairs; ++i) {
        p[4 * i] = M_PI * u(rng);
        p[4 * i + 1] = std::asin(u(rng));
        p[4 * i + 2] = 1e7 * (u(rng) + 1.0);  // up to 20 000 km
        p[4 * i + 3] = M_PI * u(rng);
    }
    const double e2 = state.range(0) != 0 ? 0.0 : kE2;
    for (auto _ : state) {
        for (int32_t i = 0; i < kPairs; ++i) {
            double lon, lat;
            ox_geodesic_coordinate(kA, e2, p[4 * i], p[4 * i + 1], p[4 * i + 2], p[4 * i + 3], &lon, &lat);
            benchmark::DoNotOptimize(lon);
            benchmark::DoNotOptimize(lat);
        }
    }
    state.SetItemsProcessed(state.iterations() * kPairs);
}

}  // namespace

// MGRS: digits per axis (0, 5, 11); decoding to the corner (0) or centre (1).
BENCHMARK(BM_MgrsEncode)->Arg(5)->Arg(0)->Arg(11)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MgrsDecode)->Args({5, 0})->Args({5, 1})->Args({0, 0})->Args({11, 0})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GeorefEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GeorefDecode)->Unit(benchmark::kMillisecond);
// Geodesics: random (0) or nearly antipodal (1) pairs; WGS 84 (0) or the sphere (1).
BENCHMARK(BM_GeodesicInverse)->Args({0, 0})->Args({1, 0})->Args({0, 1})->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GeodesicDirect)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
