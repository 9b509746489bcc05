// VDDiskServer's files and folders: opening, testing, copying, listing and removing
// them, and the text of their names. Programs are launched in vd_disk_server_apps.cpp.

#include "foundation/vd_disk_server.h"
#include "foundation/file_io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

using neq::files::isDotEntry;
using neq::files::OwnedDescriptor;

// --- Opening, sizing and testing files: what every whole-file reader needs first.

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

// --- Single system calls on one path: modes, renaming, removal, the working folder.

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

// --- File-name text: folder parts and extensions. Nothing here looks at the disk.

namespace {

// ext with a leading "." (an empty ext becomes ".").
VDString dottedExtension(const VDString& ext) {
    return ext.startsWith(".") ? ext : "." + ext;
}

// The index just after the last "/" of path (0 without one), after dropping a volume
// prefix from path.
int cutAfterLastSlash(VDString& path) {
    path.set(path.getValidFilePath());
    return path.findLastCharOf("/") + 1;
}

} // namespace

bool VDDiskServer::extractPathFromFilename(VDString& path) {
    path = path.subString(0, cutAfterLastSlash(path));
    return true;
}

bool VDDiskServer::extractPathFromFilename(VDString& path, VDString& fileName) {
    const int cut = cutAfterLastSlash(path);
    fileName = path.subString(cut);
    path = path.subString(0, cut);
    return true;
}

bool VDDiskServer::removePathFromFilename(VDString& path) {
    path.set(path.getValidFilePath());
    path.cutTo(path.findLastCharOf("/\\") + 1);
    return true;
}

bool VDDiskServer::fileNameHasExtension(const VDString& name, const VDString& ext) {
    return name.endsWith(dottedExtension(ext));
}

bool VDDiskServer::makeFilenameWithExt(VDString& name, const VDString& ext) {
    const VDString dotted = dottedExtension(ext);
    if (name.endsWith(dotted)) return false;
    name += dotted;
    return true;
}

bool VDDiskServer::makeFilenameWithoutExt(VDString& name, const VDString& ext) {
    const VDString dotted = dottedExtension(ext);
    if (!name.endsWith(dotted)) return false;
    name = name.subString(0, name.length() - dotted.length());
    return true;
}

// --- Small text files read or written whole: settings and notes of at most 4096 bytes.

namespace {

constexpr std::size_t kLargestText = 4096;

} // namespace

bool VDDiskServer::readFileAsString(const VDString& path, VDString& out) {
    // A folder, FIFO or device is refused at once rather than waited on or read forever.
    std::string text, reason;
    if (neq::files::readRegularFile(path.getValidFilePath(), text, reason, kLargestText)) {
        out.create(text.data(), text.data() + text.size());
        return true;
    }
    out.clear();
    return false;
}

bool VDDiskServer::writeFileFromString(const VDString& path, const VDString& text) {
    // Created or emptied before the text is looked at: a refused text leaves an empty
    // file, as callers expect. The open itself never waits for a FIFO's reader.
    std::string reason;
    neq::files::OwnedDescriptor file(neq::files::openFile(
        path.getValidFilePath(), O_WRONLY | O_CREAT | O_TRUNC, neq::files::Kind::anyFile, reason));
    if (!file.isOpen()) return false;
    const std::size_t size = static_cast<std::size_t>(text.length());
    if (size == 0 || size > kLargestText) return false;
    return neq::files::writeAll(file.get(), text.c_str(), size) && file.close();
}

// --- Copying one regular file to another path.

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

// --- Finding files by wildcard in a folder tree.

namespace {

bool search(VDArray<VDString>& found, const VDString& filter, const char* folder, int depth,
            int stopLevels) {
    bool hit = false;
    std::vector<std::string> subFolders;
    neq::files::forEachEntry(folder, [&](const char* name, bool isFolder) {
        if (fileNameMatchFilter(VDString(name), filter)) {
            // A matching folder is a result, never searched itself.
            found.push_back(VDString(neq::files::joinPath(folder, name).c_str()));
            hit = true;
        } else if (depth > 0 && isFolder && !neq::files::isDotEntry(name)) {
            subFolders.emplace_back(name);
        }
    });
    if (hit && stopLevels >= 1) return true;
    // The folder listed last is searched first.
    for (auto sub = subFolders.rbegin(); sub != subFolders.rend(); ++sub) {
        const std::string path = neq::files::joinPath(folder, sub->c_str());
        if (search(found, filter, path.c_str(), depth - 1, stopLevels - 1)) {
            if (stopLevels > 0) return true;
            hit = true;
        }
    }
    return hit;
}

} // namespace

bool VDDiskServer::searchFileList(VDArray<VDString>& found, const VDString& filter,
                                  const VDString& folder, int depth, int stopLevels) {
    return search(found, filter, folder.getValidFilePath(), depth, stopLevels);
}

// --- Removing a folder with its entries, or the entries that match a wildcard.

namespace {

bool isExistingFolder(const char* path) {
    struct stat info {};
    return ::stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

struct Target {
    VDString folder;
    VDString filter; // empty: every entry, and the folder itself
};

// "folder/*.tmp" names the entries of folder that match; so does "folder/name" when it
// is not an existing folder. Any other path is the folder itself.
Target splitTarget(const VDString& path) {
    const int separator = path.findLastCharOf("/\\");
    if (separator >= 0) {
        const VDString last = path.subString(separator + 1);
        if (last.findFirstCharOf("*?") >= 0 || !isExistingFolder(path.c_str()))
            return {path.subString(0, separator), last};
    }
    return {path, VDString()};
}

} // namespace

bool VDDiskServer::deleteDirectory(const VDString& path, bool recursive, bool) {
    const Target target = splitTarget(VDString(path.getValidFilePath()));
    const bool everything = target.filter.isEmpty();
    std::vector<VDString> folders{target.folder};
    std::vector<VDString> doomed;
    if (everything) doomed.push_back(target.folder);
    // folders grows while it is walked.
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const VDString listed = folders[i];
        neq::files::forEachEntry(listed.c_str(), [&](const char* name, bool isFolder) {
            if (isDotEntry(name)) return;
            // Always joined to the starting folder, even for entries of sub-folders:
            // so it has always been, and recursion reaches only one level down.
            VDString entry(neq::files::joinPath(target.folder.c_str(), name).c_str());
            if (recursive && isFolder) folders.push_back(entry);
            if (everything || fileNameMatchFilter(VDString(name), target.filter))
                doomed.push_back(std::move(entry));
        });
    }
    // From the end, so that a folder's entries go before the folder.
    bool removedAll = true;
    for (auto entry = doomed.rbegin(); entry != doomed.rend(); ++entry)
        removedAll = std::remove(entry->c_str()) == 0 && removedAll;
    return !doomed.empty() && removedAll;
}

// --- Wildcard matching of file names.

bool fileNameMatchFilter(const VDString& name, const VDString& filter) {
    if (name.isEmpty() || filter.isEmpty()) return false;
    VDString upperName(name);
    VDString upperFilter(filter);
    return fileNameMatchFilterRec(upperName.toUpper().getString(),
                                  upperFilter.toUpper().getString());
}

bool fileNameMatchFilterRec(const char* name, const char* filter) {
    if (name == nullptr) name = "";
    if (filter == nullptr) filter = "";
    // The answers of the plain recursion ("*" first takes one more character, then
    // none), found in one pass: after a mismatch only the latest "*" needs to take one
    // more character, because whatever an earlier "*" could take, the latest can too.
    // Hostile filters such as "*a*a*a*a*b" cannot make it slow.
    const char* starFilter = nullptr; // just after the latest "*"
    const char* starName = nullptr;   // where the name resumes when that "*" takes more
    while (*name != '\0') {
        if (*filter == '*') {
            starFilter = ++filter;
            starName = name;
        } else if (*filter != '\0' && (*filter == '?' || *filter == *name)) {
            ++filter;
            ++name;
        } else if (starFilter != nullptr) {
            filter = starFilter;
            name = ++starName;
        } else {
            return false;
        }
    }
    while (*filter == '*')
        ++filter;
    return *filter == '\0';
}
