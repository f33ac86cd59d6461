// "Cube": the gnomonic projection of the sphere of radius a onto the six
// faces of the circumscribed cube, unfolded into a plane; the ellipsoid's
// flattening is ignored (a figure of the sphere).
//
// The cube is turned with the central meridian: its faces are centred on
// the equator at the central meridian (front), 90 degrees east (east), 180
// degrees (back) and 90 degrees west (west), and on the two poles.  A point
// belongs to the face whose centre is nearest (of two or three at equal
// distance, the first of front, east, west, back, north and south: on the
// sheet that is the face whose edge the inverse gives back), so every point
// of the sphere has exactly one place on the map; on its face it is the gnomonic
// projection from the sphere's centre (Snyder, Map Projections: A Working
// Manual, 1987, ch. 22) onto the tangent plane at the face's centre,
//     X = a (p . e1) / (p . c),  Y = a (p . e2) / (p . c),
// with c the face's centre and e1, e2 the map's axes on the face (unit
// vectors), so each face is a square 2a wide, great circles are straight
// within a face, and faces joined in the net meet without a seam.  The
// inverse is the point c + X e1 + Y e2 (per a) made a unit vector.
//
// The net ("Option"):
//   0  the cross: the four equatorial faces in a row, west, front, east and
//      back from left to right, the north face above the front and the
//      south face below it, north up on every equatorial face;
//   1  the 3 x 2 sheet: west, front and east in the upper row, north up;
//      north, back and south in the lower row, a strip along the back
//      meridian from the north pole to the south pole (the pole of each
//      polar face towards the back face).
// The natural origin is the centre of the front face, the point on the
// equator at the central meridian.  The inverse of a point more than 1e-12
// of a face's half width outside every face, in a gap of the cross or
// beyond the net, is the failure value.
//
// Horizons: the outline of the net counter-clockwise (each edge of a face
// in 32 steps) and, as the raster variants, every face as a ring of its own
// (front, east, west, back, north, south), for warping an image face by
// face.  On the sheet a point of the line between the two rows belongs to
// the upper face.
//
// Refused: an "Option" other than 0 or 1, a non-finite central meridian.
#include <cmath>
#include <iterator>
#include <limits>

#include "projection/ox_polyhedral.h"

namespace ox {
namespace {

constexpr int kFaces = 6;
// How far outside a face (a fraction of its half width) a point still
// belongs to it.
constexpr double kFaceMargin = 1e-12;

// The faces of the two nets: centre, x axis, y axis on the unit sphere (the
// cube turned to the central meridian: x towards it, z north), the centre
// of the square in half widths (a).
constexpr PolyFace kCross[kFaces] = {
    {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0}, 1},     // front
    {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, {2, 0}, 1},    // east
    {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}, {-2, 0}, 1},   // west
    {{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}, {4, 0}, 1},   // back
    {{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}, {0, 2}, 1},    // north
    {{0, 0, -1}, {0, 1, 0}, {1, 0, 0}, {0, -2}, 1},   // south
};
constexpr PolyFace kSheet[kFaces] = {
    {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0}, 1},      // front
    {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, {2, 0}, 1},     // east
    {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}, {-2, 0}, 1},    // west
    {{-1, 0, 0}, {0, 0, -1}, {0, -1, 0}, {0, -2}, 1},  // back
    {{0, 0, 1}, {-1, 0, 0}, {0, -1, 0}, {-2, -2}, 1},  // north
    {{0, 0, -1}, {1, 0, 0}, {0, -1, 0}, {2, -2}, 1},   // south
};
// The outlines, counter-clockwise, a corner at every end of a face's edge.
constexpr double kCrossOutline[][2] = {{-1, -3}, {1, -3}, {1, -1}, {3, -1}, {5, -1}, {5, 1}, {3, 1},
                                       {1, 1},   {1, 3},  {-1, 3}, {-1, 1}, {-3, 1}, {-3, -1}, {-1, -1}};
constexpr double kSheetOutline[][2] = {{-3, -3}, {-1, -3}, {1, -3}, {3, -3}, {3, -1},
                                       {3, 1},   {1, 1},   {-1, 1}, {-3, 1}, {-3, -1}};
struct Net {
    const PolyFace (*faces)[kFaces];
    const double (*outline)[2];
    int32_t outline_count;
};
constexpr Net kNets[] = {
    {&kCross, kCrossOutline, static_cast<int32_t>(std::size(kCrossOutline))},
    {&kSheet, kSheetOutline, static_cast<int32_t>(std::size(kSheetOutline))},
};

// Option 0 or 1, else -1.
int net_of(const ParameterValues &p) {
    const double option = p.option();
    return option == 0.0 ? 0 : option == 1.0 ? 1 : -1;
}

struct Cube {
    static constexpr int32_t kCode = 43055;
    static constexpr const char *kName = "Cube";
    static constexpr Family kFamily = Family::kPolyhedral;
    static constexpr Preserves kPreserves = Preserves::kNothing;
    static constexpr ParameterSet kParameters = parameter_sets::kMeridianAndOption;
    static constexpr bool kHasConstantsRoutine = false;

    struct Constants {
        PolyFace faces[kFaces];
    };
    static bool setup(const Frame &f, Constants &c) {
        const int n = net_of(f.p);
        if (n < 0 || !finite(f.p.central_meridian)) return false;
        for (int k = 0; k < kFaces; ++k) c.faces[k] = (*kNets[n].faces)[k];
        return true;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.central_meridian;
        const double l = M::reduce(d);
        double sl, cl, sp, cp;
        M::sincos(l, sl, cl);
        M::sincos(lat, sp, cp);
        const double p[3] = {cp * cl, cp * sl, sp};
        double cosine;
        const PolyFace face = nearest_face(c.faces, p, cosine);
        x = f.a * (face.centre[0] + dot3(p, face.e1) / cosine);
        y = f.a * (face.centre[1] + dot3(p, face.e2) / cosine);
        return M::reduce_ok(d) & M::sincos_ok(l) & M::sincos_ok(lat);
    }

    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double u = x / f.a, v = y / f.a;
        constexpr double kLimit = 1.0 + kFaceMargin;
        bool found;
        const PolyFace face = first_face(
            c.faces,
            [&](const PolyFace &t) {
                return (std::fabs(u - t.centre[0]) <= kLimit) & (std::fabs(v - t.centre[1]) <= kLimit);
            },
            found);
        double l, phi;
        const bool ok = face_point<M>(face, select(found, u - face.centre[0], 0.0),
                                      select(found, v - face.centre[1], 0.0), l, phi);
        const double about = f.p.central_meridian + l;
        const double nan = std::numeric_limits<double>::quiet_NaN();
        lon = select(found, M::reduce(about), nan);
        lat = select(found, phi, nan);
        return ok & M::reduce_ok(about);
    }
};

// The projected outline (raster: every face) of the net; with `geographic`
// the same points through the inverse.
int32_t cube_horizon(const double spheroid[2], const double parameters[16], int32_t max_vertices, double *vertices,
                     bool raster, bool geographic) {
    if (spheroid == nullptr || parameters == nullptr) return 0;
    const Frame f(spheroid, parameters);
    const int net = net_of(f.p);
    if (net < 0 || !f.usable() || !finite(f.p.central_meridian)) return 0;
    auto corners = [&](int32_t face, double *xy) {
        if (face >= 0) {
            const double *centre = (*kNets[net].faces)[face].centre;
            const double square[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
            for (int k = 0; k < 4; ++k) {
                xy[2 * k] = f.a * (centre[0] + square[k][0]);
                xy[2 * k + 1] = f.a * (centre[1] + square[k][1]);
            }
            return 4;
        }
        for (int32_t k = 0; k < kNets[net].outline_count; ++k) {
            xy[2 * k] = f.a * kNets[net].outline[k][0];
            xy[2 * k + 1] = f.a * kNets[net].outline[k][1];
        }
        return kNets[net].outline_count;
    };
    return net_horizon(kFaces, raster, geographic ? ProjectionRoutines<Cube>::inverse : nullptr, spheroid,
                       parameters, max_vertices, vertices, corners);
}

OX_HORIZON_ROUTINE(horizon_cube) { return cube_horizon(spheroid, parameters, max_vertices, vertices, false, true); }
OX_HORIZON_ROUTINE(horizon_cube_pcs) {
    return cube_horizon(spheroid, parameters, max_vertices, vertices, false, false);
}
OX_HORIZON_ROUTINE(horizon_cube_gcs_raster) {
    return cube_horizon(spheroid, parameters, max_vertices, vertices, true, true);
}
OX_HORIZON_ROUTINE(horizon_cube_pcs_raster) {
    return cube_horizon(spheroid, parameters, max_vertices, vertices, true, false);
}

struct CubeProjection : Cube {
    static constexpr ox_horizon_routine kHorizon = horizon_cube;
    static constexpr ox_horizon_routine kHorizonPcs = horizon_cube_pcs;
    static constexpr ox_horizon_routine kHorizonGcsRaster = horizon_cube_gcs_raster;
    static constexpr ox_horizon_routine kHorizonPcsRaster = horizon_cube_pcs_raster;
};

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(CubeProjection)
