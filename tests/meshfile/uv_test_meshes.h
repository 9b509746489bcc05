#pragma once

// Meshes shared by the UV tile and group tests.

#include "meshfile/neq_file.h"
#include "tooling/neq_writer.h"

#include <array>
#include <cstdint>
#include <vector>

namespace neq::test {

using UvRecord = std::array<float, 8>; // u0 v0 u1 v1 u2 v2 u3 v3

// One quad per UV record on its own four vertices; colours and groups follow the UVs.
inline meshfile::Mesh uvMesh(const std::vector<UvRecord>& uvs) {
    meshfile::Mesh mesh;
    for (std::size_t f = 0; f < uvs.size(); ++f) {
        const auto first = static_cast<std::int32_t>(mesh.vertices.size());
        for (int corner = 0; corner < 4; ++corner) {
            mesh.vertices.push_back({float(f), float(corner), 1.0f});
            mesh.colours.push_back({10, 20, 30});
        }
        mesh.faces.push_back({first, first + 1, first + 2, first + 3});
        mesh.groups.push_back(static_cast<std::int16_t>(f % 3));
    }
    mesh.uvs = uvs;
    return mesh;
}

// buildNeqChain(uvMesh(records)), with an empty UV block when there are no records.
inline meshfile::NeqBytes uvFile(const std::vector<UvRecord>& records) {
    if (!records.empty()) return meshfile::buildNeqChain(uvMesh(records));
    meshfile::NeqBuilder builder;
    builder.block(meshfile::kVertexTag, 0, nullptr, 0).block(meshfile::kFaceTag, 0, nullptr, 0);
    return builder.block(meshfile::kUvTag, 0, nullptr, 0).terminator().take();
}

} // namespace neq::test
