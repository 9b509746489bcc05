#pragma once

#include <string>
#include <vector>

namespace neq::cli {

// Runs the host's blend-scene sequence on the library: clears the shared name list,
// appends each target scene to the base scene in order, then the blend-shape
// statements. Prints each step on stdout, warnings and the first failure on stderr.
// Returns kExitOk or kExitFailed.
int assembleBlendScene(const std::string& basePath, const std::vector<std::string>& targetPaths);

} // namespace neq::cli
