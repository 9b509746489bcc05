#include "platform/process.h"

#include "support/process_env.h"
#include "support/temp_dir.h"

#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace neq::platform {
namespace {

// Runs body with this process's standard input reading a pipe that holds a line.
template <class Body> void withInputWaiting(Body body) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ASSERT_EQ(::write(ends[1], "line\n", 5), 5);
    const int saved = ::dup(STDIN_FILENO);
    ::dup2(ends[0], STDIN_FILENO);
    body();
    ::dup2(saved, STDIN_FILENO);
    for (int fd : {saved, ends[0], ends[1]})
        ::close(fd);
}

TEST(ProcessRun, TheChildGetsNoInputAndDefaultSignals) {
    test::TempDir dir;
    const std::string reader = dir.file("reader");
    test::writeShellScript(reader, "if read line; then exit 1; fi\n");
    withInputWaiting([&] { EXPECT_TRUE(runProgram({reader})) << "the host's input leaked"; });

    // Signals the host blocks or ignores are the child's to receive.
    const std::string signalled = dir.file("signalled");
    test::writeShellScript(signalled, "kill -$1 $$\nexit 0\n");
    sigset_t usr1, before;
    sigemptyset(&usr1);
    sigaddset(&usr1, SIGUSR1);
    ASSERT_EQ(::sigprocmask(SIG_BLOCK, &usr1, &before), 0);
    const auto oldPipe = ::signal(SIGPIPE, SIG_IGN);
    EXPECT_FALSE(runProgram({signalled, "USR1"}));
    EXPECT_FALSE(runProgram({signalled, "PIPE"}));
    ::signal(SIGPIPE, oldPipe);
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
}

} // namespace
} // namespace neq::platform
