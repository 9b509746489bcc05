#pragma once

// Typed exports over the UV tiles of a NeQ mesh and the shared name list.

#include "foundation/export.h"

// Number of distinct UV tiles; `buffer` receives the name of the last UV record's tile
// ("" for an empty block). -17 when the file cannot be opened, -18 without a UV block.
NEQBRIDGE_API float GetUVTile(const char* path, char* buffer);
// Writes one NeQ file per tile next to `base` and lists their tile names in UVTileStr.
// Tile count, -1760 cannot open, -18 no UV block, 1500 + k + 1 when file k fails.
NEQBRIDGE_API float GetUVsFromNeQ(const char* path, char* base);
// Number of distinct group identifiers; -17 cannot open, -18 without a group block.
NEQBRIDGE_API float GetUVGroup(const char* path);

NEQBRIDGE_API void getUVTileString(int index, char* buffer);
NEQBRIDGE_API void clearUVTileString();
