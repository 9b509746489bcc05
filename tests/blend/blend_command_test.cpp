#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace neq::test {
namespace {

struct Outcome {
    int exitCode;
    std::string output; // stdout and stderr together
};

// Runs `neqbridge blend ARGS` in `dir`.
Outcome runBlend(const TempDir& dir, const std::string& args) {
    const std::string command =
        "cd '" + dir.path() + "' && '" NEQBRIDGE_CLI_PATH "' blend " + args + " 2>&1";
    Outcome outcome{-1, ""};
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return outcome;
    char chunk[4096];
    for (std::size_t got; (got = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;)
        outcome.output.append(chunk, got);
    const int status = ::pclose(pipe);
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

TEST(BlendCommand, ReportsEachStepAndTranslatesEveryFailure) {
    struct Case {
        const char* args;
        int exitCode;
        const char* message;
    };
    const Case cases[] = {
        {"Head.ma Smile.ma", 0, "with 1 target written to Head.ma"},
        {"Head.ma Smile.ma Missing.ma", 1, "cannot open target scene Missing.ma (code -1760)"},
        {"NoBase.ma Smile.ma", 1, "cannot read base scene NoBase.ma (code -2760)"},
        {"Head.ma 2nd.ma", 0, "warning: target name \"2nd\" (from 2nd.ma) is not a plain"},
        {"Head.ma", 2, "give the base scene and at least one target scene"},
    };
    for (const Case& c : cases) {
        TempDir dir;
        writeFile(dir.file("Head.ma"), "base\n");
        writeFile(dir.file("Smile.ma"), "smile\n");
        writeFile(dir.file("2nd.ma"), "second\n");
        const Outcome outcome = runBlend(dir, c.args);
        EXPECT_EQ(outcome.exitCode, c.exitCode) << c.args << "\n" << outcome.output;
        EXPECT_NE(outcome.output.find(c.message), std::string::npos) << c.args << "\n"
                                                                     << outcome.output;
    }
}

} // namespace
} // namespace neq::test
