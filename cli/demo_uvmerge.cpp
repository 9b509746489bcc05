#include "command.h"
#include "demo_steps.h"

#include "tooling/maya_mesh_writer.h"
#include "tooling/sample_mesh.h"
#include "uvmerge/maya_file_rewrite.h"

namespace neq::cli {

// The subdivided sample as a Maya scene with one UV per face corner, welded in place as
// NeQMergeUVs welds it.
void demoUvMergeSteps(DemoContext& context) {
    status("\n-- UV weld");
    const meshfile::Mesh mesh = meshfile::subdivideMesh(meshfile::makeSampleMesh());
    uvmerge::MayaSceneOptions options;
    options.name = "subdivided";
    const std::string path = context.dir + options.name + ".ma";
    writeDemoFile(path, uvmerge::buildMayaScene(mesh, options));
    statusf("  wrote %s.ma: %zu faces over %zu vertices, one UV per face corner",
            options.name.c_str(), mesh.faces.size(), mesh.vertices.size());

    const uvmerge::MayaFileWeld weld = uvmerge::weldMayaFile(path.c_str());
    if (weld.failure != uvmerge::MayaFileWeld::Failure::none)
        throw Failure("cannot weld " + quoted(path) + ": " + weld.reason);
    statusf("  welded the UVs of %s.ma in place: %zu UVs -> %zu (one per vertex, more where a "
            "seam runs)",
            options.name.c_str(), weld.rewrite.uvsBefore, weld.rewrite.uvsAfter);
    status("    again: neqbridge merge-uvs " + options.name + ".ma");
}

} // namespace neq::cli
