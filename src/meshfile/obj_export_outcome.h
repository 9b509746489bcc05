#pragma once

// What the OBJ export and the colour-file export report: the outcome, what reached the
// output, and the float code the host reads.

#include <cstdint>
#include <optional>
#include <string>

namespace neq::meshfile {

// Host codes of the mesh-file readers.
constexpr float kWrittenResult = 0.0f;
constexpr float kNoFaceIdsResult = -18.0f;
constexpr float kCannotOpenInputResult = -1760.0f;
constexpr float kCannotOpenOutputResult = -2.0f;
// A block tag expected where the file has fewer than four bytes left. A tag that was
// found converts to a non-negative float, so this code never reads as a found tag.
constexpr float kTagPastEndResult = -1.0f;

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

    // 0, -18, -1760, -2 (also for a failed write), or the tag found converted to float
    // (-1 when it lay past the end).
    float hostResult() const;
};

// An outcome that reached no output: the early failures.
inline ExportOutcome outcomeOf(ExportStatus status) {
    ExportOutcome outcome;
    outcome.status = status;
    return outcome;
}

// What a block tag means, for messages: "vertex", "face", "UV", "colour", "group",
// or "unknown".
const char* blockKindName(std::uint32_t tag);

// "tag 20001 (face block)", or "the end of the file" for a tag that lies past it.
std::string describeFoundTag(std::optional<std::uint32_t> found);

} // namespace neq::meshfile
