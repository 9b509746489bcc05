#pragma once

// Starting helper programs directly, with argument vectors: no shell ever sees a path
// or an argument, so quotes, "$(...)", backticks and the like reach the program
// verbatim and run nothing else. Also running one and collecting what it prints.

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace neq::platform {

// Starts argv[0], looked up on PATH (used as it is when it holds a "/"), with exactly
// these arguments. Its standard input and error are /dev/null, and its standard output
// is outputFd, or /dev/null when that is -1: the library never prints. Returns the
// child's process id, or -1 when it could not be started.
pid_t startProgram(const std::vector<std::string>& argv, int outputFd = -1);

// Waits for the child to end; true when it exited with status 0.
bool exitedCleanly(pid_t child);

// Starts argv and waits for it: true when it exited with status 0, false also when it
// could not be started (for example because it is not installed).
bool runProgram(const std::vector<std::string>& argv);

// Runs argv as startProgram does (no shell, nothing read, standard error to
// /dev/null) and waits for it to end. Returns what it wrote on standard output, or
// nullopt when it could not be started or did not exit with status 0.
std::optional<std::string> runForOutput(const std::vector<std::string>& argv);

} // namespace neq::platform
