#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

#include "geometry/Point.h"

namespace tgp::test {

// Compares two point arrays element by element within an absolute tolerance.
inline ::testing::AssertionResult PointsNear(const Point& actual, const Point& expected, double tolerance) {
    if (actual.size() != expected.size()) {
        return ::testing::AssertionFailure() << "size " << actual.size() << " instead of " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (!(std::abs(actual[i] - expected[i]) <= tolerance)) {
            return ::testing::AssertionFailure()
                   << "element " << i << " is " << actual[i] << " instead of " << expected[i];
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace tgp::test
