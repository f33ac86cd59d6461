// General helpers: file existence, path joining, byte-order reversal and the
// failure NaN of a point.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ox {

// True when `path` names an existing regular file.
bool file_exists(const char *path);
// Joins a directory and a file name with the platform separator (added only
// when the directory does not already end with one).  False when the result
// does not fit in `size` characters (the output is then "").
bool path_join(const char *directory, const char *file, char *out, size_t size);

// In-place byte-order reversal of arrays of 32-bit words and 64-bit values.
void swap_bytes32(void *words, size_t count);
void swap_bytes64(void *values, size_t count);

// The failure value of a point: the quiet NaN whose high word is 0x7FF80000 and
// low word 1, composed from its two halves in the machine's byte order.
inline double failure_nan() {
    const uint16_t probe = 1;
    unsigned char first_byte;
    std::memcpy(&first_byte, &probe, 1);
    const bool little_endian = first_byte == 1;
    uint32_t words[2];
    words[little_endian ? 1 : 0] = 0x7FF80000u;
    words[little_endian ? 0 : 1] = 1u;
    double value;
    std::memcpy(&value, words, sizeof value);
    return value;
}

}  // namespace ox
