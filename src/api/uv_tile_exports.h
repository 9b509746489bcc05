#pragma once

// Typed exports over the UV tiles of a NeQ mesh and the shared name list.

#include "foundation/export.h"

NEQBRIDGE_API void getUVTileString(int index, char* buffer);
NEQBRIDGE_API void clearUVTileString();
