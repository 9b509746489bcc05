#include "support/host_library.h"
#include "support/temp_dir.h"

#include <neqbridge/neqbridge.hpp>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

namespace neq::test {
namespace {

using Names = std::vector<std::string>;

// The host's sequence through the shared library: clearUVString, addBlendFile per
// target, endBlendFile. Scenes are named by their file in the test's folder.
class BlendEntries : public ::testing::Test {
  protected:
    void SetUp() override { library.call("clearUVString"); }

    float add(const std::string& target, const std::string& base) {
        return library.call("addBlendFile", dir.file(target).c_str(), dir.file(base).data());
    }
    float finish(const std::string& base) {
        return library.call("endBlendFile", dir.file(base).c_str());
    }
    std::string scene(const std::string& name) const { return readFile(dir.file(name)); }
    HostLibrary library;
    // The library's own shared name list, exported as data.
    Names& names = UVTileStr;
    TempDir dir;
};

TEST_F(BlendEntries, HostSequencesGiveTheGoldenScenes) {
    writeFile(dir.file("Head.ma"), "base\n");
    writeFile(dir.file("Smile.ma"), "smile\n");
    writeFile(dir.file("Blink.ma"), "blink\n");
    EXPECT_EQ(add("Smile.ma", "Head.ma"), 0.0f);
    EXPECT_EQ(add("Blink.ma", "Head.ma"), 0.0f);
    EXPECT_EQ(finish("Head.ma"), 0.0f);
    EXPECT_EQ(scene("Head.ma"), readTestData("blend/two_targets.ma"));

    // Without clearUVString a second scene carries the first scene's targets.
    writeFile(dir.file("Second.ma"), "x\n");
    EXPECT_EQ(add("Smile.ma", "Second.ma"), 0.0f);
    EXPECT_EQ(finish("Second.ma"), 0.0f);
    EXPECT_EQ(names, (Names{"Smile", "Blink", "Smile"}));
    EXPECT_NE(scene("Second.ma").find("\"Blink\",\"weight[1]\",\n\"Smile\",\"weight[2]\"};\n"),
              std::string::npos);

    library.call("clearUVString");
    writeFile(dir.file("Head.ma"), "abc");
    EXPECT_EQ(finish("Head.ma"), 0.0f);
    EXPECT_EQ(scene("Head.ma"), readTestData("blend/no_targets.ma"));
}

// The holder of the repeated byte starts as 0 and carries over from file to file.
TEST_F(BlendEntries, EmptyScenesRepeatTheHolder) {
    using namespace std::string_literals;
    writeFile(dir.file("Empty.ma"), "");
    writeFile(dir.file("B.ma"), "B\n");
    writeFile(dir.file("T.ma"), "T");
    EXPECT_EQ(add("Empty.ma", "B.ma"), 0.0f);
    EXPECT_EQ(scene("B.ma"), "B\n\n\n") << "an empty target repeats the base's last byte";
    EXPECT_EQ(add("T.ma", "Empty.ma"), 0.0f);
    EXPECT_EQ(scene("Empty.ma"), "\0TT"s) << "an empty base contributes a 0 byte";
    writeFile(dir.file("Empty.ma"), "");
    EXPECT_EQ(finish("Empty.ma"), 0.0f);
    EXPECT_EQ(scene("Empty.ma").substr(0, 4), "\0\n\nc"s);
}

TEST_F(BlendEntries, FailuresRecordTheNameAndLeaveTheBaseUnchanged) {
    writeFile(dir.file("Head.ma"), "base\n");
    writeFile(dir.file("Smile.ma"), "smile\n");
    ::mkdir(dir.file("Folder.ma").c_str(), 0755);
    EXPECT_EQ(add("Missing.ma", "Head.ma"), -1760.0f);
    EXPECT_EQ(add("Folder.ma", "Head.ma"), -1760.0f);
    EXPECT_EQ(add("Smile.ma", "NoBase.ma"), -2760.0f);
    EXPECT_EQ(add("Smile.ma", "Folder.ma"), -2760.0f);
    EXPECT_EQ(finish("NoBase.ma"), -2760.0f);
    EXPECT_EQ(library.call("addBlendFile", nullptr, dir.file("Head.ma").data()), -9.0f);
    EXPECT_EQ(library.call("addBlendFile", dir.file("Smile.ma").c_str(), nullptr), -9.0f);
    EXPECT_EQ(library.call("endBlendFile", nullptr), -9.0f);
    EXPECT_EQ(names, (Names{"Missing", "Folder", "Smile", "Smile"})) << "-9 records nothing";
    EXPECT_EQ(scene("Head.ma"), "base\n");
    EXPECT_FALSE(fileExists(dir.file("NoBase.ma")));
}

// A name that would end its quoted string in the statements is refused before it is
// recorded or any file is touched; dots stay fine.
TEST_F(BlendEntries, NamesThatWouldBreakOutOfTheirQuotesAreRefused) {
    writeFile(dir.file("Head.ma"), "base\n");
    for (const char* name :
         {"t\";system(\"id > pwned.txt\");\"", "tab\tx", "nl\nx", "del\x7f", "\x01"}) {
        const std::string file = std::string(name) + ".ma";
        writeFile(dir.file(file), "target\n");
        EXPECT_EQ(add(file, "Head.ma"), -1760.0f) << name;
        writeFile(dir.file(file), "base\n");
        EXPECT_EQ(add("Head.ma", file), -2760.0f) << name;
        EXPECT_EQ(finish(file), -2760.0f) << name;
        EXPECT_EQ(scene(file), "base\n") << name;
    }
    EXPECT_EQ(names, Names{});
    EXPECT_EQ(scene("Head.ma"), "base\n");
    names.push_back("evil\"");
    EXPECT_EQ(finish("Head.ma"), -2760.0f) << "a name put on the list directly";
    names.clear();
    for (const char* name : {"a.b", "Head.v1"}) {
        writeFile(dir.file(std::string(name) + ".ma"), "t\n");
        EXPECT_EQ(add(std::string(name) + ".ma", "Head.ma"), 0.0f) << name;
    }
    EXPECT_EQ(names, (Names{"a.b", "Head.v1"}));
}

// A file size limit makes the append fail partway, after the base opened fine: the
// scene is cut back to what it was.
TEST_F(BlendEntries, UnwritableBaseGivesItsCodeAndStaysUnchanged) {
    writeFile(dir.file("Head.ma"), std::string(1000, 'b'));
    writeFile(dir.file("Smile.ma"), std::string(4000, 's'));
    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
    ASSERT_GE(saved.rlim_max, 2048u);
    rlimit limited = saved;
    limited.rlim_cur = 2048;
    const auto savedHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    const float added = add("Smile.ma", "Head.ma");
    const float finished = finish("Head.ma"); // the statements take more than 1048 bytes
    ::setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, savedHandler);
    EXPECT_EQ(added, -3760.0f);
    EXPECT_EQ(finished, -3760.0f);
    EXPECT_EQ(scene("Head.ma"), std::string(1000, 'b'));
}

// A base that reads fine but cannot be opened for writing. A read-only file does that
// unless the tests run as root; a running executable refuses writers even then. Each
// candidate is probed with a write-only open that never writes.
TEST_F(BlendEntries, BaseThatCannotBeOpenedForWritingGivesItsCodeAndStaysUnchanged) {
    writeFile(dir.file("Head.ma"), "base\n");
    ::chmod(dir.file("Head.ma").c_str(), 0444);
    writeFile(dir.file("Smile.ma"), "smile\n");
    std::string base;
    for (const std::string& candidate : {dir.file("Head.ma"), std::string("/proc/self/exe")}) {
        const int fd = ::open(candidate.c_str(), O_WRONLY | O_APPEND);
        if (fd >= 0) {
            ::close(fd);
            continue;
        }
        base = candidate;
        break;
    }
    if (base.empty()) GTEST_SKIP() << "every candidate base accepts writers here";
    const std::string before = readFile(base);
    EXPECT_EQ(library.call("addBlendFile", dir.file("Smile.ma").c_str(), base.data()), -3760.0f);
    EXPECT_EQ(library.call("endBlendFile", base.c_str()), -3760.0f);
    EXPECT_EQ(readFile(base), before);
}

} // namespace
} // namespace neq::test
