// The core: equality of numbers, texts and arrays, errors and messages, rounding, the timer and the
// parallel loop.

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "core/Equality.h"
#include "core/Error.h"
#include "core/Message.h"
#include "core/ParallelFor.h"
#include "core/Rounding.h"
#include "core/Timer.h"

namespace tgp {
namespace {

struct NumberCase {
    double a, b, tolerance;
    bool equal;
};

class NumberEquality : public testing::TestWithParam<NumberCase> {};

TEST_P(NumberEquality, FollowsTheRule) {
    const auto& c = GetParam();
    double tolerance = c.tolerance;
    EXPECT_EQ(IsEqual(c.a, c.b, tolerance), c.equal) << c.a << " vs " << c.b << " tol " << c.tolerance;
    EXPECT_EQ(IsEqualWithin(c.a, c.b, c.tolerance), c.equal);
}

constexpr double kInf = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(Cases, NumberEquality,
                         testing::Values(NumberCase{1, 1, 1e-6, true},            // identical
                                         NumberCase{kInf, kInf, 1e-6, true},      // identical infinities
                                         NumberCase{5e-7, -5e-7, 1e-6, true},     // both below the tolerance
                                         NumberCase{1e-6, 0, 1e-6, false},        // "below" is strict
                                         NumberCase{0, 1e-7, 0, true},            // 0 selects the default
                                         NumberCase{1.0000005, 1, 1e-6, true},    // ratio within
                                         NumberCase{1.000002, 1, 1e-6, false},    // ratio outside
                                         NumberCase{-1.0000005, -1, 1e-6, true},  // ratio of negatives
                                         NumberCase{1, -1, 1e-6, false},          // opposite signs
                                         NumberCase{5, 0, 1e-6, false},  // no ratio with a zero divisor
                                         NumberCase{100, 101, -0.02,
                                                    true},  // the magnitude of the tolerance counts
                                         NumberCase{std::nan(""), std::nan(""), 1e-6, false}));

TEST(NumberEquality, ZeroToleranceIsReplacedByTheDefaultAndWrittenBack) {
    double tolerance = 0;
    EXPECT_TRUE(IsEqual(3.0, 3.0, tolerance));
    EXPECT_EQ(tolerance, 1e-06);
}

TEST(NumberEquality, GivenToleranceIsLeftAlone) {
    double tolerance = 0.5;
    EXPECT_TRUE(IsEqual(1.2, 1.0, tolerance));
    EXPECT_EQ(tolerance, 0.5);
}

TEST(TextEquality, ExactWithoutToleranceTrimmedAndCaselessWithOne) {
    EXPECT_TRUE(IsEqual("mm", "mm"));
    EXPECT_FALSE(IsEqual("mm", " MM "));
    EXPECT_TRUE(IsEqual("mm", " MM ", 1e-6));
    EXPECT_FALSE(IsEqual("mm", "m m", 1e-6));
    EXPECT_FALSE(IsEqual("mm", "cm", 1e-6));
    EXPECT_TRUE(IsEqual("", "   ", 0.0));
}

TEST(ArrayEquality, CountsMustMatchAndElementsFollowTheNumberRule) {
    const std::vector<double> a{1, 2, 3}, nearly{1.0000001, 2, 3}, shorter{1, 2};
    double tolerance = 0;
    EXPECT_TRUE(IsEqual(a, nearly, tolerance));
    EXPECT_EQ(tolerance, 1e-06);
    EXPECT_FALSE(IsEqual(a, shorter, tolerance));
    const std::vector<double> far{1, 2, 3.1};
    EXPECT_FALSE(IsEqual(a, far, tolerance));
    const std::vector<double> none;
    EXPECT_TRUE(IsEqual(none, none, tolerance));
}

TEST(Error, RuntimeErrorsCarryTheRuntimeDescriptions) {
    struct Case {
        Error error;
        int number;
        const char* description;
    };
    const std::vector<Case> cases{
        {Error::InvalidProcedureCall(), 5, "Invalid procedure call or argument"},
        {Error::Overflow(), 6, "Overflow"},
        {Error::SubscriptOutOfRange(), 9, "Subscript out of range"},
        {Error::DivisionByZero(), 11, "Division by zero"},
        {Error::TypeMismatch(), 13, "Type mismatch"},
        {Error::ObjectRequired(), 424, "Object required"},
        {Error::ApplicationDefined(), 713, "Application-defined or object-defined error"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.error.number(), c.number);
        EXPECT_EQ(c.error.description(), c.description);
        EXPECT_STREQ(c.error.what(), c.description);
    }
}

TEST(Error, LibraryErrorIs2411WithTheGivenText) {
    try {
        ThrowLibraryError("GetUnitString no found");
        FAIL() << "nothing thrown";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 2411);
        EXPECT_EQ(e.description(), "GetUnitString no found");
    }
}

TEST(Message, InstalledHandlerReceivesTextAndTitleAndCanBeRestored) {
    std::vector<std::string> seen;
    auto previous = SetMessageHandler([&](std::string_view text, std::string_view title) {
        seen.emplace_back(std::string(title) + "|" + std::string(text));
    });
    ShowMessage("Code On Hold ^^", "Tessary World");
    SetMessageHandler(previous);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0], "Tessary World|Code On Hold ^^");
    testing::internal::CaptureStderr();
    ShowMessage("text", "title");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "title: text\n");
}

TEST(RoundHalfEven, HalvesGoToTheEvenNeighbour) {
    struct Case {
        double value;
        int digits;
        double expected;
    };
    const Case cases[] = {
        {2.5, 0, 2},
        {3.5, 0, 4},
        {-2.5, 0, -2},
        {-3.5, 0, -4},
        {0.125, 2, 0.12},
        {0.375, 2, 0.38},
        {1.2345678949, 8, 1.23456789},
        {-1e-12, 8, 0},
        {2.6, 0, 3},
        {1234.0, 0, 1234},
        {0.0, 3, 0},
    };
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(RoundHalfEven(c.value, c.digits), c.expected) << c.value;
}

TEST(RoundHalfEven, NonFiniteAndHugeValuesPassThrough) {
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(RoundHalfEven(inf, 2), inf);
    EXPECT_TRUE(std::isnan(RoundHalfEven(std::nan(""), 2)));
    EXPECT_EQ(RoundHalfEven(1e300, 12), 1e300);
}

TEST(Timer, ReadsSecondsWithinOneDay) {
    const double t = Timer();
    EXPECT_GE(t, 0.0);
    EXPECT_LT(t, 86400.0);
}

// Parts of a range on the cores: every index handed over once, small ranges on the caller's thread.
TEST(ParallelFor, EveryIndexOnceInConsecutiveParts) {
    for (const std::size_t n : {0u, 1u, 2u, 7u, 1000u}) {
        std::vector<std::atomic<int>> seen(n);
        std::atomic<int> parts = 0;
        ParallelFor(n, [&](std::size_t begin, std::size_t end) {
            EXPECT_LT(begin, end);
            ++parts;
            for (std::size_t i = begin; i < end; ++i) ++seen[i];
        });
        for (std::size_t i = 0; i < n; ++i) EXPECT_EQ(seen[i], 1) << "n " << n << ", index " << i;
        EXPECT_LE(parts, static_cast<int>(std::max(1u, Cores())));
    }
    const auto caller = std::this_thread::get_id();
    ParallelFor(
        100,
        [&](std::size_t begin, std::size_t end) {
            EXPECT_EQ(std::this_thread::get_id(), caller) << "parts of at least 64: one part";
            EXPECT_EQ(end - begin, 100u);
        },
        64);
}

}  // namespace
}  // namespace tgp
