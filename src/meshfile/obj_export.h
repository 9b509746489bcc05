#pragma once

// Wavefront OBJ from a subdivided NeQ mesh: vertices, the RGB colour block, and the
// faces grouped under "#FaceID" comments naming the base face each run came from.

#include "meshfile/neq_bytes.h"
#include "meshfile/obj_export_outcome.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace neq::meshfile {

// Where the export expects the colour and face blocks. The colour block sits where
// skipping exactly one block after the vertex block, from the vertex block's length
// field, lands: 36 + L1 + L2 (not the general block walk); the face block follows its
// records. Nullopt where a length or count that locates a block lies past the end.
struct ObjExportLayout {
    std::optional<std::uint64_t> colourBlock;
    std::optional<std::uint32_t> colourCount; // the colour block's count field
    std::optional<std::uint64_t> faceBlock;
};
ObjExportLayout locateObjExportBlocks(const NeqView& file);

// Writes the OBJ for a file laid out as the export expects: vertex block at 32, one
// block it skips, the colour block 4 bytes after that block's end, the face block
// straight after the colour records. `faceIds[i]` faces go under "#FaceID i+1".
// Returns Written, CannotOpenOutput, WriteFailed or TagMismatch; a mismatch after the
// output was opened leaves the lines written so far in the file.
ExportOutcome exportObj(const NeqView& file, const char* outPath,
                        const std::vector<std::uint32_t>& faceIds);

// NoFaceIds when `faceIds` is empty (nothing opened), CannotOpenInput, or as above.
// A Written export consumes `faceIds`; every other outcome leaves it as it was.
ExportOutcome exportObj(const char* inPath, const char* outPath,
                        std::vector<std::uint32_t>& faceIds);

} // namespace neq::meshfile
