// Internal interface of the factory: code ranges and authority stamps, the
// object-edit home and its files, and the one kind-builder shape
// (object-edit line, catalogue row, replaced code, special superseded
// definition) that every kind instantiates.
#pragma once

#include <atomic>
#include <cstdint>

#include "factory/ox_catalogue.h"
#include "factory/ox_sequence.h"
#include "object/ox_object.h"

namespace ox {

// ---------------------------------------------------------------------------
// Code ranges.
// ---------------------------------------------------------------------------
// The first band of `set` that contains `code`, or null.
const ox_coderange *coderange_find(const ox_coderange_set *set, int32_t code);
// Authority name and version of the first band that contains `code`; the
// outputs are left untouched when no band does.
void coderange_authority(const ox_coderange_set *set, int32_t code, const char **authority,
                         const char **version);
// Sets the object's code and the authority of the band of `set` holding it.
void stamp(ox_object *object, const ox_coderange_set *set, int32_t code);
// The stamp of a catalogue object: as `stamp`, except that a registry code
// outside every band of the kind (a modern system) is stamped "EPSG" with the
// version of the registry the catalogue was derived from.
void stamp_catalogue(ox_object *object, const ox_coderange_set *set, int32_t code);

// ---------------------------------------------------------------------------
// Object-edit home and files.
// ---------------------------------------------------------------------------
// Bits of the object-edit files (one per file; the unit file sets two).
enum EditBit : uint32_t {
    kEditGeogcs = 1, kEditProjcs = 2, kEditVertcs = 8, kEditDatum = 32, kEditVdatum = 64,
    kEditGeogtran = 128, kEditUnit = 256 | 512, kEditPrimem = 1024, kEditSpheroid = 2048,
};

// One definition line of an object-edit file, split into fields.  `field[0]`
// is the code field (the one after the kind's keyword), `field[1]` the name,
// the rest the parts.
inline constexpr int kEditLineSize = 1024;  // a line is read through 1023 characters
inline constexpr int kMaxEditFields = 64;
struct EditLine {
    char text[kEditLineSize];
    const char *field[kMaxEditFields];
    int count;
};
// The first definition line (one whose keyword field matches the file's
// keyword) of the object-edit file of `bit` whose code field equals `code`:
// found (in `line`), absent (no directory, no file, no such line), or failed
// (memory exhausted while the file was indexed).
enum class EditFind { kFound, kAbsent, kFailed };
EditFind objedit_find(uint32_t bit, int32_t code, EditLine *line);
// Appends to `codes` (int32_t elements) the code of every first definition
// line of the file of `bit` whose name field, cut to the 63 characters an
// object keeps, has the hash `key` (`name_hash`): found (possibly none),
// absent (no such file), or failed (memory exhausted).
EditFind objedit_named(uint32_t bit, uint64_t key, Sequence &codes);
// While one lives, this thread looks at each object-edit file (one stat) at
// most once: the builders it calls see one version of the files, and a
// call that builds many objects costs one stat per file, not one per object.
struct EditSnapshot {
    EditSnapshot();
    ~EditSnapshot();
    EditSnapshot(const EditSnapshot &) = delete;
    EditSnapshot &operator=(const EditSnapshot &) = delete;
};
// While one lives, the builders of this thread ignore the object-edit files
// (the catalogue as it is shipped).
struct CatalogueOnly {
    CatalogueOnly();
    ~CatalogueOnly();
    CatalogueOnly(const CatalogueOnly &) = delete;
    CatalogueOnly &operator=(const CatalogueOnly &) = delete;
};
// A code field: decimal integer, or a definition string when that gives 0.
int32_t edit_code(const char *field);
// The field `i` of a line, or null when the line has fewer fields.
inline const char *edit_field(const EditLine &line, int i) { return i < line.count ? line.field[i] : nullptr; }
// The number of field `i` with the library's number reader; false when the
// field is missing or not a finite number.
bool edit_number(const EditLine &line, int i, double *value);
// Builds a parameter from a "code=value" field (the code may be a definition
// string); null when the field is malformed or names no parameter.
ox_object *edit_parameter(const char *field);
// Places a parameter in its slot; false (parameter deleted) when the slot is
// unknown or taken.
bool put_parameter(ox_object *params[OX_PARAMETER_SLOTS], ox_object *parameter);

// ---------------------------------------------------------------------------
// The kind builder.
// ---------------------------------------------------------------------------
struct KindBuilder {
    uint32_t edit_bit;  // object-edit file bit; 0: the kind has none
    // Builds from an object-edit line; null on failure (parts deleted).
    ox_object *(*from_edit)(const EditLine &line);
    // Builds from the catalogue; null when no row has the code.
    ox_object *(*from_catalogue)(int32_t code);
    const ox_coderange_set *(*ranges)();
    const cat::Table<cat::Replaced> *replaced;   // or null
    const cat::Table<int32_t> *superseded;       // or null
    // The special superseded definitions of the kind (stamped and given
    // their status by the function itself), or null.
    ox_object *(*special)(int32_t code);
    bool stamp_edited;        // an edited object gets the code asked for
    bool edit_failure_final;  // a failed edit line answers null
};
// Object-edit line, then catalogue, then replaced code, then special.
ox_object *factory_build(const KindBuilder &kind, int32_t code);

// Builds the parameters of a catalogue row into their slots; false (and
// nothing left built) when one cannot be built or two share a slot.
bool factory_params(const cat::ParamValue *values, int count, ox_object *params[OX_PARAMETER_SLOTS]);

// The catalogue step of the projected builder (groups in order).
ox_object *projcs_from_catalogue(int32_t code);
// The zone-family group: a family member's projected system, or null.
ox_object *projcs_from_zone_families(int32_t code);
// Builds a projected system from its parts; null (parts deleted) on failure.
ox_object *projcs_assemble(const char *name, int32_t geogcs, int32_t projection, int32_t unit,
                           ox_object *params[OX_PARAMETER_SLOTS]);
// A geographic system from parts already built (all owned; every one
// deleted on failure).
ox_object *geogcs_from_parts(const char *name, ox_object *datum, ox_object *primem, ox_object *unit);
// The same from parts already built (all owned; every one deleted on failure).
ox_object *projcs_from_parts(const char *name, ox_object *geogcs, ox_object *projection,
                             ox_object *params[OX_PARAMETER_SLOTS], ox_object *unit);

// A process-lifetime object (an index of the catalogue) built by the first
// caller that needs it and then shared by every thread: an atomic pointer and
// no lock; a thread that loses the race to publish frees its own copy.  Null
// when building fails (memory exhausted), so that the next caller tries again.
template <class T, class Build, class Release>
T *built_once(std::atomic<T *> &slot, Build build, Release release) {
    T *current = slot.load(std::memory_order_acquire);
    if (current != nullptr) return current;
    T *built = build();
    if (built == nullptr) return nullptr;
    if (!slot.compare_exchange_strong(current, built, std::memory_order_acq_rel)) {
        release(built);
        return current;
    }
    return built;
}

// What the reverse look-up needs of each of its thirteen kinds: the builder
// and the code-range set it searches, and the object-edit file that defines
// the kind's objects (the only one that can change their names).
inline constexpr int kReverseKinds = 13;
struct KindInfo {
    int index;  // 0 .. kReverseKinds - 1
    uint32_t tag;
    const ox_coderange_set *(*ranges)();
    ox_object *(*build)(int32_t code);
    uint32_t edit_bit;  // the kind's own object-edit file, or 0
};
const KindInfo *kind_info(uint32_t tag);

}  // namespace ox
