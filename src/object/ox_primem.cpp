// Prime meridian: a name and its longitude from Greenwich in degrees.
#include <cmath>
#include <cstddef>

#include "object/ox_object.h"

namespace ox {
namespace {
constexpr FieldDesc kFields[] = {fd_double(offsetof(Primem, longitude))};
ox_object *build(const Parts &p) { return ox_primem_new(p.name, p.d[0]); }
}  // namespace

const TypeDesc kPrimemDesc = {OX_TAG_PRIMEM, "PRIMEM", sizeof(Primem), kFields, 1, 3, true, true, nullptr,
                              build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(primem, OX_TAG_PRIMEM, ox::kPrimemDesc)

extern "C" {

OX_API ox_object *ox_primem_new(const char *name, double longitude) {
    if (name == nullptr || !(std::fabs(longitude) <= 180.0)) return nullptr;
    ox::Primem *p = ox::alloc_rec<ox::Primem>(ox::kPrimemDesc, name);
    if (p == nullptr) return nullptr;
    p->longitude = longitude;
    return &p->h;
}

OX_API double ox_primem_longitude(const ox_object *primem) { return ox::field_of(primem, &ox::Primem::longitude, 0.0); }

}  // extern "C"
