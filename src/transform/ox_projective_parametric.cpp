// Two-dimensional projective transformation with eight coefficients:
//   w = G x + H y + 1,  x' = (A x + B y + C) / w,  y' = (D x + E y + F) / w.
#include <cmath>

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

bool projective_invert(const double *c, double m[9]) {
    const double A = c[0], B = c[1], C = c[2], D = c[3], E = c[4], F = c[5], G = c[6], H = c[7];
    m[0] = E - H * F;
    m[1] = H * C - B;
    m[2] = B * F - E * C;
    m[3] = G * F - D;
    m[4] = A - G * C;
    m[5] = C * D - F * A;
    m[6] = D * H - G * E;
    m[7] = B * G - H * A;
    m[8] = A * E - D * B;
    const double det = G * m[2] + H * m[5] + m[8];
    if (det == 0.0 || !std::isfinite(det)) return false;
    for (int i = 0; i < 9; ++i)
        if (!std::isfinite(m[i])) return false;
    return true;
}

// The inverse through the adjugate of the matrix (A B C; D E F; G H 1); the
// division by w cancels the determinant, which only decides whether the
// matrix can be inverted.
int32_t projective_inverse(void *unused, const double *c, int32_t n, double *points) {
    (void)unused;
    if (c == nullptr || points == nullptr || n < 1) return 0;
    double m[9];
    if (!projective_invert(c, m)) return 0;
    const double a11 = m[0], a12 = m[1], a13 = m[2], a21 = m[3], a22 = m[4], a23 = m[5];
    const double a31 = m[6], a32 = m[7], a33 = m[8];
    for (int32_t i = 0; i < n; ++i) {
        const double x = points[2 * i], y = points[2 * i + 1];
        const double w = a31 * x + a32 * y + a33;
        points[2 * i] = (a11 * x + a12 * y + a13) / w;
        points[2 * i + 1] = (a21 * x + a22 * y + a23) / w;
    }
    return n;
}

}  // namespace ox
