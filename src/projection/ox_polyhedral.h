// What the polyhedral maps ("Fuller", "Cube") share: a face as the formulas
// use it, the branch-free choice of a point's face on the sphere (the
// nearest centre) and on the map (the first face that holds it), and the
// horizons of a net.
#pragma once

#include <cmath>
#include <cstdint>

#include "projection/ox_fastmath.h"
#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"

namespace ox {

// A face: the centre c of its spherical polygon on the unit sphere, the
// directions e1, e2 of the map's x and y axes in its tangent plane (e1 x e2
// = c: the map is not mirrored), the centre of its plane polygon (metres
// per a, about the map's natural origin) and sigma, +1 for a triangle
// pointing up and -1 down (+1 for a square).
struct PolyFace {
    double c[3], e1[3], e2[3];
    double centre[2];
    double sigma;
};

inline double dot3(const double a[3], const double b[3]) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

template <class T>
OX_ALWAYS_INLINE T select(bool take, T a, T b) {
    return take ? a : b;
}

// A face copied member by member (an aggregate copy would keep the point
// loop from vectorising).
OX_ALWAYS_INLINE void copy_face(const PolyFace &from, PolyFace &to) {
    for (int k = 0; k < 3; ++k) {
        to.c[k] = from.c[k];
        to.e1[k] = from.e1[k];
        to.e2[k] = from.e2[k];
    }
    to.centre[0] = from.centre[0];
    to.centre[1] = from.centre[1];
    to.sigma = from.sigma;
}

OX_ALWAYS_INLINE void take_face(bool take, const PolyFace &from, PolyFace &to) {
    for (int k = 0; k < 3; ++k) {
        to.c[k] = select(take, from.c[k], to.c[k]);
        to.e1[k] = select(take, from.e1[k], to.e1[k]);
        to.e2[k] = select(take, from.e2[k], to.e2[k]);
    }
    to.centre[0] = select(take, from.centre[0], to.centre[0]);
    to.centre[1] = select(take, from.centre[1], to.centre[1]);
    to.sigma = select(take, from.sigma, to.sigma);
}

// Two faces are equally near a point when their centres' cosines differ by
// no more than this: the point is on their common edge to within a few
// 1e-14 radians, and either face's formula puts it within the margin that
// the inverse allows a face (1e-12 of its size).  Then the earlier face in
// the table takes it, whatever the rounding of the cosines, so that a net
// can choose which copy of a cut edge the forward gives.
inline constexpr double kTieMargin = 1e-14;

// The face of the unit vector p: the one whose centre is nearest (the first
// of several equally near), by selects over all N faces; `cosine` receives
// p . c.  A NaN point takes the first face.
template <int N>
OX_ALWAYS_INLINE PolyFace nearest_face(const PolyFace (&faces)[N], const double p[3], double &cosine) {
    PolyFace face;
    copy_face(faces[0], face);
    double best = dot3(p, face.c);
#pragma GCC unroll 24
    for (int k = 1; k < N; ++k) {
        const double d = dot3(p, faces[k].c);
        const bool take = d > best + kTieMargin;
        best = select(take, d, best);
        take_face(take, faces[k], face);
    }
    cosine = best;
    return face;
}

// The first of the N faces for which `holds(face)` is true, by selects;
// `found` tells whether there is one (else the first face is returned).
template <int N, class Holds>
OX_ALWAYS_INLINE PolyFace first_face(const PolyFace (&faces)[N], Holds holds, bool &found) {
    PolyFace face;
    copy_face(faces[0], face);
    found = false;
#pragma GCC unroll 24
    for (int k = 0; k < N; ++k) {
        const bool inside = holds(faces[k]);
        take_face(inside & !found, faces[k], face);
        found |= inside;
    }
    return face;
}

// The unit vector of a point on a face from its gnomonic coordinates, as
// longitude and latitude (radians; the longitude from the x axis).
template <class M>
OX_ALWAYS_INLINE bool face_point(const PolyFace &face, double X, double Y, double &lon, double &lat) {
    double p[3];
    for (int k = 0; k < 3; ++k) p[k] = face.c[k] + X * face.e1[k] + Y * face.e2[k];
    const double h = std::sqrt(p[0] * p[0] + p[1] * p[1]);
    lon = M::atan2(p[1], p[0]);
    lat = M::atan2(p[2], h);
    return M::atan2_ok(p[1], p[0]) & M::atan2_ok(p[2], h);
}

// The horizons of a net: its outline, or with `raster` every face as a ring
// of its own (separated), from `corners(face, xy)`, which writes the corners
// of a face (-1: the outline) counter-clockwise in metres about the natural
// origin and returns their number (at most kMaxNetCorners; 0: refused); with
// `Inverse` the same points unprojected.
inline constexpr int32_t kMaxNetCorners = 32;
template <class Corners>
int32_t net_horizon(int32_t faces, bool raster, ox_projection_routine inverse, const double spheroid[2],
                    const double parameters[16], int32_t max_vertices, double *vertices, Corners corners) {
    HorizonWriter out(max_vertices, vertices);
    double xy[2 * kMaxNetCorners];
    for (int32_t face = raster ? 0 : -1; face < (raster ? faces : 0); ++face) {
        const int32_t n = corners(face, xy);
        if (n <= 0) return 0;
        if (face > 0) out.separate();
        out.polygon(xy, n);
    }
    if (inverse != nullptr && vertices != nullptr)
        inverse(spheroid, parameters, out.written(), vertices, nullptr, nullptr);
    return out.count();
}

}  // namespace ox
