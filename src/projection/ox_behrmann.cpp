// Behrmann: the cylindrical equal-area projection with its standard
// parallel at 30 degrees, on the ellipsoid (Behrmann, 1910; Snyder, Map
// Projections: A Working Manual, p. 76).  Its parameters are the false
// easting and northing and the central meridian; the constants are those of
// the cylindrical equal-area projection for phi1 = 30 degrees.
#include "projection/ox_projections.h"
#include "projection/ox_projmath.h"

namespace ox {

namespace {
constexpr int kSlotLon0 = 2;
constexpr double kBehrmannParallel = 0.5235987755982988;  // 30 degrees
}  // namespace

OX_CONSTANTS_ROUTINE(behrmann_constants) {
    (void)parameters;
    if (c == nullptr || spheroid == nullptr) return 0;
    double v[kCeaMaxConstants];
    const int32_t count = cea_values(spheroid, kBehrmannParallel, v);
    return count > 0 ? store_constants(c, v, count) : 0;
}

OX_UNITS_ROUTINE(behrmann_forward_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    return cea_forward_points(spheroid, parameters[kSlotLon0], kBehrmannParallel, constants_header, constants_values, n,
                              points, units);
}

OX_UNITS_ROUTINE(behrmann_inverse_units) {
    if (!routine_arguments_ok(spheroid, parameters, n, points)) return 0;
    return cea_inverse_points(spheroid, parameters[kSlotLon0], kBehrmannParallel, constants_header, constants_values, n,
                              points, units);
}

OX_PLAIN_ROUTINE(behrmann_forward)
OX_PLAIN_ROUTINE(behrmann_inverse)

}  // namespace ox
