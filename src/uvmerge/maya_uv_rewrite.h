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

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace neq::uvmerge {

struct SceneData;

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

} // namespace neq::uvmerge
