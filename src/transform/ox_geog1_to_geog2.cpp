// The forward transformation driver: points in the units and about the
// prime meridian of the transformation's first geographic system to its
// second, through the method's forward routine.
#include "transform/ox_geog_driver.h"

extern "C" OX_API int32_t ox_geog1_to_geog2(ox_object *geogtran, int32_t n, double *points, double *heights) {
    const ox::TransformCall call(geogtran, false);
    return call.run(n, points, heights);
}
