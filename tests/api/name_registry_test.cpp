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
        {{"a b-c", "a_b_c"}, {"a-b c", "a_b_c_copy1"}, {"a_b_c", "a_b_c_copy2"}},
        {{"A", "A"}, {"A_copy1", "A_copy1"}, {"A_copy2", "A_copy2"}, {"A", "A_copy3"}},
        {{"", ""}, {"", "_copy1"}, {nullptr, "_copy2"}},
        {{"Leg_copying", "Leg_copying"}, {"Leg_copying", "Leg_copy1"}},
        {{"Head_copy7", "Head_copy7"}, {"Head_copy7", "Head_copy1"}},
        {{"Tab\tX.y", "Tab\tX.y"}, {"Tab\tX.y", "Tab\tX.y_copy1"}},
    };
    for (const std::vector<Step>& sequence : sequences) {
        std::set<std::string> issued;
        for (const Step& step : sequence)
            EXPECT_STREQ(api::reserveUniqueName(issued, step.proposed).c_str(), step.issued)
                << (step.proposed ? step.proposed : "(null)");
        EXPECT_EQ(issued.size(), sequence.size());
    }
}

// The host's view: CheckName and ClearNameSet over the exported `nameSet`, shared with
// the typed exports.
TEST(NameEntries, NamesStayReservedInTheExportedSetUntilCleared) {
    HostLibrary library;
    // The data symbol keeps its C++ name (the std::string ABI tag included).
    const auto& registry = library.variable<std::set<std::string>>("_Z7nameSetB5cxx11");
    const auto check = [&](const char* name) {
        char out[256] = "untouched";
        EXPECT_EQ(library.call("CheckName", name, out), 0.0f);
        return std::string(out);
    };
    ASSERT_EQ(library.call("ClearNameSet"), 0.0f);
    EXPECT_EQ(check("my head"), "my_head");
    EXPECT_EQ(check(nullptr), "");
    EXPECT_EQ(library.call("CheckName", "A", nullptr), 0.0f) << "a null out only skips the copy";
    char a[] = "A";
    const std::unique_ptr<char[]> typed(library.function(NameCheck, "_Z9NameCheckPc")(a));
    EXPECT_STREQ(typed.get(), "A_copy1");
    EXPECT_EQ(registry, (std::set<std::string>{"", "A", "A_copy1", "my_head"}));

    EXPECT_EQ(library.call("ClearNameSet"), 0.0f);
    EXPECT_TRUE(registry.empty());
    EXPECT_EQ(check("my head"), "my_head");
}

} // namespace
} // namespace neq::test
