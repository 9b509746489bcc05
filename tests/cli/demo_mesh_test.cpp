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

TEST(DemoMesh, WritesTheSampleMeshItsObjAndColours) {
    TempDir dir;
    const ToolRun run = runTool("demo " + dir.path());
    ASSERT_EQ(run.exitCode, 0) << run.output;
    for (const char* name :
         {"base.NeQ", "base_faces.NeQ", "subdivided.NeQ", "subdivided.obj", "colors.txt"}) {
        EXPECT_TRUE(fileExists(dir.file(name))) << name;
        EXPECT_NE(run.output.find(name), std::string::npos) << name;
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
}

TEST(DemoMesh, StopsWithAMessageWhenItCannotWrite) {
    TempDir dir;
    writeFile(dir.file("plain-file"), "not a folder");
    const ToolRun run = runTool("demo " + dir.file("plain-file"), true);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("cannot write " + dir.file("plain-file") + "/base.NeQ"),
              std::string::npos)
        << run.output;
}

} // namespace
} // namespace neq::test
