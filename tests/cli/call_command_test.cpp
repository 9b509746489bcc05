#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

TEST(CallCommand, PrintsResultsAndTextOfCallsSharingOneLibrary) {
    TempDir dir;
    writeFile(dir.file("src"), "ab");
    // The first CloseFolder finds the stream the OpenFolder before it left.
    const ToolRun run = runTool("call Version -- OpenFolder " + dir.path() +
                                " -- CloseFolder -- CloseFolder -- AddFile " + dir.file("src") +
                                " " + dir.file("dst") + " -- GetPublicFolder --null --null");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "4.09\n0\n0\n-1\n0\t" + dir.file("dst") + "\n0\n");
    EXPECT_EQ(readFile(dir.file("dst")), "abb");
}

TEST(CallCommand, UnknownEntryOrMissingLibraryFails) {
    ToolRun run = runTool("call NoSuchEntry", true);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.output.find("NoSuchEntry"), std::string::npos);
    for (const char* name : {"Version", "OpenFolder", "AddFile", "NeQMergeUVs"})
        EXPECT_NE(run.output.find(std::string("\n  ") + name), std::string::npos) << name;

    run = runTool("call Version", true, "NEQBRIDGE_LIBRARY=/nonexistent/none.so");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("cannot load the library /nonexistent/none.so"), std::string::npos);
}

} // namespace
} // namespace neq::test
