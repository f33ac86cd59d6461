#include "test_util.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "object/ox_memory.h"
#include "object/ox_object.h"

namespace oxtest {

void delete_any(ox_object *h) {
    if (h == nullptr) return;
    if (h->type == OX_TAG_AUTHORITY)
        ox_authority_del(h);
    else
        ox::obj_delete(h);
}

ox_object *make_geogcs(const char *name, double axis, double inverse_flattening) {
    ox_object *s = ox_spheroid_new("WGS_1984", axis, inverse_flattening == 0 ? 0 : 1.0 / inverse_flattening);
    ox_object *d = ox_datum_new("D_WGS_1984", s);
    return ox_geogcs_new(name, d, ox_primem_new("Greenwich", 0.0), ox_unit_new("Degree", 0.017453292519943295));
}

void every_allocation_fails(const std::function<ox_object *()> &make, const char *what) {
    for (int n = 1; n < 10000; ++n) {
        const int64_t live = ox::mem_live_count();
        const int64_t before = ox::mem_allocation_count();
        ox::mem_fail_after(n);
        ox_object *h = make();
        ox::mem_fail_after(0);
        const bool reached = ox::mem_allocation_count() - before >= n;
        delete_any(h);
        ASSERT_EQ(ox::mem_live_count(), live) << what << " leaks when allocation " << n << " fails";
        if (!reached) {
            EXPECT_NE(h, nullptr) << what;
            return;
        }
    }
    FAIL() << what << " never completed";
}

std::vector<std::vector<std::string>> read_csv(const std::string &file) {
    std::vector<std::vector<std::string>> rows;
    std::ifstream in(std::string(OX_TEST_DATA_DIR) + "/" + file);
    EXPECT_TRUE(in.good()) << file;
    std::string line;
    bool header = true;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        if (header) {
            header = false;
            continue;
        }
        std::vector<std::string> fields;
        std::stringstream ss(line);
        std::string field;
        while (std::getline(ss, field, ',')) fields.push_back(field);
        if (!line.empty() && line.back() == ',') fields.emplace_back();
        rows.push_back(std::move(fields));
    }
    return rows;
}

bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
bool is_failure(double v) { return same_bits(v, std::bit_cast<double>(uint64_t{0x7FF8000000000001ull})); }

double lon_diff(double a, double b) {
    double d = std::fmod(a - b, 360.0);
    if (d > 180.0) d -= 360.0;
    if (d < -180.0) d += 360.0;
    return d;
}

std::string text_of(ox_object *h, int option) {
    char buffer[OX_OBJSTRING_SIZE];
    ox::obj_to_string(h, h ? h->type : 0, option, buffer);
    return buffer;
}

std::string name_of(const ox_object *h) { return h ? h->name : ""; }

int32_t status_of(const ox_object *h) { return ox::obj_status(h, h ? h->type : 0); }

Stamp stamp_of(ox_object *h) {
    ox_object *a = ox::obj_authority(h, h ? h->type : 0);
    if (a == nullptr) return {0, "", ""};
    char text[OX_NAME_SIZE];
    Stamp s{ox_authority_authcode(a), "", ""};
    ox_authority_name(a, text);
    s.authority = text;
    ox_authority_version(a, text);
    s.version = text;
    return s;
}

double parameter(const ox_object *projcs, const char *name) {
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(projcs, params);
    for (ox_object *p : params)
        if (p && name_of(p) == name) return ox_parameter_value(p);
    return std::nan("");
}

int parameter_count(const ox_object *projcs) {
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(projcs, params);
    int n = 0;
    for (ox_object *p : params) n += p != nullptr;
    return n;
}

TempDir::TempDir() {
    char pattern[] = "/tmp/ox_test_XXXXXX";
    EXPECT_NE(mkdtemp(pattern), nullptr);
    path = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

void TempDir::write(const std::string &file, const std::string &text) const {
    std::ofstream out(path + "/" + file, std::ios::binary);
    EXPECT_TRUE(out.good()) << file;
    out << text;
}

}  // namespace oxtest
