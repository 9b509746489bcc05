#include "cmd_blend.h"

#include "args.h"
#include "command.h"

#include "api/blend_exports.h"
#include "api/module_state.h"
#include "api/uv_tile_exports.h"
#include "blend/blend_result.h"
#include "blend/node_name.h"

#include <cstdio>
#include <set>

namespace neq::cli {
namespace {

const char kHelp[] =
    "usage: neqbridge blend BASE.ma TARGET.ma...\n"
    "\n"
    "Builds a blend-shape scene the way the host application does. Every TARGET scene\n"
    "is appended to the BASE scene, in the order given; then come the statements that\n"
    "put a blend-shape deformer on the base mesh, with one weight per target (all at\n"
    "0, each named after its target, numbered in the order given) and a script node\n"
    "that opens the blend-shape editor when the scene is loaded. BASE is changed in\n"
    "place; the targets are only read.\n"
    "\n"
    "Node names come from file names, without folder and last extension: BASE.ma\n"
    "gives the base name {base} and each TARGET.ma its target name {target}\n"
    "(\"scenes/Smile.ma\" gives \"Smile\"). The statements connect to nodes that the\n"
    "scenes must already hold, so write each scene to match its file name:\n"
    "  base scene    mesh \"{base}Shape\" and its pre-deformation mesh\n"
    "                \"{base}ShapeOrig\"; shading group \"{base}:defaultMat\" with its\n"
    "                shader \"{base}:defaultMat1\" and \"{base}:materialInfo1\"; and the\n"
    "                shader \"v:defaultMat1\", which the base's material info always uses\n"
    "  each target   transform \"{target}\" with mesh \"{target}Shape\";\n"
    "                \"{target}:groupId1\", shading group \"{target}:defaultMat\" with\n"
    "                its shader \"{target}:defaultMat1\" and \"{target}:materialInfo1\"\n"
    "Names are written as they are. A name with anything but letters, digits, \"_\" and\n"
    "\":\", or one that starts with a digit, gets a warning: the scene will not load.\n"
    "\n"
    "Every file read adds its last byte once more (an extra newline for a scene that\n"
    "ends in one), as the host's scenes always have.\n"
    "\n"
    "The steps stop at the first failure, which leaves BASE as that step found it:\n"
    "  cannot read base scene X     BASE is missing or unreadable (code -2760)\n"
    "  cannot open target scene X   a TARGET is missing or unreadable (code -1760)\n"
    "  cannot write base scene X    BASE is read-only or the disk is full (code -3760)\n"
    "Targets appended before the failure stay in BASE. Running the command twice on\n"
    "one BASE adds a second, conflicting deformer: start again from a fresh base.\n"
    "\n"
    "Example:\n"
    "  neqbridge blend Head.ma Smile.ma Blink.ma\n";

void warnIfNotPlain(const std::string& what, const std::string& name, const std::string& path) {
    if (blend::isPlainNodeName(name)) return;
    printError("warning: " + what + " name \"" + name + "\" (from " + path +
               ") is not a plain node name; the scene will not load it");
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
            printError("warning: target name \"" + name +
                       "\" is given twice; both weights get the same name");
        if (name == baseName)
            printError("warning: target \"" + name + "\" has the base scene's name");
    }
}

// What a failing result of the blend exports means, for the user.
std::string describeFailure(float code, const std::string& basePath,
                            const std::string& targetPath) {
    if (code == blend::kTargetUnreadable)
        return "cannot open target scene " + targetPath + " (code -1760)";
    if (code == blend::kBaseUnreadable)
        return "cannot read base scene " + basePath + " (code -2760)";
    if (code == blend::kBaseUnwritable)
        return "cannot write base scene " + basePath + " (code -3760)";
    return "internal failure while writing " + basePath + " (out of memory?)";
}

int run(const std::vector<std::string>& args) {
    ParsedArgs parsed;
    std::string error;
    if (!parseArgs(args, {}, {}, parsed, error)) return usageError(kBlendCommand, error);
    if (parsed.positional.size() < 2)
        return usageError(kBlendCommand, "give the base scene and at least one target scene");
    const std::vector<std::string> targets(parsed.positional.begin() + 1, parsed.positional.end());
    return assembleBlendScene(parsed.positional.front(), targets);
}

} // namespace

int assembleBlendScene(const std::string& basePath, const std::vector<std::string>& targetPaths) {
    warnAboutNames(basePath, targetPaths);
    std::string base = basePath; // the export takes the base path as a mutable text
    clearUVTileString();
    for (std::size_t i = 0; i < targetPaths.size(); ++i) {
        const float code = addBlend(targetPaths[i].c_str(), base.data());
        if (code != blend::kBlendDone) {
            printError(describeFailure(code, basePath, targetPaths[i]));
            return kExitFailed;
        }
        std::printf("  target %zu  \"%s\"  appended from %s\n", i, UVTileStr.back().c_str(),
                    targetPaths[i].c_str());
    }
    const float code = finishBlend(base.c_str());
    if (code != blend::kBlendDone) {
        printError(describeFailure(code, basePath, ""));
        return kExitFailed;
    }
    std::printf("  blend-shape deformer on \"%sShape\" with %zu target%s written to %s\n",
                blend::nodeNameOf(basePath).c_str(), UVTileStr.size(),
                UVTileStr.size() == 1 ? "" : "s", basePath.c_str());
    return std::fflush(stdout) == 0 ? kExitOk : kExitFailed;
}

const Command kBlendCommand = {"blend", "assemble a blend-shape scene from target scenes", kHelp,
                               run};

} // namespace neq::cli
