// Fuzz target: object-edit files.  The input is written as every object-edit
// file of a temporary directory (each file is read for its own keyword), then
// codes of every kind are built through the factory: a few fixed catalogue
// and custom codes and the first integers found in the input.  Whatever is
// built is written, cloned and compared.  Systems and units are also written
// without authority and read back, and the reverse look-up runs on what is
// read: a code it answers must build an equal object.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "object_kinds.h"
#include "ox.h"

namespace {

const char *const kFiles[] = {"unit", "spheroid", "primem", "datum", "geogcs", "projcs", "vdatum", "vertcs",
                              "geogtran"};

// The temporary directory, made on first use and removed at exit (a plain
// array: it outlives every exit handler).
char g_dir[64];

void remove_directory() {
    char path[128];
    for (const char *f : kFiles) {
        std::snprintf(path, sizeof path, "%s/%s", g_dir, f);
        std::remove(path);
    }
    rmdir(g_dir);
}

const char *directory() {
    if (g_dir[0] == '\0') {
        std::strcpy(g_dir, "/tmp/ox_fuzz_objedit_XXXXXX");
        if (mkdtemp(g_dir) == nullptr) std::abort();
        std::atexit(remove_directory);
    }
    return g_dir;
}

using fuzz::Kind;
using fuzz::kKinds;

// Reads back the plain object string of `h` and looks its code up.
void reverse_lookup(const Kind &k, ox_object *h, ox_object *(*read)(const char *),
                    ox_object *(*build)(int32_t)) {
    static char text[OX_OBJSTRING_SIZE];
    k.write(h, 0, text);
    ox_object *anonymous = read(text);
    if (anonymous == nullptr) return;
    const int32_t code = ox_factory_code(anonymous);
    if (code != 0) {
        ox_object *found = build(code);
        if (found == nullptr || !k.is(found) || k.eq(found, anonymous) != 1) __builtin_trap();
        k.del(found);
    }
    k.del(anonymous);
}

void exercise(ox_object *h) {
    if (h == nullptr) return;
    static char text[OX_OBJSTRING_SIZE];
    for (const Kind &k : kKinds) {
        if (!k.is(h)) continue;
        k.write(h, 2, text);
        ox_object *copy = k.clone(h);
        if (copy != nullptr && k.eq(h, copy) != 1) __builtin_trap();
        if (ox_geogcs_p(h)) reverse_lookup(k, h, ox_coordsys_from_string, ox_factory_geogcs);
        if (ox_projcs_p(h)) reverse_lookup(k, h, ox_coordsys_from_string, ox_factory_projcs);
        if (ox_unit_p(h)) reverse_lookup(k, h, ox_unit_from_string, ox_factory_unit);
        k.del(copy);
        k.del(h);
        return;
    }
    __builtin_trap();  // the factory built something of no known kind
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const char *dir = directory();
    char path[128];
    for (const char *f : kFiles) {
        std::snprintf(path, sizeof path, "%s/%s", dir, f);
        FILE *out = std::fopen(path, "wb");
        if (out == nullptr) return 0;
        std::fwrite(data, 1, size, out);
        std::fclose(out);
    }
    ox_objedithome_setdir(dir);
    static const int32_t kCodes[] = {9001, 209001, 7030, 207001, 8901, 208901, 6326, 206001, 4326, 204001,
                                     32633, 202001, 5103, 205101, 5703, 205601, 1241, 208001, 4635, 6635};
    for (int32_t code : kCodes) exercise(ox_factory(code));
    // The first integers of the input, as codes.
    const std::string text(reinterpret_cast<const char *>(data), size);
    int found = 0;
    for (size_t i = 0; i < text.size() && found < 8; ++i) {
        if (text[i] < '0' || text[i] > '9' || (i > 0 && text[i - 1] >= '0' && text[i - 1] <= '9')) continue;
        const long code = std::strtol(text.c_str() + i, nullptr, 10);
        exercise(ox_factory(static_cast<int32_t>(code)));
        ++found;
    }
    ox_objedithome_setdir(nullptr);
    return 0;
}
