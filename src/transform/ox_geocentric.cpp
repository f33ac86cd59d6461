// The per-call constants of the Helmert family: the exact rotation matrix
// of the coordinate-frame convention and the affine map of each direction
// (IOGP Guidance Note 7-2, section 2.4.3.2).
#include "transform/ox_geocentric.h"

#include <cmath>

namespace ox {

void coordinate_frame_rotation(double rx, double ry, double rz, double r[9]) {
    const double cx = std::cos(rx), sx = std::sin(rx);
    const double cy = std::cos(ry), sy = std::sin(ry);
    const double cz = std::cos(rz), sz = std::sin(rz);
    r[0] = cz * cy;
    r[1] = cx * sz + sx * sy * cz;
    r[2] = sx * sz - cx * sy * cz;
    r[3] = -cy * sz;
    r[4] = cx * cz - sx * sy * sz;
    r[5] = cx * sy * sz + sx * cz;
    r[6] = sy;
    r[7] = -sx * cy;
    r[8] = cx * cy;
}

bool Helmert::affine(const double r[9], double s, const double t[3], Direction d, Constants &c) {
    const double factor = 1.0 + s;
    if (!(factor > 0.0) || !std::isfinite(factor)) return false;
    for (int i = 0; i < 9; ++i)
        if (!std::isfinite(r[i])) return false;
    for (int i = 0; i < 3; ++i)
        if (!std::isfinite(t[i])) return false;
    if (d == Direction::kForward) {
        for (int i = 0; i < 9; ++i) c.m[i] = factor * r[i];
        for (int i = 0; i < 3; ++i) {
            c.pre[i] = 0.0;
            c.post[i] = t[i];
        }
        return true;
    }
    // Cofactors of R, transposed (the adjugate), over the determinant.
    const double adj[9] = {
        r[4] * r[8] - r[5] * r[7], r[2] * r[7] - r[1] * r[8], r[1] * r[5] - r[2] * r[4],
        r[5] * r[6] - r[3] * r[8], r[0] * r[8] - r[2] * r[6], r[2] * r[3] - r[0] * r[5],
        r[3] * r[7] - r[4] * r[6], r[1] * r[6] - r[0] * r[7], r[0] * r[4] - r[1] * r[3],
    };
    const double det = r[0] * adj[0] + r[1] * adj[3] + r[2] * adj[6];
    if (!std::isfinite(det) || det == 0.0) return false;
    for (int i = 0; i < 9; ++i) c.m[i] = adj[i] / det * (1.0 / factor);
    for (int i = 0; i < 3; ++i) {
        c.pre[i] = t[i];
        c.post[i] = 0.0;
    }
    return true;
}

}  // namespace ox
