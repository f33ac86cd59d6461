// Point routines and grid loaders that the method registry rows point to.
#pragma once

#include "ox.h"
#include "transform/ox_gtconstants.h"

#define OX_METHOD_ROUTINE(fn)                                                                        \
    int32_t fn(const double ellipsoid1[2], const double ellipsoid2[2], const double values[16],     \
               const char *grid_name, int32_t n, double *points, double *heights, void *first,      \
               void *second, void *third)
#define OX_LOADER_ROUTINE(fn) int32_t fn(ox::GtConstants *block, const char *grid_name)

namespace ox {

// Leaves the points as they are and returns n (null or invalid method).
OX_METHOD_ROUTINE(method_nothing);
// Routine of a registered method not implemented yet: converts nothing, 0.
OX_METHOD_ROUTINE(method_unavailable);
// Loader of a grid method not implemented yet: loads nothing, 0.
OX_LOADER_ROUTINE(loader_unavailable);

}  // namespace ox
