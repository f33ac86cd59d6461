// Results frozen bit for bit: 100 000 random conversions per projection
// case, forward and then inverse through the driver, hashed (FNV-1a over the
// bits of every output) and compared with tests/data/projection_checksums.csv.
//
// The file holds the hashes of the vectorised path for the routines whose
// results do not depend on the C library (the inline kernels alone), so it
// is the same on any machine whose processor runs a vectorised level.  A
// change of formula, of operation order or of a kernel shows up here.
// Routines that call the C library's functions on this path are held to the
// C library path by the loop-variant tests instead.
//
// OX_WRITE_CHECKSUMS=1 prints the hashes of every case as CSV lines instead
// of comparing (with the C library path's hashes as "exact" rows).
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "projection_support.h"

namespace {

using namespace oxtest;

constexpr int kPoints = 100000;

// splitmix64: a fixed, portable sequence.
struct Random {
    uint64_t state;
    uint64_t next() {
        uint64_t z = (state += 0x9e3779b97f4a7c15ull);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
        return z ^ (z >> 31);
    }
    double uniform(double lo, double hi) { return lo + (hi - lo) * static_cast<double>(next() >> 11) * 0x1.0p-53; }
};

uint64_t fnv1a(const std::vector<double> &values) {
    uint64_t h = 0xcbf29ce484222325ull;
    for (double v : values) {
        uint64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        for (int i = 0; i < 8; ++i) {
            h ^= (bits >> (8 * i)) & 0xffu;
            h *= 0x100000001b3ull;
        }
    }
    return h;
}

uint64_t fnv1a_text(const std::string &text) {
    uint64_t h = 0xcbf29ce484222325ull;
    for (unsigned char ch : text) {
        h ^= ch;
        h *= 0x100000001b3ull;
    }
    return h;
}

struct Case {
    std::string name;  // projection plus spheroid
    std::string projection;
    double rf;
    Params params;
    double lon0, half_width;  // longitudes within half_width degrees of lon0
};

std::vector<Case> cases() {
    std::vector<Case> out;
    for (double rf : {kRf, 0.0}) {
        const std::string suffix = rf == 0.0 ? "_sphere" : "_ellipsoid";
        for (const char *name : {"Plate_Carree", "Miller_Cylindrical", "Gall_Stereographic", "Behrmann"})
            out.push_back({name + suffix, name, rf, cyl_params(12.5, kNaN, 100, -200), 12.5, 180.0});
        for (const char *name : {"Equidistant_Cylindrical", "Mercator", "Cylindrical_Equal_Area"})
            out.push_back({name + suffix, name, rf, cyl_params(12.5, 33.0, 100, -200), 12.5, 180.0});
        for (const char *name : {"Transverse_Mercator", "Gauss_Kruger"})
            out.push_back({name + suffix, name, rf, tm_params(15, 0.9996, 10), 15.0, 3.5});
        out.push_back({"Transverse_Mercator_Complex" + suffix, "Transverse_Mercator_Complex", rf,
                       tm_params(15, 0.9996, 10), 15.0, 40.0});
        // The world projections (on an ellipsoid all but Sinusoidal use the
        // sphere of radius a).
        for (const char *name : {"Sinusoidal", "Mollweide", "Eckert_I", "Eckert_II", "Eckert_III", "Eckert_IV",
                                 "Eckert_V", "Eckert_VI", "Quartic_Authalic", "Van_der_Grinten_I", "Robinson",
                                 "Robinson_Legacy", "Aitoff", "Hammer_Aitoff", "Flat_Polar_Quartic",
                                 "Craster_Parabolic", "Times"})
            out.push_back({name + suffix, name, rf, cyl_params(12.5, kNaN, 100, -200), 12.5, 180.0});
        for (const char *name : {"Winkel_I", "Winkel_II", "Winkel_Tripel"})
            out.push_back({name + suffix, name, rf, cyl_params(12.5, 50.467, 100, -200), 12.5, 180.0});
        out.push_back({"Loximuthal" + suffix, "Loximuthal", rf,
                       {{"Central_Meridian", 12.5}, {"Central_Parallel", 40.0}}, 12.5, 180.0});
        for (double layout : {0.0, 1.0, 2.0})
            out.push_back({"Goode_Homolosine_" + std::to_string(static_cast<int>(layout)) + suffix, "Goode_Homolosine",
                           rf, {{"Central_Meridian", 12.5}, {"Option", layout}}, 12.5, 180.0});
    }
    return out;
}

// The forward of the case's random points, then the inverse of the
// forward's results (or of `projected` when given), at the current loop
// level.
std::pair<std::vector<double>, std::vector<double>> conversions(const Case &c,
                                                                const std::vector<double> *projected = nullptr) {
    Random random{fnv1a_text(c.name)};
    std::vector<double> p(2 * kPoints);
    for (int i = 0; i < kPoints; ++i) {
        p[2 * i] = random.uniform(c.lon0 - c.half_width, c.lon0 + c.half_width);
        p[2 * i + 1] = random.uniform(-89.5, 89.5);
    }
    const Owned pcs = make_projcs(c.projection, c.params, kA, c.rf);
    forward(pcs.get(), p);
    std::vector<double> q = projected ? *projected : p;
    inverse(pcs.get(), q);
    return {p, q};
}

std::pair<uint64_t, uint64_t> hashes(const Case &c) {
    const auto [f, i] = conversions(c);
    return {fnv1a(f), fnv1a(i)};
}

std::map<std::string, uint64_t> expected() {
    std::map<std::string, uint64_t> out;
    for (const auto &row : read_csv("projection_checksums.csv"))
        if (row.size() == 4 && row[0] != "case") out[row[0] + "," + row[1] + "," + row[2]] = std::stoull(row[3], nullptr, 16);
    return out;
}

std::string hex(uint64_t v) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "%016llx", static_cast<unsigned long long>(v));
    return buf;
}

TEST(Equivalence, RandomConversionsKeepTheirBits) {
    const bool write = std::getenv("OX_WRITE_CHECKSUMS") != nullptr;
    if (!write && ox::point_loop_level_limit(-1) < 1) {
        GTEST_SKIP() << "no vectorised loop level on this processor";
    }
    const std::map<std::string, uint64_t> want = expected();
    int compared = 0;
    for (const Case &c : cases()) {
        const auto [fwd, inv] = hashes(c);
        if (write) {
            std::printf("%s,forward,fast,%s\n%s,inverse,fast,%s\n", c.name.c_str(), hex(fwd).c_str(), c.name.c_str(),
                        hex(inv).c_str());
            const AtLevel exact(ox::kExactLevel);
            const auto [efwd, einv] = hashes(c);
            std::printf("%s,forward,exact,%s\n%s,inverse,exact,%s\n", c.name.c_str(), hex(efwd).c_str(),
                        c.name.c_str(), hex(einv).c_str());
            continue;
        }
        for (const auto &[direction, got] : {std::pair{"forward", fwd}, {"inverse", inv}}) {
            const auto it = want.find(c.name + "," + direction + ",fast");
            if (it == want.end()) continue;
            ++compared;
            EXPECT_EQ(hex(got), hex(it->second)) << c.name << " " << direction;
        }
    }
    if (!write) {
        EXPECT_GE(compared, 20);
    }
}

// The routines whose results depend on the C library on the path above,
// and all of them on the vectorised path against the C library's path: the
// kernels agree to a few ulps, which the formulas carry to at most 1e-8 m
// forward and 6e-14 degrees inverse (1.8e-13 for the spherical transverse
// Mercator, whose arcsine near 1 close to the poles multiplies its
// argument's last bit by up to 1 / cos phi).
TEST(Equivalence, VectorisedPathAgreesWithTheLibraryPath) {
    if (ox::point_loop_level_limit(-1) < 1) {
        GTEST_SKIP() << "no vectorised loop level on this processor";
    }
    constexpr double kForwardMetres = 1.5e-8, kInverseDegrees = 2e-13;
    for (const Case &c : cases()) {
        std::vector<double> fe, ie;
        {
            const AtLevel exact(ox::kExactLevel);
            std::tie(fe, ie) = conversions(c);
        }
        const auto [f, i] = conversions(c, &fe);  // the inverse of the same points
        double worst_f = 0.0, worst_i = 0.0;
        for (size_t k = 0; k < f.size(); ++k) {
            worst_f = std::max(worst_f, std::fabs(f[k] - fe[k]));
            worst_i = std::max(worst_i, std::fabs(i[k] - ie[k]));
        }
        EXPECT_LE(worst_f, kForwardMetres) << c.name;
        EXPECT_LE(worst_i, kInverseDegrees) << c.name;
    }
}

}  // namespace
