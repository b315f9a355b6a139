#include "profiles/CircularSegment.h"

#include <array>
#include <cmath>

namespace tgp {

namespace {

constexpr double kSeriesLimit = 1.0;  // half angles below this use the series
constexpr int kTerms = 20;

// Coefficients of theta^(2k) in the even series, from the exact rational coefficients of
// area / (a² theta), qv / (a³ theta²), iuu / (a⁴ theta) and ivv / (a⁴ theta³), each rounded once.
constexpr std::array<double, kTerms> kArea = {
    0.6666666666666666,     0.08888888888888889,    0.012698412698412698,  0.0016931216931216932,
    0.00021377799155576933, 2.5972851369676765e-05, 3.069632699262329e-06, 3.5543374063967485e-07,
    4.0514123730256185e-08, 4.561030240918436e-09,  5.083415171780577e-10, 5.6188096367579724e-11,
    6.16746452406075e-12,   6.729636293326158e-13,  7.305586208755011e-14, 7.895580174455064e-15,
    8.499888742215075e-16,  9.118787168666286e-17,  9.75255548707399e-18,  1.0401478584054909e-18};
constexpr std::array<double, kTerms> kFirstMoment = {
    0.13333333333333333,    0.031746031746031744,   0.005925925925925926,   0.000962000962000962,
    0.00014285068253322222, 1.995261254520514e-05,  2.6657530547975617e-06, 3.4437005170717757e-07,
    4.332978728872515e-08,  5.337585930369606e-09,  6.461631082271668e-10,  7.709330655075938e-11,
    9.085008995990314e-12,  1.0593100002694766e-12, 1.223814927040535e-13,  1.4024816424654875e-14,
    1.5957877545165999e-15, 1.804222765108688e-16,  2.0282883238907073e-17, 2.2684984871016422e-18};
constexpr std::array<double, kTerms> kAlongChord = {
    0.13333333333333333,    0.025396825396825397,   0.005079365079365079,   0.0009235209235209235,
    0.00015467190070364673, 2.428142110681793e-05,  3.62165068047421e-06,   5.183990257161826e-07,
    7.174703488813042e-08,  9.656148257435749e-09,  1.2693559512794821e-09, 1.6355129582944871e-10,
    2.0712096911989137e-11, 2.5838839388508812e-12, 3.1812970877472543e-13, 3.871544049482217e-14,
    4.663063450167284e-15,  5.564648081470502e-16,  6.58545561710514e-17,   7.735019600073056e-18};
constexpr std::array<double, kTerms> kAboutChord = {
    0.0380952380952381,     0.012698412698412698,  0.0029244829244829246,  0.0005595815119624644,
    9.54342541644129e-05,   1.503862070310872e-05, 2.236561387941238e-06,  3.182210507103959e-07,
    4.3719711046260315e-08, 5.838438239219352e-09, 7.615683827796638e-10,  9.739302003588493e-11,
    1.224645606492179e-11,  1.517592681786077e-12, 1.8568162229965582e-13, 2.2465328376614915e-14,
    2.691136169048588e-15,  3.19520225368183e-16,  3.763495014195979e-17,  4.40097189048166e-18};

double Series(const std::array<double, kTerms>& coefficients, double theta2, int terms) {
    double sum = 0;
    for (int k = terms - 1; k >= 0; --k) sum = sum * theta2 + coefficients[k];
    return sum;
}

// How many terms reach full precision: within each band of theta^2 the terms left out add up to
// less than 1E-18 of the first term in every series, far below the last digit of a Double.
int TermsFor(double theta2) {
    if (theta2 <= 0.0025) return 6;
    if (theta2 <= 0.04) return 9;
    if (theta2 <= 0.25) return 13;
    return kTerms;
}

CircularSegment BySeries(double a, double theta) {
    const double t2 = theta * theta, a2 = a * a, a3 = a2 * a, a4 = a2 * a2;
    const int terms = TermsFor(t2);
    return {a2 * theta * Series(kArea, t2, terms), a3 * t2 * Series(kFirstMoment, t2, terms),
            a4 * theta * Series(kAlongChord, t2, terms), a4 * t2 * theta * Series(kAboutChord, t2, terms)};
}

// Sector (about the centre) minus the triangle centre-A-B, then moved from the centre to the chord,
// which lies at d = R cos(theta) from the centre (d < 0 past a half circle: the triangle then adds).
CircularSegment BySectorAndTriangle(double a, double theta) {
    const double s = std::sin(theta), c = std::cos(theta);
    const double R = a / s, d = R * c, R4 = R * R * R * R, a3 = a * a * a;
    const double sectorLess = theta - s * c;
    const double area = R * R * sectorLess;
    const double aboutCentre = 2.0 / 3.0 * a3;  // ∬ (v + d) dA: sector 2R³s/3 less triangle 2ad²/3
    return {area, aboutCentre - d * area, R4 / 4 * sectorLess - a3 * d / 6,
            R4 / 4 * (theta + s * c) - a * d * d * d / 2 - 2 * d * aboutCentre + d * d * area};
}

}  // namespace

CircularSegment CircularSegment::Of(double halfChord, double halfAngle) {
    return halfAngle < kSeriesLimit ? BySeries(halfChord, halfAngle)
                                    : BySectorAndTriangle(halfChord, halfAngle);
}

double ArcToChordRatio(double halfAngle) {
    return halfAngle == 0 ? 1.0 : halfAngle / std::sin(halfAngle);
}

}  // namespace tgp
