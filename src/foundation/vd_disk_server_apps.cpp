// VDDiskServer's dealings with other programs: launching programs, shell scripts and
// application bundles, running scripts, opening files in applications, sending them
// events and keys, finding whether they run. Programs are started directly with
// argument vectors; the desktop's "open" starts an application when needed and brings
// it forward, and osascript does the rest with fixed scripts whose arguments are never
// spliced into their source.

#include "foundation/vd_disk_server.h"
#include "platform/process.h"

#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using neq::platform::exitedCleanly;
using neq::platform::runProgram;
using neq::platform::startProgram;

namespace {

// A path given to a tool as an operand: the volume prefix dropped, and "./" put in
// front of a path that begins with "-", which the tool would take for an option.
std::string operandPath(const VDString& path) {
    const std::string valid = path.getValidFilePath();
    return valid.empty() || valid.front() != '-' ? valid : "./" + valid;
}

// "osascript -e LINE -e LINE ... ARGUMENTS": a fixed script whose run handler reads
// the arguments from its argv, so no text is ever spliced into script source. The
// first argument must not begin with "-", or osascript would read it as an option.
std::vector<std::string> osascriptCommand(std::initializer_list<const char*> scriptLines,
                                          std::vector<std::string> arguments) {
    std::vector<std::string> command{"osascript"};
    for (const char* line : scriptLines) {
        command.emplace_back("-e");
        command.emplace_back(line);
    }
    for (std::string& argument : arguments)
        command.push_back(std::move(argument));
    return command;
}

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

// Arguments: event id (decimal), application path, text. The event has the core class
// and the text, as plain text, for its direct object; it is sent without waiting for a
// reply. An application that cannot be found, or an event that cannot be sent, ends
// the script with an error.
constexpr std::initializer_list<const char*> kSendEvent = {
    "use framework \"Foundation\"",
    "use scripting additions",
    "on run argv",
    "set appBundle to current application's NSBundle's bundleWithPath:(item 2 of argv)",
    "if appBundle is missing value then error \"no application\" number 1",
    "set target to current application's NSAppleEventDescriptor's "
    "descriptorWithBundleIdentifier:(appBundle's bundleIdentifier())",
    "set anEvent to current application's NSAppleEventDescriptor's "
    "appleEventWithEventClass:1634039412 eventID:((item 1 of argv) as number) "
    "targetDescriptor:target returnID:-1 transactionID:0",
    "set directObject to (current application's NSAppleEventDescriptor's "
    "descriptorWithString:(item 3 of argv))'s coerceToDescriptorType:1413830740",
    "anEvent's setParamDescriptor:directObject forKeyword:757935405",
    "set {reply, failure} to anEvent's sendEventWithOptions:1 timeout:-1 |error|:(reference)",
    "if reply is missing value then error \"not sent\" number 1",
    "end run",
};

// Arguments: key code (decimal), then the names of the modifiers held down. The keys
// go to the frontmost application.
constexpr std::initializer_list<const char*> kSendKey = {
    "on run argv",
    "tell application \"System Events\"",
    "set held to {}",
    "repeat with modifierName in rest of argv",
    "set modifierName to modifierName as text",
    "if modifierName is \"control\" then set end of held to control down",
    "if modifierName is \"option\" then set end of held to option down",
    "if modifierName is \"shift\" then set end of held to shift down",
    "if modifierName is \"command\" then set end of held to command down",
    "end repeat",
    "key code ((item 1 of argv) as integer) using held",
    "end tell",
    "end run",
};

// Argument: the application's path. Prints the process id of the first process run
// from that bundle; ends with an error when there is none.
constexpr std::initializer_list<const char*> kFindProcess = {
    "on run argv",
    "set wanted to item 1 of argv",
    "tell application \"System Events\"",
    "repeat with candidate in application processes",
    "try",
    "set found to POSIX path of (application file of candidate)",
    "if found is wanted or found is wanted & \"/\" then return unix id of candidate",
    "end try",
    "end repeat",
    "end tell",
    "error \"not running\" number 1",
    "end run",
};

// Modifier bits in the order the keys go down.
constexpr struct {
    int bit;
    const char* name;
} kModifiers[] = {{0x02, "control"}, {0x04, "option"}, {0x01, "shift"}, {0x08, "command"}};

// Starts the application when it is not running and brings it forward.
bool bringForward(const VDString& appPath) {
    return runProgram({"open", "-a", appPath.getValidFilePath()});
}

std::optional<std::uint32_t> parseProcessId(const std::string& text) {
    std::uint32_t id = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, id);
    if (error != std::errc() || stop == text.data()) return std::nullopt;
    if (std::string_view(stop, static_cast<std::size_t>(end - stop)).find_first_not_of("\r\n") !=
        std::string_view::npos)
        return std::nullopt;
    return id;
}

} // namespace

// --- launching

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

// --- other applications

bool VDDiskServer::openFileInApplication(const VDString& appPath, const VDString& filePath) {
    return runProgram({"open", "-a", appPath.getValidFilePath(), operandPath(filePath)});
}

bool VDDiskServer::sendAppleEventToApplication(const VDString& appPath, unsigned int eventId,
                                               const VDString& text) {
    return bringForward(appPath) &&
           runProgram(osascriptCommand(
               kSendEvent, {std::to_string(eventId), operandPath(appPath), text.c_str()}));
}

bool VDDiskServer::sendKeyEventToApplication(const VDString& appPath, int keyCode, int modifiers) {
    std::vector<std::string> arguments{std::to_string(static_cast<unsigned>(keyCode) & 0xFFFFu)};
    for (const auto& modifier : kModifiers)
        if ((modifiers & modifier.bit) != 0) arguments.emplace_back(modifier.name);
    return bringForward(appPath) && runProgram(osascriptCommand(kSendKey, std::move(arguments)));
}

bool VDDiskServer::getRunningProcess(const VDString& appPath, ProcessSerialNumber& psn) {
    // The script is given the path without a trailing "/": it tries with one itself.
    std::string bundle = operandPath(appPath);
    while (bundle.size() > 1 && bundle.back() == '/')
        bundle.pop_back();
    const std::optional<std::string> output =
        neq::platform::runForOutput(osascriptCommand(kFindProcess, {bundle}));
    const std::optional<std::uint32_t> id = output ? parseProcessId(*output) : std::nullopt;
    if (!id) return false;
    psn.highLongOfPSN = 0;
    psn.lowLongOfPSN = *id;
    return true;
}
