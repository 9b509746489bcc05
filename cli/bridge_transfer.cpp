#include "bridge_transfer.h"

#include "command.h"
#include "files.h"
#include "pending_output.h"

#include "bridge/vd_neq.h"
#include "foundation/file_io.h"
#include "foundation/vd_disk_server.h"
#ifdef NEQBRIDGE_INTERCHANGE
#include "interchange/mesh.h"
#endif

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace neq::cli {
namespace {

const char kConfigFile[] = "NeQ_Config.txt";
const char kDescriptionFile[] = "NeQ_App.txt";
const char kObjectListFile[] = "NeQ_ObjectList.txt";
const char kObjectPathFile[] = "NeQ_ObjectPath.txt";
const char kExtension[] = ".NeQ";

// An application the bridge knows how to drive: its program's name on PATH, its
// description and the arguments that make it import the listed objects.
struct KnownApp {
    const char* name;
    const char* program;
    const char* description;
    std::vector<std::string> (*receiveArguments)(bool background);
};

// NeQ meshes are Y up; Blender is Z up, and both are right-handed. Blender's (x, y, z)
// is the mesh's (x, -z, y): on import z is negated, then Y and Z are exchanged (one
// exchange alone would mirror the mesh); export undoes both. Polygroups come in as a
// face attribute.
const char kBlenderDescription[] = "NAME \"Blender\"\n"
                                   "EXTENSION .NeQ\n"
                                   "IMPORT_FLIP_Z True\n"
                                   "IMPORT_SWITCH_YZ True\n"
                                   "EXPORT_FLIP_Z True\n"
                                   "EXPORT_SWITCH_YZ True\n"
                                   "IMPORT_POLYGROUPS True\n";

// Blender runs the add-on's receive step once it has started, enabling the add-on for
// the session when the user's preferences have not. Headless, a failed step is exit
// status 1.
std::vector<std::string> blenderReceive(bool background) {
    const std::string step = "import addon_utils, bpy; "
                             "addon_utils.check('neqbridge_blender')[1] or "
                             "addon_utils.enable('neqbridge_blender', default_set=False); "
                             "bpy.ops.neqbridge.receive()";
    if (background) return {"-b", "--python-exit-code", "1", "--python-expr", step};
    return {"--python-expr", step};
}

const KnownApp kKnownApps[] = {
    {"Blender", "blender", kBlenderDescription, blenderReceive},
};

const KnownApp& knownApp(const std::string& app) {
    for (const KnownApp& known : kKnownApps)
        if (app == known.name) return known;
    throw UsageError("unknown application '" + app + "' (the bridge knows Blender)");
}

void requireFolder(const std::string& folder, const std::string& what) {
    if (!isFolder(folder))
        throw Failure("the " + what + " folder " + quoted(folder) +
                      " does not exist (neqbridge bridge init creates the shared folder tree)");
}

// The program `name` as the shell would find it on PATH.
std::optional<std::string> findOnPath(const std::string& name) {
    const char* variable = std::getenv("PATH");
    std::string list = variable ? variable : "";
    std::size_t start = 0;
    while (start <= list.size()) {
        std::size_t end = list.find(':', start);
        if (end == std::string::npos) end = list.size();
        const std::string folder = end > start ? list.substr(start, end - start) : ".";
        const std::string candidate = folder + "/" + name;
        if (::access(candidate.c_str(), X_OK) == 0 && !isFolder(candidate)) return candidate;
        start = end + 1;
    }
    return std::nullopt;
}

std::string readInput(const std::string& path) {
    std::string bytes, reason;
    if (!files::readRegularFile(path.c_str(), bytes, reason))
        throw Failure("cannot read " + quoted(path) + ": " + reason);
    return bytes;
}

void replaceWith(const std::string& path, const std::string& bytes) {
    std::string reason;
    if (!files::replaceFile(path.c_str(), bytes, reason))
        throw Failure("cannot write " + quoted(path) + ": " + reason);
}

// Writes `bytes` to `destination` unless it is `source` itself.
void copyTo(const std::string& source, const std::string& bytes, const std::string& destination) {
    struct stat from {};
    struct stat to {};
    if (::stat(source.c_str(), &from) == 0 && ::stat(destination.c_str(), &to) == 0 &&
        from.st_dev == to.st_dev && from.st_ino == to.st_ino)
        return;
    PendingOutput output(destination);
    output.write(bytes);
    output.commit();
}

// "head.v2.NeQ" -> "head.v2".
std::string objectNameOf(const std::string& file) {
    const std::string name = lastNameOf(file);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

std::vector<std::string> listedObjects(const std::string& listFile) {
    const std::string text = readInput(listFile);
    std::vector<std::string> names;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        const std::size_t first = line.find_first_not_of(" \t\r");
        line = first == std::string::npos
                   ? ""
                   : line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
        if (line == "." || line == ".." ||
            line.find_first_of(std::string("/\0", 2)) != std::string::npos)
            throw Failure("the object list " + quoted(listFile) + " names " + quoted(line) +
                          ", which is not a file name");
        if (!line.empty()) names.push_back(line);
        start = end + 1;
    }
    if (names.empty()) throw Failure("the object list " + quoted(listFile) + " names no object");
    return names;
}

} // namespace

void registerApp(const BridgeFolders& folders, const std::string& app,
                 const std::optional<std::string>& path) {
    const KnownApp& known = knownApp(app);
    std::string location;
    if (path) {
        // A bare name is looked up on PATH when the application starts; a path is made
        // absolute, as the library's launch reads it from its first "/".
        location = path->find('/') == std::string::npos ? *path : libraryPath(*path);
    } else if (const std::optional<std::string> found = findOnPath(known.program)) {
        location = *found;
    } else {
        throw Failure(std::string("cannot find '") + known.program +
                      "' on PATH; give its location with --path");
    }
    requireFolder(folders.apps, "applications");
    const std::string folder = folders.apps + "/" + app;
    if (::mkdir(folder.c_str(), 0777) != 0 && errno != EEXIST)
        throw Failure("cannot create " + quoted(folder) + ": " + reasonOf(errno));
    const std::string config = folder + "/" + kConfigFile;
    errno = 0;
    if (!bridge::writePathEntry(VDString(config.c_str()), VDString(location.c_str())))
        throw Failure("cannot write " + quoted(config) + ": " + reasonOf(errno));
    replaceWith(folder + "/" + kDescriptionFile, known.description);
    status("registered " + app + " at " + quoted(location) + " in " + quoted(folder));
}

void sendToApp(const BridgeFolders& folders, const std::string& file, const std::string& app,
               bool background) {
    const KnownApp& known = knownApp(app);
    requireInputFile(file);
    const std::string config = folders.apps + "/" + app + "/" + kConfigFile;
    bool found = false;
    const VDString program = bridge::readPathEntry(VDString(config.c_str()), &found);
    if (!found || program.isEmpty())
        throw Failure(app + " is not registered: no PATH in " + quoted(config) +
                      " (run 'neqbridge bridge register-app " + app + "')");
    requireFolder(folders.host, "host");
    requireFolder(folders.defaultProject, "default project");

    const std::string bytes = readInput(file);
#ifdef NEQBRIDGE_INTERCHANGE
    // A mesh the application could not read is refused before anything is written or
    // started: a headless application's own message would not be seen.
    try {
        interchange::readNeq(bytes, file);
    } catch (const interchange::FormatError& error) {
        throw Failure("cannot send " + quoted(file) + ": " + error.where() + ": " + error.reason());
    }
#endif
    const std::string name = objectNameOf(file);
    const std::string copy = folders.defaultProject + "/" + name + kExtension;
    copyTo(file, bytes, copy);
    replaceWith(folders.host + "/" + kObjectPathFile, copy + "\n");
    replaceWith(folders.host + "/" + kObjectListFile, name + "\n");
    status("sent " + quoted(file) + " as " + quoted(copy));

    if (!VDDiskServer::launchApplication(program, known.receiveArguments(background), background))
        throw Failure(background ? app + " (" + quoted(program.c_str()) + ") did not import " +
                                       quoted(copy) + ": it failed or could not be started"
                                 : "cannot start " + app + " at " + quoted(program.c_str()));
    status(background ? app + " imported " + quoted(name) : "started " + app);
}

void receiveObjects(const BridgeFolders& folders, const std::string& dir) {
    if (!isFolder(dir)) throw Failure("cannot receive into " + quoted(dir) + ": not a folder");
    const std::vector<std::string> names = listedObjects(folders.host + "/" + kObjectListFile);
    struct Mesh {
        std::string source, bytes, destination;
    };
    std::vector<Mesh> meshes; // all read and checked before anything is written
    for (const std::string& name : names) {
        const std::string folder = dir.back() == '/' ? dir : dir + "/";
        Mesh mesh{folders.defaultProject + "/" + name + kExtension, "", folder + name + kExtension};
        mesh.bytes = readInput(mesh.source);
        refuseOutputNamingAnInput(mesh.destination, {mesh.source});
        meshes.push_back(std::move(mesh));
    }
    for (const Mesh& mesh : meshes) {
        copyTo(mesh.source, mesh.bytes, mesh.destination);
        std::printf("%s\n", mesh.destination.c_str());
    }
    status("received " + std::to_string(names.size()) + " object(s) into " + quoted(dir));
}

} // namespace neq::cli
