#include "platform/process_output.h"

#include "platform/process_run.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace neq::platform {
namespace {

void closeDescriptor(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

std::string readUntilEnd(int fd) {
    std::string text;
    char chunk[4096];
    for (;;) {
        const ssize_t got = ::read(fd, chunk, sizeof chunk);
        if (got > 0) {
            text.append(chunk, static_cast<std::size_t>(got));
        } else if (got == 0 || errno != EINTR) {
            return text;
        }
    }
}

} // namespace

std::optional<std::string> runForOutput(const std::vector<std::string>& argv) {
    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0) return std::nullopt;
    int readEnd = pipeEnds[0];
    int writeEnd = pipeEnds[1];
    // Neither end may leak into this child's other descendants or into programs the
    // host starts meanwhile; the child gets the write end as its standard output.
    ::fcntl(readEnd, F_SETFD, FD_CLOEXEC);
    ::fcntl(writeEnd, F_SETFD, FD_CLOEXEC);

    const pid_t child = startProgram(argv, writeEnd);
    closeDescriptor(writeEnd); // so the read below ends when the child exits
    if (child < 0) {
        closeDescriptor(readEnd);
        return std::nullopt;
    }
    std::string output = readUntilEnd(readEnd);
    closeDescriptor(readEnd);
    if (!exitedCleanly(child)) return std::nullopt;
    return output;
}

} // namespace neq::platform
