// Object strings: reading and writing a geographic and a projected system,
// clone and equality.
#include <benchmark/benchmark.h>

#include "ox.h"

namespace {

const char *const kGeogcs =
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
    "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
const char *const kUtm =
    "PROJCS[\"WGS_1984_UTM_Zone_33N\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\","
    "SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],"
    "UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
    "PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],"
    "PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Scale_Factor\",0.9996],"
    "PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]";

void BM_GeogcsRead(benchmark::State &state) {
    for (auto _ : state) {
        ox_object *g = ox_geogcs_from_string(kGeogcs);
        benchmark::DoNotOptimize(g);
        ox_geogcs_del(g);
    }
}
BENCHMARK(BM_GeogcsRead);

void BM_GeogcsWrite(benchmark::State &state) {
    ox_object *g = ox_geogcs_from_string(kGeogcs);
    static char text[OX_OBJSTRING_SIZE];
    for (auto _ : state) {
        ox_geogcs_to_string(g, text);
        benchmark::DoNotOptimize(text);
    }
    ox_geogcs_del(g);
}
BENCHMARK(BM_GeogcsWrite);

void BM_ProjcsRead(benchmark::State &state) {
    for (auto _ : state) {
        ox_object *p = ox_projcs_from_string(kUtm);
        benchmark::DoNotOptimize(p);
        ox_projcs_del(p);
    }
}
BENCHMARK(BM_ProjcsRead);

void BM_ProjcsWrite(benchmark::State &state) {
    ox_object *p = ox_projcs_from_string(kUtm);
    static char text[OX_OBJSTRING_SIZE];
    for (auto _ : state) {
        ox_projcs_to_string(p, text);
        benchmark::DoNotOptimize(text);
    }
    ox_projcs_del(p);
}
BENCHMARK(BM_ProjcsWrite);

void BM_ProjcsClone(benchmark::State &state) {
    ox_object *p = ox_projcs_from_string(kUtm);
    for (auto _ : state) {
        ox_object *c = ox_projcs_clone(p);
        benchmark::DoNotOptimize(c);
        ox_projcs_del(c);
    }
    ox_projcs_del(p);
}
BENCHMARK(BM_ProjcsClone);

void BM_ProjcsEq(benchmark::State &state) {
    ox_object *a = ox_projcs_from_string(kUtm);
    ox_object *b = ox_projcs_from_string(kUtm);
    for (auto _ : state) benchmark::DoNotOptimize(ox_projcs_eq(a, b));
    ox_projcs_del(a);
    ox_projcs_del(b);
}
BENCHMARK(BM_ProjcsEq);

void BM_GeogcsClone(benchmark::State &state) {
    ox_object *g = ox_geogcs_from_string(kGeogcs);
    for (auto _ : state) {
        ox_object *c = ox_geogcs_clone(g);
        benchmark::DoNotOptimize(c);
        ox_geogcs_del(c);
    }
    ox_geogcs_del(g);
}
BENCHMARK(BM_GeogcsClone);

void BM_GeogcsEq(benchmark::State &state) {
    ox_object *a = ox_geogcs_from_string(kGeogcs);
    ox_object *b = ox_geogcs_from_string(kGeogcs);
    for (auto _ : state) benchmark::DoNotOptimize(ox_geogcs_eq(a, b));
    ox_geogcs_del(a);
    ox_geogcs_del(b);
}
BENCHMARK(BM_GeogcsEq);

}  // namespace
