#include "foundation/atomic_file.h"

#include "foundation/vd_disk_server_internal.h"
#include "foundation/whole_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

namespace neq::files {
namespace {

using Descriptor = diskserver::OwnedDescriptor;

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
    diskserver::forEachEntry(folder.c_str(), [&](const char* name, bool isFolder) {
        const pid_t writer = writerOf(name, prefix);
        if (writer == 0 || ::kill(writer, 0) == 0 || errno != ESRCH) return;
        const VDString path = diskserver::joinPath(folder.c_str(), name);
        if (!isFolder) {
            ::unlink(path.c_str());
            return;
        }
        // A private folder holds the one file written under the target's own name.
        diskserver::forEachEntry(path.c_str(), [&path](const char* inner, bool) {
            if (!diskserver::isDotEntry(inner))
                ::unlink(diskserver::joinPath(path.c_str(), inner).c_str());
        });
        ::rmdir(path.c_str());
    });
}

std::string joinToFolder(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

} // namespace

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
        path, [bytes](int fd) { return diskserver::writeAll(fd, bytes.data(), bytes.size()); },
        reason, flushToDisk);
}

bool replaceFile(const char* path, const std::function<bool(int fd)>& write, std::string& reason,
                 bool flushToDisk) {
    std::string target;
    if (!followLinks(path, target, reason)) return false;
    mode_t mode = newFileMode();
    struct stat existing {};
    if (::stat(target.c_str(), &existing) == 0) {
        // Probe without truncating: a file we may not write is left alone.
        Descriptor probe(openFile(target.c_str(), O_WRONLY, Kind::regularFile, reason));
        if (!probe.isOpen()) return false;
        mode = existing.st_mode & 07777;
    } else if (errno != ENOENT) {
        return fail(reason);
    }

    std::string temporary = temporaryPattern(target);
    Descriptor file(::mkstemp(&temporary[0]));
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
