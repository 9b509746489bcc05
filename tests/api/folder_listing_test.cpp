#include "support/host_library.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <dirent.h>

#include <set>
#include <string>

namespace neq::test {
namespace {

// The library may stay loaded between tests, so each test starts by closing whatever
// stream an earlier one left in `folder`.
class FolderListing : public ::testing::Test {
  protected:
    FolderListing() { library.call("CloseFolder"); }
    ~FolderListing() override { library.call("CloseFolder"); }

    float open(const std::string& path) { return library.call("OpenFolder", path.c_str()); }
    float next() { return library.call("GetFile", nullptr, name); }
    std::set<std::string> rest() {
        std::set<std::string> names;
        while (next() == 0.0f)
            names.insert(name);
        return names;
    }

    HostLibrary library;
    TempDir dir;
    char name[4096] = "";
};

TEST_F(FolderListing, ListsEveryEntryAndStaysOpenAtTheEndUntilClosed) {
    EXPECT_EQ(open(dir.file("missing")), -1.0f);
    EXPECT_EQ(library.call("OpenFolder", nullptr), -1.0f);
    EXPECT_EQ(next(), -1.0f);

    writeFile(dir.file("only.txt"), "x");
    ASSERT_EQ(open(dir.path()), 0.0f);
    EXPECT_EQ(library.call("GetFile", nullptr, nullptr), -1.0f) << "null output: no entry lost";
    EXPECT_EQ(rest(), (std::set<std::string>{".", "..", "only.txt"}));
    EXPECT_EQ(next(), -3.0f) << "still open, still at the end";
    EXPECT_EQ(library.call("CloseFolder"), 0.0f);
    EXPECT_EQ(library.call("CloseFolder"), -1.0f);
    EXPECT_EQ(next(), -1.0f);
}

TEST_F(FolderListing, SecondOpenReplacesTheFirstStreamWithoutClosingIt) {
    TempDir other;
    writeFile(other.file("from-other"), "");
    DIR* const& folder = library.variable<DIR*>("folder");
    ASSERT_EQ(open(dir.path()), 0.0f);
    DIR* const first = folder;
    ASSERT_EQ(open(other.path()), 0.0f);
    EXPECT_EQ(rest(), (std::set<std::string>{".", "..", "from-other"}));
    EXPECT_EQ(library.call("CloseFolder"), 0.0f);
    EXPECT_EQ(library.call("CloseFolder"), -1.0f) << "the first stream is out of reach";
    // Still open and readable; the library never closes it, so the test does.
    EXPECT_NE(::readdir(first), nullptr);
    ::closedir(first);
}

} // namespace
} // namespace neq::test
