// Definition string to code: "OX_GCS_WGS_1984" -> 4326.  The table is chosen
// by a loose prefix test; the name itself must match exactly (byte-wise), so
// "ox_gcs_wgs_1984" reaches the right table and still finds nothing.
#include <cstring>

#include "factory/ox_factory.h"
#include "object/ox_strings.h"

namespace ox {
namespace {

int32_t search(const cat::Table<cat::DefRow> &t, const char *text) {
    int32_t lo = 0, hi = t.count;
    while (lo < hi) {
        const int32_t mid = lo + (hi - lo) / 2;
        const int c = std::strcmp(t.rows[mid].name, text);
        if (c == 0) return t.rows[mid].code;
        if (c < 0)
            lo = mid + 1;
        else
            hi = mid;
    }
    return 0;
}

}  // namespace
}  // namespace ox

extern "C" OX_API int32_t ox_factory_defstring_to_int(const char *text) {
    if (text == nullptr) return 0;
    while (ox::is_space(static_cast<unsigned char>(*text))) ++text;
    if (*text == '\0') return 0;
    if (ox::is_digit(static_cast<unsigned char>(*text))) {
        int64_t value = 0;
        for (const char *p = text; ox::is_digit(static_cast<unsigned char>(*p)); ++p)
            if ((value = value * 10 + (*p - '0')) > INT32_MAX) return INT32_MAX;  // saturated
        return static_cast<int32_t>(value);
    }
    for (const ox::cat::DefTable &t : ox::cat::kDefTables)
        if (ox::prefix_compare(text, t.prefix) == 0) {
            if (const int32_t code = ox::search(t.names, text)) return code;
            break;
        }
    return ox::search(ox::cat::kSupersededNames, text);
}
