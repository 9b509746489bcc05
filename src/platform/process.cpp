#include "platform/process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#ifdef __APPLE__
#include <crt_externs.h>
#define NEQ_ENVIRON (*_NSGetEnviron()) // a dynamic library cannot name environ directly
#else
extern char** environ;
#define NEQ_ENVIRON environ
#endif

namespace neq::platform {
namespace {

class SpawnActions {
  public:
    SpawnActions() { ::posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }
    posix_spawn_file_actions_t* get() { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_;
};

// The child starts with no signal blocked and with SIGPIPE at its default, whatever the
// host did to its own: a program expects to be killed by a closed pipe.
class SpawnAttributes {
  public:
    SpawnAttributes() {
        ::posix_spawnattr_init(&attributes_);
        sigset_t none;
        sigemptyset(&none);
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &pipe);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }
    posix_spawnattr_t* get() { return &attributes_; }

  private:
    posix_spawnattr_t attributes_;
};

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

pid_t startProgram(const std::vector<std::string>& argv, int outputFd) {
    if (argv.empty()) return -1;
    std::vector<std::string> arguments = argv; // posix_spawnp wants mutable strings
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    SpawnActions actions;
    ::posix_spawn_file_actions_addopen(actions.get(), STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (outputFd >= 0) {
        ::posix_spawn_file_actions_adddup2(actions.get(), outputFd, STDOUT_FILENO);
    } else {
        ::posix_spawn_file_actions_addopen(actions.get(), STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ::posix_spawn_file_actions_addopen(actions.get(), STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    SpawnAttributes attributes;
    pid_t child = 0;
    if (::posix_spawnp(&child, pointers[0], actions.get(), attributes.get(), pointers.data(),
                       NEQ_ENVIRON) != 0)
        return -1;
    return child;
}

bool exitedCleanly(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool runProgram(const std::vector<std::string>& argv) {
    const pid_t child = startProgram(argv);
    return child > 0 && exitedCleanly(child);
}

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
