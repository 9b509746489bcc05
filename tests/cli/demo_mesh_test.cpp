#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

int countLinesStartingWith(const std::string& text, const std::string& prefix) {
    int count = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        if (text.compare(at, prefix.size(), prefix) == 0) ++count;
        const std::size_t end = text.find('\n', at);
        if (end == std::string::npos) break;
        at = end + 1;
    }
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
    EXPECT_EQ(countLinesStartingWith(obj, "v "), 47);
    EXPECT_EQ(countLinesStartingWith(obj, "#FaceID "), 9);
    EXPECT_EQ(countLinesStartingWith(obj, "f "), 33);
    EXPECT_NE(obj.find("#FaceID 9\nf 11 32 47 38\nf 12 37 47 32\nf 15 38 47 37\n"),
              std::string::npos);

    const std::string colours = readFile(dir.file("colors.txt"));
    EXPECT_EQ(countLinesStartingWith(colours, "#RGB  "), 2);
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
