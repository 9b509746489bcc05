#include "foundation/whole_file.h"

#include "foundation/vd_disk_server_internal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace neq {
bool readWholeFile(const char* path, std::vector<std::uint8_t>& bytes) {
    bytes.clear();
    if (path == nullptr) return false;
    diskserver::OwnedDescriptor file(::open(path, O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) return false;
    struct stat info {};
    if (::fstat(file.get(), &info) != 0 || S_ISDIR(info.st_mode)) return false;

    // The size from fstat is only a hint (the file may change under us, or not be a
    // regular file), so the loop runs until read reports the end.
    constexpr std::size_t kMinChunk = 64 * 1024;
    const std::size_t sizeHint = S_ISREG(info.st_mode) ? static_cast<std::size_t>(info.st_size) : 0;
    bytes.resize(sizeHint + 1 > kMinChunk ? sizeHint + 1 : kMinChunk);
    std::size_t used = 0;
    for (;;) {
        if (used == bytes.size()) bytes.resize(bytes.size() * 2);
        const ssize_t got = ::read(file.get(), bytes.data() + used, bytes.size() - used);
        if (got > 0) {
            used += static_cast<std::size_t>(got);
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    bytes.resize(used);
    return true;
}

} // namespace neq
