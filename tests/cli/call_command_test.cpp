#include "support/temp_dir.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

TEST(CallCommand, CallsShareOneLibraryAndUnknownEntriesOrLibrariesFail) {
    TempDir dir;
    writeFile(dir.file("src"), "ab");
    // The first CloseFolder finds the stream the OpenFolder before it left.
    const ToolRun run = runTool("call Version -- OpenFolder " + dir.path() +
                                " -- CloseFolder -- CloseFolder -- AddFile " + dir.file("src") +
                                " " + dir.file("dst") + " -- GetPublicFolder --null --null");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "4.09\n0\n0\n-1\n0\t" + dir.file("dst") + "\n0\n");
    EXPECT_EQ(readFile(dir.file("dst")), "abb");

    expectRuns({{"call NoSuchEntry", 2,
                 "neqbridge call: unknown entry 'NoSuchEntry'; the entries are Version, "
                 "addBlendFile, endBlendFile,"},
                {"call Version --", 2, "neqbridge call: missing ENTRY\n"}});
    expectRuns({{"call Version", 1, "call: cannot load the library '/nonexistent/none.so': "}},
               "NEQBRIDGE_LIBRARY=/nonexistent/none.so");
}

// The output buffer holds whatever the entry can write: a unique name longer than the
// usual 64 KiB overflowed it (even 65,530 bytes sent twice, by one byte). The shell
// makes the names, since one command line may not hold both.
TEST(CallCommand, OutputBufferHoldsTheLongestUniqueName) {
    for (const std::size_t length : {65530u, 70000u}) {
        const std::string name(length, 'n');
        const ToolRun run = runTool("call CheckName \"$n\" -- CheckName \"$n\"", false,
                                    "n=$(printf %0" + std::to_string(length) + "d 0 | tr 0 n) &&");
        EXPECT_EQ(run.exitCode, 0) << length;
        EXPECT_TRUE(run.output == "0\t" + name + "\n0\t" + name + "_copy1\n") << length;
    }
}

} // namespace
} // namespace neq::test
