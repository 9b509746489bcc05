#include "platform/file_chooser.h"

#include "support/process_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace neq::platform {
namespace {

using test::fileExists;
using test::readFile;
using test::TempDir;

// Runs the chooser against a stand-in of the chooser program, alone on PATH.
class FileChooser : public ::testing::Test {
  protected:
    void installChooser(const std::string& body) {
        test::writeShellScript(bin_.file(fileChooserCommand("").front()), body);
    }
    std::string file(const std::string& name) const { return bin_.file(name); }

  private:
    TempDir bin_;
    test::ScopedEnvironmentVariable path_{"PATH", bin_.path()};
};

TEST_F(FileChooser, OnlyAConfirmedPathComesBackWithoutItsNewline) {
    EXPECT_EQ(chooseFile("Open"), std::nullopt) << "no chooser installed";
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"printf '/ignored.vws\\n'\nexit 1\n", std::nullopt}, // cancelled
        {"printf '/scenes/a b.vws\\n'\n", "/scenes/a b.vws"},
        {"exit 0\n", std::nullopt}, // confirmed without a path
    };
    for (const auto& [body, chosen] : cases) {
        installChooser(body);
        EXPECT_EQ(chooseFile("Open"), chosen) << body;
    }
}

TEST_F(FileChooser, TitleReachesTheChooserVerbatim) {
    const std::string marker = file("marker");
    const std::string title = "Pick \"one\" 'now' $(touch " + marker + ") `touch " + marker +
                              "`; touch " + marker + " \\ -x";
    installChooser("for a in \"$@\"; do printf '%s\\n' \"$a\"; done > " + file("argv") + "\n");
    EXPECT_EQ(chooseFile(title), std::nullopt);

    const std::vector<std::string> command = fileChooserCommand(title);
    std::string expected;
    for (auto argument = command.begin() + 1; argument != command.end(); ++argument)
        expected += *argument + "\n";
    EXPECT_EQ(readFile(file("argv")), expected);
    EXPECT_NE(expected.find(title + "\n"), std::string::npos) << "the title ends an argument";
    EXPECT_FALSE(fileExists(marker)) << "the title went through a shell";
}

} // namespace
} // namespace neq::platform
