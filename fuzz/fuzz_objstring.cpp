// Fuzz target: the object-string readers of coordinate systems,
// transformations, horizontal-vertical pairs and adjusted systems, with the
// writer, identification, clone and equality run on whatever they accept.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "ox.h"

namespace {

void exercise(ox_object *h, ox_object *(*clone)(const ox_object *), int32_t (*eq)(const ox_object *, const ox_object *),
              void (*write)(ox_object *, int32_t, char *), void (*del)(ox_object *)) {
    if (h == nullptr) return;
    static char text[OX_OBJSTRING_SIZE];
    write(h, 2, text);
    ox_identify_candidate candidates[4];
    const int32_t found = ox_factory_identify(h, candidates, 4);
    for (int32_t i = 0; i < found && i < 4; ++i)
        if (candidates[i].code <= 0 || candidates[i].score < OX_IDENTIFY_EQUIVALENT_DATUM) __builtin_trap();
    ox_object *copy = clone(h);
    if (copy != nullptr && eq(h, copy) != 1) __builtin_trap();
    del(copy);
    del(h);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);  // NUL-terminated copy
    const char *s = text.c_str();
    exercise(ox_coordsys_from_string(s), ox_coordsys_clone, ox_coordsys_eq, ox_coordsys_to_string_ext, ox_coordsys_del);
    exercise(ox_geogtran_from_string(s), ox_geogtran_clone, ox_geogtran_eq, ox_geogtran_to_string_ext, ox_geogtran_del);
    exercise(ox_hvcoordsys_from_string(s), ox_hvcoordsys_clone, ox_hvcoordsys_eq, ox_hvcoordsys_to_string_ext,
             ox_hvcoordsys_del);
    exercise(ox_adjhcs_from_string(s), ox_adjhcs_clone, ox_adjhcs_eq, ox_adjhcs_to_string_ext, ox_adjhcs_del);
    return 0;
}
