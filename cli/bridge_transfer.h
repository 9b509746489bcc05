#pragma once

// Moving meshes between the host's side of the bridge and a target application: the
// application's registration, sending a mesh to it and receiving what it sent back.
// Everything goes through the bridge's shared folder:
//
// - NeQApps/APP/NeQ_Config.txt: the application's installed location (PATH);
// - NeQApps/APP/NeQ_App.txt: its description, with the flags its meshes need;
// - NeQProjects/Default/NAME.NeQ: the meshes in transit;
// - NeQBrush/NeQ_ObjectList.txt: their names, one per line, each ended by a newline;
// - NeQBrush/NeQ_ObjectPath.txt: the path of the last mesh written, on one line.

#include <optional>
#include <string>

namespace neq::cli {

struct BridgeFolders {
    std::string host;           // NeQBrush
    std::string apps;           // NeQApps
    std::string defaultProject; // NeQProjects/Default
};

// Creates NeQApps/APP (NeQApps must exist), records the installed location (`path`, or
// the program found on PATH) and writes the description file.
void registerApp(const BridgeFolders& folders, const std::string& app,
                 const std::optional<std::string>& path);

// Copies `file` into the default project, lists it for the application and starts the
// application on it; with `background` headless, waiting for it to end.
void sendToApp(const BridgeFolders& folders, const std::string& file, const std::string& app,
               bool background);

// Copies every listed mesh from the default project into the folder `dir`, printing
// each file written.
void receiveObjects(const BridgeFolders& folders, const std::string& dir);

} // namespace neq::cli
