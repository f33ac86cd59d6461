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

// A longitude (or latitude) parameter of a horizon's parameters (the central
// meridian by default); 0 for null parameters or a non-finite value.
double horizon_center(const double parameters[OX_PARAMETER_SLOTS],
                      double ParameterValues::*longitude = &ParameterValues::central_meridian);

// Writes the closed boundary of the band [lon0 - half_width, lon0 +
// half_width] x [-half_height, half_height] (radians), corners included,
// with 32 vertices per edge; returns the number of vertices of the whole
// boundary (129), writing at most `max_vertices` (null: none).
int32_t horizon_band(double lon0, double half_width, double half_height, int32_t max_vertices, double *vertices);
// The same for the band [lon0 - half_width, lon0 + half_width] x [south,
// north].
int32_t horizon_box(double lon0, double half_width, double south, double north, int32_t max_vertices,
                    double *vertices);
// Writes the closed boundary of the spherical cap of angular radius
// `radius` (0 < radius < pi, radians) about (lon_c, lat_c): 128 vertices
// clockwise from the north (azimuths 0, 2pi/128, ...) and the first again;
// longitudes within pi of lon_c (a cap about a pole or reaching past the
// opposite meridian crosses that meridian).
// Returns 129, writing at most `max_vertices` (null: none).
int32_t horizon_circle(double lon_c, double lat_c, double radius, int32_t max_vertices, double *vertices);

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
