#include "units/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <system_error>

#include "core/Error.h"

namespace tgp {

namespace {

constexpr std::string_view kBlanks = " \t";

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t SkipBlanks(std::string_view text, std::size_t from) {
    const std::size_t at = text.find_first_not_of(kBlanks, from);
    return at == std::string_view::npos ? text.size() : at;
}

// Whether an out-of-range number text denotes a magnitude below 1 (an underflow, read as zero)
// rather than above the double range: the position of its first significant digit relative to the
// decimal point, shifted by its exponent, tells.
bool IsUnderflow(std::string_view number) {
    const std::size_t exponentAt = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, exponentAt);
    long magnitude = 0;  // decimal position of the first significant digit
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t firstSignificant = mantissa.find_first_of("123456789");
    if (firstSignificant == std::string_view::npos) return true;
    magnitude = firstSignificant < point ? static_cast<long>(point - firstSignificant)
                                         : -static_cast<long>(firstSignificant - point - 1);
    if (exponentAt != std::string_view::npos) {
        long exponent = 0;
        std::string_view digits = number.substr(exponentAt + 1);
        const bool negative = !digits.empty() && digits.front() == '-';
        if (!digits.empty() && (digits.front() == '-' || digits.front() == '+')) digits.remove_prefix(1);
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        if (parsed.ec == std::errc::result_out_of_range) return negative;
        magnitude += negative ? -exponent : exponent;
    }
    return magnitude <= 0;
}

struct ParsedNumber {
    double value;
    std::size_t end;  // index just after the number
};

bool IsSeparator(char c) {
    return c == '.' || c == ',';
}

// Whether text[at] is a decimal separator with a digit after it.
bool SeparatorBeforeDigit(std::string_view text, std::size_t at) {
    return at + 1 < text.size() && IsSeparator(text[at]) && IsDigit(text[at + 1]);
}

// The number's text from `at` with a decimal comma turned into a point: a comma after the integer
// digits (or in their place) is the decimal separator when a digit follows it.
std::string WithDecimalPoint(std::string_view text, std::size_t at) {
    std::string number(text.substr(at));
    std::size_t integerEnd = 0;
    while (integerEnd < number.size() && IsDigit(number[integerEnd])) ++integerEnd;
    if (number[integerEnd] == ',' && SeparatorBeforeDigit(number, integerEnd)) number[integerEnd] = '.';
    return number;
}

// The number starting at the first non-blank character: optional sign, then a digit or a decimal
// separator followed by a digit. No number there -> 13; beyond the double range -> 6; a second
// separator and a digit right after it (grouped or listed numbers: "1,000.5", "1.2.3") -> 13.
ParsedNumber ParseNumberAt(std::string_view text) {
    std::size_t at = SkipBlanks(text, 0);
    bool negative = false;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) negative = text[at++] == '-';
    const bool startsNumber = at < text.size() && (IsDigit(text[at]) || SeparatorBeforeDigit(text, at));
    if (!startsNumber) throw Error::TypeMismatch();

    const std::string number = WithDecimalPoint(text, at);
    double magnitude = 0;
    const auto [end, ec] =
        std::from_chars(number.data(), number.data() + number.size(), magnitude, std::chars_format::general);
    const auto length = static_cast<std::size_t>(end - number.data());
    if (ec == std::errc::result_out_of_range) {
        if (!IsUnderflow(std::string_view(number).substr(0, length))) throw Error::Overflow();
        magnitude = 0;
    } else if (ec != std::errc()) {
        throw Error::TypeMismatch();
    }
    if (SeparatorBeforeDigit(number, length)) throw Error::TypeMismatch();
    return {negative ? -magnitude : magnitude, at + length};
}

bool IsZeroText(std::string_view digits) {
    return std::all_of(digits.begin(), digits.end(), [](char c) { return c == '0' || c == '.'; });
}

}  // namespace

std::string FormatNumber(double value, int16_t NumberOfDigits) {
    if (value == 0) value = 0;  // drops the sign of a negative zero
    const bool fixed = NumberOfDigits >= 0;
    // Fixed notation of the largest double needs 309 integer digits, a sign and a point.
    std::string text(fixed ? 320 + static_cast<std::size_t>(NumberOfDigits) : 32, '\0');
    char* first = text.data();
    char* last = first + text.size();
    const auto result = fixed ? std::to_chars(first, last, value, std::chars_format::fixed, NumberOfDigits)
                              : std::to_chars(first, last, value);
    text.resize(static_cast<std::size_t>(result.ptr - first));
    // A negative amount that rounds to zero at this many decimals is written without its sign.
    if (text.size() > 1 && text.front() == '-' && IsZeroText(std::string_view(text).substr(1)))
        text.erase(0, 1);
    return text;
}

double ReadNumber(std::string_view text) {
    return ParseNumberAt(text).value;
}

double ReadWholeNumber(std::string_view text) {
    const ParsedNumber number = ParseNumberAt(text);
    if (SkipBlanks(text, number.end) != text.size()) throw Error::TypeMismatch();
    return number.value;
}

}  // namespace tgp
