// Reverse look-up: the catalogue code of an object built by hand or read
// from text.  By definition the answer is that of an exhaustive search: build
// every code of the kind's bands in order, compare each with the object, take
// the first current definition that is equal, else the equal one of lowest
// status.  Equality starts with the separator-insensitive name comparison, so
// only codes whose object carries the same normalised name can match: while
// no object-edit file can change what the builders make, an index of the
// catalogue by normalised name (built once per kind, in band order) yields
// exactly those candidates.  With object-edit files in play the search is the
// exhaustive one.
#include <algorithm>
#include <atomic>

#include "factory/ox_factory.h"
#include "factory/ox_sequence.h"
#include "object/ox_memory.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

// FNV-1a of the name as the name comparison sees it: lower case, without
// white space, '-' and '_'.
uint64_t name_key(const char *name) {
    uint64_t h = 14695981039346656037ull;
    for (const unsigned char *p = reinterpret_cast<const unsigned char *>(name); *p; ++p) {
        if (is_name_separator(*p)) continue;
        h ^= static_cast<uint64_t>(to_lower(*p));
        h *= 1099511628211ull;
    }
    return h;
}

struct IndexEntry {
    uint64_t key;
    int32_t order;  // position of the code in the bands' order
    int32_t code;
};

struct Index {
    IndexEntry *entries;
    size_t count;
};

Index *build_index(const KindInfo &kind) {
    Sequence s = sequence_new(sizeof(IndexEntry), 1024);
    const ox_coderange_set *set = kind.ranges();
    int32_t order = 0;
    for (int32_t b = 0; b < set->count; ++b)
        for (int64_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code, ++order) {
            ox_object *h = kind.build(static_cast<int32_t>(code));
            if (h == nullptr) continue;
            const IndexEntry e = {name_key(h->name), order, static_cast<int32_t>(code)};
            obj_delete(h);
            if (!sequence_append(s, &e)) {
                sequence_delete(s);
                return nullptr;
            }
        }
    auto *index = static_cast<Index *>(mem_alloc(sizeof(Index)));
    const size_t n = s.count;
    auto *entries = static_cast<IndexEntry *>(n > 0 ? sequence_release(s) : nullptr);
    sequence_delete(s);
    if (index == nullptr || (n > 0 && entries == nullptr)) {
        mem_free(index);
        mem_free(entries);
        return nullptr;
    }
    std::sort(entries, entries + n, [](const IndexEntry &a, const IndexEntry &b) {
        return a.key != b.key ? a.key < b.key : a.order < b.order;
    });
    *index = Index{entries, n};
    return index;
}

// One index per kind, built on first use and kept for the life of the
// process.  A failed build (memory exhausted) is retried on the next call.
std::atomic<Index *> g_indexes[kReverseKinds];

const Index *index_of(const KindInfo &kind) {
    return built_once(
        g_indexes[kind.index], [&kind] { return build_index(kind); },
        [](Index *index) {
            mem_free(index->entries);
            mem_free(index);
        });
}

struct Search {
    const ox_object *object;
    const KindInfo &kind;
    int32_t best_status = 64;
    int32_t best_code = 0;
    const ox_coderange *best_band = nullptr;

    // Compares the candidate of `code`; true when the search is over.
    bool consider(int32_t code) {
        ox_object *candidate = kind.build(code);
        if (candidate == nullptr) return false;
        const bool equal = obj_eq(candidate, object, kind.tag) != 0;
        const int32_t status = candidate->status & 0xFF;
        obj_delete(candidate);
        if (!equal) return false;
        if (status <= OX_STATUS_OBJEDIT || status < best_status) {
            best_status = status;
            best_code = code;
            best_band = coderange_find(kind.ranges(), code);
        }
        return status <= OX_STATUS_OBJEDIT;
    }
};

void search_exhaustive(Search &s) {
    const ox_coderange_set *set = s.kind.ranges();
    for (int32_t b = 0; b < set->count; ++b)
        for (int64_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code)
            if (s.consider(static_cast<int32_t>(code))) return;
}

void search_index(Search &s, const Index &index) {
    const uint64_t key = name_key(s.object->name);
    const IndexEntry *first = std::lower_bound(index.entries, index.entries + index.count, key,
                                               [](const IndexEntry &e, uint64_t k) { return e.key < k; });
    for (const IndexEntry *e = first; e < index.entries + index.count && e->key == key; ++e)
        if (s.consider(e->code)) return;
}

}  // namespace
}  // namespace ox

extern "C" OX_API int32_t ox_factory_code(ox_object *object) {
    if (object == nullptr) return 0;
    const ox::KindInfo *kind = ox::kind_info(object->type);
    if (kind == nullptr) return 0;
    if (object->code >= 0) return object->code;
    ox::Search s{object, *kind};
    const ox::Index *index = nullptr;
    if (kind->edit_bits == 0 || ox::objedithome_query(kind->edit_bits) == nullptr) index = ox::index_of(*kind);
    if (index != nullptr)
        ox::search_index(s, *index);
    else
        ox::search_exhaustive(s);
    ox::obj_set_code(object, s.best_code, s.best_band ? s.best_band->authority : nullptr,
                     s.best_band ? s.best_band->version : nullptr);
    return s.best_code;
}
