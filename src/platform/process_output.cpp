#include "platform/process_output.h"

#include <fcntl.h>
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

bool exitedCleanly(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

std::optional<std::string> runForOutput(const std::vector<std::string>& argv) {
    if (argv.empty()) return std::nullopt;
    std::vector<std::string> arguments = argv; // posix_spawnp wants mutable strings
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0) return std::nullopt;
    int readEnd = pipeEnds[0];
    int writeEnd = pipeEnds[1];
    // Neither end may leak into this child's other descendants or into programs the
    // host starts meanwhile; the child gets the write end as its standard output.
    ::fcntl(readEnd, F_SETFD, FD_CLOEXEC);
    ::fcntl(writeEnd, F_SETFD, FD_CLOEXEC);

    SpawnActions actions;
    ::posix_spawn_file_actions_adddup2(actions.get(), writeEnd, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(actions.get(), STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int spawnError =
        ::posix_spawnp(&child, pointers[0], actions.get(), nullptr, pointers.data(), NEQ_ENVIRON);
    closeDescriptor(writeEnd); // so the read below ends when the child exits
    if (spawnError != 0) {
        closeDescriptor(readEnd);
        return std::nullopt;
    }
    std::string output = readUntilEnd(readEnd);
    closeDescriptor(readEnd);
    if (!exitedCleanly(child)) return std::nullopt;
    return output;
}

} // namespace neq::platform
