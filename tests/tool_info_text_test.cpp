// `ox info` prints a text that `ox parse` reads back: the object string of
// every catalogue code of every kind, with as many AUTHORITY clauses as fit
// the reader, reads back into an equal object.
#include <gtest/gtest.h>

#include "commands.h"
#include "factory/ox_catalogue.h"
#include "factory/ox_factory.h"
#include "test_util.h"

namespace {

using namespace oxtest;

struct KindCodes {
    const char *kind;
    const ox_coderange_set *(*ranges)();
};

// Checks one code of a kind; returns whether it built.
bool check(const oxtool::ObjectKind &kind, int32_t code, int *authority_everywhere) {
    ox_object *h = kind.build(code);
    if (h == nullptr) return false;
    static char text[OX_OBJSTRING_SIZE];
    EXPECT_TRUE(oxtool::readable_text(h, text)) << kind.name << " " << code;
    ox_object *back = kind.read(text);
    EXPECT_NE(back, nullptr) << kind.name << " " << code;
    // Equal, except the superseded definitions whose old names the reader
    // renames to the current ones.
    if (back != nullptr && status_of(h) != OX_STATUS_SUPERSEDED) {
        EXPECT_EQ(ox::obj_eq(h, back, h->type), 1) << kind.name << " " << code;
    }
    char full[OX_OBJSTRING_SIZE];
    kind.write(h, 2, full);
    *authority_everywhere += std::string(full) == text;
    kind.del(back);
    kind.del(h);
    return true;
}

TEST(ToolInfoText, EveryCatalogueCodeReadsBack) {
    const KindCodes kinds[] = {
        {"projcs", ox_factory_coderanges_projcs},     {"geogcs", ox_factory_coderanges_geogcs},
        {"vertcs", ox_factory_coderanges_vertcs},     {"geogtran", ox_factory_coderanges_geogtran},
        {"datum", ox_factory_coderanges_datum},       {"vdatum", ox_factory_coderanges_vdatum},
        {"spheroid", ox_factory_coderanges_spheroid}, {"primem", ox_factory_coderanges_primem},
        {"unit", ox_factory_coderanges_unit},         {"projection", ox_factory_coderanges_projection},
        {"parameter", ox_factory_coderanges_parameter}, {"method", ox_factory_coderanges_method},
        {"htmethod", ox_factory_coderanges_htmethod},
    };
    int built = 0, everywhere = 0;
    for (const KindCodes &k : kinds) {
        const oxtool::ObjectKind *kind = oxtool::object_kind(k.kind);
        ASSERT_NE(kind, nullptr);
        const ox_coderange_set *set = k.ranges();
        for (int32_t b = 0; b < set->count; ++b)
            for (int32_t code = set->ranges[b].low; code <= set->ranges[b].high; ++code)
                built += check(*kind, code, &everywhere);
    }
    // The registry's codes outside the bands.
    const auto outside = [&](const char *kind_name, const auto &table, const ox_coderange_set *bands) {
        const oxtool::ObjectKind *kind = oxtool::object_kind(kind_name);
        for (int32_t i = 0; i < table.count; ++i)
            if (!ox_factory_coderanges_check(bands, table.rows[i].code)) {
                EXPECT_TRUE(check(*kind, table.rows[i].code, &everywhere)) << kind_name << table.rows[i].code;
            }
    };
    outside("projcs", ox::cat::kProjcsEpsg, ox_factory_coderanges_projcs());
    outside("geogcs", ox::cat::kGeogcs, ox_factory_coderanges_geogcs());
    outside("geogtran", ox::cat::kGeogtrans, ox_factory_coderanges_geogtran());
    outside("datum", ox::cat::kDatums, ox_factory_coderanges_datum());
    outside("spheroid", ox::cat::kSpheroids, ox_factory_coderanges_spheroid());
    outside("unit", ox::cat::kUnits, ox_factory_coderanges_unit());
    EXPECT_GT(built, 6000);
    std::printf("%d catalogue codes in the bands; %d texts carry every AUTHORITY\n", built, everywhere);
}

// A plain code names the coordinate system before the other kinds; a kind
// or a definition string's prefix chooses.
TEST(ToolInfoText, SystemArguments) {
    oxtool::CatalogueName name;
    const oxtool::ObjectKind *kind = nullptr;
    ASSERT_TRUE(oxtool::parse_system("EPSG:6677", &name));
    const Owned projcs(oxtool::catalogue_object(name, nullptr, &kind));
    EXPECT_STREQ(kind->name, "projcs");
    const Owned datum(oxtool::catalogue_object(name, oxtool::object_kind("datum"), &kind));
    EXPECT_STREQ(kind->name, "datum");
    ASSERT_TRUE(oxtool::parse_system(" epsg:4326 ", &name));
    EXPECT_EQ(name.code, 4326);
    ASSERT_TRUE(oxtool::parse_system("OX_D_WGS_1984", &name));
    EXPECT_STREQ(name.kind->name, "datum");
    for (const char *bad : {"", "EPSG:", "EPSG:-4", "EPSG:43x", "4326.5", "OX_GCS_NOTHING", "99999999999", "x"})
        EXPECT_FALSE(oxtool::parse_system(bad, &name)) << bad;
    EXPECT_FALSE(oxtool::parse_system(nullptr, &name));
    EXPECT_EQ(oxtool::catalogue_projcs("4326"), nullptr);
    EXPECT_EQ(oxtool::catalogue_projcs("EPSG:0"), nullptr);
}

}  // namespace
