// Talking to other applications: opening files in them, sending them events and keys,
// finding whether they run. The desktop's "open" starts an application when needed
// and brings it forward; osascript does the rest with fixed scripts.

#include "foundation/vd_disk_server.h"
#include "foundation/vd_disk_server_tools.h"
#include "platform/process_output.h"
#include "platform/process_run.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using neq::diskserver::operandPath;
using neq::diskserver::osascriptCommand;
using neq::platform::runProgram;

namespace {

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
