#include "bridge/vd_neq.h"

#include "foundation/vd_config_parser.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
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

// A refused folder (empty, see SharedFolderNames) has no files in it.
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

namespace neq::bridge {
namespace {

const char kPathKey[] = "PATH";

} // namespace

VDString readPathEntry(const VDString& configFile, bool* found) {
    if (configFile.length() == 0) { // no such file: see readPathEntry
        if (found) *found = false;
        return VDString();
    }
    // The lookup already drops one pair of quotes; unquoted() drops a second pair only.
    return VDGenericConfigFileParser::findTokenInConfigFile(configFile, VDString(kPathKey), found)
        .unquoted();
}

bool writePathEntry(const VDString& configFile, const VDString& path) {
    if (configFile.length() == 0) return false;
    return VDGenericConfigFileParser::replaceTokenInConfigFile(configFile, VDString(kPathKey),
                                                               path.quoted(), nullptr);
}

} // namespace neq::bridge
