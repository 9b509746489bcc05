#include "bridge/shared_folder_names.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace neq::bridge {

namespace {

// "/" however spelt: only "/", "." and ".." components, or a link to the root itself.
bool namesTheRoot(std::string_view path) {
    if (path.empty() || path.front() != '/') return false;
    int depth = 0;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string_view part = path.substr(at, end - at);
        if (part == "..")
            depth = depth > 0 ? depth - 1 : 0;
        else if (!part.empty() && part != ".")
            ++depth;
        at = end + 1;
    }
    if (depth == 0) return true;
    struct stat root {
    }, named{};
    const std::string copy(path);
    return ::stat("/", &root) == 0 && ::stat(copy.c_str(), &named) == 0 &&
           root.st_dev == named.st_dev && root.st_ino == named.st_ino;
}

} // namespace

SharedFolderNames sharedFolderNamesFor(const char* variableValue) {
    SharedFolderNames names;
    names.folderSeparator.set("/");
    if (variableValue != nullptr && namesTheRoot(variableValue)) {
        names.rootRefused = true;
        return names;
    }
    if (variableValue != nullptr && *variableValue != '\0') {
        const char* end = variableValue + std::strlen(variableValue);
        while (end > variableValue && end[-1] == '/')
            --end;
        names.publicFolder.create(variableValue, end);
    } else {
        names.publicFolder.set(kDefaultPublicFolder);
    }
    const VDString base = names.publicFolder + names.folderSeparator;
    names.appsFolder = base + VDString("NeQApps");
    names.brushFolder = base + VDString("NeQBrush");
    names.projectsFolder = base + VDString("NeQProjects");
    names.defaultProjectFolder = names.projectsFolder + names.folderSeparator + VDString("Default");
    return names;
}

const SharedFolderNames& loadedSharedFolderNames() {
    static const SharedFolderNames names = sharedFolderNamesFor(std::getenv(kPublicFolderVariable));
    return names;
}

} // namespace neq::bridge
