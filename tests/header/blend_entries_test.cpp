// What the blend entries do with the exported name list and with a base that cannot be
// written; their results and scenes through the host's calls are in the transcript
// blend_entries.txt.

#include "support/host_library.h"
#include "support/temp_dir.h"

#include <neqbridge/neqbridge.hpp>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace neq::test {
namespace {

// The statements quote each name: one put on the list directly (the list is exported as
// data) is refused there too.
TEST(BlendEntries, NamesPutOnTheExportedListAreCheckedToo) {
    const HostLibrary library;
    const TempDir dir;
    writeFile(dir.file("Head.ma"), "base\n");
    UVTileStr.assign({"evil\""});
    EXPECT_EQ(library.call("endBlendFile", dir.file("Head.ma").c_str()), -2760.0f);
    EXPECT_EQ(readFile(dir.file("Head.ma")), "base\n");
    UVTileStr.clear();
}

// A base that reads fine but cannot be opened for writing. A read-only file does that
// unless the tests run as root; a running executable refuses writers even then. Each
// candidate is probed with a write-only open that never writes.
TEST(BlendEntries, BaseThatCannotBeOpenedForWritingGivesItsCodeAndStaysUnchanged) {
    const HostLibrary library;
    const TempDir dir;
    writeFile(dir.file("Head.ma"), "base\n");
    writeFile(dir.file("Smile.ma"), "smile\n");
    ::chmod(dir.file("Head.ma").c_str(), 0444);
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
    library.call("clearUVString");
    const std::string before = readFile(base);
    EXPECT_EQ(library.call("addBlendFile", dir.file("Smile.ma").c_str(), base.data()), -3760.0f);
    EXPECT_EQ(library.call("endBlendFile", base.c_str()), -3760.0f);
    EXPECT_EQ(readFile(base), before);
}

} // namespace
} // namespace neq::test
