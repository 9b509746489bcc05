#pragma once

// A loaded NeQ file and bounds-checked reads over it. Every offset is 64-bit so that
// sums of 32-bit lengths and counts taken from a hostile file cannot wrap.

#include "meshfile/field_readers.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

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
