#pragma once

// The fuzz input as a file that readers open by path, and scratch paths under $TMPDIR
// (scripts/fuzz points it into the build folder).

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace neq::fuzz {

// TMPDIR/NAME.PID.SUFFIX: one per target process.
inline std::string scratchPath(const char* name, const char* suffix) {
    const char* dir = std::getenv("TMPDIR");
    return std::string(dir && *dir ? dir : "/tmp") + "/" + name + "." + std::to_string(::getpid()) +
           suffix;
}

// libFuzzer ends with _Exit, so the input file is unlinked as soon as it is created and
// reached through /proc/self/fd (Linux).
class InputFile {
  public:
    explicit InputFile(const std::string& path) {
        fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd_ < 0) {
            std::perror(path.c_str());
            std::abort();
        }
        ::unlink(path.c_str());
        path_ = "/proc/self/fd/" + std::to_string(fd_);
    }

    const char* path() const { return path_.c_str(); }

    // Rewrites the input in place: truncating a file to zero before every write can
    // cost milliseconds on journaling file systems, which would starve the fuzzer.
    bool write(const std::uint8_t* data, std::size_t size) const {
        const auto length = static_cast<ssize_t>(size);
        return ::pwrite(fd_, data, size, 0) == length && ::ftruncate(fd_, length) == 0;
    }

  private:
    int fd_ = -1;
    std::string path_;
};

} // namespace neq::fuzz
