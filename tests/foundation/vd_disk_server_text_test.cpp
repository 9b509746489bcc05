#include "foundation/vd_disk_server.h"

#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

// readFileAsString of path, into an out that held text before.
std::pair<bool, std::string> readText(const VDString& path) {
    VDString out("previous");
    const bool read = VDDiskServer::readFileAsString(path, out);
    return {read, out.c_str()};
}

TEST(VDDiskServerText, ReadsSmallRegularFilesWhole) {
    using Result = std::pair<bool, std::string>;
    TempDir dir;
    writeFile(dir.file("a"), "line 1\r\nline 2");
    writeFile(dir.file("4096"), std::string(4096, 'x'));
    writeFile(dir.file("4097"), std::string(4097, 'x'));
    writeFile(dir.file("5000"), std::string(5000, 'x'));
    writeFile(dir.file("empty"), "");
    EXPECT_EQ(readText(onVolume(dir.file("a"))), Result(true, "line 1\r\nline 2"));
    EXPECT_EQ(readText(vd(dir.file("4096"))), Result(true, std::string(4096, 'x')));
    EXPECT_EQ(readText(vd(dir.file("4097"))), Result(false, ""));
    EXPECT_EQ(readText(vd(dir.file("5000"))), Result(false, ""));
    EXPECT_EQ(readText(vd(dir.file("empty"))), Result(true, ""));
    EXPECT_EQ(readText(vd(dir.file("none"))), Result(false, ""));
}

TEST(VDDiskServerText, WritesAfterEmptyingTheFile) {
    TempDir dir;
    const std::string file = dir.file("a");
    EXPECT_TRUE(VDDiskServer::writeFileFromString(onVolume(file), VDString("KEY value\n")));
    EXPECT_EQ(readFile(file), "KEY value\n");
    EXPECT_TRUE(VDDiskServer::writeFileFromString(vd(file), VDString("x")));
    EXPECT_EQ(readFile(file), "x") << "truncated, not overwritten in place";
    EXPECT_TRUE(VDDiskServer::writeFileFromString(vd(file), vd(std::string(4096, 'y'))));
    EXPECT_EQ(readFile(file), std::string(4096, 'y'));

    // A refused text still leaves the file created or emptied.
    EXPECT_FALSE(VDDiskServer::writeFileFromString(vd(file), vd(std::string(4097, 'z'))));
    EXPECT_EQ(readFile(file), "");
    writeFile(file, "old");
    EXPECT_FALSE(VDDiskServer::writeFileFromString(vd(file), VDString()));
    EXPECT_EQ(readFile(file), "");
    EXPECT_FALSE(VDDiskServer::writeFileFromString(vd(dir.file("new")), VDString()));
    EXPECT_EQ(readFile(dir.file("new")), "");

    EXPECT_FALSE(VDDiskServer::writeFileFromString(vd(dir.file("no/a")), VDString("x")));
    EXPECT_FALSE(VDDiskServer::writeFileFromString(vd(dir.path()), VDString("x")));
    // A FIFO that nobody reads is refused rather than waited for.
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0644), 0);
    EXPECT_FALSE(VDDiskServer::writeFileFromString(vd(dir.file("fifo")), VDString("x")));
}

} // namespace
} // namespace neq::test
