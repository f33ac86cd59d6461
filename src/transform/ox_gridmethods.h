// The loaders of the grid methods, on streams the caller opened (the fuzz
// targets and tests hand them memory streams), and what their blocks hold.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>

#include "projection/ox_fastmath.h"
#include "transform/ox_gtconstants.h"

namespace ox {

// The inverse of a grid shift by fixed-point iteration: from the estimate
// e = target, e -= forward(e) - target until both differences are within
// `tolerance`, or a difference is not finite, or after 51 rounds; the last
// estimate is the result.  `forward(x, y, fx, fy)` shifts one estimate.
inline constexpr int kGridInverseLastRound = 50;
template <class Forward>
OX_ALWAYS_INLINE void invert_grid_shift(double tx, double ty, double tolerance, const Forward &forward, double &x,
                                        double &y) {
    x = tx;
    y = ty;
    for (int round = 0;; ++round) {
        double fx, fy;
        forward(x, y, fx, fy);
        const double ex = fx - tx, ey = fy - ty;
        if ((std::fabs(ex) <= tolerance && std::fabs(ey) <= tolerance) || round >= kGridInverseLastRound ||
            !std::isfinite(ex) || !std::isfinite(ey))
            break;
        x -= ex;
        y -= ey;
    }
}

// NADCON/HARN: a ".los" (longitude shifts) and ".las" (latitude shifts)
// pair.  On success the block holds
//   first:  int32 {NR, NC}
//   second: float32 [2 NR NC]: the longitude shifts row by row (south to
//           north, west to east), then the latitude shifts; arc-seconds
//   third:  double {XMIN, YMIN, XMAX, YMAX, DX, DY} in degrees
// and the result is 1; otherwise 0 and the block holds nothing.
int32_t nadcon_load_streams(std::FILE *los, std::FILE *las, GtConstants *block);

// NTv2: one ".gsb" file.  On success the block holds
//   first:  Ntv2Grid [count]: the sub-grids in file order
//   second: float32 [2 nodes]: each node's (latitude, longitude) shifts in
//           the file's unit, longitude positive west
//   third:  Ntv2Summary
// and the result is 1; otherwise 0 and the block holds nothing.
int32_t ntv2_load_stream(std::FILE *gsb, GtConstants *block);

// One NTv2 sub-grid, extents and increments in arc-seconds, longitudes
// positive west as in the file.
struct Ntv2Grid {
    double s_lat, n_lat;    // southern and northern rows
    double e_long, w_long;  // eastern and western columns
    double lat_inc, long_inc;
    int32_t rows, cols;
    int32_t parent;        // index, or -1 for a grid of the top level
    int32_t first_child;   // index, or -1
    int32_t next_sibling;  // index, or -1 (the next grid with the same parent)
    int32_t reserved;
    int64_t node;  // index of the grid's first node in `second`
    char name[9];  // SUB_NAME, blanks trimmed
};

struct Ntv2Summary {
    int32_t count;       // sub-grids
    int32_t first_root;  // the first grid of the top level
    double seconds_per_unit;  // arc-seconds per unit of the shifts
};

}  // namespace ox
