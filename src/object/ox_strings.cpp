#include "object/ox_strings.h"

#include <cstring>

namespace ox {

size_t copy_bounded(char *dst, const char *src, size_t size) {
    if (dst == nullptr || size == 0) return 0;
    size_t n = 0;
    if (src != nullptr)
        while (n + 1 < size && src[n] != '\0') {
            dst[n] = src[n];
            ++n;
        }
    dst[n] = '\0';
    return n;
}

int name_compare_n(const char *a, const char *b, size_t n) {
    const unsigned char *p = reinterpret_cast<const unsigned char *>(a ? a : "");
    const unsigned char *q = reinterpret_cast<const unsigned char *>(b ? b : "");
    for (size_t k = 0; k < n; ++k) {
        while (kNameFold.skip[*p]) ++p;
        while (kNameFold.skip[*q]) ++q;
        const int ca = kNameFold.lower[*p], cb = kNameFold.lower[*q];
        if (ca != cb) return ca - cb;
        if (ca == 0) return 0;
        ++p;
        ++q;
    }
    return 0;
}

int name_compare(const char *a, const char *b) { return name_compare_n(a, b, static_cast<size_t>(-1)); }

uint64_t name_hash(const char *name, size_t limit) {
    uint64_t h = 14695981039346656037ull;
    const unsigned char *p = reinterpret_cast<const unsigned char *>(name ? name : "");
    for (size_t k = 0; k < limit && p[k] != '\0'; ++k) {
        if (kNameFold.skip[p[k]]) continue;
        h ^= kNameFold.lower[p[k]];
        h *= 1099511628211ull;
    }
    return h;
}

int prefix_compare(const char *s, const char *pattern) {
    size_t significant = 0;
    for (const char *p = pattern ? pattern : ""; *p; ++p)
        if (!is_name_separator(static_cast<unsigned char>(*p))) ++significant;
    return name_compare_n(s, pattern, significant);
}

const char *name_search(const char *s, const char *pattern) {
    if (s == nullptr) return nullptr;
    if (pattern == nullptr || *pattern == '\0') return s;
    const size_t n = std::strlen(pattern);
    const int first = to_lower(static_cast<unsigned char>(*pattern));
    for (const char *p = s; *p; ++p)
        if (to_lower(static_cast<unsigned char>(*p)) == first && name_compare_n(p, pattern, n) == 0) return p;
    return nullptr;
}

const char *name_search_unquoted(const char *s, const char *pattern) {
    if (s == nullptr) return nullptr;
    if (pattern == nullptr || *pattern == '\0') return s;
    const size_t n = std::strlen(pattern);
    const int first = to_lower(static_cast<unsigned char>(*pattern));
    bool quoted = false;
    for (const char *p = s; *p; ++p) {
        if (*p == '"') quoted = !quoted;
        if (!quoted && to_lower(static_cast<unsigned char>(*p)) == first && name_compare_n(p, pattern, n) == 0) return p;
    }
    return nullptr;
}

char *split_token(char *s, const char *delimiters, char **state) {
    char *p = s ? s : *state;
    if (p == nullptr) return nullptr;
    p += std::strspn(p, delimiters);
    if (*p == '\0') {
        *state = p;
        return nullptr;
    }
    char *end = p + std::strcspn(p, delimiters);
    if (*end != '\0') *end++ = '\0';
    *state = end;
    return p;
}

bool is_all_digits(const char *s) {
    if (s == nullptr) return true;
    for (; *s; ++s)
        if (!is_digit(static_cast<unsigned char>(*s))) return false;
    return true;
}

char *trim_right(char *s) {
    if (s == nullptr) return s;
    size_t n = std::strlen(s);
    while (n > 0 && is_space(static_cast<unsigned char>(s[n - 1]))) --n;
    s[n] = '\0';
    return s;
}

char *trim_both_ends(char *s) {
    if (s == nullptr) return s;
    while (is_space(static_cast<unsigned char>(*s))) ++s;
    return trim_right(s);
}

char *trim_in_place(char *s) {
    if (s == nullptr) return s;
    char *start = s;
    while (is_space(static_cast<unsigned char>(*start))) ++start;
    if (start != s) std::memmove(s, start, std::strlen(start) + 1);
    return trim_right(s);
}

}  // namespace ox
