// The forward projection driver: geographic coordinates in the units of the
// system's geographic coordinate system to projected coordinates in its
// linear unit, through the projection routine of the system's projection.
#include <cmath>
#include <cstddef>

#include "object/ox_object.h"
#include "projection/ox_math.h"
#include "projection/ox_pcsconstants.h"

extern "C" OX_API int32_t ox_geog_to_proj(ox_object *projcs, int32_t n, double *coords) {
    if (coords == nullptr || n < 1) return 0;
    ox::ProjSetup s;
    ox::projcs_setup(projcs, &s);
    const ox_projection_routine forward = ox_projection_forward(ox_projcs_projection(projcs));
    const ox::PcsConstants *c = ox::projcs_constants_in_use(projcs, s);
    const size_t count = static_cast<size_t>(n);

    // To radians; latitudes beyond the poles are clamped to them.  The
    // longitude goes through the same select against an infinite bound, so
    // that both coordinates of a pair take the same operations and the loop
    // vectorises; a NaN passes through unchanged.
    const double af = s.angular_factor;
    const double lon_bound = HUGE_VAL, lat_bound = ox::kHalfPi;
    for (size_t i = 0; i < count; ++i) {
        const double lon = coords[2 * i] * af, lat = coords[2 * i + 1] * af;
        coords[2 * i] = std::fabs(lon) > lon_bound ? std::copysign(lon_bound, lon) : lon;
        coords[2 * i + 1] = std::fabs(lat) > lat_bound ? std::copysign(lat_bound, lat) : lat;
    }

    const int32_t converted =
        forward(s.spheroid, s.parameters, n, coords, c ? c->header : nullptr, c ? c->values : nullptr);

    // False easting and northing in metres, then the linear unit.  Failed
    // points stay NaN.
    const double fe = s.parameters[0], fn = s.parameters[1], lf = s.linear_factor;
    if (lf == 1.0) {
        if (fe != 0.0 || fn != 0.0)
            for (size_t i = 0; i < count; ++i) {
                coords[2 * i] += fe;
                coords[2 * i + 1] += fn;
            }
    } else {
        for (size_t i = 0; i < count; ++i) {
            coords[2 * i] = (coords[2 * i] + fe) / lf;
            coords[2 * i + 1] = (coords[2 * i + 1] + fn) / lf;
        }
    }
    return converted;
}
