#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tgp::drawings {

// One group of a DXF file: its group code and its value. An ASCII file gives every value as text;
// a binary file gives numbers as numbers (isNumber) and texts as text.
struct DxfTag {
    int code = 0;
    std::string_view value;
    bool isNumber = false;
    double number = 0;
    std::size_t position = 0;  // ASCII: the line of the group code, from 1; binary: the byte offset
};

// The groups of a DXF file, one at a time.
class DxfTagSource {
  public:
    virtual ~DxfTagSource() = default;
    // False at the end of the data. A group that cannot be read raises DrawingFileError.
    virtual bool Next(DxfTag& tag) = 0;
    // Where a group is, for messages: "drawing.dxf:12" or "drawing.dxf (byte 340)".
    virtual std::string Where(const DxfTag& tag) const = 0;
    // Where the value of a group is (the line after an ASCII group code).
    virtual std::string WhereValue(const DxfTag& tag) const = 0;
};

// The groups of a file's contents: binary DXF when it starts with the binary sentinel, ASCII DXF
// otherwise. An empty file, or one whose first line is not a group code, raises DrawingFileError
// saying it is not a DXF file.
std::unique_ptr<DxfTagSource> OpenDxfTags(std::string_view contents, const std::string& source);

// The sentinel a binary DXF file starts with.
inline constexpr std::string_view kBinaryDxfSentinel{"AutoCAD Binary DXF\r\n\x1a\0", 22};

}  // namespace tgp::drawings
