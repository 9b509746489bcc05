// Whole-file reads and the replacing write of configuration files.

#include "foundation/vd_config_text.h"
#include "foundation/vd_disk_server.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace neq::config {
namespace {

bool writeAll(int fd, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        done += static_cast<std::size_t>(written);
    }
    return true;
}

// The write the file always had: open for writing (creating or truncating), write.
bool writeDirectly(const char* path, const std::string& bytes) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return (std::fclose(file) == 0) && written;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// A new file beside target, created with the permission bits fopen would give (the
// umask applies). -1 with errno set when the folder does not allow it.
int createTemporaryBeside(const std::string& target, std::string& temporary) {
    const std::size_t slash = target.rfind('/');
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    const std::string prefix = folderOf(target) + "/." + base + ".tmp" +
                               std::to_string(static_cast<long>(::getpid())) + "-";
    static unsigned serial = 0;
    for (int attempt = 0; attempt < 100; ++attempt) {
        temporary = prefix + std::to_string(++serial);
        const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    return -1;
}

// Where a rename must land: the file a symbolic link leads to, so the link stays.
std::string renameTarget(const char* path) {
    struct stat info {};
    if (::lstat(path, &info) != 0 || !S_ISLNK(info.st_mode)) return path;
    char resolved[PATH_MAX];
    return ::realpath(path, resolved) ? std::string(resolved) : std::string();
}

} // namespace

bool readConfigFile(const VDString& path, std::vector<char>& bytes) {
    bytes.clear();
    std::FILE* file = VDDiskServer::fileOpen(path, VDString("rb"));
    if (file == VDDiskServer::s_invalidFile) return false;
    // Only a regular file has a size to trust: a folder can report any end position.
    struct stat info {};
    const bool regular = ::fstat(::fileno(file), &info) == 0 && S_ISREG(info.st_mode);
    const long long size = regular ? VDDiskServer::fileSize(file) : 0;
    if (size > 0) {
        bytes.resize(static_cast<std::size_t>(size));
        bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    }
    std::fclose(file);
    return !bytes.empty();
}

bool replaceFileContents(const char* path, const std::string& bytes) {
    struct stat existing {};
    const bool exists = ::stat(path, &existing) == 0;
    // A file the direct write could not open stays as it is.
    if (exists && ::access(path, W_OK) != 0) return false;
    // Only a regular file is replaced; anything else (a device, a pipe) is written to.
    if (exists && !S_ISREG(existing.st_mode)) return writeDirectly(path, bytes);
    const std::string target = renameTarget(path);
    std::string temporary;
    const int fd = target.empty() ? -1 : createTemporaryBeside(target, temporary);
    if (fd < 0) return writeDirectly(path, bytes);
    // On disk before the rename, so a crash cannot leave an empty file in its place.
    bool ok = writeAll(fd, bytes) && ::fsync(fd) == 0;
    if (ok && exists) ok = ::fchmod(fd, existing.st_mode & 07777) == 0;
    ok = (::close(fd) == 0) && ok;
    if (ok) ok = ::rename(temporary.c_str(), target.c_str()) == 0;
    if (!ok) ::unlink(temporary.c_str());
    return ok;
}

} // namespace neq::config
