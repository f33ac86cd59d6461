// Geographic coordinate system: a datum, a prime meridian and an angular unit.
#include <cstddef>

#include "object/ox_object.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

// Old geographic names replaced on reading.
constexpr RenameRow kRenames[] = {
    {"GCS_Deutsche_Hauptdreiecksnetz", "GCS_Deutsches_Hauptdreiecksnetz"},
    {"GCS_Tahiti", "GCS_Tahiti_1952"},
    {"GCS_Tahaa", "GCS_Tahaa_1954"},
    {"GCS_K0_1949", "GCS_Kerguelen_Island_1949"},
    {"GCS_Reunion", "GCS_Reunion_1947"},
    {"GCS_Piton_des_Neiges", "GCS_Reunion_1947"},
    {"GCS_North_American_1983_CSRS98", "GCS_North_American_1983_CSRS"},
    {nullptr, nullptr},
};

constexpr FieldDesc kFields[] = {
    fd_sub(offsetof(Geogcs, datum), OX_TAG_DATUM),
    fd_sub(offsetof(Geogcs, primem), OX_TAG_PRIMEM),
    fd_sub(offsetof(Geogcs, unit), OX_TAG_UNIT),
};
ox_object *build(const Parts &p) { return ox_geogcs_new(p.name, p.sub[0], p.sub[1], p.sub[2]); }

}  // namespace

const TypeDesc kGeogcsDesc = {OX_TAG_GEOGCS, "GEOGCS", sizeof(Geogcs), kFields, 3, 2, true, true, kRenames,
                              build, nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_LIFECYCLE_OPS(geogcs, OX_TAG_GEOGCS)
OX_DEFINE_STATUS_OP(geogcs, OX_TAG_GEOGCS)

extern "C" {

OX_API ox_object *ox_geogcs_new(const char *name, ox_object *datum, ox_object *primem, ox_object *unit) {
    if (name == nullptr || !ox::is_type(datum, OX_TAG_DATUM) || !ox::is_type(primem, OX_TAG_PRIMEM) ||
        !ox::is_type(unit, OX_TAG_UNIT))
        return nullptr;
    ox::Geogcs *g = ox::alloc_rec<ox::Geogcs>(ox::kGeogcsDesc, name);
    if (g == nullptr) return nullptr;
    g->datum = datum;
    g->primem = primem;
    g->unit = unit;
    return &g->h;
}

// Reads a geographic system.  Strings written with the older, ambiguous name
// "GCS_Hong_Kong_1963" for the system on datum "D_Hong_Kong_1963_67" (degrees,
// Greenwich) are given the current name "GCS_Hong_Kong_1963_67".
OX_API ox_object *ox_geogcs_from_string(const char *text) {
    ox_object *h = ox::obj_from_string(ox::kGeogcsDesc, text);
    auto *g = ox::rec<ox::Geogcs>(h, OX_TAG_GEOGCS);
    if (g != nullptr && ox::name_eq(h->name, "GCS_Hong_Kong_1963") &&
        ox::equal_rule(ox_primem_longitude(g->primem), 0.0) &&
        ox::equal_rule(ox_unit_factor(g->unit), 0.017453292519943295) &&
        ox::name_eq(g->datum->name, "D_Hong_Kong_1963_67"))
        ox::copy_bounded(h->name, "GCS_Hong_Kong_1963_67", OX_NAME_SIZE);
    return h;
}

OX_API ox_object *ox_geogcs_datum(const ox_object *geogcs) { return ox::field_of(geogcs, &ox::Geogcs::datum); }

OX_API ox_object *ox_geogcs_primem(const ox_object *geogcs) { return ox::field_of(geogcs, &ox::Geogcs::primem); }

OX_API ox_object *ox_geogcs_unit(const ox_object *geogcs) { return ox::field_of(geogcs, &ox::Geogcs::unit); }

}  // extern "C"
