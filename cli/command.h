#pragma once

#include <string>
#include <vector>

namespace neq::cli {

// Exit codes of the tool.
constexpr int kExitOk = 0;
constexpr int kExitFailed = 1; // the operation ran and reported a failure
constexpr int kExitUsage = 2;  // the command line was wrong

struct Command {
    const char* name;
    const char* summary; // one line for the command list
    const char* help;    // full text for `neqbridge NAME --help`, starting with the usage line
    int (*run)(const std::vector<std::string>& args);
};

// One per subcommand, each defined in its own cmd_*.cpp.
extern const Command kDemoCommand;
extern const Command kInfoCommand;
extern const Command kObjCommand;
extern const Command kColorsCommand;
extern const Command kCallCommand;
extern const Command kTilesCommand;
extern const Command kGroupsCommand;
extern const Command kNameCommand;
extern const Command kBlendCommand;

// Prints "neqbridge: MESSAGE" on stderr.
void printError(const std::string& message);
// Prints the usage error and the command's usage line; returns kExitUsage.
int usageError(const Command& command, const std::string& message);

} // namespace neq::cli
