#pragma once

// The modal file chooser that lets the user pick one .vws file.

#include <optional>
#include <string>
#include <vector>

namespace neq::platform {

// The command line that shows the chooser with this title: osascript on macOS,
// zenity on Linux. The first element is the program, looked up on PATH; the title
// travels as an argument of its own, never as part of a script or a shell line.
std::vector<std::string> fileChooserCommand(const std::string& title);

// Shows the chooser and waits for the user. Returns the chosen file's path, or
// nullopt when the user cancels, the chooser fails, or no chooser is installed.
std::optional<std::string> chooseFile(const std::string& title);

} // namespace neq::platform
