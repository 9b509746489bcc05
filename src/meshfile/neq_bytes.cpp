#include "meshfile/neq_bytes.h"

#include "meshfile/neq_format.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace neq::meshfile {
namespace {

class FileDescriptor {
  public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    int get() const { return fd_; }

  private:
    int fd_;
};

// Reads everything the descriptor yields. The size from fstat is only a hint (the file
// may change under us), so the loop runs until read reports the end. A read error
// ends the file where it happened, as it would end a byte-wise reader.
void readAll(int fd, std::size_t sizeHint, NeqBytes& bytes) {
    constexpr std::size_t kMinChunk = 64 * 1024;
    bytes.clear();
    bytes.resize(sizeHint + 1 > kMinChunk ? sizeHint + 1 : kMinChunk);
    std::size_t used = 0;
    for (;;) {
        if (used == bytes.size()) bytes.resize(bytes.size() * 2);
        const ssize_t got = ::read(fd, bytes.data() + used, bytes.size() - used);
        if (got > 0) {
            used += static_cast<std::size_t>(got);
        } else if (got == 0) {
            break;
        } else if (errno != EINTR) {
            break;
        }
    }
    bytes.resize(used);
}

} // namespace

bool loadNeqFile(const char* path, NeqBytes& bytes) {
    bytes.clear();
    if (path == nullptr) return false;
    FileDescriptor file(::open(path, O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) return false;
    struct stat info {};
    if (::fstat(file.get(), &info) != 0 || S_ISDIR(info.st_mode)) return false;
    const std::size_t sizeHint = S_ISREG(info.st_mode) ? static_cast<std::size_t>(info.st_size) : 0;
    readAll(file.get(), sizeHint, bytes);
    // The byte-wise readers this format grew up with appended their holder once more
    // on the failing read at end of file; every offset and size check assumes that byte.
    const std::uint8_t repeated = bytes.empty() ? 0 : bytes.back();
    bytes.push_back(repeated);
    return true;
}

std::optional<std::uint64_t> findBlock(const NeqView& file, std::uint32_t wantedTag) {
    std::uint64_t position = kFileHeaderSize;
    for (;;) {
        const std::optional<std::uint32_t> tag = file.u32(position);
        if (!tag) return std::nullopt;
        if (*tag == wantedTag) return position;
        const std::optional<std::uint32_t> length = file.u32(position + kBlockLengthOffset);
        if (!length) return std::nullopt;
        position += *length == 0 ? kBlockHeaderSize : *length;
    }
}

} // namespace neq::meshfile
