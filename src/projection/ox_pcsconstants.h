// Projection constants of a projected coordinate system: values that a
// projection's constants routine precomputes once per system (series
// coefficients, radii) so that the per-point routines need not.
#pragma once

#include <cstdint>

namespace ox {

inline constexpr uint32_t kPcsConstantsTag = 0x100000u;

struct PcsConstants {
    uint32_t type;    // kPcsConstantsTag
    int32_t *header;  // owned: {2, count}
    double *values;   // owned: `count` values, laid out by the constants routine
};

// Constants routine of a projection: fills `c` (through pcs_alloc) from the
// spheroid {a, e2} and the 16 parameter values in radians and metres; returns
// the number of values stored, or 0 on failure (with nothing allocated).
using ConstantsRoutine = int32_t (*)(PcsConstants *c, const double spheroid[2], const double parameters[16]);

// Allocates the header {2, count} and `count` values of `c`; returns the
// values, or null (nothing allocated) when memory runs out or count < 1.
double *pcs_alloc(PcsConstants *c, int32_t count);
// A new empty constants object, or null.
PcsConstants *pcs_new();
// Releases the header, the values and the object; null is ignored.
void pcs_delete(PcsConstants *c);

}  // namespace ox
