// Whatever the library writes, it reads back equal: a property test over
// objects of every type built from parts with hostile names (quotes,
// brackets, commas, keywords, white space, non-ASCII bytes) and extreme
// numbers, and the refusals that keep the property (a constructor refuses
// what no object string can carry, or the writer leaves "").
//
// Not covered by the property, by design: names that a read-time rename
// table replaces, the Hong Kong correction of geographic systems, parameters
// renamed with ox_parameter_name_set (their slot comes from their old name)
// and routines supplied by the caller (object strings carry names only).
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "object/ox_object.h"
#include "test_util.h"

using oxtest::kInf;
using oxtest::kNaN;
using oxtest::Owned;

namespace {

// The public reader and equality of a type.
struct Reader {
    uint32_t tag;
    ox_object *(*read)(const char *);
    int32_t (*eq)(const ox_object *, const ox_object *);
};
constexpr Reader kReaders[] = {
    {OX_TAG_UNIT, ox_unit_from_string, ox_unit_eq},
    {OX_TAG_PRIMEM, ox_primem_from_string, ox_primem_eq},
    {OX_TAG_SPHEROID, ox_spheroid_from_string, ox_spheroid_eq},
    {OX_TAG_DATUM, ox_datum_from_string, ox_datum_eq},
    {OX_TAG_GEOGCS, ox_geogcs_from_string, ox_geogcs_eq},
    {OX_TAG_PROJCS, ox_projcs_from_string, ox_projcs_eq},
    {OX_TAG_PARAMETER, ox_parameter_from_string, ox_parameter_eq},
    {OX_TAG_GEOGTRAN, ox_geogtran_from_string, ox_geogtran_eq},
    {OX_TAG_AUTHORITY, ox_authority_from_string, ox_authority_eq},
    {OX_TAG_VDATUM, ox_vdatum_from_string, ox_vdatum_eq},
    {OX_TAG_VERTCS, ox_vertcs_from_string, ox_vertcs_eq},
    {OX_TAG_HVCOORDSYS, ox_hvcoordsys_from_string, ox_hvcoordsys_eq},
    {OX_TAG_GEOXYZCS, ox_geoxyzcs_from_string, ox_geoxyzcs_eq},
    {OX_TAG_ARRAY, ox_array_from_string, ox_array_eq},
    {OX_TAG_ADJHCS, ox_adjhcs_from_string, ox_adjhcs_eq},
};

const Reader &reader_of(const ox_object *h) {
    for (const Reader &r : kReaders)
        if (r.tag == h->type) return r;
    ADD_FAILURE() << "no reader for tag " << h->type;
    return kReaders[0];
}

class Generator {
public:
    explicit Generator(uint64_t seed) : rng_(seed) {}

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
    bool chance(int percent) { return pick(100) < percent; }

    // A name of up to about 80 bytes from pieces that an object string
    // treats specially.
    std::string name() {
        static const char *const kPieces[] = {
            "a", "Z", "0", "_", "-", " ", "  ", "\t", "\n", ",", "[", "]", "(", ")", "\"", "\\", "'",
            "\xc3\xa9", "\xe2\x82\xac", "\xff", "\x01", "UNIT[", "PROJCS[", "GEOGCS[", "VERTCS[",
            "HVCOORDSYS[", "AUTHORITY[\"EPSG\",1]", "DATUM", "Name", "WGS_1984",
        };
        std::string s;
        const int n = pick(12);
        for (int i = 0; i < n; ++i) s += kPieces[pick(sizeof kPieces / sizeof kPieces[0])];
        return s;
    }
    // A name without double quotes (one that a constructor accepts).
    std::string plain_name() {
        std::string s = name();
        for (char &c : s)
            if (c == '"') c = '\'';
        return s;
    }

    // Extreme and ordinary numbers of both signs.
    double number() {
        static const double kSpecial[] = {
            0.0, -0.0, DBL_TRUE_MIN, DBL_MIN, 1e-300, 1e-10, 3.5e-15, 0.1, 1.0, 6378137.0, 298.257223563,
            1e15, 9.999999999999998e15, 1e16, 1.2345678901234e16, 1e20, 1.2345678e20, 1e300, DBL_MAX,
            kNaN, kInf, -kInf,
        };
        switch (pick(5)) {
            case 0: return kSpecial[pick(sizeof kSpecial / sizeof kSpecial[0])] * (chance(30) ? -1 : 1);
            case 1: {  // any finite bit pattern
                double d;
                do {
                    const uint64_t bits = rng_();
                    std::memcpy(&d, &bits, sizeof d);
                } while (!std::isfinite(d));
                return d;
            }
            case 2: {  // a short decimal
                const double digits = static_cast<double>(rng_() % 1000000000000ull) * (chance(50) ? -1 : 1);
                return digits / std::pow(10.0, pick(20));
            }
            default: {
                const double mantissa = std::uniform_real_distribution<double>(-10.0, 10.0)(rng_);
                return mantissa * std::pow(10.0, pick(40) - 20);
            }
        }
    }
    double positive() {
        const double v = std::fabs(number());
        return v > 0 && v <= DBL_MAX ? v : 1.0;
    }

    // Parts that always build (so that composites exist), with hostile
    // names and numbers wherever the constructors allow them.  Every random
    // draw is a statement of its own, so that the sequence does not depend
    // on the compiler's order of evaluating arguments.
    ox_object *unit() {
        ox_object *u = nullptr;
        while (u == nullptr) {
            const std::string name = plain_name();
            u = ox_unit_new(name.c_str(), positive());
        }
        maybe_authority(u);
        return u;
    }
    // Its name starts with "m" and no angular unit's name can follow.
    ox_object *linear_unit() {
        std::string name = "m";
        name += plain_name();
        ox_object *u = ox_unit_new(name.c_str(), positive());
        maybe_authority(u);
        return u;
    }
    ox_object *spheroid() {
        ox_object *s = nullptr;
        while (s == nullptr) {
            const std::string name = plain_name();
            const double axis = positive();
            const double flattening = chance(20) ? 0.0 : std::fmod(positive(), 1.0);
            s = ox_spheroid_new(name.c_str(), axis, flattening);
        }
        maybe_authority(s);
        return s;
    }
    ox_object *primem() {
        const std::string name = plain_name();
        const double longitude = std::fmod(number(), 180.0);
        ox_object *p = ox_primem_new(name.c_str(), chance(50) ? longitude : 0.0);
        if (p == nullptr) p = ox_primem_new(name.c_str(), 180.0);  // NaN
        maybe_authority(p);
        return p;
    }
    ox_object *datum() {
        const std::string name = plain_name();
        return ox_datum_new(name.c_str(), spheroid());
    }
    ox_object *geogcs() {
        const std::string name = plain_name();
        ox_object *datum = this->datum();
        ox_object *primem = this->primem();
        return ox_geogcs_new(name.c_str(), datum, primem, unit());
    }
    ox_object *projcs() {
        ox_object *projection = ox_factory_projection(43001 + pick(59));
        ox_object *params[OX_PARAMETER_SLOTS];
        ox_parameter_projection_defaults(projection, params);
        for (ox_object *p : params)
            if (p != nullptr && chance(50)) ox_parameter_value_set(p, number());
        const std::string name = plain_name();
        ox_object *geogcs = this->geogcs();
        return ox_projcs_new(name.c_str(), geogcs, projection, params, linear_unit());
    }
    ox_object *coordsys() { return chance(50) ? geogcs() : projcs(); }
    ox_object *vertcs() {
        ox_object *params[OX_PARAMETER_SLOTS] = {};
        params[0] = ox_factory_parameter(100006);
        params[1] = ox_factory_parameter(100007);
        ox_parameter_value_set(params[0], number());
        ox_object *datum = chance(50) ? ox_vdatum_new(plain_name().c_str()) : this->datum();
        const std::string name = plain_name();
        return ox_vertcs_new(name.c_str(), datum, params, linear_unit());
    }
    ox_object *geogtran() {
        static const int32_t kMethods[] = {9603, 9606, 9607, 9604, 9613};
        ox_object *method = ox_factory_method(kMethods[pick(5)]);
        ox_object *params[OX_PARAMETER_SLOTS];
        ox_parameter_method_defaults(method, params);
        for (ox_object *p : params)
            if (p != nullptr) ox_parameter_value_set(p, number());
        const std::string name = plain_name();
        ox_object *from = geogcs();
        ox_object *to = geogcs();
        return ox_geogtran_new(name.c_str(), from, to, method, params);
    }
    ox_object *array() {
        std::vector<double> values(pick(3) == 0 ? pick(300) : pick(9));
        for (double &v : values) v = number();
        const std::string name = plain_name();
        return ox_array_new(name.c_str(), static_cast<int32_t>(values.size()), values.data());
    }
    ox_object *adjhcs() {
        const std::string name = plain_name();
        ox_object *coordsys = this->coordsys();
        ox_object *method = ox_factory_htmethod(119624 + pick(2));
        ox_object *array = this->array();
        return ox_adjhcs_new(name.c_str(), coordsys, method, array, unit());
    }
    ox_object *geoxyzcs() {
        const std::string name = plain_name();
        ox_object *geogcs = this->geogcs();
        return ox_geoxyzcs_new(name.c_str(), geogcs, linear_unit());
    }
    ox_object *hvcoordsys() {
        const int which = pick(3);
        ox_object *coordsys = which != 1 ? this->coordsys() : nullptr;
        return ox_hvcoordsys_new(coordsys, which != 0 ? vertcs() : nullptr);
    }

    // An authority of a code that no catalogue band holds (a unit with an
    // angular code would count as angular).
    void maybe_authority(ox_object *h) {
        if (h == nullptr || !chance(20)) return;
        const std::string name = plain_name();
        ox::obj_authority_set(h, h->type, ox_authority_new(name.c_str(), 1000000 + pick(1000000), "v"));
    }

private:
    std::mt19937_64 rng_;
};

// Writes `h` with `option`; an empty text is a refusal, anything else must
// read back as an equal object.  Returns whether the writer refused.
bool refuses_or_reads_back(ox_object *h, int option) {
    const std::string text = oxtest::text_of(h, option);
    if (text.empty()) return true;
    const Reader &r = reader_of(h);
    Owned back(r.read(text.c_str()));
    EXPECT_NE(back.get(), nullptr) << text;
    if (back) {
        EXPECT_EQ(r.eq(h, back.get()), 1) << text << "\nread back as\n" << oxtest::text_of(back.get(), option);
    }
    const bool writes_authority = h->type != OX_TAG_HVCOORDSYS && h->type != OX_TAG_ARRAY && h->type != OX_TAG_ADJHCS;
    if (back && option == 1 && h->authority != nullptr && writes_authority) {
        EXPECT_EQ(ox_authority_eq(h->authority, back.get()->authority), 1) << text;
    }
    return false;
}

bool has_quote(const std::string &s) { return s.find('"') != std::string::npos; }
// A value of at most 15 significant digits below 1e16: its object-string
// text is exact, so it must be written.
bool carried(double v) {
    if (!std::isfinite(v) || std::fabs(v) >= 1e16) return false;
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", v);
    return std::strtod(text, nullptr) == v;
}

TEST(RoundTrip, LeavesAreRefusedOnlyForWhatNoTextCarries) {
    Generator g(20240614);
    int written = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string name = g.name();
        const double a = g.number(), b = g.number();
        Owned unit(ox_unit_new(name.c_str(), a));
        EXPECT_EQ(unit.get() == nullptr, has_quote(name) || !(a > 0 && a <= DBL_MAX)) << name << " " << a;
        Owned primem(ox_primem_new(name.c_str(), a));
        EXPECT_EQ(primem.get() == nullptr, has_quote(name) || !(std::fabs(a) <= 180)) << a;
        const double f = std::fabs(std::fmod(b, 1.0));
        Owned spheroid(ox_spheroid_new(name.c_str(), a, f));
        EXPECT_EQ(spheroid.get() == nullptr, has_quote(name) || !(a > 0 && a <= DBL_MAX) || !(f < 1)) << a;
        Owned parameter(ox_parameter_new(name.c_str(), a));  // any value is accepted
        EXPECT_EQ(parameter.get() == nullptr, has_quote(name));
        const double values[3] = {a, b, 1.0};
        Owned array(ox_array_new(name.c_str(), 3, values));
        EXPECT_EQ(array.get() == nullptr, has_quote(name));
        Owned authority(ox_authority_new(name.c_str(), 1 + g.pick(100000), "6.13"));
        EXPECT_EQ(authority.get() == nullptr, has_quote(name));

        for (ox_object *h : {unit.get(), primem.get(), spheroid.get(), parameter.get(), array.get(), authority.get()}) {
            if (h == nullptr) continue;
            const int option = g.pick(3);
            const bool refused = refuses_or_reads_back(h, option);
            written += !refused;
            // Short numbers below 1e16 are always written; of spheroids with
            // such numbers, only one whose flattening is within a few ulps
            // of 1 has no text that reads back.
            const bool numbers_carried = carried(a) && (h != array.get() || carried(b));
            if (h == spheroid.get()) {
                if (numbers_carried && (f == 0 || carried(1 / f)) && f < 0.999999) {
                    EXPECT_FALSE(refused) << a << " " << f;
                }
            } else if (numbers_carried || h == authority.get()) {
                EXPECT_FALSE(refused) << name << " " << a << " " << b;
            }
        }
    }
    EXPECT_GT(written, 40000);
}

TEST(RoundTrip, CompositesOfEveryType) {
    Generator g(7);
    using Make = ox_object *(Generator::*)();
    const Make kMakers[] = {&Generator::datum,    &Generator::geogcs, &Generator::projcs, &Generator::vertcs,
                            &Generator::geogtran, &Generator::adjhcs, &Generator::hvcoordsys,
                            &Generator::geoxyzcs};
    int written = 0, refused = 0;
    for (int i = 0; i < 3000; ++i) {
        for (Make make : kMakers) {
            Owned h((g.*make)());
            ASSERT_TRUE(h);
            g.maybe_authority(h.get());
            const bool r = refuses_or_reads_back(h.get(), g.pick(3));
            refused += r;
            written += !r;
        }
    }
    // Most composites carry some number of 1e16 or more, or are too long;
    // enough of them are written to make the property bite.
    EXPECT_GT(written, 2000);
    EXPECT_GT(refused, 100);
}

// A geocentric system in an angular unit would give Cartesian coordinates
// in degrees: refused, whether the unit comes from the catalogue, carries an
// angular code or bears an angular unit's name.
// Builds a geocentric system in `unit`; on refusal the parts are deleted.
ox_object *geocentric(ox_object *unit) {
    ox_object *g = oxtest::make_geogcs();
    ox_object *h = ox_geoxyzcs_new("x", g, unit);
    if (h == nullptr) {
        ox_geogcs_del(g);
        ox_unit_del(unit);
    }
    return h;
}

TEST(RoundTrip, GeocentricSystemsTakeLinearUnitsOnly) {
    EXPECT_EQ(geocentric(ox_factory_unit(9102)), nullptr);
    EXPECT_EQ(geocentric(ox_unit_new("Radian", 1.0)), nullptr);
    ox_object *grad = ox_unit_new("Angle", 0.015707963267948967);
    ox_unit_authority_set(grad, ox_authority_new("EPSG", 9105, ""));
    EXPECT_EQ(geocentric(grad), nullptr);
    Owned metres(geocentric(ox_factory_unit(9001)));
    EXPECT_TRUE(metres);
    Owned feet(geocentric(ox_unit_new("Foot", 0.3048)));
    EXPECT_TRUE(feet);
    // The reader refuses such a text too.
    EXPECT_EQ(ox_geoxyzcs_from_string((std::string("GEOXYZCS[\"x\",") + oxtest::kWgs84 +
                                       ",UNIT[\"Degree\",0.0174532925199433]]").c_str()),
              nullptr);
}

TEST(RoundTrip, WhatTheWriterRefuses) {
    // A parameter value that is not finite, or that seven digits do not carry.
    Owned infinite(ox_parameter_new("False_Easting", kInf));
    EXPECT_EQ(oxtest::text_of(infinite.get()), "");
    Owned huge(ox_parameter_new("False_Easting", 1.2345678901e20));
    EXPECT_EQ(oxtest::text_of(huge.get()), "");
    Owned round(ox_parameter_new("False_Easting", 1e20));
    EXPECT_EQ(oxtest::text_of(round.get()), "PARAMETER[\"False_Easting\",1.000000e+20]");
    // A flattening whose inverse is written as 1.0.
    Owned flat(ox_spheroid_new("s", 1.0, 1.0 - 2e-16));
    ASSERT_TRUE(flat);
    EXPECT_EQ(oxtest::text_of(flat.get()), "");
    // A parameter that the reader would place in another slot (renamed), or
    // nowhere.
    Owned utm(ox_projcs_from_string(oxtest::kUtm33));
    ox_object *params[OX_PARAMETER_SLOTS];
    ox_projcs_parameters(utm.get(), params);
    ox_parameter_name_set(params[0], "Easting_At_Origin");
    EXPECT_EQ(oxtest::text_of(utm.get()), "");
    ox_parameter_name_set(params[0], "False_Easting");
    EXPECT_NE(oxtest::text_of(utm.get()), "");
    // The grid parameter's slot comes from a grid name after "Dataset_",
    // which white space alone is not once the reader has dropped it.
    Owned grid(ox_factory_geogtran(1241));
    ASSERT_TRUE(grid);
    ox_geogtran_parameters(grid.get(), params);
    ASSERT_NE(params[15], nullptr);
    EXPECT_NE(oxtest::text_of(grid.get()), "");
    ox_parameter_name_set(params[15], "Dataset_\f\f");
    EXPECT_EQ(oxtest::text_of(grid.get()), "");
    // A text longer than the reader takes: a catalogue transformation with
    // every authority written.
    Owned tran(ox_factory_geogtran(1024));
    ASSERT_TRUE(tran);
    EXPECT_EQ(oxtest::text_of(tran.get(), 2), "");
    const std::string plain = oxtest::text_of(tran.get(), 0);
    ASSERT_FALSE(plain.empty());
    Owned back(ox_geogtran_from_string(plain.c_str()));
    EXPECT_EQ(ox_geogtran_eq(back.get(), tran.get()), 1);
}

TEST(RoundTrip, NamesWithQuotesAreRefused) {
    EXPECT_EQ(ox_unit_new("a\"],UNIT[\"evil", 0.3048), nullptr);
    EXPECT_EQ(ox_vdatum_new("\""), nullptr);
    EXPECT_EQ(ox_authority_new("E\"PSG", 1, ""), nullptr);
    Owned p(ox_parameter_new("False_Easting", 1.0));
    EXPECT_EQ(ox_parameter_name_set(p.get(), "x\"y"), 0);
    EXPECT_EQ(oxtest::name_of(p.get()), "False_Easting");
    Owned a(ox_array_new("a", 0, nullptr));
    EXPECT_EQ(ox_array_name_set(a.get(), "\""), 0);
    EXPECT_EQ(oxtest::name_of(a.get()), "a");
}

TEST(RoundTrip, ArrayValuesSetRefusesBadArguments) {
    const double values[3] = {1, 2, 3};
    Owned a(ox_array_new("a", 3, values));
    const double other[3] = {4, 5, 6};
    EXPECT_EQ(ox_array_values_set(a.get(), -1, other), 0);
    EXPECT_EQ(ox_array_values_set(a.get(), 2, nullptr), 0);
    EXPECT_EQ(ox_array_values_set(a.get(), 0, nullptr), 0);
    EXPECT_EQ(ox_array_values_pointer(a.get())[0], 1.0);
    EXPECT_EQ(ox_array_values_set(a.get(), 2, other), 1);
    EXPECT_EQ(ox_array_values_pointer(a.get())[1], 5.0);
    EXPECT_EQ(ox_array_values_pointer(a.get())[2], 3.0);
}

// Coefficients that are not finite or a matrix that cannot be inverted
// convert nothing, either way, and leave the points as given.
TEST(RoundTrip, AdjustedSystemsRefuseUnusableCoefficients) {
    struct Case {
        int32_t method;
        std::vector<double> coefficients;
    };
    const Case cases[] = {
        {119624, {kNaN, 0, 0, 0, 1, 0}},
        {119624, {1, 0, kInf, 0, 1, 0}},
        {119624, {1, 2, 0, 2, 4, 0}},              // singular
        {119624, {1e-200, 0, 0, 0, 1e-200, 0}},    // the inverse overflows
        {119625, {1, 0, 0, 0, 1, 0, kNaN, 0}},
        {119625, {1, 2, 3, 2, 4, 6, 0, 0}},        // singular
        {119625, {0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const Case &c : cases) {
        Owned adj(ox_adjhcs_new("adj", oxtest::make_geogcs(), ox_factory_htmethod(c.method),
                                ox_array_new("c", static_cast<int32_t>(c.coefficients.size()), c.coefficients.data()),
                                ox_unit_new("Degree", 0.017453292519943295)));
        ASSERT_TRUE(adj);
        double points[4] = {10, 20, -30, 40};
        EXPECT_EQ(ox_coordsys_to_adjhcs(adj.get(), 2, points), 0) << c.method;
        EXPECT_EQ(ox_adjhcs_to_coordsys(adj.get(), 2, points), 0) << c.method;
        EXPECT_EQ(points[0], 10);
        EXPECT_EQ(points[1], 20);
        EXPECT_EQ(points[2], -30);
        EXPECT_EQ(points[3], 40);
    }
}

}  // namespace
