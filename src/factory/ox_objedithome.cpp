// The object-edit home: a process-wide directory whose files ("unit",
// "spheroid", "datum", ...) hold site definitions that the factory consults
// before its catalogue, and the reader of their lines.
//
// Each file is indexed once per version: the first line of every code
// (first line wins) is kept in memory, sorted by code and, for the reverse
// look-up, by the hash of its name, together with the file's identity
// (device, inode, size, modification time).  A look-up costs one stat of
// the file; a file whose identity changed is indexed again.  Files are opened without blocking, and anything that is not a
// regular file counts as absent.
//
// The home is the library's only mutable process-wide state besides
// caches: one mutex guards it, so that the first factory calls of several
// threads may initialise it from the environment at once.  The question
// "is any file of these kinds present" is answered without the lock.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "factory/ox_factory.h"
#include "factory/ox_sequence.h"
#include "object/ox_memory.h"
#include "object/ox_objstrings.h"
#include "object/ox_strings.h"
#include "object/ox_utils.h"

namespace ox {
namespace {

constexpr size_t kMaxDirectory = 255;  // a directory of 256 characters or more disables the home
constexpr size_t kMaxPath = kMaxDirectory + 32;
// A larger file is not read (it counts as unreadable, like a missing one).
constexpr off_t kMaxEditFileSize = off_t{256} << 20;
constexpr int kPieceSize = kEditLineSize - 1;  // a line is read in pieces of 1023 characters

// The files, each with the keyword that starts its definition lines.
struct EditFile {
    const char *name;
    const char *keyword;
    uint32_t bits;
};
constexpr EditFile kFiles[] = {
    {"geogcs", "GEOGCS", kEditGeogcs},       {"projcs", "PROJCS", kEditProjcs}, {"vertcs", "VERTCS", kEditVertcs},
    {"datum", "DATUM", kEditDatum},          {"vdatum", "VDATUM", kEditVdatum}, {"geogtran", "GEOGTRAN", kEditGeogtran},
    {"unit", "UNIT", kEditUnit},             {"primem", "PRIMEM", kEditPrimem}, {"spheroid", "SPHEROID", kEditSpheroid},
};
constexpr int kFileCount = sizeof kFiles / sizeof kFiles[0];

// The first definition line of one code: its text in the index's block.
struct IndexLine {
    int32_t code;
    uint32_t length;
    size_t order;   // the line's place in the file (while indexing)
    size_t offset;  // of the text in the file, then in the index's block
};

// The code of a definition line by the hash of the name it gives.
struct NameLine {
    uint64_t key;
    int32_t code;
};

// The definition lines of one version of one file.
struct FileIndex {
    bool built;
    dev_t device;
    ino_t inode;
    off_t size;
    timespec modified;
    char *text;        // the lines of `lines`, one after another
    IndexLine *lines;  // sorted by code, one per code
    NameLine *names;   // the same lines sorted by name hash, then code
    size_t count;
};

struct Home {
    std::mutex lock;
    std::atomic<bool> initialised{false};
    std::atomic<uint32_t> present{0};  // files found when the directory was set
    char directory[kMaxDirectory + 1] = {};
    FileIndex files[kFileCount] = {};
};
Home g_home;

// The live EditSnapshot guards of this thread, and the files it has looked
// at since the first of them was made (bit per slot).
thread_local int t_snapshots = 0;
thread_local uint32_t t_looked_at = 0;
// The live CatalogueOnly guards of this thread (while any: no file).
thread_local int t_catalogue_only = 0;

// Splits a line in place at every comma and double quote; fields of white
// space only are dropped, the others lose their leading white space.
int split_fields(char *text, char *fields[], int max) {
    int n = 0;
    char *p = text;
    while (true) {
        char *start = p;
        while (*p != '\0' && *p != ',' && *p != '"') ++p;
        const char delimiter = *p;
        *p = '\0';
        while (is_space(static_cast<unsigned char>(*start))) ++start;
        if (*start != '\0' && n < max) fields[n++] = start;
        if (delimiter == '\0') break;
        ++p;
    }
    return n;
}

// Splits the text of `line` into fields; true when a field matches the
// keyword and a code field follows it, which then starts `line->field`.
bool split_definition(EditLine *line, const char *keyword) {
    char *fields[kMaxEditFields + 1];
    const int n = split_fields(line->text, fields, kMaxEditFields + 1);
    int k = 0;
    while (k < n && name_compare(fields[k], keyword) != 0) ++k;
    if (k + 1 >= n) return false;
    line->count = 0;
    for (int i = k + 1; i < n && line->count < kMaxEditFields; ++i) line->field[line->count++] = fields[i];
    return true;
}

void index_clear(FileIndex &f) {
    mem_free(f.text);
    mem_free(f.lines);
    mem_free(f.names);
    f = FileIndex{};
}

bool same_version(const FileIndex &f, const struct stat &st) {
    return f.built && f.device == st.st_dev && f.inode == st.st_ino && f.size == st.st_size &&
           f.modified.tv_sec == st.st_mtim.tv_sec && f.modified.tv_nsec == st.st_mtim.tv_nsec;
}

enum class Read { kOk, kUnreadable, kNoMemory };

// Reads a whole regular file, opened without blocking; a FIFO, device or
// directory put in place of the file is not read.  The block holds the
// bytes read (at most the size the file had when opened).
Read read_file(const char *path, char **block, size_t *length, struct stat *st) {
    *block = nullptr;
    *length = 0;
    const int fd = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return Read::kUnreadable;
    Read result = Read::kUnreadable;
    if (fstat(fd, st) == 0 && S_ISREG(st->st_mode) && st->st_size <= kMaxEditFileSize) {
        const size_t size = static_cast<size_t>(st->st_size);
        char *data = size > 0 ? static_cast<char *>(mem_alloc(size)) : nullptr;
        if (size > 0 && data == nullptr) {
            result = Read::kNoMemory;
        } else {
            size_t done = 0;
            bool failed = false;
            while (done < size) {
                const ssize_t r = read(fd, data + done, size - done);
                if (r < 0 && errno == EINTR) continue;
                if (r < 0) failed = true;
                if (r <= 0) break;  // a file cut short while read: what was there
                done += static_cast<size_t>(r);
            }
            if (failed) {
                mem_free(data);
            } else {
                *block = data;
                *length = done;
                result = Read::kOk;
            }
        }
    }
    close(fd);
    return result;
}

// Indexes the definition lines of a file's text for `keyword`.  The text is
// read as the line reader of a 1023-character buffer reads it: a piece ends
// after a line break or after 1023 characters, and ends early at a NUL or a
// carriage return.  False when memory is exhausted (nothing is kept).
bool index_text(FileIndex &f, const char *data, size_t n, const char *keyword) {
    const auto fail = [](Sequence &found, char *text) {
        sequence_delete(found);
        mem_free(text);
        return false;
    };
    Sequence found = sequence_new(sizeof(IndexLine), 4096);
    EditLine line;
    size_t order = 0;
    for (size_t p = 0; p < n; ++order) {
        const size_t limit = std::min(n, p + kPieceSize);
        const char *piece = data + p;
        const char *newline = static_cast<const char *>(std::memchr(piece, '\n', limit - p));
        const size_t next = newline != nullptr ? static_cast<size_t>(newline - data) + 1 : limit;
        size_t length = 0;
        while (p + length < next && piece[length] != '\0' && piece[length] != '\r' && piece[length] != '\n') ++length;
        std::memcpy(line.text, piece, length);
        line.text[length] = '\0';
        p = next;
        if (!split_definition(&line, keyword)) continue;
        const IndexLine entry = {edit_code(line.field[0]), static_cast<uint32_t>(length), order,
                                 static_cast<size_t>(piece - data)};
        if (!sequence_append(found, &entry)) return fail(found, nullptr);
    }
    // The first line of each code.
    auto *all = reinterpret_cast<IndexLine *>(found.data);
    std::sort(all, all + found.count, [](const IndexLine &a, const IndexLine &b) {
        return a.code != b.code ? a.code < b.code : a.order < b.order;
    });
    size_t kept = 0, total = 0;
    for (size_t i = 0; i < found.count; ++i)
        if (kept == 0 || all[i].code != all[kept - 1].code) {
            all[kept++] = all[i];
            total += all[i].length + 1;
        }
    found.count = kept;
    char *text = total > 0 ? static_cast<char *>(mem_alloc(total)) : nullptr;
    auto *names = kept > 0 ? static_cast<NameLine *>(mem_alloc(kept * sizeof(NameLine))) : nullptr;
    if (kept > 0 && (text == nullptr || names == nullptr)) {
        mem_free(names);
        return fail(found, text);
    }
    size_t at = 0;
    for (size_t i = 0; i < kept; ++i) {
        std::memcpy(text + at, data + all[i].offset, all[i].length);
        text[at + all[i].length] = '\0';
        all[i].offset = at;
        at += all[i].length + 1;
        // The name as the object will carry it: at most 63 characters.
        std::memcpy(line.text, text + all[i].offset, all[i].length + 1);
        split_definition(&line, keyword);
        names[i] = {name_hash(edit_field(line, 1), OX_NAME_SIZE - 1), all[i].code};
    }
    std::sort(names, names + kept, [](const NameLine &a, const NameLine &b) {
        return a.key != b.key ? a.key < b.key : a.code < b.code;
    });
    auto *lines = static_cast<IndexLine *>(kept > 0 ? sequence_release(found) : nullptr);
    sequence_delete(found);
    if (kept > 0 && lines == nullptr) {
        mem_free(names);
        mem_free(text);
        return false;
    }
    f.text = text;
    f.lines = lines;
    f.names = names;
    f.count = kept;
    return true;
}

// Brings the index of file `slot` up to date with the file in the home;
// the caller holds the lock.  No home, unreadable or no longer a regular
// file: no index (kUnreadable).
Read refresh(int slot) {
    FileIndex &f = g_home.files[slot];
    char path[kMaxPath];
    if (g_home.directory[0] == '\0' || !path_join(g_home.directory, kFiles[slot].name, path, sizeof path))
        return Read::kUnreadable;
    const uint32_t slot_bit = uint32_t{1} << slot;
    if ((t_looked_at & slot_bit) != 0 && f.built) return Read::kOk;
    if (t_snapshots > 0) t_looked_at |= slot_bit;
    struct stat st;
    if (stat(path, &st) != 0 || !S_ISREG(st.st_mode)) {
        index_clear(f);
        return Read::kUnreadable;
    }
    if (same_version(f, st)) return Read::kOk;
    index_clear(f);
    char *data = nullptr;
    size_t n = 0;
    const Read r = read_file(path, &data, &n, &st);
    if (r != Read::kOk) return r;
    const bool indexed = index_text(f, data, n, kFiles[slot].keyword);
    mem_free(data);
    if (!indexed) return Read::kNoMemory;
    f.built = true;
    f.device = st.st_dev;
    f.inode = st.st_ino;
    f.size = st.st_size;
    f.modified = st.st_mtim;
    return Read::kOk;
}

// Sets the home; the caller holds the lock.
void set_locked(const char *directory) {
    Home &h = g_home;
    for (FileIndex &f : h.files) index_clear(f);
    h.directory[0] = '\0';
    uint32_t present = 0;
    if (directory != nullptr && directory[0] != '\0' && std::strlen(directory) <= kMaxDirectory) {
        copy_bounded(h.directory, directory, sizeof h.directory);
        char path[kMaxPath];
        for (const EditFile &f : kFiles)
            if (path_join(h.directory, f.name, path, sizeof path) && file_exists(path)) present |= f.bits;
    }
    h.present.store(present, std::memory_order_relaxed);
    h.initialised.store(true, std::memory_order_release);
}

// The files present, initialising the home from "OXOBJEDITHOME" on first use.
uint32_t present_files() {
    Home &h = g_home;
    if (!h.initialised.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> guard(h.lock);
        if (!h.initialised.load(std::memory_order_relaxed)) set_locked(std::getenv("OXOBJEDITHOME"));
    }
    return h.present.load(std::memory_order_acquire);
}

// The slot of the file of `bit` when that file was present (and this
// thread does not ignore the files), else -1.
int present_slot(uint32_t bit) {
    if (t_catalogue_only > 0 || (present_files() & bit) == 0) return -1;
    for (int i = 0; i < kFileCount; ++i)
        if (kFiles[i].bits == bit) return i;
    return -1;
}

// Runs `use(index, slot)` on the up-to-date index of the file of `bit`,
// under the lock: absent when there is no such file, failed when memory ran
// out while it was indexed.
template <class Use>
EditFind with_index(uint32_t bit, Use use) {
    const int slot = present_slot(bit);
    if (slot < 0) return EditFind::kAbsent;
    std::lock_guard<std::mutex> guard(g_home.lock);
    const Read r = refresh(slot);
    if (r != Read::kOk) return r == Read::kNoMemory ? EditFind::kFailed : EditFind::kAbsent;
    return use(static_cast<const FileIndex &>(g_home.files[slot]), slot);
}

}  // namespace

CatalogueOnly::CatalogueOnly() { ++t_catalogue_only; }
CatalogueOnly::~CatalogueOnly() { --t_catalogue_only; }

EditSnapshot::EditSnapshot() { ++t_snapshots; }
EditSnapshot::~EditSnapshot() {
    if (--t_snapshots == 0) t_looked_at = 0;
}

EditFind objedit_find(uint32_t bit, int32_t code, EditLine *line) {
    return with_index(bit, [&](const FileIndex &f, int slot) {
        const IndexLine *end = f.lines + f.count;
        const IndexLine *found = std::lower_bound(static_cast<const IndexLine *>(f.lines), end, code,
                                                  [](const IndexLine &l, int32_t c) { return l.code < c; });
        if (found == end || found->code != code) return EditFind::kAbsent;
        std::memcpy(line->text, f.text + found->offset, found->length + 1);
        return split_definition(line, kFiles[slot].keyword) ? EditFind::kFound : EditFind::kAbsent;
    });
}

EditFind objedit_named(uint32_t bit, uint64_t key, Sequence &codes) {
    return with_index(bit, [&](const FileIndex &f, int) {
        const NameLine *end = f.names + f.count;
        const NameLine *at = std::lower_bound(static_cast<const NameLine *>(f.names), end, key,
                                              [](const NameLine &l, uint64_t k) { return l.key < k; });
        for (; at < end && at->key == key; ++at)
            if (!sequence_append(codes, &at->code)) return EditFind::kFailed;
        return EditFind::kFound;
    });
}

int32_t edit_code(const char *field) {
    if (field == nullptr) return 0;
    const char *p = field;
    while (is_space(static_cast<unsigned char>(*p))) ++p;
    bool negative = false;
    if (*p == '+' || *p == '-') negative = *p++ == '-';
    int64_t value = 0;
    while (is_digit(static_cast<unsigned char>(*p)) && value <= INT32_MAX) value = value * 10 + (*p++ - '0');
    if (value > INT32_MAX) value = INT32_MAX;  // saturate instead of overflowing
    const int32_t code = static_cast<int32_t>(negative ? -value : value);
    return code != 0 ? code : ox_factory_defstring_to_int(field);
}

bool edit_number(const EditLine &line, int i, double *value) {
    const char *field = edit_field(line, i);
    return field != nullptr && read_number(field, value);
}

ox_object *edit_parameter(const char *field) {
    if (field == nullptr) return nullptr;
    const char *eq = std::strchr(field, '=');
    if (eq == nullptr || eq == field) return nullptr;
    char code_text[kEditLineSize];
    copy_bounded(code_text, field, static_cast<size_t>(eq - field) + 1);
    double value = 0.0;
    if (!read_number(eq + 1, &value)) return nullptr;
    ox_object *p = ox_factory_parameter(edit_code(trim_right(code_text)));
    if (p != nullptr) ox_parameter_value_set(p, value);
    return p;
}

bool put_parameter(ox_object *params[OX_PARAMETER_SLOTS], ox_object *parameter) {
    const int32_t slot = ox_parameter_index(parameter);
    if (slot < 0 || slot >= OX_PARAMETER_SLOTS || params[slot] != nullptr) {
        ox_parameter_del(parameter);
        return false;
    }
    params[slot] = parameter;
    return true;
}

}  // namespace ox

extern "C" {

OX_API void ox_objedithome_setdir(const char *directory) {
    std::lock_guard<std::mutex> guard(ox::g_home.lock);
    ox::set_locked(directory);
}

OX_API void ox_objedithome_setfunc(ox_directory_provider provider) {
    if (provider == nullptr) {
        ox_objedithome_setdir(nullptr);  // cleared, and the environment no longer consulted
        return;
    }
    ox_objedithome_setdir(provider());
}

}  // extern "C"
