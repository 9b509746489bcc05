#include "support/host_library.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>
#include <vector>

namespace neq::test {
namespace {

using Names = std::vector<std::string>;

// The host's sequence through the shared library: clearUVString, addBlendFile per
// target, endBlendFile. Scenes are named by their file in the test's folder.
class BlendEntries : public ::testing::Test {
  protected:
    void SetUp() override { library.call("clearUVString"); }

    float add(const std::string& target, const std::string& base) {
        return library.call("addBlendFile", dir.file(target).c_str(), dir.file(base).data());
    }
    float finish(const std::string& base) {
        return library.call("endBlendFile", dir.file(base).c_str());
    }
    std::string scene(const std::string& name) const { return readFile(dir.file(name)); }
    HostLibrary library;
    // The library's own shared name list, exported as data under its C++ name.
    const Names& names = library.variable<Names>("_Z9UVTileStrB5cxx11");
    TempDir dir;
};

TEST_F(BlendEntries, HostSequenceGivesTheGoldenScene) {
    writeFile(dir.file("Head.ma"), "base\n");
    writeFile(dir.file("Smile.ma"), "smile\n");
    writeFile(dir.file("Blink.ma"), "blink\n");
    EXPECT_EQ(add("Smile.ma", "Head.ma"), 0.0f);
    EXPECT_EQ(add("Blink.ma", "Head.ma"), 0.0f);
    EXPECT_EQ(names, (Names{"Smile", "Blink"}));
    EXPECT_EQ(finish("Head.ma"), 0.0f);
    EXPECT_EQ(scene("Head.ma"), readTestData("blend/two_targets.ma"));
    EXPECT_EQ(names.size(), 2u) << "the names stay recorded";
}

TEST_F(BlendEntries, NoTargetsGiveTheGoldenScene) {
    writeFile(dir.file("Head.ma"), "abc");
    EXPECT_EQ(finish("Head.ma"), 0.0f);
    EXPECT_EQ(scene("Head.ma"), readTestData("blend/no_targets.ma"));
}

TEST_F(BlendEntries, SecondSceneWithoutClearingCarriesTheFirstScenesTargets) {
    for (const char* name : {"A.ma", "B.ma", "First.ma", "Second.ma"})
        writeFile(dir.file(name), "x\n");
    EXPECT_EQ(add("A.ma", "First.ma"), 0.0f);
    EXPECT_EQ(finish("First.ma"), 0.0f);
    EXPECT_EQ(add("B.ma", "Second.ma"), 0.0f);
    EXPECT_EQ(finish("Second.ma"), 0.0f);
    EXPECT_EQ(names, (Names{"A", "B"}));
    EXPECT_NE(scene("Second.ma").find("{\"A\",\"weight[0]\",\n\"B\",\"weight[1]\"};\n"),
              std::string::npos);
}

TEST_F(BlendEntries, FailuresRecordTheNameAndLeaveTheBaseUnchanged) {
    writeFile(dir.file("Head.ma"), "base\n");
    writeFile(dir.file("Smile.ma"), "smile\n");
    ::mkdir(dir.file("Folder.ma").c_str(), 0755);
    EXPECT_EQ(add("Missing.ma", "Head.ma"), -1760.0f);
    EXPECT_EQ(add("Folder.ma", "Head.ma"), -1760.0f);
    EXPECT_EQ(add("Smile.ma", "NoBase.ma"), -2760.0f);
    EXPECT_EQ(add("Smile.ma", "Folder.ma"), -2760.0f);
    EXPECT_EQ(finish("NoBase.ma"), -2760.0f);
    EXPECT_EQ(finish("Folder.ma"), -2760.0f);
    EXPECT_EQ(names, (Names{"Missing", "Folder", "Smile", "Smile"}));
    EXPECT_EQ(scene("Head.ma"), "base\n");
    EXPECT_FALSE(fileExists(dir.file("NoBase.ma")));
}

TEST_F(BlendEntries, NullPointersGiveMinusNineAndTouchNothing) {
    std::string base = dir.file("Head.ma");
    writeFile(base, "base\n");
    EXPECT_EQ(library.call("addBlendFile", nullptr, base.data()), -9.0f);
    EXPECT_EQ(library.call("addBlendFile", base.c_str(), nullptr), -9.0f);
    EXPECT_EQ(library.call("addBlendFile", nullptr, nullptr), -9.0f);
    EXPECT_EQ(library.call("endBlendFile", nullptr), -9.0f);
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(scene("Head.ma"), "base\n");
}

} // namespace
} // namespace neq::test
