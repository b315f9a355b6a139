#include "cli/DxfTags.h"

#include <charconv>

#include "cli/DrawnProfile.h"

namespace tgp::cli {

namespace {

std::string_view Trimmed(std::string_view s) {
    const auto first = s.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace

DxfTagReader::DxfTagReader(std::string_view text, std::string source) : text_(text), source_(std::move(source)) {}

std::string_view DxfTagReader::NextLine() {
    const std::size_t end = text_.find('\n', position_);
    const std::size_t stop = end == std::string_view::npos ? text_.size() : end;
    std::string_view line = text_.substr(position_, stop - position_);
    position_ = end == std::string_view::npos ? text_.size() : end + 1;
    ++line_;
    // A NUL ends a line's text, as programs that read lines as C strings see it.
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

}  // namespace tgp::cli
