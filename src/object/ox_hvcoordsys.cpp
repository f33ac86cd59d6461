// A horizontal system (geographic or projected) paired with a vertical
// system.  Written without a keyword of its own; read with or without the
// "HVCOORDSYS" wrapper.
#include <cstddef>

#include "object/ox_object.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

constexpr FieldDesc kFields[] = {
    fd_sub(offsetof(Hvcoordsys, coordsys), OX_TAG_GEOGCS | OX_TAG_PROJCS),
    fd_sub(offsetof(Hvcoordsys, vertcs), OX_TAG_VERTCS),
};
ox_object *build(const Parts &p) { return ox_hvcoordsys_new(p.sub[0], p.sub[1]); }

}  // namespace

const TypeDesc kHvcoordsysDesc = {OX_TAG_HVCOORDSYS, "HVCOORDSYS", sizeof(Hvcoordsys), kFields, 2, 2, false, false,
                                  nullptr, build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_LIFECYCLE_OPS(hvcoordsys, OX_TAG_HVCOORDSYS)
OX_DEFINE_STATUS_OP(hvcoordsys, OX_TAG_HVCOORDSYS)

extern "C" {

OX_API ox_object *ox_hvcoordsys_new(ox_object *coordsys, ox_object *vertcs) {
    if (coordsys == nullptr && vertcs == nullptr) return nullptr;
    if (coordsys != nullptr && !ox::is_a(coordsys, OX_TAG_GEOGCS | OX_TAG_PROJCS)) return nullptr;
    if (vertcs != nullptr && !ox::is_type(vertcs, OX_TAG_VERTCS)) return nullptr;
    ox::Hvcoordsys *h = ox::alloc_rec<ox::Hvcoordsys>(ox::kHvcoordsysDesc, "");
    if (h == nullptr) return nullptr;
    h->coordsys = coordsys;
    h->vertcs = vertcs;
    return &h->h;
}

OX_API ox_object *ox_hvcoordsys_coordsys(const ox_object *hvcoordsys) { return ox::field_of(hvcoordsys, &ox::Hvcoordsys::coordsys); }

OX_API ox_object *ox_hvcoordsys_vertcs(const ox_object *hvcoordsys) { return ox::field_of(hvcoordsys, &ox::Hvcoordsys::vertcs); }

// With the wrapper, HVCOORDSYS[PROJCS[...],VERTCS[...]] is read by the
// common reader.  Without it, the first PROJCS (else GEOGCS) and the first
// VERTCS of the text are each read from where they stand; a piece that is
// found but unreadable makes the whole text unreadable.  Keywords are looked
// for outside quoted names, so that a name such as "Site VERTCS[2]" does not
// pass for a system.
OX_API ox_object *ox_hvcoordsys_from_string(const char *text) {
    if (text == nullptr) return nullptr;
    if (ox::name_search_unquoted(text, "HVCOORDSYS[") != nullptr) return ox::obj_from_string(ox::kHvcoordsysDesc, text);
    ox_object *coordsys = nullptr, *vertcs = nullptr;
    bool failed = false;
    if (const char *p = ox::name_search_unquoted(text, "PROJCS[")) {
        failed = (coordsys = ox_projcs_from_string(p)) == nullptr;
    } else if (const char *g = ox::name_search_unquoted(text, "GEOGCS[")) {
        failed = (coordsys = ox_geogcs_from_string(g)) == nullptr;
    }
    if (const char *v = ox::name_search_unquoted(text, "VERTCS["))
        failed = failed || (vertcs = ox_vertcs_from_string(v)) == nullptr;
    ox_object *pair = failed ? nullptr : ox_hvcoordsys_new(coordsys, vertcs);
    if (pair == nullptr) {
        ox_coordsys_del(coordsys);
        ox_vertcs_del(vertcs);
        return nullptr;
    }
    pair->status = OX_STATUS_STRING;
    return pair;
}

}  // extern "C"
