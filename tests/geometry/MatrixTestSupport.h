#pragma once

#include <random>
#include <vector>

namespace tgp::test {

// n values drawn evenly from [-10, 10): right-hand sides and test vectors for the solver.
inline std::vector<double> RandomVector(int n, std::mt19937& random) {
    std::uniform_real_distribution<double> uniform(-10.0, 10.0);
    std::vector<double> v(static_cast<std::size_t>(n));
    for (double& value : v) value = uniform(random);
    return v;
}

}  // namespace tgp::test
