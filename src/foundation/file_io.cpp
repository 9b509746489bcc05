#include "foundation/file_io.h"

#include "platform/system_hints.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>

namespace neq::files {
namespace {

bool isFolderEntry(const char* folder, const dirent& entry) {
#ifdef DT_DIR
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
#endif
    // Some file systems do not tell the type while listing.
    struct stat info {};
    const std::string path = joinPath(folder, entry.d_name);
    return ::lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

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
    OwnedDescriptor file(openFile(path, O_RDONLY, Kind::regularFile, reason));
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
    OwnedDescriptor file(openWhole(path, largest, size, reason));
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

// The most links followed before a chain counts as a loop, as Linux counts.
constexpr int kMostLinks = 40;
// ".tmp-" + up to 10 digits of a process id + "-XXXXXX" after the name.
constexpr std::string_view kTemporaryMark = ".tmp-";
constexpr std::size_t kTemporaryTail = kTemporaryMark.size() + 10 + 7;

// The operating system's reason for the last failed call.
bool fail(std::string& reason) {
    reason = std::strerror(errno);
    return false;
}

// The start of every temporary name of the file `name`: "." + the name, cut on a
// character boundary so that the longest temporary name still fits a folder entry,
// + ".tmp-".
std::string temporaryPrefix(const std::string& name) {
    std::size_t keep = NAME_MAX - 1 - kTemporaryTail;
    if (name.size() > keep) {
        // Never cut a UTF-8 sequence: some file systems accept only valid names.
        while (keep > 0 && (static_cast<unsigned char>(name[keep]) & 0xC0) == 0x80)
            --keep;
    } else {
        keep = name.size();
    }
    return "." + name.substr(0, keep) + std::string(kTemporaryMark);
}

// The writer's process id in a temporary name that starts with `prefix`, or 0 when
// the name is not one of those temporaries.
pid_t writerOf(std::string_view name, const std::string& prefix) {
    if (name.size() < prefix.size() + 8 || name.compare(0, prefix.size(), prefix) != 0) return 0;
    const std::string_view digits = name.substr(prefix.size(), name.size() - prefix.size() - 7);
    if (name[name.size() - 7] != '-' || digits.empty() || digits.size() > 10) return 0;
    long long pid = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9') return 0;
        pid = pid * 10 + (c - '0');
    }
    return pid > 0 && pid <= INT_MAX ? static_cast<pid_t>(pid) : 0;
}

// A process killed while writing leaves its temporary file behind, and nothing else
// would ever remove it. Those of this target whose writer no longer runs go now; a
// writer that runs (or that we may not signal, which also means it runs) keeps its own.
void removeDeadTemporaries(const std::string& folder, const std::string& prefix) {
    forEachEntry(folder.c_str(), [&](const char* name, bool isFolder) {
        const pid_t writer = writerOf(name, prefix);
        if (writer == 0 || ::kill(writer, 0) == 0 || errno != ESRCH) return;
        const std::string path = joinPath(folder.c_str(), name);
        if (!isFolder) {
            ::unlink(path.c_str());
            return;
        }
        // A private folder holds the one file written under the target's own name.
        forEachEntry(path.c_str(), [&path](const char* inner, bool) {
            if (!isDotEntry(inner)) ::unlink(joinPath(path.c_str(), inner).c_str());
        });
        ::rmdir(path.c_str());
    });
}

std::string joinToFolder(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

} // namespace

bool forEachEntry(const char* folder,
                  const std::function<void(const char* name, bool isFolder)>& visit) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(folder), &::closedir);
    if (!stream) return false;
    while (const dirent* entry = ::readdir(stream.get()))
        visit(entry->d_name, isFolderEntry(folder, *entry));
    return true;
}

bool isDotEntry(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

std::string joinPath(const char* folder, const char* name) {
    std::string path(folder);
    path += '/';
    path += name;
    return path;
}

bool OwnedDescriptor::close() {
    if (fd_ < 0) return true;
    const int result = ::close(fd_);
    fd_ = -1;
    // An interrupted close has still released the descriptor; its data may be lost,
    // which is reported like any other failure.
    return result == 0;
}

bool writeAll(int fd, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(fd, bytes, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

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
    OwnedDescriptor file(::open(path, flags | O_NONBLOCK | O_CLOEXEC, mode));
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
    OwnedDescriptor file(openFile(path, flags, reads ? Kind::regularFile : Kind::anyFile, reason));
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

bool followLinks(const char* path, std::string& target, std::string& reason) {
    target = path;
    for (int links = 0;; ++links) {
        struct stat info {};
        // Not there (created there), or not reachable: whoever opens it says why.
        if (::lstat(target.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return true;
        if (links == kMostLinks) {
            errno = ELOOP;
            return fail(reason);
        }
        std::string next(PATH_MAX, '\0');
        const ssize_t length = ::readlink(target.c_str(), &next[0], next.size());
        if (length < 0) return fail(reason);
        next.resize(static_cast<std::size_t>(length));
        const bool relative = next.empty() || next[0] != '/';
        target = relative && target.find('/') != std::string::npos
                     ? joinToFolder(folderOf(target), next)
                     : next;
    }
}

std::string temporaryPattern(const std::string& target) {
    const std::string folder = folderOf(target);
    const std::string prefix = temporaryPrefix(target.substr(target.rfind('/') + 1));
    removeDeadTemporaries(folder, prefix);
    return joinToFolder(folder, prefix + std::to_string(::getpid()) + "-XXXXXX");
}

bool replaceFile(const char* path, std::string_view bytes, std::string& reason, bool flushToDisk) {
    return replaceFile(
        path, [bytes](int fd) { return writeAll(fd, bytes.data(), bytes.size()); }, reason,
        flushToDisk);
}

bool replaceFile(const char* path, const std::function<bool(int fd)>& write, std::string& reason,
                 bool flushToDisk) {
    std::string target;
    if (!followLinks(path, target, reason)) return false;
    mode_t mode = newFileMode();
    struct stat existing {};
    if (::stat(target.c_str(), &existing) == 0) {
        // Probe without truncating: a file we may not write is left alone.
        OwnedDescriptor probe(openFile(target.c_str(), O_WRONLY, Kind::regularFile, reason));
        if (!probe.isOpen()) return false;
        mode = existing.st_mode & 07777;
    } else if (errno != ENOENT) {
        return fail(reason);
    }

    std::string temporary = temporaryPattern(target);
    OwnedDescriptor file(::mkstemp(&temporary[0]));
    if (!file.isOpen()) return fail(reason);
    ::fcntl(file.get(), F_SETFD, FD_CLOEXEC);
    if (!write(file.get()) || (flushToDisk && ::fsync(file.get()) != 0) ||
        ::fchmod(file.get(), mode) != 0 || !file.close() ||
        ::rename(temporary.c_str(), target.c_str()) != 0) {
        fail(reason);
        ::unlink(temporary.c_str());
        return false;
    }
    // The folder is not flushed after the rename: a crash then leaves the old scene or
    // the new one, both whole, and flushing it would cost a journal commit each time.
    return true;
}

} // namespace neq::files

namespace neq {

bool readWholeFile(const char* path, std::vector<std::uint8_t>& bytes) {
    std::string reason;
    return files::readRegularFile(path, bytes, reason);
}

} // namespace neq
