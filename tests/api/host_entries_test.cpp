// The entries' results are in the transcript host_entries.txt; here, their shared stream.

#include "support/host_library.h"
#include "support/temp_dir.h"

#include <dirent.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace neq::test {
namespace {

TEST(FolderListing, SecondOpenReplacesTheFirstStreamWithoutClosingIt) {
    HostLibrary library;
    library.call("CloseFolder"); // whatever an earlier test left open
    TempDir dir, other;
    writeFile(other.file("from-other"), "");
    DIR* const& folder = library.variable<DIR*>("folder");
    ASSERT_EQ(library.call("OpenFolder", dir.path().c_str()), 0.0f);
    DIR* const first = folder;
    ASSERT_EQ(library.call("OpenFolder", other.path().c_str()), 0.0f);
    std::set<std::string> names;
    for (char name[4096]; library.call("GetFile", nullptr, name) == 0.0f;)
        names.insert(name);
    EXPECT_EQ(names, (std::set<std::string>{".", "..", "from-other"}));
    EXPECT_EQ(library.call("CloseFolder"), 0.0f);
    EXPECT_EQ(library.call("CloseFolder"), -1.0f) << "the first stream is out of reach";
    // Still open and readable; the library never closes it, so the test does.
    EXPECT_NE(::readdir(first), nullptr);
    ::closedir(first);
}

} // namespace
} // namespace neq::test
