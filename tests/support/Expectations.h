#pragma once

// Expectations every suite shares.

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "core/Error.h"

namespace tgp::test {

// Runs `action`, expecting the library's error with this number and description; `what` names the
// case in a failure.
template <class F>
void ExpectError(int number, const std::string& description, const std::string& what, F&& action) {
    try {
        action();
        ADD_FAILURE() << what << ": no error, expected " << number << " " << description;
    } catch (const tgp::Error& e) {
        EXPECT_EQ(e.number(), number) << what;
        EXPECT_EQ(e.description(), description) << what;
    }
}
template <class F>
void ExpectError(int number, const std::string& description, F&& action) {
    ExpectError(number, description, "", std::forward<F>(action));
}

// The same number to the last bit (a NaN equals itself, +0 differs from -0).
inline bool SameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace tgp::test
