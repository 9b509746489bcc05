#pragma once

// Runs the built `neqbridge` tool the way a user or pipeline script would.

#include <string>

namespace neq::test {

struct ToolRun {
    int exitCode = -1; // -1 when the tool did not exit normally
    std::string output;
};

// Runs `ENVIRONMENT neqbridge ARGUMENTS` through /bin/sh (quote arguments that need
// it), collecting standard output and, when asked, standard error too.
ToolRun runTool(const std::string& arguments, bool withErrors = false,
                const std::string& environment = "");

} // namespace neq::test
