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
// The inverse of the affine method's coefficients (A..F), and the adjugate
// (a11, a12, a13, a21, ..., a33) of the projective method's matrix
// (A B C; D E F; G H 1).  False when the matrix cannot be inverted: its
// determinant is 0, or the result is not finite (coefficients that are NaN
// or infinite, or so nearly singular that the inverse overflows).
bool affine_invert(const double *coefficients, double inverse[6]);
bool projective_invert(const double *coefficients, double adjugate[9]);
// Affine and projective routines.
int32_t affine_forward(void *unused, const double *coefficients, int32_t n, double *points);
int32_t affine_inverse(void *unused, const double *coefficients, int32_t n, double *points);
int32_t projective_forward(void *unused, const double *coefficients, int32_t n, double *points);
int32_t projective_inverse(void *unused, const double *coefficients, int32_t n, double *points);

}  // namespace ox
