#pragma once

#include <string>
#include <vector>

namespace neq::cli {

// Runs the host's blend-scene sequence on the library: clears the shared name list,
// appends each target scene to the base scene in order, then the blend-shape
// statements. Every target is checked first, and the work is done on a copy of the
// base that replaces it only when complete: a failure (thrown as Failure) leaves the
// base as it was. Prints each step as a status line, warnings on stderr.
void assembleBlendScene(const std::string& basePath, const std::vector<std::string>& targetPaths);

} // namespace neq::cli
