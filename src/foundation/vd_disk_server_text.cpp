// Small text files read or written whole: settings and notes of at most 4096 bytes.

#include "foundation/vd_disk_server.h"
#include "foundation/vd_disk_server_internal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using neq::diskserver::OwnedDescriptor;

namespace {

constexpr std::size_t kLargestText = 4096;

// Reads exactly size bytes; false when the file ends or fails first.
bool readExactly(int fd, char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t got = ::read(fd, bytes, size);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        bytes += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool readSmallRegularFile(const char* path, VDString& out) {
    // Opening without blocking lets a FIFO with no writer be refused instead of waited
    // for; only then does fstat tell what the path is.
    OwnedDescriptor file(::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat info {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    if (info.st_size < 0 || static_cast<std::size_t>(info.st_size) > kLargestText) return false;
    char bytes[kLargestText];
    const std::size_t size = static_cast<std::size_t>(info.st_size);
    if (!readExactly(file.get(), bytes, size)) return false;
    out.create(bytes, bytes + size);
    return true;
}

} // namespace

bool VDDiskServer::readFileAsString(const VDString& path, VDString& out) {
    if (readSmallRegularFile(path.getValidFilePath(), out)) return true;
    out.clear();
    return false;
}

bool VDDiskServer::writeFileFromString(const VDString& path, const VDString& text) {
    // Created or emptied before the text is looked at: a refused text leaves an empty
    // file, as callers expect. The open itself never waits for a FIFO's reader.
    OwnedDescriptor file(::open(path.getValidFilePath(),
                                O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0666));
    if (!file.isOpen()) return false;
    const int flags = ::fcntl(file.get(), F_GETFL);
    if (flags != -1) ::fcntl(file.get(), F_SETFL, flags & ~O_NONBLOCK);
    const std::size_t size = static_cast<std::size_t>(text.length());
    if (size == 0 || size > kLargestText) return false;
    return neq::diskserver::writeAll(file.get(), text.c_str(), size) && file.close();
}
