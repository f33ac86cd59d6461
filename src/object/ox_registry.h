// The one look-up of the library's constant registries (projections,
// parameters, transformation methods, horizontal methods): tables of rows
// with a `code` and a `name`, held as an array of rows or of pointers to
// rows.  The first matching row wins.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

#include "object/ox_object.h"
#include "object/ox_strings.h"

namespace ox {

// What every registry row starts with: its code in its authority, and its
// canonical name.
struct RegistryRow {
    int32_t code;
    const char *authority_name;
    const char *authority_version;
    const char *name;
};

// Sets the code and authority of an object from its registry row.
inline void registry_stamp(ox_object *h, const RegistryRow &r) {
    obj_set_code(h, r.code, r.authority_name, r.authority_version);
}

// How a registry compares names: byte for byte, or by the library's name
// comparison (case, blanks, "-" and "_" ignored).
enum class NameMatch { kExact, kLoose };

template <class R>
constexpr const std::remove_pointer_t<R> &registry_row(const R &r) {
    if constexpr (std::is_pointer_v<R>)
        return *r;
    else
        return r;
}

template <class R>
const std::remove_cv_t<std::remove_pointer_t<R>> *registry_find_code(std::span<const R> rows, int32_t code) {
    for (const R &r : rows)
        if (registry_row(r).code == code) return &registry_row(r);
    return nullptr;
}

template <class R>
const std::remove_cv_t<std::remove_pointer_t<R>> *registry_find_name(std::span<const R> rows, const char *name,
                                                                     NameMatch match) {
    if (name == nullptr) return nullptr;
    for (const R &r : rows) {
        const char *row_name = registry_row(r).name;
        if (match == NameMatch::kExact ? std::strcmp(name, row_name) == 0 : name_eq(name, row_name))
            return &registry_row(r);
    }
    return nullptr;
}

}  // namespace ox
