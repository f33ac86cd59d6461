// "Longitude_Rotation" (EPSG method 9601; IOGP Guidance Note 7-2, section
// 2.4.1): longitude = ox_delta(longitude + turn), latitude and height
// untouched.  The driver puts the turn into slot 5: the first system's
// prime meridian less the second's forward, the reverse for the inverse, so
// that forward and inverse are one routine.
//
// Refused: a turn that is not finite.
#include "transform/ox_methdef.h"

namespace ox {
namespace {

struct LongitudeRotation {
    static constexpr int32_t kCode = 9601;
    static constexpr const char *kName = "Longitude_Rotation";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;
    static constexpr ParameterSet kParameters = {};
    static constexpr MethodKind kKind = MethodKind::kMeridian;

    struct Constants {
        double turn;  // radians
    };
    static bool setup(const MethodFrame &f, Direction d, Constants &c) {
        (void)d;
        c.turn = f.p.longitude_rotation();
        return std::isfinite(c.turn);
    }
    template <class M>
    static OX_ALWAYS_INLINE bool point(const Constants &c, double lon, double lat, double h, double &lon_out,
                                       double &lat_out, double &h_out, bool &converted) {
        (void)converted;
        const double d = lon + c.turn;
        lon_out = M::reduce(d);
        lat_out = lat;
        h_out = h;
        return M::reduce_ok(d);
    }
};

}  // namespace

// One routine both ways.
extern const MethRow kMethodLongitudeRotation;
constinit const MethRow kMethodLongitudeRotation = [] {
    MethRow row = method_row<LongitudeRotation>();
    row.inverse = row.forward;
    row.inverse_units = row.forward_units;
    return row;
}();

}  // namespace ox
