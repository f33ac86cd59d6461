// What one call of the projection driver prepares once for the whole array
// (ox_geog_to_proj.cpp, ox_proj_to_geog.cpp): the spheroid and parameter
// values of the system, its constants block (loaded on first use when the
// projection has a constants routine), the unit conversions of the points
// and the routine to run.
#pragma once

#include <cmath>

#include "object/ox_object.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projlist.h"
#include "projection/ox_projmath.h"

namespace ox {

struct DriverCall {
    ProjSetup setup;
    const PcsConstants *block = nullptr;
    PointUnits units{};
    ox_projection_routine routine = nullptr;
    UnitsRoutine units_routine = nullptr;  // the registry's routine with units, or null

    // `center` is the inverse's centre longitude in the angular unit (0 for
    // the forward).
    DriverCall(ox_object *projcs, bool inverse, double center) {
        projcs_setup(projcs, &setup);
        block = projcs_constants_in_use(projcs, setup);
        const ox_object *projection = ox_projcs_projection(projcs);
        routine = inverse ? ox_projection_inverse(projection) : ox_projection_forward(projection);
        units_routine = projlist_units_routine(routine);
        units.angular = setup.angular_factor;
        units.linear = setup.linear_factor;
        units.false_easting = setup.parameters[OX_SLOT(false_easting)];
        units.false_northing = setup.parameters[OX_SLOT(false_northing)];
        units.shift = !(units.linear == 1.0 && units.false_easting == 0.0 && units.false_northing == 0.0);
        units.center = center * setup.angular_factor;
        units.center_reduced = std::isfinite(units.center) ? ox_delta(units.center) : units.center;
        units.centred = !(std::fabs(units.center) <= kZero);
    }
    const int32_t *header() const { return block ? block->header : nullptr; }
    const double *values() const { return block ? block->values : nullptr; }
};

}  // namespace ox
