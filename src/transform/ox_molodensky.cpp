// "Molodensky" (EPSG method 9604) and "Molodensky_Abridged" (EPSG method
// 9605): shifts of latitude, longitude and height from the three
// translations and the differences of the ellipsoids, without geocentric
// coordinates (IOGP Guidance Note 7-2, section 2.4.4.2).  With p, l, h the
// latitude, longitude and height on the first ellipsoid (a, e2, f),
// M and N its radii of curvature at p, W = sqrt(1 - e2 sin^2 p),
// da = a2 - a and df = f2 - f:
//   standard:
//     dp = ((M / (1 - f) + (1 - f) N) sin p cos p df + tz cos p
//           - (sin l sin p ty + cos l sin p tx) + e2 sin p cos p / W da) / (M + h)
//     dl = (cos l ty - sin l tx) / ((N + h) cos p)
//     dh = tx cos p cos l + ty cos p sin l + tz sin p - W da
//          + df (1 - f) a / W sin^2 p
//   abridged, with K = f da + df a:
//     dp = (tz cos p - (cos l sin p tx + sin l sin p ty) + 2 K sin p cos p) / M
//     dl = (cos l ty - sin l tx) / (N cos p)
//     dh = sin l cos p ty + tx cos p cos l + tz sin p + K sin^2 p - da
// dl is 0 where |cos p| is 0 under the library's equality rule (the poles).
// The result is (p + dp clamped to the poles, ox_delta(l + dl), h + dh).
// The inverse is the forward with the two ellipsoids exchanged and the
// translations negated; it is not iterated, so a round trip differs by the
// method's own approximation (millimetres to decimetres).
//
// Refused: an unusable ellipsoid, a translation that is not finite.
#include "transform/ox_methdef.h"

namespace ox {
namespace {

struct MolodenskyConstants {
    double a, e2;
    double one_minus_f;  // 1 - f of the source ellipsoid
    double a_one_minus_e2;
    double da, df;
    double k;  // f da + df a (abridged)
    double tx, ty, tz;
};

struct MolodenskyCommon {
    static constexpr MethodKind kKind = MethodKind::kGeocentric;
    static constexpr ParameterSet kParameters = parameter_sets::kTranslations;
    using Constants = MolodenskyConstants;

    static bool setup(const MethodFrame &f, Direction d, Constants &c) {
        if (!usable_ellipsoid(f.a1, f.e2_1) || !usable_ellipsoid(f.a2, f.e2_2)) return false;
        const bool forward = d == Direction::kForward;
        const double sign = forward ? 1.0 : -1.0;
        c.a = forward ? f.a1 : f.a2;
        c.e2 = forward ? f.e2_1 : f.e2_2;
        const double a_to = forward ? f.a2 : f.a1, e2_to = forward ? f.e2_2 : f.e2_1;
        const double f_from = 1.0 - std::sqrt(1.0 - c.e2), f_to = 1.0 - std::sqrt(1.0 - e2_to);
        c.one_minus_f = 1.0 - f_from;
        c.a_one_minus_e2 = c.a * (1.0 - c.e2);
        c.da = a_to - c.a;
        c.df = f_to - f_from;
        c.k = f_from * c.da + c.df * c.a;
        c.tx = sign * f.p.x_axis_translation;
        c.ty = sign * f.p.y_axis_translation;
        c.tz = sign * f.p.z_axis_translation;
        return std::isfinite(c.tx) && std::isfinite(c.ty) && std::isfinite(c.tz);
    }

    // cos p is not 0 under the library's equality rule.
    static OX_ALWAYS_INLINE bool off_pole(double cp) {
        const double a = std::fabs(cp);
        return a > (a * 0.5 + 1.0) * kZero;
    }

    // The common finish: (p + dp clamped, ox_delta(l + dl), h + dh).
    template <class M>
    static OX_ALWAYS_INLINE bool finish(double lon, double lat, double h, double dl, double dp, double dh,
                                        double &lon_out, double &lat_out, double &h_out) {
        const double l = lon + dl;
        lon_out = M::reduce(l);
        lat_out = clamp_latitude(lat + dp);
        h_out = h + dh;
        return M::reduce_ok(l);
    }
};

struct Molodensky : MolodenskyCommon {
    static constexpr int32_t kCode = 9604;
    static constexpr const char *kName = "Molodensky";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;

    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &converted) {
        (void)converted;
        double sp, cp, sl, cl;
        M::sincos(lat, sp, cp);
        M::sincos(lon, sl, cl);
        const double w = M::sqrt(1.0 - c.e2 * sp * sp);
        const double n = c.a / w;
        const double m = c.a_one_minus_e2 / (w * w * w);
        const double dp = ((m / c.one_minus_f + c.one_minus_f * n) * sp * cp * c.df + c.tz * cp -
                           (sl * sp * c.ty + cl * sp * c.tx) + c.e2 * sp * cp / w * c.da) /
                          (m + h);
        const double dl = off_pole(cp) ? (cl * c.ty - sl * c.tx) / ((n + h) * cp) : 0.0;
        const double dh = c.tx * cp * cl + c.ty * cp * sl + c.tz * sp - w * c.da +
                          c.df * c.one_minus_f * c.a / w * sp * sp;
        const bool ok = M::sincos_ok(lat) & M::sincos_ok(lon);
        return finish<M>(lon, lat, h, dl, dp, dh, lon_out, lat_out, h_out) & ok;
    }
};

struct MolodenskyAbridged : MolodenskyCommon {
    static constexpr int32_t kCode = 9605;
    static constexpr const char *kName = "Molodensky_Abridged";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;

    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &converted) {
        (void)converted;
        double sp, cp, sl, cl;
        M::sincos(lat, sp, cp);
        M::sincos(lon, sl, cl);
        const double w = M::sqrt(1.0 - c.e2 * sp * sp);
        const double n = c.a / w;
        const double m = c.a_one_minus_e2 / (w * w * w);
        const double dp = (c.tz * cp - (cl * sp * c.tx + sl * sp * c.ty) + 2.0 * c.k * sp * cp) / m;
        const double dl = off_pole(cp) ? (cl * c.ty - sl * c.tx) / (n * cp) : 0.0;
        const double dh = sl * cp * c.ty + c.tx * cp * cl + c.tz * sp + c.k * sp * sp - c.da;
        const bool ok = M::sincos_ok(lat) & M::sincos_ok(lon);
        return finish<M>(lon, lat, h, dl, dp, dh, lon_out, lat_out, h_out) & ok;
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_METHOD(Molodensky)
OX_DEFINE_METHOD(MolodenskyAbridged)
