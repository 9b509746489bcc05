#pragma once

// Runs the built `neqbridge` tool the way a user or pipeline script would.

#include <string>

namespace neq::test {

struct ToolRun {
    int exitCode = -1; // -1 when the tool did not exit normally
    std::string output;
    std::string errors; // standard error, when it was not asked for in `output`
};

// Runs `ENVIRONMENT neqbridge ARGUMENTS` with /bin/sh (ENVIRONMENT may be "cd FOLDER &&");
// standard error goes to `errors`, or into `output` when `withErrors`.
ToolRun runTool(const std::string& arguments, bool withErrors = false,
                const std::string& environment = "");

} // namespace neq::test
