// The mesh model's own checks, errors and transformations.

#include "interchange/mesh.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace neq::interchange {

namespace {

std::string sizeProblem(const char* array, std::size_t size, std::size_t per, const char* unit,
                        std::size_t count, const char* of) {
    return std::string(array) + ": " + std::to_string(size) + " values, not " +
           std::to_string(per) + " per " + unit + " for " + std::to_string(count) + " " + of;
}

} // namespace

void validate(const MeshView& mesh) {
    if (mesh.positions.size % 3 != 0)
        throw std::invalid_argument("positions: " + std::to_string(mesh.positions.size) +
                                    " values, not a multiple of 3");
    if (mesh.faces.size % 4 != 0)
        throw std::invalid_argument("faces: " + std::to_string(mesh.faces.size) +
                                    " values, not a multiple of 4");
    const std::size_t vertices = mesh.vertexCount();
    const std::size_t faces = mesh.faceCount();
    if (!mesh.uvs.empty() && mesh.uvs.size != faces * 8)
        throw std::invalid_argument(sizeProblem("uvs", mesh.uvs.size, 8, "face", faces, "faces"));
    if (!mesh.colors.empty() && mesh.colors.size != vertices * 3)
        throw std::invalid_argument(
            sizeProblem("colors", mesh.colors.size, 3, "vertex", vertices, "vertices"));
    if (!mesh.groups.empty() && mesh.groups.size != faces)
        throw std::invalid_argument(
            sizeProblem("groups", mesh.groups.size, 1, "face", faces, "faces"));
    // Face by face, without a division per index: this pass runs before every write.
    const std::int32_t* corners = mesh.faces.data;
    for (std::size_t face = 0; face < faces; ++face, corners += 4) {
        bool inside = corners[3] < 0 || static_cast<std::size_t>(corners[3]) < vertices;
        for (int c = 0; c < 3; ++c)
            inside &= corners[c] >= 0 && static_cast<std::size_t>(corners[c]) < vertices;
        if (inside) continue;
        for (int c = 0; c < 4; ++c) {
            const std::int32_t index = corners[c];
            if (c == 3 && index < 0) continue;
            if (index < 0 || static_cast<std::size_t>(index) >= vertices)
                throw std::invalid_argument(
                    "faces: face " + std::to_string(face) + " corner " + std::to_string(c) +
                    " names vertex " + std::to_string(index) + " of " + std::to_string(vertices));
        }
    }
}

FormatError::FormatError(std::string file, std::string where, std::string what)
    : std::runtime_error(file + ": " + where + ": " + what), file_(std::move(file)),
      where_(std::move(where)), reason_(std::move(what)) {}

FileError::FileError(std::string path, int error)
    : FileError(std::move(path), error, std::strerror(error)) {}

FileError::FileError(std::string path, int error, std::string reason)
    : std::runtime_error(path + ": " + reason), path_(std::move(path)), error_(error) {}

std::optional<Format> formatOfPath(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.rfind('/');
    if (dot == std::string_view::npos || (slash != std::string_view::npos && dot < slash))
        return std::nullopt;
    std::string extension(path.substr(dot + 1));
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (extension == "neq") return Format::neq;
    if (extension == "obj") return Format::obj;
    if (extension == "glb") return Format::glb;
    if (extension == "gltf") return Format::gltf;
    return std::nullopt;
}

void apply(Mesh& mesh, const Transform& transform) {
    const float sx = transform.flipX ? -1.0f : 1.0f;
    const float sy = transform.flipY ? -1.0f : 1.0f;
    const float sz = transform.flipZ ? -1.0f : 1.0f;
    if (sx < 0 || sy < 0 || sz < 0 || transform.switchYZ) {
        for (std::size_t i = 0; i + 2 < mesh.positions.size(); i += 3) {
            float* p = &mesh.positions[i];
            p[0] *= sx;
            p[1] *= sy;
            p[2] *= sz;
            if (transform.switchYZ) std::swap(p[1], p[2]);
        }
    }
    if (transform.flipNormals) {
        // The first corner stays; the others run the other way round.
        for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
            std::int32_t* f = &mesh.faces[face * 4];
            const bool triangle = f[3] < 0;
            const int last = triangle ? 2 : 3;
            std::swap(f[1], f[last]);
            if (!mesh.uvs.empty()) {
                float* uv = &mesh.uvs[face * 8];
                std::swap(uv[2], uv[2 * last]);
                std::swap(uv[3], uv[2 * last + 1]);
            }
        }
    }
    if (!transform.keepGroups) mesh.groups.clear();
    if (!transform.keepColors) mesh.colors.clear();
    if (!transform.keepUvs) mesh.uvs.clear();
}

Transform inverse(const Transform& transform) {
    // Forward is switch(flip(p)); its inverse flip(switch(p)) is a switch after the flips
    // with the Y and Z flips exchanged. What was dropped cannot come back.
    Transform undo;
    undo.flipX = transform.flipX;
    undo.flipY = transform.switchYZ ? transform.flipZ : transform.flipY;
    undo.flipZ = transform.switchYZ ? transform.flipY : transform.flipZ;
    undo.switchYZ = transform.switchYZ;
    undo.flipNormals = transform.flipNormals;
    return undo;
}

} // namespace neq::interchange
