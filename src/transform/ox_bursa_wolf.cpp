// "Bursa_Wolf" (the library's code 109607), registered again as
// "Coordinate_Frame" (EPSG method 9607), and "Position_Vector" (EPSG method
// 9606): the seven-parameter transformation through geocentric coordinates
// (IOGP Guidance Note 7-2, section 2.4.3.2),
//     X2 = (1 + s) R X1 + T,   R = Rz(rz) Ry(ry) Rx(rx)
// with the exact rotation matrix of the coordinate-frame convention
// (positive angles turn the axes); the inverse is
//     X1 = R^-1 / (1 + s) (X2 - T)
// with the general inverse of R.  The position vector convention turns the
// point instead: it is the same definition with the three angles negated.
//
// Refused: an unusable ellipsoid, a parameter that is not finite, a scale
// difference of -1 or less (1 + s not positive).
#include "transform/ox_geocentric.h"

namespace ox {
namespace {

struct BursaWolf : Helmert {
    static constexpr int32_t kCode = 109607;
    static constexpr const char *kName = "Bursa_Wolf";
    static constexpr const char *kAuthority = kMavo;
    static constexpr const char *kAuthorityVersion = kMavoVersion;
    static constexpr ParameterSet kParameters = parameter_sets::kSevenParameters;

    // `sign` is +1 for the coordinate frame, -1 for the position vector.
    static bool setup_signed(const MethodFrame &f, Direction d, double sign, Constants &c) {
        double r[9];
        coordinate_frame_rotation(sign * f.p.x_axis_rotation, sign * f.p.y_axis_rotation, sign * f.p.z_axis_rotation,
                                  r);
        const double t[3] = {f.p.x_axis_translation, f.p.y_axis_translation, f.p.z_axis_translation};
        return ellipsoids(f, d, c) && affine(r, f.p.scale_difference, t, d, c);
    }
    static bool setup(const MethodFrame &f, Direction d, Constants &c) { return setup_signed(f, d, 1.0, c); }
};

struct PositionVector : BursaWolf {
    static constexpr int32_t kCode = 9606;
    static constexpr const char *kName = "Position_Vector";
    static constexpr const char *kAuthority = kEpsg;
    static constexpr const char *kAuthorityVersion = kEpsgVersion;
    static bool setup(const MethodFrame &f, Direction d, Constants &c) { return setup_signed(f, d, -1.0, c); }
};

}  // namespace

// "Coordinate_Frame" is the Bursa-Wolf computation under the registry's
// code and name: the very same routines.
extern const MethRow kMethodBursaWolf, kMethodCoordinateFrame;
constinit const MethRow kMethodBursaWolf = method_row<BursaWolf>();
constinit const MethRow kMethodCoordinateFrame =
    method_row<BursaWolf>(9607, kEpsg, kEpsgVersion, "Coordinate_Frame");

}  // namespace ox

OX_DEFINE_METHOD(PositionVector)
