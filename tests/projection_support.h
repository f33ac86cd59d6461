// Helpers of the projection tests: reading the reference vectors copied into
// tests/data and building projected systems from their rows.
//
// The reference rows come from open-source peers (PROJ 9.1.1 through pyproj,
// GeographicLib 2.1.2); columns case,projection,a,rf,params,lon,lat,x,y with
// angles in degrees, lengths in metres, x and y including false easting and
// northing.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ox.h"

namespace oxtest {

struct RefRow {
    std::string case_name;
    std::string projection;
    double a = 0, rf = 0;
    std::vector<std::pair<std::string, double>> params;
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
    std::ifstream in(std::string(OX_TEST_DATA_DIR) + "/" + file);
    std::string line;
    std::getline(in, line);  // header
    while (std::getline(in, line)) {
        if (line.empty()) continue;
        std::vector<std::string> f;
        std::stringstream ss(line);
        std::string field;
        while (std::getline(ss, field, ',')) f.push_back(field);
        if (f.size() != 9) continue;
        RefRow r;
        r.case_name = f[0];
        r.projection = f[1];
        r.a = std::stod(f[2]);
        r.rf = std::stod(f[3]);
        std::stringstream ps(f[4]);
        std::string kv;
        while (std::getline(ps, kv, ';')) {
            const size_t eq = kv.find('=');
            r.params.emplace_back(kv.substr(0, eq), std::stod(kv.substr(eq + 1)));
        }
        r.lon = std::stod(f[5]);
        r.lat = std::stod(f[6]);
        r.x = std::stod(f[7]);
        r.y = std::stod(f[8]);
        rows.push_back(std::move(r));
    }
    return rows;
}

// Rows grouped by case, in file order of first appearance.
inline std::vector<std::vector<RefRow>> by_case(const std::vector<RefRow> &rows) {
    std::vector<std::vector<RefRow>> cases;
    std::map<std::string, size_t> index;
    for (const RefRow &r : rows) {
        auto it = index.find(r.case_name);
        if (it == index.end()) {
            index[r.case_name] = cases.size();
            cases.push_back({r});
        } else {
            cases[it->second].push_back(r);
        }
    }
    return cases;
}

inline std::string number(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    return buf;
}

// Object string of a projected system in degrees and the given linear unit.
inline std::string projcs_text(const std::string &projection, double a, double rf,
                               const std::vector<std::pair<std::string, double>> &params,
                               const std::string &unit = "UNIT[\"Meter\",1.0]") {
    std::string s = "PROJCS[\"test\",GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\"," + number(a) + "," + number(rf) +
                    "]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"" + projection +
                    "\"]";
    for (const auto &p : params) s += ",PARAMETER[\"" + p.first + "\"," + number(p.second) + "]";
    return s + "," + unit + "]";
}

inline ox_object *projcs_of(const RefRow &r) {
    return ox_projcs_from_string(projcs_text(r.projection, r.a, r.rf, r.params).c_str());
}

// Longitude difference a - b in degrees reduced to [-180, 180].
inline double lon_diff(double a, double b) {
    double d = std::fmod(a - b, 360.0);
    if (d > 180.0) d -= 360.0;
    if (d < -180.0) d += 360.0;
    return d;
}

// Failure NaN bit pattern check.
inline bool is_failure(double v) {
    uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits == 0x7FF8000000000001ull;
}

}  // namespace oxtest
