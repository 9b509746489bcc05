#include "meshfile/uv_tiles.h"

#include "meshfile/uv_test_meshes.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>

namespace neq::test {
namespace {

using Names = std::vector<std::string>;

// Faces in three tiles; the second pair of each record strays into other tiles.
const std::vector<UvRecord> kRecords = {
    {0.5f, 0.5f, 1.25f, 0.75f, 0.0f, 0.0f, 0.99f, 0.25f},  // _u0_v0
    {1.25f, 0.75f, 0.5f, 0.5f, 1.0f, 0.0f, 1.5f, 0.5f},    // _u1_v0
    {-0.25f, 0.5f, -1.0f, 0.5f, -0.5f, 0.25f, 0.5f, 0.5f}, // _u-1_v0
};

// A tile file as it must come out: the input up to the UV records, the pairs as
// little-endian floats, 16 zero bytes.
std::string expectedTileFile(const meshfile::NeqBytes& input, const std::vector<float>& pairs) {
    std::string out(input.begin(), input.begin() + uvRecordsOffset(uvMesh(kRecords)));
    for (const float value : pairs) {
        std::uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        for (int shift = 0; shift < 32; shift += 8)
            out.push_back(static_cast<char>(bits >> shift));
    }
    return out + std::string(16, '\0');
}

class UvTilesSplit : public ::testing::Test {
  protected:
    void SetUp() override {
        input = meshfile::buildNeqChain(uvMesh(kRecords));
        ASSERT_TRUE(meshfile::writeBytesToFile(dir.file("head.NeQ"), input));
    }
    std::string tileFile(int k) const { return dir.file("out" + std::to_string(k) + ".NeQ"); }
    float split(Names& names) const {
        return meshfile::splitUvTiles(dir.file("head.NeQ").c_str(), dir.file("out.NeQ").c_str(),
                                      names);
    }

    TempDir dir;
    meshfile::NeqBytes input;
};

TEST_F(UvTilesSplit, WritesOneByteExactFilePerTileInNameOrder) {
    Names names = {"left over"};
    ASSERT_EQ(split(names), 3.0f);
    EXPECT_EQ(names, (Names{"_u-1_v0", "_u0_v0", "_u1_v0"}));
    const float o = -1.0f; // a pair outside the tile
    const std::vector<std::vector<float>> expectedPairs = {
        // _u-1_v0: -1.0 lies in tile -2, so only (-0.25, 0.5) and (-0.5, 0.25) stay.
        {o, o, o, o, o, o, o, o, o, o, o, o, o, o, o, o, 0.75f, 0.5f, o, o, 0.5f, 0.25f, o, o},
        {0.5f, 0.5f, o, o, 0.0f, 0.0f, 0.99f, 0.25f, o, o, 0.5f, 0.5f,
         o,    o,    o, o, o,    o,    o,     o,     o, o, 0.5f, 0.5f},
        {o,    o,    0.25f, 0.75f, o, o, o, o, 0.25f, 0.75f, o, o,
         0.0f, 0.0f, 0.5f,  0.5f,  o, o, o, o, o,     o,     o, o},
    };
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(readFile(tileFile(k)), expectedTileFile(input, expectedPairs[k])) << k;
    EXPECT_FALSE(fileExists(tileFile(3)));
}

TEST_F(UvTilesSplit, UncreatableFileStopsTheLoopAndKeepsEarlierFiles) {
    ASSERT_EQ(::mkdir(tileFile(1).c_str(), 0700), 0);
    Names names;
    EXPECT_EQ(split(names), 1502.0f);
    EXPECT_EQ(names, Names{"_u-1_v0"});
    EXPECT_EQ(readFile(tileFile(0)).size(), uvRecordsOffset(uvMesh(kRecords)) + 12 * 8 + 16);
    EXPECT_FALSE(fileExists(tileFile(2)));
    // A null base names no creatable file.
    EXPECT_EQ(meshfile::splitUvTiles(dir.file("head.NeQ").c_str(), nullptr, names), 1501.0f);
}

TEST(UvTilesSplitNames, StemIsTheBaseCutBeforeItsLastDot) {
    const struct {
        const char* base;
        const char* firstFile;
    } cases[] = {{"/tmp/Head.NeQ", "/tmp/Head0.NeQ"},
                 {"/tmp/Head", "/tmp/Head0.NeQ"},
                 {"/tmp/a.b/Head", "/tmp/a0.NeQ"},
                 {"x.tar.gz", "x.tar0.NeQ"}};
    for (const auto& c : cases)
        EXPECT_EQ(meshfile::uvTileFilePath(meshfile::uvTileFileStem(c.base), 0), c.firstFile);
    EXPECT_EQ(meshfile::uvTileFilePath("/t/H", 12), "/t/H12.NeQ");
}

} // namespace
} // namespace neq::test
