// The UV tile exports as the host reaches them: through the real shared library, with
// the typed exports found under their C++ (mangled) names.

#include "api/uv_tile_exports.h"
#include "meshfile/uv_test_meshes.h"
#include "support/host_library.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace neq::test {
namespace {

class UvTileExports : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(
            meshfile::writeBytesToFile(mesh, uvFile({{0.5f, 0.5f}, {1.5f, 0.2f}, {0.1f, 0.9f}})));
        library.call("clearUVString");
    }
    std::string tileString(int index) const {
        char buffer[64] = "unchanged";
        getUVTileString(index, buffer);
        return buffer;
    }

    HostLibrary library;
    TempDir dir;
    const std::string mesh = dir.file("head.NeQ");
    std::string base = dir.file("out.NeQ");
    decltype(&::GetUVTile) getUVTile = library.function(::GetUVTile, "_Z9GetUVTilePKcPc");
    decltype(&::GetUVsFromNeQ) getUVsFromNeQ =
        library.function(::GetUVsFromNeQ, "_Z13GetUVsFromNeQPKcPc");
    decltype(&::GetUVGroup) getUVGroup = library.function(::GetUVGroup, "_Z10GetUVGroupPKc");
    decltype(&::getUVTileString) getUVTileString =
        library.function(::getUVTileString, "_Z15getUVTileStringiPc");
};

TEST_F(UvTileExports, ResultCodesAndTheBufferWrittenOnlyOnSuccess) {
    const std::string missing = dir.file("missing.NeQ");
    const std::string plain = dir.file("plain.NeQ"); // no UV and no group block
    ASSERT_TRUE(meshfile::writeBytesToFile(plain, meshfile::buildNeqChain(meshfile::Mesh{})));
    char buffer[64] = "unchanged";
    EXPECT_EQ(getUVTile(missing.c_str(), buffer), -17.0f);
    EXPECT_EQ(getUVGroup(missing.c_str()), -17.0f);
    EXPECT_EQ(getUVsFromNeQ(missing.c_str(), base.data()), -1760.0f);
    EXPECT_EQ(getUVTile(plain.c_str(), buffer), -18.0f);
    EXPECT_EQ(getUVGroup(plain.c_str()), -18.0f);
    EXPECT_EQ(getUVsFromNeQ(plain.c_str(), base.data()), -18.0f);
    EXPECT_STREQ(buffer, "unchanged");
    EXPECT_EQ(getUVTile(mesh.c_str(), buffer), 2.0f);
    EXPECT_STREQ(buffer, "_u0_v0");
    EXPECT_EQ(getUVTile(mesh.c_str(), nullptr), 2.0f);
    EXPECT_EQ(getUVGroup(mesh.c_str()), 3.0f);
}

TEST_F(UvTileExports, SplitNamesAreReadBackAndClearedThroughTheHostEntry) {
    EXPECT_EQ(getUVsFromNeQ(mesh.c_str(), base.data()), 2.0f);
    EXPECT_TRUE(fileExists(dir.file("out0.NeQ")) && fileExists(dir.file("out1.NeQ")));
    EXPECT_EQ(tileString(0), "_u0_v0");
    EXPECT_EQ(tileString(1), "_u1_v0");
    // A failed split leaves the list empty.
    EXPECT_EQ(getUVsFromNeQ(dir.file("missing.NeQ").c_str(), base.data()), -1760.0f);
    EXPECT_EQ(tileString(0), "unchanged");
    EXPECT_EQ(getUVsFromNeQ(mesh.c_str(), base.data()), 2.0f);
    EXPECT_EQ(library.call("clearUVString"), 0.0f);
    EXPECT_EQ(tileString(0), "unchanged");
}

} // namespace
} // namespace neq::test
