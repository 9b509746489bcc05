// What every command of the tool shares: help layout, usage errors, --version, where
// data and messages go.

#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace neq::test {
namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        lines.push_back(text.substr(start, end - start));
        start = end == std::string::npos ? text.size() : end + 1;
    }
    return lines;
}

// The commands as the overview lists them ("  NAME     summary"), so that every command
// added later is held to the same rules.
std::vector<std::string> listedCommands() {
    std::vector<std::string> names;
    for (const std::string& line : linesOf(runTool("--help").output))
        if (line.rfind("  ", 0) == 0 && line.size() > 2 && line[2] != ' ')
            names.push_back(line.substr(2, line.find(' ', 2) - 2));
    return names;
}

const std::vector<std::string>& commands() {
    static const std::vector<std::string> names = listedCommands();
    return names;
}

TEST(ToolConventions, TheOverviewListsEveryCommand) {
    for (const char* name :
         {"demo", "info", "obj", "colors", "tiles", "groups", "name", "blend", "call"})
        EXPECT_NE(std::find(commands().begin(), commands().end(), name), commands().end()) << name;
}

// usage line, empty line, one paragraph, empty line, then one aligned row per argument
// and option, -q and -h last.
TEST(ToolConventions, EveryHelpTextHasOneLayout) {
    for (const std::string& command : commands()) {
        const ToolRun run = runTool(command + " --help", true);
        EXPECT_EQ(run.exitCode, 0) << command;
        const std::vector<std::string> lines = linesOf(run.output);
        ASSERT_GT(lines.size(), 6u) << command;
        EXPECT_EQ(lines[0].rfind("usage: neqbridge " + command + " ", 0), 0u) << command;
        EXPECT_EQ(lines[1], "") << command;
        std::size_t row = 2;
        while (row < lines.size() && !lines[row].empty())
            EXPECT_LE(lines[row++].size(), 79u) << command << ": " << lines[row - 1];
        EXPECT_GT(row, 2u) << command;
        const std::vector<std::string> rows(lines.begin() + row + 1, lines.end());
        ASSERT_GE(rows.size(), 2u) << command;
        EXPECT_EQ(rows[rows.size() - 2].rfind("  -q, --quiet  ", 0), 0u) << command;
        EXPECT_EQ(rows.back().rfind("  -h, --help ", 0), 0u) << command;
        const std::size_t column = rows.back().find_first_not_of(' ', 12);
        for (const std::string& line : rows) {
            EXPECT_EQ(line.rfind("  ", 0), 0u) << command << ": " << line;
            EXPECT_EQ(line.substr(column - 2, 2), "  ") << command << ": " << line;
            EXPECT_NE(line[column], ' ') << command << ": " << line;
        }
        EXPECT_EQ(runTool(command + " -h").output, run.output) << command;
    }
}

// One rule for a wrong command line: the reason and the usage line on stderr, exit 2.
TEST(ToolConventions, UnknownOptionsAreUsageErrorsEverywhere) {
    for (const std::string& command : commands()) {
        const std::string usage = linesOf(runTool(command + " --help").output)[0];
        const ToolRun run = runTool(command + " --bogus x y");
        EXPECT_EQ(run.exitCode, 2) << command;
        EXPECT_EQ(run.output, "") << command;
        EXPECT_EQ(run.errors,
                  "neqbridge " + command + ": unknown option '--bogus'\n" + usage + "\n");
    }
    expectRuns({
        {"", 2, "usage: neqbridge COMMAND [ARGS...]"},
        {"--bogus", 2, "neqbridge: unknown option '--bogus'\nusage: neqbridge COMMAND [ARGS...]\n"},
        {"bogus", 2, "neqbridge: unknown command 'bogus'\nusage: neqbridge COMMAND [ARGS...]\n"},
        {"obj a b c --level", 2, "neqbridge obj: option --level needs a value N\n"},
        {"obj a b c --level=0", 2, "obj: --level must be a whole number of subdivision levels"},
        {"info --json=1 a", 2, "neqbridge info: option --json takes no value\n"},
        {"colors a", 2,
         "neqbridge colors: missing OUT.txt\nusage: neqbridge colors FILE OUT.txt [--force]\n"},
        {"colors a b c", 2, "neqbridge colors: unexpected argument 'c'\n"},
        {"name", 2, "neqbridge name: missing NAME\nusage: neqbridge name NAME...\n"},
    });
}

TEST(ToolConventions, VersionOverviewAndStandardOutput) {
    ToolRun run = runTool("--version");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "neqbridge 4.09 (library 4.09)\n");
    // Options may follow the positionals; "--" ends them. One registry serves all names.
    run = runTool("name Head 'my head' -q Head -- -x");
    EXPECT_EQ(run.output, "Head\nmy_head\nHead_copy1\n_x\n");
    // Data that cannot be written is a failure too.
    run = runTool("name A >/dev/full");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors,
              "neqbridge name: cannot write to standard output: No space left on device\n");
}

} // namespace
} // namespace neq::test
