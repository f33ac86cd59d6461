// "Robinson" and "Robinson_Legacy": Robinson's orthophanic projection
// (1963), on a sphere of radius a (an ellipsoid's a), defined by his table
// of the length of each parallel (X) and its distance from the equator (Y)
// every 5 degrees of latitude (Robinson, "A new map projection: its
// development and characteristics", International Yearbook of
// Cartography 14, 1974; Snyder, Flattening the Earth, 1993, p. 214):
//     x = 0.8487 a X(phi) L,  y = 1.3523 a Y(phi) sign phi.
// The two rows differ only in how the table is read between its nodes:
//
//   "Robinson"        a cubic spline through the nodes from -90 to 90
//                     degrees (X even and Y odd in phi, so X' = 0 and Y''
//                     = 0 at the equator; "not-a-knot" at the poles, where
//                     a natural end would straighten the strongly curved
//                     last interval), smooth (continuous curvature)
//                     everywhere; computed once, at compile time, from the
//                     table.
//   "Robinson_Legacy" straight lines between the nodes, as the table was
//                     first used: the parallels' spacing and lengths change
//                     abruptly at every node.
//
// Both agree with the table at the nodes.  Between them the spline and the
// straight lines differ most between 85 degrees and the poles, where the
// table bends most: by up to 24 km in x at the edge of the map and 15 km in
// y on the Earth; the spline and the open-source peers' own piecewise cubic
// differ by less than 2.5 m.  Y increases with |phi| in both, so the inverses are
// unique: the interval is the number of nodes below |Y| (branch-free), and
// within it "Robinson" solves the cubic by Newton's method from the
// straight-line value (four steps leave below 1e-15 of the 5-degree
// interval; the C library path continues to at most 60 while the last step
// exceeds 1e-9 of it), "Robinson_Legacy" exactly.  Then L = x / (0.8487 a X).
//
// Refused: a non-finite central meridian.  Every point of the sphere is
// converted; the inverse refuses points outside the map's outline.
#include <array>
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr int kNodes = 19;  // 0, 5, ..., 90 degrees
constexpr double kNodeStep = 5.0 * kDegree;
constexpr double kRobinsonX = 0.8487, kRobinsonY = 1.3523;
// Robinson's table: the length of the parallel and its distance from the
// equator, relative to the equator's and the pole's.
constexpr double kTableX[kNodes] = {1.0000, 0.9986, 0.9954, 0.9900, 0.9822, 0.9730, 0.9600,
                                    0.9427, 0.9216, 0.8962, 0.8679, 0.8350, 0.7986, 0.7597,
                                    0.7186, 0.6732, 0.6213, 0.5722, 0.5322};
constexpr double kTableY[kNodes] = {0.0000, 0.0620, 0.1240, 0.1860, 0.2480, 0.3100, 0.3720,
                                    0.4340, 0.4958, 0.5571, 0.6176, 0.6769, 0.7346, 0.7903,
                                    0.8435, 0.8936, 0.9394, 0.9761, 1.0000};

// A cubic a + b t + c t^2 + d t^3 on each interval, t in [0, 1].
struct Cubic {
    double a, b, c, d;
};
using Spline = std::array<Cubic, kNodes - 1>;

// The cubic spline through the table from -90 to 90 degrees, in the node
// index as abscissa, with the "not-a-knot" condition at the poles (the
// third derivative continuous at 85 degrees: the last two intervals are one
// cubic).  Its second derivatives m solve m[i-1] + 4 m[i] + m[i+1] =
// 6 (y[i+1] - 2 y[i] + y[i-1]) at the inner nodes, m[16] - 2 m[17] + m[18]
// = 0 and, by symmetry, m[-1] = m[1] (X, even) or m[0] = 0 (Y, odd) at the
// equator (Gaussian elimination with partial pivoting, at compile time).
constexpr Spline make_spline(const double (&y)[kNodes], bool even) {
    double a[kNodes][kNodes] = {}, r[kNodes] = {}, m[kNodes] = {};
    if (even) {
        a[0][0] = 4.0;
        a[0][1] = 2.0;
        r[0] = 12.0 * (y[1] - y[0]);
    } else {
        a[0][0] = 1.0;
    }
    for (int i = 1; i < kNodes - 1; ++i) {
        a[i][i - 1] = 1.0;
        a[i][i] = 4.0;
        a[i][i + 1] = 1.0;
        r[i] = 6.0 * (y[i + 1] - 2.0 * y[i] + y[i - 1]);
    }
    a[kNodes - 1][kNodes - 3] = 1.0;
    a[kNodes - 1][kNodes - 2] = -2.0;
    a[kNodes - 1][kNodes - 1] = 1.0;
    for (int col = 0; col < kNodes; ++col) {
        int pivot = col;
        for (int row = col + 1; row < kNodes; ++row)
            if ((a[row][col] < 0 ? -a[row][col] : a[row][col]) > (a[pivot][col] < 0 ? -a[pivot][col] : a[pivot][col]))
                pivot = row;
        for (int k = 0; k < kNodes; ++k) {
            const double t = a[col][k];
            a[col][k] = a[pivot][k];
            a[pivot][k] = t;
        }
        const double t = r[col];
        r[col] = r[pivot];
        r[pivot] = t;
        for (int row = col + 1; row < kNodes; ++row) {
            const double f = a[row][col] / a[col][col];
            for (int k = col; k < kNodes; ++k) a[row][k] -= f * a[col][k];
            r[row] -= f * r[col];
        }
    }
    for (int i = kNodes - 1; i >= 0; --i) {
        double sum = r[i];
        for (int k = i + 1; k < kNodes; ++k) sum -= a[i][k] * m[k];
        m[i] = sum / a[i][i];
    }
    Spline s{};
    for (int i = 0; i < kNodes - 1; ++i)
        s[i] = {y[i], y[i + 1] - y[i] - (2.0 * m[i] + m[i + 1]) / 6.0, m[i] / 2.0, (m[i + 1] - m[i]) / 6.0};
    return s;
}
constexpr Spline kSplineX = make_spline(kTableX, true);
constexpr Spline kSplineY = make_spline(kTableY, false);

OX_ALWAYS_INLINE double cubic(const Cubic &k, double t) { return k.a + t * (k.b + t * (k.c + t * k.d)); }
OX_ALWAYS_INLINE double cubic_slope(const Cubic &k, double t) { return k.b + t * (2.0 * k.c + t * 3.0 * k.d); }

// The interval of |phi| (0 to 17) and the position t in it.
OX_ALWAYS_INLINE int interval_of_latitude(double abs_phi, double &t) {
    const double s = abs_phi / kNodeStep;
    const int i = s >= kNodes - 2 ? kNodes - 2 : static_cast<int>(s);
    t = s - i;
    return i;
}
// The interval of Y (0 to 17): the number of inner nodes at or below it.
OX_ALWAYS_INLINE int interval_of_y(double y) {
    int i = 0;
#pragma GCC unroll 32
    for (int k = 1; k < kNodes - 1; ++k) i += y >= kTableY[k] ? 1 : 0;
    return i;
}

constexpr int kRobinsonSteps = 4;
constexpr double kRobinsonTolerance = 1e-9;

// The spline and the straight lines between the nodes.
struct SplineTable {
    template <class M>
    static OX_ALWAYS_INLINE void at(int i, double t, double &x, double &y) {
        x = cubic(kSplineX[i], t);
        y = cubic(kSplineY[i], t);
    }
    template <class M>
    static OX_ALWAYS_INLINE double position(int i, double y, bool &ok) {
        const Cubic &k = kSplineY[i];
        double t = (y - kTableY[i]) / (kTableY[i + 1] - kTableY[i]);
        double size = 0.0;
        auto step = [&] {
            const double next = t - (cubic(k, t) - y) / cubic_slope(k, t);
            const double kept = next < 0.0 ? 0.0 : (next > 1.0 ? 1.0 : next);
            size = std::fabs(kept - t);
            t = kept;
        };
#pragma GCC unroll 8
        for (int s = 0; s < kRobinsonSteps; ++s) step();
        if constexpr (M::kExact)
            for (int s = kRobinsonSteps; s < kMaxSteps && !(size <= kRobinsonTolerance); ++s) step();
        ok = size <= kRobinsonTolerance;
        return t;
    }
};
struct LinearTable {
    template <class M>
    static OX_ALWAYS_INLINE void at(int i, double t, double &x, double &y) {
        x = kTableX[i] + t * (kTableX[i + 1] - kTableX[i]);
        y = kTableY[i] + t * (kTableY[i + 1] - kTableY[i]);
    }
    template <class M>
    static OX_ALWAYS_INLINE double position(int i, double y, bool &ok) {
        ok = true;
        return (y - kTableY[i]) / (kTableY[i + 1] - kTableY[i]);
    }
};

template <class Table>
struct RobinsonForm {
    struct Constants {
        double fx, fy;  // 0.8487 a, 1.3523 a
    };
    static bool setup(const Frame &f, Constants &c) {
        c.fx = kRobinsonX * f.a;
        c.fy = kRobinsonY * f.a;
        return finite(f.p.central_meridian);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        double t, px, py;
        const int i = interval_of_latitude(std::fabs(phi) <= kHalfPi ? std::fabs(phi) : 0.0, t);
        Table::template at<M>(i, t, px, py);
        x = c.fx * px * lambda;
        y = phi == phi ? std::copysign(c.fy * py, phi) : kNaN;  // the table is read at 0 for NaN
        return ok;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double r = std::fabs(y) / c.fy;
        const bool inside = r <= 1.0 + kEdgeSlack;
        const double yr = r < 1.0 ? r : 1.0;
        const int i = interval_of_y(yr == yr ? yr : 0.0);
        bool converged;
        const double t = Table::template position<M>(i, yr, converged);
        double px, py;
        Table::template at<M>(i, t, px, py);
        bool ok;
        lon = longitude_of<M>(f, x / (c.fx * px), ok);
        lat = inside ? std::copysign((i + t) * kNodeStep, y) : kNaN;
        return ok & (converged | !inside);
    }
};

struct Robinson : RobinsonForm<SplineTable> {
    static constexpr int32_t kCode = 43030;
    static constexpr const char *kName = "Robinson";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = true;
};
struct RobinsonLegacy : RobinsonForm<LinearTable> {
    static constexpr int32_t kCode = 43057;
    static constexpr const char *kName = "Robinson_Legacy";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kFalseOriginAndMeridian;
    static constexpr ox_horizon_routine kHorizon = horizon_world;
    static constexpr bool kHasConstantsRoutine = false;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(Robinson)
OX_DEFINE_PROJECTION(RobinsonLegacy)
