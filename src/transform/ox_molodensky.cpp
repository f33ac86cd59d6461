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

    // The trigonometry and radii of the point on the source ellipsoid.
    struct Terms {
        double sp, cp, sl, cl;  // sines and cosines of latitude and longitude
        double w, n, m;         // W, N and M
    };

    // One point: the form's shifts (Form::shifts(c, t, h, dp, dl, dh)) from
    // the common terms, then (p + dp clamped, ox_delta(l + dl), h + dh).
    template <class Form, class M>
    static OX_ALWAYS_INLINE bool apply(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out) {
        Terms t;
        M::sincos(lat, t.sp, t.cp);
        M::sincos(lon, t.sl, t.cl);
        t.w = M::sqrt(1.0 - c.e2 * t.sp * t.sp);
        t.n = c.a / t.w;
        t.m = c.a_one_minus_e2 / (t.w * t.w * t.w);
        double dp, dl, dh;
        Form::shifts(c, t, h, dp, dl, dh);
        const double l = lon + dl;
        lon_out = M::reduce(l);
        lat_out = clamp_latitude(lat + dp);
        h_out = h + dh;
        return M::reduce_ok(l) & M::sincos_ok(lat) & M::sincos_ok(lon);
    }
};

struct Molodensky : MolodenskyCommon {
    static constexpr int32_t kCode = 9604;
    static constexpr const char *kName = "Molodensky";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;

    static OX_ALWAYS_INLINE void shifts(const Constants &c, const Terms &t, double h, double &dp, double &dl,
                                        double &dh) {
        dp = ((t.m / c.one_minus_f + c.one_minus_f * t.n) * t.sp * t.cp * c.df + c.tz * t.cp -
              (t.sl * t.sp * c.ty + t.cl * t.sp * c.tx) + c.e2 * t.sp * t.cp / t.w * c.da) /
             (t.m + h);
        dl = off_pole(t.cp) ? (t.cl * c.ty - t.sl * c.tx) / ((t.n + h) * t.cp) : 0.0;
        dh = c.tx * t.cp * t.cl + c.ty * t.cp * t.sl + c.tz * t.sp - t.w * c.da +
             c.df * c.one_minus_f * c.a / t.w * t.sp * t.sp;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &) {
        return apply<Molodensky, M>(c, lon, lat, h, lon_out, lat_out, h_out);
    }
};

struct MolodenskyAbridged : MolodenskyCommon {
    static constexpr int32_t kCode = 9605;
    static constexpr const char *kName = "Molodensky_Abridged";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;

    static OX_ALWAYS_INLINE void shifts(const Constants &c, const Terms &t, double, double &dp, double &dl,
                                        double &dh) {
        dp = (c.tz * t.cp - (t.cl * t.sp * c.tx + t.sl * t.sp * c.ty) + 2.0 * c.k * t.sp * t.cp) / t.m;
        dl = off_pole(t.cp) ? (t.cl * c.ty - t.sl * c.tx) / (t.n * t.cp) : 0.0;
        dh = t.sl * t.cp * c.ty + c.tx * t.cp * t.cl + c.tz * t.sp + c.k * t.sp * t.sp - c.da;
    }

    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &) {
        return apply<MolodenskyAbridged, M>(c, lon, lat, h, lon_out, lat_out, h_out);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_METHOD(Molodensky)
OX_DEFINE_METHOD(MolodenskyAbridged)
