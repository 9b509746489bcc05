#include "meshfile/neq_bytes.h"

#include "foundation/whole_file.h"
#include "meshfile/neq_format.h"

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
