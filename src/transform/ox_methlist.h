// The transformation method registry: code, authority, name and routines of
// every geographic transformation method.
#pragma once

#include <cstdint>
#include <span>

#include "object/ox_object.h"
#include "object/ox_registry.h"
#include "transform/ox_gtconstants.h"

namespace ox {

struct MethRow : RegistryRow {
    ox_method_routine forward;
    ox_method_routine inverse;
    LoadConstantsRoutine load_constants;
};

// The rows in stored order.
std::span<const MethRow> methlist_rows();
// Exact (case-sensitive) name match, first row wins; null when none.
const MethRow *methlist_find_by_name(const char *name);
const MethRow *methlist_find_by_code(int32_t code);
// A method from the row of `code` with all routines, status 4; or null.
ox_object *methlist_new_by_code(int32_t code);
// A method from the row of `name` with all routines, status 2; or null.
ox_object *methlist_new_by_name(const char *name);
// The grid loader of a method object, or null.
LoadConstantsRoutine method_load_constants(const ox_object *method);

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
