#include "drawings/DxfTags.h"

#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "drawings/DrawnProfile.h"

namespace tgp::drawings {

namespace {

std::string_view Trimmed(std::string_view s) {
    const auto first = s.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

// A piece of a file fit for a message: at most 40 characters, anything unprintable as '?'.
std::string Shown(std::string_view text) {
    std::string shown;
    for (char ch : text.substr(0, 40)) shown += std::isprint(static_cast<unsigned char>(ch)) ? ch : '?';
    return text.size() > 40 ? shown + "..." : shown;
}

// ASCII DXF: a group-code line, then a value line; lines end in LF or CR LF.
class AsciiTags final : public DxfTagSource {
  public:
    AsciiTags(std::string_view text, std::string source) : text_(text), source_(std::move(source)) {}

    bool Next(DxfTag& tag) override {
        if (position_ >= text_.size()) return false;
        const std::string_view code = Trimmed(NextLine());
        tag.position = line_;
        int value = 0;
        const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), value);
        if (error != std::errc() || end != code.data() + code.size()) {
            if (line_ == 1) {
                throw DrawingFileError(source_ + ": not a DXF file (its first line, '" + Shown(code) +
                                       "', is not a group code)");
            }
            throw DrawingFileError(Where(tag) + ": '" + Shown(code) + "' is not a DXF group code");
        }
        if (position_ >= text_.size()) {
            throw DrawingFileError(Where(tag) + ": the file ends after group code " + std::to_string(value) +
                                   ", without its value (the file is cut short?)");
        }
        tag.code = value;
        tag.value = Trimmed(NextLine());
        tag.isNumber = false;
        return true;
    }
    std::string Where(const DxfTag& tag) const override {
        return source_ + ":" + std::to_string(tag.position);
    }
    std::string WhereValue(const DxfTag& tag) const override {
        return source_ + ":" + std::to_string(tag.position + 1);
    }

  private:
    std::string_view NextLine() {
        const std::size_t end = text_.find('\n', position_);
        const std::size_t stop = end == std::string_view::npos ? text_.size() : end;
        std::string_view line = text_.substr(position_, stop - position_);
        position_ = end == std::string_view::npos ? text_.size() : end + 1;
        ++line_;
        return line.substr(0, line.find('\0'));  // a NUL ends a line's text
    }

    std::string_view text_;
    std::string source_;
    std::size_t position_ = 0;
    std::size_t line_ = 0;
};

// How a binary DXF file stores the value of a group code.
enum class Stored { Text, Chunk, Byte, Int16, Int32, Int64, Double };

Stored StoredAs(int code) {
    auto in = [code](int first, int last) { return code >= first && code <= last; };
    if (in(310, 319) || code == 1004) return Stored::Chunk;
    if (in(290, 299)) return Stored::Byte;
    if (in(60, 79) || in(170, 179) || in(270, 289) || in(370, 389) || in(400, 409) || in(1060, 1070))
        return Stored::Int16;
    if (in(90, 99) || in(420, 429) || in(440, 459) || code == 1071) return Stored::Int32;
    if (in(160, 169)) return Stored::Int64;
    if (in(10, 59) || in(110, 149) || in(210, 239) || in(460, 469) || in(1010, 1059)) return Stored::Double;
    return Stored::Text;
}

// Binary DXF: after the sentinel, each group is its code (one byte, 255 escaping a two-byte code, in
// files of release 12 and before; two bytes from release 13 on) and its value, little-endian.
class BinaryTags final : public DxfTagSource {
  public:
    BinaryTags(std::string_view data, std::string source) : data_(data), source_(std::move(source)) {
        position_ = kBinaryDxfSentinel.size();
        // The first group is always 0 SECTION: its code takes one byte or two.
        wideCodes_ = data_.size() > position_ + 1 && data_[position_] == 0 && data_[position_ + 1] == 0;
    }

    bool Next(DxfTag& tag) override {
        if (position_ >= data_.size()) return false;
        tag.position = position_;
        tag.code = Code();
        tag.isNumber = false;
        tag.value = {};
        switch (StoredAs(tag.code)) {
            case Stored::Text: {
                const std::size_t end = data_.find('\0', position_);
                if (end == std::string_view::npos) CutShort(tag);
                tag.value = data_.substr(position_, end - position_);
                position_ = end + 1;
                return true;
            }
            case Stored::Chunk: {
                const std::size_t length = static_cast<unsigned char>(Bytes(tag, 1)[0]);
                tag.value = std::string_view(Bytes(tag, length), length);
                return true;
            }
            case Stored::Byte: return Number(tag, static_cast<unsigned char>(Bytes(tag, 1)[0]));
            case Stored::Int16: return Number(tag, Read<std::int16_t>(tag));
            case Stored::Int32: return Number(tag, Read<std::int32_t>(tag));
            case Stored::Int64: return Number(tag, static_cast<double>(Read<std::int64_t>(tag)));
            case Stored::Double: return Number(tag, Read<double>(tag));
        }
        return true;
    }
    std::string Where(const DxfTag& tag) const override {
        return source_ + " (byte " + std::to_string(tag.position) + ")";
    }
    std::string WhereValue(const DxfTag& tag) const override { return Where(tag); }

  private:
    int Code() {
        DxfTag at;
        at.position = position_;
        if (wideCodes_) return Read<std::int16_t>(at);
        const auto first = static_cast<unsigned char>(Bytes(at, 1)[0]);
        return first == 255 ? Read<std::int16_t>(at) : first;
    }

    const char* Bytes(const DxfTag& tag, std::size_t count) {
        if (data_.size() - position_ < count) CutShort(tag);
        const char* bytes = data_.data() + position_;
        position_ += count;
        return bytes;
    }

    template <class T>
    T Read(const DxfTag& tag) {
        // The files are little-endian, as are the machines this is built for.
        T value;
        std::memcpy(&value, Bytes(tag, sizeof value), sizeof value);
        return value;
    }

    static bool Number(DxfTag& tag, double value) {
        tag.isNumber = true;
        tag.number = value;
        return true;
    }

    [[noreturn]] void CutShort(const DxfTag& tag) const {
        throw DrawingFileError(Where(tag) +
                               ": the file ends in the middle of a group (the file is cut short?)");
    }

    std::string_view data_;
    std::string source_;
    std::size_t position_ = 0;
    bool wideCodes_ = true;
};

}  // namespace

std::unique_ptr<DxfTagSource> OpenDxfTags(std::string_view contents, const std::string& source) {
    if (contents.empty()) throw DrawingFileError(source + ": the file is empty");
    if (contents.substr(0, kBinaryDxfSentinel.size()) == kBinaryDxfSentinel) {
        return std::make_unique<BinaryTags>(contents, source);
    }
    return std::make_unique<AsciiTags>(contents, source);
}

}  // namespace tgp::drawings
