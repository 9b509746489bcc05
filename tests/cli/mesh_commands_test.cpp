// The `obj`, `colors` and `info` commands, run as a user would run them. What the
// files hold is checked by the library tests; these check the messages, the files left
// behind and that inputs survive.

#include "meshfile/neq_file.h"
#include "support/temp_dir.h"
#include "support/tool_run.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <string>

namespace neq::meshfile {
namespace {

using test::expectRuns;
using test::listFolder;
using test::readFile;
using test::runTool;
using test::ToolRun;

class MeshCommands : public ::testing::Test {
  protected:
    MeshCommands() {
        // A quad and a triangle: 4 + 3 faces at level 1.
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
    const std::string subAndOut = " " + subdividedPath + " " + outPath;
};

TEST_F(MeshCommands, ObjAndColorsReportWhatTheyWroteAndTranslateEveryFailure) {
    const std::string missing = dir.file("missing.neq");
    const std::string noFaces = dir.file("nofaces.neq");
    writeBytesToFile(noFaces, buildNeqFacesFirst(Mesh{}));
    expectRuns({
        {"colors " + chainPath + " " + outPath, 0, "wrote " + outPath + ": 2 colours"},
        {"colors " + basePath + " " + outPath, 1,
         "colors: input '" + basePath + "' has no colour block (tag 35001)\n"},
        {"obj " + missing + subAndOut, 1,
         "obj: cannot open input '" + missing + "': No such file or directory\n"},
        {"obj " + basePath + " " + dir.path() + " " + outPath, 1,
         "obj: input '" + dir.path() + "' is a folder, not a file\n"},
        {"obj " + basePath + " " + subdividedPath + " " + dir.file("no/x.obj"), 1,
         "obj: cannot create output '" + dir.file("no/x.obj") + "': No such file or directory\n"},
        {"obj " + basePath + " " + subdividedPath + " " + dir.path(), 1,
         "obj: output '" + dir.path() + "' is a folder, not a file\n"},
        {"obj " + noFaces + subAndOut, 1,
         "obj: no face IDs: '" + noFaces + "' has no face records"},
        // A plain block chain is laid out for the export in memory.
        {"obj " + basePath + " " + chainPath + " " + outPath, 0,
         "wrote " + outPath + ": 2 vertices, 2 colours, 7 faces in 2 face groups\n"},
        {"obj " + basePath + " " + basePath + " " + outPath, 1,
         "obj: SUBDIVIDED '" + basePath + "' has no vertex block (tag 10001)\n"},
        {"colors " + subdividedPath + " /dev/full", 1,
         "colors: cannot write output '/dev/full': No space left on device\n"},
        {"info " + missing, 1, "info: cannot open input '" + missing + "': No such file"},
    });
}

TEST_F(MeshCommands, ObjRefusesLevelsThatAreNotWholeNumbersInRange) {
    for (const char* level : {"0", "-1", "1.5", "16", "two", "", "1e1", " 2"})
        expectRuns(
            {{"obj " + basePath + subAndOut + " --level '" + level + "'", 2,
              std::string("obj: --level must be a whole number of subdivision levels from "
                          "1 to 15, not '") +
                  level +
                  "'\nusage: neqbridge obj BASE SUBDIVIDED OUT.obj [--level N] [--force]\n"}});
    EXPECT_FALSE(test::fileExists(outPath));
}

// Level 2 asks for 16 + 12 faces where the subdivided mesh has 7: the export would read
// on past its face records and invent faces. Level 1 on a mesh with more faces than
// that would drop them.
TEST_F(MeshCommands, ObjRefusesMeshesThatDoNotMatchAtTheLevel) {
    expectRuns({{"obj " + basePath + subAndOut + " --level 2", 1,
                 "obj: the meshes do not match at level 2: the 2 faces of '" + basePath +
                     "' become 28 faces, but '" + subdividedPath +
                     "' has 7 face records; check --level and that SUBDIVIDED is BASE "
                     "subdivided\n"}});
    Mesh bigger;
    bigger.vertices = {{0, 0, 0}};
    bigger.faces.assign(9, {0, 0, 0, 0});
    writeBytesToFile(subdividedPath, buildNeqForObjExport(bigger));
    expectRuns({{"obj " + basePath + subAndOut, 1,
                 "become 7 faces, but '" + subdividedPath + "' has 9 face records"}});
    EXPECT_FALSE(test::fileExists(outPath));
}

TEST_F(MeshCommands, OutputsThatNameAnInputAreRefusedAndTheInputKept) {
    const std::string subBytes = readFile(subdividedPath);
    ASSERT_EQ(::symlink(subdividedPath.c_str(), dir.file("link.neq").c_str()), 0);
    ASSERT_EQ(::link(subdividedPath.c_str(), dir.file("hard.neq").c_str()), 0);
    const std::string sameFile = "' is the input '" + subdividedPath +
                                 "' (the same file); writing it would destroy the input\n";
    for (const std::string& output :
         {subdividedPath, dir.path() + "/./sub.neq", dir.file("link.neq"), dir.file("hard.neq")})
        expectRuns({{"obj " + basePath + " " + subdividedPath + " " + output, 1,
                     "obj: output '" + output + sameFile},
                    {"colors " + subdividedPath + " " + output, 1,
                     "colors: output '" + output + sameFile}});
    // A link that leads nowhere yet names the file it would create.
    ASSERT_EQ(::symlink(dir.file("new.obj").c_str(), dir.file("dangling").c_str()), 0);
    expectRuns({{"colors " + dir.file("new.obj") + " " + dir.file("dangling"), 1,
                 "output '" + dir.file("dangling") + "' is the input '" + dir.file("new.obj")}});
    EXPECT_EQ(readFile(subdividedPath), subBytes);
}

// A device or pipe cannot be replaced, so it is written directly.
TEST_F(MeshCommands, DevicesAndPipesAreWrittenDirectly) {
    const ToolRun run = runTool("colors -q " + subdividedPath + " /dev/stdout");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output.rfind("# The following RGB block", 0), 0u);
    EXPECT_NE(run.output.find("\n# End of RGB block\n"), std::string::npos);
    EXPECT_EQ(runTool("obj " + basePath + " " + subdividedPath + " /dev/null").exitCode, 0);
}

// A failing export leaves neither a partial file nor a damaged earlier one, and no
// temporary file; a successful one keeps a symbolic link in place.
TEST_F(MeshCommands, FailedExportsLeaveEarlierOutputsAndNoTemporaryFiles) {
    test::writeFile(outPath, "# earlier\n");
    const auto before = listFolder(dir.path());
    EXPECT_EQ(runTool("obj " + basePath + " " + basePath + " " + outPath).exitCode, 1);
    EXPECT_EQ(runTool("obj " + basePath + subAndOut + " --level 3").exitCode, 1);
    EXPECT_EQ(readFile(outPath), "# earlier\n");
    EXPECT_EQ(listFolder(dir.path()), before);

    ASSERT_EQ(::symlink("out.obj", dir.file("via-link.obj").c_str()), 0);
    EXPECT_EQ(
        runTool("obj " + basePath + " " + subdividedPath + " " + dir.file("via-link.obj")).exitCode,
        0);
    EXPECT_EQ(readFile(outPath).rfind("# File exported by Clayvo plugin\n", 0), 0u);
    char target[64] = {};
    EXPECT_EQ(::readlink(dir.file("via-link.obj").c_str(), target, sizeof target - 1), 7);
}

// Status lines go to stderr and -q silences them; data goes to stdout.
TEST_F(MeshCommands, StatusLinesGoToStandardErrorUnlessQuiet) {
    ToolRun run = runTool("obj " + basePath + subAndOut);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors,
              "wrote " + outPath + ": 2 vertices, 2 colours, 7 faces in 2 face groups\n");
    run = runTool("obj -q " + basePath + subAndOut);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output + run.errors, "");
    run = runTool("colors " + subdividedPath + " " + dir.file("c.txt") + " --quiet");
    EXPECT_EQ(run.errors, "");
    run = runTool("groups -q " + dir.file("none"));
    EXPECT_EQ(run.errors, "neqbridge groups: cannot open input '" + dir.file("none") +
                              "': No such file or directory\n");
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
