#include "platform/file_chooser.h"

#include "platform/process.h"

namespace neq::platform {

std::vector<std::string> fileChooserCommand(const std::string& title) {
#ifdef __APPLE__
    // The file types and the prompt arrive as the run handler's arguments. The types
    // come first so that a title starting with "-" is never taken for an option.
    return {"osascript",
            "-e",
            "on run argv",
            "-e",
            "return POSIX path of (choose file with prompt (item 3 of argv) of type "
            "{item 1 of argv, item 2 of argv})",
            "-e",
            "end run",
            "vws",
            "VWS",
            title};
#else
    return {"zenity", "--file-selection", "--title=" + title, "--file-filter=*.vws *.VWS"};
#endif
}

std::optional<std::string> chooseFile(const std::string& title) {
    // Cancelling makes both choosers exit with a non-zero status.
    std::optional<std::string> output = runForOutput(fileChooserCommand(title));
    if (!output) return std::nullopt;
    if (!output->empty() && output->back() == '\n') output->pop_back();
    if (output->empty()) return std::nullopt; // confirmed, yet no path came back
    return output;
}

} // namespace neq::platform
