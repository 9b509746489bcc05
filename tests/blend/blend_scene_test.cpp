#include "blend/blend_scene.h"

#include "blend/blend_result.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <string>
#include <vector>

namespace neq::test {
namespace {

using blend::kBaseUnreadable;
using blend::kBaseUnwritable;
using blend::kBlendDone;

bool opensForWriting(const std::string& path) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) return false;
    ::close(fd);
    return true;
}

// An existing, readable file that cannot be opened for writing, or "" when this
// machine offers none. A read-only file stops ordinary users; a privileged user
// writes through permissions, but not into a program that is running, so this test
// program itself serves then. Both are probed first: nothing is written to them.
std::string unwritableFile(const TempDir& dir) {
    const std::string readOnly = dir.file("ReadOnly.ma");
    writeFile(readOnly, "read only\n");
    ::chmod(readOnly.c_str(), 0444);
    if (!opensForWriting(readOnly)) return readOnly;
    char self[PATH_MAX] = {};
    if (::readlink("/proc/self/exe", self, sizeof self - 1) > 0 && !opensForWriting(self))
        return self;
    return "";
}

// The holder of the repeated byte starts as 0 and carries over from file to file.
TEST(BlendScene, EachFileReadAddsItsLastByteOnceMore) {
    using namespace std::string_literals;
    struct Case {
        std::string base, target, expected;
    };
    const Case cases[] = {
        {"B\n", "T\n", "B\n\nT\n\n"},
        {"ab", "cd", "abbcdd"},
        {"B\n", "", "B\n\n\n"}, // an empty target repeats the base's last byte
        {"", "T", "\0TT"s},     // an empty base contributes a 0 byte
        {"", "", "\0\0"s},
    };
    for (const Case& c : cases) {
        TempDir dir;
        writeFile(dir.file("base.ma"), c.base);
        writeFile(dir.file("T.ma"), c.target);
        std::vector<std::string> names;
        EXPECT_EQ(blend::addBlend(dir.file("T.ma").c_str(), dir.file("base.ma").c_str(), names),
                  kBlendDone);
        EXPECT_EQ(readFile(dir.file("base.ma")), c.expected) << "base " << c.base;
    }

    TempDir dir;
    writeFile(dir.file("empty.ma"), "");
    EXPECT_EQ(blend::finishBlend(dir.file("empty.ma").c_str(), {}), kBlendDone);
    EXPECT_EQ(readFile(dir.file("empty.ma")).substr(0, 4), "\0\n\nc"s);
}

TEST(BlendScene, TargetNamesDropFolderAndLastExtension) {
    const std::pair<const char*, const char*> cases[] = {
        {"a.b.ma", "a.b"},          {"dir.v2/Smile", "Smile"},  {"Smile", "Smile"},
        {"/tmp/Smile.ma", "Smile"}, {"C:\\m\\Head.ma", "Head"}, {"x/.ma", ""},
    };
    std::vector<std::string> names;
    for (const auto& [path, name] : cases) {
        // No base scene: the name is recorded all the same.
        EXPECT_EQ(blend::addBlend(path, "/nonexistent/base.ma", names), kBaseUnreadable);
        EXPECT_EQ(names.back(), name) << path;
    }
    EXPECT_EQ(names.size(), std::size(cases));
}

TEST(BlendScene, UnwritableBaseGivesItsCodeAndStaysUnchanged) {
    TempDir dir;
    writeFile(dir.file("Smile.ma"), "smile\n");
    const std::string base = unwritableFile(dir);
    // Only where the machine offers no unwritable file is there nothing to check.
    if (base.empty()) return;
    const std::string before = readFile(base);
    std::vector<std::string> names;
    EXPECT_EQ(blend::addBlend(dir.file("Smile.ma").c_str(), base.c_str(), names), kBaseUnwritable);
    EXPECT_EQ(blend::finishBlend(base.c_str(), names), kBaseUnwritable);
    EXPECT_EQ(names, std::vector<std::string>{"Smile"});
    EXPECT_EQ(readFile(base), before);
}

// A file size limit makes the append fail partway, after the base opened fine.
TEST(BlendScene, AppendFailingPartwayIsCutBack) {
    TempDir dir;
    const std::string base = dir.file("Head.ma");
    writeFile(base, std::string(1000, 'b'));
    writeFile(dir.file("Smile.ma"), std::string(4000, 's'));
    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
    ASSERT_GE(saved.rlim_max, 2048u);
    rlimit limited = saved;
    limited.rlim_cur = 2048;
    const auto savedHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);

    std::vector<std::string> names;
    const float added = blend::addBlend(dir.file("Smile.ma").c_str(), base.c_str(), names);
    const float finished = blend::finishBlend(base.c_str(), names); // statements > 1048 bytes

    ::setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, savedHandler);
    EXPECT_EQ(added, kBaseUnwritable);
    EXPECT_EQ(finished, kBaseUnwritable);
    EXPECT_EQ(readFile(base), std::string(1000, 'b'));
}

} // namespace
} // namespace neq::test
