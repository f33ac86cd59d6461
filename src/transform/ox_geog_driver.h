// What one call of the transformation driver prepares once for the whole
// array (ox_geog1_to_geog2.cpp, ox_geog2_to_geog1.cpp): the two
// ellipsoids, the parameter values in metres, radians and plain ratios,
// the grid blocks (loaded on first use), the unit and prime-meridian
// conversions of the points and the routine to run.
#pragma once

#include <cstdint>

#include "ox.h"
#include "transform/ox_methdef.h"

namespace ox {

struct TransformCall {
    double ellipsoid1[2] = {0.0, 0.0};  // the first (source) system's {a, e2}, both directions
    double ellipsoid2[2] = {0.0, 0.0};
    double values[OX_PARAMETER_SLOTS] = {};
    const char *grid_name = nullptr;
    void *first = nullptr, *second = nullptr, *third = nullptr;
    MethodUnits units{};
    bool shift_in = false, shift_out = false;  // the prime meridians, as the driver moves them
    ox_method_routine routine = nullptr;
    MethodUnitsRoutine units_routine = nullptr;  // the registry's routine with units, or null
    bool ready = false;  // false: convert nothing, return 0, points untouched

    TransformCall(ox_object *geogtran, bool inverse);

    // Runs the call over the points; the routine's count, or 0 when not
    // ready.
    int32_t run(int32_t n, double *points, double *heights) const;
};

}  // namespace ox
