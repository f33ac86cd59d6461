// Geodetic <-> earth-centred Cartesian coordinates inside the point
// formulas, and the seven-parameter (Helmert) family built on them:
// geocentric translation, Bursa-Wolf (coordinate frame), position vector
// and Molodensky-Badekas all move a point through geocentric coordinates
// by one affine map X' = A (X - t_pre) + t_post (IOGP Guidance Note 7-2,
// sections 2.4.3.1 to 2.4.3.3).
//
// The conversions are the algorithms of ox_curv_to_cart and ox_cart_to_curv
// (ox_math.cpp: the closed forward formula and two steps of Bowring's
// iteration, B. R. Bowring, "Transformation from spatial to geographical
// coordinates", Survey Review 23, 1976) written over the function sets of
// ox_fastmath.h so that whole arrays vectorise.  The same mathematics with
// fewer transcendental calls: where the exported routine takes the sine and
// cosine of an angle it has just obtained from atan2(n, d) or from
// atan(tan phi b / a), these take n / r and d / r (r = hypot(n, d)); and
// folding a latitude beyond a right angle back (pi - phi) is atan2(n, |d|).
// Two arc tangents per point remain, the longitude's and the latitude's.
#pragma once

#include <cmath>

#include "object/ox_object.h"
#include "projection/ox_fastmath.h"
#include "projection/ox_math.h"
#include "transform/ox_methdef.h"

namespace ox {

// The quantities of one ellipsoid that the conversions use.
struct GeocentricEllipsoid {
    double a;             // semi-major axis, metres
    double e2;            // first eccentricity squared
    double b;             // semi-minor axis a sqrt(1 - e2)
    double one_minus_e2;  // 1 - e2
    double ep2_b;         // e'^2 b = b e2 / (1 - e2)
    double a_e2;          // a e2
};

// False for an ellipsoid the conversions cannot use.
inline bool geocentric_ellipsoid(double a, double e2, GeocentricEllipsoid &g) {
    if (!usable_ellipsoid(a, e2)) return false;
    g.a = a;
    g.e2 = e2;
    g.b = a * std::sqrt(1.0 - e2);
    g.one_minus_e2 = 1.0 - e2;
    g.ep2_b = g.b * e2 / (1.0 - e2);
    g.a_e2 = a * e2;
    return true;
}

// N = a / w, x = (N + h) cos phi cos lambda, y = (N + h) cos phi sin lambda,
// z = ((1 - e2) N + h) sin phi.
template <class M>
OX_ALWAYS_INLINE bool geodetic_to_geocentric(const GeocentricEllipsoid &g, double lat, double lon, double h, double &x,
                                             double &y, double &z) {
    double sp, cp, sl, cl;
    M::sincos(lat, sp, cp);
    M::sincos(lon, sl, cl);
    const double n = g.a / M::sqrt(1.0 - g.e2 * sp * sp);
    x = (n + h) * cp * cl;
    y = (n + h) * cp * sl;
    z = (g.one_minus_e2 * n + h) * sp;
    return M::sincos_ok(lat) & M::sincos_ok(lon);
}

// Two Bowring steps from the parametric latitude theta (tan theta =
// a z / (b p)); on the polar axis (p equal to 0 under the library's
// equality rule) latitude +-pi/2, longitude 0 and height |z| - b.
template <class M>
OX_ALWAYS_INLINE bool geocentric_to_geodetic(const GeocentricEllipsoid &g, double x, double y, double z, double &lat,
                                             double &lon, double &h) {
    const double p = M::sqrt(x * x + y * y);
    const double az = g.a * z, bp = g.b * p;
    const double r0 = M::sqrt(az * az + bp * bp);
    const double st = az / r0, ct = bp / r0;
    // phi1 = atan2(n1, |d1|), then its parametric latitude beta1.
    const double n1 = z + g.ep2_b * st * st * st;
    const double d1 = std::fabs(p - g.a_e2 * ct * ct * ct);
    const double u1 = g.b * n1, v1 = g.a * d1;
    const double r1 = M::sqrt(u1 * u1 + v1 * v1);
    const double sb = u1 / r1, cb = v1 / r1;
    // phi = atan2(n2, |d2|) and its parametric latitude beta2.
    const double n2 = z + g.ep2_b * sb * sb * sb;
    const double d2 = std::fabs(p - g.a_e2 * cb * cb * cb);
    const double r2 = M::sqrt(n2 * n2 + d2 * d2);
    const double sphi = n2 / r2, cphi = d2 / r2;
    const double u2 = g.b * n2, v2 = g.a * d2;
    const double r3 = M::sqrt(u2 * u2 + v2 * v2);
    const double sb2 = u2 / r3, cb2 = v2 / r3;
    const double phi = M::atan2(n2, d2);
    const double lambda = M::atan2(y, x);
    const double height = (z - g.b * sb2) * sphi + (p - g.a * cb2) * cphi;

    const bool axis = p <= (p * 0.5 + 1.0) * kZero;
    lat = axis ? (z >= 0.0 ? kHalfPi : -kHalfPi) : phi;
    lon = axis ? 0.0 : lambda;
    h = axis ? std::fabs(z) - g.b : height;
    return axis | (M::atan2_ok(n2, d2) & M::atan2_ok(y, x));
}

// The affine map of the Helmert family: X' = A (X - pre) + post, from
// geodetic coordinates on `from` to geodetic coordinates on `to`.
struct HelmertConstants {
    GeocentricEllipsoid from, to;
    double pre[3];   // metres, subtracted first (the inverse's translation)
    double m[9];     // A, row by row
    double post[3];  // metres, added last (the forward's translation)
};

// The common definition of the Helmert family: constants and point formula.
// The setups of the methods fill HelmertConstants.
struct Helmert {
    static constexpr MethodKind kKind = MethodKind::kGeocentric;
    using Constants = HelmertConstants;

    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &converted) {
        (void)converted;
        double x, y, z;
        bool ok = geodetic_to_geocentric<M>(c.from, lat, lon, h, x, y, z);
        x = x - c.pre[0];
        y = y - c.pre[1];
        z = z - c.pre[2];
        const double x2 = c.m[0] * x + c.m[1] * y + c.m[2] * z + c.post[0];
        const double y2 = c.m[3] * x + c.m[4] * y + c.m[5] * z + c.post[1];
        const double z2 = c.m[6] * x + c.m[7] * y + c.m[8] * z + c.post[2];
        double phi;
        ok &= geocentric_to_geodetic<M>(c.to, x2, y2, z2, phi, lon_out, h_out);
        // (atan2 gives longitudes within [-pi, pi] and latitudes within
        // [-pi/2, pi/2]: the common finish changes nothing more.)
        lat_out = clamp_latitude(phi);
        return ok;
    }

    // The two ellipsoids of a direction; false when either is unusable.
    static bool ellipsoids(const MethodFrame &f, Direction d, Constants &c) {
        const bool forward = d == Direction::kForward;
        return geocentric_ellipsoid(forward ? f.a1 : f.a2, forward ? f.e2_1 : f.e2_2, c.from) &&
               geocentric_ellipsoid(forward ? f.a2 : f.a1, forward ? f.e2_2 : f.e2_1, c.to);
    }

    // The affine map of a direction from the forward map
    // X2 = (1 + s) R X1 + t: the forward as it stands, the inverse
    // X1 = R^-1 / (1 + s) (X2 - t) with the general inverse of R (cofactors
    // over the determinant, not the transpose).  False when R is singular,
    // 1 + s is not positive or a value is not finite.
    static bool affine(const double r[9], double s, const double t[3], Direction d, Constants &c);
};

// The rotation matrix of the coordinate-frame convention, exact (no
// small-angle simplification): R = Rz(rz) Ry(ry) Rx(rx), positive angles
// turning the axes, not the point.
void coordinate_frame_rotation(double rx, double ry, double rz, double r[9]);

}  // namespace ox
