#pragma once

// Running a helper program and collecting what it prints.

#include <optional>
#include <string>
#include <vector>

namespace neq::platform {

// Runs argv as startProgram does (process_run.h: no shell, nothing read, standard
// error to /dev/null) and waits for it to end. Returns what it wrote on standard
// output, or nullopt when it could not be started or did not exit with status 0.
std::optional<std::string> runForOutput(const std::vector<std::string>& argv);

} // namespace neq::platform
