#include "meshfile/neq_file.h"

#include "foundation/file_io.h"

namespace neq::meshfile {

bool loadNeqFile(const char* path, NeqBytes& bytes) {
    if (!readWholeFile(path, bytes)) return false;
    // Every offset and size check of the format's readers assumes the repeated byte.
    appendRepeatedLastByte(bytes);
    return true;
}

std::optional<std::uint64_t> findBlock(const NeqView& file, std::uint32_t wantedTag) {
    std::uint64_t position = kFileHeaderSize;
    for (;;) {
        const std::optional<std::uint32_t> tag = file.u32(position);
        if (!tag) return std::nullopt;
        if (*tag == wantedTag) return position;
        const std::optional<std::uint32_t> length = file.u32(position + kBlockLengthOffset);
        if (!length) return std::nullopt;
        position += *length == 0 ? kBlockHeaderSize : *length;
    }
}

} // namespace neq::meshfile

namespace neq::meshfile {

std::optional<RecordBlock> findRecordBlock(const NeqView& file, std::uint32_t tag,
                                           std::size_t recordSize) {
    const std::optional<std::uint64_t> offset = findBlock(file, tag);
    if (!offset || !file.fits(*offset, kBlockHeaderSize)) return std::nullopt;
    RecordBlock block;
    block.offset = *offset;
    block.declaredCount = file.u32Unchecked(static_cast<std::size_t>(*offset + kBlockCountOffset));
    block.count = file.recordsThatFit(block.headerEnd(), block.declaredCount, recordSize);
    return block;
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

} // namespace neq::meshfile
