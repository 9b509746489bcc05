#pragma once

// Face IDs of a base mesh: for each base face, how many faces of the mesh subdivided
// `level` times come from it. The OBJ export groups the subdivided faces with them.

#include "meshfile/neq_file.h"

#include <cstdint>
#include <vector>

namespace neq::meshfile {

// 4^(level - 1) truncated to a 32-bit integer: 1 at level 1, 4 at level 2, 0 at level 0.
std::uint32_t subdivisionMultiplier(double level);

// Replaces `faceIds` with one entry per face record of the block at offset 32 (read as
// a face block whatever its tag): 4·m for a quad, 3·m for a triangle. Returns the
// number of entries.
std::size_t readFaceIds(const NeqView& file, double level, std::vector<std::uint32_t>& faceIds);

// Empties `faceIds`, then loads the file and reads its face IDs. Returns Done with the
// number of entries, or CannotOpen (`faceIds` stays empty).
ReadOutcome loadFaceIds(const char* path, double level, std::vector<std::uint32_t>& faceIds);

} // namespace neq::meshfile
