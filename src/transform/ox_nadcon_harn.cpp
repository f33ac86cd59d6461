// "NADCON" (EPSG method 9613) and "HARN" (the library's code 109613):
// latitude and longitude shifts interpolated bilinearly from a pair of
// grid files, ".los" (longitude shifts, arc-seconds, positive west) and
// ".las" (latitude shifts, arc-seconds, positive north), found in the
// subdirectories "nadcon" and "harn" of the data home (ox_datahome.h).
// The file layout and the formulas are those of the North American Datum
// Conversion program (Dewhurst, "NADCON: the application of minimum-
// curvature-derived surfaces in the transformation of positional data from
// the North American Datum of 1927 to the North American Datum of 1983",
// NOAA Technical Memorandum NOS NGS-50, 1990):
//
//   a file is records of 4 NC + 4 bytes; record 0 holds the header (64
//   characters, NC, NR, NZ as int32, XMIN, DX, YMIN, DY, ANGLE as float32),
//   records 1..NR the rows south to north, each 4 bytes skipped then NC
//   float32 values west to east.  The fields are little-endian unless NC so
//   read exceeds 999999 in magnitude: then the whole file is big-endian.
//
//   Forward, in degrees: a longitude above 140 is taken 360 lower (the far
//   western grids); a southern latitude west of -164 is mirrored north (the
//   southern grids are stored so); a point must lie strictly inside the
//   grid; x = (lon - XMIN) / DX, y = (lat - YMIN) / DY, the cell
//   (trunc x, trunc y), and each shift is
//     z00 + (z10 - z00) fx + (z01 - z00) fy + (z11 - z10 - z01 + z00) fx fy;
//   lon' = ox_delta(lon - dlon / 3600), lat' = (lat + dlat / 3600) with the
//   mirror undone.  (The divisions are multiplications by reciprocals
//   computed once: within an ulp, and no division in the point loop.)
//
//   Inverse: from the estimate e = target, repeat e -= (forward(e) - target)
//   until both differences are within 2^-48 degree or 51 rounds have been
//   made; the result is the last estimate.  The cell follows the estimate
//   and is kept within the grid (an estimate beyond the edge extrapolates
//   the edge cell linearly).
//
// Points outside the grid are left as they are and not counted; heights
// are not touched.  The loader checks more than the layout needs, so that
// no grid it accepts can make a point read outside its blocks or give a
// silently wrong number: a record must hold the header (NC at least 23),
// the grid must have a cell (NC and NR at least 2), the spacings must be
// finite and positive, the origin finite, the file long enough for all NR
// rows, every shift finite, and the ".las" header equal to the ".los"
// header (sizes, origin and spacings).
//
// Without loaded blocks (a routine called directly) the routines read, for
// each point, only the four values of its cell from each file.
#include <cmath>
#include <cstring>

#include "object/ox_memory.h"
#include "object/ox_utils.h"
#include "transform/ox_datahome.h"
#include "transform/ox_gridfile.h"
#include "transform/ox_gridmethods.h"
#include "transform/ox_methdef.h"

namespace ox {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kDegreesPerSecond = 1.0 / 3600.0;
constexpr int32_t kBigEndianColumns = 999999;  // |NC| above this: the other byte order
constexpr int64_t kHeaderBytes = 96;
constexpr int32_t kMinColumns = 23;  // 4 NC + 4 >= 96: a record holds the header
constexpr double kInverseTolerance = kZero;  // degrees

struct Header {
    int32_t nc, nr, nz;
    float xmin, dx, ymin, dy, angle;
    bool swapped;
    int64_t record() const { return 4 * static_cast<int64_t>(nc) + 4; }
};

// Reads and checks the header of a grid file.
bool read_header(GridFile &file, Header &h) {
    unsigned char raw[kHeaderBytes];
    if (!file.read_at(0, raw, sizeof raw)) return false;
    int32_t ints[3];
    float floats[5];
    std::memcpy(ints, raw + 64, sizeof ints);
    std::memcpy(floats, raw + 76, sizeof floats);
    const bool native_little = little_endian();
    // The fields are little-endian unless |NC| read so exceeds 999999.
    if (!native_little) {
        swap_bytes32(ints, 3);
        swap_bytes32(floats, 5);
    }
    h.swapped = false;
    const int64_t nc_le = ints[0];
    if (nc_le > kBigEndianColumns || nc_le < -kBigEndianColumns) {
        swap_bytes32(ints, 3);
        swap_bytes32(floats, 5);
        h.swapped = true;
    }
    h.nc = ints[0];
    h.nr = ints[1];
    h.nz = ints[2];
    h.xmin = floats[0];
    h.dx = floats[1];
    h.ymin = floats[2];
    h.dy = floats[3];
    h.angle = floats[4];
    if (h.nc < kMinColumns || h.nr < 2) return false;
    if (!std::isfinite(h.xmin) || !std::isfinite(h.ymin) || !(h.dx > 0.0f) || !(h.dy > 0.0f) ||
        !std::isfinite(h.dx) || !std::isfinite(h.dy))
        return false;
    // The far corner must be finite too, and the file long enough.
    if (!std::isfinite(h.xmin + (h.nc - 1.0) * h.dx) || !std::isfinite(h.ymin + (h.nr - 1.0) * h.dy)) return false;
    return file.size / h.record() >= static_cast<int64_t>(h.nr) + 1;
}

bool same_grid(const Header &a, const Header &b) {
    return a.nc == b.nc && a.nr == b.nr && a.xmin == b.xmin && a.dx == b.dx && a.ymin == b.ymin && a.dy == b.dy;
}

// Reads the NR rows of a file into `out` (NR NC values), swapped when the
// file is big-endian on this machine or the other way round; false on a
// short read or a value that is not finite.
bool read_rows(GridFile &file, const Header &h, float *out) {
    const bool swap = h.swapped == little_endian();
    const size_t nc = static_cast<size_t>(h.nc);
    for (int32_t row = 0; row < h.nr; ++row) {
        float *values = out + static_cast<size_t>(row) * nc;
        if (!file.read_at(h.record() * (row + 1) + 4, values, nc * sizeof(float))) return false;
        if (swap) swap_bytes32(values, nc);
        for (size_t i = 0; i < nc; ++i)
            if (!std::isfinite(values[i])) return false;
    }
    return true;
}

int32_t load_pair(GridFile &los, GridFile &las, GtConstants *block) {
    if (block == nullptr) return 0;
    Header h, hl;
    if (!read_header(los, h) || !read_header(las, hl) || !same_grid(h, hl)) return 0;
    const size_t cells = static_cast<size_t>(h.nr) * static_cast<size_t>(h.nc);
    auto *first = mem_new_array<int32_t>(2);
    auto *second = static_cast<float *>(mem_calloc(2 * cells, sizeof(float)));
    auto *third = mem_new_array<double>(6);
    const bool ok = first != nullptr && second != nullptr && third != nullptr && read_rows(los, h, second) &&
                    read_rows(las, hl, second + cells);
    if (ok) {
        first[0] = h.nr;
        first[1] = h.nc;
        third[0] = h.xmin;
        third[1] = h.ymin;
        third[2] = h.xmin + (h.nc - 1) * static_cast<double>(h.dx);
        third[3] = h.ymin + (h.nr - 1) * static_cast<double>(h.dy);
        third[4] = h.dx;
        third[5] = h.dy;
    }
    return gt_install(block, ok, first, second, third);
}

// The paths of a grid's pair; false when the name or the data home gives
// none.
bool pair_paths(const char *subdirectory, const char *grid_name, char (&los)[kGridPathSize],
                char (&las)[kGridPathSize]) {
    return grid_path(subdirectory, grid_name, ".los", false, los) &&
           grid_path(subdirectory, grid_name, ".las", false, las);
}

// ---------------------------------------------------------------------------
// The formulas.
// ---------------------------------------------------------------------------

struct Grid {
    int32_t nr, nc;
    double xmin, ymin, xmax, ymax, dx, dy;
    double per_dx, per_dy;  // 1 / dx, 1 / dy
};

Grid grid_of(int32_t nr, int32_t nc, double xmin, double ymin, double xmax, double ymax, double dx, double dy) {
    return {nr, nc, xmin, ymin, xmax, ymax, dx, dy, 1.0 / dx, 1.0 / dy};
}

// A point in the grid's degrees: the far-west and southern conventions.
struct GridPoint {
    double lon, lat;
    double sign;  // -1 for a mirrored southern point
};

OX_ALWAYS_INLINE GridPoint grid_point(double lon, double lat) {
    double x = lon * kDegreesPerRadian, y = lat * kDegreesPerRadian;
    x = x > 140.0 ? x - 360.0 : x;
    const bool south = y < 0.0 && x < -164.0;
    return {x, south ? -y : y, south ? -1.0 : 1.0};
}

OX_ALWAYS_INLINE bool strictly_inside(const Grid &g, const GridPoint &p) {
    return (g.xmin < p.lon) & (p.lon < g.xmax) & (g.ymin < p.lat) & (p.lat < g.ymax);
}

// The cell of a point and its fractions: the cell index kept within the
// grid (NaN gives cell 0), the fractions from the unclamped position.
struct Cell {
    int32_t i, j;
    double fx, fy;
};
OX_ALWAYS_INLINE Cell cell_of(const Grid &g, double lon, double lat) {
    const double x = (lon - g.xmin) * g.per_dx, y = (lat - g.ymin) * g.per_dy;
    const double top_x = g.nc - 2.0, top_y = g.nr - 2.0;
    const double cx = x > 0.0 ? (x < top_x ? x : top_x) : 0.0;
    const double cy = y > 0.0 ? (y < top_y ? y : top_y) : 0.0;
    const int32_t i = static_cast<int32_t>(cx), j = static_cast<int32_t>(cy);
    return {i, j, x - i, y - j};
}

OX_ALWAYS_INLINE double bilinear(double z00, double z10, double z01, double z11, double fx, double fy) {
    return z00 + (z10 - z00) * fx + (z01 - z00) * fy + (z11 - z10 - z01 + z00) * fx * fy;
}

// The shifts (arc-seconds) at a point of the grid from the loaded halves.
struct Shifts {
    double dlon, dlat;
};
OX_ALWAYS_INLINE Shifts shifts_at(const Grid &g, const float *lon_shifts, const float *lat_shifts, double lon,
                                  double lat) {
    const Cell c = cell_of(g, lon, lat);
    const size_t k = static_cast<size_t>(c.j) * static_cast<size_t>(g.nc) + static_cast<size_t>(c.i);
    const size_t up = k + static_cast<size_t>(g.nc);
    return {bilinear(lon_shifts[k], lon_shifts[k + 1], lon_shifts[up], lon_shifts[up + 1], c.fx, c.fy),
            bilinear(lat_shifts[k], lat_shifts[k + 1], lat_shifts[up], lat_shifts[up + 1], c.fx, c.fy)};
}

// The inverse iteration, from any source of shifts.
template <class ShiftsAt>
OX_ALWAYS_INLINE void invert(const GridPoint &target, const ShiftsAt &shifts_at_point, double &lon, double &lat) {
    invert_grid_shift(
        target.lon, target.lat, kInverseTolerance,
        [&](double x, double y, double &fx, double &fy) {
            const Shifts s = shifts_at_point(x, y);
            fx = x - s.dlon * kDegreesPerSecond;
            fy = y + s.dlat * kDegreesPerSecond;
        },
        lon, lat);
}

struct NadconConstants {
    Grid g;
    const float *lon_shifts;
    const float *lat_shifts;
};

struct NadconGrid {
    static constexpr MethodKind kKind = MethodKind::kGrid;
    static constexpr ParameterSet kParameters = parameter_sets::kGrid;
    static constexpr bool kInverseFormula = true;
    using Constants = NadconConstants;

    static bool setup(const MethodFrame &f, Direction d, Constants &c) {
        (void)d;
        const auto *sizes = static_cast<const int32_t *>(f.first);
        const auto *extent = static_cast<const double *>(f.third);
        c.g = grid_of(sizes[0], sizes[1], extent[0], extent[1], extent[2], extent[3], extent[4], extent[5]);
        if (c.g.nr < 2 || c.g.nc < 2) return false;
        c.lon_shifts = static_cast<const float *>(f.second);
        c.lat_shifts = c.lon_shifts + static_cast<size_t>(c.g.nr) * static_cast<size_t>(c.g.nc);
        return true;
    }

    // The result in radians, or the point as it was when it lies outside.
    template <class M>
    static OX_ALWAYS_INLINE bool result(const GridPoint &p, bool inside, double lon_d, double lat_d, double lon,
                                        double lat, double &lon_out, double &lat_out) {
        const double l = lon_d * kDegree;
        lon_out = inside ? M::reduce(l) : lon;
        lat_out = inside ? lat_d * kDegree * p.sign : lat;
        return M::reduce_ok(l) | !inside;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &converted) {
        h_out = h;
        const GridPoint p = grid_point(lon, lat);
        converted = strictly_inside(c.g, p);
        const Shifts s = shifts_at(c.g, c.lon_shifts, c.lat_shifts, p.lon, p.lat);
        return result<M>(p, converted, p.lon - s.dlon * kDegreesPerSecond, p.lat + s.dlat * kDegreesPerSecond, lon,
                         lat, lon_out, lat_out);
    }

    template <class M>
    static OX_ALWAYS_INLINE bool point_inverse(const Constants &c, double lon, double lat, double h, double &lon_out,
                                               double &lat_out, double &h_out, bool &converted) {
        h_out = h;
        const GridPoint p = grid_point(lon, lat);
        converted = strictly_inside(c.g, p);
        double lon_d = p.lon, lat_d = p.lat;
        if (converted)
            invert(p, [&](double x, double y) { return shifts_at(c.g, c.lon_shifts, c.lat_shifts, x, y); }, lon_d,
                   lat_d);
        return result<M>(p, converted, lon_d, lat_d, lon, lat, lon_out, lat_out);
    }

    // Without loaded blocks: the four values of each point's cell read from
    // the files.
    static int32_t unloaded_in(const char *subdirectory, const MethodFrame &f, Direction d, int32_t n,
                               double *points);
};

// Reads the shifts of one cell from the pair of files.
struct FileCells {
    GridFile los, las;
    Header h, hl;  // of the ".los" and the ".las"
    Grid g;

    static bool value_pair(GridFile &file, const Header &h, int32_t i, int32_t j, float out[2]) {
        if (!file.read_at(h.record() * (j + 1) + 4 + 4 * static_cast<int64_t>(i), out, 2 * sizeof(float)))
            return false;
        if (h.swapped == little_endian()) swap_bytes32(out, 2);
        return std::isfinite(out[0]) && std::isfinite(out[1]);
    }
    // False when a value cannot be read.
    bool shifts(double lon, double lat, Shifts &s) {
        const Cell c = cell_of(g, lon, lat);
        float lo[2], lo_up[2], la[2], la_up[2];
        if (!value_pair(los, h, c.i, c.j, lo) || !value_pair(los, h, c.i, c.j + 1, lo_up) ||
            !value_pair(las, hl, c.i, c.j, la) || !value_pair(las, hl, c.i, c.j + 1, la_up))
            return false;
        s = {bilinear(lo[0], lo[1], lo_up[0], lo_up[1], c.fx, c.fy),
             bilinear(la[0], la[1], la_up[0], la_up[1], c.fx, c.fy)};
        return true;
    }
};

int32_t NadconGrid::unloaded_in(const char *subdirectory, const MethodFrame &f, Direction d, int32_t n,
                                double *points) {
    char los_path[kGridPathSize], las_path[kGridPathSize];
    if (f.grid_name == nullptr || *f.grid_name == '\0' || !pair_paths(subdirectory, f.grid_name, los_path, las_path))
        return 0;
    FileCells files;
    if (!files.los.open(los_path) || !files.las.open(las_path) || !read_header(files.los, files.h) ||
        !read_header(files.las, files.hl) || !same_grid(files.h, files.hl))
        return 0;
    const Header &h = files.h;
    files.g = grid_of(h.nr, h.nc, h.xmin, h.ymin, h.xmin + (h.nc - 1) * static_cast<double>(h.dx),
                      h.ymin + (h.nr - 1) * static_cast<double>(h.dy), h.dx, h.dy);
    int32_t converted = 0;
    for (int32_t k = 0; k < n; ++k) {
        double *pt = points + 2 * static_cast<size_t>(k);
        const GridPoint p = grid_point(pt[0], pt[1]);
        if (!strictly_inside(files.g, p)) continue;
        bool readable = true;
        double lon_d, lat_d;
        const auto at = [&](double x, double y) {
            Shifts s{0.0, 0.0};
            readable = readable && files.shifts(x, y, s);
            return s;
        };
        if (d == Direction::kInverse) {
            invert(p, at, lon_d, lat_d);
        } else {
            const Shifts s = at(p.lon, p.lat);
            lon_d = p.lon - s.dlon * kDegreesPerSecond;
            lat_d = p.lat + s.dlat * kDegreesPerSecond;
        }
        if (!readable) continue;
        pt[0] = ox_delta(lon_d * kDegree);
        pt[1] = lat_d * kDegree * p.sign;
        ++converted;
    }
    return converted;
}

// The loader of a subdirectory: the pair that the grid name gives.
int32_t load_from(const char *subdirectory, GtConstants *block, const char *grid_name) {
    char los_path[kGridPathSize], las_path[kGridPathSize];
    if (!pair_paths(subdirectory, grid_name, los_path, las_path)) return 0;
    GridFile los, las;
    if (!los.open(los_path) || !las.open(las_path)) return 0;
    return load_pair(los, las, block);
}

// The two methods differ only in their registry row and subdirectory.
template <class D>
struct NadconInSubdirectory : NadconGrid {
    static int32_t load(GtConstants *block, const char *grid_name) {
        return load_from(D::kSubdirectory, block, grid_name);
    }
    static int32_t unloaded(const MethodFrame &f, Direction d, int32_t n, double *points, double *) {
        return unloaded_in(D::kSubdirectory, f, d, n, points);
    }
};

struct Nadcon : NadconInSubdirectory<Nadcon> {
    static constexpr int32_t kCode = 9613;
    static constexpr const char *kName = "NADCON";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;
    static constexpr const char *kSubdirectory = "nadcon";
};

struct Harn : NadconInSubdirectory<Harn> {
    static constexpr int32_t kCode = 109613;
    static constexpr const char *kName = "HARN";
    static constexpr const char *kAuthority = kMavo;
    static constexpr const char *kAuthorityVersion = kMavoVersion;
    static constexpr const char *kSubdirectory = "harn";
};

}  // namespace

int32_t nadcon_load_streams(std::FILE *los_stream, std::FILE *las_stream, GtConstants *block) {
    GridFile los, las;
    if (!los.attach(los_stream) || !las.attach(las_stream)) return 0;
    return load_pair(los, las, block);
}

}  // namespace ox

OX_DEFINE_METHOD(Nadcon)
OX_DEFINE_METHOD(Harn)
