// Horizontal datum: a name and its spheroid.
#include <cstddef>

#include "object/ox_object.h"

namespace ox {
namespace {

// Old datum names replaced on reading.
constexpr RenameRow kRenames[] = {
    {"D_Deutsche_Hauptdreiecksnetz", "D_Deutsches_Hauptdreiecksnetz"},
    {"D_Tahiti", "D_Tahiti_1952"},
    {"D_Tahaa", "D_Tahaa_1954"},
    {"D_K0_1949", "D_Kerguelen_Island_1949"},
    {"D_Reunion", "D_Reunion_1947"},
    {"D_Piton_des_Neiges", "D_Reunion_1947"},
    {"D_Phillipine_Reference_System_1992", "D_Philippine_Reference_System_1992"},
    {"D_North_American_1983_CSRS98", "D_North_American_1983_CSRS"},
    {nullptr, nullptr},
};

constexpr FieldDesc kFields[] = {fd_sub(offsetof(Datum, spheroid), OX_TAG_SPHEROID)};
ox_object *build(const Parts &p) { return ox_datum_new(p.name, p.sub[0]); }

}  // namespace

const TypeDesc kDatumDesc = {OX_TAG_DATUM, "DATUM", sizeof(Datum), kFields, 1, 2, true, true, kRenames,
                             build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(datum, OX_TAG_DATUM, ox::kDatumDesc)

extern "C" {

OX_API ox_object *ox_datum_new(const char *name, ox_object *spheroid) {
    if (name == nullptr || !ox::is_type(spheroid, OX_TAG_SPHEROID)) return nullptr;
    ox::Datum *d = ox::alloc_rec<ox::Datum>(ox::kDatumDesc, name);
    if (d == nullptr) return nullptr;
    d->spheroid = spheroid;
    return &d->h;
}

OX_API ox_object *ox_datum_spheroid(const ox_object *datum) { return ox::field_of(datum, &ox::Datum::spheroid); }

}  // extern "C"
