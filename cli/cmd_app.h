#pragma once

// How the tool shows a target application's record.

#include "bridge/vd_neq_app.h"

#include <string>
#include <vector>

namespace neq::cli {

// The keys of the flags the record has set, in the file format's order.
std::vector<std::string> setFlagKeys(const VDNeQApp& app);

// Reads a description file into app; fails (throws Failure) when it cannot be read or is
// empty, and warns when its last line has no line end (such a line is never read).
void readAppDescription(const std::string& path, VDNeQApp& app);

} // namespace neq::cli
