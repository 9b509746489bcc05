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
#include <sstream>
#include <string>
#include <vector>

namespace neq::test {
namespace {

using DS = VDDiskServer;

// Bytes that differ from block to block, so that a block copied twice or skipped shows.
std::string patternBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>((i * 7 + i / 0x100000) % 251);
    return bytes;
}

// A case table text: "N*c" is N copies of c.
std::string repeated(const std::string& text) {
    const std::size_t star = text.find('*');
    return star != std::string::npos && star + 2 == text.size()
               ? std::string(std::stoul(text.substr(0, star)), text.back())
               : text;
}

std::string octal(unsigned mode) {
    return VDString::format("%o", mode).c_str();
}

// One operation of the file sequence, its result as text.
std::string fileOperation(const TempDir& dir, const CaseRow& row) {
    const auto local = [&](std::string path) {
        const bool volume = !path.empty() && path[0] == '@';
        path = volume ? path.substr(1) : path;
        return path.empty() ? dir.path() : path[0] == '/' ? path : dir.file(path);
    };
    const auto server = [&](const std::string& path) {
        return path[0] == '@' ? onVolume(local(path)) : vd(local(path));
    };
    const std::string &op = row[0], path = local(row[1]), argument = repeated(row[2]);
    const VDString at = server(row[1]);
    if (op == "write") writeFile(path, argument);
    if (op == "pattern") writeFile(path, patternBytes(std::stoul(argument)));
    if (op == "copy") return std::to_string(DS::copyFile(at, server(row[2])));
    if (op == "same") return std::to_string(readFile(path) == readFile(local(row[2])));
    if (op == "mkdir") {
        EXPECT_EQ(::mkdir(path.c_str(), 0755), 0);
    }
    if (op == "fifo") {
        EXPECT_EQ(::mkfifo(path.c_str(), 0644), 0);
    }
    if (op == "exists") return std::to_string(DS::fileExists(at));
    if (op == "folder") return std::to_string(DS::folderExists(at));
    if (op == "setMode") return std::to_string(DS::setMode(at, std::stoi(argument, nullptr, 8)));
    if (op == "getMode") return octal(DS::getMode(at));
    if (op == "mode") return octal(modeOf(path));
    if (op == "rename") return std::to_string(DS::renameFile(at, server(row[2])));
    if (op == "deleteFile") return std::to_string(DS::deleteFile(at));
    if (op == "deleteFolder") return std::to_string(DS::deleteFolder(at));
    if (op == "deleteDirectory")
        return std::to_string(DS::deleteDirectory(at, argument == "1", false));
    if (op == "writeString") return std::to_string(DS::writeFileFromString(at, vd(argument)));
    if (op == "read") return fileExists(path) ? readFile(path) : "none";
    if (op == "readString") {
        VDString text("previous");
        const bool read = DS::readFileAsString(at, text);
        EXPECT_EQ(std::string(text.c_str()), argument);
        return std::to_string(read);
    }
    if (op == "list") {
        std::string names;
        for (const std::string& name : listFolder(path))
            names += (names.empty() ? "" : " ") + name;
        return names;
    }
    if (op == "size") {
        std::FILE* file = DS::fileOpen(at, VDString("rb"));
        if (file == nullptr) return "none";
        std::fseek(file, static_cast<long>(argument.size()), SEEK_SET);
        const std::string size = std::to_string(DS::fileSize(file));
        const long position = std::ftell(file);
        std::fclose(file);
        return size + " " + std::to_string(position);
    }
    return "";
}

TEST(VDDiskServerPaths, FileOperationsInSequence) {
    TempDir dir;
    for (const CaseRow& row : readCaseTable("foundation/vd_disk_server_file_cases.txt"))
        EXPECT_EQ(fileOperation(dir, row), repeated(row[3])) << testing::PrintToString(row);
    EXPECT_EQ(DS::fileSize(nullptr), 0);
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
        {"match", [](VDString& n, const VDString& f) { return fileNameMatchFilter(n, f); }},
        {"plainMatch",
         [](VDString& n, const VDString& f) {
             return fileNameMatchFilterRec(n.c_str(), f.c_str());
         }},
        {"cut",
         [](VDString& p, const VDString&) {
             VDString cut("previous");
             const bool done = DS::extractPathFromFilename(p, cut);
             p += VDString(">") + cut;
             return done;
         }},
    };
    for (const CaseRow& row : readCaseTable("foundation/vd_disk_server_cases.txt")) {
        VDString text(row[1].c_str());
        EXPECT_EQ(edits.at(row[0])(text, vd(row[2])), row[3] == "1") << row[0] << " " << row[1];
        EXPECT_EQ(std::string(text.c_str()), row[4]) << row[0] << " " << row[1];
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
    EXPECT_TRUE(fileNameMatchFilterRec(nullptr, nullptr));
    EXPECT_FALSE(fileNameMatchFilterRec("a", nullptr));
    // Filters that make a plain recursion take exponential time answer at once.
    const std::string many(200, 'a');
    EXPECT_FALSE(fileNameMatchFilterRec(many.c_str(), "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_TRUE(fileNameMatchFilterRec(many.c_str(), "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a"));
}

bool copy(const std::string& from, const std::string& to) {
    return DS::copyFile(onVolume(from), vd(to));
}

// A short write removes the partial destination.
TEST(VDDiskServerCopy, FailedWriteLeavesNothing) {
    TempDir dir;
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
    for (const char* folder : {"", "/A", "/A/A1", "/B", "/B/B1", "/B/B2", "/C"})
        ASSERT_EQ(::mkdir((root + folder).c_str(), 0755), 0) << folder;
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
    std::map<std::string, std::vector<std::string>> named = {
        {"@first", trees.at(order[0])}, {"@firstHit", {trees.at(order[0])[0]}}};
    for (const std::string& top : order) {
        named["@all"].insert(named["@all"].end(), trees.at(top).begin(), trees.at(top).end());
        if (top != "B") named["@shallow"].push_back(trees.at(top).front());
    }
    for (const CaseRow& row : readCaseTable("foundation/vd_disk_server_search_cases.txt")) {
        std::vector<std::string> expected = {"kept"}; // results are appended
        std::istringstream in(row[3]);
        for (std::string path; in >> path;) {
            if (path[0] == '$') path = "B/" + inB.at(path[1] - '0');
            for (const std::string& each : named.count(path) ? named[path] : std::vector{path})
                expected.push_back(root + "/" + each);
        }
        VDArray<VDString> found;
        found.push_back(VDString("kept"));
        EXPECT_EQ(DS::searchFileList(found, vd(row[0]), onVolume(root), std::stoi(row[1]),
                                     std::stoi(row[2])),
                  expected.size() > 1)
            << testing::PrintToString(row);
        EXPECT_EQ(strings(found), expected) << testing::PrintToString(row);
    }
    // A hit in the folder itself ends the search there.
    writeFile(root + "/a.txt", "");
    VDArray<VDString> found;
    EXPECT_TRUE(DS::searchFileList(found, VDString("a.txt"), vd(root), 5, 1));
    EXPECT_EQ(strings(found), std::vector<std::string>{root + "/a.txt"});
    EXPECT_FALSE(DS::searchFileList(found, VDString("*"), vd(root + "/missing"), 5, 0));
}

} // namespace
} // namespace neq::test
