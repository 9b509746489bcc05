#include "foundation/vd_disk_server.h"

#include "platform/process.h"
#include "platform/recording_tools.h"
#include "support/case_table.h"
#include "support/process_env.h"
#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <map>
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
// The text of a case table field: $W the working folder, $H kHostile.
std::string expand(const std::string& text, const std::string& work) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i)
        out += text[i] != '$' ? text.substr(i, 1) : text[++i] == 'W' ? work : kHostile;
    return out;
}

// The process id getRunningProcess reports for app, 0 when it reports none and leaves
// the number as it was, -1 otherwise.
int processOf(const VDString& app) {
    ProcessSerialNumber psn{7, 8};
    if (!DS::getRunningProcess(app, psn))
        return psn.highLongOfPSN == 7 && psn.lowLongOfPSN == 8 ? 0 : -1;
    return psn.highLongOfPSN == 0 ? static_cast<int>(psn.lowLongOfPSN) : -1;
}

using Operation = std::function<int(const VDString&, const VDString&, const std::string&)>;
const std::map<std::string, Operation> kOperations = {
    {"launch", [](const VDString& a, const VDString& b,
                  const std::string&) { return int(DS::launchApplication(a, b)); }},
    {"several",
     [](const VDString& a, const VDString& b, const std::string&) {
         const bool wait = b == VDString("1");
         const bool started = DS::launchApplication(a, Arguments{"-b", kHostile, ""}, wait);
         if (!wait && started) ::wait(nullptr);
         return int(started);
     }},
    {"admin", [](const VDString& a, const VDString& b,
                 const std::string&) { return int(DS::launchApplicationAsAdmin(a, b)); }},
    {"script", [](const VDString& a, const VDString&,
                  const std::string&) { return int(DS::runAppleScript(a)); }},
    {"openIn", [](const VDString& a, const VDString& b,
                  const std::string&) { return int(DS::openFileInApplication(a, b)); }},
    {"event",
     [](const VDString& a, const VDString& b, const std::string& c) {
         return int(DS::sendAppleEventToApplication(a, b.convertToInt(), vd(c)));
     }},
    {"key",
     [](const VDString& a, const VDString& b, const std::string&) {
         return int(DS::sendKeyEventToApplication(onVolume("/Applications/S.app"), a.convertToInt(),
                                                  b.convertToInt()));
     }},
    {"process",
     [](const VDString& a, const VDString&, const std::string&) { return processOf(a); }},
    // The launcher below: an argument vector, "," between arguments, "(none)" for none.
    {"run",
     [](const VDString&, const VDString&, const std::string& c) {
         return int(platform::runProgram(c == "(none)" ? Arguments() : splitField(c, ',')));
     }},
    {"output",
     [](const VDString&, const VDString&, const std::string& c) {
         return int(platform::runForOutput(splitField(c, ',')) ==
                    std::optional<std::string>("out\n"));
     }},
};

// From a working folder where a marker would show any text that reached a shell (a
// "touch" is on PATH for it).
TEST(DiskServerApps, OperationsStartTheirProgramsWithArgumentsVerbatim) {
    TempDir work;
    ScopedWorkingDirectory keep;
    ASSERT_TRUE(DS::openFolder(vd(work.path())));
    const auto field = [&](const std::string& text) {
        return text[0] == '@' ? onVolume(expand(text.substr(1), work.path()))
                              : vd(expand(text, work.path()));
    };
    for (const CaseRow& row : readCaseTable("foundation/vd_disk_server_apps_cases.txt")) {
        SCOPED_TRACE(testing::PrintToString(row));
        RecordingTools tools;
        tools.installScript("touch", ": > \"$1\"\n");
        for (const std::string& standIn : splitField(row[0], ' ')) {
            const std::size_t equals = standIn.find('='), colon = standIn.find(':');
            if (standIn.empty()) continue;
            tools.install(standIn.substr(0, equals),
                          equals == std::string::npos ? 0 : std::stoi(standIn.substr(equals + 1)),
                          colon + 1 >= standIn.size() ? "" : standIn.substr(colon + 1) + "\n");
        }
        EXPECT_EQ(kOperations.at(row[1])(field(row[2]), field(row[3]), expand(row[4], work.path())),
                  std::stoi(row[5]));
        std::string script, calls;
        for (auto call : tools.calls()) {
            // osascript's script lines, each after "-e", then the arguments.
            std::size_t end = 1;
            for (; call.at(0) == "osascript" && end + 1 < call.size() && call[end] == "-e";
                 end += 2)
                script += call[end + 1] + "\n";
            call.erase(call.begin() + 1, call.begin() + end);
            for (const std::string& argument : call)
                calls += argument + (&argument == &call.back() ? ";" : ",");
        }
        if (row[6] != "?") {
            EXPECT_EQ(calls, row[6].empty() ? "" : expand(row[6], work.path()) + ";");
        }
        for (const std::string& says : splitField(row[7], ';'))
            EXPECT_NE(script.find(expand(says, work.path())), std::string::npos) << script;
        if (row[7] != "$H") {
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
