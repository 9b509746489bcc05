#pragma once

// What the rewrite's line scan gathers from a scene, and the writing of the new scene
// from it. Internal to uvmerge.

#include "foundation/text_writer.h"
#include "foundation/vd_array.h"
#include "foundation/vd_vector.h"

#include <algorithm>
#include <cstring>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace neq::uvmerge {

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

// Calls block(start, last) for each block of at most `perBlock` entries out of `count`.
template <class Block> void forEachBlock(std::size_t count, std::size_t perBlock, Block block) {
    for (std::size_t start = 0; start < count; start += perBlock)
        block(start, std::min(start + perBlock, count) - 1);
}

// "\tsetAttr \"NAME[start:last]\"" and the rest of a block's header line.
inline void blockHeader(TextWriter& out, const char* name, std::size_t start, std::size_t last,
                        const char* rest) {
    out.append("\tsetAttr \"");
    out.append(name, std::strlen(name));
    out.append("[");
    out.number(static_cast<long long>(start));
    out.append(":");
    out.number(static_cast<long long>(last));
    out.append("]\"");
    out.append(rest, std::strlen(rest));
}

} // namespace neq::uvmerge
