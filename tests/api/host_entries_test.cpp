#include "platform/directories.h"
#include "support/host_library.h"
#include "support/process_env.h"
#include "support/temp_dir.h"

#include <dirent.h>
#include <gtest/gtest.h>

#include <optional>
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

namespace neq::test {
namespace {

class FolderFileServices : public ::testing::Test {
  protected:
    float call(const char* entry, const std::string& text) {
        return library.call(entry, text.c_str());
    }

    HostLibrary library;
    TempDir dir;
};

TEST_F(FolderFileServices, AddFileAppendsTheSourceAndRepeatsItsLastByte) {
    using namespace std::string_literals;
    const std::optional<std::string> none; // no such file
    const struct {
        std::optional<std::string> source, destination;
        const char* destinationName;
        float result;
        std::optional<std::string> after;
    } cases[] = {
        {"abc", "xy", "dest", 0.0f, "xyabcc"}, {"abc", none, "dest", 0.0f, "abcc"},
        {"", "d", "dest", 0.0f, "d\0"s},       {none, "d", "dest", -1.0f, "d"},
        {"abc", none, "no/dest", -2.0f, none},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        TempDir files;
        const std::string source = files.file("source");
        std::string destination = files.file(c.destinationName);
        if (c.source) writeFile(source, *c.source);
        if (c.destination) writeFile(destination, *c.destination);
        EXPECT_EQ(library.call("AddFile", source.c_str(), destination.data()), c.result);
        EXPECT_EQ(fileExists(destination) ? readFile(destination) : none, c.after);
    }
    // Null paths succeed without touching anything.
    std::string destination = dir.file("dest");
    EXPECT_EQ(library.call("AddFile", nullptr, destination.data()), 0.0f);
    EXPECT_EQ(library.call("AddFile", destination.c_str(), nullptr), 0.0f);
    EXPECT_FALSE(fileExists(destination));
}

TEST_F(FolderFileServices, FileDeleteSetFolderAndCreateFolder) {
    writeFile(dir.file("gone"), "x");
    EXPECT_EQ(call("FileDelete", dir.file("gone")), 0.0f);
    EXPECT_EQ(call("FileDelete", dir.file("gone")), -1.0f);

    EXPECT_EQ(call("CreateFolder", dir.file("made")), 0.0f);
    EXPECT_TRUE(fileExists(dir.file("made")));
    EXPECT_EQ(call("CreateFolder", dir.file("no/parent")), -1.0f);

    ScopedWorkingDirectory restore;
    EXPECT_EQ(call("SetFolder", dir.file("made")), 0.0f);
    EXPECT_EQ(currentDirectory(), dir.file("made"));
    EXPECT_EQ(call("SetFolder", dir.file("missing")), -1.0f);
    for (const char* entry : {"FileDelete", "CreateFolder", "SetFolder"})
        EXPECT_EQ(library.call(entry, nullptr), -1.0f) << entry;
    EXPECT_EQ(currentDirectory(), dir.file("made")) << "failures leave it where it was";
}

TEST_F(FolderFileServices, GetPublicFolderSignalsSuccessWithOne) {
    char out[4096] = "";
    EXPECT_EQ(library.call("GetPublicFolder", nullptr, out), 1.0f);
    EXPECT_EQ(std::string(out), platform::usersFolder());
    EXPECT_EQ(library.call("GetPublicFolder", nullptr, nullptr), 0.0f);
}

} // namespace
} // namespace neq::test
