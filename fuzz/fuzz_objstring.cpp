// Fuzz target: the object-string readers of coordinate systems,
// transformations, horizontal-vertical pairs and adjusted systems.  Whatever
// they accept is cloned (the clone must be equal), identified (candidates
// must be real codes and scores) and written with every AUTHORITY option;
// whatever the writer writes must read back, through the type's own reader,
// as an equal object.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "ox.h"

namespace {

struct Ops {
    ox_object *(*read)(const char *);
    ox_object *(*clone)(const ox_object *);
    int32_t (*eq)(const ox_object *, const ox_object *);
    void (*write)(ox_object *, int32_t, char *);
    void (*del)(ox_object *);
};
constexpr Ops kGeogcs = {ox_geogcs_from_string, ox_geogcs_clone, ox_geogcs_eq, ox_geogcs_to_string_ext, ox_geogcs_del};
constexpr Ops kProjcs = {ox_projcs_from_string, ox_projcs_clone, ox_projcs_eq, ox_projcs_to_string_ext, ox_projcs_del};
constexpr Ops kGeogtran = {ox_geogtran_from_string, ox_geogtran_clone, ox_geogtran_eq, ox_geogtran_to_string_ext,
                           ox_geogtran_del};
constexpr Ops kHvcoordsys = {ox_hvcoordsys_from_string, ox_hvcoordsys_clone, ox_hvcoordsys_eq,
                             ox_hvcoordsys_to_string_ext, ox_hvcoordsys_del};
constexpr Ops kAdjhcs = {ox_adjhcs_from_string, ox_adjhcs_clone, ox_adjhcs_eq, ox_adjhcs_to_string_ext, ox_adjhcs_del};

void exercise(ox_object *h, const Ops &ops) {
    if (h == nullptr) return;
    static char text[OX_OBJSTRING_SIZE];
    for (int32_t option = 0; option <= 2; ++option) {
        ops.write(h, option, text);
        if (text[0] == '\0') continue;  // refused: no text that reads back
        ox_object *back = ops.read(text);
        if (back == nullptr || ops.eq(h, back) != 1) __builtin_trap();  // written, not read back equal
        ops.del(back);
    }
    ox_identify_candidate candidates[4];
    const int32_t found = ox_factory_identify(h, candidates, 4);
    for (int32_t i = 0; i < found && i < 4; ++i)
        if (candidates[i].code <= 0 || candidates[i].score < OX_IDENTIFY_EQUIVALENT_DATUM) __builtin_trap();
    ox_object *copy = ops.clone(h);
    if (copy != nullptr && ops.eq(h, copy) != 1) __builtin_trap();
    ops.del(copy);
    ops.del(h);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);  // NUL-terminated copy
    const char *s = text.c_str();
    ox_object *coordsys = ox_coordsys_from_string(s);
    exercise(coordsys, ox_projcs_p(coordsys) ? kProjcs : kGeogcs);
    exercise(ox_geogtran_from_string(s), kGeogtran);
    exercise(ox_hvcoordsys_from_string(s), kHvcoordsys);
    exercise(ox_adjhcs_from_string(s), kAdjhcs);
    int32_t position = 0;
    const int32_t code = ox_objstring_check(s, "PROJCS", &position);
    if (code > 0 || code < -6 || position < -1 || (position >= 0 && static_cast<size_t>(position) > size)) __builtin_trap();
    return 0;
}
