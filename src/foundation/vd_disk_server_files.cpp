// Opening, sizing and testing files: what every whole-file reader needs first.

#include "foundation/file_io.h"
#include "foundation/vd_disk_server.h"

#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

bool statPath(const VDString& path, struct stat& info) {
    return ::stat(path.getValidFilePath(), &info) == 0;
}

} // namespace

std::FILE* const VDDiskServer::s_invalidFile = nullptr;

// Opened without waiting on a FIFO, and for reading only a regular file: a device such
// as /dev/zero would have every read of a binary or configuration file "succeed".
std::FILE* VDDiskServer::fileOpen(const VDString& path, const VDString& mode) {
    std::string reason;
    return neq::files::openStream(path.getValidFilePath(), mode.c_str(), reason);
}

long long VDDiskServer::fileSize(std::FILE* file) {
    if (file == nullptr) return 0;
    const off_t position = ::ftello(file);
    if (position < 0 || ::fseeko(file, 0, SEEK_END) != 0) return 0;
    const off_t size = ::ftello(file);
    ::fseeko(file, position, SEEK_SET);
    return size < 0 ? 0 : static_cast<long long>(size);
}

bool VDDiskServer::fileExists(const VDString& path) {
    struct stat info {};
    return statPath(path, info) && !S_ISDIR(info.st_mode);
}

bool VDDiskServer::folderExists(const VDString& path) {
    struct stat info {};
    return statPath(path, info) && S_ISDIR(info.st_mode);
}
