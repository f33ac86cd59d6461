// Identification: the catalogue systems equivalent to a projected or
// geographic system by their parameters rather than their names.
//
// The catalogue (every code of the projected and geographic bands and every
// registry system outside them) is reduced once to compact numeric records:
// projection, the 16 parameter slots with the projection's defaults in the
// empty ones, the spheroid (semi-major axis, flattening), prime meridian,
// angular and linear unit factors, and keys of the normalised names.  A query
// reduces its object the same way and scans the records of its projection:
// two systems are equivalent when every number agrees within 1e-9 relative.
// Nothing is built and nothing is allocated per record during a query.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

#include "factory/ox_factory.h"
#include "factory/ox_sequence.h"
#include "object/ox_memory.h"
#include "object/ox_strings.h"
#include "projection/ox_projlist.h"

namespace ox {
namespace {

constexpr double kTolerance = 1e-9;  // relative agreement of every number
constexpr int32_t kGeographic = 0;   // projection field of a geographic record
constexpr int32_t kTransverseMercator = 43006, kGaussKruger = 43005;

// FNV-1a of a name as the name comparison sees it (lower case, without white
// space, '-' and '_'); for datums also without a leading "D_" and the word
// "datum", so that "D_North_American_1983" and "North_American_Datum_1983"
// are one name.
uint64_t key_of(const char *name, bool datum) {
    char text[OX_NAME_SIZE];
    size_t n = 0;
    const char *p = name;
    if (datum && (p[0] == 'D' || p[0] == 'd') && p[1] == '_') p += 2;
    for (; *p != '\0' && n + 1 < sizeof text; ++p) {
        const unsigned char c = static_cast<unsigned char>(*p);
        if (!is_name_separator(c)) text[n++] = static_cast<char>(to_lower(c));
    }
    text[n] = '\0';
    uint64_t h = 14695981039346656037ull;
    for (size_t i = 0; i < n; ++i) {
        if (datum && i + 5 <= n && std::equal(text + i, text + i + 5, "datum")) {
            i += 4;
            continue;
        }
        h ^= static_cast<unsigned char>(text[i]);
        h *= 1099511628211ull;
    }
    return h;
}

struct Record {
    int32_t code;
    int32_t projection;  // registry code (Gauss_Kruger as its twin), or kGeographic
    uint64_t name, geogcs_name, datum_name;
    double axis, flattening, primem, angular, linear;
    double parameters[OX_PARAMETER_SLOTS];
};

// The registry code of a projection; the twins "Gauss_Kruger" and
// "Transverse_Mercator" are one projection.
int32_t projection_code(const ox_object *projection) {
    char name[OX_NAME_SIZE];
    ox_projection_name(projection, name);
    const ProjRow *row = projlist_find_by_name(name);
    if (row == nullptr) return -1;
    return row->code == kGaussKruger ? kTransverseMercator : row->code;
}

// The defaults of each projection's slots, computed once per index.
struct Defaults {
    int32_t code;
    double values[OX_PARAMETER_SLOTS];
};

bool geographic_fields(const ox_object *geogcs, Record *r) {
    const ox_object *datum = ox_geogcs_datum(geogcs);
    const ox_object *spheroid = ox_datum_spheroid(datum);
    if (datum == nullptr || spheroid == nullptr || ox_geogcs_primem(geogcs) == nullptr ||
        ox_geogcs_unit(geogcs) == nullptr)
        return false;
    r->geogcs_name = key_of(geogcs->name, false);
    r->datum_name = key_of(datum->name, true);
    r->axis = ox_spheroid_axis(spheroid);
    r->flattening = ox_spheroid_flattening(spheroid);
    r->primem = ox_primem_longitude(ox_geogcs_primem(geogcs));
    r->angular = ox_unit_factor(ox_geogcs_unit(geogcs));
    return true;
}

// The record of a projected or geographic system; false for anything else
// or an incomplete object.  `defaults` fills the empty slots.
bool record_of(const ox_object *h, const Defaults *defaults, int ndefaults, Record *r) {
    *r = Record{};
    r->code = 0;
    if (ox_geogcs_p(h)) {
        r->projection = kGeographic;
        r->name = key_of(h->name, false);
        return geographic_fields(h, r);
    }
    if (!ox_projcs_p(h)) return false;
    const ox_object *projection = ox_projcs_projection(h);
    if (projection == nullptr || ox_projcs_unit(h) == nullptr || !geographic_fields(ox_projcs_geogcs(h), r))
        return false;
    r->projection = projection_code(projection);
    if (r->projection < 0) return false;
    r->name = key_of(h->name, false);
    r->linear = ox_unit_factor(ox_projcs_unit(h));
    for (int i = 0; i < ndefaults; ++i)
        if (defaults[i].code == r->projection) std::copy_n(defaults[i].values, OX_PARAMETER_SLOTS, r->parameters);
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(h, params);
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i)
        if (params[i] != nullptr) r->parameters[i] = ox_parameter_value(params[i]);
    return true;
}

bool agree(double a, double b) {
    return std::fabs(a - b) <= kTolerance * std::max(1.0, std::max(std::fabs(a), std::fabs(b)));
}

bool equivalent(const Record &a, const Record &b) {
    if (a.projection != b.projection || !agree(a.axis, b.axis) || !agree(a.primem, b.primem) ||
        !agree(a.angular, b.angular) || !agree(a.linear, b.linear))
        return false;
    // Flattening relative to itself: a sphere is only equivalent to a sphere.
    if (std::fabs(a.flattening - b.flattening) > kTolerance * std::max(a.flattening, b.flattening)) return false;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i)
        if (!agree(a.parameters[i], b.parameters[i])) return false;
    return true;
}

int32_t score_of(const Record &query, const Record &r) {
    if (query.name == r.name && query.geogcs_name == r.geogcs_name && query.datum_name == r.datum_name)
        return OX_IDENTIFY_EXACT;
    return query.datum_name == r.datum_name ? OX_IDENTIFY_PARAMETERS : OX_IDENTIFY_EQUIVALENT_DATUM;
}

struct Index {
    Record *records;  // sorted by projection, then in catalogue order
    size_t count;
    Defaults defaults[64];
    int ndefaults;
};

void fill_defaults(Index *index) {
    int count = 0;
    const ProjRow *rows = projlist_rows(&count);
    index->ndefaults = 0;
    for (int i = 0; i < count && index->ndefaults < 64; ++i) {
        ox_object *projection = ox_factory_projection(rows[i].code);
        Defaults &d = index->defaults[index->ndefaults];
        d = Defaults{rows[i].code == kGaussKruger ? kTransverseMercator : rows[i].code, {}};
        ox_object *params[OX_PARAMETER_SLOTS];
        if (projection != nullptr && ox_parameter_projection_defaults(projection, params) > 0)
            for (int k = 0; k < OX_PARAMETER_SLOTS; ++k)
                if (params[k] != nullptr) {
                    d.values[k] = ox_parameter_value(params[k]);
                    ox_parameter_del(params[k]);
                }
        ox_projection_del(projection);
        ++index->ndefaults;
    }
}

// Appends the record of a code's current catalogue definition.
bool add_code(Sequence &s, const Index &index, ox_object *(*build)(int32_t), int32_t code) {
    ox_object *h = build(code);
    if (h == nullptr) return true;
    Record r;
    const bool keep = (h->status & 0xFF) <= OX_STATUS_OBJEDIT && record_of(h, index.defaults, index.ndefaults, &r);
    obj_delete(h);
    if (!keep) return true;
    r.code = code;
    return sequence_append(s, &r);
}

template <class Row>
bool add_outside(Sequence &s, const Index &index, ox_object *(*build)(int32_t), const cat::Table<Row> &rows,
                 const ox_coderange_set *bands) {
    for (int32_t i = 0; i < rows.count; ++i)
        if (coderange_find(bands, rows.rows[i].code) == nullptr && !add_code(s, index, build, rows.rows[i].code))
            return false;
    return true;
}

Index *build_index() {
    auto *index = static_cast<Index *>(mem_alloc(sizeof(Index)));
    if (index == nullptr) return nullptr;
    fill_defaults(index);
    Sequence s = sequence_new(sizeof(Record), 4096);
    bool ok = true;
    // The bands of both kinds (the authority's and the registry's), then the
    // registry's systems outside them.
    const struct {
        const ox_coderange_set *(*ranges)();
        ox_object *(*build)(int32_t);
    } kinds[] = {{ox_factory_coderanges_projcs, ox_factory_projcs}, {ox_factory_coderanges_geogcs, ox_factory_geogcs}};
    for (const auto &k : kinds) {
        const ox_coderange_set *set = k.ranges();
        for (int32_t b = 0; ok && b < set->count; ++b)
            if (std::strcmp(set->ranges[b].authority, kCustom) != 0)
                for (int64_t code = set->ranges[b].low; ok && code <= set->ranges[b].high; ++code)
                    ok = add_code(s, *index, k.build, static_cast<int32_t>(code));
    }
    ok = ok && add_outside(s, *index, ox_factory_projcs, cat::kProjcsEpsg, ox_factory_coderanges_projcs()) &&
         add_outside(s, *index, ox_factory_geogcs, cat::kGeogcs, ox_factory_coderanges_geogcs());
    const size_t n = s.count;
    Record *records = ok && n > 0 ? static_cast<Record *>(sequence_release(s)) : nullptr;
    sequence_delete(s);
    if (records == nullptr) {
        mem_free(index);
        return nullptr;
    }
    std::stable_sort(records, records + n,
                     [](const Record &a, const Record &b) { return a.projection < b.projection; });
    index->records = records;
    index->count = n;
    return index;
}

// Built on first use and kept for the life of the process; a failed build
// (memory exhausted) is retried by the next query.
std::atomic<Index *> g_index{nullptr};

const Index *index() {
    Index *current = g_index.load(std::memory_order_acquire);
    if (current != nullptr) return current;
    Index *built = build_index();
    if (built == nullptr) return nullptr;
    if (!g_index.compare_exchange_strong(current, built, std::memory_order_acq_rel)) {
        mem_free(built->records);  // another thread won the race
        mem_free(built);
        return current;
    }
    return built;
}

}  // namespace
}  // namespace ox

extern "C" OX_API int32_t ox_factory_identify(const ox_object *object, ox_identify_candidate *candidates,
                                              int32_t capacity) {
    using namespace ox;
    if (object == nullptr || (!ox_projcs_p(object) && !ox_geogcs_p(object))) return 0;
    const Index *idx = index();
    if (idx == nullptr) return 0;
    Record query;
    if (!record_of(object, idx->defaults, idx->ndefaults, &query)) return 0;
    const Record *first = std::lower_bound(idx->records, idx->records + idx->count, query.projection,
                                           [](const Record &r, int32_t p) { return r.projection < p; });
    if (candidates == nullptr || capacity < 0) capacity = 0;
    // Kept in order of score, then catalogue order (the classic bands before
    // the systems outside them): an insertion into the caller's array.
    int32_t found = 0;
    for (const Record *r = first; r < idx->records + idx->count && r->projection == query.projection; ++r) {
        if (!equivalent(query, *r)) continue;
        const ox_identify_candidate c = {r->code, score_of(query, *r)};
        int32_t at = std::min(found, capacity);
        while (at > 0 && candidates[at - 1].score < c.score) --at;
        if (at < capacity) {
            for (int32_t k = std::min(found, capacity - 1); k > at; --k) candidates[k] = candidates[k - 1];
            candidates[at] = c;
        }
        ++found;
    }
    return found;
}
