// Single system calls on one path: modes, renaming, removal, the working folder.

#include "foundation/vd_disk_server.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

unsigned short VDDiskServer::getMode(const VDString& path) {
    struct stat info {};
    if (::stat(path.getValidFilePath(), &info) != 0) return 0;
    return static_cast<unsigned short>(info.st_mode & 07777);
}

bool VDDiskServer::setMode(const VDString& path, unsigned short mode) {
    return ::chmod(path.getValidFilePath(), static_cast<mode_t>(mode)) == 0;
}

bool VDDiskServer::renameFile(const VDString& from, const VDString& to) {
    return std::rename(from.getValidFilePath(), to.getValidFilePath()) == 0;
}

bool VDDiskServer::deleteFile(const VDString& path) {
    return std::remove(path.getValidFilePath()) == 0;
}

bool VDDiskServer::deleteFolder(const VDString& path) {
    return deleteFile(path); // the same removal: a folder goes only when it is empty
}

bool VDDiskServer::openFolder(const VDString& path) {
    return ::chdir(path.getValidFilePath()) == 0;
}

VDString VDDiskServer::getCurrentPath() {
    // Callers have always been given what fits in 512 bytes; a deeper folder reads as
    // no folder rather than a cut one.
    char buffer[512];
    return VDString(::getcwd(buffer, sizeof buffer));
}

VDString VDDiskServer::getApplicationFolder() {
    return VDString("/Applications");
}

VDString VDDiskServer::getApplicationX86Folder(bool) {
    return getApplicationFolder();
}
