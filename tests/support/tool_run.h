#pragma once

// Runs the built `neqbridge` tool the way a user or pipeline script would.

#include <string>
#include <vector>

namespace neq::test {

struct ToolRun {
    int exitCode = -1; // -1 when the tool did not exit normally
    std::string output;
    std::string errors; // standard error, when it was not asked for in `output`
};

// Runs `ENVIRONMENT neqbridge ARGUMENTS` through /bin/sh (quote arguments that need
// it), collecting standard output, and standard error either in `errors` or, when
// `withErrors`, merged into `output`. ENVIRONMENT may also be a shell prefix such as
// "cd FOLDER &&".
ToolRun runTool(const std::string& arguments, bool withErrors = false,
                const std::string& environment = "");

// A command line and what it must give: its exit code and a text found in its standard
// output and error (a failing run prints "neqbridge COMMAND: MESSAGE").
struct ExpectedRun {
    std::string arguments;
    int exitCode;
    std::string message;
};

// Runs each command line (standard error included) and checks its exit code and message.
void expectRuns(const std::vector<ExpectedRun>& runs, const std::string& environment = "");

} // namespace neq::test
