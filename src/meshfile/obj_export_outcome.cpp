#include "meshfile/obj_export_outcome.h"

#include "meshfile/neq_format.h"

namespace neq::meshfile {

float ExportOutcome::hostResult() const {
    switch (status) {
    case ExportStatus::Written:
        return kWrittenResult;
    case ExportStatus::NoFaceIds:
        return kNoFaceIdsResult;
    case ExportStatus::CannotOpenInput:
        return kCannotOpenInputResult;
    case ExportStatus::CannotOpenOutput:
    case ExportStatus::WriteFailed:
        // The host knows one output failure; a file it cannot rely on is one.
        return kCannotOpenOutputResult;
    case ExportStatus::TagMismatch:
        return mismatch.found ? static_cast<float>(*mismatch.found) : kTagPastEndResult;
    }
    return kTagPastEndResult;
}

const char* blockKindName(std::uint32_t tag) {
    switch (tag) {
    case kVertexTag:
        return "vertex";
    case kFaceTag:
        return "face";
    case kUvTag:
        return "UV";
    case kColourTag:
        return "colour";
    case kGroupTag:
        return "group";
    default:
        return "unknown";
    }
}

std::string describeFoundTag(std::optional<std::uint32_t> found) {
    if (!found) return "the end of the file";
    return "tag " + std::to_string(*found) + " (" + blockKindName(*found) + " block)";
}

} // namespace neq::meshfile
