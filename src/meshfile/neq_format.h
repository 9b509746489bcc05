#pragma once

// Layout constants of the host's NeQ binary mesh files: a 32-byte header that is
// never interpreted, then tagged blocks, each a 16-byte header (tag, length counted
// from the tag, record count, one unused word) followed by its records.

#include <cstddef>
#include <cstdint>

namespace neq::meshfile {

constexpr std::size_t kFileHeaderSize = 32;
constexpr std::size_t kBlockHeaderSize = 16;
// Offsets inside a block header.
constexpr std::size_t kBlockLengthOffset = 4;
constexpr std::size_t kBlockCountOffset = 8;

constexpr std::uint32_t kVertexTag = 10001;
constexpr std::uint32_t kFaceTag = 20001;
constexpr std::uint32_t kUvTag = 25001;
constexpr std::uint32_t kColourTag = 35001;
constexpr std::uint32_t kGroupTag = 40001;

constexpr std::size_t kVertexRecordSize = 12; // x, y, z floats
constexpr std::size_t kFaceRecordSize = 16;   // four signed indices; 4th < 0 marks a triangle
constexpr std::size_t kUvRecordSize = 32;     // four (u, v) float pairs
constexpr std::size_t kColourRecordSize = 4;  // blue, green, red, unused
constexpr std::size_t kGroupRecordSize = 2;   // signed 16-bit group id

// Record size of a block tag the library knows; 0 for any other tag.
constexpr std::size_t recordSizeOf(std::uint32_t tag) {
    switch (tag) {
    case kVertexTag:
        return kVertexRecordSize;
    case kFaceTag:
        return kFaceRecordSize;
    case kUvTag:
        return kUvRecordSize;
    case kColourTag:
        return kColourRecordSize;
    case kGroupTag:
        return kGroupRecordSize;
    default:
        return 0;
    }
}

// Readers that are handed a file whose first block is the one they want.
constexpr std::size_t kFirstBlockOffset = kFileHeaderSize;
constexpr std::size_t kFirstBlockCountOffset = kFirstBlockOffset + kBlockCountOffset;
constexpr std::size_t kFirstBlockRecordsOffset = kFirstBlockOffset + kBlockHeaderSize;

} // namespace neq::meshfile
