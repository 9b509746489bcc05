// The host's blend-scene entries. The typed exports they forward to refuse null
// pointers with -9 before touching the name list or any file, and already keep
// exceptions from reaching the host.

#include "api/blend_exports.h"
#include "api/host_entry.h"

// text = target scene, out = base scene (read as a path, not written to).
NEQBRIDGE_HOST_ENTRY addBlendFile(char* text, double, char* out) {
    return addBlend(text, out);
}

// text = base scene.
NEQBRIDGE_HOST_ENTRY endBlendFile(char* text, double, char*) {
    return finishBlend(text);
}
