// Affine transformation of planar coordinates with six coefficients:
//   x' = A x + B y + C,  y' = D x + E y + F.
#include <cmath>

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

bool affine_invert(const double *c, double inverse[6]) {
    const double A = c[0], B = c[1], C = c[2], D = c[3], E = c[4], F = c[5];
    const double det = E * A - D * B;
    if (det == 0.0) return false;
    inverse[0] = E / det;
    inverse[1] = -B / det;
    inverse[2] = (B * F - E * C) / det;
    inverse[3] = -D / det;
    inverse[4] = A / det;
    inverse[5] = (C * D - F * A) / det;
    for (int i = 0; i < 6; ++i)
        if (!std::isfinite(inverse[i])) return false;
    return true;
}

// The inverse through the inverted 2x2 matrix; a matrix that cannot be
// inverted converts nothing.
int32_t affine_inverse(void *unused, const double *c, int32_t n, double *points) {
    (void)unused;
    if (c == nullptr || points == nullptr || n < 1) return 0;
    double inverse[6];
    if (!affine_invert(c, inverse)) return 0;
    const double a = inverse[0], b = inverse[1], cc = inverse[2], d = inverse[3], e = inverse[4], f = inverse[5];
    for (int32_t i = 0; i < n; ++i) {
        const double x = points[2 * i], y = points[2 * i + 1];
        points[2 * i] = a * x + b * y + cc;
        points[2 * i + 1] = d * x + e * y + f;
    }
    return n;
}

}  // namespace ox
