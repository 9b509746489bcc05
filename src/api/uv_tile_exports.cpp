#include "api/uv_tile_exports.h"

#include "api/host_entry.h"
#include "api/module_state.h"
#include "meshfile/groups.h"
#include "meshfile/uv_tiles.h"
#include "meshfile/uv_tiles_split.h"

// Each shell returns kInternalFailure (-1) if the work below throws (memory exhausted);
// the host's scripts treat any negative result as a failure.

float GetUVTile(const char* path, char* buffer) {
    return neq::api::guardedEntry([&] {
        neq::meshfile::UvTileScan scan;
        const float result = neq::meshfile::listUvTiles(path, scan);
        // The buffer is written only on success; a null one is skipped rather than
        // crashing the host.
        if (result >= 0.0f && buffer != nullptr)
            neq::api::copyToHost(buffer, scan.lastTileName.c_str());
        return result;
    });
}

float GetUVsFromNeQ(const char* path, char* base) {
    return neq::api::guardedEntry(
        [&] { return neq::meshfile::splitUvTiles(path, base, UVTileStr); });
}

float GetUVGroup(const char* path) {
    return neq::api::guardedEntry([&] { return neq::meshfile::countGroupsInFile(path); });
}
