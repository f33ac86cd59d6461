// The inverse transformation driver: points of the transformation's second
// geographic system to its first, through the method's inverse routine.
#include "transform/ox_geog_driver.h"

extern "C" OX_API int32_t ox_geog2_to_geog1(ox_object *geogtran, int32_t n, double *points, double *heights) {
    const ox::TransformCall call(geogtran, true);
    return call.run(n, points, heights);
}
