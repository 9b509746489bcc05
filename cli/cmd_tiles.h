#pragma once

// The tile and group operations as `neqbridge tiles`, `neqbridge groups` and the demo
// run them: each returns false after printing a message that translates the failure's
// host result (-17/-1760 cannot open, -18 no block, 1500 + k + 1 tile file k failed).

#include "meshfile/uv_tiles.h"

#include <string>
#include <vector>

namespace neq::cli {

bool listTilesOrReport(const std::string& mesh, meshfile::UvTileScan& scan);
// `names` receives the tiles whose files were written, also when a later one failed.
bool splitTilesOrReport(const std::string& mesh, const std::string& base,
                        std::vector<std::string>& names);
bool countGroupsOrReport(const std::string& mesh, float& groups);

} // namespace neq::cli
