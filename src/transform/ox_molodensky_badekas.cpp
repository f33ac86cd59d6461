// "Molodensky_Badekas" (EPSG method 9636, coordinate-frame rotations; IOGP
// Guidance Note 7-2, section 2.4.3.3): the seven-parameter transformation
// about a rotation origin P,
//     X2 = M (X1 - P) + P + T,   M = (1 + s) R,
// with R the exact coordinate-frame rotation matrix; P is folded into the
// translation once per call, T' = T + P - M P, so that X2 = M X1 + T', and
// the inverse is X1 = M^-1 (X2 - T') with the general inverse of R.
//
// Refused: an unusable ellipsoid, a parameter that is not finite, a scale
// difference of -1 or less.
#include "transform/ox_geocentric.h"

namespace ox {
namespace {

struct MolodenskyBadekas : Helmert {
    static constexpr int32_t kCode = 9636;
    static constexpr const char *kName = "Molodensky_Badekas";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;
    static constexpr ParameterSet kParameters = parameter_sets::kRotationOrigin;

    static bool setup(const MethodFrame &f, Direction d, Constants &c) {
        double r[9];
        coordinate_frame_rotation(f.p.x_axis_rotation, f.p.y_axis_rotation, f.p.z_axis_rotation, r);
        const double s = f.p.scale_difference;
        const double p[3] = {f.p.x_coordinate_of_rotation_origin, f.p.y_coordinate_of_rotation_origin,
                             f.p.z_coordinate_of_rotation_origin};
        const double t[3] = {f.p.x_axis_translation, f.p.y_axis_translation, f.p.z_axis_translation};
        double folded[3];
        for (int i = 0; i < 3; ++i) {
            const double mp = (1.0 + s) * r[3 * i] * p[0] + (1.0 + s) * r[3 * i + 1] * p[1] +
                              (1.0 + s) * r[3 * i + 2] * p[2];
            folded[i] = t[i] + p[i] - mp;
        }
        return ellipsoids(f, d, c) && affine(r, s, folded, d, c);
    }
};

}  // namespace
}  // namespace ox

OX_DEFINE_METHOD(MolodenskyBadekas)
