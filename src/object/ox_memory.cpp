#include "object/ox_memory.h"

#include <cstdlib>

#include "ox.h"

namespace ox {
namespace {
// Per thread, so that callers on several threads never share them.
thread_local int64_t g_fail_countdown = 0;  // 0: never fail
thread_local int64_t g_allocations = 0;
thread_local int64_t g_live = 0;  // blocks allocated and not yet released

bool injected_failure() {
    ++g_allocations;
    if (g_fail_countdown > 0 && --g_fail_countdown == 0) return true;
    return false;
}
}  // namespace

void *mem_alloc(size_t size) {
    if (size < 1 || injected_failure()) return nullptr;
    void *p = std::malloc(size);
    if (p != nullptr) ++g_live;
    return p;
}

void *mem_calloc(size_t count, size_t size) {
    if (count < 1 || size < 1 || injected_failure()) return nullptr;
    void *p = std::calloc(count, size);
    if (p != nullptr) ++g_live;
    return p;
}

void mem_free(void *p) {
    if (p == nullptr) return;
    --g_live;
    std::free(p);
}

void mem_fail_after(int64_t n) { g_fail_countdown = n > 0 ? n : 0; }
int64_t mem_allocation_count() { return g_allocations; }
int64_t mem_live_count() { return g_live; }

}  // namespace ox

extern "C" {

OX_API void *ox_memalloc(int32_t size) {
    if (size < 1) return nullptr;
    return std::malloc(static_cast<size_t>(size));
}

OX_API void ox_memdealloc(void *ptr) { std::free(ptr); }

}  // extern "C"
