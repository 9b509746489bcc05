#include "foundation/vd_config_parser.h"

#include "support/child_process.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

namespace neq::test {
namespace {

using P = VDGenericConfigFileParser;

struct Lookup {
    std::string value;
    bool found;
};

Lookup find(const std::string& path, const char* token) {
    bool found = true;
    const VDString value =
        P::findTokenInConfigFile(VDString(path.c_str()), VDString(token), &found);
    return {value.c_str(), found};
}

// The file's text after replacing token with value, and whether an entry was there.
struct Replaced {
    bool written;
    bool found;
    std::string text;
};

Replaced replace(const std::string& path, const char* token, const char* value) {
    bool found = true;
    const bool written = P::replaceTokenInConfigFile(VDString(path.c_str()), VDString(token),
                                                     VDString(value), &found);
    return {written, found, fileExists(path) ? readFile(path) : std::string()};
}

TEST(ConfigEntry, FindTakesTheFirstMatchingKeyIgnoringCase) {
    TempDir dir;
    const std::string path = dir.file("NeQ_Config.txt");
    writeFile(path, "\n  # comment\nother = 1\r\n  Path\t=  \"/Applications/My App\"  \n"
                    "PATH = second\nEMPTY =\nQUOTE = \"\nLAST = no newline");
    EXPECT_EQ(find(path, "path").value, "/Applications/My App");
    EXPECT_TRUE(find(path, "path").found);
    EXPECT_EQ(find(path, "OTHER").value, "1");
    const Lookup empty = find(path, "empty");
    EXPECT_EQ(empty.value, "");
    EXPECT_TRUE(empty.found);
    EXPECT_EQ(find(path, "QUOTE").value, "\"");
    EXPECT_EQ(find(path, "last").value, "no newline");
    const Lookup missing = find(path, "MISSING");
    EXPECT_EQ(missing.value, "");
    EXPECT_FALSE(missing.found);
    EXPECT_FALSE(find(dir.file("absent"), "PATH").found);
    EXPECT_FALSE(find(dir.path(), "PATH").found);
    EXPECT_EQ(P::findTokenInConfigFile(VDString(path.c_str()), VDString("PATH"), nullptr),
              VDString("/Applications/My App"));
}

TEST(ConfigEntry, LinesWithAnEmptyKeyRepeatThePreviousKey) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    // Only one pair of quotes is removed, and only when both ends hold one.
    writeFile(path, "= orphan\nA = \"\"x\"\"\n   \n= 2\n");
    // Before any key the key is empty, so an empty token matches the first line.
    const Lookup first = find(path, "");
    EXPECT_TRUE(first.found);
    EXPECT_EQ(first.value, "");
    EXPECT_EQ(find(path, "a").value, "\"x\"");
}

TEST(ConfigEntry, ReplaceMovesTheEntryToTheFirstLine) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    writeFile(path, "path = 1\nOTHER = 2\n");
    Replaced r = replace(path, "PATH", "x");
    EXPECT_TRUE(r.written);
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.text, "PATH = x\nOTHER = 2\n");

    // Every line of the key goes, with a following empty-key line; the rest is kept byte
    // for byte, terminators and an unterminated last line included. Only "=" ends a key.
    writeFile(path,
              "A = 1\r\n\r\n  Path = 2\n = inherits PATH\nPATH=3\nPath: 4\nB = 4\n   \nC = 5");
    r = replace(path, "path", "\"/x y\"");
    EXPECT_TRUE(r.found);
    EXPECT_EQ(r.text, "PATH = \"/x y\"\nA = 1\r\n\r\nPath: 4\nB = 4\n   \nC = 5");

    // A missing entry is added on top; the value is written as given.
    r = replace(path, "new", "");
    EXPECT_TRUE(r.written);
    EXPECT_FALSE(r.found);
    EXPECT_EQ(r.text, "NEW = \nPATH = \"/x y\"\nA = 1\r\n\r\nPath: 4\nB = 4\n   \nC = 5");
}

// A line break would let a value write an entry of another key.
TEST(ConfigEntry, ReplaceRefusesLineBreaksInTokenOrValue) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    writeFile(path, "PATH = 1\n");
    for (const auto& [token, value] : std::vector<std::pair<const char*, const char*>>{
             {"PATH", "x\nOTHER = y"}, {"PATH", "x\r"}, {"PA\nTH", "x"}, {"\rPATH", "x"}}) {
        const Replaced r = replace(path, token, value);
        EXPECT_FALSE(r.written) << value;
        EXPECT_FALSE(r.found) << value;
        EXPECT_EQ(r.text, "PATH = 1\n") << value;
    }
    EXPECT_FALSE(replace(dir.file("new.txt"), "PATH", "a\nb").written);
    EXPECT_FALSE(fileExists(dir.file("new.txt")));
}

TEST(ConfigEntry, ReplaceCreatesTheFileButNoFolder) {
    TempDir dir;
    Replaced r = replace(dir.file("new.txt"), "Path", "v");
    EXPECT_TRUE(r.written);
    EXPECT_FALSE(r.found);
    EXPECT_EQ(r.text, "PATH = v\n");
    const mode_t mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(modeOf(dir.file("new.txt")), 0666u & ~mask);

    EXPECT_FALSE(replace(dir.file("missing/c.txt"), "PATH", "v").written);
    EXPECT_FALSE(fileExists(dir.file("missing")));
    // A folder in the file's place is left alone.
    ::mkdir(dir.file("folder").c_str(), 0755);
    EXPECT_FALSE(P::replaceTokenInConfigFile(VDString(dir.file("folder").c_str()), VDString("PATH"),
                                             VDString("v"), nullptr));
    EXPECT_EQ(listFolder(dir.path()), (std::vector<std::string>{"folder", "new.txt"}));
}

TEST(ConfigEntry, ReplaceGoesThroughATemporaryFileKeepingModeAndLinks) {
    TempDir dir;
    const std::string path = dir.file("c.txt");
    writeFile(path, "A = 1\n");
    ::chmod(path.c_str(), 0640);
    struct stat before {};
    ::stat(path.c_str(), &before);
    EXPECT_TRUE(replace(path, "B", "2").written);
    struct stat after {};
    ::stat(path.c_str(), &after);
    EXPECT_NE(before.st_ino, after.st_ino) << "the file is replaced by a rename";
    EXPECT_EQ(modeOf(path), 0640u);
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"c.txt"});

    // Through a symbolic link the file it leads to is replaced; the link stays.
    ASSERT_EQ(::symlink("c.txt", dir.file("link").c_str()), 0);
    EXPECT_TRUE(replace(dir.file("link"), "C", "3").written);
    struct stat link {};
    ::lstat(dir.file("link").c_str(), &link);
    EXPECT_TRUE(S_ISLNK(link.st_mode));
    EXPECT_EQ(readFile(path), "C = 3\nB = 2\nA = 1\n");
}

// A device is not a file to replace: it is written to.
TEST(ConfigEntry, ReplaceWritesDevicesDirectly) {
    EXPECT_TRUE(replace("/dev/null", "A", "1").written);
    struct stat null {};
    ::stat("/dev/null", &null);
    EXPECT_TRUE(S_ISCHR(null.st_mode));
}

TEST(ConfigEntry, ReplaceLeavesAReadOnlyFileAlone) {
    TempDir dir;
    ::chmod(dir.path().c_str(), 0777);
    const std::string path = dir.file("c.txt");
    writeFile(path, "A = 1\n");
    ::chmod(path.c_str(), 0444);
    EXPECT_TRUE(runInChild({std::nullopt, true}, [&] {
        return !P::replaceTokenInConfigFile(VDString(path.c_str()), VDString("A"), VDString("2"),
                                            nullptr);
    }));
    EXPECT_EQ(readFile(path), "A = 1\n");
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{"c.txt"});
}

} // namespace
} // namespace neq::test
