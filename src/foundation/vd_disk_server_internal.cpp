#include "foundation/vd_disk_server_internal.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>

namespace neq::diskserver {
namespace {

bool isFolderEntry(const char* folder, const dirent& entry) {
#ifdef DT_DIR
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
#endif
    // Some file systems do not tell the type while listing.
    struct stat info {};
    const VDString path = joinPath(folder, entry.d_name);
    return ::lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
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

VDString joinPath(const char* folder, const char* name) {
    std::string path(folder);
    path += '/';
    path += name;
    return VDString(path.c_str());
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

} // namespace neq::diskserver
