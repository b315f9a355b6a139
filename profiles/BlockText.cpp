#include "profiles/BlockText.h"

#include <charconv>
#include <cmath>
#include <map>
#include <vector>

#include "core/Error.h"

namespace tgp {

namespace {

constexpr std::string_view kTag = "InertiaBlock/";
constexpr int kVersion = 1;
constexpr double kUnitTolerance = 1e-9;

[[noreturn]] void Fault(const std::string& what) {
    ThrowLibraryError("InitFromText: " + what);
}

// 'text' (built by appending: GCC 12 misreads "'" + std::string(...) as an overlapping copy).
std::string Quote(std::string_view text) {
    std::string quoted;
    quoted.reserve(text.size() + 2);
    quoted += '\'';
    quoted.append(text);
    quoted += '\'';
    return quoted;
}

void AppendNumber(std::string& out, double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

void AppendField(std::string& out, const char* name, double value) {
    out += ' ';
    out += name;
    out += '=';
    AppendNumber(out, value);
}

void AppendField(std::string& out, const char* name, const Point3& values) {
    AppendField(out, name, values[0]);
    for (std::size_t i = 1; i < 3; ++i) {
        out += ',';
        AppendNumber(out, values[i]);
    }
}

std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words;
    std::size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t' || text[i] == '\r' || text[i] == '\n'))
            ++i;
        std::size_t end = i;
        while (end < text.size() && text[end] != ' ' && text[end] != '\t' && text[end] != '\r' &&
               text[end] != '\n')
            ++end;
        if (end > i) words.push_back(text.substr(i, end - i));
        i = end;
    }
    return words;
}

double Number(std::string_view name, std::string_view token) {
    double value = 0;
    const auto result = std::from_chars(token.data(), token.data() + token.size(), value);
    if (token.empty() || result.ec != std::errc() || result.ptr != token.data() + token.size() ||
        !std::isfinite(value)) {
        Fault(Quote(name) + " is not a finite number: " + Quote(token));
    }
    return value;
}

Point3 Triple(std::string_view name, std::string_view token) {
    Point3 values{};
    std::size_t start = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t comma = token.find(',', start);
        const bool last = i + 1 == 3;
        if (last != (comma == std::string_view::npos)) {
            Fault(Quote(name) + " needs three numbers separated by commas: " + Quote(token));
        }
        values[i] = Number(name, token.substr(start, last ? std::string_view::npos : comma - start));
        start = comma + 1;
    }
    return values;
}

// The version from the leading tag "InertiaBlock/<n>".
void CheckTag(std::string_view first) {
    if (first.substr(0, kTag.size()) != kTag)
        Fault("not the text of an InertiaBlock (it starts with 'InertiaBlock/1')");
    const std::string_view version = first.substr(kTag.size());
    int n = 0;
    const auto result = std::from_chars(version.data(), version.data() + version.size(), n);
    if (result.ec != std::errc() || result.ptr != version.data() + version.size()) {
        Fault("the version " + Quote(version) + " is not a number");
    }
    if (n != kVersion)
        Fault("version " + std::string(version) + " is not known (this library reads version 1)");
}

double Length(const Point3& v) {
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

void CheckAxes(const BlockFields& f) {
    if (f.ux[2] != 0 || f.uy[2] != 0) Fault("the axes must lie in the XY plane (a z of 0)");
    if (std::fabs(Length(f.ux) - 1) > kUnitTolerance || std::fabs(Length(f.uy) - 1) > kUnitTolerance) {
        Fault("the axes Ux and Uy must be unit vectors");
    }
    if (f.ux[0] * f.uy[1] - f.ux[1] * f.uy[0] == 0) Fault("the axes Ux and Uy are parallel");
}

}  // namespace

std::string WriteBlockText(const BlockFields& f) {
    std::string out(kTag);
    out += std::to_string(kVersion);
    AppendField(out, "A", f.area);
    AppendField(out, "P", f.perimeter);
    AppendField(out, "Ix", f.ix);
    AppendField(out, "Iy", f.iy);
    AppendField(out, "Ixy", f.ixy);
    AppendField(out, "C", f.centroid);
    AppendField(out, "Ux", f.ux);
    AppendField(out, "Uy", f.uy);
    AppendField(out, "E", f.modulus);
    return out;
}

BlockFields ReadBlockText(std::string_view text) {
    const std::vector<std::string_view> words = Words(text);
    if (words.empty()) Fault("the text is empty");
    CheckTag(words.front());
    std::map<std::string_view, std::string_view> values;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::size_t equals = words[i].find('=');
        if (equals == std::string_view::npos) Fault(Quote(words[i]) + " is not a field (name=value)");
        const std::string_view name = words[i].substr(0, equals);
        if (!values.emplace(name, words[i].substr(equals + 1)).second) Fault(Quote(name) + " appears twice");
    }
    BlockFields f;
    const std::pair<const char*, double*> numbers[] = {{"A", &f.area},  {"P", &f.perimeter},
                                                       {"Ix", &f.ix},   {"Iy", &f.iy},
                                                       {"Ixy", &f.ixy}, {"E", &f.modulus}};
    const std::pair<const char*, Point3*> triples[] = {{"C", &f.centroid}, {"Ux", &f.ux}, {"Uy", &f.uy}};
    auto take = [&](const char* name) {
        const auto found = values.find(name);
        if (found == values.end()) Fault(Quote(name) + " is missing");
        const std::string_view value = found->second;
        values.erase(found);
        return value;
    };
    for (const auto& [name, target] : numbers) *target = Number(name, take(name));
    for (const auto& [name, target] : triples) *target = Triple(name, take(name));
    if (!values.empty()) Fault("unknown field " + Quote(values.begin()->first));
    CheckAxes(f);
    return f;
}

}  // namespace tgp
