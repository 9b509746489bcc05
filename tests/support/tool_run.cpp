#include "support/tool_run.h"

#include "support/temp_dir.h"

#include <sys/wait.h>

#include <cstdio>

namespace neq::test {

ToolRun runTool(const std::string& arguments, bool withErrors, const std::string& environment) {
    const TempDir errorsDir;
    const std::string errorsPath = errorsDir.file("stderr");
    const std::string command = environment + " " + NEQBRIDGE_CLI_PATH + " " + arguments +
                                (withErrors ? " 2>&1" : " 2>'" + errorsPath + "'");
    ToolRun run;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    char chunk[4096];
    while (const std::size_t got = std::fread(chunk, 1, sizeof chunk, pipe))
        run.output.append(chunk, got);
    const int status = ::pclose(pipe);
    if (WIFEXITED(status)) run.exitCode = WEXITSTATUS(status);
    if (!withErrors) run.errors = readFile(errorsPath);
    return run;
}

} // namespace neq::test
