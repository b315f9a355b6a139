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

}  // namespace

DxfTagReader::DxfTagReader(std::string_view text, std::string source) : text_(text), source_(std::move(source)) {}

std::string_view DxfTagReader::NextLine() {
    const std::size_t end = text_.find('\n', position_);
    const std::size_t stop = end == std::string_view::npos ? text_.size() : end;
    std::string_view line = text_.substr(position_, stop - position_);
    position_ = end == std::string_view::npos ? text_.size() : end + 1;
    ++line_;
    return line;
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
