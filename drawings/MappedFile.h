#pragma once

#include <string>
#include <string_view>

namespace tgp::drawings {

// A file's bytes in memory, read-only: mapped from the page cache where the system can (no copy, no
// freshly zeroed pages for a file of tens of megabytes), else read into a buffer. Throws
// DrawingFileError naming the file when it cannot be opened or read.
class MappedFile {
  public:
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::string_view Text() const { return {data_, size_}; }

  private:
    const char* data_ = nullptr;
    std::size_t size_ = 0;
    bool mapped_ = false;
    std::string buffer_;  // the bytes when the file could not be mapped
};

}  // namespace tgp::drawings
