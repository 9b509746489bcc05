#include "foundation/vd_disk_server.h"

#include "support/case_table.h"
#include "support/process_env.h"
#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace neq::test {
namespace {

using DS = VDDiskServer;

TEST(VDDiskServerPaths, FileTestsModesRenamesAndRemovals) {
    TempDir dir;
    const std::string a = dir.file("a");
    writeFile(a, "12345");
    EXPECT_TRUE(DS::fileExists(onVolume(a)));
    EXPECT_FALSE(DS::fileExists(onVolume(dir.path())));
    EXPECT_FALSE(DS::fileExists(vd(dir.file("none"))));
    EXPECT_TRUE(DS::folderExists(onVolume(dir.path())));
    EXPECT_FALSE(DS::folderExists(vd(a)));
    std::FILE* file = DS::fileOpen(onVolume(a), VDString("rb"));
    ASSERT_NE(file, DS::s_invalidFile);
    std::fgetc(file);
    EXPECT_EQ(DS::fileSize(file), 5);
    EXPECT_EQ(std::ftell(file), 1) << "the position is kept";
    std::fclose(file);
    EXPECT_EQ(DS::fileSize(nullptr), 0);
    EXPECT_EQ(DS::fileOpen(vd(dir.file("none")), VDString("rb")), nullptr);

    EXPECT_TRUE(DS::setMode(onVolume(a), 04751));
    EXPECT_EQ(DS::getMode(onVolume(a)), 04751u);
    EXPECT_EQ(modeOf(a), 04751u);
    EXPECT_FALSE(DS::setMode(vd(dir.file("none")), 0644));
    EXPECT_EQ(DS::getMode(vd(dir.file("none"))), 0u);
    EXPECT_TRUE(DS::renameFile(onVolume(a), onVolume(dir.file("b"))));
    EXPECT_EQ(readFile(dir.file("b")), "12345");
    EXPECT_FALSE(DS::renameFile(vd(a), vd(dir.file("c"))));

    // Both removals take a file or an empty folder, and nothing else.
    ASSERT_EQ(::mkdir(dir.file("empty").c_str(), 0755), 0);
    ASSERT_EQ(::mkdir(dir.file("full").c_str(), 0755), 0);
    writeFile(dir.file("full/x"), "");
    EXPECT_TRUE(DS::deleteFile(onVolume(dir.file("b"))));
    EXPECT_FALSE(DS::deleteFile(onVolume(dir.file("b"))));
    EXPECT_TRUE(DS::deleteFolder(onVolume(dir.file("empty"))));
    EXPECT_FALSE(DS::deleteFolder(vd(dir.file("full"))));
    EXPECT_TRUE(DS::deleteFolder(vd(dir.file("full/x"))));
    EXPECT_TRUE(DS::deleteFile(vd(dir.file("full"))));
    EXPECT_EQ(listFolder(dir.path()), std::vector<std::string>{});
}

TEST(VDDiskServerPaths, WorkingFolderAndApplicationFolders) {
    TempDir dir;
    ScopedWorkingDirectory keep;
    ASSERT_TRUE(DS::openFolder(onVolume(dir.path())));
    EXPECT_EQ(std::string(DS::getCurrentPath().c_str()), currentDirectory());
    EXPECT_FALSE(DS::openFolder(vd(dir.file("none"))));
    EXPECT_EQ(std::string(DS::getCurrentPath().c_str()), currentDirectory());
    // A folder whose path does not fit in 512 bytes reads as none.
    std::string deep = dir.path();
    while (deep.size() < 600) {
        deep += "/" + std::string(60, 'd');
        ASSERT_EQ(::mkdir(deep.c_str(), 0755), 0);
    }
    ASSERT_TRUE(DS::openFolder(vd(deep)));
    EXPECT_TRUE(DS::getCurrentPath().isEmpty());
    EXPECT_EQ(DS::getApplicationFolder(), VDString("/Applications"));
    EXPECT_EQ(DS::getApplicationX86Folder(true), VDString("/Applications"));
    EXPECT_EQ(DS::getApplicationX86Folder(false), VDString("/Applications"));
}

TEST(VDDiskServerPaths, FolderNameAndExtensionEdits) {
    const std::map<std::string, std::function<bool(VDString&, const VDString&)>> edits = {
        {"folder", [](VDString& p, const VDString&) { return DS::extractPathFromFilename(p); }},
        {"name", [](VDString& p, const VDString&) { return DS::removePathFromFilename(p); }},
        {"has", [](VDString& n, const VDString& e) { return DS::fileNameHasExtension(n, e); }},
        {"with", DS::makeFilenameWithExt},
        {"without", DS::makeFilenameWithoutExt},
    };
    for (const CaseRow& row : readCaseTable("foundation/vd_disk_server_cases.txt")) {
        VDString text(row[1].c_str());
        EXPECT_EQ(edits.at(row[0])(text, vd(row[2])), row[3] == "1") << row[0] << " " << row[1];
        EXPECT_EQ(std::string(text.c_str()), row[4]) << row[0] << " " << row[1];
    }
    // The two-argument form hands back what it cut off.
    const char* splits[][3] = {{"/a/b/c.ma", "/a/b/", "c.ma"},
                               {"Vol:/a/c.ma", "/a/", "c.ma"},
                               {"c.ma", "", "c.ma"},
                               {"/a/", "/a/", ""}};
    for (const auto& split : splits) {
        VDString path(split[0]), cut("previous");
        EXPECT_TRUE(DS::extractPathFromFilename(path, cut));
        EXPECT_STREQ(path.c_str(), split[1]) << split[0];
        EXPECT_STREQ(cut.c_str(), split[2]) << split[0];
    }
}

// The matching rule written as the plain recursion, for comparison.
bool recursiveModel(const char* name, const char* filter) {
    if (*filter == '\0') return *name == '\0';
    if (*filter == '*')
        return (*name != '\0' && recursiveModel(name + 1, filter)) ||
               recursiveModel(name, filter + 1);
    return *name != '\0' && (*filter == '?' || *filter == *name) &&
           recursiveModel(name + 1, filter + 1);
}

TEST(FileNameMatchFilter, AgreesWithThePlainRecursionAndFoldsAsciiOnly) {
    std::mt19937 random(7);
    const auto randomText = [&](const char* alphabet, int size) {
        std::string text(random() % 9, ' ');
        for (char& c : text)
            c = alphabet[random() % size];
        return text;
    };
    for (int i = 0; i < 200000; ++i) {
        const std::string name = randomText("ab", 2), filter = randomText("ab*?", 4);
        ASSERT_EQ(fileNameMatchFilterRec(name.c_str(), filter.c_str()),
                  recursiveModel(name.c_str(), filter.c_str()))
            << '"' << name << "\" \"" << filter << '"';
    }
    const auto matches = [](const char* name, const char* filter) {
        return fileNameMatchFilter(VDString(name), VDString(filter));
    };
    EXPECT_TRUE(matches("photo.JPG", "*.jpg"));
    EXPECT_FALSE(fileNameMatchFilterRec("photo.JPG", "*.jpg"))
        << "the plain form: bytes as they are";
    EXPECT_TRUE(matches("\xe9T\xc9", "\xe9t\xc9"));
    EXPECT_FALSE(matches("\xe9", "\xc9"));
    EXPECT_FALSE(matches("a", ""));
    EXPECT_FALSE(matches("", "*"));
    EXPECT_TRUE(fileNameMatchFilterRec(nullptr, nullptr));
    EXPECT_FALSE(fileNameMatchFilterRec("a", nullptr));
    // Filters that make a plain recursion take exponential time answer at once.
    const std::string many(200, 'a');
    EXPECT_FALSE(fileNameMatchFilterRec(many.c_str(), "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_TRUE(fileNameMatchFilterRec(many.c_str(), "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a"));
}

TEST(VDDiskServerText, ReadsAndWritesSmallFilesWhole) {
    TempDir dir;
    const std::string file = dir.file("a");
    writeFile(file, "line 1\r\nline 2");
    for (int size : {4096, 4097})
        writeFile(dir.file(std::to_string(size)), std::string(size, 'x'));
    writeFile(dir.file("empty"), "");
    const std::pair<std::string, const char*> reads[] = {
        {file, "line 1\r\nline 2"}, {dir.file("4096"), nullptr}, {dir.file("4097"), ""},
        {dir.file("empty"), ""},    {dir.file("none"), ""},
    };
    for (const auto& [path, text] : reads) {
        VDString out("previous");
        const bool read = DS::readFileAsString(onVolume(path), out);
        EXPECT_EQ(read, text == nullptr || *text || path.find("empty") != std::string::npos);
        EXPECT_EQ(std::string(out.c_str()), text ? text : std::string(4096, 'x')) << path;
    }

    // Written after emptying the file: a refused text still leaves it created or emptied.
    const struct {
        std::string text;
        bool written;
    } writes[] = {{"KEY value\n", true},
                  {"x", true},
                  {std::string(4096, 'y'), true},
                  {std::string(4097, 'z'), false},
                  {"", false}};
    for (const auto& w : writes) {
        EXPECT_EQ(DS::writeFileFromString(onVolume(file), vd(w.text)), w.written);
        EXPECT_EQ(readFile(file), w.written ? w.text : "");
    }
    EXPECT_FALSE(DS::writeFileFromString(vd(dir.file("new")), VDString()));
    EXPECT_EQ(readFile(dir.file("new")), "");
    EXPECT_FALSE(DS::writeFileFromString(vd(dir.file("no/a")), VDString("x")));
    EXPECT_FALSE(DS::writeFileFromString(vd(dir.path()), VDString("x")));
    // A FIFO that nobody reads is refused rather than waited for.
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0644), 0);
    EXPECT_FALSE(DS::writeFileFromString(vd(dir.file("fifo")), VDString("x")));
}

// Bytes that differ from block to block, so that a block copied twice or skipped shows.
std::string patternBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>((i * 7 + i / 0x100000) % 251);
    return bytes;
}

bool copy(const std::string& from, const std::string& to) {
    return DS::copyFile(onVolume(from), vd(to));
}

TEST(VDDiskServerCopy, CopiesEveryByteOrRefusesLeavingNothing) {
    TempDir dir;
    for (const std::string& bytes :
         {patternBytes(2 * 0x100000 + 123), std::string("abc"), std::string()}) {
        writeFile(dir.file("a"), bytes);
        EXPECT_TRUE(copy(dir.file("a"), dir.file("copy"))) << "over the previous copy";
        EXPECT_EQ(readFile(dir.file("copy")), bytes);
    }
    // Sources that are missing, not regular files, or the destination itself; the file
    // layer's own test has the rest.
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0644), 0);
    for (const std::string& source :
         {dir.file("none"), dir.path(), dir.file("fifo"), std::string("/dev/zero")}) {
        EXPECT_FALSE(copy(source, dir.file("out"))) << source;
        EXPECT_FALSE(fileExists(dir.file("out"))) << source;
    }
    writeFile(dir.file("a"), "abc");
    for (const std::string& to :
         {dir.file("a"), dir.path() + "/./a", dir.file("no/out"), dir.path()})
        EXPECT_FALSE(copy(dir.file("a"), to)) << to;
    EXPECT_EQ(readFile(dir.file("a")), "abc");
    EXPECT_FALSE(copy(dir.file("a"), dir.file("fifo"))) << "nobody reads the FIFO";
    // A short write removes the partial destination.
    writeFile(dir.file("big"), patternBytes(0x100000 + 10));
    EXPECT_FALSE(runInChild({4096, false}, [&] { return copy(dir.file("big"), dir.file("c2")); }));
    EXPECT_FALSE(fileExists(dir.file("c2")));
}

// A read-only folder is opened up for the copy and gets its mode back afterwards. Root
// may write into any folder, so the copy runs as an unprivileged user that owns it.
TEST(VDDiskServerCopy, ReadOnlyFolderIsOpenedForTheCopyAndRestored) {
    TempDir dir;
    ASSERT_EQ(::chmod(dir.path().c_str(), 0755), 0);
    writeFile(dir.file("a"), "abc");
    writeFile(dir.file("big"), patternBytes(20000));
    const std::string folder = dir.file("locked");
    ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
    ASSERT_EQ(::mkdir((folder + "/sub").c_str(), 0755), 0);
    handToUnprivilegedUser(folder);
    const struct {
        const char *from, *to;
        ChildSetup child;
        bool copied;
    } cases[] = {
        {"a", "/copy", {std::nullopt, true}, true},
        {"big", "/big", {4096, true}, false},       // failing after the folder was opened up
        {"a", "/sub", {std::nullopt, true}, false}, // failing even so
    };
    for (const auto& c : cases) {
        ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);
        EXPECT_EQ(runInChild(c.child, [&] { return copy(dir.file(c.from), folder + c.to); }),
                  c.copied);
        EXPECT_EQ(modeOf(folder), 0555u);
    }
    EXPECT_EQ(readFile(folder + "/copy"), "abc");
    EXPECT_EQ(listFolder(folder), (std::vector<std::string>{"copy", "sub"}));
}

void makeFolder(const std::string& path) {
    ASSERT_EQ(::mkdir(path.c_str(), 0755), 0) << path;
}

// The sub-folders of path in the order the file system lists them: the order the
// search remembers them in.
std::vector<std::string> subFoldersListed(const std::string& path) {
    std::vector<std::string> names;
    DIR* folder = ::opendir(path.c_str());
    while (const dirent* entry = ::readdir(folder)) {
        const std::string name = entry->d_name;
        struct stat info {};
        if (name != "." && name != ".." && ::stat((path + "/" + name).c_str(), &info) == 0 &&
            S_ISDIR(info.st_mode))
            names.push_back(name);
    }
    ::closedir(folder);
    return names;
}

TEST(VDDiskServerTree, SearchDescendsIntoTheLastListedFolderFirst) {
    // root: x.dat, A/{a.txt, A1/a.txt}, B/{b.dat, B1/a.txt, B2/a.txt}, C/A.TXT
    TempDir dir;
    const std::string root = dir.file("root");
    makeFolder(root);
    for (const char* folder : {"A", "A/A1", "B", "B/B1", "B/B2", "C"})
        makeFolder(root + "/" + folder);
    for (const char* file :
         {"x.dat", "A/a.txt", "A/A1/a.txt", "B/b.dat", "B/B1/a.txt", "B/B2/a.txt", "C/A.TXT"})
        writeFile(root + "/" + file, "");
    const std::vector<std::string> listed = subFoldersListed(root),
                                   inB = subFoldersListed(root + "/B");
    const std::vector<std::string> order(listed.rbegin(), listed.rend());
    // Every hit below each top folder in search order; the first level that has one.
    const std::map<std::string, std::vector<std::string>> trees = {
        {"A", {"A/a.txt", "A/A1/a.txt"}},
        {"B", {"B/" + inB[1] + "/a.txt", "B/" + inB[0] + "/a.txt"}},
        {"C", {"C/A.TXT"}}};
    const auto under = [&](const std::vector<std::string>& relative) {
        std::vector<std::string> paths = {"kept"}; // results are appended
        for (const std::string& path : relative)
            paths.push_back(root + "/" + path);
        return paths;
    };
    std::vector<std::string> all, shallow;
    for (const std::string& top : order) {
        all.insert(all.end(), trees.at(top).begin(), trees.at(top).end());
        if (top != "B") shallow.push_back(trees.at(top).front()); // depth 1: no sub-folders
    }
    const struct {
        const char* filter;
        int depth, stopLevels;
        std::vector<std::string> found;
    } cases[] = {
        {"a.txt", 5, 0, under(all)},
        {"a.txt", 5, -3, under(all)}, // negative stop levels never stop
        {"a.txt", 1, 0, under(shallow)},
        {"a.txt", 0, 0, under({})},
        // stopLevels 1: the first top folder's whole tree; 2 and more: the first level of
        // it with a hit.
        {"a.txt", 5, 1, under(trees.at(order[0]))},
        {"a.txt", 5, 2, under({trees.at(order[0]).front()})},
        {"a.txt", 5, 9, under({trees.at(order[0]).front()})},
        // Matching folders are results, not searched.
        {"b?", 5, 0, under({"B/" + inB[0], "B/" + inB[1]})},
        {"B", 5, 0, under({"B"})},
        {"*.dat", 0, 0, under({"x.dat"})},
        {"none", 5, 0, under({})},
        {"", 5, 0, under({})},
    };
    for (const auto& c : cases) {
        VDArray<VDString> found;
        found.push_back(VDString("kept"));
        EXPECT_EQ(
            DS::searchFileList(found, VDString(c.filter), onVolume(root), c.depth, c.stopLevels),
            c.found.size() > 1)
            << c.filter << " " << c.depth << " " << c.stopLevels;
        EXPECT_EQ(strings(found), c.found) << c.filter << " " << c.depth << " " << c.stopLevels;
    }
    // A hit in the folder itself ends the search there.
    writeFile(root + "/a.txt", "");
    VDArray<VDString> found;
    EXPECT_TRUE(DS::searchFileList(found, VDString("a.txt"), vd(root), 5, 1));
    EXPECT_EQ(strings(found), std::vector<std::string>{root + "/a.txt"});
    EXPECT_FALSE(DS::searchFileList(found, VDString("*"), vd(root + "/missing"), 5, 0));
}

TEST(VDDiskServerTree, DeleteDirectory) {
    TempDir dir;
    const auto make = [&](const std::string& name, const std::vector<std::string>& folders,
                          const std::vector<std::string>& files) {
        const std::string root = dir.file(name);
        makeFolder(root);
        for (const std::string& folder : folders)
            makeFolder(root + "/" + folder);
        for (const std::string& file : files)
            writeFile(root + "/" + file, file);
        return root;
    };
    const auto remove = [](const std::string& path, bool recursive) {
        return DS::deleteDirectory(onVolume(path), recursive, false);
    };
    const std::string flat = make("flat", {"empty"}, {"a.txt", "b.dat"});
    EXPECT_TRUE(remove(flat, false));
    // A sub-folder that is not empty stays, and so does the folder; the rest goes.
    const std::string full = make("full", {"sub"}, {"a.txt", "sub/b.txt"});
    EXPECT_FALSE(remove(full + "/", false));
    EXPECT_EQ(listFolder(full), std::vector<std::string>{"sub"});
    EXPECT_FALSE(remove(dir.file("missing"), false));

    // Entries matching a filter, folders too (keep.tmp is empty), not recursively; a last
    // component without wildcards is a filter when it is not a folder.
    const std::string root =
        make("root", {"keep.tmp", "sub"}, {"a.tmp", "B.TMP", "c.txt", "sub/d.tmp"});
    EXPECT_TRUE(remove(root + "/*.tmp", false));
    EXPECT_EQ(listFolder(root), (std::vector<std::string>{"c.txt", "sub"}));
    EXPECT_TRUE(remove(root + "/C.TXT", false));
    EXPECT_FALSE(remove(root + "/*.none", true)) << "nothing to remove";
    EXPECT_EQ(listFolder(root), std::vector<std::string>{"sub"});
    EXPECT_EQ(listFolder(root + "/sub"), std::vector<std::string>{"d.tmp"});

    // One level down works: the sub-folder's entries are what its own listing shows.
    const std::string one = make("one", {"sub"}, {"a.txt"});
    EXPECT_TRUE(remove(one, true));
    // Entries of sub-folders are joined to the starting folder: root/twin.tmp is removed
    // twice (once for root/sub/twin.tmp, which stays), so one attempt fails; without a
    // filter, root/deeper does not exist, so root/sub/deeper and root/sub stay.
    const std::string twins = make("twins", {"sub", "sub/deeper"}, {"twin.tmp", "sub/twin.tmp"});
    EXPECT_FALSE(remove(twins + "/twin.tmp", true));
    EXPECT_EQ(listFolder(twins), std::vector<std::string>{"sub"});
    EXPECT_FALSE(remove(twins, true));
    EXPECT_EQ(listFolder(twins + "/sub"), (std::vector<std::string>{"deeper", "twin.tmp"}));
    EXPECT_EQ(listFolder(dir.path()), (std::vector<std::string>{"full", "root", "twins"}));
}

} // namespace
} // namespace neq::test
