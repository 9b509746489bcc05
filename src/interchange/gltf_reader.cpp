// glTF 2.0 in: the triangle primitives of the first mesh, one polygroup each, or the
// original faces, vertices and group ids when neqbridge wrote the file.

#include "interchange/gltf_layout.h"
#include "interchange/mesh.h"

#include "foundation/file_io.h"

#include <tiny_gltf.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace neq::interchange {

namespace {

// Images are not part of a mesh: never decoded.
bool skipImage(tinygltf::Image*, const int, std::string*, std::string*, int, int,
               const unsigned char*, int, void*) {
    return true;
}

class GltfReader {
  public:
    GltfReader(const tinygltf::Model& model, const std::string& name, ReadReport* report)
        : model_(model), name_(name), report_(report) {}

    Mesh read() {
        if (model_.meshes.empty()) fail("the file holds no mesh");
        const tinygltf::Mesh& mesh = model_.meshes[0];
        // Value::Get asserts an object: extras are often absent or of another type.
        if (mesh.extras.IsObject() && mesh.extras.Has(gltf::kExtrasKey)) {
            const tinygltf::Value& own = mesh.extras.Get(gltf::kExtrasKey);
            if (own.IsObject() && !mesh.primitives.empty()) return readOwn(mesh, own);
        }
        return readPrimitives(mesh);
    }

  private:
    [[noreturn]] void fail(const std::string& what) const {
        throw FormatError(name_, "mesh 0", what);
    }

    // A view of bytes in a buffer, checked against the buffer.
    std::string_view viewBytes(int index, const char* what) const {
        if (index < 0 || static_cast<std::size_t>(index) >= model_.bufferViews.size())
            fail(std::string(what) + ": buffer view " + std::to_string(index) + " does not exist");
        const tinygltf::BufferView& view = model_.bufferViews[static_cast<std::size_t>(index)];
        if (view.buffer < 0 || static_cast<std::size_t>(view.buffer) >= model_.buffers.size())
            fail(std::string(what) + ": buffer " + std::to_string(view.buffer) + " does not exist");
        const std::vector<unsigned char>& data =
            model_.buffers[static_cast<std::size_t>(view.buffer)].data;
        if (view.byteOffset > data.size() || view.byteLength > data.size() - view.byteOffset)
            fail(std::string(what) + ": buffer view " + std::to_string(index) +
                 " runs past the end of its buffer");
        return {reinterpret_cast<const char*>(data.data()) + view.byteOffset, view.byteLength};
    }

    // An accessor's elements as floats (normalised integers scaled to 0..1 or -1..1),
    // `components` per element.
    std::vector<float> floats(int index, const char* what, std::size_t components) const {
        if (index < 0 || static_cast<std::size_t>(index) >= model_.accessors.size())
            fail(std::string(what) + ": accessor " + std::to_string(index) + " does not exist");
        const tinygltf::Accessor& accessor = model_.accessors[static_cast<std::size_t>(index)];
        if (accessor.sparse.isSparse) fail(std::string(what) + ": sparse accessors are not read");
        const int have =
            tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(accessor.type));
        const int size =
            tinygltf::GetComponentSizeInBytes(static_cast<std::uint32_t>(accessor.componentType));
        if (have <= 0 || size <= 0 ||
            (components != 0 && static_cast<std::size_t>(have) < components))
            fail(std::string(what) + ": accessor " + std::to_string(index) + " has the wrong type");
        const std::size_t per = components ? components : static_cast<std::size_t>(have);
        std::vector<float> out(accessor.count * per, 0.0f);
        if (accessor.count == 0 || accessor.bufferView < 0) return out;
        const std::string_view bytes = viewBytes(accessor.bufferView, what);
        const tinygltf::BufferView& view =
            model_.bufferViews[static_cast<std::size_t>(accessor.bufferView)];
        const std::size_t element = static_cast<std::size_t>(have) * static_cast<std::size_t>(size);
        const std::size_t stride = view.byteStride ? view.byteStride : element;
        if (accessor.byteOffset > bytes.size() ||
            (accessor.count - 1) > (bytes.size() - accessor.byteOffset) / stride ||
            (accessor.count - 1) * stride + element > bytes.size() - accessor.byteOffset)
            fail(std::string(what) + ": accessor " + std::to_string(index) +
                 " runs past the end of its buffer view");
        const char* base = bytes.data() + accessor.byteOffset;
        for (std::size_t i = 0; i < accessor.count; ++i)
            for (std::size_t c = 0; c < per; ++c)
                out[i * per + c] = component(base + i * stride + c * static_cast<std::size_t>(size),
                                             accessor.componentType, accessor.normalized);
        return out;
    }

    static float component(const char* p, int type, bool normalized) {
        switch (type) {
        case TINYGLTF_COMPONENT_TYPE_FLOAT: {
            float value;
            std::memcpy(&value, p, 4);
            return value;
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE: {
            const auto value = static_cast<std::uint8_t>(*p);
            return normalized ? value / 255.0f : value;
        }
        case TINYGLTF_COMPONENT_TYPE_BYTE: {
            const auto value = static_cast<std::int8_t>(*p);
            return normalized ? std::max(value / 127.0f, -1.0f) : value;
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: {
            std::uint16_t value;
            std::memcpy(&value, p, 2);
            return normalized ? value / 65535.0f : value;
        }
        case TINYGLTF_COMPONENT_TYPE_SHORT: {
            std::int16_t value;
            std::memcpy(&value, p, 2);
            return normalized ? std::max(value / 32767.0f, -1.0f) : value;
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT: {
            std::uint32_t value;
            std::memcpy(&value, p, 4);
            return static_cast<float>(value);
        }
        default:
            return 0.0f;
        }
    }

    // Indices are read exactly, not through floats.
    std::vector<std::uint32_t> indices(int index, std::size_t vertices) const {
        const std::vector<float> asFloats = floats(index, "indices", 1); // checks the index
        const tinygltf::Accessor& accessor = model_.accessors[static_cast<std::size_t>(index)];
        if (accessor.componentType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE &&
            accessor.componentType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT &&
            accessor.componentType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT)
            fail("indices: accessor " + std::to_string(index) + " has component type " +
                 std::to_string(accessor.componentType) + ", not an unsigned integer type");
        std::vector<std::uint32_t> out(asFloats.size());
        if (accessor.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT) {
            const std::string_view bytes = viewBytes(accessor.bufferView, "indices");
            const tinygltf::BufferView& view =
                model_.bufferViews[static_cast<std::size_t>(accessor.bufferView)];
            const std::size_t stride = view.byteStride ? view.byteStride : 4;
            for (std::size_t i = 0; i < out.size(); ++i)
                std::memcpy(&out[i], bytes.data() + accessor.byteOffset + i * stride, 4);
        } else {
            for (std::size_t i = 0; i < out.size(); ++i)
                out[i] = static_cast<std::uint32_t>(asFloats[i]);
        }
        for (std::uint32_t v : out)
            if (v >= vertices)
                fail("indices: vertex " + std::to_string(v) + " of " + std::to_string(vertices));
        return out;
    }

    static std::uint8_t toByte(float value) {
        const float scaled = std::nearbyint(value * 255.0f);
        return static_cast<std::uint8_t>(scaled >= 255.0f ? 255 : scaled > 0.0f ? scaled : 0);
    }

    static int attribute(const tinygltf::Primitive& primitive, const char* name) {
        const auto found = primitive.attributes.find(name);
        return found == primitive.attributes.end() ? -1 : found->second;
    }

    // The attributes of one primitive, per glTF vertex.
    struct Vertices {
        std::vector<float> positions, uvs, colors;
    };
    Vertices vertices(const tinygltf::Primitive& primitive) const {
        Vertices out;
        const int position = attribute(primitive, "POSITION");
        if (position < 0) fail("a primitive has no POSITION");
        out.positions = floats(position, "POSITION", 3);
        const std::size_t count = out.positions.size() / 3;
        if (const int uv = attribute(primitive, "TEXCOORD_0"); uv >= 0) {
            out.uvs = floats(uv, "TEXCOORD_0", 2);
            if (out.uvs.size() != count * 2) fail("TEXCOORD_0: not one per vertex");
            for (std::size_t i = 1; i < out.uvs.size(); i += 2)
                out.uvs[i] = 1.0f - out.uvs[i];
        }
        if (const int color = attribute(primitive, "COLOR_0"); color >= 0) {
            out.colors = floats(color, "COLOR_0", 3);
            if (out.colors.size() != count * 3) fail("COLOR_0: not one per vertex");
        }
        return out;
    }

    template <class T> std::vector<T> ownArray(const tinygltf::Value& own, const char* key) const {
        const tinygltf::Value& index = own.Get(key);
        if (!index.IsInt()) fail(std::string("extras: no ") + key + " view");
        const std::string_view bytes = viewBytes(index.GetNumberAsInt(), key);
        if (bytes.size() % sizeof(T)) fail(std::string("extras: ") + key + " view of odd length");
        std::vector<T> out(bytes.size() / sizeof(T));
        if (!out.empty()) std::memcpy(out.data(), bytes.data(), bytes.size());
        return out;
    }

    Mesh readOwn(const tinygltf::Mesh& gltfMesh, const tinygltf::Value& own) const {
        const Vertices split = vertices(gltfMesh.primitives[0]);
        const std::size_t count = split.positions.size() / 3;
        const std::vector<std::uint32_t> meshVertex = ownArray<std::uint32_t>(own, gltf::kVertices);
        const std::vector<std::int32_t> corners = ownArray<std::int32_t>(own, gltf::kFaces);
        if (meshVertex.size() != count) fail("extras: vertices: not one per glTF vertex");
        if (corners.size() % 4) fail("extras: faces: not four corners per face");
        std::size_t vertexCount = 0;
        for (std::uint32_t v : meshVertex)
            vertexCount = std::max<std::size_t>(vertexCount, std::size_t{v} + 1);
        if (vertexCount > count) fail("extras: vertices: a mesh vertex beyond the glTF vertices");
        Mesh mesh;
        mesh.positions.resize(vertexCount * 3);
        if (!split.colors.empty()) mesh.colors.resize(vertexCount * 3);
        for (std::size_t k = 0; k < count; ++k) {
            const std::size_t v = meshVertex[k];
            std::memcpy(&mesh.positions[v * 3], &split.positions[k * 3], 3 * sizeof(float));
            if (!split.colors.empty())
                for (int c = 0; c < 3; ++c)
                    mesh.colors[v * 3 + static_cast<std::size_t>(c)] =
                        toByte(split.colors[k * 3 + static_cast<std::size_t>(c)]);
        }
        mesh.faces.resize(corners.size());
        if (!split.uvs.empty()) mesh.uvs.assign(corners.size() * 2, 0.0f);
        for (std::size_t c = 0; c < corners.size(); ++c) {
            const std::int32_t k = corners[c];
            if (k < 0 && c % 4 == 3) {
                mesh.faces[c] = -1;
                continue;
            }
            if (k < 0 || static_cast<std::size_t>(k) >= count)
                fail("extras: faces: corner " + std::to_string(c) + " names glTF vertex " +
                     std::to_string(k) + " of " + std::to_string(count));
            mesh.faces[c] = static_cast<std::int32_t>(meshVertex[static_cast<std::size_t>(k)]);
            if (!split.uvs.empty()) {
                mesh.uvs[c * 2] = split.uvs[static_cast<std::size_t>(k) * 2];
                mesh.uvs[c * 2 + 1] = split.uvs[static_cast<std::size_t>(k) * 2 + 1];
            }
        }
        if (own.Has(gltf::kGroups)) {
            mesh.groups = ownArray<std::int16_t>(own, gltf::kGroups);
            if (mesh.groups.size() != mesh.faceCount()) fail("extras: groups: not one per face");
        }
        return mesh;
    }

    Mesh readPrimitives(const tinygltf::Mesh& gltfMesh) const {
        Mesh mesh;
        bool anyUv = false, anyColor = false;
        std::vector<float> faceUvs;
        std::size_t skipped = 0;
        for (std::size_t p = 0; p < gltfMesh.primitives.size(); ++p) {
            const tinygltf::Primitive& primitive = gltfMesh.primitives[p];
            if (primitive.mode != TINYGLTF_MODE_TRIANGLES && primitive.mode != -1) {
                ++skipped;
                continue;
            }
            if (p > std::size_t{INT16_MAX}) fail("more primitives than polygroup ids");
            const Vertices split = vertices(primitive);
            const std::size_t first = mesh.vertexCount();
            const std::size_t count = split.positions.size() / 3;
            if (first + count > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
                fail("too many vertices");
            mesh.positions.insert(mesh.positions.end(), split.positions.begin(),
                                  split.positions.end());
            if (!split.colors.empty() && !anyColor) {
                mesh.colors.assign(first * 3, 255);
                anyColor = true;
            }
            if (anyColor)
                for (std::size_t i = 0; i < count * 3; ++i)
                    mesh.colors.push_back(split.colors.empty() ? 255 : toByte(split.colors[i]));
            std::vector<std::uint32_t> corners;
            if (primitive.indices >= 0) {
                corners = indices(primitive.indices, count);
            } else {
                corners.resize(count);
                for (std::size_t i = 0; i < count; ++i)
                    corners[i] = static_cast<std::uint32_t>(i);
            }
            if (corners.size() % 3)
                fail("a triangle primitive's index count is not a multiple of 3");
            anyUv = anyUv || !split.uvs.empty();
            for (std::size_t t = 0; t < corners.size(); t += 3) {
                for (int c = 0; c < 3; ++c) {
                    const std::uint32_t k = corners[t + static_cast<std::size_t>(c)];
                    mesh.faces.push_back(static_cast<std::int32_t>(first + k));
                    faceUvs.push_back(split.uvs.empty() ? 0.0f : split.uvs[std::size_t{k} * 2]);
                    faceUvs.push_back(split.uvs.empty() ? 0.0f : split.uvs[std::size_t{k} * 2 + 1]);
                }
                mesh.faces.push_back(-1);
                faceUvs.push_back(0.0f);
                faceUvs.push_back(0.0f);
                mesh.groups.push_back(static_cast<std::int16_t>(p));
            }
        }
        if (anyColor) mesh.colors.resize(mesh.positions.size(), 255);
        if (anyUv) mesh.uvs = std::move(faceUvs);
        if (report_) report_->skippedStatements = skipped;
        return mesh;
    }

    const tinygltf::Model& model_;
    const std::string& name_;
    ReadReport* report_;
};

} // namespace

Mesh readGltf(std::string_view bytes, const std::string& name, ReadReport* report) {
    if (bytes.size() > std::numeric_limits<unsigned int>::max())
        throw FormatError(name, "offset 0", "the file is too large for the glTF reader");
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(skipImage, nullptr);
    tinygltf::Model model;
    std::string error, warning;
    const bool binary = bytes.size() >= 4 && bytes.substr(0, 4) == "glTF";
    const std::string folder = files::folderOf(name);
    const bool loaded =
        binary ? loader.LoadBinaryFromMemory(&model, &error, &warning,
                                             reinterpret_cast<const unsigned char*>(bytes.data()),
                                             static_cast<unsigned int>(bytes.size()), folder)
               : loader.LoadASCIIFromString(&model, &error, &warning, bytes.data(),
                                            static_cast<unsigned int>(bytes.size()), folder);
    if (!loaded) {
        while (!error.empty() && (error.back() == '\n' || error.back() == ' '))
            error.pop_back();
        throw FormatError(name, binary ? "glb" : "glTF", error.empty() ? "not a glTF file" : error);
    }
    return GltfReader(model, name, report).read();
}

} // namespace neq::interchange
