// Shared helpers of the test suite.
#pragma once

#include <functional>
#include <string>

#include "ox.h"

namespace oxtest {

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

// Deletes any object when it goes out of scope.
struct Owned {
    ox_object *h;
    explicit Owned(ox_object *p = nullptr) : h(p) {}
    Owned(const Owned &) = delete;
    Owned &operator=(const Owned &) = delete;
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

}  // namespace oxtest
