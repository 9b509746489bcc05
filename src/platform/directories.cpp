#include "platform/directories.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <vector>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

namespace neq::platform {
namespace {

std::string executablePath() {
#ifdef __APPLE__
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size); // asks for the size it needs
    std::vector<char> raw(size + 1, '\0');
    if (_NSGetExecutablePath(raw.data(), &size) != 0) return {};
    // The loader reports the path it was started with; resolve links and "..".
    char resolved[PATH_MAX];
    return ::realpath(raw.data(), resolved) ? std::string(resolved) : std::string(raw.data());
#else
    // readlink does not say whether it truncated, so grow until the answer fits.
    for (std::size_t size = 256; size <= 1 << 20; size *= 2) {
        std::vector<char> buffer(size);
        const ssize_t length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
        if (length < 0) return {};
        if (static_cast<std::size_t>(length) < buffer.size())
            return std::string(buffer.data(), static_cast<std::size_t>(length));
    }
    return {};
#endif
}

} // namespace

bool makeDirectory(const char* path) {
    // The mode is narrowed by the process umask, as for any directory the user makes.
    return path != nullptr && ::mkdir(path, 0777) == 0;
}

std::string usersFolder() {
#ifdef __APPLE__
    return "/Users";
#else
    return "/home";
#endif
}

std::string executableDirectory() {
    const std::string path = executablePath();
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return {};
    return slash == 0 ? std::string("/") : path.substr(0, slash);
}

} // namespace neq::platform
