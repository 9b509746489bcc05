#include "support/child_process.h"

#include <grp.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>

namespace neq::test {

unsigned modeOf(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) throw std::runtime_error("cannot stat " + path);
    return info.st_mode & 07777;
}

bool runInChild(const ChildSetup& setup, const std::function<bool()>& body) {
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("fork failed");
    if (child == 0) {
        if (setup.fileSizeLimit) {
            ::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{*setup.fileSizeLimit, *setup.fileSizeLimit};
            if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(3);
        }
        if (setup.unprivileged && ::geteuid() == 0) {
            if (::setgroups(0, nullptr) != 0 || ::setgid(kUnprivilegedUser) != 0 ||
                ::setuid(kUnprivilegedUser) != 0)
                ::_exit(4);
        }
        ::_exit(body() ? 0 : 1);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR) throw std::runtime_error("waitpid failed");
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 1) << "child status " << status;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool limitAddressSpace(rlim_t bytes) {
    if (kAddressSanitizer) return true;
    const rlimit limit{bytes, bytes};
    return ::setrlimit(RLIMIT_AS, &limit) == 0;
}

std::size_t addressSpaceInUse() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

void handToUnprivilegedUser(const std::string& path) {
    if (::geteuid() != 0) return;
    if (::chown(path.c_str(), kUnprivilegedUser, kUnprivilegedUser) != 0)
        throw std::runtime_error("cannot chown " + path);
}

} // namespace neq::test
