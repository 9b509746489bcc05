#include "api/folder_exports.h"

#include "api/host_entry.h"

#include "platform/directories.h"
#include "platform/file_chooser.h"

#include <dirent.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

bool IsDirectory(char* path) {
    if (path == nullptr) return true;
    for (std::size_t i = std::strlen(path); i-- > 0;) {
        if (path[i] == '.') return false;
        if (path[i] == '/' || path[i] == '\\') return true;
    }
    return true;
}

bool ClearFolder(std::string path) try {
    // A backslash, not "/": the folder's own name must end in one (or the caller
    // passes it already there). Host scripts rely on exactly this spelling.
    if (path.empty() || path.back() != '\\') path += '\\';
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(path.c_str()), ::closedir);
    if (stream == nullptr) return false;
    std::string entryPath;
    while (const dirent* entry = ::readdir(stream.get())) {
        // "." and ".." are skipped by name. Where they are listed first (as on macOS)
        // this is the same as skipping the first two entries; many Linux file systems
        // list them anywhere, and skipping by position would pass over real files.
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0) continue;
        // Built in a string sized to fit, so a long name cannot overrun anything.
        entryPath.assign(path).append(entry->d_name);
        if (!IsDirectory(entryPath.data())) std::remove(entryPath.c_str());
    }
    return true;
} catch (...) {
    return false; // only an allocation failure
}

bool createFolder(const char* path) {
    return neq::platform::makeDirectory(path);
}

char* getSharedFolder() try {
    const std::string folder = neq::platform::usersFolder();
    return folder.empty() ? nullptr : neq::api::newHostText(folder);
} catch (...) {
    return nullptr;
}

char* runCocoaOpenFileBrowser(const char* title) try {
    const std::optional<std::string> chosen = neq::platform::chooseFile(title ? title : "");
    return chosen ? neq::api::newHostText(*chosen) : nullptr;
} catch (...) {
    return nullptr;
}
