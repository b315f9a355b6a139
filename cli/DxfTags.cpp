#include "cli/DxfTags.h"

#include <charconv>
#include <vector>

#include "cli/DrawnProfile.h"

namespace tgp::cli {

namespace {

std::string_view Trimmed(std::string_view s) {
    const auto first = s.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

// A count group and the group whose occurrences it counts, per entity type.
struct CountedGroup {
    std::string_view entity;
    int countCode;
    int itemCode;
};

constexpr CountedGroup kCounted[] = {
    {"LWPOLYLINE", 90, 10}, {"SPLINE", 72, 40}, {"SPLINE", 73, 10}, {"SPLINE", 74, 11}, {"LEADER", 76, 10},
};

bool IsCounted(std::string_view entity) {
    for (const CountedGroup& c : kCounted) {
        if (c.entity == entity) return true;
    }
    return false;
}

void Emit(std::string& out, int code, std::string_view value) {
    out += std::to_string(code);
    out += '\n';
    out += value;
    out += '\n';
}

// Writes one buffered entity with its counts replaced by the real numbers of items.
void EmitCounted(std::string& out, std::string_view entity, const std::vector<DxfTag>& tags) {
    for (const DxfTag& tag : tags) {
        const CountedGroup* counted = nullptr;
        for (const CountedGroup& c : kCounted) {
            if (c.entity == entity && c.countCode == tag.code) counted = &c;
        }
        if (!counted) {
            Emit(out, tag.code, tag.value);
            continue;
        }
        std::size_t items = 0;
        for (const DxfTag& t : tags) items += t.code == counted->itemCode;
        Emit(out, tag.code, std::to_string(items));
    }
}

// The DXF parser reads a line into a buffer of 1024 characters and stops making progress on a
// longer one (it would read the same file forever), so no line may reach it longer than this.
constexpr std::size_t kLongestValue = 1000;

// Names and texts (the string group codes) are cut to the longest line; they never make a profile.
bool IsTextGroup(int code) {
    return (code >= 0 && code <= 9) || (code >= 100 && code <= 109) || (code >= 300 && code <= 369) ||
           (code >= 390 && code <= 399) || (code >= 410 && code <= 419) || (code >= 430 && code <= 439) ||
           (code >= 470 && code <= 481) || code == 999 || (code >= 1000 && code <= 1009);
}

// The value as the parser may see it: a long text is cut, a long number is refused.
std::string_view WithinLineLimit(const DxfTag& tag, const std::string& source) {
    if (tag.value.size() <= kLongestValue) return tag.value;
    if (IsTextGroup(tag.code)) return tag.value.substr(0, kLongestValue);
    throw ProfileFileError(source + ":" + std::to_string(tag.line + 1) + ": a value of " +
                           std::to_string(tag.value.size()) + " characters for group " + std::to_string(tag.code) +
                           " (a number has at most " + std::to_string(kLongestValue) + ")");
}

}  // namespace

DxfTagReader::DxfTagReader(std::string_view text, std::string source) : text_(text), source_(std::move(source)) {}

std::string_view DxfTagReader::NextLine() {
    const std::size_t end = text_.find('\n', position_);
    const std::size_t stop = end == std::string_view::npos ? text_.size() : end;
    std::string_view line = text_.substr(position_, stop - position_);
    position_ = end == std::string_view::npos ? text_.size() : end + 1;
    ++line_;
    // The DXF parser reads each line as a C string: a NUL ends it there. Seeing the same, a line
    // "LWPOLYLINE\0..." is a polyline here too and its counts are checked.
    return line.substr(0, line.find('\0'));
}

bool DxfTagReader::Next(DxfTag& tag) {
    if (position_ >= text_.size()) return false;
    const std::string_view code = Trimmed(NextLine());
    tag.line = line_;
    int value = 0;
    const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), value);
    if (error != std::errc() || end != code.data() + code.size()) {
        throw ProfileFileError(source_ + ":" + std::to_string(line_) + ": '" + std::string(code.substr(0, 40)) +
                               "' is not a DXF group code");
    }
    tag.code = value;
    tag.value = position_ < text_.size() ? Trimmed(NextLine()) : std::string_view{};
    return true;
}

std::string WithTrustedCounts(std::string_view text, const std::string& source) {
    std::string out;
    out.reserve(text.size());
    DxfTagReader reader(text, source);
    std::vector<DxfTag> entity;  // the tags of a counted entity, until the next one starts
    std::string_view entityType;
    DxfTag tag;
    while (reader.Next(tag)) {
        tag.value = WithinLineLimit(tag, source);
        if (tag.code == 0) {
            if (!entity.empty()) EmitCounted(out, entityType, entity);
            entity.clear();
            entityType = IsCounted(tag.value) ? tag.value : std::string_view{};
            Emit(out, tag.code, tag.value);
            continue;
        }
        if (entityType.empty()) Emit(out, tag.code, tag.value);
        else entity.push_back(tag);
    }
    if (!entity.empty()) EmitCounted(out, entityType, entity);
    return out;
}

}  // namespace tgp::cli
