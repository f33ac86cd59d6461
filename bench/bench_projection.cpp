// Projection throughput through the driver (ox_geog_to_proj and
// ox_proj_to_geog on systems read from object strings, degrees in and
// metres out, false origin applied), 1,000,000 points per call: one forward
// and one inverse benchmark per system of the table below, named
// BM_<name>Forward and BM_<name>Inverse; the same conversions held to one
// instruction-set level; and a floor loop with the least transcendental
// work any projection does per point (one sine/cosine pair and one
// logarithm of the C library).
//
// A projection joins with one line of kSystems.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <algorithm>
#include <string>
#include <vector>

#include "ox.h"
#include "projection/ox_projmath.h"

namespace {

constexpr int32_t kPoints = 1000000;

// A benchmarked system: the projection with its parameters (name=value
// pairs after the false origin), the spheroid (inverse flattening 0: a
// sphere) and the region the points are drawn from (degrees).
struct System {
    const char *name;
    const char *projection;
    const char *parameters;
    double rf;
    double lon0, half_width, lat_min, lat_max;
};
constexpr double kWgs84Rf = 298.257223563;
constexpr System kSystems[] = {
    {"Utm", "Transverse_Mercator", "Central_Meridian=15;Scale_Factor=0.9996", kWgs84Rf, 15, 3, -80, 84},
    {"TmSphere", "Transverse_Mercator", "Central_Meridian=15;Scale_Factor=0.9996", 0, 15, 3, -80, 84},
    {"TmComplex", "Transverse_Mercator_Complex", "Central_Meridian=15;Scale_Factor=0.9996", kWgs84Rf, 15, 3, -80, 84},
    {"Mercator", "Mercator", "Standard_Parallel_1=0", kWgs84Rf, 0, 180, -80, 84},
    {"MercatorSphere", "Mercator", "Standard_Parallel_1=0", 0, 0, 180, -80, 84},
    {"MillerCylindrical", "Miller_Cylindrical", "", kWgs84Rf, 0, 180, -80, 84},
    {"GallStereographic", "Gall_Stereographic", "", kWgs84Rf, 0, 180, -80, 84},
    {"CylindricalEqualArea", "Cylindrical_Equal_Area", "Standard_Parallel_1=30", kWgs84Rf, 0, 180, -80, 84},
    {"Behrmann", "Behrmann", "", kWgs84Rf, 0, 180, -80, 84},
    {"EquidistantCylindrical", "Equidistant_Cylindrical", "Standard_Parallel_1=30", kWgs84Rf, 0, 180, -80, 84},
    {"PlateCarree", "Plate_Carree", "", kWgs84Rf, 0, 180, -80, 84},
    {"LambertConformalConic", "Lambert_Conformal_Conic",
     "Central_Meridian=10;Standard_Parallel_1=35;Standard_Parallel_2=65;Latitude_Of_Origin=52", kWgs84Rf, 10, 30, 30,
     70},
    {"Albers", "Albers", "Central_Meridian=-96;Standard_Parallel_1=29.5;Standard_Parallel_2=45.5;Latitude_Of_Origin=23",
     kWgs84Rf, -96, 30, 20, 55},
    {"EquidistantConic", "Equidistant_Conic",
     "Central_Meridian=10;Standard_Parallel_1=35;Standard_Parallel_2=65;Latitude_Of_Origin=52", kWgs84Rf, 10, 30, 30,
     70},
    {"Polyconic", "Polyconic", "Central_Meridian=-54;Latitude_Of_Origin=0", kWgs84Rf, -54, 20, -35, 10},
    {"Bonne", "Bonne", "Central_Meridian=10;Standard_Parallel_1=45", kWgs84Rf, 10, 30, 30, 70},
    {"Cassini", "Cassini", "Central_Meridian=-61.33;Scale_Factor=1;Latitude_Of_Origin=10.44", kWgs84Rf, -61.33, 3, 5,
     15},
    {"Stereographic", "Stereographic", "Central_Meridian=10;Scale_Factor=0.9999;Latitude_Of_Origin=45", kWgs84Rf, 10,
     20, 30, 60},
    {"StereographicNorthPole", "Stereographic_North_Pole", "Central_Meridian=0;Standard_Parallel_1=71", kWgs84Rf, 0,
     180, 50, 90},
    {"DoubleStereographic", "Double_Stereographic",
     "Central_Meridian=5.387638889;Scale_Factor=0.9999079;Latitude_Of_Origin=52.15616056", kWgs84Rf, 5.4, 5, 50, 54},
    {"Orthographic", "Orthographic", "Longitude_Of_Center=10;Latitude_Of_Center=45", kWgs84Rf, 10, 60, 0, 80},
    {"Gnomonic", "Gnomonic", "Longitude_Of_Center=10;Latitude_Of_Center=45", kWgs84Rf, 10, 40, 10, 80},
    {"AzimuthalEquidistant", "Azimuthal_Equidistant", "Central_Meridian=10;Latitude_Of_Origin=45", kWgs84Rf, 10, 60, 0,
     80},
    {"AzimuthalEquidistantSphere", "Azimuthal_Equidistant", "Central_Meridian=10;Latitude_Of_Origin=45", 0, 10, 60, 0,
     80},
    {"LambertAzimuthalEqualArea", "Lambert_Azimuthal_Equal_Area", "Central_Meridian=10;Latitude_Of_Origin=52",
     kWgs84Rf, 10, 40, 30, 75},
    {"VerticalNearSidePerspective", "Vertical_Near_Side_Perspective",
     "Longitude_Of_Center=10;Latitude_Of_Center=45;Height=35786000", kWgs84Rf, 10, 40, 10, 75},
    {"Local", "Local", "Longitude_Of_Center=10;Latitude_Of_Center=45;Scale_Factor=1;Azimuth=30", kWgs84Rf, 10, 1, 44,
     46},
    {"TwoPointEquidistant", "Two_Point_Equidistant",
     "Latitude_Of_1st_Point=40;Latitude_Of_2nd_Point=50;Longitude_Of_1st_Point=0;Longitude_Of_2nd_Point=20", kWgs84Rf,
     10, 40, 20, 70},
    {"Sinusoidal", "Sinusoidal", "", kWgs84Rf, 0, 180, -80, 84},
    {"SinusoidalSphere", "Sinusoidal", "", 0, 0, 180, -80, 84},
    {"Mollweide", "Mollweide", "", kWgs84Rf, 0, 180, -80, 84},
    {"EckertI", "Eckert_I", "", kWgs84Rf, 0, 180, -80, 84},
    {"EckertII", "Eckert_II", "", kWgs84Rf, 0, 180, -80, 84},
    {"EckertIII", "Eckert_III", "", kWgs84Rf, 0, 180, -80, 84},
    {"EckertIV", "Eckert_IV", "", kWgs84Rf, 0, 180, -80, 84},
    {"EckertV", "Eckert_V", "", kWgs84Rf, 0, 180, -80, 84},
    {"EckertVI", "Eckert_VI", "", kWgs84Rf, 0, 180, -80, 84},
    {"WinkelI", "Winkel_I", "Standard_Parallel_1=50.467", kWgs84Rf, 0, 180, -80, 84},
    {"WinkelII", "Winkel_II", "Standard_Parallel_1=50.467", kWgs84Rf, 0, 180, -80, 84},
    {"WinkelTripel", "Winkel_Tripel", "Standard_Parallel_1=50.467", kWgs84Rf, 0, 180, -80, 84},
    {"QuarticAuthalic", "Quartic_Authalic", "", kWgs84Rf, 0, 180, -80, 84},
    {"Loximuthal", "Loximuthal", "Central_Parallel=40", kWgs84Rf, 0, 180, -80, 84},
    {"VanDerGrinten", "Van_der_Grinten_I", "", kWgs84Rf, 0, 180, -80, 84},
    {"Robinson", "Robinson", "", kWgs84Rf, 0, 180, -80, 84},
    {"RobinsonLegacy", "Robinson_Legacy", "", kWgs84Rf, 0, 180, -80, 84},
    {"Aitoff", "Aitoff", "", kWgs84Rf, 0, 180, -80, 84},
    {"HammerAitoff", "Hammer_Aitoff", "", kWgs84Rf, 0, 180, -80, 84},
    {"FlatPolarQuartic", "Flat_Polar_Quartic", "", kWgs84Rf, 0, 180, -80, 84},
    {"CrasterParabolic", "Craster_Parabolic", "", kWgs84Rf, 0, 180, -80, 84},
    {"Times", "Times", "", kWgs84Rf, 0, 180, -80, 84},
    {"GoodeHomolosine", "Goode_Homolosine", "Option=0", kWgs84Rf, 0, 180, -80, 84},
    {"GoodeInterrupted", "Goode_Homolosine", "Option=1", kWgs84Rf, 0, 180, -80, 84},
    {"Fuller", "Fuller", "Option=0", kWgs84Rf, 0, 180, -90, 90},
    {"Cube", "Cube", "Central_Meridian=0;Option=0", kWgs84Rf, 0, 180, -90, 90},
    {"HotineA", "Hotine_Oblique_Mercator_Azimuth_Natural_Origin",
     "Longitude_Of_Center=-86;Latitude_Of_Center=45.30916666666667;Azimuth=337.25556;Scale_Factor=0.9996", kWgs84Rf,
     -86, 10, 35, 55},
    {"HotineB", "Hotine_Oblique_Mercator_Azimuth_Center",
     "Longitude_Of_Center=-86;Latitude_Of_Center=45.30916666666667;Azimuth=337.25556;Scale_Factor=0.9996", kWgs84Rf,
     -86, 10, 35, 55},
    {"HotineBSphere", "Hotine_Oblique_Mercator_Azimuth_Center",
     "Longitude_Of_Center=-86;Latitude_Of_Center=45.30916666666667;Azimuth=337.25556;Scale_Factor=0.9996", 0, -86, 10,
     35, 55},
    {"RsoBorneo", "Rectified_Skew_Orthomorphic_Center",
     "Longitude_Of_Center=115;Latitude_Of_Center=4;Azimuth=53.31582047222222;XY_Plane_Rotation=53.13010236111111;"
     "Scale_Factor=0.99984",
     kWgs84Rf, 115, 5, 0, 8},
    {"HotineTwoPoint", "Hotine_Oblique_Mercator_Two_Point_Natural_Origin",
     "Longitude_Of_1st_Point=-80;Latitude_Of_1st_Point=40;Longitude_Of_2nd_Point=-70;Latitude_Of_2nd_Point=45;"
     "Latitude_Of_Center=42;Scale_Factor=0.9996",
     kWgs84Rf, -75, 10, 35, 50},
    {"Krovak", "Krovak",
     "Longitude_Of_Center=24.83333333333333;Latitude_Of_Center=49.5;Pseudo_Standard_Parallel_1=78.5;"
     "Azimuth=30.28813975277778;Scale_Factor=0.9999;X_Scale=1;Y_Scale=1;XY_Plane_Rotation=0",
     kWgs84Rf, 17, 5, 47.5, 51.5},
    {"KrovakEastNorth", "Krovak",
     "Longitude_Of_Center=24.83333333333333;Latitude_Of_Center=49.5;Pseudo_Standard_Parallel_1=78.5;"
     "Azimuth=30.28813975277778;Scale_Factor=0.9999;X_Scale=-1;Y_Scale=1;XY_Plane_Rotation=90",
     kWgs84Rf, 17, 5, 47.5, 51.5},
    {"NewZealandMapGrid", "New_Zealand_Map_Grid", "Longitude_Of_Origin=173;Latitude_Of_Origin=-41", kWgs84Rf, 173, 7,
     -48, -34},
};

ox_object *projcs(const System &s) {
    char rf[32];
    std::snprintf(rf, sizeof rf, "%.17g", s.rf);
    std::string text = std::string("PROJCS[\"") + s.name + "\",GEOGCS[\"GCS\",DATUM[\"D\",SPHEROID[\"S\",6378137.0," + rf +
                       "]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"" +
                       s.projection + "\"],PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0]";
    std::string parameters = s.parameters;
    size_t start = 0;
    while (start < parameters.size()) {
        const size_t end = std::min(parameters.find(';', start), parameters.size());
        const std::string pair = parameters.substr(start, end - start);
        const size_t eq = pair.find('=');
        text += ",PARAMETER[\"" + pair.substr(0, eq) + "\"," + pair.substr(eq + 1) + "]";
        start = end + 1;
    }
    return ox_projcs_from_string((text + ",UNIT[\"Meter\",1.0]]").c_str());
}

// Deterministic points over the system's region (a linear congruential
// generator keeps the order irregular).
std::vector<double> points(const System &s) {
    std::vector<double> p(2 * static_cast<size_t>(kPoints));
    uint64_t state = 42;
    auto next = [&state] {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<double>(state >> 11) * 0x1.0p-53;
    };
    for (int32_t i = 0; i < kPoints; ++i) {
        p[2 * i] = s.lon0 - s.half_width + 2.0 * s.half_width * next();
        p[2 * i + 1] = s.lat_min + (s.lat_max - s.lat_min) * next();
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

void forward(benchmark::State &state, const System &s) {
    ox_object *pcs = projcs(s);
    ox_projcs_load_constants(pcs);
    run(state, pcs, points(s), ox_geog_to_proj);
    ox_projcs_del(pcs);
}

void inverse(benchmark::State &state, const System &s) {
    ox_object *pcs = projcs(s);
    std::vector<double> p = points(s);
    ox_geog_to_proj(pcs, kPoints, p.data());
    run(state, pcs, p, ox_proj_to_geog);
    ox_projcs_del(pcs);
}

// The conversions with the point loops held to one instruction-set level
// (0 baseline x86-64, 1 x86-64-v2, 2 AVX2, 3 AVX-512; -2 the C library's
// functions for every point).
void at_level(benchmark::State &state, void (*bench)(benchmark::State &, const System &), const System &s) {
    const int level = static_cast<int>(state.range(0));
    if (level >= 0 && ox::point_loop_level_limit(level) != level) {
        state.SkipWithError("level not supported by this processor");
        ox::point_loop_level_limit(-1);
        return;
    }
    ox::point_loop_level_limit(level);
    bench(state, s);
    ox::point_loop_level_limit(-1);
}

const bool kRegistered = [] {
    for (const System &s : kSystems) {
        const std::string name = std::string("BM_") + s.name;
        benchmark::RegisterBenchmark((name + "Forward").c_str(), forward, s)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "Inverse").c_str(), inverse, s)->Unit(benchmark::kMillisecond);
    }
    for (const System &s : {kSystems[0], kSystems[3]}) {
        const std::string name = std::string("BM_") + s.name;
        benchmark::RegisterBenchmark((name + "ForwardAtLevel").c_str(), at_level, forward, s)
            ->Arg(-2)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "InverseAtLevel").c_str(), at_level, inverse, s)
            ->Arg(-2)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
    }
    return true;
}();

// One sine/cosine pair and one logarithm per point, in place, as a
// projection routine would write them.
void BM_Floor(benchmark::State &state) {
    std::vector<double> input = points(kSystems[0]);
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

BENCHMARK(BM_Floor)->Unit(benchmark::kMillisecond);
