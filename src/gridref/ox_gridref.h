// What the grid-reference conversions (GEOREF, MGRS) share: the frame of a
// geographic system, the decimal writer of references, and the universal
// polar stereographic projection of MGRS beyond the UTM latitudes.
#pragma once

#include <cstdint>

#include "ox.h"

namespace ox {

// What a conversion needs of a geographic system: degrees per angular unit
// (exactly 1 for a unit within 1e-12 of the degree, such as the 16-digit
// factor 0.0174532925199433 of object strings, so that degrees convert
// exactly), the prime meridian east of Greenwich and the spheroid.
struct GeogFrame {
    double degrees;             // degrees per angular unit
    double primem;              // degrees east of Greenwich
    double a;                   // semi-major axis, metres
    double e2;                  // first eccentricity squared
    double inverse_flattening;  // 0 for a sphere
};

// The frame of `geogcs`; false for a null or wrong-typed handle or a unit or
// spheroid that no conversion can use.
bool geog_frame(const ox_object *geogcs, GeogFrame *frame);

// The start of every encoder: each reference set to "" (null entries
// skipped); false when there is no array to write into (n < 1 or null).
bool clear_references(int32_t n, char **refs);
// The start of every decoder: each coordinate set to the failure value;
// false when there is no array to write into (n < 1 or null).
bool clear_coordinates(int32_t n, double *coords);

// Writes `value` in decimal with at least `width` digits (leading zeros) and
// returns the end (no terminator written).
char *put_decimal(char *out, uint64_t value, int width);

// The universal polar stereographic projection (UPS): the polar
// stereographic projection on the ellipsoid, IOGP Guidance Note 7-2 method
// 9810 (variant A), with the natural origin at the pole, the scale factor
// 0.994 and false easting and northing 2 000 000 m.
struct UpsConstants {
    double e2;
    double radius;  // 2 a k0 / sqrt((1 + e)^(1 + e) (1 - e)^(1 - e))
};
void ups_constants(double a, double e2, UpsConstants *c);
// Radians (longitude from Greenwich, latitude of the pole's hemisphere) to
// easting and northing in metres.
void ups_forward(const UpsConstants &c, bool north, double lon, double lat, double *easting, double *northing);
// Easting and northing in metres to radians (longitude in [-pi, pi]).
void ups_inverse(const UpsConstants &c, bool north, double easting, double northing, double *lon, double *lat);

}  // namespace ox
