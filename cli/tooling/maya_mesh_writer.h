#pragma once

// Maya ASCII scenes of one polygon mesh in the layout the UV rewrite reads, for tests,
// the demo, benchmarks and fuzz seeds (the library itself only rewrites scenes).

#include "tooling/neq_writer.h"

#include <string>

namespace neq::uvmerge {

struct MayaSceneOptions {
    std::string name = "mesh"; // the transform node; its shape is NAME + "Shape"
    bool crlf = false;         // end every line with CR LF instead of LF
};

// The scene: header comments, the transform node with its translate, rotate and scale
// lines, the mesh node with one UV per face corner (numbered in face order, written as
// the rewrite writes UVs), its vertices and edges in blocks of 500 (edges numbered in
// order of first use, each face corner using its edge forwards or in reverse), its
// faces as the rewrite writes them, and a closing "// End of NAME.ma" line. Faces whose
// fourth vertex is negative are triangles; a mesh without UV records has UVs of (0, 0).
std::string buildMayaScene(const meshfile::Mesh& mesh, const MayaSceneOptions& options = {});

} // namespace neq::uvmerge
