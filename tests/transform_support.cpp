#include "transform_support.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "test_util.h"

namespace oxtest {

namespace {

std::string number(double v) {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", v);
    return text;
}

template <class T>
void put(std::string &out, T v, bool big_endian) {
    unsigned char bytes[sizeof(T)];
    std::memcpy(bytes, &v, sizeof v);
    const uint16_t probe = 1;
    const bool little = *reinterpret_cast<const unsigned char *>(&probe) == 1;
    if (big_endian == little)
        for (size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
    out.append(reinterpret_cast<const char *>(bytes), sizeof bytes);
}

// An 8-byte field: `text` padded with blanks.
void put_field(std::string &out, const std::string &text) {
    char f[8];
    std::memset(f, ' ', 8);
    std::memcpy(f, text.data(), std::min<size_t>(8, text.size()));
    out.append(f, 8);
}

void put_record(std::string &out, const char *keyword, const std::string &text) {
    put_field(out, keyword);
    put_field(out, text);
}

void put_record(std::string &out, const char *keyword, int32_t value, bool big_endian) {
    put_field(out, keyword);
    put(out, value, big_endian);
    out.append(4, '\0');
}

void put_record(std::string &out, const char *keyword, double value, bool big_endian) {
    put_field(out, keyword);
    put(out, value, big_endian);
}

}  // namespace

std::string geogcs_text(const std::string &name, double a, double rf, double pm, const char *unit) {
    return "GEOGCS[\"" + name + "\",DATUM[\"D_" + name + "\",SPHEROID[\"S_" + name + "\"," + number(a) + "," +
           number(rf) + "]],PRIMEM[\"P\"," + number(pm) + "]," + unit + "]";
}

ox_object *make_geogtran(const std::string &geogcs1, const std::string &geogcs2, const std::string &method,
                         const std::vector<std::pair<std::string, double>> &parameters) {
    std::string text = "GEOGTRAN[\"T\"," + geogcs1 + "," + geogcs2 + ",METHOD[\"" + method + "\"]";
    for (const auto &[name, value] : parameters) text += ",PARAMETER[\"" + name + "\"," + number(value) + "]";
    text += "]";
    return ox_geogtran_from_string(text.c_str());
}

std::string nadcon_bytes(const NadconGrid &g, bool latitude, bool big_endian) {
    const size_t record = 4 * static_cast<size_t>(g.nc) + 4;
    std::string out;
    out.append(64, ' ');
    put<int32_t>(out, g.nc, big_endian);
    put<int32_t>(out, g.nr, big_endian);
    put<int32_t>(out, 1, big_endian);
    for (float v : {g.xmin, g.dx, g.ymin, g.dy, 0.0f}) put<float>(out, v, big_endian);
    out.resize(record, '\0');
    for (int j = 0; j < g.nr; ++j) {
        put<int32_t>(out, 0, big_endian);
        for (int i = 0; i < g.nc; ++i) put<float>(out, latitude ? g.lat_shift(i, j) : g.lon_shift(i, j), big_endian);
    }
    return out;
}

void write_file(const std::string &path, const std::string &bytes) {
    std::FILE *f = std::fopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr) << path;
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
}

void make_dirs(const std::string &path) {
    for (size_t at = 1; at <= path.size(); ++at)
        if (at == path.size() || path[at] == '/') mkdir(path.substr(0, at).c_str(), 0755);
}

void write_nadcon(const std::string &dir, const std::string &name, const NadconGrid &g, bool big_endian) {
    make_dirs(dir);
    write_file(dir + "/" + name + ".los", nadcon_bytes(g, false, big_endian));
    write_file(dir + "/" + name + ".las", nadcon_bytes(g, true, big_endian));
}

std::string ntv2_bytes(const std::vector<Ntv2SubGrid> &grids, const std::string &unit, bool big_endian) {
    const double per_second = unit == "MINUTES" ? 1.0 / 60 : unit == "DEGREES" ? 1.0 / 3600
                              : unit == "RADIANS" ? 1.0 / 206264.80624709636 : 1.0;
    std::string out;
    put_record(out, "NUM_OREC", int32_t{11}, big_endian);
    put_record(out, "NUM_SREC", int32_t{11}, big_endian);
    put_record(out, "NUM_FILE", static_cast<int32_t>(grids.size()), big_endian);
    put_record(out, "GS_TYPE", unit);
    put_record(out, "VERSION", std::string("NTv2.0"));
    put_record(out, "SYSTEM_F", std::string("FROM"));
    put_record(out, "SYSTEM_T", std::string("TO"));
    put_record(out, "MAJOR_F", 6378137.0, big_endian);
    put_record(out, "MINOR_F", 6356752.314, big_endian);
    put_record(out, "MAJOR_T", 6378137.0, big_endian);
    put_record(out, "MINOR_T", 6356752.314, big_endian);
    for (const Ntv2SubGrid &g : grids) {
        const int rows = static_cast<int>(std::lround((g.n_lat - g.s_lat) / g.lat_inc)) + 1;
        const int cols = static_cast<int>(std::lround((g.w_long - g.e_long) / g.long_inc)) + 1;
        put_record(out, "SUB_NAME", g.name);
        put_record(out, "PARENT", g.parent);
        put_record(out, "CREATED", std::string("today"));
        put_record(out, "UPDATED", std::string("today"));
        put_record(out, "S_LAT", g.s_lat * per_second, big_endian);
        put_record(out, "N_LAT", g.n_lat * per_second, big_endian);
        put_record(out, "E_LONG", g.e_long * per_second, big_endian);
        put_record(out, "W_LONG", g.w_long * per_second, big_endian);
        put_record(out, "LAT_INC", g.lat_inc * per_second, big_endian);
        put_record(out, "LONG_INC", g.long_inc * per_second, big_endian);
        put_record(out, "GS_COUNT", static_cast<int32_t>(rows * cols), big_endian);
        for (int j = 0; j < rows; ++j)
            for (int i = 0; i < cols; ++i) {
                const auto [dlat, dlon] = g.shift(i, j);
                put<float>(out, static_cast<float>(dlat * per_second), big_endian);
                put<float>(out, static_cast<float>(dlon * per_second), big_endian);
                put<float>(out, 0.01f, big_endian);
                put<float>(out, 0.01f, big_endian);
            }
    }
    put_record(out, "END", std::string(""));
    return out;
}

}  // namespace oxtest
