#include "bridge/shared_folder_names.h"

#include <cstdlib>
#include <cstring>

namespace neq::bridge {

SharedFolderNames sharedFolderNamesFor(const char* variableValue) {
    SharedFolderNames names;
    if (variableValue != nullptr && *variableValue != '\0') {
        const char* end = variableValue + std::strlen(variableValue);
        while (end > variableValue && end[-1] == '/')
            --end;
        names.publicFolder.create(variableValue, end);
    } else {
        names.publicFolder.set(kDefaultPublicFolder);
    }
    names.folderSeparator.set("/");
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
