// The catalogue: building by code, definition strings, the reverse look-up
// and the predefined lists.
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <string>

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

// Builds a predefined list again and again (once before the timed loop, so
// that an object-edit file is indexed outside it).
void run_predefined(benchmark::State &state, ox_predefined_entry *(*list_of)(int32_t *)) {
    int32_t count = 0;
    ox_table_del(list_of(&count));
    for (auto _ : state) {
        ox_predefined_entry *list = list_of(&count);
        benchmark::DoNotOptimize(list);
        ox_table_del(list);
    }
    state.counters["entries"] = count;
}

void BM_PredefinedProjcs(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    run_predefined(state, ox_predefined_projcs);
}
BENCHMARK(BM_PredefinedProjcs)->Unit(benchmark::kMillisecond);

void BM_PredefinedGeogcs(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    run_predefined(state, ox_predefined_geogcs);
}
BENCHMARK(BM_PredefinedGeogcs)->Unit(benchmark::kMillisecond);

// An object-edit directory whose "geogcs" file has `lines` lines: the first
// thousand define the codes of the custom band, the rest codes outside every
// band (read, never asked for).
class EditDirectory {
public:
    explicit EditDirectory(int64_t lines) {
        std::snprintf(dir_, sizeof dir_, "/tmp/ox_bench_objedit_XXXXXX");
        if (mkdtemp(dir_) == nullptr) return;
        file_ = std::string(dir_) + "/geogcs";
        FILE *f = std::fopen(file_.c_str(), "w");
        if (f == nullptr) return;
        for (int64_t i = 0; i < lines; ++i)
            std::fprintf(f, "GEOGCS,%lld,\"GCS_Site_%lld\",6326,8901,9102\n",
                         static_cast<long long>(i < 1000 ? 204000 + i : 300000 + i), static_cast<long long>(i));
        std::fclose(f);
        ox_objedithome_setdir(dir_);
    }
    ~EditDirectory() {
        ox_objedithome_setdir(nullptr);
        std::remove(file_.c_str());
        rmdir(dir_);
    }

private:
    char dir_[64];
    std::string file_;
};

// `ox list geogcs` with a large object-edit file (indexed once; each build
// then stats it once).
void BM_PredefinedGeogcsEditFile(benchmark::State &state) {
    EditDirectory edits(state.range(0));
    run_predefined(state, ox_predefined_geogcs);
}
BENCHMARK(BM_PredefinedGeogcsEditFile)->Arg(200000)->Unit(benchmark::kMillisecond);

// The reverse look-up of a hand-built WGS 84 geographic system, without and
// with an object-edit file that can change geographic systems.
void BM_FactoryCodeGeogcs(benchmark::State &state) {
    ox_object *g = ox_factory_geogcs(4326);
    ox::obj_set_code(g, -1, nullptr, nullptr);
    benchmark::DoNotOptimize(ox_factory_code(g));
    for (auto _ : state) {
        ox::obj_set_code(g, -1, nullptr, nullptr);
        benchmark::DoNotOptimize(ox_factory_code(g));
    }
    ox_geogcs_del(g);
}

void BM_FactoryCodeGeogcsNoEdit(benchmark::State &state) {
    ox_objedithome_setdir(nullptr);
    BM_FactoryCodeGeogcs(state);
}
BENCHMARK(BM_FactoryCodeGeogcsNoEdit);

void BM_FactoryCodeGeogcsEditFile(benchmark::State &state) {
    EditDirectory edits(state.range(0));
    BM_FactoryCodeGeogcs(state);
}
BENCHMARK(BM_FactoryCodeGeogcsEditFile)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
