#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <string>

#include "core/Error.h"
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

// Runs the action and checks that it throws tgp::Error with exactly this number and text.
inline ::testing::AssertionResult RaisesError(const std::function<void()>& action, int number,
                                              const std::string& description) {
    try {
        action();
    } catch (const Error& e) {
        if (e.number() == number && e.description() == description) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "raised " << e.number() << " \"" << e.description() << "\"";
    }
    return ::testing::AssertionFailure() << "raised nothing";
}

}  // namespace tgp::test
