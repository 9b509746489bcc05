// Host entries that change, create and locate folders.

#include "api/folder_exports.h"
#include "api/host_entry.h"

#include <unistd.h>

using neq::api::guardedEntry;

NEQBRIDGE_HOST_ENTRY SetFolder(char* text, double, char*) {
    return guardedEntry([&] { return text && ::chdir(text) == 0 ? 0.0f : -1.0f; });
}

NEQBRIDGE_HOST_ENTRY CreateFolder(char* text, double, char*) {
    return guardedEntry([&] { return createFolder(text) ? 0.0f : -1.0f; });
}

// Success is 1 here, where every other entry uses 0; host scripts test for it.
NEQBRIDGE_HOST_ENTRY GetPublicFolder(char*, double, char* out) {
    return guardedEntry([&] {
        char* path = getSharedFolder();
        if (path == nullptr) return 0.0f;
        // The host learns of a null out only from the 0 result; nothing is copied then.
        if (out != nullptr) neq::api::copyToHost(out, path);
        delete[] path;
        return out != nullptr ? 1.0f : 0.0f;
    });
}
