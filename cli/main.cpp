// neqbridge: the command-line face of the library, for artists and pipeline scripts.

#include "command.h"
#include "files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

// NEQBRIDGE_TOOL_VERSION comes from the project version in CMakeLists.txt.

// The host entry that reports the library's version.
extern "C" float Version(char*, double, char*);

namespace neq::cli {
namespace {

// The commands, in the order the overview lists them.
const Command* const kCommands[] = {
    &kDemoCommand,    &kInfoCommand,     &kObjCommand,    &kColorsCommand,   &kTilesCommand,
    &kGroupsCommand,  &kNameCommand,     &kBlendCommand,  &kMergeUvsCommand, &kCallCommand,
    &kConfigCommand,  &kAppCommand,      &kBridgeCommand,
#ifdef NEQBRIDGE_INTERCHANGE
    &kConvertCommand, &kUvLayoutCommand,
#endif
};

const char kToolUsage[] = "usage: neqbridge COMMAND [ARGS...]";

void printOverview(std::FILE* stream) {
    std::fprintf(stream,
                 "%s\n       neqbridge COMMAND --help\n       neqbridge --version\n\n"
                 "Runs the operations of the neqbridge library from a shell. Data goes to\n"
                 "standard output, status lines and messages to standard error (-q silences\n"
                 "status lines). Exit status: 0 done, 1 the operation failed, 2 wrong\n"
                 "command line.\n\n",
                 kToolUsage);
    int width = 0;
    for (const Command* command : kCommands)
        width = std::max(width, static_cast<int>(std::strlen(command->name)));
    for (const Command* command : kCommands)
        std::fprintf(stream, "  %-*s  %s\n", width, command->name, command->summary);
}

void printVersion() {
    std::printf("neqbridge %s (library %g)\n", NEQBRIDGE_TOOL_VERSION,
                static_cast<double>(Version(nullptr, 0.0, nullptr)));
}

bool wantsHelp(const std::vector<std::string>& args) {
    for (const std::string& arg : args) {
        if (arg == "--") return false;
        if (arg == "--help" || arg == "-h") return true;
    }
    return false;
}

int toolUsageError(const std::string& reason) {
    std::fprintf(stderr, "neqbridge: %s\n%s\n", reason.c_str(), kToolUsage);
    return kExitUsage;
}

// Data that cannot reach stdout (a full disk, a closed pipe) is a failure too.
int finishStdout(int exitCode) {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return exitCode;
    printError("cannot write to standard output: " + reasonOf(errno));
    return kExitFailed;
}

int runCommand(const Command& command, const std::vector<std::string>& args) {
    setRunningCommand(&command);
    if (wantsHelp(args)) {
        std::fputs(helpText(command).c_str(), stdout);
        return kExitOk;
    }
    try {
        return command.run(args);
    } catch (const UsageError& error) {
        return usageError(command, error.what());
    } catch (const Failure& error) {
        printError(error.what());
    } catch (const std::bad_alloc&) {
        printError("out of memory");
    }
    return kExitFailed;
}

} // namespace
} // namespace neq::cli

int main(int argc, char** argv) {
    using namespace neq::cli;
    if (argc < 2) {
        printOverview(stderr);
        return kExitUsage;
    }
    const std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        printOverview(stdout);
        return finishStdout(kExitOk);
    }
    if (name == "--version") {
        printVersion();
        return finishStdout(kExitOk);
    }
    if (name.size() > 1 && name[0] == '-') return toolUsageError("unknown option " + quoted(name));
    const std::vector<std::string> args(argv + 2, argv + argc);
    for (const Command* command : kCommands)
        if (name == command->name) return finishStdout(runCommand(*command, args));
    return toolUsageError("unknown command " + quoted(name));
}
