#include "transform/ox_gridfile.h"

#include <sys/stat.h>

namespace ox {

namespace {

bool stream_size(std::FILE *f, int64_t &size) {
    if (std::fseek(f, 0, SEEK_END) != 0) return false;
    const long end = std::ftell(f);
    if (end < 0 || std::fseek(f, 0, SEEK_SET) != 0) return false;
    size = end;
    return true;
}

}  // namespace

bool GridFile::open(const char *path) {
    close();
    struct stat st;
    if (path == nullptr || *path == '\0' || stat(path, &st) != 0 || !S_ISREG(st.st_mode)) return false;
    std::FILE *stream = std::fopen(path, "rb");
    if (stream == nullptr) return false;
    f = stream;
    owned = true;
    if (!stream_size(f, size)) {
        close();
        return false;
    }
    return true;
}

bool GridFile::attach(std::FILE *stream) {
    close();
    if (stream == nullptr) return false;
    f = stream;
    owned = false;
    if (!stream_size(f, size)) {
        f = nullptr;
        return false;
    }
    return true;
}

void GridFile::close() {
    if (f != nullptr && owned) std::fclose(f);
    f = nullptr;
    size = 0;
    owned = false;
}

bool GridFile::read_at(int64_t offset, void *out, size_t n) {
    if (f == nullptr || offset < 0 || offset > size || static_cast<uint64_t>(size - offset) < n) return false;
    if (std::fseek(f, static_cast<long>(offset), SEEK_SET) != 0) return false;
    return std::fread(out, 1, n, f) == n;
}

bool GridFile::read(void *out, size_t n) { return f != nullptr && std::fread(out, 1, n, f) == n; }

bool text_equal_nocase(const char *a, const char *b) {
    for (;; ++a, ++b) {
        const char ca = *a >= 'a' && *a <= 'z' ? *a - 'a' + 'A' : *a;
        const char cb = *b >= 'a' && *b <= 'z' ? *b - 'a' + 'A' : *b;
        if (ca != cb) return false;
        if (ca == '\0') return true;
    }
}

}  // namespace ox
