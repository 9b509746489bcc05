#include "meshfile/groups.h"

#include "meshfile/neq_format.h"
#include "meshfile/uv_test_meshes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace neq::test {
namespace {

meshfile::NeqBytes groupFile(const std::vector<std::int16_t>& groups) {
    meshfile::Mesh mesh = uvMesh(std::vector<UvRecord>(groups.size()));
    mesh.groups = groups;
    return meshfile::buildNeqChain(mesh);
}

TEST(UvGroups, CountsDistinctSignedValues) {
    const struct {
        std::vector<std::int16_t> groups;
        std::size_t distinct;
    } cases[] = {{{1, 1, 2, 5, 2}, 3}, {{-1, 32767, -32768, 0, -1}, 4}, {{7}, 1}};
    for (const auto& c : cases)
        EXPECT_EQ(meshfile::countDistinctGroups(meshfile::NeqView(groupFile(c.groups))),
                  c.distinct);
}

// Every prefix in an allocation of exactly its size: the count of a cut block is clamped
// to the identifiers present, and a cut header is no block.
TEST(UvGroups, EveryPrefixOfAFileIsReadSafely) {
    const meshfile::NeqBytes whole = groupFile({1, 2, 3, 4});
    const std::size_t recordsStart = whole.size() - 16 - 8;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        auto copy = std::make_unique<std::uint8_t[]>(size);
        if (size != 0) std::memcpy(copy.get(), whole.data(), size);
        const auto groups = meshfile::countDistinctGroups(meshfile::NeqView(copy.get(), size));
        ASSERT_EQ(groups.has_value(), size >= recordsStart) << size;
        if (groups) {
            EXPECT_EQ(*groups, std::min<std::size_t>(4, (size - recordsStart) / 2));
        }
    }
}

} // namespace
} // namespace neq::test
