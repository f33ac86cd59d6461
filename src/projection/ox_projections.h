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

// Transverse Mercator / Gauss-Kruger (ox_gauss_kruger.cpp).
OX_PROJECTION_ROUTINE(gauss_kruger_forward);
OX_PROJECTION_ROUTINE(gauss_kruger_inverse);
OX_CONSTANTS_ROUTINE(gauss_kruger_constants);

// Cylindrical projections, one source each.
OX_PROJECTION_ROUTINE(mercator_forward);
OX_PROJECTION_ROUTINE(mercator_inverse);
OX_CONSTANTS_ROUTINE(mercator_constants);
OX_PROJECTION_ROUTINE(plate_carree_forward);
OX_PROJECTION_ROUTINE(plate_carree_inverse);
OX_PROJECTION_ROUTINE(equidistant_cylindrical_forward);
OX_PROJECTION_ROUTINE(equidistant_cylindrical_inverse);
OX_PROJECTION_ROUTINE(miller_cylindrical_forward);
OX_PROJECTION_ROUTINE(miller_cylindrical_inverse);
OX_PROJECTION_ROUTINE(gall_stereographic_forward);
OX_PROJECTION_ROUTINE(gall_stereographic_inverse);
OX_CONSTANTS_ROUTINE(gall_stereographic_constants);
OX_PROJECTION_ROUTINE(cylindrical_eqarea_forward);
OX_PROJECTION_ROUTINE(cylindrical_eqarea_inverse);
OX_CONSTANTS_ROUTINE(cylindrical_eqarea_constants);
OX_PROJECTION_ROUTINE(behrmann_forward);
OX_PROJECTION_ROUTINE(behrmann_inverse);
OX_CONSTANTS_ROUTINE(behrmann_constants);

// The cylindrical equal-area kernels shared with "Behrmann": the constants
// for a standard parallel phi1 (0 when |phi1| is 90 degrees), and the point
// loops, which use the constants when the header fits the spheroid and
// compute their own otherwise.
inline constexpr int kCeaMaxConstants = 8;
int32_t cea_values(const double spheroid[2], double phi1, double v[kCeaMaxConstants]);
int32_t cea_forward_points(const double spheroid[2], double lon0, double phi1, const int32_t *header,
                           const double *values, int32_t n, double *points);
int32_t cea_inverse_points(const double spheroid[2], double lon0, double phi1, const int32_t *header,
                           const double *values, int32_t n, double *points);

}  // namespace ox
