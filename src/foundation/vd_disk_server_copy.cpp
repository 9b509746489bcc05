// Copying one regular file to another path.

#include "foundation/file_io.h"
#include "foundation/vd_disk_server.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

using neq::files::OwnedDescriptor;

namespace {

constexpr std::size_t kBlockSize = 0x100000;
constexpr mode_t kEveryoneMayWrite = 0x92; // the three write bits

// Makes a folder writable for everyone while it lives, then gives the folder back the
// mode it had. (The path is final: no volume prefix is dropped from it again.)
class TemporaryWriteAccess {
  public:
    explicit TemporaryWriteAccess(VDString folder) : folder_(std::move(folder)) {
        struct stat info {};
        if (::stat(folder_.c_str(), &info) != 0) return;
        savedMode_ = info.st_mode & 07777;
        granted_ = ::chmod(folder_.c_str(), savedMode_ | kEveryoneMayWrite) == 0;
    }
    TemporaryWriteAccess(const TemporaryWriteAccess&) = delete;
    TemporaryWriteAccess& operator=(const TemporaryWriteAccess&) = delete;
    ~TemporaryWriteAccess() {
        if (granted_) ::chmod(folder_.c_str(), savedMode_);
    }

  private:
    VDString folder_;
    mode_t savedMode_ = 0;
    bool granted_ = false;
};

// As fopen(path, "wb") would, except that a FIFO without a reader is refused rather
// than waited for.
int createDestination(const char* path) {
    std::string reason;
    return neq::files::openFile(path, O_WRONLY | O_CREAT | O_TRUNC, neq::files::Kind::anyFile,
                                reason);
}

// Copies until the source ends; false on a read error or a write that falls short.
bool copyBlocks(int from, int to) {
    std::vector<char> block(kBlockSize);
    for (;;) {
        const ssize_t got = ::read(from, block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) return true;
        if (!neq::files::writeAll(to, block.data(), static_cast<std::size_t>(got))) return false;
    }
}

bool isSameFile(const struct stat& source, const char* destination) {
    struct stat info {};
    return ::stat(destination, &info) == 0 && info.st_dev == source.st_dev &&
           info.st_ino == source.st_ino;
}

} // namespace

bool VDDiskServer::copyFile(const VDString& from, const VDString& to) {
    // Only a regular file is copied: a folder or device has no end to reach, and the
    // open never waits for a FIFO's writer.
    std::string reason;
    OwnedDescriptor source(neq::files::openFile(from.getValidFilePath(), O_RDONLY,
                                                neq::files::Kind::regularFile, reason));
    struct stat sourceInfo {};
    if (!source.isOpen() || ::fstat(source.get(), &sourceInfo) != 0) return false;
    const VDString destination(to.getValidFilePath());
    // Creating the destination would empty the source before it is read.
    if (isSameFile(sourceInfo, destination.c_str())) return false;

    // A folder that refuses new files is opened up for the copy; it gets its mode back
    // when the copy is over, also when the copy fails. The root folder is never touched.
    std::optional<TemporaryWriteAccess> access;
    int fd = createDestination(destination.c_str());
    const int lastSeparator = destination.findLastCharOf("/\\");
    if (fd < 0 && lastSeparator > 0) {
        access.emplace(destination.subString(0, lastSeparator));
        fd = createDestination(destination.c_str());
    }
    if (fd < 0) return false;
    OwnedDescriptor target(fd);
    if (copyBlocks(source.get(), target.get()) && target.close()) return true;
    target.close();
    std::remove(destination.c_str()); // while the folder still lets us
    return false;
}
