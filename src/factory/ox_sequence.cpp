#include "factory/ox_sequence.h"

#include <cstring>

#include "object/ox_memory.h"

namespace ox {

Sequence sequence_new(size_t element_size, size_t growth) {
    return Sequence{nullptr, element_size, growth > 0 ? growth : 1, 0, 0};
}

bool sequence_append(Sequence &s, const void *element) {
    if (s.count == s.capacity) {
        // At least `growth` more, and at least double: appending n elements
        // copies O(n) elements in all.
        const size_t capacity = s.capacity + (s.capacity > s.growth ? s.capacity : s.growth);
        auto *data = static_cast<unsigned char *>(mem_alloc(capacity * s.element_size));
        if (data == nullptr) return false;
        if (s.count > 0) std::memcpy(data, s.data, s.count * s.element_size);
        mem_free(s.data);
        s.data = data;
        s.capacity = capacity;
    }
    std::memcpy(s.data + s.count * s.element_size, element, s.element_size);
    ++s.count;
    return true;
}

void *sequence_release(Sequence &s) {
    void *block = nullptr;
    if (s.count > 0) {
        block = mem_alloc(s.count * s.element_size);
        if (block != nullptr) std::memcpy(block, s.data, s.count * s.element_size);
    }
    sequence_delete(s);
    return block;
}

void sequence_delete(Sequence &s) {
    mem_free(s.data);
    s.data = nullptr;
    s.count = s.capacity = 0;
}

}  // namespace ox
