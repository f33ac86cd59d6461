// Reading grid-shift files: a regular file opened for binary reading with
// its size known before anything is allocated, and bounded reads at given
// offsets.  The loaders of the grid methods (NADCON/HARN, NTv2) read their
// files through it, and their fuzz targets hand it memory streams.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ox {

struct GridFile {
    std::FILE *f = nullptr;
    int64_t size = 0;  // bytes
    bool owned = false;

    GridFile() = default;
    GridFile(const GridFile &) = delete;
    GridFile &operator=(const GridFile &) = delete;
    ~GridFile() { close(); }

    // Opens a regular file (not a directory, not missing); false otherwise.
    bool open(const char *path);
    // Takes a stream opened by the caller (not closed here); false when its
    // size cannot be found.
    bool attach(std::FILE *stream);
    void close();
    // Reads exactly `n` bytes at `offset`; false on a short read or a bad
    // offset.
    bool read_at(int64_t offset, void *out, size_t n);
    // Reads exactly `n` bytes at the current position.
    bool read(void *out, size_t n);
};

// Two texts equal without regard to ASCII case (grid names, units, file
// name endings).
bool text_equal_nocase(const char *a, const char *b);

// The machine's byte order.
inline bool little_endian() {
    const uint16_t probe = 1;
    unsigned char first;
    __builtin_memcpy(&first, &probe, 1);
    return first == 1;
}

}  // namespace ox
