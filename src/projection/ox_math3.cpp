// Auxiliary-latitude series: the coefficients, per spheroid, of the Fourier
// series between the geodetic latitude phi and the conformal (chi), authalic
// (beta) and rectifying (mu) latitudes,
//   target = source + sum_{k=1..9} c_k sin(2k source),
// each c_k a polynomial in the third flattening n from n^k to n^9.
//
// The series are those of C. F. F. Karney, "On auxiliary latitudes", Survey
// Review (2023); to order n^6 the conformal ones agree with the tables of
// Karney, "Transverse Mercator with an accuracy of a few nanometers",
// J. Geodesy 85 (2011).  The rational coefficients below were derived exactly
// by tools/series/aux_series.py (run it with --cpp to regenerate the tables).
// The truncation after n^9 leaves errors of order n^10: below 1e-27 rad for
// the Earth's ellipsoids, 5e-16 rad for e2 = 0.05 and, for e2 = 0.1, 6e-13 rad
// in the conformal inverse (whose coefficients grow fastest) and 3e-14 rad in
// the others.
#include <cmath>

#include "object/ox_utils.h"
#include "projection/ox_math.h"

namespace ox {

namespace {

// Row k (k = 1..9) holds the coefficients of n^k .. n^9 of c_k, packed one
// row after the other (45 values).
constexpr double kConformalForward[45] = {
    // sin 2 x: n^1 .. n^9
    -2.0, 2.0 / 3.0, 4.0 / 3.0, -82.0 / 45.0, 32.0 / 45.0, 4642.0 / 4725.0, -8384.0 / 4725.0, 1514.0 / 1323.0,
    263824.0 / 1488375.0,
    // sin 4 x: n^2 .. n^9
    5.0 / 3.0, -16.0 / 15.0, -13.0 / 9.0, 904.0 / 315.0, -1522.0 / 945.0, -2288.0 / 1575.0,
    142607.0 / 42525.0, -35853856.0 / 16372125.0,
    // sin 6 x: n^3 .. n^9
    -26.0 / 15.0, 34.0 / 21.0, 8.0 / 5.0, -12686.0 / 2835.0, 44644.0 / 14175.0, 120202.0 / 51975.0,
    -5134016.0 / 779625.0,
    // sin 8 x: n^4 .. n^9
    1237.0 / 630.0, -12.0 / 5.0, -24832.0 / 14175.0, 1077964.0 / 155925.0, -1097407.0 / 187110.0,
    -109153684.0 / 30405375.0,
    // sin 10 x: n^5 .. n^9
    -734.0 / 315.0, 109598.0 / 31185.0, 1040.0 / 567.0, -12870194.0 / 1216215.0, 90324188.0 / 8513505.0,
    // sin 12 x: n^6 .. n^9
    444337.0 / 155925.0, -941912.0 / 184275.0, -126463.0 / 72765.0, 1138618072.0 / 70945875.0,
    // sin 14 x: n^7 .. n^9
    -2405834.0 / 675675.0, 3463678.0 / 467775.0, 38853428.0 / 30405375.0,
    // sin 16 x: n^8 .. n^9
    256663081.0 / 56756700.0, -38717707988.0 / 3618239625.0,
    // sin 18 x: n^9 .. n^9
    -779685094.0 / 134008875.0,
};
constexpr double kConformalInverse[45] = {
    // sin 2 x: n^1 .. n^9
    2.0, -2.0 / 3.0, -2.0, 116.0 / 45.0, 26.0 / 45.0, -2854.0 / 675.0, 16822.0 / 4725.0, 189416.0 / 99225.0,
    -1113026.0 / 165375.0,
    // sin 4 x: n^2 .. n^9
    7.0 / 3.0, -8.0 / 5.0, -227.0 / 45.0, 2704.0 / 315.0, 2323.0 / 945.0, -31256.0 / 1575.0,
    141514.0 / 8505.0, 10453448.0 / 606375.0,
    // sin 6 x: n^3 .. n^9
    56.0 / 15.0, -136.0 / 35.0, -1262.0 / 105.0, 73814.0 / 2835.0, 98738.0 / 14175.0, -2363828.0 / 31185.0,
    53146406.0 / 779625.0,
    // sin 8 x: n^4 .. n^9
    4279.0 / 630.0, -332.0 / 35.0, -399572.0 / 14175.0, 11763988.0 / 155925.0, 14416399.0 / 935550.0,
    -2647902052.0 / 10135125.0,
    // sin 10 x: n^5 .. n^9
    4174.0 / 315.0, -144838.0 / 6237.0, -2046082.0 / 31185.0, 258316372.0 / 1216215.0, 67926842.0 / 2837835.0,
    // sin 12 x: n^6 .. n^9
    601676.0 / 22275.0, -115444544.0 / 2027025.0, -2155215124.0 / 14189175.0, 41561762048.0 / 70945875.0,
    // sin 14 x: n^7 .. n^9
    38341552.0 / 675675.0, -170079376.0 / 1216215.0, -1182085822.0 / 3378375.0,
    // sin 16 x: n^8 .. n^9
    1383243703.0 / 11351340.0, -138163416988.0 / 402026625.0,
    // sin 18 x: n^9 .. n^9
    106974149462.0 / 402026625.0,
};
constexpr double kAuthalicForward[45] = {
    // sin 2 x: n^1 .. n^9
    -4.0 / 3.0, -4.0 / 45.0, 88.0 / 315.0, 538.0 / 4725.0, 20824.0 / 467775.0, -44732.0 / 2837835.0,
    -86728.0 / 16372125.0, -88002076.0 / 13956067125.0, 41039851744.0 / 9280784638125.0,
    // sin 4 x: n^2 .. n^9
    34.0 / 45.0, 8.0 / 105.0, -2482.0 / 14175.0, -37192.0 / 467775.0, -12467764.0 / 212837625.0,
    -895712.0 / 147349125.0, -2641983469.0 / 488462349375.0, 30067764896.0 / 4997345574375.0,
    // sin 6 x: n^3 .. n^9
    -1532.0 / 2835.0, -898.0 / 14175.0, 54968.0 / 467775.0, 100320856.0 / 1915538625.0, 240616.0 / 4209975.0,
    8457703444.0 / 488462349375.0, 2815266694816.0 / 194896477400625.0,
    // sin 8 x: n^4 .. n^9
    6007.0 / 14175.0, 24496.0 / 467775.0, -5884124.0 / 70945875.0, -4832848.0 / 147349125.0,
    -4910552477.0 / 97692469875.0, -1385151853648.0 / 64965492466875.0,
    // sin 10 x: n^5 .. n^9
    -23356.0 / 66825.0, -839792.0 / 19348875.0, 816824.0 / 13395375.0, 9393713176.0 / 488462349375.0,
    548007509072.0 / 12993098493375.0,
    // sin 12 x: n^6 .. n^9
    570284222.0 / 1915538625.0, 1980656.0 / 54729675.0, -4532926649.0 / 97692469875.0,
    -1956765806192.0 / 194896477400625.0,
    // sin 14 x: n^7 .. n^9
    -496894276.0 / 1915538625.0, -14848113968.0 / 488462349375.0, 2361913032016.0 / 64965492466875.0,
    // sin 16 x: n^8 .. n^9
    224557742191.0 / 976924698750.0, 151965016144.0 / 5905953860625.0,
    // sin 18 x: n^9 .. n^9
    -361986670754092.0 / 1754068296605625.0,
};
constexpr double kAuthalicInverse[45] = {
    // sin 2 x: n^1 .. n^9
    4.0 / 3.0, 4.0 / 45.0, -16.0 / 35.0, -2582.0 / 14175.0, 60136.0 / 467775.0, 28112932.0 / 212837625.0,
    22947844.0 / 1915538625.0, -1683291094.0 / 37574026875.0, -338504669588.0 / 12993098493375.0,
    // sin 4 x: n^2 .. n^9
    46.0 / 45.0, 152.0 / 945.0, -11966.0 / 14175.0, -21016.0 / 51975.0, 251310128.0 / 638512875.0,
    1228352.0 / 3007125.0, -14351220203.0 / 488462349375.0, -59522305664.0 / 265165275375.0,
    // sin 6 x: n^3 .. n^9
    3044.0 / 2835.0, 3802.0 / 14175.0, -94388.0 / 66825.0, -8797648.0 / 10945935.0, 138128272.0 / 147349125.0,
    505559334506.0 / 488462349375.0, -7651134508792.0 / 38979295480125.0,
    // sin 8 x: n^4 .. n^9
    6059.0 / 4725.0, 41072.0 / 93555.0, -1472637812.0 / 638512875.0, -45079184.0 / 29469825.0,
    973080708361.0 / 488462349375.0, 30918739454896.0 / 12993098493375.0,
    // sin 10 x: n^5 .. n^9
    768272.0 / 467775.0, 455935736.0 / 638512875.0, -550000184.0 / 147349125.0,
    -1385645336626.0 / 488462349375.0, 51535685606752.0 / 12993098493375.0,
    // sin 12 x: n^6 .. n^9
    4210684958.0 / 1915538625.0, 443810768.0 / 383107725.0, -2939205114427.0 / 488462349375.0,
    -604166407968208.0 / 116937886440375.0,
    // sin 14 x: n^7 .. n^9
    387227992.0 / 127702575.0, 101885255158.0 / 54273594375.0, -125789879410192.0 / 12993098493375.0,
    // sin 16 x: n^8 .. n^9
    1392441148867.0 / 325641566250.0, 39504919358864.0 / 12993098493375.0,
    // sin 18 x: n^9 .. n^9
    2151110306499536.0 / 350813659321125.0,
};
constexpr double kRectifyingForward[45] = {
    // sin 2 x: n^1 .. n^9
    -3.0 / 2.0, 0.0, 9.0 / 16.0, 0.0, -3.0 / 32.0, 0.0, 57.0 / 2048.0, 0.0, -9.0 / 4096.0,
    // sin 4 x: n^2 .. n^9
    15.0 / 16.0, 0.0, -15.0 / 32.0, 0.0, 135.0 / 2048.0, 0.0, -105.0 / 4096.0, 0.0,
    // sin 6 x: n^3 .. n^9
    -35.0 / 48.0, 0.0, 105.0 / 256.0, 0.0, -105.0 / 2048.0, 0.0, 595.0 / 24576.0,
    // sin 8 x: n^4 .. n^9
    315.0 / 512.0, 0.0, -189.0 / 512.0, 0.0, 693.0 / 16384.0, 0.0,
    // sin 10 x: n^5 .. n^9
    -693.0 / 1280.0, 0.0, 693.0 / 2048.0, 0.0, -297.0 / 8192.0,
    // sin 12 x: n^6 .. n^9
    1001.0 / 2048.0, 0.0, -1287.0 / 4096.0, 0.0,
    // sin 14 x: n^7 .. n^9
    -6435.0 / 14336.0, 0.0, 19305.0 / 65536.0,
    // sin 16 x: n^8 .. n^9
    109395.0 / 262144.0, 0.0,
    // sin 18 x: n^9 .. n^9
    -230945.0 / 589824.0,
};
constexpr double kRectifyingInverse[45] = {
    // sin 2 x: n^1 .. n^9
    3.0 / 2.0, 0.0, -27.0 / 32.0, 0.0, 269.0 / 512.0, 0.0, -6607.0 / 24576.0, 0.0, 40941.0 / 327680.0,
    // sin 4 x: n^2 .. n^9
    21.0 / 16.0, 0.0, -55.0 / 32.0, 0.0, 6759.0 / 4096.0, 0.0, -155113.0 / 122880.0, 0.0,
    // sin 6 x: n^3 .. n^9
    151.0 / 96.0, 0.0, -417.0 / 128.0, 0.0, 87963.0 / 20480.0, 0.0, -572057.0 / 131072.0,
    // sin 8 x: n^4 .. n^9
    1097.0 / 512.0, 0.0, -15543.0 / 2560.0, 0.0, 2514467.0 / 245760.0, 0.0,
    // sin 10 x: n^5 .. n^9
    8011.0 / 2560.0, 0.0, -69119.0 / 6144.0, 0.0, 1515771.0 / 65536.0,
    // sin 12 x: n^6 .. n^9
    293393.0 / 61440.0, 0.0, -5962461.0 / 286720.0, 0.0,
    // sin 14 x: n^7 .. n^9
    6459601.0 / 860160.0, 0.0, -1258281.0 / 32768.0,
    // sin 16 x: n^8 .. n^9
    332287993.0 / 27525120.0, 0.0,
    // sin 18 x: n^9 .. n^9
    116391263.0 / 5898240.0,
};

constexpr const double *kTables[] = {kConformalForward, kConformalInverse, kAuthalicForward,
                                     kAuthalicInverse,  kRectifyingForward, kRectifyingInverse};

}  // namespace

// c_k = n^k (a_k,k + n (a_k,k+1 + ... + n a_k,9)), each row by Horner.
void aux_coefficients(AuxSeries series, double n, double c[kAuxTerms]) {
    const double *row = kTables[static_cast<int>(series)];
    double nk = 1.0;
    for (int k = 1; k <= kAuxTerms; ++k) {
        const int length = kAuxTerms + 1 - k;
        double sum = row[length - 1];
        for (int p = length - 2; p >= 0; --p) sum = sum * n + row[p];
        nk *= n;
        c[k - 1] = nk * sum;
        row += length;
    }
}

namespace {

// Both directions of one latitude; a spheroid that is no ellipsoid of
// revolution (e2 not below 1, or NaN) gets NaN coefficients.
void both_directions(AuxSeries forward_series, AuxSeries inverse_series, double e2, double forward[kAuxTerms],
                     double inverse[kAuxTerms]) {
    if (!(e2 < 1.0)) {
        for (int k = 0; k < kAuxTerms; ++k) forward[k] = inverse[k] = failure_nan();
        return;
    }
    const double n = third_flattening(e2);
    aux_coefficients(forward_series, n, forward);
    aux_coefficients(inverse_series, n, inverse);
}

}  // namespace

void conformal_coefficients(double e2, double forward[kAuxTerms], double inverse[kAuxTerms]) {
    both_directions(AuxSeries::ConformalForward, AuxSeries::ConformalInverse, e2, forward, inverse);
}

void authalic_coefficients(double e2, double forward[kAuxTerms], double inverse[kAuxTerms]) {
    both_directions(AuxSeries::AuthalicForward, AuxSeries::AuthalicInverse, e2, forward, inverse);
}

void rectifying_coefficients(double e2, double forward[kAuxTerms], double inverse[kAuxTerms]) {
    both_directions(AuxSeries::RectifyingForward, AuxSeries::RectifyingInverse, e2, forward, inverse);
}

}  // namespace ox
