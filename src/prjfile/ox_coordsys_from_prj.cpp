// Reading legacy projection files: the entry points for files and strings,
// the file reader, the line scanner that fills the record, and the readers
// of the numbers in its fields.
//
// The grammar: the text is split at line feeds (a last line without one is
// ignored, and the text must hold two); each line is trimmed, upper-cased up
// to a "/*" comment and stripped of the comment; outside the parameter block
// a line begins with a keyword whose trimmed rest is stored; "PARAMETERS"
// opens the block, after which every line (empty ones included) is the next
// of at most 16 parameter lines.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "object/ox_memory.h"
#include "object/ox_strings.h"
#include "prjfile/ox_prjfile.h"

namespace ox::prj {
namespace {

// Files longer than this are not legacy projection files (a real one holds
// a few hundred characters); reading stops and reports kCannotOpen.
constexpr size_t kMaxFileSize = size_t{1} << 20;
constexpr size_t kFirstBufferSize = 2048;

// The keywords, tested in this order against the start of a line.
enum Field : int {
    kDatum, kFipszone, kParameters, kProjection, kSpheroid, kUnits, kXshift, kYshift, kZone, kZunits, kIgnored
};
struct Keyword {
    const char *text;
    size_t length;
    Field field;
};
constexpr Keyword kKeywords[] = {
    {"DATUM", 5, kDatum},         {"DENSIFY", 7, kIgnored},     {"FIPSZONE", 8, kFipszone},
    {"FLIP", 4, kIgnored},        {"FORMAT", 6, kIgnored},      {"GENERALIZE", 10, kIgnored},
    {"PARAMETERS", 10, kParameters}, {"PROJECTION", 10, kProjection}, {"QUADRANT", 8, kIgnored},
    {"SPHEROID", 8, kSpheroid},   {"SWITCH", 6, kIgnored},      {"UNITS", 5, kUnits},
    {"XSHIFT", 6, kXshift},       {"YSHIFT", 6, kYshift},       {"ZONE", 4, kZone},
    {"ZUNITS", 6, kZunits},
};

char *record_field(Record *r, Field f) {
    switch (f) {
        case kDatum: return r->datum;
        case kFipszone: return r->fipszone;
        case kProjection: return r->projection;
        case kSpheroid: return r->spheroid;
        case kUnits: return r->units;
        case kXshift: return r->xshift;
        case kYshift: return r->yshift;
        case kZone: return r->zone;
        case kZunits: return r->zunits;
        case kParameters:
        case kIgnored: break;
    }
    return nullptr;
}

const char *skip_spaces(const char *p, const char *end) {
    while (p < end && is_space(static_cast<unsigned char>(*p))) ++p;
    return p;
}
const char *trim_end(const char *begin, const char *end) {
    while (end > begin && is_space(static_cast<unsigned char>(end[-1]))) --end;
    return end;
}
// Copies [begin, end) into a field (at most 255 characters).
void store(char *field, const char *begin, const char *end) {
    size_t n = static_cast<size_t>(end - begin);
    if (n > kFieldSize - 1) n = kFieldSize - 1;
    std::memcpy(field, begin, n);
    field[n] = '\0';
}

// One line of the text, [begin, end) without its line feed.
int32_t scan_line(const char *begin, const char *end, Record *r, bool *in_block) {
    begin = skip_spaces(begin, end);
    end = trim_end(begin, end);
    const char *comment = nullptr;
    for (const char *p = begin; p + 1 < end; ++p)
        if (p[0] == '/' && p[1] == '*') {
            comment = p + 2;
            break;
        }
    const char *kept_end = comment ? trim_end(begin, comment - 2) : end;
    const size_t length = static_cast<size_t>(kept_end - begin);
    if (length > kFieldSize - 1) return kUnknownKeyword;  // longer than the record holds
    char line[kFieldSize];
    for (size_t i = 0; i < length; ++i) line[i] = static_cast<char>(to_upper(static_cast<unsigned char>(begin[i])));
    line[length] = '\0';

    if (comment != nullptr && std::strncmp(line, "ZUNITS", 6) == 0)
        store(r->zunits_comment, skip_spaces(comment, end), end);
    if (*in_block) {
        if (r->count == kParameterLines) return kTooManyParameters;
        std::memcpy(r->parameters[r->count++], line, length + 1);
        return kOk;
    }
    if (length == 0) return kOk;
    for (const Keyword &k : kKeywords) {
        if (std::strncmp(line, k.text, k.length) != 0) continue;
        const char *rest = skip_spaces(line + k.length, line + length);
        const char *rest_end = line + length;
        if (k.field == kDatum) {  // only the first word of the datum
            const char *q = rest;
            while (q < rest_end && !is_space(static_cast<unsigned char>(*q))) ++q;
            rest_end = q;
        }
        if (k.field == kParameters) {
            store(r->parameters[r->count++], rest, rest_end);
            *in_block = true;
        } else if (char *f = record_field(r, k.field)) {
            store(f, rest, rest_end);
        }
        return kOk;
    }
    return kUnknownKeyword;
}

// Reads a whole file into a new NUL-terminated text (the library's
// allocator); kOk or an error code.
int32_t read_file(const char *path, char **out) {
    *out = nullptr;
    if (path == nullptr) return kNoText;
    size_t capacity = kFirstBufferSize;
    char *text = static_cast<char *>(mem_alloc(capacity));
    if (text == nullptr) return kCannotBuild;
    FILE *f = std::fopen(path, "rb");
    if (f == nullptr) {
        mem_free(text);
        return kCannotOpen;
    }
    size_t length = 0;
    int32_t result = kOk;
    for (;;) {
        if (length > kMaxFileSize) {
            result = kCannotOpen;
            break;
        }
        if (length + 1 == capacity) {
            char *bigger = static_cast<char *>(mem_alloc(capacity * 2));
            if (bigger == nullptr) {
                result = kCannotBuild;
                break;
            }
            std::memcpy(bigger, text, length);
            mem_free(text);
            text = bigger;
            capacity *= 2;
        }
        const size_t n = std::fread(text + length, 1, capacity - 1 - length, f);
        length += n;
        if (n == 0) {
            if (std::ferror(f)) result = kCannotOpen;  // unreadable, or a directory
            break;
        }
    }
    std::fclose(f);
    if (result == kOk && std::memchr(text, '\0', length) != nullptr) result = kUnknownKeyword;  // not text
    if (result != kOk) {
        mem_free(text);
        return result;
    }
    text[length] = '\0';
    *out = text;
    return kOk;
}

using Builder = ox_object *(*)(const Record &, int32_t *);

ox_object *read_string(const char *text, int32_t *error, Builder build) {
    if (error == nullptr) return nullptr;
    Record r;
    *error = scan(text, &r);
    return *error == kOk ? build(r, error) : nullptr;
}

ox_object *read_path(const char *path, int32_t *error, Builder build) {
    if (error == nullptr) return nullptr;
    char *text = nullptr;
    *error = read_file(path, &text);
    if (*error != kOk) return nullptr;
    ox_object *h = read_string(text, error, build);
    mem_free(text);
    return h;
}

// "%d" at *p after blanks: false when no digits follow; the value saturates.
bool scan_int(const char *&p, long long *value) {
    const char *q = p;
    while (is_space(static_cast<unsigned char>(*q))) ++q;
    bool negative = false;
    if (*q == '+' || *q == '-') negative = *q++ == '-';
    if (!is_digit(static_cast<unsigned char>(*q))) return false;
    long long v = 0;
    for (; is_digit(static_cast<unsigned char>(*q)); ++q)
        if (v < (1LL << 40)) v = v * 10 + (*q - '0');
    *value = negative ? -v : v;
    p = q;
    return true;
}

// A decimal number filling [p, end) exactly, blanks around it allowed.
bool decimal_in(const char *p, const char *end, double *value) {
    p = skip_spaces(p, end);
    end = trim_end(p, end);
    if (p < end && *p == '+') ++p;
    if (p == end || *p == '+') return false;
    double v = 0.0;
    const auto r = std::from_chars(p, end, v);
    if (r.ec != std::errc() || r.ptr != end || !std::isfinite(v)) return false;  // junk, overflow, NaN
    *value = v;
    return true;
}

}  // namespace

void record_clear(Record *r) { std::memset(r, 0, sizeof *r); }

int32_t scan(const char *text, Record *r) {
    record_clear(r);
    if (text == nullptr) return kNoText;
    const char *first = std::strchr(text, '\n');
    if (first == nullptr || std::strchr(first + 1, '\n') == nullptr) return kNoText;
    bool in_block = false;
    for (const char *p = text;;) {
        const char *lf = std::strchr(p, '\n');
        if (lf == nullptr) break;  // a last line without a line feed is not read
        if (lf > p) {
            const int32_t e = scan_line(p, lf, r, &in_block);
            if (e != kOk) return e;
        }
        p = lf + 1;
    }
    return kOk;
}

bool parameter_value(const char *line, double *value) {
    // Read as "%d %d %s": degrees, minutes and the seconds' text.
    const char *p = line;
    long long degrees = 0, minutes = 0;
    const bool one = scan_int(p, &degrees);
    if (!one || !is_space(static_cast<unsigned char>(*p)) || !scan_int(p, &minutes))
        return decimal_in(line, line + std::strlen(line), value);
    const char *end = line + std::strlen(line);
    double seconds = 0.0;
    const char *s = skip_spaces(p, end);
    if (s < end) {
        if (s == p) return false;  // the seconds must stand apart ("30.5" is no minute field)
        const char *t = s;
        while (t < end && !is_space(static_cast<unsigned char>(*t))) ++t;
        if (skip_spaces(t, end) != end || !decimal_in(s, t, &seconds)) return false;
    }
    if (degrees < 0) degrees = -degrees;
    if (minutes < 0) minutes = -minutes;
    if (seconds < 0) seconds = -seconds;
    double v = static_cast<double>(degrees) + static_cast<double>(minutes) / 60.0 + seconds / 3600.0;
    // The sign of a zero degree field would be lost: a hyphen anywhere makes
    // the angle negative ("-0 30 0" is -0.5 degrees).
    if (std::strchr(line, '-') != nullptr) v = -v;
    *value = v;
    return true;
}

int32_t integer_field(const char *field) {
    const char *p = field;
    long long v = 0;
    if (!scan_int(p, &v)) return 0;
    if (v > INT32_MAX) return INT32_MAX;
    if (v < INT32_MIN) return INT32_MIN;
    return static_cast<int32_t>(v);
}

bool decimal_field(const char *field, double *value) { return decimal_in(field, field + std::strlen(field), value); }

}  // namespace ox::prj

extern "C" {

OX_API ox_object *ox_coordsys_from_prjfile(const char *path, int32_t *error) {
    return ox::prj::read_path(path, error, ox::prj::build_coordsys);
}
OX_API ox_object *ox_coordsys_from_prjstring(const char *text, int32_t *error) {
    return ox::prj::read_string(text, error, ox::prj::build_coordsys);
}
OX_API ox_object *ox_vertcs_from_prjfile(const char *path, int32_t *error) {
    return ox::prj::read_path(path, error, ox::prj::build_vertcs);
}
OX_API ox_object *ox_vertcs_from_prjstring(const char *text, int32_t *error) {
    return ox::prj::read_string(text, error, ox::prj::build_vertcs);
}
OX_API ox_object *ox_hvcoordsys_from_prjfile(const char *path, int32_t *error) {
    return ox::prj::read_path(path, error, ox::prj::build_hvcoordsys);
}
OX_API ox_object *ox_hvcoordsys_from_prjstring(const char *text, int32_t *error) {
    return ox::prj::read_string(text, error, ox::prj::build_hvcoordsys);
}
OX_API ox_object *ox_zunit_from_prjfile(const char *path, int32_t *error) {
    return ox::prj::read_path(path, error, ox::prj::build_zunit);
}
OX_API ox_object *ox_zunit_from_prjstring(const char *text, int32_t *error) {
    return ox::prj::read_string(text, error, ox::prj::build_zunit);
}

}  // extern "C"
