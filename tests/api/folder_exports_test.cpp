#include "api/folder_exports.h"

#include "platform/directories.h"
#include "platform/file_chooser.h"
#include "support/process_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <memory>

namespace neq::test {
namespace {

TEST(FolderExports, IsDirectoryLooksOnlyAtTheLastName) {
    const struct {
        const char* path;
        bool directory;
    } cases[] = {
        {"x.y/z", true},   {"z.", false},    {"a/b", true},      {"a/b.txt", false}, {"", true},
        {"a\\b.c", false}, {"a.b\\c", true}, {".hidden", false}, {"/", true},        {"dir/", true},
    };
    for (const auto& c : cases) {
        std::string path = c.path;
        EXPECT_EQ(IsDirectory(path.data()), c.directory) << '"' << c.path << '"';
    }
    EXPECT_TRUE(IsDirectory(nullptr));
}

// ClearFolder opens "<path>\" and removes "<path>\" followed by each dotted entry
// name. With "/" as the separator those are the files named "box\NAME" beside the
// folder "box\"; what is inside the folder only supplies the names.
TEST(FolderExports, ClearFolderDeletesDottedNamesOnly) {
    TempDir dir;
    const std::string box = dir.file("box\\");
    ASSERT_TRUE(platform::makeDirectory(box.c_str()));
    for (const char* name : {"a.txt", "b.obj", "noext"}) {
        writeFile(box + "/" + name, "inside");
        writeFile(box + name, "beside");
    }
    for (const char* name : {"sub", "empty.d", "full.d"}) {
        ASSERT_TRUE(platform::makeDirectory((box + "/" + name).c_str()));
        ASSERT_TRUE(platform::makeDirectory((box + name).c_str()));
    }
    writeFile(box + "full.d/kept", "x");
    writeFile(box + "other.txt", "not an entry name");
    writeFile(box + ".", "named like the folder's own entry");

    EXPECT_TRUE(ClearFolder(dir.file("box")));
    EXPECT_FALSE(fileExists(box + "a.txt"));
    EXPECT_FALSE(fileExists(box + "b.obj"));
    EXPECT_FALSE(fileExists(box + "empty.d")) << "an empty dotted folder goes like a file";
    EXPECT_TRUE(fileExists(box + "full.d/kept"));
    EXPECT_TRUE(fileExists(box + "noext")) << "no dot: taken for a folder";
    EXPECT_TRUE(fileExists(box + "sub"));
    EXPECT_TRUE(fileExists(box + "other.txt"));
    EXPECT_TRUE(fileExists(box + ".")) << "\".\" and \"..\" are never taken for files";
    for (const char* name : {"a.txt", "b.obj", "noext", "sub", "empty.d", "full.d"})
        EXPECT_TRUE(fileExists(box + "/" + name)) << name;

    writeFile(box + "c.txt", "beside");
    writeFile(box + "/c.txt", "inside");
    EXPECT_TRUE(ClearFolder(box)) << "a path already ending in a backslash is used as is";
    EXPECT_FALSE(fileExists(box + "c.txt"));
}

TEST(FolderExports, ClearFolderFailsWithoutTheBackslashFolder) {
    TempDir dir;
    writeFile(dir.file("kept.txt"), "x");
    EXPECT_FALSE(ClearFolder(dir.path()));
    EXPECT_FALSE(ClearFolder(dir.path() + "/"));
    EXPECT_TRUE(fileExists(dir.file("kept.txt")));
}

// getSharedFolder is tested through GetPublicFolder with the other file services.
TEST(FolderExports, ChosenFileIsACallerOwnedCopy) {
    TempDir bin;
    ScopedEnvironmentVariable path("PATH", bin.path());
    writeShellScript(bin.file(platform::fileChooserCommand("").front()),
                     "printf '/scenes/pick.vws\\n'\n");
    const std::unique_ptr<char[]> chosen(runCocoaOpenFileBrowser("Open"));
    ASSERT_NE(chosen, nullptr);
    EXPECT_STREQ(chosen.get(), "/scenes/pick.vws");
    const std::unique_ptr<char[]> untitled(runCocoaOpenFileBrowser(nullptr));
    EXPECT_STREQ(untitled.get(), "/scenes/pick.vws") << "a null title is an empty one";
}

} // namespace
} // namespace neq::test
