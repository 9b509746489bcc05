#include "meshfile/groups.h"

#include "meshfile/neq_file.h"

#include <bitset>
#include <cstdint>
#include <memory>

namespace neq::meshfile {

std::optional<std::size_t> countDistinctGroups(const NeqView& file) {
    const std::optional<RecordBlock> block = findRecordBlock(file, kGroupTag, kGroupRecordSize);
    if (!block) return std::nullopt;
    // One bit per possible 16-bit value: a set with constant-time inserts.
    auto seen = std::make_unique<std::bitset<1 << 16>>();
    for (std::uint64_t i = 0; i < block->count; ++i) {
        const std::int16_t group =
            file.i16Unchecked(static_cast<std::size_t>(block->recordOffset(i, kGroupRecordSize)));
        seen->set(static_cast<std::uint16_t>(group));
    }
    return seen->count();
}

ReadOutcome countGroupsInFile(const char* path) {
    NeqBytes bytes;
    if (!loadNeqFile(path, bytes)) return {ReadStatus::CannotOpen};
    const std::optional<std::size_t> groups = countDistinctGroups(NeqView(bytes));
    if (!groups) return {ReadStatus::NoBlock};
    return {ReadStatus::Done, *groups};
}

} // namespace neq::meshfile
