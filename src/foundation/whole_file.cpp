#include "foundation/whole_file.h"

#include "foundation/vd_disk_server_internal.h"
#include "platform/memory_hints.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace neq::files {
namespace {

using Descriptor = diskserver::OwnedDescriptor;

// True, with the reason, when what `info` describes may not be opened as `kind`.
bool refused(const struct stat& info, Kind kind, std::string& reason) {
    if (S_ISDIR(info.st_mode)) {
        reason = "it is a folder, not a file";
        errno = EISDIR;
        return true;
    }
    if (kind == Kind::regularFile && !S_ISREG(info.st_mode)) {
        reason = "it is not a regular file";
        errno = EINVAL;
        return true;
    }
    return false;
}

// Opens a regular file to be taken whole and gives its size; -1 with the reason for
// what is not a regular file or is larger than `largest`.
int openWhole(const char* path, std::size_t largest, std::size_t& size, std::string& reason) {
    Descriptor file(openFile(path, O_RDONLY, Kind::regularFile, reason));
    struct stat info {};
    if (!file.isOpen()) return -1;
    if (::fstat(file.get(), &info) != 0) {
        reason = std::strerror(errno);
        return -1;
    }
    // A 32-bit build cannot hold a file past its address space: refuse it rather than
    // read a part of it as the whole.
    const auto bytes = static_cast<unsigned long long>(info.st_size);
    if (bytes > PTRDIFF_MAX || bytes > largest) {
        reason = std::strerror(EFBIG);
        return -1;
    }
    size = static_cast<std::size_t>(bytes);
    return file.release();
}

// Opens the file, refuses what is not a regular file or is larger than `largest`, and
// reads it into the memory that `room(size)` hands out for the size the file has; `used`
// is how much it held when read.
template <class Room>
bool readWhole(const char* path, std::size_t largest, Room room, std::size_t& used,
               std::string& reason) {
    used = 0;
    std::size_t size = 0;
    Descriptor file(openWhole(path, largest, size, reason));
    if (!file.isOpen()) return false;
    char* const data = room(size);
    while (used < size) {
        const ssize_t got = ::read(file.get(), data + used, size - used);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            reason = std::strerror(errno);
            return false;
        }
        if (got == 0) break; // it shrank meanwhile: what is there is the file
        used += static_cast<std::size_t>(got);
    }
    return true;
}

// Into any byte container with resize and data.
template <class Bytes>
bool readInto(const char* path, Bytes& bytes, std::string& reason, std::size_t largest) {
    bytes.clear();
    std::size_t used = 0;
    const bool read = readWhole(
        path, largest,
        [&bytes](std::size_t size) {
            platform::reserveLarge(bytes, size);
            bytes.resize(size);
            return reinterpret_cast<char*>(bytes.data());
        },
        used, reason);
    bytes.resize(used);
    return read;
}

} // namespace

int openFile(const char* path, int flags, Kind kind, std::string& reason, mode_t mode) {
    struct stat info {};
    if (path == nullptr) {
        errno = EFAULT;
        reason = std::strerror(errno);
        return -1;
    }
    // Looked at before opening too: opening some devices has effects of its own.
    if (kind == Kind::regularFile && ::stat(path, &info) == 0 && refused(info, kind, reason))
        return -1;
    // Without O_NONBLOCK, opening a FIFO waits until its other end is opened: forever,
    // when nobody will.
    Descriptor file(::open(path, flags | O_NONBLOCK | O_CLOEXEC, mode));
    if (!file.isOpen()) {
        const int error = errno;
        if (error == EISDIR)
            reason = "it is a folder, not a file";
        else if (error == ENXIO && ::stat(path, &info) == 0 && !S_ISREG(info.st_mode))
            reason = "it is a FIFO or socket that nobody reads";
        else
            reason = std::strerror(error);
        errno = error;
        return -1;
    }
    if (::fstat(file.get(), &info) != 0) {
        reason = std::strerror(errno);
        return -1;
    }
    if (refused(info, kind, reason)) return -1;
    const int status = ::fcntl(file.get(), F_GETFL);
    if (status != -1) ::fcntl(file.get(), F_SETFL, status & ~O_NONBLOCK);
    return file.release();
}

std::FILE* openStream(const char* path, const char* mode, std::string& reason) {
    int flags = 0;
    switch (mode ? mode[0] : '\0') {
    case 'r':
        flags = O_RDONLY;
        break;
    case 'w':
        flags = O_WRONLY | O_CREAT | O_TRUNC;
        break;
    case 'a':
        flags = O_WRONLY | O_CREAT | O_APPEND;
        break;
    default:
        errno = EINVAL;
        reason = std::strerror(errno);
        return nullptr;
    }
    const bool update = std::strchr(mode, '+') != nullptr;
    if (update) flags = (flags & ~O_WRONLY) | O_RDWR;
    if (std::strchr(mode, 'x') != nullptr) flags |= O_EXCL;
    const bool reads = mode[0] == 'r' || update;
    Descriptor file(openFile(path, flags, reads ? Kind::regularFile : Kind::anyFile, reason));
    std::FILE* stream = file.isOpen() ? ::fdopen(file.get(), mode) : nullptr;
    if (stream != nullptr) {
        file.release();
    } else if (file.isOpen()) {
        reason = std::strerror(errno);
    }
    return stream;
}

bool readRegularFile(const char* path, std::string& bytes, std::string& reason,
                     std::size_t largest) {
    return readInto(path, bytes, reason, largest);
}

bool readRegularFile(const char* path, std::vector<std::uint8_t>& bytes, std::string& reason) {
    return readInto(path, bytes, reason, SIZE_MAX);
}

bool readRegularFile(const char* path, FileBytes& bytes, std::string& reason) {
    bytes.data_.reset();
    const bool read = readWhole(
        path, SIZE_MAX,
        [&bytes](std::size_t size) {
            bytes.data_.reset(new char[size]); // left uninitialised: the read fills it
            platform::preferLargePages(bytes.data_.get(), size);
            return bytes.data_.get();
        },
        bytes.size_, reason);
    if (!read) bytes.size_ = 0;
    return read;
}

RegularFile::~RegularFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool RegularFile::open(const char* path, std::string& reason) {
    if (fd_ >= 0) ::close(fd_);
    std::size_t size = 0;
    fd_ = openWhole(path, SIZE_MAX, size, reason);
    size_ = fd_ >= 0 ? size : 0;
    return fd_ >= 0;
}

bool RegularFile::readAt(std::uint64_t offset, void* out, std::size_t size) const {
    auto* into = static_cast<char*>(out);
    while (size > 0) {
        const ssize_t got = ::pread(fd_, into, size, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) {
            errno = EIO; // it has become shorter since it was opened
            return false;
        }
        into += got;
        offset += static_cast<std::uint64_t>(got);
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace neq::files

namespace neq {

bool readWholeFile(const char* path, std::vector<std::uint8_t>& bytes) {
    std::string reason;
    return files::readRegularFile(path, bytes, reason);
}

} // namespace neq
