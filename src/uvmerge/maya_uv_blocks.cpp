// The statements the rewrite generates: the UV count, the UVs in blocks of 250, the
// face count and the faces in blocks of 500.

#include "foundation/text_writer.h"
#include "uvmerge/maya_uv_scene.h"

namespace neq::uvmerge {
namespace {

constexpr std::size_t kUvsPerBlock = 250;
constexpr std::size_t kFacesPerBlock = 500;

void writeUvCount(TextWriter& out, std::size_t count) {
    out.append("\tsetAttr \".uvst[0].uvsn\" -type \"string\" \"map1\";setAttr -s ");
    out.number(static_cast<long long>(count));
    out.append(" \".uvst[0].uvsp\";\n");
}

void writeUvs(TextWriter& out, const VDArray<VDVector2f>& uvs) {
    forEachBlock(uvs.size(), kUvsPerBlock, [&](std::size_t start, std::size_t last) {
        blockHeader(out, ".uvst[0].uvsp", start, last, " -type \"float2\"\n");
        for (std::size_t i = start; i <= last; ++i) {
            char* p = out.reserve(2 * (1 + kMaxFloatFixed5Chars));
            *p++ = ' ';
            p = formatFloatFixed5(p, uvs[i].x);
            *p++ = ' ';
            out.commit(formatFloatFixed5(p, uvs[i].y));
        }
        out.append(";\n");
    });
}

void writeFaceCount(TextWriter& out, std::size_t count) {
    out.append("\tsetAttr -s ");
    out.number(static_cast<long long>(count));
    out.append(" \".fc\";\n");
}

// " f 4 e e e e mu 0 4 t t t t", or with 3 for a triangle (fourth edge slot = sentinel).
char* writeFace(char* p, const int* edges, const int* uvs, int sentinel) {
    const int corners = edges[3] == sentinel ? 3 : 4;
    std::memcpy(p, corners == 3 ? " f 3" : " f 4", 4);
    p += 4;
    for (int i = 0; i < corners; ++i) {
        *p++ = ' ';
        p = formatInt(p, edges[i]);
    }
    std::memcpy(p, corners == 3 ? " mu 0 3" : " mu 0 4", 7);
    p += 7;
    for (int i = 0; i < corners; ++i) {
        *p++ = ' ';
        p = formatInt(p, uvs[i]);
    }
    return p;
}

void writeFaces(TextWriter& out, const SceneData& scene) {
    constexpr std::size_t kMaxFaceChars = 11 + 8 * (1 + kMaxIntChars);
    const int sentinel = scene.sentinel();
    forEachBlock(scene.faceCount(), kFacesPerBlock, [&](std::size_t start, std::size_t last) {
        blockHeader(out, ".fc", start, last, " -type \"polyFaces\"\n");
        for (std::size_t face = start; face <= last; ++face)
            out.commit(writeFace(out.reserve(kMaxFaceChars), &scene.faceEdges[4 * face],
                                 &scene.faceUVs[4 * face], sentinel));
        out.append(";\n");
    });
}

} // namespace

bool writeScene(const SceneData& scene, std::string_view input, TextSink& sink) {
    TextWriter text(sink, TextWriter::kCachedBufferSize);
    unsigned unwritten = kUvCountMode | kUvDataMode | kFaceCountMode | kFaceDataMode;
    for (const ScenePiece& piece : scene.pieces) {
        if (piece.flags == 0) {
            text.append(input.data() + piece.begin, piece.end - piece.begin);
            continue;
        }
        const unsigned blocks = piece.flags & unwritten;
        unwritten &= ~blocks;
        if (blocks & kUvCountMode) writeUvCount(text, scene.uvs.size());
        if (blocks & kUvDataMode) writeUvs(text, scene.uvs);
        if (blocks & kFaceCountMode) writeFaceCount(text, scene.faceCount());
        if (blocks & kFaceDataMode) writeFaces(text, scene);
    }
    return text.flush();
}

} // namespace neq::uvmerge
