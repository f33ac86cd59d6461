// Grid constants of a geographic transformation: three blocks whose content
// the grid method that loaded them defines.
#pragma once

#include <cstdint>

namespace ox {

inline constexpr uint32_t kGtConstantsTag = 0x80000u;

struct GtConstants {
    uint32_t type;  // kGtConstantsTag
    void *first;    // owned (library allocator)
    void *second;   // owned
    void *third;    // owned
};

// Grid loader of a method: fills the empty block from the grid that the
// slot-15 parameter names; non-zero on success.
using LoadConstantsRoutine = int32_t (*)(GtConstants *block, const char *grid_name);

GtConstants *gt_new();
// Releases the three blocks and the object; null is ignored.
void gt_delete(GtConstants *c);
// Accessors that yield null for a null block or a wrong tag.
void *gt_first(const GtConstants *c);
void *gt_second(const GtConstants *c);
void *gt_third(const GtConstants *c);
// A loader's last step: when `ok`, the three freshly allocated blocks
// replace what `block` held (which is freed) and the result is 1;
// otherwise they are freed, `block` is left as it was and the result is 0.
int32_t gt_install(GtConstants *block, bool ok, void *first, void *second, void *third);

}  // namespace ox
