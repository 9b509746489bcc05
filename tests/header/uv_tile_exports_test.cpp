// The UV tile exports as the host reaches them: through the real shared library, with
// the typed exports declared by the public header.

#include "support/host_library.h"
#include "support/temp_dir.h"

#include <neqbridge/neqbridge.hpp>

#include <gtest/gtest.h>

namespace neq::test {
namespace {

class UvTileExports : public ::testing::Test {
  protected:
    void SetUp() override {
        // Three quads whose first UVs are (0.5, 0.5), (1.5, 0.2) and (0.1, 0.9), in the
        // groups 0, 1 and 2.
        writeFile(mesh, readTestData("meshfile/three_faces_two_tiles.NeQ"));
        library.call("clearUVString");
    }
    std::string tileString(int index) const {
        char buffer[64] = "unchanged";
        ::getUVTileString(index, buffer);
        return buffer;
    }

    HostLibrary library;
    TempDir dir;
    const std::string mesh = dir.file("head.NeQ");
    std::string base = dir.file("out.NeQ");
};

TEST_F(UvTileExports, ResultCodesAndTheBufferWrittenOnlyOnSuccess) {
    const std::string missing = dir.file("missing.NeQ");
    const std::string plain = dir.file("plain.NeQ"); // no UV and no group block
    writeFile(plain, readTestData("meshfile/no_uvs_no_groups.NeQ"));
    char buffer[64] = "unchanged";
    EXPECT_EQ(GetUVTile(missing.c_str(), buffer), -17.0f);
    EXPECT_EQ(GetUVGroup(missing.c_str()), -17.0f);
    EXPECT_EQ(GetUVsFromNeQ(missing.c_str(), base.data()), -1760.0f);
    EXPECT_EQ(GetUVTile(plain.c_str(), buffer), -18.0f);
    EXPECT_EQ(GetUVGroup(plain.c_str()), -18.0f);
    EXPECT_EQ(GetUVsFromNeQ(plain.c_str(), base.data()), -18.0f);
    EXPECT_STREQ(buffer, "unchanged");
    EXPECT_EQ(GetUVTile(mesh.c_str(), buffer), 2.0f);
    EXPECT_STREQ(buffer, "_u0_v0");
    EXPECT_EQ(GetUVTile(mesh.c_str(), nullptr), 2.0f);
    EXPECT_EQ(GetUVGroup(mesh.c_str()), 3.0f);
}

TEST_F(UvTileExports, SplitNamesAreReadBackAndClearedThroughTheHostEntry) {
    EXPECT_EQ(GetUVsFromNeQ(mesh.c_str(), base.data()), 2.0f);
    EXPECT_TRUE(fileExists(dir.file("out0.NeQ")) && fileExists(dir.file("out1.NeQ")));
    EXPECT_EQ(tileString(0), "_u0_v0");
    EXPECT_EQ(tileString(1), "_u1_v0");
    // A failed split leaves the list empty.
    EXPECT_EQ(GetUVsFromNeQ(dir.file("missing.NeQ").c_str(), base.data()), -1760.0f);
    EXPECT_EQ(tileString(0), "unchanged");
    EXPECT_EQ(GetUVsFromNeQ(mesh.c_str(), base.data()), 2.0f);
    EXPECT_EQ(library.call("clearUVString"), 0.0f);
    EXPECT_EQ(tileString(0), "unchanged");
}

} // namespace
} // namespace neq::test
