// The inverse projection driver: projected coordinates in the system's
// linear unit to geographic coordinates in the units of its geographic
// coordinate system, optionally centred on a chosen longitude.
#include <cmath>
#include <cstddef>

#include "object/ox_object.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projmath.h"

extern "C" {

OX_API int32_t ox_proj_to_geog_center(ox_object *projcs, int32_t n, double *coords, double center) {
    if (coords == nullptr || n < 1) return 0;
    const ox::DriverCall call(projcs, center);
    const ox::ProjSetup &s = call.setup;
    const ox::PointUnits &units = call.units;
    const int32_t *header = call.header;
    const double *values = call.values;
    const ox_projection_routine inverse = ox_projection_inverse(ox_projcs_projection(projcs));

    // Metres about the natural origin in; the angular unit out, longitudes
    // about the centre unless it is zero (2^-48 or less in radians).
    // The library's own routines take the units into their point loop.
    if (const ox::UnitsRoutine routine = ox::units_routine_of(inverse))
        return routine(s.spheroid, s.parameters, n, coords, header, values, &units);

    // Any other routine: a pass before and a pass after, with the same
    // operations.
    const size_t count = static_cast<size_t>(n);
    for (size_t i = 0; i < count; ++i) {
        coords[2 * i] = coords[2 * i] * units.linear - units.false_easting;
        coords[2 * i + 1] = coords[2 * i + 1] * units.linear - units.false_northing;
    }
    const int32_t converted = inverse(s.spheroid, s.parameters, n, coords, header, values);
    if (units.centred)
        for (size_t i = 0; i < count; ++i)
            ox::units_from_radians<ox::ExactMath, true>(units, coords[2 * i], coords[2 * i + 1]);
    else
        for (size_t i = 0; i < count; ++i)
            ox::units_from_radians<ox::ExactMath, false>(units, coords[2 * i], coords[2 * i + 1]);
    return converted;
}

OX_API int32_t ox_proj_to_geog(ox_object *projcs, int32_t n, double *coords) {
    return ox_proj_to_geog_center(projcs, n, coords, 0.0);
}

}  // extern "C"
