// Object strings: the tokenizer shared by every reader, the number writer and
// reader, and the bounded text buffer used by every writer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ox.h"

namespace ox {

inline constexpr int kMaxObjstringText = 1023;  // normalised characters
inline constexpr int kMaxTokens = 256;

// Tokenizer results.
enum TokenizeResult : int {
    kTokOk = 0,
    kTokTooManyTokens = -1,
    kTokNoWorkArea = -2,
    kTokNoText = -3,
    kTokTooLong = -4,
    kTokBadCharacter = -5,
    kTokUnbalanced = -6,
};

// Work area of one read, on the stack of the entry operation.
struct Tokens {
    char text[kMaxObjstringText + 1];
    const char *token[kMaxTokens];
    int32_t depth[kMaxTokens];
    int32_t count;
};

// Normalises `text` (starting at `keyword` when found) and splits it into
// tokens with their depths.  Returns 0 or a negative TokenizeResult; for a
// failure of the first stage (codes -3 to -6), `stop` (when given) receives
// where in `text` reading stopped, else null.
int tokenize_object_string(Tokens *work, const char *text, const char *keyword, const char **stop = nullptr);

// Writes `value` with `digits` significant digits (always 16 in object
// strings) and the "00"/"99" rule; '.' is always the decimal point.  `out`
// must hold 48 characters.  Returns the length.  `doubtful`, when given,
// tells whether the text might not read back as a value equal to `value`
// under the equality rule: sixteen significant digits always do (within
// 5e-16, relative), the exponent form of values from 1e16 on keeps seven,
// and the "00"/"99" rule's 15 digits may lose up to 5e-15 of a value whose
// first digits are 10 to 14.
int format_double(double value, char *out, int digits = 16, bool *doubtful = nullptr);

// Reads a number token the way the object strings define it: leading number,
// trailing junk ignored, a non-number reads as 0.0.  False for a result that
// is not finite (NaN, infinities, overflow), which no reader accepts.
bool read_number(const char *token, double *value);

// The locale's decimal-point character, consulted once and cached.
char locale_decimal_point();

// A bounded text buffer: appends never write past `cap`; once something did
// not fit, `ok` is false and the writer leaves "" instead.
struct TextOut {
    char *buf;
    size_t cap;
    size_t len = 0;
    bool ok = true;

    TextOut(char *b, size_t c) : buf(b), cap(c) {
        if (cap > 0) buf[0] = '\0';
    }
    void put(const char *s, size_t n) {
        if (len + n + 1 > cap) {
            ok = false;
            return;
        }
        std::memcpy(buf + len, s, n);
        len += n;
    }
    void put(const char *s) { put(s, std::strlen(s)); }
    void put_char(char c) {
        if (len + 2 > cap) {
            ok = false;
            return;
        }
        buf[len++] = c;
    }
    // A text between double quotes; one that contains a double quote (which
    // has no escape) makes the text fail.
    void put_quoted(const char *s) {
        if (std::strchr(s, '"') != nullptr) ok = false;
        put_char('"');
        put(s);
        put_char('"');
    }
    // format_double, 16 digits.  A number whose text would not read back
    // equal makes the text fail: NaN and infinities (no reader accepts
    // them), from 1e16 on a value that the exponent form's seven digits do
    // not carry, and the rare value that the "00"/"99" rule rounds by more
    // than the equality rule's tolerance.
    void put_number(double v);
    void put_int(int64_t v);
    // Terminates the text, or leaves "" when something did not fit.
    void finish();
};

}  // namespace ox
