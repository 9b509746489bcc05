#include "foundation/vd_disk_server.h"

#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>

namespace neq::test {
namespace {

// Bytes that differ from block to block, so that a block copied twice or skipped shows.
std::string patternBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>((i * 7 + i / 0x100000) % 251);
    return bytes;
}

bool copy(const std::string& from, const std::string& to) {
    return VDDiskServer::copyFile(vd(from), vd(to));
}

TEST(VDDiskServerCopy, CopiesEveryByte) {
    TempDir dir;
    const std::string big = patternBytes(2 * 0x100000 + 123);
    writeFile(dir.file("big"), big);
    EXPECT_TRUE(VDDiskServer::copyFile(onVolume(dir.file("big")), onVolume(dir.file("copy"))));
    EXPECT_EQ(readFile(dir.file("copy")), big);

    writeFile(dir.file("small"), "abc");
    EXPECT_TRUE(copy(dir.file("small"), dir.file("copy")));
    EXPECT_EQ(readFile(dir.file("copy")), "abc") << "an existing destination is replaced";

    writeFile(dir.file("empty"), "");
    EXPECT_TRUE(copy(dir.file("empty"), dir.file("copy")));
    EXPECT_EQ(readFile(dir.file("copy")), "");
}

TEST(VDDiskServerCopy, RefusesWhatItCannotCopy) {
    TempDir dir;
    writeFile(dir.file("a"), "abc");
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0644), 0);
    // Sources that are missing, not regular files, or the destination itself.
    for (const std::string& source :
         {dir.file("none"), dir.path(), dir.file("fifo"), std::string("/dev/zero")}) {
        EXPECT_FALSE(copy(source, dir.file("out"))) << source;
        EXPECT_FALSE(fileExists(dir.file("out"))) << source;
    }
    EXPECT_FALSE(copy(dir.file("a"), dir.file("a")));
    EXPECT_FALSE(copy(dir.file("a"), dir.path() + "/./a"));
    EXPECT_EQ(readFile(dir.file("a")), "abc");
    // Destinations that cannot be created.
    EXPECT_FALSE(copy(dir.file("a"), dir.file("no/out")));
    EXPECT_FALSE(copy(dir.file("a"), dir.path()));
    EXPECT_FALSE(copy(dir.file("a"), dir.file("fifo"))) << "nobody reads the FIFO";
}

TEST(VDDiskServerCopy, ShortWriteRemovesThePartialDestination) {
    TempDir dir;
    writeFile(dir.file("big"), patternBytes(0x100000 + 10));
    const bool copied = runInChild({4096, false}, [&] {
        return VDDiskServer::copyFile(vd(dir.file("big")), vd(dir.file("copy")));
    });
    EXPECT_FALSE(copied);
    EXPECT_FALSE(fileExists(dir.file("copy")));
}

// A read-only folder is opened up for the copy and gets its mode back afterwards.
// Root may write into any folder, so the copy runs as an unprivileged user that owns
// the folder (as a normal user the test process is one already).
TEST(VDDiskServerCopy, ReadOnlyFolderIsOpenedForTheCopyAndRestored) {
    TempDir dir;
    ASSERT_EQ(::chmod(dir.path().c_str(), 0755), 0); // reachable by that user
    writeFile(dir.file("a"), "abc");
    ASSERT_EQ(::chmod(dir.file("a").c_str(), 0644), 0);
    const std::string folder = dir.file("locked");
    ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
    handToUnprivilegedUser(folder);
    ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);

    EXPECT_TRUE(runInChild({std::nullopt, true}, [&] {
        return VDDiskServer::copyFile(vd(dir.file("a")), onVolume(folder + "/copy"));
    }));
    EXPECT_EQ(readFile(folder + "/copy"), "abc");
    EXPECT_EQ(modeOf(folder), 0555u);

    // Failing after the folder was opened up: the partial copy goes, the mode comes back.
    writeFile(dir.file("big"), patternBytes(20000));
    ASSERT_EQ(::chmod(dir.file("big").c_str(), 0644), 0);
    EXPECT_FALSE(runInChild({4096, true}, [&] {
        return VDDiskServer::copyFile(vd(dir.file("big")), vd(folder + "/big"));
    }));
    EXPECT_FALSE(fileExists(folder + "/big"));
    EXPECT_EQ(modeOf(folder), 0555u);

    // Failing even with the folder opened up (the destination is a folder).
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::mkdir((folder + "/sub").c_str(), 0755), 0);
    ASSERT_EQ(::chmod(folder.c_str(), 0551), 0);
    EXPECT_FALSE(runInChild({std::nullopt, true}, [&] {
        return VDDiskServer::copyFile(vd(dir.file("a")), vd(folder + "/sub"));
    }));
    EXPECT_EQ(modeOf(folder), 0551u);
}

} // namespace
} // namespace neq::test
