#pragma once

// Builds NeQ files from an in-memory mesh, for tools, tests and benchmarks. The
// library itself only reads NeQ files, apart from the per-tile UV files.

#include "meshfile/neq_file.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace neq::meshfile {

struct Rgb {
    std::uint8_t red, green, blue;
};

struct Mesh {
    std::vector<std::array<float, 3>> vertices;
    // Four 0-based vertex indices; a negative fourth index marks a triangle.
    std::vector<std::array<std::int32_t, 4>> faces;
    // One record per face: four (u, v) pairs, u0 v0 u1 v1 u2 v2 u3 v3.
    std::vector<std::array<float, 8>> uvs;
    // One colour per vertex.
    std::vector<Rgb> colours;
    // One group identifier per face.
    std::vector<std::int16_t> groups;
};

// Appends blocks to a byte image. The 32-byte file header comes from the constructor.
class NeqBuilder {
  public:
    NeqBuilder();
    // A block of `count` records of `recordSize` bytes; its length field counts from
    // the tag to the end of the records.
    NeqBuilder& block(std::uint32_t tag, std::uint32_t count, const void* records,
                      std::size_t recordSize);
    // Raw bytes with no block header, for shapes that need a gap.
    NeqBuilder& raw(const void* data, std::size_t size);
    // The block of 16 zero bytes that ends a chain.
    NeqBuilder& terminator();
    const NeqBytes& bytes() const { return bytes_; }
    NeqBytes take() { return std::move(bytes_); }

  private:
    NeqBytes bytes_;
};

// Encodes one block type's records as they stand in the file.
NeqBytes encodeVertices(const Mesh& mesh);
NeqBytes encodeFaces(const Mesh& mesh);
NeqBytes encodeUvs(const Mesh& mesh);
NeqBytes encodeColours(const Mesh& mesh);
NeqBytes encodeGroups(const Mesh& mesh);

// The usual chain: vertex block at offset 32, then face, UV, colour and group blocks
// for whichever of them the mesh has, then the 16 zero bytes.
NeqBytes buildNeqChain(const Mesh& mesh);

// The shape the OBJ export reads: vertex block at 32, one block it skips, the colour
// block where the export's arithmetic expects it (four bytes after the skipped block's
// length says it ends), the face block straight after the colour records.
NeqBytes buildNeqForObjExport(const Mesh& mesh);

// Shapes for the readers that take their block at offset 32 without a tag check.
NeqBytes buildNeqFacesFirst(const Mesh& mesh);
NeqBytes buildNeqColoursFirst(const Mesh& mesh);

bool writeBytesToFile(const std::string& path, const NeqBytes& bytes);

} // namespace neq::meshfile
