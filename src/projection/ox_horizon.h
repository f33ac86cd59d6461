// What the horizon routines of the projections share: the central longitude
// of a horizon and the boundary of a band of longitudes and latitudes.
// Horizons are closed boundaries in geographic coordinates (radians) of the
// region a projection represents; each projection names its own
// (ox_projdef.h), and the projected horizon is that boundary through the
// projection's forward routine.
#pragma once

#include <cstdint>

#include "projection/ox_parmlist.h"
#include "projection/ox_projdef.h"

namespace ox {

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
// half_width] x [-half_height, half_height] (radians), corners included,
// with 32 vertices per edge; returns the number of vertices of the whole
// boundary (129), writing at most `max_vertices` (null: none).
int32_t horizon_band(double lon0, double half_width, double half_height, int32_t max_vertices, double *vertices);

// The whole globe about the central meridian.
OX_HORIZON_ROUTINE(horizon_world);

}  // namespace ox
