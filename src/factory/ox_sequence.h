// A growable sequence of fixed-size elements: the library's own small
// vector for lists whose length is not known in advance (predefined lists,
// the reverse look-up index, the object-edit index).  It grows by at least a
// fixed step and at least doubles, and copies elements in and out; every
// allocation goes through the library's allocator.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ox {

struct Sequence {
    unsigned char *data;
    size_t element_size;
    size_t growth;    // least number of elements added at a time
    size_t count;
    size_t capacity;
};

// An empty sequence (nothing allocated until the first append).
Sequence sequence_new(size_t element_size, size_t growth);
// Appends a copy of the element; false when memory is exhausted (the
// sequence is unchanged).
bool sequence_append(Sequence &s, const void *element);
// Element i (no bounds check: 0 <= i < count).
inline void *sequence_at(const Sequence &s, size_t i) { return s.data + i * s.element_size; }
// Moves the elements into one block of exactly count elements (null when the
// sequence is empty or memory is exhausted) and releases the sequence.
void *sequence_release(Sequence &s);
void sequence_delete(Sequence &s);

}  // namespace ox
