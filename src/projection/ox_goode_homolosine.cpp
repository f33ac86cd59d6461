// "Goode_Homolosine" (Goode 1923), on a sphere of radius a (an ellipsoid's
// a): the Sinusoidal projection between the parallels of 40 deg 44' 11.8"
// and Mollweide's beyond them, moved towards the equator by 0.0528 a to
// meet it (Snyder, Flattening the Earth, 1993, p. 168; Snyder and Voxland,
// An Album of Map Projections, 1989, p. 134):
//     |phi| <  phi_j:  x = a L cos phi,  y = a phi;
//     |phi| >= phi_j:  x = a (2 sqrt 2 / pi) L cos theta,
//                      y = a (sqrt 2 sin theta - 0.0528 sign phi)
// (the formulas of both, and Mollweide's iteration, in ox_world.h).  The
// published 0.0528 is rounded (the parts meet exactly at 0.05280353): the
// Mollweide part begins 3.5e-6 a (22 m on the Earth) above the end of the
// Sinusoidal part, and the inverse refuses points in that step.
//
// "Option" chooses the interruptions (longitudes from the central
// meridian, in degrees; each lobe [west, east) with its own central
// meridian, at which it is drawn; the northern lobes take the equator):
//   0  uninterrupted: one lobe, the whole globe.
//   1  Goode's interrupted layout for the land masses (1923): north
//      [-180, -40) about -100 and [-40, 180] about 30; south [-180, -100)
//      about -160, [-100, -20) about -60, [-20, 80) about 20 and [80, 180]
//      about 140.
//   2  the layout for the oceans, interrupted over the continents: north
//      [-180, -90) about -140, [-90, 60) about -10 and [60, 180] about 130;
//      south [-180, -60) about -110, [-60, 90) about 20 and [90, 180] about
//      150.
// Any other value is refused.  A lobe's points lie within its band of x on
// the equator, so the inverse takes the lobe from x (and the hemisphere
// from y), and refuses a point whose longitude falls outside the lobe (a
// gap between lobes).  Every point of the sphere has exactly one image.
//
// Horizon (option 1 or 2): one closed outline, counter-clockwise from the
// south pole at -180: down and up each southern interruption from west to
// east, up the east edge, up and down each northern interruption from east
// to west, down the west edge; 32 segments from each pole to the equator
// along every edge, the western side of an interruption taken 1e-9 rad west
// of it (in its lobe).
//
// Refused: a non-finite central meridian, an "Option" other than 0, 1, 2.
// Equal-area.
#include <array>
#include <cmath>

#include "projection/ox_horizon.h"
#include "projection/ox_world.h"

namespace ox {
namespace {

using namespace world;

constexpr double kJoinLatitude = (40.0 + 44.0 / 60.0 + 11.8 / 3600.0) * kDegree;
constexpr double kMollweideShift = 0.0528;
constexpr double kMollweideX = 0.90031631615710606956;  // 2 sqrt 2 / pi
constexpr int kMaxLobes = 4;
constexpr int kOptions = 3;

struct Lobe {
    double west, centre;  // degrees from the central meridian; the east edge is the next lobe's west
};
// A west edge beyond 180 degrees: no lobe.
constexpr double kNone = 1000.0;
struct Layout {
    Lobe north[kMaxLobes], south[kMaxLobes];
};
constexpr Layout kLayouts[kOptions] = {
    {{{-180, 0}, {kNone, 0}, {kNone, 0}, {kNone, 0}}, {{-180, 0}, {kNone, 0}, {kNone, 0}, {kNone, 0}}},
    {{{-180, -100}, {-40, 30}, {kNone, 0}, {kNone, 0}}, {{-180, -160}, {-100, -60}, {-20, 20}, {80, 140}}},
    {{{-180, -140}, {-90, -10}, {60, 130}, {kNone, 0}}, {{-180, -110}, {-60, 20}, {90, 150}, {kNone, 0}}},
};

// The lobe of a longitude difference lambda (radians), west and east edges
// and centre in radians.
OX_ALWAYS_INLINE void lobe_of(const Lobe (&lobes)[kMaxLobes], double lambda, double &west, double &east,
                              double &centre) {
    west = -kPi;
    centre = lobes[0].centre * kDegree;
    east = kPi;
#pragma GCC unroll 16
    for (int k = 1; k < kMaxLobes; ++k) {
        // (both read whatever the point: a read under the select would be a
        // masked load, which keeps the point loop scalar)
        const double edge = lobes[k].west * kDegree, lobe_centre = lobes[k].centre * kDegree;
        const bool beyond = lambda >= edge;
        east = (!beyond & (edge < east)) ? edge : east;
        west = beyond ? edge : west;
        centre = beyond ? lobe_centre : centre;
    }
}

struct GoodeHomolosine {
    static constexpr int32_t kCode = 43059;
    static constexpr const char *kName = "Goode_Homolosine";
    static constexpr Family kFamily = Family::kPseudocylindrical;
    static constexpr Preserves kPreserves = Preserves::kArea;
    static constexpr ParameterSet kParameters = parameter_sets::kMeridianAndOption;
    static OX_HORIZON_ROUTINE(horizon);
    static constexpr ox_horizon_routine kHorizon = horizon;
    static constexpr bool kHasConstantsRoutine = true;

    struct Constants {
        double a;
        double option;  // 0, 1 or 2
    };
    static bool option_of(const Frame &f, int &option) {
        const double v = f.p.option();
        option = v == 1.0 ? 1 : (v == 2.0 ? 2 : 0);
        return v == 0.0 || v == 1.0 || v == 2.0;
    }
    static bool setup(const Frame &f, Constants &c) {
        int option;
        c.a = f.a;
        const bool known = option_of(f, option);
        c.option = option;
        return finite(f.p.central_meridian) && known;
    }
    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        bool ok;
        const double lambda = lambda_of<M>(f, lon, ok);
        const double phi = clamp_latitude(lat);
        const Layout &layout = kLayouts[c.option == 2.0 ? 2 : (c.option == 1.0 ? 1 : 0)];
        double wn, en, cn, ws, es, cs;
        lobe_of(layout.north, lambda, wn, en, cn);
        lobe_of(layout.south, lambda, ws, es, cs);
        const double centre = phi >= 0.0 ? cn : cs;
        const double d = lambda - centre;
        double xs, ys, s, co, cos_theta, sin_theta;
        ok &= sinusoidal_forward<M>(d, phi, xs, ys);
        M::sincos(phi, s, co);
        ok &= mollweide_angle<M>(polar_gap(phi, s, co), cos_theta, sin_theta);
        const bool sinusoidal = std::fabs(phi) < kJoinLatitude;
        const double xm = kMollweideX * d * cos_theta;
        const double ym = std::copysign(kSqrt2 * sin_theta - kMollweideShift, phi);
        x = c.a * (centre + (sinusoidal ? xs : xm));
        y = c.a * (sinusoidal ? ys : ym);
        return ok & M::sincos_ok(phi);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double xu = x / c.a, yu = y / c.a;
        const Layout &layout = kLayouts[c.option == 2.0 ? 2 : (c.option == 1.0 ? 1 : 0)];
        double wn, en, cn, ws, es, cs;
        lobe_of(layout.north, xu, wn, en, cn);
        lobe_of(layout.south, xu, ws, es, cs);
        const bool north = yu >= 0.0;
        const double west = north ? wn : ws, east = north ? en : es, centre = north ? cn : cs;
        // The latitude: Sinusoidal within the join, Mollweide beyond.
        const bool sinusoidal = std::fabs(yu) <= kJoinLatitude;
        const double st0 = (std::fabs(yu) + kMollweideShift) / kSqrt2;
        const double st = st0 > 1.0 ? 1.0 : st0;
        double cos_theta;
        const double phi_m = mollweide_latitude<M>(std::copysign(st, yu), cos_theta);
        const bool inside = sinusoidal | ((st0 <= 1.0 + kEdgeSlack) & (std::fabs(phi_m) >= kJoinLatitude));
        const double phi = sinusoidal ? yu : phi_m;
        double s, co;
        M::sincos(phi, s, co);
        const double dx = xu - centre;
        const double d = sinusoidal ? dx / co : ratio(dx, kMollweideX * cos_theta, kMollweideX, kPi * kPoleRounding);
        const double slack = kPi * (kEdgeSlack + (sinusoidal ? 0.0 : width_slack(kRoundoff / (cos_theta * cos_theta))));
        const double lambda = centre + d;
        const bool in_lobe = (lambda >= west - slack) & (lambda <= east + slack);
        const double kept = lambda < west ? west : (lambda > east ? east : lambda);
        bool ok;
        const double l = longitude_of<M>(f, kept, ok);
        lon = (in_lobe & inside) ? l : kNaN;
        lat = (in_lobe & inside) ? phi : kNaN;
        return ok;  // |phi| <= pi/2 or NaN: within the range of sincos
    }
};

// The outline (see the top of the file): traced clockwise below and
// written back to front, so that it runs counter-clockwise, the map on its
// left, like every horizon.
constexpr double kWestOfCut = 1e-9;  // rad

template <class Put>
void trace_outline(const Layout &layout, Put put) {
    // A meridian from the latitude `from` to `to` (one of them the equator),
    // `to` itself left to the next run.
    auto run = [&](double lambda, double from, double to) {
        for (int32_t i = 0; i < kHorizonSegments; ++i) put(lambda, from + (to - from) * i / kHorizonSegments);
    };
    run(-kPi, -kHalfPi, 0.0);  // west edge
    run(-kPi, 0.0, kHalfPi);
    for (int i = 1; i < kMaxLobes && layout.north[i].west != kNone; ++i) {
        const double cut = layout.north[i].west * kDegree;
        run(cut - kWestOfCut, kHalfPi, 0.0);
        run(cut, 0.0, kHalfPi);
    }
    run(kPi, kHalfPi, 0.0);  // east edge
    run(kPi, 0.0, -kHalfPi);
    int last = kMaxLobes - 1;
    while (layout.south[last].west == kNone) --last;
    for (int i = last; i >= 1; --i) {
        const double cut = layout.south[i].west * kDegree;
        run(cut, -kHalfPi, 0.0);
        run(cut - kWestOfCut, 0.0, -kHalfPi);
    }
    put(-kPi, -kHalfPi);  // closed
}

OX_HORIZON_ROUTINE(GoodeHomolosine::horizon) {
    const Frame f(spheroid ? spheroid : std::array<double, 2>{1.0, 0.0}.data(),
                  parameters ? parameters : std::array<double, 16>{}.data());
    int option = 0;
    if (parameters != nullptr && !option_of(f, option)) return 0;
    const double lon0 = horizon_center(parameters);
    if (option == 0) return horizon_band(lon0, kPi, kHalfPi, max_vertices, vertices);
    const Layout &layout = kLayouts[option];
    int32_t total = 0;
    trace_outline(layout, [&](double, double) { ++total; });
    int32_t k = 0;
    trace_outline(layout, [&](double lambda, double phi) {
        const int32_t at = total - 1 - k++;
        if (vertices != nullptr && at < max_vertices) {
            vertices[2 * at] = horizon_longitude(lon0, lambda);
            vertices[2 * at + 1] = phi;
        }
    });
    return total;
}

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(GoodeHomolosine)
