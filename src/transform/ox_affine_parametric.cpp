// Affine transformation of planar coordinates with six coefficients:
//   x' = A x + B y + C,  y' = D x + E y + F.
#include "transform/ox_htmethlist.h"

namespace ox {

int32_t affine_forward(void *unused, const double *c, int32_t n, double *points) {
    (void)unused;
    if (c == nullptr || points == nullptr || n < 1) return 0;
    const double A = c[0], B = c[1], C = c[2], D = c[3], E = c[4], F = c[5];
    for (int32_t i = 0; i < n; ++i) {
        const double x = points[2 * i], y = points[2 * i + 1];
        points[2 * i] = A * x + B * y + C;
        points[2 * i + 1] = D * x + E * y + F;
    }
    return n;
}

// The inverse through the inverted 2x2 matrix; a singular matrix (exactly
// zero determinant) converts nothing.
int32_t affine_inverse(void *unused, const double *c, int32_t n, double *points) {
    (void)unused;
    if (c == nullptr || points == nullptr || n < 1) return 0;
    const double A = c[0], B = c[1], C = c[2], D = c[3], E = c[4], F = c[5];
    const double det = E * A - D * B;
    if (det == 0.0) return 0;
    const double a = E / det, b = -B / det, cc = (B * F - E * C) / det;
    const double d = -D / det, e = A / det, f = (C * D - F * A) / det;
    for (int32_t i = 0; i < n; ++i) {
        const double x = points[2 * i], y = points[2 * i + 1];
        points[2 * i] = a * x + b * y + cc;
        points[2 * i + 1] = d * x + e * y + f;
    }
    return n;
}

}  // namespace ox
