#include "foundation/vd_disk_server.h"

#include "support/temp_dir.h"
#include "vd_disk_server_test_support.h"

#include <dirent.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace neq::test {
namespace {

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

class SearchFileList : public ::testing::Test {
  protected:
    // root: x.dat, A/{a.txt, A1/a.txt}, B/{b.dat, B1/a.txt, B2/a.txt}, C/A.TXT
    void SetUp() override {
        root_ = dir_.file("root");
        makeFolder(root_);
        writeFile(root_ + "/x.dat", "");
        for (const char* folder : {"A", "A/A1", "B", "B/B1", "B/B2", "C"})
            makeFolder(root_ + "/" + folder);
        for (const char* file :
             {"A/a.txt", "A/A1/a.txt", "B/b.dat", "B/B1/a.txt", "B/B2/a.txt", "C/A.TXT"})
            writeFile(root_ + "/" + file, "");
    }

    std::vector<std::string> search(const char* filter, int depth, int stopLevels,
                                    bool expectFound = true) {
        VDArray<VDString> found;
        found.push_back(VDString("kept"));
        EXPECT_EQ(VDDiskServer::searchFileList(found, VDString(filter), onVolume(root_), depth,
                                               stopLevels),
                  expectFound);
        std::vector<std::string> paths = strings(found);
        EXPECT_EQ(paths.front(), "kept") << "results are appended";
        paths.erase(paths.begin());
        return paths;
    }

    // The top folders, last listed first: the order of descent.
    std::vector<std::string> descentOrder() const {
        std::vector<std::string> order = subFoldersListed(root_);
        return {order.rbegin(), order.rend()};
    }
    std::string lastListedInB() const { return subFoldersListed(root_ + "/B").back(); }

    // Every hit below each top folder, in search order.
    std::map<std::string, std::vector<std::string>> wholeTrees() const {
        const std::string firstB = subFoldersListed(root_ + "/B").front();
        return {{"A", {"A/a.txt", "A/A1/a.txt"}},
                {"B", {"B/" + lastListedInB() + "/a.txt", "B/" + firstB + "/a.txt"}},
                {"C", {"C/A.TXT"}}};
    }

    // The paths below root in the order given.
    std::vector<std::string> under(const std::vector<std::string>& relative) const {
        std::vector<std::string> paths;
        for (const std::string& path : relative)
            paths.push_back(root_ + "/" + path);
        return paths;
    }

    TempDir dir_;
    std::string root_;
};

TEST_F(SearchFileList, DescendsIntoTheLastListedFolderFirst) {
    const auto everything = wholeTrees();
    std::vector<std::string> all;
    for (const std::string& top : descentOrder())
        all.insert(all.end(), everything.at(top).begin(), everything.at(top).end());
    EXPECT_EQ(search("a.txt", 5, 0), under(all));
    EXPECT_EQ(search("a.txt", 5, -3), under(all)) << "negative stop levels never stop";

    // Depth 1 lists the top folders but not their sub-folders.
    std::vector<std::string> shallow;
    for (const std::string& top : descentOrder())
        if (top != "B") shallow.push_back(everything.at(top).front());
    EXPECT_EQ(search("a.txt", 1, 0), under(shallow));
    EXPECT_EQ(search("a.txt", 0, 0, false), under({}));
}

TEST_F(SearchFileList, StopLevelsEndTheSearchAtTheFirstHit) {
    const std::string first = descentOrder().front();
    // stopLevels 1: the first top folder's whole tree. 2 and more: within it, the first
    // level that has a hit.
    const std::map<std::string, std::vector<std::string>> twoLevels = {
        {"A", {"A/a.txt"}}, {"B", {"B/" + lastListedInB() + "/a.txt"}}, {"C", {"C/A.TXT"}}};
    EXPECT_EQ(search("a.txt", 5, 1), under(wholeTrees().at(first)));
    EXPECT_EQ(search("a.txt", 5, 2), under(twoLevels.at(first)));
    EXPECT_EQ(search("a.txt", 5, 9), under(twoLevels.at(first)));

    // A hit in the folder itself ends the search there.
    writeFile(root_ + "/a.txt", "");
    EXPECT_EQ(search("a.txt", 5, 1), under({"a.txt"}));
    EXPECT_EQ(search("A.TXT", 5, 0).size(), 6u);
}

TEST_F(SearchFileList, MatchingFoldersAreResultsNotSearched) {
    const std::vector<std::string> inB = subFoldersListed(root_ + "/B");
    EXPECT_EQ(search("b?", 5, 0), under({"B/" + inB[0], "B/" + inB[1]})) << "as listed";
    EXPECT_EQ(search("B", 5, 0), under({"B"})) << "B1 and B2 are below a result";
    EXPECT_EQ(search("*.dat", 0, 0), under({"x.dat"}));
    EXPECT_EQ(search("none", 5, 0, false), under({}));

    VDArray<VDString> found;
    EXPECT_FALSE(VDDiskServer::searchFileList(found, VDString("*"), vd(root_ + "/missing"), 5, 0));
    EXPECT_FALSE(VDDiskServer::searchFileList(found, VDString(), vd(root_), 5, 0));
    EXPECT_TRUE(found.empty());
}

class DeleteDirectory : public ::testing::Test {
  protected:
    std::string make(const std::string& name, const std::vector<std::string>& folders,
                     const std::vector<std::string>& files) {
        const std::string root = dir_.file(name);
        makeFolder(root);
        for (const std::string& folder : folders)
            makeFolder(root + "/" + folder);
        for (const std::string& file : files)
            writeFile(root + "/" + file, file);
        return root;
    }

    TempDir dir_;
};

TEST_F(DeleteDirectory, AFolderWithItsEntries) {
    const std::string root = make("flat", {"empty"}, {"a.txt", "b.dat"});
    EXPECT_TRUE(VDDiskServer::deleteDirectory(onVolume(root), false, false));
    EXPECT_FALSE(fileExists(root));

    // A sub-folder that is not empty stays, and so does the folder; the rest goes.
    const std::string full = make("full", {"sub"}, {"a.txt", "sub/b.txt"});
    EXPECT_FALSE(VDDiskServer::deleteDirectory(vd(full + "/"), false, true));
    EXPECT_FALSE(fileExists(full + "/a.txt"));
    EXPECT_EQ(readFile(full + "/sub/b.txt"), "sub/b.txt");

    EXPECT_FALSE(VDDiskServer::deleteDirectory(vd(dir_.file("missing")), false, false));
}

TEST_F(DeleteDirectory, EntriesMatchingAFilter) {
    const std::string root =
        make("root", {"keep.tmp", "sub"}, {"a.tmp", "B.TMP", "c.txt", "sub/d.tmp"});
    // keep.tmp is a folder that matches: it is removed too (it is empty).
    EXPECT_TRUE(VDDiskServer::deleteDirectory(onVolume(root + "/*.tmp"), false, false));
    EXPECT_FALSE(fileExists(root + "/a.tmp"));
    EXPECT_FALSE(fileExists(root + "/B.TMP"));
    EXPECT_FALSE(fileExists(root + "/keep.tmp"));
    EXPECT_TRUE(fileExists(root + "/c.txt"));
    EXPECT_TRUE(fileExists(root + "/sub/d.tmp")) << "not recursive";

    // A last component without wildcards is a filter when it is not a folder.
    EXPECT_TRUE(VDDiskServer::deleteDirectory(vd(root + "/C.TXT"), false, false));
    EXPECT_FALSE(fileExists(root + "/c.txt"));
    EXPECT_FALSE(VDDiskServer::deleteDirectory(vd(root + "/*.none"), true, false))
        << "nothing to remove";
    EXPECT_TRUE(fileExists(root + "/sub/d.tmp"));
}

TEST_F(DeleteDirectory, RecursionJoinsEverythingToTheStartingFolder) {
    // One level down works: the sub-folder's entries are what its own listing shows.
    const std::string root = make("one", {"sub"}, {"a.txt"});
    EXPECT_TRUE(VDDiskServer::deleteDirectory(vd(root), true, false));
    EXPECT_FALSE(fileExists(root));

    // Entries of sub-folders are joined to the starting folder: the removal of
    // root/twin.tmp is attempted twice (once for root/sub/twin.tmp, which stays), so
    // one attempt fails.
    const std::string twins = make("twins", {"sub", "sub/deeper"}, {"twin.tmp", "sub/twin.tmp"});
    EXPECT_FALSE(VDDiskServer::deleteDirectory(vd(twins + "/twin.tmp"), true, false));
    EXPECT_FALSE(fileExists(twins + "/twin.tmp"));
    EXPECT_TRUE(fileExists(twins + "/sub/twin.tmp"));

    // Without a filter: root/deeper does not exist, so root/sub/deeper and root/sub stay.
    EXPECT_FALSE(VDDiskServer::deleteDirectory(vd(twins), true, false));
    EXPECT_TRUE(fileExists(twins + "/sub/deeper"));
    EXPECT_TRUE(fileExists(twins + "/sub/twin.tmp"));
}

} // namespace
} // namespace neq::test
