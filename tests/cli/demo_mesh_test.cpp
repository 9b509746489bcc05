#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

// Lines after the first that start with `prefix`.
int countLines(const std::string& text, const std::string& prefix) {
    int count = 0;
    for (std::size_t at = text.find("\n" + prefix); at != std::string::npos;
         at = text.find("\n" + prefix, at + 1))
        ++count;
    return count;
}

TEST(DemoCommand, WritesTheSampleMeshItsObjColoursAndBridgeFiles) {
    TempDir dir;
    const ToolRun run = runTool("demo " + dir.path());
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, dir.path() + "/\n");
    for (const char* name :
         {"base.NeQ", "base_faces.NeQ", "subdivided.NeQ", "subdivided.obj", "colors.txt"}) {
        EXPECT_TRUE(fileExists(dir.file(name))) << name;
        EXPECT_NE(run.errors.find(name), std::string::npos) << name;
    }

    // 6 quads and 3 triangles become 33 quads in 9 runs of 4 and 3, over 47 vertices.
    const std::string obj = readFile(dir.file("subdivided.obj"));
    const std::string head = "# File exported by Clayvo plugin\n#Vertex count 47\n"
                             "#Face count 204\nv -1.875 -0.625 0\nv -0.625 -0.625 0.1\n";
    EXPECT_EQ(obj.substr(0, head.size()), head);
    EXPECT_EQ(countLines(obj, "v "), 47);
    EXPECT_EQ(countLines(obj, "#FaceID "), 9);
    EXPECT_EQ(countLines(obj, "f "), 33);
    EXPECT_NE(obj.find("#FaceID 9\nf 11 32 47 38\nf 12 37 47 32\nf 15 38 47 37\n"),
              std::string::npos);

    const std::string colours = readFile(dir.file("colors.txt"));
    EXPECT_EQ(countLines(colours, "#RGB  "), 2);
    EXPECT_NE(colours.find("#RGB  281ec8 641e96 "), std::string::npos);

    // The bridge files are written, read back and reported.
    EXPECT_NE(run.errors.find("name \"Sample Modeller\""), std::string::npos) << run.errors;
    EXPECT_NE(run.errors.find("IMPORT_FLIP_Y EXPORT_SWITCH_YZ NORMAL_MAP_FLIP_XY"),
              std::string::npos);
    EXPECT_EQ(readFile(dir.file("NeQ_Config.txt")),
              "PATH = \"/Applications/Sample Modeller.app\"\n# installed location\nOTHER = kept\n");
    EXPECT_EQ(runTool("app " + dir.file("NeQ_App.txt")).exitCode, 0);
}

// Without DIR the demo writes into ./neqbridge-demo and says so; -q leaves the path.
TEST(DemoCommand, DefaultsToAFolderInTheWorkingFolderAndPrintsItsPath) {
    TempDir dir;
    const ToolRun run = runTool("demo -q", false, "cd " + dir.path() + " &&");
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, dir.path() + "/neqbridge-demo/\n");
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"neqbridge-demo"});
    EXPECT_TRUE(fileExists(dir.file("neqbridge-demo/Head.ma")));
}

TEST(DemoCommand, RefusesUnknownOptionsAndFilesForItsFolder) {
    TempDir dir;
    writeFile(dir.file("plain-file"), "not a folder");
    expectRuns(
        {{"demo --bogus", 2, "demo: unknown option '--bogus'\nusage: neqbridge demo [DIR]\n"},
         {"demo a b", 2, "demo: unexpected argument 'b'\n"},
         {"demo plain-file", 1, "demo: 'plain-file' is a file, not a folder\n"},
         {"demo plain-file/deeper", 1,
          "demo: cannot create folder 'plain-file': a file of that name is in the way\n"}},
        "cd " + dir.path() + " &&");
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"plain-file"});
}

} // namespace
} // namespace neq::test
