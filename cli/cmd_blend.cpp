#include "cmd_blend.h"

#include "args.h"
#include "command.h"
#include "files.h"
#include "pending_output.h"

#include "api/module_state.h"
#include "api/result_codes.h"
#include "blend/node_name.h"
#include "foundation/file_io.h"
#include "neqbridge/neqbridge.hpp"

#include <cerrno>
#include <set>

namespace neq::cli {
namespace {

// Node names the blend statements create; a base that already has one was finished by
// an earlier run, and a second deformer with the same names would not load.
const char* const kBlendNodeStatements[] = {
    "createNode blendShape -n \"blendShape1\";",
    "createNode script -n \"ShowBP\";",
};

void warnIfNotPlain(const std::string& what, const std::string& name, const std::string& path) {
    if (blend::isPlainNodeName(name)) return;
    warn(what + " name \"" + name + "\" (from " + path +
         ") is not a plain node name; the scene will not load it");
}

// The library refuses such a name too; said here in words, before anything is read.
void refuseUnquotableName(const char* role, const std::string& path) {
    if (!blend::isQuotableNodeName(blend::nodeNameOf(path)))
        throw Failure(std::string(role) + " scene " + quoted(path) +
                      " has a name with a double quote, a backslash or a control character, "
                      "which would end its quoted string in the scene's statements and let "
                      "the name add statements of its own; nothing was written");
}

// The warnings that can be given before anything is written.
void warnAboutNames(const std::string& basePath, const std::vector<std::string>& targetPaths) {
    const std::string baseName = blend::nodeNameOf(basePath);
    warnIfNotPlain("base", baseName, basePath);
    std::set<std::string> seen;
    for (const std::string& path : targetPaths) {
        const std::string name = blend::nodeNameOf(path);
        warnIfNotPlain("target", name, path);
        if (!seen.insert(name).second)
            warn("target name \"" + name + "\" is given twice; both weights get the same name");
        if (name == baseName) warn("target \"" + name + "\" has the base scene's name");
    }
}

std::string readScene(const std::string& path, const char* role) {
    requireInputFile(path);
    std::vector<std::uint8_t> bytes;
    errno = 0;
    if (!readWholeFile(path.c_str(), bytes))
        throw Failure(std::string("cannot read ") + role + " scene " + quoted(path) + ": " +
                      reasonOf(errno));
    return std::string(bytes.begin(), bytes.end());
}

// The statements connect nodes by names made from the file names; a scene without one
// of them would load with broken connections, so it is refused before anything is written.
void requireNodes(const std::string& text, const std::string& path, const char* role,
                  const std::vector<std::string>& names) {
    for (const std::string& name : names)
        if (text.find("-n \"" + name + "\"") == std::string::npos)
            throw Failure(std::string(role) + " scene " + quoted(path) + " has no node \"" + name +
                          "\", which the blend-shape statements connect (node names come from "
                          "the file names); nothing was written");
}

std::string readBaseScene(const std::string& basePath) {
    std::string text = readScene(basePath, "base");
    for (const char* statement : kBlendNodeStatements)
        if (text.find(statement) != std::string::npos)
            throw Failure("base scene " + quoted(basePath) +
                          " already holds the blend-shape nodes of an earlier run (" + statement +
                          "); start again from a fresh base scene");
    requireNodes(text, basePath, "base", {blend::nodeNameOf(basePath) + "Shape"});
    return text;
}

// What a failing result of the blend exports means. The inputs were checked before, so
// this is a file that changed meanwhile or a full disk.
[[noreturn]] void failBlendStep(float code, const std::string& basePath,
                                const std::string& targetPath, int error) {
    std::string text;
    if (code == api::kCannotOpenInput)
        text = "cannot open target scene " + quoted(targetPath) + ": " + reasonOf(error);
    else if (code == api::kBaseUnreadable || code == api::kBaseUnwritable)
        text = "cannot write base scene " + quoted(basePath) + ": " + reasonOf(error);
    else
        text = "cannot assemble base scene " + quoted(basePath) + ": out of memory";
    throw Failure(text + codeDetail(code));
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kBlendCommand, args);
    parsed.requirePositionals(2, parsed.positional.size());
    const std::vector<std::string> targets(parsed.positional.begin() + 1, parsed.positional.end());
    assembleBlendScene(parsed.positional.front(), targets);
    return kExitOk;
}

} // namespace

void assembleBlendScene(const std::string& basePath, const std::vector<std::string>& targetPaths) {
    refuseUnquotableName("base", basePath);
    for (const std::string& target : targetPaths)
        refuseUnquotableName("target", target);
    libraryPath(basePath);
    std::vector<std::string> targetsForLibrary;
    for (const std::string& target : targetPaths)
        targetsForLibrary.push_back(libraryPath(target));
    refuseOutputNamingAnInput(basePath, targetPaths);
    for (const std::string& target : targetPaths)
        requireInputFile(target);
    const std::string baseText = readBaseScene(basePath);
    for (const std::string& target : targetPaths) {
        const std::string name = blend::nodeNameOf(target);
        requireNodes(readScene(target, "target"), target, "target",
                     {name + "Shape", name + ":groupId1", name + ":defaultMat",
                      name + ":defaultMat1", name + ":materialInfo1"});
    }
    warnAboutNames(basePath, targetPaths);

    // The copy keeps the base's file name, which the statements take the node names from.
    PendingOutput output(basePath, PendingOutput::Naming::sameName);
    output.write(baseText);
    std::string workPath = libraryPath(output.writePath()); // taken as mutable text
    clearUVTileString();
    for (std::size_t i = 0; i < targetPaths.size(); ++i) {
        errno = 0;
        const float code = addBlend(targetsForLibrary[i].c_str(), workPath.data());
        if (code != api::kDone) failBlendStep(code, basePath, targetPaths[i], errno);
        status("  target " + std::to_string(i) + "  \"" + UVTileStr.back() + "\"  appended from " +
               targetPaths[i]);
    }
    errno = 0;
    const float code = finishBlend(workPath.c_str());
    if (code != api::kDone) failBlendStep(code, basePath, "", errno);
    output.commit();
    status("  blend-shape deformer on \"" + blend::nodeNameOf(basePath) + "Shape\" with " +
           std::to_string(UVTileStr.size()) + " target" + (UVTileStr.size() == 1 ? "" : "s") +
           " written to " + basePath);
}

const Command kBlendCommand = {
    "blend",
    "assemble a blend-shape scene from target scenes",
    "BASE.ma TARGET.ma...",
    "Builds a blend-shape scene the way the host does: every TARGET scene is appended to "
    "the BASE scene in the order given, then the statements that put a blend-shape "
    "deformer on the base mesh, one weight per target (all 0, each named after its "
    "target) and a script node that opens the blend-shape editor. Node names come from "
    "file names without folder and extension (\"scenes/Smile.ma\" gives \"Smile\"); the "
    "base scene must hold \"{base}Shape\", \"{base}ShapeOrig\", \"{base}:defaultMat\", "
    "\"{base}:defaultMat1\", \"{base}:materialInfo1\" and \"v:defaultMat1\", each target "
    "\"{target}\", \"{target}Shape\", \"{target}:groupId1\", \"{target}:defaultMat\", "
    "\"{target}:defaultMat1\" and \"{target}:materialInfo1\". Every file read adds its last "
    "byte once more, as the host's scenes always have. All targets are checked first and "
    "BASE is replaced only once complete; a base that already holds a deformer from an "
    "earlier run is refused.",
    {{"BASE.ma", "the base scene, changed in place"},
     {"TARGET.ma...", "one or more target scenes, only read"}},
    {},
    run,
};

} // namespace neq::cli
