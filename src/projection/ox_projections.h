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
// A routine that also applies the driver's units inside its point loop
// (ox_projmath.h); null `units`: none, as the plain routine.
#define OX_UNITS_ROUTINE(fn)                                                                      \
    int32_t fn(const double spheroid[2], const double parameters[16], int32_t n, double *points, \
               const int32_t *constants_header, const double *constants_values, const ox::PointUnits *units)
// The plain routine `fn` of the units routine fn##_units.
#define OX_PLAIN_ROUTINE(fn)                                                                         \
    OX_PROJECTION_ROUTINE(fn) {                                                                      \
        return fn##_units(spheroid, parameters, n, points, constants_header, constants_values, nullptr); \
    }

namespace ox {

struct PointUnits;

// Copies every point unchanged and returns n (null or invalid projection).
OX_PROJECTION_ROUTINE(proj_identity);
// Routine of a registered projection whose family is not implemented yet:
// every point receives the failure value and the count is 0.
OX_PROJECTION_ROUTINE(proj_unavailable);

// Geographic horizons about the central meridian (slot 2): the whole globe;
// Mercator's square map; the bands where the two transverse Mercator
// projections hold their accuracy.
OX_HORIZON_ROUTINE(horizon_world);
OX_HORIZON_ROUTINE(horizon_mercator);
OX_HORIZON_ROUTINE(horizon_transverse_mercator);
OX_HORIZON_ROUTINE(horizon_transverse_mercator_complex);

// The projected horizon of a projection: its geographic horizon taken
// through its forward routine (metres about the natural origin, points the
// projection cannot convert as the failure value).  The routine computes its
// constants for the call.
template <ox_horizon_routine Geographic, ox_projection_routine Forward>
int32_t horizon_projected(const double spheroid[2], const double parameters[16], int32_t max_vertices,
                          double *vertices) {
    const int32_t total = Geographic(spheroid, parameters, max_vertices, vertices);
    if (vertices != nullptr && max_vertices > 0 && spheroid != nullptr && parameters != nullptr)
        Forward(spheroid, parameters, total < max_vertices ? total : max_vertices, vertices, nullptr, nullptr);
    return total;
}

// Transverse Mercator / Gauss-Kruger (ox_gauss_kruger.cpp) and the
// cylindrical projections, one source each: plain routines for the
// registry, units routines for the driver.
OX_PROJECTION_ROUTINE(gauss_kruger_forward);
OX_PROJECTION_ROUTINE(gauss_kruger_inverse);
OX_UNITS_ROUTINE(gauss_kruger_forward_units);
OX_UNITS_ROUTINE(gauss_kruger_inverse_units);
OX_CONSTANTS_ROUTINE(gauss_kruger_constants);
OX_PROJECTION_ROUTINE(mercator_forward);
OX_PROJECTION_ROUTINE(mercator_inverse);
OX_UNITS_ROUTINE(mercator_forward_units);
OX_UNITS_ROUTINE(mercator_inverse_units);
OX_CONSTANTS_ROUTINE(mercator_constants);
OX_PROJECTION_ROUTINE(plate_carree_forward);
OX_PROJECTION_ROUTINE(plate_carree_inverse);
OX_UNITS_ROUTINE(plate_carree_forward_units);
OX_UNITS_ROUTINE(plate_carree_inverse_units);
OX_PROJECTION_ROUTINE(equidistant_cylindrical_forward);
OX_PROJECTION_ROUTINE(equidistant_cylindrical_inverse);
OX_UNITS_ROUTINE(equidistant_cylindrical_forward_units);
OX_UNITS_ROUTINE(equidistant_cylindrical_inverse_units);
OX_PROJECTION_ROUTINE(miller_cylindrical_forward);
OX_PROJECTION_ROUTINE(miller_cylindrical_inverse);
OX_UNITS_ROUTINE(miller_cylindrical_forward_units);
OX_UNITS_ROUTINE(miller_cylindrical_inverse_units);
OX_PROJECTION_ROUTINE(gall_stereographic_forward);
OX_PROJECTION_ROUTINE(gall_stereographic_inverse);
OX_UNITS_ROUTINE(gall_stereographic_forward_units);
OX_UNITS_ROUTINE(gall_stereographic_inverse_units);
OX_CONSTANTS_ROUTINE(gall_stereographic_constants);
OX_PROJECTION_ROUTINE(cylindrical_eqarea_forward);
OX_PROJECTION_ROUTINE(cylindrical_eqarea_inverse);
OX_UNITS_ROUTINE(cylindrical_eqarea_forward_units);
OX_UNITS_ROUTINE(cylindrical_eqarea_inverse_units);
OX_CONSTANTS_ROUTINE(cylindrical_eqarea_constants);
OX_PROJECTION_ROUTINE(behrmann_forward);
OX_PROJECTION_ROUTINE(behrmann_inverse);
OX_UNITS_ROUTINE(behrmann_forward_units);
OX_UNITS_ROUTINE(behrmann_inverse_units);
OX_CONSTANTS_ROUTINE(behrmann_constants);

// The cylindrical equal-area constants for a standard parallel phi1 (0 when
// |phi1| is 90 degrees), and its point loops, which use the constants when
// the header fits the spheroid and compute their own otherwise; shared with
// "Behrmann".
inline constexpr int kCeaMaxConstants = 8;
int32_t cea_values(const double spheroid[2], double phi1, double v[kCeaMaxConstants]);
int32_t cea_forward_points(const double spheroid[2], double lon0, double phi1, const int32_t *header,
                           const double *values, int32_t n, double *points, const PointUnits *units);
int32_t cea_inverse_points(const double spheroid[2], double lon0, double phi1, const int32_t *header,
                           const double *values, int32_t n, double *points, const PointUnits *units);

// "Transverse_Mercator_Complex" (ox_tm_complex.cpp): Krueger's series in the
// third flattening, evaluated in complex arithmetic.
OX_PROJECTION_ROUTINE(tm_complex_forward);
OX_PROJECTION_ROUTINE(tm_complex_inverse);
OX_UNITS_ROUTINE(tm_complex_forward_units);
OX_UNITS_ROUTINE(tm_complex_inverse_units);
OX_CONSTANTS_ROUTINE(tm_complex_constants);

}  // namespace ox
