// The read-time rename tables point at names the catalogue builds: an old
// name read from an object string becomes the name of a current definition.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "object/ox_object.h"
#include "object/ox_strings.h"
#include "test_util.h"

namespace {

std::set<std::string> folded_names(ox_predefined_entry *(*list)(int32_t *)) {
    int32_t count = 0;
    ox_predefined_entry *entries = list(&count);
    std::set<std::string> names;
    for (int32_t i = 0; i < count; ++i) {
        std::string folded;
        for (const char *c = entries[i].name; *c; ++c)
            if (!ox::is_name_separator(static_cast<unsigned char>(*c))) folded += static_cast<char>(ox::to_lower(*c));
        names.insert(folded);
    }
    ox_table_del(entries);
    return names;
}

std::string fold(const char *name) {
    std::string folded;
    for (const char *c = name; *c; ++c)
        if (!ox::is_name_separator(static_cast<unsigned char>(*c))) folded += static_cast<char>(ox::to_lower(*c));
    return folded;
}

// `absent` lists targets that no definition of the registry extract carries
// (a superseded definition, left out of the lists, counts as present).
void expect_targets_in_catalogue(const ox::TypeDesc &desc, ox_predefined_entry *(*list)(int32_t *), int rows,
                                 std::set<std::string> absent = {}) {
    const std::set<std::string> names = folded_names(list);
    int n = 0;
    for (const ox::RenameRow *r = desc.renames; r->from != nullptr; ++r, ++n)
        EXPECT_EQ(names.count(fold(r->to)) + absent.count(r->to), 1u) << desc.keyword << " rename target " << r->to;
    EXPECT_EQ(n, rows) << desc.keyword;
}

}  // namespace

TEST(RenameTables, TargetsAreCurrentCatalogueNames) {
    expect_targets_in_catalogue(ox::kDatumDesc, ox_predefined_datum, 8);
    expect_targets_in_catalogue(ox::kGeogcsDesc, ox_predefined_geogcs, 7);
    expect_targets_in_catalogue(ox::kProjcsDesc, ox_predefined_projcs, 31);
    expect_targets_in_catalogue(ox::kGeogtranDesc, ox_predefined_geogtran, 21,
                                {"Reunion_1947_To_WGS_1984_1",  // superseded code 1911, status 32
                                 "NAD_1983_CSRS_To_WGS_1984", "ATS_1977_To_NAD_1983_CSRS_NTv2_Maritimes"});
}

// An object string that names an object by an old name reads with the
// current name: every row of each type's table, and the rows of
// tests/data/renames.csv.
TEST(RenameTables, OldNamesReadAsCurrentOnes) {
    const std::string wgs84 = oxtest::kWgs84;
    const std::map<std::string, std::string> texts = {
        {"DATUM", "DATUM[\"@\",SPHEROID[\"s\",6378137.0,298.0]]"},
        {"GEOGCS", "GEOGCS[\"@\",DATUM[\"D_Tahiti\",SPHEROID[\"s\",1,0]],PRIMEM[\"p\",0],UNIT[\"u\",1]]"},
        {"PROJCS", std::string(oxtest::kUtm33).replace(8, 21, "@")},
        {"GEOGTRAN", "GEOGTRAN[\"@\"," + wgs84 + "," + wgs84 + ",METHOD[\"NTv2\"]]"},
        {"PROJECTION", "PROJECTION[\"@\"]"}};
    auto read_name = [&](const std::string &keyword, const std::string &from) {
        std::string text = texts.at(keyword);
        text.replace(text.find('@'), 1, from);
        const oxtest::Owned h(ox::obj_from_string(*ox::type_desc_by_keyword(keyword.c_str()), text.c_str()));
        EXPECT_TRUE(h) << text;
        return oxtest::name_of(h.get());
    };
    for (const auto &[keyword, text] : texts)
        for (const ox::RenameRow *r = ox::type_desc_by_keyword(keyword.c_str())->renames; r && r->from; ++r)
            EXPECT_EQ(read_name(keyword, r->from), r->to);
    const auto rows = oxtest::read_csv("renames.csv");
    ASSERT_EQ(rows.size(), 45u);
    for (const auto &f : rows) EXPECT_EQ(read_name(f[0], f[1]), f[2]);
}
