// The transformation method registry: code, authority, name and routines of
// every geographic transformation method, one row per method definition
// (ox_methdef.h).
#pragma once

#include <cstdint>
#include <span>

#include "object/ox_object.h"
#include "object/ox_registry.h"
#include "transform/ox_gtconstants.h"
#include "transform/ox_methdef.h"

namespace ox {

// The rows in stored order.
std::span<const MethRow *const> methlist_rows();
// Exact (case-sensitive) name match, first row wins; null when none.
const MethRow *methlist_find_by_name(const char *name);
const MethRow *methlist_find_by_code(int32_t code);
// A method from the row of `code` with all routines, status 4; or null.
ox_object *methlist_new_by_code(int32_t code);
// A method from the row of `name` with all routines, status 2; or null.
ox_object *methlist_new_by_name(const char *name);
// The grid loader of a method object, or null.
LoadConstantsRoutine method_load_constants(const ox_object *method);
// The routine of the row whose forward (inverse) routine is `routine` that
// also applies the driver's units; null for any routine that is not the
// registry's.
MethodUnitsRoutine methlist_units_routine(ox_method_routine routine);

// Leaves the points as they are and returns n (null or invalid method).
OX_METHOD_ROUTINE(method_nothing);

// Method codes.
enum MethodCode : int32_t {
    kMethLongitudeRotation = 9601,
    kMethGeocentricTranslation = 9603,
    kMethMolodensky = 9604,
    kMethMolodenskyAbridged = 9605,
    kMethPositionVector = 9606,
    kMethCoordinateFrame = 9607,
    kMethNadcon = 9613,
    kMethNtv2 = 9615,
    kMethMolodenskyBadekas = 9636,
    kMethBursaWolf = 109607,
    kMethHarn = 109613,
};

}  // namespace ox
