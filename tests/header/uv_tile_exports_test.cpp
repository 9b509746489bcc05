// The UV tile exports through the real shared library and the public header.

#include "support/host_library.h"
#include "support/temp_dir.h"

#include <neqbridge/neqbridge.hpp>

#include <gtest/gtest.h>

namespace neq::test {
namespace {

std::string tileString(int index) {
    char buffer[64] = "unchanged";
    ::getUVTileString(index, buffer);
    return buffer;
}

// head.NeQ: first UVs (0.5, 0.5), (1.5, 0.2), (0.1, 0.9); groups 0, 1, 2. A buffer is
// written only on success; a failed split leaves the name list empty.
TEST(UvTileExports, ResultCodesAndTileNamesThroughTheHostEntries) {
    HostLibrary library;
    TempDir dir;
    const std::string mesh = dir.file("head.NeQ"), plain = dir.file("plain.NeQ");
    std::string base = dir.file("out.NeQ");
    writeFile(mesh, readTestData("meshfile/three_faces_two_tiles.NeQ"));
    writeFile(plain, readTestData("meshfile/no_uvs_no_groups.NeQ")); // no UV or group block
    library.call("clearUVString");
    char buffer[64] = "unchanged";
    EXPECT_EQ(GetUVTile(plain.c_str(), buffer), -18.0f);
    EXPECT_EQ(GetUVGroup(plain.c_str()), -18.0f);
    EXPECT_EQ(GetUVsFromNeQ(plain.c_str(), base.data()), -18.0f);
    EXPECT_STREQ(buffer, "unchanged");
    EXPECT_EQ(GetUVTile(mesh.c_str(), buffer), 2.0f);
    EXPECT_STREQ(buffer, "_u0_v0");
    EXPECT_EQ(GetUVTile(mesh.c_str(), nullptr), 2.0f);
    EXPECT_EQ(GetUVGroup(mesh.c_str()), 3.0f);

    EXPECT_EQ(GetUVsFromNeQ(mesh.c_str(), base.data()), 2.0f);
    EXPECT_TRUE(fileExists(dir.file("out0.NeQ")) && fileExists(dir.file("out1.NeQ")));
    EXPECT_EQ(tileString(0), "_u0_v0");
    EXPECT_EQ(tileString(1), "_u1_v0");
    EXPECT_EQ(GetUVsFromNeQ(dir.file("missing.NeQ").c_str(), base.data()), -1760.0f);
    EXPECT_EQ(tileString(0), "unchanged");
    EXPECT_EQ(GetUVsFromNeQ(mesh.c_str(), base.data()), 2.0f);
    EXPECT_EQ(library.call("clearUVString"), 0.0f);
    EXPECT_EQ(tileString(0), "unchanged");
}

} // namespace
} // namespace neq::test
