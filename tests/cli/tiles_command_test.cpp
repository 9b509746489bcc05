#include "meshfile/uv_test_meshes.h"
#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace neq::test {
namespace {

TEST(TilesCommand, ListsSplitsCountsAndTranslatesFailures) {
    TempDir dir;
    const std::string mesh = dir.file("m.NeQ");
    ASSERT_TRUE(
        meshfile::writeBytesToFile(mesh, uvFile({{0.5f, 0.5f}, {-0.5f, 0.2f}, {0.1f, 0.9f}})));
    EXPECT_EQ(runTool("tiles " + mesh).output,
              mesh + ": 2 UV tiles (* = tile of the last face)\n  _u-1_v0\n  _u0_v0 *\n");
    const std::string split = "tiles " + mesh + " " + dir.file("t.NeQ") + " --split";
    EXPECT_EQ(runTool(split).output, mesh + ": wrote 2 tile files\n  " + dir.file("t0.NeQ") +
                                         "  _u-1_v0\n  " + dir.file("t1.NeQ") + "  _u0_v0\n");
    EXPECT_EQ(runTool("groups " + mesh).output, mesh + ": 3 distinct groups\n");

    ::remove(dir.file("t1.NeQ").c_str());
    ASSERT_EQ(::mkdir(dir.file("t1.NeQ").c_str(), 0700), 0);
    const std::string missing = dir.file("none.NeQ");
    expectRuns({
        {split, 1, "cannot create or write output file " + dir.file("t1.NeQ") + " (result 1502)"},
        {"tiles " + missing, 1, "cannot open input file " + missing},
        {"groups " + missing, 1, "cannot open input file " + missing},
        {"tiles " + mesh + " o.NeQ", 2, "OUTBASE.NeQ needs --split"},
        {"tiles", 2, "missing FILE"},
    });
}

} // namespace
} // namespace neq::test
