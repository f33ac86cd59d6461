// Fuzz target: the legacy projection file readers of strings, with the
// writer run on every system they accept: what the writer writes must read
// back.
#include <cstddef>
#include <cstdint>
#include <string>

#include "ox.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);  // NUL-terminated copy
    const char *s = text.c_str();
    static char written[OX_PRJSTRING_SIZE];
    int32_t error = 0;
    ox_object *pair = ox_hvcoordsys_from_prjstring(s, &error);
    if ((pair == nullptr) != (error != 0)) __builtin_trap();
    if (pair != nullptr && ox_hvcoordsys_to_prjstring(pair, written, &error) == 0) {
        ox_object *back = ox_hvcoordsys_from_prjstring(written, &error);
        if (back == nullptr) __builtin_trap();
        ox_hvcoordsys_del(back);
    }
    ox_hvcoordsys_del(pair);
    ox_object *coordsys = ox_coordsys_from_prjstring(s, &error);
    if (coordsys != nullptr && ox_coordsys_to_prjstring(coordsys, OX_PRJ_EXPLICIT, written, &error) == 0) {
        ox_object *back = ox_coordsys_from_prjstring(written, &error);
        if (back == nullptr) __builtin_trap();
        ox_coordsys_del(back);
    }
    ox_coordsys_del(coordsys);
    ox_vertcs_del(ox_vertcs_from_prjstring(s, &error));
    ox_unit_del(ox_zunit_from_prjstring(s, &error));
    return 0;
}
