#pragma once

// The tile and group operations as `neqbridge tiles`, `neqbridge groups` and the demo
// run them. Each fails (throws Failure) with a message that names the file and the
// reason, the host's code as detail.

#include "meshfile/uv_tiles.h"

#include <string>
#include <vector>

namespace neq::cli {

meshfile::UvTileScan listTilesOrFail(const std::string& mesh);
unsigned long countGroupsOrFail(const std::string& mesh);

// The tile files the split writes for OUTBASE: OUTBASE without the extension of its
// file name (a dot in a folder name or at the start of the name is kept), then the
// tile's position, then ".NeQ": "out/head.NeQ" gives "out/head0.NeQ", "out/head1.NeQ"...
std::string tileFileStem(const std::string& outBase);

} // namespace neq::cli
