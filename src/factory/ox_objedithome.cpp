// The object-edit home: a process-wide directory whose files ("unit",
// "spheroid", "datum", ...) hold site definitions that the factory consults
// before its catalogue, and the reader of their lines.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "factory/ox_factory.h"
#include "object/ox_objstrings.h"
#include "object/ox_strings.h"
#include "object/ox_utils.h"

namespace ox {
namespace {

constexpr size_t kMaxDirectory = 255;  // a directory of 256 characters or more disables the home

struct EditFile {
    const char *name;
    uint32_t bits;
};
constexpr EditFile kFiles[] = {
    {"geogcs", kEditGeogcs}, {"projcs", kEditProjcs}, {"vertcs", kEditVertcs},
    {"datum", kEditDatum},   {"vdatum", kEditVdatum}, {"geogtran", kEditGeogtran},
    {"unit", kEditUnit},     {"primem", kEditPrimem}, {"spheroid", kEditSpheroid},
};

struct Home {
    char directory[kMaxDirectory + 1];
    bool initialised;
    uint32_t present;
};
Home g_home = {};

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

}  // namespace

const char *objedithome_query(uint32_t bits) {
    if (!g_home.initialised) ox_objedithome_setdir(std::getenv("OXOBJEDITHOME"));
    return (g_home.present & bits) != 0 ? g_home.directory : nullptr;
}

bool objedit_find(uint32_t bit, const char *file, const char *keyword, int32_t code, EditLine *line) {
    const char *directory = objedithome_query(bit);
    if (directory == nullptr) return false;
    char path[kMaxDirectory + 32];
    if (!path_join(directory, file, path, sizeof path)) return false;
    std::FILE *f = std::fopen(path, "rb");
    if (f == nullptr) return false;
    bool found = false;
    char *fields[kMaxEditFields + 1];
    // A longer line is read in pieces of 1023 characters, each a line of its own.
    while (!found && std::fgets(line->text, kEditLineSize, f) != nullptr) {
        line->text[std::strcspn(line->text, "\r\n")] = '\0';
        const int n = split_fields(line->text, fields, kMaxEditFields + 1);
        int k = 0;
        while (k < n && name_compare(fields[k], keyword) != 0) ++k;
        if (k + 1 >= n || edit_code(fields[k + 1]) != code) continue;
        line->count = 0;
        for (int i = k + 1; i < n && line->count < kMaxEditFields; ++i) line->field[line->count++] = fields[i];
        found = true;
    }
    std::fclose(f);
    return found;
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
    ox::Home &h = ox::g_home;
    h.initialised = true;
    h.directory[0] = '\0';
    h.present = 0;
    if (directory == nullptr || directory[0] == '\0') return;
    if (std::strlen(directory) > ox::kMaxDirectory) return;
    ox::copy_bounded(h.directory, directory, sizeof h.directory);
    char path[ox::kMaxDirectory + 32];
    for (const ox::EditFile &f : ox::kFiles)
        if (ox::path_join(h.directory, f.name, path, sizeof path) && ox::file_exists(path)) h.present |= f.bits;
}

OX_API void ox_objedithome_setfunc(ox_directory_provider provider) {
    if (provider == nullptr) {
        ox::g_home.initialised = true;
        ox::g_home.directory[0] = '\0';
        ox::g_home.present = 0;
        return;
    }
    ox_objedithome_setdir(provider());
}

}  // extern "C"
