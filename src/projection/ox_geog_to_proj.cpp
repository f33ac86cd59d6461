// The forward projection driver: geographic coordinates in the units of the
// system's geographic coordinate system to projected coordinates in its
// linear unit, through the projection routine of the system's projection.
#include <cstddef>

#include "projection/ox_driver.h"

extern "C" OX_API int32_t ox_geog_to_proj(ox_object *projcs, int32_t n, double *coords) {
    if (coords == nullptr || n < 1) return 0;
    const ox::DriverCall call(projcs, false, 0.0);
    const ox::ProjSetup &s = call.setup;
    const ox::PointUnits &units = call.units;

    // Radians in (latitudes beyond the poles clamped to them); metres about
    // the false origin out, in the linear unit.  The library's own routines
    // take the units into their point loop.
    if (call.units_routine != nullptr)
        return call.units_routine(s.spheroid, s.parameters, n, coords, call.block, &units);

    // Any other routine: a pass before and a pass after, with the same
    // operations.  Failed points stay NaN.
    const size_t count = static_cast<size_t>(n);
    for (size_t i = 0; i < count; ++i)
        ox::units_to_radians(units, coords[2 * i], coords[2 * i + 1], coords[2 * i], coords[2 * i + 1]);
    const int32_t converted = call.routine(s.spheroid, s.parameters, n, coords, call.header(), call.values());
    if (units.shift)
        for (size_t i = 0; i < count; ++i) ox::units_from_metres<false>(units, coords[2 * i], coords[2 * i + 1]);
    return converted;
}
