#include "api/name_exports.h"
#include "api/name_registry.h"
#include "support/host_library.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace neq::test {
namespace {

struct Step {
    const char* proposed;
    const char* issued;
};

TEST(NameRegistry, CopySuffixSequences) {
    const std::vector<std::vector<Step>> sequences = {
        {{"my head", "my_head"}, {"my-head", "my_head_copy1"}},
        {{"A", "A"}, {"A_copy1", "A_copy1"}, {"A_copy2", "A_copy2"}, {"A", "A_copy3"}},
        {{"", ""}, {"", "_copy1"}, {nullptr, "_copy2"}},
        {{"Leg_copying", "Leg_copying"}, {"Leg_copying", "Leg_copy1"}},
        {{"Head", "Head"}, {"Head", "Head_copy1"}, {"Head", "Head_copy2"}},
        {{"Head_copy1", "Head_copy1"}, {"Head_copy1", "Head_copy2"}},
        {{"Head_copy7", "Head_copy7"}, {"Head_copy7", "Head_copy1"}},
        {{"x_copy_copy", "x_copy_copy"}, {"x_copy_copy", "x_copy1"}},
        {{"a b-c d", "a_b_c_d"}, {"a_b_c_d", "a_b_c_d_copy1"}},
        {{"Tab\tX.y", "Tab\tX.y"}, {"Head_", "Head_"}, {"Head_", "Head__copy1"}},
    };
    for (const std::vector<Step>& sequence : sequences) {
        std::set<std::string> issued;
        for (const Step& step : sequence)
            EXPECT_STREQ(api::reserveUniqueName(issued, step.proposed).c_str(), step.issued)
                << (step.proposed ? step.proposed : "(null)");
        EXPECT_EQ(issued.size(), sequence.size());
    }
}

// The host's view: CheckName and ClearNameSet over the exported `nameSet`.
class NameEntries : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(library.call("ClearNameSet"), 0.0f); }

    std::string check(const char* name) {
        char out[256] = "untouched";
        EXPECT_EQ(library.call("CheckName", name, out), 0.0f);
        return out;
    }

    HostLibrary library;
    // The data symbol keeps its C++ name (the std::string ABI tag included).
    const std::set<std::string>& registry =
        library.variable<std::set<std::string>>("_Z7nameSetB5cxx11");
};

TEST_F(NameEntries, NamesStayReservedInTheExportedSetUntilCleared) {
    EXPECT_EQ(check("my head"), "my_head");
    EXPECT_EQ(check("my-head"), "my_head_copy1");
    EXPECT_EQ(registry, (std::set<std::string>{"my_head", "my_head_copy1"}));

    EXPECT_EQ(library.call("ClearNameSet"), 0.0f);
    EXPECT_TRUE(registry.empty());
    EXPECT_EQ(check("my head"), "my_head");
}

TEST_F(NameEntries, NullTextIsTheEmptyNameAndNullOutOnlySkipsTheCopy) {
    EXPECT_EQ(check(nullptr), "");
    EXPECT_EQ(library.call("CheckName", "A", nullptr), 0.0f);
    EXPECT_EQ(check("A"), "A_copy1");
    EXPECT_EQ(registry, (std::set<std::string>{"", "A", "A_copy1"}));
}

TEST_F(NameEntries, TypedExportsShareTheRegistry) {
    const auto nameCheck = library.function(NameCheck, "_Z9NameCheckPc");
    const auto nameSetClear = library.function(NameSetClear, "_Z12NameSetClearv");
    char head[] = "Head";
    const std::unique_ptr<char[]> first(nameCheck(head));
    EXPECT_STREQ(first.get(), "Head");
    EXPECT_EQ(check("Head"), "Head_copy1");
    nameSetClear();
    EXPECT_TRUE(registry.empty());
}

} // namespace
} // namespace neq::test
