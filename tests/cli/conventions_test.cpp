// The help layout every command shares; the other conventions are in conventions.txt.

#include "support/tool_run.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace neq::test {
namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// usage line, empty line, one paragraph, empty line, then one aligned row per argument
// and option, -q and -h last: for every command the overview lists, later ones included.
TEST(ToolConventions, EveryHelpTextHasOneLayout) {
    std::vector<std::string> commands;
    for (const std::string& line : linesOf(runTool("--help").output))
        if (line.rfind("  ", 0) == 0 && line.size() > 2 && line[2] != ' ')
            commands.push_back(line.substr(2, line.find(' ', 2) - 2));
    EXPECT_GT(commands.size(), 10u);
    for (const std::string& command : commands) {
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

} // namespace
} // namespace neq::test
