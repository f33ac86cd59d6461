// Two-dimensional projective transformation with eight coefficients:
//   w = G x + H y + 1,  x' = (A x + B y + C) / w,  y' = (D x + E y + F) / w.
#include "transform/ox_htmethlist.h"

namespace ox {

// No test for w = 0: a point on the horizon yields infinities or NaN.
int32_t projective_forward(void *unused, const double *c, int32_t n, double *points) {
    (void)unused;
    if (c == nullptr || points == nullptr || n < 1) return 0;
    const double A = c[0], B = c[1], C = c[2], D = c[3], E = c[4], F = c[5], G = c[6], H = c[7];
    for (int32_t i = 0; i < n; ++i) {
        const double x = points[2 * i], y = points[2 * i + 1];
        const double w = G * x + H * y + 1.0;
        points[2 * i] = (A * x + B * y + C) / w;
        points[2 * i + 1] = (D * x + E * y + F) / w;
    }
    return n;
}

// The inverse through the adjugate of the matrix (A B C; D E F; G H 1); the
// division by w cancels the determinant, which only decides whether the
// matrix can be inverted.
int32_t projective_inverse(void *unused, const double *c, int32_t n, double *points) {
    (void)unused;
    if (c == nullptr || points == nullptr || n < 1) return 0;
    const double A = c[0], B = c[1], C = c[2], D = c[3], E = c[4], F = c[5], G = c[6], H = c[7];
    const double a11 = E - H * F, a12 = H * C - B, a13 = B * F - E * C;
    const double a21 = G * F - D, a22 = A - G * C, a23 = C * D - F * A;
    const double a31 = D * H - G * E, a32 = B * G - H * A, a33 = A * E - D * B;
    const double det = G * a13 + H * a23 + a33;
    if (det == 0.0) return 0;
    for (int32_t i = 0; i < n; ++i) {
        const double x = points[2 * i], y = points[2 * i + 1];
        const double w = a31 * x + a32 * y + a33;
        points[2 * i] = (a11 * x + a12 * y + a13) / w;
        points[2 * i + 1] = (a21 * x + a22 * y + a23) / w;
    }
    return n;
}

}  // namespace ox
