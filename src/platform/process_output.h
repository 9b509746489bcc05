#pragma once

// Running a helper program and collecting what it prints.

#include <optional>
#include <string>
#include <vector>

namespace neq::platform {

// Runs argv[0], looked up on PATH, with exactly these arguments: no shell sees them,
// so quotes, "$(...)" and the like reach the program verbatim. Waits for it to end.
// Returns what it wrote on standard output, or nullopt when it could not be started
// or did not exit with status 0. Its standard error goes to /dev/null: the library
// never prints.
std::optional<std::string> runForOutput(const std::vector<std::string>& argv);

} // namespace neq::platform
