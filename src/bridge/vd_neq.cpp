#include "bridge/vd_neq.h"

#include "bridge/path_entry.h"
#include "bridge/shared_folder_names.h"

#include <string_view>

using neq::bridge::loadedSharedFolderNames;
using neq::bridge::readPathEntry;
using neq::bridge::writePathEntry;

// In dependency order; the builders below read the same names through
// loadedSharedFolderNames(), so they work even before these are initialised.
const VDString VDNeQ::s_publicFolder = loadedSharedFolderNames().publicFolder;
const VDString VDNeQ::s_folderSeparator = loadedSharedFolderNames().folderSeparator;
const VDString VDNeQ::s_NeQAppsFolder = loadedSharedFolderNames().appsFolder;
const VDString VDNeQ::s_NeQBrushFolder = loadedSharedFolderNames().brushFolder;
const VDString VDNeQ::s_NeQProjectsFolder = loadedSharedFolderNames().projectsFolder;
const VDString VDNeQ::s_NeQDefaultProjectFolder = loadedSharedFolderNames().defaultProjectFolder;

namespace {

const char kConfigFile[] = "NeQ_Config.txt";

// A refused folder (empty, see bridge/shared_folder_names.h) has no files in it.
VDString joined(const VDString& folder, const VDString& name) {
    if (folder.length() == 0) return VDString();
    return folder + loadedSharedFolderNames().folderSeparator + name;
}

} // namespace

VDString VDNeQ::getClayvoFile(const VDString& name) {
    return joined(loadedSharedFolderNames().brushFolder, name);
}

bool VDNeQ::isAppName(const VDString& app) {
    const std::string_view name(app.c_str());
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of("/\\") == std::string_view::npos;
}

VDString VDNeQ::getAppFolder(const VDString& app) {
    if (!isAppName(app)) return VDString();
    return joined(loadedSharedFolderNames().appsFolder, app);
}

VDString VDNeQ::getAppFile(const VDString& app, const VDString& name) {
    return joined(getAppFolder(app), name);
}

VDString VDNeQ::getDefaultProjectFile(const VDString& name) {
    return joined(loadedSharedFolderNames().defaultProjectFolder, name);
}

VDString VDNeQ::getApplicationFile() {
    return getClayvoFile(VDString("NeQ_Application.txt"));
}

VDString VDNeQ::getObjectListFile() {
    return getClayvoFile(VDString("NeQ_ObjectList.txt"));
}

VDString VDNeQ::getProjectPathFile() {
    return getClayvoFile(VDString("NeQ_ProjectPath.txt"));
}

VDString VDNeQ::getObjectPathFile() {
    return getClayvoFile(VDString("NeQ_ObjectPath.txt"));
}

VDString VDNeQ::getClayvoPath() {
    return readPathEntry(getClayvoFile(VDString(kConfigFile)), nullptr);
}

bool VDNeQ::setClayvoPath(const VDString& path) {
    return writePathEntry(getClayvoFile(VDString(kConfigFile)), path);
}

VDString VDNeQ::readAppPath(const VDString& app, bool* found) {
    return readPathEntry(getAppFile(app, VDString(kConfigFile)), found);
}

bool VDNeQ::writeAppPath(const VDString& app, const VDString& path) {
    return writePathEntry(getAppFile(app, VDString(kConfigFile)), path);
}
