#pragma once

// What neqbridge adds to the glTF files it writes: under the mesh's extras, the key
// "neqbridge" holds an object naming three buffer views (little-endian, no accessor):
//   "vertices": the mesh vertex of every glTF vertex (unsigned 32-bit),
//   "faces":    four glTF vertices per original face, -1 for a triangle's fourth
//               (signed 32-bit),
//   "groups":   one polygroup id per face (signed 16-bit), when the mesh has groups.
// A reader that knows them gets the original quads, vertices and group ids back.

namespace neq::interchange::gltf {

constexpr const char* kExtrasKey = "neqbridge";
constexpr const char* kVertices = "vertices";
constexpr const char* kFaces = "faces";
constexpr const char* kGroups = "groups";

} // namespace neq::interchange::gltf
