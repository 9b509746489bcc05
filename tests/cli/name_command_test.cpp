#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

// The naming rules themselves are the registry's; these check the command line.
TEST(NameCommand, PrintsEachUniqueNameInOrderAndRejectsWrongCommandLines) {
    const ToolRun run = runTool("name Head 'my head' Head -- -x");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "Head\nmy_head\nHead_copy1\n_x\n");
    expectRuns({{"name", 2, "neqbridge name: missing NAME\nusage: neqbridge name NAME...\n"},
                {"name --bogus A", 2,
                 "neqbridge name: unknown option '--bogus'\nusage: neqbridge name NAME...\n"}});
    EXPECT_EQ(runTool("name --help").output.rfind("usage: neqbridge name NAME...\n", 0), 0u);
}

} // namespace
} // namespace neq::test
