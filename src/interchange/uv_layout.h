#pragma once

// A picture of a mesh's UV layout as a standalone SVG document: every UV tile that holds
// a face as a labelled unit square, every face outline, faces filled by polygroup. It
// stays small for large meshes: one path per polygroup, not one element per face.

#include "interchange/mesh.h"

#include <string>

namespace neq::interchange {

// Throws std::invalid_argument when the mesh has no UVs.
std::string uvLayoutSvg(const Mesh& mesh);

} // namespace neq::interchange
