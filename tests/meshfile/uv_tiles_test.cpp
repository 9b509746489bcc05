#include "api/result_codes.h"
#include "meshfile/groups.h"
#include "meshfile/neq_file.h"
#include "meshfile/uv_test_meshes.h"
#include "meshfile/uv_tiles.h"
#include "support/case_table.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <tuple>
#include <utility>

namespace neq::test {
namespace {

using meshfile::NeqBytes;
using meshfile::NeqView;

std::vector<std::string> namesOf(const meshfile::UVTileSet& tiles) {
    std::vector<std::string> names;
    for (const meshfile::UV_tile& tile : tiles)
        names.push_back(tile.name);
    return names;
}

TEST(UvTiles, CoordinateSplitShiftsNegativesDownOneTile) {
    for (const CaseRow& row : readCaseTable("meshfile/tile_coordinates.txt")) {
        const float c = std::stof(row[0]);
        const meshfile::TileCoordinate split = meshfile::splitCoordinate(c);
        EXPECT_EQ(split.tile, std::stoi(row[1])) << c;
        EXPECT_EQ(meshfile::tileIndexOf(c), std::stoi(row[1])) << c;
        const float local = row[2].empty() ? split.local : std::stof(row[2]);
        EXPECT_EQ(std::memcmp(&split.local, &local, 4), 0) << c;
    }
}

TEST(UvTiles, NamesAndByteStringOrder) {
    EXPECT_EQ(meshfile::uvTileName(-1, 2), "_u-1_v2");
    EXPECT_EQ(meshfile::uvTileName(-2147483647 - 1, 2147483647), "_u-2147483648_v2147483647");
    meshfile::TileCollector collector;
    for (const meshfile::TileKey key : {meshfile::TileKey{2, 0}, {10, 0}, {0, 0}, {-1, 0}, {2, 0}})
        collector.add(key);
    EXPECT_EQ(namesOf(collector.tiles()),
              (std::vector<std::string>{"_u-1_v0", "_u0_v0", "_u10_v0", "_u2_v0"}));
}

TEST(UvTiles, ScanUsesFirstPairAndReportsLastRecordsTile) {
    const std::tuple<std::vector<UvRecord>, std::vector<std::string>, std::string> cases[] = {
        {{{0.5f, 0.5f}, {1.5f, 0.2f}, {0.1f, 0.9f}}, {"_u0_v0", "_u1_v0"}, "_u0_v0"},
        {{}, {}, ""},
        // Later pairs never add a tile.
        {{{0.5f, 0.5f, 7.5f, 7.5f, -3.f, -3.f, 9.f, 9.f}}, {"_u0_v0"}, "_u0_v0"},
        {{{-0.25f, 0.5f}, {0.5f, -1.0f}}, {"_u-1_v0", "_u0_v-2"}, "_u0_v-2"},
    };
    for (const auto& [records, tiles, last] : cases) {
        const NeqBytes bytes = uvFile(records);
        const auto scan = meshfile::scanUvTiles(NeqView(bytes));
        ASSERT_TRUE(scan);
        EXPECT_EQ(namesOf(scan->tiles), tiles);
        EXPECT_EQ(scan->lastTileName, last);
    }
}

// A UV block's count is clamped to the records present. The longest case has more pairs
// than a tile file is written in at a time.
TEST(UvTiles, HostileBlocksAreClamped) {
    std::vector<UvRecord> records = {{0.5f, 0.5f}, {1.5f, 0.5f}, {2.5f, 0.5f}};
    records.resize(16385);
    const UvRecord* data = records.data();
    const std::tuple<std::uint32_t, std::size_t, std::size_t> cases[] = {
        {3, 3, 3}, {0xFFFFFFFFu, 3, 3}, {2, 3, 2}, {0x80000000u, 1, 1}, {16385, 16385, 3}};
    for (const auto& [claimedCount, recordsPresent, tiles] : cases) {
        meshfile::NeqBuilder builder;
        builder.block(meshfile::kUvTag, 0, nullptr, 0);
        NeqBytes bytes = builder.take();
        std::memcpy(&bytes[32 + 8], &claimedCount, 4);
        const auto* raw = reinterpret_cast<const std::uint8_t*>(data);
        bytes.insert(bytes.end(), raw, raw + 32 * recordsPresent);
        const auto scan = meshfile::scanUvTiles(NeqView(bytes));
        ASSERT_TRUE(scan);
        EXPECT_EQ(scan->tiles.size(), tiles) << claimedCount;
        const auto split = meshfile::UvTileSplit::plan(NeqView(bytes));
        ASSERT_TRUE(split);
        EXPECT_EQ(split->pairCount(), 4 * std::min<std::size_t>(claimedCount, recordsPresent));
        // The copied header still claims what the input claimed.
        const NeqBytes image = split->tileImage(0);
        EXPECT_EQ(std::memcmp(image.data(), bytes.data(), 48), 0);
        TempDir dir;
        std::vector<std::string> names;
        split->writeTileFiles(dir.file("t"), names);
        // Compared whole, not printed: the long case holds half a megabyte.
        EXPECT_TRUE(readFile(dir.file("t0.NeQ")) == std::string(image.begin(), image.end()));
    }
}

TEST(UvGroups, CountsDistinctSignedValues) {
    const std::pair<std::vector<std::int16_t>, std::size_t> cases[] = {
        {{1, 1, 2, 5, 2}, 3}, {{-1, 32767, -32768, 0, -1}, 4}, {{7}, 1}};
    for (const auto& [groups, distinct] : cases) {
        meshfile::Mesh mesh = uvMesh(std::vector<UvRecord>(groups.size()));
        mesh.groups = groups;
        const NeqBytes bytes = meshfile::buildNeqChain(mesh);
        EXPECT_EQ(meshfile::countDistinctGroups(NeqView(bytes)), distinct);
    }
}

using Names = std::vector<std::string>;

// Three quads in the tiles _u0_v0, _u1_v0 and _u-1_v0, their later pairs astray. Each file
// holds the input up to the UV records, then every pair: in the tile, its place there;
// outside, (-1, -1); then 16 zero bytes. One that cannot be created stops the loop.
TEST(UvTilesSplit, WritesOneByteExactFilePerTileInNameOrderUntilOneFails) {
    TempDir dir;
    const auto tileFile = [&dir](int k) { return dir.file("out" + std::to_string(k) + ".NeQ"); };
    const auto golden = [](int k) {
        return readTestData("meshfile/split_tile" + std::to_string(k) + ".NeQ");
    };
    const std::string input = NEQBRIDGE_TEST_DATA "/meshfile/split_input.NeQ";
    const std::string base = dir.file("out.NeQ");
    Names names = {"left over"};
    ASSERT_EQ(api::hostCode(meshfile::splitUvTiles(input.c_str(), base.c_str(), names),
                            api::kCannotOpenInput),
              3.0f);
    EXPECT_EQ(names, (Names{"_u-1_v0", "_u0_v0", "_u1_v0"}));
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(readFile(tileFile(k)), golden(k)) << k;
    EXPECT_FALSE(fileExists(tileFile(3)));

    for (int k = 0; k < 3; ++k)
        ASSERT_EQ(::remove(tileFile(k).c_str()), 0);
    ASSERT_EQ(::mkdir(tileFile(1).c_str(), 0700), 0);
    EXPECT_EQ(api::hostCode(meshfile::splitUvTiles(input.c_str(), base.c_str(), names),
                            api::kCannotOpenInput),
              1502.0f);
    EXPECT_EQ(names, Names{"_u-1_v0"});
    EXPECT_EQ(readFile(tileFile(0)), golden(0));
    EXPECT_FALSE(fileExists(tileFile(2)));
    // A null base names no creatable file.
    EXPECT_EQ(
        api::hostCode(meshfile::splitUvTiles(input.c_str(), nullptr, names), api::kCannotOpenInput),
        1501.0f);
}

TEST(UvTilesSplitNames, StemIsTheBaseCutBeforeItsLastDot) {
    const std::pair<const char*, const char*> cases[] = {{"/tmp/Head.NeQ", "/tmp/Head0.NeQ"},
                                                         {"/tmp/Head", "/tmp/Head0.NeQ"},
                                                         {"/tmp/a.b/Head", "/tmp/a0.NeQ"},
                                                         {"x.tar.gz", "x.tar0.NeQ"}};
    for (const auto& [base, firstFile] : cases)
        EXPECT_EQ(meshfile::uvTileFilePath(meshfile::uvTileFileStem(base), 0), firstFile);
    EXPECT_EQ(meshfile::uvTileFilePath("/t/H", 12), "/t/H12.NeQ");
}

} // namespace
} // namespace neq::test
