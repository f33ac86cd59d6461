// Reverse look-up: the catalogue code of an object built by hand or read
// from text.  By definition the answer is that of an exhaustive search: build
// every code of the kind's bands in order, compare each with the object, take
// the first current definition that is equal, else the equal one of lowest
// status.  Equality starts with the separator-insensitive name comparison, so
// only codes whose object carries the same normalised name can match.  An
// index of the catalogue by normalised name (built once per kind, in band
// order, with the object-edit files ignored) yields those candidates.  Of the
// object-edit files only the kind's own can change a name (every other name
// comes from a catalogue row or a zone family's template), so with edit
// files in play the candidates are the catalogue's plus the codes that the
// kind's own file defines under the name; each candidate is then built as
// the factory builds it now, edits included, and compared in band order.
#include <algorithm>
#include <atomic>

#include "factory/ox_factory.h"
#include "factory/ox_sequence.h"
#include "object/ox_memory.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

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
    const CatalogueOnly catalogue_only;
    Sequence s = sequence_new(sizeof(IndexEntry), 1024);
    const ox_coderange_set *set = kind.ranges();
    int32_t order = 0;
    for (int32_t b = 0; b < set->count; ++b)
        for (int64_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code, ++order) {
            ox_object *h = kind.build(static_cast<int32_t>(code));
            if (h == nullptr) continue;
            const IndexEntry e = {name_hash(h->name), order, static_cast<int32_t>(code)};
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

// The position of `code` in the order of the bands (its first band), or -1
// when no band holds it.
int64_t band_order(const ox_coderange_set *set, int32_t code) {
    int64_t before = 0;
    for (int32_t b = 0; b < set->count; ++b) {
        const ox_coderange &r = set->ranges[b];
        if (code >= r.low && code <= r.high) return before + (code - r.low);
        before += int64_t{r.high} - r.low + 1;
    }
    return -1;
}

// Searches the catalogue's candidates and those of the kind's own
// object-edit file in band order; false when the edit file's candidates
// cannot be had (memory exhausted), so that the caller searches every code.
bool search_index(Search &s, const Index &index) {
    const uint64_t key = name_hash(s.object->name);
    const IndexEntry *first = std::lower_bound(index.entries, index.entries + index.count, key,
                                               [](const IndexEntry &e, uint64_t k) { return e.key < k; });
    const IndexEntry *last = first;
    while (last < index.entries + index.count && last->key == key) ++last;
    Sequence edited = sequence_new(sizeof(int32_t), 16);
    if (s.kind.edit_bit != 0 && objedit_named(s.kind.edit_bit, key, edited) == EditFind::kFailed) {
        sequence_delete(edited);
        return false;
    }
    if (edited.count == 0) {  // the catalogue's candidates, already in band order
        for (const IndexEntry *e = first; e < last; ++e)
            if (s.consider(e->code)) break;
        return true;
    }
    Sequence all = sequence_new(sizeof(IndexEntry), 16);
    bool ok = true;
    for (const IndexEntry *e = first; e < last && ok; ++e) ok = sequence_append(all, e);
    for (size_t i = 0; i < edited.count && ok; ++i) {
        const int32_t code = *static_cast<const int32_t *>(sequence_at(edited, i));
        const int64_t order = band_order(s.kind.ranges(), code);
        const IndexEntry e = {key, static_cast<int32_t>(order), code};
        if (order >= 0) ok = sequence_append(all, &e);  // codes outside the bands are never searched
    }
    sequence_delete(edited);
    if (ok) {
        auto *begin = reinterpret_cast<IndexEntry *>(all.data), *end = begin + all.count;
        std::sort(begin, end, [](const IndexEntry &a, const IndexEntry &b) { return a.order < b.order; });
        for (const IndexEntry *e = begin; e < end; ++e)
            if ((e == begin || e->code != e[-1].code) && s.consider(e->code)) break;
    }
    sequence_delete(all);
    return ok;
}

}  // namespace
}  // namespace ox

extern "C" OX_API int32_t ox_factory_code(ox_object *object) {
    if (object == nullptr) return 0;
    const ox::KindInfo *kind = ox::kind_info(object->type);
    if (kind == nullptr) return 0;
    if (object->code >= 0) return object->code;
    const ox::EditSnapshot snapshot;  // each edit file looked at once
    ox::Search s{object, *kind};
    const ox::Index *index = ox::index_of(*kind);
    if (index == nullptr || !ox::search_index(s, *index)) ox::search_exhaustive(s);  // nothing considered yet
    ox::obj_set_code(object, s.best_code, s.best_band ? s.best_band->authority : nullptr,
                     s.best_band ? s.best_band->version : nullptr);
    return s.best_code;
}
