// The coordinate-system handle: a geographic or a projected system, with the
// common operations dispatched on the type of the handle.
#include "object/ox_object.h"
#include "object/ox_strings.h"

namespace {
constexpr uint32_t kCoordsys = OX_TAG_GEOGCS | OX_TAG_PROJCS;
}

OX_DEFINE_LIFECYCLE_OPS(coordsys, kCoordsys)

extern "C" {

// Consults the underlying system but always answers 0: callers that need the
// status ask ox_geogcs_status or ox_projcs_status.
OX_API int32_t ox_coordsys_status(const ox_object *h) {
    (void)ox::obj_status(h, kCoordsys);
    return 0;
}

// A text that holds "PROJCS" anywhere (even inside a name) is read as a
// projected system, any other as a geographic one.
OX_API ox_object *ox_coordsys_from_string(const char *text) {
    if (text == nullptr) return nullptr;
    if (ox::name_search(text, "PROJCS") != nullptr) return ox_projcs_from_string(text);
    return ox_geogcs_from_string(text);
}

}  // extern "C"
