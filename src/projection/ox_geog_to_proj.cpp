// The forward projection driver: geographic coordinates in the units of the
// system's geographic coordinate system to projected coordinates in its
// linear unit, through the projection routine of the system's projection.
#include <cstddef>

#include "object/ox_object.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projmath.h"

extern "C" OX_API int32_t ox_geog_to_proj(ox_object *projcs, int32_t n, double *coords) {
    if (coords == nullptr || n < 1) return 0;
    const ox::DriverCall call(projcs, 0.0);
    const ox::ProjSetup &s = call.setup;
    const ox::PointUnits &units = call.units;
    const int32_t *header = call.header;
    const double *values = call.values;
    const ox_projection_routine forward = ox_projection_forward(ox_projcs_projection(projcs));

    // Radians in (latitudes beyond the poles clamped to them); metres about
    // the false origin out, in the linear unit.
    // The library's own routines take the units into their point loop.
    if (const ox::UnitsRoutine routine = ox::units_routine_of(forward))
        return routine(s.spheroid, s.parameters, n, coords, header, values, &units);

    // Any other routine: a pass before and a pass after, with the same
    // operations.  Failed points stay NaN.
    const size_t count = static_cast<size_t>(n);
    for (size_t i = 0; i < count; ++i)
        ox::units_to_radians(units, coords[2 * i], coords[2 * i + 1], coords[2 * i], coords[2 * i + 1]);
    const int32_t converted = forward(s.spheroid, s.parameters, n, coords, header, values);
    if (units.shift)
        for (size_t i = 0; i < count; ++i) ox::units_from_metres<false>(units, coords[2 * i], coords[2 * i + 1]);
    return converted;
}
