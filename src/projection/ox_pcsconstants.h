// Projection constants of a projected coordinate system: values that a
// projection's constants routine precomputes once per system (series
// coefficients, radii) so that the per-point routines need not.
#pragma once

#include <cstdint>

#include "ox.h"

namespace ox {

inline constexpr uint32_t kPcsConstantsTag = 0x100000u;

struct PcsConstants {
    uint32_t type;       // kPcsConstantsTag
    int32_t *header;     // owned: {2, count}
    double *values;      // owned: `count` values, laid out by the constants routine
    const void *layout;  // which projection and form wrote the values (ox_projdef.h)
};

// Constants routine of a projection: fills `c` (through pcs_alloc) from the
// spheroid {a, e2} and the 16 parameter values in radians and metres; returns
// the number of values stored, or 0 on failure (with nothing allocated).
using ConstantsRoutine = int32_t (*)(PcsConstants *c, const double spheroid[2], const double parameters[16]);

// Allocates the header {2, count} and `count` values of `c`; returns the
// values, or null (nothing allocated) when memory runs out or count < 1.
double *pcs_alloc(PcsConstants *c, int32_t count);
// The spheroid and the sixteen parameter values of a projected system in the
// form that every projection routine takes, and the unit factors the driver
// converts by.
struct ProjSetup {
    double spheroid[2];     // {a in metres, e2 = f (2 - f)}
    double parameters[16];  // radians, metres and plain ratios, by slot
    double angular_factor;  // radians per unit of the geographic system
    double linear_factor;   // metres per unit of the projected system
};

// Fills `s` from a projected system through its accessors; a null or wrong
// handle gives the unit sphere, unit factors and empty slots.  Angular slots
// are converted to radians, false easting and northing to metres, a "Height"
// in slot 15 to metres; a missing scale factor (slot 5) and missing x and y
// scales (slots 12, 13) are 1, a missing second standard parallel (slot 4)
// takes the first (slot 3).
void projcs_setup(const ox_object *projcs, ProjSetup *s);
// Replaces the constants of a projected system with those that its
// projection's constants routine computes from `s`; the routine's count, or
// 0 (the system then holds none).
int32_t projcs_load_constants_from(ox_object *projcs, const ProjSetup &s);

// The constants a conversion through `projcs` hands to its routines: those
// the system holds, after loading them from `s` on first use when the
// projection has a constants routine; null when there are none.
const PcsConstants *projcs_constants_in_use(ox_object *projcs, const ProjSetup &s);

// A new empty constants object, or null.
PcsConstants *pcs_new();
// Releases the header, the values and the object; null is ignored.
void pcs_delete(PcsConstants *c);

}  // namespace ox
