#include "transform/ox_gtconstants.h"

#include "object/ox_memory.h"

namespace ox {

GtConstants *gt_new() {
    auto *c = static_cast<GtConstants *>(mem_alloc(sizeof(GtConstants)));
    if (c != nullptr) *c = GtConstants{kGtConstantsTag, nullptr, nullptr, nullptr};
    return c;
}

void gt_delete(GtConstants *c) {
    if (c == nullptr || c->type != kGtConstantsTag) return;
    mem_free(c->first);
    mem_free(c->second);
    mem_free(c->third);
    c->type = 0;
    mem_free(c);
}

void *gt_first(const GtConstants *c) { return c && c->type == kGtConstantsTag ? c->first : nullptr; }
void *gt_second(const GtConstants *c) { return c && c->type == kGtConstantsTag ? c->second : nullptr; }
void *gt_third(const GtConstants *c) { return c && c->type == kGtConstantsTag ? c->third : nullptr; }

int32_t gt_install(GtConstants *block, bool ok, void *first, void *second, void *third) {
    if (!ok) {
        mem_free(first);
        mem_free(second);
        mem_free(third);
        return 0;
    }
    mem_free(block->first);
    mem_free(block->second);
    mem_free(block->third);
    block->first = first;
    block->second = second;
    block->third = third;
    return 1;
}

}  // namespace ox
