#include "neqbridge/neqbridge.hpp"

#include "platform/directories.h"
#include "platform/file_chooser.h"
#include "support/process_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <memory>

namespace neq::test {
namespace {

TEST(FolderExports, IsDirectoryLooksOnlyAtTheLastName) {
    const std::pair<const char*, bool> cases[] = {
        {"x.y/z", true}, {"z.", false}, {"", true}, {"a\\b.c", false}, {"a.b\\c", true},
    };
    for (const auto& [text, directory] : cases)
        EXPECT_EQ(IsDirectory(std::string(text).data()), directory) << '"' << text << '"';
    EXPECT_TRUE(IsDirectory(nullptr));
}

// ClearFolder opens "<path>\" and removes "<path>\" followed by each dotted entry
// name. With "/" as the separator those are the files named "box\NAME" beside the
// folder "box\"; what is inside the folder only supplies the names.
TEST(FolderExports, ClearFolderDeletesDottedNamesBesideTheBackslashFolder) {
    TempDir dir;
    const std::string box = dir.file("box\\");
    EXPECT_FALSE(ClearFolder(dir.file("box"))) << "no folder named with the backslash yet";
    ASSERT_TRUE(platform::makeDirectory(box.c_str()));
    for (const char* name : {"a.txt", "noext"}) {
        writeFile(box + "/" + name, "inside");
        writeFile(box + name, "beside");
    }
    for (const std::string& folder : {box + "/empty.d", box + "empty.d"})
        ASSERT_TRUE(platform::makeDirectory(folder.c_str()));
    writeFile(box + ".", "named like the folder's own entry");

    EXPECT_TRUE(ClearFolder(dir.file("box")));
    EXPECT_FALSE(fileExists(box + "a.txt"));
    EXPECT_FALSE(fileExists(box + "empty.d")) << "an empty dotted folder goes like a file";
    EXPECT_TRUE(fileExists(box + "noext")) << "no dot: taken for a folder";
    EXPECT_TRUE(fileExists(box + ".")) << "\".\" and \"..\" are never taken for files";
    EXPECT_TRUE(fileExists(box + "/a.txt"));

    writeFile(box + "a.txt", "beside");
    EXPECT_TRUE(ClearFolder(box)) << "a path already ending in a backslash is used as is";
    EXPECT_FALSE(fileExists(box + "a.txt"));
}

TEST(FolderExports, ChosenFileIsACallerOwnedCopy) {
    TempDir bin;
    ScopedEnvironmentVariable path("PATH", bin.path());
    writeShellScript(bin.file(platform::fileChooserCommand("").front()),
                     "printf '/scenes/pick.vws\\n'\n");
    const std::unique_ptr<char[]> chosen(runCocoaOpenFileBrowser("Open"));
    EXPECT_STREQ(chosen.get(), "/scenes/pick.vws");
    const std::unique_ptr<char[]> untitled(runCocoaOpenFileBrowser(nullptr));
    EXPECT_STREQ(untitled.get(), "/scenes/pick.vws") << "a null title is an empty one";
}

} // namespace
} // namespace neq::test
