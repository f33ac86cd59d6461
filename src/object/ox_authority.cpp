// Authority: who defines an object and under which code ("EPSG" 4326).
#include <cstring>

#include "object/ox_object.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

bool eq_values(const ox_object *a, const ox_object *b) {
    return reinterpret_cast<const Authority *>(a)->authcode == reinterpret_cast<const Authority *>(b)->authcode;
}

void extra_parts(const ox_object *h, Parts &p) {
    const auto *a = reinterpret_cast<const Authority *>(h);
    p.authcode = a->authcode;
    p.version = a->version;
}

ox_object *build(const Parts &p) { return ox_authority_new(p.name, p.authcode, p.version); }

}  // namespace

const TypeDesc kAuthorityDesc = {OX_TAG_AUTHORITY, "AUTHORITY", sizeof(Authority), nullptr, 0, 3, true, false,
                                 nullptr, build, eq_values, nullptr, extra_parts};
}  // namespace ox

extern "C" {

OX_API ox_object *ox_authority_new(const char *name, int32_t authcode, const char *version) {
    if (name == nullptr || authcode < 1) return nullptr;
    ox::Authority *a = ox::alloc_rec<ox::Authority>(ox::kAuthorityDesc, name);
    if (a == nullptr) return nullptr;
    a->authcode = authcode;
    ox::copy_bounded(a->version, version, sizeof a->version);
    return &a->h;
}

OX_API void ox_authority_del(ox_object *h) { ox::obj_del(h, OX_TAG_AUTHORITY); }
OX_API ox_object *ox_authority_clone(const ox_object *h) { return ox::obj_clone(h, OX_TAG_AUTHORITY); }
OX_API int32_t ox_authority_eq(const ox_object *a, const ox_object *b) { return ox::obj_eq(a, b, OX_TAG_AUTHORITY); }
OX_API int32_t ox_authority_p(const ox_object *h) { return ox::is_type(h, OX_TAG_AUTHORITY) ? 1 : 0; }
OX_API void ox_authority_name(const ox_object *h, char *buffer) { ox::obj_name(h, OX_TAG_AUTHORITY, buffer); }
OX_API int32_t ox_authority_status(const ox_object *h) { return ox::obj_status(h, OX_TAG_AUTHORITY); }

OX_API int32_t ox_authority_authcode(const ox_object *h) { return ox::field_of(h, &ox::Authority::authcode); }

OX_API void ox_authority_version(const ox_object *h, char *buffer) {
    if (buffer == nullptr) return;
    const ox::Authority *a = ox::rec<ox::Authority>(h, OX_TAG_AUTHORITY);
    ox::copy_bounded(buffer, a ? a->version : "", sizeof a->version);
}

OX_API void ox_authority_to_string(const ox_object *h, char *buffer) {
    ox::obj_to_string(const_cast<ox_object *>(h), OX_TAG_AUTHORITY, 0, buffer);
}

OX_API void ox_authority_to_string_ext(ox_object *h, int32_t option, char *buffer) {
    (void)option;  // an authority writes the same text whatever the option
    ox::obj_to_string(h, OX_TAG_AUTHORITY, 0, buffer);
}

OX_API ox_object *ox_authority_from_string(const char *text) {
    return ox::obj_from_string(ox::kAuthorityDesc, text);
}

}  // extern "C"
