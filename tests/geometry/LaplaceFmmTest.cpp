// The fast multipole sums against the direct ones, on point sets that stress the tree: a curve with
// a cluster (deep, uneven leaves), a line (a box of no height), a few points (no far boxes at all).

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "geometry/LaplaceFmm.h"

namespace tgp {
namespace {

using Complex = LaplaceFmm::Complex;

// The sums and their complex derivatives, pair by pair.
std::vector<double> Direct(const std::vector<Complex>& z, const std::vector<double>& c,
                           const std::vector<Complex>& d, std::vector<Complex>& derivatives) {
    std::vector<double> phi(z.size(), 0);
    derivatives.assign(z.size(), 0);
    for (std::size_t i = 0; i < z.size(); ++i) {
        for (std::size_t j = 0; j < z.size(); ++j) {
            if (j == i) continue;
            const Complex inverse = 1.0 / (z[i] - z[j]);
            phi[i] += c[j] * std::log(std::abs(z[i] - z[j])) + (d[j] * inverse).real();
            derivatives[i] += c[j] * inverse - d[j] * inverse * inverse;
        }
    }
    return phi;
}

TEST(LaplaceFmm, AgreesWithTheDirectSums) {
    struct Case {
        const char* name;
        std::size_t n;
        Complex (*at)(std::size_t k, std::size_t n);
    };
    const Case cases[] = {
        {"ellipse with a cluster", 3000,
         [](std::size_t k, std::size_t n) {
             const double t = 2 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(n);
             return k % 3 ? Complex(300 * std::cos(t), 100 * std::sin(t))
                          : Complex(1e-4 * static_cast<double>(k), 7);
         }},
        {"line", 2000,
         [](std::size_t k, std::size_t) { return Complex(0.5 * static_cast<double>(k) - 40, 3); }},
        {"three points", 3, [](std::size_t k, std::size_t) { return Complex(static_cast<double>(k), 1e3); }},
    };
    for (const Case& c : cases) {
        std::vector<Complex> z, dipoles;
        std::vector<double> charges;
        for (std::size_t k = 0; k < c.n; ++k) {
            z.push_back(c.at(k, c.n));
            charges.push_back(std::sin(1.3 * static_cast<double>(k)));
            dipoles.emplace_back(std::cos(0.7 * static_cast<double>(k)), 0.5);
        }
        const LaplaceFmm fmm(z, 22);
        std::vector<Complex> slopes, expectedSlopes;
        const auto expected = Direct(z, charges, dipoles, expectedSlopes),
                   both = fmm.Potentials(charges, dipoles, &slopes);
        double slopeScale = 0;
        for (const Complex& e : expectedSlopes) slopeScale = std::max(slopeScale, std::abs(e));
        const auto chargesOnly = fmm.Potentials(charges, {}), dipolesOnly = fmm.Potentials({}, dipoles);
        double scale = 0;
        for (double e : expected) scale = std::max(scale, std::fabs(e));
        for (std::size_t i = 0; i < z.size(); ++i) {
            EXPECT_NEAR(both[i], expected[i], 1e-9 * scale) << c.name << " point " << i;
            EXPECT_NEAR(std::abs(slopes[i] - expectedSlopes[i]), 0, 1e-9 * slopeScale)
                << c.name << " point " << i;
            EXPECT_NEAR(chargesOnly[i] + dipolesOnly[i], both[i], 1e-12 * scale) << c.name;
        }
        if (c.n > 1000) {
            EXPECT_GE(fmm.Depth(), 3) << c.name << ": far boxes were used";
        }
    }
    EXPECT_TRUE(LaplaceFmm({}, 10).Potentials({}, {}).empty());
}

}  // namespace
}  // namespace tgp
