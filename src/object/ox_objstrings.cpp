#include "object/ox_objstrings.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "object/ox_strings.h"

namespace ox {

// ---------------------------------------------------------------------------
// Tokenizer
// ---------------------------------------------------------------------------
namespace {

// Character classes of the tokenizer.
enum CharClass : unsigned char { kOrdinary, kBlank, kQuote, kOpen, kClose, kComma, kEnd };
struct ClassTable {
    CharClass cls[256] = {};
    bool delimiter[256] = {};  // '[', ']', ',' and NUL end an unquoted token
    constexpr ClassTable() {
        for (int c = 0; c < 256; ++c) cls[c] = is_space(static_cast<unsigned char>(c)) ? kBlank : kOrdinary;
        cls[static_cast<unsigned char>('"')] = kQuote;
        cls[static_cast<unsigned char>('[')] = cls[static_cast<unsigned char>('(')] = kOpen;
        cls[static_cast<unsigned char>(']')] = cls[static_cast<unsigned char>(')')] = kClose;
        cls[static_cast<unsigned char>(',')] = kComma;
        cls[0] = kEnd;
        delimiter[static_cast<unsigned char>('[')] = delimiter[static_cast<unsigned char>(']')] = true;
        delimiter[static_cast<unsigned char>(',')] = delimiter[0] = true;
    }
};
constexpr ClassTable kChars;

inline CharClass class_of(const char *p) { return kChars.cls[static_cast<unsigned char>(*p)]; }

// Stage 1: copies the text into the work area without white space outside
// quotes, with '(' and ')' turned into brackets, checking the punctuation.
// No more than 1023 characters are written: a further character, even one
// that would be dropped, fails the text.
int normalise(Tokens *w, const char *p) {
    while (is_space(static_cast<unsigned char>(*p))) ++p;
    if (*p == '\0') return kTokNoText;
    const auto first = static_cast<unsigned char>(*p);
    if (!is_alpha(first) && !is_digit(first)) return kTokBadCharacter;

    char *out = w->text;
    int n = 0;
    bool after_bracket = false;  // the last character copied outside quotes was ']'
    int depth = 0;
    // The first character, then runs of ordinary characters, are copied whole.
    const char *run = p++;
    while (class_of(p) == kOrdinary) ++p;
    for (;;) {
        if (run != nullptr) {
            const int len = static_cast<int>(p - run);
            if (len > kMaxObjstringText - n) return kTokTooLong;
            std::memcpy(out + n, run, static_cast<size_t>(len));
            n += len;
            run = nullptr;
        }
        const CharClass c = class_of(p);
        if (c == kEnd) break;
        if (n >= kMaxObjstringText) return kTokTooLong;
        switch (c) {
            case kOrdinary:
                if (after_bracket) return kTokBadCharacter;
                run = p++;
                while (class_of(p) == kOrdinary) ++p;
                continue;
            case kBlank: ++p; continue;
            case kComma:
                out[n++] = ',';
                after_bracket = false;
                ++p;
                continue;
            case kOpen:
                if (after_bracket) return kTokBadCharacter;
                out[n++] = '[';
                ++depth;
                ++p;
                continue;
            case kClose:
                if (depth == 0) break;  // a stray closing bracket ends the text uncopied
                out[n++] = ']';
                after_bracket = true;
                ++p;
                if (--depth == 0) break;  // the outermost object is complete
                continue;
            case kQuote: {
                if (after_bracket) return kTokBadCharacter;
                out[n++] = '"';
                ++p;
                while (is_space(static_cast<unsigned char>(*p))) ++p;  // blanks after the opening quote
                // Inside quotes every character is copied, white space as a blank.
                for (;;) {
                    const char q = *p;
                    if (q == '\0') {
                        out[n] = '\0';
                        return kTokUnbalanced;
                    }
                    if (n >= kMaxObjstringText) return kTokTooLong;
                    if (q == '"') break;
                    out[n++] = is_space(static_cast<unsigned char>(q)) ? ' ' : q;
                    ++p;
                }
                while (n > 0 && out[n - 1] == ' ') --n;  // blanks before the closing quote
                out[n++] = '"';
                ++p;
                while (is_space(static_cast<unsigned char>(*p))) ++p;
                if (*p != ',' && *p != ']' && *p != ')') return kTokBadCharacter;
                after_bracket = false;
                continue;
            }
            case kEnd: break;
        }
        break;
    }
    out[n] = '\0';
    if (depth != 0) return kTokUnbalanced;
    return kTokOk;
}

// Stage 2: cuts the normalised text into tokens with their depths.
int split(Tokens *w) {
    char *s = w->text;
    int depth = 0;
    char previous = '\0';
    int count = 0;
    while (*s != '\0') {
        char *token;
        char *delimiter;
        if (*s == '"') {
            token = s + 1;
            char *close = std::strchr(token, '"');
            if (close == nullptr) break;
            *close = '\0';
            delimiter = close + 1;
        } else {
            token = s;
            delimiter = s;
            while (!kChars.delimiter[static_cast<unsigned char>(*delimiter)]) ++delimiter;
        }
        const char d = *delimiter;
        if (d == '\0') break;
        *delimiter = '\0';
        s = delimiter + 1;
        const bool keep = d == '[' || (d == ']' && *token != '\0') ||
                          (d == ',' && (*token != '\0' || previous != ']'));
        if (keep) {
            if (count >= kMaxTokens) return kTokTooManyTokens;
            w->token[count] = token;
            w->depth[count] = depth;
            ++count;
        }
        if (d == '[') {
            ++depth;
        } else if (d == ']') {
            if (--depth <= 0) break;
        } else if (d != ',') {
            break;  // a quoted token not followed by a delimiter: the text ends
        }
        previous = d;
    }
    w->count = count;
    return kTokOk;
}

}  // namespace

int tokenize_object_string(Tokens *w, const char *text, const char *keyword) {
    if (w == nullptr) return kTokNoWorkArea;
    w->count = 0;
    if (text == nullptr) return kTokNoText;
    const char *start = text;
    if (keyword != nullptr && *keyword != '\0') {
        const char *found = name_search(text, keyword);
        if (found != nullptr) start = found;
    }
    const int rc = normalise(w, start);
    if (rc != kTokOk) return rc;
    return split(w);
}

// ---------------------------------------------------------------------------
// Numbers
// ---------------------------------------------------------------------------
namespace {

char g_decimal_point = '\0';

// Fixed-point text of `value` with `precision` decimals, trailing zeros
// stripped and a bare decimal point completed with "0".
int fixed_trimmed(double value, int precision, char *out, size_t size) {
    auto r = std::to_chars(out, out + size - 1, value, std::chars_format::fixed, precision);
    if (r.ec != std::errc()) {
        out[0] = '\0';
        return 0;
    }
    char *end = r.ptr;
    if (std::memchr(out, '.', static_cast<size_t>(end - out)) != nullptr) {
        while (end > out && end[-1] == '0') --end;
        if (end > out && end[-1] == '.') *end++ = '0';
    }
    *end = '\0';
    return static_cast<int>(end - out);
}

}  // namespace

char locale_decimal_point() {
    if (g_decimal_point == '\0') {
        const struct lconv *lc = std::localeconv();
        g_decimal_point = (lc && lc->decimal_point && lc->decimal_point[0]) ? lc->decimal_point[0] : '.';
    }
    return g_decimal_point;
}

// The number writer of object strings.  Output is the same text as printing
// with the C library's %e / %f / %g formats at the widths of the classic
// algorithm and trimming (widths only pad), produced here with the exact
// shortest-path conversions of <charconv>.
int format_double(double value, char *out, int digits) {
    if (!std::isfinite(value)) {
        const char *s = std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
        std::strcpy(out, s);
        return static_cast<int>(std::strlen(s));
    }
    const int precision = digits == 16 ? 15 : digits;
    char etext[48];
    auto r = std::to_chars(etext, etext + sizeof etext - 1, value, std::chars_format::scientific, precision);
    *r.ptr = '\0';
    const char *epos = std::strrchr(etext, 'e');
    const int e = epos ? std::atoi(epos + 1) : 0;

    if (digits == 16 && e < 12) {
        // The 14th and 15th significant digits, just before the last one:
        // "00" or "99" there is representation noise in the 16th digit.
        const char *m = etext[0] == '-' ? etext + 1 : etext;  // d.ddddddddddddddd
        if ((m[14] == '0' && m[15] == '0') || (m[14] == '9' && m[15] == '9')) digits = 15;
    }
    const int q = digits - e - 1;
    char text[400];
    int len;
    if (e < 0) {
        len = fixed_trimmed(value, q, text, sizeof text);
        if (len > 24 || e < -9) {
            auto g = std::to_chars(text, text + sizeof text - 1, value, std::chars_format::general, digits - 1);
            *g.ptr = '\0';
            len = static_cast<int>(g.ptr - text);
        }
    } else if (q >= 0) {
        len = fixed_trimmed(value, q, text, sizeof text);
    } else {
        // More integer digits than significant ones: exponent form with the
        // default six decimals (precision is lost from 1e16 on, as before).
        auto x = std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific, 6);
        *x.ptr = '\0';
        len = static_cast<int>(x.ptr - text);
    }
    std::memcpy(out, text, static_cast<size_t>(len) + 1);
    return len;
}

bool read_number(const char *token, double *value) {
    double v = 0.0;
    const char *p = token ? token : "";
    while (is_space(static_cast<unsigned char>(*p))) ++p;
    const char *q = p;
    if (*q == '+' && (is_digit(static_cast<unsigned char>(q[1])) || q[1] == '.')) ++q;
    const bool hex = q[0] == '0' && (q[1] == 'x' || q[1] == 'X');
    auto r = std::from_chars(q, q + std::strlen(q), v);
    if (hex || (r.ec != std::errc() && r.ec != std::errc::invalid_argument)) {
        // Hexadecimal and out-of-range texts: the C library's reading, with
        // the locale's decimal point in place of the first '.'.
        char copy[kMaxObjstringText + 1];
        copy_bounded(copy, p, sizeof copy);
        if (char *dot = std::strchr(copy, '.')) *dot = locale_decimal_point();
        v = std::strtod(copy, nullptr);
    } else if (r.ec == std::errc::invalid_argument) {
        v = 0.0;  // not a number: reads as zero
    }
    *value = v;
    return std::isfinite(v);
}

// ---------------------------------------------------------------------------
// Bounded text output
// ---------------------------------------------------------------------------
void TextOut::put(const char *s, size_t n) {
    if (!ok) return;
    if (len + n + 1 > cap) {
        ok = false;
        return;
    }
    std::memcpy(buf + len, s, n);
    len += n;
}

void TextOut::put(const char *s) { put(s, std::strlen(s)); }

void TextOut::put_quoted(const char *s) {
    put_char('"');
    put(s);
    put_char('"');
}

void TextOut::put_number(double v) {
    char t[48];
    const int n = format_double(v, t, 16);
    put(t, static_cast<size_t>(n));
}

void TextOut::put_int(int64_t v) {
    char t[24];
    auto r = std::to_chars(t, t + sizeof t, v);
    put(t, static_cast<size_t>(r.ptr - t));
}

void TextOut::finish() {
    if (cap == 0 || buf == nullptr) return;
    if (ok)
        buf[len] = '\0';
    else
        buf[0] = '\0';
}

}  // namespace ox
