#include "support/host_library.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace neq::test {
namespace {

TEST(HostEntries, EveryBuiltEntryResolvesByItsPlainName) {
    HostLibrary library;
    for (const char* name :
         {"Version", "addBlendFile", "endBlendFile", "clearUVString", "ClearNameSet", "CheckName",
          "OpenFolder", "GetFile", "CloseFolder", "SetFolder", "FileDelete", "GetPublicFolder",
          "CreateFolder", "AddFile"})
        EXPECT_NE(library.entry(name), nullptr) << name;
}

// The loop a host script runs: OpenFolder, GetFile until -3, CloseFolder.
TEST(HostEntries, FolderListingLoopSeesEveryEntry) {
    HostLibrary library;
    TempDir dir;
    writeFile(dir.file("a.txt"), "a");
    writeFile(dir.file("b"), "");
    library.call("CloseFolder"); // whatever an earlier test left open
    std::set<std::string> names;
    ASSERT_EQ(library.call("OpenFolder", dir.path().c_str()), 0.0f);
    char name[4096];
    float result;
    while ((result = library.call("GetFile", nullptr, name)) == 0.0f)
        names.insert(name);
    EXPECT_EQ(result, -3.0f);
    EXPECT_EQ(library.call("CloseFolder"), 0.0f);
    EXPECT_EQ(names, (std::set<std::string>{".", "..", "a.txt", "b"}));
}

} // namespace
} // namespace neq::test
