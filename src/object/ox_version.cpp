#include <cstring>

#include "ox.h"

namespace {
// The build date is fixed at the epoch on purpose: the text is the same for
// every build.
constexpr char kVersion[] = "Tessaline Version 9.3.0 (Jan  1 1970)";
}  // namespace

extern "C" {

OX_API const char *ox_version(void) { return kVersion; }

OX_API void ox_version_string(char *buffer) {
    if (buffer != nullptr) std::memcpy(buffer, kVersion, sizeof kVersion);
}

}  // extern "C"
