// What the transcript blend_entries.txt cannot reach: the exported list, an unwritable base.

#include "support/host_library.h"
#include "support/temp_dir.h"

#include <neqbridge/neqbridge.hpp>

#include <gtest/gtest.h>

#include <fcntl.h>
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

// A running executable refuses writers, even the superuser's; a write-only open that
// never writes makes sure.
TEST(BlendEntries, BaseThatCannotBeOpenedForWritingGivesItsCodeAndStaysUnchanged) {
    const HostLibrary library;
    const TempDir dir;
    writeFile(dir.file("Smile.ma"), "smile\n");
    std::string base = "/proc/self/exe";
    const int fd = ::open(base.c_str(), O_WRONLY | O_APPEND);
    if (fd >= 0 && (::close(fd), true)) GTEST_SKIP() << "the running executable accepts writers";
    library.call("clearUVString");
    const std::string before = readFile(base);
    EXPECT_EQ(library.call("addBlendFile", dir.file("Smile.ma").c_str(), base.data()), -3760.0f);
    EXPECT_EQ(library.call("endBlendFile", base.c_str()), -3760.0f);
    EXPECT_EQ(readFile(base), before);
}

} // namespace
} // namespace neq::test
