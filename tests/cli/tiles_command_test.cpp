// A small mesh can name thousands of tiles: past 1000 files or 1 GiB the split says what
// it would write and writes nothing, unless --force. The meshes are built here, being too
// big to keep as files; the tool's other tile cases are in the transcript tiles.txt.

#include "meshfile/uv_test_meshes.h"
#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

namespace neq::test {
namespace {

TEST(TilesCommand, RefusesRunawaySplitsUnlessForced) {
    TempDir dir;
    std::vector<UvRecord> manyTiles, bigFiles(34000, UvRecord{0.5f, 0.5f, 0, 0, 0, 0, 0, 0});
    for (int tile = 0; tile < 1001; ++tile)
        manyTiles.push_back({tile + 0.5f, 0.5f, 0, 0, 0, 0, 0, 0});
    for (int tile = 1; tile < 1000; ++tile)
        bigFiles[static_cast<std::size_t>(tile)][0] = tile + 0.5f;
    meshfile::writeBytesToFile(dir.file("many.NeQ"), uvFile(manyTiles));
    meshfile::writeBytesToFile(dir.file("big.NeQ"), uvFile(bigFiles));
    // Forced, the split goes on to write (here into a folder that is not there).
    for (const auto& [arguments, message] : std::vector<std::pair<std::string, std::string>>{
             {"tiles many.NeQ t --split",
              "neqbridge tiles: splitting 'many.NeQ' would write 1001 tile files of 96192 bytes, "
              "96288192 bytes in all (more than 1000 files); nothing was written; add --force to "
              "write them\n"},
             {"tiles big.NeQ t --split", "(more than 1 GiB); nothing was written"},
             {"tiles many.NeQ none/t --split --force",
              "tiles: cannot create output 'none/t0.NeQ': No such file"}}) {
        const ToolRun run = runTool(arguments, true, "cd " + dir.path() + " &&");
        EXPECT_EQ(run.exitCode, 1) << arguments;
        EXPECT_NE(run.output.find(message), std::string::npos) << arguments << "\n" << run.output;
    }
    EXPECT_EQ(listFolder(dir.path()), (std::vector<std::string>{"big.NeQ", "many.NeQ"}));
}

} // namespace
} // namespace neq::test
