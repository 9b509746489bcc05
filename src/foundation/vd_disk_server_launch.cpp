// Launching programs, shell scripts and application bundles, and running scripts.

#include "foundation/vd_disk_server.h"
#include "foundation/vd_disk_server_tools.h"
#include "platform/process_run.h"

using neq::diskserver::operandPath;
using neq::diskserver::osascriptCommand;
using neq::platform::exitedCleanly;
using neq::platform::runProgram;
using neq::platform::startProgram;

namespace {

enum class LaunchKind { ShellScript, ApplicationBundle, Program };

LaunchKind launchKind(const VDString& path) {
    const VDString valid(path.getValidFilePath());
    if (valid.endsWith(".sh", true)) return LaunchKind::ShellScript;
    if (valid.endsWith(".app", true)) return LaunchKind::ApplicationBundle;
    return LaunchKind::Program;
}

// Builds the shell line from the quoted path and argument and runs it as root after
// asking for the password. The first argument names the form, which also keeps a path
// beginning with "-" from reading as an osascript option.
constexpr std::initializer_list<const char*> kAsAdministrator = {
    "on run argv",
    "set command to quoted form of item 2 of argv",
    "if (count of argv) > 2 then set command to command & \" \" & quoted form of item 3 of "
    "argv",
    "if item 1 of argv is \"sh\" then set command to \"sh \" & command",
    "if item 1 of argv is \"open\" then set command to \"open -a \" & command",
    "do shell script command with administrator privileges",
    "end run",
};

// The argument vector that starts `path` with `args`, by the kind of path.
std::vector<std::string> launchCommand(const VDString& path, const std::vector<std::string>& args) {
    std::vector<std::string> command;
    switch (launchKind(path)) {
    case LaunchKind::ShellScript:
        command = {"sh", operandPath(path)};
        break;
    case LaunchKind::ApplicationBundle:
        command = {"open", "-a", path.getValidFilePath()};
        if (!args.empty()) command.emplace_back("--args");
        break;
    case LaunchKind::Program:
        command = {path.getValidFilePath()};
        break;
    }
    command.insert(command.end(), args.begin(), args.end());
    return command;
}

} // namespace

bool VDDiskServer::launchApplication(const VDString& path, const VDString& args) {
    std::vector<std::string> one; // one argument, as given
    if (!args.isEmpty()) one.emplace_back(args.c_str());
    return runProgram(launchCommand(path, one));
}

bool VDDiskServer::launchApplication(const VDString& path, const std::vector<std::string>& args,
                                     bool wait) {
    const pid_t child = startProgram(launchCommand(path, args));
    if (child <= 0) return false;
    return !wait || exitedCleanly(child);
}

bool VDDiskServer::launchApplicationAsAdmin(const VDString& path, const VDString& args) {
    std::vector<std::string> arguments;
    switch (launchKind(path)) {
    case LaunchKind::ShellScript:
        arguments = {"sh", operandPath(path)};
        break;
    case LaunchKind::ApplicationBundle:
        arguments = {"open", operandPath(path)};
        break;
    case LaunchKind::Program:
        arguments = {"run", path.getValidFilePath()};
        break;
    }
    if (!args.isEmpty()) arguments.emplace_back(args.c_str());
    return runProgram(osascriptCommand(kAsAdministrator, std::move(arguments)));
}

bool VDDiskServer::runAppleScript(const VDString& script) {
    // Whether the script worked has never been reported.
    runProgram({"osascript", "-e", script.c_str()});
    return true;
}
