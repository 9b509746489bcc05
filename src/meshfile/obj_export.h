#pragma once

// The OBJ export, and what it and the colour-file export report: the outcome, what
// reached the output, and the float code the host reads.

#include "meshfile/neq_file.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace neq::meshfile {

enum class ExportStatus {
    Written,
    NoFaceIds,        // the face-ID list was empty; nothing was opened
    CannotOpenInput,  //
    CannotOpenOutput, //
    WriteFailed,      // the output opened but a write or the close failed (disk full...)
    TagMismatch,      // a block was not where the export expects it; a partial file may remain
};

struct TagMismatch {
    // Where the tag was expected; nullopt when the length or count fields that locate
    // it already lie past the end of the file.
    std::optional<std::uint64_t> offset;
    std::uint32_t expected = 0;
    // The tag found there; nullopt when its four bytes do not lie wholly in the file.
    std::optional<std::uint32_t> found;
};

struct ExportOutcome {
    ExportStatus status = ExportStatus::Written;
    TagMismatch mismatch; // for TagMismatch only
    // What the output holds, also after a tag mismatch.
    std::uint64_t vertices = 0;
    std::uint64_t colours = 0;
    std::uint64_t faces = 0;
    std::uint64_t faceGroups = 0;
};

// An outcome that reached no output: the early failures.
inline ExportOutcome outcomeOf(ExportStatus status) {
    ExportOutcome outcome;
    outcome.status = status;
    return outcome;
}

// "tag 20001 (face block)", or "the end of the file" for a tag that lies past it.
std::string describeFoundTag(std::optional<std::uint32_t> found);

} // namespace neq::meshfile

// Wavefront OBJ from a subdivided NeQ mesh: vertices, the RGB colour block, and the
// faces grouped under "#FaceID" comments naming the base face each run came from.

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
