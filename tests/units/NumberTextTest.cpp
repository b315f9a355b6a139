#include <gtest/gtest.h>

#include <clocale>
#include <locale>
#include <string>

#include "support/Expectations.h"
#include "units/DLength.h"
#include "units/NumberText.h"

namespace tgp {
namespace {

struct FormatCase {
    double value;
    int16_t digits;
    std::string expected;
};

TEST(NumberText, FormatsFixedDecimalsOrTheShortestExactText) {
    const FormatCase cases[] = {
        {1234.5, -2, "1234.5"},
        {0.1, -2, "0.1"},
        {1.0 / 3, -2, "0.3333333333333333"},
        {-1.5, -1, "-1.5"},
        {1e20, -2, "1e+20"},
        {304.8 * 304.8 * 304.8, -2, "28316846.592000004"},
        {2.5, 2, "2.50"},
        {2.345, 0, "2"},
        {-0.0, -2, "0"},
        {-0.0, 3, "0.000"},
        {-0.001, 2, "0.00"},
        {-0.006, 2, "-0.01"},
        {1e22, 1, "1" + std::string(22, '0') + ".0"},
    };
    for (const FormatCase& c : cases)
        EXPECT_EQ(FormatNumber(c.value, c.digits), c.expected) << c.value << " " << c.digits;
}

struct ReadCase {
    const char* text;
    double expected;
};

TEST(NumberText, ReadsTheNumberAtTheStartAndIgnoresTheRest) {
    const ReadCase cases[] = {
        {"12.5 mm", 12.5}, {"  -3e2kN", -300}, {"\t+.5", 0.5}, {"7", 7},  {"1,5", 1.5},
        {"5e (x)", 5},     {"0x10", 0},        {"1e-999", 0},  {"2.", 2}, {"-0.25(cm)", -0.25},
        {"-2,5e1 m", -25}, {",5", 0.5},        {"2, 3", 2},    {"2,", 2}, {"1,5e-999", 0},
    };
    for (const ReadCase& c : cases) EXPECT_EQ(ReadNumber(c.text), c.expected) << c.text;
}

TEST(NumberText, TextWithoutANumberIsATypeMismatchAndAHugeOneOverflows) {
    for (const char* text : {"", "   ", "mm 12", "-", "+-1", ".", ".e5", "inf", "nan", "(5)", ",", "1,000.5",
                             "1.000,5 mm", "1.2.3", "1,2,3", "2.5,5"}) {
        test::ExpectError(13, "Type mismatch", text, [&] { ReadNumber(text); });
    }
    test::ExpectError(6, "Overflow", [] { ReadNumber("1e999 mm"); });
    // Beyond the range the exponent counts from the first significant digit, however far behind
    // the point it stands: 1E-410 is read as zero, 1E310 overflows.
    const std::string tiny = "0." + std::string(399, '0') + "1";
    EXPECT_EQ(ReadNumber(tiny + "e-10"), 0);
    test::ExpectError(6, "Overflow", [&] { ReadNumber(tiny + "e710"); });
    EXPECT_EQ(ReadWholeNumber(" 3 "), 3);
    EXPECT_THROW(ReadWholeNumber("3 m"), Error);
}

TEST(NumberText, ShortestTextReadsBackToTheSameDouble) {
    for (double v : {0.1, 1.0 / 3, 123456789.123, 5e-324, 1.7976931348623157e308, -2.2250738585072014e-308})
        EXPECT_EQ(ReadNumber(FormatNumber(v)), v) << FormatNumber(v);
}

// A host that switched the process to a decimal comma must not change the text.
struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class DecimalCommaLocale : public ::testing::Test {
  protected:
    void SetUp() override {
        previous_ = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
        // Switch the C library too where the machine has such a locale.
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8"})
            if (std::setlocale(LC_ALL, name) != nullptr) break;
    }
    void TearDown() override {
        std::locale::global(previous_);
        std::setlocale(LC_ALL, "C");
    }
    std::locale previous_;
};

TEST_F(DecimalCommaLocale, NumbersStillUseAPoint) {
    if (std::setlocale(LC_NUMERIC, nullptr) != std::string("C")) {
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");  // the C library really uses a comma
    }
    EXPECT_EQ(FormatNumber(1234.5), "1234.5");
    EXPECT_EQ(FormatNumber(1234.5, 2), "1234.50");
    EXPECT_EQ(ReadNumber("2.5 cm"), 2.5);
    DLength length;
    length.ValueFromString("2.5 cm");
    EXPECT_EQ(length.Millimetres(), 25);
    EXPECT_EQ(length.ValueToString(1), "2.5 (cm)");
    length.ValueFromString("2,5 m");  // as the host's CStr writes it: read, never cut to 2
    EXPECT_EQ(length.Millimetres(), 2500);
}

}  // namespace
}  // namespace tgp
