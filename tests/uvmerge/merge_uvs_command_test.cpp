#include "support/temp_dir.h"
#include "support/tool_run.h"
#include "uvmerge/maya_test_scenes.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace neq::test {
namespace {

class MergeUvsCommand : public ::testing::Test {
  protected:
    MergeUvsCommand() { writeFile(scene, house); }

    TempDir dir;
    const std::string scene = dir.file("house.ma");
    const std::string house = readTestData("uvmerge/house.ma");
    const std::string welded = readTestData("uvmerge/house_welded.ma");
};

TEST_F(MergeUvsCommand, WeldsInPlaceOrIntoAnotherFile) {
    ToolRun run = runTool("merge-uvs " + scene);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "welded '" + scene + "': 33 UVs -> 22 (9 faces, 3 triangles)\n");
    EXPECT_EQ(readFile(scene), welded);

    writeFile(scene, house);
    const std::string out = dir.file("out.ma");
    run = runTool("merge-uvs --stats -q " + scene + " -o " + out);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output.rfind("UVs before  33\nUVs after   22\nfaces       9\ntriangles   3\n"
                               "time        ",
                               0),
              0u)
        << run.output;
    EXPECT_EQ(readFile(scene), house);
    EXPECT_EQ(readFile(out), welded);
    EXPECT_EQ(listFolder(dir.path()), (std::vector<std::string>{"house.ma", "out.ma"}));

    // Nothing to weld: the scene is left as it is (the host's entry would rewrite it).
    const std::string unwelded =
        "createNode transform -n \"t\";\n\tsetAttr \".t\" -type \"double3\" 1 2 3;\n";
    writeFile(scene, unwelded);
    run = runTool("merge-uvs " + scene);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors,
              "neqbridge merge-uvs: nothing to weld in '" + scene +
                  "': it holds no UV or face statements to weld; nothing was written\n");
    EXPECT_EQ(readFile(scene), unwelded);
}

TEST_F(MergeUvsCommand, RefusalsSayWhyAndTouchNothing) {
    const std::string refused = dir.file("refused.ma");
    const std::string text = replaced(kQuadScene, "mu 0 4 0 1 2 3", "mu 0 4 0 1 2 9");
    writeFile(refused, text);
    ASSERT_EQ(::mkfifo(dir.file("pipe.ma").c_str(), 0600), 0);
    ASSERT_EQ(::symlink("house.ma", dir.file("link.ma").c_str()), 0);
    expectRuns({
        {"merge-uvs " + refused, 1,
         "neqbridge merge-uvs: cannot weld '" + refused +
             "': line 10: face 0 uses UV 9, past the UV count 4\n"},
        {"merge-uvs " + refused + " -o " + dir.file("out.ma"), 1, "line 10: face 0 uses UV 9"},
        {"merge-uvs " + dir.file("none.ma"), 1,
         "cannot open input '" + dir.file("none.ma") + "': No such file or directory"},
        {"merge-uvs " + dir.path() + "/x.ma", 1, "cannot open input"},
        {"merge-uvs " + dir.file("pipe.ma"), 1, "': it is not a regular file"},
        {"merge-uvs " + scene + " -o " + scene, 1, "writing it would destroy the input"},
        {"merge-uvs " + scene + " -o " + dir.file("link.ma"), 1, "is the input"},
        {"merge-uvs " + scene + " -o " + dir.path() + "/./house.ma", 1, "is the input"},
        {"merge-uvs", 2, "neqbridge merge-uvs: missing FILE.ma"},
        {"merge-uvs " + scene + " " + refused, 2, "unexpected argument"},
        {"merge-uvs --weld " + scene, 2, "unknown option '--weld'"},
        {"merge-uvs " + scene + " -o", 2, "option -o needs a value OUT.ma"},
    });
    EXPECT_EQ(readFile(refused), text);
    EXPECT_EQ(readFile(scene), house);
    EXPECT_EQ(listFolder(dir.path()),
              (std::vector<std::string>{"house.ma", "link.ma", "pipe.ma", "refused.ma"}));
}

TEST_F(MergeUvsCommand, HelpAndTheHostEntryThroughCall) {
    const ToolRun help = runTool("merge-uvs --help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.output.rfind(
                  "usage: neqbridge merge-uvs FILE.ma [-o OUT.ma] [--force] [--stats]\n", 0),
              0u);
    EXPECT_EQ(runTool("call NeQMergeUVs " + scene).output, "0\n");
    EXPECT_EQ(readFile(scene), welded);
    EXPECT_EQ(runTool("call NeQMergeUVs " + dir.file("none.ma")).output, "-1\n");
}

} // namespace
} // namespace neq::test
