#include "api/host_entry.h"
#include "api/module_state.h"
#include "api/uv_tile_exports.h"

void getUVTileString(int index, char* buffer) {
    // The host only asks for indices it was given; anything else leaves the buffer
    // as it was rather than reading outside the list.
    if (index < 0 || static_cast<std::size_t>(index) >= UVTileStr.size()) return;
    neq::api::copyToHost(buffer, UVTileStr[static_cast<std::size_t>(index)].c_str());
}

void clearUVTileString() {
    UVTileStr.clear();
}
