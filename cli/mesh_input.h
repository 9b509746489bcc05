#pragma once

// Reading and writing whole meshes for the conversion commands, with the tool's messages.

#include "interchange/mesh.h"

#include <string>

namespace neq::cli {

// The mesh in `path`, in the format its extension names. Fails (throws Failure) with
// "cannot open input 'x': REASON" or "cannot read input 'x': line 12: REASON".
interchange::Mesh readMeshOrFail(const std::string& path,
                                 interchange::ReadReport* report = nullptr);

// A usage error unless the extension of `path` names a mesh format.
interchange::Format formatOrUsageError(const std::string& path);

} // namespace neq::cli
