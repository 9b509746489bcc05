#include "cmd_blend.h"
#include "command.h"
#include "demo_steps.h"
#include "files.h"

#include <string>

namespace neq::cli {
namespace {

// One quad, vertices 0 1 / 2 3 from bottom left, as the scenes' meshes store it.
std::string quadMesh(const std::string& node, const std::string& parent, const char* vertices,
                     bool intermediate) {
    std::string text = "createNode mesh -n \"" + node + "\" -p \"" + parent + "\";\n";
    text += "\tsetAttr -k off \".v\";\n";
    if (intermediate) text += "\tsetAttr \".io\" yes;\n";
    text += "\tsetAttr -s 4 \".vt[0:3]\"  ";
    text += vertices;
    text += ";\n"
            "\tsetAttr -s 4 \".ed[0:3]\"  0 1 0 1 3 0 3 2 0 2 0 0;\n"
            "\tsetAttr -s 1 \".fc[0]\" -type \"polyFaces\" f 4 0 1 2 3;\n";
    return text;
}

// The shading nodes the blend statements connect to, in the scene's own namespace.
std::string shadingNodes(const std::string& name) {
    return "createNode lambert -n \"" + name + ":defaultMat1\";\n" +
           "createNode shadingEngine -n \"" + name + ":defaultMat\";\n" +
           "\tsetAttr \".ihi\" 0;\n\tsetAttr \".ro\" yes;\n" + "createNode materialInfo -n \"" +
           name + ":materialInfo1\";\n";
}

std::string sceneHeader(const std::string& name) {
    return "//Maya ASCII scene\n//Name: " + name + ".ma\nrequires maya \"2011\";\n" +
           "currentUnit -l centimeter -a degree -t film;\n" + "createNode transform -n \"" + name +
           "\";\n";
}

constexpr const char* kFlatQuad = "-1 -1 0 1 -1 0 -1 1 0 1 1 0";

// The base mesh "{name}Shape" is what the deformer drives; "{name}ShapeOrig" keeps
// the undeformed quad it starts from.
std::string baseScene(const std::string& name) {
    return sceneHeader(name) + quadMesh(name + "Shape", name, kFlatQuad, false) +
           quadMesh(name + "ShapeOrig", name, kFlatQuad, true) + shadingNodes(name) +
           "createNode lambert -n \"v:defaultMat1\";\n";
}

std::string targetScene(const std::string& name, int offset, const char* vertices) {
    return sceneHeader(name) + "\tsetAttr \".t\" -type \"double3\" " + std::to_string(offset) +
           " 0 0;\n" + quadMesh(name + "Shape", name, vertices, false) +
           "createNode groupId -n \"" + name + ":groupId1\";\n\tsetAttr \".ihi\" 0;\n" +
           shadingNodes(name);
}

void writeScene(const std::string& path, const std::string& text) {
    writeDemoFile(path, text);
    statusf("  wrote %s (%zu bytes)", path.c_str(), text.size());
}

} // namespace

void demoBlendSteps(DemoContext& context) {
    status("\n-- blend-shape scene: base Head, targets Smile and Blink");
    const std::string base = context.dir + "Head.ma";
    const std::vector<std::string> targets = {context.dir + "Smile.ma", context.dir + "Blink.ma"};
    writeScene(base, baseScene("Head"));
    writeScene(targets[0], targetScene("Smile", 3, "-1 -1 0 1 -1 0 -1 1 0.5 1 1 0.5"));
    writeScene(targets[1], targetScene("Blink", 6, "-1 -1 0.5 1 -1 0.5 -1 1 0 1 1 0"));
    // The deformer goes into a copy in its own folder (the node names follow the file
    // name, so the copy keeps it): Head.ma stays fresh for a blend of one's own.
    makeFolders(context.dir + "blended");
    const std::string blended = context.dir + "blended/Head.ma";
    writeDemoFile(blended, baseScene("Head"));
    assembleBlendScene(blended, targets);
    status("  Head.ma is left fresh, without the deformer, for a run of one's own");
    status("    again: neqbridge blend Head.ma Smile.ma Blink.ma");
}

} // namespace neq::cli
