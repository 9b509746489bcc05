#include "meshfile/obj_export_outcome.h"

#include "meshfile/neq_format.h"

#include <cstdio>

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

namespace {

std::string blockName(std::uint32_t tag) {
    return std::string("the ") + blockKindName(tag) + " block";
}

std::string describeMismatch(const TagMismatch& mismatch, const std::string& outPath) {
    std::string text = "expected " + blockName(mismatch.expected) + " (tag " +
                       std::to_string(mismatch.expected) + ")";
    if (!mismatch.offset) {
        text += ", but the file ends before the length and count fields that locate it";
    } else {
        text += " at offset " + std::to_string(*mismatch.offset) + ", found " +
                describeFoundTag(mismatch.found);
    }
    // Only the vertex block is checked before the output is opened.
    text += mismatch.expected == kVertexTag ? "; nothing was written"
                                            : "; " + outPath + " keeps the lines written so far";
    return text;
}

} // namespace

std::string describeFailure(const ExportOutcome& outcome, const std::string& inPath,
                            const std::string& outPath) {
    std::string text;
    switch (outcome.status) {
    case ExportStatus::Written:
        return text;
    case ExportStatus::NoFaceIds:
        text = "no face IDs to group the faces by (read them from the base mesh first)";
        break;
    case ExportStatus::CannotOpenInput:
        text = "cannot open input file " + inPath;
        break;
    case ExportStatus::CannotOpenOutput:
        text = "cannot create output file " + outPath;
        break;
    case ExportStatus::WriteFailed:
        text = "cannot write output file " + outPath + " completely (is the disk full?)";
        break;
    case ExportStatus::TagMismatch:
        text = describeMismatch(outcome.mismatch, outPath);
        break;
    }
    char code[32];
    std::snprintf(code, sizeof code, " (code %g)", static_cast<double>(outcome.hostResult()));
    return text + code;
}

} // namespace neq::meshfile
