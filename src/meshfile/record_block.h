#pragma once

// A block found by the block walk, with its records clamped to the buffer.

#include "meshfile/neq_bytes.h"
#include "meshfile/neq_format.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace neq::meshfile {

struct RecordBlock {
    std::uint64_t offset = 0;        // of the block's tag
    std::uint32_t declaredCount = 0; // the record count the header claims
    std::uint64_t count = 0;         // the records that lie wholly inside the buffer

    std::uint64_t headerEnd() const { return offset + kBlockHeaderSize; } // first record
    std::uint64_t recordOffset(std::uint64_t index, std::size_t recordSize) const {
        return headerEnd() + index * recordSize;
    }
};

// Walks to the block with `tag`. A block whose 16-byte header does not lie wholly inside
// the buffer counts as absent: its count cannot be read, and nothing after it can be
// trusted. A count larger than the records that fit is clamped to them, so a truncated
// or lying file never drives a read past the end or an allocation beyond its size.
std::optional<RecordBlock> findRecordBlock(const NeqView& file, std::uint32_t tag,
                                           std::size_t recordSize);

} // namespace neq::meshfile
