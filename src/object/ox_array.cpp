// Named array of numbers (the coefficients of a horizontal transformation).
#include <cstddef>
#include <cstring>

#include "object/ox_memory.h"
#include "object/ox_object.h"
#include "object/ox_strings.h"
#include "transform/ox_htmethlist.h"

namespace ox {
namespace {
constexpr FieldDesc kFields[] = {fd_values(offsetof(Array, count), offsetof(Array, values))};
ox_object *build(const Parts &p) { return ox_array_new(p.name, p.count, p.values); }
}  // namespace

const TypeDesc kArrayDesc = {OX_TAG_ARRAY, "ARRAY", sizeof(Array), kFields, 1, 3, true, false, nullptr, build,
                             nullptr, nullptr, nullptr};
}  // namespace ox

OX_DEFINE_COMMON_OPS(array, OX_TAG_ARRAY, ox::kArrayDesc)

namespace {
ox::Array *arr(const ox_object *h) { return ox::rec<ox::Array>(const_cast<ox_object *>(h), OX_TAG_ARRAY); }
}  // namespace

extern "C" {

OX_API ox_object *ox_array_new(const char *name, int32_t count, const double *values) {
    if (name == nullptr || count < 0 || (count > 0 && values == nullptr)) return nullptr;
    double *block = nullptr;
    if (count > 0) {
        block = ox::mem_new_array<double>(static_cast<size_t>(count));
        if (block == nullptr) return nullptr;
        std::memcpy(block, values, static_cast<size_t>(count) * sizeof(double));
    }
    ox::Array *a = ox::alloc_rec<ox::Array>(ox::kArrayDesc, name);
    if (a == nullptr) {
        ox::mem_free(block);
        return nullptr;
    }
    a->count = count;
    a->values = block;
    return &a->h;
}

OX_API int32_t ox_array_num_values(const ox_object *array) { return ox::field_of(array, &ox::Array::count); }

OX_API const double *ox_array_values_pointer(const ox_object *array) { return ox::field_of(array, &ox::Array::values); }

OX_API void ox_array_values_copy(const ox_object *array, double *out) {
    const ox::Array *a = arr(array);
    if (a == nullptr || out == nullptr || a->count == 0) return;
    std::memcpy(out, a->values, static_cast<size_t>(a->count) * sizeof(double));
}

// Overwrites the first `count` values.  A count beyond the array's own is
// not reported as an error (the caller answers for it); values that do not
// fit in the array are not written.  A negative count or null values: 0.
OX_API int32_t ox_array_values_set(ox_object *array, int32_t count, const double *values) {
    ox::Array *a = arr(array);
    if (a == nullptr || count < 0 || values == nullptr) return 0;
    const int32_t n = count < a->count ? count : a->count;
    if (n > 0) std::memcpy(a->values, values, static_cast<size_t>(n) * sizeof(double));
    return 1;
}

OX_API int32_t ox_array_name_set(ox_object *array, const char *name) {
    ox::Array *a = arr(array);
    if (a == nullptr || !ox::name_writable(name)) return 0;
    ox::copy_bounded(a->h.name, name, OX_NAME_SIZE);
    return 1;
}

// The identity coefficients of a horizontal method: six for the affine
// method (A..F), eight for the projective one (A..H).
OX_API ox_object *ox_array_htmethod_default(const ox_object *htmethod) {
    if (!ox::is_type(htmethod, OX_TAG_HTMETHOD)) return nullptr;
    int32_t code = htmethod->code;
    if (code < 1)
        if (const ox::HtRow *r = ox::htmethlist_find_by_name(htmethod->name)) code = r->code;
    static constexpr double kAffine[] = {1, 0, 0, 0, 1, 0};
    static constexpr double kProjective[] = {1, 0, 0, 0, 1, 0, 0, 0};
    if (code == ox::kHtAffineParametric) return ox_array_new("Coefficients", 6, kAffine);
    if (code == ox::kHtProjectiveParametric) return ox_array_new("Coefficients", 8, kProjective);
    return nullptr;
}

}  // extern "C"
