#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

TEST(NameCommand, PrintsEachUniqueNameInOrder) {
    const ToolRun run = runTool("name Head 'my head' Head Head_copy1 my-head '' '' -- -x -x");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "Head\nmy_head\nHead_copy1\nHead_copy2\nmy_head_copy1\n\n_copy1\n_x\n"
                          "_x_copy1\n");
}

TEST(NameCommand, WrongCommandLinesAreUsageErrors) {
    for (const char* arguments : {"name", "name --bogus A", "name --"}) {
        const ToolRun run = runTool(arguments, true);
        EXPECT_EQ(run.exitCode, 2) << arguments;
        EXPECT_NE(run.output.find("usage: neqbridge name NAME..."), std::string::npos) << arguments;
    }
    const ToolRun help = runTool("name --help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.output.rfind("usage: neqbridge name NAME...\n", 0), 0u);
}

} // namespace
} // namespace neq::test
