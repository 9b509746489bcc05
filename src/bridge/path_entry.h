#pragma once

// The PATH entry of a NeQ_Config.txt file: an installed location, stored quoted. An
// empty file path is the one the bridge gives where there is no file to use (a refused
// application name or public folder): nothing is found there and nothing written.

#include "foundation/vd_string.h"

namespace neq::bridge {

// The entry's value without its quotes; empty when the file or the entry is missing.
// found, when given, tells whether a PATH line exists.
VDString readPathEntry(const VDString& configFile, bool* found);
// Writes "PATH = "path"" as the file's first line, creating the file (not its folder).
bool writePathEntry(const VDString& configFile, const VDString& path);

} // namespace neq::bridge
