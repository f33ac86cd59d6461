// Shared helpers of the test suite.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "ox.h"

namespace oxtest {

inline constexpr double kDeg = 0.017453292519943295;
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInf = std::numeric_limits<double>::infinity();

inline constexpr const char *kWgs84 =
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
    "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";

inline constexpr const char *kUtm33 =
    "PROJCS[\"WGS_1984_UTM_Zone_33N\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\","
    "SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],"
    "UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
    "PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],"
    "PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Scale_Factor\",0.9996],"
    "PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]";

// The object string an object writes (option 0 unless given).
template <class F>
std::string text_of(F writer, ox_object *h) {
    static char buffer[OX_OBJSTRING_SIZE];
    writer(h, buffer);
    return buffer;
}
template <class F>
std::string text_of(F writer, ox_object *h, int option) {
    static char buffer[OX_OBJSTRING_SIZE];
    writer(h, option, buffer);
    return buffer;
}

// The object string of an object of any type.
std::string text_of(ox_object *h, int option = 0);

// Deletes any object when it goes out of scope.
struct Owned {
    ox_object *h;
    explicit Owned(ox_object *p = nullptr) : h(p) {}
    Owned(const Owned &) = delete;
    Owned &operator=(const Owned &) = delete;
    Owned(Owned &&o) noexcept : h(o.release()) {}
    ~Owned();
    ox_object *get() const { return h; }
    ox_object *release() {
        ox_object *p = h;
        h = nullptr;
        return p;
    }
    explicit operator bool() const { return h != nullptr; }
};

// Deletes an object of any type.
void delete_any(ox_object *h);
inline Owned::~Owned() { delete_any(h); }

// Runs `make` with the n-th allocation failing, for n = 1, 2, ... until it
// succeeds without a failure; every run must return null or a complete
// object and leave no block behind (checked with gtest assertions).
void every_allocation_fails(const std::function<ox_object *()> &make, const char *what);

// A geographic system built from parts.
ox_object *make_geogcs(const char *name = "GCS_WGS_1984", double axis = 6378137.0,
                       double inverse_flattening = 298.257223563);

// The rows of a comma-separated file of tests/data, split into fields;
// blank lines, lines starting with '#' and the header line are skipped.
std::vector<std::vector<std::string>> read_csv(const std::string &file);

// The library's failure value (a NaN of one bit pattern).
bool is_failure(double v);
bool same_bits(double a, double b);

// Longitude difference a - b in degrees reduced to [-180, 180].
double lon_diff(double a, double b);

// Catalogue objects: the name, status, and the code, authority and version
// of the lazily built authority object.
std::string name_of(const ox_object *h);
int32_t status_of(const ox_object *h);
struct Stamp {
    int32_t code;
    std::string authority, version;
};
Stamp stamp_of(ox_object *h);

// The value of a projected system's parameter of that name (NaN if none)
// and the number of parameters it has.
double parameter(const ox_object *projcs, const char *name);
int parameter_count(const ox_object *projcs);

// A scratch directory, removed with its contents at the end of scope.
struct TempDir {
    std::string path;
    TempDir();
    ~TempDir();
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    void write(const std::string &file, const std::string &text) const;
};

}  // namespace oxtest
