// GEOREF, the World Geographic Reference System: four letters (15-degree
// longitude zone from 180 W, 15-degree latitude band from 90 S, then the
// 1-degree steps within them) and equal numbers of longitude-minute and
// latitude-minute digits.
#include <cmath>
#include <cstdint>
#include <cstring>

#include "gridref/ox_gridref.h"
#include "object/ox_object.h"

namespace ox {

namespace {

constexpr char kZones[] = "ABCDEFGHJKLMNPQRSTUVWXYZ";  // 24 longitude zones
constexpr char kBands[] = "ABCDEFGHJKLM";              // 12 latitude bands
constexpr char kDegrees[] = "ABCDEFGHJKLMNPQ";         // 15 one-degree steps
constexpr int kLastZone = 23;
constexpr int kLastBand = 11;
constexpr int kLastDegree = 14;
constexpr int kMinDigits = 2;
constexpr int kMaxDigits = 9;
constexpr int kMaxReadDigits = 18;  // both axes together, at most
constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
// The minute scale of h digits per axis, 10^(2 - h), for h = 0..9.
constexpr double kMinuteScale[] = {1e2, 1e1, 1e0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7};

// Index of `c` in `set`, or -1 (the terminator never matches).
int index_in(const char *set, char c) {
    if (c == '\0') return -1;
    const char *p = std::strchr(set, c);
    return p == nullptr ? -1 : static_cast<int>(p - set);
}

// One axis of a reference: the 15-degree division, the degree within it,
// the whole minutes and the fraction of the minute scaled to p digits.
struct Axis {
    int major;
    int degree;
    int whole;
    int fraction;
};

// The zone (or band), degree and whole minutes of v minutes.
void split_whole(Axis &a, double v, double whole, int last_major) {
    a.major = static_cast<int>(v / 900.0);
    if (a.major > last_major) a.major = last_major;
    a.degree = static_cast<int>((v - a.major * 900.0) / 60.0);
    if (a.degree > kLastDegree) a.degree = kLastDegree;
    a.whole = static_cast<int>(whole) - (a.major * 15 + a.degree) * 60;
}

// Splits v = minutes from the west (or south) edge, rounding offset added.
Axis split_axis(double v, int last_major, double scale) {
    Axis a;
    const double whole = std::trunc(v);
    split_whole(a, v, whole, last_major);
    // The fraction with a nudge of about one unit in the 15th significant
    // digit, 10^k, so that 29.999999999999996 minutes keeps its digits.
    double e = 0.0;
    if (std::fabs(v) > kZero) e = std::log10(v);
    int k = static_cast<int>(e);
    if (e <= 0.0) k -= 1;
    k -= 15;
    a.fraction = static_cast<int>((v - whole + std::pow(10.0, k)) * scale);
    if (scale > 1.0 && a.fraction >= scale) {
        // The nudge reached the next whole minute (v was within 10^k below
        // it): that minute, so that the fraction written keeps its p digits.
        // (Without decimals the fraction is not written and the whole
        // minutes stay truncated.)
        split_whole(a, whole + 1.0, whole + 1.0, last_major);
        a.fraction = 0;
    }
    return a;
}

// Appends "%02d" of the whole minutes and, for p > 0, "%0pd" of the fraction.
char *put_minutes(char *out, const Axis &a, int p) {
    out = put_decimal(out, static_cast<uint64_t>(a.whole), 2);
    if (p > 0) out = put_decimal(out, static_cast<uint64_t>(a.fraction), p);
    return out;
}

// Reads one reference; false when it is not one.
bool read_georef(const char *text, double *lon_deg, double *lat_deg) {
    if (text == nullptr) return false;
    size_t begin = 0, end = std::strlen(text);
    while (begin < end && text[begin] == ' ') ++begin;
    while (end > begin && text[end - 1] == ' ') --end;
    if (begin == end) return false;
    while (begin < end && index_in(kZones, text[begin]) < 0) ++begin;
    if (end - begin < 4) return false;
    const int zone = index_in(kZones, text[begin]);
    const int band = index_in(kBands, text[begin + 1]);
    const int lon_degree = index_in(kDegrees, text[begin + 2]);
    const int lat_degree = index_in(kDegrees, text[begin + 3]);
    if (zone < 0 || band < 0 || lon_degree < 0 || lat_degree < 0) return false;
    const char *digits = text + begin + 4;
    const size_t m = end - begin - 4;
    if (m % 2 != 0 || m > kMaxReadDigits) return false;
    for (size_t i = 0; i < m; ++i)
        if (digits[i] < '0' || digits[i] > '9') return false;
    const size_t h = m / 2;
    int64_t lon_minutes = 0, lat_minutes = 0;
    for (size_t i = 0; i < h; ++i) {
        lon_minutes = lon_minutes * 10 + (digits[i] - '0');
        lat_minutes = lat_minutes * 10 + (digits[h + i] - '0');
    }
    const double scale = kMinuteScale[h];
    *lon_deg = zone * 15 - 180 + lon_degree + static_cast<double>(lon_minutes) * scale / 60.0;
    *lat_deg = band * 15 - 90 + lat_degree + static_cast<double>(lat_minutes) * scale / 60.0;
    return true;
}

}  // namespace

}  // namespace ox

using namespace ox;

extern "C" OX_API int32_t ox_geog_to_georef(const ox_object *geogcs, int32_t n, const double *coords, int32_t digits,
                                            int32_t round, char **refs) {
    if (!clear_references(n, refs) || coords == nullptr || ox_geogcs_p(geogcs) == 0) return 0;
    const double unit = ox_unit_factor(ox_geogcs_unit(geogcs));
    if (digits < kMinDigits) digits = kMinDigits;
    if (digits > kMaxDigits) digits = kMaxDigits;
    const int p = digits - kMinDigits;
    const double scale = kPowersOfTen[p];
    const double r = round != 0 ? 0.5 / scale : 0.0;
    int32_t count = 0;
    for (int32_t i = 0; i < n; ++i) {
        char *out = refs[i];
        const double lon_rad = coords[2 * static_cast<size_t>(i)] * unit;
        const double lat_rad = coords[2 * static_cast<size_t>(i) + 1] * unit;
        if (out == nullptr || !std::isfinite(lon_rad) || !std::isfinite(lat_rad)) continue;
        const double lon = ox_delta(lon_rad) * kDegreesPerRadian;
        double lat = lat_rad * kDegreesPerRadian;
        if (std::fabs(lat) > 90.0) lat = std::copysign(90.0, lat);
        const Axis x = split_axis(lon * 60.0 + 10800.0 + r, kLastZone, scale);
        const Axis y = split_axis(lat * 60.0 + 5400.0 + r, kLastBand, scale);
        *out++ = kZones[x.major];
        *out++ = kBands[y.major];
        *out++ = kDegrees[x.degree];
        *out++ = kDegrees[y.degree];
        out = put_minutes(out, x, p);
        out = put_minutes(out, y, p);
        *out = '\0';
        ++count;
    }
    return count;
}

extern "C" OX_API int32_t ox_georef_to_geog(const ox_object *geogcs, int32_t n, char **refs, double *coords) {
    if (!clear_coordinates(n, coords) || refs == nullptr || ox_geogcs_p(geogcs) == 0) return 0;
    const double unit = ox_unit_factor(ox_geogcs_unit(geogcs));
    int32_t count = 0;
    for (int32_t i = 0; i < n; ++i) {
        double lon, lat;
        if (!read_georef(refs[i], &lon, &lat)) continue;
        coords[2 * static_cast<size_t>(i)] = lon * kRadiansPerDegree / unit;
        coords[2 * static_cast<size_t>(i) + 1] = lat * kRadiansPerDegree / unit;
        ++count;
    }
    return count;
}
