#include "files.h"

#include "foundation/file_io.h"

#include "command.h"

#include "meshfile/neq_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace neq::cli {
namespace {

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
    // Inputs are read whole: a FIFO or device is refused at once, never waited on.
    std::string reason;
    const int fd = files::openFile(path.c_str(), O_RDONLY, files::Kind::regularFile, reason);
    if (fd >= 0) {
        ::close(fd);
        return;
    }
    if (errno == EISDIR) throw Failure("input " + quoted(path) + " is a folder, not a file");
    throw Failure("cannot open input " + quoted(path) + ": " + reason);
}

void refuseOutputNamingAnInput(const std::string& output, const std::vector<std::string>& inputs) {
    const FileIdentity target = identityOf(output);
    for (const std::string& input : inputs)
        if (identityOf(input) == target)
            throw Failure("output " + quoted(output) + " is the input " + quoted(input) +
                          " (the same file); writing it would destroy the input");
}

std::string libraryPath(const std::string& path) {
    if (path.find(':') != std::string::npos)
        throw Failure("cannot use " + quoted(path) +
                      ": the library reads a path as the host writes it, from the text after "
                      "its first ':', so a name holding ':' would reach another file; rename it "
                      "or its folder");
    if (!path.empty() && path.front() == '/') return path;
    std::string folder(PATH_MAX, '\0');
    if (::getcwd(folder.data(), folder.size()) == nullptr)
        throw Failure("cannot use " + quoted(path) +
                      ": the working folder is unknown: " + reasonOf(errno));
    folder.resize(std::strlen(folder.c_str()));
    return (folder == "/" ? "" : folder) + "/" + path;
}

bool isFolder(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

void makeFolders(const std::string& path) {
    if (path.empty() || isFolder(path)) return;
    const std::string parent = folderOf(path);
    if (parent != path && parent != ".") makeFolders(parent);
    if (::mkdir(path.c_str(), 0777) != 0 && !(errno == EEXIST && isFolder(path))) {
        struct stat info {};
        if (::stat(path.c_str(), &info) == 0)
            throw Failure("cannot create folder " + quoted(path) +
                          ": a file of that name is "
                          "in the way");
        throw Failure("cannot create folder " + quoted(path) + ": " + reasonOf(errno));
    }
}

namespace {

const char* kindName(OutputKind kind) {
    switch (kind) {
    case OutputKind::objText:
        return "an OBJ file";
    case OutputKind::colourText:
        return "a colour text file";
    case OutputKind::neqMesh:
        return "a NeQ mesh file";
    case OutputKind::mayaScene:
        return "a Maya ASCII scene";
    case OutputKind::glbMesh:
        return "a glb file";
    case OutputKind::gltfText:
        return "a glTF file";
    case OutputKind::svgPicture:
        return "an SVG picture";
    }
    return "";
}

// Whether the first bytes of a file could begin a file of `kind`.
bool looksLike(std::string_view head, OutputKind kind) {
    if (kind == OutputKind::neqMesh) {
        const auto byte = [&head](std::size_t i) { return static_cast<std::uint8_t>(head[i]); };
        return head.size() >= meshfile::kFirstBlockOffset + 4 &&
               meshfile::recordSizeOf(
                   meshfile::assembleU32(byte(32), byte(33), byte(34), byte(35))) != 0;
    }
    if (kind == OutputKind::glbMesh) return head.rfind("glTF", 0) == 0;
    if (head.find('\0') != std::string_view::npos) return false;
    if (kind == OutputKind::gltfText) return head.front() == '{';
    if (kind == OutputKind::svgPicture) return head.front() == '<';
    if (kind == OutputKind::mayaScene) return head.rfind("//Maya ASCII", 0) == 0;
    if (kind == OutputKind::colourText) return head.front() == '#';
    return std::strchr("#vfogsmu\r\n", head.front()) != nullptr;
}

} // namespace

void refuseOutputOfAnotherKind(const std::string& output, OutputKind kind, bool force) {
    if (force || output == "-") return;
    const int fd = ::open(output.c_str(), O_RDONLY | O_NONBLOCK);
    if (fd < 0) return;
    struct stat info {};
    char head[4096];
    ssize_t got = 0;
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) got = ::read(fd, head, sizeof head);
    ::close(fd);
    if (got <= 0 || looksLike(std::string_view(head, static_cast<std::size_t>(got)), kind)) return;
    throw Failure("output " + quoted(output) + " exists and is not " + kindName(kind) +
                  "; it was left as it is (give --force to replace it)");
}

std::string followLinks(const std::string& path) {
    std::string target, reason;
    return files::followLinks(path.c_str(), target, reason) ? target : path;
}

std::string lastNameOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace neq::cli
