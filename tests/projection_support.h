// Helpers of the projection tests: reading the reference vectors copied into
// tests/data, building projected systems, and running the point loops at
// every instruction-set level.
//
// The reference rows come from open-source peers (the shared reference
// vectors); columns case,projection,a,rf,params,lon,lat,x,y with
// angles in degrees, lengths in metres, x and y including false easting and
// northing.
#pragma once

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ox.h"
#include "projection/ox_projmath.h"
#include "test_util.h"

namespace oxtest {

inline constexpr double kA = 6378137.0, kRf = 298.257223563;  // WGS 84
inline constexpr double kFootUS = 0.3048006096012192;
inline constexpr const char *kMeter = "UNIT[\"Meter\",1.0]";
inline constexpr const char *kFoot = "UNIT[\"Foot_US\",0.3048006096012192]";

using Params = std::vector<std::pair<std::string, double>>;

struct RefRow {
    std::string case_name;
    std::string projection;
    double a = 0, rf = 0;
    Params params;
    double lon = 0, lat = 0, x = 0, y = 0;

    double param(const std::string &name, double missing = 0.0) const {
        for (const auto &p : params)
            if (p.first == name) return p.second;
        return missing;
    }
};

// Short form for test names and failure messages.
inline void PrintTo(const RefRow &r, std::ostream *os) { *os << r.case_name; }
inline void PrintTo(const std::vector<RefRow> &rows, std::ostream *os) {
    *os << (rows.empty() ? std::string("(none)") : rows[0].case_name);
}

inline std::vector<RefRow> read_reference(const std::string &file) {
    std::vector<RefRow> rows;
    for (const auto &f : read_csv(file)) {
        if (f.size() != 9) continue;
        RefRow r{f[0], f[1], std::stod(f[2]), std::stod(f[3]), {}, std::stod(f[5]), std::stod(f[6]),
                 std::stod(f[7]), std::stod(f[8])};
        std::stringstream ps(f[4]);
        std::string kv;
        while (std::getline(ps, kv, ';')) {
            const size_t eq = kv.find('=');
            r.params.emplace_back(kv.substr(0, eq), std::stod(kv.substr(eq + 1)));
        }
        rows.push_back(std::move(r));
    }
    return rows;
}

// Rows grouped by case, in file order of first appearance.
inline std::vector<std::vector<RefRow>> by_case(const std::vector<RefRow> &rows) {
    std::vector<std::vector<RefRow>> cases;
    std::map<std::string, size_t> index;
    for (const RefRow &r : rows) {
        auto [it, added] = index.emplace(r.case_name, cases.size());
        if (added) cases.emplace_back();
        cases[it->second].push_back(r);
    }
    return cases;
}

inline std::string number(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    return buf;
}

// Parameter sets: a transverse Mercator (UTM zone 33 by default) and a
// cylindrical projection (a standard parallel only when one is given).
inline Params tm_params(double cm = 15, double k0 = 0.9996, double lat0 = 0, double fe = 500000, double fn = 0) {
    return {{"False_Easting", fe},
            {"False_Northing", fn},
            {"Central_Meridian", cm},
            {"Scale_Factor", k0},
            {"Latitude_Of_Origin", lat0}};
}
inline Params cyl_params(double cm = 0, double sp1 = kNaN, double fe = 0, double fn = 0) {
    Params p = {{"False_Easting", fe}, {"False_Northing", fn}, {"Central_Meridian", cm}};
    if (!std::isnan(sp1)) p.push_back({"Standard_Parallel_1", sp1});
    return p;
}

// Object string of a projected system in degrees and the given linear unit.
inline std::string projcs_text(const std::string &projection, double a, double rf, const Params &params,
                               const std::string &unit = kMeter) {
    std::string s = "PROJCS[\"test\",GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\"," + number(a) + "," + number(rf) +
                    "]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"" + projection +
                    "\"]";
    for (const auto &p : params) s += ",PARAMETER[\"" + p.first + "\"," + number(p.second) + "]";
    return s + "," + unit + "]";
}

inline Owned make_projcs(const std::string &projection, const Params &params, double a = kA, double rf = kRf,
                         const std::string &unit = kMeter) {
    Owned p(ox_projcs_from_string(projcs_text(projection, a, rf, params, unit).c_str()));
    EXPECT_TRUE(p) << projection;
    return p;
}

inline Owned projcs_of(const RefRow &r, const std::string &unit = kMeter) {
    return make_projcs(r.projection, r.params, r.a, r.rf, unit);
}

// Whole-array conversions in place; they return the count.
inline int32_t forward(ox_object *pcs, std::vector<double> &p) {
    return ox_geog_to_proj(pcs, static_cast<int32_t>(p.size() / 2), p.data());
}
inline int32_t inverse(ox_object *pcs, std::vector<double> &p, double center = 0.0) {
    return ox_proj_to_geog_center(pcs, static_cast<int32_t>(p.size() / 2), p.data(), center);
}

// A copy of a projected system whose projection has the given routines, as a
// caller makes one with ox_projection_new (null routines: the registry's,
// without a constants routine).
inline Owned with_routines(ox_object *pcs, ox_projection_routine fwd, ox_projection_routine inv) {
    ox_object *params[16], *copies[16];
    ox_projcs_parameters(pcs, params);
    for (int i = 0; i < 16; ++i) copies[i] = params[i] ? ox_parameter_clone(params[i]) : nullptr;
    Owned p(ox_projcs_new("copy", ox_geogcs_clone(ox_projcs_geogcs(pcs)),
                          ox_projection_new(name_of(ox_projcs_projection(pcs)).c_str(), fwd, inv, nullptr), copies,
                          ox_unit_clone(ox_projcs_unit(pcs))));
    EXPECT_TRUE(p);
    return p;
}

// The point-loop levels to check: the C library path, then every
// instruction-set variant of the inline kernels that the processor has (on
// x86-64 level 0 is the C library path too).
inline std::vector<int> loop_levels() {
    std::vector<int> levels{ox::kExactLevel};
    const int top = ox::point_loop_level_limit(-1);
#if defined(__x86_64__)
    const int first = 1;
#else
    const int first = 0;
#endif
    for (int level = first; level <= top; ++level) levels.push_back(level);
    return levels;
}

// Runs the body at one loop level and restores the processor's own.
struct AtLevel {
    explicit AtLevel(int level) { ox::point_loop_level_limit(level); }
    ~AtLevel() { ox::point_loop_level_limit(-1); }
    AtLevel(const AtLevel &) = delete;
    AtLevel &operator=(const AtLevel &) = delete;
};

}  // namespace oxtest
