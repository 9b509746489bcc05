#include "meshfile/obj_export.h"

#include "foundation/number_format.h"
#include "foundation/text_writer.h"
#include "meshfile/neq_file.h"
#include "meshfile/rgb_block.h"

#include <cstring>
#include <string_view>

namespace neq::meshfile {

std::string describeFoundTag(std::optional<std::uint32_t> found) {
    if (!found) return "the end of the file";
    return "tag " + std::to_string(*found) + " (" + blockKindName(*found) + " block)";
}

} // namespace neq::meshfile

namespace neq::meshfile {
namespace {

constexpr std::uint64_t kVertexLengthOffset = kFirstBlockOffset + kBlockLengthOffset;
constexpr std::size_t kMaxVertexLine = 2 + 3 * (kMaxFloatGChars + 1); // "v x y z\n"
constexpr std::size_t kMaxFaceLine = 2 + 4 * (kMaxIntChars + 1);      // "f a b c d\n"
constexpr std::size_t kMaxCommentLine = 32 + kMaxIntChars + 1;        // "#Face count F\n"

char* putText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

void writeCommentLine(TextWriter& out, std::string_view prefix, std::int64_t value) {
    char* p = putText(out.reserve(kMaxCommentLine), prefix);
    p = formatInt(p, value);
    *p++ = '\n';
    out.commit(p);
}

// True when the wanted tag stands at `offset`; otherwise records the mismatch. A tag
// that does not lie wholly in the file is a mismatch with no tag found.
bool expectTag(const NeqView& file, std::optional<std::uint64_t> offset, std::uint32_t wanted,
               ExportOutcome& outcome) {
    const std::optional<std::uint32_t> found = offset ? file.u32(*offset) : std::nullopt;
    if (found == wanted) return true;
    outcome.status = ExportStatus::TagMismatch;
    outcome.mismatch = TagMismatch{offset, wanted, found};
    return false;
}

void writeVertices(TextWriter& out, const NeqView& file, std::uint64_t count) {
    std::size_t record = kFirstBlockRecordsOffset;
    for (std::uint64_t i = 0; i < count; ++i, record += kVertexRecordSize) {
        char* p = out.reserve(kMaxVertexLine);
        *p++ = 'v';
        for (std::size_t axis = 0; axis < 3; ++axis) {
            *p++ = ' ';
            p = formatFloatG(p, file.f32Unchecked(record + 4 * axis));
        }
        *p++ = '\n';
        out.commit(p);
    }
}

// Indices are widened before the 1 is added so that the largest index cannot wrap.
// A negative fourth index marks a triangle, whose line keeps the space after the
// third index.
void writeFaces(TextWriter& out, const NeqView& file, std::size_t record, std::uint64_t count) {
    for (std::uint64_t i = 0; i < count; ++i, record += kFaceRecordSize) {
        char* p = out.reserve(kMaxFaceLine);
        *p++ = 'f';
        for (std::size_t corner = 0; corner < 3; ++corner) {
            *p++ = ' ';
            p = formatInt(p, std::int64_t{file.i32Unchecked(record + 4 * corner)} + 1);
        }
        *p++ = ' ';
        const std::int32_t fourth = file.i32Unchecked(record + 12);
        if (fourth >= 0) p = formatInt(p, std::int64_t{fourth} + 1);
        *p++ = '\n';
        out.commit(p);
    }
}

// Group i holds faceIds[i] records. The face block's end (as its length claims) is
// checked only before each group, so a group may read on past the block; it never
// reads past the file: a group that runs out of records ends the export there.
void writeFaceGroups(TextWriter& out, const NeqView& file, std::uint64_t faceBlock,
                     const std::vector<std::uint32_t>& faceIds, ExportOutcome& outcome) {
    const std::uint32_t blockLength = file.u32(faceBlock + kBlockLengthOffset).value_or(0);
    const std::uint64_t blockEnd = faceBlock + blockLength;
    std::uint64_t record = faceBlock + kBlockHeaderSize;
    for (std::size_t i = 0; i < faceIds.size() && record < blockEnd; ++i) {
        writeCommentLine(out, "#FaceID ", static_cast<std::int64_t>(i) + 1);
        ++outcome.faceGroups;
        const std::uint64_t faces = file.recordsThatFit(record, faceIds[i], kFaceRecordSize);
        writeFaces(out, file, static_cast<std::size_t>(record), faces);
        outcome.faces += faces;
        record += faces * kFaceRecordSize;
        if (faces < faceIds[i]) break;
    }
}

} // namespace

ObjExportLayout locateObjExportBlocks(const NeqView& file) {
    ObjExportLayout layout;
    const std::optional<std::uint32_t> vertexLength = file.u32(kVertexLengthOffset);
    if (!vertexLength) return layout;
    const std::uint64_t skippedLengthOffset = kVertexLengthOffset + *vertexLength;
    const std::optional<std::uint32_t> skippedLength = file.u32(skippedLengthOffset);
    if (!skippedLength) return layout;
    layout.colourBlock = skippedLengthOffset + *skippedLength;
    layout.colourCount = file.u32(*layout.colourBlock + kBlockCountOffset);
    if (layout.colourCount)
        layout.faceBlock = *layout.colourBlock + kBlockHeaderSize +
                           std::uint64_t{*layout.colourCount} * kColourRecordSize;
    return layout;
}

ExportOutcome exportObj(const NeqView& file, const char* outPath,
                        const std::vector<std::uint32_t>& faceIds) {
    ExportOutcome outcome;
    if (!expectTag(file, kFirstBlockOffset, kVertexTag, outcome)) return outcome;

    // A vertex count claiming more records than the file holds is cut to those that
    // fit, in the count line too, so the line always matches the "v" lines.
    const std::uint32_t claimedVertices = file.u32(kFirstBlockCountOffset).value_or(0);
    outcome.vertices =
        file.recordsThatFit(kFirstBlockRecordsOffset, claimedVertices, kVertexRecordSize);
    const ObjExportLayout layout = locateObjExportBlocks(file);
    const std::optional<std::uint64_t> colourBlock = layout.colourBlock;
    // The "face count" line prints the colour block's length field, as it always has;
    // 0 when that field lies past the end of the file.
    const std::int32_t faceCountField =
        colourBlock ? file.i32(*colourBlock + kBlockLengthOffset).value_or(0) : 0;

    FileSink output;
    if (!output.open(outPath)) {
        outcome.status = ExportStatus::CannotOpenOutput;
        return outcome;
    }
    TextWriter out(output, textBufferSizeFor(file));
    // Stops at a tag mismatch; what was written up to it still reaches the file below.
    const auto writeText = [&] {
        out.append("# File exported by Clayvo plugin\n");
        writeCommentLine(out, "#Vertex count ", static_cast<std::int64_t>(outcome.vertices));
        writeCommentLine(out, "#Face count ", faceCountField);
        writeVertices(out, file, outcome.vertices);
        if (!expectTag(file, colourBlock, kColourTag, outcome)) return;

        // A count that lies past the end leaves no colours to write and no face block.
        outcome.colours = writeRgbBlock(out, file, *colourBlock + kBlockHeaderSize,
                                        layout.colourCount.value_or(0));
        if (!expectTag(file, layout.faceBlock, kFaceTag, outcome)) return;

        writeFaceGroups(out, file, *layout.faceBlock, faceIds, outcome);
    };
    writeText();
    const bool saved = out.flush() && output.close();
    if (!saved && outcome.status == ExportStatus::Written)
        outcome.status = ExportStatus::WriteFailed;
    return outcome;
}

ExportOutcome exportObj(const char* inPath, const char* outPath,
                        std::vector<std::uint32_t>& faceIds) {
    if (faceIds.empty()) return outcomeOf(ExportStatus::NoFaceIds);
    NeqBytes bytes;
    if (!loadNeqFile(inPath, bytes)) return outcomeOf(ExportStatus::CannotOpenInput);
    const ExportOutcome outcome = exportObj(NeqView(bytes), outPath, faceIds);
    if (outcome.status == ExportStatus::Written) faceIds.clear();
    return outcome;
}

} // namespace neq::meshfile
