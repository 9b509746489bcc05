#include "foundation/vd_disk_server.h"

#include "platform/recording_tools.h"
#include "support/process_env.h"
#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace neq::test {
namespace {

using Calls = std::vector<std::vector<std::string>>;
using Arguments = std::vector<std::string>;

// Text that creates the file "marker" in the working folder wherever a shell reads it.
const std::string kHostile = "it's \"a\" $(touch marker) `touch marker`; touch marker\n"
                             "|| touch marker & touch marker # *";

// The process operations against recording stand-ins, from a working folder where a
// marker would show any text that reached a shell (a "touch" is on PATH for it).
class DiskServerProcesses : public ::testing::Test {
  protected:
    void SetUp() override { tools_.installScript("touch", ": > \"$1\"\n"); }
    void TearDown() override { EXPECT_FALSE(fileExists(work_.file("marker"))); }

    std::string path(const std::string& name) const { return work_.file(name); }

    // The arguments after the script of the one osascript call made, and checks that
    // the script is fixed: none of the given texts was spliced into it.
    Arguments osascriptArguments(const std::vector<std::string>& call) {
        EXPECT_EQ(call.at(0), "osascript");
        const OsascriptCall parts = splitOsascriptCall(call);
        EXPECT_FALSE(parts.scriptLines.empty());
        for (const std::string& line : parts.scriptLines) {
            EXPECT_EQ(line.find("marker"), std::string::npos) << line;
            EXPECT_EQ(line.find(work_.path()), std::string::npos) << line;
        }
        scriptLines_ = parts.scriptLines;
        return parts.arguments;
    }
    bool scriptSays(const std::string& text) const {
        for (const std::string& line : scriptLines_)
            if (line.find(text) != std::string::npos) return true;
        return false;
    }

    RecordingTools tools_;
    TempDir work_;
    ScopedWorkingDirectory keep_;
    std::vector<std::string> scriptLines_;
    bool movedIn_ = VDDiskServer::openFolder(vd(work_.path()));
};

TEST_F(DiskServerProcesses, LaunchStartsScriptsBundlesAndProgramsDirectly) {
    ASSERT_TRUE(movedIn_);
    for (const char* tool : {"sh", "open", "tool"})
        tools_.install(tool);
    const std::string script = path(kHostile + ".SH");
    const std::string bundle = path(kHostile + ".App");
    const VDString args = vd(kHostile);
    EXPECT_TRUE(VDDiskServer::launchApplication(onVolume(script), args));
    EXPECT_TRUE(VDDiskServer::launchApplication(vd(script), VDString()));
    EXPECT_TRUE(VDDiskServer::launchApplication(vd("-n.sh"), VDString("x")));
    EXPECT_TRUE(VDDiskServer::launchApplication(onVolume(bundle), args));
    EXPECT_TRUE(VDDiskServer::launchApplication(vd(bundle), VDString()));
    EXPECT_TRUE(VDDiskServer::launchApplication(vd("tool"), args));
    EXPECT_TRUE(VDDiskServer::launchApplication(vd("tool"), VDString()));
    EXPECT_EQ(tools_.calls(), (Calls{{"sh", script, kHostile},
                                     {"sh", script},
                                     {"sh", "./-n.sh", "x"},
                                     {"open", "-a", bundle, "--args", kHostile},
                                     {"open", "-a", bundle},
                                     {"tool", kHostile},
                                     {"tool"}}));
}

// Several arguments go over one by one, empty ones too; without waiting, the result
// says only that the program started.
TEST_F(DiskServerProcesses, LaunchHandsOverSeveralArguments) {
    ASSERT_TRUE(movedIn_);
    tools_.install("sh");
    tools_.install("open");
    tools_.install("tool", 1);
    const Arguments several = {"-b", kHostile, ""};
    EXPECT_TRUE(VDDiskServer::launchApplication(vd("a.sh"), several, true));
    EXPECT_TRUE(VDDiskServer::launchApplication(vd("b.app"), several, true));
    EXPECT_FALSE(VDDiskServer::launchApplication(vd("tool"), several, true)) << "exits with 1";
    EXPECT_FALSE(VDDiskServer::launchApplication(vd("absent"), several, false));
    EXPECT_TRUE(VDDiskServer::launchApplication(vd("tool"), Arguments{"x"}, false));
    ::wait(nullptr);
    EXPECT_EQ(tools_.calls(), (Calls{{"sh", "a.sh", "-b", kHostile, ""},
                                     {"open", "-a", "b.app", "--args", "-b", kHostile, ""},
                                     {"tool", "-b", kHostile, ""},
                                     {"tool", "x"}}));
}

TEST_F(DiskServerProcesses, LaunchIsTrueWhenTheProgramExitsWithZero) {
    ASSERT_TRUE(movedIn_);
    tools_.install("sh", 3);
    tools_.install("tool", 1);
    EXPECT_FALSE(VDDiskServer::launchApplication(vd("a.sh"), VDString()));
    EXPECT_FALSE(VDDiskServer::launchApplication(vd("tool"), VDString()));
    EXPECT_FALSE(VDDiskServer::launchApplication(vd("a.app"), VDString())) << "no open";
    EXPECT_FALSE(VDDiskServer::launchApplication(vd("absent"), VDString()));
    EXPECT_FALSE(VDDiskServer::launchApplication(VDString(), VDString()));
    EXPECT_FALSE(VDDiskServer::launchApplicationAsAdmin(vd("a.sh"), VDString())) << "no osascript";
    tools_.install("osascript", 1);
    EXPECT_FALSE(VDDiskServer::launchApplicationAsAdmin(vd("a.sh"), VDString()));
    EXPECT_TRUE(VDDiskServer::runAppleScript(VDString("beep"))) << "whatever osascript says";
    tools_.uninstall("osascript");
    EXPECT_TRUE(VDDiskServer::runAppleScript(VDString("beep")));
}

// With the real shell: the script and a program at paths full of shell syntax get the
// argument byte for byte, and nothing else runs.
TEST_F(DiskServerProcesses, RealShellSeesNoSyntax) {
    ASSERT_TRUE(movedIn_);
    ScopedEnvironmentVariable systemPath("PATH", std::string("/usr/bin:/bin"));
    const std::string folder = path(kHostile);
    ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
    const std::string body = "[ \"$1\" = fail ] && exit 5\nprintf '%s\\0' \"$@\" > " +
                             shellQuoted(path("received")) + "\n";
    for (const std::string& name : {kHostile + ".sh", kHostile}) {
        writeShellScript(folder + "/" + name, body);
        std::remove(path("received").c_str());
        EXPECT_TRUE(VDDiskServer::launchApplication(onVolume(folder + "/" + name), vd(kHostile)));
        EXPECT_EQ(readFile(path("received")), kHostile + '\0') << name;
        EXPECT_FALSE(VDDiskServer::launchApplication(vd(folder + "/" + name), VDString("fail")));
    }
}

TEST_F(DiskServerProcesses, AdministratorFormsQuoteInsideAFixedScript) {
    ASSERT_TRUE(movedIn_);
    tools_.install("osascript");
    const std::string script = path(kHostile + ".sh");
    const std::string bundle = path(kHostile + ".APP");
    const std::string program = path(kHostile);
    const VDString args = vd(kHostile);
    const struct {
        VDString path;
        VDString args;
        Arguments expected;
    } cases[] = {
        {onVolume(script), args, {"sh", script, kHostile}},
        {vd(script), VDString(), {"sh", script}},
        {vd("-n.sh"), args, {"sh", "./-n.sh", kHostile}},
        {onVolume(bundle), args, {"open", bundle, kHostile}},
        {vd(program), args, {"run", program, kHostile}},
        {vd("-n"), VDString(), {"run", "-n"}},
    };
    for (const auto& c : cases) {
        tools_.forgetCalls();
        EXPECT_TRUE(VDDiskServer::launchApplicationAsAdmin(c.path, c.args));
        const Calls calls = tools_.calls();
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(osascriptArguments(calls[0]), c.expected);
        EXPECT_TRUE(scriptSays("quoted form of item 2 of argv"));
        EXPECT_TRUE(scriptSays("quoted form of item 3 of argv"));
        EXPECT_TRUE(scriptSays("with administrator privileges"));
    }

    tools_.forgetCalls();
    EXPECT_TRUE(VDDiskServer::runAppleScript(vd(kHostile)));
    EXPECT_EQ(tools_.calls(), (Calls{{"osascript", "-e", kHostile}}));
}

TEST_F(DiskServerProcesses, OpeningAFileInAnApplication) {
    ASSERT_TRUE(movedIn_);
    tools_.install("open");
    const std::string bundle = path(kHostile + ".app");
    const std::string file = path(kHostile + ".ma");
    EXPECT_TRUE(VDDiskServer::openFileInApplication(onVolume(bundle), onVolume(file)));
    EXPECT_TRUE(VDDiskServer::openFileInApplication(vd("Sculpt.app"), vd("-n.ma")));
    EXPECT_EQ(tools_.calls(),
              (Calls{{"open", "-a", bundle, file}, {"open", "-a", "Sculpt.app", "./-n.ma"}}));
    tools_.install("open", 1);
    EXPECT_FALSE(VDDiskServer::openFileInApplication(vd(bundle), vd(file)));
    tools_.uninstall("open");
    EXPECT_FALSE(VDDiskServer::openFileInApplication(vd(bundle), vd(file)));
}

TEST_F(DiskServerProcesses, EventsGoToTheApplicationBroughtForward) {
    ASSERT_TRUE(movedIn_);
    tools_.install("open");
    tools_.install("osascript");
    const std::string bundle = path(kHostile + ".app");
    const unsigned openDocuments = 0x6F646F63; // 'odoc'
    EXPECT_TRUE(
        VDDiskServer::sendAppleEventToApplication(onVolume(bundle), openDocuments, vd(kHostile)));
    Calls calls = tools_.calls();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0], (Arguments{"open", "-a", bundle}));
    EXPECT_EQ(osascriptArguments(calls[1]), (Arguments{"1868853091", bundle, kHostile}));
    EXPECT_TRUE(scriptSays("eventID:((item 1 of argv) as number)"));

    tools_.install("osascript", 1);
    EXPECT_FALSE(VDDiskServer::sendAppleEventToApplication(vd(bundle), 1, VDString()));
    tools_.forgetCalls();
    tools_.install("open", 1);
    EXPECT_FALSE(VDDiskServer::sendAppleEventToApplication(vd(bundle), 1, VDString()));
    EXPECT_EQ(tools_.calls(), (Calls{{"open", "-a", bundle}})) << "no event without the app";
}

TEST_F(DiskServerProcesses, KeysWithTheirModifiersInOrder) {
    ASSERT_TRUE(movedIn_);
    tools_.install("open");
    tools_.install("osascript");
    const struct {
        int keyCode;
        int modifiers;
        Arguments expected;
    } cases[] = {
        {0x12345, 0x1F, {"9029", "control", "option", "shift", "command"}},
        {36, 0x05, {"36", "option", "shift"}},
        {36, 0x0A, {"36", "control", "command"}},
        {-1, 0, {"65535"}},
    };
    for (const auto& c : cases) {
        tools_.forgetCalls();
        EXPECT_TRUE(VDDiskServer::sendKeyEventToApplication(onVolume("/Applications/S.app"),
                                                            c.keyCode, c.modifiers));
        const Calls calls = tools_.calls();
        ASSERT_EQ(calls.size(), 2u);
        EXPECT_EQ(calls[0], (Arguments{"open", "-a", "/Applications/S.app"}));
        EXPECT_EQ(osascriptArguments(calls[1]), c.expected);
    }
    EXPECT_TRUE(scriptSays("key code ((item 1 of argv) as integer) using held"));
    tools_.install("osascript", 1);
    EXPECT_FALSE(VDDiskServer::sendKeyEventToApplication(vd("/S.app"), 1, 0));
}

TEST_F(DiskServerProcesses, RunningProcessIsFoundByItsBundle) {
    ASSERT_TRUE(movedIn_);
    const auto find = [](const std::string& app, ProcessSerialNumber& psn) {
        return VDDiskServer::getRunningProcess(onVolume(app), psn);
    };
    ProcessSerialNumber psn;
    psn.highLongOfPSN = 7;
    psn.lowLongOfPSN = 8;
    EXPECT_FALSE(find("/Applications/S.app", psn)) << "no osascript";
    for (const char* output : {"", "x\n", "-1\n", "12x\n", "99999999999\n"}) {
        tools_.install("osascript", 0, output);
        EXPECT_FALSE(find("/Applications/S.app", psn)) << output;
    }
    tools_.install("osascript", 1, "4321\n");
    EXPECT_FALSE(find("/Applications/S.app", psn));
    EXPECT_EQ(psn.highLongOfPSN, 7u);
    EXPECT_EQ(psn.lowLongOfPSN, 8u);

    tools_.install("osascript", 0, "4321\n");
    tools_.forgetCalls();
    EXPECT_TRUE(find(path(kHostile + ".app/"), psn));
    EXPECT_EQ(psn.highLongOfPSN, 0u);
    EXPECT_EQ(psn.lowLongOfPSN, 4321u);
    EXPECT_TRUE(VDDiskServer::getRunningProcess(vd("-n.app"), psn));
    const Calls calls = tools_.calls();
    ASSERT_EQ(calls.size(), 2u);
    // Without the trailing "/", and never taken for an option.
    EXPECT_EQ(osascriptArguments(calls[0]), Arguments{path(kHostile + ".app")});
    EXPECT_EQ(osascriptArguments(calls[1]), Arguments{"./-n.app"});
}

} // namespace
} // namespace neq::test
