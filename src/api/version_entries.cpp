#include "api/host_entry.h"
#include "api/uv_tile_exports.h"

NEQBRIDGE_HOST_ENTRY Version(char*, double, char*) {
    return 4.09f;
}

NEQBRIDGE_HOST_ENTRY clearUVString(char*, double, char*) {
    clearUVTileString();
    return 0.0f;
}
