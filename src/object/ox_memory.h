// The library's allocator: the process heap with the rules of ox_memalloc
// (a size below 1 gives null, releasing null does nothing).
#pragma once

#include <cstddef>
#include <cstdint>

namespace ox {

void *mem_alloc(size_t size);
void *mem_calloc(size_t count, size_t size);
void mem_free(void *p);

template <class T>
inline T *mem_new_array(size_t count) { return static_cast<T *>(mem_alloc(count * sizeof(T))); }

// Test support: makes the allocation `n` calls from now fail (0 disables).
// Lets the tests walk every failure path of a builder under the leak checker.
void mem_fail_after(int64_t n);
// Number of allocations made so far, and of blocks not yet released (for the
// same tests: a balance that does not return to its start is a leak).
int64_t mem_allocation_count();
int64_t mem_live_count();

}  // namespace ox
