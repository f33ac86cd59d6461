#include "projection/ox_pcsconstants.h"

#include "object/ox_memory.h"

namespace ox {

double *pcs_alloc(PcsConstants *c, int32_t count) {
    if (c == nullptr || count < 1) return nullptr;
    auto *header = mem_new_array<int32_t>(2);
    auto *values = mem_new_array<double>(static_cast<size_t>(count));
    if (header == nullptr || values == nullptr) {
        mem_free(header);
        mem_free(values);
        return nullptr;
    }
    mem_free(c->header);
    mem_free(c->values);
    header[0] = 2;
    header[1] = count;
    c->header = header;
    c->values = values;
    return values;
}

PcsConstants *pcs_new() {
    auto *c = static_cast<PcsConstants *>(mem_alloc(sizeof(PcsConstants)));
    if (c != nullptr) *c = PcsConstants{kPcsConstantsTag, nullptr, nullptr};
    return c;
}

void pcs_delete(PcsConstants *c) {
    if (c == nullptr) return;
    mem_free(c->header);
    mem_free(c->values);
    c->type = 0;
    mem_free(c);
}

}  // namespace ox
