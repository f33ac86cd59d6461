// The frame of a geographic system for the grid-reference conversions and
// the decimal writer of references.
#include "gridref/ox_gridref.h"

#include <cmath>
#include <cstddef>

#include "object/ox_utils.h"

namespace ox {

bool geog_frame(const ox_object *geogcs, GeogFrame *frame) {
    if (ox_geogcs_p(geogcs) == 0) return false;
    const double unit = ox_unit_factor(ox_geogcs_unit(geogcs));
    const double primem = ox_primem_longitude(ox_geogcs_primem(geogcs));
    const ox_object *spheroid = ox_datum_spheroid(ox_geogcs_datum(geogcs));
    const double a = ox_spheroid_axis(spheroid);
    const double f = ox_spheroid_flattening(spheroid);
    if (!(std::isfinite(unit) && unit > 0.0) || !std::isfinite(primem) || !(std::isfinite(a) && a > 0.0) ||
        !(f >= 0.0 && f < 1.0))
        return false;
    const double degrees = unit * 57.29577951308232;
    frame->degrees = std::fabs(degrees - 1.0) < 1e-12 ? 1.0 : degrees;
    frame->primem = primem;
    frame->a = a;
    frame->e2 = f * (2.0 - f);
    frame->inverse_flattening = f > 0.0 ? 1.0 / f : 0.0;
    return true;
}

bool clear_references(int32_t n, char **refs) {
    if (n < 1 || refs == nullptr) return false;
    for (int32_t i = 0; i < n; ++i)
        if (refs[i] != nullptr) refs[i][0] = '\0';
    return true;
}

bool clear_coordinates(int32_t n, double *coords) {
    if (n < 1 || coords == nullptr) return false;
    const double nan = failure_nan();
    for (size_t i = 0; i < 2 * static_cast<size_t>(n); ++i) coords[i] = nan;
    return true;
}

char *put_decimal(char *out, uint64_t value, int width) {
    char digits[20];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    for (int i = count; i < width; ++i) *out++ = '0';
    while (count > 0) *out++ = digits[--count];
    return out;
}

}  // namespace ox
