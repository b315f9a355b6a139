#include "core/Equality.h"

#include <cctype>
#include <cmath>

#include "core/Constants.h"

namespace tgp {

namespace {

bool EqualUnderTolerance(double a, double b, double tolerance) {
    if (a == b) return true;
    const double bound = std::fabs(tolerance);
    if (std::fabs(a) < bound && std::fabs(b) < bound) return true;
    if (b == 0) return false;
    return std::fabs(a / b - 1) <= bound;
}

std::string_view TrimBlanks(std::string_view s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    const auto last = s.find_last_not_of(' ');
    return s.substr(first, last - first + 1);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto ca = static_cast<unsigned char>(a[i]);
        const auto cb = static_cast<unsigned char>(b[i]);
        if (std::toupper(ca) != std::toupper(cb)) return false;
    }
    return true;
}

}  // namespace

bool IsEqual(double a, double b, double& tolerance) {
    if (tolerance == 0) tolerance = kDefaultTolerance;
    return EqualUnderTolerance(a, b, tolerance);
}

bool IsEqual(double a, double b) {
    return EqualUnderTolerance(a, b, kDefaultTolerance);
}

bool IsEqualWithin(double a, double b, double tolerance) {
    return EqualUnderTolerance(a, b, tolerance == 0 ? kDefaultTolerance : tolerance);
}

bool IsEqual(std::string_view a, std::string_view b, std::optional<double> tolerance) {
    if (!tolerance) return a == b;
    return EqualIgnoringCase(TrimBlanks(a), TrimBlanks(b));
}

bool IsEqual(std::span<const double> a, std::span<const double> b, double& tolerance) {
    if (tolerance == 0) tolerance = kDefaultTolerance;
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!EqualUnderTolerance(a[i], b[i], tolerance)) return false;
    }
    return true;
}

}  // namespace tgp
