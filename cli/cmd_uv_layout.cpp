#include "args.h"
#include "command.h"
#include "files.h"
#include "mesh_input.h"
#include "pending_output.h"

#include "interchange/uv_layout.h"

#include <string>

namespace neq::cli {
namespace {

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kUvLayoutCommand, args);
    parsed.requirePositionals(2, 2);
    const std::string& inPath = parsed.positional[0];
    const std::string& outPath = parsed.positional[1];
    formatOrUsageError(inPath);
    refuseOutputNamingAnInput(outPath, {inPath});
    refuseOutputOfAnotherKind(outPath, OutputKind::svgPicture, parsed.has("--force"));

    const interchange::Mesh mesh = readMeshOrFail(inPath);
    if (mesh.uvs.empty()) throw Failure("no UV layout: " + quoted(inPath) + " has no UVs");
    const std::string svg = interchange::uvLayoutSvg(mesh);
    PendingOutput output(outPath);
    output.write(svg);
    output.commit();
    status("wrote " + outPath + ": " + std::to_string(mesh.faceCount()) + " faces");
    return kExitOk;
}

} // namespace

const Command kUvLayoutCommand = {
    "uv-layout",
    "draw a mesh's UV layout as an SVG picture",
    "FILE OUT.svg [--force]",
    "Draws the UV layout of the mesh FILE (.NeQ, .obj, .glb or .gltf) into OUT.svg, a "
    "standalone SVG picture that a browser shows as it is: every UV tile that holds a face "
    "as a unit square labelled with its tile name (as `tiles` lists them), every face "
    "outline, and the faces filled by polygroup with a fixed palette. It stays small for "
    "large meshes: one path per polygroup.",
    {{"FILE", "the mesh whose UVs are drawn"},
     {"OUT.svg", "the picture; created, or replaced once it is complete"}},
    {{"--force", nullptr, "replace OUT.svg even when it is not an SVG picture"}},
    run,
};

} // namespace neq::cli
