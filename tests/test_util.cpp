#include "test_util.h"

#include <gtest/gtest.h>

#include "object/ox_memory.h"
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

void every_allocation_fails(const std::function<ox_object *()> &make, const char *what) {
    for (int n = 1; n < 10000; ++n) {
        const int64_t live = ox::mem_live_count();
        const int64_t before = ox::mem_allocation_count();
        ox::mem_fail_after(n);
        ox_object *h = make();
        ox::mem_fail_after(0);
        const bool reached = ox::mem_allocation_count() - before >= n;
        delete_any(h);
        ASSERT_EQ(ox::mem_live_count(), live) << what << " leaks when allocation " << n << " fails";
        if (!reached) {
            EXPECT_NE(h, nullptr) << what;
            return;
        }
    }
    FAIL() << what << " never completed";
}

}  // namespace oxtest
