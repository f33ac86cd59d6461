// The inverse projection driver: projected coordinates in the system's
// linear unit to geographic coordinates in the units of its geographic
// coordinate system, optionally centred on a chosen longitude.
#include <cmath>
#include <cstddef>

#include "projection/ox_driver.h"

extern "C" {

OX_API int32_t ox_proj_to_geog_center(ox_object *projcs, int32_t n, double *coords, double center) {
    if (coords == nullptr || n < 1) return 0;
    const ox::DriverCall call(projcs, true, center);
    const ox::ProjSetup &s = call.setup;
    const ox::PointUnits &units = call.units;

    // A centre that is not a finite longitude centres nothing.
    if (!std::isfinite(units.center)) {
        ox::fail_points(n, coords);
        return 0;
    }

    // Metres about the natural origin in; the angular unit out, longitudes
    // about the centre unless it is zero (2^-48 or less in radians).  The
    // library's own routines take the units into their point loop.
    if (call.units_routine != nullptr)
        return call.units_routine(s.spheroid, s.parameters, n, coords, call.block, &units);

    // Any other routine: a pass before and a pass after, with the same
    // operations.
    const size_t count = static_cast<size_t>(n);
    for (size_t i = 0; i < count; ++i) {
        coords[2 * i] = coords[2 * i] * units.linear - units.false_easting;
        coords[2 * i + 1] = coords[2 * i + 1] * units.linear - units.false_northing;
    }
    const int32_t converted = call.routine(s.spheroid, s.parameters, n, coords, call.header(), call.values());
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
