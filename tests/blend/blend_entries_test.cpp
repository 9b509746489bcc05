#include "blend_golden.h"
#include "support/host_library.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace neq::test {
namespace {

// The host's sequence through the shared library: clearUVString, addBlendFile per
// target, endBlendFile.
class BlendEntries : public ::testing::Test {
  protected:
    void SetUp() override { library.call("clearUVString"); }

    float add(const std::string& target, std::string base) {
        return library.call("addBlendFile", target.c_str(), base.data());
    }
    float finish(const std::string& base) { return library.call("endBlendFile", base.c_str()); }
    // The library's own shared name list, exported as data under its C++ name.
    const std::vector<std::string>& names() const {
        const void* list = library.symbol("_Z9UVTileStrB5cxx11");
        if (list == nullptr) throw std::runtime_error("UVTileStr is not exported");
        return *static_cast<const std::vector<std::string>*>(list);
    }

    HostLibrary library;
    TempDir dir;
};

TEST_F(BlendEntries, HostSequenceGivesTheGoldenScene) {
    const std::string base = dir.file("Head.ma");
    writeFile(base, "base\n");
    writeFile(dir.file("Smile.ma"), "smile\n");
    writeFile(dir.file("Blink.ma"), "blink\n");
    EXPECT_EQ(add(dir.file("Smile.ma"), base), 0.0f);
    EXPECT_EQ(add(dir.file("Blink.ma"), base), 0.0f);
    EXPECT_EQ(names(), (std::vector<std::string>{"Smile", "Blink"}));
    EXPECT_EQ(finish(base), 0.0f);
    EXPECT_EQ(readFile(base), goldenTwoTargetScene());
    EXPECT_EQ(names().size(), 2u);
}

TEST_F(BlendEntries, SecondSceneWithoutClearingCarriesTheFirstScenesTargets) {
    writeFile(dir.file("A.ma"), "a\n");
    writeFile(dir.file("B.ma"), "b\n");
    writeFile(dir.file("First.ma"), "first\n");
    writeFile(dir.file("Second.ma"), "second\n");
    EXPECT_EQ(add(dir.file("A.ma"), dir.file("First.ma")), 0.0f);
    EXPECT_EQ(finish(dir.file("First.ma")), 0.0f);
    EXPECT_EQ(add(dir.file("B.ma"), dir.file("Second.ma")), 0.0f);
    EXPECT_EQ(finish(dir.file("Second.ma")), 0.0f);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_NE(readFile(dir.file("Second.ma"))
                  .find("setAttr \".aal\" -type \"attributeAlias\" {\"A\",\"weight[0]\",\n"
                        "\"B\",\"weight[1]\"};\n"),
              std::string::npos);
}

TEST_F(BlendEntries, FailureCodesPassThrough) {
    const std::string base = dir.file("Head.ma");
    writeFile(base, "base\n");
    EXPECT_EQ(add(dir.file("Missing.ma"), base), -1760.0f);
    EXPECT_EQ(add(base, dir.file("NoBase.ma")), -2760.0f);
    EXPECT_EQ(finish(dir.file("NoBase.ma")), -2760.0f);
    EXPECT_EQ(names(), (std::vector<std::string>{"Missing", "Head"}));
    EXPECT_EQ(readFile(base), "base\n");
}

TEST_F(BlendEntries, NullPointersGiveMinusNineAndTouchNothing) {
    const std::string base = dir.file("Head.ma");
    writeFile(base, "base\n");
    std::string basePath = base;
    EXPECT_EQ(library.call("addBlendFile", nullptr, basePath.data()), -9.0f);
    EXPECT_EQ(library.call("addBlendFile", base.c_str(), nullptr), -9.0f);
    EXPECT_EQ(library.call("addBlendFile", nullptr, nullptr), -9.0f);
    EXPECT_EQ(library.call("endBlendFile", nullptr), -9.0f);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(readFile(base), "base\n");
}

} // namespace
} // namespace neq::test
