#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tgp::cli {

// One group of a DXF file: its group code and its value text (trimmed).
struct DxfTag {
    int code = 0;
    std::string_view value;
    std::size_t line = 0;  // the line of the group code, from 1
};

// Reads the groups of an ASCII DXF text one at a time: a group-code line, then a value line. Lines
// may end in CR LF or LF. A code line that is not an integer raises ProfileFileError naming `source`
// and the line.
class DxfTagReader {
public:
    DxfTagReader(std::string_view text, std::string source);
    bool Next(DxfTag& tag);

private:
    std::string_view NextLine();

    std::string_view text_;
    std::string source_;
    std::size_t position_ = 0;
    std::size_t line_ = 0;
};

}  // namespace tgp::cli
