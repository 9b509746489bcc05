#include "foundation/atomic_file.h"

#include "foundation/vd_disk_server_internal.h"
#include "platform/memory_hints.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace neq::files {
namespace {

using Descriptor = diskserver::OwnedDescriptor;

// The operating system's reason for the last failed call.
bool fail(std::string& reason) {
    reason = std::strerror(errno);
    return false;
}

// One positioned read, retried when interrupted; `got` is 0 at the end of the file.
bool readSome(const RegularFile& file, std::uint64_t offset, char* out, std::size_t size,
              std::size_t& got, std::string& reason);

bool notRegular(const struct stat& info, std::string& reason) {
    if (S_ISREG(info.st_mode)) return false;
    reason = S_ISDIR(info.st_mode) ? "it is a folder, not a file" : "it is not a regular file";
    return true;
}

// Where the bytes really go: a symbolic link's final target; the path itself when it
// names no existing file yet.
std::string finalTarget(const char* path) {
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(path, nullptr), &std::free);
    return real ? std::string(real.get()) : std::string(path);
}

// The host's way, kept for folders that take no new file: truncate and write.
bool overwriteInPlace(const std::string& target, const std::function<bool(int fd)>& write,
                      mode_t mode, std::string& reason) {
    Descriptor file(::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode));
    if (file.get() < 0 || !write(file.get()) || ::fsync(file.get()) != 0 || !file.close())
        return fail(reason);
    return true;
}

// Opens the file, refuses what is not a regular file, and reads it into the memory that
// `room(size)` hands out for the size the file has; `used` is how much it held when read.
template <class Room>
bool readWhole(const char* path, Room room, std::size_t& used, std::string& reason) {
    used = 0;
    RegularFile file;
    if (!openRegularFile(path, file, reason)) return false;
    const auto size = static_cast<std::size_t>(file.size());
    char* const data = room(size);
    while (used < size) {
        std::size_t got = 0;
        if (!readSome(file, used, data + used, size - used, got, reason)) return false;
        if (got == 0) break; // it shrank meanwhile: what is there is the file
        used += got;
    }
    return true;
}

} // namespace

RegularFile::~RegularFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool openRegularFile(const char* path, RegularFile& file, std::string& reason) {
    if (file.fd_ >= 0) ::close(file.fd_);
    file.fd_ = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    file.size_ = 0;
    struct stat info {};
    if (file.fd_ < 0 || ::fstat(file.fd_, &info) != 0) return fail(reason);
    if (notRegular(info, reason)) return false;
    // A 32-bit build cannot hold a file past its address space: refuse it rather than
    // read a part of it as the whole.
    if (static_cast<unsigned long long>(info.st_size) > PTRDIFF_MAX) {
        errno = EFBIG;
        return fail(reason);
    }
    file.size_ = static_cast<std::uint64_t>(info.st_size);
    return true;
}

MappedFile::~MappedFile() {
    if (data_) ::munmap(data_, size_);
}

bool mapRegularFile(const char* path, MappedFile& file, std::string& reason) {
    if (file.data_) ::munmap(file.data_, file.size_);
    file.data_ = nullptr;
    file.size_ = 0;
    RegularFile opened;
    if (!openRegularFile(path, opened, reason)) return false;
    if (opened.size() == 0) return true; // nothing to map
    const auto size = static_cast<std::size_t>(opened.size());
#ifdef MAP_POPULATE
    const int flags = MAP_PRIVATE | MAP_POPULATE; // map every page now, not fault by fault
#else
    const int flags = MAP_PRIVATE;
#endif
    void* data = ::mmap(nullptr, size, PROT_READ, flags, opened.descriptor(), 0);
    if (data == MAP_FAILED) return fail(reason);
#ifndef MAP_POPULATE
    ::posix_madvise(data, size, POSIX_MADV_WILLNEED);
#endif
    file.data_ = static_cast<char*>(data);
    file.size_ = size;
    return true;
}

namespace {

bool readSome(const RegularFile& file, std::uint64_t offset, char* out, std::size_t size,
              std::size_t& got, std::string& reason) {
    for (;;) {
        const ssize_t read = ::pread(file.descriptor(), out, size, static_cast<off_t>(offset));
        if (read < 0 && errno == EINTR) continue;
        if (read < 0) return fail(reason);
        got = static_cast<std::size_t>(read);
        return true;
    }
}

} // namespace

mode_t newFileMode() {
    const mode_t mask = ::umask(0); // the only way to read it; the library starts no threads
    ::umask(mask);
    return 0666 & ~mask;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool readRegularFile(const char* path, std::string& bytes, std::string& reason) {
    bytes.clear();
    std::size_t used = 0;
    const bool read = readWhole(
        path,
        [&bytes](std::size_t size) {
            platform::reserveLarge(bytes, size);
            bytes.resize(size);
            return &bytes[0];
        },
        used, reason);
    bytes.resize(used);
    return read;
}

bool readRegularFile(const char* path, FileBytes& bytes, std::string& reason) {
    bytes.data_.reset();
    const bool read = readWhole(
        path,
        [&bytes](std::size_t size) {
            bytes.data_.reset(new char[size]); // left uninitialised: the read fills it
            platform::preferLargePages(bytes.data_.get(), size);
            return bytes.data_.get();
        },
        bytes.size_, reason);
    if (!read) bytes.size_ = 0;
    return read;
}

bool replaceFile(const char* path, std::string_view bytes, std::string& reason) {
    return replaceFile(
        path, [bytes](int fd) { return diskserver::writeAll(fd, bytes.data(), bytes.size()); },
        reason);
}

bool replaceFile(const char* path, const std::function<bool(int fd)>& write, std::string& reason) {
    const std::string target = finalTarget(path);
    mode_t mode = newFileMode();
    {
        // Probe without truncating: a file we may not write is left alone.
        Descriptor probe(::open(target.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
        if (probe.get() < 0 && errno != ENOENT) return fail(reason);
        struct stat info {};
        if (probe.get() >= 0) {
            if (::fstat(probe.get(), &info) != 0) return fail(reason);
            if (notRegular(info, reason)) return false;
            mode = info.st_mode & 07777;
        }
    }
    const std::string folder = folderOf(target);
    std::string temporary = folder + "/." + target.substr(target.rfind('/') + 1) + ".XXXXXX";
    Descriptor file(::mkstemp(&temporary[0]));
    if (file.get() < 0) return overwriteInPlace(target, write, mode, reason);
    if (!write(file.get()) || ::fsync(file.get()) != 0 || ::fchmod(file.get(), mode) != 0 ||
        !file.close() || ::rename(temporary.c_str(), target.c_str()) != 0) {
        fail(reason);
        ::unlink(temporary.c_str());
        return false;
    }
    // The folder is not flushed after the rename: a crash then leaves the old scene or
    // the new one, both whole, and flushing it would cost a journal commit each time.
    return true;
}

} // namespace neq::files
