// String helpers shared by every subsystem: the truncating copy, the
// separator-insensitive name comparison and its limited, prefix and search
// forms, a re-entrant token splitter, and trimming.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ox {

// ASCII-only character classes (independent of the C locale).
constexpr bool is_space(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool is_digit(unsigned char c) { return c >= '0' && c <= '9'; }
constexpr bool is_alpha(unsigned char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }
constexpr int to_lower(unsigned char c) { return (c >= 'A' && c <= 'Z') ? c + 32 : c; }
constexpr int to_upper(unsigned char c) { return (c >= 'a' && c <= 'z') ? c - 32 : c; }
// Characters that the name comparison skips: white space, '-' and '_'.
constexpr bool is_name_separator(unsigned char c) { return is_space(c) || c == '-' || c == '_'; }

// Copies at most size - 1 characters and always terminates; returns the
// number copied.  A null source copies "".
size_t copy_bounded(char *dst, const char *src, size_t size);

// Case-insensitive comparison that skips white space, '-' and '_' on both
// sides independently; null counts as "".  Returns the difference of the first
// differing lower-cased characters, 0 when equal.
int name_compare(const char *a, const char *b);
// The same, reporting equality once `n` significant characters matched.
int name_compare_n(const char *a, const char *b, size_t n);
// FNV-1a hash of the first `limit` bytes of a name (or all of it) as the
// name comparison sees it: names that compare equal hash equal.
uint64_t name_hash(const char *name, size_t limit = static_cast<size_t>(-1));

// Per byte: whether the name comparison skips it, and its lower case.
struct NameFold {
    bool skip[256] = {};
    unsigned char lower[256] = {};
    constexpr NameFold() {
        for (int c = 0; c < 256; ++c) {
            skip[c] = is_name_separator(static_cast<unsigned char>(c));
            lower[c] = static_cast<unsigned char>(to_lower(static_cast<unsigned char>(c)));
        }
    }
};
inline constexpr NameFold kNameFold{};

// Equality under the name comparison.  Most look-ups in tables of names fail
// on the first significant character, which is tested here inline.
inline bool name_eq(const char *a, const char *b) {
    const unsigned char *p = reinterpret_cast<const unsigned char *>(a ? a : "");
    const unsigned char *q = reinterpret_cast<const unsigned char *>(b ? b : "");
    while (kNameFold.skip[*p]) ++p;
    while (kNameFold.skip[*q]) ++q;
    if (kNameFold.lower[*p] != kNameFold.lower[*q]) return false;
    return name_compare(reinterpret_cast<const char *>(p), reinterpret_cast<const char *>(q)) == 0;
}
// Compares `s` with `pattern` over as many significant characters as the
// pattern has (so `s` may continue after the pattern).
int prefix_compare(const char *s, const char *pattern);
// First position of `s` where `pattern` matches under the limited comparison
// over the pattern's raw length; its first character must match
// case-insensitively.  Null `s`: null; null or empty pattern: `s`; "": null.
const char *name_search(const char *s, const char *pattern);
// The same outside double-quoted text, where only keywords of an object
// string stand (a name that contains a keyword is not a match).
const char *name_search_unquoted(const char *s, const char *pattern);

// strtok with an explicit state pointer.
char *split_token(char *s, const char *delimiters, char **state);

// True for null, "" and a string of decimal digits only.
bool is_all_digits(const char *s);

// Removes trailing white space in place; returns s.
char *trim_right(char *s);
// Skips leading white space and trims trailing white space in place.
char *trim_both_ends(char *s);
// Trims both ends in place, shifting the text to the start of the buffer.
char *trim_in_place(char *s);

}  // namespace ox
