// Whole-file reads take regular files only; a replacement puts the whole new content in
// place or leaves the target as it was, with no temporary file behind.

#include "bridge/vd_neq_app.h"
#include "foundation/file_io.h"
#include "foundation/vd_binary_file.h"
#include "foundation/vd_config_parser.h"
#include "foundation/vd_disk_server.h"
#include "neqbridge/neqbridge.h"
#include "neqbridge/neqbridge.hpp"

#include "support/case_table.h"
#include "support/child_process.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace neq::test {
namespace {

const std::string kNew = "the new content\n";

// A case table field with its names spelled out.
std::string expand(const std::string& text, pid_t dead) {
    std::string longUtf8Name;
    for (int i = 0; i < 127; ++i)
        longUtf8Name += "\xc3\xa9";
    const std::map<char, std::string> names = {{'L', std::string(255, 'n')},
                                               {'U', longUtf8Name + "x"},
                                               {'D', std::to_string(dead)},
                                               {'P', std::to_string(::getpid())}};
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i)
        out += text[i] == '$' ? names.at(text[++i]) : text.substr(i, 1);
    return out;
}

// Makes what the setup field names; the path to its last step.
std::string make(const TempDir& dir, const std::string& setup) {
    std::string path;
    for (const std::string& step : splitField(setup, ';')) {
        std::istringstream in(step);
        std::string kind, name, to;
        in >> kind >> name >> to;
        path = dir.file(name);
        if (kind == "fifo") ::mkfifo(path.c_str(), 0600);
        if (kind == "folder") ::mkdir(path.c_str(), 0700);
        if (kind == "link") ::symlink(to.c_str(), path.c_str());
        if (kind == "locked") handToUnprivilegedUser(dir.path());
        if (kind == "partial") writeFile(path, "partial");
        if (kind == "old" || kind == "locked") writeFile(path, "old\n");
        if (kind == "locked") {
            handToUnprivilegedUser(path);
            ::chmod(dir.path().c_str(), 0555);
        }
    }
    return path;
}

TEST(FileLayer, ReadsAndReplacementsRefuseOrFinishWhole) {
    const pid_t dead = ::fork(); // the id of a process that has ended
    if (dead == 0) ::_exit(0);
    ::waitpid(dead, nullptr, 0);
    for (CaseRow row : readCaseTable("foundation/file_layer_cases.txt")) {
        for (std::string& field : row)
            field = expand(field, dead);
        SCOPED_TRACE(row[0]);
        TempDir dir;
        const std::string path = make(dir, row[1]), &readReason = row[2], &expected = row[3];

        std::string bytes = "stale", reason;
        EXPECT_EQ(files::readRegularFile(path.c_str(), bytes, reason), readReason.empty());
        EXPECT_EQ(reason, readReason);
        EXPECT_EQ(bytes, readReason.empty() ? "old\n" : "");

        const ChildSetup child =
            row[4] == "limit" ? ChildSetup{4, false} : ChildSetup{std::nullopt, row[4] == "user"};
        EXPECT_TRUE(
            runInChild(child,
                       [&] {
                           std::string why;
                           const bool replaced = files::replaceFile(path.c_str(), kNew, why);
                           return replaced == expected.empty() && why == (replaced ? "" : expected);
                       }))
            << "replacing should give '" << expected << "'";
        ::chmod(dir.path().c_str(), 0700);
        EXPECT_EQ(listFolder(dir.path()), splitField(row[5], ' '));
        const std::size_t arrow = row[6].find('>'), equals = row[7].find('=');
        if (arrow != std::string::npos) {
            char target[256] = {};
            ::readlink(dir.file(row[6].substr(0, arrow)).c_str(), target, sizeof target - 1);
            EXPECT_EQ(target, row[6].substr(arrow + 1));
        }
        if (equals != std::string::npos) {
            EXPECT_EQ(readFile(dir.file(row[7].substr(0, equals))), row[7].substr(equals + 1));
        }
    }
}

// Every reader stands on the layer: a FIFO nobody writes to (an ordinary open would wait
// for ever) or /dev/zero (which never ends) gets each reader's own cannot-open result.
TEST(FileLayer, EveryReaderGivesItsCannotOpenResultAtOnce) {
    TempDir dir;
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0600), 0);
    std::string base = dir.file("base.ma"), destination = dir.file("destination");
    writeFile(base, "base\n");
    for (std::string input : {dir.file("fifo"), std::string("/dev/zero")}) {
        SCOPED_TRACE(input);
        const VDString path(input.c_str());
        VDString text;
        bool found = true;
        const auto number = [](bool result) { return result ? 1.0f : 0.0f; };
        const struct {
            const char* reader;
            float result, expected;
        } results[] = {
            {"AddFile", AddFile(input.data(), 0, destination.data()), -1},
            {"AddFile destination", AddFile(base.data(), 0, input.data()),
             input == "/dev/zero" ? 0.0f : -2.0f},
            {"addBlendFile target", addBlend(input.c_str(), base.data()), -1760},
            {"addBlendFile base", addBlend(base.c_str(), input.data()), -2760},
            {"GetFaceIDsNeq", GetFaceIDsNeq(input.c_str(), 1), -1760},
            {"ReadVertColorNeq", ReadVertColorNeq(input.c_str(), destination.data()), -1760},
            {"GetUVTile", GetUVTile(input.c_str(), nullptr), -17},
            {"GetUVGroup", GetUVGroup(input.c_str()), -17},
            {"VDBinaryFile", number(VDBinaryFile(path, "rb").isOpen()), 0},
            {"parseFile", number(VDGenericConfigFileParser().parseFile(input.c_str(), nullptr)), 0},
            {"findTokenInConfigFile",
             number(!VDGenericConfigFileParser::findTokenInConfigFile(path, VDString("A"), &found)
                         .isEmpty() ||
                    found),
             0},
            {"VDNeQAppParser", number(VDNeQAppParser().parseFile(input.c_str())), 0},
            {"readFileAsString", number(VDDiskServer::readFileAsString(path, text)), 0},
        };
        for (const auto& r : results)
            EXPECT_EQ(r.result, r.expected) << r.reader;
    }
    EXPECT_EQ(readFile(base), "base\n");
    EXPECT_FALSE(fileExists(destination));
}

} // namespace
} // namespace neq::test
