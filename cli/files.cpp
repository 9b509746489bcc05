#include "files.h"

#include "command.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace neq::cli {
namespace {

constexpr int kMaxLinksFollowed = 40;

// Which file a path names. A file that exists is its device and inode; one that does
// not is the device and inode of its folder plus its name there.
struct FileIdentity {
    bool known = false;
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    std::string name; // when it does not exist

    bool operator==(const FileIdentity& other) const {
        return known && other.known && exists == other.exists && device == other.device &&
               inode == other.inode && name == other.name;
    }
};

FileIdentity identityOf(const std::string& path) {
    FileIdentity identity;
    const std::string resolved = followLinks(path);
    struct stat info {};
    if (::stat(resolved.c_str(), &info) == 0) {
        identity.known = identity.exists = true;
    } else if (::stat(folderOf(resolved).c_str(), &info) == 0) {
        identity.known = true;
        identity.name = lastNameOf(resolved);
    } else {
        return identity;
    }
    identity.device = info.st_dev;
    identity.inode = info.st_ino;
    return identity;
}

} // namespace

std::string reasonOf(int error) {
    return error != 0 ? std::strerror(error) : "reason unknown";
}

void requireInputFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY);
    if (fd < 0) throw Failure("cannot open input " + quoted(path) + ": " + reasonOf(errno));
    struct stat info {};
    const bool isFolder = ::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode);
    ::close(fd);
    if (isFolder) throw Failure("input " + quoted(path) + " is a folder, not a file");
}

void refuseOutputNamingAnInput(const std::string& output, const std::vector<std::string>& inputs) {
    const FileIdentity target = identityOf(output);
    for (const std::string& input : inputs)
        if (identityOf(input) == target)
            throw Failure("output " + quoted(output) + " is the input " + quoted(input) +
                          " (the same file); writing it would destroy the input");
}

std::string followLinks(const std::string& path) {
    std::string current = path;
    for (int hop = 0; hop < kMaxLinksFollowed; ++hop) {
        struct stat info {};
        if (::lstat(current.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) break;
        std::string target(static_cast<std::size_t>(info.st_size) + 256, '\0');
        const ssize_t length = ::readlink(current.c_str(), target.data(), target.size());
        if (length < 0) break;
        target.resize(static_cast<std::size_t>(length));
        current = target.front() == '/' ? target : folderOf(current) + "/" + target;
    }
    return current;
}

std::string lastNameOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace neq::cli
