#include "blend/scene_file.h"

#include "foundation/file_io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <vector>

namespace neq::blend {
namespace {

// Writes every byte of the pieces, resuming after short writes.
bool writeAll(int fd, iovec* pieces, int count) {
    while (count > 0) {
        const ssize_t written = ::writev(fd, pieces, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false; // a file that takes nothing would never finish
        auto left = static_cast<std::size_t>(written);
        while (count > 0 && left >= pieces->iov_len) {
            left -= pieces->iov_len;
            ++pieces, --count;
        }
        if (count > 0) {
            pieces->iov_base = static_cast<char*>(pieces->iov_base) + left;
            pieces->iov_len -= left;
        }
    }
    return true;
}

// Gives a scene back its length from before a failed append. Best effort: when even
// this fails there is nothing left to try. A closed descriptor (-1) goes by path.
void cutBack(int fd, const char* path, off_t length) {
    const int result = fd >= 0 ? ::ftruncate(fd, length) : ::truncate(path, length);
    static_cast<void>(result);
}

} // namespace

bool readSceneTail(const char* path, char& holder) {
    std::string reason;
    const int fd = files::openFile(path, O_RDONLY, files::Kind::regularFile, reason);
    if (fd < 0) return false;
    struct stat info {};
    bool readable = ::fstat(fd, &info) == 0;
    if (readable && info.st_size > 0) {
        char last = 0;
        readable = ::pread(fd, &last, 1, info.st_size - 1) == 1;
        if (readable) holder = last;
    }
    ::close(fd);
    return readable;
}

bool appendToScene(const char* path, std::initializer_list<std::string_view> pieces) {
    std::vector<iovec> vectors;
    vectors.reserve(pieces.size());
    for (std::string_view piece : pieces)
        if (!piece.empty()) vectors.push_back({const_cast<char*>(piece.data()), piece.size()});
    // Appending, not creating: the scene was just read, and a scene that vanished in
    // between is not silently started again from these pieces alone.
    std::string reason;
    const int fd = files::openFile(path, O_WRONLY | O_APPEND, files::Kind::regularFile, reason);
    if (fd < 0) return false;
    struct stat info {};
    if (::fstat(fd, &info) != 0) {
        ::close(fd);
        return false;
    }
    // A scene cut off halfway through a target would no longer load: a failed append
    // leaves the scene as it was.
    bool written = writeAll(fd, vectors.data(), static_cast<int>(vectors.size()));
    if (!written) cutBack(fd, path, info.st_size);
    if (::close(fd) != 0 && written) {
        written = false;
        cutBack(-1, path, info.st_size);
    }
    return written;
}

} // namespace neq::blend
