// Helpers of the datum transformation tests: transformations built from
// numbers, and writers of NADCON and NTv2 grid files in either byte order.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ox.h"

namespace oxtest {

// A geographic system's object string (rf 0: a sphere; unit factor in
// radians, prime meridian in degrees).
std::string geogcs_text(const std::string &name, double a, double rf, double pm = 0.0,
                        const char *unit = "UNIT[\"Degree\",0.0174532925199433]");

// A transformation between two such systems by method name with
// "Name=value" parameters.
ox_object *make_geogtran(const std::string &geogcs1, const std::string &geogcs2, const std::string &method,
                         const std::vector<std::pair<std::string, double>> &parameters);

// The 2 x n coordinates and the n heights of a set of points.
struct Points {
    std::vector<double> xy, h;
};

// A NADCON grid: NC x NR values of `shift(i, j)` (column i west to east,
// row j south to north).
struct NadconGrid {
    int32_t nc, nr;
    float xmin, dx, ymin, dy;
    std::function<float(int, int)> lon_shift, lat_shift;
};
// The bytes of the ".los" (longitude) or ".las" (latitude) file.
std::string nadcon_bytes(const NadconGrid &g, bool latitude, bool big_endian);
// Writes NAME.los and NAME.las into DIR (created when missing).
void write_nadcon(const std::string &dir, const std::string &name, const NadconGrid &g, bool big_endian);

// An NTv2 sub-grid in arc-seconds (longitudes positive west); `shift(i, j)`
// gives (latitude, longitude) shifts in arc-seconds at column i (from the
// east) and row j (from the south).
struct Ntv2SubGrid {
    std::string name, parent;
    double s_lat, n_lat, e_long, w_long, lat_inc, long_inc;
    std::function<std::pair<float, float>(int, int)> shift;
};
// The bytes of a ".gsb" file with the shifts and extents in `unit`
// ("SECONDS", "MINUTES", "DEGREES", "RADIANS").
std::string ntv2_bytes(const std::vector<Ntv2SubGrid> &grids, const std::string &unit, bool big_endian);

void write_file(const std::string &path, const std::string &bytes);
void make_dirs(const std::string &path);

}  // namespace oxtest
