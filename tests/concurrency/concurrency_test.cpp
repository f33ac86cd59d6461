// Threads that use the library at once, from a cold start: no library call
// is made before the threads run, so every piece of lazily initialised
// process state (the object-edit home read from the environment and its file
// indexes, the locale's decimal point, the reverse look-up and identification
// indexes, the choice of the point loops) is first touched by several
// threads together.
//
//  1. Each thread builds, converts, writes and reads objects of its own.
//  2. Every thread converts through one shared projected system whose
//     constants were loaded before the threads started.
//
// Run under ThreadSanitizer by run_tests.sh (a race is a report and a
// failing exit status) and as an ordinary test in the other builds.  The
// results of every thread must equal those of the others and the known
// values.
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "ox.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 20;
constexpr int kPoints = 2000;

std::atomic<int> g_failures{0};

#define CHECK(cond)                                                                        \
    do {                                                                                   \
        if (!(cond)) {                                                                     \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
            g_failures.fetch_add(1);                                                       \
        }                                                                                  \
    } while (0)

// Waits until every thread has arrived, so that they start together.
struct StartLine {
    std::atomic<int> waiting{0};
    void arrive() {
        waiting.fetch_add(1);
        while (waiting.load() < kThreads) std::this_thread::yield();
    }
};

template <class F>
void run_threads(F body) {
    StartLine start;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&start, &body, t] {
            start.arrive();
            body(t);
        });
    for (std::thread &t : threads) t.join();
}

// Longitude/latitude pairs in UTM zone 33N, different in every thread.
std::vector<double> points(int seed) {
    std::vector<double> p(2 * kPoints);
    for (int i = 0; i < kPoints; ++i) {
        p[2 * i] = 12.0 + 6.0 * ((i * 7 + seed) % 1000) / 1000.0;
        p[2 * i + 1] = -60.0 + 140.0 * ((i * 13 + seed) % 1000) / 1000.0;
    }
    return p;
}

// Phase 1: objects of the thread's own, from every entry point that
// initialises process state lazily.
void own_objects(int thread, std::string *text_out) {
    char text[OX_OBJSTRING_SIZE];
    for (int round = 0; round < kRounds; ++round) {
        // The factory with object-edit files taken from the environment: an
        // edited unit, a catalogue system whose spheroid is edited.
        ox_object *furlong = ox_factory_unit(209001);
        CHECK(furlong != nullptr && ox_unit_factor(furlong) == 201.168);
        ox_unit_del(furlong);
        ox_object *utm = ox_factory_projcs(32633);
        CHECK(utm != nullptr);
        char name[OX_NAME_SIZE];
        ox_spheroid_name(ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(utm))), name);
        CHECK(std::strcmp(name, "WGS_1984_Edited") == 0);

        // Identification (an index of the catalogue built once, by whichever
        // thread comes first).
        if (round % 5 == 0) {
            ox_identify_candidate candidates[4];
            CHECK(ox_factory_identify(utm, candidates, 4) >= 1 && candidates[0].code == 32633);
        }

        // Writing with every authority (built lazily on the object), reading back.
        ox_projcs_to_string_ext(utm, 2, text);
        ox_object *copy = ox_projcs_from_string(text);
        CHECK(ox_projcs_eq(copy, utm) == 1);
        if (round == 0) *text_out = text;

        // Converting through the thread's own system (its constants loaded
        // on first use).
        std::vector<double> p = points(thread + round);
        const std::vector<double> original = p;
        CHECK(ox_geog_to_proj(copy, kPoints, p.data()) == kPoints);
        CHECK(ox_proj_to_geog(copy, kPoints, p.data()) == kPoints);
        for (int i = 0; i < 2 * kPoints; ++i) CHECK(std::fabs(p[i] - original[i]) < 1e-9);
        double known[2] = {15.0, 52.0};
        ox_geog_to_proj(copy, 1, known);
        CHECK(std::fabs(known[0] - 500000.0) < 1e-4 && std::fabs(known[1] - 5761038.2126) < 1e-4);
        ox_projcs_del(copy);
        ox_projcs_del(utm);

        // Numbers that the C library reads with the locale's decimal point.
        ox_object *unit = ox_unit_from_string("UNIT[\"Eighth\",0x1.0p-3]");
        CHECK(unit != nullptr && ox_unit_factor(unit) == 0.125);
        ox_unit_del(unit);

        // The reverse look-up (a catalogue index built once per kind).
        ox_object *greenwich = ox_primem_new("Greenwich", 0.0);
        CHECK(ox_factory_code(greenwich) == 8901);
        ox_primem_del(greenwich);
        ox_object *paris = ox_primem_new("Paris", 2.33722917);
        CHECK(ox_factory_code(paris) == 8903);
        ox_primem_del(paris);

        // Definition strings and a predefined list.
        CHECK(ox_factory_defstring_to_int("OX_GCS_WGS_1984") == 4326);
        int32_t count = 0;
        ox_predefined_entry *list = ox_predefined_primem(&count);
        CHECK(list != nullptr && count > 10);
        ox_table_del(list);
    }
}

// Phase 2: one system shared by every thread, its constants loaded first.
void shared_system() {
    ox_object *utm = ox_factory_projcs(32633);
    CHECK(ox_projcs_load_constants(utm) > 0);
    std::vector<double> expected = points(0);
    CHECK(ox_geog_to_proj(utm, kPoints, expected.data()) == kPoints);
    std::vector<std::vector<double>> results(kThreads);
    run_threads([&](int t) {
        for (int round = 0; round < kRounds; ++round) {
            std::vector<double> p = points(0);
            CHECK(ox_geog_to_proj(utm, kPoints, p.data()) == kPoints);
            if (round == 0) results[t] = p;
            CHECK(ox_proj_to_geog(utm, kPoints, p.data()) == kPoints);
        }
    });
    for (const std::vector<double> &r : results) CHECK(r == expected);
    ox_projcs_del(utm);
}

}  // namespace

int main() {
    // The object-edit directory comes from the environment, set before any
    // library call (setting it is not a call of the library).
    char dir[] = "/tmp/ox_concurrency_XXXXXX";
    if (mkdtemp(dir) == nullptr) return 2;
    const std::string unit = std::string(dir) + "/unit", spheroid = std::string(dir) + "/spheroid";
    FILE *f = std::fopen(unit.c_str(), "w");
    if (f == nullptr) return 2;
    std::fputs("UNIT,209001,\"Furlong\",201.168\n", f);
    std::fclose(f);
    f = std::fopen(spheroid.c_str(), "w");
    if (f == nullptr) return 2;
    std::fputs("SPHEROID,7030,\"WGS_1984_Edited\",6378137.0,298.257223563\n", f);
    std::fclose(f);
    setenv("OXOBJEDITHOME", dir, 1);

    std::vector<std::string> texts(kThreads);
    run_threads([&](int t) { own_objects(t, &texts[t]); });
    for (const std::string &t : texts) CHECK(t == texts[0] && !t.empty());

    shared_system();

    std::remove(unit.c_str());
    std::remove(spheroid.c_str());
    rmdir(dir);
    const int failures = g_failures.load();
    std::printf("concurrency: %d threads, %s\n", kThreads, failures == 0 ? "all checks passed" : "FAILED");
    return failures == 0 ? 0 : 1;
}
