// The `obj`, `colors` and `info` commands, run as a user would run them. What the
// files hold is checked by the library tests; these check the messages.

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

TEST_F(MeshCommands, ObjAndColorsReportWhatTheyWroteAndTranslateEveryResultCode) {
    const std::string missing = dir.file("missing.neq");
    const std::string noFaces = dir.file("nofaces.neq");
    writeBytesToFile(noFaces, buildNeqFacesFirst(Mesh{}));
    const std::string subAndOut = " " + subdividedPath + " " + outPath;
    test::expectRuns({
        {"obj " + basePath + subAndOut, 0,
         "wrote " + outPath + ": 2 vertices, 2 colours, 7 faces in 2 face groups\n"},
        // Level 2 asks for 28 faces; the export stops after the 7 there are, and warns.
        {"obj --level 2 " + basePath + subAndOut, 0,
         "warning: the face IDs of " + basePath + " ask for 28 faces in 2 groups, but " +
             subdividedPath + " gave 8 faces in 1 groups"},
        {"colors " + basePath + " " + outPath, 0,
         "warning: expected the colour block (tag 35001) at offset 32, found tag 20001 (face "
         "block); reading it as colours anyway\nwrote " +
             outPath + ": 2 colours"},
        {"obj " + missing + subAndOut, 1, "cannot open input file " + missing + " (code -1760)"},
        {"obj " + basePath + " " + missing + " " + outPath, 1,
         "cannot open input file " + missing + " (code -1760)"},
        {"obj " + basePath + " " + subdividedPath + " " + dir.file("no/x.obj"), 1,
         "cannot create output file " + dir.file("no/x.obj") + " (code -2)"},
        {"obj " + noFaces + subAndOut, 1, "no face IDs: " + noFaces + " has no face records"},
        {"obj " + basePath + " " + chainPath + " " + outPath, 1,
         "expected the colour block (tag 35001) at offset 204, found tag 24 (unknown block); " +
             outPath + " keeps the lines written so far (code 24)"},
        {"obj " + basePath + " " + basePath + " " + outPath, 1,
         "expected the vertex block (tag 10001) at offset 32, found tag 20001 (face block); "
         "nothing was written (code 20001)"},
        {"obj " + basePath + " " + subdividedPath, 2, "missing arguments"},
        {"obj " + basePath + subAndOut + " --level two", 2, "--level needs a number, not 'two'"},
        {"info " + missing, 1, "cannot open input file " + missing},
        {"info", 2, "missing FILE"},
    });
}

// Run inside the test's folder, so that the output names the files as given.
TEST_F(MeshCommands, InfoListsTheChainAndItsProblems) {
    const std::string inDir = "cd " + dir.path() + " &&";
    ToolRun run = runTool("info chain.neq", false, inDir);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, test::readTestData("meshfile/info_chain.txt"));

    // Cut inside the face block: it runs past the end, and no end-of-chain follows.
    Mesh faces;
    faces.faces = {{0, 1, 2, 3}};
    NeqBytes cut = buildNeqFacesFirst(faces);
    cut.resize(60);
    writeBytesToFile(dir.file("cut.neq"), cut);
    run = runTool("info --json cut.neq", false, inDir);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, test::readTestData("meshfile/info_cut.json"));

    writeBytesToFile(dir.file("cut.neq"), NeqBytes(40, 0x11));
    EXPECT_NE(runTool("info cut.neq", false, inDir)
                  .output.find("problem: truncated block header: 8 of 16"),
              std::string::npos);
}

} // namespace
} // namespace neq::meshfile
