// Replays tests/data/cli/transcripts: each a /bin/sh session in a fresh folder ("$TMP"),
// `neqbridge` on PATH, DATA naming tests/data. Lines: "$ COMMAND", "> STDOUT LINE",
// "! STDERR LINE", "? EXIT STATUS" (0 when absent), "# comment"; output matches exactly.
// "interchange_*" transcripts run only when the conversions are built.

#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <sstream>

namespace neq::test {
namespace {

struct Step {
    std::string command, output, errors;
    int exitCode = 0;
    int line = 0;
};

std::vector<Step> parseTranscript(const std::string& text) {
    std::vector<Step> steps;
    std::istringstream in(text);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line[0] == '#') continue;
        const std::string rest = line.size() > 2 ? line.substr(2) : "";
        if (line.rfind("$ ", 0) == 0) {
            steps.push_back({rest, "", "", 0, number});
            continue;
        }
        if (!steps.empty() && line[0] == '>')
            steps.back().output += rest + "\n";
        else if (!steps.empty() && line[0] == '!')
            steps.back().errors += rest + "\n";
        else if (!steps.empty() && line[0] == '?')
            steps.back().exitCode = std::atoi(rest.c_str());
        else
            ADD_FAILURE() << "line " << number << ": before any command or unknown: " << line;
    }
    return steps;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

void replay(const std::string& name) {
    const TempDir work, scratch;
    const std::string tool = NEQBRIDGE_CLI_PATH;
    const std::string shell = "cd '" + work.path() + "' && HOME='" + work.path() +
                              "' LC_ALL=C DATA='" NEQBRIDGE_TEST_DATA "' PATH='" +
                              tool.substr(0, tool.rfind('/')) + "':\"$PATH\" /bin/sh '" +
                              scratch.file("step.sh") + "' >'" + scratch.file("out") + "' 2>'" +
                              scratch.file("err") + "' </dev/null";
    const auto shown = [&](const std::string& file) {
        return replaced(replaced(readFile(scratch.file(file)), work.path(), "$TMP"),
                        NEQBRIDGE_TEST_DATA, "$DATA");
    };
    for (const Step& step : parseTranscript(readTestData("cli/transcripts/" + name))) {
        writeFile(scratch.file("step.sh"), step.command + "\n");
        const int status = std::system(shell.c_str());
        const std::string where = name + ":" + std::to_string(step.line) + ": $ " + step.command;
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, step.exitCode) << where;
        EXPECT_EQ(shown("out"), step.output) << where;
        EXPECT_EQ(shown("err"), step.errors) << where;
    }
}

// One test per file, so that CTest runs them in parallel.
std::vector<std::string> transcriptNames() {
    std::vector<std::string> names;
    for (const std::string& name : listFolder(NEQBRIDGE_TEST_DATA "/cli/transcripts"))
#ifndef NEQBRIDGE_INTERCHANGE
        if (name.rfind("interchange_", 0) != 0)
#endif
            names.push_back(name);
    return names;
}

class ToolTranscript : public ::testing::TestWithParam<std::string> {};

TEST_P(ToolTranscript, ReplaysAsWritten) {
    replay(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Each, ToolTranscript, ::testing::ValuesIn(transcriptNames()),
                         [](const auto& info) {
                             return info.param.substr(0, info.param.rfind('.'));
                         });

} // namespace
} // namespace neq::test
