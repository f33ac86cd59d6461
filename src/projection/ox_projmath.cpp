// Support of the projection point loops: the instruction-set level chosen
// from the processor.
#include "projection/ox_projmath.h"

#include <atomic>


namespace ox {

namespace {

int processor_level() {
#if OX_ISA_VARIANTS
    __builtin_cpu_init();
    if (__builtin_cpu_supports("x86-64-v4")) return 3;
    if (__builtin_cpu_supports("x86-64-v3")) return 2;
    if (__builtin_cpu_supports("x86-64-v2")) return 1;
#endif
    return 0;
}

constexpr int kUndetermined = -1;
std::atomic<int> g_level{kUndetermined};

}  // namespace

int point_loop_level() {
    int level = g_level.load(std::memory_order_relaxed);
    if (level == kUndetermined) {
        level = processor_level();
        g_level.store(level, std::memory_order_relaxed);
    }
    return level;
}

int point_loop_level_limit(int level) {
    const int own = processor_level();
    const int use = level == kExactLevel ? kExactLevel : (level < 0 || level > own ? own : level);
    g_level.store(use, std::memory_order_relaxed);
    return use;
}

}  // namespace ox
