#include "api/name_registry.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace neq::test
