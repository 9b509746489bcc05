#pragma once

// The Maya ASCII UV rewrite as a function from the bytes of a scene to the bytes of
// the rewritten scene, or a refusal with its reason. Files are read and written around
// it by maya_file_rewrite.h.
//
// The scene holds one polygon mesh in the layout this rewrite itself writes: the UV
// count line, UV ranges, edge count and ranges, face count and ranges, each range's
// data on the one line after its header, every face with its "mu" part. The rewrite
// reads the UVs, edges and faces, welds the UVs per vertex (VDUVMergeAlgo::mergeUVs),
// and writes the new UV and face statements where the old ones stood. Every other line
// is kept byte for byte, except the node's translate, rotate and scale lines, which are
// dropped, and everything after the "// End of " line, which is cut. Lines end at "\n"
// or "\r", so a CR LF pair also ends an empty line.
//
// Refused, instead of producing a damaged scene: a count line declaring more entries
// than the file has bytes, a second UV, edge or face count line (one mesh per file), a
// UV or edge range outside its declared count, an edge naming a vertex beyond what the
// file could hold, a face with other than 3 or 4 corners, a face whose "mu" part is
// missing or counts other than its corners, a face edge outside the declared edges, a
// face UV at or past the declared UV count (negative ones mean "no UV"), and a scene
// with UV or face statements but nothing to weld (no UVs, or no face corners). A data
// line that runs out early reads its missing UVs and edges as 0 and its missing faces
// as faces without corners, which are dropped.

#include <cstddef>
#include <string>
#include <string_view>

namespace neq::uvmerge {

struct MayaUvRewrite {
    bool ok = false;
    std::string text;          // the rewritten scene, when ok
    std::string refusal;       // when not ok: the reason in words, "line N: ..." when a line has it
    bool welded = false;       // false when the scene had no UV or face statement to replace
    std::size_t uvsBefore = 0; // the declared UV count
    std::size_t uvsAfter = 0;
    std::size_t faces = 0;
    std::size_t triangles = 0;
};

MayaUvRewrite rewriteMayaUvs(std::string_view scene);

} // namespace neq::uvmerge
