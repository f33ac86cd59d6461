// Fuzz target: definition strings ("OX_GCS_WGS_1984", "4326", junk) and the
// conversions between them and codes.  A text that names a code must turn
// back into a name that names the same code; the object of the code is
// built, written, cloned (the clone must be equal) and deleted.
#include <cstddef>
#include <cstdint>
#include <string>

#include "object_kinds.h"
#include "ox.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);  // NUL-terminated copy
    const int32_t code = ox_factory_defstring_to_int(text.c_str());
    if (code == 0) return 0;
    if (const char *name = ox_factory_int_to_defstring(code))
        if (ox_factory_defstring_to_int(name) != code) __builtin_trap();  // the canonical name names the code
    ox_object *h = ox_factory(code);
    if (h == nullptr) return 0;
    for (const fuzz::Kind &k : fuzz::kKinds) {
        if (!k.is(h)) continue;
        static char buffer[OX_OBJSTRING_SIZE];
        k.write(h, 2, buffer);
        ox_object *copy = k.clone(h);
        if (copy == nullptr || k.eq(h, copy) != 1) __builtin_trap();
        k.del(copy);
        k.del(h);
        return 0;
    }
    __builtin_trap();  // a code built an object of no known kind
}
