#include "args.h"
#include "command.h"
#include "demo_steps.h"
#include "files.h"
#include "pending_output.h"

#include "platform/directories.h"

#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

namespace neq::cli {
namespace {

const char kDefaultFolder[] = "neqbridge-demo";

// The steps, in order.
void (*const kDemoSteps[])(DemoContext&) = {
    demoMeshSteps, demoTileSteps, demoBlendSteps, demoBridgeSteps, demoUvMergeSteps,
};

// Creates the folder with its missing parents (an existing folder is fine) and returns
// its absolute path ending in "/".
std::string prepareFolder(const std::string& path) {
    struct stat info {};
    libraryPath(path); // the library is handed paths in this folder
    if (::stat(path.c_str(), &info) == 0 && !S_ISDIR(info.st_mode))
        throw Failure(quoted(path) + " is a file, not a folder");
    makeFolders(path);
    if (::stat(path.c_str(), &info) != 0)
        throw Failure("cannot use folder " + quoted(path) + ": " + reasonOf(errno));
    if (!S_ISDIR(info.st_mode)) throw Failure(quoted(path) + " is a file, not a folder");
    char resolved[PATH_MAX];
    std::string absolute = ::realpath(path.c_str(), resolved) ? resolved : path;
    if (absolute.back() != '/') absolute += '/';
    return absolute;
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kDemoCommand, args);
    parsed.requirePositionals(0, 1);
    DemoContext context;
    context.dir = prepareFolder(parsed.positional.empty() ? kDefaultFolder : parsed.positional[0]);
    status("neqbridge demo: writing into " + context.dir);
    status("(each step's \"again\" command repeats it, run in that folder)");
    for (const auto step : kDemoSteps)
        step(context);
    const std::string tool = platform::executableDirectory();
    if (!tool.empty())
        status("\nthe tool is " + tool + (tool == "/" ? "" : "/") +
               "neqbridge: put its folder on the PATH to run the commands above");
    std::printf("%s\n", context.dir.c_str());
    return kExitOk;
}

} // namespace

void writeDemoFile(const std::string& path, std::string_view bytes) {
    PendingOutput output(path);
    output.write(bytes);
    output.commit();
}

const Command kDemoCommand = {
    "demo",
    "run the library on a built-in sample mesh",
    "[DIR]",
    "Runs the library on a built-in sample mesh, as the host would: writes the mesh and "
    "its subdivision as NeQ files, exports OBJ and colours, lists and splits the UV "
    "tiles, counts the groups, assembles a blend-shape scene, writes and reads back an "
    "application description and a configuration file, and welds the UVs of a Maya "
    "scene of the subdivided mesh, all into DIR, telling what it does on the way. "
    "Prints DIR's full path when done.",
    {{"DIR", "folder to write into, made if missing (default ./neqbridge-demo)"}},
    {},
    run,
};

} // namespace neq::cli
