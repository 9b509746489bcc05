// The file layer's failure cases, once for every reader and writer that stands on it:
// whole-file reads take regular files only, and a replacement either puts the whole new
// content in place or leaves the target as it was, with no temporary file behind.

#include "bridge/vd_neq_app.h"
#include "foundation/file_io.h"
#include "foundation/vd_binary_file.h"
#include "foundation/vd_config_parser.h"
#include "foundation/vd_disk_server.h"
#include "neqbridge/neqbridge.h"
#include "neqbridge/neqbridge.hpp"

#include "support/child_process.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

namespace neq::test {
namespace {

const std::string kOld = "old\n";
const std::string kNew = "the new content\n";

std::string linkTarget(const std::string& path) {
    char target[256] = {};
    return ::readlink(path.c_str(), target, sizeof target - 1) < 0 ? "(not a link)" : target;
}

// The id of a process that has ended.
pid_t deadProcess() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ::waitpid(child, nullptr, 0);
    return child;
}

struct Case {
    const char* what;
    std::function<std::string(const TempDir&)> make; // makes what the path names
    const char* readReason;                          // "" when the read succeeds (and gives kOld)
    const char* replaceReason;                       // "" when the replacement succeeds
    ChildSetup child;                                // what the replacing process may do
    std::vector<std::string> leaves;                 // the folder's entries afterwards
    std::string link = "", target = "";              // a link that stays as it was
    std::string file = "", content = "";             // a file and what it holds afterwards
};

const std::string kLongName(255, 'n');
// 127 two-byte characters and one byte: a cut inside a character would be invalid text.
const std::string kLongUtf8Name = [] {
    std::string name;
    for (int i = 0; i < 127; ++i)
        name += "\xc3\xa9";
    return name + "x";
}();
const char kNotRegular[] = "it is not a regular file";

// A file holding kOld, or a link, in the folder; the path to it.
std::function<std::string(const TempDir&)> old(const std::string& name) {
    return [=](const TempDir& dir) {
        writeFile(dir.file(name), kOld);
        return dir.file(name);
    };
}
std::function<std::string(const TempDir&)> link(const std::string& name, const std::string& to) {
    return [=](const TempDir& dir) {
        ::symlink(to.c_str(), dir.file(name).c_str());
        return dir.file(name);
    };
}

TEST(FileLayer, ReadsAndReplacementsRefuseOrFinishWhole) {
    const pid_t dead = deadProcess();
    const std::string deadTemporary = ".f.tmp-" + std::to_string(dead) + "-abcdef";
    const std::string liveTemporary = ".f.tmp-" + std::to_string(::getpid()) + "-ghijkl";
    const std::string deadFolder = ".f.tmp-" + std::to_string(dead) + "-qwerty";
    const Case cases[] = {
        {"a FIFO with nobody at its other end",
         [](const TempDir& dir) {
             ::mkfifo(dir.file("p").c_str(), 0600);
             return dir.file("p");
         },
         kNotRegular,
         kNotRegular,
         {},
         {"p"}},
        {"/dev/zero through a link",
         link("z", "/dev/zero"),
         kNotRegular,
         kNotRegular,
         {},
         {"z"},
         "z",
         "/dev/zero"},
        {"a folder",
         [](const TempDir& dir) {
             ::mkdir(dir.file("d").c_str(), 0700);
             return dir.file("d");
         },
         "it is a folder, not a file",
         "it is a folder, not a file",
         {},
         {"d"}},
        {"a dangling link: the file it names is created, the link stays",
         link("link", "made"),
         "No such file or directory",
         "",
         {},
         {"link", "made"},
         "link",
         "made",
         "made",
         kNew},
        {"a looping link",
         [](const TempDir& dir) {
             ::symlink("a", dir.file("b").c_str());
             return link("a", "b")(dir);
         },
         "Too many levels of symbolic links",
         "Too many levels of symbolic links",
         {},
         {"a", "b"},
         "a",
         "b"},
        {"a 255-byte name", old(kLongName), "", "", {}, {kLongName}, "", "", kLongName, kNew},
        {"a 255-byte name of two-byte characters", old(kLongUtf8Name), "", "", {}, {kLongUtf8Name}},
        {"a write that fails halfway, to a file with a 255-byte name",
         old(kLongName),
         "",
         "File too large",
         {kOld.size(), false},
         {kLongName},
         "",
         "",
         kLongName,
         kOld},
        {"a folder that takes no new file",
         [](const TempDir& dir) {
             handToUnprivilegedUser(dir.path());
             const std::string path = old("f")(dir);
             handToUnprivilegedUser(path);
             ::chmod(dir.path().c_str(), 0555);
             return path;
         },
         "",
         "Permission denied",
         {std::nullopt, true},
         {"f"},
         "",
         "",
         "f",
         kOld},
        {"temporaries left by a killed writer go; a running writer's stay",
         [&](const TempDir& dir) {
             writeFile(dir.file(deadTemporary), "partial");
             writeFile(dir.file(liveTemporary), "partial");
             // The tool's private folder, holding a file under the target's own name.
             ::mkdir(dir.file(deadFolder).c_str(), 0700);
             writeFile(dir.file(deadFolder + "/f"), "partial");
             return old("f")(dir);
         },
         "",
         "",
         {},
         {liveTemporary, "f"},
         "",
         "",
         "f",
         kNew},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir dir;
        const std::string path = c.make(dir);

        std::string bytes = "stale", reason;
        EXPECT_EQ(files::readRegularFile(path.c_str(), bytes, reason), *c.readReason == '\0');
        EXPECT_EQ(reason, c.readReason);
        EXPECT_EQ(bytes, *c.readReason == '\0' ? kOld : "");

        const std::string expected = c.replaceReason;
        EXPECT_TRUE(
            runInChild(c.child,
                       [&] {
                           std::string why;
                           const bool replaced = files::replaceFile(path.c_str(), kNew, why);
                           return replaced == expected.empty() && why == (replaced ? "" : expected);
                       }))
            << "replacing should give '" << expected << "'";
        ::chmod(dir.path().c_str(), 0700);
        EXPECT_EQ(listFolder(dir.path()), c.leaves);
        EXPECT_EQ(c.link.empty() ? "" : linkTarget(dir.file(c.link)), c.target);
        EXPECT_EQ(c.file.empty() ? "" : readFile(dir.file(c.file)), c.content);
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
