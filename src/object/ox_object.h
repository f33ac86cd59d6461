// Internal object model: the common header, the per-type records, the type
// descriptions that drive the one generic implementation of the uniform
// operation set (new/del/clone/eq/name/status/authority/to_string/from_string),
// and the internal operations that the factory and the drivers use.
#pragma once

#include "ox.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

// The common header.  Every object record starts with it, so an `ox_object *`
// is a pointer to the header of a record of the type named by `type`.
struct ox_object {
    uint32_t type;                      // type tag (OX_TAG_*)
    int32_t status;                     // provenance (OX_STATUS_*)
    int32_t code;                       // catalogue code; -1 none, 0 looked up and not found
    char name[OX_NAME_SIZE];            // at most 63 characters
    const char *authority_name_ref;     // constant text, not owned
    const char *authority_version_ref;  // constant text or null, not owned
    ox_object *authority;               // owned authority object or null (built lazily)
};

namespace ox {

// 2^-48: the library-wide zero and the tolerance of the equality rule.
inline constexpr double kZero = 3.552713678800501e-15;

// The authorities that issue codes, with the versions of their registries.
inline constexpr const char *kEpsg = "EPSG";
inline constexpr const char *kEpsgVersion = "6.13";
// The registry version of the catalogue's EPSG objects outside the classic
// code bands (the modern systems, built by their own codes).
inline constexpr const char *kEpsgModernVersion = "10.076";
inline constexpr const char *kMavo = "MAVO";
inline constexpr const char *kMavoVersion = "9.3.0";
inline constexpr const char *kCustom = "CUSTOM";
inline constexpr const char *kCustomVersion = "";

using Fn = void (*)(void);  // storage type of routine slots; cast back before calling

struct PcsConstants;  // projection constants of a projected system (projection/ox_pcsconstants.h)
struct GtConstants;   // grid constants of a transformation (transform/ox_gtconstants.h)

// ---------------------------------------------------------------------------
// Per-type records (fields after the header, in object-string order).
// ---------------------------------------------------------------------------
struct Unit { static constexpr uint32_t kTag = OX_TAG_UNIT; ox_object h; double factor; };
struct Primem { static constexpr uint32_t kTag = OX_TAG_PRIMEM; ox_object h; double longitude; };
struct Spheroid { static constexpr uint32_t kTag = OX_TAG_SPHEROID; ox_object h; double axis; double flattening; };
struct Datum { static constexpr uint32_t kTag = OX_TAG_DATUM; ox_object h; ox_object *spheroid; };
struct Geogcs { static constexpr uint32_t kTag = OX_TAG_GEOGCS; ox_object h; ox_object *datum; ox_object *primem; ox_object *unit; };
struct Parameter { static constexpr uint32_t kTag = OX_TAG_PARAMETER; ox_object h; double value; };

// Routine slots of a projection, in this order.
enum ProjectionSlot : int {
    kProjForward, kProjInverse, kProjHorizon, kProjHorizonPcs,
    kProjHorizonGcsRaster, kProjHorizonPcsRaster, kProjConstants, kProjSlots
};
struct Projection { static constexpr uint32_t kTag = OX_TAG_PROJECTION; ox_object h; Fn fn[kProjSlots]; };

struct Projcs {
    static constexpr uint32_t kTag = OX_TAG_PROJCS;
    ox_object h;
    ox_object *geogcs;
    ox_object *projection;
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_object *unit;
    PcsConstants *constants;  // owned, never cloned or compared
};

// Routine slots of a transformation method, in this order.
enum MethodSlot : int { kMethForward, kMethInverse, kMethLoadConstants, kMethSlots };
struct Method { static constexpr uint32_t kTag = OX_TAG_METHOD; ox_object h; Fn fn[kMethSlots]; };

struct Geogtran {
    static constexpr uint32_t kTag = OX_TAG_GEOGTRAN;
    ox_object h;
    ox_object *geogcs1;
    ox_object *geogcs2;
    ox_object *method;
    ox_object *params[OX_PARAMETER_SLOTS];
    GtConstants *constants;  // owned, never cloned or compared
};

struct Authority { static constexpr uint32_t kTag = OX_TAG_AUTHORITY; ox_object h; int32_t authcode; char version[16]; };
struct Vdatum { static constexpr uint32_t kTag = OX_TAG_VDATUM; ox_object h; };
struct Vertcs { static constexpr uint32_t kTag = OX_TAG_VERTCS; ox_object h; ox_object *hvdatum; ox_object *params[OX_PARAMETER_SLOTS]; ox_object *unit; };
struct Hvcoordsys { static constexpr uint32_t kTag = OX_TAG_HVCOORDSYS; ox_object h; ox_object *coordsys; ox_object *vertcs; };
struct Geoxyzcs { static constexpr uint32_t kTag = OX_TAG_GEOXYZCS; ox_object h; ox_object *geogcs; ox_object *unit; };
enum HtmethodSlot : int { kHtForward, kHtInverse, kHtSlots };
struct Htmethod { static constexpr uint32_t kTag = OX_TAG_HTMETHOD; ox_object h; Fn fn[kHtSlots]; };
struct Array { static constexpr uint32_t kTag = OX_TAG_ARRAY; ox_object h; int32_t count; double *values; };
struct Adjhcs { static constexpr uint32_t kTag = OX_TAG_ADJHCS; ox_object h; ox_object *coordsys; ox_object *htmethod; ox_object *array; ox_object *unit; };

// ---------------------------------------------------------------------------
// Type descriptions.
// ---------------------------------------------------------------------------
enum class FieldKind : uint8_t {
    Double,     // a double; compared by the equality rule, written with format_double
    Sub,        // an owned sub-object of one of the types in `tags`
    Params,     // 16 owned parameter slots, written in slot order, read by ox_parameter_index
    Fns,        // `count` routine slots; the first `compared` are compared by identity
    Values,     // array: int32 count at `offset`, owned double block at `offset2`
    Constants,  // an owned constants block: deleted with the object, never cloned or compared
};

struct FieldDesc {
    FieldKind kind;
    uint16_t offset;
    uint16_t offset2;         // Values: offset of the block pointer
    uint32_t tags;            // Sub: accepted type tags (a union of OX_TAG_* bits)
    uint8_t count;            // Fns: number of slots
    uint8_t compared;         // Fns: number of slots compared by eq
    double (*write_as)(double);  // Double: value written instead of the field (null: as is)
    double (*read_as)(double);   // Double: value stored for the number read (null: as is)
};

struct RenameRow { const char *from; const char *to; };

// Values gathered by a reader or a clone and handed to the type's builder.
struct Parts {
    const char *name = nullptr;
    double d[4] = {};                          // Double fields in field order
    ox_object *sub[4] = {};                    // Sub fields in field order
    ox_object *params[OX_PARAMETER_SLOTS] = {};  // Params field
    Fn fn[kProjSlots] = {};                    // Fns field (all slots)
    bool have_fns = false;                     // true when fn[] was filled (clone)
    int32_t count = 0;                         // Values field
    const double *values = nullptr;
    int32_t authcode = 0;                      // authority only
    const char *version = nullptr;             // authority only
};

struct TypeDesc {
    uint32_t tag;
    const char *keyword;       // object-string keyword ("UNIT")
    uint32_t size;             // size of the record
    const FieldDesc *fields;
    int nfields;
    int min_tokens;            // reader: keyword, name and required plain values
    bool has_name;             // false: no name, and no keyword on writing (hvcoordsys)
    bool writes_authority;     // false for array and adjhcs
    const RenameRow *renames;  // read-time rename table, ended by {nullptr, nullptr}
    // Builds the object from parts; on success the object owns every part, on
    // failure (null) the caller still owns them.
    ox_object *(*build)(const Parts &parts);
    // Optional: compares the type's plain values instead of comparing the
    // Double fields one by one under the equality rule.
    bool (*eq_values)(const ox_object *a, const ox_object *b);
    // Optional: releases a Constants field.
    void (*free_constants)(void *constants);
    // Optional: adds values that are not fields (the authority's code and
    // version) to the parts of a clone.
    void (*extra_parts)(const ox_object *h, Parts &parts);
    // Optional: false when the object string of the object, although every
    // number in it reads back, would not read back as the object (the
    // writer then leaves "").
    bool (*writable)(const ox_object *h) = nullptr;
};

// Descriptions of the stored types (one per source file of the type).
extern const TypeDesc kUnitDesc, kPrimemDesc, kSpheroidDesc, kDatumDesc, kGeogcsDesc, kProjcsDesc,
    kParameterDesc, kProjectionDesc, kMethodDesc, kGeogtranDesc, kAuthorityDesc, kVdatumDesc,
    kVertcsDesc, kHvcoordsysDesc, kGeoxyzcsDesc, kHtmethodDesc, kArrayDesc, kAdjhcsDesc;

// The equality rule for doubles: |a - b| <= ((|a| + |b|) / 2 + 1) * 2^-48.
// Identical values (equal infinities too) are equal; an infinite difference
// never is, although the tolerance would then be infinite as well; NaN equals
// nothing.
inline bool equal_rule(double a, double b) {
    if (a == b) return true;
    const double d = a > b ? a - b : b - a;
    const double fa = a < 0 ? -a : a, fb = b < 0 ? -b : b;
    return d <= ((fa + fb) * 0.5 + 1.0) * kZero && d <= 1.7976931348623157e308;
}

// The description of a type tag, or null for an unknown tag.
const TypeDesc *type_desc(uint32_t tag);
// The description whose keyword equals `keyword` under the name comparison.
const TypeDesc *type_desc_by_keyword(const char *keyword);

// ---------------------------------------------------------------------------
// The generic operation set.  `tags` is the set of accepted type tags (one
// tag, or a union for the coordsys and hvdatum dispatchers).
// ---------------------------------------------------------------------------
bool is_a(const ox_object *h, uint32_t tags);
inline bool is_type(const ox_object *h, uint32_t tag) { return h != nullptr && h->type == tag; }

// True when an object string can carry `name`: a name is written between
// double quotes, which have no escape, so it must not contain one.
inline bool name_writable(const char *name) { return name != nullptr && std::strchr(name, '"') == nullptr; }

// Allocates a record of `d`, sets the header (status 1, code -1, the name
// truncated to 63 characters) and zeroes the fields.  A null name or one that
// no object string can carry: null.
ox_object *obj_alloc(const TypeDesc &d, const char *name);
void obj_del(ox_object *h, uint32_t tags);
ox_object *obj_clone(const ox_object *h, uint32_t tags);
int32_t obj_eq(const ox_object *a, const ox_object *b, uint32_t tags);
bool obj_eq_parts(const ox_object *a, const ox_object *b, bool compare_name);
void obj_name(const ox_object *h, uint32_t tags, char *buffer);
int32_t obj_status(const ox_object *h, uint32_t tags);
ox_object *obj_authority(ox_object *h, uint32_t tags);
void obj_authority_set(ox_object *h, uint32_t tags, ox_object *authority);
void obj_to_string(ox_object *h, uint32_t tags, int32_t option, char *buffer);
// Reads an object of type `d` with its keyword as the tokenizer's search start.
ox_object *obj_from_string(const TypeDesc &d, const char *text);
// Reads an object of type `d` from token `start` of a tokenized text; stores
// in `next` the index of the first token after the object.
struct Tokens;
ox_object *obj_read(const TypeDesc &d, const Tokens &w, int start, int *next);

// Deletes any object (dispatch on its tag); null and unknown tags: nothing.
inline void obj_delete(ox_object *h) { obj_del(h, h ? h->type : 0); }
// Deletes the 16 parameter handles of an array (nulls allowed) and clears them.
void params_delete(ox_object *params[OX_PARAMETER_SLOTS]);

// Internal per-type operations used by the factory.
void obj_set_status(ox_object *h, int32_t status);
int32_t obj_code(const ox_object *h);  // -1 for null
void obj_set_code(ox_object *h, int32_t code, const char *authority_name, const char *authority_version);

// Applies a rename table (name comparison, first match) into `out` (64 chars).
void apply_renames(const RenameRow *table, const char *name, char out[OX_NAME_SIZE]);

// Parameter slots of the sixteen-slot array that carry angles and lengths.
inline constexpr int kLinearSlots[] = {0, 1};
inline constexpr int kAngularSlots[] = {2, 6, 8, 3, 9, 4, 10, 11, 7, 14};

}  // namespace ox

// Generate the exported uniform operation set of one type (or union of
// types), each a one-line forward to the generic implementation.  Types with
// a reader or status of their own define those two themselves.
#define OX_DEFINE_LIFECYCLE_OPS(T, TAGS)                                                           \
    extern "C" {                                                                                   \
    OX_API void ox_##T##_del(ox_object *h) { ox::obj_del(h, TAGS); }                               \
    OX_API ox_object *ox_##T##_clone(const ox_object *h) { return ox::obj_clone(h, TAGS); }        \
    OX_API int32_t ox_##T##_eq(const ox_object *a, const ox_object *b) {                           \
        return ox::obj_eq(a, b, TAGS);                                                             \
    }                                                                                              \
    OX_API int32_t ox_##T##_p(const ox_object *h) { return ox::is_a(h, TAGS) ? 1 : 0; }            \
    OX_API void ox_##T##_name(const ox_object *h, char *buffer) { ox::obj_name(h, TAGS, buffer); } \
    OX_API ox_object *ox_##T##_authority(ox_object *h) { return ox::obj_authority(h, TAGS); }      \
    OX_API void ox_##T##_authority_set(ox_object *h, ox_object *authority) {                       \
        ox::obj_authority_set(h, TAGS, authority);                                                 \
    }                                                                                              \
    OX_API void ox_##T##_to_string(const ox_object *h, char *buffer) {                             \
        ox::obj_to_string(const_cast<ox_object *>(h), TAGS, 0, buffer);                            \
    }                                                                                              \
    OX_API void ox_##T##_to_string_ext(ox_object *h, int32_t option, char *buffer) {               \
        ox::obj_to_string(h, TAGS, option, buffer);                                                \
    }                                                                                              \
    }

#define OX_DEFINE_STATUS_OP(T, TAGS)                                                               \
    extern "C" OX_API int32_t ox_##T##_status(const ox_object *h) { return ox::obj_status(h, TAGS); }

#define OX_DEFINE_READ_OP(T, DESC)                                                                 \
    extern "C" OX_API ox_object *ox_##T##_from_string(const char *text) {                          \
        return ox::obj_from_string(DESC, text);                                                    \
    }

#define OX_DEFINE_COMMON_OPS(T, TAGS, DESC) \
    OX_DEFINE_LIFECYCLE_OPS(T, TAGS)        \
    OX_DEFINE_STATUS_OP(T, TAGS)            \
    OX_DEFINE_READ_OP(T, DESC)

// Field descriptions.
namespace ox {
constexpr FieldDesc fd_double(size_t offset, double (*write_as)(double) = nullptr,
                              double (*read_as)(double) = nullptr) {
    return {FieldKind::Double, static_cast<uint16_t>(offset), 0, 0, 0, 0, write_as, read_as};
}
constexpr FieldDesc fd_sub(size_t offset, uint32_t tags) {
    return {FieldKind::Sub, static_cast<uint16_t>(offset), 0, tags, 0, 0, nullptr, nullptr};
}
constexpr FieldDesc fd_params(size_t offset) {
    return {FieldKind::Params, static_cast<uint16_t>(offset), 0, 0, 0, 0, nullptr, nullptr};
}
constexpr FieldDesc fd_fns(size_t offset, int count, int compared) {
    return {FieldKind::Fns, static_cast<uint16_t>(offset), 0, 0, static_cast<uint8_t>(count),
            static_cast<uint8_t>(compared), nullptr, nullptr};
}
constexpr FieldDesc fd_values(size_t count_offset, size_t block_offset) {
    return {FieldKind::Values, static_cast<uint16_t>(count_offset), static_cast<uint16_t>(block_offset),
            0, 0, 0, nullptr, nullptr};
}
constexpr FieldDesc fd_constants(size_t offset) {
    return {FieldKind::Constants, static_cast<uint16_t>(offset), 0, 0, 0, 0, nullptr, nullptr};
}

// Allocates a record of type R for description `d` (see obj_alloc).
template <class R>
inline R *alloc_rec(const TypeDesc &d, const char *name) {
    return reinterpret_cast<R *>(obj_alloc(d, name));
}
}  // namespace ox

// Record access with a tag check: a pointer to the record, or null.
namespace ox {
template <class R>
inline R *rec(ox_object *h, uint32_t tag) {
    return is_type(h, tag) ? reinterpret_cast<R *>(h) : nullptr;
}
template <class R>
inline const R *rec(const ox_object *h, uint32_t tag) {
    return is_type(h, tag) ? reinterpret_cast<const R *>(h) : nullptr;
}

// A field of a record (a borrowed sub-object or a value), or `neutral` for a
// null or wrong-typed handle: the body of every accessor.
template <class R, class M>
inline M field_of(const ox_object *h, M R::*member, M neutral = M{}) {
    return is_type(h, R::kTag) ? reinterpret_cast<const R *>(h)->*member : neutral;
}

// Copies the 16 borrowed parameter handles of a record into `out`; nothing
// for a null or wrong-typed handle or a null array.
template <class R>
inline void copy_params_of(const ox_object *h, ox_object *out[OX_PARAMETER_SLOTS]) {
    if (out == nullptr || !is_type(h, R::kTag)) return;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) out[i] = reinterpret_cast<const R *>(h)->params[i];
}

// True when `params` is an array whose non-null handles are all parameters
// (the check of every constructor that takes a parameter array).
inline bool params_acceptable(ox_object *const params[OX_PARAMETER_SLOTS]) {
    if (params == nullptr) return false;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i)
        if (params[i] != nullptr && !is_type(params[i], OX_TAG_PARAMETER)) return false;
    return true;
}
}  // namespace ox
