#include "meshfile/record_block.h"

#include "meshfile/neq_format.h"

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

} // namespace neq::meshfile
