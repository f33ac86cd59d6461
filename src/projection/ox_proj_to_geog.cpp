// The inverse projection driver: projected coordinates in the system's
// linear unit to geographic coordinates in the units of its geographic
// coordinate system, optionally centred on a chosen longitude.
#include <cmath>
#include <cstddef>

#include "object/ox_object.h"
#include "projection/ox_math.h"
#include "projection/ox_pcsconstants.h"

extern "C" {

OX_API int32_t ox_proj_to_geog_center(ox_object *projcs, int32_t n, double *coords, double center) {
    if (coords == nullptr || n < 1) return 0;
    ox::ProjSetup s;
    ox::projcs_setup(projcs, &s);
    const ox_projection_routine inverse = ox_projection_inverse(ox_projcs_projection(projcs));
    const ox::PcsConstants *c = ox::projcs_constants_in_use(projcs, s);
    const size_t count = static_cast<size_t>(n);
    const double af = s.angular_factor;
    const double center_rad = center * af;

    // To metres about the natural origin.
    const double fe = s.parameters[0], fn = s.parameters[1], lf = s.linear_factor;
    for (size_t i = 0; i < count; ++i) {
        coords[2 * i] = coords[2 * i] * lf - fe;
        coords[2 * i + 1] = coords[2 * i + 1] * lf - fn;
    }

    const int32_t converted =
        inverse(s.spheroid, s.parameters, n, coords, c ? c->header : nullptr, c ? c->values : nullptr);

    // Back to the angular unit; longitudes about the centre when one is given.
    if (std::fabs(center_rad) <= ox::kZero) {
        for (size_t i = 0; i < count; ++i) {
            coords[2 * i] /= af;
            coords[2 * i + 1] /= af;
        }
    } else {
        for (size_t i = 0; i < count; ++i) {
            coords[2 * i] = ox_delta_center(coords[2 * i], center_rad) / af;
            coords[2 * i + 1] /= af;
        }
    }
    return converted;
}

OX_API int32_t ox_proj_to_geog(ox_object *projcs, int32_t n, double *coords) {
    return ox_proj_to_geog_center(projcs, n, coords, 0.0);
}

}  // extern "C"
