// Horizontal-transformation method: a name and two planar point routines.
#include <cstddef>
#include <cstring>

#include "object/ox_object.h"
#include "object/ox_registry.h"
#include "transform/ox_htmethlist.h"

namespace ox {
namespace {
constexpr FieldDesc kFields[] = {fd_fns(offsetof(Htmethod, fn), kHtSlots, kHtSlots)};
ox_object *build(const Parts &p) {
    if (!p.have_fns) return ox_htmethod_new(p.name, nullptr, nullptr);
    return ox_htmethod_new(p.name, reinterpret_cast<ox_htmethod_routine>(p.fn[kHtForward]),
                           reinterpret_cast<ox_htmethod_routine>(p.fn[kHtInverse]));
}
}  // namespace

const TypeDesc kHtmethodDesc = {OX_TAG_HTMETHOD, "HTMETHOD", sizeof(Htmethod), kFields, 1, 2, true, true, nullptr,
                                build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(htmethod, OX_TAG_HTMETHOD, ox::kHtmethodDesc)

namespace {
const ox::Htmethod *htm(const ox_object *h) { return ox::rec<ox::Htmethod>(h, OX_TAG_HTMETHOD); }
}  // namespace

extern "C" {

OX_API ox_object *ox_htmethod_new(const char *name, ox_htmethod_routine forward, ox_htmethod_routine inverse) {
    if (name == nullptr) return nullptr;
    const ox::HtRow *row = ox::htmethlist_find_by_name(name);
    if (forward == nullptr || inverse == nullptr) {
        if (row == nullptr) return nullptr;
        forward = row->forward;
        inverse = row->inverse;
    }
    ox::Htmethod *m = ox::alloc_rec<ox::Htmethod>(ox::kHtmethodDesc, name);
    if (m == nullptr) return nullptr;
    m->fn[ox::kHtForward] = reinterpret_cast<ox::Fn>(forward);
    m->fn[ox::kHtInverse] = reinterpret_cast<ox::Fn>(inverse);
    if (row != nullptr) ox::registry_stamp(&m->h, *row);
    return &m->h;
}

OX_API ox_htmethod_routine ox_htmethod_forward(const ox_object *htmethod) {
    const ox::Htmethod *m = htm(htmethod);
    return m ? reinterpret_cast<ox_htmethod_routine>(m->fn[ox::kHtForward]) : ox::htmethod_nothing;
}

OX_API ox_htmethod_routine ox_htmethod_inverse(const ox_object *htmethod) {
    const ox::Htmethod *m = htm(htmethod);
    return m ? reinterpret_cast<ox_htmethod_routine>(m->fn[ox::kHtInverse]) : ox::htmethod_nothing;
}

}  // extern "C"
