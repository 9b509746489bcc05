#include "platform/directories.h"
#include "support/host_library.h"
#include "support/process_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace neq::test {
namespace {

struct AddFileCase {
    const char* label;
    std::optional<std::string> source;      // nullopt: no such file
    std::optional<std::string> destination; // nullopt: no such file
    const char* destinationName;
    float result;
    std::optional<std::string> after; // nullopt: the destination must not exist
};

TEST(FolderFileServices, AddFileAppendsTheSourceAndRepeatsItsLastByte) {
    using namespace std::string_literals;
    const AddFileCase cases[] = {
        {"onto existing", "abc", "xy", "dest", 0.0f, "xyabcc"},
        {"creates destination", "abc", std::nullopt, "dest", 0.0f, "abcc"},
        {"empty source adds a zero byte", "", "d", "dest", 0.0f, "d\0"s},
        {"missing source", std::nullopt, "d", "dest", -1.0f, "d"},
        {"missing source creates nothing", std::nullopt, std::nullopt, "dest", -1.0f, std::nullopt},
        {"destination folder missing", "abc", std::nullopt, "no/dest", -2.0f, std::nullopt},
    };
    HostLibrary library;
    for (const AddFileCase& c : cases) {
        SCOPED_TRACE(c.label);
        TempDir dir;
        const std::string source = dir.file("source");
        std::string destination = dir.file(c.destinationName);
        if (c.source) writeFile(source, *c.source);
        if (c.destination) writeFile(destination, *c.destination);
        EXPECT_EQ(library.call("AddFile", source.c_str(), destination.data()), c.result);
        if (c.after) {
            EXPECT_EQ(readFile(destination), *c.after);
        } else {
            EXPECT_FALSE(fileExists(destination));
        }
    }
}

TEST(FolderFileServices, AddFileRejectsFoldersAndIgnoresNullPaths) {
    HostLibrary library;
    TempDir dir;
    writeFile(dir.file("source"), "abc");
    std::string folderAsDestination = dir.path();
    EXPECT_EQ(library.call("AddFile", dir.file("source").c_str(), folderAsDestination.data()),
              -2.0f);
    std::string destination = dir.file("dest");
    EXPECT_EQ(library.call("AddFile", dir.path().c_str(), destination.data()), -1.0f);
    EXPECT_EQ(library.call("AddFile", nullptr, destination.data()), 0.0f);
    EXPECT_EQ(library.call("AddFile", dir.file("source").c_str(), nullptr), 0.0f);
    EXPECT_FALSE(fileExists(destination));
    EXPECT_EQ(readFile(dir.file("source")), "abc");
}

TEST(FolderFileServices, FileDeleteReportsTheRemoveResult) {
    HostLibrary library;
    TempDir dir;
    writeFile(dir.file("gone"), "x");
    EXPECT_EQ(library.call("FileDelete", dir.file("gone").c_str()), 0.0f);
    EXPECT_FALSE(fileExists(dir.file("gone")));
    EXPECT_EQ(library.call("FileDelete", dir.file("gone").c_str()), -1.0f);
    EXPECT_EQ(library.call("FileDelete", nullptr), -1.0f);
}

TEST(FolderFileServices, SetFolderChangesTheWorkingDirectory) {
    HostLibrary library;
    TempDir dir;
    ScopedWorkingDirectory restore;
    EXPECT_EQ(library.call("SetFolder", dir.path().c_str()), 0.0f);
    EXPECT_EQ(currentDirectory(), dir.path());
    EXPECT_EQ(library.call("SetFolder", dir.file("missing").c_str()), -1.0f);
    EXPECT_EQ(library.call("SetFolder", nullptr), -1.0f);
    EXPECT_EQ(currentDirectory(), dir.path()) << "failures leave it where it was";
}

TEST(FolderFileServices, CreateFolderMakesOneLevel) {
    HostLibrary library;
    TempDir dir;
    EXPECT_EQ(library.call("CreateFolder", dir.file("made").c_str()), 0.0f);
    EXPECT_TRUE(fileExists(dir.file("made")));
    EXPECT_EQ(library.call("CreateFolder", dir.file("made").c_str()), -1.0f);
    EXPECT_EQ(library.call("CreateFolder", dir.file("no/parent").c_str()), -1.0f);
    EXPECT_FALSE(fileExists(dir.file("no")));
    EXPECT_EQ(library.call("CreateFolder", nullptr), -1.0f);
}

TEST(FolderFileServices, GetPublicFolderSignalsSuccessWithOne) {
    HostLibrary library;
    char out[4096] = "";
    EXPECT_EQ(library.call("GetPublicFolder", nullptr, out), 1.0f);
    EXPECT_EQ(std::string(out), platform::usersFolder());
    EXPECT_EQ(library.call("GetPublicFolder", nullptr, nullptr), 0.0f);
}

} // namespace
} // namespace neq::test
