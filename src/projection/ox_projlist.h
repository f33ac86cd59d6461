// The projection registry: the one list of projections (ox_projlist.cpp),
// each row made from a projection's definition (ox_projdef.h), plus the
// alias table of projection names.
#pragma once

#include <cstdint>
#include <span>

#include "object/ox_object.h"
#include "projection/ox_pcsconstants.h"
#include "projection/ox_projdef.h"

namespace ox {

// The rows in stored order.
std::span<const ProjRow *const> projlist_rows();
// First row whose name matches after the alias table, or null.
const ProjRow *projlist_find_by_name(const char *name);
// First row with that code, or null.
const ProjRow *projlist_find_by_code(int32_t code);
// The routine of the row whose forward (inverse) routine is `routine` that
// also takes the driver's units and the system's constants block; null for
// any routine that is not the registry's.
UnitsRoutine projlist_units_routine(ox_projection_routine routine);
// Sets code and authority of a projection from the row of its own name
// (aliases not consulted).
void projlist_set_code(ox_object *projection);
// A projection with the row's canonical name, all its routines, status 4 and
// the row's code and authority; null for an unknown code.
ox_object *projlist_new_by_code(int32_t code);
// The same through projlist_find_by_name, with status 2.
ox_object *projlist_new_by_name(const char *name);

// The projection constructor with all seven routine slots (a missing horizon
// becomes the world horizon); sets the code from the registry by name.
ox_object *projection_make(const char *name, const Fn fn[kProjSlots]);
// The constants routine of a projection object, or null.
ConstantsRoutine projection_constants(const ox_object *projection);

// Copies every point unchanged and returns n (null or invalid projection).
OX_PROJECTION_ROUTINE(proj_identity);
// Routine of a registered projection that has no routines yet: every point
// receives the failure value and the count is 0.
OX_PROJECTION_ROUTINE(proj_unavailable);

}  // namespace ox
