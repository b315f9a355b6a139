#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/Error.h"
#include "core/Message.h"

namespace tgp {
namespace {

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

}  // namespace
}  // namespace tgp
