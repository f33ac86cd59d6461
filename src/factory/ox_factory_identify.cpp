// Identification: the catalogue systems equivalent to a projected or
// geographic system by their parameters rather than their names.
//
// The catalogue (every code of the projected and geographic bands and every
// registry system outside them) is reduced once to compact numeric records:
// projection, the 16 parameter slots with the projection's defaults in the
// empty ones, the spheroid (semi-major axis, flattening), prime meridian,
// angular and linear unit factors, and keys of the normalised names.  A query
// reduces its object the same way and scans the records of its projection:
// two systems are equivalent when every number agrees within 1e-9 relative
// (a parameter one of them leaves out agrees with 0 and with the
// projection's default; the centre's longitude and latitude stand for the
// central meridian and the latitude of origin where a system has only those).
// Equivalent systems are ranked by score, then by the words their names
// share with the query's, then in catalogue order.  Nothing is built during a
// query.
#include <algorithm>
#include <atomic>
#include <cctype>
#include <cmath>
#include <cstring>

#include "factory/ox_factory.h"
#include "factory/ox_sequence.h"
#include "object/ox_memory.h"
#include "object/ox_strings.h"
#include "projection/ox_parmlist.h"
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

constexpr int kMaxWords = 16;

struct Record {
    int32_t code;
    int32_t order;       // place in catalogue order
    int32_t projection;  // registry code (Gauss_Kruger as its twin), or kGeographic
    uint64_t name, geogcs_name, datum_name;
    double axis, flattening, primem, angular, linear;
    double parameters[OX_PARAMETER_SLOTS];
    uint16_t present;  // bit i: slot i was given
    uint16_t nwords;
    uint32_t words[kMaxWords];  // hashes of the words of the three names
};

// The words of a name ("GDA2020 / MGA zone 55": gda, 2020, mga, zone, 55),
// split at every character that is not a letter or digit and between
// letters and digits, lower case; single letters are left out.
void add_words(const char *name, Record *r) {
    const auto kind = [](unsigned char c) { return (c >= '0' && c <= '9') ? 1 : (std::isalpha(c) ? 2 : 0); };
    const unsigned char *p = reinterpret_cast<const unsigned char *>(name);
    while (*p != '\0') {
        const int k = kind(*p);
        if (k == 0) {
            ++p;
            continue;
        }
        uint32_t h = 2166136261u;
        int length = 0;
        for (; *p != '\0' && kind(*p) == k; ++p, ++length) {
            h ^= static_cast<uint32_t>(to_lower(*p));
            h *= 16777619u;
        }
        if ((k == 2 && length < 2) || r->nwords >= kMaxWords) continue;
        if (std::find(r->words, r->words + r->nwords, h) == r->words + r->nwords) r->words[r->nwords++] = h;
    }
}

int shared_words(const Record &a, const Record &b) {
    int n = 0;
    for (int i = 0; i < a.nwords; ++i) n += std::find(b.words, b.words + b.nwords, a.words[i]) != b.words + b.nwords;
    return n;
}

// The registry code of a projection; the twins "Gauss_Kruger" and
// "Transverse_Mercator" are one projection.
int32_t projection_code(const ox_object *projection) {
    char name[OX_NAME_SIZE];
    ox_projection_name(projection, name);
    const ProjRow *row = projlist_find_by_name(name);
    if (row == nullptr) return -1;
    return row->code == kGaussKruger ? kTransverseMercator : row->code;
}

// The defaults of each projection's slots and the slots of the parameters
// that stand for one another, computed once per index.
struct Defaults {
    int32_t code;
    double values[OX_PARAMETER_SLOTS];
};
struct Slots {
    int central_meridian, longitude_of_origin, longitude_of_center, latitude_of_origin, latitude_of_center;
};

bool geographic_fields(const ox_object *geogcs, Record *r) {
    const ox_object *datum = ox_geogcs_datum(geogcs);
    const ox_object *spheroid = ox_datum_spheroid(datum);
    if (datum == nullptr || spheroid == nullptr || ox_geogcs_primem(geogcs) == nullptr ||
        ox_geogcs_unit(geogcs) == nullptr)
        return false;
    r->geogcs_name = key_of(geogcs->name, false);
    r->datum_name = key_of(datum->name, true);
    add_words(geogcs->name, r);
    add_words(datum->name, r);
    r->axis = ox_spheroid_axis(spheroid);
    r->flattening = ox_spheroid_flattening(spheroid);
    r->primem = ox_primem_longitude(ox_geogcs_primem(geogcs));
    r->angular = ox_unit_factor(ox_geogcs_unit(geogcs));
    return true;
}

// A slot given under the other name of its quantity: the centre's longitude
// or the longitude of origin as the central meridian, the centre's latitude
// as the latitude of origin, where the system has no slot of that name.
void fold(Record *r, int from, int to) {
    const uint16_t f = static_cast<uint16_t>(1u << from), t = static_cast<uint16_t>(1u << to);
    if ((r->present & f) == 0 || (r->present & t) != 0) return;
    r->parameters[to] = r->parameters[from];
    r->parameters[from] = 0.0;
    r->present = static_cast<uint16_t>((r->present | t) & ~f);
}

struct Context {
    Defaults defaults[64];
    int ndefaults;
    Slots slots;
};

// The record of a projected or geographic system; false for anything else
// or an incomplete object.
bool record_of(const ox_object *h, const Context &context, Record *r) {
    *r = Record{};
    add_words(h->name, r);
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
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(h, params);
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i)
        if (params[i] != nullptr) {
            r->parameters[i] = ox_parameter_value(params[i]);
            r->present = static_cast<uint16_t>(r->present | (1u << i));
        }
    const Slots &s = context.slots;
    fold(r, s.longitude_of_center, s.central_meridian);
    fold(r, s.longitude_of_origin, s.central_meridian);
    fold(r, s.latitude_of_center, s.latitude_of_origin);
    return true;
}

const Defaults *defaults_of(const Context &context, int32_t projection) {
    for (int i = 0; i < context.ndefaults; ++i)
        if (context.defaults[i].code == projection) return &context.defaults[i];
    return nullptr;
}

bool agree(double a, double b) {
    return std::fabs(a - b) <= kTolerance * std::max(1.0, std::max(std::fabs(a), std::fabs(b)));
}

// A value given on one side only agrees with 0 and with the default.
bool slot_agrees(const Record &a, const Record &b, int i, const Defaults *defaults) {
    const bool in_a = (a.present >> i) & 1u, in_b = (b.present >> i) & 1u;
    if (in_a == in_b) return agree(a.parameters[i], b.parameters[i]);
    const double given = in_a ? a.parameters[i] : b.parameters[i];
    return agree(given, 0.0) || (defaults != nullptr && agree(given, defaults->values[i]));
}

bool equivalent(const Record &a, const Record &b, const Defaults *defaults) {
    if (a.projection != b.projection || !agree(a.axis, b.axis) || !agree(a.primem, b.primem) ||
        !agree(a.angular, b.angular) || !agree(a.linear, b.linear))
        return false;
    // Flattening relative to itself: a sphere is only equivalent to a sphere.
    if (std::fabs(a.flattening - b.flattening) > kTolerance * std::max(a.flattening, b.flattening)) return false;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i)
        if (!slot_agrees(a, b, i, defaults)) return false;
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
    Context context;
};

int slot_of(int32_t code) {
    ox_object *p = ox_factory_parameter(code);
    const int slot = ox_parameter_index(p);
    ox_parameter_del(p);
    return slot >= 0 && slot < OX_PARAMETER_SLOTS ? slot : 0;
}

void fill_context(Context *c) {
    c->ndefaults = 0;
    for (const ProjRow *row : projlist_rows()) {
        if (c->ndefaults >= 64) break;
        ox_object *projection = ox_factory_projection(row->code);
        Defaults &d = c->defaults[c->ndefaults];
        d = Defaults{row->code == kGaussKruger ? kTransverseMercator : row->code, {}};
        ox_object *params[OX_PARAMETER_SLOTS];
        if (projection != nullptr && ox_parameter_projection_defaults(projection, params) > 0)
            for (int k = 0; k < OX_PARAMETER_SLOTS; ++k)
                if (params[k] != nullptr) {
                    d.values[k] = ox_parameter_value(params[k]);
                    ox_parameter_del(params[k]);
                }
        ox_projection_del(projection);
        ++c->ndefaults;
    }
    c->slots = {slot_of(kParCentralMeridian), slot_of(kParLongitudeOfOrigin), slot_of(kParLongitudeOfCenter),
                slot_of(kParLatitudeOfOrigin), slot_of(kParLatitudeOfCenter)};
}

// Appends the record of a code's current catalogue definition.
bool add_code(Sequence &s, const Index &index, ox_object *(*build)(int32_t), int32_t code) {
    ox_object *h = build(code);
    if (h == nullptr) return true;
    Record r;
    const bool keep = (h->status & 0xFF) <= OX_STATUS_OBJEDIT && record_of(h, index.context, &r);
    obj_delete(h);
    if (!keep) return true;
    r.code = code;
    r.order = static_cast<int32_t>(s.count);
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
    fill_context(&index->context);
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
    std::sort(records, records + n, [](const Record &a, const Record &b) {
        return a.projection != b.projection ? a.projection < b.projection : a.order < b.order;
    });
    index->records = records;
    index->count = n;
    return index;
}

// Built on first use and kept for the life of the process.
std::atomic<Index *> g_index{nullptr};

const Index *index() {
    return built_once(g_index, build_index, [](Index *built) {
        mem_free(built->records);
        mem_free(built);
    });
}

}  // namespace
}  // namespace ox

namespace ox {
namespace {

struct Match {
    const Record *record;
    int32_t score;
    int32_t words;
};

}  // namespace
}  // namespace ox

extern "C" OX_API int32_t ox_factory_identify(const ox_object *object, ox_identify_candidate *candidates,
                                              int32_t capacity) {
    using namespace ox;
    if (object == nullptr || (!ox_projcs_p(object) && !ox_geogcs_p(object))) return 0;
    const Index *idx = index();
    if (idx == nullptr) return 0;
    Record query;
    if (!record_of(object, idx->context, &query)) return 0;
    const Defaults *defaults = defaults_of(idx->context, query.projection);
    const Record *first = std::lower_bound(idx->records, idx->records + idx->count, query.projection,
                                           [](const Record &r, int32_t p) { return r.projection < p; });
    const Record *last = first;
    while (last < idx->records + idx->count && last->projection == query.projection) ++last;
    int32_t found = 0;
    for (const Record *r = first; r < last; ++r) found += equivalent(query, *r, defaults);
    if (found == 0 || candidates == nullptr || capacity <= 0) return found;
    auto *matches = static_cast<Match *>(mem_alloc(static_cast<size_t>(found) * sizeof(Match)));
    if (matches == nullptr) return 0;
    int32_t n = 0;
    for (const Record *r = first; r < last; ++r)
        if (equivalent(query, *r, defaults)) matches[n++] = {r, score_of(query, *r), shared_words(query, *r)};
    // Score, then shared words, then catalogue order (the order of the
    // records): an insertion sort, stable and without allocation.
    for (int32_t i = 1; i < n; ++i) {
        const Match m = matches[i];
        int32_t j = i;
        for (; j > 0 && (matches[j - 1].score < m.score ||
                         (matches[j - 1].score == m.score && matches[j - 1].words < m.words));
             --j)
            matches[j] = matches[j - 1];
        matches[j] = m;
    }
    for (int32_t i = 0; i < n && i < capacity; ++i) candidates[i] = {matches[i].record->code, matches[i].score};
    mem_free(matches);
    return found;
}
