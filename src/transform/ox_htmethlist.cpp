#include "transform/ox_htmethlist.h"

#include <cstring>

#include "object/ox_object.h"

namespace ox {

namespace {
constexpr HtRow kRows[] = {
    {kHtAffineParametric, kMavo, kMavoVersion, "Affine_Parametric", affine_forward, affine_inverse},
    {kHtProjectiveParametric, kMavo, kMavoVersion, "2D_Projective_Parametric", projective_forward, projective_inverse},
};
constexpr int kRowCount = sizeof kRows / sizeof kRows[0];
}  // namespace

int32_t htmethod_nothing(void *unused, const double *coefficients, int32_t n, double *points) {
    (void)unused, (void)coefficients, (void)points;
    return n;
}

const HtRow *htmethlist_rows(int *count) {
    if (count != nullptr) *count = kRowCount;
    return kRows;
}

const HtRow *htmethlist_find_by_name(const char *name) {
    if (name == nullptr) return nullptr;
    for (const HtRow &r : kRows)
        if (std::strcmp(name, r.name) == 0) return &r;
    return nullptr;
}

const HtRow *htmethlist_find_by_code(int32_t code) {
    for (const HtRow &r : kRows)
        if (r.code == code) return &r;
    return nullptr;
}

ox_object *htmethlist_new_by_code(int32_t code) {
    const HtRow *r = htmethlist_find_by_code(code);
    if (r == nullptr) return nullptr;
    ox_object *m = ox_htmethod_new(r->name, r->forward, r->inverse);
    if (m != nullptr) m->status = OX_STATUS_CATALOGUE;
    return m;
}

}  // namespace ox
