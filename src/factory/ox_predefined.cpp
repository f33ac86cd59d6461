// Predefined lists: every current object of a kind that the factory builds
// (object-edit files included), with its code and name, sorted by name.
#include <algorithm>

#include "factory/ox_factory.h"
#include "factory/ox_sequence.h"
#include "object/ox_memory.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

constexpr size_t kGrowth = 256;

ox_predefined_entry *predefined(const ox_coderange_set *set, ox_object *(*build)(int32_t), int32_t *count) {
    if (count == nullptr) return nullptr;
    *count = 0;
    Sequence entries = sequence_new(sizeof(ox_predefined_entry), kGrowth);
    const EditSnapshot snapshot;  // each object-edit file looked at once per list
    for (int32_t b = 0; b < set->count; ++b)
        for (int64_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code) {
            ox_object *h = build(static_cast<int32_t>(code));
            if (h == nullptr) continue;
            // Catalogue (4) and object-edit (8) definitions only: replaced
            // codes (16) and superseded definitions (32) are left out.
            const bool current = (h->status & 0xFF) <= OX_STATUS_OBJEDIT;
            ox_predefined_entry e = {};
            e.code = static_cast<int32_t>(code);
            copy_bounded(e.name, h->name, sizeof e.name);
            obj_delete(h);
            if (current && !sequence_append(entries, &e)) {
                sequence_delete(entries);
                return nullptr;
            }
        }
    const size_t n = entries.count;
    auto *list = static_cast<ox_predefined_entry *>(sequence_release(entries));
    if (list == nullptr) return nullptr;
    std::sort(list, list + n, [](const ox_predefined_entry &a, const ox_predefined_entry &b) {
        return name_compare(a.name, b.name) < 0;
    });
    *count = static_cast<int32_t>(n);
    return list;
}

}  // namespace
}  // namespace ox

extern "C" {

#define OX_PREDEFINED(kind, ranges, builder)                                \
    OX_API ox_predefined_entry *ox_predefined_##kind(int32_t *count) {     \
        return ox::predefined(ox_factory_coderanges_##ranges(), builder, count); \
    }

OX_PREDEFINED(projcs, projcs, ox_factory_projcs)
OX_PREDEFINED(geogcs, geogcs, ox_factory_geogcs)
OX_PREDEFINED(vertcs, vertcs, ox_factory_vertcs)
OX_PREDEFINED(geogtran, geogtran, ox_factory_geogtran)
OX_PREDEFINED(datum, datum, ox_factory_datum)
OX_PREDEFINED(vdatum, vdatum, ox_factory_vdatum)
OX_PREDEFINED(spheroid, spheroid, ox_factory_spheroid)
OX_PREDEFINED(primem, primem, ox_factory_primem)
OX_PREDEFINED(projection, projection, ox_factory_projection)
OX_PREDEFINED(parameter, parameter, ox_factory_parameter)
OX_PREDEFINED(method, method, ox_factory_method)
OX_PREDEFINED(htmethod, htmethod, ox_factory_htmethod)
OX_PREDEFINED(angular_unit, angular_unit, ox_factory_unit)
OX_PREDEFINED(linear_unit, linear_unit, ox_factory_unit)

OX_API void ox_table_del(ox_predefined_entry *table) { ox::mem_free(table); }

}  // extern "C"
