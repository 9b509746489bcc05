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
// Refused, instead of producing a damaged scene: count lines declaring more entries
// than the file can hold (together, at 4 bytes a UV and 6 an edge; faces at 1 byte
// each), so that the arrays sized by them stay within a small multiple of the file's
// size, a second UV, edge or face count line (one mesh per file), a
// UV or edge range outside its declared count, an edge naming a vertex beyond what the
// file could hold, a face with other than 3 or 4 corners, a face whose "mu" part is
// missing or counts other than its corners, a face edge outside the declared edges, a
// face UV at or past the declared UV count (negative ones mean "no UV"), and a scene
// with UV or face statements but nothing to weld (no UVs, or no face corners). A data
// line that runs out early reads its missing UVs and edges as 0 and its missing faces
// as faces without corners, which are dropped.

#include "foundation/text_writer.h"
#include "foundation/vd_array.h"
#include "foundation/vd_vector.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace neq::uvmerge {

// What the line scan gathers from a scene, and the writing of the new scene from it.

// The kinds of header line. The generated blocks a mark asks for are these bits; the
// edge lines are kept as they are and never reach a mark.
enum HeaderMode : unsigned {
    kNoMode = 0,
    kUvCountMode = 1,
    kUvDataMode = 2,
    kEdgeCountMode = 4,
    kEdgeDataMode = 8,
    kFaceCountMode = 16,
    kFaceDataMode = 32,
};

// The output in file order: runs of kept text [begin, end) of the input, and marks
// (flags != 0) where the generated blocks named by the flags go.
struct ScenePiece {
    std::size_t begin = 0, end = 0;
    unsigned flags = 0;
};

struct SceneData {
    VDArray<VDVector2f> uvs; // declared count; after the weld, the welded UVs
    VDArray<int> edges;      // two vertices per edge
    VDArray<int> faceEdges;  // four slots per face; a triangle's fourth is the sentinel
    VDArray<int> faceUVs;    // four slots per face; a triangle's fourth is -1
    std::vector<ScenePiece> pieces;
    bool hasMark = false;

    // The fourth edge slot of a triangle: the edge count, one past every edge number.
    int sentinel() const { return static_cast<int>(edges.size() / 2); }
    std::size_t faceCount() const { return faceEdges.size() / 4; }
};

// Writes the new scene: the kept text, and at each mark the blocks it asks for that no
// earlier mark wrote, in the order UV count, UVs, face count, faces. False when the
// sink failed.
bool writeScene(const SceneData& scene, std::string_view input, TextSink& sink);

struct MayaUvRewrite {
    bool ok = false;
    std::string text;          // the rewritten scene, when ok (rewriteMayaUvs only)
    std::string refusal;       // when not ok: the reason in words, "line N: ..." when a line has it
    bool welded = false;       // false when the scene had no UV or face statement to replace
    std::size_t uvsBefore = 0; // the declared UV count
    std::size_t uvsAfter = 0;
    std::size_t faces = 0;
    std::size_t triangles = 0;
};

// A scene read and welded, ready to be written out in pieces, so that the new text
// never needs to be held whole. It refers to the scene's bytes, which must outlive it.
class MayaSceneWeld {
  public:
    explicit MayaSceneWeld(std::string_view scene);
    MayaSceneWeld(const MayaSceneWeld&) = delete;
    MayaSceneWeld& operator=(const MayaSceneWeld&) = delete;
    ~MayaSceneWeld();

    // Whether the scene is accepted, the refusal, and the weld's counts (no text).
    const MayaUvRewrite& outcome() const { return outcome_; }
    // Writes the rewritten scene of an accepted scene; false when the sink failed.
    bool write(TextSink& sink) const;

  private:
    std::string_view input_;
    std::unique_ptr<SceneData> scene_;
    MayaUvRewrite outcome_;
};

// The whole rewrite, with the new text in the result.
MayaUvRewrite rewriteMayaUvs(std::string_view scene);

// Calls block(start, last) for each block of at most `perBlock` entries out of `count`:
// the blocks Maya ASCII array statements are written in.
template <class Block> void forEachBlock(std::size_t count, std::size_t perBlock, Block block) {
    for (std::size_t start = 0; start < count; start += perBlock)
        block(start, std::min(start + perBlock, count) - 1);
}

// "\tsetAttr \"NAME[start:last]\"" and the rest of a block's header line.
void blockHeader(TextWriter& out, const char* name, std::size_t start, std::size_t last,
                 const char* rest);

} // namespace neq::uvmerge
