#include "test_util.h"

#include "object/ox_object.h"

namespace oxtest {

void delete_any(ox_object *h) {
    if (h == nullptr) return;
    if (h->type == OX_TAG_AUTHORITY)
        ox_authority_del(h);
    else
        ox::obj_delete(h);
}

ox_object *make_geogcs(const char *name, double axis, double inverse_flattening) {
    ox_object *s = ox_spheroid_new("WGS_1984", axis, inverse_flattening == 0 ? 0 : 1.0 / inverse_flattening);
    ox_object *d = ox_datum_new("D_WGS_1984", s);
    return ox_geogcs_new(name, d, ox_primem_new("Greenwich", 0.0), ox_unit_new("Degree", 0.017453292519943295));
}

}  // namespace oxtest
