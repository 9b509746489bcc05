// The `obj`, `colors` and `info` commands, run as a user would run them.

#include "meshfile/neq_format.h"
#include "meshfile/neq_writer.h"
#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::meshfile {
namespace {

using test::runTool;
using test::ToolRun;

class MeshCommands : public ::testing::Test {
  protected:
    MeshCommands() {
        Mesh base;
        base.faces = {{0, 1, 2, 3}, {0, 1, 2, -1}};
        writeBytesToFile(basePath, buildNeqFacesFirst(base));
        Mesh subdivided;
        subdivided.vertices = {{0, 0, 0}, {1, 0, 0}};
        subdivided.colours = {{1, 2, 3}, {4, 5, 6}};
        for (int i = 0; i < 7; ++i)
            subdivided.faces.push_back({0, 1, 0, i % 2 ? -1 : 1});
        writeBytesToFile(subdividedPath, buildNeqForObjExport(subdivided));
        writeBytesToFile(chainPath, buildNeqChain(subdivided));
    }

    test::TempDir dir;
    const std::string basePath = dir.file("base.neq");
    const std::string subdividedPath = dir.file("sub.neq");
    const std::string chainPath = dir.file("chain.neq");
    const std::string outPath = dir.file("out.obj");
};

TEST_F(MeshCommands, ObjWritesTheExportAndSaysWhat) {
    const ToolRun run = runTool("obj " + basePath + " " + subdividedPath + " " + outPath, true);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output,
              "wrote " + outPath + ": 2 vertices, 2 colours, 7 faces in 2 face groups\n");
    const std::string obj = test::readFile(outPath);
    EXPECT_EQ(obj.substr(obj.find("#FaceID 2")), "#FaceID 2\nf 1 2 1 2\nf 1 2 1 \nf 1 2 1 2\n");

    // Level 2 asks for 28 faces; the export stops after the 7 there are, and warns.
    const ToolRun level2 =
        runTool("obj --level 2 " + basePath + " " + subdividedPath + " " + outPath, true);
    EXPECT_EQ(level2.exitCode, 0);
    EXPECT_NE(level2.output.find("warning: the face IDs of " + basePath +
                                 " ask for 28 faces in 2 groups, but " + subdividedPath +
                                 " gave 8 faces in 1 groups"),
              std::string::npos)
        << level2.output;
}

TEST_F(MeshCommands, ObjTranslatesEveryResultCode) {
    const std::string missing = dir.file("missing.neq");
    const std::string noFaces = dir.file("nofaces.neq");
    writeBytesToFile(noFaces, buildNeqFacesFirst(Mesh{}));
    const struct {
        std::string arguments;
        int exitCode;
        std::string message;
    } cases[] = {
        {missing + " " + subdividedPath + " " + outPath, 1,
         "cannot open input file " + missing + " (code -1760)"},
        {basePath + " " + missing + " " + outPath, 1,
         "cannot open input file " + missing + " (code -1760)"},
        {basePath + " " + subdividedPath + " " + dir.file("no/x.obj"), 1,
         "cannot create output file " + dir.file("no/x.obj") + " (code -2)"},
        {noFaces + " " + subdividedPath + " " + outPath, 1,
         "no face IDs: " + noFaces + " has no face records"},
        {basePath + " " + chainPath + " " + outPath, 1,
         "expected the colour block (tag 35001) at offset 204, found tag 24 (unknown "
         "block); " +
             outPath + " keeps the lines written so far (code 24)"},
        {basePath + " " + basePath + " " + outPath, 1,
         "expected the vertex block (tag 10001) at offset 32, found tag 20001 (face block); "
         "nothing was written (code 20001)"},
        {basePath + " " + subdividedPath, 2, "missing arguments"},
        {basePath + " " + subdividedPath + " " + outPath + " --level two", 2,
         "--level needs a number, not 'two'"},
    };
    for (const auto& c : cases) {
        const ToolRun run = runTool("obj " + c.arguments, true);
        EXPECT_EQ(run.exitCode, c.exitCode) << c.arguments;
        EXPECT_NE(run.output.find("neqbridge: " + c.message), std::string::npos) << run.output;
    }
}

TEST_F(MeshCommands, ColorsWritesTheRgbBlockAndWarnsAboutTheTag) {
    const std::string colours = dir.file("colours.neq");
    Mesh mesh;
    mesh.colours = {{0xFF, 0x20, 0x10}};
    writeBytesToFile(colours, buildNeqColoursFirst(mesh));
    const std::string text = dir.file("c.txt");
    ToolRun run = runTool("colors " + colours + " " + text, true);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "wrote " + text + ": 1 colours\n");
    EXPECT_NE(test::readFile(text).find("\n#RGB  ff2010\n# End of RGB block\n"), std::string::npos);

    run = runTool("colors " + basePath + " " + text, true);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("warning: expected the colour block (tag 35001) at offset 32, "
                              "found tag 20001 (face block)"),
              std::string::npos);
    run = runTool("colors " + dir.file("missing") + " " + text, true);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("(code -1760)"), std::string::npos);
}

TEST_F(MeshCommands, InfoListsTheChainAndItsProblems) {
    ToolRun run = runTool("info " + chainPath);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, chainPath +
                              ": 240 bytes\n"
                              "      offset        tag  block             length      count\n"
                              "          32      10001  vertex                40          2\n"
                              "          72      20001  face                 128          7\n"
                              "         200      35001  colour                24          2\n"
                              "         224          0  end-of-chain           0          0\n"
                              "block chain: well formed\n"
                              "OBJ export layout: colour block at 204: found tag 24 (unknown "
                              "block); face block at 220: found tag 263430 (unknown block): "
                              "not ready\n");

    // Cut inside the face block: it runs past the end, and no end-of-chain follows.
    Mesh faces;
    faces.faces = {{0, 1, 2, 3}};
    NeqBytes cut = buildNeqFacesFirst(faces);
    cut.resize(60);
    const std::string cutPath = dir.file("cut.neq");
    writeBytesToFile(cutPath, cut);
    run = runTool("info --json " + cutPath);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "{\"file\":\"" + cutPath +
                              "\",\"size\":60,\"blocks\":[{\"offset\":32,\"tag\":20001,\"kind\":"
                              "\"face\",\"length\":32,\"count\":1,\"problems\":[\"runs past the "
                              "end of the file: 32 bytes, 28 left\"]}],\"terminated\":false,"
                              "\"bytesAfterChain\":0,\"problems\":[\"no end-of-chain block (16 "
                              "zero bytes) before the end of the file\"],\"wellFormed\":false,"
                              "\"objExport\":null}\n");

    writeBytesToFile(cutPath, NeqBytes(40, 0x11));
    run = runTool("info " + cutPath);
    EXPECT_NE(run.output.find("problem: truncated block header: 8 of 16 bytes"), std::string::npos)
        << run.output;
    EXPECT_EQ(runTool("info " + dir.file("missing"), true).exitCode, 1);
    EXPECT_EQ(runTool("info", true).exitCode, 2);
}

TEST_F(MeshCommands, HelpStartsWithTheUsageLine) {
    for (const char* command : {"info", "obj", "colors"}) {
        const ToolRun run = runTool(std::string(command) + " --help");
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.output.rfind(std::string("usage: neqbridge ") + command + " ", 0), 0u)
            << run.output;
    }
}

} // namespace
} // namespace neq::meshfile
