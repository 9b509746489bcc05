#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace neq::test {
namespace {

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

TEST(CallCommand, PrintsTheResultOfOneEntry) {
    const ToolRun run = runTool("call Version");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "4.09\n");
}

TEST(CallCommand, UnknownEntryIsAUsageErrorListingTheEntries) {
    const ToolRun run = runTool("call NoSuchEntry", true);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.output.find("NoSuchEntry"), std::string::npos);
    for (const char* name : {"Version", "OpenFolder", "AddFile", "NeQMergeUVs"})
        EXPECT_NE(run.output.find(std::string("\n  ") + name), std::string::npos) << name;
}

TEST(CallCommand, CallsInOneRunShareTheLibraryState) {
    TempDir dir;
    writeFile(dir.file("f.txt"), "");
    const ToolRun run =
        runTool("call OpenFolder " + dir.path() +
                " -- GetFile -- GetFile -- GetFile -- GetFile -- CloseFolder -- CloseFolder");
    EXPECT_EQ(run.exitCode, 0);
    const std::vector<std::string> printed = lines(run.output);
    ASSERT_EQ(printed.size(), 7u);
    EXPECT_EQ(printed[0], "0");
    EXPECT_EQ(std::multiset<std::string>(printed.begin() + 1, printed.begin() + 4),
              (std::multiset<std::string>{"0\t.", "0\t..", "0\tf.txt"}));
    EXPECT_EQ(printed[4], "-3");
    EXPECT_EQ(printed[5], "0");
    EXPECT_EQ(printed[6], "-1");
}

TEST(CallCommand, OutInAndNullPointersReachTheEntry) {
    TempDir dir;
    writeFile(dir.file("src"), "ab");
    const ToolRun run = runTool("call AddFile " + dir.file("src") + " " + dir.file("dst") +
                                " -- GetPublicFolder --null --null");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "0\t" + dir.file("dst") + "\n0\n");
    EXPECT_EQ(readFile(dir.file("dst")), "abb");
}

TEST(CallCommand, MissingLibraryFails) {
    TempDir dir;
    const ToolRun run = runTool("call Version", true, "NEQBRIDGE_LIBRARY=" + dir.file("none.so"));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("cannot load the library " + dir.file("none.so")), std::string::npos);
}

} // namespace
} // namespace neq::test
