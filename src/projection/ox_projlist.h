// The projection registry: one row per projection with its code, authority,
// canonical name and routines, plus the alias table of projection names.
#pragma once

#include <cstdint>

#include "object/ox_object.h"
#include "projection/ox_pcsconstants.h"

namespace ox {

struct ProjRow {
    int32_t code;
    const char *authority_name;
    const char *authority_version;
    const char *name;
    ox_projection_routine forward;
    ox_projection_routine inverse;
    ox_horizon_routine horizon;
    ox_horizon_routine horizon_pcs;
    ox_horizon_routine horizon_gcs_raster;
    ox_horizon_routine horizon_pcs_raster;
    ConstantsRoutine constants;
};

// The rows in stored order; `count` receives their number.
const ProjRow *projlist_rows(int *count);
// First row whose name matches after the alias table, or null.
const ProjRow *projlist_find_by_name(const char *name);
// First row with that code, or null.
const ProjRow *projlist_find_by_code(int32_t code);
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

}  // namespace ox
