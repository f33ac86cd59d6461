#include "transform/ox_htmethlist.h"

#include <cstring>

#include "object/ox_object.h"
#include "object/ox_registry.h"

namespace ox {

namespace {
constexpr HtRow kRows[] = {
    {{kHtAffineParametric, kMavo, kMavoVersion, "Affine_Parametric"}, affine_forward, affine_inverse},
    {{kHtProjectiveParametric, kMavo, kMavoVersion, "2D_Projective_Parametric"},
     projective_forward,
     projective_inverse},
};
}  // namespace

int32_t htmethod_nothing(void *unused, const double *coefficients, int32_t n, double *points) {
    (void)unused, (void)coefficients, (void)points;
    return n;
}

std::span<const HtRow> htmethlist_rows() { return kRows; }

const HtRow *htmethlist_find_by_name(const char *name) {
    return registry_find_name(std::span<const HtRow>(kRows), name, NameMatch::kExact);
}

const HtRow *htmethlist_find_by_code(int32_t code) { return registry_find_code(std::span<const HtRow>(kRows), code); }

ox_object *htmethlist_new_by_code(int32_t code) {
    const HtRow *r = htmethlist_find_by_code(code);
    if (r == nullptr) return nullptr;
    ox_object *m = ox_htmethod_new(r->name, r->forward, r->inverse);
    if (m != nullptr) m->status = OX_STATUS_CATALOGUE;
    return m;
}

}  // namespace ox
