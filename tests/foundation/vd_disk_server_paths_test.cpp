#include "foundation/vd_disk_server.h"

#include "support/process_env.h"
#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace neq::test {
namespace {

TEST(VDDiskServerPaths, FileTestsOpeningAndSizes) {
    TempDir dir;
    writeFile(dir.file("a.txt"), "12345");
    EXPECT_TRUE(VDDiskServer::fileExists(onVolume(dir.file("a.txt"))));
    EXPECT_FALSE(VDDiskServer::fileExists(onVolume(dir.path())));
    EXPECT_FALSE(VDDiskServer::fileExists(vd(dir.file("none"))));
    EXPECT_TRUE(VDDiskServer::folderExists(onVolume(dir.path())));
    EXPECT_FALSE(VDDiskServer::folderExists(vd(dir.file("a.txt"))));

    std::FILE* file = VDDiskServer::fileOpen(onVolume(dir.file("a.txt")), VDString("rb"));
    ASSERT_NE(file, VDDiskServer::s_invalidFile);
    std::fgetc(file);
    EXPECT_EQ(VDDiskServer::fileSize(file), 5);
    EXPECT_EQ(std::ftell(file), 1) << "the position is kept";
    std::fclose(file);
    EXPECT_EQ(VDDiskServer::fileSize(nullptr), 0);
    EXPECT_EQ(VDDiskServer::fileOpen(vd(dir.file("none")), VDString("rb")), nullptr);
}

TEST(VDDiskServerPaths, ModesRenamesAndRemovals) {
    TempDir dir;
    const std::string file = dir.file("a");
    writeFile(file, "x");
    EXPECT_TRUE(VDDiskServer::setMode(onVolume(file), 04751));
    EXPECT_EQ(VDDiskServer::getMode(onVolume(file)), 04751u);
    EXPECT_EQ(modeOf(file), 04751u);
    EXPECT_FALSE(VDDiskServer::setMode(vd(dir.file("none")), 0644));
    EXPECT_EQ(VDDiskServer::getMode(vd(dir.file("none"))), 0u);

    EXPECT_TRUE(VDDiskServer::renameFile(onVolume(file), onVolume(dir.file("b"))));
    EXPECT_FALSE(fileExists(file));
    EXPECT_EQ(readFile(dir.file("b")), "x");
    EXPECT_FALSE(VDDiskServer::renameFile(vd(file), vd(dir.file("c"))));

    // Both removals take a file or an empty folder, and nothing else.
    ASSERT_EQ(::mkdir(dir.file("empty").c_str(), 0755), 0);
    ASSERT_EQ(::mkdir(dir.file("full").c_str(), 0755), 0);
    writeFile(dir.file("full/x"), "");
    EXPECT_TRUE(VDDiskServer::deleteFile(onVolume(dir.file("b"))));
    EXPECT_FALSE(VDDiskServer::deleteFile(onVolume(dir.file("b"))));
    EXPECT_TRUE(VDDiskServer::deleteFolder(onVolume(dir.file("empty"))));
    EXPECT_FALSE(VDDiskServer::deleteFolder(vd(dir.file("full"))));
    EXPECT_TRUE(VDDiskServer::deleteFolder(vd(dir.file("full/x"))));
    EXPECT_TRUE(VDDiskServer::deleteFile(vd(dir.file("full"))));
    EXPECT_FALSE(fileExists(dir.file("full")));
}

TEST(VDDiskServerPaths, WorkingFolderAndApplicationFolders) {
    TempDir dir;
    ScopedWorkingDirectory keep;
    ASSERT_TRUE(VDDiskServer::openFolder(onVolume(dir.path())));
    EXPECT_EQ(std::string(VDDiskServer::getCurrentPath().c_str()), currentDirectory());
    EXPECT_FALSE(VDDiskServer::openFolder(vd(dir.file("none"))));
    EXPECT_EQ(std::string(VDDiskServer::getCurrentPath().c_str()), currentDirectory());

    // A folder whose path does not fit in 512 bytes reads as none.
    std::string deep = dir.path();
    while (deep.size() < 600) {
        deep += "/" + std::string(60, 'd');
        ASSERT_EQ(::mkdir(deep.c_str(), 0755), 0);
    }
    ASSERT_TRUE(VDDiskServer::openFolder(vd(deep)));
    EXPECT_TRUE(VDDiskServer::getCurrentPath().isEmpty());

    EXPECT_EQ(VDDiskServer::getApplicationFolder(), VDString("/Applications"));
    EXPECT_EQ(VDDiskServer::getApplicationX86Folder(true), VDString("/Applications"));
    EXPECT_EQ(VDDiskServer::getApplicationX86Folder(false), VDString("/Applications"));
}

// What an in-place name helper makes of text, and what it returned.
template <class Edit> std::pair<std::string, bool> edited(const char* text, Edit edit) {
    VDString name(text);
    const bool result = edit(name);
    return {name.c_str(), result};
}

TEST(VDDiskServerPaths, FolderAndNameParts) {
    using Result = std::pair<std::string, bool>;
    const auto extract = [](VDString& path) { return VDDiskServer::extractPathFromFilename(path); };
    const auto remove = [](VDString& path) { return VDDiskServer::removePathFromFilename(path); };
    EXPECT_EQ(edited("/a/b/c.ma", extract), Result("/a/b/", true));
    EXPECT_EQ(edited("Macintosh HD:/a/b.ma", extract), Result("/a/", true));
    EXPECT_EQ(edited("/a/b/", extract), Result("/a/b/", true));
    EXPECT_EQ(edited("c.ma", extract), Result("", true));
    EXPECT_EQ(edited("a\\b.ma", extract), Result("", true)) << "only / separates here";
    EXPECT_EQ(edited("", extract), Result("", true));

    EXPECT_EQ(edited("/a/b/c.ma", remove), Result("c.ma", true));
    EXPECT_EQ(edited("C:\\scenes\\c.ma", remove), Result("c.ma", true));
    EXPECT_EQ(edited("/a\\b/c", remove), Result("c", true));
    EXPECT_EQ(edited("Macintosh HD:c.ma", remove), Result("c.ma", true));
    EXPECT_EQ(edited("/a/", remove), Result("", true));
    EXPECT_EQ(edited("c.ma", remove), Result("c.ma", true));

    // The two-argument form hands back what it cut off.
    const struct {
        const char* path;
        const char* folder;
        const char* name;
    } splits[] = {{"/a/b/c.ma", "/a/b/", "c.ma"},
                  {"Vol:/a/c.ma", "/a/", "c.ma"},
                  {"c.ma", "", "c.ma"},
                  {"/a/", "/a/", ""}};
    for (const auto& split : splits) {
        VDString path(split.path);
        VDString name("previous");
        EXPECT_TRUE(VDDiskServer::extractPathFromFilename(path, name));
        EXPECT_EQ(std::string(path.c_str()), split.folder) << split.path;
        EXPECT_EQ(std::string(name.c_str()), split.name) << split.path;
    }
}

TEST(VDDiskServerPaths, Extensions) {
    using Result = std::pair<std::string, bool>;
    const auto has = [](const char* name, const char* ext) {
        return VDDiskServer::fileNameHasExtension(VDString(name), VDString(ext));
    };
    EXPECT_TRUE(has("a.ma", "ma"));
    EXPECT_TRUE(has("a.ma", ".ma"));
    EXPECT_FALSE(has("a.MA", "ma")) << "case counts";
    EXPECT_FALSE(has("ama", "ma")) << "the dot is part of it";
    EXPECT_TRUE(has("a.", ""));
    EXPECT_FALSE(has("a", ""));

    const auto with = [](const char* ext) {
        return [ext](VDString& name) {
            return VDDiskServer::makeFilenameWithExt(name, VDString(ext));
        };
    };
    EXPECT_EQ(edited("a", with("ma")), Result("a.ma", true));
    EXPECT_EQ(edited("a", with(".ma")), Result("a.ma", true));
    EXPECT_EQ(edited("a.ma", with("ma")), Result("a.ma", false));
    EXPECT_EQ(edited("a.MA", with("ma")), Result("a.MA.ma", true));
    EXPECT_EQ(edited("", with("ma")), Result(".ma", true));

    const auto without = [](const char* ext) {
        return [ext](VDString& name) {
            return VDDiskServer::makeFilenameWithoutExt(name, VDString(ext));
        };
    };
    EXPECT_EQ(edited("a.b.ma", without("ma")), Result("a.b", true));
    EXPECT_EQ(edited("a.ma", without(".ma")), Result("a", true));
    EXPECT_EQ(edited("a.MA", without("ma")), Result("a.MA", false));
    EXPECT_EQ(edited("ama", without("ma")), Result("ama", false));
    EXPECT_EQ(edited(".ma", without("ma")), Result("", true)) << "the inverse of adding it";
}

} // namespace
} // namespace neq::test
