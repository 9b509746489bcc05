#include "foundation/vd_disk_server.h"

#include "platform/recording_tools.h"
#include "support/process_env.h"
#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace neq::test {
namespace {

using Calls = std::vector<std::vector<std::string>>;
using Arguments = std::vector<std::string>;
using DS = VDDiskServer;

// Text that creates the file "marker" in the working folder wherever a shell reads it.
const std::string kHostile = "it's \"a\" $(touch marker) `touch marker`; touch marker\n"
                             "|| touch marker & touch marker # *";
const std::vector<std::string> kAdmin = {"quoted form of item 2 of argv",
                                         "quoted form of item 3 of argv",
                                         "with administrator privileges"};
const std::vector<std::string> kEvent = {"eventID:((item 1 of argv) as number)"};
const std::vector<std::string> kKey = {"key code ((item 1 of argv) as integer) using held"};

// One operation against recording stand-ins: `tools` lists the stand-ins installed, as
// "name" or "name=status" or "name=status:output"; `calls` the calls they record (not
// checked when absent), osascript's as its arguments after the script, whose lines must
// hold every text of `says`.
struct Operation {
    std::string tools;
    std::function<int()> run;
    int result;
    std::optional<Calls> calls;
    std::vector<std::string> says = {};
};

// The process id getRunningProcess reports for app, 0 when it reports none and leaves
// the number as it was, -1 otherwise.
int processOf(const VDString& app) {
    ProcessSerialNumber psn;
    psn.highLongOfPSN = 7;
    psn.lowLongOfPSN = 8;
    if (!DS::getRunningProcess(app, psn))
        return psn.highLongOfPSN == 7 && psn.lowLongOfPSN == 8 ? 0 : -1;
    return psn.highLongOfPSN == 0 ? static_cast<int>(psn.lowLongOfPSN) : -1;
}

// From a working folder where a marker would show any text that reached a shell (a
// "touch" is on PATH for it).
TEST(DiskServerApps, OperationsStartTheirProgramsWithArgumentsVerbatim) {
    TempDir work;
    ScopedWorkingDirectory keep;
    ASSERT_TRUE(DS::openFolder(vd(work.path())));
    const auto at = [&](const std::string& name) { return work.file(name); };
    const std::string script = at(kHostile + ".SH"), bundle = at(kHostile + ".App");
    const std::string program = at(kHostile), file = at(kHostile + ".ma");
    const VDString args = vd(kHostile), none;
    const Arguments several = {"-b", kHostile, ""};
    const auto launch = [](const VDString& path, const VDString& arguments) {
        return [=] { return static_cast<int>(DS::launchApplication(path, arguments)); };
    };
    const auto launchSeveral = [&](const char* path, bool wait) {
        return [=] {
            const bool started = DS::launchApplication(vd(path), several, wait);
            if (!wait && started) ::wait(nullptr);
            return static_cast<int>(started);
        };
    };
    const auto admin = [](const VDString& path, const VDString& arguments) {
        return [=] { return static_cast<int>(DS::launchApplicationAsAdmin(path, arguments)); };
    };
    const auto openIn = [](const VDString& app, const VDString& path) {
        return [=] { return static_cast<int>(DS::openFileInApplication(app, path)); };
    };
    const auto event = [](const VDString& app, unsigned id, const VDString& text) {
        return [=] { return static_cast<int>(DS::sendAppleEventToApplication(app, id, text)); };
    };
    const auto key = [](int code, int modifiers) {
        return [=] {
            return static_cast<int>(
                DS::sendKeyEventToApplication(onVolume("/Applications/S.app"), code, modifiers));
        };
    };
    const auto process = [](const VDString& app) { return [=] { return processOf(app); }; };
    const auto script1 = [](const VDString& text) {
        return [=] { return static_cast<int>(DS::runAppleScript(text)); };
    };
    const Arguments openS = {"open", "-a", "/Applications/S.app"};
    const unsigned odoc = 0x6F646F63;
    const Operation operations[] = {
        // Scripts go to sh, bundles to open, programs are started directly.
        {"sh", launch(onVolume(script), args), 1, Calls{{"sh", script, kHostile}}},
        {"sh", launch(vd(script), none), 1, Calls{{"sh", script}}},
        {"sh", launch(vd("-n.sh"), vd("x")), 1, Calls{{"sh", "./-n.sh", "x"}}},
        {"open", launch(onVolume(bundle), args), 1,
         Calls{{"open", "-a", bundle, "--args", kHostile}}},
        {"open", launch(vd(bundle), none), 1, Calls{{"open", "-a", bundle}}},
        {"tool", launch(vd("tool"), args), 1, Calls{{"tool", kHostile}}},
        {"tool", launch(vd("tool"), none), 1, Calls{{"tool"}}},
        // Only an exit status of 0 is success.
        {"sh=3", launch(vd("a.sh"), none), 0, Calls{{"sh", "a.sh"}}},
        {"tool=1", launch(vd("tool"), none), 0, Calls{{"tool"}}},
        {"", launch(vd("a.app"), none), 0, Calls{}},
        {"", launch(vd("absent"), none), 0, Calls{}},
        {"tool", launch(none, none), 0, Calls{}},
        // Several arguments go over one by one, empty ones too; without waiting, the result
        // says only that the program started.
        {"sh", launchSeveral("a.sh", true), 1, Calls{{"sh", "a.sh", "-b", kHostile, ""}}},
        {"open", launchSeveral("b.app", true), 1,
         Calls{{"open", "-a", "b.app", "--args", "-b", kHostile, ""}}},
        {"tool=1", launchSeveral("tool", true), 0, Calls{{"tool", "-b", kHostile, ""}}},
        {"tool=1", launchSeveral("tool", false), 1, Calls{{"tool", "-b", kHostile, ""}}},
        {"", launchSeveral("absent", false), 0, Calls{}},
        // The administrator forms quote inside a fixed script.
        {"osascript", admin(onVolume(script), args), 1,
         Calls{{"osascript", "sh", script, kHostile}}, kAdmin},
        {"osascript", admin(vd(script), none), 1, Calls{{"osascript", "sh", script}}, kAdmin},
        {"osascript", admin(vd("-n.sh"), args), 1, Calls{{"osascript", "sh", "./-n.sh", kHostile}},
         kAdmin},
        {"osascript", admin(onVolume(at(kHostile + ".APP")), args), 1,
         Calls{{"osascript", "open", at(kHostile + ".APP"), kHostile}}, kAdmin},
        {"osascript", admin(vd(program), args), 1, Calls{{"osascript", "run", program, kHostile}},
         kAdmin},
        {"osascript", admin(vd("-n"), none), 1, Calls{{"osascript", "run", "-n"}}, kAdmin},
        {"", admin(vd("a.sh"), none), 0, Calls{}},
        {"osascript=1", admin(vd("a.sh"), none), 0, std::nullopt},
        // A script of the caller's own is the script; whatever osascript says is success.
        {"osascript", script1(args), 1, Calls{{"osascript"}}, {kHostile}},
        {"osascript=1", script1(vd("beep")), 1, Calls{{"osascript"}}, {"beep"}},
        {"", script1(vd("beep")), 1, Calls{}},
        // Files open in an application; file names are never taken for options.
        {"open", openIn(onVolume(bundle), onVolume(file)), 1, Calls{{"open", "-a", bundle, file}}},
        {"open", openIn(vd("Sculpt.app"), vd("-n.ma")), 1,
         Calls{{"open", "-a", "Sculpt.app", "./-n.ma"}}},
        {"open=1", openIn(vd(bundle), vd(file)), 0, Calls{{"open", "-a", bundle, file}}},
        {"", openIn(vd(bundle), vd(file)), 0, Calls{}},
        // Events and keys go to the application brought forward, and not without it.
        {"open osascript", event(onVolume(bundle), odoc, args), 1,
         Calls{{"open", "-a", bundle}, {"osascript", "1868853091", bundle, kHostile}}, kEvent},
        {"open osascript=1", event(vd(bundle), 1, none), 0, std::nullopt},
        {"open=1 osascript", event(vd(bundle), 1, none), 0, Calls{{"open", "-a", bundle}}},
        {"open osascript", key(0x12345, 0x1F), 1,
         Calls{openS, {"osascript", "9029", "control", "option", "shift", "command"}}, kKey},
        {"open osascript", key(36, 0x05), 1, Calls{openS, {"osascript", "36", "option", "shift"}},
         kKey},
        {"open osascript", key(36, 0x0A), 1,
         Calls{openS, {"osascript", "36", "control", "command"}}, kKey},
        {"open osascript", key(-1, 0), 1, Calls{openS, {"osascript", "65535"}}, kKey},
        {"open osascript=1", key(1, 0), 0, std::nullopt},
        // A running process is found by its bundle, without the trailing "/".
        {"", process(vd("/Applications/S.app")), 0, Calls{}},
        {"osascript=0:", process(vd("/S.app")), 0, std::nullopt},
        {"osascript=0:x\n", process(vd("/S.app")), 0, std::nullopt},
        {"osascript=0:-1\n", process(vd("/S.app")), 0, std::nullopt},
        {"osascript=0:12x\n", process(vd("/S.app")), 0, std::nullopt},
        {"osascript=0:99999999999\n", process(vd("/S.app")), 0, std::nullopt},
        {"osascript=1:4321\n", process(vd("/S.app")), 0, std::nullopt},
        {"osascript=0:4321\n", process(onVolume(at(kHostile + ".app/"))), 4321,
         Calls{{"osascript", at(kHostile + ".app")}}},
        {"osascript=0:4321\n", process(vd("-n.app")), 4321, Calls{{"osascript", "./-n.app"}}},
    };
    for (const Operation& op : operations) {
        SCOPED_TRACE("operation " + std::to_string(&op - operations) + " with " + op.tools);
        RecordingTools tools;
        tools.installScript("touch", ": > \"$1\"\n");
        std::istringstream specs(op.tools);
        for (std::string spec; specs >> spec;) {
            const std::size_t equals = spec.find('='), colon = spec.find(':');
            tools.install(spec.substr(0, equals),
                          equals == std::string::npos ? 0 : std::stoi(spec.substr(equals + 1)),
                          colon + 1 >= spec.size() ? "" : spec.substr(colon + 1) + "\n");
        }
        EXPECT_EQ(op.run(), op.result);
        std::string script;
        Calls calls = tools.calls();
        for (auto& call : calls) {
            if (call.at(0) != "osascript") continue;
            const OsascriptCall parts = splitOsascriptCall(call);
            for (const std::string& line : parts.scriptLines)
                script += line + "\n";
            call = {"osascript"};
            call.insert(call.end(), parts.arguments.begin(), parts.arguments.end());
        }
        EXPECT_EQ(calls, op.calls.value_or(calls));
        for (const std::string& text : op.says)
            EXPECT_NE(script.find(text), std::string::npos) << text << " in " << script;
        if (op.says != std::vector<std::string>{kHostile}) {
            EXPECT_EQ(script.find("marker"), std::string::npos) << script;
            EXPECT_EQ(script.find(work.path()), std::string::npos) << script;
        }
        EXPECT_FALSE(fileExists(work.file("marker")));
    }
}

// With the real shell: the script and a program at paths full of shell syntax get the
// argument byte for byte, and nothing else runs.
TEST(DiskServerApps, RealShellSeesNoSyntax) {
    TempDir work;
    ScopedWorkingDirectory keep;
    ASSERT_TRUE(DS::openFolder(vd(work.path())));
    ScopedEnvironmentVariable systemPath("PATH", std::string("/usr/bin:/bin"));
    const std::string folder = work.file(kHostile), received = work.file("received");
    ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
    for (const std::string& name : {kHostile + ".sh", kHostile}) {
        writeShellScript(folder + "/" + name,
                         "[ \"$1\" = fail ] && exit 5\nprintf '%s\\0' \"$@\" > " +
                             shellQuoted(received) + "\n");
        std::remove(received.c_str());
        EXPECT_TRUE(DS::launchApplication(onVolume(folder + "/" + name), vd(kHostile)));
        EXPECT_EQ(readFile(received), kHostile + '\0') << name;
        EXPECT_FALSE(DS::launchApplication(vd(folder + "/" + name), VDString("fail")));
    }
    EXPECT_FALSE(fileExists(work.file("marker")));
}

} // namespace
} // namespace neq::test
