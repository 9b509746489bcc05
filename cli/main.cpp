// neqbridge: the command-line face of the library, for artists and pipeline scripts.

#include "command.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace neq::cli {
namespace {

const Command* const kCommands[] = {
    &kDemoCommand,  &kInfoCommand,   &kObjCommand,  &kColorsCommand, &kCallCommand,
    &kTilesCommand, &kGroupsCommand, &kNameCommand, &kBlendCommand,
};

void printOverview(std::FILE* stream) {
    std::fputs("usage: neqbridge COMMAND [ARGS...]\n"
               "       neqbridge COMMAND --help\n\ncommands:\n",
               stream);
    for (const Command* command : kCommands)
        std::fprintf(stream, "  %-8s %s\n", command->name, command->summary);
}

bool wantsHelp(const std::vector<std::string>& args) {
    for (const std::string& arg : args) {
        if (arg == "--") return false;
        if (arg == "--help" || arg == "-h") return true;
    }
    return false;
}

} // namespace

void printError(const std::string& message) {
    std::fprintf(stderr, "neqbridge: %s\n", message.c_str());
}

int usageError(const Command& command, const std::string& message) {
    printError(message);
    const char* newline = std::strchr(command.help, '\n');
    const int usageLength = newline ? static_cast<int>(newline - command.help)
                                    : static_cast<int>(std::strlen(command.help));
    std::fprintf(stderr, "%.*s\n(see: neqbridge %s --help)\n", usageLength, command.help,
                 command.name);
    return kExitUsage;
}

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
        return kExitOk;
    }
    const std::vector<std::string> args(argv + 2, argv + argc);
    for (const Command* command : kCommands) {
        if (name != command->name) continue;
        if (wantsHelp(args)) {
            std::fputs(command->help, stdout);
            return kExitOk;
        }
        return command->run(args);
    }
    printError("unknown command '" + name + "'");
    printOverview(stderr);
    return kExitUsage;
}
