// The catalogue: building by code, definition strings, the reverse look-up
// and the predefined lists.
#include <benchmark/benchmark.h>

#include "object/ox_object.h"
#include "ox.h"

namespace {

const char *const kUtm =
    "PROJCS[\"WGS_1984_UTM_Zone_33N\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\","
    "SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],"
    "UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
    "PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],"
    "PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Scale_Factor\",0.9996],"
    "PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]";

void BM_FactoryGeogcs4326(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    for (auto _ : state) {
        ox_object *g = ox_factory_geogcs(4326);
        benchmark::DoNotOptimize(g);
        ox_geogcs_del(g);
    }
}
BENCHMARK(BM_FactoryGeogcs4326);

void BM_FactoryProjcs32633(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    for (auto _ : state) {
        ox_object *p = ox_factory_projcs(32633);
        benchmark::DoNotOptimize(p);
        ox_projcs_del(p);
    }
}
BENCHMARK(BM_FactoryProjcs32633);

// A member of a zone family with a member list (Japan zone IX).
void BM_FactoryProjcsListedZone(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    for (auto _ : state) {
        ox_object *p = ox_factory_projcs(30169);
        benchmark::DoNotOptimize(p);
        ox_projcs_del(p);
    }
}
BENCHMARK(BM_FactoryProjcsListedZone);

void BM_DefstringToInt(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(ox_factory_defstring_to_int("OX_PCS_WGS_1984_UTM_ZONE_33N"));
}
BENCHMARK(BM_DefstringToInt);

void BM_IntToDefstring(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(ox_factory_int_to_defstring(32633));
}
BENCHMARK(BM_IntToDefstring);

// The reverse look-up of a hand-built UTM zone (its code reset to "not
// looked up" before every call; the index is built by the first call).
void BM_FactoryCodeUtm(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    ox_object *p = ox_projcs_from_string(kUtm);
    ox::obj_set_code(p, -1, nullptr, nullptr);
    benchmark::DoNotOptimize(ox_factory_code(p));
    for (auto _ : state) {
        ox::obj_set_code(p, -1, nullptr, nullptr);
        benchmark::DoNotOptimize(ox_factory_code(p));
    }
    ox_projcs_del(p);
}
BENCHMARK(BM_FactoryCodeUtm);

// Identification of a system written by other software (names spelled
// otherwise, a zero parameter left out) among the equivalent systems of the
// catalogue; the index is built by the first call.
void BM_FactoryIdentifyForeign(benchmark::State &state) {
    ox_object *p = ox_projcs_from_string(
        "PROJCS[\"NAD83 / UTM zone 18N\",GEOGCS[\"NAD83\",DATUM[\"North_American_Datum_1983\","
        "SPHEROID[\"GRS 1980\",6378137,298.257222101]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\","
        "0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"central_meridian\",-75],"
        "PARAMETER[\"scale_factor\",0.9996],PARAMETER[\"false_easting\",500000],UNIT[\"metre\",1]]");
    ox_identify_candidate c[16];
    benchmark::DoNotOptimize(ox_factory_identify(p, c, 16));
    for (auto _ : state) benchmark::DoNotOptimize(ox_factory_identify(p, c, 16));
    ox_projcs_del(p);
}
BENCHMARK(BM_FactoryIdentifyForeign);

// A geographic system on GRS 1980: some two hundred equivalent systems ranked.
void BM_FactoryIdentifyGeographic(benchmark::State &state) {
    ox_object *g = ox_factory_geogcs(7844);
    ox_identify_candidate c[16];
    for (auto _ : state) benchmark::DoNotOptimize(ox_factory_identify(g, c, 16));
    ox_geogcs_del(g);
}
BENCHMARK(BM_FactoryIdentifyGeographic);

void BM_PredefinedProjcs(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    for (auto _ : state) {
        int32_t count = 0;
        ox_predefined_entry *list = ox_predefined_projcs(&count);
        benchmark::DoNotOptimize(list);
        ox_table_del(list);
    }
}
BENCHMARK(BM_PredefinedProjcs)->Unit(benchmark::kMillisecond);

}  // namespace
