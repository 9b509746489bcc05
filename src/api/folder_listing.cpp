// The host's folder listing: OpenFolder, then GetFile until -3, then CloseFolder, all
// over the one directory stream kept in `folder` between calls.

#include "api/host_entry.h"
#include "api/module_state.h"

using neq::api::guardedEntry;

NEQBRIDGE_HOST_ENTRY OpenFolder(char* text, double, char*) {
    return guardedEntry([&] {
        // A stream that is already open is overwritten, not closed: host scripts that
        // forget CloseFolder leave it open for good. A null path is a folder that
        // cannot be opened, so `folder` ends up null as after any failed open.
        folder = text ? ::opendir(text) : nullptr;
        return folder ? 0.0f : -1.0f;
    });
}

NEQBRIDGE_HOST_ENTRY GetFile(char*, double, char* out) {
    return guardedEntry([&] {
        // With nowhere to put the name, no entry is read, so none is lost.
        if (folder == nullptr || out == nullptr) return -1.0f;
        const dirent* entry = ::readdir(folder);
        // At the end the stream stays open until CloseFolder.
        if (entry == nullptr) return -3.0f;
        neq::api::copyToHost(out, entry->d_name);
        return 0.0f;
    });
}

NEQBRIDGE_HOST_ENTRY CloseFolder(char*, double, char*) {
    return guardedEntry([&] {
        if (folder == nullptr) return -1.0f;
        ::closedir(folder);
        folder = nullptr;
        return 0.0f;
    });
}
