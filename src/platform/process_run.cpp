#include "platform/process_run.h"

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

} // namespace neq::platform
