// MGRS, the Military Grid Reference System (NGA.STND.0037 and DMA TM
// 8358.1): a grid zone (UTM zone number and 8-degree latitude band letter,
// or one UPS letter), the letters of a 100 km square and equal numbers of
// easting and northing digits within it.
//
// UTM (80 S to 84 N): 6-degree zones with the Norway (32V: 3-12 E) and
// Svalbard (31X, 33X, 35X, 37X: 9 and 12 degrees wide) exceptions, the
// transverse Mercator with k0 = 0.9996, false easting 500 km and false
// northing 10 000 km south of the equator, through the library's
// "Transverse_Mercator_Complex" projection (Krueger's series, nanometre
// accuracy across the wide Svalbard zones).  Square columns: the letters
// A-Z without I and O in three sets of eight (zone mod 3), from 100 km
// easting.  Square rows: A-V without I and O repeating every 2000 km
// northward, from "A" at the equator in odd zones and "F" in even ones; the
// older lettering (used with the Bessel and Clarke spheroids) starts ten
// letters further, at "L" and "R".  Decoding takes the row cycle from the
// band (the cycle whose rows reach the band) and refuses squares that lie
// outside their zone or band.
//
// UPS (beyond): the polar stereographic projection with k0 = 0.994
// (ox_ups.cpp), the zone letters A, B (south, west and east of the 0/180
// meridian), Y, Z (north) and their own column and row letters.
//
// A point is projected once per call, in blocks, with all the UTM points of
// a block in one call of the projection routine: longitudes are taken about
// their own zone's central meridian, so that one routine with its central
// meridian at 0 serves every zone.
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gridref/ox_gridref.h"
#include "projection/ox_math.h"

namespace ox {

namespace {

constexpr char kLetters[] = "ABCDEFGHJKLMNPQRSTUVWXYZ";  // A-Z without I and O
constexpr char kBands[] = "CDEFGHJKLMNPQRSTUVWX";        // 8 degrees each from 80 S (X: 12)
constexpr char kRows[] = "ABCDEFGHJKLMNPQRSTUV";         // UTM rows, a 2000 km cycle
constexpr int kRowCycle = 20;
constexpr int kColumnsPerSet = 8;
constexpr int kBandCount = 20;
constexpr int kBandX = 19;
constexpr int kBandV = 17;
constexpr int kFirstNorthernBand = 10;  // "N"
constexpr int kZoneCount = 60;

// The UPS zones: letter, hemisphere, column letters and the 100 km index of
// the first, row letters and the index of the first.
struct UpsZone {
    char letter;
    bool north;
    const char *columns;
    int first_column;
    const char *rows;
    int first_row;
};
constexpr UpsZone kUpsZones[4] = {
    {'A', false, "JKLPQRSTUXYZ", 8, "ABCDEFGHJKLMNPQRSTUVWXYZ", 8},
    {'B', false, "ABCFGHJKLPQR", 20, "ABCDEFGHJKLMNPQRSTUVWXYZ", 8},
    {'Y', true, "RSTUXYZ", 13, "ABCDEFGHJKLMNP", 13},
    {'Z', true, "ABCFGHJ", 20, "ABCDEFGHJKLMNP", 13},
};

constexpr double kUtmScale = 0.9996;
constexpr double kUtmFalseEasting = 500000.0;
constexpr double kUtmFalseNorthingSouth = 10000000.0;
constexpr double kUpsScale = 0.994;
constexpr double kUpsFalseOrigin = 2000000.0;
constexpr double kSquare = 100000.0;
constexpr double kSouthLimit = -80.0;  // degrees: UTM from here
constexpr double kNorthLimit = 84.0;   // degrees: UPS from here
constexpr int kMaxDigits = 11;         // per axis: micrometres
constexpr int kBlock = 128;            // points projected per routine call
constexpr double kLetteringTolerance[2] = {0.001, 1e-5};  // metres, inverse flattening

constexpr int32_t kLetteringMask = 0xF;
constexpr double kDegreesPerRadian = 57.29577951308232;

// The spheroids whose 100 km squares carry the older lettering (DMA TM
// 8358.1): semi-major axis in metres and inverse flattening.
struct OlderSpheroid {
    double a, rf;
};
constexpr OlderSpheroid kOlderLettering[] = {
    {6377397.155, 299.1528128},               // Bessel 1841
    {6377483.865, 299.1528128},               // Bessel Namibia
    {6378206.4, 294.97869821390583},          // Clarke 1866
    {6378249.145, 293.465},                   // Clarke 1880 (RGS)
    {6378249.145, 293.4663077},               // Clarke 1880 (Arc)
    {6378249.144808011, 293.46630765562986},  // Clarke 1880
    {6378249.2, 293.4660212936294},           // Clarke 1880 (IGN)
    {6378249.2, 293.46598},                   // Clarke 1880 (SGA 1922)
    {6378300.789, 293.466315538985},          // Clarke 1880 (Benoit)
    {6378306.3696, 293.46630765562986},       // Clarke 1880 (international foot)
};

bool older_lettering_spheroid(const GeogFrame &f) {
    for (const OlderSpheroid &s : kOlderLettering)
        if (std::fabs(f.a - s.a) <= kLetteringTolerance[0] &&
            std::fabs(f.inverse_flattening - s.rf) <= kLetteringTolerance[1])
            return true;
    return false;
}

// Whether a mode is acceptable (a known lettering, only the flags allowed),
// and the lettering it selects for the frame.
bool lettering_of(int32_t mode, int32_t allowed_flags, const GeogFrame &f, bool *older) {
    if ((mode & ~(kLetteringMask | allowed_flags)) != 0) return false;
    switch (mode & kLetteringMask) {
        case OX_MGRS_LETTERING_AUTO:
            *older = older_lettering_spheroid(f);
            return true;
        case OX_MGRS_LETTERING_CURRENT:
            *older = false;
            return true;
        case OX_MGRS_LETTERING_OLDER:
            *older = true;
            return true;
        default:
            return false;
    }
}

// The row letter of the 100 km row 0 (the equator) in a zone.
int row_offset(int zone, bool older) { return (zone % 2 == 0 ? 5 : 0) + (older ? 10 : 0); }

int index_in(const char *set, char c) {
    if (c == '\0') return -1;
    const char *p = std::strchr(set, c);
    return p == nullptr ? -1 : static_cast<int>(p - set);
}

// The transverse Mercator routines of the library (constants of the
// registry: looked up once and kept; a failed look-up is retried).
ox_projection_routine tm_routine(bool inverse) {
    static std::atomic<ox_projection_routine> cached[2];
    ox_projection_routine r = cached[inverse].load(std::memory_order_acquire);
    if (r != nullptr) return r;
    ox_object *projection = ox_projection_new("Transverse_Mercator_Complex", nullptr, nullptr, nullptr);
    if (projection == nullptr) return nullptr;
    r = inverse ? ox_projection_inverse(projection) : ox_projection_forward(projection);
    ox_projection_del(projection);
    cached[inverse].store(r, std::memory_order_release);
    return r;
}

// The UTM projection of a spheroid with its central meridian at 0: the
// routine's spheroid and parameters.
struct Utm {
    double spheroid[2];
    double parameters[OX_PARAMETER_SLOTS];
};
constexpr int kSlotScale = 5;

void utm_setup(const GeogFrame &f, Utm *u) {
    u->spheroid[0] = f.a;
    u->spheroid[1] = f.e2;
    for (double &p : u->parameters) p = 0.0;
    u->parameters[kSlotScale] = kUtmScale;
}

// Zone and band of a point in degrees (longitude in [-180, 180), latitude
// in [-80, 84)) with the Norway and Svalbard exceptions.
void utm_zone(double lon, double lat, int *zone, int *band) {
    int b = static_cast<int>(std::floor((lat - kSouthLimit) / 8.0));
    if (b > kBandX) b = kBandX;
    if (b < 0) b = 0;
    int z = static_cast<int>(std::floor((lon + 180.0) / 6.0)) + 1;
    if (z > kZoneCount) z = kZoneCount;
    if (z < 1) z = 1;
    if (b == kBandV && lon >= 0.0 && lon < 12.0) z = lon < 3.0 ? 31 : 32;
    if (b == kBandX && lon >= 0.0 && lon < 42.0) z = lon < 9.0 ? 31 : lon < 21.0 ? 33 : lon < 33.0 ? 35 : 37;
    *zone = z;
    *band = b;
}

double central_meridian(int zone) { return zone * 6.0 - 183.0; }

// The longitudes of a zone in a band about its central meridian, degrees;
// false for the zones that do not exist (32X, 34X, 36X).
bool zone_extent(int zone, int band, double *west, double *east) {
    double w = -3.0, e = 3.0;
    if (band == kBandV && (zone == 31 || zone == 32)) {
        w = zone == 31 ? -3.0 : -6.0;
        e = zone == 31 ? 0.0 : 3.0;
    } else if (band == kBandX && zone >= 31 && zone <= 37) {
        if (zone % 2 == 0) return false;
        w = zone == 31 ? -3.0 : -6.0;
        e = zone == 37 ? 3.0 : 6.0;
    }
    *west = w;
    *east = e;
    return true;
}

double reduce_degrees(double lon) {
    if (lon >= -180.0 && lon < 180.0) return lon;
    double r = std::remainder(lon, 360.0);  // exact, in [-180, 180]
    if (r >= 180.0) r -= 360.0;
    return r;
}

// 10^k as an exact double, k = 0..11.
constexpr double kPow10[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11};
constexpr int64_t kPow10Int[] = {1,         10,         100,         1000,         10000,         100000,
                                 1000000,   10000000,   100000000,   1000000000,   10000000000,   100000000000};

// A coordinate in metres as a count of units of the precision (digits per
// axis), truncated or rounded.
int64_t to_units(double metres, int digits, bool round) {
    const double v = digits <= 5 ? metres / kPow10[5 - digits] : metres * kPow10[digits - 5];
    return static_cast<int64_t>(std::floor(round ? v + 0.5 : v));
}

// Metres of a count of units of the precision.
double from_units(int64_t units, int digits) {
    return digits <= 5 ? static_cast<double>(units) * kPow10[5 - digits]
                       : static_cast<double>(units) / kPow10[digits - 5];
}

// A point ready to be written: its grid zone and its grid coordinates.
struct GridPoint {
    bool ups;
    int zone;  // UTM zone, or the index of the UPS zone
    int band;
    double easting, northing;
};

// The square column and row indices (100 km units) and the digits of a grid
// point at a precision; false when the square has no letters.
bool square_of(const GridPoint &g, int digits, bool round, int64_t *column, int64_t *row, int64_t *e_digits,
               int64_t *n_digits) {
    const int64_t per_square = kPow10Int[digits];
    for (int attempt = round ? 0 : 1; attempt < 2; ++attempt) {
        // (a rounded value whose square has no letters is written truncated)
        const bool r = attempt == 0;
        const int64_t e = to_units(g.easting, digits, r), n = to_units(g.northing, digits, r);
        if (e < 0 || n < 0) continue;
        const int64_t col = e / per_square, rw = n / per_square;
        bool ok;
        if (g.ups) {
            const UpsZone &z = kUpsZones[g.zone];
            ok = col >= z.first_column && col < z.first_column + static_cast<int64_t>(std::strlen(z.columns)) &&
                 rw >= z.first_row && rw < z.first_row + static_cast<int64_t>(std::strlen(z.rows));
        } else {
            ok = col >= 1 && col <= kColumnsPerSet;
        }
        if (!ok) continue;
        *column = col;
        *row = rw;
        *e_digits = e % per_square;
        *n_digits = n % per_square;
        return true;
    }
    return false;
}

// Writes the reference of a grid point; false (nothing written) when it has none.
bool write_reference(const GridPoint &g, int digits, bool round, bool older, bool spaces, char *out) {
    int64_t col, row, e_digits, n_digits;
    if (!square_of(g, digits, round, &col, &row, &e_digits, &n_digits)) return false;
    if (g.ups) {
        const UpsZone &z = kUpsZones[g.zone];
        *out++ = z.letter;
        if (spaces) *out++ = ' ';
        *out++ = z.columns[col - z.first_column];
        *out++ = z.rows[row - z.first_row];
    } else {
        out = put_decimal(out, static_cast<uint64_t>(g.zone), 2);
        *out++ = kBands[g.band];
        if (spaces) *out++ = ' ';
        *out++ = kLetters[((g.zone - 1) % 3) * kColumnsPerSet + static_cast<int>(col) - 1];
        *out++ = kRows[(row + row_offset(g.zone, older)) % kRowCycle];
    }
    if (digits > 0) {
        if (spaces) *out++ = ' ';
        out = put_decimal(out, static_cast<uint64_t>(e_digits), digits);
        if (spaces) *out++ = ' ';
        out = put_decimal(out, static_cast<uint64_t>(n_digits), digits);
    }
    *out = '\0';
    return true;
}

// ---------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------

// A reference as read: grid zone, square letters and digits.
struct Parsed {
    bool ups;
    int zone;  // UTM zone or UPS zone index
    int band;
    char column, row;
    int digits;
    int64_t e_digits, n_digits;
};

const char *skip_spaces(const char *s) {
    while (*s == ' ') ++s;
    return s;
}

// Reads a run of digits (at most `limit`); its length, or -1 when longer.
int digit_run(const char *&s, int limit) {
    int count = 0;
    while (*s >= '0' && *s <= '9') {
        if (++count > limit) return -1;
        ++s;
    }
    return count;
}

int64_t digits_value(const char *s, int count) {
    int64_t v = 0;
    for (int i = 0; i < count; ++i) v = v * 10 + (s[i] - '0');
    return v;
}

bool parse_reference(const char *text, Parsed *p) {
    if (text == nullptr) return false;
    const char *s = skip_spaces(text);
    const char *zone_text = s;
    const int zone_digits = digit_run(s, 2);
    if (zone_digits < 0) return false;
    if (zone_digits > 0) {
        const int64_t zone = digits_value(zone_text, zone_digits);
        if (zone < 1 || zone > kZoneCount) return false;
        p->ups = false;
        p->zone = static_cast<int>(zone);
        p->band = index_in(kBands, *s);
        if (p->band < 0) return false;
    } else {
        p->ups = true;
        p->band = 0;
        p->zone = index_in("ABYZ", *s);
        if (p->zone < 0) return false;
    }
    s = skip_spaces(s + 1);
    if (index_in(kLetters, s[0]) < 0 || index_in(kLetters, s[1]) < 0) return false;
    p->column = s[0];
    p->row = s[1];
    s = skip_spaces(s + 2);
    // The digits: one run of 2d, or two runs of d separated by spaces.
    const char *first = s;
    const int n1 = digit_run(s, 2 * kMaxDigits);
    if (n1 < 0) return false;
    const char *after = skip_spaces(s);
    if (after != s && *after >= '0' && *after <= '9') {
        const char *second = after;
        s = after;
        const int n2 = digit_run(s, kMaxDigits);
        if (n2 < 0 || n2 != n1) return false;
        p->digits = n1;
        p->e_digits = digits_value(first, n1);
        p->n_digits = digits_value(second, n2);
    } else {
        if (n1 % 2 != 0) return false;
        p->digits = n1 / 2;
        p->e_digits = digits_value(first, p->digits);
        p->n_digits = digits_value(first + p->digits, p->digits);
    }
    s = skip_spaces(s);
    return *s == '\0';
}

// The square of a reference in grid metres: the south-west corner, before
// the row cycle of UTM is resolved (UTM northings are then modulo 2000 km).
// False when the zone has no such square letters.
bool square_corner(const Parsed &p, bool older, double *easting, double *northing) {
    const double e_in = from_units(p.e_digits, p.digits), n_in = from_units(p.n_digits, p.digits);
    if (p.ups) {
        const UpsZone &z = kUpsZones[p.zone];
        const int col = index_in(z.columns, p.column), row = index_in(z.rows, p.row);
        if (col < 0 || row < 0) return false;
        *easting = (z.first_column + col) * kSquare + e_in;
        *northing = (z.first_row + row) * kSquare + n_in;
        return true;
    }
    if (p.band == kBandX && p.zone >= 32 && p.zone <= 36 && p.zone % 2 == 0) return false;
    const int set = (p.zone - 1) % 3;
    const int col = index_in(kLetters, p.column) - set * kColumnsPerSet + 1;
    const int row = index_in(kRows, p.row);
    if (col < 1 || col > kColumnsPerSet || row < 0) return false;
    *easting = col * kSquare + e_in;
    *northing = ((row - row_offset(p.zone, older) + 2 * kRowCycle) % kRowCycle) * kSquare + n_in;
    return true;
}

// The southernmost latitude of a band, degrees.
double band_south(int band) { return kSouthLimit + 8.0 * band; }
double band_north(int band) { return band == kBandX ? kNorthLimit : kSouthLimit + 8.0 * (band + 1); }

// Per call: the first 100 km row of each band's cycle, computed when first
// needed (the band's southern parallel on the central meridian, less a
// margin for the parallel's curve across the zone; the rows that reach the
// band lie within 1500 km above it).
struct BandRows {
    double a, e2;
    int64_t first[kBandCount];
    bool known[kBandCount] = {};

    int64_t operator()(int band) {
        if (!known[band]) {
            const double phi = band_south(band) * kDegree;
            const double fn = band < kFirstNorthernBand ? kUtmFalseNorthingSouth : 0.0;
            first[band] = static_cast<int64_t>(std::floor((kUtmScale * ox_q(a, e2, phi) + fn - 20000.0) / kSquare));
            known[band] = true;
        }
        return first[band];
    }
};

// Whether a square lies well inside the latitudes [south, north] and the
// longitudes [west, east] (degrees, longitudes from the central meridian),
// seen from one of its points at (lat, dlon), every point of the square
// being within `reach` metres of it on the ground: `reach` as an angle of
// latitude on the smallest meridian radius a (1 - e2), and of longitude on
// the parallel nearest the pole that the square may reach.
bool well_inside(const GeogFrame &f, double reach, double lat, double dlon, double south, double north, double west,
                 double east) {
    const double dlat = reach / (f.a * (1.0 - f.e2)) * kDegreesPerRadian;
    if (!(lat - dlat > south && lat + dlat < north)) return false;
    const double far = std::fmin(std::fabs(lat) + dlat, 89.9) * kDegree;
    const double dl = reach / (f.a * std::cos(far)) * kDegreesPerRadian;
    return dlon - dl > west && dlon + dl < east;
}

// Whether a square whose four corners are at `corners` ((longitude from the
// central meridian, latitude) pairs in radians) covers some of the latitudes
// [south, north] and longitudes [west, east] (degrees).  Within a zone the
// extreme latitudes and longitudes of a square are at its corners: its
// sides are grid lines, along which both change monotonically on either
// side of the central meridian, and no square straddles it.
bool corners_reach(const double *corners, double south, double north, double west, double east) {
    constexpr double kSlack = 1e-9;  // degrees: a square that only touches an edge does not reach
    double lat_min = 90.0, lat_max = -90.0, lon_min = 180.0, lon_max = -180.0;
    for (int k = 0; k < 4; ++k) {
        const double lon = corners[2 * k] * kDegreesPerRadian, lat = corners[2 * k + 1] * kDegreesPerRadian;
        if (!std::isfinite(lon) || !std::isfinite(lat)) return false;
        lat_min = std::fmin(lat_min, lat);
        lat_max = std::fmax(lat_max, lat);
        lon_min = std::fmin(lon_min, lon);
        lon_max = std::fmax(lon_max, lon);
    }
    return lat_max > south + kSlack && lat_min < north - kSlack && lon_max > west + kSlack && lon_min < east - kSlack;
}

// Whether a UPS square [e, e + size] x [n, n + size] comes nearer the pole
// than `limit` metres (the polar cap: within 84 N or beyond 80 S).
bool ups_square_reaches(double e, double n, double size, double limit) {
    constexpr double kSlack = 1e-6;  // metres
    const double x = std::fmin(std::fmax(kUpsFalseOrigin, e), e + size) - kUpsFalseOrigin;
    const double y = std::fmin(std::fmax(kUpsFalseOrigin, n), n + size) - kUpsFalseOrigin;
    return std::sqrt(x * x + y * y) < limit - kSlack;
}

double cell_size(int digits) { return kPow10[5] / kPow10[digits]; }

// ---------------------------------------------------------------------------
// The conversions, a block of points at a time.
// ---------------------------------------------------------------------------

int32_t encode(const ox_object *geogcs, int32_t n, const double *coords, int32_t digits, int32_t round, int32_t mode,
               char **refs) {
    GeogFrame f;
    bool older = false;
    if (!clear_references(n, refs) || coords == nullptr || !geog_frame(geogcs, &f) || !lettering_of(mode, OX_MGRS_SPACES, f, &older)) return 0;
    const ox_projection_routine forward = tm_routine(false);
    if (forward == nullptr) return 0;
    if (digits < 0) digits = 0;
    if (digits > kMaxDigits) digits = kMaxDigits;
    const bool spaces = (mode & OX_MGRS_SPACES) != 0;
    Utm utm;
    utm_setup(f, &utm);
    UpsConstants ups;
    ups_constants(f.a, f.e2, &ups);

    int32_t count = 0;
    GridPoint grid[kBlock];
    bool usable[kBlock];
    double points[2 * kBlock];
    int utm_of[kBlock];
    for (int32_t start = 0; start < n; start += kBlock) {
        const int m = n - start < kBlock ? static_cast<int>(n - start) : kBlock;
        int utm_count = 0;
        for (int j = 0; j < m; ++j) {
            const size_t i = static_cast<size_t>(start) + static_cast<size_t>(j);
            const double lat = coords[2 * i + 1] * f.degrees;
            double lon = coords[2 * i] * f.degrees + f.primem;
            usable[j] = refs[i] != nullptr && std::isfinite(lat) && std::isfinite(lon) && std::fabs(lat) <= 90.0;
            if (!usable[j]) continue;
            lon = reduce_degrees(lon);
            GridPoint &g = grid[j];
            if (lat < kSouthLimit || lat >= kNorthLimit) {
                g.ups = true;
                const bool north = lat >= kNorthLimit;
                ups_forward(ups, north, lon * kDegree, lat * kDegree, &g.easting, &g.northing);
                g.zone = (north ? 2 : 0) + (g.easting < kUpsFalseOrigin ? 0 : 1);
                g.band = 0;
            } else {
                g.ups = false;
                utm_zone(lon, lat, &g.zone, &g.band);
                utm_of[j] = utm_count;
                points[2 * utm_count] = (lon - central_meridian(g.zone)) * kDegree;
                points[2 * utm_count + 1] = lat * kDegree;
                ++utm_count;
            }
        }
        if (utm_count > 0) forward(utm.spheroid, utm.parameters, utm_count, points, nullptr, nullptr);
        for (int j = 0; j < m; ++j) {
            if (!usable[j]) continue;
            GridPoint &g = grid[j];
            if (!g.ups) {
                const double x = points[2 * utm_of[j]], y = points[2 * utm_of[j] + 1];
                if (!std::isfinite(x) || !std::isfinite(y)) continue;
                g.easting = x + kUtmFalseEasting;
                if (g.band < kFirstNorthernBand) {
                    // south of the equator; a latitude that rounds the
                    // northing up to the equator stays in the last row below
                    g.northing = y + kUtmFalseNorthingSouth;
                    if (!(g.northing < kUtmFalseNorthingSouth)) g.northing = std::nextafter(kUtmFalseNorthingSouth, 0.0);
                } else {
                    g.northing = std::fmax(y, 0.0);
                }
            }
            if (write_reference(g, digits, round != 0, older, spaces, refs[static_cast<size_t>(start) + j])) ++count;
        }
    }
    return count;
}

// One reference of a block being decoded.
struct Pending {
    Parsed p;
    bool usable;
    double size;               // side of the square, metres
    double easting, northing;  // its south-west corner (UTM: less the false origin)
    double west, east;         // the zone's longitudes from its central meridian (UTM)
    int point;                 // index of its point in the block's points (UTM)
};

// Decodes the UTM references of a block: the points asked (south-west
// corner or centre) in one call of the projection routine; a square that is
// not plainly inside its zone and band has its four corners converted in a
// second call and is kept when it reaches into them.
void decode_utm_block(const Utm &utm, ox_projection_routine inverse, const GeogFrame &f, bool centre, Pending *pending,
                      int m) {
    double points[2 * kBlock];
    int count = 0;
    const double offset = centre ? 0.5 : 0.0;
    for (int j = 0; j < m; ++j) {
        Pending &q = pending[j];
        if (!q.usable || q.p.ups) continue;
        q.point = count++;
        points[2 * q.point] = q.easting + offset * q.size;
        points[2 * q.point + 1] = q.northing + offset * q.size;
    }
    if (count == 0) return;
    inverse(utm.spheroid, utm.parameters, count, points, nullptr, nullptr);
    // (the corners of the squares near an edge, four points each)
    double corners[8 * kBlock];
    int near_edge[kBlock];
    int edges = 0;
    const double reach = (centre ? 0.7071067811865476 : 1.4142135623730951) / kUtmScale;
    for (int j = 0; j < m; ++j) {
        Pending &q = pending[j];
        if (!q.usable || q.p.ups) continue;
        const double lon = points[2 * q.point], lat = points[2 * q.point + 1];
        if (!std::isfinite(lon) || !std::isfinite(lat)) {
            q.usable = false;
            continue;
        }
        if (well_inside(f, reach * q.size, lat * kDegreesPerRadian, lon * kDegreesPerRadian, band_south(q.p.band),
                        band_north(q.p.band), q.west, q.east))
            continue;
        double *c = corners + 8 * edges;
        for (int k = 0; k < 4; ++k) {
            c[2 * k] = q.easting + (k % 2) * q.size;
            c[2 * k + 1] = q.northing + (k / 2) * q.size;
        }
        near_edge[edges++] = j;
    }
    if (edges > 0) inverse(utm.spheroid, utm.parameters, 4 * edges, corners, nullptr, nullptr);
    for (int k = 0; k < edges; ++k) {
        Pending &q = pending[near_edge[k]];
        q.usable = corners_reach(corners + 8 * k, band_south(q.p.band), band_north(q.p.band), q.west, q.east);
    }
    // the points, back in place of the grid coordinates
    for (int j = 0; j < m; ++j) {
        Pending &q = pending[j];
        if (!q.usable || q.p.ups) continue;
        q.easting = points[2 * q.point];
        q.northing = points[2 * q.point + 1];
    }
}

int32_t decode(const ox_object *geogcs, int32_t n, char **refs, int32_t mode, double *coords) {
    GeogFrame f;
    bool older = false;
    if (!clear_coordinates(n, coords) || refs == nullptr || !geog_frame(geogcs, &f) || !lettering_of(mode, OX_MGRS_CENTER, f, &older)) return 0;
    const ox_projection_routine inverse = tm_routine(true);
    if (inverse == nullptr) return 0;
    const bool centre = (mode & OX_MGRS_CENTER) != 0;
    Utm utm;
    utm_setup(f, &utm);
    UpsConstants ups;
    ups_constants(f.a, f.e2, &ups);
    // the polar caps: distances from the pole of 84 N and 80 S
    double cap[2], e, nn;
    ups_forward(ups, false, 0.0, kSouthLimit * kDegree, &e, &nn);
    cap[0] = nn - kUpsFalseOrigin;
    ups_forward(ups, true, 0.0, kNorthLimit * kDegree, &e, &nn);
    cap[1] = kUpsFalseOrigin - nn;
    BandRows band_rows;
    band_rows.a = f.a;
    band_rows.e2 = f.e2;

    int32_t count = 0;
    Pending pending[kBlock];
    for (int32_t start = 0; start < n; start += kBlock) {
        const int m = n - start < kBlock ? static_cast<int>(n - start) : kBlock;
        for (int j = 0; j < m; ++j) {
            Pending &q = pending[j];
            q.usable = parse_reference(refs[static_cast<size_t>(start) + j], &q.p) &&
                       square_corner(q.p, older, &q.easting, &q.northing);
            if (!q.usable) continue;
            q.size = cell_size(q.p.digits);
            if (q.p.ups) {
                q.usable = ups_square_reaches(q.easting, q.northing, q.size, cap[kUpsZones[q.p.zone].north ? 1 : 0]);
                continue;
            }
            q.usable = zone_extent(q.p.zone, q.p.band, &q.west, &q.east);
            // the row cycle that reaches the band
            const int64_t first = band_rows(q.p.band);
            const int64_t cycle = static_cast<int64_t>(std::floor(q.northing / kSquare));
            const int64_t row = first + ((cycle - first) % kRowCycle + kRowCycle) % kRowCycle;
            q.northing += static_cast<double>(row - cycle) * kSquare;
            q.easting -= kUtmFalseEasting;
            q.northing -= q.p.band < kFirstNorthernBand ? kUtmFalseNorthingSouth : 0.0;
        }
        decode_utm_block(utm, inverse, f, centre, pending, m);
        for (int j = 0; j < m; ++j) {
            const Pending &q = pending[j];
            if (!q.usable) continue;
            double lon, lat;
            if (q.p.ups) {
                const double offset = centre ? q.size / 2.0 : 0.0;
                ups_inverse(ups, kUpsZones[q.p.zone].north, q.easting + offset, q.northing + offset, &lon, &lat);
                lon *= kDegreesPerRadian;
            } else {
                lon = q.easting * kDegreesPerRadian + central_meridian(q.p.zone);
                lat = q.northing;
            }
            const size_t i = static_cast<size_t>(start) + static_cast<size_t>(j);
            coords[2 * i] = reduce_degrees(lon - f.primem) / f.degrees;
            coords[2 * i + 1] = lat * kDegreesPerRadian / f.degrees;
            ++count;
        }
    }
    return count;
}

}  // namespace

}  // namespace ox

using namespace ox;

extern "C" OX_API int32_t ox_geog_to_mgrs(const ox_object *geogcs, int32_t n, const double *coords, int32_t digits,
                                          int32_t round, char **refs) {
    return encode(geogcs, n, coords, digits, round, OX_MGRS_LETTERING_AUTO, refs);
}

extern "C" OX_API int32_t ox_mgrs_to_geog(const ox_object *geogcs, int32_t n, char **refs, double *coords) {
    return decode(geogcs, n, refs, OX_MGRS_LETTERING_AUTO, coords);
}

extern "C" OX_API int32_t ox_geog_to_mgrs_extended(const ox_object *geogcs, int32_t n, const double *coords,
                                                   int32_t digits, int32_t round, int32_t mode, char **refs) {
    return encode(geogcs, n, coords, digits, round, mode, refs);
}

extern "C" OX_API int32_t ox_mgrs_to_geog_extended(const ox_object *geogcs, int32_t n, char **refs, int32_t mode,
                                                   double *coords) {
    return decode(geogcs, n, refs, mode, coords);
}
