// Catalogue systems projected: the worked examples of IOGP Guidance Note 7-2
// for the registry's systems, and reference points of peer libraries for
// systems of the same definition.  A projection whose routines are not in
// the library yet converts nothing; its cases are skipped.
#include <gtest/gtest.h>

#include <cmath>

#include "ox.h"
#include "test_util.h"

namespace {

using namespace oxtest;

// Projects the rows of a data file (code, label, lon, lat, x, y) with the
// catalogue's systems: x and y within `tolerance`, in metres when `metres`
// is set, else in the system's linear unit.  A projection whose routines
// are not in the library yet converts nothing: its rows are skipped.
int check_rows(const char *file, double tolerance, bool metres) {
    int checked = 0;
    for (const auto &f : read_csv(file)) {
        EXPECT_EQ(f.size(), 6u);
        const Owned pcs(ox_factory_projcs(std::stoi(f[0])));
        EXPECT_TRUE(pcs) << f[0];
        const double unit = metres ? ox_unit_factor(ox_projcs_unit(pcs.get())) : 1.0;
        double p[2] = {std::stod(f[2]), std::stod(f[3])};
        if (ox_geog_to_proj(pcs.get(), 1, p) != 1) continue;
        EXPECT_NEAR(p[0] * unit, std::stod(f[4]), tolerance) << f[1] << " " << f[2] << " " << f[3];
        EXPECT_NEAR(p[1] * unit, std::stod(f[5]), tolerance) << f[1] << " " << f[2] << " " << f[3];
        ++checked;
    }
    return checked;
}

TEST(CatalogueProjection, GuidanceNoteExamples) {
    if (check_rows("guidance_note_examples.csv", 0.01, false) == 0) GTEST_SKIP() << "no projection routine available";
}

// The methods without reference vectors, against their published formulas
// evaluated on the side (to 0.1 mm as written).
TEST(CatalogueProjection, MethodsWithoutReferenceVectors) {
    if (check_rows("catalogue_formula_points.csv", 1e-3, true) == 0) GTEST_SKIP() << "no projection routine available";
}

TEST(CatalogueProjection, PeerReferencePoints) {
    EXPECT_EQ(read_csv("catalogue_reference.csv").size(), 110u);
    if (check_rows("catalogue_reference.csv", 2e-3, true) == 0) GTEST_SKIP() << "no projection routine available";
}

// The Mercator variant A systems carry the standard parallel whose scale is
// the published scale factor at the natural origin:
// k0 = cos(phi1) / sqrt(1 - e2 sin^2 phi1).
TEST(CatalogueProjection, MercatorScaleFactorBecomesAStandardParallel) {
    Owned pcs(ox_factory_projcs(3002));
    ASSERT_TRUE(pcs);
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(pcs.get(), params);
    ASSERT_NE(params[3], nullptr);
    const double phi1 = ox_parameter_value(params[3]) * M_PI / 180.0;
    const ox_object *spheroid = ox_datum_spheroid(ox_geogcs_datum(ox_projcs_geogcs(pcs.get())));
    const double f = ox_spheroid_flattening(spheroid), e2 = f * (2 - f);
    EXPECT_NEAR(std::cos(phi1) / std::sqrt(1 - e2 * std::sin(phi1) * std::sin(phi1)), 0.997, 1e-12);
    EXPECT_EQ(params[5], nullptr);  // no scale factor in the registry's Mercator
}

}  // namespace
