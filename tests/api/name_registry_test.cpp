#include "api/name_registry.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>
#include <vector>

namespace neq::test {
namespace {

struct Step {
    const char* proposed;
    const char* issued;
    const char* erasedFirst = nullptr; // a name that leaves the set before this step
};

// The last sequence: resume points skip only counters that are taken. Names given
// directly, stems shared by "_copy" names, and a registry shrunk behind the hints' back
// all give the answers of the search from counter 1 (fuzz_name_registry compares the two
// at large).
TEST(NameRegistry, CopySuffixSequences) {
    const std::vector<std::vector<Step>> sequences = {
        {{"a b-c", "a_b_c"}, {"a-b c", "a_b_c_copy1"}, {"a_b_c", "a_b_c_copy2"}},
        {{"A", "A"}, {"A_copy1", "A_copy1"}, {"A_copy2", "A_copy2"}, {"A", "A_copy3"}},
        {{"", ""}, {"", "_copy1"}, {nullptr, "_copy2"}},
        {{"Leg_copying", "Leg_copying"}, {"Leg_copying", "Leg_copy1"}},
        {{"Head_copy7", "Head_copy7"}, {"Head_copy7", "Head_copy1"}},
        {{"Tab\tX.y", "Tab\tX.y"}, {"Tab\tX.y", "Tab\tX.y_copy1"}},
        {{"A", "A"},
         {"A", "A_copy1"},
         {"A_copy4", "A_copy4"},
         {"A-copy2", "A_copy2"},
         {"A", "A_copy3"},
         {"A_copy1", "A_copy5"},
         {"A_copying", "A_copying"},
         {"A", "A_copy6"},
         {"A", "A_copy2", "A_copy2"},
         {"A", "A_copy7"}},
    };
    for (const std::vector<Step>& sequence : sequences) {
        std::set<std::string> issued;
        api::CopyCounterHints hints;
        std::size_t erased = 0;
        for (const Step& step : sequence) {
            erased += step.erasedFirst ? issued.erase(step.erasedFirst) : 0;
            EXPECT_STREQ(api::reserveUniqueName(issued, hints, step.proposed).c_str(), step.issued)
                << (step.proposed ? step.proposed : "(null)");
        }
        EXPECT_EQ(issued.size() + erased, sequence.size());
    }
}

// Repeating one name used to cost a search over all its copies: 10,000 calls took 31 s.
TEST(NameRegistry, RepeatingOneNameCostsTheSameOnEveryCall) {
    std::set<std::string> issued;
    api::CopyCounterHints hints;
    const auto start = std::chrono::steady_clock::now();
    VDString last;
    for (int i = 0; i < 20000; ++i)
        last = api::reserveUniqueName(issued, hints, "Head");
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 2.0);
    EXPECT_STREQ(last.c_str(), "Head_copy19999");
}

} // namespace
} // namespace neq::test
