// Every catalogue system written as a legacy file and read back.  The result
// is the same system, or one whose differences the legacy format makes
// inherent (docs/PRJFILE.md lists them): a name the file does not carry, a
// datum it has no name for, a prime meridian or angular unit it does not
// know, a projection written under the name of its twin, parameters rounded
// to the microsecond of arc or given the value their absence means.  Each
// read-back system must still project points where the original does; the
// outcomes are counted against tests/data/prjfile_roundtrip.csv.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

#include "test_util.h"

using oxtest::Owned;

namespace {

constexpr double kDeg = oxtest::kDeg;

// The parts in which two projected systems differ, in a fixed order.
std::string projcs_difference(const ox_object *a, const ox_object *b) {
    if (ox_projcs_eq(a, b)) return "equal";
    std::string d;
    if (oxtest::name_of(a) != oxtest::name_of(b)) d += " name";
    if (!ox_geogcs_eq(ox_projcs_geogcs(a), ox_projcs_geogcs(b))) d += " geogcs";
    if (!ox_projection_eq(ox_projcs_projection(a), ox_projcs_projection(b))) d += " projection";
    ox_object *pa[OX_PARAMETER_SLOTS], *pb[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(a, pa);
    ox_projcs_parameters(b, pb);
    for (int k = 0; k < OX_PARAMETER_SLOTS; ++k)
        if ((pa[k] == nullptr) != (pb[k] == nullptr) || (pa[k] != nullptr && !ox_parameter_eq(pa[k], pb[k]))) {
            d += " parameters";
            break;
        }
    if (!ox_unit_eq(ox_projcs_unit(a), ox_projcs_unit(b))) d += " unit";
    return d.substr(1);
}

double value_or(const ox_object *projcs, std::initializer_list<const char *> names, double otherwise) {
    for (const char *n : names) {
        const double v = oxtest::parameter(projcs, n);
        if (!std::isnan(v)) return v;
    }
    return otherwise;
}

// Projects two points near the centre of the read-back system (degrees from
// Greenwich) through both systems; false when the results differ by more
// than a millimetre.  Systems whose projection converts nothing yet count
// as `skipped`.
bool same_projection(ox_object *original, ox_object *back, int *skipped) {
    const double lon0 = value_or(back, {"Central_Meridian", "Longitude_Of_Center", "Longitude_Of_Origin"}, 0.0);
    const double lat0 = value_or(back, {"Latitude_Of_Origin", "Latitude_Of_Center", "Standard_Parallel_1"}, 0.0);
    const double lat = std::fmax(-80.0, std::fmin(80.0, lat0));
    const double greenwich[4] = {lon0 + 0.5, lat + 0.3, lon0 - 1.0, lat - 0.4};
    const ox_object *gcs = ox_projcs_geogcs(original);
    const double unit = ox_unit_factor(ox_geogcs_unit(gcs)) / kDeg;
    const double meridian = ox_primem_longitude(ox_geogcs_primem(gcs));
    double a[4], b[4];
    for (int i = 0; i < 4; i += 2) {
        a[i] = (greenwich[i] - meridian) / unit;
        a[i + 1] = greenwich[i + 1] / unit;
        b[i] = greenwich[i];
        b[i + 1] = greenwich[i + 1];
    }
    if (ox_geog_to_proj(original, 2, a) != 2 || ox_geog_to_proj(back, 2, b) != 2) {
        ++*skipped;
        return true;
    }
    const double fa = ox_unit_factor(ox_projcs_unit(original)), fb = ox_unit_factor(ox_projcs_unit(back));
    for (int i = 0; i < 4; ++i)
        if (!(std::fabs(a[i] * fa - b[i] * fb) < 1e-3)) return false;
    return true;
}

std::map<std::string, int> expected_counts(const std::string &kind) {
    std::map<std::string, int> counts;
    for (const auto &row : oxtest::read_csv("prjfile_roundtrip.csv"))
        if (row[0] == kind) counts[row[1]] = std::stoi(row[2]);
    return counts;
}

std::string listing(const std::map<std::string, int> &counts, const std::string &kind) {
    std::string s;
    for (const auto &[k, v] : counts) s += kind + "," + k + "," + std::to_string(v) + "\n";
    return s;
}

template <class F>
void for_each_predefined(ox_predefined_entry *(*list)(int32_t *), F f) {
    int32_t n = 0;
    ox_predefined_entry *entries = list(&n);
    for (int32_t i = 0; i < n; ++i) f(entries[i].code);
    ox_table_del(entries);
}

}  // namespace

TEST(PrjRoundTrip, ProjectedSystemsOfTheCatalogue) {
    static char text[OX_PRJSTRING_SIZE];
    std::map<std::string, int> counts;
    int skipped = 0, written = 0;
    for_each_predefined(ox_predefined_projcs, [&](int32_t code) {
        Owned h(ox_factory_projcs(code));
        int32_t e = 0;
        if (ox_coordsys_to_prjstring(h.get(), 0, text, &e) != 0) {
            ++counts["refused"];
            return;
        }
        ++written;
        Owned back(ox_coordsys_from_prjstring(text, &e));
        ASSERT_TRUE(back) << code << " does not read back:\n" << text;
        const std::string d = projcs_difference(h.get(), back.get());
        ++counts[d];
        const std::string projection = oxtest::name_of(ox_projcs_projection(back.get()));
        // A name is lost only where the file says nothing but the projection.
        if (d.find("name") != std::string::npos) {
            EXPECT_EQ(oxtest::name_of(back.get()), projection) << code;
        }
        // The projection changes only from a twin to "Transverse_Mercator".
        if (d.find("projection") != std::string::npos) {
            EXPECT_EQ(projection, "Transverse_Mercator") << code;
            const std::string own = oxtest::name_of(ox_projcs_projection(h.get()));
            EXPECT_TRUE(own == "Gauss_Kruger" || own == "Transverse_Mercator_Complex") << code;
        }
        EXPECT_EQ(d.find("unit"), std::string::npos) << code;
        // The spheroid's figure always comes back (a sphere of its axis for
        // the sphere projections).
        const ox_object *s1 = ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(h.get())));
        const ox_object *s2 = ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(back.get())));
        EXPECT_NEAR(ox_spheroid_axis(s1), ox_spheroid_axis(s2), 1e-8) << code;
        if (ox_spheroid_flattening(s2) != 0.0) {
            EXPECT_NEAR(ox_spheroid_flattening(s1), ox_spheroid_flattening(s2), 1e-15) << code;
        }
        EXPECT_TRUE(same_projection(h.get(), back.get(), &skipped)) << code << "\n" << text;
    });
    EXPECT_EQ(counts, expected_counts("projcs")) << listing(counts, "projcs");
    // Most written systems are of projections that convert points already.
    EXPECT_GT(written - skipped, written * 2 / 3) << skipped << " of " << written << " not projected";
}

TEST(PrjRoundTrip, GeographicAndVerticalSystemsOfTheCatalogue) {
    static char text[OX_PRJSTRING_SIZE];
    std::map<std::string, int> counts;
    for_each_predefined(ox_predefined_geogcs, [&](int32_t code) {
        Owned h(ox_factory_geogcs(code));
        int32_t e = 0;
        if (ox_coordsys_to_prjstring(h.get(), 0, text, &e) != 0) {
            // Only another prime meridian keeps a geographic system out.
            EXPECT_NE(ox_primem_longitude(ox_geogcs_primem(h.get())), 0.0) << code;
            ++counts["refused"];
            return;
        }
        Owned back(ox_coordsys_from_prjstring(text, &e));
        ASSERT_TRUE(back) << code;
        std::string d = "equal";
        if (!ox_geogcs_eq(h.get(), back.get())) {
            d = ox_datum_eq(ox_geogcs_datum(h.get()), ox_geogcs_datum(back.get())) ? "name" : "datum";
            if (!ox_spheroid_eq(ox_datum_spheroid(ox_geogcs_datum(h.get())), ox_datum_spheroid(ox_geogcs_datum(back.get()))))
                d += " spheroid name";
        }
        EXPECT_TRUE(ox_unit_eq(ox_geogcs_unit(h.get()), ox_geogcs_unit(back.get()))) << code;
        ++counts[d];
    });
    EXPECT_EQ(counts, expected_counts("geogcs")) << listing(counts, "geogcs");

    // Vertical systems in metres or US feet come back as they are; in other
    // units too, through the catalogue code of the comment.
    counts.clear();
    Owned gcs(ox_factory_geogcs(4326));
    for_each_predefined(ox_predefined_vertcs, [&](int32_t code) {
        Owned h(ox_factory_vertcs(code));
        int32_t e = 0;
        ASSERT_EQ(ox_coordsys_vertcs_to_prjstring(gcs.get(), h.get(), text, &e), 0) << code;
        Owned back(ox_vertcs_from_prjstring(text, &e));
        const bool legacy_unit = ox_unit_factor(ox_vertcs_unit(h.get())) == 1.0 ||
                                 oxtest::name_of(ox_vertcs_unit(h.get())) == "Foot_US";
        ++counts[std::string(ox_vertcs_eq(h.get(), back.get()) ? "equal" : "different") +
                 (legacy_unit ? "" : " other unit")];
    });
    EXPECT_EQ(counts, expected_counts("vertcs")) << listing(counts, "vertcs");
}
