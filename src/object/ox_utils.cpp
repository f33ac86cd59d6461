#include "object/ox_utils.h"

#include <sys/stat.h>

namespace ox {

namespace {
// The platform's own path separator.
#if defined(_WIN32)
constexpr char kSeparator = '\\';
#else
constexpr char kSeparator = '/';
#endif
}  // namespace

bool file_exists(const char *path) {
    struct stat st;
    return path != nullptr && *path != '\0' && stat(path, &st) == 0 && S_ISREG(st.st_mode);
}

bool path_join(const char *directory, const char *file, char *out, size_t size) {
    if (out == nullptr || size == 0) return false;
    out[0] = '\0';
    if (directory == nullptr || file == nullptr) return false;
    const size_t nd = std::strlen(directory), nf = std::strlen(file);
    const bool add_separator = nd == 0 || directory[nd - 1] != kSeparator;
    const size_t total = nd + (add_separator ? 1 : 0) + nf;
    if (total + 1 > size) return false;
    std::memcpy(out, directory, nd);
    size_t k = nd;
    if (add_separator) out[k++] = kSeparator;
    std::memcpy(out + k, file, nf + 1);
    return true;
}

void swap_bytes32(void *words, size_t count) {
    auto *p = static_cast<unsigned char *>(words);
    for (size_t i = 0; i < count; ++i, p += 4) {
        unsigned char t = p[0]; p[0] = p[3]; p[3] = t;
        t = p[1]; p[1] = p[2]; p[2] = t;
    }
}

void swap_bytes64(void *values, size_t count) {
    auto *p = static_cast<unsigned char *>(values);
    for (size_t i = 0; i < count; ++i, p += 8)
        for (int k = 0; k < 4; ++k) {
            const unsigned char t = p[k];
            p[k] = p[7 - k];
            p[7 - k] = t;
        }
}

}  // namespace ox
