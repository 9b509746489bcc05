#include "args.h"
#include "bridge_transfer.h"
#include "command.h"
#include "files.h"

#include "bridge/vd_neq.h"
#include "foundation/vd_disk_server.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace neq::cli {
namespace {

const char kConfigFile[] = "NeQ_Config.txt";

// The shared folder names the library would use, with a relative folder in the
// variable (or DIR) made absolute from the working folder: the library's file layer
// reads a path from its first "/", so "neq-bridge" would otherwise name "/NeQBrush".
bridge::SharedFolderNames folderNames(const std::string& given) {
    const char* variable = std::getenv(bridge::kPublicFolderVariable);
    const std::string value = !given.empty() ? given : variable ? variable : "";
    if (value.empty()) return bridge::sharedFolderNamesFor(nullptr);
    bridge::SharedFolderNames names;
    try {
        names = bridge::sharedFolderNamesFor(libraryPath(value).c_str());
    } catch (const Failure& failure) {
        if (!given.empty()) throw;
        throw Failure(std::string(bridge::kPublicFolderVariable) + ": " + failure.what());
    }
    // The library refuses it too: its folders would be made at the top of the system.
    if (names.rootRefused)
        throw Failure((given.empty() ? std::string(bridge::kPublicFolderVariable) : "DIR") + " " +
                      quoted(value) +
                      " is the root folder; the shared folder tree needs a folder of its own, "
                      "such as ~/.local/share/Vandrel");
    return names;
}

std::string inFolder(const VDString& folder, const std::string& name) {
    return std::string(folder.c_str()) + "/" + name;
}

void paths(const bridge::SharedFolderNames& names) {
    const char* variable = std::getenv(bridge::kPublicFolderVariable);
    if (variable && *variable)
        status(std::string("public folder moved by ") + bridge::kPublicFolderVariable);
    const std::pair<const char*, const VDString&> folders[] = {
        {"public folder", names.publicFolder},
        {"host", names.brushFolder},
        {"applications", names.appsFolder},
        {"projects", names.projectsFolder},
        {"default project", names.defaultProjectFolder},
    };
    for (const auto& [label, folder] : folders)
        std::printf("%-16s %-8s %s\n", label,
                    VDDiskServer::folderExists(folder) ? "exists" : "missing", folder.c_str());
}

// Creates the shared folder tree: the public folder (with its missing parents when it
// was named by DIR or the variable), then the host, applications and default project
// folders. The default folder's parent is the desktop's, which is not made here.
void init(const std::string& given) {
    const char* variable = std::getenv(bridge::kPublicFolderVariable);
    const bool named = !given.empty() || (variable && *variable);
    const bridge::SharedFolderNames names = folderNames(given);
    const std::string top = names.publicFolder.isEmpty() ? "/" : names.publicFolder.c_str();
    if (!named && !isFolder(folderOf(top)))
        throw Failure("cannot create " + quoted(top) + ": its folder " + quoted(folderOf(top)) +
                      " does not exist on this system; set " + bridge::kPublicFolderVariable +
                      " to a folder of your own, for example ~/.local/share/Vandrel, or give "
                      "DIR");
    makeFolders(top);
    for (const VDString* folder : {&names.brushFolder, &names.appsFolder, &names.projectsFolder,
                                   &names.defaultProjectFolder})
        makeFolders(folder->c_str());
    status("created the shared folder tree in " + quoted(top));
    if (!given.empty())
        status(std::string("set ") + bridge::kPublicFolderVariable + "=" + top +
               " for the other bridge commands and the host");
}

// Prints the PATH entry of a NeQ_Config.txt file, or fails when it has none.
void printPathEntry(const VDString& configFile, const std::string& whose) {
    bool found = false;
    const VDString path = bridge::readPathEntry(configFile, &found);
    if (!found) throw Failure("no " + whose + " path recorded in " + quoted(configFile.c_str()));
    std::printf("%s\n", path.c_str());
}

void writePathEntry(const VDString& configFile, const std::string& path) {
    VDString folder(configFile);
    VDDiskServer::extractPathFromFilename(folder);
    if (!VDDiskServer::folderExists(folder))
        throw Failure("cannot write " + quoted(configFile.c_str()) + ": the folder " +
                      quoted(folder.c_str()) + " does not exist (the bridge never creates it)");
    errno = 0;
    if (!bridge::writePathEntry(configFile, VDString(path.c_str())))
        throw Failure("cannot write " + quoted(configFile.c_str()) + ": " + reasonOf(errno));
    status("recorded " + quoted(path) + " in " + quoted(configFile.c_str()));
}

// An application's folder name: one path component, as the library requires.
void requireAppName(const std::string& app) {
    if (!VDNeQ::isAppName(VDString(app.c_str())))
        throw UsageError("APP must be a folder name, not '" + app + "'");
}

void requireOneLine(const std::string& path) {
    if (path.empty() || path.find_first_of("\n\r") != std::string::npos)
        throw UsageError("PATH must be one line, not empty");
}

BridgeFolders transferFolders(const bridge::SharedFolderNames& names) {
    return {names.brushFolder.c_str(), names.appsFolder.c_str(),
            names.defaultProjectFolder.c_str()};
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kBridgeCommand, args);
    parsed.requirePositionals(1, 3);
    const std::vector<std::string>& p = parsed.positional;
    if (p[0] == "init") {
        parsed.requirePositionals(1, 2);
        init(p.size() == 2 ? p[1] : "");
        return kExitOk;
    }
    const bridge::SharedFolderNames names = folderNames("");
    if (p[0] == "paths") {
        parsed.requirePositionals(1, 1);
        paths(names);
    } else if (p[0] == "host-path") {
        parsed.requirePositionals(1, 2);
        const VDString configFile(inFolder(names.brushFolder, kConfigFile).c_str());
        if (p.size() == 1) {
            printPathEntry(configFile, "host");
        } else {
            requireOneLine(p[1]);
            writePathEntry(configFile, p[1]);
        }
    } else if (p[0] == "app-path") {
        parsed.requirePositionals(2, 3);
        requireAppName(p[1]);
        const VDString configFile(inFolder(names.appsFolder, p[1] + "/" + kConfigFile).c_str());
        if (p.size() == 2) {
            printPathEntry(configFile, "'" + p[1] + "'");
        } else {
            requireOneLine(p[2]);
            writePathEntry(configFile, p[2]);
        }
    } else if (p[0] == "register-app") {
        parsed.requirePositionals(2, 2);
        registerApp(transferFolders(names), p[1], parsed.value("--path"));
    } else if (p[0] == "send") {
        parsed.requirePositionals(2, 2);
        const std::optional<std::string> app = parsed.value("--app");
        if (!app) throw UsageError("send needs --app APP");
        sendToApp(transferFolders(names), p[1], *app, parsed.has("--background"));
    } else if (p[0] == "receive") {
        parsed.requirePositionals(2, 2);
        receiveObjects(transferFolders(names), p[1]);
    } else {
        throw UsageError("unknown action '" + p[0] +
                         "' (init, paths, host-path, app-path, register-app, send or receive)");
    }
    return kExitOk;
}

} // namespace

const Command kBridgeCommand = {
    "bridge",
    "the bridge's shared folders and installed-location files",
    "init [DIR] | paths | host-path [PATH] | app-path APP [PATH] | "
    "register-app APP [--path PROGRAM] | send FILE.NeQ --app APP [--background] | receive DIR",
    "init creates the bridge's shared folder tree (the public folder, NeQBrush, NeQApps "
    "and NeQProjects/Default) in DIR or the shared folder; the library never creates "
    "it. paths lists the bridge's shared folders and whether each exists. host-path prints "
    "the host's installed location, the PATH entry of NeQBrush/NeQ_Config.txt, or "
    "records PATH there; app-path does the same for the target application APP in "
    "NeQApps/APP/NeQ_Config.txt; these never create folders. register-app makes "
    "NeQApps/APP, records the program (found on PATH without --path) and writes the "
    "description NeQApps/APP/NeQ_App.txt with the flags the application needs (APP: "
    "Blender). send copies the mesh into NeQProjects/Default, names it in "
    "NeQBrush/NeQ_ObjectList.txt (one name per line) and NeQ_ObjectPath.txt, and starts "
    "the application, which imports it; receive copies the listed meshes into DIR and "
    "prints each file written. The shared folder is "
    "/Users/Shared/Vandrel unless the environment variable NEQBRIDGE_PUBLIC_FOLDER "
    "names another (a relative one is taken from the working folder).",
    {{"init|paths|host-path|app-path|register-app|send|receive", "the action"},
     {"APP", "for app-path and register-app: its folder name under NeQApps"},
     {"PATH", "the installed location to record (read it when absent)"},
     {"FILE.NeQ", "for send: the mesh to send"},
     {"DIR", "for init: the public folder to create (default: the shared folder); for "
             "receive: the folder the returned meshes are copied into"}},
    {{"--path", "PROGRAM", "for register-app: the application's program"},
     {"--app", "APP", "for send: the application to send to"},
     {"--background", nullptr, "for send: run the application headless and wait for it"}},
    run,
};

} // namespace neq::cli
