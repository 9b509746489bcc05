#pragma once

// The host's NeQ binary mesh files: layout constants, field readers, the loaded bytes
// with bounds-checked reads, and the blocks the walk finds. The layout: a 32-byte
// header that is never interpreted, then tagged blocks, each a 16-byte header (tag,
// length counted from the tag, record count, one unused word) followed by its records.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

namespace neq::meshfile {

// What a reader that loads a NeQ file itself reports; the host entries turn it into
// their float codes.
enum class ReadStatus {
    Done,
    CannotOpen,  // the file cannot be opened or read
    NoBlock,     // the block the reader needs (UV, group) is missing
    CannotWrite, // an output file cannot be created or written (the UV split)
};

struct ReadOutcome {
    ReadStatus status = ReadStatus::Done;
    // Done: the entries, tiles or groups found. CannotWrite: the 0-based position of the
    // tile file that failed.
    std::size_t count = 0;
};

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

// What a block tag means, for messages: "vertex", "face", "UV", "colour", "group",
// or "unknown".
const char* blockKindName(std::uint32_t tag);

// Readers that are handed a file whose first block is the one they want.
constexpr std::size_t kFirstBlockOffset = kFileHeaderSize;
constexpr std::size_t kFirstBlockCountOffset = kFirstBlockOffset + kBlockCountOffset;
constexpr std::size_t kFirstBlockRecordsOffset = kFirstBlockOffset + kBlockHeaderSize;

} // namespace neq::meshfile

// Little-endian field assembly from raw file bytes, lowest-addressed byte first.
// Each byte is taken as unsigned before shifting so high bytes never spill sign bits.

namespace neq::meshfile {

constexpr std::uint32_t assembleU32(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2,
                                    std::uint8_t b3) {
    return std::uint32_t{b0} | std::uint32_t{b1} << 8 | std::uint32_t{b2} << 16 |
           std::uint32_t{b3} << 24;
}

constexpr std::int32_t assembleI32(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2,
                                   std::uint8_t b3) {
    return static_cast<std::int32_t>(assembleU32(b0, b1, b2, b3));
}

constexpr std::int16_t assembleI16(std::uint8_t b0, std::uint8_t b1) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(b0 | b1 << 8));
}

inline float assembleF32(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2, std::uint8_t b3) {
    const std::uint32_t bits = assembleU32(b0, b1, b2, b3);
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// The inverse, for the files the library writes: a value's bytes in file order.
inline void storeU32(std::uint8_t* out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

inline void storeF32(std::uint8_t* out, float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    storeU32(out, bits);
}

} // namespace neq::meshfile

// A loaded NeQ file and bounds-checked reads over it. Every offset is 64-bit so that
// sums of 32-bit lengths and counts taken from a hostile file cannot wrap.

namespace neq::meshfile {

// The file's bytes followed by one repeat of its last byte. The host's readers have
// always carried that extra byte, and "file size" means this buffer's size.
using NeqBytes = std::vector<std::uint8_t>;

// Loads the whole file with bulk reads and appends the repeated last byte (a zero byte
// for an empty file). Returns false when the file cannot be opened for reading; a
// directory counts as a file that cannot be opened.
bool loadNeqFile(const char* path, NeqBytes& bytes);

class NeqView {
  public:
    NeqView(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    explicit NeqView(const NeqBytes& bytes) : NeqView(bytes.data(), bytes.size()) {}

    std::size_t size() const { return size_; }
    const std::uint8_t* data() const { return data_; }

    // True when [offset, offset + length) lies inside the buffer.
    bool fits(std::uint64_t offset, std::uint64_t length) const {
        return offset <= size_ && length <= size_ - offset;
    }

    // Checked reads: nullopt when the field does not lie wholly inside the buffer.
    std::optional<std::uint32_t> u32(std::uint64_t offset) const {
        if (!fits(offset, 4)) return std::nullopt;
        return u32Unchecked(static_cast<std::size_t>(offset));
    }
    std::optional<std::int32_t> i32(std::uint64_t offset) const {
        if (!fits(offset, 4)) return std::nullopt;
        return static_cast<std::int32_t>(u32Unchecked(static_cast<std::size_t>(offset)));
    }

    // Unchecked reads for callers that have already called fits() on the whole range.
    std::uint32_t u32Unchecked(std::size_t offset) const {
        const std::uint8_t* p = data_ + offset;
        return assembleU32(p[0], p[1], p[2], p[3]);
    }
    std::int32_t i32Unchecked(std::size_t offset) const {
        return static_cast<std::int32_t>(u32Unchecked(offset));
    }
    float f32Unchecked(std::size_t offset) const {
        const std::uint8_t* p = data_ + offset;
        return assembleF32(p[0], p[1], p[2], p[3]);
    }
    std::int16_t i16Unchecked(std::size_t offset) const {
        return assembleI16(data_[offset], data_[offset + 1]);
    }

    // How many of `count` records of `recordSize` bytes starting at `offset` lie wholly
    // inside the buffer. Lets readers clamp a count that claims more than the file has.
    std::uint64_t recordsThatFit(std::uint64_t offset, std::uint64_t count,
                                 std::uint64_t recordSize) const {
        if (offset >= size_) return 0;
        const std::uint64_t available = (size_ - offset) / recordSize;
        return count < available ? count : available;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
};

// The block walk: from offset 32, skip blocks by their length (16 bytes for a length
// of 0) until the wanted tag. Returns the offset of the wanted block's tag, or nullopt
// when the walk reaches the end of the buffer first. A tag that does not lie wholly
// inside the buffer is never the wanted one and ends the walk. Positions only grow, so
// the walk always ends, whatever the lengths say.
std::optional<std::uint64_t> findBlock(const NeqView& file, std::uint32_t wantedTag);

} // namespace neq::meshfile

// A block found by the block walk, with its records clamped to the buffer.

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
