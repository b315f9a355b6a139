#include "drawings/MappedFile.h"

#include <fstream>
#include <sstream>

#include "drawings/DrawnProfile.h"

#if defined(__unix__)
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tgp::drawings {

MappedFile::MappedFile(const std::string& path) {
#if defined(__unix__)
    const int fd = open(path.c_str(), O_RDONLY);
    if (fd < 0) throw DrawingFileError(path + ": cannot open the file");
    struct stat info {};
    const bool known = fstat(fd, &info) == 0;
    if (known && S_ISDIR(info.st_mode)) {
        close(fd);
        throw DrawingFileError(path + ": is a folder, not a file");
    }
    if (known && S_ISREG(info.st_mode) && info.st_size > 0) {
        void* view = mmap(nullptr, static_cast<std::size_t>(info.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
        if (view != MAP_FAILED) {
            madvise(view, static_cast<std::size_t>(info.st_size), MADV_SEQUENTIAL);
            data_ = static_cast<const char*>(view);
            size_ = static_cast<std::size_t>(info.st_size);
            mapped_ = true;
        }
    }
    close(fd);
    if (mapped_) return;
#endif
    // Empty files, pipes and systems without mapping: read the bytes.
    std::ifstream in(path, std::ios::binary);
    if (!in) throw DrawingFileError(path + ": cannot open the file");
    std::ostringstream bytes;
    bytes << in.rdbuf();
    if (in.bad()) throw DrawingFileError(path + ": read error");
    buffer_ = std::move(bytes).str();
    data_ = buffer_.data();
    size_ = buffer_.size();
}

MappedFile::~MappedFile() {
#if defined(__unix__)
    if (mapped_) munmap(const_cast<char*>(data_), size_);
#endif
}

}  // namespace tgp::drawings
