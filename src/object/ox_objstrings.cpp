#include "object/ox_objstrings.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "object/ox_object.h"
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
// that would be dropped, fails the text.  On failure `at` is where in the
// text reading stopped.
int normalise(Tokens *w, const char *p, const char **at) {
    const auto fail = [at](int code, const char *where) {
        *at = where;
        return code;
    };
    while (is_space(static_cast<unsigned char>(*p))) ++p;
    if (*p == '\0') return fail(kTokNoText, p);
    const auto first = static_cast<unsigned char>(*p);
    if (!is_alpha(first) && !is_digit(first)) return fail(kTokBadCharacter, p);

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
            if (len > kMaxObjstringText - n) return fail(kTokTooLong, run + (kMaxObjstringText - n));
            std::memcpy(out + n, run, static_cast<size_t>(len));
            n += len;
            run = nullptr;
        }
        const CharClass c = class_of(p);
        if (c == kEnd) break;
        if (n >= kMaxObjstringText) return fail(kTokTooLong, p);
        switch (c) {
            case kOrdinary:
                if (after_bracket) return fail(kTokBadCharacter, p);
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
                if (after_bracket) return fail(kTokBadCharacter, p);
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
                if (after_bracket) return fail(kTokBadCharacter, p);
                out[n++] = '"';
                ++p;
                while (is_space(static_cast<unsigned char>(*p))) ++p;  // blanks after the opening quote
                // Inside quotes every character is copied, white space as a blank.
                for (;;) {
                    const char q = *p;
                    if (q == '\0') {
                        out[n] = '\0';
                        return fail(kTokUnbalanced, p);
                    }
                    if (n >= kMaxObjstringText) return fail(kTokTooLong, p);
                    if (q == '"') break;
                    out[n++] = is_space(static_cast<unsigned char>(q)) ? ' ' : q;
                    ++p;
                }
                while (n > 0 && out[n - 1] == ' ') --n;  // blanks before the closing quote
                out[n++] = '"';
                ++p;
                while (is_space(static_cast<unsigned char>(*p))) ++p;
                if (*p != ',' && *p != ']' && *p != ')') return fail(kTokBadCharacter, p);
                after_bracket = false;
                continue;
            }
            case kEnd: break;
        }
        break;
    }
    out[n] = '\0';
    if (depth != 0) return fail(kTokUnbalanced, p);
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

int tokenize_object_string(Tokens *w, const char *text, const char *keyword, const char **stop) {
    const char *at = nullptr;
    if (stop != nullptr) *stop = nullptr;
    if (w == nullptr) return kTokNoWorkArea;
    w->count = 0;
    if (text == nullptr) return kTokNoText;
    const char *start = text;
    if (keyword != nullptr && *keyword != '\0') {
        const char *found = name_search(text, keyword);
        if (found != nullptr) start = found;
    }
    const int rc = normalise(w, start, &at);
    if (rc != kTokOk) {
        if (stop != nullptr) *stop = at;
        return rc;
    }
    return split(w);
}

// ---------------------------------------------------------------------------
// Numbers
// ---------------------------------------------------------------------------
// Consulted once, by whichever thread asks first (the initialisation of a
// local static is thread-safe).
char locale_decimal_point() {
    static const char point = [] {
        const struct lconv *lc = std::localeconv();
        return (lc && lc->decimal_point && lc->decimal_point[0]) ? lc->decimal_point[0] : '.';
    }();
    return point;
}

namespace {

// Writes the decimal digits `digits` (most significant first; the first one
// stands for 10^exponent) in fixed notation with `decimals` decimals, with
// trailing zeros stripped and a bare decimal point completed with "0".
int fixed_from_digits(bool negative, const char *digits, int count, int exponent, int decimals, char *out) {
    char *o = out;
    if (negative) *o++ = '-';
    auto digit_at = [&](int power) {  // digit standing for 10^power
        const int i = exponent - power;
        return (i >= 0 && i < count) ? digits[i] : '0';
    };
    for (int power = exponent > 0 ? exponent : 0; power >= 0; --power) *o++ = digit_at(power);
    if (decimals > 0) {  // no decimal point with no decimals, as %.0f prints
        char *dot = o;
        *o++ = '.';
        for (int power = -1; power >= -decimals; --power) *o++ = digit_at(power);
        while (o > dot + 1 && o[-1] == '0') --o;
        if (o == dot + 1) *o++ = '0';
    }
    *o = '\0';
    return static_cast<int>(o - out);
}

// Significant digits and decimal exponent of a %.{precision}e text.
struct Scientific {
    char sig[24];
    int count = 0;
    int exponent = 0;
    bool negative = false;
};

Scientific scientific(double value, int precision) {
    char t[48];
    const auto r = std::to_chars(t, t + sizeof t, value, std::chars_format::scientific, precision);
    const char *e = r.ptr - 1;
    while (*e != 'e') --e;
    Scientific s;
    int x = 0;
    for (const char *c = e + 2; c < r.ptr; ++c) x = 10 * x + (*c - '0');
    s.exponent = e[1] == '-' ? -x : x;
    const char *c = t;
    if (*c == '-') {
        s.negative = true;
        ++c;
    }
    for (; c < e; ++c)
        if (*c != '.') s.sig[s.count++] = *c;
    return s;
}

}  // namespace

// The number writer of object strings.  It gives the text that the classic
// C library algorithm gives (print with %.15e; when the exponent is below 12
// and the 14th and 15th significant digits are "00" or "99", use 15
// significant digits instead of 16; print in fixed form with as many decimals
// as those digits need, trailing zeros stripped; below 1e-9, or when the
// fixed text exceeds 24 characters, print with %g; from 1e16 on, with %e),
// built from one exact scientific conversion where the digits suffice.
int format_double(double value, char *out, int digits, bool *doubtful) {
    if (doubtful != nullptr) *doubtful = false;
    if (!std::isfinite(value)) {
        const char *s = std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
        std::strcpy(out, s);
        return static_cast<int>(std::strlen(s));
    }
    Scientific d = scientific(value, digits == 16 ? 15 : digits);
    const int e = d.exponent;
    if (digits == 16 && e < 12 &&
        ((d.sig[13] == '0' && d.sig[14] == '0') || (d.sig[13] == '9' && d.sig[14] == '9'))) {
        // The 16th digit is representation noise: 15 significant digits.
        digits = 15;
        // Rounding to 15 digits moves the value by up to half a unit of the
        // 15th digit, 5e-15 of the leading digit's unit: within the equality
        // rule's 2^-48 (relative) when the value's first two digits are 15
        // or more, perhaps not below.
        if (doubtful != nullptr) *doubtful = d.sig[0] == '1' && d.sig[1] < '5';
        if (d.sig[15] == '5') {
            d = scientific(value, 14);  // a 5 may itself come from rounding: convert again, exactly
        } else {
            // Round the 16 digits to 15: below 5 the digit drops, above 5 it
            // carries (a 5 was handled above); the result equals rounding the
            // value itself.
            d.count = 15;
            if (d.sig[15] > '5') {
                int i = 14;
                while (i >= 0 && d.sig[i] == '9') d.sig[i--] = '0';
                if (i >= 0) {
                    ++d.sig[i];
                } else {  // 9.99...9 became 10.0...0
                    d.sig[0] = '1';
                    ++d.exponent;
                }
            }
        }
    }
    const int q = digits - e - 1;
    if (e >= 0 && q >= 0) return fixed_from_digits(d.negative, d.sig, d.count, d.exponent, q, out);
    if (e < 0 && e >= -9) {
        char text[48];
        const int len = fixed_from_digits(d.negative, d.sig, d.count, d.exponent, q, text);
        if (len <= 24) {
            std::memcpy(out, text, static_cast<size_t>(len) + 1);
            return len;
        }
    }
    // Below 1e-9 or longer than 24 characters: the general form; from 1e16
    // on, the exponent form with the default six decimals (precision is lost
    // there, as before).
    if (e >= 0 && doubtful != nullptr) *doubtful = true;
    const auto r = e < 0 ? std::to_chars(out, out + 47, value, std::chars_format::general, digits - 1)
                         : std::to_chars(out, out + 47, value, std::chars_format::scientific, 6);
    *r.ptr = '\0';
    return static_cast<int>(r.ptr - out);
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

}  // namespace ox

extern "C" OX_API int32_t ox_objstring_check(const char *text, const char *keyword, int32_t *position) {
    if (position != nullptr) *position = -1;
    ox::Tokens w;
    const char *stop = nullptr;
    const int rc = ox::tokenize_object_string(&w, text, keyword, &stop);
    if (stop != nullptr && position != nullptr) {
        const ptrdiff_t offset = stop - text;
        *position = offset < INT32_MAX ? static_cast<int32_t>(offset) : INT32_MAX;
    }
    return rc;
}

namespace ox {

// ---------------------------------------------------------------------------
// Bounded text output
// ---------------------------------------------------------------------------
namespace {

// Whether the text of `v` reads back as a value equal to it; only a doubtful
// text (format_double) is read back to know.
bool reads_back(double v, const char *text, bool doubtful) {
    double r;
    return std::isfinite(v) && (!doubtful || (read_number(text, &r) && equal_rule(v, r)));
}

}  // namespace

void TextOut::put_number(double v) {
    bool doubtful = false;
    if (len + 48 < cap) {  // room for any number: write in place
        const int n = format_double(v, buf + len, 16, &doubtful);
        if (!reads_back(v, buf + len, doubtful)) {
            ok = false;
            return;
        }
        len += static_cast<size_t>(n);
        return;
    }
    char t[48];
    const int n = format_double(v, t, 16, &doubtful);
    if (!reads_back(v, t, doubtful)) ok = false;
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
