// The point, horizon and constants routines that the projection registry
// rows point to.  Each projection's routines live in the source file named
// after it; they follow the routine contract of ox_projection_routine.
#pragma once

#include <cstdint>

#include "ox.h"
#include "projection/ox_pcsconstants.h"

#define OX_PROJECTION_ROUTINE(fn)                                                                 \
    int32_t fn(const double spheroid[2], const double parameters[16], int32_t n, double *points, \
               const int32_t *constants_header, const double *constants_values)
#define OX_HORIZON_ROUTINE(fn) \
    int32_t fn(const double spheroid[2], const double parameters[16], int32_t max_vertices, double *vertices)
#define OX_CONSTANTS_ROUTINE(fn) \
    int32_t fn(ox::PcsConstants *c, const double spheroid[2], const double parameters[16])

namespace ox {

// Copies every point unchanged and returns n (null or invalid projection).
OX_PROJECTION_ROUTINE(proj_identity);
// Routine of a registered projection whose family is not implemented yet:
// every point receives the failure value and the count is 0.
OX_PROJECTION_ROUTINE(proj_unavailable);

// The world horizon: the whole globe about the central meridian (slot 2).
OX_HORIZON_ROUTINE(horizon_world);

// "Transverse_Mercator_Complex" (ox_tm_complex.cpp): Krueger's series in the
// third flattening, evaluated in complex arithmetic.
OX_PROJECTION_ROUTINE(tm_complex_forward);
OX_PROJECTION_ROUTINE(tm_complex_inverse);
OX_CONSTANTS_ROUTINE(tm_complex_constants);

}  // namespace ox
