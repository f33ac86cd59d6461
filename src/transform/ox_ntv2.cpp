// "NTv2" (EPSG method 9615): latitude and longitude shifts interpolated
// bilinearly from a grid file in the National Transformation version 2
// layout (Junkins and Farley, "NTv2 developer's guide", Geodetic Survey
// Division, Natural Resources Canada, 1995), found as "ntv2/NAME.gsb" in
// the data home (".gsb" appended when the grid's name lacks it).
//
// The layout: records of 16 bytes, an 8-character keyword and an 8-byte
// value.  The overview header (NUM_OREC records, normally 11): NUM_OREC,
// NUM_SREC, NUM_FILE (int32 then 4 bytes), GS_TYPE (the unit of every
// extent and shift: "SECONDS", "MINUTES", "DEGREES" or "RADIANS"),
// VERSION, SYSTEM_F, SYSTEM_T, MAJOR_F, MINOR_F, MAJOR_T, MINOR_T.  Then
// NUM_FILE sub-grids, each a header of NUM_SREC records (SUB_NAME, PARENT,
// CREATED, UPDATED, S_LAT, N_LAT, E_LONG, W_LONG, LAT_INC, LONG_INC as
// doubles, GS_COUNT as int32) and GS_COUNT node records of four float32:
// latitude shift, longitude shift, and their accuracies.  Longitudes are
// positive west; the nodes run from the south-east corner westward along
// each row, the rows northward.  The byte order is the one in which
// NUM_OREC reads as a plausible record count (11 to 64).
//
// Choices (the layout leaves them open):
//   - A point belongs to a sub-grid when it lies within its extent, edges
//     included.  The finest sub-grid that contains it wins: the first grid
//     of the top level (PARENT "NONE") that contains it, then the first of
//     that grid's children that contains it, and so on down.
//   - The shifts are interpolated bilinearly in the cell of the point (the
//     cell at the northern or western edge is the last one), in double
//     precision from the file's float32 values:
//       lat' = lat + dlat,  lon' = ox_delta(lon - dlon)   (dlon positive west).
//   - The inverse iterates from the estimate e = target:
//       e -= forward(e) - target
//     until both differences are within 1e-9 arc-second (3e-14 degree) or
//     51 rounds have been made; each round interpolates in the sub-grid
//     that contains the estimate (the target's sub-grid, extrapolated from
//     its edge cell, when the estimate has left every sub-grid).
//   - A point outside every sub-grid is left as it is and not counted;
//     heights are not touched.
//   - The loader refuses, cleanly and before it allocates more than the
//     file can justify: a layout it does not recognise, a sub-grid without
//     a whole cell (fewer than 2 rows or columns), extents or increments
//     that are not finite and positive or do not give whole rows and
//     columns, a node count that does not match them or overruns the file,
//     a shift that is not finite, two sub-grids of one name, a parent that
//     names no sub-grid, parents that form a cycle.
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

constexpr int64_t kRecord = 16;
constexpr int32_t kMinHeaderRecords = 11, kMaxHeaderRecords = 64;
constexpr int64_t kNodeBytes = 16;
constexpr double kSecondsPerRadian = 206264.80624709636;  // 648000 / pi
constexpr double kInverseTolerance = 1e-9;  // arc-seconds
constexpr size_t kChunkNodes = 16384;       // nodes read at a time

struct Record {
    char keyword[8];
    unsigned char value[8];
};

// The keyword of a record equals `name` (blank-padded to 8 characters).
bool keyword_is(const Record &r, const char *name) {
    const size_t n = std::strlen(name);
    for (size_t i = 0; i < 8; ++i) {
        const char want = i < n ? name[i] : ' ';
        const char have = r.keyword[i] == '\0' ? ' ' : r.keyword[i];
        if (have != want) return false;
    }
    return true;
}

struct Reader {
    GridFile &file;
    bool swap;  // the file's byte order is not the machine's

    int32_t int_value(const Record &r) const {
        int32_t v;
        std::memcpy(&v, r.value, sizeof v);
        if (swap) swap_bytes32(&v, 1);
        return v;
    }
    double double_value(const Record &r) const {
        double v;
        std::memcpy(&v, r.value, sizeof v);
        if (swap) swap_bytes64(&v, 1);
        return v;
    }
};

// Eight characters of a text value without trailing blanks or NULs.
void text_value(const Record &r, char out[9]) {
    std::memcpy(out, r.value, 8);
    out[8] = '\0';
    for (int i = 7; i >= 0 && (out[i] == ' ' || out[i] == '\0'); --i) out[i] = '\0';
}

// Arc-seconds per unit of GS_TYPE, or 0 for an unknown unit.
double seconds_per_unit(const char *gs_type) {
    if (text_equal_nocase(gs_type, "SECONDS")) return 1.0;
    if (text_equal_nocase(gs_type, "MINUTES")) return 60.0;
    if (text_equal_nocase(gs_type, "DEGREES")) return 3600.0;
    if (text_equal_nocase(gs_type, "RADIANS")) return kSecondsPerRadian;
    return 0.0;
}

// The count of steps of `inc` from `low` to `high`, or -1 when that is not
// a whole number of at least 1 (within 1e-6 of a step).
int64_t steps(double low, double high, double inc) {
    const double q = (high - low) / inc;
    if (!std::isfinite(q) || q < 0.5 || q > 1e9) return -1;
    const double r = std::nearbyint(q);
    return std::fabs(q - r) <= 1e-6 ? static_cast<int64_t>(r) : -1;
}

// A parsed sub-grid header with its parent's name.
struct SubHeader {
    Ntv2Grid grid;
    char parent[9];
    int64_t nodes;
    int64_t data_offset;  // byte offset of its first node
};

bool read_sub_header(GridFile &file, const Reader &rd, int64_t offset, int32_t records, double to_seconds,
                     SubHeader &s) {
    static const char *const kNames[] = {"SUB_NAME", "PARENT", "CREATED", "UPDATED", "S_LAT",   "N_LAT",
                                         "E_LONG",   "W_LONG", "LAT_INC", "LONG_INC", "GS_COUNT"};
    Record r[kMinHeaderRecords];
    if (!file.read_at(offset, r, sizeof r)) return false;
    for (int i = 0; i < kMinHeaderRecords; ++i)
        if (!keyword_is(r[i], kNames[i])) return false;
    Ntv2Grid &g = s.grid;
    text_value(r[0], g.name);
    text_value(r[1], s.parent);
    double v[6];
    for (int i = 0; i < 6; ++i) {
        v[i] = rd.double_value(r[4 + i]) * to_seconds;
        if (!std::isfinite(v[i])) return false;
    }
    g.s_lat = v[0];
    g.n_lat = v[1];
    g.e_long = v[2];
    g.w_long = v[3];
    g.lat_inc = v[4];
    g.long_inc = v[5];
    if (!(g.lat_inc > 0.0) || !(g.long_inc > 0.0)) return false;
    const int64_t row_steps = steps(g.s_lat, g.n_lat, g.lat_inc), col_steps = steps(g.e_long, g.w_long, g.long_inc);
    if (row_steps < 1 || col_steps < 1) return false;
    s.nodes = rd.int_value(r[10]);
    if (s.nodes != (row_steps + 1) * (col_steps + 1)) return false;
    g.rows = static_cast<int32_t>(row_steps + 1);
    g.cols = static_cast<int32_t>(col_steps + 1);
    // The far edges from the node counts, so that the extents and the
    // nodes agree to the last bit.
    g.n_lat = g.s_lat + row_steps * g.lat_inc;
    g.w_long = g.e_long + col_steps * g.long_inc;
    s.data_offset = offset + static_cast<int64_t>(records) * kRecord;
    return true;
}

// Links parents and children; false for a parent that names no sub-grid,
// two sub-grids of one name, or a cycle.
bool link(SubHeader *subs, int32_t count, Ntv2Summary &summary) {
    for (int32_t i = 0; i < count; ++i) {
        subs[i].grid.parent = -1;
        subs[i].grid.first_child = -1;
        subs[i].grid.next_sibling = -1;
        for (int32_t k = 0; k < i; ++k)
            if (text_equal_nocase(subs[i].grid.name, subs[k].grid.name)) return false;
    }
    summary.first_root = -1;
    int32_t last_root = -1;
    for (int32_t i = 0; i < count; ++i) {
        const char *parent = subs[i].parent;
        if (*parent == '\0' || text_equal_nocase(parent, "NONE")) {
            if (last_root < 0)
                summary.first_root = i;
            else
                subs[last_root].grid.next_sibling = i;
            last_root = i;
            continue;
        }
        int32_t p = -1;
        for (int32_t k = 0; k < count && p < 0; ++k)
            if (k != i && text_equal_nocase(parent, subs[k].grid.name)) p = k;
        if (p < 0) return false;
        subs[i].grid.parent = p;
    }
    if (summary.first_root < 0) return false;
    // No cycle: every chain of parents reaches the top level within count steps.
    for (int32_t i = 0; i < count; ++i) {
        int32_t at = i, hops = 0;
        while (at >= 0 && hops <= count) at = subs[at].grid.parent, ++hops;
        if (at >= 0) return false;
    }
    // Children in file order.
    for (int32_t i = count - 1; i >= 0; --i) {
        const int32_t p = subs[i].grid.parent;
        if (p < 0) continue;
        subs[i].grid.next_sibling = subs[p].grid.first_child;
        subs[p].grid.first_child = i;
    }
    return true;
}

// Reads the nodes of one sub-grid into `out` (two floats a node: latitude
// and longitude shift); false on a short read or a shift that is not
// finite.
bool read_nodes(GridFile &file, bool swap, const SubHeader &s, float *out, float *chunk) {
    if (std::fseek(file.f, static_cast<long>(s.data_offset), SEEK_SET) != 0) return false;
    for (int64_t done = 0; done < s.nodes;) {
        const size_t take = static_cast<size_t>(s.nodes - done < static_cast<int64_t>(kChunkNodes)
                                                    ? s.nodes - done
                                                    : static_cast<int64_t>(kChunkNodes));
        if (!file.read(chunk, take * kNodeBytes)) return false;
        if (swap) swap_bytes32(chunk, 4 * take);
        float *dst = out + 2 * done;
        bool finite = true;
        for (size_t i = 0; i < take; ++i) {
            dst[2 * i] = chunk[4 * i];
            dst[2 * i + 1] = chunk[4 * i + 1];
            finite &= std::isfinite(chunk[4 * i]) & std::isfinite(chunk[4 * i + 1]);
        }
        if (!finite) return false;
        done += static_cast<int64_t>(take);
    }
    return true;
}

int32_t load(GridFile &file, GtConstants *block) {
    if (block == nullptr || file.size < kMinHeaderRecords * kRecord) return 0;
    Record overview[kMinHeaderRecords];
    if (!file.read_at(0, overview, sizeof overview)) return 0;
    static const char *const kNames[] = {"NUM_OREC", "NUM_SREC", "NUM_FILE", "GS_TYPE"};
    for (int i = 0; i < 4; ++i)
        if (!keyword_is(overview[i], kNames[i])) return 0;
    // The byte order in which NUM_OREC is a plausible count.
    Reader rd{file, false};
    int32_t orec = rd.int_value(overview[0]);
    if (orec < kMinHeaderRecords || orec > kMaxHeaderRecords) {
        rd.swap = true;
        orec = rd.int_value(overview[0]);
        if (orec < kMinHeaderRecords || orec > kMaxHeaderRecords) return 0;
    }
    const int32_t srec = rd.int_value(overview[1]);
    const int32_t count = rd.int_value(overview[2]);
    if (srec < kMinHeaderRecords || srec > kMaxHeaderRecords || count < 1) return 0;
    char gs_type[9];
    text_value(overview[3], gs_type);
    const double to_seconds = seconds_per_unit(gs_type);
    if (to_seconds == 0.0) return 0;
    // Each sub-grid takes its header and at least four nodes.
    const int64_t smallest = srec * kRecord + 4 * kNodeBytes;
    if (count > (file.size - orec * kRecord) / smallest) return 0;

    auto *subs = static_cast<SubHeader *>(mem_calloc(static_cast<size_t>(count), sizeof(SubHeader)));
    if (subs == nullptr) return 0;
    Ntv2Summary summary{count, -1, to_seconds};
    int64_t offset = orec * kRecord, total_nodes = 0;
    bool ok = true;
    for (int32_t i = 0; i < count && ok; ++i) {
        ok = read_sub_header(file, rd, offset, srec, to_seconds, subs[i]) &&
             subs[i].nodes <= (file.size - subs[i].data_offset) / kNodeBytes;
        if (!ok) break;
        subs[i].grid.node = total_nodes;
        total_nodes += subs[i].nodes;
        offset = subs[i].data_offset + subs[i].nodes * kNodeBytes;
    }
    ok = ok && link(subs, count, summary);
    Ntv2Grid *grids = nullptr;
    float *shifts = nullptr, *chunk = nullptr;
    Ntv2Summary *third = nullptr;
    if (ok) {
        grids = static_cast<Ntv2Grid *>(mem_calloc(static_cast<size_t>(count), sizeof(Ntv2Grid)));
        shifts = static_cast<float *>(mem_alloc(static_cast<size_t>(total_nodes) * 2 * sizeof(float)));
        chunk = static_cast<float *>(mem_alloc(kChunkNodes * kNodeBytes));
        third = static_cast<Ntv2Summary *>(mem_alloc(sizeof(Ntv2Summary)));
        ok = grids != nullptr && shifts != nullptr && chunk != nullptr && third != nullptr;
    }
    for (int32_t i = 0; i < count && ok; ++i) {
        ok = read_nodes(file, rd.swap, subs[i], shifts + 2 * subs[i].grid.node, chunk);
        grids[i] = subs[i].grid;
    }
    mem_free(subs);
    mem_free(chunk);
    if (ok) *third = summary;
    return gt_install(block, ok, grids, shifts, third);
}

// ---------------------------------------------------------------------------
// The formulas.
// ---------------------------------------------------------------------------

struct Ntv2Constants {
    const Ntv2Grid *grids;
    const float *shifts;
    double seconds_per_unit;
    int32_t first_root;
    int32_t count;
    bool single;  // one sub-grid: no search
};

// (lat, lon_west) in arc-seconds lies in the grid, edges included.
OX_ALWAYS_INLINE bool contains(const Ntv2Grid &g, double lat, double lon_west) {
    return (g.s_lat <= lat) & (lat <= g.n_lat) & (g.e_long <= lon_west) & (lon_west <= g.w_long);
}

// The finest sub-grid containing the point, or -1.
OX_ALWAYS_INLINE int32_t find_grid(const Ntv2Constants &c, double lat, double lon_west) {
    if (c.single) return contains(c.grids[0], lat, lon_west) ? 0 : -1;
    int32_t at = c.first_root;
    while (at >= 0 && !contains(c.grids[at], lat, lon_west)) at = c.grids[at].next_sibling;
    if (at < 0) return -1;
    // Down through the children (no cycle: the loader checked).
    for (int32_t depth = 0; depth < c.count; ++depth) {
        int32_t child = c.grids[at].first_child;
        while (child >= 0 && !contains(c.grids[child], lat, lon_west)) child = c.grids[child].next_sibling;
        if (child < 0) break;
        at = child;
    }
    return at;
}

struct Shifts {
    double dlat, dlon;  // arc-seconds, dlon positive west
};

// Bilinear shifts in grid g at a point (arc-seconds); the cell is kept
// within the grid.
OX_ALWAYS_INLINE Shifts shifts_in(const Ntv2Constants &c, const Ntv2Grid &g, double lat, double lon_west) {
    const double x = (lon_west - g.e_long) / g.long_inc, y = (lat - g.s_lat) / g.lat_inc;
    const double top_x = g.cols - 2.0, top_y = g.rows - 2.0;
    const double cx = x > 0.0 ? (x < top_x ? x : top_x) : 0.0;
    const double cy = y > 0.0 ? (y < top_y ? y : top_y) : 0.0;
    const int32_t i = static_cast<int32_t>(cx), j = static_cast<int32_t>(cy);
    const double fx = x - i, fy = y - j;
    const float *n00 = c.shifts + 2 * (g.node + static_cast<int64_t>(j) * g.cols + i);
    const float *n01 = n00 + 2 * static_cast<int64_t>(g.cols);
    const double w00 = (1.0 - fx) * (1.0 - fy), w10 = fx * (1.0 - fy), w01 = (1.0 - fx) * fy, w11 = fx * fy;
    return {(w00 * n00[0] + w10 * n00[2] + w01 * n01[0] + w11 * n01[2]) * c.seconds_per_unit,
            (w00 * n00[1] + w10 * n00[3] + w01 * n01[1] + w11 * n01[3]) * c.seconds_per_unit};
}

struct Ntv2 {
    static constexpr int32_t kCode = 9615;
    static constexpr const char *kName = "NTv2";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;
    static constexpr ParameterSet kParameters = parameter_sets::kGrid;
    static constexpr MethodKind kKind = MethodKind::kGrid;
    static constexpr bool kInverseFormula = true;
    using Constants = Ntv2Constants;

    static bool setup(const MethodFrame &f, Direction d, Constants &c) {
        (void)d;
        const auto *summary = static_cast<const Ntv2Summary *>(f.third);
        c.grids = static_cast<const Ntv2Grid *>(f.first);
        c.shifts = static_cast<const float *>(f.second);
        c.seconds_per_unit = summary->seconds_per_unit;
        c.first_root = summary->first_root;
        c.count = summary->count;
        c.single = c.count == 1;
        return c.count > 0 && c.first_root >= 0 && c.first_root < c.count;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool result(bool inside, double lat_s, double lon_west_s, double lon, double lat,
                                        double &lon_out, double &lat_out) {
        const double l = -lon_west_s / kSecondsPerRadian;
        lon_out = inside ? M::reduce(l) : lon;
        lat_out = inside ? lat_s / kSecondsPerRadian : lat;
        return M::reduce_ok(l) | !inside;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &converted) {
        h_out = h;
        const double lat_s = lat * kSecondsPerRadian, lon_west_s = -lon * kSecondsPerRadian;
        const int32_t g = find_grid(c, lat_s, lon_west_s);
        converted = g >= 0;
        const Shifts s = shifts_in(c, c.grids[converted ? g : c.first_root], lat_s, lon_west_s);
        return result<M>(converted, lat_s + s.dlat, lon_west_s + s.dlon, lon, lat, lon_out, lat_out);
    }

    template <class M>
    static OX_ALWAYS_INLINE bool point_inverse(const Constants &c, double lon, double lat, double h, double &lon_out,
                                               double &lat_out, double &h_out, bool &converted) {
        h_out = h;
        const double lat_t = lat * kSecondsPerRadian, lon_t = -lon * kSecondsPerRadian;
        const int32_t target_grid = find_grid(c, lat_t, lon_t);
        converted = target_grid >= 0;
        double lat_e = lat_t, lon_e = lon_t;
        if (converted)
            invert_grid_shift(
                lon_t, lat_t, kInverseTolerance,
                [&](double x, double y, double &fx, double &fy) {
                    const int32_t g = find_grid(c, y, x);
                    const Shifts s = shifts_in(c, c.grids[g >= 0 ? g : target_grid], y, x);
                    fx = x + s.dlon;
                    fy = y + s.dlat;
                },
                lon_e, lat_e);
        return result<M>(converted, lat_e, lon_e, lon, lat, lon_out, lat_out);
    }

    static int32_t load(GtConstants *block, const char *grid_name) {
        char path[kGridPathSize];
        if (!grid_path("ntv2", grid_name, ".gsb", true, path)) return 0;
        GridFile file;
        return file.open(path) ? ox::load(file, block) : 0;
    }

    // Without loaded blocks: the grid is loaded for the call.
    static int32_t unloaded(const MethodFrame &f, Direction d, int32_t n, double *points, double *heights) {
        GtConstants *block = gt_new();
        if (block == nullptr) return 0;
        int32_t result = 0;
        if (load(block, f.grid_name) != 0) {
            double values[OX_PARAMETER_SLOTS];
            std::memcpy(values, &f.p, sizeof values);
            const double e1[2] = {f.a1, f.e2_1}, e2[2] = {f.a2, f.e2_2};
            const ox_method_routine routine =
                d == Direction::kForward ? MethodRoutines<Ntv2>::forward : MethodRoutines<Ntv2>::inverse;
            result = routine(e1, e2, values, f.grid_name, n, points, heights, block->first, block->second,
                             block->third);
        }
        gt_delete(block);
        return result;
    }
};

}  // namespace

int32_t ntv2_load_stream(std::FILE *gsb, GtConstants *block) {
    GridFile file;
    return file.attach(gsb) ? load(file, block) : 0;
}

}  // namespace ox

OX_DEFINE_METHOD(Ntv2)
