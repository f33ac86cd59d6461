// What the horizon routines of the projections share.  A horizon is the
// boundary of the region a projection represents: one or more closed rings,
// each running counter-clockwise around its region (the region on the left),
// its first vertex repeated last, rings separated by one vertex whose two
// coordinates are the failure NaN.  A geographic horizon gives (longitude,
// latitude) in radians, a projected horizon (x, y) in metres about the
// natural origin; vertex i of the one is vertex i of the other.  Each side of
// a ring (an edge of a band of meridians and parallels, an edge of a face of
// a polyhedral map) is cut into kHorizonSegments segments.  Each projection
// names its own horizon (ox_projdef.h); the projected horizon is, unless the
// projection gives its own, that boundary through the forward routine.
//
// The public horizon of a projected system (ox_generate_horizon and the
// ox_horizon_* functions) is at the end of ox_horizon.cpp.
#pragma once

#include <cstdint>

#include "projection/ox_parmlist.h"
#include "projection/ox_projdef.h"

namespace ox {

inline constexpr int32_t kHorizonSegments = 32;

// Counts every vertex of a horizon and writes the first `max` of them (none
// when `out` is null).
class HorizonWriter {
public:
    HorizonWriter(int32_t max, double *out) : max_(out == nullptr || max < 0 ? 0 : max), out_(out) {}
    void put(double x, double y) {
        if (count_ < max_) {
            out_[2 * count_] = x;
            out_[2 * count_ + 1] = y;
        }
        ++count_;
    }
    // The separator between two rings.
    void separate();
    // The closed ring through `n` corners (x, y pairs), each side cut into
    // kHorizonSegments segments.
    void polygon(const double *corners, int32_t n);
    int32_t count() const { return count_; }
    int32_t written() const { return count_ < max_ ? count_ : max_; }

private:
    int32_t max_;
    double *out_;
    int32_t count_ = 0;
};

// A longitude parameter of a horizon's parameters (the central meridian by
// default); 0 for null parameters or a non-finite value.
double horizon_center(const double parameters[OX_PARAMETER_SLOTS],
                      double ParameterValues::*longitude = &ParameterValues::central_meridian);

// lon0 + offset (radians), moved by an ulp or two towards lon0 where the
// difference from lon0 that a projection takes would exceed |offset| in
// floating point: an east edge at lon0 + pi stays on the east side (lon -
// lon0 = pi, not a hair beyond, which reduces to -pi).
double horizon_longitude(double lon0, double offset);

// Writes the closed boundary of the band [lon0 - half_width, lon0 +
// half_width] x [-half_height, half_height] (radians) counter-clockwise from
// its south-west corner; returns the number of vertices of the whole
// boundary (129), writing at most `max_vertices` (null: none).  A band as
// wide as the globe keeps its two meridians kAntimeridianInset inside the
// antimeridian, so that they project to the two sides of a map.
inline constexpr double kAntimeridianInset = 1e-12;
int32_t horizon_band(double lon0, double half_width, double half_height, int32_t max_vertices, double *vertices);
// The same for the band [lon0 - half_width, lon0 + half_width] x [south,
// north].
int32_t horizon_box(double lon0, double half_width, double south, double north, int32_t max_vertices,
                    double *vertices);
// Writes the boundary of the spherical cap of angular radius `radius` (0 <
// radius < pi, radians) about (lon_c, lat_c), longitudes within pi of
// lon_c, counter-clockwise: a circle; for a cap about a pole, its edge from
// lon_c - pi to lon_c + pi closed along the pole; for a cap larger than a
// hemisphere (all but a small cap about the antipode), the band of the
// globe with that small cap cut out of its two edge meridians, or closed
// along the pole it leaves out.  Returns the count of the whole boundary,
// writing at most `max_vertices` (null: none).
// A cap about a pole keeps its longitudes within `reach` of lon_c.
int32_t horizon_circle(double lon_c, double lat_c, double radius, int32_t max_vertices, double *vertices,
                       double reach = kPi);

// The whole globe about the central meridian.
OX_HORIZON_ROUTINE(horizon_world);
// The visible hemisphere about (Longitude_Of_Center, Latitude_Of_Center), a
// hair inside its edge ("Orthographic", "Local").
OX_HORIZON_ROUTINE(horizon_hemisphere);
// The hemisphere about (Central_Meridian, Latitude_Of_Origin), the
// customary extent of a stereographic map ("Stereographic",
// "Double_Stereographic").
OX_HORIZON_ROUTINE(horizon_stereographic);

}  // namespace ox
