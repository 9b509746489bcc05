#pragma once

// Meshes made in code for the demo, tests and benchmarks: a small sample with every
// feature the readers handle, its one-level subdivision, and a large mesh of
// realistic numbers.

#include "tooling/neq_writer.h"

#include <cstddef>

namespace neq::meshfile {

// A little house front: six quads in a 3 x 2 grid and three roof triangles on top
// (15 vertices). Per-vertex colours; UV records with the two left columns in tile
// "_u0_v0" and the right column and roof in "_u1_v0"; groups 1 (bottom row), 2 (top
// row) and 3 (roof). Coordinates have fractions, so the OBJ text shows decimals.
Mesh makeSampleMesh();

// One level of subdivision by splitting at edge midpoints and face centres: each quad
// becomes 4 quads and each triangle 3 quads, in base-face order, so the faces of base
// face i are consecutive, the grouping that GetFaceIDsNeq counts at level 1. Sub-face
// k of a face with corners c0..cn-1 is (ck, mid(ck, ck+1), centre, mid(ck-1, ck)).
// Vertices: the base vertices, then one per edge in order of first use, then one per
// face centre. Colours and UVs are interpolated the same way; groups are inherited.
// Throws std::out_of_range when a face refers to a vertex the mesh lacks.
Mesh subdivideMesh(const Mesh& base);

// A torus of about `approxFaces` quads and as many vertices, with coordinates like
// -12.3456 and 0.0123, per-vertex colours, eight groups (bands of rows) and, when
// `uvTiles` > 0, one UV record per face spread over tiles "_u0_v0" .. "_u<uvTiles-1>_v0"
// in equal column bands. The size used by the benchmarks: subdividing the mesh of
// 250000 faces gives 1000000 quads and 1000000 vertices.
Mesh makeBenchmarkMesh(std::size_t approxFaces, int uvTiles);

} // namespace neq::meshfile
