#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace neq::test {
namespace {

// The nodes the statements connect, for every scene name the tests use.
std::string nodesOfAllScenes() {
    std::string text;
    for (const std::string name : {"Head", "Smile", "Blink", "2nd", "Link"})
        for (const char* node :
             {"Shape", ":groupId1", ":defaultMat", ":defaultMat1", ":materialInfo1"})
            text += "createNode x -n \"" + name + node + "\";\n";
    return text;
}

std::string sceneText(const std::string& name) {
    return name + "\n" + nodesOfAllScenes();
}

class BlendCommand : public ::testing::Test {
  protected:
    BlendCommand() {
        for (const char* name : {"Head.ma", "Smile.ma", "Blink.ma", "2nd.ma"})
            writeFile(dir.file(name), sceneText(name));
    }

    // Runs inside the scene folder, so that the messages name the files as given.
    void expectBlendRuns(const std::vector<ExpectedRun>& runs) {
        expectRuns(runs, "cd " + dir.path() + " &&");
    }

    TempDir dir;
};

TEST_F(BlendCommand, ReportsTheSceneWarnsAboutNamesAndRefusesWrongCommandLines) {
    expectBlendRuns({
        {"blend Head.ma Smile.ma", 0, "with 1 target written to Head.ma\n"},
        {"blend Smile.ma 2nd.ma", 0,
         "blend: warning: target name \"2nd\" (from 2nd.ma) is not a plain"},
        {"blend Head.ma", 2,
         "blend: missing TARGET.ma\nusage: neqbridge blend BASE.ma TARGET.ma...\n"},
    });
    // Each file read repeats its last byte.
    EXPECT_EQ(readFile(dir.file("Head.ma"))
                  .rfind(sceneText("Head.ma") + "\n" + sceneText("Smile.ma") +
                             "\n\n\n\ncreateNode groupId",
                         0),
              0u);
}

// Every target is checked first: nothing is appended when one of them cannot be read.
TEST_F(BlendCommand, ChecksEveryTargetBeforeTouchingTheBase) {
    ASSERT_EQ(::mkdir(dir.file("Folder.ma").c_str(), 0700), 0);
    expectBlendRuns({
        {"blend Head.ma Smile.ma Missing.ma Blink.ma", 1,
         "blend: cannot open input 'Missing.ma': No such file or directory\n"},
        {"blend Head.ma Smile.ma Folder.ma", 1,
         "blend: input 'Folder.ma' is a folder, not a file\n"},
        {"blend NoBase.ma Smile.ma", 1, "blend: cannot open input 'NoBase.ma': No such file"},
        {"blend Head.ma Smile.ma Head.ma", 1,
         "blend: output 'Head.ma' is the input 'Head.ma' (the same file)"},
        // A name that would end its quoted string, even of a file that is not there.
        {"blend Head.ma Smile.ma 't\";system(\"id\");\".ma'", 1,
         "blend: target scene 't\";system(\"id\");\".ma' has a name with a double quote"},
        {"blend \"$(printf 'B\\tx.ma')\" Smile.ma", 1, "blend: base scene 'B\tx.ma' has a name"},
    });
    EXPECT_EQ(readFile(dir.file("Head.ma")), sceneText("Head.ma"));
    EXPECT_EQ(listFolder(dir.path()),
              (std::vector<std::string>{"2nd.ma", "Blink.ma", "Folder.ma", "Head.ma", "Smile.ma"}));
}

// The deformer's node names are fixed, so a second one in the same scene cannot load.
TEST_F(BlendCommand, RefusesABaseThatAlreadyHoldsTheBlendNodes) {
    expectBlendRuns({{"blend Head.ma Smile.ma", 0, ""}});
    const std::string assembled = readFile(dir.file("Head.ma"));
    expectBlendRuns({{"blend Head.ma Blink.ma", 1,
                      "blend: base scene 'Head.ma' already holds the blend-shape nodes of an "
                      "earlier run (createNode blendShape -n \"blendShape1\";); start again from "
                      "a fresh base scene\n"}});
    EXPECT_EQ(readFile(dir.file("Head.ma")), assembled);
}

// The base is assembled on a copy: through a link the link stays, and the mode is kept.
TEST_F(BlendCommand, ReplacesTheBaseOnlyWhenCompleteAndKeepsLinksAndMode) {
    ASSERT_EQ(::chmod(dir.file("Head.ma").c_str(), 0640), 0);
    ASSERT_EQ(::symlink("Head.ma", dir.file("Link.ma").c_str()), 0);
    expectBlendRuns({{"blend Link.ma Smile.ma", 0, "deformer on \"LinkShape\""}});
    struct stat info {};
    ASSERT_EQ(::lstat(dir.file("Link.ma").c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    ASSERT_EQ(::stat(dir.file("Head.ma").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_NE(readFile(dir.file("Head.ma")).find("\"LinkShape.iog.og[0].gid\""), std::string::npos);
    EXPECT_EQ(listFolder(dir.path()).size(), 5u);
}

} // namespace
} // namespace neq::test
