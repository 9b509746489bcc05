// glTF 2.0 out: one vertex per distinct (vertex, UV) pair of corners, quads as two
// triangles, one primitive per polygroup; the original faces and group ids ride along in
// the mesh's extras so that reading the file back gives them again.

#include "interchange/gltf_layout.h"
#include "interchange/mesh.h"

#include "uvmerge/vd_uv_merge_algo.h"

#include <nlohmann/json.hpp>
#include <tiny_gltf.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <sstream>

namespace neq::interchange {

namespace {

constexpr int kArrayBuffer = 34962;
constexpr int kElementArrayBuffer = 34963;

// The corners of every face as glTF vertices, and the mesh vertex of each glTF vertex.
struct Split {
    std::vector<std::int32_t> cornerVertex; // four per face, -1 for a triangle's fourth
    std::vector<std::uint32_t> meshVertex;  // one per glTF vertex
    std::vector<float> uvs;                 // (u, v) per glTF vertex, when the mesh has UVs
};

// Corners of one vertex with the same UV become one glTF vertex: the UV weld's own
// numbering. Vertices that no face uses follow, so that none is lost.
Split splitVertices(const Mesh& mesh) {
    Split split;
    const std::size_t corners = mesh.faces.size();
    const std::size_t vertices = mesh.vertexCount();
    if (mesh.uvs.empty()) {
        split.cornerVertex = mesh.faces;
        split.meshVertex.resize(vertices);
        for (std::size_t v = 0; v < vertices; ++v)
            split.meshVertex[v] = static_cast<std::uint32_t>(v);
        return split;
    }
    if (corners > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::invalid_argument("faces: too many corners for a glTF file");
    VDArray<VDVector2f> uvs(corners);
    std::memcpy(static_cast<void*>(uvs.data()), mesh.uvs.data(), corners * sizeof(VDVector2f));
    VDArray<int> numbers;
    const VDArray<int> cornerVertices(mesh.faces.begin(), mesh.faces.end());
    std::vector<bool> used(vertices, false);
    for (std::int32_t v : mesh.faces)
        if (v >= 0) used[static_cast<std::size_t>(v)] = true;
    if (corners != 0 &&
        !VDUVMergeAlgo::mergeUVs(uvs, numbers, cornerVertices, static_cast<int>(vertices)))
        throw std::invalid_argument("faces: the corners cannot be welded");
    split.cornerVertex.assign(numbers.begin(), numbers.end());
    split.meshVertex.resize(uvs.size());
    for (std::size_t c = 0; c < corners; ++c)
        if (numbers[c] >= 0)
            split.meshVertex[static_cast<std::size_t>(numbers[c])] =
                static_cast<std::uint32_t>(mesh.faces[c]);
    split.uvs.reserve((uvs.size() + vertices) * 2);
    for (const VDVector2f& uv : uvs) {
        split.uvs.push_back(uv.x);
        split.uvs.push_back(uv.y);
    }
    for (std::size_t v = 0; v < vertices; ++v) {
        if (used[v]) continue;
        split.meshVertex.push_back(static_cast<std::uint32_t>(v));
        split.uvs.push_back(0.0f);
        split.uvs.push_back(0.0f);
    }
    return split;
}

class ModelBuilder {
  public:
    explicit ModelBuilder(tinygltf::Model& model) : model_(model) { model_.buffers.resize(1); }

    // Appends bytes to the one buffer as a view of their own (4-byte aligned).
    int view(const void* data, std::size_t size, int target, int stride = 0) {
        std::vector<unsigned char>& buffer = model_.buffers[0].data;
        const std::size_t offset = buffer.size();
        buffer.resize(offset + ((size + 3) & ~std::size_t{3}), 0);
        if (size) std::memcpy(buffer.data() + offset, data, size);
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = offset;
        view.byteLength = size;
        view.byteStride = static_cast<std::size_t>(stride);
        view.target = target;
        model_.bufferViews.push_back(view);
        return static_cast<int>(model_.bufferViews.size() - 1);
    }

    int accessor(int view, std::size_t offset, std::size_t count, int componentType, int type,
                 bool normalized = false) {
        tinygltf::Accessor accessor;
        accessor.bufferView = view;
        accessor.byteOffset = offset;
        accessor.count = count;
        accessor.componentType = componentType;
        accessor.type = type;
        accessor.normalized = normalized;
        model_.accessors.push_back(accessor);
        return static_cast<int>(model_.accessors.size() - 1);
    }

  private:
    tinygltf::Model& model_;
};

void positionBounds(const std::vector<float>& xyz, tinygltf::Accessor& accessor) {
    accessor.minValues.assign(3, 0.0);
    accessor.maxValues.assign(3, 0.0);
    for (std::size_t i = 0; i < xyz.size(); ++i) {
        const double value = xyz[i];
        double& low = accessor.minValues[i % 3];
        double& high = accessor.maxValues[i % 3];
        if (i < 3 || value < low) low = value;
        if (i < 3 || value > high) high = value;
    }
}

tinygltf::Model buildModel(const Mesh& mesh) {
    validate(mesh);
    if (mesh.faceCount() == 0)
        throw std::invalid_argument("faces: a glTF mesh needs at least one face");
    const Split split = splitVertices(mesh);
    const std::size_t count = split.meshVertex.size();

    tinygltf::Model model;
    model.asset.version = "2.0";
    model.asset.generator = "neqbridge";
    ModelBuilder builder(model);

    std::vector<float> positions(count * 3);
    for (std::size_t k = 0; k < count; ++k)
        std::memcpy(&positions[k * 3], &mesh.positions[split.meshVertex[k] * 3], 3 * sizeof(float));
    tinygltf::Primitive shape;
    shape.mode = TINYGLTF_MODE_TRIANGLES;
    shape.attributes["POSITION"] =
        builder.accessor(builder.view(positions.data(), positions.size() * 4, kArrayBuffer), 0,
                         count, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3);
    positionBounds(positions, model.accessors.back());
    if (!mesh.uvs.empty()) {
        std::vector<float> uvs = split.uvs;
        for (std::size_t k = 1; k < uvs.size(); k += 2) // glTF's v runs downwards
            uvs[k] = 1.0f - uvs[k];
        shape.attributes["TEXCOORD_0"] =
            builder.accessor(builder.view(uvs.data(), uvs.size() * 4, kArrayBuffer), 0, count,
                             TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC2);
    }
    if (!mesh.colors.empty()) {
        // Attributes start on 4-byte boundaries: one padding byte per colour.
        std::vector<std::uint8_t> rgb(count * 4, 0);
        for (std::size_t k = 0; k < count; ++k)
            std::memcpy(&rgb[k * 4], &mesh.colors[split.meshVertex[k] * 3], 3);
        shape.attributes["COLOR_0"] =
            builder.accessor(builder.view(rgb.data(), rgb.size(), kArrayBuffer, 4), 0, count,
                             TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE, TINYGLTF_TYPE_VEC3, true);
    }

    // Triangles grouped by polygroup, groups in the order of their first face.
    std::map<std::int16_t, std::size_t> groupOrder;
    std::vector<std::vector<std::uint32_t>> triangles;
    for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
        const std::int16_t group = mesh.groups.empty() ? 0 : mesh.groups[face];
        const auto found = groupOrder.emplace(group, triangles.size());
        if (found.second) triangles.emplace_back();
        std::vector<std::uint32_t>& out = triangles[found.first->second];
        const std::int32_t* c = &split.cornerVertex[face * 4];
        const auto u = [](std::int32_t v) { return static_cast<std::uint32_t>(v); };
        out.insert(out.end(), {u(c[0]), u(c[1]), u(c[2])});
        if (c[3] >= 0) out.insert(out.end(), {u(c[0]), u(c[2]), u(c[3])});
    }
    std::vector<std::uint32_t> indices;
    std::vector<std::size_t> starts;
    for (const std::vector<std::uint32_t>& group : triangles) {
        starts.push_back(indices.size());
        indices.insert(indices.end(), group.begin(), group.end());
    }
    const int indexView = builder.view(indices.data(), indices.size() * 4, kElementArrayBuffer);
    tinygltf::Mesh gltfMesh;
    for (std::size_t g = 0; g < triangles.size(); ++g) {
        tinygltf::Primitive primitive = shape;
        primitive.indices =
            builder.accessor(indexView, starts[g] * 4, triangles[g].size(),
                             TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR);
        gltfMesh.primitives.push_back(primitive);
    }

    tinygltf::Value::Object own;
    own[gltf::kVertices] =
        tinygltf::Value(builder.view(split.meshVertex.data(), split.meshVertex.size() * 4, 0));
    own[gltf::kFaces] =
        tinygltf::Value(builder.view(split.cornerVertex.data(), split.cornerVertex.size() * 4, 0));
    if (!mesh.groups.empty())
        own[gltf::kGroups] =
            tinygltf::Value(builder.view(mesh.groups.data(), mesh.groups.size() * 2, 0));
    tinygltf::Value::Object extras;
    extras[gltf::kExtrasKey] = tinygltf::Value(own);
    gltfMesh.extras = tinygltf::Value(extras);
    model.meshes.push_back(gltfMesh);

    tinygltf::Node node;
    node.mesh = 0;
    model.nodes.push_back(node);
    tinygltf::Scene scene;
    scene.nodes.push_back(0);
    model.scenes.push_back(scene);
    model.defaultScene = 0;
    return model;
}

std::string serialise(const tinygltf::Model& model, bool binary) {
    tinygltf::TinyGLTF writer;
    std::ostringstream out;
    if (!writer.WriteGltfSceneToStream(&model, out, false, binary))
        throw std::runtime_error("glTF: the model could not be serialised");
    return std::move(out).str();
}

} // namespace

std::string writeGlb(const Mesh& mesh) {
    return serialise(buildModel(mesh), true);
}

std::string writeGltf(const Mesh& mesh, const std::string& binName, std::string* bin) {
    tinygltf::Model model = buildModel(mesh);
    if (binName.empty()) return serialise(model, false);
    // Written to a stream, a buffer is always embedded; written with no bytes it is an
    // empty data URI, which then names the side file instead.
    std::vector<unsigned char>& data = model.buffers[0].data;
    const std::size_t size = data.size();
    if (bin) bin->assign(data.begin(), data.end());
    data.clear();
    std::string json = serialise(model, false);
    const std::string empty = "\"byteLength\":0,\"uri\":\"data:application/octet-stream;base64,\"";
    const std::size_t at = json.find(empty);
    if (at == std::string::npos || json.find(empty, at + 1) != std::string::npos)
        throw std::runtime_error("glTF: the buffer could not be named");
    const std::string named =
        "\"byteLength\":" + std::to_string(size) + ",\"uri\":" + nlohmann::json(binName).dump();
    json.replace(at, empty.size(), named);
    return json;
}

} // namespace neq::interchange
