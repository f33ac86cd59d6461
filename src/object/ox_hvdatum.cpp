// The either-datum handle: a horizontal datum or a vertical datum, with the
// common operations dispatched on the type of the handle.
#include "object/ox_object.h"
#include "object/ox_strings.h"

namespace {
constexpr uint32_t kHvdatum = OX_TAG_DATUM | OX_TAG_VDATUM;
}

OX_DEFINE_LIFECYCLE_OPS(hvdatum, kHvdatum)
OX_DEFINE_STATUS_OP(hvdatum, kHvdatum)

extern "C" {

// Reads the first datum of the text: a VDATUM when the first "DATUM" keyword
// found is the end of "VDATUM", else a DATUM.
OX_API ox_object *ox_hvdatum_from_string(const char *text) {
    const char *found = ox::name_search(text, "DATUM");
    if (found == nullptr) return nullptr;
    if (found > text && ox::to_lower(static_cast<unsigned char>(found[-1])) == 'v') return ox_vdatum_from_string(text);
    return ox_datum_from_string(text);
}

}  // extern "C"
