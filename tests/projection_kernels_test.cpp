// The vectorisable point machinery: the inline sine/cosine and logarithm
// against the C library, the inline longitude reduction and pole test
// against their library forms, and every projection of this family run
// through every instruction-set variant of the point loops (identical bits)
// and through the C library path (agreement to a few units in the last
// place), including points that the fast path hands back.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "projection_support.h"

namespace {

using namespace oxtest;

double ulp(double v) {
    const double a = std::fabs(v);
    return std::nextafter(a, std::numeric_limits<double>::infinity()) - a;
}

TEST(FastMath, SineAndCosineWithinAnUlp) {
    std::mt19937_64 gen(11);
    std::uniform_real_distribution<double> wide(-ox::FastMath::kSinCosRange, ox::FastMath::kSinCosRange);
    std::uniform_real_distribution<double> narrow(-3.5, 3.5);
    std::vector<double> xs = {0.0,     -0.0,          1e-300,         -5e-324, ox::kHalfPi, -ox::kHalfPi,
                              ox::kPi, ox::kNearPole, ox::kQuarterPi, 1.0,     1e-8,        1023.9};
    for (int i = 0; i < 400000; ++i) xs.push_back(i % 4 == 0 ? wide(gen) : narrow(gen));
    for (int k = -8; k <= 8; ++k)
        for (int j = -4; j <= 4; ++j) xs.push_back(std::nextafter(k * ox::kHalfPi, j * 10.0) + j * 1e-17);
    for (double x : xs) {
        double s, c;
        ox::FastMath::sincos(x, s, c);
        ASSERT_LE(std::fabs(s - std::sin(x)), ulp(std::sin(x))) << x;
        ASSERT_LE(std::fabs(c - std::cos(x)), ulp(std::cos(x))) << x;
        ASSERT_TRUE(ox::FastMath::sincos_ok(x));
    }
    EXPECT_FALSE(ox::FastMath::sincos_ok(std::nan("")));
    EXPECT_FALSE(ox::FastMath::sincos_ok(HUGE_VAL));
    EXPECT_FALSE(ox::FastMath::sincos_ok(1025.0));
}

TEST(FastMath, LogarithmWithinAnUlp) {
    std::mt19937_64 gen(12);
    std::uniform_real_distribution<double> exponent(-700.0, 700.0), near_one(-1e-3, 1e-3);
    std::vector<double> xs = {1.0, 2.0, 0.5, 10.0, 2.2250738585072014e-308, 1.7976931348623157e308,
                              std::nextafter(1.0, 2.0), std::nextafter(1.0, 0.0), 1.4142135623730951};
    for (int i = 0; i < 400000; ++i) xs.push_back(i % 3 == 0 ? 1.0 + near_one(gen) : std::exp(exponent(gen)));
    for (double x : xs) {
        ASSERT_TRUE(ox::FastMath::log_ok(x)) << x;
        ASSERT_LE(std::fabs(ox::FastMath::log(x) - std::log(x)), ulp(std::log(x))) << x;
    }
    for (double bad : {0.0, -1.0, 1e-310, HUGE_VAL, std::nan("")}) EXPECT_FALSE(ox::FastMath::log_ok(bad)) << bad;
}

// Arguments spread over [lo, hi]: uniform, and log-uniform in magnitude
// from 1e-300 (both signs where the range has them), with the ends.
std::vector<double> spread(double lo, double hi, uint64_t seed) {
    std::mt19937_64 gen(seed);
    std::uniform_real_distribution<double> u(lo, hi), e(-300.0, std::log10(std::max(std::fabs(lo), std::fabs(hi))));
    std::vector<double> xs = {lo, hi, 0.0, -0.0, 1e-300, 5e-324, 1.0, -1.0, 0.5, -0.5};
    for (int i = 0; i < 300000; ++i) {
        const double m = std::pow(10.0, e(gen));
        xs.push_back(i % 2 == 0 ? u(gen) : (i % 4 == 1 ? m : -m));
    }
    std::vector<double> inside;
    for (double x : xs)
        if (x >= lo && x <= hi) inside.push_back(x);
    return inside;
}

// Largest error in ulps of the C library's result.
template <class F, class G>
double max_ulps(const std::vector<double> &xs, F fast, G library) {
    double worst = 0.0;
    for (double x : xs) {
        const double a = fast(x), b = library(x);
        if (a == b) continue;
        worst = std::max(worst, std::fabs(a - b) / ulp(b));
    }
    return worst;
}

// Each inline kernel against the C library over the whole range its
// predicate admits, with the largest error stated in ulps.
TEST(FastMath, KernelsWithinTheirStatedErrors) {
    using F = ox::FastMath;
    struct Kernel {
        const char *name;
        double lo, hi, bound;
        double (*fast)(double);
        double (*library)(double);
    };
    const Kernel kernels[] = {
        {"exp", F::kExpLow, F::kExpHigh, 1.0, [](double x) { return F::exp(x); }, [](double x) { return std::exp(x); }},
        {"atan", -1e300, 1e300, 1.0, [](double x) { return F::atan(x); }, [](double x) { return std::atan(x); }},
        {"asin", -1.0, 1.0, 2.0, [](double x) { return F::asin(x); }, [](double x) { return std::asin(x); }},
        {"log1p", -0.999999, 1e300, 2.0, [](double x) { return F::log1p(x); }, [](double x) { return std::log1p(x); }},
        {"sinh", -F::kSinhCoshRange, F::kSinhCoshRange, 2.0,
         [](double x) { double s, c; F::sinh_cosh(x, s, c); return s; }, [](double x) { return std::sinh(x); }},
        {"cosh", -F::kSinhCoshRange, F::kSinhCoshRange, 2.0,
         [](double x) { double s, c; F::sinh_cosh(x, s, c); return c; }, [](double x) { return std::cosh(x); }},
    };
    uint64_t seed = 21;
    for (const Kernel &k : kernels) {
        const std::vector<double> xs = spread(k.lo, k.hi, ++seed);
        const double worst = max_ulps(xs, k.fast, k.library);
        EXPECT_LE(worst, k.bound) << k.name;
    }
    // atan2 over the four quadrants, where its predicate admits the pair.
    std::mt19937_64 gen(31);
    std::uniform_real_distribution<double> e(-150.0, 150.0), sign(-1.0, 1.0);
    double worst = 0.0;
    for (int i = 0; i < 300000; ++i) {
        const double y = std::copysign(std::pow(10.0, e(gen)), sign(gen)), x = std::copysign(std::pow(10.0, e(gen)), sign(gen));
        if (!F::atan2_ok(y, x)) continue;
        const double a = F::atan2(y, x), b = std::atan2(y, x);
        if (a != b) worst = std::max(worst, std::fabs(a - b) / ulp(b));
    }
    EXPECT_LE(worst, 2.0) << "atan2";
    // The predicates refuse what the kernels cannot do.
    for (double x : {709.5, -708.5, HUGE_VAL, std::nan("")}) EXPECT_FALSE(F::exp_ok(x)) << x;
    for (double x : {1.0000000000000002, -2.0, std::nan("")}) EXPECT_FALSE(F::asin_ok(x)) << x;
    for (double x : {-1.0, -2.0, std::nan("")}) EXPECT_FALSE(F::log1p_ok(x)) << x;
    for (double x : {351.0, std::nan("")}) EXPECT_FALSE(F::sinh_cosh_ok(x)) << x;
    EXPECT_FALSE(F::atan2_ok(1.0, 0.0));
    EXPECT_FALSE(F::atan2_ok(1.0, -0.0));
    EXPECT_FALSE(F::atan2_ok(HUGE_VAL, HUGE_VAL));
    EXPECT_FALSE(F::atan2_ok(1e-300, 1e300));
    EXPECT_TRUE(F::atan2_ok(0.0, -1.0));
    EXPECT_EQ(F::atan2(0.0, -1.0), std::atan2(0.0, -1.0));
    EXPECT_EQ(F::atan2(-0.0, -1.0), std::atan2(-0.0, -1.0));
    EXPECT_EQ(F::atan(HUGE_VAL), std::atan(HUGE_VAL));
}

TEST(FastMath, InlineReductionIsTheLibraryReduction) {
    std::vector<double> ds = {0.0, -0.0, ox::kPi, -ox::kPi, ox::kTwoPi, -ox::kTwoPi, 9.0, -9.0, 3 * ox::kPi, 7.0, -7.0};
    for (double base : {ox::kPi, -ox::kPi, ox::kTwoPi, -ox::kTwoPi})
        for (int j = 1; j <= 40; ++j) {
            ds.push_back(base + j * 1e-16 * base);
            ds.push_back(base - j * 1e-16 * base);
        }
    std::mt19937_64 gen(13);
    std::uniform_real_distribution<double> u(-9.0, 9.0);
    for (int i = 0; i < 200000; ++i) ds.push_back(u(gen));
    for (double d : ds) {
        if (!ox::FastMath::reduce_ok(d)) continue;
        const double a = ox::FastMath::reduce(d), b = ox_delta(d);
        ASSERT_EQ(std::memcmp(&a, &b, sizeof a), 0) << d;
    }
    for (double d : {9.5, -1e6, 1e300, std::nan(""), HUGE_VAL}) EXPECT_FALSE(ox::FastMath::reduce_ok(d)) << d;
}

TEST(FastMath, PoleTestIsTheEqualityRule) {
    for (int j = -60; j <= 60; ++j)
        for (double sign : {1.0, -1.0}) {
            const double phi = sign * (ox::kHalfPi + j * 2.5e-16);
            const double expect = ox_eq(std::fabs(phi), ox::kHalfPi) ? std::copysign(ox::kNearPole, phi) : phi;
            EXPECT_EQ(ox::off_pole(phi), expect) << phi;
        }
}

// ---------------------------------------------------------------------------
// Every projection through every loop variant.
// ---------------------------------------------------------------------------

struct Case {
    std::string projection;
    double rf;
    Params params;
};

std::vector<Case> cases() {
    std::vector<Case> out;
    for (double rf : {kRf, 0.0}) {
        for (const char *name : {"Plate_Carree", "Miller_Cylindrical", "Gall_Stereographic", "Behrmann"})
            out.push_back({name, rf, cyl_params(12.5, kNaN, 100, -200)});
        for (const char *name : {"Equidistant_Cylindrical", "Mercator", "Cylindrical_Equal_Area"})
            out.push_back({name, rf, cyl_params(12.5, 33.0, 100, -200)});
        out.push_back({"Transverse_Mercator", rf, tm_params(15, 0.9996, 10)});
        out.push_back({"Transverse_Mercator_Complex", rf, tm_params(15, 0.9996, 10)});
    }
    return out;
}

// Points over the map and its edges (within 3 degrees of the central
// meridian for the power series), with values that the fast path hands to
// the C library: far longitudes, non-finite values.
std::vector<double> test_points(const std::string &projection) {
    std::vector<double> p;
    std::mt19937_64 gen(17);
    std::uniform_real_distribution<double> lon(-180.0, 180.0), near(12.0, 18.0), lat(-90.0, 90.0);
    const bool narrow = projection == "Transverse_Mercator";
    for (int i = 0; i < 3000; ++i) p.insert(p.end(), {narrow ? near(gen) : lon(gen), lat(gen)});
    const double nan = kNaN, inf = kInf;
    const std::vector<double> special = {15.0, 90.0, 15.0, -90.0, 16.0, 89.999999, 540.0, 45.0,  -1e5, 10.0, nan,
                                         5.0,  15.0, nan,  inf,   0.0,  15.0,      -inf,  1e300, 1.0,  14.0, 0.0};
    // Specials spread over several blocks of the point loop.
    for (size_t at : {size_t(0), size_t(511), size_t(512), size_t(1999), size_t(2900)}) {
        const size_t pos = 2 * at;
        p.insert(p.begin() + static_cast<long>(pos), special.begin(), special.end());
    }
    return p;
}

class Variants : public ::testing::TestWithParam<Case> {};

// Every vector level gives the same bits; the C library path agrees to a few
// units in the last place, and points fail (NaN) on every path alike.
TEST_P(Variants, EveryLoopVariantGivesTheSameBitsAndAgreesWithTheLibraryPath) {
    const Case &c = GetParam();
    const Owned pcs = make_projcs(c.projection, c.params, kA, c.rf);
    const std::vector<double> input = test_points(c.projection);
    std::vector<std::vector<double>> fwd, inv;
    for (const int level : loop_levels()) {
        const AtLevel at(level);
        std::vector<double> f = input;
        forward(pcs.get(), f);
        std::vector<double> i = fwd.empty() ? f : fwd.front();
        inverse(pcs.get(), i);
        fwd.push_back(f);
        inv.push_back(i);
    }
    for (size_t l = 1; l < fwd.size(); ++l)
        for (size_t k = 0; k < input.size(); ++k) {
            if (l > 1) {
                ASSERT_TRUE(same_bits(fwd[l][k], fwd[1][k])) << "level " << l << " forward " << k;
                ASSERT_TRUE(same_bits(inv[l][k], inv[1][k])) << "level " << l << " inverse " << k;
            }
            ASSERT_EQ(std::isnan(fwd[l][k]), std::isnan(fwd[0][k])) << k;
            ASSERT_EQ(std::isnan(inv[l][k]), std::isnan(inv[0][k])) << k;
            if (std::isfinite(fwd[0][k])) {
                // a few ulps of values up to 1e8 m
                ASSERT_LE(std::fabs(fwd[l][k] - fwd[0][k]), 2e-9 + 1e-15 * std::fabs(fwd[0][k])) << k;
            }
            if (std::isfinite(inv[0][k])) {
                ASSERT_LE(std::fabs(inv[l][k] - inv[0][k]), 1e-13) << k;
            }
        }
}

// The driver's units applied inside the library's point loops give the
// same bits as the driver's own passes around any other routine (here a
// caller's routine that forwards to the library's).
ox_projection_routine g_forward = nullptr, g_inverse = nullptr;
int32_t caller_forward(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                       const int32_t *header, const double *values) {
    return g_forward(spheroid, parameters, n, points, header, values);
}
int32_t caller_inverse(const double spheroid[2], const double parameters[16], int32_t n, double *points,
                       const int32_t *header, const double *values) {
    return g_inverse(spheroid, parameters, n, points, header, values);
}

TEST_P(Variants, UnitsInsideThePointLoopMatchTheDriverPasses) {
    const Case &c = GetParam();
    for (const char *unit : {kMeter, kFoot}) {
        for (const char *angular : {"0.0174532925199433", "0.01570796326794897"}) {
            std::string text = projcs_text(c.projection, kA, c.rf, c.params, unit);
            text.replace(text.find("0.0174532925199433"), 18, angular);
            const Owned library(ox_projcs_from_string(text.c_str()));
            ASSERT_TRUE(library);
            g_forward = ox_projection_forward(ox_projcs_projection(library.get()));
            g_inverse = ox_projection_inverse(ox_projcs_projection(library.get()));
            const Owned caller = with_routines(library.get(), caller_forward, caller_inverse);
            std::vector<double> a = test_points(c.projection), b = a;
            EXPECT_EQ(forward(library.get(), a), forward(caller.get(), b));
            for (size_t k = 0; k < a.size(); ++k) ASSERT_TRUE(same_bits(a[k], b[k])) << "forward " << k;
            for (double center : {0.0, 180.0, -33.0}) {
                std::vector<double> ia = a, ib = a;
                EXPECT_EQ(inverse(library.get(), ia, center), inverse(caller.get(), ib, center));
                for (size_t k = 0; k < ia.size(); ++k)
                    ASSERT_TRUE(same_bits(ia[k], ib[k])) << "inverse " << k << " center " << center;
            }
        }
    }
}

std::string case_name(const ::testing::TestParamInfo<Case> &info) {
    return info.param.projection + (info.param.rf == 0.0 ? "_sphere" : "_ellipsoid");
}

INSTANTIATE_TEST_SUITE_P(Projections, Variants, ::testing::ValuesIn(cases()), case_name);

// The same points converted one at a time and as one array agree bit for
// bit, whichever block of the loop they fall in.
TEST(PointLoop, BlocksDoNotChangeResults) {
    const Owned pcs = make_projcs("Transverse_Mercator", tm_params());
    const std::vector<double> input = test_points("Transverse_Mercator");
    for (int32_t n : {1, 255, 256, 257, 700}) {
        std::vector<double> all(input.begin(), input.begin() + 2 * n);
        ASSERT_EQ(forward(pcs.get(), all), n);
        for (int32_t k = 0; k < n; ++k) {
            double one[2] = {input[2 * k], input[2 * k + 1]};
            ASSERT_EQ(ox_geog_to_proj(pcs.get(), 1, one), 1);
            ASSERT_TRUE(same_bits(one[0], all[2 * k]) && same_bits(one[1], all[2 * k + 1])) << n << " " << k;
        }
    }
}

}  // namespace
