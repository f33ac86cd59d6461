// Vertical datum: a name only.
#include "object/ox_object.h"

namespace ox {
namespace {
ox_object *build(const Parts &p) { return ox_vdatum_new(p.name); }
}  // namespace

const TypeDesc kVdatumDesc = {OX_TAG_VDATUM, "VDATUM", sizeof(Vdatum), nullptr, 0, 2, true, true, nullptr, build,
                              nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(vdatum, OX_TAG_VDATUM, ox::kVdatumDesc)

extern "C" OX_API ox_object *ox_vdatum_new(const char *name) {
    ox::Vdatum *v = ox::alloc_rec<ox::Vdatum>(ox::kVdatumDesc, name);
    return v ? &v->h : nullptr;
}
