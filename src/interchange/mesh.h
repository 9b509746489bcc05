#pragma once

// The whole-mesh model that NeQ files are read into and written from, and the one
// interface of every conversion: NeQ, Wavefront OBJ and glTF 2.0 in and out. The tool's
// `convert`, the Python package and the Blender add-on all go through these functions;
// none of them has a reader or writer of its own.
//
// The arrays are laid out exactly as the Python package hands them out (vertices (N, 3)
// float32, faces (F, 4) int32, uvs (F, 4, 2) float32, colors (N, 3) uint8, groups (F,)
// int16), so that they can be moved into arrays without a copy.
//
// Errors are exceptions: this library is not loaded by the host.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace neq::interchange {

struct Mesh {
    std::vector<float> positions;             // x, y, z per vertex
    std::vector<std::int32_t> faces;          // four 0-based vertex indices per face; a negative
                                              // fourth marks a triangle (written back as -1)
    std::vector<float> uvs;                   // empty, or (u, v) per corner, four corners per face
    std::vector<std::uint8_t> colors;         // empty, or r, g, b per vertex
    std::vector<std::int16_t> groups;         // empty, or one polygroup id per face
    std::array<std::uint8_t, 32> neqHeader{}; // a NeQ file's header, kept NeQ to NeQ

    std::size_t vertexCount() const { return positions.size() / 3; }
    std::size_t faceCount() const { return faces.size() / 4; }
    bool isTriangle(std::size_t face) const { return faces[face * 4 + 3] < 0; }
};

// A mesh's arrays seen where they already are (a Mesh, or NumPy's arrays), so that a
// NeQ file is written from them without a copy. Laid out as Mesh's.
template <class T> struct ArrayView {
    const T* data = nullptr;
    std::size_t size = 0;
    ArrayView() = default;
    ArrayView(const T* values, std::size_t count) : data(values), size(count) {}
    ArrayView(const std::vector<T>& values) : data(values.data()), size(values.size()) {}
    bool empty() const { return size == 0; }
    const T& operator[](std::size_t i) const { return data[i]; }
};

struct MeshView {
    ArrayView<float> positions;
    ArrayView<std::int32_t> faces;
    ArrayView<float> uvs;
    ArrayView<std::uint8_t> colors;
    ArrayView<std::int16_t> groups;
    const std::uint8_t* neqHeader = nullptr; // 32 bytes

    MeshView() = default;
    MeshView(const Mesh& mesh)
        : positions(mesh.positions), faces(mesh.faces), uvs(mesh.uvs), colors(mesh.colors),
          groups(mesh.groups), neqHeader(mesh.neqHeader.data()) {}
    std::size_t vertexCount() const { return positions.size / 3; }
    std::size_t faceCount() const { return faces.size / 4; }
};

// Checks the arrays against each other: sizes that fit the counts, face indices inside
// the vertices (the first three never negative). Throws std::invalid_argument naming
// the array ("faces: face 12 corner 2 names vertex 900 of 800").
void validate(const MeshView& mesh);

// A malformed input: `file` is the path as given, `where` "offset 48" or "line 12",
// `what` the reason. what() is "FILE: WHERE: WHAT".
class FormatError : public std::runtime_error {
  public:
    FormatError(std::string file, std::string where, std::string what);
    const std::string& file() const { return file_; }
    const std::string& where() const { return where_; }
    const std::string& reason() const { return reason_; }

  private:
    std::string file_, where_, reason_;
};

// The operating system refused: `error` is the errno value, what() is
// "PATH: REASON IN WORDS".
class FileError : public std::runtime_error {
  public:
    FileError(std::string path, int error);
    FileError(std::string path, int error, std::string reason); // reason in words of its own
    const std::string& path() const { return path_; }
    int error() const { return error_; }

  private:
    std::string path_;
    int error_;
};

enum class Format { neq, obj, glb, gltf };

// The format an extension names (".NeQ" in any case, ".obj", ".glb", ".gltf"), or none.
std::optional<Format> formatOfPath(std::string_view path);

// What a reader met and passed over, for the tool's status lines.
struct ReadReport {
    std::size_t splitPolygons = 0;       // OBJ polygons of more than four corners, fanned
    std::size_t skippedStatements = 0;   // OBJ statements read past (mtllib, s, l, ...)
    std::vector<std::string> groupNames; // name of each polygroup id, where the file had names
};

// NeQ in memory. `name` is what errors call the file.
Mesh readNeq(std::string_view bytes, const std::string& name);
// The same from a file, its blocks read straight into the arrays. A file that is not
// regular, or shrinks while it is read, is a FileError.
Mesh readNeqFile(const std::string& path);
std::string writeNeq(const Mesh& mesh);
// The same bytes handed to `put` piece by piece, for writing straight to a file; false
// as soon as `put` is. Throws as writeNeq before the first piece.
bool writeNeqTo(const MeshView& mesh, const std::function<bool(const void*, std::size_t)>& put);

// Wavefront OBJ in memory.
Mesh readObj(std::string_view text, const std::string& name, ReadReport* report = nullptr);
std::string writeObj(const Mesh& mesh);
// The same text handed to `put` a large piece at a time; false as soon as `put` is.
bool writeObjTo(const Mesh& mesh, const std::function<bool(const char*, std::size_t)>& put);

// glTF 2.0 in memory. readGltf takes a .glb or a .gltf (told apart by the binary header);
// a .gltf's side buffers are read from the folder of `name`. It reads the first mesh's
// triangle primitives, one polygroup each, or the original faces and group ids when
// neqbridge wrote the file.
Mesh readGltf(std::string_view bytes, const std::string& name, ReadReport* report = nullptr);
std::string writeGlb(const Mesh& mesh);
// A .gltf: with the buffer embedded as a data URI when `binName` is empty, otherwise
// naming the side file `binName` (relative to the .gltf), whose bytes go to `*bin`.
std::string writeGltf(const Mesh& mesh, const std::string& binName, std::string* bin);
// Where a .gltf's side buffer goes: the same path with the extension ".bin".
std::string sideBufferPath(const std::string& gltfPath);

// How files are written where a format leaves a choice.
struct WriteOptions {
    bool gltfSideBuffer = false; // .gltf: the buffer in a side .bin file, not embedded
    bool durable = true;         // flushed to disk before it replaces the old file
};

// The transformations a target application record's import and export flags name,
// applied in this order: flips, then the Y/Z switch, then the winding.
struct Transform {
    bool flipX = false, flipY = false, flipZ = false;
    bool switchYZ = false;
    bool flipNormals = false; // reverse the winding of every face
    bool keepGroups = true, keepColors = true, keepUvs = true;
};
void apply(Mesh& mesh, const Transform& transform);
// The transform that undoes `transform` on positions and winding.
Transform inverse(const Transform& transform);

// Files, by the format of their extension. Reads refuse anything but a regular file
// (FileError, also for an extension that names no format); writes are atomic (a temporary file
// beside the destination, renamed into place).
Mesh readMeshFile(const std::string& path, ReadReport* report = nullptr);
void writeMeshFile(const std::string& path, const Mesh& mesh, const WriteOptions& options = {});
// A NeQ file straight from arrays where they are, atomically as writeMeshFile.
void writeNeqFile(const std::string& path, const MeshView& mesh, const WriteOptions& options = {});

// readMeshFile, apply, writeMeshFile. A NeQ input's header goes to a NeQ output.
// Anything else gets a zero header.
ReadReport convertFile(const std::string& in, const std::string& out, const Transform& transform,
                       const WriteOptions& options = {});

} // namespace neq::interchange
