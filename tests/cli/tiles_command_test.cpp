#include "meshfile/uv_test_meshes.h"
#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace neq::test {
namespace {

class TilesCommand : public ::testing::Test {
  protected:
    TilesCommand() {
        meshfile::writeBytesToFile(mesh, uvFile({{0.5f, 0.5f}, {-0.5f, 0.2f}, {0.1f, 0.9f}}));
    }

    // Runs inside the test's folder, so that relative names stay inside it.
    ToolRun runHere(const std::string& arguments) {
        return runTool(arguments, false, "cd " + dir.path() + " &&");
    }

    TempDir dir;
    const std::string mesh = dir.file("m.NeQ");
};

TEST_F(TilesCommand, ListsSplitsAndCounts) {
    ToolRun run = runTool("tiles " + mesh);
    EXPECT_EQ(run.output,
              mesh + ": 2 UV tiles (* = tile of the last face)\n  _u-1_v0\n  _u0_v0 *\n");
    run = runTool("tiles " + mesh + " " + dir.file("t.NeQ") + " --split");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, mesh + ": wrote 2 tile files\n  " + dir.file("t0.NeQ") + "  _u-1_v0\n  " +
                              dir.file("t1.NeQ") + "  _u0_v0\n");
    EXPECT_EQ(runTool("groups " + mesh).output, mesh + ": 3 distinct groups\n");
    EXPECT_EQ(runTool("tiles --split -q " + mesh + " " + dir.file("t.NeQ")).errors, "");
}

// The extension is cut from the file name only: a name without one, a dot at its start
// or a dot in a folder name keep the whole name.
TEST_F(TilesCommand, DerivesTileFileNamesFromTheFileNameOnly) {
    ASSERT_EQ(::mkdir(dir.file("out.v2").c_str(), 0700), 0);
    EXPECT_EQ(runHere("tiles m.NeQ noext --split").exitCode, 0);
    EXPECT_EQ(runHere("tiles m.NeQ ./plain --split").exitCode, 0);
    EXPECT_EQ(runHere("tiles m.NeQ .hidden --split").exitCode, 0);
    EXPECT_EQ(runHere("tiles m.NeQ out.v2/head --split").exitCode, 0);
    EXPECT_EQ(runHere("tiles m.NeQ out.v2/head.x.NeQ --split").exitCode, 0);
    EXPECT_EQ(listFolder(dir.path()),
              (std::vector<std::string>{".hidden0.NeQ", ".hidden1.NeQ", "m.NeQ", "noext0.NeQ",
                                        "noext1.NeQ", "out.v2", "plain0.NeQ", "plain1.NeQ"}));
    EXPECT_EQ(listFolder(dir.file("out.v2")),
              (std::vector<std::string>{"head.x0.NeQ", "head.x1.NeQ", "head0.NeQ", "head1.NeQ"}));
}

// A failure at any tile file leaves none of them, and earlier files as they were.
TEST_F(TilesCommand, RefusesFoldersAndDevicesAndLeavesNoPartialFiles) {
    ASSERT_EQ(::mkdir(dir.file("sub").c_str(), 0700), 0);
    ASSERT_EQ(::mkdir(dir.file("t1.NeQ").c_str(), 0700), 0);
    writeFile(dir.file("t0.NeQ"), "");
    writeFile(dir.file("file"), "");
    const auto before = listFolder(dir.path());
    expectRuns({
        {"tiles " + mesh + " " + dir.file("t.NeQ") + " --split", 1,
         "tiles: output '" + dir.file("t1.NeQ") + "' is a folder, not a file\n"},
        {"tiles " + mesh + " " + dir.file("sub") + " --split", 1,
         "tiles: output base '" + dir.file("sub") +
             "' is a folder; give a file name in it, such "
             "as '" +
             dir.file("sub") + "/tile.NeQ'\n"},
        {"tiles " + mesh + " " + dir.path() + "/ --split", 1, "is a folder; give a file name"},
        {"tiles " + mesh + " /dev/full --split", 1,
         "tiles: output base '/dev/full' is a device or pipe, not a file name"},
        {"tiles " + mesh + " " + dir.file("file/t.NeQ") + " --split", 1,
         "tiles: cannot create output '" + dir.file("file/t0.NeQ") + "': Not a directory\n"},
        {"tiles " + mesh + " " + dir.file("none/t.NeQ") + " --split", 1,
         "tiles: cannot create output '" + dir.file("none/t0.NeQ") +
             "': No such file or directory\n"},
        {"tiles " + dir.file("t1.NeQ"), 1, "tiles: input '" + dir.file("t1.NeQ") + "' is a folder"},
        {"tiles " + mesh + " " + dir.file("m.NeQ") + " --split", 0, ""},
    });
    EXPECT_EQ(readFile(dir.file("t0.NeQ")), "");
    auto after = before;
    after.insert(after.begin() + 2, {"m0.NeQ", "m1.NeQ"});
    EXPECT_EQ(listFolder(dir.path()), after);
    EXPECT_TRUE(listFolder(dir.file("sub")).empty());
}

// A small mesh can name thousands of tiles: past 1000 files or 1 GiB the split says what
// it would write and writes nothing, unless --force.
TEST_F(TilesCommand, RefusesRunawaySplitsUnlessForced) {
    std::vector<UvRecord> manyTiles, bigFiles(34000, UvRecord{0.5f, 0.5f, 0, 0, 0, 0, 0, 0});
    for (int tile = 0; tile < 1001; ++tile)
        manyTiles.push_back({tile + 0.5f, 0.5f, 0, 0, 0, 0, 0, 0});
    for (int tile = 1; tile < 1000; ++tile)
        bigFiles[static_cast<std::size_t>(tile)][0] = tile + 0.5f;
    meshfile::writeBytesToFile(dir.file("many.NeQ"), uvFile(manyTiles));
    meshfile::writeBytesToFile(dir.file("big.NeQ"), uvFile(bigFiles));
    // Forced, the split goes on to write (here into a folder that is not there).
    expectRuns({{"tiles many.NeQ t --split", 1,
                 "neqbridge tiles: splitting 'many.NeQ' would write 1001 tile files of "},
                {"tiles many.NeQ t --split", 1,
                 " bytes in all (more than 1000 files); nothing was written; add --force to "
                 "write them\n"},
                {"tiles big.NeQ t --split", 1, "(more than 1 GiB); nothing was written"},
                {"tiles many.NeQ none/t --split --force", 1,
                 "tiles: cannot create output 'none/t0.NeQ': No such file"}},
               "cd " + dir.path() + " &&");
    EXPECT_EQ(listFolder(dir.path()), (std::vector<std::string>{"big.NeQ", "m.NeQ", "many.NeQ"}));
}

TEST_F(TilesCommand, TranslatesReadFailuresAndRejectsWrongCommandLines) {
    const std::string missing = dir.file("none.NeQ");
    const std::string noGroups = dir.file("faces.NeQ");
    writeFile(noGroups, std::string(48, '\0'));
    expectRuns({
        {"tiles " + missing, 1, "tiles: cannot open input '" + missing + "': No such file"},
        {"groups " + missing, 1, "groups: cannot open input '" + missing + "': No such file"},
        {"tiles " + noGroups, 1, "tiles: '" + noGroups + "' has no UV block (code -18)\n"},
        {"groups " + noGroups, 1, "groups: '" + noGroups + "' has no group block (code -18)\n"},
        {"tiles " + mesh + " o.NeQ", 2, "tiles: OUTBASE.NeQ needs --split\nusage: neqbridge tiles"},
        {"tiles " + mesh + " --split", 2, "tiles: --split needs OUTBASE.NeQ\n"},
        {"tiles", 2, "tiles: missing FILE\n"},
        {"groups a b", 2, "groups: unexpected argument 'b'\n"},
    });
}

} // namespace
} // namespace neq::test
