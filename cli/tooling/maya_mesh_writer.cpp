#include "tooling/maya_mesh_writer.h"

#include "foundation/text_writer.h"
#include "uvmerge/maya_uv_rewrite.h"

#include <cstdint>
#include <unordered_map>

namespace neq::uvmerge {
namespace {

constexpr std::size_t kEntriesPerBlock = 500;

// The mesh as the rewrite holds it: per-corner UVs, edges, and four slots per face.
SceneData meshScene(const meshfile::Mesh& mesh) {
    SceneData scene;
    std::unordered_map<std::uint64_t, int> edgeOf; // (from, to) as first used
    edgeOf.reserve(mesh.faces.size() * 2);
    const auto key = [](std::int32_t from, std::int32_t to) {
        return std::uint64_t{static_cast<std::uint32_t>(from)} << 32 |
               static_cast<std::uint32_t>(to);
    };
    for (std::size_t f = 0; f < mesh.faces.size(); ++f) {
        const auto& face = mesh.faces[f];
        const int corners = face[3] < 0 ? 3 : 4;
        for (int k = 0; k < corners; ++k) {
            const std::int32_t from = face[k], to = face[(k + 1) % corners];
            const auto reverse = edgeOf.find(key(to, from));
            if (reverse != edgeOf.end()) {
                scene.faceEdges.push_back(-(reverse->second + 1));
            } else {
                const auto added = edgeOf.emplace(key(from, to), scene.sentinel());
                if (added.second) scene.edges.insert(scene.edges.end(), {from, to});
                scene.faceEdges.push_back(added.first->second);
            }
            scene.faceUVs.push_back(static_cast<int>(scene.uvs.size()));
            if (f < mesh.uvs.size())
                scene.uvs.push_back({mesh.uvs[f][2 * k], mesh.uvs[f][2 * k + 1]});
            else
                scene.uvs.push_back({});
        }
        if (corners == 3) {
            scene.faceEdges.push_back(-1); // the sentinel, set once all edges are known
            scene.faceUVs.push_back(-1);
        }
    }
    for (std::size_t f = 0; f < mesh.faces.size(); ++f)
        if (mesh.faces[f][3] < 0) scene.faceEdges[4 * f + 3] = scene.sentinel();
    return scene;
}

void writeVertices(TextWriter& out, const meshfile::Mesh& mesh) {
    out.append("\tsetAttr -s ");
    out.number(static_cast<long long>(mesh.vertices.size()));
    out.append(" \".vt\";\n");
    forEachBlock(mesh.vertices.size(), kEntriesPerBlock, [&](std::size_t start, std::size_t last) {
        blockHeader(out, ".vt", start, last, " -type \"float3\"\n");
        for (std::size_t i = start; i <= last; ++i)
            for (float c : mesh.vertices[i]) {
                char* p = out.reserve(1 + kMaxFloatGChars);
                *p++ = ' ';
                out.commit(formatFloatG(p, c));
            }
        out.append(";\n");
    });
}

void writeEdges(TextWriter& out, const VDArray<int>& edges) {
    const std::size_t count = edges.size() / 2;
    out.append("\tsetAttr -s ");
    out.number(static_cast<long long>(count));
    out.append(" \".ed\";\n");
    forEachBlock(count, kEntriesPerBlock, [&](std::size_t start, std::size_t last) {
        blockHeader(out, ".ed", start, last, "\n");
        for (std::size_t i = start; i <= last; ++i) {
            out.append(" ");
            out.number(edges[2 * i]);
            out.append(" ");
            out.number(edges[2 * i + 1]);
            out.append(" 0");
        }
        out.append(";\n");
    });
}

std::string withCrLf(const std::string& text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (char c : text) {
        if (c == '\n') out += '\r';
        out += c;
    }
    return out;
}

} // namespace

std::string buildMayaScene(const meshfile::Mesh& mesh, const MayaSceneOptions& options) {
    SceneData scene = meshScene(mesh);
    const std::string& name = options.name;
    // The text the scene keeps, with marks where the UV and face statements go.
    std::string kept =
        "//Maya ASCII 2016 scene\n//Name: " + name + ".ma\n" +
        "requires maya \"2016\";\ncreateNode transform -n \"" + name + "\";\n" +
        "\tsetAttr \".t\" -type \"double3\" 0 0 0 ;\n" +
        "\tsetAttr \".r\" -type \"double3\" 0 0 0 ;\n" +
        "\tsetAttr \".s\" -type \"double3\" 1 1 1 ;\n" + "createNode mesh -n \"" + name +
        "Shape\" -p \"" + name + "\";\n" +
        "\tsetAttr -k off \".v\";\n\tsetAttr \".vir\" yes;\n\tsetAttr \".vif\" yes;\n";
    scene.pieces.push_back({0, kept.size(), 0});
    scene.pieces.push_back({0, 0, kUvCountMode | kUvDataMode});
    const std::size_t middle = kept.size();
    StringSink keptSink(kept);
    TextWriter out(keptSink, TextWriter::kCachedBufferSize);
    out.append("\tsetAttr \".cuvs\" -type \"string\" \"map1\";\n");
    out.append("\tsetAttr \".dcc\" -type \"string\" \"Ambient+Diffuse\";\n");
    writeVertices(out, mesh);
    writeEdges(out, scene.edges);
    out.flush();
    scene.pieces.push_back({middle, kept.size(), 0});
    scene.pieces.push_back({0, 0, kFaceCountMode | kFaceDataMode});
    const std::size_t tail = kept.size();
    kept += "\tsetAttr \".cd\" -type \"dataPolyComponent\" Index_Data Edge 0 ;\n// End of " + name +
            ".ma\n";
    scene.pieces.push_back({tail, kept.size(), 0});
    scene.hasMark = true;

    std::string text;
    StringSink textSink(text);
    writeScene(scene, kept, textSink);
    return options.crlf ? withCrLf(text) : text;
}

} // namespace neq::uvmerge
