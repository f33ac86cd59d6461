// "Geocentric_Translation" (EPSG method 9603; IOGP Guidance Note 7-2,
// section 2.4.3.1): through geocentric coordinates, X2 = X1 + (tx, ty, tz)
// from the first ellipsoid to the second, and X1 = X2 - (tx, ty, tz) back.
//
// Refused: an unusable ellipsoid (a not finite and positive, e2 not within
// (-1, 1)) or a translation that is not finite.
#include "transform/ox_geocentric.h"

namespace ox {
namespace {

struct GeocentricTranslation : Helmert {
    static constexpr int32_t kCode = 9603;
    static constexpr const char *kName = "Geocentric_Translation";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;
    static constexpr ParameterSet kParameters = parameter_sets::kTranslations;

    static bool setup(const MethodFrame &f, Direction d, Constants &c) {
        static constexpr double kIdentity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
        const double t[3] = {f.p.x_axis_translation, f.p.y_axis_translation, f.p.z_axis_translation};
        return ellipsoids(f, d, c) && affine(kIdentity, 0.0, t, d, c);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_METHOD(GeocentricTranslation)
