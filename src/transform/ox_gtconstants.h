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

}  // namespace ox
