// The horizontal-transformation method registry.
#pragma once

#include <cstdint>
#include <span>

#include "object/ox_registry.h"
#include "ox.h"

namespace ox {

struct HtRow : RegistryRow {
    ox_htmethod_routine forward;
    ox_htmethod_routine inverse;
};

enum HtMethodCode : int32_t { kHtAffineParametric = 119624, kHtProjectiveParametric = 119625 };

// The rows in stored order.
std::span<const HtRow> htmethlist_rows();
// Exact (case-sensitive) name match, first row wins.
const HtRow *htmethlist_find_by_name(const char *name);
const HtRow *htmethlist_find_by_code(int32_t code);
// A method from the row of `code`, status 4, or null.
ox_object *htmethlist_new_by_code(int32_t code);

// Leaves the points as they are and returns n (null or invalid method).
int32_t htmethod_nothing(void *unused, const double *coefficients, int32_t n, double *points);
// Affine and projective routines.
int32_t affine_forward(void *unused, const double *coefficients, int32_t n, double *points);
int32_t affine_inverse(void *unused, const double *coefficients, int32_t n, double *points);
int32_t projective_forward(void *unused, const double *coefficients, int32_t n, double *points);
int32_t projective_inverse(void *unused, const double *coefficients, int32_t n, double *points);

}  // namespace ox
