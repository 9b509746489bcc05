#pragma once

// How a command of the `neqbridge` tool is written. Every command follows the same
// conventions, and the pieces below make them the easy path:
//
// - Declare the command as a `Command`: its usage, one paragraph, its positional
//   arguments and its own options, each with one line of help. `neqbridge NAME --help`
//   prints them in one layout; -q/--quiet and -h/--help are added to every command.
// - In `run`, call `parseArgs(kMyCommand, args)` (args.h). Options may come before or
//   after the positionals, "--" ends options, `--name=value` and `--name value` both
//   work. `requirePositionals` and `integer` reject wrong counts and numbers that are
//   not whole numbers in range.
// - A wrong command line is `throw UsageError("REASON")`: main prints
//   "neqbridge NAME: REASON" and the usage line on stderr and exits 2. Throw it before
//   anything is created or changed.
// - A failed operation is `throw Failure("cannot open input 'x': No such file or
//   directory")`: main prints "neqbridge NAME: MESSAGE" and exits 1. Name the operation,
//   the file (quoted()) and the reason in words; a library result code goes last, as
//   detail: "... (code -1760)" (codeDetail). files.h has the checks and messages for files.
// - Data (listings, values, JSON) goes to stdout; `status()` lines (what was written,
//   progress) and `warn()` go to stderr. -q silences status lines only.
// - Outputs go through `PendingOutput` (pending_output.h): a temporary file beside the
//   destination, renamed into place once complete; check first with
//   `refuseOutputNamingAnInput` (files.h) that no output is an input.
// - Register the command in main.cpp's list and declare its `extern const Command` here.

#include <stdexcept>
#include <string>
#include <vector>

namespace neq::cli {

// Exit codes of the tool.
constexpr int kExitOk = 0;
constexpr int kExitFailed = 1; // the operation ran and failed
constexpr int kExitUsage = 2;  // the command line was wrong

// A positional argument, for the help and for "missing NAME" messages.
struct Argument {
    const char* name; // "BASE", "TARGET.ma..." for one or more
    const char* help; // one line
};

// An option of one command. A flag when `valueName` is null.
struct Option {
    const char* name;      // "--level"
    const char* valueName; // "N", or nullptr for a flag
    const char* help;      // one line
};

struct Command {
    const char* name;
    const char* summary;     // one line for the command list
    const char* usage;       // what follows "usage: neqbridge NAME "
    const char* description; // one paragraph; the help wraps it at 79 columns
    std::vector<Argument> arguments;
    std::vector<Option> options; // besides -q/--quiet and -h/--help
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
extern const Command kConfigCommand;
extern const Command kAppCommand;
extern const Command kBridgeCommand;
extern const Command kMergeUvsCommand;
#ifdef NEQBRIDGE_INTERCHANGE
extern const Command kConvertCommand;
extern const Command kUvLayoutCommand;
#endif

// The command line is wrong: exit 2 with the reason and the usage line.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The operation failed: exit 1 with the message.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Prints "neqbridge NAME: MESSAGE" on stderr, NAME being the running command.
void printError(const std::string& message);
// "neqbridge NAME: warning: MESSAGE" on stderr, also when quiet.
void warn(const std::string& message);
// A status line on stderr, unless -q was given.
void status(const std::string& line);
// The same, formatted as by printf.
void statusf(const char* format, ...) __attribute__((format(printf, 1, 2)));
void setQuiet(bool quiet);
bool isQuiet();
// Set by main before the command runs: whose name messages carry.
void setRunningCommand(const Command* command);

// Prints the usage error and the command's usage line; returns kExitUsage.
int usageError(const Command& command, const std::string& message);
// The full help text of a command.
std::string helpText(const Command& command);
// "usage: neqbridge NAME USAGE"
std::string usageLine(const Command& command);

// 'path' in single quotes, as messages name files.
std::string quoted(const std::string& path);
// " (code N)": a library result code (api/result_codes.h) as the detail that ends a
// Failure's message.
std::string codeDetail(float code);

} // namespace neq::cli
