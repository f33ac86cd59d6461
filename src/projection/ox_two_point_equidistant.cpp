// "Two_Point_Equidistant": the map on which the distances from two points
// A and B (Latitude_Of_1st_Point, Longitude_Of_1st_Point and the 2nd) are
// true (Snyder, Map Projections: A Working Manual, 1987, pp. 191-193;
// Snyder, Flattening the Earth, 1993, p. 178), on the sphere of radius a on
// any spheroid (the latitudes taken as spherical).  A and B lie on the x
// axis at -z0/2 and +z0/2 (z0 their angular distance), A to B along +x,
// the left of the great circle from A to B at y > 0.  A point at angular
// distances z1 from A and z2 from B is the apex of the plane triangle with
// those sides:
//     x = a (z1^2 - z2^2) / (2 z0),  y = +-a 2 Area / z0,
// the area by Heron's formula in Kahan's stable arrangement (sides sorted,
// "Miscalculating area and angles of a needle-like triangle", 2014), the
// distances as atan2(|A x P|, A . P) of the unit vectors, exact at any
// distance.  Inverse: z1 and z2 from the plane, the angle at A of the
// spherical triangle A B P by the half-angle formula
//     tan(alpha/2) = sqrt(sin(s - z0) sin(s - z1) / (sin s sin(s - z2))),
// s = (z0 + z1 + z2) / 2, and P at distance z1 from A in the direction of B
// turned by alpha to the left or right (the rotation of the sphere); no
// iteration.
//
// Domain: the whole globe (the map is one to one).  The inverse refuses
// plane points that no point of the sphere reaches (z1 + z2 + z0 > 2 pi,
// or a distance beyond pi).
//
// Refused: the two points equal or antipodal (within 1e-10 radians: there
// is no one great circle through them), points beyond a pole, non-finite
// parameters.  The projection keeps no constants: they are computed for
// each call.
#include <cmath>
#include <cstring>

#include "projection/ox_horizon.h"
#include "projection/ox_projdef.h"
#include "projection/ox_projshared.h"

namespace ox {
namespace {

constexpr double kDegenerate = 1e-10;

struct Vector {
    double x, y, z;
};
OX_ALWAYS_INLINE Vector cross(const Vector &u, const Vector &v) {
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}
OX_ALWAYS_INLINE double dot(const Vector &u, const Vector &v) { return u.x * v.x + u.y * v.y + u.z * v.z; }

// The unit vector of (lon, lat), longitudes about the first point.
Vector unit(double lon, double lat) {
    return {std::cos(lat) * std::cos(lon), std::cos(lat) * std::sin(lon), std::sin(lat)};
}

struct TwoPointEquidistant {
    static constexpr int32_t kCode = 43031;
    static constexpr const char *kName = "Two_Point_Equidistant";
    static constexpr Family kFamily = Family::kOther;
    static constexpr Preserves kPreserves = Preserves::kDistance;
    static constexpr ParameterSet kParameters = parameter_sets::kTwoPoint;
    static OX_HORIZON_ROUTINE(horizon);
    static constexpr ox_horizon_routine kHorizon = horizon;
    static constexpr bool kHasConstantsRoutine = false;

    struct Constants {
        Vector a, b;        // the two points (longitudes about A)
        Vector left;        // the unit normal A x B / |A x B|
        double z0;          // angular distance of A and B
        double sin_a, cos_a;  // of A's latitude
        double azimuth;     // of B from A
    };
    static bool setup(const Frame &f, Constants &c) {
        const double lon1 = f.p.longitude_of_1st_point, lat1 = latitude_parameter(f.p.latitude_of_1st_point());
        const double lon2 = f.p.longitude_of_2nd_point, lat2 = latitude_parameter(f.p.latitude_of_2nd_point());
        if (!finite(lon1) || !finite(lon2) || !finite(lat1) || !finite(lat2)) return false;
        c.a = unit(0.0, lat1);
        c.b = unit(ox_delta(lon2 - lon1), lat2);
        const Vector n = cross(c.a, c.b);
        const double sine = std::sqrt(dot(n, n));
        c.z0 = std::atan2(sine, dot(c.a, c.b));
        if (!(sine > kDegenerate)) return false;  // equal or antipodal
        c.left = {n.x / sine, n.y / sine, n.z / sine};
        c.sin_a = std::sin(lat1);
        c.cos_a = std::cos(lat1);
        // The direction of B in the frame of A: east = n . (east unit), ...
        const double dl = ox_delta(lon2 - lon1);
        c.azimuth = std::atan2(std::cos(lat2) * std::sin(dl),
                               c.cos_a * std::sin(lat2) - c.sin_a * std::cos(lat2) * std::cos(dl));
        return true;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool forward(const Frame &f, const Constants &c, double lon, double lat, double &x,
                                         double &y) {
        const double d = lon - f.p.longitude_of_1st_point;
        const double L = M::reduce(d);
        double s, co, sl, cl;
        M::sincos(lat, s, co);
        M::sincos(L, sl, cl);
        const Vector p = {co * cl, co * sl, s};
        const Vector pa = cross(c.a, p), pb = cross(c.b, p);
        const double sa = M::sqrt(dot(pa, pa)), ca = dot(c.a, p);
        const double sb = M::sqrt(dot(pb, pb)), cb = dot(c.b, p);
        const double z1 = M::atan2(sa, ca), z2 = M::atan2(sb, cb);
        // Heron's formula, Kahan's arrangement: sides u >= v >= w.
        const double hi = std::fmax(c.z0, std::fmax(z1, z2)), lo = std::fmin(c.z0, std::fmin(z1, z2));
        const double mid = c.z0 + z1 + z2 - hi - lo;
        const double radicand = (hi + (mid + lo)) * (lo - (hi - mid)) * (lo + (hi - mid)) * (hi + (mid - lo));
        const double four_area = M::sqrt(std::fmax(radicand, 0.0));
        const double side = dot(c.left, p) >= 0.0 ? 1.0 : -1.0;
        x = f.a * (z1 - z2) * (z1 + z2) / (2.0 * c.z0);
        y = f.a * side * four_area / (2.0 * c.z0);
        return M::reduce_ok(d) & M::sincos_ok(lat) & M::sincos_ok(L) & M::atan2_ok(sa, ca) & M::atan2_ok(sb, cb);
    }

    template <class M>
    static OX_ALWAYS_INLINE bool inverse(const Frame &f, const Constants &c, double x, double y, double &lon,
                                         double &lat) {
        const double xs = x / f.a, ys = y / f.a, half = 0.5 * c.z0;
        const double u1 = xs + half, u2 = xs - half, y2 = ys * ys;
        const double z1 = M::sqrt(u1 * u1 + y2), z2 = M::sqrt(u2 * u2 + y2);
        const double s = 0.5 * (c.z0 + z1 + z2);
        // s - z0, s - z1, s - z2 as sums of non-negative terms (z0 = u1 -
        // u2, z1 - z2 = z0 (u1 + u2) / (z1 + z2)), with h + u and h - u
        // (h = hypot(u, y)) each taken without cancellation: exact where the
        // triangle is a needle (the point near the great circle through A
        // and B), where the plain differences would lose half the digits.
        const double p1 = u1 >= 0.0 ? z1 + u1 : y2 / (z1 - u1), m1 = u1 <= 0.0 ? z1 - u1 : y2 / (z1 + u1);
        const double p2 = u2 >= 0.0 ? z2 + u2 : y2 / (z2 - u2), m2 = u2 <= 0.0 ? z2 - u2 : y2 / (z2 + u2);
        const double ratio = c.z0 / (2.0 * (z1 + z2));
        double s0, s1, s2, ss, unused;
        M::sincos(0.5 * (m1 + p2), s0, unused);
        M::sincos(ratio * (m1 + m2), s1, unused);
        M::sincos(ratio * (p1 + p2), s2, unused);
        M::sincos(s, ss, unused);
        // The plane triangle makes s - z_i >= 0; the sphere needs s <= pi.
        const bool reached = (s <= kPi * (1.0 + 1e-14)) & (z1 <= kPi) & (z2 <= kPi);
        const double num = M::sqrt(std::fmax(s0 * s1, 0.0)), den = M::sqrt(std::fmax(ss * s2, 0.0));
        const double alpha = 2.0 * M::atan2(num, den);
        const double azimuth = c.azimuth - (ys >= 0.0 ? alpha : -alpha);
        double sz, cz, saz, caz;
        M::sincos(z1, sz, cz);
        M::sincos(azimuth, saz, caz);
        double L, sp, cp;
        const bool ok = frame_position<M>(c.sin_a, c.cos_a, sz * saz, sz * caz, cz, L, lat, sp, cp);
        const double l = f.p.longitude_of_1st_point + L;
        lon = reached ? M::reduce(l) : failure_nan();
        return ok & M::sincos_ok(s) & M::atan2_ok(num, den) & M::sincos_ok(azimuth) & (M::reduce_ok(l) | !reached);
    }
};

// The hemisphere about the midpoint of the two points: the map is one to
// one on the whole globe, but its outline is the image of the arc between
// the points' antipodes (a slit, no ring of longitudes and latitudes), so
// the horizon is the half of the globe the map is drawn for.
OX_HORIZON_ROUTINE(TwoPointEquidistant::horizon) {
    (void)spheroid;
    double lon_mid = 0.0, lat_mid = 0.0;
    if (parameters != nullptr) {
        ParameterValues p;
        std::memcpy(&p, parameters, sizeof p);
        const double lon1 = p.longitude_of_1st_point, lat1 = latitude_parameter(p.latitude_of_1st_point());
        const Vector a = unit(0.0, lat1), b = unit(ox_delta(p.longitude_of_2nd_point - lon1),
                                                  latitude_parameter(p.latitude_of_2nd_point()));
        const Vector m = {a.x + b.x, a.y + b.y, a.z + b.z};
        const double h = std::hypot(m.x, m.y);
        if (std::isfinite(lon1) && (h > 0.0 || m.z != 0.0)) {
            lon_mid = lon1 + std::atan2(m.y, m.x);
            lat_mid = std::atan2(m.z, h);
        }
    }
    if (!(std::isfinite(lon_mid) && std::isfinite(lat_mid))) lon_mid = lat_mid = 0.0;
    return horizon_circle(lon_mid, lat_mid, kHalfPi - 1e-6, max_vertices, vertices);
}

}  // namespace
}  // namespace ox

OX_DEFINE_PROJECTION(TwoPointEquidistant)
